// One libpq connection to the settings server, and the little the server
// store needs on top of libpq: statements with binary parameters and
// results, the status code a failure stands for, and notifications.
//
// libpq's own sources of settings work as they do for psql: the service
// file, the password file and the PG* environment variables.
//
// Not thread-safe: the owner serialises access.
#ifndef NORVIK50_SRC_SETTINGS_PG_CONNECTION_H_
#define NORVIK50_SRC_SETTINGS_PG_CONNECTION_H_

#include <libpq-fe.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvik50::settings {

// A statement parameter, sent in binary: text as its UTF-8 bytes, bytea as
// its bytes, an integer as four bytes in network order.
class PgParam {
 public:
  static PgParam Bytes(std::string_view bytes) { return PgParam(std::string(bytes)); }
  static PgParam Int(int32_t value);
  const std::string& bytes() const noexcept { return bytes_; }

 private:
  explicit PgParam(std::string bytes) : bytes_(std::move(bytes)) {}
  std::string bytes_;
};

// A statement's result in binary form.
class PgResult {
 public:
  PgResult() = default;
  explicit PgResult(PGresult* r) : r_(r, &PQclear) {}
  int rows() const { return r_ ? PQntuples(r_.get()) : 0; }
  std::string_view Bytes(int row, int column) const {
    return {PQgetvalue(r_.get(), row, column),
            static_cast<std::size_t>(PQgetlength(r_.get(), row, column))};
  }
  int32_t Int(int row, int column) const;
  bool IsNull(int row, int column) const { return PQgetisnull(r_.get(), row, column) != 0; }

 private:
  std::shared_ptr<PGresult> r_;
};

// What a failed statement means for the registry.
struct PgFailure {
  int32_t code = 0;     // 0 success; 5 refused; 1010 the key is gone; 1011 unusable
  bool lost = false;    // the connection broke: the server is away
  std::string message;  // the server's or libpq's words, one line
};

class PgConnection {
 public:
  // Connects with `conninfo` (a postgresql:// URI, "service=...", or the
  // key=value form); nullptr with `error` saying why when that fails.
  // A connection string without its own connect_timeout waits at most
  // `timeout_seconds` for the server.
  static std::unique_ptr<PgConnection> Connect(const std::string& conninfo, int timeout_seconds,
                                               std::string& error);
  ~PgConnection();
  PgConnection(const PgConnection&) = delete;
  PgConnection& operator=(const PgConnection&) = delete;

  bool broken() const { return PQstatus(conn_) != CONNECTION_OK; }

  // Runs `sql` (parameters $1.. from `params`); failures in `failure`.
  std::optional<PgResult> Exec(const std::string& sql, const std::vector<PgParam>& params,
                               PgFailure& failure);
  // Runs SQL without parameters, in text form (several statements allowed).
  bool Script(const std::string& sql, PgFailure& failure);
  // Prepares `sql` under `name` for ExecPrepared.
  bool Prepare(const std::string& name, const std::string& sql, PgFailure& failure);
  std::optional<PgResult> ExecPrepared(const std::string& name, const std::vector<PgParam>& params,
                                       PgFailure& failure);

  // The payloads of the notifications other sessions sent that have
  // arrived, without waiting and without a round trip. A broken connection shows in broken().
  std::vector<std::string> TakeNotifications();
  // Waits up to `milliseconds` for input (a notification) on the socket.
  void WaitForInput(int milliseconds);

 private:
  explicit PgConnection(PGconn* conn) : conn_(conn) {}
  std::optional<PgResult> Finish(PGresult* r, PgFailure& failure);
  PGconn* conn_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_PG_CONNECTION_H_
