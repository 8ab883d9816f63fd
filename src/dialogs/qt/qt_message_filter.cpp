#include "dialogs/qt/qt_message_filter.h"

#include <atomic>

namespace norvik50::qt {
namespace {

// Qt creates a private runtime folder of its own when the session has
// none (a service, a container, `su`) and says so on every start.
constexpr const char* kBenignPrefixes[] = {"QStandardPaths: XDG_RUNTIME_DIR not set"};

// Platforms without a window manager (offscreen, minimal) cannot pass on
// size hints; the forms lay themselves out regardless.
constexpr const char* kBenignTexts[] = {"This plugin does not support propagateSizeHints()"};

std::atomic<QtMessageHandler> previous_handler{nullptr};

void FilteringHandler(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (IsBenignQtMessage(type, message)) return;
  if (const QtMessageHandler previous = previous_handler.load()) previous(type, context, message);
}

}  // namespace

bool IsBenignQtMessage(QtMsgType type, const QString& message) {
  if (type != QtDebugMsg && type != QtInfoMsg && type != QtWarningMsg) return false;
  const QString text = message.trimmed();
  for (const char* prefix : kBenignPrefixes) {
    if (text.startsWith(QLatin1String(prefix))) return true;
  }
  for (const char* benign : kBenignTexts) {
    if (text == QLatin1String(benign)) return true;
  }
  return false;
}

void FilterBenignQtMessages() {
  // Qt answers its own default handler when none was installed, so every
  // message that is not dropped is printed exactly as before. Installed
  // again over a handler set since, it passes messages on to that one.
  const QtMessageHandler previous = qInstallMessageHandler(&FilteringHandler);
  if (previous != &FilteringHandler) previous_handler.store(previous);
}

}  // namespace norvik50::qt
