#include "norvik50/locale.h"

#include <gtest/gtest.h>

#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

TEST(LocaleTest, BuiltInGermanAndEnglish) {
  struct Case {
    const char* tag;
    const char* expect_tag;
    char16_t decimal, thousands;
    const char16_t* short_date;
  } cases[] = {
      {"de-DE", "de-DE", u',', u'.', u"dd.MM.yyyy"},
      {"de_DE.UTF-8", "de-DE", u',', u'.', u"dd.MM.yyyy"},
      {"de", "de-DE", u',', u'.', u"dd.MM.yyyy"},
      {"de-AT", "de-AT", u',', u'.', u"dd.MM.yyyy"},
      {"de-CH", "de-CH", u'.', u'\u2019', u"dd.MM.yyyy"},
      {"en-US", "en-US", u'.', u',', u"M/d/yyyy"},
      {"en_GB.UTF-8@x", "en-GB", u'.', u',', u"dd/MM/yyyy"},
      {"C", "en-US", u'.', u',', u"M/d/yyyy"},
      {"", "en-US", u'.', u',', u"M/d/yyyy"},
  };
  for (const Case& c : cases) {
    const Locale l = LocaleForTag(c.tag);
    EXPECT_EQ(l.tag, c.expect_tag) << c.tag;
    EXPECT_EQ(l.decimal, c.decimal) << c.tag;
    EXPECT_EQ(l.thousands, c.thousands) << c.tag;
    EXPECT_EQ(l.short_date, c.short_date) << c.tag;
  }
  EXPECT_TRUE(LocaleForTag("de-AT").is_german());
  EXPECT_FALSE(LocaleForTag("en-GB").is_german());
}

TEST(LocaleTest, OtherLocalesComeFromIcu) {
  const Locale fr = LocaleForTag("fr-FR");
  EXPECT_EQ(fr.tag, "fr-FR");
  EXPECT_EQ(fr.icu_name, "fr_FR");
  EXPECT_EQ(fr.decimal, u',');
  EXPECT_EQ(fr.short_date, u"dd/MM/yyyy");
  const Locale it = LocaleForTag("it-IT");
  EXPECT_EQ(it.decimal, u',');
  EXPECT_EQ(it.thousands, u'.');
}

TEST(LocaleTest, SetCurrentLocaleIsProcessWide) {
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(CurrentLocale().decimal, u',');
  SetCurrentLocale("en-GB");
  EXPECT_EQ(CurrentLocale().tag, "en-GB");
}

}  // namespace
}  // namespace norvik50
