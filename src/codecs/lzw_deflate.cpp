// The LZW compressor. The dictionary is a direct table from (prefix code,
// next byte) to the learnt code, so each input byte costs one lookup; the
// table lives per thread and is returned to all-zero at the end of every call
// by clearing only the slots that call wrote.
#include <memory>
#include <optional>
#include <type_traits>

#include "codecs/lzw.h"
#include "codecs/lzw_bits.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

// slots[(prefix << 8) | byte] is the code of that string minus 257, or 0 when
// it is not in the dictionary. Learnt codes (258..511) fit a byte that way,
// which halves the table: its speed is the speed of the compressor.
constexpr std::size_t kSlots = std::size_t{kDictionarySize} << 8;
constexpr uint32_t kSlotBias = kFirstLearnt - 1;

struct ThreadTable {
  std::unique_ptr<uint8_t[]> slots{new uint8_t[kSlots]()};
  // Slots written since the table was last all-zero: one per learnt entry
  // and the late key of entry 258 (below).
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
  uint8_t* slots;
  uint32_t* written;      // start of the list of written slots
  uint32_t* written_end;  // one past its last entry

  void Set(uint32_t slot, uint32_t code) {
    slots[slot] = static_cast<uint8_t>(code - kSlotBias);
    *written_end++ = slot;
  }
  void Clear() {
    for (const uint32_t* s = written; s != written_end; ++s) slots[*s] = 0;
    written_end = written;
  }
};

// Packs 9-bit codes least-significant bit first into `out`, which needs 8
// bytes of slack past the packed bytes for the 64-bit stores.
struct BitWriter {
  char* out;
  uint64_t acc = 0;   // bits not yet stored whole, the first at bit 0
  uint32_t bits = 0;  // how many; at most 7 between calls

  // Appends `code`; the whole bytes are stored after every call.
  void Put(uint32_t code) {
    acc |= uint64_t{code} << bits;
    bits += kCodeBits;
    internal::StoreLE32(out, acc);
    out += bits >> 3;
    acc >>= bits & ~7u;
    bits &= 7;
  }

  // Appends 8 codes: 72 bits, 9 whole bytes, so as many bits wait after as
  // before.
  void Put8(const uint16_t* c) {
    const uint64_t lo = uint64_t{c[0]} | uint64_t{c[1]} << 9 | uint64_t{c[2]} << 18 |
                        uint64_t{c[3]} << 27 | uint64_t{c[4]} << 36 | uint64_t{c[5]} << 45 |
                        uint64_t{c[6]} << 54 | uint64_t{c[7]} << 63;
    const uint64_t hi = c[7] >> 1;
    internal::StoreLE64(out, acc | (lo << bits));
    // The top `bits` bits of lo (none when bits is 0), then hi.
    const uint64_t rest = ((lo >> 57) >> (7 - bits)) | (hi << bits);
    out[8] = static_cast<char>(rest);
    out += 9;
    acc = rest >> 8;
  }
};

// The input's bytes: a byte string as it stands, a text through its
// characters' Windows-1252 bytes, read one by one as the compressor goes,
// so a text never needs a byte copy of itself. Read() gives the byte, or
// kNoByte plus some byte for a character without one: the compressor goes
// on with that byte (the table stays in range and is cleared as always)
// and the result is dropped at the end. Checking in the compressing loop
// costs nothing there, which waits on its table lookups anyway; a pass of
// its own over the text cost half as much as the compression.
constexpr uint32_t kNoByte = 0x100;

struct ByteUnits {
  using Unit = unsigned char;
  static constexpr bool kMayLackBytes = false;
  uint32_t Read(const Unit* p) const { return *p; }
};
struct CharUnits {
  using Unit = char16_t;
  static constexpr bool kMayLackBytes = true;
  struct Table {
    uint16_t byte_of[0x10000];
    Table() : byte_of() {
      for (uint32_t c = 0; c < 0x10000; ++c) {
        const auto b = CharToCp1252(static_cast<char16_t>(c));
        byte_of[c] = b ? uint16_t{*b} : uint16_t{kNoByte};
      }
    }
  };
  uint32_t Read(const Unit* p) const { return byte_of[*p]; }
  const uint16_t* byte_of = [] {
    static const Table kTable;
    return kTable.byte_of;
  }();
};

