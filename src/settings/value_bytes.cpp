#include "settings/value_bytes.h"

#include "norvik50/registry.h"

namespace norvik50::settings {

bool IsTextType(int32_t type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::size_t CallerLength(int32_t type, std::string_view data) {
  if (!IsTextType(type)) return data.size();
  std::size_t chars = 0;
  // Every byte that does not continue a UTF-8 sequence starts a character.
  for (const char c : data) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++chars;
  }
  return chars;
}

std::string StoredForm(int32_t type, std::string_view data) {
  std::string stored(data);
  if ((type == REG_SZ || type == REG_EXPAND_SZ) && (stored.empty() || stored.back() != '\0')) {
    stored.push_back('\0');
  }
  return stored;
}

std::string DwordBytes(uint32_t value) {
  std::string bytes(4, '\0');
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
  return bytes;
}

}  // namespace norvik50::settings
