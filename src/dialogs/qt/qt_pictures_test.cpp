// Pictures on real Qt widgets: QImage conversion, a QLabel as a picture
// box, a window's background, and list view rows with icons.
#include <gtest/gtest.h>

#include <QDir>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <cmath>
#include <cstdlib>

#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

constexpr uint32_t kWhite = 0xFFFFFFFFu;
constexpr uint32_t kRed = 0xFFFF0000u;

// QPainter mixes in 8 bits with its own rounding: each channel may be one
// off the library's exact arithmetic, never more.
::testing::AssertionResult Near(uint32_t actual, uint32_t expected) {
  for (int shift : {24, 16, 8, 0}) {
    const int a = static_cast<int>((actual >> shift) & 0xFFu);
    const int e = static_cast<int>((expected >> shift) & 0xFFu);
    if (std::abs(a - e) > 1) {
      return ::testing::AssertionFailure()
             << std::hex << actual << " is not within 1 of " << expected << " in every channel";
    }
  }
  return ::testing::AssertionSuccess();
}

// Where the test pictures go when a person wants to look at them.
QString PicturesFolder() {
  const QString folder = qEnvironmentVariable("NORVIK50_PICTURES_DIR");
  if (!folder.isEmpty()) QDir().mkpath(folder);
  return folder;
}

// A picture of a red disc, opaque in its middle and fading out.
Picture Disc(int32_t size) {
  Picture disc(size, size);
  const double centre = (size - 1) / 2.0;
  for (int32_t y = 0; y < size; ++y) {
    for (int32_t x = 0; x < size; ++x) {
      const double d = std::hypot(x - centre, y - centre) / (size / 2.0);
      const double alpha = d >= 1 ? 0 : d < 0.7 ? 1 : (1 - d) / 0.3;
      disc.SetPixel(x, y, (static_cast<uint32_t>(alpha * 255 + 0.5) << 24) | 0xD02020u);
    }
  }
  return disc;
}

class QtPicturesTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }
  LIB lib_;
};

TEST_F(QtPicturesTest, PicturesAndImagesTurnIntoEachOtherPixelForPixel) {
  // A transparent pixel keeps its colour in ARGB32, as in a Picture.
  const Picture picture(2, 2, std::vector<uint32_t>{kRed, 0x00123456u, 0x80FFFFFFu, 0xFF0000FFu});
  const QImage image = ToQImage(picture);
  EXPECT_EQ(image.format(), QImage::Format_ARGB32);
  EXPECT_EQ(image.pixel(1, 0), 0x00123456u);
  EXPECT_EQ(image.pixel(0, 1), 0x80FFFFFFu);
  EXPECT_EQ(PictureFromQImage(image), picture);

  // Another format is converted: an opaque RGB32 image reads opaque.
  QImage rgb(3, 1, QImage::Format_RGB32);
  rgb.fill(QColor(10, 20, 30));
  EXPECT_EQ(PictureFromQImage(rgb), Picture(3, 1, 0xFF0A141Eu));
  EXPECT_TRUE(PictureFromQImage(QImage()).Empty());
}

TEST_F(QtPicturesTest, APictureBoxIsDrawnOnWithQtsOpacity) {
  QLabel label;
  QImage white(4, 2, QImage::Format_ARGB32);
  white.fill(Qt::white);
  label.setPixmap(QPixmap::fromImage(white));
  auto box = QtPictureBox(&label);
  auto red = std::make_shared<Picture>(1, 1, kRed);
  ASSERT_TRUE(lib_.glbDrawSemiTransparentPicture(box, red, 15, 0, 50, 30, 30));

  // The same drawing in memory is the reference.
  Picture expected(4, 2, kWhite);
  expected.DrawPicture(*red, {1, 0, 2, 2}, 50);
  const Picture drawn = PictureFromQImage(label.pixmap().toImage());
  ASSERT_EQ(drawn.Width(), 4);
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 4; ++x) EXPECT_TRUE(Near(drawn.Pixel(x, y), expected.Pixel(x, y)));
  }
  EXPECT_EQ(drawn.Pixel(0, 0), kWhite);
  EXPECT_NE(drawn.Pixel(1, 0), kWhite);

  // What the box shows is a picture for the other members too.
  const auto copy = std::dynamic_pointer_cast<Picture>(lib_.tklGetSemiTransparentPicture(box, 0));
  EXPECT_EQ(copy->Width(), 4);
  EXPECT_EQ(copy->Pixel(0, 0), 0x00FFFFFFu);
}

TEST_F(QtPicturesTest, ALabelWithoutAPictureGetsOneOfItsSize) {
  QLabel label;
  label.resize(6, 3);
  auto box = QtPictureBox(&label);
  EXPECT_TRUE(box->Snapshot().Empty());
  ASSERT_TRUE(box->DrawPicture(Picture(1, 1, kRed), {5, 2, 1, 1}, 100));
  const Picture drawn = box->Snapshot();
  EXPECT_EQ(drawn.Width(), 6);
  EXPECT_EQ(drawn.Height(), 3);
  EXPECT_EQ(drawn.Pixel(5, 2), kRed);
  EXPECT_EQ(drawn.Pixel(0, 0) >> 24, 0u);  // the rest transparent
}

