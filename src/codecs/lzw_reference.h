// A literal, slow form of the LZW codec for the tests: the dictionary is an
// array of strings searched linearly, codes are kept in a list and packed
// bit by bit, each step exactly as the format's rules read. The fast codec in
// lzw_deflate.cpp / lzw_inflate.cpp must agree with it byte for byte.
// Test support only: nothing in the library includes it.
#ifndef NORVIK50_SRC_CODECS_LZW_REFERENCE_H_
#define NORVIK50_SRC_CODECS_LZW_REFERENCE_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/lzw.h"

namespace norvik50::lzw::reference {

class Dictionary {
 public:
  Dictionary() {
    for (int i = 0; i < 256; ++i) entries_[i] = std::string(1, static_cast<char>(i));
    Reset();
  }
  // Entries 256 to 511 emptied, next free index 258.
  void Reset() {
    for (int i = 256; i < 512; ++i) entries_[i].clear();
    next_ = 258;
  }
  // A single character gives its byte; a longer string is searched among
  // 258 .. next - 1; 512 when not found.
  int LookUp(const std::string& s) const {
    if (s.size() == 1) return static_cast<unsigned char>(s[0]);
    for (int i = 258; i < next_; ++i) {
      if (entries_[i] == s) return i;
    }
    return 512;
  }
  // Stores `s` at the next free index, resetting first when full; reports
  // whether it reset.
  bool Add(const std::string& s) {
    bool reset = false;
    if (next_ == 512) {
      Reset();
      reset = true;
    }
    entries_[next_++] = s;
    return reset;
  }
  const std::string& operator[](int code) const { return entries_[code]; }
  int next() const { return next_; }

 private:
  std::string entries_[512];
  int next_ = 258;
};

// The code list 0..N of compressing `text` (not empty).
inline std::vector<int> CompressToCodes(std::string_view text) {
  Dictionary dict;
  std::vector<int> codes{256};
  std::string w;
  for (char c : text) {
    std::string wc = w + c;
    if (dict.LookUp(wc) != 512) {
      w = wc;
      continue;
    }
    codes.push_back(dict.LookUp(w));
    if (dict.Add(wc)) codes.push_back(256);
    w = std::string(1, c);
  }
  codes.push_back(dict.LookUp(w));
  codes.push_back(257);
  codes.push_back(0);
  return codes;
}

// Each code as 9 bits, least significant first; whole bytes only.
inline std::string Pack(const std::vector<int>& codes) {
  std::vector<bool> bits;
  for (int code : codes) {
    for (int b = 0; b < 9; ++b) bits.push_back(((code >> b) & 1) != 0);
  }
  std::string out;
  for (std::size_t i = 0; i + 8 <= bits.size(); i += 8) {
    int byte = 0;
    for (int b = 0; b < 8; ++b) byte |= bits[i + b] << b;
    out.push_back(static_cast<char>(byte));
  }
  return out;
}

inline std::string Compress(std::string_view text) {
  return Pack(CompressToCodes(text)).substr(1);  // drop the leading zero byte
}

// 9-bit codes read least significant bit first while 9 bits remain.
inline std::vector<int> Unpack(std::string_view bytes) {
  std::vector<bool> bits;
  for (char ch : bytes) {
    for (int b = 0; b < 8; ++b) bits.push_back(((static_cast<unsigned char>(ch) >> b) & 1) != 0);
  }
  std::vector<int> codes;
  for (std::size_t i = 0; i + 9 <= bits.size(); i += 9) {
    int code = 0;
    for (int b = 0; b < 9; ++b) code |= bits[i + b] << b;
    codes.push_back(code);
  }
  return codes;
}

// nullopt stands for error 5 (a code naming no entry, or a string longer than
// kMaxStringLength learnt).
inline std::optional<std::string> Decompress(std::string_view compressed) {
  Dictionary dict;
  const std::string text = std::string(1, '\0') + std::string(compressed);
  const std::vector<int> codes = Unpack(text);
  const std::size_t count = text.size() - 2;  // what the unpacker reports
  if (codes.empty() || codes[0] != 256) return std::string();
  if (codes.size() < 2 || codes[1] == 257) return std::string();
  if (codes[1] > 255) return std::nullopt;
  std::string out = dict[codes[1]];
  std::string prev = out;  // the string of prev, kept across a clear
  for (std::size_t k = 2; k <= count && k < codes.size(); ++k) {
    const int code = codes[k];
    if (code == 256) {
      dict.Reset();
      continue;
    }
    if (code == 257) break;
    std::string entry;
    if (code < 256 || !dict[code].empty()) {
      entry = dict[code];
    } else if (code == dict.next()) {
      entry = prev + prev[0];
    } else {
      return std::nullopt;
    }
    out += entry;
    const std::string learnt = prev + entry[0];
    if (learnt.size() > kMaxStringLength) return std::nullopt;
    dict.Add(learnt);
    prev = entry;
  }
  return out;
}

}  // namespace norvik50::lzw::reference

#endif  // NORVIK50_SRC_CODECS_LZW_REFERENCE_H_
