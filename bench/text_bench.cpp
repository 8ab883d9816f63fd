// The text toolkit on whole documents: each member on a 1x text of
// 1,048,576 UTF-16 units and on a 10x text, beside the plain standard
// library doing the same work (std::u16string_view::find, a replace-all
// loop), all measured in one run. After the runs it prints, per member, the
// time ratio 10x/1x (linear work gives about 10) and the ratio to the
// anchor.
//
// Positions are 16-bit: a member reports no match past 32767 and fails on
// a count or replacement there. So the texts put every match into their
// first 32767 units and fill the rest with text that holds none; the
// members still have to read all of it to know that.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "best_time_reporter.h"
#include "norvik50/locale.h"
#include "norvik50/variant.h"
#include "text/bubble_sort.h"
#include "text/replace.h"
#include "text/replace_ext.h"
#include "text/search.h"
#include "text/signs.h"
#include "text/split.h"
#include "text/variant_values.h"

namespace {

using std::u16string;
using std::u16string_view;
using namespace norvik50;

constexpr std::size_t kUnits = 1 << 20;

// Filler words of lower-case letters without a, with blanks, punctuation and
// an even number of double quotes per sentence: no match of the searched
// terms anywhere.
u16string Filler(std::size_t size, uint32_t seed) {
  std::mt19937 rng(seed);
  const u16string_view letters = u"bcdefghijklmnopqrstuvwyz";
  u16string s;
  s.reserve(size);
  while (s.size() < size) {
    const int word = static_cast<int>(rng() % 9) + 1;
    for (int k = 0; k < word; ++k) s += letters[rng() % letters.size()];
    switch (rng() % 12) {
      case 0:
        s += u", ";
        break;
      case 1:
        s += u". ";
        break;
      case 2:
        s += u" \"quoted\" ";
        break;
      default:
        s += u' ';
    }
  }
  s.resize(size);
  return s;
}

// `piece` repeated `times`, then filler up to the scaled size; made once.
const u16string& PiecesThenFiller(u16string_view piece, int times, int scale) {
  static std::map<std::pair<u16string, int>, u16string> cache;
  u16string& s = cache[{u16string(piece), scale}];
  if (s.empty()) {
    for (int k = 0; k < times; ++k) s += piece;
    s += Filler(kUnits * scale - s.size(), 7);
  }
  return s;
}

// 20,000 single-unit matches of «a» in the first 30,000 units («aa.»
// repeated), then filler.
const u16string& ManyMatches(int scale) { return PiecesThenFiller(u"aa.", 10000, scale); }

// Filler with one «needle» at position 32000 (the far end of what a 16-bit
// search can report) and, for the last-occurrence search, one at 100.
const u16string& OneNeedle(int scale) {
  static std::map<int, u16string> cache;
  u16string& s = cache[scale];
  if (s.empty()) {
    s = Filler(kUnits * scale, 11);
    s.replace(99, 6, u"needle");
    s.replace(31999, 6, u"needle");
  }
  return s;
}

// 15,000 matches of «a» in the first 30,000 units, a third of them in
// brackets («(aa)a.» repeated), then filler.
const u16string& BracketedMatches(int scale) { return PiecesThenFiller(u"(aa)a.", 5000, scale); }

const u16string& Plain(int scale) {
  static std::map<int, u16string> cache;
  u16string& s = cache[scale];
  if (s.empty()) s = Filler(kUnits * scale, 13);
  return s;
}

int Scale(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

void SetUnits(benchmark::State& state, std::size_t units) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * units * 2));
}

// ---- find -----------------------------------------------------------------

