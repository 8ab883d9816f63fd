// The Format engine: number patterns, sections, named formats and date
// patterns, in German and English.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "norvik50/encoding.h"
#include "numeric/format.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

struct Case {
  Variant value;
  const char16_t* pattern;
  const char16_t* german;
  const char16_t* english;  // nullptr: as german
};

void Check(const Case* cases, std::size_t n) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (std::size_t i = 0; i < n; ++i) {
      const Case& c = cases[i];
      const char16_t* want = tag[0] == 'd' || c.english == nullptr ? c.german : c.english;
      EXPECT_EQ(ToUtf8(FormatValue(c.value, c.pattern)), ToUtf8(want))
          << tag << " pattern " << ToUtf8(c.pattern) << " case " << i;
    }
  }
}

TEST(FormatNumberTest, RoundsHalfAwayFromZeroOnDecimalDigits) {
  const Case cases[] = {
      {Variant(2.5), u"0", u"3", nullptr},
      {Variant(-2.5), u"0", u"-3", nullptr},
      {Variant(0.5), u"0", u"1", nullptr},
      {Variant(1.5), u"0", u"2", nullptr},
      // 0.125 and 2.675 lie below their decimal form in binary; the digits win.
      {Variant(0.125), u"0.00", u"0,13", u"0.13"},
      {Variant(-0.125), u"0.00", u"-0,13", u"-0.13"},
      {Variant(2.675), u"0.00", u"2,68", u"2.68"},
      {Variant(1.005), u"0.00", u"1,01", u"1.01"},
      {Variant(2.675f), u"0.00", u"2,68", u"2.68"},           // a Single by its 7 digits
      {Variant(Currency{25}), u"0.000", u"0,003", u"0.003"},  // Currency exactly
      {Variant(9.995), u"0.00", u"10,00", u"10.00"},          // the carry reaches a new digit
      {Variant(-0.001), u"0.00", u"-0,00", u"-0.00"},         // the sign stays
      {Variant(0.1 + 0.2), u"0.000000000000000000", u"0,300000000000000000",
       u"0.300000000000000000"},  // 15 significant digits, no binary tail
      {Variant(123456789.0), u"0", u"123456789", nullptr},
      {Variant(1e20), u"0", u"100000000000000000000", nullptr},
  };
  Check(cases, std::size(cases));
}

TEST(FormatNumberTest, PlaceholdersGroupingAndLiterals) {
  const Case cases[] = {
      {Variant(1234567.891), u"#,##0.00", u"1.234.567,89", u"1,234,567.89"},
      {Variant(0.0), u"#,##0.00", u"0,00", u"0.00"},
      {Variant(-1234.5), u"#,##0.00", u"-1.234,50", u"-1,234.50"},
      {Variant(5.0), u"00000", u"00005", nullptr},
      {Variant(1.0), u"0,000", u"0.001", u"0,001"},        // padding zeros are grouped too
      {Variant(0.5), u"#.##", u",5", u".5"},               // '#' shows no leading zero
      {Variant(5.0), u"#.##", u"5,", u"5."},               // the point always shows
      {Variant(5.1), u"0.0#", u"5,1", u"5.1"},             // trailing '#' drop zeros
      {Variant(1234.0), u"00-00", u"12-34", nullptr},      // literals between digits
      {Variant(123456.0), u"00-00", u"1234-56", nullptr},  // extra digits go first
      {Variant(0.256), u"0.0%", u"25,6%", u"25.6%"},
      {Variant(1234567.0), u"#,##0,", u"1.235", u"1,235"},  // thousands scaling
      {Variant(1234567.0), u"0.0,,", u"1,2", u"1.2"},       // millions
      {Variant(5.0), u"\"Nr. \"0", u"Nr. 5", nullptr},
      {Variant(5.0), u"\\#0", u"#5", nullptr},
      {Variant(5.0), u"$0.00", u"$5,00", u"$5.00"},
      {Variant(-5.0), u"$0.00", u"-$5,00", u"-$5.00"},  // the sign goes first
      {Variant(12.5), u".00", u"12,50", u"12.50"},      // no integer placeholder
      {Variant(1234.5), u"0.00E+00", u"1,23E+03", u"1.23E+03"},
      {Variant(0.00012), u"0.0E-0", u"1,2E-4", u"1.2E-4"},
      {Variant(12345.0), u"0.0e+000", u"1,2e+004", u"1.2e+004"},
      {Variant(0.0), u"0.00E+00", u"0,00E+00", u"0.00E+00"},
      {Variant(99999.0), u"0.0E+0", u"1,0E+5", u"1.0E+5"},  // rounding carries
      {Variant(int32_t{-7}), u"0.00", u"-7,00", u"-7.00"},
      {Variant(true), u"0", u"-1", nullptr},   // Booleans are -1 and 0
      {Variant(), u"0.00", u"0,00", u"0.00"},  // Empty is 0
  };
  Check(cases, std::size(cases));
}

