#include "settings/routing_store.h"

#include "settings/sqlite_store.h"
#include "settings/store_config.h"

namespace norvik50::settings {
namespace {

bool IsRoot(RegKey key) { return key >= HKEY_CLASSES_ROOT && key <= HKEY_DYN_DATA; }

}  // namespace

RoutingStore::RoutingStore(std::shared_ptr<RegistryStore> local,
                           std::vector<std::shared_ptr<PgStore>> servers,
                           std::map<int32_t, int> roots)
    : local_(std::move(local)), servers_(std::move(servers)), roots_(std::move(roots)) {}

PgStore* RoutingStore::ServerFor(int32_t root) const {
  const auto it = roots_.find(root);
  return it == roots_.end() ? nullptr : servers_[it->second].get();
}

RegistryStore& RoutingStore::For(RegKey key) const {
  if (IsRoot(key)) {
    PgStore* server = ServerFor(static_cast<int32_t>(key));
    return server != nullptr ? static_cast<RegistryStore&>(*server) : *local_;
  }
  const RegKey range = key >> kHandleShift;
  if (range >= 1 && range <= static_cast<RegKey>(servers_.size())) return *servers_[range - 1];
  return *local_;
}

int32_t RoutingStore::OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access,
                              RegKey& key) {
  return For(parent).OpenKey(parent, sub_key, access, key);
}

int32_t RoutingStore::CreateKey(RegKey parent, std::u16string_view sub_key, int32_t options,
                                int32_t access, RegKey& key, int32_t* disposition) {
  return For(parent).CreateKey(parent, sub_key, options, access, key, disposition);
}

int32_t RoutingStore::QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size,
                                 int32_t& type, std::string& data) {
  return For(key).QueryValue(key, name, buffer_size, type, data);
}

int32_t RoutingStore::SetValue(RegKey key, std::u16string_view name, int32_t type,
                               std::string_view data) {
  return For(key).SetValue(key, name, type, data);
}

int32_t RoutingStore::DeleteValue(RegKey key, std::u16string_view name) {
  return For(key).DeleteValue(key, name);
}

int32_t RoutingStore::EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                              std::u16string& name) {
  return For(key).EnumKey(key, index, name_buffer, name);
}

int32_t RoutingStore::EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                                std::string& data) {
  return For(key).EnumValue(key, index, name, type, data);
}

int32_t RoutingStore::DeleteKey(RegKey parent, std::u16string_view sub_key) {
  return For(parent).DeleteKey(parent, sub_key);
}

int32_t RoutingStore::CloseKey(RegKey key) { return For(key).CloseKey(key); }

int32_t RoutingStore::FlushKey(RegKey key) { return For(key).FlushKey(key); }

int32_t RoutingStore::RunAtomically(std::span<const int32_t> roots,
                                    const std::function<int32_t()>& body) {
  // One unit per store, nested: the innermost keeps its part first, so a
  // failure to keep an outer part leaves the inner one kept, as a failure
  // between two roots' commits does in the local store.
  std::map<RegistryStore*, std::vector<int32_t>> by_store;
  for (const int32_t root : roots) by_store[&For(root)].push_back(root);
  std::function<int32_t()> unit = body;
  for (const auto& entry : by_store) {
    unit = [store = entry.first, r = entry.second, inner = std::move(unit)] {
      return store->RunAtomically(r, inner);
    };
  }
  return unit();
}

std::u16string RoutingStore::TakeProblem() { return TakeStoreProblem().description; }

StoreProblem RoutingStore::TakeStoreProblem() {
  for (const auto& server : servers_) {
    if (StoreProblem p = server->TakeStoreProblem(); p.number != 0) return p;
  }
  return local_->TakeStoreProblem();
}

std::shared_ptr<RegistryStore> MakeConfiguredStore() {
  auto local = std::make_shared<SqliteStore>();
  std::vector<std::shared_ptr<PgStore>> servers;
  std::map<std::string, int> by_conninfo;
  std::map<int32_t, int> roots;
  for (const int32_t root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    const auto choice = ServerStoreFor(root);
    if (!choice) continue;
    auto [it, added] = by_conninfo.emplace(choice->conninfo, static_cast<int>(servers.size()));
    if (added) {
      PgStoreOptions options;
      options.conninfo = choice->conninfo;
      options.offline_copy = ServerCopyFile();
      options.first_handle = RegKey{static_cast<RegKey>(servers.size()) + 1}
                             << RoutingStore::kHandleShift;
      servers.push_back(std::make_shared<PgStore>(std::move(options)));
    }
    roots[root] = it->second;
  }
  if (servers.empty()) return local;
  return std::make_shared<RoutingStore>(std::move(local), std::move(servers), std::move(roots));
}

}  // namespace norvik50::settings
