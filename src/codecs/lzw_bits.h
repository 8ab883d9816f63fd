// Little-endian loads and stores for the LZW bit packer and unpacker. The
// stream is packed least-significant bit first, so on a little-endian host a
// 64-bit accumulator maps onto the bytes directly.
#ifndef NORVIK50_SRC_CODECS_LZW_BITS_H_
#define NORVIK50_SRC_CODECS_LZW_BITS_H_

#include <bit>
#include <cstdint>
#include <cstring>

namespace norvik50::lzw::internal {

// Writes the low 4 bytes of `value` to `out`, least significant first.
inline void StoreLE32(char* out, uint64_t value) {
  if constexpr (std::endian::native == std::endian::little) {
    const auto v = static_cast<uint32_t>(value);
    std::memcpy(out, &v, 4);
  } else {
    for (int i = 0; i < 4; ++i) out[i] = static_cast<char>(value >> (8 * i));
  }
}

// Writes `value` to `out`, least significant byte first.
inline void StoreLE64(char* out, uint64_t value) {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(out, &value, 8);
  } else {
    for (int i = 0; i < 8; ++i) out[i] = static_cast<char>(value >> (8 * i));
  }
}

// Reads 8 bytes from `in` as a little-endian number.
inline uint64_t LoadLE64(const unsigned char* in) {
  uint64_t v;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&v, in, 8);
  } else {
    v = 0;
    for (int i = 7; i >= 0; --i) v = (v << 8) | in[i];
  }
  return v;
}

}  // namespace norvik50::lzw::internal

#endif  // NORVIK50_SRC_CODECS_LZW_BITS_H_
