#include "core/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

constexpr std::size_t kPrintZoneWidth = 14;

std::u16string Ascii(std::string_view text) { return std::u16string(text.begin(), text.end()); }

}  // namespace

std::string FormatLogLine(std::u16string_view message, const CivilDateTime& when) {
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%02d.%02d.%04d %02d:%02d", when.day, when.month, when.year,
                when.hour, when.minute);
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
  // The log usually lies in a temporary folder that other users share. A
  // link planted there under the log's name must not lead the write (or the
  // truncation) to another file, so the last component is never followed;
  // and a FIFO planted there must not block the host, so the open does not
  // wait and anything but a regular file is refused.
  const int fd = ::open(path.c_str(),
                        O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  struct stat st {};
  // A file of another user is neither emptied nor written: one planted in
  // the shared folder would otherwise collect this user's lines, error
  // descriptions included. The line is lost instead, as any line the log
  // cannot write.
  bool ok = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_uid == ::geteuid();
  if (ok && truncate) ok = ::ftruncate(fd, 0) == 0;
  for (std::size_t done = 0; ok && done < bytes.size();) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    ok = n > 0;
    if (ok) done += static_cast<std::size_t>(n);
  }
  return ::close(fd) == 0 && ok;
}

}  // namespace norvik50
