// Dispatch entries of the text toolkit. By-reference arguments are written
// back only where the member changes them.
#include <memory>
#include <string>

#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {
void RegisterTextMembers(MemberTable& table) {
  using namespace members;

  // The search members share their leading parameters.
  const auto search_params = [&] {
    return std::vector<ParamInfo>{In("sSource", S), In("sFind", S),
                                  Opt("iStartSearch", I, Variant(int16_t{1}), true),
                                  Opt("bIgnoreCase", B, Variant(true), true)};
  };

  {
    auto params = search_params();
    params.push_back(Opt("bFindFirst", B, Variant(true), true));
    params.push_back(Opt("bWholeWord", B, Variant(false), true));
    params.push_back(Opt("sFound", S, Variant(u""), true));
    table.Add(Method("tklFindSubString", std::move(params), I, [](LIB& lib, CallArgs& a) {
      std::u16string found = a.str(6);
      const int16_t pos = lib.tklFindSubString(a.str(0), a.str(1), a.i16(2), a.flag(3), a.flag(4),
                                               a.flag(5), &found);
      if (pos > 0) WriteBack(a, 6, Variant(found));
      return Variant(pos);
    }));
  }
  table.Add(Method("tklHasSubString", search_params(), I, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklHasSubString(a.str(0), a.str(1), a.i16(2), a.flag(3)));
  }));
  table.Add(Method("tklFindLastSubString", search_params(), I, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklFindLastSubString(a.str(0), a.str(1), a.i16(2), a.flag(3)));
  }));
  table.Add(Method("tklCountSubString", search_params(), I, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklCountSubString(a.str(0), a.str(1), a.i16(2), a.flag(3)));
  }));
  {
    auto params = search_params();
    params.push_back(Opt("sNotInSigns", S, Variant(u""), true));
    table.Add(Method("tklCountSubStringExt", std::move(params), I, [](LIB& lib, CallArgs& a) {
      return Variant(lib.tklCountSubStringExt(a.str(0), a.str(1), a.i16(2), a.flag(3), a.str(4)));
    }));
  }
  table.Add(Method("tklIsInSigns",
                   {Ref("sSource", S), Ref("sSigns", S), Ref("iStart", I), Ref("iLen", I)}, B,
                   [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tklIsInSigns(a.str(0), a.str(1), a.i16(2), a.i16(3)));
                   }));

  table.Add(Method(
      "tklReplaceInString",
      {In("sSource", S), In("sFind", S), In("sReplace", S),
       Opt("iStartSearch", I, Variant(int16_t{1}), true),
       Opt("bIgnoreCase", B, Variant(true), true), Opt("bOnlyAtBeginning", B, Variant(false), true),
       Opt("bNotInSigns", B, Variant(true), true), Opt("bWholeWord", B, Variant(false), true)},
      S, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklReplaceInString(a.str(0), a.str(1), a.str(2), a.i16(3), a.flag(4),
                                              a.flag(5), a.flag(6), a.flag(7)));
      }));
  table.Add(Method(
      "tklGetSubString",
      {In("sSource", S), In("sBefore", S), In("sAfter", S),
       Opt("iStartSearch", I, Variant(int16_t{1}), true),
       Opt("bIgnoreCase", B, Variant(true), true), Opt("bWholeWord", B, Variant(false), true)},
      S, [](LIB& lib, CallArgs& a) {
        return Variant(
            lib.tklGetSubString(a.str(0), a.str(1), a.str(2), a.i16(3), a.flag(4), a.flag(5)));
      }));
  table.Add(Method("tklSeparateString",
                   {In("sSource", S), In("sFind", S), Ref("sBefore", S), Ref("sTerm", S),
                    Ref("sAfter", S), Opt("iStartSearch", I, Variant(int16_t{1}), true),
                    Opt("bIgnoreCase", B, Variant(true), true)},
                   kNone, [](LIB& lib, CallArgs& a) {
                     std::u16string before = a.str(2), term = a.str(3), after = a.str(4);
                     lib.tklSeparateString(a.str(0), a.str(1), before, term, after, a.i16(5),
                                           a.flag(6));
                     // Outputs that kept the caller's values were not written.
                     if (before != a.str(2) || term != a.str(3) || after != a.str(4)) {
                       WriteBack(a, 2, Variant(before));
                       WriteBack(a, 3, Variant(term));
                       WriteBack(a, 4, Variant(after));
                     }
                     return Variant();
                   }));
  table.Add(Get(
      "tklMid", {Ref("Source", S), In("Start", L), Opt("length", L, Variant(int32_t{-1}), true)}, S,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklMid(a.str(0), a.i32(1), a.i32(2))); }));
  table.Add(Let("tklMid",
                {Ref("Source", S), In("Start", L), Opt("length", L, Variant(int32_t{-1}), true),
                 In("vNewValue", S)},
                [](LIB& lib, CallArgs& a) {
                  std::u16string source = a.str(0);
                  lib.tklMid(source, a.i32(1), a.i32(2), a.str(3));
                  WriteBack(a, 0, Variant(source));
                  return Variant();
                }));

  table.Add(Method("tklGetNotNullValue", {In("vValue", V)}, V,
                   [](LIB& lib, CallArgs& a) { return lib.tklGetNotNullValue(a[0]); }));
  table.Add(Method("tklIsEmpty", {In("vValue", V)}, B,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklIsEmpty(a[0])); }));
  table.Add(Method("tklIsInList", {In("vValue", V), Ref("vList", A)}, B,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklIsInList(a[0], a[1])); }));
  table.Add(Method("tklArrayHasData", {Ref("vArray", V)}, B,
                   [](LIB& lib, CallArgs& a) { return Variant(lib.tklArrayHasData(a[0])); }));
  table.Add(Method("tklClearCollection",
                   {Ref("oCollection", O), Opt("bSetToNothing", B, Variant(false), true)}, kNone,
                   [](LIB& lib, CallArgs& a) {
                     std::shared_ptr<HostObject> object = a[0].as_object();
                     lib.tklClearCollection(object, a.flag(1));
                     // Written back always: a caller by name sees the emptied
                     // collection, or Nothing after bSetToNothing.
                     WriteBack(a, 0, Variant(object));
                     return Variant();
                   }));
  table.Add(Method("tklBubbleSort", {Ref("sList", A)}, kNone, [](LIB& lib, CallArgs& a) {
    SafeArray list = a[0].as_array();
    lib.tklBubbleSort(list);
    WriteBack(a, 0, Variant(std::move(list)));
    return Variant();
  }));
  table.Add(Method("tklExtractBrackets",
                   {In("sSource", S), Ref("sTerm", S), Ref("sBefore", S), Ref("sAfter", S),
                    Opt("bStartWithBracket", B, Variant(false), true)},
                   B, [](LIB& lib, CallArgs& a) {
                     std::u16string term = a.str(1), before = a.str(2), after = a.str(3);
                     const bool found =
                         lib.tklExtractBrackets(a.str(0), term, before, after, a.flag(4));
                     if (found) {
                       WriteBack(a, 1, Variant(term));
                       WriteBack(a, 2, Variant(before));
                       WriteBack(a, 3, Variant(after));
                     }
                     return Variant(found);
                   }));

  table.Add(DesignedHere(Method(
      "tklReplaceInStringExt",
      {In("sSource", S), In("sFind", S), In("sReplace", S),
       Opt("iStartSearch", I, Variant(int16_t{1}), true),
       Opt("bIgnoreCase", B, Variant(true), true), Opt("bOnlyAtBeginning", B, Variant(false), true),
       Opt("bWholeWord", B, Variant(false), true), Opt("bNotNumVals", B, Variant(false), true),
       Opt("bOnlyNumVals", B, Variant(false), true), Opt("sNotInSigns", S, Variant(u""), true)},
      S, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklReplaceInStringExt(a.str(0), a.str(1), a.str(2), a.i16(3), a.flag(4),
                                                 a.flag(5), a.flag(6), a.flag(7), a.flag(8),
                                                 a.str(9)));
      })));
  table.Add(DesignedHere(Method(
      "tklExtractExpression",
      {In("sSource", S), Ref("sExpression", S), Ref("sBefore", S), Ref("sAfter", S),
       Opt("sFunction", S, Variant(u""), true), Opt("bIgnoreCase", B, Variant(true), true)},
      B, [](LIB& lib, CallArgs& a) {
        std::u16string expression = a.str(1), before = a.str(2), after = a.str(3);
        std::u16string function = a.str(4);
        const bool found =
            lib.tklExtractExpression(a.str(0), expression, before, after, &function, a.flag(5));
        if (found) {
          WriteBack(a, 1, Variant(expression));
          WriteBack(a, 2, Variant(before));
          WriteBack(a, 3, Variant(after));
          WriteBack(a, 4, Variant(function));
        }
        return Variant(found);
      })));
  table.Add(DesignedHere(Method(
      "tklPhraseWithoutBrackets", {In("sSource", S)}, S,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklPhraseWithoutBrackets(a.str(0))); })));
  table.Add(DesignedHere(
      Method("tklSeparateFunction", {In("sSource", S), Ref("sFunction", S), Ref("vArguments", V)},
             B, [](LIB& lib, CallArgs& a) {
               std::u16string function = a.str(1);
               SafeArray arguments(VarType::kString);
               const bool found = lib.tklSeparateFunction(a.str(0), function, arguments);
               if (found) {
                 WriteBack(a, 1, Variant(function));
                 WriteBack(a, 2, Variant(std::move(arguments)));
               }
               return Variant(found);
             })));
  table.Add(DesignedHere(Method("tklIsNumericWord", {In("sWord", S)}, B, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklIsNumericWord(a.str(0)));
  })));
}

}  // namespace norvik50
