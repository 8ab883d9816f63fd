// The system question (tklAsk) on the offscreen platform: the marked
// letters answer at once without Alt, the box speaks the library's
// language whatever the process's locale, in the dialog font.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QMessageBox>
#include <QTest>
#include <vector>

#include "core/library_state.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

// The process speaks English; the library's language decides.
class SystemBoxTest : public QtMembersTest {
 protected:
  // No script lines: the hook acts, then a box still open is closed.
  SystemBoxTest() : QtMembersTest("en-US") { dialogs_.Script(""); }
};

// A marked letter answers as its button at once (the platform's own box
// does so); a letter no caption marks, or one held with Alt or Shift,
// leaves the box open.
TEST_F(SystemBoxTest, MarkedLettersAnswerWithoutAlt) {
  struct Case {
    int32_t language;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    bool default_no;
    bool closed_by_key;
    bool answer;
  };
  const std::vector<Case> cases = {
      {1, Qt::Key_J, Qt::NoModifier, true, true, true},
      {1, Qt::Key_N, Qt::NoModifier, false, true, false},
      {1, Qt::Key_Y, Qt::NoModifier, false, false, false},
      {2, Qt::Key_Y, Qt::NoModifier, true, true, true},
      {2, Qt::Key_N, Qt::NoModifier, false, true, false},
      {2, Qt::Key_J, Qt::NoModifier, false, false, false},
      {2, Qt::Key_Y, Qt::ShiftModifier, false, false, false},
  };
  for (const Case& c : cases) {
    SetLanguage(c.language);
    bool closed = false;
    SetShownHook([&](QDialog& box) {
      QTest::keyClick(box.focusWidget() ? box.focusWidget() : &box, c.key, c.modifiers);
      closed = !box.isVisible();
    });
    EXPECT_EQ(lib_.tklAsk(Variant(u"Weiter?"), std::nullopt, c.default_no), c.answer)
        << c.language << " " << c.key;
    EXPECT_EQ(closed, c.closed_by_key) << c.language << " " << c.key;
  }
}

TEST_F(SystemBoxTest, SpeaksTheLibrarysLanguageInTheDialogFont) {
  struct Case {
    int32_t language;
    QStringList captions;
  };
  for (const Case& c : {Case{1, {"&Ja", "&Nein"}}, Case{2, {"&Yes", "&No"}}}) {
    SetLanguage(c.language);
    QStringList captions;
    QStringList families;
    SetShownHook([&](QDialog& dialog) {
      auto& box = static_cast<QMessageBox&>(dialog);
      families << box.font().family();
      for (const QAbstractButton* button : box.buttons()) {
        captions << button->text();
        families << button->font().family();
      }
    });
    lib_.tklAsk(Variant(u"Weiter?"));
    captions.sort();
    QStringList want = c.captions;
    want.sort();
    EXPECT_EQ(captions, want) << c.language;
    for (const QString& family : families) EXPECT_EQ(family, DialogFont().family());
  }
}

}  // namespace
}  // namespace norvik50::qt
