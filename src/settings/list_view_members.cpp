// Dispatch entries of the list view helpers. A member that changes the
// list view takes it by reference, so that a caller by name (the batch)
// gets it back with its new state.
#include <optional>

#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterListViewMembers(MemberTable& table) {
  using namespace members;

  const auto optional_flag = [](const CallArgs& a, std::size_t i) {
    return a.has(i) ? std::optional<bool>(a.flag(i)) : std::nullopt;
  };
  // Runs `body` and marks argument 0, the list view, as written back.
  const auto changing = [](auto body) {
    return [body](LIB& lib, CallArgs& a) {
      Variant result = body(lib, a);
      a.MarkWritten(0);
      return result;
    };
  };
  // The indexes a listing member found, written back when asked for.
  const auto listing = [](int32_t (LIB::*member)(const std::shared_ptr<HostObject>&, SafeArray*)) {
    return [member](LIB& lib, CallArgs& a) {
      SafeArray indexes(VarType::kLong);
      const int32_t count = (lib.*member)(a[0].as_object(), a.has(1) ? &indexes : nullptr);
      if (a.has(1)) WriteBack(a, 1, Variant(std::move(indexes)));
      return Variant(count);
    };
  };

  table.Add(DesignedHere(
      Method("tklSetListViewHeaders",
             {Ref("oListView", O), In("sHeaders", S), Opt("sSeparator", S, Variant(u"|"))}, L,
             changing([](LIB& lib, CallArgs& a) {
               return Variant(lib.tklSetListViewHeaders(a[0].as_object(), a.str(1), a.str(2)));
             }))));
  table.Add(DesignedHere(Method("tklGetListViewCol", {In("oListView", O), In("sHeader", S)}, L,
                                [](LIB& lib, CallArgs& a) {
                                  return Variant(lib.tklGetListViewCol(a[0].as_object(), a.str(1)));
                                })));
  table.Add(DesignedHere(
      Method("tklListItemText",
             {In("oListView", O), In("lIndex", L), Opt("lColumn", L, Variant(int32_t{1}))}, S,
             [](LIB& lib, CallArgs& a) {
               return Variant(lib.tklListItemText(a[0].as_object(), a.i32(1), a.i32(2)));
             })));
  table.Add(DesignedHere(
      Method("tklListItemIndex",
             {In("oListView", O), In("sText", S), Opt("lColumn", L, Variant(int32_t{1}))}, L,
             [](LIB& lib, CallArgs& a) {
               return Variant(lib.tklListItemIndex(a[0].as_object(), a.str(1), a.i32(2)));
             })));
  table.Add(DesignedHere(
      Method("tklListCheckAllItems", {Ref("oListView", O), Opt("bChecked", B, Variant(true))}, L,
             changing([](LIB& lib, CallArgs& a) {
               return Variant(lib.tklListCheckAllItems(a[0].as_object(), a.flag(1)));
             }))));
  table.Add(DesignedHere(Method("tklListCheckedItems",
                                {In("oListView", O), OptMissing("lIndexes", A, true)}, L,
                                listing(&LIB::tklListCheckedItems))));
  table.Add(DesignedHere(Method(
      "tklListItemChecked", {Ref("oListView", O), In("lIndex", L), OptMissing("bChecked", B)}, B,
      changing([optional_flag](LIB& lib, CallArgs& a) {
        return Variant(lib.tklListItemChecked(a[0].as_object(), a.i32(1), optional_flag(a, 2)));
      }))));
  table.Add(DesignedHere(Method("tklListSelectedItems",
                                {In("oListView", O), OptMissing("lIndexes", A, true)}, L,
                                listing(&LIB::tklListSelectedItems))));
  table.Add(DesignedHere(
      Method("tklListSelectItems",
             {Ref("oListView", O), In("vIndexes", V), Opt("bSelected", B, Variant(true)),
              Opt("bDeselectOthers", B, Variant(false))},
             L, changing([](LIB& lib, CallArgs& a) {
               return Variant(lib.tklListSelectItems(a[0].as_object(), a[1], a.flag(2), a.flag(3)));
             }))));
  table.Add(DesignedHere(Method(
      "tklListItemSelected", {Ref("oListView", O), In("lIndex", L), OptMissing("bSelected", B)}, B,
      changing([optional_flag](LIB& lib, CallArgs& a) {
        return Variant(lib.tklListItemSelected(a[0].as_object(), a.i32(1), optional_flag(a, 2)));
      }))));
  table.Add(
      DesignedHere(Method("tklSelItemCount", {In("oListView", O)}, L, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklSelItemCount(a[0].as_object()));
      })));
  table.Add(DesignedHere(Method(
      "tklSelectedItem",
      {In("oListView", O), Opt("lColumn", L, Variant(int32_t{1})), OptMissing("lIndex", L, true)},
      S, [](LIB& lib, CallArgs& a) {
        int32_t index = 0;
        Variant text(lib.tklSelectedItem(a[0].as_object(), a.i32(1), &index));
        if (a.has(2)) WriteBack(a, 2, Variant(index));
        return text;
      })));
  table.Add(
      DesignedHere(Method("tklHasSelectedItem", {In("oListView", O)}, B, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklHasSelectedItem(a[0].as_object()));
      })));
  table.Add(DesignedHere(Method(
      "tklIsSelected", {In("oListView", O), In("vItem", V)}, B,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklIsSelected(a[0].as_object(), a[1])); })));
  table.Add(DesignedHere(
      Method("tklSortListView",
             {Ref("oListView", O), In("lColumn", L), Opt("iSortType", I, Variant(int16_t{0}))}, I,
             changing([](LIB& lib, CallArgs& a) {
               return Variant(lib.tklSortListView(a[0].as_object(), a.i32(1), a.i16(2)));
             }))));
  table.Add(DesignedHere(
      Method("tklSearchListItem",
             {Ref("oListView", O), In("sTyped", S), Opt("lStart", L, Variant(int32_t{0})),
              Opt("lColumn", L, Variant(int32_t{1})), Opt("bSelect", B, Variant(true))},
             L, changing([](LIB& lib, CallArgs& a) {
               return Variant(lib.tklSearchListItem(a[0].as_object(), a.str(1), a.i32(2), a.i32(3),
                                                    a.flag(4)));
             }))));
  table.Add(DesignedHere(Method(
      "tklSetListViewStyle", {Ref("oListView", O), In("lStyle", L), Opt("bOn", B, Variant(true))},
      L, changing([](LIB& lib, CallArgs& a) {
        return Variant(lib.tklSetListViewStyle(a[0].as_object(), a.i32(1), a.flag(2)));
      }))));
  table.Add(DesignedHere(Method("tklShowListViewTooltip",
                                {Ref("oListView", O), In("lIndex", L),
                                 Opt("lColumn", L, Variant(int32_t{1})), OptMissing("sText", S)},
                                S, changing([](LIB& lib, CallArgs& a) {
                                  std::optional<std::u16string> text;
                                  if (a.has(3)) text = a.str(3);
                                  return Variant(lib.tklShowListViewTooltip(
                                      a[0].as_object(), a.i32(1), a.i32(2), text));
                                }))));
  table.Add(DesignedHere(Method("tklCopyListView",
                                {In("oListView", O), Opt("bHeaders", B, Variant(true)),
                                 Opt("bSelectedOnly", B, Variant(false))},
                                S, [](LIB& lib, CallArgs& a) {
                                  return Variant(
                                      lib.tklCopyListView(a[0].as_object(), a.flag(1), a.flag(2)));
                                })));
}

}  // namespace norvik50
