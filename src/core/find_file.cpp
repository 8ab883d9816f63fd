#include "core/find_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "core/name_fold.h"
#include "core/name_pattern.h"
#include "core/path_lookup.h"
#include "core/windows_path.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"

namespace norvik50 {
namespace {

struct DirCloser {
  void operator()(DIR* dir) const { ::closedir(dir); }
};

// A folder still to be searched: where it is on the disk, and its Windows
// path ending in "\".
struct Folder {
  std::string disk;
  std::u16string windows;
};

// One entry of a folder, with the key that orders it.
struct Entry {
  std::string disk;
  std::u16string name;
  std::u16string folded;
  bool operator<(const Entry& other) const {
    return folded != other.folded ? folded < other.folded : disk < other.disk;
  }
};

enum class EntryType { kFile, kFolder, kOther };

// What an entry is for the search: a symbolic link counts as the file it
// points at, but never as a folder to descend into.
EntryType TypeOf(int dir_fd, const dirent& entry) {
  unsigned char type = entry.d_type;
  struct stat st {};
  if (type == DT_UNKNOWN) {
    if (::fstatat(dir_fd, entry.d_name, &st, AT_SYMLINK_NOFOLLOW) != 0) return EntryType::kOther;
    type = S_ISREG(st.st_mode)   ? DT_REG
           : S_ISDIR(st.st_mode) ? DT_DIR
           : S_ISLNK(st.st_mode) ? DT_LNK
                                 : DT_UNKNOWN;
  }
  if (type == DT_REG) return EntryType::kFile;
  if (type == DT_DIR) return EntryType::kFolder;
  if (type == DT_LNK && ::fstatat(dir_fd, entry.d_name, &st, 0) == 0 && S_ISREG(st.st_mode)) {
    return EntryType::kFile;
  }
  return EntryType::kOther;
}

// The name as text, or nullopt when its bytes are not UTF-8: such a name
// has no Windows spelling that would lead back to it.
std::optional<std::u16string> NameOf(std::string_view disk) {
  std::u16string name = FromUtf8(disk);
  if (ToUtf8(name) != disk) return std::nullopt;
  return name;
}

}  // namespace

std::u16string FindFile(std::u16string_view folder, std::u16string_view pattern, bool sub_folders) {
  if (pattern.empty() || pattern.find_first_of(u"\\/") != std::u16string_view::npos) return {};
  std::u16string windows = AbsoluteWindowsPath(folder.empty() ? CurrentFolder() : folder);
  PathStatus status;
  const std::optional<std::string> disk = MapWindowsPath(windows, &status);
  if (!disk || !status.directory) return {};
  if (windows.back() != u'\\') windows.push_back(u'\\');

  const NamePattern matcher(pattern);
  std::vector<Folder> pending{{*disk, std::move(windows)}};
  while (!pending.empty()) {
    const Folder here = std::move(pending.back());
    pending.pop_back();
    std::unique_ptr<DIR, DirCloser> dir(::opendir(here.disk.c_str()));
    if (!dir) continue;
    std::optional<Entry> best;
    std::vector<Entry> below;
    while (const dirent* entry = ::readdir(dir.get())) {
      const std::string_view name_bytes(entry->d_name);
      if (name_bytes == "." || name_bytes == "..") continue;
      std::optional<std::u16string> name = NameOf(name_bytes);
      if (!name) continue;
      const bool matches = matcher.Matches(*name);
      if (!matches && !sub_folders) continue;
      const EntryType type = TypeOf(::dirfd(dir.get()), *entry);
      if (type == EntryType::kFile && matches) {
        Entry found{std::string(name_bytes), *name, FoldName(*name)};
        if (!best || found < *best) best = std::move(found);
      } else if (type == EntryType::kFolder && sub_folders) {
        std::u16string folded = FoldName(*name);
        below.push_back({std::string(name_bytes), std::move(*name), std::move(folded)});
      }
    }
    if (best) return here.windows + best->name;
    // Sub-folders go on the stack last first, so the first is searched next.
    std::sort(below.begin(), below.end());
    for (auto it = below.rbegin(); it != below.rend(); ++it) {
      const std::string slash = here.disk.back() == '/' ? "" : "/";
      pending.push_back({here.disk + slash + it->disk, here.windows + it->name + u'\\'});
    }
  }
  return {};
}

}  // namespace norvik50
