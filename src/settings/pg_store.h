// The settings store on a PostgreSQL server, for an office whose desktops
// share their settings: the same registry rules as the local store (one
// name fold, one value encoding, the same codes), with the server deciding
// who may read and write what (pg_schema.h).
//
// Reads are answered from a per-process cache once a value was read; the
// cache forgets what other processes change as their announcements
// (LISTEN/NOTIFY) arrive, which the store looks for, without a round trip,
// at the start of every operation. This process's own writes are in the
// cache at once.
//
// While the server is away: reads answer from the cache and then from a
// local copy of what this user last read (pg_offline_copy.h); writes, key
// listings and deletions fail with 1011 and the reason as the store's
// problem (once per outage); the store connects again by itself, trying
// at most once per retry interval. A write is acknowledged only after the
// server committed it.
//
// All operations are safe to call from several threads.
#ifndef NORVIK50_SRC_SETTINGS_PG_STORE_H_
#define NORVIK50_SRC_SETTINGS_PG_STORE_H_

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "norvik50/registry.h"
#include "settings/pg_connection.h"
#include "settings/pg_offline_copy.h"
#include "settings/pg_read_cache.h"

namespace norvik50::settings {

struct PgStoreOptions {
  std::string conninfo;      // libpq connection string
  std::string offline_copy;  // the local copy's file; "" keeps none
  // Handles start here, so that stores side by side never hand out the
  // same number (the local store counts from 1).
  RegKey first_handle = RegKey{1} << 40;
  int connect_timeout_seconds = 5;
  std::chrono::milliseconds retry_interval{1000};
};

class PgStore final : public RegistryStore {
 public:
  explicit PgStore(PgStoreOptions options);
  ~PgStore() override;

  int32_t OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access, RegKey& key) override;
  int32_t CreateKey(RegKey parent, std::u16string_view sub_key, int32_t options, int32_t access,
                    RegKey& key, int32_t* disposition) override;
  int32_t QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size, int32_t& type,
                     std::string& data) override;
  int32_t SetValue(RegKey key, std::u16string_view name, int32_t type,
                   std::string_view data) override;
  int32_t DeleteValue(RegKey key, std::u16string_view name) override;
  int32_t EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                  std::u16string& name) override;
  int32_t EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                    std::string& data) override;
  int32_t DeleteKey(RegKey parent, std::u16string_view sub_key) override;
  int32_t CloseKey(RegKey key) override;
  int32_t RunAtomically(std::span<const int32_t> roots,
                        const std::function<int32_t()>& body) override;
  std::u16string TakeProblem() override;
  StoreProblem TakeStoreProblem() override;

  // Connects now if not connected; "" when the server answers and holds
  // the schema this library knows, else why not.
  std::string Check();
  // The connection string with any password left out, for messages.
  const std::string& described() const { return described_; }
  // The login role the server knows this process by ("" before the first
  // connection).
  std::string session_user();
  // Waits up to `milliseconds` for an announcement to arrive and applies
  // what has arrived; for a host (or test) that wants to be sure it sees
  // another process's change.
  void AwaitChanges(int milliseconds);

 private:
  struct Handle {
    int32_t root = 0;
    std::string path;  // folded names joined by "\"; "" for the root
  };
  enum Kind { kMachine = 0, kUser = 1 };
  static Kind KindOf(int32_t root) { return root == HKEY_CURRENT_USER ? kUser : kMachine; }

  // A connection made ready for the store, or why not.
  struct Attempt {
    std::unique_ptr<PgConnection> conn;
    std::string session_user, user_digest, error;
    bool slow = false;  // it failed after more than kSlowAttempt
  };
  // An attempt running on a thread of its own.
  struct Pending {
    std::mutex mu;
    bool done = false;
    Attempt attempt;
  };
  static constexpr std::chrono::milliseconds kSlowAttempt{250};

  const Handle* Resolve(RegKey key, Handle& scratch) const;
  RegKey NewHandle(Handle h);
  // Connected now, or connected again (at most once per retry interval;
  // in the background once attempts have been slow).
  bool Online();
  static Attempt Establish(const PgStoreOptions& options);
  // Uses the connection `attempt` made; false (noting why) without one.
  bool Adopt(Attempt attempt);
  // Applies the announcements that have arrived.
  void Drain();
  void Apply(const std::string& payload);
  // The server went away during an operation.
  void Lost(const PgFailure& failure);
  // A write or listing while the server is away: 1011, said once.
  int32_t Away();
  // Runs prepared statement `name` of `kind`; failures are noted.
  std::optional<PgResult> Run(Kind kind, const char* name, const std::vector<PgParam>& params,
                              PgFailure& failure);
  // Runs `exec`; inside a unit, so that a failure undoes only its own part.
  std::optional<PgResult> Alone(const std::function<std::optional<PgResult>()>& exec,
                                PgFailure& failure);
  // A write: inside a unit, alone undone when it fails.
  std::optional<PgResult> RunWrite(Kind kind, const char* name, const std::vector<PgParam>& params,
                                   PgFailure& failure);
  std::optional<PgResult> RunSqlWrite(const std::string& sql, const std::vector<PgParam>& params,
                                      PgFailure& failure);
  int32_t Failed(const PgFailure& failure);
  // Whether key `path` of `root` exists, from the cache, the server or
  // (away) the copy; nullopt with `code` set when nobody can say.
  std::optional<bool> KeyExists(int32_t root, const std::string& path, int32_t& code);
  void NoteValue(int32_t root, const std::string& path, const std::string& fold,
                 const KnownValue& value);
  void NoteKey(int32_t root, const std::string& path, bool exists);

  const PgStoreOptions options_;
  const std::string described_;
  mutable std::recursive_mutex mu_;
  std::unique_ptr<PgConnection> conn_;
  std::chrono::steady_clock::time_point next_attempt_{};
  bool slow_attempts_ = false;
  std::shared_ptr<Pending> pending_;
  std::string session_user_, user_digest_;
  bool outage_reported_ = false;
  std::string last_error_;  // why the last connection attempt failed
  PgReadCache cache_;
  PgOfflineCopy copy_;
  std::unordered_map<RegKey, Handle> handles_;
  RegKey next_handle_;
  StoreProblem problem_;
  std::set<std::u16string> refusals_;  // already said
  bool in_unit_ = false;
  // Copy updates of a unit, made once it is kept.
  struct PendingCopy {
    int32_t root;
    std::string path, fold;
    bool is_value;
    KnownValue value;
    bool exists;
  };
  std::vector<PendingCopy> unit_copy_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_PG_STORE_H_
