// The current language and the language list on a real settings store and
// real files.
#include "resources/language_selection.h"

#include "resources/resource_document.h"
#include "resources/resource_test_support.h"

namespace norvik50 {
namespace {

using testing::ResourceMachineTest;

std::vector<std::u16string> Entries(const SafeArray& list) {
  std::vector<std::u16string> entries;
  for (const Variant& v : list.items()) entries.push_back(v.as_string());
  return entries;
}

class LanguageTest : public ResourceMachineTest {
 protected:
  int32_t Stored(std::u16string_view name) {
    return lib_.tkrGetLong(HKEY_CURRENT_USER, lib_.tklRegKey(), name, -99);
  }
};

TEST_F(LanguageTest, ChooserAnswersOnceAndIsStored) {
  ui_->choice = LANG_ENGLISH;
  EXPECT_EQ(lib_.tklLanguage(), LANG_ENGLISH);
  EXPECT_EQ(Stored(u"Language"), 2);
  EXPECT_EQ(lib_.tklLanguage(), LANG_ENGLISH);
  EXPECT_EQ(ui_->chooser_calls, 1);
}

TEST_F(LanguageTest, NoChoiceMeansGerman) {
  EXPECT_EQ(lib_.tklLanguage(), LANG_GERMAN);
  EXPECT_EQ(Stored(u"Language"), 1);
  // The headless interface chooses nothing either, and never blocks.
  SetUserInterface(nullptr);
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(u"-"));
  EXPECT_EQ(lib_.tklLanguage(), LANG_GERMAN);
}

TEST_F(LanguageTest, DefaultLanguageIsTakenAndStored) {
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"DefaultLanguage", Variant(int32_t{3}));
  EXPECT_EQ(lib_.tklLanguage(), LANG_FRENCH);
  EXPECT_EQ(Stored(u"Language"), 3);
  EXPECT_EQ(ui_->chooser_calls, 0);
}

TEST_F(LanguageTest, AnyStoredIdComesBack) {
  SetLanguage(7);
  EXPECT_EQ(static_cast<int>(lib_.tklLanguage()), 7);
  // A change by another program counts at the next call: nothing is cached.
  SetLanguage(2);
  EXPECT_EQ(lib_.tklLanguage(), LANG_ENGLISH);
}

// What the toolkit's dialogs follow: never the chooser, never a write.
TEST_F(LanguageTest, StoredLanguageNeitherAsksNorWrites) {
  ui_->choice = LANG_ENGLISH;
  EXPECT_EQ(StoredLanguage(lib_), 0);
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"DefaultLanguage", Variant(int32_t{3}));
  EXPECT_EQ(StoredLanguage(lib_), 3);
  SetLanguage(8);
  EXPECT_EQ(StoredLanguage(lib_), 8);
  EXPECT_EQ(ui_->chooser_calls, 0);
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(u"-"));
  EXPECT_EQ(StoredLanguage(lib_), 3);
  EXPECT_EQ(Stored(u"Language"), -99);
}

TEST_F(LanguageTest, RegKeyBecomesTheBaseKey) {
  lib_.tkrSetValue(HKEY_CURRENT_USER, u"SOFTWARE\\Other", u"Language", Variant(int32_t{5}));
  EXPECT_EQ(lib_.tklLanguage(u"SOFTWARE\\Other"), LANG_SPAIN);
  EXPECT_EQ(lib_.tklRegKey(), u"SOFTWARE\\Other");
  EXPECT_EQ(lib_.tklLangCode(), u"ES");
}

TEST_F(LanguageTest, LangCodeOfAnIdWithoutLanguageIsEmpty) {
  SetLanguage(8);
  EXPECT_EQ(lib_.tklLangCode(), u"HP");
  SetLanguage(12);
  EXPECT_EQ(lib_.tklLangCode(), u"");
}

