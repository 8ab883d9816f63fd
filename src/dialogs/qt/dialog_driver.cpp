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
#include <memory>
#include <optional>
#include <vector>

namespace norvik50::qt {
namespace {

// One line of the dialog script: the steps it acts out in order, and
// what was wrong with the line itself.
struct ScriptLine {
  std::vector<QJsonObject> steps;
  QStringList problems;
};

struct ScriptState {
  bool loaded = false;
  std::vector<ScriptLine> lines;
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

// A line is one object (one step) or a list of objects (steps in order).
// Anything else acts out nothing, and says so in the dialog's log entry.
ScriptLine ReadScriptLine(const QByteArray& text) {
  ScriptLine line;
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(text, &error);
  if (document.isObject()) {
    line.steps.push_back(document.object());
  } else if (document.isArray()) {
    const QJsonArray steps = document.array();
    for (qsizetype i = 0; i < steps.size(); ++i) {
      if (steps.at(i).isObject()) {
        line.steps.push_back(steps.at(i).toObject());
      } else {
        line.problems
            << QStringLiteral("step %1 of the script line is not an object; skipped").arg(i + 1);
      }
    }
  } else {
    line.problems << QStringLiteral(
                         "the script line is neither an object nor a list of objects (%1)")
                         .arg(error.errorString());
  }
  return line;
}

// The next line of the dialog script; nullopt when there is no script.
// A line without steps when the script is used up (the dialog then closes
// at once, so nothing ever waits for a person).
std::optional<ScriptLine> NextScriptLine() {
  const QByteArray path = qgetenv("NORVIK50_DIALOG_SCRIPT");
  if (path.isEmpty()) return std::nullopt;
  ScriptState& s = Script();
  if (!s.loaded) {
    s.loaded = true;
    QFile file(QString::fromLocal8Bit(path));
    if (file.open(QIODevice::ReadOnly)) {
      for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.trimmed().isEmpty()) continue;
        s.lines.push_back(ReadScriptLine(line));
      }
    }
  }
  if (s.next >= s.lines.size()) return ScriptLine();
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

// A short form of a step's value for a warning.
QString Shown(const QJsonValue& value) {
  if (value.isString()) return QStringLiteral("\"%1\"").arg(value.toString());
  if (value.isDouble()) return QString::number(value.toDouble());
  return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact))
      .mid(1)
      .chopped(1);
}

// Acts out one step: its "path", "keys", "text", "click" and "close", in
// that order. False when the dialog closed before the step was done; what
// was left undone goes to `warnings`, since a step whose keys confirm a
// form before its text is typed answers with an empty field, silently.
bool ActOutStep(QDialog& dialog, const QJsonObject& step, QStringList& warnings) {
  QPointer<QDialog> alive(&dialog);
  const auto closed = [&] { return !alive || !alive->isVisible(); };
  if (auto* target = dynamic_cast<PathTarget*>(&dialog); target && step.contains("path")) {
    const QJsonValue path = step.value(QStringLiteral("path"));
    QStringList paths;
    if (path.isArray()) {
      for (const QJsonValue& p : path.toArray()) paths << p.toString();
    } else {
      paths << path.toString();
    }
    target->GoToPaths(paths);
  }
  const QJsonArray keys = step.value(QStringLiteral("keys")).toArray();
  for (qsizetype i = 0; i < keys.size(); ++i) {
    if (closed()) {
      warnings << QStringLiteral("the dialog closed before the key %1 was pressed")
                      .arg(Shown(keys.at(i)));
      return false;
    }
    if (const auto stroke = ParseKey(keys.at(i).toString())) Press(dialog, *stroke);
  }
  const QString text = step.value(QStringLiteral("text")).toString();
  if (!text.isEmpty() && closed()) {
    warnings << QStringLiteral(
                    "the keys closed the dialog before the text \"%1\" was typed (the keys of "
                    "a line come first; a list of steps types first: [{\"text\":...},"
                    "{\"keys\":[...]}])")
                    .arg(text);
    return false;
  }
  for (const QChar c : text) {
    if (closed()) return false;
    Press(dialog, KeyStroke{0, Qt::NoModifier, QString(c)});
  }
  // Several clicks in turn: a button that opens a dialog of its own (which
  // takes the next line) and then the one that confirms.
  const QJsonValue click = step.value(QStringLiteral("click"));
  QJsonArray clicks;
  if (click.isArray()) {
    clicks = click.toArray();
  } else if (!click.isUndefined()) {
    clicks.append(click);
  }
  for (const QJsonValue& which : clicks) {
    if (closed()) {
      warnings << QStringLiteral("the dialog closed before the click on %1").arg(Shown(which));
      return false;
    }
    Click(dialog, which);
  }
  if (!closed() && step.value(QStringLiteral("close")).toBool()) dialog.close();
  return true;
}

// Acts out the steps of a line in order, until the dialog closes.
void ActOut(QDialog& dialog, const ScriptLine& line, QStringList& warnings) {
  warnings << line.problems;
  QPointer<QDialog> alive(&dialog);
  for (std::size_t i = 0; i < line.steps.size(); ++i) {
    if (!alive || !alive->isVisible()) {
      warnings << QStringLiteral("the dialog closed before step %1 of its script line").arg(i + 1);
      return;
    }
    if (!ActOutStep(dialog, line.steps[i], warnings)) return;
  }
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
  if (!f.warnings.isEmpty()) o[QStringLiteral("warnings")] = QJsonArray::fromStringList(f.warnings);
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
  const std::optional<ScriptLine> line = NextScriptLine();
  const auto warnings = std::make_shared<QStringList>();
  QTimer::singleShot(0, &dialog, [&dialog, line, warnings] {
    if (const ShownHook& hook = Hook()) hook(dialog);
    if (!line) return;
    ActOut(dialog, *line, *warnings);
    if (dialog.isVisible()) dialog.close();
  });
  dialog.exec();
  DialogFacts f = facts();
  f.warnings << *warnings;
  AppendToLog(f, dialog, answer());
}

void LogWindow(const DialogFacts& facts, const QWidget& window, int answer) {
  AppendToLog(facts, window, answer);
}

void SetShownHook(ShownHook hook) { Hook() = std::move(hook); }

void RestartDialogScript() { Script() = ScriptState(); }

}  // namespace norvik50::qt
