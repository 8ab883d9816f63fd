// The Qt user interface: each seam call builds its form, runs it modally
// through the dialog driver and answers what the form holds.
#include <QApplication>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <memory>

#include "dialogs/qt/answer_form.h"
#include "dialogs/qt/choose_lang_form.h"
#include "dialogs/qt/choose_path_form.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/dialog_language.h"
#include "dialogs/qt/file_dialog.h"
#include "dialogs/qt/input_form.h"
#include "dialogs/qt/key_state.h"
#include "dialogs/qt/message_form.h"
#include "dialogs/qt/platform_probe.h"
#include "dialogs/qt/progress_form.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/qt_containers.h"
#include "dialogs/qt/stays_on_top.h"
#include "dialogs/qt/system_box.h"
#include "dialogs/qt/x11_desktop.h"
#include "dialogs/qt/zoom_form.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

TwipsRect Twips(const QRect& pixels) {
  return {pixels.left() * qt::kTwipsPerPixel, pixels.top() * qt::kTwipsPerPixel,
          pixels.width() * qt::kTwipsPerPixel, pixels.height() * qt::kTwipsPerPixel};
}

class QtUi final : public UserInterface {
 public:
  // Keys are followed from the start when the host made its application
  // first, as hosts do.
  explicit QtUi(QWidget* owner) : owner_(owner) { qt::FollowKeys(); }
  // Held in a static, this may run after the application is gone: its
  // window went with the application then (UnloadAtApplicationEnd).
  ~QtUi() override {
    if (qt::ApplicationUsable()) delete progress_.data();
  }

  int32_t ShowMessageBox(const MessageBoxRequest& request) override {
    qt::EnsureApplication();
    qt::MessageForm form(request, owner_);
    qt::RunModal(
        form, [&] { return form.Facts(); }, [&] { return form.Result(); });
    return form.Result();
  }

