// The message box forms on the offscreen platform, driven by real key
// presses and clicks.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QTimer>

#include "dialogs/message_buttons.h"
#include "dialogs/qt/answer_form.h"
#include "dialogs/qt/message_form.h"
#include "dialogs/qt/qt_application.h"

namespace norvik50::qt {
namespace {

MessageBoxRequest Request(const char16_t* form, int32_t style, int16_t language) {
  MessageBoxRequest r;
  r.form = form;
  r.title = u"T";
  r.prompt = form == std::u16string_view(u"frmMsgBox") ? u"{Text}" : u"Prompt";
  FillButtons(r, style, language);
  return r;
}

// Shows `form`, runs `act` once it is up, and returns when it has hidden
// itself (or closes it through its close box after `act`).
template <typename Form, typename Act>
void ShowAndAct(Form& form, Act act) {
  QTimer::singleShot(0, &form, [&] {
    act();
    if (form.isVisible()) form.close();
  });
  form.exec();
}

class FormsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
};

// Over every style word 0..7 with each default mark, in both languages and
// both forms: Enter answers the default button, Escape the cancel button,
// the close box 0, and a click on each button its answer.
TEST_F(FormsTest, EnterEscapeCloseAndClicksOverAllStyles) {
  for (const char16_t* kind : {u"frmMsgBox", u"frmStdMsg"}) {
    for (int16_t language : {1, 2}) {
      for (int32_t set = 0; set <= 7; ++set) {
        for (int32_t mark : {0, 256, 512, 768}) {
          const MessageBoxRequest r = Request(kind, set + mark, language);
          SCOPED_TRACE(::testing::Message() << (kind[3] == u'M' ? "rich " : "std ") << language
                                            << " style " << set + mark);
          {
            MessageForm form(r, nullptr);
            ShowAndAct(form, [&] { QTest::keyClick(&form, Qt::Key_Return); });
            EXPECT_EQ(form.Result(), r.buttons[r.default_button - 1].answer);
          }
          {
            MessageForm form(r, nullptr);
            ShowAndAct(form, [&] { QTest::keyClick(form.focusWidget(), Qt::Key_Escape); });
            EXPECT_EQ(form.Result(), r.buttons.back().answer);
          }
          {
            MessageForm form(r, nullptr);
            ShowAndAct(form, [] {});
            EXPECT_EQ(form.Result(), 0);
          }
          for (std::size_t i = 0; i < r.buttons.size(); ++i) {
            MessageForm form(r, nullptr);
            ShowAndAct(form, [&] { QTest::mouseClick(form.buttons()[i], Qt::LeftButton); });
            EXPECT_EQ(form.Result(), r.buttons[i].answer);
          }
        }
      }
    }
  }
}

TEST_F(FormsTest, AccessLettersInGermanAndEnglish) {
  struct Case {
    int32_t style;
    int16_t language;
    Qt::Key key;
    int answer;
  };
  const std::vector<Case> cases = {
      {4, 1, Qt::Key_J, 6},
      {4, 1, Qt::Key_N, 7},
      {4, 2, Qt::Key_Y, 6},
      {4, 2, Qt::Key_J, 0},  // no English caption has J: nothing happens
      {2, 2, Qt::Key_R, 4},
      {2, 2, Qt::Key_I, 5},
      {2, 1, Qt::Key_W, 4},
      // German abort and cancel share A; the later button's answer stands.
      {3, 1, Qt::Key_A, 2},
  };
  for (const Case& c : cases) {
    for (const char16_t* kind : {u"frmMsgBox", u"frmStdMsg"}) {
      MessageForm form(Request(kind, c.style, c.language), nullptr);
      ShowAndAct(form, [&] { QTest::keyClick(form.focusWidget(), c.key); });
      EXPECT_EQ(form.Result(), c.answer) << c.style << " " << c.language << " " << c.key;
    }
  }
}

TEST_F(FormsTest, EscapeAnswersTheLastButtonOfEachSet) {
  const std::vector<std::pair<int32_t, int>> cases = {{4, 7}, {2, 5}, {0, 1}, {1, 2}, {5, 2}};
  for (const auto& [style, answer] : cases) {
    MessageForm form(Request(u"frmMsgBox", style, 2), nullptr);
    ShowAndAct(form, [&] { QTest::keyClick(&form, Qt::Key_Escape); });
    EXPECT_EQ(form.Result(), answer) << style;
  }
}

TEST_F(FormsTest, FocusStartsOnTheDefaultButtonAndSpaceClicksTheFocusedOne) {
  MessageForm form(Request(u"frmStdMsg", 3 + 768, 2), nullptr);
  ShowAndAct(form, [&] {
    // 768 with three buttons leaves the default on the third.
    EXPECT_EQ(form.focusWidget(), form.buttons()[2]);
    EXPECT_TRUE(form.buttons()[2]->isDefault());
    QTest::keyClick(form.buttons()[0], Qt::Key_Space);
  });
  EXPECT_EQ(form.Result(), 6);
}

TEST_F(FormsTest, ShiftedLettersAreNotAccessKeys) {
  MessageForm form(Request(u"frmMsgBox", 4, 1), nullptr);
  ShowAndAct(form, [&] { QTest::keyClick(form.focusWidget(), Qt::Key_J, Qt::ShiftModifier); });
  EXPECT_EQ(form.Result(), 0);
}

TEST_F(FormsTest, RichBoxTakesItsSizeInTwipsAndPlacesTheButtonsByTheFormula) {
  MessageBoxRequest r = Request(u"frmMsgBox", 4, 2);
  r.width_twips = 6000;
  r.height_twips = 3000;
  MessageForm form(r, nullptr);
  // 400 x 200 pixels outside, less the classic frame.
  EXPECT_EQ(form.width(), 400 - 2 * kSizingFrame);
  EXPECT_EQ(form.height(), 200 - kCaptionHeight - 2 * kSizingFrame);
  const int top = 200 - MessageForm::kButtonHeight - (kSizingFrame + kMenuBarHeight + 15);
  EXPECT_EQ(form.buttons()[0]->y(), top);
  // Two buttons: half a gap either side of the centre line at 200 pixels.
  EXPECT_EQ(form.buttons()[0]->x() + MessageForm::kButtonWidth, 200 - 3);
  EXPECT_EQ(form.buttons()[1]->x(), 200 + 3);
}

TEST_F(FormsTest, StandardBoxGrowsWithItsTextWithinTheScreen) {
  MessageBoxRequest narrow = Request(u"frmStdMsg", 0, 2);
  MessageForm small(narrow, nullptr);
  MessageBoxRequest wide = narrow;
  wide.detail = std::u16string(300, u'x');
  MessageForm large(wide, nullptr);
  EXPECT_GT(large.width(), small.width());
  EXPECT_LE(large.width(), 800);  // the offscreen screen
  // Buttons stand below an empty detail label too.
  EXPECT_GT(small.buttons()[0]->y(), 0);
}

// Laid out before the form is shown: the symbol decides the text's left
// edge even though no widget is visible yet.
TEST_F(FormsTest, TextStandsRightOfTheSymbolOrInItsPlace) {
  for (const char16_t* kind : {u"frmMsgBox", u"frmStdMsg"}) {
    for (const auto& [style, left] : std::vector<std::pair<int32_t, int>>{
             {48, MessageForm::kTextLeft}, {0, MessageForm::kMargin}}) {
      MessageForm form(Request(kind, style, 2), nullptr);
      QWidget* text = kind == std::u16string_view(u"frmMsgBox")
                          ? static_cast<QWidget*>(form.findChild<QTextEdit*>())
                          : form.findChildren<QLabel*>()[1];  // labMessage after imgSymbol
      ASSERT_NE(text, nullptr);
      EXPECT_EQ(text->x(), left) << style;
    }
  }
}

TEST_F(FormsTest, StandardPromptTakesColourSizeAndWeightDetailTenPixelsBelow) {
  struct Case {
    int32_t colour;
    QColor shown;
    int16_t size;
    bool bold;
  };
  const std::vector<Case> cases = {
      {4, QColor(128, 0, 0), 10, true},   // dark red
      {12, QColor(255, 0, 0), 10, true},  // bright red
      {0, QColor(0, 0, 0), 8, false},     // small and plain
  };
  for (const Case& c : cases) {
    MessageBoxRequest r = Request(u"frmStdMsg", 0, 2);
    r.prompt_rgb = *PaletteColor(c.colour);
    r.font_size = c.size;
    r.font_bold = c.bold;
    r.detail = u"Detail";
    MessageForm form(r, nullptr);
    const QList<QLabel*> labels = form.findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 3);  // imgSymbol, labMessage, labDetail
    const QLabel* prompt = labels[1];
    const QLabel* detail = labels[2];
    EXPECT_EQ(prompt->palette().color(QPalette::WindowText), c.shown) << c.colour;
    EXPECT_EQ(prompt->font().pointSize(), c.size);
    EXPECT_EQ(prompt->font().bold(), c.bold);
    EXPECT_EQ(detail->y(), prompt->y() + prompt->height() + 10);
  }
}

