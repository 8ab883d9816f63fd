// Fuzz target: the rich-text reader of the message box takes any text —
// unbalanced braces, endless control words, deep nesting, broken escapes —
// and ends with a document, never a crash or a hang.
#include <QGuiApplication>
#include <QTextDocument>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "dialogs/qt/rich_text_reader.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  static int argc = 1;
  static char name[] = "rich_text_fuzz";
  static char* argv[] = {name, nullptr};
  static QGuiApplication app(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Hosts pass text: one byte is one character, so every control word and
  // escape is reachable; an odd first byte reads the rest as UTF-16 to
  // reach units beyond Latin-1 and lone surrogates.
  std::u16string text;
  if (size > 0 && (data[0] & 1) != 0) {
    for (size_t i = 1; i + 1 < size; i += 2) {
      text.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
    }
  } else {
    for (size_t i = 0; i < size; ++i) text.push_back(data[i]);
  }
  QTextDocument document;
  norvik50::qt::ReadRichText(text, document);
  // The plain text can never be longer than the source's characters.
  if (document.toPlainText().size() > static_cast<qsizetype>(text.size()) + 1) std::abort();
  return 0;
}
