// The server store's connection: made, checked, kept, lost and made
// again; the announcements that arrive on it; and what is said when the
// server is away or refuses.
#include <chrono>
#include <thread>
#include <utility>

#include "norvik50/encoding.h"
#include "settings/pg_schema.h"
#include "settings/pg_statements.h"
#include "settings/pg_store.h"

namespace norvik50::settings {
namespace {

constexpr int32_t kDenied = 5;
constexpr int32_t kUnusable = ERROR_CANTOPEN;

// The connection string without secrets: what messages may show.
std::string Describe(const std::string& conninfo) {
  char* error = nullptr;
  PQconninfoOption* options = PQconninfoParse(conninfo.c_str(), &error);
  if (options == nullptr) {
    PQfreemem(error);
    return "(a connection string libpq cannot read)";
  }
  std::string shown;
  for (PQconninfoOption* o = options; o->keyword != nullptr; ++o) {
    // Secrets (password, sslpassword) are never shown.
    if (o->val == nullptr || *o->val == '\0' ||
        std::string_view(o->keyword).find("password") != std::string_view::npos) {
      continue;
    }
    shown += (shown.empty() ? "" : " ") + std::string(o->keyword) + "=" + o->val;
  }
  PQconninfoFree(options);
  return shown.empty() ? "(libpq defaults)" : shown;
}

}  // namespace

using pg::Expand;
using pg::kStatements;
using pg::Statement;
using pg::StatementName;

PgStore::PgStore(PgStoreOptions options)
    : options_(std::move(options)),
      described_(Describe(options_.conninfo)),
      copy_(options_.offline_copy),
      next_handle_(options_.first_handle) {}

PgStore::~PgStore() = default;

// Everything a connection needs before the store may use it; touches no
// state of the store, so that it can run on a thread of its own.
PgStore::Attempt PgStore::Establish(const PgStoreOptions& options) {
  Attempt a;
  const auto started = std::chrono::steady_clock::now();
  auto finish = [&](std::string error) {
    a.error = std::move(error);
    // Only a failure that took long says the server is silent: a busy
    // server that answers slowly is still worth waiting for.
    a.slow = !a.error.empty() && std::chrono::steady_clock::now() - started > kSlowAttempt;
    if (!a.error.empty()) a.conn.reset();
    return std::move(a);
  };
  std::string error;
  a.conn = PgConnection::Connect(options.conninfo, options.connect_timeout_seconds, error);
  if (!a.conn) return finish(error);
  PgFailure failure;
  const auto version = ServerSchemaVersion(*a.conn, failure);
  if (!version) return finish(failure.message);
  if (*version != kServerSchemaVersion) {
    return finish(*version == 0
                      ? "the server holds no norvik50 schema (norvik50 store init "
                        "makes it)"
                      : "the server's norvik50 schema has version " + std::to_string(*version) +
                            ", this library knows version " + std::to_string(kServerSchemaVersion) +
                            " (norvik50 store init brings an older one up to date)");
  }
  const auto who = a.conn->Exec("SELECT session_user::text, md5(session_user)", {}, failure);
  if (!who || !a.conn->Script(std::string("LISTEN ") + kChangeChannel, failure)) {
    return finish(failure.message);
  }
  for (int kind : {kMachine, kUser}) {
    for (const Statement& st : kStatements) {
      if (!a.conn->Prepare(StatementName(kind, st.name), Expand(st.sql, kind), failure)) {
        return finish(failure.message);
      }
    }
  }
  a.session_user = std::string(who->Bytes(0, 0));
  a.user_digest = std::string(who->Bytes(0, 1));
  return finish("");
}

bool PgStore::Adopt(Attempt attempt) {
  slow_attempts_ = attempt.slow;
  if (!attempt.conn) {
    last_error_ = attempt.error;
    next_attempt_ = std::chrono::steady_clock::now() + options_.retry_interval;
    return false;
  }
  conn_ = std::move(attempt.conn);
  session_user_ = std::move(attempt.session_user);
  user_digest_ = std::move(attempt.user_digest);
  // Announcements made while this process was not listening are lost:
  // nothing read before may be trusted now.
  cache_.Clear();
  outage_reported_ = false;
  last_error_.clear();
  return true;
}

bool PgStore::Online() {
  if (conn_ && !conn_->broken()) return true;
  conn_.reset();
  // A unit whose connection broke is lost whole: its later operations
  // must not run on a new connection, outside its transaction.
  if (in_unit_) return false;
  if (pending_) {
    std::unique_lock lock(pending_->mu);
    if (!pending_->done) return false;  // still trying, in the background
    Attempt finished = std::move(pending_->attempt);
    lock.unlock();
    pending_.reset();
    if (Adopt(std::move(finished))) return true;
  }
  if (std::chrono::steady_clock::now() < next_attempt_) return false;
  if (!slow_attempts_) return Adopt(Establish(options_));
  // A server that does not even refuse (a host that is off, a cable
  // pulled) makes each attempt wait for the connect timeout: such
  // attempts run on a thread of their own while reads answer from the
  // cache and the copy, and the next operation after one succeeded uses it.
  pending_ = std::make_shared<Pending>();
  std::thread([pending = pending_, options = options_] {
    Attempt attempt = Establish(options);
    std::lock_guard lock(pending->mu);
    pending->attempt = std::move(attempt);
    pending->done = true;
  }).detach();
  return false;
}

void PgStore::Apply(const std::string& payload) {
  if (payload == "m:*") {
    cache_.Clear();  // every machine-wide row changed (a TRUNCATE)
    return;
  }
  if (payload.rfind("u:", 0) == 0) {
    // Another session of this user changed its own settings (or every
    // user's settings changed at once: "u:*").
    if (payload == "u:*" || payload.compare(2, std::string::npos, user_digest_) == 0) {
      cache_.ForgetRoot(HKEY_CURRENT_USER);
    }
    return;
  }
  if (payload.rfind("m:", 0) != 0) return;
  const std::size_t colon = payload.find(':', 2);
  if (colon == std::string::npos) return;
  const int32_t root = std::atoi(payload.c_str() + 2);
  const std::string path = payload.substr(colon + 1);
  if (path == "*") {
    cache_.ForgetRoot(root);
  } else {
    cache_.ForgetKey(root, path);
  }
}

void PgStore::Drain() {
  if (!conn_) return;
  for (const std::string& payload : conn_->TakeNotifications()) Apply(payload);
  if (conn_->broken()) Lost(PgFailure{kUnusable, true, "the connection to the server broke"});
}

void PgStore::AwaitChanges(int milliseconds) {
  std::lock_guard lock(mu_);
  if (!Online()) return;
  conn_->WaitForInput(milliseconds);
  Drain();
}

void PgStore::Lost(const PgFailure& failure) {
  conn_.reset();
  last_error_ = failure.message;
  // The first attempt to connect again is made by the next operation.
  next_attempt_ = {};
}

int32_t PgStore::Away() {
  if (!outage_reported_) {
    outage_reported_ = true;
    problem_ = {
        kUnusable,
        FromUtf8("settings server " + described_ + " is unreachable (" + last_error_ +
                 "); reads answer from the local copy and writes are refused until it is back")};
  }
  return kUnusable;
}

int32_t PgStore::Failed(const PgFailure& failure) {
  if (failure.lost) {
    Lost(failure);
    return Away();
  }
  if (failure.code == kUnusable) {
    problem_ = {kUnusable, FromUtf8("settings server " + described_ + ": " + failure.message)};
  } else if (failure.code == kDenied) {
    problem_ = {kDenied, FromUtf8("settings server " + described_ +
                                  " refused the write: " + failure.message)};
  }
  return failure.code;
}

std::u16string PgStore::TakeProblem() { return TakeStoreProblem().description; }

StoreProblem PgStore::TakeStoreProblem() {
  std::lock_guard lock(mu_);
  StoreProblem problem = std::exchange(problem_, StoreProblem{});
  // As the local store does: a refusal is said once per process, so that
  // a host that keeps trying does not fill its log.
  if (problem.number == kDenied && !refusals_.insert(problem.description).second) return {};
  return problem;
}

std::string PgStore::Check() {
  std::lock_guard lock(mu_);
  Drain();
  if (Online()) return "";
  // Asked explicitly: try now, and wait for the answer.
  return Adopt(Establish(options_)) ? "" : last_error_;
}

std::string PgStore::session_user() {
  std::lock_guard lock(mu_);
  return session_user_;
}

}  // namespace norvik50::settings
