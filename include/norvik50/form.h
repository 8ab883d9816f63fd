// A host's form (one of its top-level windows) as the library's members
// drive it: its name and where it stands on the desktop, which
// tklSaveWindowPos and tklLoadWindowPos keep under
// "<base key>\Positions\Forms\<name>", and the texts that name their
// resource, which tklLoadFormCaptions fills. The Qt adapter comes with the
// dialogs (norvik50/qt_dialogs.h: any QWidget window); MemoryForm serves
// hosts without a toolkit, tests and the batch.
//
// Thread safety: none; a form belongs to the thread that uses it.
#ifndef NORVIK50_FORM_H_
#define NORVIK50_FORM_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/host.h"
#include "norvik50/list_view.h"
#include "norvik50/variant.h"

namespace norvik50 {

struct TwipsSize {
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const TwipsSize&) const = default;
};

// A window's state, numbered as the host runtime numbers it.
enum class WindowState : int32_t { kNormal = 0, kMinimized = 1, kMaximized = 2 };

// Where a form stands: `bounds` is its normal (restored) outer rectangle,
// kept also while the form is maximised or minimised, so that a form
// restored later returns to it.
struct WindowPlacement {
  TwipsRect bounds;
  WindowState state = WindowState::kNormal;
  bool operator==(const WindowPlacement&) const = default;
};

// Where a text of a form goes: the window's title, a control's caption
// (a button, label, frame, menu or action), a tooltip, a list view's
// column header or a tab's caption. Titles, tooltips and headers show no
// access key; captions and tabs do.
enum class CaptionPlace : int32_t { kTitle, kCaption, kToolTip, kColumnHeader, kTab };

// Answers the text for a place that names the resource `res_id` (as the
// control names it: "1001", "cmdOK"), or nullopt to keep the designed text.
// The text it answers stays valid until its next call: a form copies it
// into its control at once.
using CaptionLookup = std::function<std::optional<std::u16string_view>(CaptionPlace place,
                                                                       std::u16string_view res_id)>;

class NORVIK50_EXPORT Form : public HostObject {
 public:
  ~Form() override;
  // The form's name (frmCustomer): the key its position is kept under.
  virtual std::u16string Name() const = 0;
  virtual WindowPlacement Placement() const = 0;
  // Moves and sizes the form to `placement.bounds` and gives it the
  // state; a form that is not shown yet appears so when it is shown.
  virtual void SetPlacement(const WindowPlacement& placement) = 0;
  // Asks `lookup` once for every text of the form that names a resource,
  // the title included, and sets each text it answers. Returns the number
  // of texts set.
  virtual int32_t FillCaptions(const CaptionLookup& lookup) = 0;
  // Keeps the form above every other window, other applications' too, or
  // (`top_most` false) lets it go behind them again. False when the form
  // cannot (it is gone, or its window system does not allow it).
  virtual bool SetTopMost(bool top_most);
  // Shows the form and brings it to the front; false when it cannot be
  // shown. A form that cannot show itself answers false (the default).
  virtual bool Show();
  // The room inside the form for its controls, in twips: the outer size
  // without the frame, the caption and a menu bar. The default takes the
  // classic frame off the placement's size (never below 0).
  virtual TwipsSize InnerSize() const;
  // Cuts the form's corners round with `radius_twips` (0: square again),
  // and keeps them round when it is resized. False when the form cannot
  // (the default).
  virtual bool SetCornerRadius(int32_t radius_twips);
  // Gives the form a soft shadow to its right and below it (`shadow`
  // false: none). False when the form cannot (the default).
  virtual bool SetShadow(bool shadow);
  // Whether the form is open: shown on the desktop, minimised or not. A
  // form that was closed (or is gone) is not. A form that cannot tell
  // answers false (the default).
  virtual bool IsOpen() const;
};

// The inner size of a form of `outer` size with the classic frame and,
// with `menu_bar`, a classic menu bar; never below 0.
NORVIK50_EXPORT TwipsSize InnerSizeOf(const TwipsRect& outer, bool menu_bar);

// A form held in memory: it takes every placement as it is given. Its
// texts are its title, its controls' captions and tooltips and its list
// views' column headers; each names its resource in the matching
// `*res_id` ("" for a text that keeps its designed value).
class NORVIK50_EXPORT MemoryForm final : public Form {
 public:
  struct Control {
    std::u16string name;
    std::u16string caption;
    std::u16string res_id;
    std::u16string tooltip;
    std::u16string tooltip_res_id;
    bool operator==(const Control&) const = default;
  };
  explicit MemoryForm(std::u16string name = u"") : name(std::move(name)) {}
  std::u16string Name() const override { return name; }
  WindowPlacement Placement() const override { return placement; }
  void SetPlacement(const WindowPlacement& to) override { placement = to; }
  int32_t FillCaptions(const CaptionLookup& lookup) override;
  bool SetTopMost(bool on) override {
    top_most = on;
    return true;
  }
  bool Show() override {
    visible = true;
    return true;
  }
  TwipsSize InnerSize() const override { return InnerSizeOf(placement.bounds, menu_bar); }
  bool SetCornerRadius(int32_t radius_twips) override {
    corner_radius = radius_twips;
    return true;
  }
  bool SetShadow(bool on) override {
    shadow = on;
    return true;
  }
  bool IsOpen() const override { return visible; }

  std::u16string name;
  WindowPlacement placement;
  bool top_most = false;      // kept above other windows
  bool visible = false;       // shown
  bool menu_bar = false;      // has a menu bar (its inner size is smaller)
  int32_t corner_radius = 0;  // twips; 0 for square corners
  bool shadow = false;        // casts a drop shadow
  std::u16string caption;     // the title
  std::u16string res_id;      // the title's resource
  std::vector<Control> controls;
  std::vector<std::shared_ptr<MemoryListView>> list_views;
};

}  // namespace norvik50

#endif  // NORVIK50_FORM_H_
