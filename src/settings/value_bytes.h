// How typed values lie in the store as bytes, and how long they are for a
// caller that reads them through a fixed buffer.
#ifndef NORVIK50_SRC_SETTINGS_VALUE_BYTES_H_
#define NORVIK50_SRC_SETTINGS_VALUE_BYTES_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace norvik50::settings {

// REG_SZ, REG_EXPAND_SZ and REG_MULTI_SZ: UTF-8 text in the store.
bool IsTextType(int32_t type);

// The bytes a caller's buffer must hold for the value. Text is counted in
// characters: the caller receives it as Windows-1252, one byte each, so a
// text of umlauts fits exactly as a text of ASCII letters does.
std::size_t CallerLength(int32_t type, std::string_view data);

// `data` as the store keeps it: REG_SZ and REG_EXPAND_SZ end in exactly
// one added zero when the writer gave none, so that written text reads
// back identically after the reader drops one terminator.
std::string StoredForm(int32_t type, std::string_view data);

// Four bytes, least significant first.
std::string DwordBytes(uint32_t value);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_VALUE_BYTES_H_
