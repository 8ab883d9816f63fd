// The process-wide resource document and the lookups every resource member
// shares: the built-in captions (GetResourceItem) and the language table.
#ifndef NORVIK50_SRC_RESOURCES_RESOURCE_DOCUMENT_H_
#define NORVIK50_SRC_RESOURCES_RESOURCE_DOCUMENT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/xml.h"

namespace norvik50 {

// The one document of the process, shared by every LIB object. Each call
// checks it: when it is empty (first use, or someone loaded nothing into
// it), the built-in resource document is loaded again. Not locked: hosts
// with several threads touch it first before they start them.
XmlDocument& ResourceDocument();

// The `text` of the built-in item with that name and language id; "" when
// there is none (an unknown name, a separator item, a name whose quote
// breaks the expression).
std::u16string GetResourceItem(std::u16string_view name, int16_t langid);

// `value` in decimal without spaces, as the lookups put ids into their
// expressions and resource names.
std::u16string DecimalText(int32_t value);

// The `extension` of the lang element for `langid`; "" when there is none.
std::u16string LanguageCode(int16_t langid);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_RESOURCE_DOCUMENT_H_
