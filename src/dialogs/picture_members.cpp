// Dispatch entries of the picture helpers. A member that draws on its
// target or gives a list view icons takes it by reference, so that a
// caller by name (the batch) gets it back as it is now.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterPictureMembers(MemberTable& table) {
  using namespace members;
  table.Add(DesignedHere(Method("tklGetSemiTransparentPicture",
                                {In("oPicture", O), Opt("lOpacity", L, Variant(int32_t{50})),
                                 OptMissing("vTransparentColor", V), OptMissing("vBackColor", V)},
                                O, [](LIB& lib, CallArgs& a) {
                                  return Variant(lib.tklGetSemiTransparentPicture(
                                      a[0].as_object(), a.i32(1), a.has(2) ? a[2] : Variant(),
                                      a.has(3) ? a[3] : Variant()));
                                })));
  table.Add(DesignedHere(Method(
      "glbDrawSemiTransparentPicture",
      {Ref("oTarget", O), In("oPicture", O), Opt("lLeft", L, Variant(int32_t{0})),
       Opt("lTop", L, Variant(int32_t{0})), Opt("lOpacity", L, Variant(int32_t{50})),
       Opt("lWidth", L, Variant(int32_t{0})), Opt("lHeight", L, Variant(int32_t{0}))},
      B, [](LIB& lib, CallArgs& a) {
        const bool drawn = lib.glbDrawSemiTransparentPicture(
            a[0].as_object(), a[1].as_object(), a.i32(2), a.i32(3), a.i32(4), a.i32(5), a.i32(6));
        a.MarkWritten(0);
        return Variant(drawn);
      })));
  table.Add(DesignedHere(
      Method("tklCopyImageIntoListView",
             {Ref("oListView", O), In("oPicture", O), Opt("lRow", L, Variant(int32_t{0}))}, L,
             [](LIB& lib, CallArgs& a) {
               const int32_t rows =
                   lib.tklCopyImageIntoListView(a[0].as_object(), a[1].as_object(), a.i32(2));
               a.MarkWritten(0);
               return Variant(rows);
             })));
}

}  // namespace norvik50