// Each byte as its Windows-1252 character, for a stream written as text.
struct CharOfByte {
  char16_t chars[256];
  CharOfByte() : chars() {
    for (int i = 0; i < 256; ++i) chars[i] = Cp1252ToChar(static_cast<uint8_t>(i));
  }
};

// The codes of the stream, collected by the matching loop and packed in
// batches onto the end of the output: the packing runs in a tight loop of
// its own instead of lengthening every step of the matching, whose speed is
// set by the chain of table lookups. The output grows by appending, so no
// page of it is touched before it is written. A text output receives each
// packed byte as its character right there, so the stream never exists
// twice.
template <typename Out>
class CodeSink {
 public:
  static constexpr uint32_t kBatch = 1024;

  explicit CodeSink(Out& out) : out_(out) {
    // The stream always opens with the clear code, whose low 8 bits make a
    // zero byte that the format leaves out; only its top bit is kept.
    writer_.acc = kClearCode >> 8;
    writer_.bits = kCodeBits - 8;
  }

  void Put(uint32_t code) { codes_[count_++] = static_cast<uint16_t>(code); }
  bool full() const { return count_ >= kBatch - 2; }

  // Packs the codes in groups of 8; the last few wait for the next batch.
  void Flush() {
    writer_.out = staging_;
    uint32_t i = 0;
    for (; i + 8 <= count_; i += 8) writer_.Put8(codes_ + i);
    Append();
    const uint32_t left = count_ - i;
    for (uint32_t k = 0; k < left; ++k) codes_[k] = codes_[i + k];
    count_ = left;
  }

  // Packs everything. The bits still waiting form the final partial byte,
  // which holds only top bits of the padding code and is dropped.
  void Finish() {
    Flush();
    writer_.out = staging_;
    for (uint32_t i = 0; i < count_; ++i) writer_.Put(codes_[i]);
    Append();
    count_ = 0;
  }

 private:
  void Append() {
    const auto n = static_cast<std::size_t>(writer_.out - staging_);
    if constexpr (std::is_same_v<Out, std::string>) {
      out_.append(staging_, n);
    } else {
      static const CharOfByte kCharOf;
      const std::size_t old = out_.size();
      out_.resize(old + n);
      char16_t* to = out_.data() + old;
      for (std::size_t i = 0; i < n; ++i) to[i] = kCharOf.chars[static_cast<uint8_t>(staging_[i])];
    }
  }

  Out& out_;
  BitWriter writer_{nullptr};
  uint32_t count_ = 0;
  uint16_t codes_[kBatch];
  char staging_[kBatch / 8 * kCodeBits + 16];
};

// After a clear, entry 258 is the string that failed the lookup (the old w
// plus the next byte). Its prefix w had a code in the old dictionary only, so
// the entry cannot be keyed by (prefix code, byte) until w itself is learnt
// again in the new dictionary, one byte at a time. This follows that chain
// and keys entry 258 once it is complete; until then no lookup can reach it,
// just as a search of the string dictionary would never get there.
template <typename Units>
struct LateEntry {
  using Unit = typename Units::Unit;
  static constexpr uint32_t kNone = 0xFFFFFFFF;  // never a slot

  // The slot whose learning learns the next prefix of w: (code of w's
  // longest prefix learnt so far, the byte that extends it). Strings are
  // unique in the dictionary, so that prefix can only be learnt there.
  uint32_t watch = kNone;
  const Unit* prefix = nullptr;  // w's bytes in the input
  std::size_t prefix_length = 0;
  std::size_t matched = 0;  // length of that longest prefix
  uint32_t next_byte = 0;   // the byte after w

  Units units;

  void Start(const Unit* w_bytes, std::size_t w_length, uint32_t byte) {
    prefix = w_bytes;
    prefix_length = w_length;
    matched = 1;
    watch = ((units.Read(w_bytes) & 0xFF) << 8) | (units.Read(w_bytes + 1) & 0xFF);
    next_byte = byte;
  }
  void Stop() { watch = kNone; }

