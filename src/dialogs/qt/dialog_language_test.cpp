// The language of the toolkit's dialogs: the locale a language id stands
// for, and Qt's translations and default locale for as long as a dialog
// is open.
#include "dialogs/qt/dialog_language.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <string>
#include <vector>

#include "dialogs/qt/qt_application.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using norvik50::testing::ScopedLocale;

TEST(LocaleForLanguageTest, TheLibraryLocalesRegionWhenItSpeaksTheLanguage) {
  struct Case {
    const char* library_locale;
    int16_t language;
    const char* want;
  };
  const std::vector<Case> cases = {
      {"en-US", 1, "de_DE"},  // German for a process without a German locale
      {"de-AT", 1, "de_AT"},  // the library's own region stays
      {"de-AT", 2, "en_US"},  {"en-GB", 2, "en_GB"},
      {"en-US", 8, "de_DE"},  // the second German entry
      {"en-US", 3, "fr_FR"},  {"en-US", 6, "cs_CZ"},
      {"de-DE", 0, "de_DE"},  // no language stored: the library locale
      {"de-CH", 99, "de_CH"},
  };
  for (const Case& c : cases) {
    ScopedLocale locale(c.library_locale);
    EXPECT_EQ(LocaleForLanguage(c.language).name().toStdString(), c.want)
        << c.library_locale << " " << c.language;
  }
}

// Qt's texts and the default locale follow the language while the scope
// lasts and are as before afterwards, so a Qt host keeps its own.
TEST(DialogLanguageTest, TranslatesWhileOpenAndRestoresAfterwards) {
  EnsureApplication();
  ScopedLocale locale("en-US");
  const auto look_in = [] { return QCoreApplication::translate("QFileDialog", "Look in:"); };
  const QLocale before;
  ASSERT_EQ(look_in(), "Look in:");
  {
    const DialogLanguage german(1);
    EXPECT_TRUE(german.Translated());
    EXPECT_EQ(look_in(), "Suchen in:");
    EXPECT_EQ(QLocale().language(), QLocale::German);
    EXPECT_EQ(QLocale().toString(1.5), "1,5");
    {
      const DialogLanguage french(3);
      EXPECT_EQ(QLocale().language(), QLocale::French);
      EXPECT_NE(look_in(), "Suchen in:");
      EXPECT_NE(look_in(), "Look in:");
    }
    EXPECT_EQ(look_in(), "Suchen in:");
    EXPECT_EQ(QLocale().language(), QLocale::German);
  }
  EXPECT_EQ(look_in(), "Look in:");
  EXPECT_EQ(QLocale(), before);
}

}  // namespace
}  // namespace norvik50::qt
