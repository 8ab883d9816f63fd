// Deleting, counting and listing sub-keys.
#include <string>
#include <vector>

#include "settings/registry_algorithms.h"

namespace norvik50::settings {

int32_t RegDeleteKeyTree(RegistryStore& store, RegKey root, std::u16string_view sub_key,
                         bool kill_all_sub_keys) {
  RegKey key = 0;
  const int32_t opened = store.OpenKey(root, sub_key, KEY_ENUMERATE_SUB_KEYS, key);
  if (opened != ERROR_SUCCESS) return opened;
  if (kill_all_sub_keys) {
    // Always index 0: each pass deletes the sub-key it found, so the next
    // one moves up. A store that reports a deletion but still lists the
    // same name would make that endless; stop then.
    std::u16string previous;
    bool first = true;
    while (true) {
      std::u16string name;
      if (store.EnumKey(key, 0, kNameBufferSize, name) != ERROR_SUCCESS) break;
      if (!first && name == previous) break;
      if (RegDeleteKeyTree(store, key, name, true) != ERROR_SUCCESS) break;
      previous = std::move(name);
      first = false;
    }
  }
  // Without kill_all_sub_keys a key with sub-keys stays, and the caller
  // gets the store's refusal (5).
  const int32_t code = store.DeleteKey(root, sub_key);
  // The handle is released even though nothing a caller can see depends on
  // it: a long-running host would otherwise collect open handles.
  store.CloseKey(key);
  return code;
}

int32_t RegCountKeys(RegistryStore& store, int32_t root, std::u16string_view sub_key) {
  RegKey key = 0;
  if (store.OpenKey(root, sub_key, KEY_ENUMERATE_SUB_KEYS, key) != ERROR_SUCCESS) return 0;
  int32_t count = 0;
  std::u16string path(sub_key);
  for (uint32_t index = 0;; ++index) {
    std::u16string name;
    if (store.EnumKey(key, index, kNameBufferSize, name) != ERROR_SUCCESS) break;
    const int32_t n = RegCountKeys(store, root, path.empty() ? name : path + u"\\" + name);
    // A sub-key that cannot be opened (deleted meanwhile) ends the count.
    if (n <= 0) break;
    count += n;
  }
  store.CloseKey(key);
  // The key itself counts, and so does every key below it, not only the
  // direct children: a leaf gives 1. Hosts subtract 1 for the number of
  // sub-keys and rely on the whole-tree total; keep both.
  return count + 1;
}

SafeArray RegListSubKeys(RegistryStore& store, int32_t root, std::u16string_view sub_key) {
  RegKey key = 0;
  // Erased: a String array that was never dimensioned.
  if (store.OpenKey(root, sub_key, KEY_ENUMERATE_SUB_KEYS, key) != ERROR_SUCCESS) {
    return SafeArray(VarType::kString);
  }
  // The names are joined with "|" and split again, so a name holding "|"
  // comes back as two entries. Hosts never use "|" in key names; the
  // split is kept as it always was.
  std::u16string list;
  for (uint32_t index = 0;; ++index) {
    std::u16string name;
    if (store.EnumKey(key, index, kNameBufferSize, name) != ERROR_SUCCESS) break;
    list += u'|';
    list += name;
  }
  store.CloseKey(key);
  std::vector<Variant> items;
  if (!list.empty()) {
    const std::u16string_view rest = std::u16string_view(list).substr(1);
    std::size_t start = 0;
    while (true) {
      const std::size_t bar = rest.find(u'|', start);
      items.emplace_back(std::u16string(
          rest.substr(start, bar == std::u16string_view::npos ? rest.npos : bar - start)));
      if (bar == std::u16string_view::npos) break;
      start = bar + 1;
    }
  }
  return SafeArray(0, std::move(items), VarType::kString);
}

}  // namespace norvik50::settings
