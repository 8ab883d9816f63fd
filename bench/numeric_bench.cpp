// Number reading and the Format engine against the standard library,
// measured in the same run:
//  - tklVal and ConvertToType (text to Double) on a million short numeric
//    texts in German and in English, against std::from_chars on the same
//    numbers written in plain ASCII ("1234.56"); target within 4x;
//  - the Format engine with "#,##0.00" and "0.00" on a million Doubles,
//    against snprintf("%.2f") into a std::string (a caller gets a string
//    either way); target within 2x;
//  - tklVal on texts full of decimal separators, 10,000 and 100,000
//    characters: growth for ten times the text, target <= 12x;
//  - tklReplaceDecimalChars on a German filter text of 1,000 and 10,000
//    characters: growth for ten times the text, target <= 12x;
//  - ConvertToType text to Date and Double to String against the former
//    code for the same conversions (bench/conversion_anchors.h); target
//    within 1.5x.
// The summary prints the best of the repetitions (nanoseconds per item),
// which is the least disturbed by other work on the machine, and the ratios.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "best_time_reporter.h"
#include "conversion_anchors.h"
#include "norvik50/locale.h"
#include "norvik50/variant.h"
#include "numeric/convert_to_type.h"
#include "numeric/decimal_chars.h"
#include "numeric/format.h"
#include "numeric/numeric_text.h"

namespace {

using norvik50::Variant;

constexpr std::size_t kCount = 1000000;

// Amounts as business texts carry them: up to a million, two places, a
// share of them negative, some with grouping.
const std::vector<double>& Numbers() {
  static const std::vector<double> numbers = [] {
    std::mt19937_64 rng(20240305);
    std::vector<double> out(kCount);
    for (double& v : out) {
      const int64_t cents = static_cast<int64_t>(rng() % 100000000) - 5000000;
      v = static_cast<double>(cents) / 100;
    }
    return out;
  }();
  return numbers;
}

std::string Plain(double v) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.2f", v);
  return buffer;
}

// The same numbers as texts of a locale: every third one grouped.
std::vector<std::u16string> Texts(bool german) {
  std::vector<std::u16string> out;
  out.reserve(kCount);
  std::size_t i = 0;
  for (double v : Numbers()) {
    std::string s = Plain(v);
    const std::size_t point = s.find('.');
    std::u16string text;
    const std::size_t first_digit = s[0] == '-' ? 1 : 0;
    for (std::size_t k = 0; k < s.size(); ++k) {
      const char c = s[k];
      if (c == '.') {
        text.push_back(german ? u',' : u'.');
        continue;
      }
      text.push_back(static_cast<char16_t>(c));
      const std::size_t left = point - k - 1;  // digits still before the point
      if (i % 3 == 0 && k >= first_digit && k < point && left > 0 && left % 3 == 0) {
        text.push_back(german ? u'.' : u',');
      }
    }
    out.push_back(std::move(text));
    ++i;
  }
  return out;
}

const std::vector<std::u16string>& TextsOf(int64_t german) {
  static const std::vector<std::u16string> de = Texts(true), en = Texts(false);
  return german ? de : en;
}

const char* Tag(int64_t german) { return german ? "de-DE" : "en-US"; }

void Finish(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kCount));
}

