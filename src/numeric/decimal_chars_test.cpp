// The numbers step of tklReplaceDecimalChars against a plain reference of
// its rule, written the obvious way (search from each position, count the
// quotes to the left, rebuild the whole text), on random filter texts. The
// rewriter works in one pass and must give the same text, skipped units
// after a shortened number and the 16-bit limit included.
#include "numeric/decimal_chars.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "norvik50/encoding.h"
#include "numeric/locale_number.h"
#include "testing/temp_folder.h"
#include "text/brackets.h"
#include "text/search.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

using std::u16string;
using std::u16string_view;

// ---- the reference, step by step as the rule is written ---------------------

void ReferenceNumbers(u16string& text, bool german_to_english) {
  int64_t start = 1;
  while (true) {
    const int16_t hit = FindSubString(text, u"0|1|2|3|4|5|6|7|8|9|,|.", start);
    if (hit == 0) return;
    const std::size_t p = static_cast<std::size_t>(hit);
    if (CountSubString(u16string_view(text).substr(0, p - 1), u"\"") % 2 == 1) {
      start = hit + 1;
      continue;
    }
    std::size_t end = 0;
    for (std::size_t k = p; k <= text.size(); ++k) {
      const char16_t c = text[k - 1];
      if (c == u' ' || c == u';' || c == u')') {
        end = k;
        if (k > p && (text[k - 2] == u',' || text[k - 2] == u'.')) end = k - 1;
        break;
      }
      if (!((c >= u'0' && c <= u'9') || c == u',' || c == u'.')) break;
    }
    if (end == 0) {
      start = hit + 1;
      continue;
    }
    if (end > static_cast<std::size_t>(kMaxPosition)) return;
    u16string number = text.substr(p - 1, end - p);
    std::erase(number, german_to_english ? u'.' : u',');
    if (IsLocaleNumeric(number)) {
      for (char16_t& c : number) {
        if (c == u',') c = u'.';
      }
      text = text.substr(0, p - 1) + number + text.substr(end - 1);
    }
    start = static_cast<int64_t>(end) + 1;
  }
}

// The Format calls step; false when it stopped on an error.
bool ReferenceFormatCalls(u16string& text) {
  try {
    int64_t start = 1;
    while (true) {
      const int16_t p = FindSubString(text, u"format(|format (", start);
      if (p == 0) return true;
      start = p + 1;
      u16string term, before, after;
      if (!ExtractBrackets(u16string_view(text).substr(static_cast<std::size_t>(p - 1)), term,
                           before, after)) {
        continue;
      }
      const int16_t q2 = FindLastSubString(term, u"\"");
      const int16_t q1 =
          q2 > 1 ? FindLastSubString(
                       u16string_view(term).substr(0, static_cast<std::size_t>(q2 - 1)), u"\"")
                 : 0;
      if (q1 >= 1 && q1 < q2) {
        for (int16_t i = q1; i < q2 - 1; ++i) {
          if (term[static_cast<std::size_t>(i)] == u',') term[static_cast<std::size_t>(i)] = u'.';
        }
      }
      const u16string rebuilt =
          text.substr(0, static_cast<std::size_t>(p - 1)) + before + u"(" + term + u") " + after;
      text = u16string(TrimBlanks(rebuilt));
    }
  } catch (const std::exception&) {
    return false;
  }
}

u16string Reference(u16string_view source, bool german_to_english) {
  u16string text(source);
  try {
    ReferenceNumbers(text, german_to_english);
  } catch (const std::exception&) {
  }
  return text;
}

// ---- random filter texts ----------------------------------------------------

// Pieces a filter is made of, weighted towards numbers and what ends them.
u16string RandomText(std::mt19937& rng, std::size_t pieces) {
  static const u16string_view kPieces[] = {u"1",
                                           u"23",
                                           u"4.567",
                                           u"8,9",
                                           u"1.234,5",
                                           u"1,234.5",
                                           u",",
                                           u".",
                                           u"..",
                                           u",,",
                                           u" ",
                                           u"  ",
                                           u";",
                                           u")",
                                           u"(",
                                           u"\"",
                                           u"a",
                                           u"x",
                                           u"-",
                                           u"0",
                                           u"12.",
                                           u"3,",
                                           u"=",
                                           u"AND",
                                           u"format(x, \"#,##0.00\") ",
                                           u"Format (\"1,5\""};
  u16string text;
  for (std::size_t k = 0; k < pieces; ++k) text += kPieces[rng() % std::size(kPieces)];
  return text;
}

