// Fuzz target: the rich-text reader of the message box takes any text —
// unbalanced braces, endless control words, deep nesting, broken escapes,
// texts past the length a message box shows — and ends with a document,
// never a crash or a hang. Run it with its dictionary:
//   build-fuzz/fuzz/rich_text_fuzz -dict=fuzz/rich_text.dict fuzz/corpus/rich_text
// Inputs go up to 100,000 bytes unless -max_len says otherwise: the
// quadratic cases of long paragraphs and control words only show beyond
// libFuzzer's default of 4096.
#include <QGuiApplication>
#include <QTextDocument>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "dialogs/qt/rich_text_reader.h"

namespace {

constexpr char kMaxLength[] = "-max_len=100000";

// A limit small enough that short inputs reach the cut too.
constexpr qsizetype kSmallLimit = 64;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  // libFuzzer reads its flags after this function, from the arguments as
  // left here.
  static std::vector<char*> args(*argv, *argv + *argc);
  bool given = false;
  for (const char* arg : args) given = given || std::strncmp(arg, "-max_len=", 9) == 0;
  if (!given) {
    args.push_back(const_cast<char*>(kMaxLength));
    *argc = static_cast<int>(args.size());
    args.push_back(nullptr);
    *argv = args.data();
  }
  static int qt_argc = 1;
  static char name[] = "rich_text_fuzz";
  static char* qt_argv[] = {name, nullptr};
  static QGuiApplication app(qt_argc, qt_argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Hosts pass text: one byte is one character, so every control word and
  // escape is reachable; an odd first byte reads the rest as UTF-16 to
  // reach units beyond Latin-1 and lone surrogates. The first byte's
  // second bit picks the small limit.
  std::u16string text;
  if (size > 0 && (data[0] & 1) != 0) {
    for (size_t i = 1; i + 1 < size; i += 2) {
      text.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
    }
  } else {
    for (size_t i = 0; i < size; ++i) text.push_back(data[i]);
  }
  const qsizetype limit =
      size > 0 && (data[0] & 2) != 0 ? kSmallLimit : norvik50::qt::kMaxRichTextShown;
  QTextDocument document;
  norvik50::qt::ReadRichText(text, document, limit);
  const QString plain = document.toPlainText();
  // The plain text can never be longer than the source's characters, nor
  // than the limit and its marker.
  if (plain.size() > static_cast<qsizetype>(text.size()) + 1) std::abort();
  if (plain.size() > limit + 1) std::abort();
  // Text as long as the limit and its marker was cut: the marker ends it.
  if (plain.size() == limit + 1 && !plain.endsWith(QChar(norvik50::qt::kRichTextCutMarker))) {
    std::abort();
  }
  return 0;
}
