// Dispatch entries of the form and field helpers.
#include <string_view>

#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterFormFieldMembers(MemberTable& table) {
  using namespace members;
  table.Add(DesignedHere(Method("tklIsFormOpen", {In("vForm", V)}, B, [](LIB& lib, CallArgs& a) {
    return Variant(lib.tklIsFormOpen(a[0]));
  })));
  table.Add(
      DesignedHere(Method("tklGetContainer", {In("oControl", O), Opt("sKind", S, Variant(u""))}, O,
                          [](LIB& lib, CallArgs& a) {
                            return Variant(lib.tklGetContainer(a[0].as_object(), a.str(1)));
                          })));
  // The control comes back when the zoom opened (it has its new text and
  // selection), and so does the key code, then 0; any other key leaves
  // both as they came.
  table.Add(DesignedHere(
      Method("tklCheckF2Key",
             {Ref("oControl", O), Ref("iKeyCode", I), Opt("iShift", I, Variant(int16_t{0})),
              Opt("sDescription", S, Variant(u"")), Opt("bIgnoreAttributes", B, Variant(false))},
             B, [](LIB& lib, CallArgs& a) {
               int16_t key_code = a.i16(1);
               const bool handled =
                   lib.tklCheckF2Key(a[0].as_object(), key_code, a.i16(2), a.str(3), a.flag(4));
               if (handled) {
                 a.MarkWritten(0);
                 WriteBack(a, 1, Variant(key_code));
               }
               return Variant(handled);
             })));
  // The control comes back: whether it holds the mouse is part of its state.
  for (const char* name : {"tklCheckMouseMove", "tklCheckMouseDown"}) {
    const bool move = std::string_view(name) == "tklCheckMouseMove";
    table.Add(DesignedHere(Method(
        name, {Ref("oControl", O), In("nX", F), In("nY", F)}, B, [move](LIB& lib, CallArgs& a) {
          const auto& control = a[0].as_object();
          const float x = a[1].as_single();
          const float y = a[2].as_single();
          const bool on =
              move ? lib.tklCheckMouseMove(control, x, y) : lib.tklCheckMouseDown(control, x, y);
          a.MarkWritten(0);
          return Variant(on);
        })));
  }
}

}  // namespace norvik50
