// LIB: the value scrambler, texts encrypted with the user's own key.
#include "norvik50/lib.h"
#include "settings/value_key.h"
#include "settings/value_scrambler.h"

namespace norvik50 {

std::u16string LIB::tklEncryptedValue(std::u16string_view sValue) {
  settings::ValueKey key;
  settings::ReadValueKey(settings::ValueKeyPath(), /*create=*/true, key);
  return settings::ScrambleText(sValue, key);
}

std::u16string LIB::tklDecryptedValue(std::u16string_view sValue) {
  // The text is judged before the key is looked for: a value that was
  // never encrypted is reported as that, not as a missing key.
  const std::vector<unsigned char> sealed = settings::ReadScrambled(sValue);
  settings::ValueKey key;
  // Decrypting never makes a key: a new one could not read the text anyway,
  // and a missing file says more about what went wrong.
  settings::ReadValueKey(settings::ValueKeyPath(), /*create=*/false, key);
  return settings::OpenScrambled(sealed, key);
}

}  // namespace norvik50
