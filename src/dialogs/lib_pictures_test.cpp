// The picture members on pictures and list views in memory, called
// directly and by name.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/picture.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

constexpr uint32_t kWhite = 0xFFFFFFFFu;
constexpr uint32_t kRed = 0xFFFF0000u;

std::shared_ptr<HostObject> Object(std::shared_ptr<HostObject> object) { return object; }

std::shared_ptr<MemoryListView> ThreeRows() {
  auto view = std::make_shared<MemoryListView>(u"lvwFiles");
  view->columns = {{u"Name", 1500, u""}};
  for (const char16_t* name : {u"a.txt", u"b.txt", u"c.txt"}) view->rows.push_back({{name}});
  return view;
}

class PicturesTest : public ::testing::Test {
 protected:
  LIB lib_;
};

TEST_F(PicturesTest, ASemiTransparentCopyIsANewPicture) {
  auto source = std::make_shared<Picture>(2, 1, std::vector<uint32_t>{kRed, 0xFF00FF00u});
  const auto copy =
      std::dynamic_pointer_cast<Picture>(lib_.tklGetSemiTransparentPicture(source, 50));
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Pixels(), (std::vector<uint32_t>{0x80FF0000u, 0x8000FF00u}));
  // The source is left alone.
  EXPECT_EQ(source->Pixel(0, 0), kRed);

  // Colours are runtime RGB Longs: 65280 is RGB(0, 255, 0), here the key,
  // and 16777215 white the background.
  const auto keyed = std::dynamic_pointer_cast<Picture>(lib_.tklGetSemiTransparentPicture(
      source, 100, Variant(int32_t{65280}), Variant(int32_t{16777215})));
  EXPECT_EQ(keyed->Pixels(), (std::vector<uint32_t>{kRed, kWhite}));
}

TEST_F(PicturesTest, BadArgumentsAreRefused) {
  auto picture = std::make_shared<Picture>(1, 1, kRed);
  auto view = ThreeRows();
  struct Case {
    const char* what;
    std::function<void()> call;
    int32_t number;
  };
  const Case cases[] = {
      {"no picture", [&] { lib_.tklGetSemiTransparentPicture(nullptr); }, kErrInvalidCall},
      {"a list view is no picture", [&] { lib_.tklGetSemiTransparentPicture(view); },
       kErrInvalidCall},
      {"opacity past 100", [&] { lib_.tklGetSemiTransparentPicture(picture, 101); },
       kErrInvalidCall},
      {"a negative colour",
       [&] { lib_.tklGetSemiTransparentPicture(picture, 50, Variant(int32_t{-1})); },
       kErrInvalidCall},
      {"a colour that is no number",
       [&] { lib_.tklGetSemiTransparentPicture(picture, 50, Variant(u"red")); }, kErrTypeMismatch},
      {"no target", [&] { lib_.glbDrawSemiTransparentPicture(nullptr, picture); }, kErrInvalidCall},
      {"a negative width",
       [&] { lib_.glbDrawSemiTransparentPicture(picture, picture, 0, 0, 50, -15); },
       kErrInvalidCall},
      {"a negative opacity",
       [&] { lib_.glbDrawSemiTransparentPicture(picture, picture, 0, 0, -1); }, kErrInvalidCall},
      {"no list view", [&] { lib_.tklCopyImageIntoListView(picture, picture); }, kErrInvalidCall},
      {"row past the end", [&] { lib_.tklCopyImageIntoListView(view, picture, 4); }, kErrSubscript},
      {"negative row", [&] { lib_.tklCopyImageIntoListView(view, picture, -1); }, kErrSubscript},
  };
  for (const Case& c : cases) EXPECT_EQ(ErrorOf(c.call), c.number) << c.what;
  // Nothing was changed by the refused calls.
  EXPECT_EQ(picture->Pixel(0, 0), kRed);
  for (const auto& row : view->rows) EXPECT_EQ(row.icon, nullptr);
}

TEST_F(PicturesTest, DrawingTakesTwipsAndAnOpacity) {
  auto canvas = std::make_shared<Picture>(4, 2, kWhite);
  auto red = std::make_shared<Picture>(1, 1, kRed);
  // At pixel (1, 0), stretched to 2 x 2 pixels (30 x 30 twips), half opaque.
  EXPECT_TRUE(lib_.glbDrawSemiTransparentPicture(canvas, red, 15, 0, 50, 30, 30));
  const uint32_t pink = 0xFFFF8080u;  // half of white left: 127.5, rounded up
  EXPECT_EQ(canvas->Pixels(),
            (std::vector<uint32_t>{kWhite, pink, pink, kWhite, kWhite, pink, pink, kWhite}));

  // A position of 29 twips is still pixel 1; sizes left at 0 are the
  // picture's own.
  auto small = std::make_shared<Picture>(2, 1, kWhite);
  lib_.glbDrawSemiTransparentPicture(small, red, 29, 0, 100);
  EXPECT_EQ(small->Pixels(), (std::vector<uint32_t>{kWhite, kRed}));
  // A position left of the canvas is rounded down, not towards 0: -1
  // twip is pixel -1, and the 1-pixel picture falls off.
  auto edge = std::make_shared<Picture>(1, 1, kWhite);
  lib_.glbDrawSemiTransparentPicture(edge, red, -1, 0, 100);
  EXPECT_EQ(edge->Pixel(0, 0), kWhite);
}

