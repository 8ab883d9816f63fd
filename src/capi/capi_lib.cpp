// The library object of the C interface and the call by name.
//
// Handles are checked against the set of live objects before they are
// used: a host that passes a freed or made-up handle gets error 91, where
// following the pointer would crash it or corrupt memory.
#include <memory>
#include <mutex>
#include <optional>
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
    return live_.erase(lib) != 0;
  }
  bool Contains(norvik50_lib* lib) const {
    std::lock_guard lock(mutex_);
    return live_.count(lib) != 0;
  }

 private:
  mutable std::mutex mutex_;
  std::unordered_set<norvik50_lib*> live_;
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

// Whether member `name` has the form `how` asks for; a call by name takes
// the method before the get form, so only a request for one of them alone
// needs a look of its own.
bool CheckedLetFlag(const char* name, int32_t how) {
  using norvik50::MemberKind;
  switch (how) {
    case NORVIK50_PROPERTYLET:
      return true;
    case NORVIK50_METHOD | NORVIK50_PROPERTYGET:
      return false;
    case NORVIK50_METHOD:
    case NORVIK50_PROPERTYGET: {
      const MemberKind kind =
          how == NORVIK50_METHOD ? MemberKind::kMethod : MemberKind::kPropertyGet;
      if (norvik50::Members().Find(name, kind) == nullptr) Raise(norvik50::kErrNoSuchMember);
      return false;
    }
    default:
      Raise(norvik50::kErrInvalidCall);
  }
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
    if (result != nullptr && answer.result) out = std::make_unique<Variant>(std::move(*answer.result));
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
