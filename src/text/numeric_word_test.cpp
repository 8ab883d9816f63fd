#include "text/numeric_word.h"

#include <gtest/gtest.h>

#include <string>

namespace norvik50 {
namespace {

struct WordCase {
  const char16_t* word;
  bool german;
  bool english;
};

// Each word in both notations: the separators swap their roles.
constexpr WordCase kWords[] = {
    {u"1234", true, true},         // no grouping at all
    {u"0", true, true},            //
    {u"1.234,56", true, false},    // German grouping and decimals
    {u"1,234.56", false, true},    // English
    {u"12.345.678", true, false},  // English has one decimal point only
    {u"1,5", true, false},         // German decimals; English groups need three digits
    {u"1.5", false, true},         // and the other way round
    {u"1,500", true, true},        // 1.5 in German, 1500 in English
    {u",5", true, false},          // decimals without a whole part
    {u".5", false, true},          //
    {u"-0,5", true, false},        // a leading sign
    {u"+1.000", true, true},       //
    {u"12,", false, false},        // a separator must be followed by digits
    {u"12.", false, false},        //
    {u"1.2345", false, true},      // groups of exactly three
    {u"1234.567", false, true},    // a first group of four is no grouping
    {u"1.234.5", false, false},    //
    {u"1,23,456", false, false},   //
    {u"", false, false},           // nothing, a sign alone, a separator alone
    {u"-", false, false},          //
    {u",", false, false},          //
    {u"1-", false, false},         // a sign only in front
    {u"--1", false, false},        //
    {u"1 234", false, false},      // blanks, letters, exponents, currency
    {u" 1", false, false},         //
    {u"1e5", false, false},        //
    {u"12a", false, false},        //
    {u"\u20AC5", false, false},    //
    {u"&H1F", false, false},       //
    {u"\uFF11", false, false},     // fullwidth digits are not read
};

TEST(IsNumericWord, GermanAndEnglishNotation) {
  const Locale german = LocaleForTag("de-DE");
  const Locale english = LocaleForTag("en-US");
  for (const WordCase& c : kWords) {
    const std::u16string word(c.word);
    EXPECT_EQ(IsNumericWord(word, german), c.german) << ::testing::PrintToString(word);
    EXPECT_EQ(IsNumericWord(word, english), c.english) << ::testing::PrintToString(word);
  }
}

TEST(IsNumericWord, ALocaleWithAnotherGroupingSign) {
  Locale swiss = LocaleForTag("de-DE");
  swiss.thousands = u'\'';
  swiss.decimal = u'.';
  EXPECT_TRUE(IsNumericWord(u"1'234.5", swiss));
  EXPECT_FALSE(IsNumericWord(u"1.234,5", swiss));
}

}  // namespace
}  // namespace norvik50