TEST_F(LanguageTest, ListsTheLanguagesWhoseFilesExist) {
  for (const char* name : {"AppDE.dll", "Appen.dll", "AppXX.dll", "Other.dll"}) {
    WriteFile(std::string("c/R/") + name, "x");
  }
  // Without a key the value is read at the root of the machine store.
  SetMachineValue(u"ResourceDLL", u"C:\\R\\App%L.dll", u"");
  EXPECT_EQ(Entries(lib_.tklLanguages()),
            (std::vector<std::u16string>{u"1;Deutsch;DE", u"2;English;EN"}));
  WriteFile("c/R/AppHP.dll", "x");
  EXPECT_EQ(Entries(lib_.tklLanguages()),
            (std::vector<std::u16string>{u"1;Deutsch;DE", u"2;English;EN", u"8;Deutsch;HP"}));
  // The directory search ignores case in the pattern too.
  SetMachineValue(u"ResourceDLL", u"C:\\R\\APP%L.DLL", u"");
  EXPECT_EQ(Entries(lib_.tklLanguages()).size(), 3u);
}

TEST_F(LanguageTest, NothingFoundIsAnEmptyList) {
  const SafeArray none = lib_.tklLanguages();
  ASSERT_TRUE(none.is_bounded());
  EXPECT_EQ(none.lbound(), 0);
  EXPECT_EQ(none.ubound(), -1);
  SetMachineValue(u"ResourceDLL", u"C:\\Missing\\App%L.dll", u"");
  EXPECT_EQ(lib_.tklLanguages().ubound(), -1);
}

TEST_F(LanguageTest, ADocumentWithoutLanguagesGivesOneEmptyEntry) {
  WriteFile("c/R/AppDE.dll", "x");
  SetMachineValue(u"ResourceDLL", u"C:\\R\\App%L.dll", u"");
  // Another Part may load other content into the process's document.
  ResourceDocument().LoadXml(
      u"<resources><lang langid=\"1\" name=\"D\"/><lang langid=\"2\" name=\"E\" "
      u"extension=\"DE\"/></resources>");
  // A lang element without extension never matches.
  EXPECT_EQ(Entries(lib_.tklLanguages()), (std::vector<std::u16string>{u"2;E;DE"}));
  ResourceDocument().LoadXml(u"<resources><item name=\"x\"/></resources>");
  const SafeArray list = lib_.tklLanguages();
  EXPECT_EQ(list.lbound(), 0);
  EXPECT_EQ(Entries(list), (std::vector<std::u16string>{u""}));
  ResourceDocument().LoadXml(u"");  // the built-in document comes back at the next use
  EXPECT_EQ(Entries(lib_.tklLanguages()), (std::vector<std::u16string>{u"1;Deutsch;DE"}));
}

TEST_F(LanguageTest, ChooserIsOfferedTheBaseKeysLanguages) {
  // The chooser reads "ResourceDLL" under the base key, tklLanguages() at
  // the root.
  SetMachineValue(u"ResourceDLL", u"C:\\App\\Res_%L.dll");
  EXPECT_EQ(lib_.tklLanguages().ubound(), -1);
  ui_->choice = 2;
  lib_.tklLanguage();
  EXPECT_EQ(ui_->offered, (std::vector<std::u16string>{u"1;Deutsch;DE", u"2;English;EN"}));
  EXPECT_EQ(Entries(lib_.tklLanguages(u"SOFTWARE\\VANTEX\\Global")).size(), 2u);
}

TEST(FindMatchingFilesTest, NeedsAPattern) {
  EXPECT_TRUE(FindMatchingFiles(u"").empty());
  EXPECT_TRUE(FindMatchingFiles(u"Q:\\unmapped\\*.dll").empty());
}

TEST(ReplaceLanguageCodeTest, ReplacesEveryExactOccurrence) {
  EXPECT_EQ(ReplaceLanguageCode(u"C:\\%L\\Res_%L.dll", u"DE"), u"C:\\DE\\Res_DE.dll");
  EXPECT_EQ(ReplaceLanguageCode(u"C:\\Res_%l.dll", u"DE"), u"C:\\Res_%l.dll");
  EXPECT_EQ(ReplaceLanguageCode(u"%L%L", u""), u"");
}

}  // namespace
}  // namespace norvik50
