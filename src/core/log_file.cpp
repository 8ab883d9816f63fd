#include "core/log_file.h"

#include <cstdio>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

constexpr std::size_t kPrintZoneWidth = 14;

std::u16string Ascii(std::string_view text) { return std::u16string(text.begin(), text.end()); }

}  // namespace

std::string FormatLogLine(std::u16string_view message, const CivilDateTime& when) {
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%02d.%02d.%04d %02d:%02d", when.day, when.month,
                when.year, when.hour, when.minute);
  std::string line(stamp);
  // The message starts in the next print zone after the stamp, as printing
  // two items separated by a comma places it: 16 characters -> column 29.
  const std::size_t zone_start = (line.size() / kPrintZoneWidth + 1) * kPrintZoneWidth;
  line.append(zone_start - line.size(), ' ');
  line += TextToBytesLossy(message);
  line += "\r\n";
  return line;
}

std::u16string FormatErrorLine(int32_t number, std::u16string_view description,
                               std::u16string_view source) {
  std::u16string line = u"ERR=" + Ascii(std::to_string(number)) + u" '";
  line.append(description);
  line += u"' (Source=";
  line.append(source);
  line += u")";
  return line;
}

std::u16string ErrorNumberText(int32_t number) {
  if (number >= 0) return Ascii(std::to_string(number));
  char hex[16];
  std::snprintf(hex, sizeof hex, "%X", static_cast<uint32_t>(number));
  return u"&H" + Ascii(hex);
}

bool WriteLogBytes(const std::string& path, std::string_view bytes, bool truncate) {
  std::FILE* file = std::fopen(path.c_str(), truncate ? "wb" : "ab");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace norvik50
