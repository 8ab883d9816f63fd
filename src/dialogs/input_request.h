// The input form's preparation and its answer: what tklInputValue and
// tklInputCode show for their arguments, and how the confirmed text
// becomes the value handed back.
#ifndef NORVIK50_SRC_DIALOGS_INPUT_REQUEST_H_
#define NORVIK50_SRC_DIALOGS_INPUT_REQUEST_H_

#include <cstdint>
#include <string_view>

#include "norvik50/host.h"
#include "norvik50/variant.h"

namespace norvik50 {

// MakeInputRequest is declared in norvik50/host.h: exported, so the shared
// Qt dialogs library can show the form the members' way in its gallery.

// The number at the start of `text` as the runtime's Val reads it: blanks,
// tabs and line feeds are skipped, "." is the decimal point, an exponent
// (E or D) may follow; 0 when there is no number or it lies beyond the
// Double range. "12.5kg" -> 12.5, " 1 2" -> 12, "abc" -> 0, "1,5" -> 1.
// Never raises.
double LeadingNumber(std::u16string_view text);

// The value the member hands back for the confirmed `text`: for a value
// of a number type (Integer, Long, Single, Double) the leading number,
// written as text as the runtime writes a Double; else the text itself.
std::u16string ConfirmedValue(std::u16string_view text, const Variant& value);

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_INPUT_REQUEST_H_
