// Test support: a temporary folder that is removed afterwards, and guards
// that restore an environment variable or the process locale.
#ifndef NORVIK50_TESTS_TESTING_TEMP_FOLDER_H_
#define NORVIK50_TESTS_TESTING_TEMP_FOLDER_H_

#include <optional>
#include <string>

namespace norvik50::testing {

// A fresh folder under the system's temporary folder, removed with
// everything in it when the object goes.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& path() const { return path_; }
  // path() + "/" + name
  std::string File(const std::string& name) const { return path_ + "/" + name; }
  // The whole content of a file in the folder; "" when missing.
  std::string Read(const std::string& name) const;

 private:
  std::string path_;
};

// Sets (or with nullopt unsets) an environment variable for its lifetime.
class ScopedEnv {
 public:
  ScopedEnv(std::string name, std::optional<std::string> value);
  ~ScopedEnv();
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  std::string name_;
  std::optional<std::string> old_;
};

// Makes `tag` the current locale for its lifetime.
class ScopedLocale {
 public:
  explicit ScopedLocale(const std::string& tag);
  ~ScopedLocale();

 private:
  std::string old_;
};

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_TESTING_TEMP_FOLDER_H_
