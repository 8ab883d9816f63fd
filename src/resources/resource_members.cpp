// Dispatch entries of the language and resource members.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterResourceMembers(MemberTable& table) {
  using namespace members;
  const auto reg_key = [] { return Opt("sRegKey", S, Variant(u"")); };

  table.Add(Method("tklLanguage", {reg_key()}, I, [](LIB& lib, CallArgs& a) {
    return Variant(static_cast<int16_t>(lib.tklLanguage(a.str(0))));
  }));
  table.Add(Method("tklLanguages", {reg_key()}, A,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklLanguages(a.str(0))); }));
  table.Add(Method("tklLangCode", {reg_key()}, S,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklLangCode(a.str(0))); }));
  table.Add(Method("tklRes", {In("lResID", L), reg_key()}, S,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklRes(a.i32(0), a.str(1))); }));
  table.Add(Method("tklResource", {In("lResID", L), In("sResType", S), reg_key()}, S,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tklResource(a.i32(0), a.str(1), a.str(2)));
                   }));
  table.Add(DesignedHere(Method("tklGlobalObj", {In("sName", S), OptMissing("vValue", V)}, O,
                                [](LIB& lib, CallArgs& a) {
                                  const std::optional<Variant> value =
                                      a.has(1) ? std::optional<Variant>(a[1]) : std::nullopt;
                                  return Variant(lib.tklGlobalObj(a.str(0), value));
                                })));
  // The form comes back to a caller by name with its new texts.
  table.Add(DesignedHere(
      Method("tklLoadFormCaptions", {Ref("oForm", O), reg_key()}, L, [](LIB& lib, CallArgs& a) {
        const int32_t set = lib.tklLoadFormCaptions(a[0].as_object(), a.str(1));
        a.MarkWritten(0);
        return Variant(set);
      })));
  table.Add(Method("tklXMLRes",
                   {In("oDOMDoc", O), In("sName", S), Opt("iNumber", I, Variant(int16_t{-1}))}, S,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tklXMLRes(a[0].as_object(), a.str(1), a.i16(2)));
                   }));
  table.Add(
      Method("tklXMLItemProp", {In("oXMLNode", O), In("sProp", S)}, S, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklXMLItemProp(a[0].as_object(), a.str(1)));
      }));
  // Vars is passed by reference but never changed, so nothing is written back.
  table.Add(Method("tklResConv", {In("sSource", S), Ref("Vars", A)}, S, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklResConv(a.str(0), a[1].as_array()));
  }));
  // Objects travel by reference, as the runtime passes them: the control a
  // member filled comes back in the answer with its rows or tabs.
  table.Add(Method("tklXMLFillList", {Ref("oDOMDoc", O), Ref("oList", O), In("sName", S)}, kNone,
                   [](LIB& lib, CallArgs& a) {
                     lib.tklXMLFillList(a[0].as_object(), a[1].as_object(), a.str(2));
                     a.MarkWritten(1);
                     return Variant();
                   }));
  table.Add(Method(
      "tklXMLFillComboWithResList",
      {Ref("oDOMDoc", O), Ref("oCombo", O), In("sResID", S), Opt("sInclNoFormat", S, Variant(u""))},
      kNone, [](LIB& lib, CallArgs& a) {
        lib.tklXMLFillComboWithResList(a[0].as_object(), a[1].as_object(), a.str(2), a.str(3));
        a.MarkWritten(1);
        return Variant();
      }));
  table.Add(Method("tklXMLFillTabStrip", {Ref("oDOMDoc", O), Ref("oTab", O), In("sName", S)}, kNone,
                   [](LIB& lib, CallArgs& a) {
                     lib.tklXMLFillTabStrip(a[0].as_object(), a[1].as_object(), a.str(2));
                     a.MarkWritten(1);
                     return Variant();
                   }));
}

}  // namespace norvik50
