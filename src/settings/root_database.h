// One root key's SQLite database: the connection and its prepared
// statements, kept for the life of the process, and the rules that make it
// safe to share between processes.
//
// Every store operation runs as one transaction (a write takes the write
// lock at its start, so two writers never deadlock on an upgrade), waits
// while another process holds the lock, and retries when SQLite still says
// busy. Several operations can also be made one unit (BeginUnit, EndUnit):
// one transaction that keeps all of them or none.
//
// Key ids are kept per connection, so that a read costs one statement: they
// are valid for the snapshot version they were learnt under, and SQLite's
// data version (which moves with every commit to the file, from any
// process) tells when they must be learnt again. Values themselves are
// never cached: a change another process commits is seen by the next read.
//
// The per-user store is written in WAL mode; a machine-wide store, which
// other users read without being able to write its folder, uses a rollback
// journal, because a WAL reader needs a shared-memory file it can create.
// Its readers are locked out while a commit is written, so its owner lets
// waiting readers in before each commit (waiting_readers.h), and whoever
// waits for a lock tries again every quarter millisecond rather than
// sleeping ever longer, which would sleep through the gaps between commits.
#ifndef NORVIK50_SRC_SETTINGS_ROOT_DATABASE_H_
#define NORVIK50_SRC_SETTINGS_ROOT_DATABASE_H_

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "norvik50/registry.h"
#include "settings/lru_map.h"
#include "settings/store_location.h"
#include "settings/waiting_readers.h"

namespace norvik50::settings {

// The work of one operation, borrowed for the length of the call: unlike a
// std::function it never allocates, which matters on the read path.
class Body {
 public:
  template <class F>
  requires(!std::is_same_v<std::decay_t<F>, Body>)
      Body(F&& f)  // NOLINT: made from lambdas at every call
      : obj_(const_cast<void*>(static_cast<const void*>(&f))),
        call_([](void* o) -> int32_t { return (*static_cast<std::remove_reference_t<F>*>(o))(); }) {
  }
  int32_t operator()() const { return call_(obj_); }

 private:
  void* obj_;
  int32_t (*call_)(void*);
};

// The id of the root key's own row.
inline constexpr int64_t kRootKeyId = 1;

struct StoredValue {
  std::string name;  // as written (UTF-8)
  int32_t type = 0;
  std::string data;
  std::string fold;  // the folded name, the enumeration order
};

struct ChildKey {
  std::string name;  // as written (UTF-8)
  std::string fold;  // folded (UTF-8), the enumeration order
  int64_t id = 0;
};

class RootDatabase {
 public:
  // Opens the database of `file`; with `create`, a missing file (and its
  // folder) is created with the file's mode. Returns 0; 2 when the file is
  // missing and not to be created; 5 when this user may not create or read
  // it, with `problem` saying why; 1011 when it is damaged, belongs to
  // something else or cannot be opened, with `problem` saying so (such a
  // file is never written to).
  static int32_t Open(const StoreFile& file, bool create, std::shared_ptr<RootDatabase>& out,
                      StoreProblem& problem);
  ~RootDatabase();

  const std::string& path() const noexcept { return file_.path; }
  // True for a per-user store, false for a machine-wide one.
  bool private_file() const noexcept { return file_.private_file; }
  // False when this process may only read the file (not its owner, the
  // owner's write permission is off, or the folder or file system is
  // read-only); read_only_reason() then says which.
  bool writable() const noexcept { return read_only_reason_.empty(); }
  const std::string& read_only_reason() const noexcept { return read_only_reason_; }

  // Runs `body` as one read or one write transaction and returns its code.
  // Busy databases are waited for and retried; SQLite failures become 5
  // (read-only, permission) or 1011 with `problem` set. Write returns 5 at
  // once when the file is not writable().
  int32_t Read(Body body, StoreProblem& problem);
  int32_t Write(Body body, StoreProblem& problem);
  // Runs `body` without a transaction of its own, for a single statement
  // that is its own snapshot; failures as for Read.
  int32_t Single(Body body, StoreProblem& problem);

  // Keeps a reader's sign that it waits (waiting_readers.h) from one Read or
  // Single to the next while it lives, for an operation made of a quick
  // attempt and a fallback: the owner then lets it in for both, instead of
  // committing in between.
  class KeepWaiting {
   public:
    explicit KeepWaiting(RootDatabase& db) : db_(db) { ++db_.keep_waiting_; }
    ~KeepWaiting() {
      if (--db_.keep_waiting_ == 0) db_.waiting_.Leave();
    }
    KeepWaiting(const KeepWaiting&) = delete;
    KeepWaiting& operator=(const KeepWaiting&) = delete;

   private:
    RootDatabase& db_;
  };

