#include "settings/reg_transfer.h"

#include <vector>

#include "settings/registry_algorithms.h"
#include "settings/registry_names.h"

namespace norvik50::settings {
namespace {

int32_t ExportKey(RegistryStore& store, int32_t root, const std::u16string& path, RegFile& out) {
  RegKey key = 0;
  if (const int32_t code = store.OpenKey(root, path, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS, key);
      code != ERROR_SUCCESS) {
    return code;
  }
  RegFileKey entry;
  entry.root = root;
  entry.path = path;
  for (uint32_t i = 0;; ++i) {
    RegFileValue v;
    if (store.EnumValue(key, i, v.name, v.type, v.data) != ERROR_SUCCESS) break;
    entry.values.push_back(std::move(v));
  }
  out.keys.push_back(std::move(entry));
  std::vector<std::u16string> children;
  for (uint32_t i = 0;; ++i) {
    std::u16string name;
    // Export reads every name, however long the store allows it to be.
    if (store.EnumKey(key, i, kMaxKeyNameLength + 1, name) != ERROR_SUCCESS) break;
    children.push_back(std::move(name));
  }
  store.CloseKey(key);
  for (const auto& child : children) {
    const int32_t code = ExportKey(store, root, path.empty() ? child : path + u"\\" + child, out);
    // A sub-key deleted by someone else meanwhile is simply not exported.
    if (code != ERROR_SUCCESS && code != 2) return code;
  }
  return ERROR_SUCCESS;
}

}  // namespace

int32_t ExportKeys(RegistryStore& store, int32_t root, std::u16string_view path, RegFile& out) {
  std::u16string p(path);
  if (!p.empty() && p.back() == u'\\') p.pop_back();
  return ExportKey(store, root, p, out);
}

namespace {

int32_t ApplyKeys(RegistryStore& store, const RegFile& file, std::u16string& failed_key) {
  for (const RegFileKey& k : file.keys) {
    failed_key = std::u16string(RootKeyName(k.root)) + (k.path.empty() ? u"" : u"\\" + k.path);
    if (k.remove) {
      const int32_t code = RegDeleteKeyTree(store, k.root, k.path, true);
      if (code != ERROR_SUCCESS && code != 2) return code;
      continue;
    }
    RegKey key = 0;
    if (const int32_t code =
            store.CreateKey(k.root, k.path, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, key, nullptr);
        code != ERROR_SUCCESS) {
      return code;
    }
    int32_t code = ERROR_SUCCESS;
    for (const RegFileValue& v : k.values) {
      code =
          v.remove ? store.DeleteValue(key, v.name) : store.SetValue(key, v.name, v.type, v.data);
      if (v.remove && code == 2) code = ERROR_SUCCESS;
      if (code != ERROR_SUCCESS) break;
    }
    store.CloseKey(key);
    if (code != ERROR_SUCCESS) return code;
  }
  failed_key.clear();
  return ERROR_SUCCESS;
}

}  // namespace

int32_t ImportKeys(RegistryStore& store, const RegFile& file, std::u16string& failed_key) {
  failed_key.clear();
  std::vector<int32_t> roots;
  roots.reserve(file.keys.size());
  for (const RegFileKey& k : file.keys) roots.push_back(k.root);
  // A file imports whole or not at all: a key that fails half-way, or a
  // root this user may not write, leaves every store as it was.
  return store.RunAtomically(roots, [&] { return ApplyKeys(store, file, failed_key); });
}

}  // namespace norvik50::settings
