// The store the library uses when a settings server is named for some
// root keys (store_config.h): those roots go to their server, every other
// root to the local store. Handles are told apart by their range: each
// server store counts its handles from its own multiple of 2^40, the local
// store from 1.
#ifndef NORVIK50_SRC_SETTINGS_ROUTING_STORE_H_
#define NORVIK50_SRC_SETTINGS_ROUTING_STORE_H_

#include <map>
#include <memory>
#include <vector>

#include "norvik50/registry.h"
#include "settings/pg_store.h"

namespace norvik50::settings {

class RoutingStore final : public RegistryStore {
 public:
  static constexpr int kHandleShift = 40;

  // `servers[i]` must count its handles from (i + 1) << kHandleShift;
  // `roots` names the server index of each root served by one.
  RoutingStore(std::shared_ptr<RegistryStore> local, std::vector<std::shared_ptr<PgStore>> servers,
               std::map<int32_t, int> roots);

  int32_t OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access, RegKey& key) override;
  int32_t CreateKey(RegKey parent, std::u16string_view sub_key, int32_t options, int32_t access,
                    RegKey& key, int32_t* disposition) override;
  int32_t QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size, int32_t& type,
                     std::string& data) override;
  int32_t SetValue(RegKey key, std::u16string_view name, int32_t type,
                   std::string_view data) override;
  int32_t DeleteValue(RegKey key, std::u16string_view name) override;
  int32_t EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                  std::u16string& name) override;
  int32_t EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                    std::string& data) override;
  int32_t DeleteKey(RegKey parent, std::u16string_view sub_key) override;
  int32_t CloseKey(RegKey key) override;
  int32_t FlushKey(RegKey key) override;
  int32_t RunAtomically(std::span<const int32_t> roots,
                        const std::function<int32_t()>& body) override;
  std::u16string TakeProblem() override;
  StoreProblem TakeStoreProblem() override;

  // The server store of `root`; nullptr for a root kept locally.
  PgStore* ServerFor(int32_t root) const;

 private:
  RegistryStore& For(RegKey key) const;

  std::shared_ptr<RegistryStore> local_;
  std::vector<std::shared_ptr<PgStore>> servers_;
  std::map<int32_t, int> roots_;
};

// The store for this process's configuration: the local store alone when
// no server is named, else a RoutingStore.
std::shared_ptr<RegistryStore> MakeConfiguredStore();

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_ROUTING_STORE_H_
