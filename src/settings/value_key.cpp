#include "settings/value_key.h"

#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/registry.h"
#include "settings/store_folder.h"
#include "settings/store_location.h"

namespace norvik50::settings {
namespace {

static_assert(kValueKeyBytes == crypto_secretbox_KEYBYTES);

constexpr int kErrPermission = 70;  // permission denied
constexpr int kErrFileAccess = 75;  // path/file access error

[[noreturn]] void Fail(int number, const std::string& description) {
  throw Error(number, FromUtf8(description), std::u16string(kErrorSource));
}

std::string SystemError(int error) { return std::strerror(error); }

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

bool WriteAll(int fd, const unsigned char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

// Makes the key file. A complete key is written and flushed to a private
// temporary file first and then linked to the key's name: link() fails
// when the name exists, so of two processes creating the key at once
// exactly one succeeds and the other reads the winner's key, and nobody
// ever sees a file that holds part of a key.
void CreateValueKey(const std::string& path) {
  const std::string folder = FolderOf(path);
  if (!MakeFolder(folder, 0700)) {
    Fail(kErrFileAccess,
         "The folder " + folder + " for the key file cannot be made: " + SystemError(errno));
  }
  StartCrypto();
  std::string temp = path + ".XXXXXX";
  FileDescriptor fd(::mkstemp(temp.data()));
  if (fd.get() < 0) {
    Fail(kErrFileAccess, "The key file " + path + " cannot be made: " + SystemError(errno));
  }
  ValueKey fresh;
  randombytes_buf(fresh.data(), kValueKeyBytes);
  const bool written = ::fchmod(fd.get(), 0600) == 0 &&
                       WriteAll(fd.get(), fresh.data(), kValueKeyBytes) && ::fsync(fd.get()) == 0;
  const int write_error = errno;
  const int linked = written ? ::link(temp.c_str(), path.c_str()) : -1;
  const int link_error = errno;
  ::unlink(temp.c_str());
  if (!written) {
    Fail(kErrFileAccess,
         "The key file " + path + " cannot be written: " + SystemError(write_error));
  }
  if (linked != 0 && link_error != EEXIST) {
    Fail(kErrFileAccess, "The key file " + path + " cannot be made: " + SystemError(link_error));
  }
  if (linked == 0) {
    // The new name must survive a power cut as the key's bytes do: values
    // encrypted with it would otherwise be lost with it.
    FileDescriptor dir(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.get() >= 0) ::fsync(dir.get());
  }
}

std::string Octal(mode_t mode) {
  char text[8];
  std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
  return text;
}

}  // namespace

void StartCrypto() {
  // sodium_init is safe to call from several threads; it answers 1 when it
  // had already run.
  static const int started = sodium_init();
  if (started < 0) {
    Fail(kErrFileAccess, "The cryptography library cannot start (no random source)");
  }
}

ValueKey::~ValueKey() { sodium_memzero(bytes_.data(), bytes_.size()); }

std::string ValueKeyPath() {
  const std::optional<StoreFile>& store = StoreFileFor(HKEY_CURRENT_USER);
  if (!store) {
    Fail(kErrFileAccess, "No folder for the key file: neither XDG_CONFIG_HOME nor HOME is set");
  }
  return store->folder + "/HKEY_CURRENT_USER.key";
}

void ReadValueKey(const std::string& path, bool create, ValueKey& key) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (fd < 0 && errno == ENOENT && create) {
    CreateValueKey(path);
    fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  }
  if (fd < 0) {
    const int error = errno;
    if (error == ENOENT) {
      Fail(kErrFileNotFound,
           "The key file " + path +
               " does not exist: values encrypted by this user elsewhere can only be read "
               "with the key file they were encrypted with; copy it here");
    }
    Fail(error == EACCES || error == EPERM ? kErrPermission : kErrFileAccess,
         "The key file " + path + " cannot be read: " + SystemError(error));
  }
  const FileDescriptor file(fd);
  // Checked on the open file, so that what is checked is what is read.
  struct stat st {};
  if (::fstat(fd, &st) != 0) {
    Fail(kErrFileAccess, "The key file " + path + " cannot be read: " + SystemError(errno));
  }
  if (!S_ISREG(st.st_mode)) Fail(kErrFileAccess, "The key file " + path + " is no file");
  if (st.st_uid != ::geteuid()) {
    Fail(kErrPermission, "The key file " + path + " belongs to another user (uid " +
                             std::to_string(st.st_uid) + "); it must be this user's own");
  }
  // As with a private SSH key: a key others could read may already be
  // theirs, and one others could write may have been swapped for theirs.
  // Refusing makes the user look, where repairing the mode would hide it.
  if ((st.st_mode & 077) != 0) {
    Fail(kErrPermission, "The key file " + path + " may be used by other users (mode " +
                             Octal(st.st_mode) + "); make it private with: chmod 600 " + path);
  }
  // Never repaired either: a new key would make every value encrypted
  // with the old one unreadable for good.
  if (st.st_size != static_cast<off_t>(kValueKeyBytes)) {
    Fail(kErrFileAccess, "The key file " + path + " is damaged (" + std::to_string(st.st_size) +
                             " bytes instead of " + std::to_string(kValueKeyBytes) +
                             "); restore it from a backup");
  }
  std::size_t got = 0;
  while (got < kValueKeyBytes) {
    const ssize_t n = ::read(fd, key.data() + got, kValueKeyBytes - got);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      Fail(kErrFileAccess, "The key file " + path + " cannot be read: " +
                               (n == 0 ? std::string("it ended early") : SystemError(errno)));
    }
    got += static_cast<std::size_t>(n);
  }
}

}  // namespace norvik50::settings