  int32_t AskYesNo(std::u16string_view question, std::u16string_view title, bool default_no,
                   int16_t language) override {
    qt::EnsureApplication();
    // The window system's own box: its captions are Qt's, translated for
    // the library's language.
    const qt::DialogLanguage speaking(language);
    QMessageBox box(QMessageBox::Question, ToQ(title), ToQ(question),
                    QMessageBox::Yes | QMessageBox::No, owner_);
    box.setDefaultButton(default_no ? QMessageBox::No : QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    const auto yes_no = [](QMessageBox::StandardButton b) { return b == QMessageBox::Yes ? 6 : 7; };
    return yes_no(qt::RunSystemBox(box, 32, yes_no));
  }

  int16_t GetAnswer(std::u16string_view prompt, std::u16string_view detail,
                    std::u16string_view title,
                    const std::vector<std::u16string>& captions) override {
    qt::EnsureApplication();
    qt::AnswerForm form(ToQ(prompt), ToQ(detail), ToQ(title), captions, owner_);
    qt::RunModal(
        form, [&] { return form.Facts(); }, [&] { return form.Result(); });
    return static_cast<int16_t>(form.Result());
  }

  int32_t ShowInput(const InputRequest& request, std::u16string& text) override {
    qt::EnsureApplication();
    qt::InputForm form(request, owner_);
    qt::RunModal(
        form, [&] { return form.Facts(); }, [&] { return form.Result(); });
    if (form.Result() == 1) text = form.Text().toStdU16String();
    return form.Result();
  }

  bool ShowZoom(ZoomRequest& request, std::u16string& text) override {
    qt::EnsureApplication();
    qt::ZoomForm form(request, owner_);
    qt::RunModal(
        form, [&] { return form.Facts(); }, [&] { return form.Confirmed() ? 1 : 2; });
    request.width_twips = form.WidthTwips();
    request.height_twips = form.HeightTwips();
    request.shown = true;
    if (form.Confirmed()) text = form.Text().toStdU16String();
    return form.Confirmed();
  }

  int16_t ChooseLanguage(const std::vector<std::u16string>& languages) override {
    qt::EnsureApplication();
    qt::ChooseLangForm form(owner_);
    form.FillLanguages(languages);
    qt::RunModal(
        form, [&] { return form.Facts(); }, [&] { return form.SelectedLanguage(); });
    return static_cast<int16_t>(form.SelectedLanguage());
  }

  std::u16string ChoosePath(const ChoosePathRequest& request) override {
    qt::EnsureApplication();
    qt::ChoosePathForm form(request, owner_);
    qt::RunModal(
        form, [&] { return form.Facts(); }, [&] { return form.Result(); });
    return form.ChosenPath().toStdU16String();
  }

  std::u16string BrowseForFolder(std::u16string_view title, int16_t language) override {
    qt::EnsureApplication();
    const qt::DialogLanguage speaking(language);
    qt::FileDialog dialog(ToQ(title), owner_);
    qt::RunModal(
        dialog, [&] { return dialog.Facts(); }, [&] { return dialog.Chosen() ? 1 : 2; });
    return dialog.Chosen() ? dialog.WindowsResult().toStdU16String() : std::u16string();
  }

  bool ShowFileDialog(const FileDialogRequest& request, std::u16string& filename) override {
    qt::EnsureApplication();
    const qt::DialogLanguage speaking(request.language);
    // The caller's window owns the dialog when it names one the platform
    // can reach; else the host's, else whatever window is active.
    const std::unique_ptr<QWindow> foreign = qt::ForeignWindow(request.owner_window);
    QWidget* owner = foreign ? nullptr : (owner_ ? owner_.data() : QApplication::activeWindow());
    qt::FileDialog dialog(request, owner);
    if (foreign) {
      dialog.winId();
      dialog.windowHandle()->setTransientParent(foreign.get());
    }
    qt::RunModal(
        dialog, [&] { return dialog.Facts(); }, [&] { return dialog.Chosen() ? 1 : 2; });
    if (!dialog.Chosen()) return false;
    filename = dialog.WindowsResult().toStdU16String();
    return true;
  }

  void UpdateMessageWindow(const MessageWindowState& state) override {
    if (!progress_) {
      if (!state.visible) return;
      qt::EnsureApplication();
      progress_ = new qt::ProgressForm();
      qt::UnloadAtApplicationEnd(progress_);
      // A window the library still holds may have gone with an application
      // that ended: the new form shows the whole state, as a first show.
      MessageWindowState fresh = state;
      fresh.showing = true;
      Apply(fresh);
      return;
    }
    if (!qt::ApplicationUsable()) return;
    Apply(state);
  }

  void UnloadMessageWindow() override {
    if (!progress_ || !qt::ApplicationUsable()) return;
    LogProgress("unloaded");
    delete progress_.data();
  }

  bool MessageWindowSize(int32_t& width_twips, int32_t& height_twips) override {
    if (!progress_ || !qt::ApplicationUsable()) return false;
    width_twips = progress_->WidthTwips();
    height_twips = progress_->HeightTwips();
    return true;
  }

  void ProcessEvents() override {
    if (QCoreApplication::instance()) QCoreApplication::processEvents();
  }

  std::vector<TwipsRect> ScreenRects() override {
    qt::EnsureApplication();
    std::vector<TwipsRect> rects;
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (primary != nullptr) rects.push_back(Twips(primary->availableGeometry()));
    for (const QScreen* screen : QGuiApplication::screens()) {
      if (screen != primary) rects.push_back(Twips(screen->availableGeometry()));
    }
    return rects;
  }

  TwipsRect PrimaryScreen() override {
    qt::EnsureApplication();
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary != nullptr ? Twips(primary->geometry()) : TwipsRect{};
  }

  int32_t MenuBarHeight() override {
    qt::EnsureApplication();
    // Measured on a bar with one menu: an empty bar has no height in
    // some styles.
    QMenuBar bar;
    bar.addMenu(QStringLiteral("&File"));
    return bar.sizeHint().height() * qt::kTwipsPerPixel;
  }

  int32_t SetApplicationTopMost(bool top_most) override {
    if (!qt::ApplicationUsable()) return 0;
    int32_t changed = 0;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible() || !window->isWindow()) continue;
      qt::SetStaysOnTop(*window, top_most);
      ++changed;
    }
    return changed;
  }

  bool IsKeyDown(int32_t virtual_key) override {
    return qt::ApplicationUsable() && qt::IsVirtualKeyDown(virtual_key);
  }

  std::vector<std::u16string> FontFamilies() override {
    qt::EnsureApplication();
    std::vector<std::u16string> families;
    for (const QString& family : QFontDatabase::families()) {
      // Private families are the platform's own (the system UI font's
      // hidden faces): no form names them.
      if (QFontDatabase::isPrivateFamily(family)) continue;
      families.push_back(family.toStdU16String());
    }
    return families;
  }

  std::optional<std::vector<TopLevelWindow>> TopLevelWindows() override {
    qt::X11Desktop* desktop = Desktop();
    if (desktop == nullptr) return std::nullopt;
    return desktop->TopLevelWindows();
  }

  bool ConfinePointer(const std::optional<TwipsRect>& area) override {
    if (!area) {
      if (desktop_) desktop_->Release();
      return true;
    }
    qt::X11Desktop* desktop = Desktop();
    if (desktop == nullptr || !desktop->Confine(qt::PixelsOf(*area))) return false;
    ReleaseWhenApplicationLetsGo();
    return true;
  }

  std::vector<std::u16string> OpenForms() override {
    return qt::ApplicationUsable() ? qt::OpenFormNames() : std::vector<std::u16string>{};
  }

 private:
  // The X11 desktop of other programs' windows; null on every other
  // platform (Wayland keeps them from each other, offscreen has none).
  qt::X11Desktop* Desktop() {
    qt::EnsureApplication();
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) return nullptr;
    if (!desktop_) desktop_ = qt::X11Desktop::Connect();
    return desktop_.get();
  }

  // The pointer is the user's again once the application is no longer the
  // one they work in: another application became active, its last window
  // closed, or the application ends.
  void ReleaseWhenApplicationLetsGo() {
    QGuiApplication* app = qGuiApp;
    if (app == nullptr || followed_ == app) return;
    followed_ = app;
    const std::weak_ptr<qt::X11Desktop> desktop = desktop_;
    const auto release = [desktop] {
      if (const auto held = desktop.lock()) held->Release();
    };
    QObject::connect(app, &QGuiApplication::applicationStateChanged, app,
                     [release](Qt::ApplicationState state) {
                       if (state != Qt::ApplicationActive) release();
                     });
    QObject::connect(app, &QGuiApplication::lastWindowClosed, app, release);
    QObject::connect(app, &QCoreApplication::aboutToQuit, app, release);
    QObject::connect(app, &QObject::destroyed, release);
  }

  void Apply(const MessageWindowState& state) {
    const bool was_visible = progress_->isVisible();
    progress_->Apply(state);
    if (progress_->isVisible() != was_visible) LogProgress(was_visible ? "hidden" : "shown");
  }

  void LogProgress(const char* event) {
    qt::DialogFacts facts = progress_->Facts();
    facts.event = QString::fromLatin1(event);
    qt::LogWindow(facts, *progress_, 0);
  }

  QPointer<QWidget> owner_;
  QPointer<qt::ProgressForm> progress_;
  std::shared_ptr<qt::X11Desktop> desktop_;
  QPointer<QGuiApplication> followed_;
};

}  // namespace

std::shared_ptr<UserInterface> QtUserInterface(QWidget* owner) {
  // Qt would end the process at the first dialog; the headless answers
  // keep the host running.
  if (!DisplayAvailable()) return HeadlessUserInterface();
  return std::make_shared<QtUi>(owner);
}

void InstallQtDialogs(QWidget* owner) { SetUserInterface(QtUserInterface(owner)); }

bool DisplayAvailable() { return qt::PlatformProblemOnce().empty(); }

}  // namespace norvik50
