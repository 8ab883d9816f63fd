#include "norvik50/host.h"

namespace norvik50 {
namespace {

// Without a display a dialog cannot be shown; answering 10 ("the dialog
// failed") at once keeps batch jobs and services from ever blocking.
class HeadlessUi final : public UserInterface {};

std::shared_ptr<UserInterface>& Installed() {
  static std::shared_ptr<UserInterface> ui = HeadlessUserInterface();
  return ui;
}

}  // namespace

UserInterface::~UserInterface() = default;

int32_t UserInterface::ShowStandardMessage(std::u16string_view, std::u16string_view, int32_t,
                                           std::u16string_view) {
  return 10;
}

int32_t UserInterface::ShowMessageBox(const MessageBoxRequest& request) {
  // Hosts that only implement the plain standard message still see every
  // frmStdMsg box, the error messages included.
  if (request.form == u"frmStdMsg") {
    return ShowStandardMessage(request.prompt, request.detail, request.style, request.title);
  }
  return 10;
}

int32_t UserInterface::AskYesNo(std::u16string_view, std::u16string_view, bool, int16_t) {
  return 10;
}

int16_t UserInterface::GetAnswer(std::u16string_view, std::u16string_view, std::u16string_view,
                                 const std::vector<std::u16string>&) {
  return 0;
}

int32_t UserInterface::ShowInput(const InputRequest&, std::u16string&) { return 2; }

bool UserInterface::ShowZoom(ZoomRequest&, std::u16string&) { return false; }

int16_t UserInterface::ChooseLanguage(const std::vector<std::u16string>&) { return -1; }

std::u16string UserInterface::ChoosePath(const ChoosePathRequest&) { return u""; }

std::u16string UserInterface::BrowseForFolder(std::u16string_view, int16_t) { return u""; }

bool UserInterface::ShowFileDialog(const FileDialogRequest&, std::u16string&) { return false; }

void UserInterface::UpdateMessageWindow(const MessageWindowState&) {}

void UserInterface::UnloadMessageWindow() {}

bool UserInterface::MessageWindowSize(int32_t&, int32_t&) { return false; }

void UserInterface::ProcessEvents() {}

std::vector<TwipsRect> UserInterface::ScreenRects() { return {}; }

TwipsRect UserInterface::PrimaryScreen() { return {}; }

int32_t UserInterface::MenuBarHeight() { return kClassicMenuBarTwips; }

int32_t UserInterface::SetApplicationTopMost(bool) { return 0; }

bool UserInterface::IsKeyDown(int32_t) { return false; }

std::vector<std::u16string> UserInterface::FontFamilies() { return {}; }

std::optional<std::vector<TopLevelWindow>> UserInterface::TopLevelWindows() {
  return std::nullopt;
}

bool UserInterface::ConfinePointer(const std::optional<TwipsRect>& area) {
  return !area.has_value();
}
std::vector<std::u16string> UserInterface::OpenForms() { return {}; }

std::shared_ptr<UserInterface> HeadlessUserInterface() {
  static const auto headless = std::make_shared<HeadlessUi>();
  return headless;
}

UserInterface& CurrentUserInterface() { return *Installed(); }

void SetUserInterface(std::shared_ptr<UserInterface> ui) {
  Installed() = ui ? std::move(ui) : HeadlessUserInterface();
}

}  // namespace norvik50