void BM_FromChars(benchmark::State& state) {
  std::vector<std::string> texts;
  texts.reserve(kCount);
  for (double v : Numbers()) texts.push_back(Plain(v));
  for (auto _ : state) {
    double sum = 0;
    for (const std::string& t : texts) {
      double v = 0;
      std::from_chars(t.data(), t.data() + t.size(), v);
      sum += v;
    }
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void BM_TklVal(benchmark::State& state) {
  norvik50::SetCurrentLocale(Tag(state.range(0)));
  const auto& texts = TextsOf(state.range(0));
  if (norvik50::Val(texts[0]) != Numbers()[0]) state.SkipWithError("tklVal misread");
  for (auto _ : state) {
    double sum = 0;
    for (const std::u16string& t : texts) sum += norvik50::Val(t);
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

// tklVal on a text full of decimal separators ("1,2,3,4,..." in German),
// 10,000 and 100,000 characters: each removed separator once cost a copy of
// the rest of the text, so ten times the text took a hundred times as long.
void BM_TklValManySeparators(benchmark::State& state) {
  norvik50::SetCurrentLocale("de-DE");
  std::u16string text;
  while (text.size() < static_cast<std::size_t>(state.range(0))) {
    text += static_cast<char16_t>(u'1' + text.size() / 2 % 9);
    text += u',';
  }
  for (auto _ : state) benchmark::DoNotOptimize(norvik50::Val(text));
}

// tklReplaceDecimalChars on a filter of German amounts, counts and quoted
// literals, 1,000 and 10,000 characters (the 16-bit positions stop a text
// at 32,767). Each number once cost a count of the quotes before it and a
// copy of the whole text.
void BM_ReplaceDecimalChars(benchmark::State& state) {
  norvik50::SetCurrentLocale("de-DE");
  std::u16string text;
  for (int k = 0; text.size() < static_cast<std::size_t>(state.range(0)); ++k) {
    text += u"(Betrag > 1.234,5" + std::u16string(1, static_cast<char16_t>(u'0' + k % 10)) +
            u") AND Menge = " + std::u16string(1, static_cast<char16_t>(u'1' + k % 9)) +
            u" AND Name <> \"Los 1,5\"; ";
  }
  text.resize(static_cast<std::size_t>(state.range(0)));
  if (norvik50::ReplaceDecimalChars(u"x > 1.234,5 ", true) != u"x > 1234.5 ") {
    state.SkipWithError("tklReplaceDecimalChars misread");
  }
  for (auto _ : state) benchmark::DoNotOptimize(norvik50::ReplaceDecimalChars(text, true));
}

// The same with a Format call in every clause: each call's pattern is
// rewritten and the call rebuilt with ") ".
void BM_ReplaceDecimalCharsFormatCalls(benchmark::State& state) {
  norvik50::SetCurrentLocale("de-DE");
  std::u16string text;
  for (int k = 0; text.size() < static_cast<std::size_t>(state.range(0)); ++k) {
    text += u"Format(Betrag, \"#,##0.00\") > 1.234," +
            std::u16string(1, static_cast<char16_t>(u'0' + k % 10)) + u" OR ";
  }
  text.resize(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(norvik50::ReplaceDecimalChars(text, true));
}

void BM_ConvertToDouble(benchmark::State& state) {
  norvik50::SetCurrentLocale(Tag(state.range(0)));
  std::vector<Variant> values;
  values.reserve(kCount);
  for (const std::u16string& t : TextsOf(state.range(0))) values.emplace_back(t);
  if (norvik50::ConvertToType(5, values[0]).as_double() != Numbers()[0]) {
    state.SkipWithError("ConvertToType misread");
  }
  for (auto _ : state) {
    double sum = 0;
    for (const Variant& v : values) sum += norvik50::ConvertToType(5, v).as_double();
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void BM_Snprintf(benchmark::State& state) {
  for (auto _ : state) {
    std::size_t total = 0;
    for (double v : Numbers()) {
      char buffer[48];
      const int n = std::snprintf(buffer, sizeof buffer, "%.2f", v);
      std::string text(buffer, static_cast<std::size_t>(n));
      total += text.size();
    }
    benchmark::DoNotOptimize(total);
  }
  Finish(state);
}

void BM_Format(benchmark::State& state) {
  norvik50::SetCurrentLocale("de-DE");
  const std::u16string_view pattern = state.range(0) ? u"#,##0.00" : u"0.00";
  std::vector<Variant> values(Numbers().begin(), Numbers().end());
  for (auto _ : state) {
    std::size_t total = 0;
    for (const Variant& v : values) total += norvik50::FormatValue(v, pattern).size();
    benchmark::DoNotOptimize(total);
  }
  Finish(state);
}

// Dates as business texts carry them in each locale: dates alone, with a
// time, times alone, month names and ISO.
const std::vector<std::u16string>& DateTextsOf(int64_t german) {
  static const auto make = [](bool de) {
    std::mt19937_64 rng(19991231);
    std::vector<std::u16string> out;
    out.reserve(kCount);
    char text[64];
    static const char* const kMonths[] = {"January",   "February", "March",    "April",
                                          "May",       "June",     "July",     "August",
                                          "September", "October",  "November", "December"};
    for (std::size_t i = 0; i < kCount; ++i) {
      const int d = static_cast<int>(rng() % 28) + 1, m = static_cast<int>(rng() % 12) + 1;
      const int y = 1950 + static_cast<int>(rng() % 80);
      const int h = static_cast<int>(rng() % 24), n = static_cast<int>(rng() % 60);
      switch (i % 5) {
        case 0:
          std::snprintf(text, sizeof text, de ? "%02d.%02d.%d" : "%d/%d/%d", de ? d : m, de ? m : d,
                        y);
          break;
        case 1:
          std::snprintf(text, sizeof text,
                        de ? "%d.%d.%d %02d:%02d:%02d" : "%d/%d/%d %d:%02d:%02d %s", de ? d : m,
                        de ? m : d, y, de ? h : (h % 12 == 0 ? 12 : h % 12), n, n,
                        de ? "" : (h < 12 ? "AM" : "PM"));
          break;
        case 2:
          std::snprintf(text, sizeof text, "%d:%02d", h, n);
          break;
        case 3:
          std::snprintf(text, sizeof text, "%s %d, %d", kMonths[m - 1], d, y);
          break;
        default:
          std::snprintf(text, sizeof text, "%d-%02d-%02d", y, m, d);
          break;
      }
      std::string s(text);
      while (!s.empty() && s.back() == ' ') s.pop_back();
      out.emplace_back(s.begin(), s.end());
    }
    return out;
  };
  static const std::vector<std::u16string> de = make(true), en = make(false);
  return german ? de : en;
}

// Doubles to write: half of them amounts, half full-precision values over
// a wide range of magnitudes.
const std::vector<double>& DoublesToWrite() {
  static const std::vector<double> values = [] {
    std::mt19937_64 rng(1234567);
    std::vector<double> out(Numbers());
    for (std::size_t i = 1; i < out.size(); i += 2) {
      const double unit = static_cast<double>(rng() >> 11) / 9007199254740992.0;
      out[i] = unit * std::pow(10.0, static_cast<int>(rng() % 30) - 12);
    }
    return out;
  }();
  return values;
}

void BM_DateAnchor(benchmark::State& state) {
  norvik50::SetCurrentLocale(Tag(state.range(0)));
  std::vector<Variant> values(DateTextsOf(state.range(0)).begin(),
                              DateTextsOf(state.range(0)).end());
  const norvik50::Locale& locale = norvik50::CurrentLocale();
  for (auto _ : state) {
    double sum = 0;
    for (const Variant& v : values) {
      const auto d = norvik50::anchor::ParseDateText(v.as_string(), locale);
      sum += Variant(d ? *d : norvik50::Date{}).as_date().serial;
    }
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void BM_ConvertToDate(benchmark::State& state) {
  norvik50::SetCurrentLocale(Tag(state.range(0)));
  std::vector<Variant> values(DateTextsOf(state.range(0)).begin(),
                              DateTextsOf(state.range(0)).end());
  if (norvik50::ConvertToType(7, Variant(u"2024-03-05")).as_date().serial != 45356) {
    state.SkipWithError("ConvertToType misread a date");
  }
  for (auto _ : state) {
    double sum = 0;
    for (const Variant& v : values) sum += norvik50::ConvertToType(7, v).as_date().serial;
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void BM_DoubleTextAnchor(benchmark::State& state) {
  norvik50::SetCurrentLocale("de-DE");
  const char16_t decimal = norvik50::CurrentLocale().decimal;
  std::vector<Variant> values(DoublesToWrite().begin(), DoublesToWrite().end());
  for (auto _ : state) {
    std::size_t total = 0;
    for (const Variant& v : values) {
      total += Variant(norvik50::anchor::DoubleToText(v.as_double(), decimal)).as_string().size();
    }
    benchmark::DoNotOptimize(total);
  }
  Finish(state);
}

void BM_ConvertToString(benchmark::State& state) {
  norvik50::SetCurrentLocale("de-DE");
  std::vector<Variant> values(DoublesToWrite().begin(), DoublesToWrite().end());
  for (auto _ : state) {
    std::size_t total = 0;
    for (const Variant& v : values) total += norvik50::ConvertToType(8, v).as_string().size();
    benchmark::DoNotOptimize(total);
  }
  Finish(state);
}

#define NORVIK50_NUMERIC_BENCH(fn) \
  BENCHMARK(fn)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3)->MinTime(0.2)
NORVIK50_NUMERIC_BENCH(BM_FromChars);
NORVIK50_NUMERIC_BENCH(BM_TklVal)->ArgName("german")->Arg(1)->Arg(0);
NORVIK50_NUMERIC_BENCH(BM_ConvertToDouble)->ArgName("german")->Arg(1)->Arg(0);
NORVIK50_NUMERIC_BENCH(BM_TklValManySeparators)->ArgName("chars")->Arg(10000)->Arg(100000);
NORVIK50_NUMERIC_BENCH(BM_ReplaceDecimalChars)->ArgName("chars")->Arg(1000)->Arg(10000);
NORVIK50_NUMERIC_BENCH(BM_ReplaceDecimalCharsFormatCalls)->ArgName("chars")->Arg(1000)->Arg(10000);
NORVIK50_NUMERIC_BENCH(BM_Snprintf);
NORVIK50_NUMERIC_BENCH(BM_Format)->ArgName("grouped")->Arg(1)->Arg(0);
NORVIK50_NUMERIC_BENCH(BM_DateAnchor)->ArgName("german")->Arg(1)->Arg(0);
NORVIK50_NUMERIC_BENCH(BM_ConvertToDate)->ArgName("german")->Arg(1)->Arg(0);
NORVIK50_NUMERIC_BENCH(BM_DoubleTextAnchor);
NORVIK50_NUMERIC_BENCH(BM_ConvertToString);

// The best time per item of each benchmark over its repetitions, in
// nanoseconds (a pass converts kCount items).
class PerItem {
 public:
  explicit PerItem(const norvik50::bench::BestTimeReporter& r) : r_(r) {}
  double Ns(const std::string& name) const { return r_.Ns(name) / kCount; }

 private:
  const norvik50::bench::BestTimeReporter& r_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  norvik50::bench::BestTimeReporter best(norvik50::bench::BestTimeReporter::Clock::kReal);
  benchmark::RunSpecifiedBenchmarks(&best);
  const PerItem reporter(best);
  const double from_chars = reporter.Ns("BM_FromChars");
  const double snprintf_ns = reporter.Ns("BM_Snprintf");
  std::printf("\nSummary (best of repetitions, ns per item; ratio to the anchor)\n");
  std::printf("  std::from_chars              %7.1f\n", from_chars);
  for (const char* locale : {"1", "0"}) {
    const char* name = locale[0] == '1' ? "de-DE" : "en-US";
    const double val = reporter.Ns(std::string("BM_TklVal/") + locale);
    const double convert = reporter.Ns(std::string("BM_ConvertToDouble/") + locale);
    std::printf("  tklVal %s              %7.1f  %5.2fx from_chars (target <= 4)\n", name, val,
                val / from_chars);
    std::printf("  ConvertToType %s       %7.1f  %5.2fx from_chars (target <= 4)\n", name, convert,
                convert / from_chars);
  }
  std::printf("  snprintf %%.2f               %7.1f\n", snprintf_ns);
  for (const char* grouped : {"1", "0"}) {
    const double format = reporter.Ns(std::string("BM_Format/") + grouped);
    std::printf("  Format \"%s\" %*s%7.1f  %5.2fx snprintf (target <= 2)\n",
                grouped[0] == '1' ? "#,##0.00" : "0.00", grouped[0] == '1' ? 7 : 11, "", format,
                format / snprintf_ns);
  }
  for (const char* locale : {"1", "0"}) {
    const char* name = locale[0] == '1' ? "de-DE" : "en-US";
    const double anchor = reporter.Ns(std::string("BM_DateAnchor/") + locale);
    const double date = reporter.Ns(std::string("BM_ConvertToDate/") + locale);
    std::printf("  text->Date former %s       %7.1f\n", name, anchor);
    std::printf("  ConvertToType 7 %s         %7.1f  %5.2fx former (target <= 1.5)\n", name, date,
                date / anchor);
  }
  const double separators_10k = reporter.Ns("BM_TklValManySeparators/10000");
  const double separators_100k = reporter.Ns("BM_TklValManySeparators/100000");
  if (separators_10k > 0) {
    std::printf(
        "  tklVal, a separator every 2nd character: 100k chars take %.1fx 10k chars "
        "(target <= 12x)\n",
        separators_100k / separators_10k);
  }
  for (const auto& [name, text] :
       {std::pair{"BM_ReplaceDecimalChars", "a filter text"},
        std::pair{"BM_ReplaceDecimalCharsFormatCalls", "a Format call per clause"}}) {
    if (const double at_1k = best.Ns(std::string(name) + "/1000"); at_1k > 0) {
      std::printf("  tklReplaceDecimalChars, %s: 10k chars take %.1fx 1k chars (target <= 12x)\n",
                  text, best.Ns(std::string(name) + "/10000") / at_1k);
    }
  }
  const double text_anchor = reporter.Ns("BM_DoubleTextAnchor");
  const double text = reporter.Ns("BM_ConvertToString");
  std::printf("  Double->String former        %7.1f\n", text_anchor);
  std::printf("  ConvertToType 8              %7.1f  %5.2fx former (target <= 1.5)\n", text,
              text / text_anchor);
  benchmark::Shutdown();
  return 0;
}
