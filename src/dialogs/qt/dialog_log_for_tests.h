// Test support: the dialog log read back, one JSON object per dialog.
#ifndef NORVIK50_SRC_DIALOGS_QT_DIALOG_LOG_FOR_TESTS_H_
#define NORVIK50_SRC_DIALOGS_QT_DIALOG_LOG_FOR_TESTS_H_

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

// Failed comparisons of QStrings print their text, not their bytes.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }

namespace norvik50::qt::testing {

inline std::vector<QJsonObject> ReadDialogLog(const std::string& path) {
  std::vector<QJsonObject> lines;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
  }
  return lines;
}

inline QStringList LoggedButtons(const QJsonObject& entry) {
  return entry.value(QStringLiteral("buttons")).toVariant().toStringList();
}

}  // namespace norvik50::qt::testing

#endif  // NORVIK50_SRC_DIALOGS_QT_DIALOG_LOG_FOR_TESTS_H_