TEST_F(PicturesTest, IconsGoToOneRowOrToEveryRow) {
  auto view = ThreeRows();
  auto icon = std::make_shared<Picture>(2, 2, kRed);
  EXPECT_EQ(lib_.tklCopyImageIntoListView(view, icon, 2), 1);
  EXPECT_EQ(view->rows[0].icon, nullptr);
  ASSERT_NE(view->rows[1].icon, nullptr);
  EXPECT_EQ(*view->rows[1].icon, *icon);

  // The icon is a copy: a later change to the picture does not reach it.
  icon->SetPixel(0, 0, kWhite);
  EXPECT_EQ(view->RowIcon(1)->Pixel(0, 0), kRed);

  EXPECT_EQ(lib_.tklCopyImageIntoListView(view, icon), 3);
  for (const auto& row : view->rows) {
    ASSERT_NE(row.icon, nullptr);
    EXPECT_EQ(row.icon->Pixel(0, 0), kWhite);
  }
  // Nothing takes the icon away again.
  EXPECT_EQ(lib_.tklCopyImageIntoListView(view, nullptr, 3), 1);
  EXPECT_EQ(view->rows[2].icon, nullptr);
  EXPECT_NE(view->rows[0].icon, nullptr);

  // Icons move with their rows when the list view is sorted.
  view->ReorderRows({2, 1, 0});
  EXPECT_EQ(view->rows[0].icon, nullptr);
  EXPECT_NE(view->rows[2].icon, nullptr);
}

TEST_F(PicturesTest, AListViewWithoutIconsSaysSo) {
  // A list view that implements only the required operations.
  class Plain final : public ListView {
   public:
    std::u16string Name() const override { return u"lvw"; }
    int32_t ColumnCount() const override { return 1; }
    std::u16string ColumnHeader(int32_t) const override { return u""; }
    void SetColumnHeader(int32_t, std::u16string_view) override {}
    int32_t ColumnWidth(int32_t) const override { return 0; }
    void SetColumnWidth(int32_t, int32_t) override {}
    void SetColumnCount(int32_t) override {}
    int32_t RowCount() const override { return 1; }
    std::u16string ItemText(int32_t, int32_t) const override { return u"x"; }
    bool Checked(int32_t) const override { return false; }
    void SetChecked(int32_t, bool) override {}
    bool Selected(int32_t) const override { return false; }
    void SetSelected(int32_t, bool) override {}
    void ReorderRows(const std::vector<int32_t>&) override {}
    ListViewSort Sort() const override { return {}; }
    void SetSort(ListViewSort) override {}
    int32_t Style() const override { return 0; }
    void SetStyle(int32_t) override {}
    std::u16string ItemToolTip(int32_t, int32_t) const override { return u""; }
    void SetItemToolTip(int32_t, int32_t, std::u16string_view) override {}
  };
  auto plain = std::make_shared<Plain>();
  auto icon = std::make_shared<Picture>(1, 1, kRed);
  EXPECT_EQ(ErrorOf([&] { lib_.tklCopyImageIntoListView(plain, icon, 1); }), kErrInvalidCall);
  EXPECT_EQ(plain->RowIcon(0), nullptr);
  EXPECT_EQ(ErrorOf([&] { (void)plain->RowIcon(1); }), kErrSubscript);
}

TEST_F(PicturesTest, EveryMemberAnswersByName) {
  auto picture = std::make_shared<Picture>(1, 1, kRed);
  auto r =
      Invoke(lib_, "tklGetSemiTransparentPicture", {Variant(Object(picture)), Variant(int32_t{0})});
  const auto copy = std::dynamic_pointer_cast<Picture>(r.result->as_object());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Pixel(0, 0), 0x00FF0000u);
  // The colours may be left out by name.
  r = Invoke(lib_, "tklGetSemiTransparentPicture",
             {Variant(Object(picture)), std::nullopt, std::nullopt, Variant(int32_t{0})});
  EXPECT_EQ(std::dynamic_pointer_cast<Picture>(r.result->as_object())->Pixel(0, 0), 0xFF800000u);

  auto canvas = std::make_shared<Picture>(1, 1, kWhite);
  r = Invoke(lib_, "glbDrawSemiTransparentPicture",
             {Variant(Object(canvas)), Variant(Object(picture))});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.count(0), 1u);
  EXPECT_EQ(canvas->Pixel(0, 0), 0xFFFF8080u);  // the default opacity is 50 %

  auto view = ThreeRows();
  r = Invoke(lib_, "tklCopyImageIntoListView", {Variant(Object(view)), Variant(Object(picture))});
  EXPECT_EQ(r.result->as_long(), 3);
  EXPECT_EQ(r.by_ref.count(0), 1u);
  for (const char* member : {"tklGetSemiTransparentPicture", "glbDrawSemiTransparentPicture",
                             "tklCopyImageIntoListView"}) {
    EXPECT_TRUE(Members().Find(member, MemberKind::kMethod)->designed_here) << member;
  }
}

}  // namespace
}  // namespace norvik50
