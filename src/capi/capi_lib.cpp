// The library object of the C interface and the call by name.
//
// Handles are checked against the set of live objects before they are
// used: a host that passes a freed or made-up handle gets error 91, where
// following the pointer would crash it or corrupt memory.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "capi/capi_support.h"
#include "norvik50/dispatch.h"
#include "norvik50/lib.h"

struct norvik50_lib {
  norvik50::LIB lib;
};

using norvik50::Raise;
using norvik50::Variant;
using namespace norvik50::capi;

namespace {

class LiveLibraries {
 public:
  void Add(norvik50_lib* lib) {
    std::lock_guard lock(mutex_);
    live_.insert(lib);
  }
  // Removes `lib`; false when it was not live.
  bool Remove(norvik50_lib* lib) {
    std::lock_guard lock(mutex_);
    if (live_.erase(lib) == 0) return false;
    frees_.fetch_add(1, std::memory_order_release);
    return true;
  }
  // Whether `lib` is live. Each thread remembers the object it last found
  // live, which holds until any object is freed: a host calling one object
  // again and again takes no lock.
  bool Contains(norvik50_lib* lib) const {
    thread_local const norvik50_lib* last = nullptr;
    thread_local uint64_t last_frees = 0;
    const uint64_t frees = frees_.load(std::memory_order_acquire);
    if (lib == last && frees == last_frees) return true;
    std::lock_guard lock(mutex_);
    if (live_.count(lib) == 0) return false;
    last = lib;
    last_frees = frees;
    return true;
  }

 private:
  mutable std::mutex mutex_;
  std::unordered_set<norvik50_lib*> live_;
  std::atomic<uint64_t> frees_{0};
};

// Never destroyed: a host may free its last object from a static
// destructor of its own, after this file's statics would be gone.
LiveLibraries& Live() {
  static auto* const live = new LiveLibraries();
  return *live;
}

norvik50::LIB& LiveLib(norvik50_lib* lib) {
  if (lib == nullptr || !Live().Contains(lib)) Raise(kErrObjectNotSet);
  return lib->lib;
}

// The forms (NORVIK50_METHOD, _PROPERTYGET, _PROPERTYLET) each member name
// has, found without allocating: a call by name pays for one lookup more.
class MemberForms {
 public:
  MemberForms() {
    for (const norvik50::MemberInfo& member : norvik50::Members().members()) {
      forms_[member.name] |= Form(member.kind);
    }
  }
  int32_t Of(std::string_view name) const {
    const auto it = forms_.find(name);
    return it == forms_.end() ? 0 : it->second;
  }

 private:
  static int32_t Form(norvik50::MemberKind kind) {
    switch (kind) {
      case norvik50::MemberKind::kPropertyGet:
        return NORVIK50_PROPERTYGET;
      case norvik50::MemberKind::kPropertyLet:
        return NORVIK50_PROPERTYLET;
      default:
        return NORVIK50_METHOD;
    }
  }
  // ASCII letters only: member names are ASCII.
  static unsigned char Fold(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 'A' && u <= 'Z' ? static_cast<unsigned char>(u | 0x20) : u;
  }
  // Names compare as by-name calls compare them: ASCII, without case.
  struct Hash {
    std::size_t operator()(std::string_view s) const noexcept {
      std::size_t h = 14695981039346656037ull;
      for (char c : s) h = (h ^ Fold(c)) * 1099511628211ull;
      return h;
    }
  };
  struct Equal {
    bool operator()(std::string_view a, std::string_view b) const noexcept {
      return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                                [](char x, char y) { return Fold(x) == Fold(y); });
    }
  };
  std::unordered_map<std::string_view, int32_t, Hash, Equal> forms_;
};

// Whether the call is to the let form, once the member is known to have
// the form `how` asks for (438 when it has not). The method before the get
// form, as a call by name takes them.
bool CheckedLetFlag(const char* name, int32_t how) {
  static const MemberForms* const forms = new MemberForms();
  if (how != NORVIK50_METHOD && how != NORVIK50_PROPERTYGET && how != NORVIK50_PROPERTYLET &&
      how != (NORVIK50_METHOD | NORVIK50_PROPERTYGET)) {
    Raise(norvik50::kErrInvalidCall);
  }
  // Hosts call the same member many times in a row: the last name each
  // thread asked for is compared before the table is searched.
  thread_local std::string last_name;
  thread_local int32_t last_forms = 0;
  int32_t has = 0;
  if (std::strcmp(name, last_name.c_str()) == 0 && !last_name.empty()) {
    has = last_forms;
  } else {
    has = forms->Of(name);
    last_name = name;
    last_forms = has;
  }
  if ((has & how) == 0) Raise(norvik50::kErrNoSuchMember);
  // A get form asked for alone, of a name that also has a method, would
  // reach the method through the dispatch.
  if (how == NORVIK50_PROPERTYGET && (has & NORVIK50_METHOD) != 0) {
    Raise(norvik50::kErrNoSuchMember);
  }
  return how == NORVIK50_PROPERTYLET;
}

}  // namespace

extern "C" {

int32_t norvik50_lib_new(norvik50_lib** out, norvik50_error* err) {
  return Guarded(err, [&] {
    if (out == nullptr) Raise(norvik50::kErrInvalidCall);
    auto lib = std::make_unique<norvik50_lib>();
    Live().Add(lib.get());
    *out = lib.release();
  });
}

int32_t norvik50_lib_free(norvik50_lib* lib) {
  return Guarded(nullptr, [&] {
    if (lib == nullptr || !Live().Remove(lib)) Raise(kErrObjectNotSet);
    delete lib;
  });
}

int32_t norvik50_invoke(norvik50_lib* lib, const char* name, int32_t how, norvik50_value** args,
                        size_t argc, norvik50_value** result, norvik50_error* err) {
  return Guarded(err, [&] {
    norvik50::LIB& target = LiveLib(lib);
    if (name == nullptr) Raise(norvik50::kErrInvalidCall);
    if (args == nullptr && argc != 0) Raise(norvik50::kErrInvalidCall);
    const bool let = CheckedLetFlag(name, how);

    std::vector<std::optional<Variant>> in;
    in.reserve(argc);
    for (size_t i = 0; i < argc; ++i) {
      if (args[i] == nullptr) {
        in.emplace_back(std::nullopt);
      } else {
        in.emplace_back(*AsVariant(args[i]));
      }
    }
    norvik50::InvokeResult answer = norvik50::Invoke(target, name, std::move(in), let);

    // Everything that allocates happens before the caller's array changes,
    // so a failure leaves the arguments as they were.
    std::unique_ptr<Variant> out;
    if (result != nullptr && answer.result)
      out = std::make_unique<Variant>(std::move(*answer.result));
    std::vector<std::pair<size_t, std::unique_ptr<Variant>>> fresh;
    for (auto& [index, value] : answer.by_ref) {
      if (index < argc && args[index] == nullptr) {
        fresh.emplace_back(index, std::make_unique<Variant>(std::move(value)));
      }
    }
    for (auto& [index, value] : answer.by_ref) {
      if (index < argc && args[index] != nullptr) *AsVariant(args[index]) = std::move(value);
    }
    for (auto& [index, value] : fresh) args[index] = AsHandle(value.release());
    if (result != nullptr) *result = AsHandle(out.release());
  });
}

}  // extern "C"
