// Row icons of a list view that shows none: a row still has to exist, so
// that a bad row number is reported the same way whatever the control.
#include <string>

#include "norvik50/error.h"
#include "norvik50/list_view.h"

namespace norvik50 {
namespace {

void CheckRow(const ListView& view, int32_t row) {
  if (row < 0 || row >= view.RowCount()) {
    throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
  }
}

}  // namespace

std::shared_ptr<const Picture> ListView::RowIcon(int32_t row) const {
  CheckRow(*this, row);
  return nullptr;
}

void ListView::SetRowIcon(int32_t row, std::shared_ptr<const Picture> /*icon*/) {
  CheckRow(*this, row);
  throw Error(kErrInvalidCall, u"This list view shows no icons.", std::u16string(kErrorSource));
}

}  // namespace norvik50
