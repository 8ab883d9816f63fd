// LIB: semi-transparent copies of pictures, pictures drawn onto forms,
// picture boxes and other pictures, and pictures as list view icons.
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/picture.h"

namespace norvik50 {
namespace {

constexpr int32_t kTwipsPerPixel = 15;

[[noreturn]] void Refuse(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

PictureCanvas& RequireCanvas(const std::shared_ptr<HostObject>& object, const char16_t* role) {
  auto* canvas = dynamic_cast<PictureCanvas*>(object.get());
  if (canvas == nullptr) Refuse(std::u16string(role) + u" is no picture.");
  return *canvas;
}

// A colour argument: Empty, Null or missing for none, else an RGB Long.
std::optional<uint32_t> OptionalColor(const Variant& value) {
  if (value.is_empty() || value.is_null()) return std::nullopt;
  return RgbFromColorLong(CoerceTo(value, VarType::kLong).as_long());
}

// Twips to whole pixels, rounded down (towards the left and top for
// positions left of or above the canvas, too), so that a size is never
// rounded up past what the caller asked for.
int32_t Pixels(int32_t twips) {
  return static_cast<int32_t>(std::floor(static_cast<double>(twips) / kTwipsPerPixel));
}

}  // namespace

std::shared_ptr<HostObject> LIB::tklGetSemiTransparentPicture(
    const std::shared_ptr<HostObject>& oPicture, int32_t lOpacity, const Variant& vTransparentColor,
    const Variant& vBackColor) {
  const PictureCanvas& canvas = RequireCanvas(oPicture, u"oPicture");
  // A picture is read where it is; another canvas is asked what it shows.
  const auto* picture = dynamic_cast<const Picture*>(&canvas);
  const Picture shown = picture != nullptr ? Picture() : canvas.Snapshot();
  const Picture& source = picture != nullptr ? *picture : shown;
  Translucency how;
  how.opacity_percent = lOpacity;
  how.key_rgb = OptionalColor(vTransparentColor);
  how.back_rgb = OptionalColor(vBackColor);
  return std::make_shared<Picture>(SemiTransparentCopy(source, how));
}

bool LIB::glbDrawSemiTransparentPicture(const std::shared_ptr<HostObject>& oTarget,
                                        const std::shared_ptr<HostObject>& oPicture, int32_t lLeft,
                                        int32_t lTop, int32_t lOpacity, int32_t lWidth,
                                        int32_t lHeight) {
  PictureCanvas& target = RequireCanvas(oTarget, u"oTarget");
  // A snapshot: drawing a canvas onto itself reads it as it was.
  const Picture picture = RequireCanvas(oPicture, u"oPicture").Snapshot();
  if (lWidth < 0 || lHeight < 0) Refuse(u"A width or height is 0 or more twips.");
  if (lOpacity < 0 || lOpacity > 100) Refuse(u"The opacity is a percentage from 0 to 100.");
  const PixelRect where{Pixels(lLeft), Pixels(lTop), lWidth > 0 ? Pixels(lWidth) : picture.Width(),
                        lHeight > 0 ? Pixels(lHeight) : picture.Height()};
  return target.DrawPicture(picture, where, lOpacity);
}

int32_t LIB::tklCopyImageIntoListView(const std::shared_ptr<HostObject>& oListView,
                                      const std::shared_ptr<HostObject>& oPicture, int32_t lRow) {
  auto* view = dynamic_cast<ListView*>(oListView.get());
  if (view == nullptr) Refuse(u"oListView is no list view.");
  std::shared_ptr<const Picture> icon;
  if (oPicture)
    icon = std::make_shared<const Picture>(RequireCanvas(oPicture, u"oPicture").Snapshot());
  if (lRow != 0) {
    if (lRow < 0 || lRow > view->RowCount()) Raise(kErrSubscript);
    view->SetRowIcon(lRow - 1, std::move(icon));
    return 1;
  }
  const int32_t rows = view->RowCount();
  for (int32_t row = 0; row < rows; ++row) view->SetRowIcon(row, icon);
  return rows;
}

}  // namespace norvik50
