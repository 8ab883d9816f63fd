// The store the tkr members use: the library's own (the local files, and
// the settings servers named for some roots), unless a host installed
// another one.
#include <mutex>

#include "norvik50/registry.h"
#include "settings/routing_store.h"

namespace norvik50 {
namespace {

std::mutex& StoreMutex() {
  static std::mutex mu;
  return mu;
}

std::shared_ptr<RegistryStore>& Installed() {
  static std::shared_ptr<RegistryStore> store;
  return store;
}

}  // namespace

RegistryStore::~RegistryStore() = default;

std::shared_ptr<RegistryStore> CurrentRegistryStore() {
  std::lock_guard lock(StoreMutex());
  auto& store = Installed();
  // One store, and so one connection per root, for the life of the process.
  if (!store) store = settings::MakeConfiguredStore();
  return store;
}

int32_t FlushSettings(RegKey key) { return CurrentRegistryStore()->FlushKey(key); }

void SetRegistryStore(std::shared_ptr<RegistryStore> store) {
  std::lock_guard lock(StoreMutex());
  Installed() = std::move(store);
}

}  // namespace norvik50
