// The rich-text reader's cost must grow with the text, not with its
// square: a message box takes whatever a host sends. Measured in one run
// on the offscreen platform, each kind of text at 10,000, 100,000 and
// 1,000,000 source characters, read without the message box's limit into
// a document that is then laid out at the message area's width:
//  - the growth for ten times the text (linear work gives about 10;
//    target <= 12 for each step);
//  - the reader against the anchor, Qt setting the same text as plain
//    text into the same kind of document and laying it out (information:
//    what the markup costs on top of Qt's own work), and the anchor's own
//    growth from 100k to 1M: Qt's document is a little worse than linear
//    there (its block tree, the caches), and the reader cannot do better
//    than the document it fills.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QTextDocument>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "best_time_reporter.h"
#include "dialogs/qt/rich_text_reader.h"

namespace {

// The message area of the designed message box is about this wide.
constexpr double kTextWidth = 320;

struct Kind {
  const char* name;
  std::u16string_view piece;  // repeated to the size
};

// What a host's long message is made of; the last is one control word of
// the whole size, which shows nothing.
const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds = {
      {"words", u"Wort "},
      {"lines", u"Zeile\\line "},
      {"escapes", u"ge\\'e4ndert "},
      {"toggles", u"\\b fett\\b0  normal "},
      {"paragraphs", u"Absatz\\par "},
      {"control_word", u"q"},
  };
  return kinds;
}

std::u16string Source(const Kind& kind, int64_t size) {
  std::u16string text = kind.name == std::string("control_word") ? u"\\" : u"";
  while (static_cast<int64_t>(text.size()) < size) text += kind.piece;
  return text;
}

void LayOut(QTextDocument& document) {
  document.setTextWidth(kTextWidth);
  benchmark::DoNotOptimize(document.documentLayout()->documentSize());
}

void ReadAndLayOut(benchmark::State& state, const Kind& kind) {
  const std::u16string source = Source(kind, state.range(0));
  for (auto _ : state) {
    QTextDocument document;
    norvik50::qt::ReadRichText(source, document, std::numeric_limits<qsizetype>::max());
    LayOut(document);
  }
}

// The anchor: the text the reader shows, set by Qt as plain text.
void PlainAndLayOut(benchmark::State& state, const Kind& kind) {
  QString shown;
  {
    QTextDocument document;
    norvik50::qt::ReadRichText(Source(kind, state.range(0)), document,
                               std::numeric_limits<qsizetype>::max());
    shown = document.toRawText();  // line and paragraph separators as they are
  }
  for (auto _ : state) {
    QTextDocument document;
    document.setPlainText(shown);
    LayOut(document);
  }
}

constexpr int64_t kSizes[] = {10'000, 100'000, 1'000'000};

void Register() {
  for (const Kind& kind : Kinds()) {
    for (const auto& [prefix, fn] : {std::pair{"BM_ReadRichText/", &ReadAndLayOut},
                                     std::pair{"BM_SetPlainText/", &PlainAndLayOut}}) {
      auto* b = benchmark::RegisterBenchmark((prefix + std::string(kind.name)).c_str(), fn, kind);
      for (const int64_t size : kSizes) b->Arg(size);
      b->ArgName("chars")->Unit(benchmark::kMillisecond)->Repetitions(3);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int qargc = 1;
  static char name[] = "rich_text_bench";
  static char* qargv[] = {name, nullptr};
  QApplication app(qargc, qargv);
  Register();
  benchmark::Initialize(&argc, argv);
  norvik50::bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf(
      "\nGrowth for 10x the text (CPU time; target <= 12) and the reader against\n"
      "Qt setting the shown text as plain text (anchor, at 1M)\n");
  for (const Kind& kind : Kinds()) {
    const std::string read = std::string("BM_ReadRichText/") + kind.name + "/";
    const std::string plain = std::string("BM_SetPlainText/") + kind.name + "/";
    const double first = reporter.Ratio(read + "100000", read + "10000");
    const double second = reporter.Ratio(read + "1000000", read + "100000");
    const double anchor = reporter.Ratio(read + "1000000", plain + "1000000");
    const double anchor_growth = reporter.Ratio(plain + "1000000", plain + "100000");
    if (first > 0 && second > 0) {
      std::printf("%-14s 100k/10k = %5.1f  1M/100k = %5.1f", kind.name, first, second);
      // One control word shows nothing: there is no text to compare with.
      if (kind.piece.size() > 1) {
        std::printf("  reader/anchor = %5.2f (anchor 1M/100k = %5.1f)", anchor, anchor_growth);
      }
      std::printf("\n");
    }
  }
  benchmark::Shutdown();
  return 0;
}