TEST_F(QtPicturesTest, ACanvasWhoseWidgetIsGoneCannotBeDrawnOn) {
  auto* label = new QLabel;
  auto* window = new QWidget;
  auto box = QtPictureBox(label);
  auto background = QtFormBackground(window);
  delete label;
  delete window;
  auto red = std::make_shared<Picture>(1, 1, kRed);
  EXPECT_FALSE(lib_.glbDrawSemiTransparentPicture(box, red));
  EXPECT_FALSE(lib_.glbDrawSemiTransparentPicture(background, red));
  EXPECT_TRUE(box->Snapshot().Empty());
  EXPECT_TRUE(background->Snapshot().Empty());
}

TEST_F(QtPicturesTest, AFormKeepsWhatIsDrawnOnItsBackground) {
  QWidget form;
  form.resize(240, 160);
  QPalette palette = form.palette();
  palette.setColor(QPalette::Window, QColor(0x20, 0x40, 0x80));
  form.setPalette(palette);
  auto background = QtFormBackground(&form);
  EXPECT_EQ(background->Snapshot().Pixel(10, 10), 0xFF204080u);

  auto disc = std::make_shared<Picture>(Disc(80));
  // One disc at full opacity and one at 40 %, overlapping it.
  ASSERT_TRUE(lib_.glbDrawSemiTransparentPicture(background, disc, 20 * 15, 30 * 15, 100));
  ASSERT_TRUE(lib_.glbDrawSemiTransparentPicture(background, disc, 70 * 15, 50 * 15, 40));
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
  // The form as the user sees it, after a repaint.
  const QImage seen = form.grab().toImage();
  const uint32_t blue = 0xFF204080u;
  EXPECT_TRUE(Near(seen.pixel(5, 5), blue));
  EXPECT_TRUE(Near(seen.pixel(60, 70), 0xFFD02020u));  // the first disc's middle
  // Inside the second disc only, right of the first: 40 % red over the blue.
  EXPECT_TRUE(Near(seen.pixel(125, 95), BlendPixel(blue, 0xFFD02020u, 40)));
  // Drawn twice, the earlier drawing stays under the later one.
  EXPECT_TRUE(Near(background->Snapshot().Pixel(60, 70), 0xFFD02020u));
  const QString folder = PicturesFolder();
  if (!folder.isEmpty()) {
    ASSERT_TRUE(seen.save(folder + "/form_semi_transparent_pictures.png"));
  }
}

TEST_F(QtPicturesTest, ListViewRowsShowTheirIcons) {
  QTreeWidget tree;
  tree.setColumnCount(2);
  tree.setHeaderLabels({"File", "Size"});
  tree.setRootIsDecorated(false);
  for (const char* name : {"report.pdf", "letter.odt", "budget.ods"}) {
    new QTreeWidgetItem(&tree, {name, "12 KB"});
  }
  auto view = QtListView(&tree);
  auto icon = std::make_shared<Picture>(Disc(16));
  EXPECT_EQ(lib_.tklCopyImageIntoListView(view, icon), 3);
  for (int row = 0; row < 3; ++row) EXPECT_FALSE(tree.topLevelItem(row)->icon(0).isNull());
  // The icon reads back as it was given, but for the rounding of Qt's
  // premultiplied pixmaps in the partly transparent pixels.
  const auto shown = view->RowIcon(1);
  ASSERT_NE(shown, nullptr);
  ASSERT_EQ(shown->Width(), 16);
  ASSERT_EQ(shown->Height(), 16);
  for (std::size_t i = 0; i < icon->Pixels().size(); ++i) {
    const uint32_t given = icon->Pixels()[i];
    // A wholly transparent pixel has no colour left to compare.
    if (given >> 24 == 0) {
      EXPECT_EQ(shown->Pixels()[i] >> 24, 0u);
    } else if (given >> 24 > 64) {
      EXPECT_TRUE(Near(shown->Pixels()[i], given)) << i;
    }
  }

  // Nothing removes the icon of one row.
  EXPECT_EQ(lib_.tklCopyImageIntoListView(view, nullptr, 2), 1);
  EXPECT_TRUE(tree.topLevelItem(1)->icon(0).isNull());
  EXPECT_EQ(view->RowIcon(1), nullptr);
  EXPECT_EQ(ErrorOf([&] { lib_.tklCopyImageIntoListView(view, icon, 4); }), kErrSubscript);

  tree.resize(300, 120);
  tree.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree));
  const QString folder = PicturesFolder();
  if (!folder.isEmpty()) {
    ASSERT_TRUE(tree.grab().save(folder + "/list_view_icons.png"));
  }
}

TEST_F(QtPicturesTest, IconsNeedAModelThatKeepsThem) {
  // A table over a standard model keeps icons like a tree widget.
  QStandardItemModel model(2, 1);
  QTableView table;
  table.setModel(&model);
  auto icon = std::make_shared<Picture>(8, 8, kRed);
  EXPECT_EQ(lib_.tklCopyImageIntoListView(QtListView(&table), icon, 2), 1);
  EXPECT_FALSE(model.item(1)->icon().isNull());

  // A string list model keeps texts only: refused, not silently dropped.
  QStringListModel strings({"a", "b"});
  QTableView plain;
  plain.setModel(&strings);
  EXPECT_EQ(ErrorOf([&] { lib_.tklCopyImageIntoListView(QtListView(&plain), icon, 1); }),
            kErrInvalidCall);
}

}  // namespace
}  // namespace norvik50
