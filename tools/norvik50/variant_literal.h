// A value written as a person reads it, for the tour and the members'
// help: "text" quoted (quotes inside doubled), numbers with ".", True and
// False, #2024-03-01 12:00:00#, Array(...), typFileInfo{lpDrive: "C", ...}.
#ifndef NORVIK50_TOOLS_NORVIK50_VARIANT_LITERAL_H_
#define NORVIK50_TOOLS_NORVIK50_VARIANT_LITERAL_H_

#include <string>
#include <vector>

#include "norvik50/variant.h"

namespace norvik50::cli {

std::string Literal(const Variant& value);

// Values as literals separated by ", ".
std::string LiteralList(const std::vector<Variant>& items);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_VARIANT_LITERAL_H_
