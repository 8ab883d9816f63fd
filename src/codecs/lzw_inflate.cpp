// The LZW decompressor. Every dictionary string is also a run of bytes
// already written to the output (the string of the previous code followed by
// the first byte of the current one sits exactly there), so an entry is just
// its (offset, length) in the output and decoding a code is one short copy.
#include <cstring>
#include <exception>
#include <string>

#include "codecs/lzw.h"
#include "codecs/lzw_bits.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

[[noreturn]] void Malformed(const char16_t* what) {
  throw Error(kErrInvalidCall, what, std::u16string(kErrorSource));
}

// The stream as stored lacks the leading zero byte of the packed codes, so
// code k (k >= 1) starts at bit 9k - 8 of the stored bytes, and a code is
// whole when its 9 bits lie inside them; a final partial code is the dropped
// padding.
constexpr std::size_t FirstBitOfCode(std::size_t k) { return k * kCodeBits - 8; }

// The code starting at `bit` when 8 bytes can be loaded there.
inline uint32_t ReadCodeFast(const unsigned char* in, std::size_t bit) {
  return static_cast<uint32_t>(internal::LoadLE64(in + (bit >> 3)) >> (bit & 7)) & 0x1FF;
}

// The code starting at `bit` near the end: it spans exactly two bytes.
inline uint32_t ReadCodeSafe(const unsigned char* in, std::size_t bit) {
  const std::size_t byte = bit >> 3;
  const uint32_t v = in[byte] | (uint32_t{in[byte + 1]} << 8);
  return (v >> (bit & 7)) & 0x1FF;
}

// Copies `length` units from `src` to `dst` in 16-byte steps, so it reads
// and writes up to 15 bytes past them. REQUIRES: every source unit that
// matters lies before `dst` or outside the output (a chunk is loaded whole
// before it is stored, so an overlap only rewrites units past the ones being
// read).
template <typename Char>
inline void CopyString(const Char* src, Char* dst, std::size_t length) {
  const auto* from = reinterpret_cast<const unsigned char*>(src);
  auto* to = reinterpret_cast<unsigned char*>(dst);
  const std::size_t bytes = length * sizeof(Char);
  unsigned char chunk[16];
  std::memcpy(chunk, from, 16);
  std::memcpy(to, chunk, 16);
  for (std::size_t i = 16; i < bytes; i += 16) [[unlikely]] {
      std::memcpy(chunk, from + i, 16);
      std::memcpy(to + i, chunk, 16);
    }
}

// Room kept past the end of the output for the overrun of a 16-byte copy.
constexpr std::size_t kSlackBytes = 16;

// The strings of the byte codes, with room for a 16-byte read past any one.
// A byte code is an entry like any other, only its string lives here instead
// of in the output, so decoding needs no branch on the kind of code.
struct ByteStrings {
  char bytes[256 + 16];
  constexpr ByteStrings() : bytes() {
    for (int i = 0; i < 256; ++i) bytes[i] = static_cast<char>(i);
  }
};
constexpr ByteStrings kByteStrings;

// The same for text: each byte as its Windows-1252 character.
struct CharStrings {
  char16_t chars[256 + 8];
  CharStrings() : chars() {
    for (int i = 0; i < 256; ++i) chars[i] = Cp1252ToChar(static_cast<uint8_t>(i));
  }
};

