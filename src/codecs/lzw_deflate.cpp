// The LZW compressor. The dictionary is a direct table from (prefix code,
// next byte) to the learnt code, so each input byte costs one lookup; the
// table lives per thread and is returned to all-zero at the end of every call
// by clearing only the slots that call wrote.
#include <memory>

#include "codecs/lzw.h"
#include "codecs/lzw_bits.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

// slots[(prefix << 8) | byte] is the code of that string, or 0 when it is not
// in the dictionary (0 is never a learnt code).
constexpr std::size_t kSlots = std::size_t{kDictionarySize} << 8;

struct ThreadTable {
  std::unique_ptr<uint16_t[]> slots{new uint16_t[kSlots]()};
  // Slots written since the table was last all-zero: one per learnt entry,
  // the late key of entry 258 (below) and one scratch store.
  uint32_t written[kDictionarySize];
};

ThreadTable& TableForThisThread() {
  thread_local ThreadTable table;
  return table;
}

// The dictionary of one call. Its state lives in locals of the compressing
// loop (the output buffer is written through char pointers, which the
// compiler must assume alias anything reachable from outside).
struct Dictionary {
  uint16_t* slots;
  uint32_t* written;
  uint32_t written_count = 0;

  void Set(uint32_t slot, uint32_t code) {
    slots[slot] = static_cast<uint16_t>(code);
    written[written_count++] = slot;
  }
  void Clear() {
    for (uint32_t i = 0; i < written_count; ++i) slots[written[i]] = 0;
    written_count = 0;
  }
};

// Packs 9-bit codes least-significant bit first into a buffer sized for the
// worst case in advance (4 bytes of slack for the 32-bit stores).
class BitWriter {
 public:
  explicit BitWriter(char* out) : out_(out) {}

  // The stream always opens with the clear code, whose low 8 bits make a
  // zero byte that the format leaves out; only its top bit is written.
  void PutClearWithoutLeadingByte() {
    acc_ = kClearCode >> 8;
    bits_ = kCodeBits - 8;
  }

  void Put(uint32_t code) { PutIf(code, 1); }

  // Appends `code` when `put` is 1 and nothing when it is 0. The whole bytes
  // are stored after every call, so at most 7 bits wait in the accumulator.
  void PutIf(uint32_t code, uint32_t put) {
    const uint32_t mask = 0u - put;
    acc_ |= uint64_t{code & mask} << bits_;
    bits_ += kCodeBits & mask;
    internal::StoreLE32(out_ + pos_, acc_);
    pos_ += bits_ >> 3;
    acc_ >>= bits_ & ~7u;
    bits_ &= 7;
  }

  // The stream's length. The bits still waiting form the final partial byte,
  // which holds only top bits of the padding code and is dropped.
  std::size_t length() const { return pos_; }

 private:
  char* out_;
  std::size_t pos_ = 0;
  uint64_t acc_ = 0;
  uint32_t bits_ = 0;
};

// After a clear, entry 258 is the string that failed the lookup (the old w
// plus the next byte). Its prefix w had a code in the old dictionary only, so
// the entry cannot be keyed by (prefix code, byte) until w itself is learnt
// again in the new dictionary, one byte at a time. This follows that chain
// and keys entry 258 once it is complete; until then no lookup can reach it,
// just as a search of the string dictionary would never get there.
struct LateEntry {
  const unsigned char* prefix = nullptr;  // w's bytes in the input
  std::size_t prefix_length = 0;
  std::size_t matched = 0;    // length of w's longest prefix learnt so far
  uint32_t matched_code = 0;  // its code
  uint32_t next_byte = 0;

  bool active() const { return matched != 0; }

  // Called for every entry learnt while active. Strings are unique in the
  // dictionary, so a prefix of w can only be learnt from the previous one.
  void Learnt(Dictionary& dict, uint32_t prefix_code, uint32_t byte,
              uint32_t code) {
    if (prefix_code != matched_code || byte != prefix[matched]) return;
    matched_code = code;
    if (++matched == prefix_length) {
      dict.Set((matched_code << 8) | next_byte, kFirstLearnt);
      matched = 0;
    }
  }
};

// Codes written for n input bytes: at most one data code per byte, one clear
// code per 254 learnt entries, the leading clear, end and padding.
std::size_t MaxStreamBytes(std::size_t n) {
  const std::size_t codes = n + n / 254 + 4;
  return codes / 8 * kCodeBits + kCodeBits + 4;
}

}  // namespace

std::string Deflate(std::string_view input) {
  if (input.empty()) {
    throw Error(kErrInvalidCall,
                u"An empty text has no compressed form (DEFLATE needs at "
                u"least one character)",
                std::u16string(kErrorSource));
  }
  std::string out(MaxStreamBytes(input.size()), '\0');
  BitWriter writer(out.data());
  writer.PutClearWithoutLeadingByte();

  // Nothing below throws, so the table is always left all-zero.
  ThreadTable& table = TableForThisThread();
  Dictionary dict{table.slots.get(), table.written};
  uint16_t* const slots = dict.slots;

  const auto* const begin = reinterpret_cast<const unsigned char*>(input.data());
  const auto* const end = begin + input.size();
  const unsigned char* w_start = begin;  // where the bytes of w begin
  uint32_t w = *begin;
  uint32_t next = kFirstLearnt;
  LateEntry late;

  // The loop is written without a branch on "found": on real text whether wc
  // is in the dictionary is close to a coin toss, so the code of w is always
  // handed to the writer (with zero width when wc was found) and the slot
  // always stored (with its own value when found).
  for (const unsigned char* p = begin + 1; p < end; ++p) {
    const uint32_t c = *p;
    const uint32_t slot = (w << 8) | c;
    const uint32_t code = slots[slot];
    const uint32_t miss = code == 0;
    if (miss & (next == kDictionarySize)) [[unlikely]] {
      // Full: the clear code follows the code that overflowed the
      // dictionary, and the string that failed the lookup becomes entry 258
      // of the fresh one.
      writer.Put(w);
      writer.Put(kClearCode);
      dict.Clear();
      late = LateEntry{};
      if (p - w_start == 1) {
        dict.Set(slot, kFirstLearnt);  // a byte code means the same after a clear
      } else {
        late = LateEntry{w_start, static_cast<std::size_t>(p - w_start), 1,
                         *w_start, c};
      }
      next = kFirstLearnt + 1;
      w = c;
      w_start = p;
      continue;
    }
    writer.PutIf(w, miss);
    slots[slot] = static_cast<uint16_t>(code | (next & (0u - miss)));
    dict.written[dict.written_count] = slot;  // the scratch store when found
    dict.written_count += miss;
    if (late.active()) [[unlikely]] {
      if (miss) late.Learnt(dict, w, c, next);
    }
    next += miss;
    w = miss ? c : code;
    w_start = miss ? p : w_start;
  }
  writer.Put(w);
  writer.Put(kEndCode);
  writer.Put(0);  // padding; its top bits fall into the dropped partial byte
  dict.Clear();
  out.resize(writer.length());
  return out;
}

}  // namespace norvik50::lzw
