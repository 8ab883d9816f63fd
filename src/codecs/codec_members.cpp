// Dispatch entries of the codecs and named functions.
#include "core/member_builder.h"
#include "core/member_registry.h"
#include "norvik50/lib.h"

namespace norvik50 {

void RegisterCodecMembers(MemberTable& table) {
  using namespace members;
  table.Add(Method("tklGlobalVar",
                   {In("sName", VarType::kString), In("vValue", VarType::kVariant)},
                   VarType::kVariant, [](LIB& lib, CallArgs& a) {
                     return lib.tklGlobalVar(a.str(0), a[1]);
                   }));
}

}  // namespace norvik50
