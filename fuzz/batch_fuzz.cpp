// Feeds arbitrary lines to the batch protocol: JSON parsing, typed values,
// argument coercion and every member that does not write files. Each input
// must get exactly one well-formed answer and never crash.
#include <cstdlib>
#include <filesystem>
#include <string>

#include "batch.h"

namespace {

// Members that write to paths named by their arguments stay out: a fuzzer
// must not create files wherever its input points.
bool WritesFiles(const nlohmann::ordered_json& request) {
  if (!request.is_object()) return false;
  const auto it = request.find("member");
  if (it == request.end() || !it->is_string()) return false;
  std::string name = it->get<std::string>();
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name.rfind("tkllog", 0) == 0 || name.rfind("tkr", 0) == 0;
}

norvik50::LIB& Lib() {
  static norvik50::LIB* lib = [] {
    // Keep the log inside a folder of the fuzzer's own.
    static std::string folder = (std::filesystem::temp_directory_path() / "norvik50-batch-fuzz").string();
    std::filesystem::create_directories(folder);
    setenv("TMPDIR", folder.c_str(), 1);
    setenv("NORVIK50_REGISTRY_DIR", folder.c_str(), 1);
    return new norvik50::LIB();
  }();
  return *lib;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string line(reinterpret_cast<const char*>(data), size);
  const auto request = nlohmann::ordered_json::parse(line, nullptr, false);
  if (!request.is_discarded() && WritesFiles(request)) return 0;
  const auto answer = norvik50::cli::AnswerRequest(Lib(), line);
  if (!answer.is_object() || !answer.contains("ok")) std::abort();
  (void)answer.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  return 0;
}
