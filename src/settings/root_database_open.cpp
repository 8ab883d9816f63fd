// Opening a root's database: the file checks that keep the store from ever
// writing into a file that is not its own, the schema, and the pragmas.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sqlite3.h>

#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Transaction.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "norvik50/encoding.h"
#include "settings/root_database.h"
#include "settings/store_folder.h"

namespace norvik50::settings {
namespace {

// Marks our databases ("Nvk5"): a SQLite file without it that already has
// tables belongs to some other program and is left alone.
constexpr int32_t kApplicationId = 0x4E766B35;
constexpr int32_t kSchemaVersion = 1;

constexpr const char* kSchema = R"sql(
CREATE TABLE keys(
  id INTEGER PRIMARY KEY,
  parent INTEGER NOT NULL,
  name TEXT NOT NULL,
  fold TEXT NOT NULL,
  path TEXT NOT NULL UNIQUE);
CREATE UNIQUE INDEX keys_by_parent ON keys(parent, fold);
CREATE TABLE vals(
  key INTEGER NOT NULL,
  name TEXT NOT NULL,
  fold TEXT NOT NULL,
  type INTEGER NOT NULL,
  data BLOB NOT NULL,
  PRIMARY KEY(key, fold)) WITHOUT ROWID;
INSERT INTO keys(id, parent, name, fold, path) VALUES(1, 0, '', '', '');
)sql";

// Creates an empty file with exactly `mode` (the umask does not apply):
// the per-user store must never be readable by others, not even for a
// moment. An empty file is a valid, empty SQLite database.
bool MakeFile(const std::string& path, mode_t mode) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (fd < 0) return errno == EEXIST;
  const bool ok = ::fchmod(fd, mode) == 0;
  ::close(fd);
  return ok;
}

std::string Octal(mode_t mode) {
  char text[8];
  std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
  return text;
}

// "" when the first bytes are a SQLite header (or the file is empty),
// otherwise why the file is not one; `denied` tells a file this user may
// not read from a damaged one.
std::string CheckHeader(const std::string& path, off_t size, bool& denied) {
  denied = false;
  if (size == 0) return {};
  static constexpr char kMagic[] = "SQLite format 3";  // with its zero: 16 bytes
  char head[16] = {};
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    denied = errno == EACCES || errno == EPERM;
    return std::string("cannot be read") + (denied ? " by this user" : "") + " (" +
           std::strerror(errno) + ")";
  }
  const ssize_t n = ::read(fd, head, sizeof head);
  ::close(fd);
  if (n != static_cast<ssize_t>(sizeof head) || std::memcmp(head, kMagic, sizeof head) != 0) {
    return "is not a SQLite database";
  }
  return {};
}

bool MayWrite(const std::string& path) {
  return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

// Why this process may only read the file, or "" when it may write it.
// Only the owner writes, and only while the owner's write bit is on: the
// machine-wide store stays read-only for everyone else even when the file
// system would let them (root included). The folder must be writable too,
// for the journal SQLite writes beside the file.
std::string ReadOnlyReason(const StoreFile& file, const struct stat& st) {
  if (st.st_uid != ::geteuid()) {
    return "belongs to another user (uid " + std::to_string(st.st_uid) + ")";
  }
  if ((st.st_mode & S_IWUSR) == 0) return "is read-only (mode " + Octal(st.st_mode) + ")";
  if (!MayWrite(file.path)) return std::string("cannot be written (") + std::strerror(errno) + ")";
  if (!MayWrite(file.folder)) {
    return "lies in a folder this user cannot write (" + std::string(std::strerror(errno)) + ")";
  }
  return {};
}

}  // namespace

int32_t RootDatabase::Open(const StoreFile& file, bool create, std::shared_ptr<RootDatabase>& out,
                           StoreProblem& problem) {
  const mode_t file_mode = file.private_file ? 0600 : 0644;
  const mode_t folder_mode = file.private_file ? 0700 : 0755;
  auto describe = [&](const std::string& what) {
    return FromUtf8("settings database " + file.path + " " + what);
  };
  struct stat st {};
  if (::stat(file.path.c_str(), &st) != 0) {
    if (errno == EACCES) {
      // A folder this user may not look into.
      problem = {5, describe("cannot be reached by this user (" +
                             std::string(std::strerror(EACCES)) + ")")};
      return 5;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
      problem = {1011, describe("cannot be reached: " + std::string(std::strerror(errno)))};
      return 1011;
    }
    if (!create) return 2;
    if (!MakeFolder(file.folder, folder_mode) || !MakeFile(file.path, file_mode) ||
        ::stat(file.path.c_str(), &st) != 0) {
      // Typically the machine-wide folder for a user who does not own it.
      problem = {5, describe("cannot be created by this user (" +
                             std::string(std::strerror(errno)) + ")")};
      return 5;
    }
  }
  if (!S_ISREG(st.st_mode)) {
    problem = {1011, describe("is not a regular file; left untouched")};
    return 1011;
  }
  bool denied = false;
  if (const std::string bad = CheckHeader(file.path, st.st_size, denied); !bad.empty()) {
    if (denied) {
      problem = {5, describe(bad)};
      return 5;
    }
    problem = {1011, describe(bad + "; left untouched")};
    return 1011;
  }
  std::shared_ptr<RootDatabase> db(new RootDatabase(file, ReadOnlyReason(file, st)));
  const int32_t code = db->Initialise(problem);
  if (code != 0) return code;
  out = std::move(db);
  return 0;
}

