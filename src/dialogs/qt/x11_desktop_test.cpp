// The pieces of the X11 desktop that need no X server: WM_CLASS values as
// programs write them, and rectangles in twips as pixels.
#include "dialogs/qt/x11_desktop.h"

#include <gtest/gtest.h>

#include <string>

namespace norvik50::qt {
namespace {

using namespace std::string_literals;

TEST(WmClass, BothPartsAndWhatProgramsLeaveOut) {
  struct Case {
    std::string bytes;
    std::u16string instance;
    std::u16string class_name;
  };
  const Case cases[] = {
      {"xterm\0XTerm\0"s, u"xterm", u"XTerm"},
      {"xterm\0XTerm"s, u"xterm", u"XTerm"},  // no closing NUL
      {"solo\0"s, u"solo", u""},              // the class part missing
      {"solo"s, u"solo", u""},
      {"\0Klasse\0"s, u"", u"Klasse"},  // an empty instance
      {""s, u"", u""},
      {"a\0b\0trailing\0"s, u"a", u"b"},                // more parts than two
      {"b\xe4r\0B\xc4R\0"s, u"b\u00e4r", u"B\u00c4R"},  // Latin-1, as ICCCM has it
  };
  for (const Case& c : cases) {
    const auto [instance, class_name] = ParseWmClass(c.bytes);
    EXPECT_EQ(instance, c.instance) << c.bytes.size();
    EXPECT_EQ(class_name, c.class_name) << c.bytes.size();
  }
}

TEST(PixelsOfTwips, EdgesRoundToTheNearestPixelAndNeverCollapse) {
  struct Case {
    TwipsRect twips;
    PixelBox pixels;
  };
  const Case cases[] = {
      {{1500, 3000, 3000, 2250}, {100, 200, 300, 350}},
      {{1507, 3008, 15, 15}, {100, 201, 101, 202}},  // 100.47 down, 200.53 up
      {{-1500, -300, 750, 450}, {-100, -20, -50, 10}},
      {{1500, 1500, 1, 1}, {100, 100, 101, 101}},  // below a pixel: one pixel
      {{1500, 1500, 7, 8}, {100, 100, 101, 101}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(PixelsOf(c.twips), c.pixels) << c.twips.left << "," << c.twips.top;
  }
}

}  // namespace
}  // namespace norvik50::qt
