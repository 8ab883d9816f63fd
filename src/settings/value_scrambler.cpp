#include "settings/value_scrambler.h"

#include <sodium.h>

#include <vector>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "settings/registry_algorithms.h"

namespace norvik50::settings {
namespace {

constexpr int kVariant = sodium_base64_VARIANT_ORIGINAL;
constexpr std::size_t kOverhead = crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES;

// Characters of the encrypted form of a text of `units` UTF-16 units.
constexpr std::size_t ScrambledLength(std::size_t units) {
  // The encoded length counts the base64 text's terminating zero.
  return kScrambledPrefix.size() + sodium_base64_ENCODED_LEN(kOverhead + 2 * units, kVariant) - 1;
}
static_assert(ScrambledLength(kMaxScrambledTextUnits) <= kReadBufferSize - 1);
static_assert(ScrambledLength(kMaxScrambledTextUnits + 1) > kReadBufferSize - 1);

[[noreturn]] void Refuse(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

[[noreturn]] void RefuseDamaged() {
  Refuse(
      u"The encrypted value is damaged or was encrypted with another key (another user's, or "
      u"a key file made since)");
}

}  // namespace

std::u16string ScrambleText(std::u16string_view text, const ValueKey& key) {
  if (text.size() > kMaxScrambledTextUnits) {
    Refuse(u"The text is too long to encrypt: at most " +
           FromUtf8(std::to_string(kMaxScrambledTextUnits)) +
           u" characters can be read back from the registry");
  }
  StartCrypto();
  // The units themselves, not UTF-8: a lone surrogate has no UTF-8 form
  // and must still come back.
  std::vector<unsigned char> plain(2 * text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    plain[2 * i] = static_cast<unsigned char>(text[i] & 0xFF);
    plain[2 * i + 1] = static_cast<unsigned char>(text[i] >> 8);
  }
  std::vector<unsigned char> sealed(kOverhead + plain.size());
  unsigned char* nonce = sealed.data();
  randombytes_buf(nonce, crypto_secretbox_NONCEBYTES);
  crypto_secretbox_easy(sealed.data() + crypto_secretbox_NONCEBYTES, plain.data(), plain.size(),
                        nonce, key.data());
  sodium_memzero(plain.data(), plain.size());

  std::string base64(sodium_base64_ENCODED_LEN(sealed.size(), kVariant), '\0');
  sodium_bin2base64(base64.data(), base64.size(), sealed.data(), sealed.size(), kVariant);
  base64.pop_back();  // the terminating zero
  std::u16string result(kScrambledPrefix);
  result.append(base64.begin(), base64.end());
  return result;
}

std::vector<unsigned char> ReadScrambled(std::u16string_view scrambled) {
  if (!scrambled.starts_with(kScrambledPrefix)) {
    Refuse(u"The text is no encrypted value (it does not start with \"" +
           std::u16string(kScrambledPrefix) + u"\")");
  }
  const std::u16string_view body = scrambled.substr(kScrambledPrefix.size());
  std::string base64;
  base64.reserve(body.size());
  for (const char16_t c : body) {
    if (c > 0x7F) RefuseDamaged();
    base64.push_back(static_cast<char>(c));
  }
  // Strict base64: no blanks or line breaks skipped, the padding required
  // and unused bits zero, so that every change to the text is a change to
  // the bytes and is caught by the authentication.
  std::vector<unsigned char> sealed(base64.size() / 4 * 3 + 3);
  std::size_t sealed_size = 0;
  const char* end = nullptr;
  if (sodium_base642bin(sealed.data(), sealed.size(), base64.data(), base64.size(), nullptr,
                        &sealed_size, &end, kVariant) != 0 ||
      end != base64.data() + base64.size() || sealed_size < kOverhead) {
    RefuseDamaged();
  }
  sealed.resize(sealed_size);
  return sealed;
}

std::u16string OpenScrambled(const std::vector<unsigned char>& sealed, const ValueKey& key) {
  if (sealed.size() < kOverhead) RefuseDamaged();
  StartCrypto();
  std::vector<unsigned char> plain(sealed.size() - kOverhead);
  if (crypto_secretbox_open_easy(plain.data(), sealed.data() + crypto_secretbox_NONCEBYTES,
                                 sealed.size() - crypto_secretbox_NONCEBYTES, sealed.data(),
                                 key.data()) != 0 ||
      plain.size() % 2 != 0) {
    RefuseDamaged();
  }
  std::u16string text(plain.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(plain[2 * i] | (plain[2 * i + 1] << 8));
  }
  sodium_memzero(plain.data(), plain.size());
  return text;
}

std::u16string UnscrambleText(std::u16string_view scrambled, const ValueKey& key) {
  return OpenScrambled(ReadScrambled(scrambled), key);
}

}  // namespace norvik50::settings
