#include "settings/waiting_readers.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

// Open-file-description locks are a Linux facility; elsewhere readers only
// retry (see the header).
#ifdef F_OFD_SETLK
constexpr bool kHaveSigns = true;
#else
constexpr bool kHaveSigns = false;
#define F_OFD_SETLK F_SETLK
#define F_OFD_GETLK F_GETLK
#endif

namespace norvik50::settings {
namespace {

// How often the owner looks whether the readers it waits for are through.
constexpr auto kLookEvery = std::chrono::microseconds(100);
// How long the owner still waits once the last reader's sign went: a
// host's read is often a few store operations in a row (open the key,
// read the value), and the next one should not meet the next commit.
constexpr auto kGrace = std::chrono::microseconds(300);

// One byte of the side file is the whole sign.
struct flock Sign(short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0;
  lock.l_len = 1;
  lock.l_pid = 0;  // required for open-file-description locks
  return lock;
}

}  // namespace

WaitingReaders::~WaitingReaders() {
  // Closing the descriptor drops its lock; other descriptors of the file
  // keep theirs.
  if (fd_ >= 0) ::close(fd_);
}

bool WaitingReaders::Make(const std::string& path, mode_t mode) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
  if (fd < 0) return errno == EEXIST;
  // Exactly the database's mode, whatever the umask: every reader of the
  // database must be able to open it.
  const bool ok = ::fchmod(fd, mode) == 0;
  ::close(fd);
  return ok;
}

bool WaitingReaders::Opened() {
  if (fd_ < 0 && kHaveSigns && !path_.empty()) {
    // Tried again each time it is needed: the owner may make it after this
    // reader opened the database.
    fd_ = ::open(path_.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  }
  return fd_ >= 0;
}

void WaitingReaders::Join() {
  if (joined_ || !Opened()) return;
  struct flock lock = Sign(F_RDLCK);
  joined_ = ::fcntl(fd_, F_OFD_SETLK, &lock) == 0;
}

void WaitingReaders::Leave() {
  if (!joined_) return;
  struct flock lock = Sign(F_UNLCK);
  ::fcntl(fd_, F_OFD_SETLK, &lock);
  joined_ = false;
}

void WaitingReaders::LetIn(std::chrono::microseconds limit) {
  if (!Opened()) return;
  const auto start = std::chrono::steady_clock::now();
  auto last_seen = start - kGrace;
  while (true) {
    const auto now = std::chrono::steady_clock::now();
    // Asks whether a write lock could be had: any reader's sign is in the
    // way. This connection's own sign (it may have waited as a reader) is
    // not, as it belongs to this descriptor.
    struct flock lock = Sign(F_WRLCK);
    if (::fcntl(fd_, F_OFD_GETLK, &lock) != 0) return;
    if (lock.l_type != F_UNLCK) {
      last_seen = now;
    } else if (now - last_seen >= kGrace) {
      return;
    }
    if (now - start >= limit) return;
    std::this_thread::sleep_for(kLookEvery);
  }
}

}  // namespace norvik50::settings
