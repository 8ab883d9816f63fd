#include "dialogs/qt/progress_form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/rich_text_reader.h"

namespace norvik50::qt {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// The smallest client area that still shows a line of text above the bar.
constexpr int kMinimumWidth = 80;
constexpr int kMinimumHeight = 40;

}  // namespace

ProgressForm::ProgressForm() {
  setObjectName(QStringLiteral("frmMessage"));
  setFont(DialogFont());
  // No close box: the host's task decides when the window goes.
  setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
  setMinimumSize(kMinimumWidth, kMinimumHeight);
  message_ = new QTextEdit(this);
  message_->setObjectName(QStringLiteral("rtfMessage"));
  message_->setReadOnly(true);
  message_->setFrameShape(QFrame::NoFrame);
  message_->setFocusPolicy(Qt::NoFocus);
  message_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  message_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  message_->viewport()->setAutoFillBackground(false);
  message_->document()->setDefaultFont(DialogFont());
  bar_ = new QProgressBar(this);
  bar_->setObjectName(QStringLiteral("pbCounter"));
  bar_->setTextVisible(false);
  bar_->setRange(0, 100);
  bar_->setValue(0);
  bar_->hide();
}

ProgressForm::~ProgressForm() = default;

void ProgressForm::Apply(const MessageWindowState& state) {
  const QString title = ToQ(state.title);
  if (windowTitle() != title) setWindowTitle(title);
  if (state.prompt != prompt_) {
    prompt_ = state.prompt;
    ReadRichText(prompt_, *message_->document());
    // The message is drawn at once, not when the host next lets events run.
    if (message_->isVisible()) message_->viewport()->repaint();
  }
  bar_->setVisible(state.counter_visible);
  if (bar_->minimum() != state.counter_min || bar_->maximum() != state.counter_max) {
    bar_->setRange(state.counter_min, std::max(state.counter_min, state.counter_max));
  }
  bar_->setValue(state.counter_value);
  if (state.showing || state.message_moved) {
    message_top_ = std::max(0, state.message_top_twips / kTwipsPerPixel);
    Layout();
  }
  if (state.showing || state.resized) {
    resize(std::max(kMinimumWidth, state.width_twips / kTwipsPerPixel - 2 * kSizingFrame),
           std::max(kMinimumHeight,
                    state.height_twips / kTwipsPerPixel - kCaptionHeight - 2 * kSizingFrame));
  }
  if (state.visible && !isVisible()) {
    if (state.showing) TakeOwner(state);
    if (!placed_) {
      // Placed once, centred over its owner or the screen; afterwards the
      // window stays wherever the user moves it.
      placed_ = true;
      QRect area;
      if (const QWindow* owner = Owner()) area = owner->geometry();
      if (area.isEmpty()) {
        if (const QScreen* screen = QGuiApplication::primaryScreen()) {
          area = screen->availableGeometry();
        }
      }
      if (!area.isEmpty()) move(area.center() - QPoint(width() / 2, height() / 2));
    }
    show();
    // Above the host's windows when it comes back; the offscreen platform
    // has no stacking and only complains.
    if (QGuiApplication::platformName() != QStringLiteral("offscreen")) raise();
  } else if (!state.visible && isVisible()) {
    hide();
  }
}

void ProgressForm::TakeOwner(const MessageWindowState& state) {
  Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
  if (state.top_most) flags |= Qt::WindowStaysOnTopHint;
  if (windowFlags() != flags) {
    // New flags make a new native window; it keeps the place it had.
    const QPoint place = pos();
    setWindowFlags(flags);
    if (placed_) move(place);
  }
  winId();  // the native window, so that it can have an owner
  QWindow* owner = nullptr;
  if (state.top_most) {
    // The host's window when the platform can reach it; else the active
    // window of the process.
    foreign_owner_ = ForeignWindow(state.owner);
    owner = foreign_owner_.get();
    if (owner == nullptr) {
      QWidget* active = QApplication::activeWindow();
      if (active != nullptr && active != this) owner = active->windowHandle();
    }
  }
  if (QWindow* self = windowHandle()) self->setTransientParent(owner);
}

QWindow* ProgressForm::Owner() const {
  const QWindow* self = windowHandle();
  return self ? self->transientParent() : nullptr;
}

void ProgressForm::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Layout();
}

void ProgressForm::closeEvent(QCloseEvent* event) {
  // The user's close (the window system's, spontaneous) is refused: the
  // host's task decides when the window goes. A close the program asks
  // for is not: the application closes every window when the host quits
  // its event loop, and a window that refused would keep it running.
  if (event->spontaneous()) {
    event->ignore();
  } else {
    event->accept();
  }
}

void ProgressForm::Layout() {
  const int bar_top = height() - kBarBottomTwips / kTwipsPerPixel - kBarHeight;
  const int inner_width = std::max(0, width() - 2 * kMargin);
  bar_->setGeometry(kMargin, bar_top, inner_width, kBarHeight);
  message_->setGeometry(kMargin, message_top_, inner_width,
                        std::max(0, bar_top - kMargin / 2 - message_top_));
}

int ProgressForm::WidthTwips() const { return (width() + 2 * kSizingFrame) * kTwipsPerPixel; }

int ProgressForm::HeightTwips() const {
  return (height() + kCaptionHeight + 2 * kSizingFrame) * kTwipsPerPixel;
}

DialogFacts ProgressForm::Facts() const {
  DialogFacts f;
  f.form = QStringLiteral("frmMessage");
  f.title = windowTitle();
  f.prompt = message_->toPlainText();
  f.has_counter = true;
  f.counter_visible = bar_->isVisibleTo(this);
  f.counter_value = bar_->value();
  f.counter_max = bar_->maximum();
  return f;
}

}  // namespace norvik50::qt