TEST(FormatNumberTest, Sections) {
  const Case cases[] = {
      {Variant(5.0), u"0.0;(0.0);\"zero\"", u"5,0", u"5.0"},
      {Variant(-5.0), u"0.0;(0.0);\"zero\"", u"(5,0)", u"(5.0)"},  // no automatic sign
      {Variant(0.0), u"0.0;(0.0);\"zero\"", u"zero", nullptr},
      {Variant(0.001), u"0.0;(0.0);\"zero\"", u"0,0", u"0.0"},  // zero before rounding only
      {Variant(-5.0), u"0.0;;\"zero\"", u"-5,0", u"-5.0"},      // empty section: the first
      {Variant(0.0), u"0.0;-0.0;", u"0,0", u"0.0"},
      {Variant(5.0), u"\"a;b\"0", u"a;b5", nullptr},  // ";" quoted is no section
  };
  Check(cases, std::size(cases));
}

TEST(FormatNamedTest, NamedNumberFormats) {
  const Case cases[] = {
      {Variant(1234.5), u"General Number", u"1234,5", u"1234.5"},
      {Variant(0.1f), u"General Number", u"0,1", u"0.1"},  // a Single's own digits
      {Variant(1e20), u"general number", u"1E+20", nullptr},
      {Variant(1234.5), u"Currency", u"1.234,50 \u20AC", u"$1,234.50"},
      {Variant(-1234.5), u"Currency", u"-1.234,50 \u20AC", u"($1,234.50)"},
      {Variant(1234.5), u"Fixed", u"1234,50", u"1234.50"},
      {Variant(1234.5), u"Standard", u"1.234,50", u"1,234.50"},
      {Variant(0.1234), u"Percent", u"12,34%", u"12.34%"},
      {Variant(1234.5), u"Scientific", u"1,23E+03", u"1.23E+03"},
      {Variant(2.0), u"Yes/No", u"Ja", u"Yes"},
      {Variant(0.0), u"yes/no", u"Nein", u"No"},  // names ignore case
      {Variant(true), u"True/False", u"Wahr", u"True"},
      {Variant(0.0), u"On/Off", u"Aus", u"Off"},
  };
  Check(cases, std::size(cases));
}

