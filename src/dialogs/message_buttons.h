// The button machinery shared by the message box forms: which buttons a
// style word makes, which of them is the default and which the cancel
// button, which symbol it shows, and the answer code of each button.
#ifndef NORVIK50_SRC_DIALOGS_MESSAGE_BUTTONS_H_
#define NORVIK50_SRC_DIALOGS_MESSAGE_BUTTONS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/host.h"

namespace norvik50 {

// The name tags of the buttons of `style`, left to right. The last one is
// always the cancel button (Escape).
std::vector<std::u16string> ButtonTagsForStyle(int32_t style);

// The 1-based default button of `style` among `count` buttons.
int32_t DefaultButtonForStyle(int32_t style, int32_t count);

// The symbol of `style`: 16, 32, 48, 64, or 0 for none.
int32_t SymbolForStyle(int32_t style);

// The answer code of a button's name tag; an unknown tag answers Cancel (2).
int32_t ButtonResultOf(std::u16string_view tag);

// 0xRRGGBB of the sixteen-colour palette; nullopt outside 0..15.
std::optional<uint32_t> PaletteColor(int32_t index);

// FillButtons is declared in norvik50/host.h: exported, so the shared Qt
// dialogs library can build its gallery requests the members' way.

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_MESSAGE_BUTTONS_H_
