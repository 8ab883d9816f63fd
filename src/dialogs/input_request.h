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

// The request for `prompt`, `title` ("08|Word": at most 8 characters,
// caption "Word"), the incoming `value` and `default_text`; captions in
// `language`. The box starts empty when `value` is Empty, Null or "",
// and with `default_text` otherwise: never with `value` itself.
InputRequest MakeInputRequest(std::u16string_view prompt, std::u16string_view title,
                              const Variant& value, std::u16string_view default_text, bool masked,
                              int16_t language);

// The number at the start of `text` as the runtime's Val reads it: blanks,
// tabs and line feeds are skipped, "." is the decimal point, an exponent
// (E or D) may follow; 0 when there is no number. "12.5kg" -> 12.5,
// " 1 2" -> 12, "abc" -> 0, "1,5" -> 1. Never raises.
double LeadingNumber(std::u16string_view text);

// The value the member hands back for the confirmed `text`: for a value
// of a number type (Integer, Long, Single, Double) the leading number,
// written as text as the runtime writes a Double; else the text itself.
std::u16string ConfirmedValue(std::u16string_view text, const Variant& value);

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_INPUT_REQUEST_H_
