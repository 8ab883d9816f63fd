// LIB: the input members. Both run one routine; the code member only masks
// what is typed.
#include "dialogs/input_request.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "resources/language_selection.h"

namespace norvik50 {
namespace {

constexpr int32_t kOk = 1;
constexpr int32_t kCancel = 2;

int32_t AskForValue(LIB& lib, std::u16string_view prompt, std::u16string_view title, Variant& value,
                    std::u16string_view default_text, bool masked) {
  try {
    const InputRequest request =
        MakeInputRequest(prompt, title, value, default_text, masked, GetCurrentLanguage(lib, u""));
    std::u16string text = request.initial_text;
    if (CurrentUserInterface().ShowInput(request, text) != kOk) return kCancel;
    value = Variant(ConfirmedValue(text, value));
    return kOk;
  } catch (...) {
    // A form that cannot be prepared or shown answers as Cancel does and
    // leaves the caller's value as it was.
    return kCancel;
  }
}

}  // namespace

int32_t LIB::tklInputValue(std::u16string_view Prompt, std::u16string_view Title, Variant& Value,
                           std::u16string_view Default) {
  return AskForValue(*this, Prompt, Title, Value, Default, false);
}

int32_t LIB::tklInputCode(std::u16string_view Prompt, std::u16string_view Title, Variant& Value,
                          std::u16string_view Default) {
  return AskForValue(*this, Prompt, Title, Value, Default, true);
}

}  // namespace norvik50