  // Makes the operations that follow, until EndUnit, one transaction: the
  // write lock is taken now (waited for as Write waits), each Write runs
  // inside it (one that returns non-zero undoes only its own changes), and
  // reads see the unit's changes. Other processes see none of them before
  // EndUnit keeps them. Returns 0; 5 when the file is not writable(), 1011
  // with `problem` set when SQLite failed. A unit is not nested.
  int32_t BeginUnit(StoreProblem& problem);
  // Ends the unit: with `keep`, commits it (0, or the failure code with
  // `problem` set after undoing it all); otherwise, or when an operation in
  // it failed in SQLite, undoes it all. Nothing to do without a unit.
  int32_t EndUnit(bool keep, StoreProblem& problem);
  bool in_unit() const noexcept { return unit_; }

  // Makes every commit so far durable against a power cut: the log is
  // copied into the database file and both are synced. 0, or 1011 with
  // `problem` set; a process that may not write has nothing to flush.
  int32_t Flush(StoreProblem& problem);

  // The version of the snapshot the connection read last: it changes with
  // every commit to the file, this connection's own included. Meaningful
  // once a statement of the current operation has run.
  uint32_t DataVersion();

  // Key ids by folded path. epoch() changes whenever the ids learnt so far
  // may no longer hold; an id taken under the current epoch is right for a
  // snapshot when IdsCurrent() says so after a statement read it. The
  // cache is bounded and forgets the least recently used path first;
  // forgetting one never changes the epoch.
  uint64_t epoch() const noexcept { return epoch_; }
  std::optional<int64_t> CachedKeyId(const std::string& folded_path);
  bool IdsCurrent() { return DataVersion() == ids_version_; }
  // Inside Read or Write: the id of the key at `folded_path`, cached or
  // looked up (and then cached).
  std::optional<int64_t> KeyId(const std::string& folded_path);
  // Caches an id the last statement read, when its snapshot is the one the
  // cached ids belong to (otherwise it is not kept).
  void NoteKeyId(const std::string& folded_path, int64_t id);

  // The statements; valid only inside Read, Write or Single.
  std::optional<int64_t> FindChild(int64_t parent, const std::string& fold);
  int64_t InsertKey(int64_t parent, const std::string& name, const std::string& fold,
                    const std::string& folded_path);
  bool KeyExists(int64_t id);
  bool HasChildren(int64_t id);
  std::optional<StoredValue> GetValue(int64_t key, const std::string& fold);
  // False when key `key` no longer exists.
  bool PutValue(int64_t key, const std::string& name, const std::string& fold, int32_t type,
                const std::string& data);
  // False when there was no such value.
  bool RemoveValue(int64_t key, const std::string& fold);
  // Enumeration in fold order: the entry at `index` counted from the
  // first, or the entry `skip` places after (forward) or before the one
  // whose fold is `from`.
  std::optional<ChildKey> ChildAt(int64_t parent, int64_t index);
  std::optional<ChildKey> ChildNear(int64_t parent, const std::string& from, bool forward,
                                    int64_t skip);
  std::optional<StoredValue> ValueAt(int64_t key, int64_t index);
  std::optional<StoredValue> ValueNear(int64_t key, const std::string& from, bool forward,
                                       int64_t skip);
  void RemoveKey(int64_t id);

 private:
  // kBegin and kCommit start and keep a unit.
  enum class Mode { kSingle, kRead, kWrite, kBegin, kCommit };
  RootDatabase(StoreFile file, std::string read_only_reason);
  int32_t Initialise(StoreProblem& problem);
  // Sets the journal mode and syncing for the kind of file (needs write).
  int32_t ChooseJournal();
  int32_t Run(Mode mode, Body body, StoreProblem& problem);
  // An operation inside a unit.
  int32_t RunInUnit(Mode mode, Body body, StoreProblem& problem);
  void PrepareStatements();
  // The code for SQLite's failure `e` (5 or 1011), with `problem` set.
  int32_t Failed(const SQLite::Exception& e, StoreProblem& problem);
  // SQLite's busy handler: `self` is the RootDatabase, `tries` how often it
  // was called for this lock. Non-zero: try again.
  static int OnBusy(void* self, int tries);
  // Drops the cached ids when the snapshot just started is not theirs.
  void SyncIds();
  void ForgetIds();
  void Remember(const std::string& folded_path, int64_t id);
  std::u16string Describe(const std::string& what) const;
  // What a full check of the file finds, for the report of damage.
  std::string IntegrityReport();

  StoreFile file_;
  std::string read_only_reason_;
  std::unique_ptr<SQLite::Database> db_;
  struct Statements;
  std::unique_ptr<Statements> st_;
  std::unique_ptr<SQLite::Statement> snapshot_;  // starts a read snapshot
  LruMap<int64_t> ids_;
  uint32_t ids_version_ = 0;
  uint64_t epoch_ = 1;
  std::string damage_;  // why the file is damaged, once SQLite said so
  WaitingReaders waiting_;
  bool reading_ = false;        // the operation under way only reads
  int keep_waiting_ = 0;        // KeepWaiting objects alive
  bool wait_when_busy_ = true;  // false: a busy database fails at once
  std::chrono::steady_clock::time_point busy_since_;
  bool unit_ = false;          // a unit is open
  bool unit_failed_ = false;   // SQLite failed inside it: it is undone
  StoreProblem unit_problem_;  // why
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_ROOT_DATABASE_H_