  // The watched slot was learnt as `learnt`.
  void Advance(Dictionary& dict, uint32_t learnt) {
    if (++matched == prefix_length) {
      dict.Set((learnt << 8) | next_byte, kFirstLearnt);
      Stop();
    } else {
      watch = (learnt << 8) | (units.Read(prefix + matched) & 0xFF);
    }
  }
};

// The longest stream for n input bytes, reserved up front so that appending
// never reallocates: at most one data code per byte, one clear code per 254
// learnt entries, the leading clear, end and padding.
std::size_t MaxStreamBytes(std::size_t n) {
  const std::size_t codes = n + n / 254 + 4;
  return codes / 8 * kCodeBits + kCodeBits;
}

// The stream of `size` units from `begin`; nullopt when a character has no
// byte.
template <typename Out, typename Units>
std::optional<Out> DeflateInto(const typename Units::Unit* begin, std::size_t size) {
  if (size == 0) {
    throw Error(kErrInvalidCall,
                u"An empty text has no compressed form (DEFLATE needs at "
                u"least one character)",
                std::u16string(kErrorSource));
  }
  Out out;
  out.reserve(MaxStreamBytes(size));
  CodeSink<Out> batch(out);

  // Nothing below allocates or throws (the output never grows past its
  // reserve), so the table is always left all-zero.
  ThreadTable& table = TableForThisThread();
  Dictionary dict{table.slots.get(), table.written, table.written};
  uint8_t* const slots = dict.slots;

  using Unit = typename Units::Unit;
  const Unit* const end = begin + size;
  const Unit* w_start = begin;  // where the bytes of w begin
  const Units units;
  uint32_t lacking = units.Read(begin);  // kNoByte set once a character has no byte
  uint32_t w = lacking & 0xFF;
  uint32_t next = kFirstLearnt;
  LateEntry<Units> late{.units = units};

  // A found string only extends w; all the work is on the other path, where
  // w's code is written and wc learnt.
  for (const Unit* p = begin + 1; p < end; ++p) {
    const uint32_t unit = units.Read(p);
    if constexpr (Units::kMayLackBytes) lacking |= unit;
    const uint32_t c = unit & 0xFF;
    const uint32_t slot = (w << 8) | c;
    if (const uint32_t found = slots[slot]) {
      w = found + kSlotBias;
      continue;
    }
    if (next == kDictionarySize) [[unlikely]] {
      // Full: the clear code follows the code that overflowed the
      // dictionary, and the string that failed the lookup becomes entry 258
      // of the fresh one.
      batch.Put(w);
      batch.Put(kClearCode);
      dict.Clear();
      if (p - w_start == 1) {
        late.Stop();
        dict.Set(slot, kFirstLearnt);  // a byte code means the same after a clear
      } else {
        late.Start(w_start, static_cast<std::size_t>(p - w_start), c);
      }
      next = kFirstLearnt + 1;
      w = c;
      w_start = p;
      if (batch.full()) batch.Flush();
      continue;
    }
    batch.Put(w);
    dict.Set(slot, next);
    if (slot == late.watch) [[unlikely]]
      late.Advance(dict, next);
    ++next;
    w = c;
    w_start = p;
    if (batch.full()) [[unlikely]]
      batch.Flush();
  }
  batch.Put(w);
  batch.Put(kEndCode);
  batch.Put(0);  // padding; its top bits fall into the dropped partial byte
  batch.Finish();
  dict.Clear();
  if (lacking & kNoByte) return std::nullopt;
  return out;
}

}  // namespace

std::string Deflate(std::string_view input) {
  return *DeflateInto<std::string, ByteUnits>(reinterpret_cast<const unsigned char*>(input.data()),
                                              input.size());
}

std::optional<std::u16string> DeflateCharacters(std::u16string_view text) {
  return DeflateInto<std::u16string, CharUnits>(text.data(), text.size());
}

}  // namespace norvik50::lzw
