// LZWCompress: the library's own LZW codec on bytes.
//
// The stream format is fixed and must stay byte-identical across versions,
// because compressed texts are stored by hosts:
//  - codes are always 9 bits wide; the dictionary has 512 entries: 0..255 are
//    the single bytes, 256 is the clear code, 257 the end code, 258..511 are
//    learnt strings;
//  - when a string is to be learnt and the dictionary is full, it is cleared
//    first and the clear code is written right after the code that
//    overflowed it; the string is then learnt as entry 258;
//  - a stream is the clear code, the data codes, the end code and a padding
//    code 0, packed least-significant bit first; the leading byte (always 0,
//    the low bits of the clear code) and the final partial byte are dropped.
//
// Example (the one-byte text "A" is the codes 256, 65, 257, 0):
//   EXPECT_EQ(lzw::Deflate("A"), "\x83\x04\x04");
//   EXPECT_EQ(lzw::Inflate("\x83\x04\x04"), "A");
//
// Both functions are reentrant: each call builds its dictionary afresh, so
// compressing the same bytes twice gives the same stream.
#ifndef NORVIK50_SRC_CODECS_LZW_H_
#define NORVIK50_SRC_CODECS_LZW_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace norvik50::lzw {

inline constexpr int kCodeBits = 9;
inline constexpr uint16_t kClearCode = 256;
inline constexpr uint16_t kEndCode = 257;
inline constexpr uint16_t kFirstLearnt = 258;
inline constexpr uint16_t kDictionarySize = 512;

// The longest string any dictionary entry can hold. A learnt string is a
// string the compressor could extend (at most one byte plus one per learnt
// entry of the current dictionary, 255 bytes) plus one byte. Inflate refuses
// a stream that would learn a longer one: no compressed text contains it,
// and without the bound a small hostile stream could expand quadratically.
inline constexpr std::size_t kMaxStringLength = 256;

// Compresses `input`. An empty input has no compressed form: raises
// norvik50::Error 5 (invalid procedure call or argument).
[[nodiscard]] std::string Deflate(std::string_view input);

// As Deflate on text whose characters stand for their Windows-1252 bytes,
// with each byte of the stream as its character (the text a host
// receives). nullopt when a character has no such byte. Reads the text in
// place and writes the stream straight into its text: no byte copy of
// either exists.
[[nodiscard]] std::optional<std::u16string> DeflateCharacters(std::u16string_view text);

// Decompresses `stream` (a compressed text as Deflate writes it).
//  - "" when the stream does not begin with the clear code (this includes the
//    empty stream) or when the first data code is the end code;
//  - the bytes decoded so far when the stream ends before the end code;
//  - raises norvik50::Error 5 when a code names no dictionary entry (a clear
//    code or a learnt code as the first data code, or a learnt code beyond
//    the one being defined) or would learn a string longer than
//    kMaxStringLength.
//  - raises norvik50::Error 7 (out of memory) when the output, whose size
//    is known before anything is allocated, cannot be had.
// Never reads outside `stream`; the output is at most kMaxStringLength bytes
// per 9 bits of input, and the only memory it takes is the output itself.
[[nodiscard]] std::string Inflate(std::string_view stream);

// As Inflate, with each byte of the output as its Windows-1252 character
// (the text a host receives), written straight into the text.
[[nodiscard]] std::u16string InflateToText(std::string_view stream);

}  // namespace norvik50::lzw

#endif  // NORVIK50_SRC_CODECS_LZW_H_
