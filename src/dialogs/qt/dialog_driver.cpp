#include "dialog_driver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <optional>
#include <vector>

namespace norvik50::qt {
namespace {

struct ScriptState {
  bool loaded = false;
  std::vector<QJsonObject> lines;
  std::size_t next = 0;
};

ScriptState& Script() {
  static ScriptState state;
  return state;
}

ShownHook& Hook() {
  static ShownHook hook;
  return hook;
}

// The next line of the dialog script; nullopt when there is no script.
// An empty object when the script is used up (the dialog then closes at
// once, so nothing ever waits for a person). A line that is not a JSON
// object acts out nothing.
std::optional<QJsonObject> NextScriptLine() {
  const QByteArray path = qgetenv("NORVIK50_DIALOG_SCRIPT");
  if (path.isEmpty()) return std::nullopt;
  ScriptState& s = Script();
  if (!s.loaded) {
    s.loaded = true;
    QFile file(QString::fromLocal8Bit(path));
    if (file.open(QIODevice::ReadOnly)) {
      for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.trimmed().isEmpty()) continue;
        s.lines.push_back(QJsonDocument::fromJson(line).object());
      }
    }
  }
  if (s.next >= s.lines.size()) return QJsonObject();
  return s.lines[s.next++];
}

struct KeyStroke {
  int key = 0;
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  QString text;
};

std::optional<KeyStroke> ParseKey(const QString& name) {
  static const std::vector<std::pair<QString, int>> kNamed = {
      {QStringLiteral("Enter"), Qt::Key_Return},
      {QStringLiteral("Escape"), Qt::Key_Escape},
      {QStringLiteral("Space"), Qt::Key_Space},
      {QStringLiteral("Tab"), Qt::Key_Tab},
      {QStringLiteral("F2"), Qt::Key_F2}};
  for (const auto& [word, key] : kNamed) {
    if (name == word) {
      return KeyStroke{key, Qt::NoModifier, key == Qt::Key_Space ? QStringLiteral(" ") : ""};
    }
  }
  if (name.startsWith(QStringLiteral("Ctrl+")) && name.size() == 6) {
    return KeyStroke{name.at(5).toUpper().unicode(), Qt::ControlModifier, QString()};
  }
  if (name.size() == 1) return KeyStroke{name.at(0).toUpper().unicode(), Qt::NoModifier, name};
  return std::nullopt;
}

QWidget* FocusTarget(QDialog& dialog) {
  QWidget* focus = dialog.focusWidget();
  return focus ? focus : &dialog;
}

void Press(QDialog& dialog, const KeyStroke& k) {
  QPointer<QWidget> target = FocusTarget(dialog);
  QKeyEvent press(QEvent::KeyPress, k.key, k.modifiers, k.text);
  QApplication::sendEvent(target, &press);
  if (!target) return;
  QKeyEvent release(QEvent::KeyRelease, k.key, k.modifiers, k.text);
  QApplication::sendEvent(target, &release);
}

// The dialog's visible buttons from the left (row by row).
std::vector<QAbstractButton*> ButtonsFromLeft(QDialog& dialog) {
  std::vector<QAbstractButton*> buttons;
  for (QAbstractButton* b : dialog.findChildren<QAbstractButton*>()) {
    if (b->isVisible()) buttons.push_back(b);
  }
  std::sort(buttons.begin(), buttons.end(), [&](QAbstractButton* a, QAbstractButton* b) {
    const QPoint pa = a->mapTo(&dialog, QPoint());
    const QPoint pb = b->mapTo(&dialog, QPoint());
    return pa.y() != pb.y() ? pa.y() < pb.y() : pa.x() < pb.x();
  });
  return buttons;
}

void Click(QDialog& dialog, const QJsonValue& which) {
  const std::vector<QAbstractButton*> buttons = ButtonsFromLeft(dialog);
  if (which.isDouble()) {
    const int n = which.toInt();
    if (n >= 1 && n <= static_cast<int>(buttons.size())) buttons[n - 1]->click();
    return;
  }
  for (QAbstractButton* b : buttons) {
    if (b->text() == which.toString()) {
      b->click();
      return;
    }
  }
}

