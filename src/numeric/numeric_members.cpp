// Dispatch entries of the number and SQL literal members.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterNumericMembers(MemberTable& table) {
  using namespace members;

  table.Add(Method("tklVal", {In("sSource", S)}, D,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklVal(a.str(0))); }));
  table.Add(Method("tklCVal", {In("VarType", L), In("SourceVal", V)}, V,
                   [](LIB& lib, CallArgs& a) { return lib.tklCVal(a.i32(0), a[1]); }));
  table.Add(Method("tklRound", {In("vSourceValue", V), In("iDecimalPlaces", I)}, V,
                   [](LIB& lib, CallArgs& a) { return lib.tklRound(a[0], a.i16(1)); }));
  table.Add(Method("tklCompare", {In("nSource", F), In("nTarget", F), In("nTolerance", F)}, B,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(
                         lib.tklCompare(a[0].as_single(), a[1].as_single(), a[2].as_single()));
                   }));
  table.Add(Method("tklAND", {In("lVal1", L), In("lVal2", L)}, B,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklAND(a.i32(0), a.i32(1))); }));
  table.Add(Method("tklReplaceDecimalChars", {In("sSource", S), Ref("bGermanToEnglish", B)}, S,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tklReplaceDecimalChars(a.str(0), a.flag(1)));
                   }));

  table.Add(Method("tklHexToDec", {Ref("vHexVal", V)}, L,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklHexToDec(a[0])); }));
  table.Add(Method("tklHex2Dbl", {In("sValue", S)}, D,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklHex2Dbl(a.str(0))); }));
  table.Add(Method(
      "tklDbl2Hex", {In("dValue", D), Opt("iMinLen", I, Variant(int16_t{0}))}, S,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklDbl2Hex(a[0].as_double(), a.i16(1))); }));
  table.Add(Method("tklLng2Str", {In("Value", L)}, S,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklLng2Str(a.i32(0))); }));
  table.Add(Method("tklStr2Lng", {In("Source", S)}, L,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklStr2Lng(a.str(0))); }));
  table.Add(Method("tklBruchrechnung", {In("nValue", F), Ref("lZaehler", L), Ref("lNenner", L)},
                   kNone, [](LIB& lib, CallArgs& a) {
                     int32_t numerator = 0, denominator = 0;
                     lib.tklBruchrechnung(a[0].as_single(), numerator, denominator);
                     WriteBack(a, 1, Variant(numerator));
                     WriteBack(a, 2, Variant(denominator));
                     return Variant();
                   }));

  table.Add(Method("tklSQLDate", {In("vValue", V), Opt("bMSSQLServer", B, Variant(false), true)}, S,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklSQLDate(a[0], a.flag(1))); }));
  table.Add(Method("tklSQLDouble", {In("vValue", V)}, S,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklSQLDouble(a[0])); }));
  table.Add(Method("tklSQLFilter", {Ref("vParams", A)}, S, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklSQLFilter(a[0].as_array()));
  }));
}

}  // namespace norvik50
