#include "settings/root_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Transaction.h>

#include <chrono>
#include <optional>
#include <thread>

#include "norvik50/encoding.h"
#include "settings/root_database_statements.h"

namespace norvik50::settings {
namespace {

// How long an operation keeps retrying while other processes hold the
// database (each attempt already waits up to the busy timeout).
constexpr auto kRetryFor = std::chrono::seconds(60);
// How long one attempt waits for a lock another process holds.
constexpr auto kBusyTimeout = std::chrono::seconds(5);
// A lock is tried again this often, not after ever longer sleeps as
// SQLite's own handler does (up to 100 ms): commits of the machine-wide
// store follow each other with gaps far shorter than such a sleep, and a
// reader must try within the gap its owner leaves it.
constexpr auto kTryAgainEvery = std::chrono::microseconds(250);
// How long the owner of a shared store waits at most for the readers who
// said they wait, before each commit: long enough for a few reads, short
// enough that readers never hold an installer up for long.
constexpr auto kLetReadersInFor = std::chrono::milliseconds(50);
// Key ids kept per connection: a host reads a bounded set of keys, and a
// tool walking a larger tree must not make the cache grow without end. Past
// the bound the least recently used id makes room, so the keys a host
// reads all the time stay while a walk passes through.
constexpr std::size_t kMaxCachedIds = 4096;

bool IsBusy(int code) {
  const int primary = code & 0xff;
  return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

}  // namespace

RootDatabase::RootDatabase(StoreFile file, std::string read_only_reason)
    : file_(std::move(file)),
      read_only_reason_(std::move(read_only_reason)),
      ids_(kMaxCachedIds),
      waiting_(file_.private_file ? std::string() : file_.path + "-readers") {}

RootDatabase::~RootDatabase() = default;

int32_t RootDatabase::Read(Body body, StoreProblem& problem) {
  return Run(Mode::kRead, body, problem);
}

int32_t RootDatabase::Write(Body body, StoreProblem& problem) {
  if (!writable()) return 5;
  return Run(Mode::kWrite, body, problem);
}

int32_t RootDatabase::Single(Body body, StoreProblem& problem) {
  return Run(Mode::kSingle, body, problem);
}

int32_t RootDatabase::Flush(StoreProblem& problem) {
  if (!writable()) return 0;
  return Single(
      [&] {
        // FULL waits for readers to leave older snapshots, copies the whole
        // log into the database file and syncs the log before and the file
        // after. In rollback-journal mode every commit is synced already
        // and this reports nothing to do.
        SQLite::Statement checkpoint(*db_, "PRAGMA wal_checkpoint(FULL)");
        if (checkpoint.executeStep() && checkpoint.getColumn(0).getInt() != 0) {
          // A reader kept some frames from being copied back in time; the
          // log holds every commit, so syncing it is what makes them safe.
          const int fd = ::open((file_.path + "-wal").c_str(), O_RDONLY | O_CLOEXEC);
          if (fd >= 0) {
            const int synced = ::fsync(fd);
            ::close(fd);
            if (synced != 0) throw SQLite::Exception("the log could not be synced", SQLITE_IOERR);
          }
        }
        return 0;
      },
      problem);
}

uint32_t RootDatabase::DataVersion() {
  unsigned int version = 0;
  sqlite3_file_control(db_->getHandle(), "main", SQLITE_FCNTL_DATA_VERSION, &version);
  return version;
}

std::optional<int64_t> RootDatabase::CachedKeyId(const std::string& folded_path) {
  if (folded_path.empty()) return kRootKeyId;
  return ids_.Find(folded_path);
}

void RootDatabase::Remember(const std::string& folded_path, int64_t id) {
  ids_.Put(folded_path, id);
}

void RootDatabase::NoteKeyId(const std::string& folded_path, int64_t id) {
  if (IdsCurrent()) Remember(folded_path, id);
}

void RootDatabase::SyncIds() {
  const uint32_t now = DataVersion();
  if (now == ids_version_) return;
  ForgetIds();
  ids_version_ = now;
}

void RootDatabase::ForgetIds() {
  ids_.Clear();
  ++epoch_;
}

int32_t RootDatabase::Run(Mode mode, Body body, StoreProblem& problem) {
  if (!damage_.empty()) {
    // Once SQLite met damage, nothing touches the file again: a write into
    // a damaged b-tree can spread the damage to pages that were sound.
    problem = {1011, Describe(damage_)};
    return 1011;
  }
  if (unit_ && mode != Mode::kCommit) return RunInUnit(mode, body, problem);
  reading_ = mode == Mode::kSingle || mode == Mode::kRead;
  // However the operation ends, a reader that said it waits takes it back.
  struct Done {
    RootDatabase& db;
    ~Done() {
      if (db.keep_waiting_ == 0) db.waiting_.Leave();
      db.reading_ = false;
    }
  } done{*this};
  // The clock is read only once the database was found busy.
  std::optional<std::chrono::steady_clock::time_point> give_up;
  while (true) {
    try {
      PrepareStatements();
      switch (mode) {
        case Mode::kSingle:
          return body();
        case Mode::kRead: {
          SQLite::Transaction tx(*db_, SQLite::TransactionBehavior::DEFERRED);
          // A deferred transaction takes its snapshot at its first read.
          snapshot_->executeStep();
          snapshot_->reset();
          SyncIds();
          const int32_t code = body();
          tx.commit();
          return code;
        }
        case Mode::kBegin:
          waiting_.LetIn(kLetReadersInFor);
          db_->exec("BEGIN IMMEDIATE");
          SyncIds();
          unit_ = true;
          unit_failed_ = false;
          return 0;
        case Mode::kCommit:
          // A commit that finds readers in the way stays open; it is simply
          // tried again.
          db_->exec("COMMIT");
          ids_version_ = DataVersion();
          return 0;
        case Mode::kWrite:
          break;
      }
      // Readers who waited through the last commit go first.
      waiting_.LetIn(kLetReadersInFor);
      // IMMEDIATE: the write lock is taken before anything is read, so two
      // writers never both hold a read snapshot they then cannot upgrade.
      SQLite::Transaction tx(*db_, SQLite::TransactionBehavior::IMMEDIATE);
      PrepareStatements();
      SyncIds();
      int32_t code = 0;
      try {
        code = body();
        if (code == 0) {
          tx.commit();
          // Nobody else committed while this transaction held the write
          // lock: the ids kept (the body kept them up to date) are those of
          // the snapshot this commit made.
          ids_version_ = DataVersion();
          return code;
        }
      } catch (...) {
        ForgetIds();
        throw;
      }
      // Rolled back: ids the body learnt may name keys that were never made.
      ForgetIds();
      return code;
    } catch (const SQLite::Exception& e) {
      snapshot_->tryReset();
      const int code = e.getErrorCode();
      if (IsBusy(code) && !give_up) give_up = std::chrono::steady_clock::now() + kRetryFor;
      if (IsBusy(code) && std::chrono::steady_clock::now() < *give_up) {
        std::this_thread::sleep_for(kTryAgainEvery);
        continue;
      }
      return Failed(e, problem);
    }
  }
}

int32_t RootDatabase::RunInUnit(Mode mode, Body body, StoreProblem& problem) {
  if (unit_failed_) {
    problem = unit_problem_;
    return problem.number;
  }
  try {
    if (mode != Mode::kWrite) return body();
    // A savepoint per operation, so that one that fails takes back only
    // what it did itself, as it would outside a unit.
    db_->exec("SAVEPOINT operation");
    int32_t code = 0;
    try {
      code = body();
    } catch (...) {
      ForgetIds();
      throw;
    }
    if (code != 0) {
      db_->exec("ROLLBACK TO operation");
      ForgetIds();
    }
    db_->exec("RELEASE operation");
    return code;
  } catch (const SQLite::Exception& e) {
    snapshot_->tryReset();
    // SQLite may have undone the whole transaction already; either way
    // nothing of the unit can be kept.
    unit_failed_ = true;
    const int32_t code = Failed(e, problem);
    unit_problem_ = problem;
    if (unit_problem_.number == 0) unit_problem_.number = code;
    return code;
  }
}

int32_t RootDatabase::BeginUnit(StoreProblem& problem) {
  if (!writable()) return 5;
  if (unit_) return 0;
  return Run(
      Mode::kBegin, [] { return 0; }, problem);
}

int32_t RootDatabase::EndUnit(bool keep, StoreProblem& problem) {
  if (!unit_) return 0;
  int32_t code = 0;
  if (keep && !unit_failed_) {
    code = Run(
        Mode::kCommit, [] { return 0; }, problem);
    if (code == 0) {
      unit_ = false;
      return 0;
    }
  } else if (keep) {
    problem = unit_problem_;
    code = problem.number;
  }
  unit_ = false;
  unit_failed_ = false;
  if (sqlite3_get_autocommit(db_->getHandle()) == 0) {
    try {
      db_->exec("ROLLBACK");
    } catch (const SQLite::Exception&) {
      // Nothing is committed without COMMIT; the connection ends the
      // transaction when it closes.
    }
  }
  ForgetIds();
  return code;
}

void RootDatabase::PrepareStatements() {
  if (!st_ && db_->tableExists("keys")) {
    // Prepared once the schema exists; an empty read-only file never gets
    // that far, and its reads find nothing.
    st_ = std::make_unique<Statements>(*db_);
  }
}

int32_t RootDatabase::Failed(const SQLite::Exception& e, StoreProblem& problem) {
  const int primary = e.getErrorCode() & 0xff;
  if (primary == SQLITE_READONLY || primary == SQLITE_PERM || primary == SQLITE_AUTH) {
    return 5;
  }
  if (primary == SQLITE_CANTOPEN && !writable()) {
    // A reader that cannot create what SQLite needs beside the file.
    problem = {5, Describe("cannot be read by this user (" + std::string(e.what()) + "; it " +
                           read_only_reason_ + ")")};
    return 5;
  }
  if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) {
    damage_ = std::string("is damaged (") + e.what() + IntegrityReport() + "); left untouched";
    problem = {1011, Describe(damage_)};
  } else {
    problem = {1011, Describe(std::string("failed: ") + e.what())};
  }
  return 1011;
}

int RootDatabase::OnBusy(void* self, int tries) {
  auto& db = *static_cast<RootDatabase*>(self);
  if (!db.wait_when_busy_) return 0;
  const auto now = std::chrono::steady_clock::now();
  if (tries == 0) {
    db.busy_since_ = now;
    // The owner lets a reader that says it waits in before its next commit.
    if (db.reading_) db.waiting_.Join();
  }
  if (now - db.busy_since_ >= kBusyTimeout) return 0;
  std::this_thread::sleep_for(kTryAgainEvery);
  return 1;
}

std::string RootDatabase::IntegrityReport() {
  // The whole file is read only now that damage was met, to say how far
  // it goes. On a badly damaged file the check itself fails after the
  // first findings; those are what is said.
  std::string found;
  try {
    snapshot_->tryReset();
    SQLite::Statement check(*db_, "PRAGMA quick_check(3)");
    while (check.executeStep()) {
      const std::string line = check.getColumn(0).getString();
      if (line == "ok") return "; the integrity check passed";
      found += (found.empty() ? "; integrity check: " : " / ") + line;
    }
  } catch (const SQLite::Exception&) {
  }
  return found;
}

std::u16string RootDatabase::Describe(const std::string& what) const {
  return FromUtf8("settings database " + file_.path + " " + what);
}

}  // namespace norvik50::settings
