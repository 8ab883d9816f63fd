#include "testing/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "norvik50/locale.h"

namespace norvik50::testing {

TempFolder::TempFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "norvik50-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::Read(const std::string& name) const {
  std::ifstream in(File(name), std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

ScopedEnv::ScopedEnv(std::string name, std::optional<std::string> value)
    : name_(std::move(name)) {
  if (const char* old = std::getenv(name_.c_str())) old_ = old;
  if (value) {
    setenv(name_.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

ScopedEnv::~ScopedEnv() {
  if (old_) {
    setenv(name_.c_str(), old_->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

ScopedLocale::ScopedLocale(const std::string& tag) : old_(CurrentLocale().tag) {
  SetCurrentLocale(tag);
}

ScopedLocale::~ScopedLocale() { SetCurrentLocale(old_); }

}  // namespace norvik50::testing