void ActOut(QDialog& dialog, const QJsonObject& line) {
  QPointer<QDialog> alive(&dialog);
  if (auto* target = dynamic_cast<PathTarget*>(&dialog); target && line.contains("path")) {
    const QJsonValue path = line.value(QStringLiteral("path"));
    QStringList paths;
    if (path.isArray()) {
      for (const QJsonValue& p : path.toArray()) paths << p.toString();
    } else {
      paths << path.toString();
    }
    target->GoToPaths(paths);
  }
  for (const QJsonValue& key : line.value(QStringLiteral("keys")).toArray()) {
    if (!alive || !alive->isVisible()) return;
    if (const auto stroke = ParseKey(key.toString())) Press(dialog, *stroke);
  }
  const QString text = line.value(QStringLiteral("text")).toString();
  for (const QChar c : text) {
    if (!alive || !alive->isVisible()) return;
    Press(dialog, KeyStroke{0, Qt::NoModifier, QString(c)});
  }
  // Several clicks in turn: a button that opens a dialog of its own (which
  // takes the next line) and then the one that confirms.
  const QJsonValue click = line.value(QStringLiteral("click"));
  QJsonArray clicks;
  if (click.isArray()) {
    clicks = click.toArray();
  } else if (!click.isUndefined()) {
    clicks.append(click);
  }
  for (const QJsonValue& which : clicks) {
    if (!alive || !alive->isVisible()) break;
    Click(dialog, which);
  }
  if (alive && alive->isVisible() && line.value(QStringLiteral("close")).toBool()) dialog.close();
}

void AppendToLog(const DialogFacts& f, const QWidget& dialog, int answer) {
  const QByteArray path = qgetenv("NORVIK50_DIALOG_LOG");
  if (path.isEmpty()) return;
  QJsonObject o;
  o[QStringLiteral("form")] = f.form;
  o[QStringLiteral("title")] = f.title;
  o[QStringLiteral("prompt")] = f.prompt;
  o[QStringLiteral("detail")] = f.detail;
  o[QStringLiteral("buttons")] = QJsonArray::fromStringList(f.buttons);
  o[QStringLiteral("default")] = f.default_button;
  o[QStringLiteral("cancel")] = f.cancel_button;
  o[QStringLiteral("symbol")] = f.symbol;
  if (f.has_value) o[QStringLiteral("value")] = f.value;
  if (!f.event.isEmpty()) o[QStringLiteral("event")] = f.event;
  if (f.has_counter) {
    o[QStringLiteral("counterVisible")] = f.counter_visible;
    o[QStringLiteral("counter")] = f.counter_value;
    o[QStringLiteral("counterMax")] = f.counter_max;
  }
  // The outer size: the client area plus the classic frame.
  o[QStringLiteral("width")] = (dialog.width() + 2 * kSizingFrame) * kTwipsPerPixel;
  o[QStringLiteral("height")] =
      (dialog.height() + kCaptionHeight + 2 * kSizingFrame) * kTwipsPerPixel;
  o[QStringLiteral("answer")] = answer;
  QFile file(QString::fromLocal8Bit(path));
  if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
    file.write(QJsonDocument(o).toJson(QJsonDocument::Compact) + '\n');
  }
}

}  // namespace

void RunModal(QDialog& dialog, const std::function<DialogFacts()>& facts,
              const std::function<int()>& answer) {
  const std::optional<QJsonObject> line = NextScriptLine();
  QTimer::singleShot(0, &dialog, [&dialog, line] {
    if (const ShownHook& hook = Hook()) hook(dialog);
    if (!line) return;
    ActOut(dialog, *line);
    if (dialog.isVisible()) dialog.close();
  });
  dialog.exec();
  AppendToLog(facts(), dialog, answer());
}

void LogWindow(const DialogFacts& facts, const QWidget& window, int answer) {
  AppendToLog(facts, window, answer);
}

void SetShownHook(ShownHook hook) { Hook() = std::move(hook); }

void RestartDialogScript() { Script() = ScriptState(); }

}  // namespace norvik50::qt
