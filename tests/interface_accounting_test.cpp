// Every name a ported host may call is accounted for: it answers by name, or
// a call raises 438 with the reason it does not. A name that answers nothing
// and says nothing is what stops a port at its first call.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "testing/run_command.h"

namespace norvik50 {
namespace {

// The names of the interface being ported, as its hosts call them.
constexpr std::string_view kInterfaceNames[] = {
    "glbDrawSemiTransparentPicture",
    "tklAND",
    "tklAlignText",
    "tklApplicationTopMost",
    "tklArrayHasData",
    "tklAsk",
    "tklBruchrechnung",
    "tklBubbleSort",
    "tklCVal",
    "tklChangeToPath",
    "tklCheckAttributes",
    "tklCheckF2Key",
    "tklCheckMouseDown",
    "tklCheckMouseMove",
    "tklChoosePath",
    "tklClearCollection",
    "tklClearMessage",
    "tklClipCursor",
    "tklCompare",
    "tklCopyImageIntoListView",
    "tklCopyListView",
    "tklCountSubString",
    "tklCountSubStringExt",
    "tklDbl2Hex",
    "tklDecryptedValue",
    "tklEncryptedValue",
    "tklErrorMsg",
    "tklExtAsk",
    "tklExtMsgBox",
    "tklExtractBrackets",
    "tklExtractExpression",
    "tklFileDialog",
    "tklFileExists",
    "tklFileStream",
    "tklFindFile",
    "tklFindLastSubString",
    "tklFindSubString",
    "tklFindWindow",
    "tklGetAbsolutePath",
    "tklGetAnswer",
    "tklGetContainer",
    "tklGetFontList",
    "tklGetFrameSize",
    "tklGetFullPath",
    "tklGetInternalFormSize",
    "tklGetListViewCol",
    "tklGetMenuHeight",
    "tklGetNotNullValue",
    "tklGetOptionIndex",
    "tklGetRelativePath",
    "tklGetScreenHeight",
    "tklGetScreenWidth",
    "tklGetSemiTransparentPicture",
    "tklGetSubString",
    "tklGlobalObj",
    "tklGlobalVar",
    "tklHasIndex",
    "tklHasSelectedItem",
    "tklHasSubString",
    "tklHex2Dbl",
    "tklHexToDec",
    "tklHideMessage",
    "tklInputCode",
    "tklInputValue",
    "tklIsControl",
    "tklIsEmpty",
    "tklIsFormOpen",
    "tklIsInList",
    "tklIsInSigns",
    "tklIsKeyDown",
    "tklIsMouseButtonDown",
    "tklIsNumericWord",
    "tklIsSelected",
    "tklLVWCallback",
    "tklLangCode",
    "tklLanguage",
    "tklLanguages",
    "tklListBoxData",
    "tklListBoxItemSum",
    "tklListCheckAllItems",
    "tklListCheckedItems",
    "tklListItemChecked",
    "tklListItemIndex",
    "tklListItemSelected",
    "tklListItemText",
    "tklListSelectItems",
    "tklListSelectedItems",
    "tklLng2Str",
    "tklLoadColWidths",
    "tklLoadFormCaptions",
    "tklLoadWindowPos",
    "tklLogAction",
    "tklLogError",
    "tklMid",
    "tklMsgBox",
    "tklOnTabClick",
    "tklOpenApplicationTopMost",
    "tklOpenTopMost",
    "tklPathExists",
    "tklPhraseWithoutBrackets",
    "tklProperty",
    "tklRegKey",
    "tklReplaceDecimalChars",
    "tklReplaceInString",
    "tklReplaceInStringExt",
    "tklRes",
    "tklResConv",
    "tklResizeGridCol",
    "tklResource",
    "tklRound",
    "tklRoundWindow",
    "tklSQLDate",
    "tklSQLDouble",
    "tklSQLFilter",
    "tklSaveColWidths",
    "tklSaveWindowPos",
    "tklSearchListItem",
    "tklSelItemCount",
    "tklSelectField",
    "tklSelectListBoxItem",
    "tklSelectedItem",
    "tklSendMessage",
    "tklSeparateFile",
    "tklSeparateFunction",
    "tklSeparateString",
    "tklSetFocus",
    "tklSetListViewHeaders",
    "tklSetListViewStyle",
    "tklSetNoNumbers",
    "tklShowListViewTooltip",
    "tklShowWait",
    "tklSortListView",
    "tklStr2Lng",
    "tklSystemDir",
    "tklTempDir",
    "tklTopMost",
    "tklVal",
    "tklWait",
    "tklWaitForClassFinished",
    "tklWaitForClassStarted",
    "tklWindowShadow",
    "tklXMLFillComboWithResList",
    "tklXMLFillList",
    "tklXMLFillTabStrip",
    "tklXMLItemProp",
    "tklXMLRes",
    "tklZoomTextBox",
    "tkrDeleteKey",
    "tkrFindRegKeys",
    "tkrGetInteger",
    "tkrGetLong",
    "tkrGetString",
    "tkrGetValue",
    "tkrSetValue",
    "tkrSubKeyCount",
};

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

TEST(InterfaceAccounting, EveryNameAnswersOrSaysWhyNot) {
  EXPECT_EQ(std::size(kInterfaceNames), 155u);
  for (std::string_view name : kInterfaceNames) {
    const bool answered = Members().Has(name);
    const bool out = FindUnavailableMember(name) != nullptr;
    EXPECT_TRUE(answered != out) << name
                                 << (answered ? " answers and is listed as not answered"
                                              : " is neither answered nor listed");
  }
}

TEST(InterfaceAccounting, TheUnavailableListIsSortedUniqueAndExplained) {
  const auto& list = UnavailableMembers();
  ASSERT_FALSE(list.empty());
  for (std::size_t i = 0; i < list.size(); ++i) {
    const UnavailableMember& m = list[i];
    EXPECT_TRUE(m.reason.starts_with(u"not available on this platform: ") ||
                m.reason.starts_with(u"not available in this version: "))
        << m.name;
    EXPECT_FALSE(m.family.empty()) << m.name;
    EXPECT_FALSE(Members().Has(m.name)) << m.name;
    if (i > 0) {
      EXPECT_LT(Upper(list[i - 1].name), Upper(m.name)) << m.name;
    }
    EXPECT_EQ(FindUnavailableMember(m.name), &m);
    EXPECT_EQ(FindUnavailableMember(Upper(m.name)), &m) << "names compare without case";
  }
  EXPECT_EQ(FindUnavailableMember("tklNoSuchThing"), nullptr);
  EXPECT_EQ(FindUnavailableMember(""), nullptr);
}

TEST(InterfaceAccounting, ACallByNameRaises438WithTheReason) {
  LIB lib;
  for (const UnavailableMember& m : UnavailableMembers()) {
    try {
      Invoke(lib, Upper(m.name), {});
      ADD_FAILURE() << m.name << " answered";
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), kErrNoSuchMember) << m.name;
      EXPECT_EQ(e.description(), m.reason) << m.name;
      EXPECT_EQ(e.source(), kErrorSource) << m.name;
    }
  }
  try {
    Invoke(lib, "tklNoSuchThing", {});
    ADD_FAILURE() << "an unknown name answered";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), kErrNoSuchMember);
    EXPECT_EQ(e.description(), RuntimeErrorText(kErrNoSuchMember));
  }
}