TEST(FormatDateTest, PatternsAndSeparators) {
  const Variant when(Date{45356.588298611});  // 2024-03-05 14:07:09, a Tuesday
  const Case cases[] = {
      {when, u"dd.mm.yyyy", u"05.03.2024", nullptr},
      {when, u"dd/mm/yyyy", u"05.03.2024", u"05/03/2024"},  // "/" is the locale's
      {when, u"d\\/m\\/yy", u"5/3/24", nullptr},            // unless escaped
      {when, u"hh:nn:ss", u"14:07:09", nullptr},
      {when, u"h:mm", u"14:07", nullptr},  // m after h is the minute
      {when, u"hh:nn AM/PM", u"02:07 PM", nullptr},
      {when, u"h a/p", u"2 p", nullptr},
      {when, u"dddd, d. mmmm yyyy", u"Dienstag, 5. M\u00E4rz 2024", u"Tuesday, 5. March 2024"},
      {when, u"ddd", u"Di", u"Tue"},
      {Variant(Date{45580.0}), u"mmm", u"Okt", u"Oct"},  // 2024-10-15
      {when, u"w ww q y", u"3 10 1 65", nullptr},
      {when, u"ddddd", u"05.03.2024", u"3/5/2024"},
      {when, u"dddddd", u"Dienstag, 5. M\u00E4rz 2024", u"Tuesday, March 5, 2024"},
      {when, u"ttttt", u"14:07:09", u"2:07:09 PM"},
      {when, u"c", u"05.03.2024 14:07:09", u"3/5/2024 2:07:09 PM"},
      {when, u"\"Am \"dd.mm.", u"Am 05.03.", nullptr},
      {when, u"yyyy\\-mm\\-dd\\ hh\\:nn\\:ss", u"2024-03-05 14:07:09", nullptr},
      {Variant(45356.0), u"yyyy-mm-dd", u"2024-03-05", nullptr},    // a number as a date
      {Variant(u"2024-03-05"), u"dd.mm.yy", u"05.03.24", nullptr},  // a text as a date
  };
  Check(cases, std::size(cases));
}

TEST(FormatDateTest, NamedDateFormats) {
  const Variant when(Date{45356.588298611});
  const Case cases[] = {
      {when, u"Short Date", u"05.03.2024", u"3/5/2024"},
      {when, u"Long Date", u"Dienstag, 5. M\u00E4rz 2024", u"Tuesday, March 5, 2024"},
      {when, u"Short Time", u"14:07", nullptr},
      {when, u"Long Time", u"14:07:09", u"2:07:09 PM"},
      {when, u"General Date", u"05.03.2024 14:07:09", u"3/5/2024 2:07:09 PM"},
      {Variant(Date{45356.0}), u"General Date", u"05.03.2024", u"3/5/2024"},
      {when, u"", u"05.03.2024 14:07:09", u"3/5/2024 2:07:09 PM"},
  };
  Check(cases, std::size(cases));
}

TEST(FormatValueTest, TextNullAndNoPattern) {
  const Case cases[] = {
      {Variant(u"abc"), u"0.00", u"abc", nullptr},    // no number: unchanged
      {Variant(u"1,5"), u"0.00", u"1,50", u"15.00"},  // numeric text in the locale
      {Variant::Null(), u"0.00", u"", nullptr},      {Variant(), u"", u"", nullptr},
      {Variant(0.1), u"", u"0,1", u"0.1"},           {Variant(true), u"", u"True", nullptr},
      {Variant(u"x"), u"", u"x", nullptr},
  };
  Check(cases, std::size(cases));
}

TEST(FormatValueTest, Errors) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    EXPECT_EQ(ErrorOf([] { FormatValue(Variant(SafeArray()), u"0"); }), 13);
    EXPECT_EQ(ErrorOf([] { FormatValue(Variant(ErrorValue{5}), u"0"); }), 13);
    EXPECT_EQ(ErrorOf([] { FormatValue(Variant(std::numeric_limits<double>::infinity()), u"0"); }),
              6);
    EXPECT_EQ(ErrorOf([] { FormatValue(Variant(1e10), u"dd.mm.yyyy"); }), 6);
    // Malformed patterns are text, never an error.
    for (const char16_t* pattern : {u"\"", u"\\", u"0.0.0", u"E+", u";;;;", u"%,,.", u"0E-"}) {
      EXPECT_EQ(ErrorOf([&] { FormatValue(Variant(12.5), pattern); }), 0) << ToUtf8(pattern);
    }
  }
}

}  // namespace
}  // namespace norvik50
