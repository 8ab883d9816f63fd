// The statements the server store prepares on each connection, one set
// per table pair: the machine-wide rows and the per-user rows.
#ifndef NORVIK50_SRC_SETTINGS_PG_STATEMENTS_H_
#define NORVIK50_SRC_SETTINGS_PG_STATEMENTS_H_

#include <array>
#include <string>
#include <utility>

namespace norvik50::settings::pg {

// The statements of one table pair; {T} is the pair, {O} the owner its
// rows carry ('' for the machine-wide rows, the session user for the
// per-user rows, which row security checks as well).
struct Statement {
  const char* name;
  const char* sql;
};
inline constexpr std::array<Statement, 8> kStatements{{
    {"exists", "SELECT 1 FROM {T}_keys WHERE owner = {O} AND root = $1 AND path = $2"},
    {"get",
     "SELECT type, data FROM {T}_values WHERE owner = {O} AND root = $1 AND key = $2 AND "
     "fold = $3"},
    {"put",
     "INSERT INTO {T}_values (owner, root, key, fold, name, type, data) "
     "VALUES ({O}, $1, $2, $3, $4, $5, $6) ON CONFLICT (owner, root, key, fold) "
     "DO UPDATE SET type = EXCLUDED.type, data = EXCLUDED.data"},
    {"root",
     "INSERT INTO {T}_keys (owner, root, path, parent, name, fold) "
     "VALUES ({O}, $1, '', '', '', '') ON CONFLICT DO NOTHING"},
    {"unset",
     "DELETE FROM {T}_values WHERE owner = {O} AND root = $1 AND key = $2 AND fold = $3 "
     "RETURNING 1"},
    // Each sub-key comes with whether it has sub-keys of its own, so that
    // a walk through a tree asks nothing more of its leaves.
    {"children",
     "SELECT k.name, k.fold, EXISTS (SELECT 1 FROM {T}_keys c WHERE c.owner = {O} AND "
     "c.root = $1 AND c.parent = k.path AND c.path <> '') FROM {T}_keys k WHERE k.owner = {O} "
     "AND k.root = $1 AND k.parent = $2 AND k.path <> '' ORDER BY k.fold"},
    {"value_at",
     "SELECT name, type, data FROM {T}_values WHERE owner = {O} AND root = $1 AND key = $2 "
     "ORDER BY fold LIMIT 1 OFFSET $3::integer"},
    // A key with sub-keys stays (the caller deletes a tree leaf by leaf);
    // its values go with it.
    {"drop",
     "DELETE FROM {T}_keys WHERE owner = {O} AND root = $1 AND path = $2 AND NOT EXISTS "
     "(SELECT 1 FROM {T}_keys c WHERE c.owner = {O} AND c.root = $1 AND c.parent = $2 AND "
     "c.path <> '') RETURNING 1"},
}};

inline std::string Table(int kind) { return kind == 0 ? "norvik50.machine" : "norvik50.user"; }
inline std::string Owner(int kind) { return kind == 0 ? "''" : "session_user"; }

inline std::string Expand(std::string sql, int kind) {
  for (const auto& [from, to] : {std::pair<std::string, std::string>{"{T}", Table(kind)},
                                 std::pair<std::string, std::string>{"{O}", Owner(kind)}}) {
    for (std::size_t at = sql.find(from); at != std::string::npos; at = sql.find(from, at)) {
      sql.replace(at, from.size(), to);
    }
  }
  return sql;
}

inline std::string StatementName(int kind, const char* name) {
  return std::string(kind == 0 ? "m_" : "u_") + name;
}

}  // namespace norvik50::settings::pg

#endif  // NORVIK50_SRC_SETTINGS_PG_STATEMENTS_H_
