// frmChooseLang on the offscreen platform: picked with the keyboard alone.
#include "dialogs/qt/choose_lang_form.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QTest>
#include <QTimer>
#include <vector>

#include "dialogs/qt/qt_application.h"

namespace norvik50::qt {
namespace {

const std::vector<std::u16string> kLanguages = {u"1;Deutsch;DE", u"2;English;EN",
                                                u"3;Fran\u00e7ais;FR", u"5;Espan\u00f5l;ES"};

struct Picked {
  int language = -1;
  bool closed_by_keys = false;
  bool focus_on_list = false;  // when it was shown
};

// Runs the chooser, presses `keys` on whatever has the focus, and answers
// the language it was closed with, whether the keys closed it and where
// the focus was when it opened.
Picked PickWith(const std::vector<Qt::Key>& keys) {
  ChooseLangForm form(nullptr);
  form.FillLanguages(kLanguages);
  Picked picked;
  QTimer::singleShot(0, &form, [&] {
    picked.focus_on_list = qobject_cast<QComboBox*>(form.focusWidget()) != nullptr;
    for (Qt::Key key : keys) QTest::keyClick(form.focusWidget(), key);
    picked.closed_by_keys = !form.isVisible();
    if (form.isVisible()) form.close();
  });
  form.exec();
  picked.language = form.SelectedLanguage();
  return picked;
}

class ChooseLangFormTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
};

TEST_F(ChooseLangFormTest, OpensWithTheFocusOnTheList) {
  const Picked untouched = PickWith({});
  EXPECT_TRUE(untouched.focus_on_list);
  EXPECT_FALSE(untouched.closed_by_keys);
  EXPECT_EQ(untouched.language, 1);
}

TEST_F(ChooseLangFormTest, ArrowKeysOrALetterAndEnterPick) {
  struct Case {
    const char* what;
    std::vector<Qt::Key> keys;
    int want;
  };
  const std::vector<Case> cases = {
      {"Enter takes the first row", {Qt::Key_Return}, 1},
      {"one row down", {Qt::Key_Down, Qt::Key_Return}, 2},
      {"down and up again", {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return}, 2},
      {"to the last row", {Qt::Key_End, Qt::Key_Return}, 5},
      {"a name's first letter", {Qt::Key_F, Qt::Key_Return}, 3},
      {"another letter", {Qt::Key_E, Qt::Key_Return}, 2},
  };
  for (const Case& c : cases) {
    const Picked picked = PickWith(c.keys);
    EXPECT_EQ(picked.language, c.want) << c.what;
    EXPECT_TRUE(picked.closed_by_keys) << c.what;
  }
}

}  // namespace
}  // namespace norvik50::qt
