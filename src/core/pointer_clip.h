// The pointer confinement of a LIB object: whoever confined the pointer
// last holds it, and a LIB that goes away takes its confinement with it,
// so a host that ends without releasing never leaves the pointer caught.
#ifndef NORVIK50_SRC_CORE_POINTER_CLIP_H_
#define NORVIK50_SRC_CORE_POINTER_CLIP_H_

#include <optional>

#include "norvik50/host.h"

namespace norvik50 {

class LIB;

// Confines the pointer to `area` through the current user interface for
// `owner` (nullopt releases it, whoever holds it). The user interface's
// answer: false when the pointer could not be confined.
bool ClipPointerFor(const LIB& owner, const std::optional<TwipsRect>& area);

// Releases the pointer when `owner` holds it; nothing otherwise. Never throws.
void ReleasePointerClipOf(const LIB& owner) noexcept;

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_POINTER_CLIP_H_