void BM_StdFind(benchmark::State& state) {
  const u16string_view text = OneNeedle(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(text.find(u"needle", 200));
}
void BM_FindSubString(benchmark::State& state) {
  const u16string& text = OneNeedle(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(FindSubString(text, u"needle", 200, false));
}
void BM_StdFindNoMatch(benchmark::State& state) {
  const u16string_view text = Plain(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(text.find(u"needle"));
}
void BM_FindSubStringNoMatch(benchmark::State& state) {
  const u16string& text = Plain(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(FindSubString(text, u"needle", 1, false));
}
void BM_FindSubStringIgnoreCase(benchmark::State& state) {
  const u16string& text = OneNeedle(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(FindSubString(text, u"NEEDLE", 200, true));
}
void BM_FindSubStringThreeWords(benchmark::State& state) {
  const u16string& text = OneNeedle(Scale(state));
  for (auto _ : state) {
    benchmark::DoNotOptimize(FindSubString(text, u"xq|needle|bc", 200, true, true, true));
  }
}
void BM_HasSubString(benchmark::State& state) {
  const u16string& text = Plain(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(HasSubString(text, u"needle|xq"));
}
void BM_StdRfind(benchmark::State& state) {
  const u16string_view text = OneNeedle(Scale(state));
  // The occurrence at 32000 would overflow nothing, but the member must
  // still read the whole rest of the text for a later one.
  for (auto _ : state) benchmark::DoNotOptimize(text.rfind(u"needle"));
}
void BM_FindLastSubString(benchmark::State& state) {
  const u16string& text = OneNeedle(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(FindLastSubString(text, u"needle", 1, false));
}

// ---- count ----------------------------------------------------------------

void BM_StdCount(benchmark::State& state) {
  const u16string_view text = ManyMatches(Scale(state));
  for (auto _ : state) {
    int count = 0;
    for (std::size_t p = text.find(u'a'); p != u16string_view::npos; p = text.find(u'a', p + 1)) {
      ++count;
    }
    benchmark::DoNotOptimize(count);
  }
}
void BM_CountSubString(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(CountSubString(text, u"a", 1, false));
}
void BM_CountSubStringIgnoreCase(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(CountSubString(text, u"A", 1, true));
}
void BM_CountSubStringExt(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  for (auto _ : state) {
    benchmark::DoNotOptimize(CountSubStringExt(text, u"a", 1, false, u"\"\"|()"));
  }
}
void BM_IsInSigns(benchmark::State& state) {
  const u16string& text = Plain(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(IsInSigns(text, u"()", 30000, 5));
}

// ---- replace --------------------------------------------------------------

void BM_StdReplaceAll(benchmark::State& state) {
  const u16string_view text = ManyMatches(Scale(state));
  for (auto _ : state) {
    u16string out;
    out.reserve(text.size());
    std::size_t from = 0;
    for (std::size_t p = text.find(u'a'); p != u16string_view::npos; p = text.find(u'a', from)) {
      out.append(text.substr(from, p - from));
      out.append(u"b");
      from = p + 1;
    }
    out.append(text.substr(from));
    benchmark::DoNotOptimize(out.data());
  }
}
void BM_ReplaceInString(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(ReplaceInString(text, u"a", u"b"));
}
void BM_ReplaceInStringWordsAndAlternatives(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  for (auto _ : state) {
    benchmark::DoNotOptimize(ReplaceInString(text, u"q|aa|.", u"x", 1, true, false, true, true));
  }
}

// The extended replace at its defaults (no pair protects, no numeric rule),
// with the double-quote pair (the plain replace's defaults), and with every
// rule at work (two pairs and the numeric words) on a text with brackets,
// beside the plain replace on that text.
void BM_ReplaceInStringExt(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  const ExtendedReplaceRules rules;
  for (auto _ : state) benchmark::DoNotOptimize(ReplaceInStringExt(text, u"a", u"b", 1, rules));
}
void BM_ReplaceInStringExtQuotes(benchmark::State& state) {
  const u16string& text = ManyMatches(Scale(state));
  const ExtendedReplaceRules rules{.not_in_signs = u"\"\""};
  for (auto _ : state) benchmark::DoNotOptimize(ReplaceInStringExt(text, u"a", u"b", 1, rules));
}
void BM_ReplaceInStringBracketed(benchmark::State& state) {
  const u16string& text = BracketedMatches(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(ReplaceInString(text, u"a", u"b"));
}
void BM_ReplaceInStringExtAllRules(benchmark::State& state) {
  const u16string& text = BracketedMatches(Scale(state));
  const ExtendedReplaceRules rules{.not_numeric = true, .not_in_signs = u"\"\"|()"};
  for (auto _ : state) benchmark::DoNotOptimize(ReplaceInStringExt(text, u"a", u"b", 1, rules));
}

// ---- cut and splice -------------------------------------------------------

void BM_GetSubString(benchmark::State& state) {
  const u16string& text = OneNeedle(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(GetSubString(text, u"needle", u"", 1, false));
}
void BM_SeparateString(benchmark::State& state) {
  const u16string& text = OneNeedle(Scale(state));
  u16string before, term, after;
  for (auto _ : state) {
    SeparateString(text, u"needle", before, term, after);
    benchmark::DoNotOptimize(after.data());
  }
}
void BM_StdCopy(benchmark::State& state) {
  const u16string& text = Plain(Scale(state));
  for (auto _ : state) {
    u16string copy(text);
    benchmark::DoNotOptimize(copy.data());
  }
}
void BM_MidLet(benchmark::State& state) {
  u16string s = Plain(Scale(state));
  // Two splices per round that change the length and back, so each moves
  // the rest of the text.
  for (auto _ : state) {
    MidLet(s, 1000, 5, u"spliced");
    MidLet(s, 1000, 7, u"bcdef");
    benchmark::DoNotOptimize(s.data());
  }
}

// ---- lists ----------------------------------------------------------------

Variant NumberList(int scale) {
  std::vector<Variant> items;
  for (int k = 0; k < 100000 * scale; ++k) items.emplace_back(static_cast<double>(k));
  return Variant(SafeArray(0, std::move(items)));
}
void BM_IsInList(benchmark::State& state) {
  const Variant list = NumberList(Scale(state));
  for (auto _ : state) benchmark::DoNotOptimize(IsInList(Variant(-1.0), list));
}
void BM_BubbleSort(benchmark::State& state) {
  // 16-bit bounds: 3,000 and 30,000 elements.
  std::mt19937 rng(5);
  std::vector<Variant> items;
  for (int k = 0; k < 3000 * Scale(state); ++k) {
    u16string word;
    for (int c = 0; c < 8; ++c) word += static_cast<char16_t>(u'a' + rng() % 26);
    if (k % 3 == 0) word[0] = static_cast<char16_t>(word[0] - 32);
    items.emplace_back(word);
  }
  const SafeArray original(0, std::move(items), VarType::kString);
  for (auto _ : state) {
    SafeArray list = original;
    BubbleSort(list);
    benchmark::DoNotOptimize(list.items().data());
  }
}

#define TEXT_BENCH(fn) BENCHMARK(fn)->Arg(1)->Arg(10)->Unit(benchmark::kMicrosecond)
TEXT_BENCH(BM_StdFind);
TEXT_BENCH(BM_FindSubString);
TEXT_BENCH(BM_StdFindNoMatch);
TEXT_BENCH(BM_FindSubStringNoMatch);
TEXT_BENCH(BM_FindSubStringIgnoreCase);
TEXT_BENCH(BM_FindSubStringThreeWords);
TEXT_BENCH(BM_HasSubString);
TEXT_BENCH(BM_StdRfind);
TEXT_BENCH(BM_FindLastSubString);
TEXT_BENCH(BM_StdCount);
TEXT_BENCH(BM_CountSubString);
TEXT_BENCH(BM_CountSubStringIgnoreCase);
TEXT_BENCH(BM_CountSubStringExt);
TEXT_BENCH(BM_IsInSigns);
TEXT_BENCH(BM_StdReplaceAll);
TEXT_BENCH(BM_ReplaceInString);
TEXT_BENCH(BM_ReplaceInStringWordsAndAlternatives);
TEXT_BENCH(BM_ReplaceInStringExt);
TEXT_BENCH(BM_ReplaceInStringExtQuotes);
TEXT_BENCH(BM_ReplaceInStringBracketed);
TEXT_BENCH(BM_ReplaceInStringExtAllRules);
TEXT_BENCH(BM_StdCopy);
TEXT_BENCH(BM_GetSubString);
TEXT_BENCH(BM_SeparateString);
TEXT_BENCH(BM_MidLet);
TEXT_BENCH(BM_IsInList);
TEXT_BENCH(BM_BubbleSort);

// CPU time per call in microseconds of `name` at `scale` (1x or 10x the
// text); the runs report aggregates only, so this is the median of five.
double Micros(const norvik50::bench::BestTimeReporter& r, const std::string& name, int scale) {
  return r.Ns(name + "/" + std::to_string(scale)) / 1e3;
}

void PrintSummary(const norvik50::bench::BestTimeReporter& r) {
  struct Row {
    const char* member;
    const char* bench;
    const char* anchor;  // nullptr: none
    const char* target;
  };
  const Row rows[] = {
      {"tklFindSubString, 1 alternative", "BM_FindSubString", "BM_StdFind", "<= 2x find"},
      {"tklFindSubString, no match", "BM_FindSubStringNoMatch", "BM_StdFindNoMatch", ""},
      {"tklFindSubString, ignore case", "BM_FindSubStringIgnoreCase", "BM_StdFind", ""},
      {"tklFindSubString, 3 words", "BM_FindSubStringThreeWords", "BM_StdFind", ""},
      {"tklHasSubString, no match", "BM_HasSubString", "BM_StdFindNoMatch", ""},
      {"tklFindLastSubString", "BM_FindLastSubString", "BM_StdRfind", ""},
      {"tklCountSubString", "BM_CountSubString", "BM_StdCount", ""},
      {"tklCountSubString, ignore case", "BM_CountSubStringIgnoreCase", "BM_StdCount", ""},
      {"tklCountSubStringExt, 2 pairs", "BM_CountSubStringExt", "BM_StdCount", ""},
      {"tklIsInSigns", "BM_IsInSigns", nullptr, ""},
      {"tklReplaceInString, 20000 matches", "BM_ReplaceInString", "BM_StdReplaceAll", "<= 3x loop"},
      {"tklReplaceInString, words+alternatives", "BM_ReplaceInStringWordsAndAlternatives",
       "BM_StdReplaceAll", ""},
      {"tklReplaceInStringExt, defaults", "BM_ReplaceInStringExt", "BM_ReplaceInString",
       "<= 1.2x replace"},
      {"tklReplaceInStringExt, \"\" pair", "BM_ReplaceInStringExtQuotes", "BM_ReplaceInString", ""},
      {"tklReplaceInString, bracketed text", "BM_ReplaceInStringBracketed", "BM_StdReplaceAll", ""},
      {"tklReplaceInStringExt, 2 pairs+numbers", "BM_ReplaceInStringExtAllRules",
       "BM_ReplaceInStringBracketed", "bracketed text"},
      {"tklGetSubString (copies the rest)", "BM_GetSubString", "BM_StdCopy", ""},
      {"tklSeparateString (copies the rest)", "BM_SeparateString", "BM_StdCopy", ""},
      {"tklMid let, 2 splices", "BM_MidLet", "BM_StdCopy", ""},
      {"tklIsInList (100k elements)", "BM_IsInList", nullptr, ""},
      {"tklBubbleSort (3000 elements)", "BM_BubbleSort", nullptr, ""},
      {"std::u16string_view::find", "BM_StdFind", nullptr, ""},
      {"std::u16string_view::find, no match", "BM_StdFindNoMatch", nullptr, ""},
      {"plain replace-all loop", "BM_StdReplaceAll", nullptr, ""},
      {"std::u16string copy", "BM_StdCopy", nullptr, ""},
  };
  std::printf("\n1x = %zu UTF-16 units; CPU time per call in microseconds\n", kUnits);
  std::printf("%-40s %10s %10s %8s %10s %8s  %s\n", "member", "1x", "10x", "10x/1x", "anchor 1x",
              "ratio", "target");
  for (const Row& row : rows) {
    const double one = Micros(r, row.bench, 1);
    const double ten = Micros(r, row.bench, 10);
    const double anchor = row.anchor != nullptr ? Micros(r, row.anchor, 1) : 0.0;
    std::printf("%-40s %10.1f %10.1f %7.2fx", row.member, one, ten, one > 0 ? ten / one : 0.0);
    if (anchor > 0) {
      std::printf(" %10.1f %7.2fx", anchor, one / anchor);
    } else {
      std::printf(" %10s %8s", "-", "-");
    }
    std::printf("  %s\n", row.target);
  }
}

}  // namespace

int main(int argc, char** argv) {
  SetCurrentLocale("en-US");
  // Medians of five runs by default: the machine may be busy with other
  // work. Flags given on the command line come later and win.
  std::vector<char*> args{argv[0]};
  char repetitions[] = "--benchmark_repetitions=5";
  char aggregates[] = "--benchmark_report_aggregates_only=true";
  char min_time[] = "--benchmark_min_time=0.2";
  args.insert(args.end(), {repetitions, aggregates, min_time});
  args.insert(args.end(), argv + 1, argv + argc);
  argc = static_cast<int>(args.size());
  argv = args.data();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  norvik50::bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  PrintSummary(reporter);
  benchmark::Shutdown();
  return 0;
}