// Decodes the stream of `in` (`size` bytes) and returns the number of units
// it decodes to. With kWrite, writes them to `buf`, which must hold that many
// units plus kSlackBytes; without, only walks the codes, so the caller can
// size the output exactly before anything is allocated (a stream may expand
// over two hundred times, and an output grown by doubling would take up to
// twice its size plus the copy). Both walks check the stream alike, so a
// damaged stream is refused by the first, before any allocation.
template <typename Char, bool kWrite>
std::size_t Decode(const unsigned char* in, std::size_t size, Char* buf, const Char* byte_strings) {
  // A stream that does not open with the clear code decodes to nothing; the
  // clear code's top bit is the first stored bit.
  if (size == 0 || (in[0] & 1) == 0) return 0;
  const std::size_t end_bit = size * 8;  // a whole code has bit + 9 <= end_bit
  if (FirstBitOfCode(1) + kCodeBits > end_bit) return 0;

  const uint32_t first = ReadCodeSafe(in, FirstBitOfCode(1));
  if (first == kEndCode) return 0;
  if (first > 0xFF) {
    Malformed(
        u"The compressed text is damaged: its first code names no "
        u"character");
  }

  // Entry k is the string at offset[k] with length[k] units, in
  // `byte_strings` for the byte codes and in the output for the learnt ones.
  std::size_t offset[kDictionarySize];
  uint16_t length[kDictionarySize];
  for (uint32_t i = 0; i < 256; ++i) {
    offset[i] = i;
    length[i] = 1;
  }
  auto source = [&](uint32_t code) { return (code <= 0xFF ? byte_strings : buf) + offset[code]; };
  if constexpr (kWrite) buf[0] = byte_strings[first];
  std::size_t pos = 1;
  uint32_t next = kFirstLearnt;
  std::size_t prev_offset = 0;  // where the previous string was written
  std::size_t prev_length = 1;

  // The stream's own end code normally stops decoding; a stream cut short
  // gives what was decoded up to its last whole code. (The format's unpacker
  // reports the stream length minus one as its count, which is never below
  // the index of the last whole code, so the whole codes are the real bound.)
  const std::size_t fast_end_bit = size >= 8 ? (size - 7) * 8 : 0;
  for (std::size_t bit = FirstBitOfCode(2);; bit += kCodeBits) {
    uint32_t code;
    if (bit < fast_end_bit) [[likely]] {
      code = ReadCodeFast(in, bit);
    } else if (bit + kCodeBits <= end_bit) {
      code = ReadCodeSafe(in, bit);
    } else {
      break;
    }
    if ((code - kClearCode < 2) | (code > next)) [[unlikely]] {
      if (code == kEndCode) break;
      if (code == kClearCode) {
        // The previous string stays in the output, so the first entry
        // learnt after the clear is built from it, as the compressor built
        // it from the string it failed to find.
        next = kFirstLearnt;
        continue;
      }
      Malformed(
          u"The compressed text is damaged: it uses a code that is "
          u"not defined yet");
    }
    if (prev_length >= kMaxStringLength) [[unlikely]] {
      Malformed(
          u"The compressed text is damaged: it defines a string "
          u"longer than any compressed text holds");
    }
    // Every data code teaches the previous string plus this string's first
    // byte, which the output holds right behind the previous string.
    std::size_t cur_length;
    if (next == kDictionarySize) [[unlikely]] {
      // Full: the dictionary clears itself, as the compressor's does, and
      // the code still means its entry of the old dictionary.
      cur_length = length[code];
      if constexpr (kWrite) CopyString(source(code), buf + pos, cur_length);
      next = kFirstLearnt;
      offset[next] = prev_offset;
      length[next] = static_cast<uint16_t>(prev_length + 1);
    } else {
      // Defining the entry before the copy also decodes the code being
      // defined by this very step (the previous string plus its own first
      // byte); only that last unit is unknown until the copy has run.
      offset[next] = prev_offset;
      length[next] = static_cast<uint16_t>(prev_length + 1);
      cur_length = length[code];
      if constexpr (kWrite) {
        CopyString(source(code), buf + pos, cur_length);
        if (code == next) [[unlikely]]
          buf[pos + prev_length] = buf[prev_offset];
      }
    }
    ++next;
    prev_offset = pos;
    prev_length = cur_length;
    pos += cur_length;
  }
  return pos;
}

// Sizes the output with one walk over the stream, then decodes into it.
template <typename String>
String InflateInto(std::string_view stream, const typename String::value_type* byte_strings) {
  using Char = typename String::value_type;
  const auto* in = reinterpret_cast<const unsigned char*>(stream.data());
  const std::size_t units = Decode<Char, false>(in, stream.size(), nullptr, nullptr);
  if (units == 0) return {};
  String out;
  try {
    out.resize(units + (kSlackBytes + sizeof(Char) - 1) / sizeof(Char));
  } catch (const std::exception&) {  // std::bad_alloc, std::length_error
    throw Error(kErrOutOfMemory,
                u"Out of memory: the decompressed text has " + FromUtf8(std::to_string(units)) +
                    u" characters",
                std::u16string(kErrorSource));
  }
  Decode<Char, true>(in, stream.size(), out.data(), byte_strings);
  out.resize(units);
  return out;
}

}  // namespace

std::string Inflate(std::string_view stream) {
  return InflateInto<std::string>(stream, kByteStrings.bytes);
}

std::u16string InflateToText(std::string_view stream) {
  static const CharStrings kCharStrings;
  return InflateInto<std::u16string>(stream, kCharStrings.chars);
}

}  // namespace norvik50::lzw
