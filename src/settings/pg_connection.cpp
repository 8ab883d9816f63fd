#include "settings/pg_connection.h"

#include <arpa/inet.h>
#include <poll.h>

#include <cstring>

namespace norvik50::settings {
namespace {

constexpr int32_t kDenied = 5;
constexpr int32_t kBadKey = 1010;
constexpr int32_t kUnusable = 1011;

std::string OneLine(const char* text) {
  std::string line = text != nullptr ? text : "";
  while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();
  for (char& c : line) {
    if (c == '\n' || c == '\t') c = ' ';
  }
  return line;
}

// The registry's code for the server's SQLSTATE.
int32_t CodeFor(std::string_view state) {
  if (state == "42501") return kDenied;  // insufficient privilege, row security
  // The key a value was written to was deleted meanwhile; a name the
  // server cannot hold (a zero character).
  if (state == "23503" || state == "22021" || state == "22P05") return kBadKey;
  return kUnusable;
}

// A server shutting down or a connection failure: the server is away, not
// refusing.
bool MeansLost(std::string_view state) {
  return state.substr(0, 2) == "08" || state == "57P01" || state == "57P02" || state == "57P03";
}

}  // namespace

PgParam PgParam::Int(int32_t value) {
  const uint32_t net = htonl(static_cast<uint32_t>(value));
  return PgParam(std::string(reinterpret_cast<const char*>(&net), 4));
}

int32_t PgResult::Int(int row, int column) const {
  const std::string_view b = Bytes(row, column);
  if (b.size() != 4) return 0;
  uint32_t net = 0;
  std::memcpy(&net, b.data(), 4);
  return static_cast<int32_t>(ntohl(net));
}

std::unique_ptr<PgConnection> PgConnection::Connect(const std::string& conninfo,
                                                    int timeout_seconds, std::string& error) {
  // Key words are applied in order and the expanded connection string
  // comes last, so that what it says itself wins over these defaults.
  const std::string timeout = std::to_string(timeout_seconds);
  const char* keys[] = {"connect_timeout", "application_name", "dbname", nullptr};
  const char* values[] = {timeout.c_str(), "norvik50", conninfo.c_str(), nullptr};
  PGconn* conn = PQconnectdbParams(keys, values, 1);
  if (conn == nullptr) {
    error = "out of memory";
    return nullptr;
  }
  if (PQstatus(conn) != CONNECTION_OK) {
    error = OneLine(PQerrorMessage(conn));
    PQfinish(conn);
    return nullptr;
  }
  // Notices (such as "relation already exists, skipping") are not for the
  // host's terminal.
  PQsetNoticeProcessor(
      conn, [](void*, const char*) {}, nullptr);
  return std::unique_ptr<PgConnection>(new PgConnection(conn));
}

PgConnection::~PgConnection() { PQfinish(conn_); }

std::optional<PgResult> PgConnection::Finish(PGresult* r, PgFailure& failure) {
  const ExecStatusType status = r != nullptr ? PQresultStatus(r) : PGRES_FATAL_ERROR;
  if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) {
    failure = {};
    return PgResult(r);
  }
  const char* state = r != nullptr ? PQresultErrorField(r, PG_DIAG_SQLSTATE) : nullptr;
  const std::string_view sqlstate = state != nullptr ? state : "";
  failure.lost = broken() || MeansLost(sqlstate);
  failure.code = failure.lost ? kUnusable : CodeFor(sqlstate);
  // The server's own sentence, without libpq's "ERROR:" and detail lines.
  const char* primary = r != nullptr ? PQresultErrorField(r, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
  failure.message = OneLine(primary != nullptr ? primary : PQerrorMessage(conn_));
  if (failure.message.empty()) failure.message = OneLine(PQerrorMessage(conn_));
  if (r != nullptr) PQclear(r);
  return std::nullopt;
}

namespace {

struct Packed {
  std::vector<const char*> values;
  std::vector<int> lengths, formats;
};

Packed Pack(const std::vector<PgParam>& params) {
  Packed p;
  for (const PgParam& param : params) {
    p.values.push_back(param.bytes().data());
    p.lengths.push_back(static_cast<int>(param.bytes().size()));
    p.formats.push_back(1);
  }
  return p;
}

}  // namespace

std::optional<PgResult> PgConnection::Exec(const std::string& sql,
                                           const std::vector<PgParam>& params, PgFailure& failure) {
  const Packed p = Pack(params);
  return Finish(PQexecParams(conn_, sql.c_str(), static_cast<int>(params.size()), nullptr,
                             p.values.data(), p.lengths.data(), p.formats.data(), 1),
                failure);
}

bool PgConnection::Script(const std::string& sql, PgFailure& failure) {
  return Finish(PQexec(conn_, sql.c_str()), failure).has_value();
}

bool PgConnection::Prepare(const std::string& name, const std::string& sql, PgFailure& failure) {
  return Finish(PQprepare(conn_, name.c_str(), sql.c_str(), 0, nullptr), failure).has_value();
}

std::optional<PgResult> PgConnection::ExecPrepared(const std::string& name,
                                                   const std::vector<PgParam>& params,
                                                   PgFailure& failure) {
  const Packed p = Pack(params);
  return Finish(PQexecPrepared(conn_, name.c_str(), static_cast<int>(params.size()),
                               p.values.data(), p.lengths.data(), p.formats.data(), 1),
                failure);
}

std::vector<std::string> PgConnection::TakeNotifications() {
  std::vector<std::string> payloads;
  if (PQconsumeInput(conn_) == 0) return payloads;
  const int own = PQbackendPID(conn_);
  while (PGnotify* n = PQnotifies(conn_)) {
    // This connection's own changes are known to its owner already.
    if (n->be_pid != own) payloads.emplace_back(n->extra != nullptr ? n->extra : "");
    PQfreemem(n);
  }
  return payloads;
}

void PgConnection::WaitForInput(int milliseconds) {
  pollfd fd{PQsocket(conn_), POLLIN, 0};
  if (fd.fd >= 0) ::poll(&fd, 1, milliseconds);
}

}  // namespace norvik50::settings
