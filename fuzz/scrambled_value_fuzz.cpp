// libFuzzer target for encrypted values. The input is read as UTF-16
// units (least significant byte first) and used twice:
//  - as a text: encrypting and decrypting must give it back exactly, or
//    encrypting must refuse it with error 5 for its length;
//  - as an encrypted value: decrypting must refuse it with error 5. Nothing
//    the fuzzer makes can carry a valid authentication tag for the key, so
//    a text that decrypts is a forgery and stops the run.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "norvik50/error.h"
#include "settings/value_key.h"
#include "settings/value_scrambler.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace norvik50::settings;
  std::u16string text(size / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(data[2 * i] | (data[2 * i + 1] << 8));
  }
  static const ValueKey* const key = [] {
    auto* k = new ValueKey;
    for (std::size_t i = 0; i < kValueKeyBytes; ++i) k->data()[i] = static_cast<unsigned char>(i);
    return k;
  }();

  try {
    const std::u16string scrambled = ScrambleText(text, *key);
    Check(UnscrambleText(scrambled, *key) == text);
  } catch (const norvik50::Error& e) {
    Check(e.number() == norvik50::kErrInvalidCall && text.size() > kMaxScrambledTextUnits);
  }

  // Also the input's bytes taken one character each, the form a damaged
  // value read from the registry has.
  std::u16string narrow(data, data + size);
  for (const std::u16string* candidate : {&text, &narrow}) {
    try {
      UnscrambleText(*candidate, *key);
      Check(false);
    } catch (const norvik50::Error& e) {
      Check(e.number() == norvik50::kErrInvalidCall);
    }
  }
  return 0;
}
