// The fast implementations against the step-by-step forms, on random texts
// from small alphabets crowded with quotes, brackets, bars and separators,
// so every rule (alternatives, ties, boundaries, parity, 16-bit limits) is
// hit often. Seeds are fixed: a failure repeats.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "norvik50/error.h"
#include "testing/temp_folder.h"
#include "text/bubble_sort.h"
#include "text/collation.h"
#include "text/numeric_word.h"
#include "text/reference_forms_for_tests.h"
#include "text/replace.h"
#include "text/replace_ext.h"
#include "text/search.h"
#include "text/signs.h"
#include "text/split.h"

namespace norvik50 {
namespace {

using std::u16string;
namespace ref = reference;

// A result or the number of the error raised instead.
template <typename T>
struct Outcome {
  int error = 0;
  T value{};
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

template <typename Fn>
auto Capture(Fn fn) -> Outcome<decltype(fn())> {
  Outcome<decltype(fn())> out;
  try {
    out.value = fn();
  } catch (const Error& e) {
    out.error = e.number();
  }
  return out;
}

template <typename T>
std::ostream& operator<<(std::ostream& os, const Outcome<T>& o) {
  if (o.error != 0) return os << "error " << o.error;
  return os << ::testing::PrintToString(o.value);
}

class Generator {
 public:
  explicit Generator(uint32_t seed) : rng_(seed) {}

  int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
  bool Flag() { return Int(0, 1) == 1; }

  u16string From(std::u16string_view alphabet, int lo, int hi) {
    u16string s;
    const int n = Int(lo, hi);
    for (int k = 0; k < n; ++k) s += alphabet[Int(0, static_cast<int>(alphabet.size()) - 1)];
    return s;
  }
  // Source text: letters in both cases, sharp s in both forms, blanks,
  // quotes, brackets, bars, separators, a hyphen, CR and LF.
  u16string Source(int hi = 24) { return From(u"aAbB  \"\"'()|,.-\r\n\u00DF\u1E9E", 0, hi); }
  // An alternatives list: up to three short alternatives, some empty.
  u16string Find(bool allow_empty_alternatives = true) {
    u16string list;
    const int count = Int(1, 3);
    for (int k = 0; k < count; ++k) {
      if (k > 0) list += u'|';
      u16string alt = From(u"aAbB \"'(\u00DF", allow_empty_alternatives ? 0 : 1, 3);
      list += alt;
    }
    if (Int(0, 9) == 0) list.clear();  // sometimes no alternatives at all
    return list;
  }
  u16string Signs() {
    static const std::u16string_view kChoices[] = {u"",  u"()",      u"''",    u"\"\"",
                                                   u"(", u"\"\"|''", u"()|''", u"(()"};
    return u16string(kChoices[Int(0, 7)]);
  }
  int Start(const u16string& source) { return Int(-1, static_cast<int>(source.size()) + 2); }

