// Dispatch entries of the window and screen helpers.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

// The members that show a form or keep it on top change it, so it comes
// back to a caller by name.
void RegisterWindowMembers(MemberTable& table) {
  using namespace members;
  table.Add(DesignedHere(Method("tklGetScreenWidth", {}, L, [](LIB& lib, CallArgs&) {
    return Variant(lib.tklGetScreenWidth());
  })));
  table.Add(DesignedHere(Method("tklGetScreenHeight", {}, L, [](LIB& lib, CallArgs&) {
    return Variant(lib.tklGetScreenHeight());
  })));
  table.Add(DesignedHere(Method("tklGetFrameSize", {Ref("lWidth", L), Ref("lHeight", L)}, kNone,
                                [](LIB& lib, CallArgs& a) {
                                  int32_t width = 0;
                                  int32_t height = 0;
                                  lib.tklGetFrameSize(width, height);
                                  WriteBack(a, 0, Variant(width));
                                  WriteBack(a, 1, Variant(height));
                                  return Variant();
                                })));
  table.Add(DesignedHere(Method("tklGetMenuHeight", {}, L, [](LIB& lib, CallArgs&) {
    return Variant(lib.tklGetMenuHeight());
  })));
  table.Add(DesignedHere(Method("tklGetInternalFormSize",
                                {In("oForm", O), Ref("lWidth", L), Ref("lHeight", L)}, kNone,
                                [](LIB& lib, CallArgs& a) {
                                  int32_t width = 0;
                                  int32_t height = 0;
                                  lib.tklGetInternalFormSize(a[0].as_object(), width, height);
                                  WriteBack(a, 1, Variant(width));
                                  WriteBack(a, 2, Variant(height));
                                  return Variant();
                                })));
  table.Add(DesignedHere(Method("tklTopMost", {Ref("oForm", O), Opt("bTopMost", B, Variant(true))},
                                B, [](LIB& lib, CallArgs& a) {
                                  const bool kept = lib.tklTopMost(a[0].as_object(), a.flag(1));
                                  a.MarkWritten(0);
                                  return Variant(kept);
                                })));
  for (const char* name : {"tklOpenTopMost", "tklOpenApplicationTopMost"}) {
    const bool application = std::string_view(name) == "tklOpenApplicationTopMost";
    table.Add(DesignedHere(Method(name, {Ref("oForm", O)}, B, [application](LIB& lib, CallArgs& a) {
      const bool shown = application ? lib.tklOpenApplicationTopMost(a[0].as_object())
                                     : lib.tklOpenTopMost(a[0].as_object());
      a.MarkWritten(0);
      return Variant(shown);
    })));
  }
  table.Add(DesignedHere(
      Method("tklApplicationTopMost", {Opt("bTopMost", B, Variant(true))}, L,
             [](LIB& lib, CallArgs& a) { return Variant(lib.tklApplicationTopMost(a.flag(0))); })));
  table.Add(DesignedHere(
      Method("tklRoundWindow", {Ref("oForm", O), Opt("lRadius", L, Variant(int32_t{150}))}, B,
             [](LIB& lib, CallArgs& a) {
               const bool rounded = lib.tklRoundWindow(a[0].as_object(), a.i32(1));
               a.MarkWritten(0);
               return Variant(rounded);
             })));
  table.Add(
      DesignedHere(Method("tklWindowShadow", {Ref("oForm", O), Opt("bShadow", B, Variant(true))}, B,
                          [](LIB& lib, CallArgs& a) {
                            const bool shadowed = lib.tklWindowShadow(a[0].as_object(), a.flag(1));
                            a.MarkWritten(0);
                            return Variant(shadowed);
                          })));
  table.Add(
      DesignedHere(Method("tklIsKeyDown", {In("lVirtualKey", L)}, B, [](LIB& lib, CallArgs& a) {
        return Variant(lib.tklIsKeyDown(a.i32(0)));
      })));
  table.Add(DesignedHere(
      Method("tklIsMouseButtonDown", {Opt("lButton", L, Variant(int32_t{1}))}, B,
             [](LIB& lib, CallArgs& a) { return Variant(lib.tklIsMouseButtonDown(a.i32(0))); })));
  table.Add(DesignedHere(Method(
      "tklGetFontList", {}, A, [](LIB& lib, CallArgs&) { return Variant(lib.tklGetFontList()); })));
  table.Add(DesignedHere(Method(
      "tklFindWindow", {In("sClass", S), Opt("sTitle", S, Variant(u""))}, L,
      [](LIB& lib, CallArgs& a) { return Variant(lib.tklFindWindow(a.str(0), a.str(1))); })));
  for (const char* name : {"tklWaitForClassStarted", "tklWaitForClassFinished"}) {
    const bool started = std::string_view(name) == "tklWaitForClassStarted";
    table.Add(DesignedHere(
        Method(name, {In("sClass", S), Opt("lMilliSeconds", L, Variant(int32_t{10000}))}, B,
               [started](LIB& lib, CallArgs& a) {
                 return Variant(started ? lib.tklWaitForClassStarted(a.str(0), a.i32(1))
                                        : lib.tklWaitForClassFinished(a.str(0), a.i32(1)));
               })));
  }
  table.Add(DesignedHere(
      Method("tklClipCursor",
             {Opt("lLeft", L, Variant(int32_t{0})), Opt("lTop", L, Variant(int32_t{0})),
              Opt("lWidth", L, Variant(int32_t{0})), Opt("lHeight", L, Variant(int32_t{0}))},
             B, [](LIB& lib, CallArgs& a) {
               return Variant(lib.tklClipCursor(a.i32(0), a.i32(1), a.i32(2), a.i32(3)));
             })));
}

}  // namespace norvik50
