// The pixel arithmetic of pictures: semi-transparent copies, drawing with
// an opacity, scaling, cutting at the edges, and the sizes a picture
// refuses.
#include "norvik50/picture.h"

#include <gtest/gtest.h>

#include <vector>

#include "norvik50/error.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

constexpr uint32_t kWhite = 0xFFFFFFFFu;
constexpr uint32_t kBlack = 0xFF000000u;
constexpr uint32_t kRed = 0xFFFF0000u;
constexpr uint32_t kBlue = 0xFF0000FFu;

TEST(PictureTest, HoldsItsPixelsRowByRow) {
  Picture picture(3, 2, std::vector<uint32_t>{1, 2, 3, 4, 5, 6});
  EXPECT_EQ(picture.Width(), 3);
  EXPECT_EQ(picture.Height(), 2);
  EXPECT_EQ(picture.Pixel(0, 1), 4u);
  EXPECT_EQ(picture.Pixel(2, 0), 3u);
  picture.SetPixel(1, 1, 0xABCDEF01u);
  EXPECT_EQ(picture.Pixels()[4], 0xABCDEF01u);
  EXPECT_TRUE(Picture().Empty());
  EXPECT_TRUE(Picture(0, 5).Empty());
}

TEST(PictureTest, RefusesSizesAndPixelsItCannotHold) {
  // Negative sizes, a side past the limit, too many pixels in all, and a
  // pixel list of the wrong length.
  EXPECT_EQ(ErrorOf([] { Picture(-1, 2); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([] { Picture(kMaxPictureSide + 1, 1); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([] { Picture(20000, 20000); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([] { Picture(2, 2, std::vector<uint32_t>{1, 2, 3}); }), kErrInvalidCall);
  // Pixels outside the picture are out of range, reading and writing.
  Picture picture(2, 2);
  EXPECT_EQ(ErrorOf([&] { (void)picture.Pixel(2, 0); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { (void)picture.Pixel(0, -1); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { picture.SetPixel(-1, 0, 0); }), kErrSubscript);
}

TEST(PictureTest, SemiTransparentCopyScalesAlphaRoundingHalfUp) {
  struct Case {
    uint32_t pixel;
    int32_t opacity;
    uint32_t expected;
  };
  const Case cases[] = {
      {kRed, 100, kRed},               // as it is
      {kRed, 0, 0x00FF0000u},          // invisible, colour kept
      {kRed, 50, 0x80FF0000u},         // 127.5 rounds up to 128
      {0x01123456u, 50, 0x01123456u},  // 0.5 rounds up to 1
      {0x03123456u, 50, 0x02123456u},  // 1.5 rounds up to 2
      {0x00ABCDEFu, 70, 0x00ABCDEFu},  // already transparent stays so
      {0x64000000u, 33, 0x21000000u},  // 100 x 33 % = 33
      {kWhite, 1, 0x03FFFFFFu},        // 2.55 rounds to 3
  };
  for (const Case& c : cases) {
    Translucency how;
    how.opacity_percent = c.opacity;
    const Picture copy = SemiTransparentCopy(Picture(1, 1, c.pixel), how);
    EXPECT_EQ(copy.Pixel(0, 0), c.expected)
        << std::hex << c.pixel << " at " << std::dec << c.opacity << " %";
  }
}

TEST(PictureTest, SemiTransparentCopyMakesTheKeyColourTransparent) {
  // The key matches the colour whatever the alpha; other colours only
  // lose opacity.
  const Picture source(3, 1, std::vector<uint32_t>{kRed, 0x40FF0000u, kBlue});
  Translucency how;
  how.opacity_percent = 100;
  how.key_rgb = 0xFF0000u;
  const Picture copy = SemiTransparentCopy(source, how);
  EXPECT_EQ(copy.Pixels(), (std::vector<uint32_t>{0x00FF0000u, 0x00FF0000u, kBlue}));
}

TEST(PictureTest, SemiTransparentCopyOverABackgroundIsOpaque) {
  struct Case {
    uint32_t pixel;
    int32_t opacity;
    uint32_t back;
    uint32_t expected;
  };
  const Case cases[] = {
      {kWhite, 50, 0x000000u, 0xFF808080u},        // 127.5 -> 128 in every channel
      {kWhite, 0, 0x336699u, 0xFF336699u},         // only the background
      {kWhite, 100, 0x336699u, kWhite},            // only the picture
      {0x80FF0000u, 100, 0x0000FFu, 0xFF80007Fu},  // its own alpha 128/255 counts
      {0x00FF0000u, 100, 0x00FF00u, 0xFF00FF00u},  // transparent: the background
      {kRed, 25, 0xFFFFFFu, 0xFFFFBFBFu},          // 255 x 0.75 = 191.25 -> 191
  };
  for (const Case& c : cases) {
    Translucency how;
    how.opacity_percent = c.opacity;
    how.back_rgb = c.back;
    EXPECT_EQ(SemiTransparentCopy(Picture(1, 1, c.pixel), how).Pixel(0, 0), c.expected)
        << std::hex << c.pixel << " over " << c.back;
  }
  // A key colour over the background shows the background.
  Translucency how;
  how.key_rgb = 0xFF0000u;
  how.back_rgb = 0x123456u;
  EXPECT_EQ(SemiTransparentCopy(Picture(1, 1, kRed), how).Pixel(0, 0), 0xFF123456u);
}

TEST(PictureTest, SemiTransparentCopyRefusesAnOpacityOutsideThePercentages) {
  for (int32_t opacity : {-1, 101}) {
    Translucency how;
    how.opacity_percent = opacity;
    EXPECT_EQ(ErrorOf([&] { (void)SemiTransparentCopy(Picture(1, 1), how); }), kErrInvalidCall);
  }
}

TEST(PictureTest, BlendPixelIsSourceOverRoundedOnce) {
  struct Case {
    uint32_t dst;
    uint32_t src;
    int32_t opacity;
    uint32_t expected;
  };
  const Case cases[] = {
      {kBlack, kWhite, 50, 0xFF808080u},             // half of white over black
      {kBlack, kWhite, 0, kBlack},                   // nothing drawn
      {kBlack, kWhite, 100, kWhite},                 // covered
      {0x00123456u, kRed, 0, 0x00123456u},           // nothing drawn: dst exactly as it was
      {0x00000000u, kRed, 50, 0x80FF0000u},          // over nothing: the colour, half alpha
      {0x800000FFu, 0x80FF0000u, 100, 0xC0AA0055u},  // two half-transparent pixels
      {kBlue, 0x00FF0000u, 100, kBlue},              // a transparent source draws nothing
  };
  for (const Case& c : cases) {
    EXPECT_EQ(BlendPixel(c.dst, c.src, c.opacity), c.expected)
        << std::hex << c.src << " over " << c.dst << std::dec << " at " << c.opacity;
  }
}

TEST(PictureTest, ACopyOverABackgroundIsTheSameAsDrawingOnThatColour) {
  // Two ways to the same pixels: every alpha and opacity of one channel
  // pattern must agree exactly.
  std::vector<uint32_t> pixels;
  for (uint32_t a = 0; a < 256; ++a) pixels.push_back((a << 24) | 0x00C86432u);
  const Picture source(static_cast<int32_t>(pixels.size()), 1, pixels);
  for (int32_t opacity : {0, 1, 33, 50, 99, 100}) {
    Translucency how;
    how.opacity_percent = opacity;
    how.back_rgb = 0x204060u;
    Picture canvas(source.Width(), 1, 0xFF204060u);
    canvas.DrawPicture(source, {0, 0, source.Width(), 1}, opacity);
    EXPECT_EQ(SemiTransparentCopy(source, how), canvas) << opacity;
  }
}

TEST(PictureTest, DrawingIsCutAtTheEdgesAndScalesToTheNearestPixel) {
  const Picture two_by_one(2, 1, std::vector<uint32_t>{kRed, kBlue});
  // Stretched to 4 x 2 at (1, 1) on a 4 x 3 canvas: each source pixel
  // covers two columns, and the last column falls off the canvas.
  Picture canvas(4, 3, kWhite);
  EXPECT_TRUE(canvas.DrawPicture(two_by_one, {1, 1, 4, 2}, 100));
  const std::vector<uint32_t> expected = {
      kWhite, kWhite, kWhite, kWhite,  //
      kWhite, kRed,   kRed,   kBlue,   //
      kWhite, kRed,   kRed,   kBlue,   //
  };
  EXPECT_EQ(canvas.Pixels(), expected);

  // Shrunk to one pixel: the source pixel under its centre (the second).
  Picture one(1, 1, kWhite);
  one.DrawPicture(two_by_one, {0, 0, 1, 1}, 100);
  EXPECT_EQ(one.Pixel(0, 0), kBlue);

  // Wholly outside (left and above), or of no size: nothing changes.
  Picture untouched(2, 2, kWhite);
  untouched.DrawPicture(two_by_one, {-5, -5, 2, 1}, 100);
  untouched.DrawPicture(two_by_one, {0, 0, 0, 1}, 100);
  untouched.DrawPicture(Picture(), {0, 0, 2, 2}, 100);
  EXPECT_EQ(untouched, Picture(2, 2, kWhite));
}

TEST(PictureTest, DrawingAPictureOnItselfReadsItAsItWas) {
  // The right half drawn over the left half: the left must get the old
  // right pixels, not ones already changed by this draw.
  Picture picture(4, 1, std::vector<uint32_t>{kRed, kRed, kBlue, kWhite});
  picture.DrawPicture(picture, {-2, 0, 4, 1}, 100);
  EXPECT_EQ(picture.Pixels(), (std::vector<uint32_t>{kBlue, kWhite, kBlue, kWhite}));
}

TEST(PictureTest, RgbLongsAreRedInTheLowByte) {
  EXPECT_EQ(RgbFromColorLong(255), 0xFF0000u);       // RGB(255, 0, 0)
  EXPECT_EQ(RgbFromColorLong(0xFF0000), 0x0000FFu);  // RGB(0, 0, 255)
  EXPECT_EQ(RgbFromColorLong(0x123456), 0x563412u);
  EXPECT_EQ(ErrorOf([] { RgbFromColorLong(-1); }), kErrInvalidCall);
  // A system colour (&H8000000F, the button face) names no fixed colour.
  EXPECT_EQ(ErrorOf([] { RgbFromColorLong(0x8000000F); }), kErrInvalidCall);
}

}  // namespace
}  // namespace norvik50
