// The library's own custom resources (the built-in resource document; the
// dialogs' symbol pictures join it), compiled into the library.
#ifndef NORVIK50_SRC_RESOURCES_OWN_RESOURCES_H_
#define NORVIK50_SRC_RESOURCES_OWN_RESOURCES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace norvik50 {

// The bytes of the own resource (`type`, `id`), type compared without
// regard to ASCII case as resource types are; nullopt when there is none.
std::optional<std::string_view> OwnResourceBytes(std::u16string_view type, int16_t id);

// LoadResourceText: the own resource's bytes as Windows-1252 text, with
// everything before the first "<" dropped; "" when there is no such
// resource.
std::u16string LoadResourceText(int16_t id, std::u16string_view type);

// Drops what stands before the first "<" when it is not at the start: a
// byte-order mark or other lead-in before an XML document goes; a text
// without "<" stays whole.
std::u16string FromFirstAngleBracket(std::u16string text);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_OWN_RESOURCES_H_
