// Dispatch entries of the list-box, option-group, tab and grid helpers.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterListBoxMembers(MemberTable& table) {
  using namespace members;

  table.Add(DesignedHere(Method("tklListBoxData",
                                {In("oList", O), Opt("lIndex", L, Variant(int32_t{-1}))}, L,
                                [](LIB& lib, CallArgs& a) {
                                  return Variant(lib.tklListBoxData(a[0].as_object(), a.i32(1)));
                                })));
  table.Add(DesignedHere(
      Method("tklListBoxItemSum", {In("oList", O), Opt("bAllItems", B, Variant(false))}, L,
             [](LIB& lib, CallArgs& a) {
               return Variant(lib.tklListBoxItemSum(a[0].as_object(), a.flag(1)));
             })));
  // The list comes back with its new choice.
  table.Add(DesignedHere(Method(
      "tklSelectListBoxItem", {Ref("oList", O), In("vFind", V), Opt("bSelect", B, Variant(true))},
      L, [](LIB& lib, CallArgs& a) {
        const int32_t row = lib.tklSelectListBoxItem(a[0].as_object(), a[1], a.flag(2));
        a.MarkWritten(0);
        return Variant(row);
      })));
  table.Add(
      DesignedHere(Method("tklGetOptionIndex", {In("oGroup", O)}, I, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklGetOptionIndex(a[0].as_object()));
      })));
  // The frames and grids come back with their new state.
  table.Add(DesignedHere(
      Method("tklOnTabClick", {In("oTab", O), Ref("oFrames", O)}, I, [](LIB& lib, CallArgs& a) {
        const int16_t shown = lib.tklOnTabClick(a[0].as_object(), a[1].as_object());
        a.MarkWritten(1);
        return Variant(shown);
      })));
  table.Add(DesignedHere(Method("tklResizeGridCol",
                                {Ref("oGrid", O), Opt("iCol", I, Variant(int16_t{-1})),
                                 Opt("lMinWidth", L, Variant(int32_t{0}))},
                                L, [](LIB& lib, CallArgs& a) {
                                  const int32_t width =
                                      lib.tklResizeGridCol(a[0].as_object(), a.i16(1), a.i32(2));
                                  a.MarkWritten(0);
                                  return Variant(width);
                                })));
  table.Add(DesignedHere(Method(
      "tklAlignText", {Ref("oGrid", O), In("iAlignment", I), Opt("iCol", I, Variant(int16_t{-1}))},
      kNone, [](LIB& lib, CallArgs& a) {
        lib.tklAlignText(a[0].as_object(), a.i16(1), a.i16(2));
        a.MarkWritten(0);
        return Variant();
      })));
  table.Add(DesignedHere(Method("tklIsControl", {In("vObject", V)}, B, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklIsControl(a[0]));
  })));
}

}  // namespace norvik50