TEST_F(FormsTest, AnswerBoxAccessLettersEscapeAndClicks) {
  const std::vector<std::u16string> captions = {u"&Speichern", u"&Verwerfen", u"Nichts"};
  const std::vector<std::pair<Qt::Key, int>> keys = {
      {Qt::Key_V, 2}, {Qt::Key_S, 1}, {Qt::Key_Escape, 0}, {Qt::Key_N, -1}};
  for (const auto& [key, answer] : keys) {
    AnswerForm form(QStringLiteral("p"), QStringLiteral("d"), QString(), captions, nullptr);
    bool open_after = false;
    ShowAndAct(form, [&] {
      QTest::keyClick(&form, key);
      open_after = form.isVisible();
    });
    // A letter that no caption marks does nothing: the form stays open.
    EXPECT_EQ(form.Result(), answer < 0 ? 0 : answer);
    EXPECT_EQ(open_after, answer < 0);
  }
  AnswerForm form(QStringLiteral("p"), QStringLiteral("d"), QString(), captions, nullptr);
  EXPECT_EQ(form.windowTitle(), QStringLiteral("Benutzereingabe notwendig"));
  ShowAndAct(form,
             [&] { QTest::mouseClick(form.findChildren<QPushButton*>()[2], Qt::LeftButton); });
  EXPECT_EQ(form.Result(), 3);
}

