// Text encodings at the edges of the library. Text inside norvik50 is UTF-16
// (std::u16string); hosts on Linux mostly speak UTF-8, and where text stands
// for bytes (the log file, the LZW codec, registry binaries, long strings)
// one character is one byte of Windows-1252.
#ifndef NORVIK50_ENCODING_H_
#define NORVIK50_ENCODING_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/export.h"

namespace norvik50 {

// UTF-8 <-> UTF-16. Ill-formed input never throws: each bad sequence or
// lone surrogate becomes U+FFFD (UTF-16 -> UTF-8 writes EF BF BD).
NORVIK50_EXPORT std::string ToUtf8(std::u16string_view text);
NORVIK50_EXPORT std::u16string FromUtf8(std::string_view text);

// Windows-1252 byte -> character. All 256 bytes map: the five bytes the code
// page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) map to U+0081 ...
// as Windows' own conversion does, so every byte round-trips.
NORVIK50_EXPORT char16_t Cp1252ToChar(uint8_t byte) noexcept;
// Character -> Windows-1252 byte, or nullopt when the code page has none.
NORVIK50_EXPORT std::optional<uint8_t> CharToCp1252(char16_t ch) noexcept;

// Byte string <-> text of byte characters.
NORVIK50_EXPORT std::u16string BytesToText(std::string_view bytes);
// nullopt when some character has no Windows-1252 byte.
NORVIK50_EXPORT std::optional<std::string> TextToBytes(std::u16string_view text);
// As TextToBytes, but characters without a byte become '?', as a best-fit
// conversion to the ANSI code page writes them (the log file uses this).
NORVIK50_EXPORT std::string TextToBytesLossy(std::u16string_view text);

}  // namespace norvik50

#endif  // NORVIK50_ENCODING_H_