int32_t RootDatabase::Initialise(StoreProblem& problem) {
  try {
    const int flags = writable() ? SQLite::OPEN_READWRITE : SQLite::OPEN_READONLY;
    db_ = std::make_unique<SQLite::Database>(file_.path, flags | SQLite::OPEN_NOMUTEX);
    // Waiting for other processes' locks is ours (see OnBusy).
    sqlite3_busy_handler(db_->getHandle(), &RootDatabase::OnBusy, this);
    snapshot_ = std::make_unique<SQLite::Statement>(*db_, "PRAGMA schema_version");
  } catch (const SQLite::Exception& e) {
    problem = {1011, Describe(std::string("cannot be opened: ") + e.what())};
    return 1011;
  }
  int32_t identity = 0;
  const int32_t code = Single(
      [&] {
        const int tables = db_->execAndGet("SELECT count(*) FROM sqlite_schema").getInt();
        const int32_t app = db_->execAndGet("PRAGMA application_id").getInt();
        const int32_t version = db_->execAndGet("PRAGMA user_version").getInt();
        if (tables == 0) {
          identity = 1;  // a new, empty file
        } else if (app != kApplicationId) {
          identity = 2;
        } else if (version > kSchemaVersion) {
          identity = 3;
        } else if (db_->execAndGet("SELECT count(*) FROM sqlite_schema WHERE type='table' AND "
                                   "name IN ('keys', 'vals')")
                       .getInt() != 2) {
          // Ours by its mark, but without its tables.
          identity = 4;
        }
        // No scan of the whole file here: opening costs the same for every
        // size. Damage in the pages an operation reads is reported by
        // SQLite there, and the whole file is checked then (see Run).
        return 0;
      },
      problem);
  if (code != 0) return code;
  switch (identity) {
    case 2:
      problem = {1011, Describe("belongs to another program (it holds tables but not ours); "
                                "left untouched")};
      return 1011;
    case 3:
      problem = {1011, Describe("was written by a newer version of norvik50; left untouched")};
      return 1011;
    case 4:
      problem = {1011, Describe("is damaged (its tables are missing); left untouched")};
      return 1011;
    default:
      break;
  }
  if (!writable()) return 0;  // read it as it is; an empty one reads as empty
  if (const int32_t set = Single([&] { return ChooseJournal(); }, problem); set != 0) return set;
  // Only a new file takes the write lock to get its schema: opening a
  // store must not wait for another process's write (or unit) to end.
  if (identity != 1) return 0;
  return Write(
      [&] {
        // Checked again under the write lock: another process may have
        // created the schema since we looked.
        if (db_->execAndGet("SELECT count(*) FROM sqlite_schema").getInt() == 0) {
          db_->exec(kSchema);
          db_->exec("PRAGMA application_id=" + std::to_string(kApplicationId));
          db_->exec("PRAGMA user_version=" + std::to_string(kSchemaVersion));
        }
        return 0;
      },
      problem);
}

int32_t RootDatabase::ChooseJournal() {
  if (file_.private_file) {
    // WAL lets readers go on while one process writes; NORMAL syncs at
    // checkpoints, which keeps every commit through a crash of the process
    // (only a power cut could cost the last commits; Flush guards those).
    db_->exec("PRAGMA journal_mode=WAL");
    db_->exec("PRAGMA synchronous=NORMAL");
    return 0;
  }
  // Users who may not write the folder read the machine-wide store, and a
  // WAL reader must create a shared-memory file beside it: this store keeps
  // a rollback journal, which readers only need to lock. (A shared-memory
  // file the owner made and kept would let them read, but only in a mode
  // where each reader builds a private copy of the log's index by reading
  // the log, and a reader arriving while it is missing could not read at
  // all.) Readers
  // are locked out while a commit is written, which the handover of
  // waiting_readers.h keeps to about one commit. Its writes are rare
  // (installers, administrators), so each commit is synced.
  db_->exec("PRAGMA synchronous=FULL");
  // Where readers say that they wait; readers cannot make it themselves.
  WaitingReaders::Make(file_.path + "-readers", 0644);
  if (db_->execAndGet("PRAGMA journal_mode").getString() != "wal") return 0;
  // A file still in WAL mode leaves it once no other process has it open;
  // until then it stays as it is, and the next opening tries again.
  wait_when_busy_ = false;
  try {
    db_->exec("PRAGMA journal_mode=DELETE");
  } catch (const SQLite::Exception&) {
  }
  wait_when_busy_ = true;
  return 0;
}
}  // namespace norvik50::settings
