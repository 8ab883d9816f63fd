// The table of every LIB member, assembled from the families' entries.
#include "core/invoke.h"
#include "core/member_registry.h"

namespace norvik50 {

const MemberTable& Members() {
  static const MemberTable table = [] {
    MemberTable t;
    RegisterCoreMembers(t);
    RegisterTextMembers(t);
    RegisterCodecMembers(t);
    RegisterNumericMembers(t);
    RegisterSettingsMembers(t);
    return t;
  }();
  return table;
}

}  // namespace norvik50

namespace norvik50 {

InvokeResult Invoke(LIB& lib, std::string_view member, std::vector<std::optional<Variant>> args,
                    bool let) {
  return InvokeMember(Members(), lib, member, std::move(args), let);
}

}  // namespace norvik50
