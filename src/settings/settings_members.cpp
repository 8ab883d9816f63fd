// Dispatch entries of the registry members.
#include <optional>

#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

namespace {
void RegisterWindowPositionMembers(MemberTable& table);
}  // namespace

void RegisterListViewMembers(MemberTable& table);  // src/settings/list_view_members.cpp

void RegisterSettingsMembers(MemberTable& table) {
  using namespace members;

  table.Add(
      Method("tkrDeleteKey",
             {In("lRegKey", L), In("sRegSubKey", S), Opt("bKillAllSubKeys", B, Variant(false))}, L,
             [](LIB& lib, CallArgs& a) {
               return Variant(lib.tkrDeleteKey(a.i32(0), a.str(1), a.flag(2)));
             }));
  // The typed getters share their leading parameters; an omitted default
  // arrives as 0 or "", an omitted bAutoCreate as False.
  const auto getter = [&](VarType type, Variant zero) {
    return std::vector<ParamInfo>{In("lRegKey", L), In("sRegSubKey", S), In("sValueName", S),
                                  Opt(type == L   ? "lDefaultValue"
                                      : type == I ? "iDefaultValue"
                                                  : "sDefaultValue",
                                      type, std::move(zero)),
                                  Opt("bAutoCreate", B, Variant(false))};
  };
  table.Add(Method("tkrGetLong", getter(L, Variant(int32_t{0})), L, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tkrGetLong(a.i32(0), a.str(1), a.str(2), a.i32(3), a.flag(4)));
  }));
  table.Add(Method("tkrGetInteger", getter(I, Variant(int16_t{0})), I, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tkrGetInteger(a.i32(0), a.str(1), a.str(2), a.i16(3), a.flag(4)));
  }));
  table.Add(Method("tkrGetString", getter(S, Variant(u"")), S, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tkrGetString(a.i32(0), a.str(1), a.str(2), a.str(3), a.flag(4)));
  }));
  table.Add(Method("tkrGetValue",
                   {In("lRegKey", L), In("sRegSubKey", S), In("sValueName", S),
                    OptMissing("vDefaultValue", V), Opt("bAutoCreate", B, Variant(false))},
                   V, [](LIB& lib, CallArgs& a) {
                     const std::optional<Variant> fallback =
                         a.has(3) ? std::optional<Variant>(a[3]) : std::nullopt;
                     return lib.tkrGetValue(a.i32(0), a.str(1), a.str(2), fallback, a.flag(4));
                   }));
  table.Add(Method("tkrSetValue",
                   {In("lRegKey", L), In("sRegSubKey", S), In("sValueName", S), In("vData", V)}, B,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tkrSetValue(a.i32(0), a.str(1), a.str(2), a[3]));
                   }));
  table.Add(Method(
      "tkrSubKeyCount", {In("lRegKey", L), In("sRegSubKey", S)}, L,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tkrSubKeyCount(a.i32(0), a.str(1))); }));
  // One-shot hosts (a batch, a script) ask for their writes to be on disk
  // before they end, as the command line's reg add does.
  table.Add(DesignedHere(Method("tkrFlushKey", {In("lRegKey", L)}, L, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tkrFlushKey(a.i32(0)));
  })));
  table.Add(DesignedHere(Method("tklEncryptedValue", {In("sValue", S)}, S,
                                [](LIB& lib, CallArgs& a) {
                                  return Variant(lib.tklEncryptedValue(a.str(0)));
                                })));
  table.Add(DesignedHere(Method("tklDecryptedValue", {In("sValue", S)}, S,
                                [](LIB& lib, CallArgs& a) {
                                  return Variant(lib.tklDecryptedValue(a.str(0)));
                                })));
  table.Add(Method("tkrFindRegKeys", {In("lRegKey", L), In("sRegSubKey", S), Ref("sKeys", A)},
                   VarType::kEmpty, [](LIB& lib, CallArgs& a) {
                     SafeArray keys(VarType::kString);
                     lib.tkrFindRegKeys(a.i32(0), a.str(1), keys);
                     WriteBack(a, 2, Variant(std::move(keys)));
                     return Variant();
                   }));
  RegisterWindowPositionMembers(table);
  RegisterListViewMembers(table);
}

namespace {

// The loading members change the form or list view they are given, so it
// comes back to a caller by name; the saving ones only read theirs.
void RegisterWindowPositionMembers(MemberTable& table) {
  using namespace members;
  table.Add(
      DesignedHere(Method("tklSaveWindowPos", {In("oForm", O), Opt("sRegSubKey", S, Variant(u""))},
                          B, [](LIB& lib, CallArgs& a) {
                            return Variant(lib.tklSaveWindowPos(a[0].as_object(), a.str(1)));
                          })));
  table.Add(DesignedHere(Method("tklLoadWindowPos",
                                {Ref("oForm", O), Opt("sRegSubKey", S, Variant(u"")),
                                 Opt("bPositionOnly", B, Variant(false))},
                                B, [](LIB& lib, CallArgs& a) {
                                  const bool placed =
                                      lib.tklLoadWindowPos(a[0].as_object(), a.str(1), a.flag(2));
                                  a.MarkWritten(0);
                                  return Variant(placed);
                                })));
  table.Add(DesignedHere(Method(
      "tklSaveColWidths", {In("oForm", O), In("oListView", O), Opt("sRegSubKey", S, Variant(u""))},
      B, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklSaveColWidths(a[0].as_object(), a[1].as_object(), a.str(2)));
      })));
  table.Add(DesignedHere(Method(
      "tklLoadColWidths", {In("oForm", O), Ref("oListView", O), Opt("sRegSubKey", S, Variant(u""))},
      B, [](LIB& lib, CallArgs& a) {
        const bool any = lib.tklLoadColWidths(a[0].as_object(), a[1].as_object(), a.str(2));
        a.MarkWritten(1);
        return Variant(any);
      })));
}

}  // namespace

}  // namespace norvik50