 private:
  std::mt19937 rng_;
};

bool HasEmptyAlternative(const u16string& find) {
  if (find.empty()) return false;
  for (const u16string& alt : ref::Split(find)) {
    if (alt.empty()) return true;
  }
  return false;
}

class RandomizedTest : public ::testing::Test {
 protected:
  // The reference folds with the default rules.
  norvik50::testing::ScopedLocale locale_{"en-US"};
};

TEST_F(RandomizedTest, FindAndHas) {
  Generator g(1);
  for (int round = 0; round < 20000; ++round) {
    const u16string s = g.Source();
    const u16string f = g.Find();
    const int start = g.Start(s);
    const bool ic = g.Flag(), first = g.Flag(), word = g.Flag();
    u16string fast_found = u"?", ref_found = u"?";
    const int fast = FindSubString(s, f, start, ic, first, word, &fast_found);
    const int64_t slow = ref::FindSubString(s, f, start, ic, first, word, &ref_found);
    ASSERT_EQ(fast, slow) << ::testing::PrintToString(s) << " " << ::testing::PrintToString(f)
                          << " start " << start << " ic " << ic << " first " << first << " word "
                          << word;
    ASSERT_EQ(fast_found, ref_found);
    u16string scratch;
    const int has = ref::FindSubString(s, f, start, ic, true, false, &scratch) >= 1 ? -1 : 0;
    ASSERT_EQ(HasSubString(s, f, start, ic), has);
  }
}

TEST_F(RandomizedTest, FindLastAndCount) {
  Generator g(2);
  for (int round = 0; round < 20000; ++round) {
    const u16string s = g.Source();
    const u16string f = g.Flag() ? g.Find() : g.From(u"aAb|\"", 0, 3);
    const u16string signs = g.Signs();
    const int start = g.Start(s);
    const bool ic = g.Flag();
    const auto ctx = [&] {
      return ::testing::PrintToString(s) + " " + ::testing::PrintToString(f) + " " +
             ::testing::PrintToString(signs) + " start " + std::to_string(start);
    };
    ASSERT_EQ(Capture([&] { return int64_t{FindLastSubString(s, f, start, ic)}; }),
              Capture([&] { return ref::FindLastSubString(s, f, start, ic); }))
        << ctx();
    ASSERT_EQ(Capture([&] { return int64_t{CountSubString(s, f, start, ic)}; }),
              Capture([&] { return ref::CountSubString(s, f, start, ic); }))
        << ctx();
    ASSERT_EQ(Capture([&] { return int64_t{CountSubStringExt(s, f, start, ic, signs)}; }),
              Capture([&] { return ref::CountSubStringExt(s, f, start, ic, signs); }))
        << ctx();
  }
}

TEST_F(RandomizedTest, SignsDirectAndProfiled) {
  Generator g(3);
  for (int round = 0; round < 3000; ++round) {
    const u16string s = g.From(u"()'\"x ", 0, 30);
    for (const char16_t* signs : {u"()", u"''", u")(", u"\"\"", u"(", u"x("}) {
      const SignProfile profile(s, signs);
      for (int start = -1; start <= static_cast<int>(s.size()) + 1; ++start) {
        for (int len = -1; len <= 3; ++len) {
          const bool expected = ref::IsInSigns(s, signs, start, len);
          ASSERT_EQ(IsInSigns(s, signs, start, len), expected)
              << ::testing::PrintToString(s) << " " << start << "," << len;
          ASSERT_EQ(profile.Encloses(start, len), expected)
              << ::testing::PrintToString(s) << " " << start << "," << len;
        }
      }
    }
  }
}

// Long texts cross the profile's block boundaries.
TEST_F(RandomizedTest, SignsProfiledOnLongTexts) {
  Generator g(9);
  for (int round = 0; round < 150; ++round) {
    const u16string s = g.From(round % 2 == 0 ? u"()((x" : u"()'x))", 0, 400);
    for (const char16_t* signs : {u"()", u"''", u")("}) {
      const SignProfile profile(s, signs);
      for (int start = 0; start <= static_cast<int>(s.size()) + 1; ++start) {
        for (int len : {1, 2, 70}) {
          ASSERT_EQ(profile.Encloses(start, len), ref::IsInSigns(s, signs, start, len))
              << ::testing::PrintToString(s) << " " << start << "," << len;
        }
      }
    }
  }
}

// The arguments of one replace; none when an empty alternative would be
// replaced by text, which grows the text to 32767 units one step at a time,
// quadratically in the step-by-step form (a separate test keeps a few).
struct ReplaceDraw {
  u16string source, find, with;
  int start;
  bool at_beginning, quotes, word;
};
std::optional<ReplaceDraw> DrawReplace(Generator& g) {
  ReplaceDraw d;
  d.source = g.Source(30);
  d.find = g.Find();
  d.with = g.From(u"xA\" ,", 0, 2);
  if (HasEmptyAlternative(d.find) && !d.with.empty()) return std::nullopt;
  d.start = g.Start(d.source);
  d.at_beginning = g.Int(0, 4) == 0;
  d.quotes = g.Flag();
  d.word = g.Flag();
  return d;
}

std::string Describe(const ReplaceDraw& d) {
  return ::testing::PrintToString(d.source) + " " + ::testing::PrintToString(d.find) + " -> " +
         ::testing::PrintToString(d.with) + " start " + std::to_string(d.start) + " begin " +
         std::to_string(d.at_beginning) + " quotes " + std::to_string(d.quotes) + " word " +
         std::to_string(d.word);
}

TEST_F(RandomizedTest, Replace) {
  Generator g(4);
  for (int round = 0; round < 20000; ++round) {
    const std::optional<ReplaceDraw> d = DrawReplace(g);
    if (!d) continue;
    ASSERT_EQ(Capture([&] {
                return ReplaceInString(d->source, d->find, d->with, d->start, g.Flag(),
                                       d->at_beginning, d->quotes, d->word);
              }),
              Capture([&] {
                return ref::ReplaceInString(d->source, d->find, d->with, d->start, d->at_beginning,
                                            d->quotes, d->word);
              }))
        << Describe(*d);
  }
}

TEST_F(RandomizedTest, ReplaceEmptyAlternativeWithText) {
  Generator g(5);
  for (int round = 0; round < 2; ++round) {
    // No odd quotes, or the growing text would soon stand inside quotes.
    const u16string s = g.From(u"ab ", 1, 8);
    const u16string f = u"a|" + g.From(u"b ", 1, 2) + u"|";
    const u16string with = round == 0 ? u"xyz" : u"x\"\"y";
    const bool word = round == 1;
    ASSERT_EQ(Capture([&] { return ReplaceInString(s, f, with, 1, true, false, true, word); }),
              Capture([&] { return ref::ReplaceInString(s, f, with, 1, false, true, word); }))
        << ::testing::PrintToString(s) << " " << ::testing::PrintToString(f);
  }
}

// Where the two replace members' arguments meet, the extended one answers
// exactly as the plain one: the double-quote pair as its quote rule, no
// pairs as no rule, the numeric rules off.
TEST_F(RandomizedTest, ExtendedReplaceAnswersAsReplaceWhereTheyMeet) {
  Generator g(11);
  for (int round = 0; round < 20000; ++round) {
    const std::optional<ReplaceDraw> d = DrawReplace(g);
    if (!d) continue;
    ExtendedReplaceRules rules;
    rules.only_at_beginning = d->at_beginning;
    rules.whole_word = d->word;
    rules.not_in_signs = d->quotes ? u"\"\"" : u"";
    ASSERT_EQ(
        Capture([&] { return ReplaceInStringExt(d->source, d->find, d->with, d->start, rules); }),
        Capture([&] {
          return ReplaceInString(d->source, d->find, d->with, d->start, true, d->at_beginning,
                                 d->quotes, d->word);
        }))
        << Describe(*d);
  }
}

// Every rule at once, in both number notations, against the step-by-step
// form: texts crowded with digits, separators, signs, quotes and brackets.
TEST_F(RandomizedTest, ExtendedReplaceFollowsItsRules) {
  static const std::u16string_view kPairs[] = {u"",     u"\"\"", u"()", u"''|()",     u"\"\"|)(",
                                               u"(|[]", u"((",   u"1.", u"()|\"\"|''"};
  Generator g(12);
  for (const char* tag : {"de-DE", "en-US"}) {
    norvik50::testing::ScopedLocale locale(tag);
    const Locale& loc = CurrentLocale();
    for (int round = 0; round < 15000; ++round) {
      const u16string s = g.From(u"12 0.,-a\"'()[]x", 0, 30);
      u16string f = g.From(u"1.,a(\"", 1, 2);
      if (g.Flag()) f += u"|" + g.From(u"02x'", 1, 2);
      const u16string with = g.From(u"9,.\"()", 0, 2);
      const int start = g.Start(s);
      const bool at_beginning = g.Int(0, 5) == 0, word = g.Flag();
      const bool not_numeric = g.Int(0, 2) == 0, only_numeric = g.Int(0, 2) == 0;
      const std::u16string_view pairs = kPairs[g.Int(0, 8)];
      const ExtendedReplaceRules rules{at_beginning, word, not_numeric, only_numeric, pairs};
      const auto numeric = [&](int64_t at, int64_t len) {
        return ref::InNumericWord(s, at, len, loc.decimal, loc.thousands,
                                  [](std::u16string_view w) { return IsNumericWord(w); });
      };
      ASSERT_EQ(Capture([&] { return ReplaceInStringExt(s, f, with, start, rules); }), Capture([&] {
                  return ref::ReplaceInStringExt(s, f, with, start, at_beginning, word, not_numeric,
                                                 only_numeric, pairs, numeric);
                }))
          << tag << " " << ::testing::PrintToString(s) << " " << ::testing::PrintToString(f)
          << " -> " << ::testing::PrintToString(with) << " start " << start << " begin "
          << at_beginning << " word " << word << " not/only numeric " << not_numeric << only_numeric
          << " pairs " << ::testing::PrintToString(u16string(pairs));
    }
  }
}

TEST_F(RandomizedTest, GetSubStringAndSeparateString) {
  Generator g(6);
  for (int round = 0; round < 20000; ++round) {
    const u16string s = g.Source();
    const u16string before = g.Flag() ? g.Find() : u16string();
    const u16string after = g.Flag() ? g.Find() : u16string();
    const bool ic = g.Flag(), word = g.Flag();
    ASSERT_EQ(GetSubString(s, before, after, g.Start(s), ic, word),
              ref::GetSubString(s, before, after, ic, word))
        << ::testing::PrintToString(s) << " " << ::testing::PrintToString(before) << " "
        << ::testing::PrintToString(after);

    const int start = g.Start(s);
    using Parts = std::vector<u16string>;
    const auto fast = Capture([&] {
      Parts p{u"B", u"T", u"A"};
      SeparateString(s, before, p[0], p[1], p[2], start, ic);
      return p;
    });
    const auto slow = Capture([&] {
      Parts p{u"B", u"T", u"A"};
      ref::SeparateString(s, before, p[0], p[1], p[2], start, ic);
      return p;
    });
    ASSERT_EQ(fast, slow) << ::testing::PrintToString(s) << " " << ::testing::PrintToString(before)
                          << " start " << start;
  }
}

TEST_F(RandomizedTest, MidGetAndLet) {
  Generator g(10);
  for (int round = 0; round < 20000; ++round) {
    const u16string s = g.From(u"abc", 0, 10);
    const u16string value = g.From(u"XY", 0, 4);
    const int start = g.Int(-1, 14);
    const int length = g.Int(-3, 12);
    ASSERT_EQ(Capture([&] { return Mid(s, start, length); }), Capture([&] {
                const u16string tail = ref::MidFrom(s, start);
                return length == -1 ? tail : ref::Left(tail, length);
              }))
        << ::testing::PrintToString(s) << " " << start << "," << length;
    ASSERT_EQ(Capture([&] {
                u16string t = s;
                MidLet(t, start, length, value);
                return t;
              }),
              Capture([&] {
                const int64_t cut = length == -1 ? static_cast<int64_t>(value.size()) : length;
                return ref::Left(s, start - 1) + value + ref::MidFrom(s, start + cut);
              }))
        << ::testing::PrintToString(s) << " " << start << "," << length << " "
        << ::testing::PrintToString(value);
  }
}

// Near the 16-bit limit: long texts of filler with a few crowded spots
// around positions 32767 and 32768.
TEST_F(RandomizedTest, AroundThe16BitLimit) {
  Generator g(7);
  for (int round = 0; round < 40; ++round) {
    const int length = g.Int(32700, 32800);
    u16string s(length, u'.');
    for (int k = 0; k < 12; ++k) {
      const int at = g.Int(length - 80, length - 1);
      const u16string piece = g.From(u"ab\" ", 1, 3);
      s.replace(at, std::min<std::size_t>(piece.size(), length - at), piece);
    }
    if (g.Flag()) s[g.Int(0, 100)] = u'a';
    const u16string f = g.Find(false);
    const int start = g.Flag() ? 1 : g.Int(32700, 32767);
    const bool ic = g.Flag(), word = g.Flag();
    u16string fast_found, ref_found;
    ASSERT_EQ(FindSubString(s, f, start, ic, true, word, &fast_found),
              ref::FindSubString(s, f, start, ic, true, word, &ref_found));
    ASSERT_EQ(fast_found, ref_found);
    ASSERT_EQ(Capture([&] { return int64_t{FindLastSubString(s, f, start, ic)}; }),
              Capture([&] { return ref::FindLastSubString(s, f, start, ic); }));
    ASSERT_EQ(Capture([&] { return int64_t{CountSubStringExt(s, f, start, ic, u"\"\"")}; }),
              Capture([&] { return ref::CountSubStringExt(s, f, start, ic, u"\"\""); }));
    const u16string with = g.From(u"xyz\"", 0, 3);
    ASSERT_EQ(Capture([&] { return ReplaceInString(s, f, with, start, true, false, true, word); }),
              Capture([&] { return ref::ReplaceInString(s, f, with, start, false, true, word); }))
        << ::testing::PrintToString(f) << " -> " << ::testing::PrintToString(with);
    using Parts = std::vector<u16string>;
    ASSERT_EQ(Capture([&] {
                Parts p{u"B", u"T", u"A"};
                SeparateString(s, f, p[0], p[1], p[2], start, ic);
                return p;
              }),
              Capture([&] {
                Parts p{u"B", u"T", u"A"};
                ref::SeparateString(s, f, p[0], p[1], p[2], start, ic);
                return p;
              }));
  }
}

TEST_F(RandomizedTest, BubbleSortMatchesInsertionPasses) {
  Generator g(8);
  for (int round = 0; round < 500; ++round) {
    std::vector<u16string> items;
    const int n = g.Int(0, 25);
    for (int k = 0; k < n; ++k) items.push_back(g.From(u"aAbB\u00E4\u00C4 ", 0, 3));
    std::vector<u16string> expected = items;
    ref::BubbleSort(expected, [](const u16string& a, const u16string& b) {
      return CompareIgnoringCase(a, b) < 0;
    });
    std::vector<Variant> values(items.begin(), items.end());
    SafeArray array(g.Int(-5, 5), std::move(values), VarType::kString);
    BubbleSort(array);
    std::vector<u16string> sorted;
    for (const Variant& v : array.items()) sorted.push_back(v.as_string());
    ASSERT_EQ(sorted, expected);
  }
}

}  // namespace
}  // namespace norvik50
