// The named-function member: DEFLATE and INFLATE, the LZW codec on text of
// byte characters.
#include "codecs/lzw_text.h"
#include "norvik50/dispatch.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

// Automation names compare case-insensitively; only ASCII letters fold, so
// "deflate" and "Deflate" name DEFLATE and nothing else does.
bool SameName(std::u16string_view name, std::u16string_view upper) {
  if (name.size() != upper.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    char16_t c = name[i];
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - u'a' + u'A');
    if (c != upper[i]) return false;
  }
  return true;
}

}  // namespace

Variant LIB::tklGlobalVar(std::u16string_view name, const Variant& value) {
  const bool deflate = SameName(name, u"DEFLATE");
  if (!deflate && !SameName(name, u"INFLATE")) {
    throw Error(kErrInvalidCall,
                u"Unknown named function \"" + std::u16string(name) +
                    u"\" (known: DEFLATE, INFLATE)",
                std::u16string(kErrorSource));
  }
  // Strings are used as they are; anything else goes through the ordinary
  // conversion to text (Empty is "", Null raises 94).
  Variant converted;
  const std::u16string& text =
      value.is_string() ? value.as_string()
                        : (converted = CoerceTo(value, VarType::kString)).as_string();
  return Variant(deflate ? lzw::DeflateText(text) : lzw::InflateText(text));
}

}  // namespace norvik50
