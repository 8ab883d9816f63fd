// Encrypted texts for the registry (tklEncryptedValue, tklDecryptedValue):
// a host keeps a database password under its key without anyone who reads
// the store reading the password.
//
// The form is "nvk1:" and the base64 of a fresh random nonce followed by
// the authenticated encryption (XSalsa20 with Poly1305) of the text's
// UTF-16 units, least significant byte first. Every UTF-16 text comes back
// exactly, unpaired surrogates included; the same text encrypts
// differently each time; a text changed anywhere, or encrypted with
// another key, is refused rather than decrypted to something else.
#ifndef NORVIK50_SRC_SETTINGS_VALUE_SCRAMBLER_H_
#define NORVIK50_SRC_SETTINGS_VALUE_SCRAMBLER_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "settings/value_key.h"

namespace norvik50::settings {

// What every encrypted text starts with; a later form gets a new number.
inline constexpr std::u16string_view kScrambledPrefix = u"nvk1:";

// The longest text that encrypts to at most 1023 characters, which is what
// the registry getters return (their buffer holds 1024 bytes with the
// terminating zero): 361 UTF-16 units.
inline constexpr std::size_t kMaxScrambledTextUnits = 361;

// `text` encrypted with `key`. Raises 5 for a text longer than
// kMaxScrambledTextUnits, whose encrypted form could be stored but never
// read back through the registry getters.
std::u16string ScrambleText(std::u16string_view text, const ValueKey& key);

// The nonce and sealed bytes of `scrambled`, before any key is needed.
// Raises 5 for a text that is not of this form or whose base64 is damaged.
std::vector<unsigned char> ReadScrambled(std::u16string_view scrambled);
// The text the bytes of ReadScrambled stand for. Raises 5 when they were
// changed or sealed with another key.
std::u16string OpenScrambled(const std::vector<unsigned char>& sealed, const ValueKey& key);
// OpenScrambled(ReadScrambled(scrambled), key).
std::u16string UnscrambleText(std::u16string_view scrambled, const ValueKey& key);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_VALUE_SCRAMBLER_H_