TEST(ReplaceDecimalCharsReferenceTest, RandomFiltersInBothLocales) {
  std::mt19937 rng(2203);
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (int round = 0; round < 4000; ++round) {
      const u16string text = RandomText(rng, 1 + rng() % 30);
      for (bool german : {true, false}) {
        ASSERT_EQ(ToUtf8(RewriteNumbers(text, german)), ToUtf8(Reference(text, german)))
            << tag << (german ? " German" : " English") << " \"" << ToUtf8(text) << "\"";
      }
    }
  }
}

// Format calls: nested, unclosed, with brackets and quotes inside their
// literals, names in any case and with a blank before the bracket.
u16string RandomFormatText(std::mt19937& rng, std::size_t pieces) {
  static const u16string_view kPieces[] = {u"format(", u"FORMAT (", u"Format(",  u"format", u" ",
                                           u"(",       u")",        u")",        u"\"",     u"\"",
                                           u",",       u"1,5",      u"#,##0.00", u"x",      u"a, b",
                                           u"\"0,0\"", u"\"(\"",    u"forma",    u"t("};
  u16string text;
  for (std::size_t k = 0; k < pieces; ++k) text += kPieces[rng() % std::size(kPieces)];
  return text;
}

TEST(ReplaceDecimalCharsReferenceTest, RandomFormatCalls) {
  std::mt19937 rng(1907);
  for (int round = 0; round < 20000; ++round) {
    const u16string text = RandomFormatText(rng, 1 + rng() % 25);
    u16string got = text, want = text;
    const bool got_complete = RewriteFormatCalls(got);
    const bool want_complete = ReferenceFormatCalls(want);
    ASSERT_EQ(ToUtf8(got), ToUtf8(want)) << "\"" << ToUtf8(text) << "\"";
    ASSERT_EQ(got_complete, want_complete) << ToUtf8(text);
  }
}

// Format calls whose names, terms and last quotes lie around position
// 32767, with the blanks of earlier calls (and a leading blank trimmed
// away) moving them across it.
void ExpectSameFormatCalls(const u16string& text, const std::string& what) {
  u16string got = text, want = text;
  const bool got_complete = RewriteFormatCalls(got);
  const bool want_complete = ReferenceFormatCalls(want);
  ASSERT_TRUE(got == want) << what;
  ASSERT_EQ(got_complete, want_complete) << what;
}

TEST(ReplaceDecimalCharsReferenceTest, FormatCallsAroundTheSixteenBitLimit) {
  // A call's name just before or after the limit.
  for (const bool lead : {false, true}) {
    for (int calls = 0; calls <= 3; ++calls) {
      u16string front = lead ? u" " : u"";
      for (int k = 0; k < calls; ++k) front += u"format(x, \"0,0\") ";
      for (std::size_t at = 32767 - 4; at <= 32767 + 4; ++at) {
        const std::size_t fill = at - 1 - front.size();
        ExpectSameFormatCalls(front + u16string(fill, u'b') + u"format(y, \"1,5\")",
                              "name at " + std::to_string(at));
      }
    }
  }
  // A term whose last quote lies around the limit; in the second form the
  // blank of the call around it stands in the term too.
  for (std::size_t fill = 32767 - 12; fill <= 32767 + 2; ++fill) {
    const u16string pad(fill, u'b');
    ExpectSameFormatCalls(u"format(x, " + pad + u"\"0,0\")",
                          "last quote, fill " + std::to_string(fill));
    ExpectSameFormatCalls(u"format(\"format(x\" ) " + pad + u"\"y)\"",
                          "a blank in the term, fill " + std::to_string(fill));
  }
  std::mt19937 rng(4242);
  for (int round = 0; round < 40; ++round) {
    const std::size_t lead = 32767 - 60 + rng() % 80;
    u16string text = rng() % 2 ? u" " : u"";
    for (int k = 0; k < 8; ++k) text += u"format(x, \"0,0\") ";
    text += RandomFormatText(rng, 10);
    text += u16string(lead > text.size() ? lead - text.size() : 0, u'b');
    text += RandomFormatText(rng, 12);
    if (rng() % 3 == 0) text += u"\"" + u16string(40000, u'c') + u"\")";
    ExpectSameFormatCalls(text, "round " + std::to_string(round));
  }
}

// Texts around the 16-bit limit: numbers that start, end or are shortened
// just before and after position 32767.
TEST(ReplaceDecimalCharsReferenceTest, AroundTheSixteenBitLimit) {
  testing::ScopedLocale locale("de-DE");
  std::mt19937 rng(32767);
  for (int round = 0; round < 40; ++round) {
    const std::size_t lead = 32767 - 40 + rng() % 60;
    u16string text = RandomText(rng, 20) + u" ";
    text += u16string(lead > text.size() ? lead - text.size() : 0, u'b');
    text += RandomText(rng, 20);
    ASSERT_EQ(RewriteNumbers(text, true), Reference(text, true)) << "lead " << lead;
  }
}

}  // namespace
}  // namespace norvik50
