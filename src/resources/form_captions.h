// The rules of tklLoadFormCaptions that do not need the resource system:
// how a control's resource id is read, and which places show the "&" of
// an access key.
#ifndef NORVIK50_SRC_RESOURCES_FORM_CAPTIONS_H_
#define NORVIK50_SRC_RESOURCES_FORM_CAPTIONS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/form.h"

namespace norvik50 {

// The string id a resource id names: decimal digits only, within a Long
// ("1001"); nullopt for anything else ("cmdOK", "-1", "1e3", " 7"), which
// names an item of the built-in resource document.
[[nodiscard]] std::optional<int32_t> StringResourceNumber(std::u16string_view res_id);

// `text` without its access-key marks: "&&" becomes "&", any other "&"
// goes ("&Speichern" -> "Speichern", "Q&&A" -> "Q&A").
[[nodiscard]] std::u16string WithoutAccessKey(std::u16string_view text);
// The same in place.
void RemoveAccessKeys(std::u16string& text);

// True for the places that show no access key: a title, a tooltip, a
// column header.
[[nodiscard]] constexpr bool ShowsNoAccessKey(CaptionPlace place) {
  return place == CaptionPlace::kTitle || place == CaptionPlace::kToolTip ||
         place == CaptionPlace::kColumnHeader;
}

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_FORM_CAPTIONS_H_
