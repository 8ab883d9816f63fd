// The LZW codec on text of byte characters, as the named functions DEFLATE
// and INFLATE see it: each character stands for one byte through
// Windows-1252, in the compressed text as in the plain one.
#ifndef NORVIK50_SRC_CODECS_LZW_TEXT_H_
#define NORVIK50_SRC_CODECS_LZW_TEXT_H_

#include <string>
#include <string_view>

namespace norvik50::lzw {

// The compressed form of `text`. Raises norvik50::Error 5 for an empty text
// and for a text with a character that has no Windows-1252 byte.
[[nodiscard]] std::u16string DeflateText(std::u16string_view text);

// The text that the compressed text `text` stands for, as lzw::Inflate
// decodes its bytes: "" for a text that is not compressed. Raises
// norvik50::Error 5 for a character without a Windows-1252 byte and for a
// damaged compressed text, 7 when the text it stands for does not fit in
// memory. Needs no memory but the input's bytes and the result.
[[nodiscard]] std::u16string InflateText(std::u16string_view text);

}  // namespace norvik50::lzw

#endif  // NORVIK50_SRC_CODECS_LZW_TEXT_H_
