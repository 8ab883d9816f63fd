// Calling a member through a given table. The public Invoke (norvik50/
// dispatch.h) uses the table of every member, which only the top of the
// library can assemble; the mechanics live here in core.
#ifndef NORVIK50_SRC_CORE_INVOKE_H_
#define NORVIK50_SRC_CORE_INVOKE_H_

#include "norvik50/dispatch.h"

namespace norvik50 {

// Converts an argument to its parameter's type; raises as CoerceTo does.
using ArgumentCoercion = Variant (*)(const Variant& value, VarType type);

// Calls `member` from `table`, converting each argument with `coerce`.
InvokeResult InvokeMember(const MemberTable& table, LIB& lib, std::string_view member,
                          std::vector<std::optional<Variant>> args, bool let,
                          ArgumentCoercion coerce = &CoerceTo);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_INVOKE_H_
