// Dispatch entries of the dialog members.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterDialogMembers(MemberTable& table) {
  using namespace members;

  table.Add(Method(
      "tklExtMsgBox",
      {In("sPrompt", S), Opt("lButtons", L, Variant(int32_t{0})),
       Opt("sTitle", S, Variant(u""), true), Opt("lWidthInTwips", L, Variant(int32_t{0}), true),
       Opt("lHeightInTwips", L, Variant(int32_t{0}), true)},
      L, [](LIB& lib, CallArgs& a) {
        std::u16string title = a.str(2);
        const bool was_empty = title.empty();
        const int32_t answer = lib.tklExtMsgBox(a.str(0), a.i32(1), &title, a.i32(3), a.i32(4));
        if (was_empty) WriteBack(a, 2, Variant(title));
        return Variant(answer);
      }));
  table.Add(Method("tklExtAsk",
                   {In("sQuestion", V), OptMissing("sTitle", S, true),
                    Opt("lWidthInTwips", L, Variant(int32_t{0}), true),
                    Opt("lHeightInTwips", L, Variant(int32_t{0}), true),
                    Opt("bDefaultNo", B, Variant(false), true)},
                   B, [](LIB& lib, CallArgs& a) {
                     std::u16string title = a.has(1) ? a.str(1) : std::u16string();
                     const bool was_empty = title.empty();
                     const bool yes = lib.tklExtAsk(a[0], &title, a.i32(2), a.i32(3), a.flag(4));
                     if (was_empty && a.has(1)) WriteBack(a, 1, Variant(title));
                     return Variant(yes);
                   }));
  table.Add(Method(
      "tklMsgBox",
      {In("Prompt", S), In("Detail", S), Opt("Buttons", L, Variant(int32_t{0}), true),
       Opt("Title", S, Variant(u"")), Opt("PromptColor", L, Variant(int32_t{0}), true),
       Opt("FontSize", I, Variant(int16_t{10}), true), Opt("FontBold", B, Variant(true), true)},
      L, [](LIB& lib, CallArgs& a) {
        return Variant(
            lib.tklMsgBox(a.str(0), a.str(1), a.i32(2), a.str(3), a.i32(4), a.i16(5), a.flag(6)));
      }));
  table.Add(Method("tklAsk",
                   {In("sQuestion", V), OptMissing("vTitle", V, true),
                    Opt("bDefaultNo", B, Variant(false), true)},
                   B, [](LIB& lib, CallArgs& a) {
                     const std::optional<Variant> title =
                         a.has(1) ? std::optional<Variant>(a[1]) : std::nullopt;
                     return Variant(lib.tklAsk(a[0], title, a.flag(2)));
                   }));
  // Value keeps its type on the way in (a number makes OK read a number);
  // it is written back only when the form was confirmed.
  for (const char* name : {"tklInputValue", "tklInputCode"}) {
    const bool masked = std::string_view(name) == "tklInputCode";
    table.Add(Method(
        name,
        {In("Prompt", S), In("Title", S), Ref("Value", V), Opt("Default", S, Variant(u""), true)},
        L, [masked](LIB& lib, CallArgs& a) {
          Variant value = a[2];
          const int32_t answer = masked ? lib.tklInputCode(a.str(0), a.str(1), value, a.str(3))
                                        : lib.tklInputValue(a.str(0), a.str(1), value, a.str(3));
          if (answer == 1) WriteBack(a, 2, std::move(value));
          return Variant(answer);
        }));
  }
  table.Add(Method("tklZoomTextBox",
                   {Ref("Source", O), Opt("Description", S, Variant(u""), true),
                    Opt("IgnoreAttributes", B, Variant(false), true)},
                   kNone, [](LIB& lib, CallArgs& a) {
                     lib.tklZoomTextBox(a[0].as_object(), a.str(1), a.flag(2));
                     a.MarkWritten(0);
                     return Variant();
                   }));
  // The control comes back in the answer: a batch object carries its new
  // selection, tooltip and focus.
  table.Add(Method("tklSelectField",
                   {Ref("oControl", O), Opt("bChangeSelection", B, Variant(false), true),
                    OptMissing("oStatusPanel", O, true)},
                   kNone, [](LIB& lib, CallArgs& a) {
                     lib.tklSelectField(a[0].as_object(), a.flag(1),
                                        a.has(2) ? a[2].as_object() : nullptr);
                     a.MarkWritten(0);
                     return Variant();
                   }));
  table.Add(Method("tklSetFocus", {Ref("oControl", O)}, kNone, [](LIB& lib, CallArgs& a) {
    lib.tklSetFocus(a[0].as_object());
    a.MarkWritten(0);
    return Variant();
  }));
  table.Add(Method("tklChoosePath",
                   {Opt("sDefaultPath", S, Variant(u""), true), Opt("sCaption", S, Variant(u""), true)},
                   S, [](LIB& lib, CallArgs& a) {
                     return Variant(lib.tklChoosePath(a.str(0), a.str(1)));
                   }));
  // sFilename is written back only when a file was chosen; bOpen is passed
  // by reference but never changed.
  table.Add(Method("tklFileDialog",
                   {In("sFilter", S), In("sDlgTitle", S), Ref("sFilename", S),
                    Opt("lFlags", L, Variant(int32_t{0})), Opt("lHWndParent", L, Variant(int32_t{0})),
                    Opt("sInitDir", S, Variant(u"")), Opt("bOpen", B, Variant(true), true)},
                   B, [](LIB& lib, CallArgs& a) {
                     std::u16string filename = a.str(2);
                     const bool chosen = lib.tklFileDialog(a.str(0), a.str(1), filename, a.i32(3),
                                                           a.i32(4), a.str(5), a.flag(6));
                     if (chosen) WriteBack(a, 2, Variant(filename));
                     return Variant(chosen);
                   }));
  // Every argument may be missing (it leaves its property alone); the
  // counters come back as the Longs the bar took.
  table.Add(Method(
      "tklSendMessage",
      {OptMissing("Prompt", V, true), OptMissing("Title", V, true),
       OptMissing("ShowCounter", V, true), OptMissing("CurCount", V, true),
       OptMissing("MaxCount", V, true), Opt("ParentHwnd", L, Variant(int32_t{0}), true),
       OptMissing("WidthInTwips", V, true), OptMissing("HeightInTwips", V, true),
       OptMissing("MsgTopInTwips", V, true), Opt("NoEvents", B, Variant(false), true),
       Opt("OpenAsTopMost", B, Variant(true), true)},
      kNone, [](LIB& lib, CallArgs& a) {
        const auto given = [&a](std::size_t i) {
          return a.has(i) ? std::optional<Variant>(a[i]) : std::nullopt;
        };
        std::optional<Variant> cur = given(3);
        std::optional<Variant> max = given(4);
        lib.tklSendMessage(given(0), given(1), given(2), cur ? &*cur : nullptr,
                           max ? &*max : nullptr, a.i32(5), given(6), given(7), given(8),
                           a.flag(9), a.flag(10));
        // A counter that could not be read stays as the caller gave it.
        if (cur && cur->type() == VarType::kLong) WriteBack(a, 3, std::move(*cur));
        if (max && max->type() == VarType::kLong) WriteBack(a, 4, std::move(*max));
        return Variant();
      }));
  table.Add(Method("tklHideMessage", {}, kNone, [](LIB& lib, CallArgs&) {
    lib.tklHideMessage();
    return Variant();
  }));
  table.Add(Method("tklClearMessage", {}, kNone, [](LIB& lib, CallArgs&) {
    lib.tklClearMessage();
    return Variant();
  }));
  // The object comes back so a caller by name sees the pointer it took.
  table.Add(Let("tklShowWait", {Ref("oSource", O), In("value", B)}, [](LIB& lib, CallArgs& a) {
    lib.tklShowWait(a[0].as_object(), a.flag(1));
    WriteBack(a, 0, a[0]);
    return Variant();
  }));
  table.Add(Method("tklWait",
                   {In("lMilliSeconds", L), Opt("bIsActive", B, Variant(true), true)}, kNone,
                   [](LIB& lib, CallArgs& a) {
                     lib.tklWait(a.i32(0), a.flag(1));
                     return Variant();
                   }));
  table.Add(
      Method("tklGetAnswer", {In("Prompt", S), In("Detail", S), In("Title", S), Ref("Buttons", A)},
             I, [](LIB& lib, CallArgs& a) {
               return Variant(lib.tklGetAnswer(a.str(0), a.str(1), a.str(2), a[3].as_array()));
             }));
}

}  // namespace norvik50
