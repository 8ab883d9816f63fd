// LIB: the message boxes, the questions and the answer box. The members
// work out what a form shows; the installed user interface shows it.
#include <vector>

#include "core/library_state.h"
#include "dialogs/message_buttons.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "resources/language_selection.h"

namespace norvik50 {
namespace {

constexpr int32_t kDialogFailed = 10;
constexpr int32_t kYes = 6;
constexpr int32_t kYesNoQuestion = 36;
constexpr int32_t kSecondDefault = 256;
constexpr int32_t kLongType = 3;
constexpr int32_t kStringType = 8;

struct PromptWithSize {
  std::u16string prompt;
  int32_t width = 0;
  int32_t height = 0;
};

// "Text|6000|3000": the prompt and the size pieces, read as the runtime's
// CLng reads them. A piece that is no number raises, which the member
// turns into its failure answer.
PromptWithSize SplitPromptSize(std::u16string_view text) {
  PromptWithSize out;
  std::vector<std::u16string> pieces;
  std::size_t start = 0;
  for (;;) {
    const std::size_t bar = text.find(u'|', start);
    pieces.emplace_back(text.substr(start, bar - start));
    if (bar == std::u16string_view::npos) break;
    start = bar + 1;
  }
  out.prompt = pieces[0];
  if (pieces.size() >= 2) {
    out.width = ConvertStrict(kLongType, Variant(pieces[1])).as_long();
    if (pieces.size() >= 3) out.height = ConvertStrict(kLongType, Variant(pieces[2])).as_long();
  }
  return out;
}

std::u16string TextOf(const Variant& value) {
  return ConvertToType(kStringType, value).as_string();
}

// Error messages show through the standard message box from the moment
// this layer is part of the program.
[[maybe_unused]] const bool kErrorMessagesInstalled = [] {
  SetErrorMessageShow([](LIB& lib, std::u16string_view heading, std::u16string_view detail,
                         std::u16string_view title) {
    constexpr int32_t kExclamationOk = 48;
    lib.tklMsgBox(heading, detail, kExclamationOk, title);
  });
  return true;
}();

}  // namespace

int32_t LIB::tklExtMsgBox(std::u16string_view sPrompt, int32_t lButtons, std::u16string* sTitle,
                          int32_t lWidthInTwips, int32_t lHeightInTwips) {
  try {
    const PromptWithSize parsed = SplitPromptSize(sPrompt);
    std::u16string title = sTitle ? *sTitle : std::u16string();
    if (title.empty()) {
      title = HostApplicationTitle();
      // Written back before the box opens: the caller keeps it even when
      // the dialog then fails.
      if (sTitle) *sTitle = title;
    }
    MessageBoxRequest request;
    request.form = u"frmMsgBox";
    request.width_twips = lWidthInTwips > 0 ? lWidthInTwips : std::max(parsed.width, 0);
    request.height_twips = lHeightInTwips >= 1 ? lHeightInTwips : std::max(parsed.height, 0);
    FillButtons(request, lButtons, GetCurrentLanguage(*this, u""));
    request.title = std::move(title);
    request.prompt = u"{" + parsed.prompt + u"}";
    return CurrentUserInterface().ShowMessageBox(request);
  } catch (...) {
    return kDialogFailed;
  }
}

bool LIB::tklExtAsk(const Variant& sQuestion, std::u16string* sTitle, int32_t lWidthInTwips,
                    int32_t lHeightInTwips, bool bDefaultNo) {
  const int32_t style = kYesNoQuestion | (bDefaultNo ? kSecondDefault : 0);
  return tklExtMsgBox(TextOf(sQuestion), style, sTitle, lWidthInTwips, lHeightInTwips) == kYes;
}

int32_t LIB::tklMsgBox(std::u16string_view Prompt, std::u16string_view Detail, int32_t Buttons,
                       std::u16string_view Title, int32_t PromptColor, int16_t FontSize,
                       bool FontBold) {
  try {
    MessageBoxRequest request;
    request.form = u"frmStdMsg";
    request.title = Title.empty() ? HostApplicationTitle() : std::u16string(Title);
    FillButtons(request, Buttons, GetCurrentLanguage(*this, u""));
    // The palette has sixteen entries; any other colour fails the member
    // before a box is shown.
    const auto rgb = PaletteColor(PromptColor);
    if (!rgb) return kDialogFailed;
    request.prompt = Prompt;
    request.detail = Detail;
    request.prompt_rgb = *rgb;
    request.font_size = FontSize;
    request.font_bold = FontBold;
    return CurrentUserInterface().ShowMessageBox(request);
  } catch (...) {
    return kDialogFailed;
  }
}

bool LIB::tklAsk(const Variant& sQuestion, const std::optional<Variant>& vTitle, bool bDefaultNo) {
  const std::u16string title = vTitle ? TextOf(*vTitle) : HostApplicationTitle();
  // The window system's box speaks the language of the library's forms.
  return CurrentUserInterface().AskYesNo(TextOf(sQuestion), title, bDefaultNo,
                                         StoredLanguage(*this)) == kYes;
}

int16_t LIB::tklGetAnswer(std::u16string_view Prompt, std::u16string_view Detail,
                          std::u16string_view Title, const SafeArray& Buttons) {
  try {
    std::vector<std::u16string> captions;
    for (const Variant& caption : Buttons.items()) captions.push_back(TextOf(caption));
    return CurrentUserInterface().GetAnswer(Prompt, Detail, Title, captions);
  } catch (...) {
    // A box that could not be shown answers as Escape does.
    return 0;
  }
}

}  // namespace norvik50