TEST(InterfaceAccounting, TheCommandLineListsAndExplainsThem) {
  const auto members = testing::RunCommand(std::string(NORVIK50_TOOL) + " members");
  ASSERT_EQ(members.status, 0);
  EXPECT_NE(members.out.find("Not answered (a call raises 438 saying why):\n"), std::string::npos);
  EXPECT_NE(members.out.find("  tklLVWCallback: not available on this platform: "),
            std::string::npos)
      << members.out;
  EXPECT_NE(members.out.find(std::to_string(UnavailableMembers().size()) + " names not answered."),
            std::string::npos)
      << members.out;

  const auto help = testing::RunCommand(std::string(NORVIK50_TOOL) + " call tkllvwcallback --help");
  EXPECT_EQ(help.status, 1);
  EXPECT_NE(help.out.find("error 438: tklLVWCallback: not available on this platform: "),
            std::string::npos)
      << help.out;
}

// The README's table of names not answered has one row per name, so a host
// author reading it sees the same list as the command line prints.
TEST(InterfaceAccounting, TheReadmeTableListsEveryNameNotAnswered) {
  std::ifstream in("README.md");
  ASSERT_TRUE(in) << "run from the source folder";
  std::stringstream text;
  text << in.rdbuf();
  const std::string readme = text.str();
  const std::size_t table = readme.find("### Members not available");
  ASSERT_NE(table, std::string::npos);
  const std::size_t end = readme.find("\n## ", table);
  std::size_t rows = 0;
  for (std::size_t at = readme.find("\n| `", table); at < end; at = readme.find("\n| `", at + 1)) {
    ++rows;
  }
  EXPECT_EQ(rows, UnavailableMembers().size());
  for (const UnavailableMember& m : UnavailableMembers()) {
    const std::string row = "\n| `" + std::string(m.name) + "` | " + std::string(m.family) + " | ";
    EXPECT_LT(readme.find(row, table), end) << m.name;
  }
}

}  // namespace
}  // namespace norvik50
