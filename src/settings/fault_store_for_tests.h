// Test support: a store that forwards to a real one and fails chosen
// operations on purpose, counting the calls it sees.
#ifndef NORVIK50_SRC_SETTINGS_FAULT_STORE_FOR_TESTS_H_
#define NORVIK50_SRC_SETTINGS_FAULT_STORE_FOR_TESTS_H_

#include <map>
#include <string>

#include "norvik50/registry.h"

namespace norvik50::settings {

class FaultStore final : public RegistryStore {
 public:
  enum Op { kOpen, kCreate, kQuery, kSet, kDeleteValue, kEnumKey, kEnumValue, kDeleteKey, kClose };

  explicit FaultStore(RegistryStore& inner) : inner_(inner) {}

  // Makes every call of `op` return `code` without reaching the store.
  void Fail(Op op, int32_t code) { failures_[op] = code; }
  // Makes DeleteKey report success without deleting anything.
  bool fake_deletes = false;
  // A problem to hand out once.
  std::u16string problem;
  std::map<Op, int> calls;
  int open_handles = 0;

  int32_t OpenKey(RegKey p, std::u16string_view s, int32_t a, RegKey& k) override {
    if (auto c = Check(kOpen)) return *c;
    const int32_t r = inner_.OpenKey(p, s, a, k);
    if (r == 0) ++open_handles;
    return r;
  }
  int32_t CreateKey(RegKey p, std::u16string_view s, int32_t o, int32_t a, RegKey& k,
                    int32_t* d) override {
    if (auto c = Check(kCreate)) return *c;
    const int32_t r = inner_.CreateKey(p, s, o, a, k, d);
    if (r == 0) ++open_handles;
    return r;
  }
  int32_t QueryValue(RegKey k, std::u16string_view n, std::size_t b, int32_t& t,
                     std::string& d) override {
    if (auto c = Check(kQuery)) return *c;
    return inner_.QueryValue(k, n, b, t, d);
  }
  int32_t SetValue(RegKey k, std::u16string_view n, int32_t t, std::string_view d) override {
    if (auto c = Check(kSet)) return *c;
    return inner_.SetValue(k, n, t, d);
  }
  int32_t DeleteValue(RegKey k, std::u16string_view n) override {
    if (auto c = Check(kDeleteValue)) return *c;
    return inner_.DeleteValue(k, n);
  }
  int32_t EnumKey(RegKey k, uint32_t i, std::size_t b, std::u16string& n) override {
    if (auto c = Check(kEnumKey)) return *c;
    return inner_.EnumKey(k, i, b, n);
  }
  int32_t EnumValue(RegKey k, uint32_t i, std::u16string& n, int32_t& t, std::string& d) override {
    if (auto c = Check(kEnumValue)) return *c;
    return inner_.EnumValue(k, i, n, t, d);
  }
  int32_t DeleteKey(RegKey p, std::u16string_view s) override {
    if (auto c = Check(kDeleteKey)) return *c;
    if (fake_deletes) return 0;
    return inner_.DeleteKey(p, s);
  }
  int32_t CloseKey(RegKey k) override {
    ++calls[kClose];
    const int32_t r = inner_.CloseKey(k);
    if (r == 0 && k > 0) --open_handles;
    return r;
  }
  std::u16string TakeProblem() override {
    std::u16string p = std::move(problem);
    problem.clear();
    return p.empty() ? inner_.TakeProblem() : p;
  }

 private:
  std::optional<int32_t> Check(Op op) {
    ++calls[op];
    const auto it = failures_.find(op);
    if (it == failures_.end()) return std::nullopt;
    return it->second;
  }
  RegistryStore& inner_;
  std::map<Op, int32_t> failures_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_FAULT_STORE_FOR_TESTS_H_
