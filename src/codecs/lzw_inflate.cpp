// The LZW decompressor. Every dictionary string is also a run of bytes
// already written to the output (the string of the previous code followed by
// the first byte of the current one sits exactly there), so an entry is just
// its (offset, length) in the output and decoding a code is one short copy.
#include <cstring>

#include "codecs/lzw.h"
#include "codecs/lzw_bits.h"
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
  return static_cast<uint32_t>(internal::LoadLE64(in + (bit >> 3)) >> (bit & 7)) &
         0x1FF;
}

// The code starting at `bit` near the end: it spans exactly two bytes.
inline uint32_t ReadCodeSafe(const unsigned char* in, std::size_t bit) {
  const std::size_t byte = bit >> 3;
  const uint32_t v = in[byte] | (uint32_t{in[byte + 1]} << 8);
  return (v >> (bit & 7)) & 0x1FF;
}

// Copies `length` bytes from `src` to `dst` in 16-byte steps, so it reads
// and writes up to 15 bytes past them. REQUIRES: every source byte that matters
// lies before `dst` or outside the output (a chunk is loaded whole before it is
// stored, so an overlap only rewrites bytes past the ones being read).
inline void CopyString(const char* src, char* dst, std::size_t length) {
  unsigned char chunk[16];
  std::memcpy(chunk, src, 16);
  std::memcpy(dst, chunk, 16);
  for (std::size_t i = 16; i < length; i += 16) [[unlikely]] {
    std::memcpy(chunk, src + i, 16);
    std::memcpy(dst + i, chunk, 16);
  }
}

// Room kept free past the write position: the longest string plus the
// overrun of a 16-byte copy.
constexpr std::size_t kSlack = kMaxStringLength + 32;

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

}  // namespace

std::string Inflate(std::string_view stream) {
  const auto* in = reinterpret_cast<const unsigned char*>(stream.data());
  const std::size_t size = stream.size();
  // A stream that does not open with the clear code decodes to nothing; the
  // clear code's top bit is the first stored bit.
  if (size == 0 || (in[0] & 1) == 0) return {};
  const std::size_t end_bit = size * 8;  // a whole code has bit + 9 <= end_bit
  if (FirstBitOfCode(1) + kCodeBits > end_bit) return {};

  const uint32_t first = ReadCodeSafe(in, FirstBitOfCode(1));
  if (first == kEndCode) return {};
  if (first > 0xFF) {
    Malformed(u"The compressed text is damaged: its first code names no "
              u"character");
  }

  // Text streams expand by a little over a third; grow by doubling past
  // twice the stream (every page allocated here is touched, so a generous
  // first guess costs more than an occasional doubling).
  std::string out(size * 2 + kSlack, '\0');
  char* buf = out.data();
  std::size_t limit = out.size() - kSlack;
  // Entry k is the string at offset[k] with length[k] bytes, in kByteStrings
  // for the byte codes and in the output for the learnt ones.
  std::size_t offset[kDictionarySize];
  uint16_t length[kDictionarySize];
  for (uint32_t i = 0; i < 256; ++i) {
    offset[i] = i;
    length[i] = 1;
  }
  const char* const byte_strings = kByteStrings.bytes;
  auto source = [&](uint32_t code) {
    return (code <= 0xFF ? byte_strings : buf) + offset[code];
  };
  buf[0] = static_cast<char>(first);
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
      Malformed(u"The compressed text is damaged: it uses a code that is "
                u"not defined yet");
    }
    if (prev_length >= kMaxStringLength) [[unlikely]] {
      Malformed(u"The compressed text is damaged: it defines a string "
                u"longer than any compressed text holds");
    }
    if (pos > limit) [[unlikely]] {
      out.resize(out.size() * 2);
      buf = out.data();
      limit = out.size() - kSlack;
    }
    // Every data code teaches the previous string plus this string's first
    // byte, which the output holds right behind the previous string.
    std::size_t cur_length;
    if (next == kDictionarySize) [[unlikely]] {
      // Full: the dictionary clears itself, as the compressor's does, and
      // the code still means its entry of the old dictionary.
      cur_length = length[code];
      CopyString(source(code), buf + pos, cur_length);
      next = kFirstLearnt;
      offset[next] = prev_offset;
      length[next] = static_cast<uint16_t>(prev_length + 1);
    } else {
      // Defining the entry before the copy also decodes the code being
      // defined by this very step (the previous string plus its own first
      // byte); only that last byte is unknown until the copy has run.
      offset[next] = prev_offset;
      length[next] = static_cast<uint16_t>(prev_length + 1);
      cur_length = length[code];
      CopyString(source(code), buf + pos, cur_length);
      if (code == next) [[unlikely]] buf[pos + prev_length] = buf[prev_offset];
    }
    ++next;
    prev_offset = pos;
    prev_length = cur_length;
    pos += cur_length;
  }
  out.resize(pos);
  return out;
}

}  // namespace norvik50::lzw
