// Placeholder substitution in resource texts (tklResConv).
#ifndef NORVIK50_SRC_RESOURCES_RES_CONV_H_
#define NORVIK50_SRC_RESOURCES_RES_CONV_H_

#include <string>
#include <string_view>

#include "norvik50/variant.h"

namespace norvik50 {

// `source` with each value of `values` put in place of the first "%d"
// (Integer, Long, Byte as "0"; Single and Double "Standard"; Currency
// "Currency"; Date "Short Date"; Boolean "True / False") or "%s" (all
// other types, as text) left in the text, in array order; a value without
// its placeholder is dropped. One element "^a|b" stands for the texts a
// and b. Then "\t", "\r", "\n" become tab, CR and LF. Never raises: a value
// that cannot be written is skipped.
std::u16string ResConv(std::u16string_view source, const SafeArray& values);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_RES_CONV_H_