// The access character may be a digit: "&2 Zwei" answers to the key 2,
// from the main keys or the keypad; a digit no caption marks does nothing.
TEST_F(FormsTest, AnswerBoxDigitAccessKeys) {
  const std::vector<std::u16string> captions = {u"&1 Eins", u"&2 Zwei", u"&\u00c4ndern", u"3 Drei"};
  struct Case {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    int answer;  // -1: the form stays open
  };
  const std::vector<Case> cases = {
      {Qt::Key_2, Qt::NoModifier, 2},     {Qt::Key_1, Qt::NoModifier, 1},
      {Qt::Key_2, Qt::KeypadModifier, 2}, {Qt::Key_Adiaeresis, Qt::NoModifier, 3},
      {Qt::Key_3, Qt::NoModifier, -1},    {Qt::Key_2, Qt::ShiftModifier, -1},
  };
  for (const Case& c : cases) {
    AnswerForm form(QStringLiteral("p"), QString(), QString(), captions, nullptr);
    bool open_after = false;
    ShowAndAct(form, [&] {
      QTest::keyClick(form.focusWidget() ? form.focusWidget() : &form, c.key, c.modifiers);
      open_after = form.isVisible();
    });
    EXPECT_EQ(form.Result(), c.answer < 0 ? 0 : c.answer) << c.key;
    EXPECT_EQ(open_after, c.answer < 0) << c.key;
  }
}

TEST_F(FormsTest, AnswerBoxRowStaysOnTheScreen) {
  std::vector<std::u16string> many(30, u"&Button");
  AnswerForm form(QStringLiteral("p"), QString(), QStringLiteral("t"), many, nullptr);
  EXPECT_LE(form.width(), 800);
  for (const QPushButton* b : form.findChildren<QPushButton*>()) {
    EXPECT_LE(b->x() + b->width(), form.width());
    EXPECT_GE(b->x(), 0);
  }
}

}  // namespace
}  // namespace norvik50::qt
