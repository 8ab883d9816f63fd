// Any bytes as a .reg file: the parser must return a file or an error,
// never crash or hang; and whatever it accepts must write out and read
// back to the same keys and values.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "settings/reg_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace norvik50::settings;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  RegParseError error;
  const auto file = ParseRegFile(bytes, error);
  if (!file) return 0;
  // Version 5 keeps every character, so a second parse must see the same.
  const std::string written = WriteRegFile(*file, RegFormat::kVersion5);
  const auto again = ParseRegFile(written, error);
  if (!again || again->keys.size() != file->keys.size()) std::abort();
  for (std::size_t i = 0; i < file->keys.size(); ++i) {
    const auto& a = file->keys[i];
    const auto& b = again->keys[i];
    if (a.root != b.root || a.remove != b.remove || a.values.size() != b.values.size()) {
      std::abort();
    }
    for (std::size_t j = 0; j < a.values.size(); ++j) {
      if (a.values[j].name != b.values[j].name || a.values[j].type != b.values[j].type ||
          a.values[j].remove != b.values[j].remove) {
        std::abort();
      }
    }
  }
  (void)WriteRegFile(*file, RegFormat::kRegedit4);
  return 0;
}
