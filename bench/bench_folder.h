// The folder a benchmark program keeps its settings store and temporary
// files (the log) in, so that a run touches nothing of the user's: made
// fresh under /tmp, set as NORVIK50_REGISTRY_DIR and TMPDIR, and removed
// with everything in it when the object goes.
#ifndef NORVIK50_BENCH_BENCH_FOLDER_H_
#define NORVIK50_BENCH_BENCH_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace norvik50::bench {

class BenchFolder {
 public:
  // `name` becomes part of the folder's name: /tmp/norvik50-<name>-bench-XXXXXX.
  explicit BenchFolder(const std::string& name) {
    std::string pattern = "/tmp/norvik50-" + name + "-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) return;
    path_ = pattern;
    setenv("NORVIK50_REGISTRY_DIR", path_.c_str(), 1);
    setenv("TMPDIR", path_.c_str(), 1);
  }
  ~BenchFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;

  // False when the folder could not be made; the program should stop.
  bool ok() const { return !path_.empty(); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace norvik50::bench

#endif  // NORVIK50_BENCH_BENCH_FOLDER_H_
