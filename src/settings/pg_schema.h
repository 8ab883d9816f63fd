// The settings server's schema: its tables in the schema "norvik50", the
// roles that may use them, and the version number by which the library
// knows which form of the schema it meets.
//
//   norvik50_user   may read HKEY_LOCAL_MACHINE and read and write its own
//                   HKEY_CURRENT_USER rows (row-level security keyed on
//                   the session user: no other user's rows are visible).
//   norvik50_admin  a norvik50_user that may also write HKEY_LOCAL_MACHINE.
//
// Login roles get one of them: GRANT norvik50_user TO alice.
#ifndef NORVIK50_SRC_SETTINGS_PG_SCHEMA_H_
#define NORVIK50_SRC_SETTINGS_PG_SCHEMA_H_

#include <cstdint>
#include <string>
#include <vector>

#include "settings/pg_connection.h"

namespace norvik50::settings {

// The schema version this library reads and writes.
inline constexpr int32_t kServerSchemaVersion = 1;
// The channel every change is announced on.
inline constexpr const char* kChangeChannel = "norvik50_settings";

// Creates the schema, or brings an older one up to kServerSchemaVersion,
// and (again) the roles and their grants; safe to run any number of times
// and from several places at once. Run by the database's owner with the
// right to create roles. Returns 0 with `done` listing the steps taken,
// or 1011 with `failure` saying why (nothing is changed then).
int32_t InitServerSchema(PgConnection& conn, std::vector<std::string>& done, PgFailure& failure);

// The version of the schema the server holds: 0 when it has none.
// nullopt with `failure` set when the server could not say.
std::optional<int32_t> ServerSchemaVersion(PgConnection& conn, PgFailure& failure);

// The GRANTs and policies InitServerSchema makes, as SQL, for the README
// and for `norvik50 store init` to show.
const std::string& ServerGrantsSql();

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_PG_SCHEMA_H_
