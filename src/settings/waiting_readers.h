// Readers of a shared store file who wait while its owner commits, and the
// owner letting them in before it commits again.
//
// A database with a rollback journal (the machine-wide store, see
// RootDatabase::ChooseJournal) shuts readers out for the length of every
// commit. An owner that commits back to back takes the file again a few
// microseconds after it let go, so a reader that merely retries gets in
// only if it happens to try in that gap: a stream of commits kept readers
// out for seconds. Hence a handover: a reader that finds the file locked
// says so by holding a shared lock on a small file beside the database,
// and before each commit the owner waits while such locks are held (the
// readers retry every quarter millisecond, get in and let go), and a
// moment longer for a reader's next operation, for a bounded time, so that
// no reader can hold a writer up for long.
//
// The side file is made by the owner, who may write the folder, with the
// database's mode; readers only open it for reading, and so create nothing.
// The locks are open-file-description locks: they belong to one
// descriptor, go away with their process, and closing another descriptor
// of the same file does not drop them. Where the file is missing or the
// system has no such locks, readers simply retry and owners do not wait.
#ifndef NORVIK50_SRC_SETTINGS_WAITING_READERS_H_
#define NORVIK50_SRC_SETTINGS_WAITING_READERS_H_

#include <sys/types.h>

#include <chrono>
#include <string>
#include <utility>

namespace norvik50::settings {

class WaitingReaders {
 public:
  // No side file: Join, Leave and LetIn do nothing (a store whose readers
  // never wait for its writer).
  WaitingReaders() = default;
  // The side file at `path`, opened when first needed.
  explicit WaitingReaders(std::string path) : path_(std::move(path)) {}
  ~WaitingReaders();
  WaitingReaders(const WaitingReaders&) = delete;
  WaitingReaders& operator=(const WaitingReaders&) = delete;

  // For the owner: makes the side file with exactly `mode` when it is
  // missing. False when it could not be made (readers then only retry).
  static bool Make(const std::string& path, mode_t mode);

  // This connection waits for the database: says so until Leave.
  void Join();
  void Leave();
  bool joined() const noexcept { return joined_; }

  // Waits while other connections say they wait, at most `limit`.
  void LetIn(std::chrono::microseconds limit);

 private:
  bool Opened();

  std::string path_;
  int fd_ = -1;
  bool joined_ = false;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_WAITING_READERS_H_
