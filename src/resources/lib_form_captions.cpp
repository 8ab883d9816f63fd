// LIB: a form's captions in the current language.
#include <optional>

#include "core/library_state.h"
#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/lib.h"
#include "resources/form_captions.h"
#include "resources/language_selection.h"
#include "resources/resource_document.h"
#include "resources/resource_strings.h"

namespace norvik50 {

int32_t LIB::tklLoadFormCaptions(const std::shared_ptr<HostObject>& oForm,
                                 std::u16string_view sRegKey) {
  auto* form = dynamic_cast<Form*>(oForm.get());
  if (form == nullptr) {
    throw Error(kErrInvalidCall, u"The object is no form.", std::u16string(kErrorSource));
  }
  ApplyRegKey(sRegKey);
  // Nothing may show a window while the form's controls are walked (its
  // event loop could destroy one of them): the language, which may ask
  // the user, is settled first, and a library that cannot be loaded is
  // reported after the walk.
  const int16_t language = GetCurrentLanguage(*this, u"");
  // Opened at the first numbered id and kept for the whole form: one
  // library load per call, however many controls there are, and none for
  // a form that names only items of the built-in document.
  std::optional<ResourceStrings> strings;
  // Texts that must change are changed here; the form copies each text
  // before it asks again.
  std::u16string item;
  const int32_t set = form->FillCaptions(
      [&](CaptionPlace place, std::u16string_view res_id) -> std::optional<std::u16string_view> {
        std::optional<std::u16string_view> text;
        if (const std::optional<int32_t> id = StringResourceNumber(res_id)) {
          if (!strings) strings.emplace(*this);
          text = strings->Find(*id);
        } else {
          item = GetResourceItem(res_id, language);
          text = item;
        }
        // An empty string cannot be told from a missing one (the string
        // call answers 0 characters for both): the designed caption stays.
        if (!text || text->empty()) return std::nullopt;
        if (!ShowsNoAccessKey(place)) return text;
        if (text->data() != item.data()) item.assign(*text);
        RemoveAccessKeys(item);
        return std::u16string_view(item);
      });
  if (strings) strings->ReportFailure(*this, u"Norvik50.tklLoadFormCaptions");
  return set;
}

}  // namespace norvik50
