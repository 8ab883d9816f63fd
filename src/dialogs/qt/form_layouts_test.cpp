// Every form of the library laid out on the offscreen platform, in German
// and English, with short and long texts: no control overlaps another or
// sticks out of the window, and the buttons of a form are alike in height.
#include <gtest/gtest.h>

#include <QDir>
#include <string>
#include <vector>

#include "dialogs/message_buttons.h"
#include "dialogs/qt/answer_form.h"
#include "dialogs/qt/choose_lang_form.h"
#include "dialogs/qt/choose_path_form.h"
#include "dialogs/qt/form_geometry_for_tests.h"
#include "dialogs/qt/message_form.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/zoom_form.h"
#include "norvik50/host.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::qt::testing;
using Faults = std::vector<std::string>;

const std::vector<std::u16string> kTexts = {
    u"", u"Kurz", std::u16string(400, u'x'),
    u"Ein Satz, der umbricht, weil er so lang ist wie ein ganzer Absatz in einem Brief an einen "
    u"Kunden, der eine Rechnung noch nicht bezahlt hat und nun gemahnt wird.",
    u"Zeile eins\nZeile zwei\nZeile drei\nZeile vier"};

class FormLayoutsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
};

TEST_F(FormLayoutsTest, MessageBoxesOverEveryButtonSetSymbolAndText) {
  for (const char16_t* kind : {u"frmMsgBox", u"frmStdMsg"}) {
    for (const int16_t language : {1, 2}) {
      for (const int32_t style : {0, 1, 2, 3, 4, 5, 16 + 2, 32 + 3, 48 + 4, 64 + 5}) {
        for (const std::u16string& text : kTexts) {
          MessageBoxRequest r;
          r.form = kind;
          r.title = u"T";
          r.prompt = kind == std::u16string_view(u"frmMsgBox") ? u"{" + text + u"}" : text;
          r.detail = text;
          FillButtons(r, style, language);
          MessageForm form(r, nullptr);
          EXPECT_EQ(LayoutFaults(form), Faults{})
              << (kind[3] == u'M' ? "rich " : "std ") << language << " style " << style << ", "
              << text.size() << " characters";
        }
      }
    }
  }
}

TEST_F(FormLayoutsTest, AnswerBoxWithFewAndManyButtons) {
  const std::vector<std::vector<std::u16string>> sets = {
      {u"&OK"},
      {u"&Speichern", u"&Verwerfen", u"Nichts tun"},
      {u"&1 Eins", u"&2 Zwei mit einer sehr langen Beschriftung, die den Knopf breit macht"},
      std::vector<std::u16string>(30, u"&Knopf")};
  for (const auto& captions : sets) {
    for (const std::u16string& text : kTexts) {
      const QString shown = QString::fromStdU16String(text);
      AnswerForm form(shown, shown, QString(), captions, nullptr);
      EXPECT_EQ(LayoutFaults(form), Faults{})
          << captions.size() << " buttons, " << text.size() << " characters";
    }
  }
}

TEST_F(FormLayoutsTest, ChooserZoomAndFolderChooser) {
  ChooseLangForm chooser(nullptr);
  chooser.FillLanguages({u"1;Deutsch;DE", u"2;English;EN"});
  EXPECT_EQ(LayoutFaults(chooser), Faults{}) << "frmChooseLang";

  // The zoom at its designed size and squeezed to its smallest.
  for (const auto& [width, height] : std::vector<std::pair<int, int>>{{9000, 5400}, {0, 0}}) {
    ZoomRequest request;
    request.text = u"Text";
    request.width_twips = width;
    request.height_twips = height;
    ZoomForm zoom(request, nullptr);
    EXPECT_EQ(LayoutFaults(zoom), Faults{}) << "frmZoom " << width << "x" << height;
  }

  const auto here = ToWindowsPath(QDir::currentPath().toStdString());
  ASSERT_TRUE(here.has_value());
  for (const int16_t language : {1, 2}) {
    ChoosePathForm path(MakeChoosePathRequest(*here, u"", language), nullptr);
    EXPECT_EQ(LayoutFaults(path), Faults{}) << "frmChoosePath " << language;
  }
}

}  // namespace
}  // namespace norvik50::qt
