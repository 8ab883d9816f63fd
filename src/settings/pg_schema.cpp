#include "settings/pg_schema.h"

#include <string_view>

namespace norvik50::settings {
namespace {

// Serialises concurrent runs of InitServerSchema on one database.
constexpr const char* kInitLock = "SELECT pg_advisory_xact_lock(5037050)";

// One table pair per kind of root: the machine-wide rows (owner '') and
// the per-user rows (owner the session user). Paths and names are kept
// folded beside the case the writer gave; the folded columns compare
// bytewise (COLLATE "C"), which is the enumeration order of the local
// store too.
std::string Tables(std::string_view kind, std::string_view owner_default,
                   std::string_view owner_check) {
  const std::string k(kind);
  return "CREATE TABLE norvik50." + k + "_keys (" + "owner text NOT NULL DEFAULT " +
         std::string(owner_default) + " CHECK (" + std::string(owner_check) +
         "), root integer NOT NULL, " +
         "path text COLLATE \"C\" NOT NULL, parent text COLLATE \"C\" NOT NULL, " +
         "name text NOT NULL, fold text COLLATE \"C\" NOT NULL, " +
         "PRIMARY KEY (owner, root, path));\n" + "CREATE INDEX " + k + "_children ON norvik50." +
         k + "_keys (owner, root, parent, fold);\n" + "CREATE TABLE norvik50." + k + "_values (" +
         "owner text NOT NULL DEFAULT " + std::string(owner_default) + " CHECK (" +
         std::string(owner_check) + "), root integer NOT NULL, " +
         "key text COLLATE \"C\" NOT NULL, fold text COLLATE \"C\" NOT NULL, " +
         "name text NOT NULL, type integer NOT NULL, data bytea NOT NULL, " +
         "PRIMARY KEY (owner, root, key, fold), " +
         "FOREIGN KEY (owner, root, key) REFERENCES norvik50." + k +
         "_keys (owner, root, path) ON DELETE CASCADE);\n";
}

// Every change is announced, whoever makes it (psql included), so that
// caches in other processes forget what changed. A machine-wide change
// names its key; a per-user change names only a digest of its user, so
// that nobody learns another user's key names from the channel.
std::string Notifications() {
  std::string sql = R"(
CREATE FUNCTION norvik50.announce_machine_change() RETURNS trigger LANGUAGE plpgsql AS $$
DECLARE
  r record;
  p text;
BEGIN
  IF TG_OP = 'DELETE' THEN r := OLD; ELSE r := NEW; END IF;
  IF TG_TABLE_NAME = 'machine_keys' THEN p := r.path; ELSE p := r.key; END IF;
  IF octet_length(p) > 7000 THEN p := '*'; END IF;
  PERFORM pg_notify('norvik50_settings', 'm:' || r.root || ':' || p);
  RETURN NULL;
END $$;
CREATE FUNCTION norvik50.announce_user_change() RETURNS trigger LANGUAGE plpgsql AS $$
DECLARE
  r record;
BEGIN
  IF TG_OP = 'DELETE' THEN r := OLD; ELSE r := NEW; END IF;
  PERFORM pg_notify('norvik50_settings', 'u:' || md5(r.owner));
  RETURN NULL;
END $$;
)";
  // TRUNCATE fires no row triggers: it is announced as a change of every
  // row of its kind.
  sql += R"(
CREATE FUNCTION norvik50.announce_truncate() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
  PERFORM pg_notify('norvik50_settings',
                    CASE WHEN TG_TABLE_NAME LIKE 'machine%' THEN 'm:*' ELSE 'u:*' END);
  RETURN NULL;
END $$;
)";
  for (const char* table : {"machine_keys", "machine_values", "user_keys", "user_values"}) {
    const std::string t(table);
    const char* fn =
        t.rfind("machine", 0) == 0 ? "announce_machine_change" : "announce_user_change";
    sql += "CREATE TRIGGER " + t + "_announce AFTER INSERT OR UPDATE OR DELETE ON norvik50." + t +
           " FOR EACH ROW EXECUTE FUNCTION norvik50." + fn + "();\n";
    sql += "CREATE TRIGGER " + t + "_announce_truncate AFTER TRUNCATE ON norvik50." + t +
           " FOR EACH STATEMENT EXECUTE FUNCTION norvik50.announce_truncate();\n";
  }
  return sql;
}

// Version 1: the tables, row security on the per-user rows, the
// announcements.
std::string Version1() {
  std::string sql =
      Tables("machine", "''", "owner = ''") + Tables("user", "session_user", "owner <> ''");
  for (const char* table : {"user_keys", "user_values"}) {
    const std::string t(table);
    // FORCE: the tables' owner is held to the rule too; only a superuser
    // sees every user's rows.
    sql += "ALTER TABLE norvik50." + t + " ENABLE ROW LEVEL SECURITY;\n" + "ALTER TABLE norvik50." +
           t + " FORCE ROW LEVEL SECURITY;\n" + "CREATE POLICY own_rows ON norvik50." + t +
           " USING (owner = session_user) WITH CHECK (owner = session_user);\n";
  }
  return sql + Notifications();
}

// The upgrades, in order: entry i brings version i to i + 1.
const std::vector<std::string>& Upgrades() {
  static const std::vector<std::string> upgrades{Version1()};
  return upgrades;
}

// Roles are created when missing: they belong to the whole cluster, and
// another database of the same server may have made them already.
constexpr const char* kRoles = R"(
DO $$
BEGIN
  IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'norvik50_user') THEN
    CREATE ROLE norvik50_user NOLOGIN;
  END IF;
  IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'norvik50_admin') THEN
    CREATE ROLE norvik50_admin NOLOGIN;
  END IF;
END $$;
)";

}  // namespace

const std::string& ServerGrantsSql() {
  static const std::string grants = R"(GRANT norvik50_user TO norvik50_admin;
GRANT USAGE ON SCHEMA norvik50 TO norvik50_user;
GRANT SELECT ON norvik50.schema_version TO norvik50_user;
GRANT SELECT ON norvik50.machine_keys, norvik50.machine_values TO norvik50_user;
GRANT INSERT, UPDATE, DELETE ON norvik50.machine_keys, norvik50.machine_values TO norvik50_admin;
GRANT SELECT, INSERT, UPDATE, DELETE ON norvik50.user_keys, norvik50.user_values TO norvik50_user;
-- on user_keys and user_values, for every role:
--   POLICY own_rows USING (owner = session_user) WITH CHECK (owner = session_user)
)";
  return grants;
}

std::optional<int32_t> ServerSchemaVersion(PgConnection& conn, PgFailure& failure) {
  const auto exists =
      conn.Exec("SELECT to_regclass('norvik50.schema_version') IS NOT NULL", {}, failure);
  if (!exists) return std::nullopt;
  if (exists->Bytes(0, 0) != std::string_view("\x01", 1)) return 0;
  const auto version =
      conn.Exec("SELECT coalesce(max(version), 0) FROM norvik50.schema_version", {}, failure);
  if (!version) return std::nullopt;
  return version->Int(0, 0);
}

int32_t InitServerSchema(PgConnection& conn, std::vector<std::string>& done, PgFailure& failure) {
  done.clear();
  auto fail = [&] {
    PgFailure ignored;
    conn.Script("ROLLBACK", ignored);
    done.clear();
    return failure.code != 0 ? failure.code : 1011;
  };
  if (!conn.Script("BEGIN", failure) || !conn.Script(kInitLock, failure)) return fail();
  if (!conn.Script("CREATE SCHEMA IF NOT EXISTS norvik50;"
                   "CREATE TABLE IF NOT EXISTS norvik50.schema_version (version integer NOT NULL)",
                   failure)) {
    return fail();
  }
  const auto found = ServerSchemaVersion(conn, failure);
  if (!found) return fail();
  if (*found > kServerSchemaVersion) {
    failure = {1011, false,
               "the schema norvik50 has version " + std::to_string(*found) +
                   ", newer than this library's " + std::to_string(kServerSchemaVersion) +
                   "; left untouched"};
    return fail();
  }
  if (!conn.Script(kRoles, failure)) return fail();
  for (int32_t v = *found; v < kServerSchemaVersion; ++v) {
    if (!conn.Script(Upgrades()[v], failure)) return fail();
    done.push_back("schema norvik50 brought to version " + std::to_string(v + 1));
  }
  if (!conn.Script("DELETE FROM norvik50.schema_version;"
                   "INSERT INTO norvik50.schema_version VALUES (" +
                       std::to_string(kServerSchemaVersion) + ")",
                   failure) ||
      !conn.Script(ServerGrantsSql(), failure) || !conn.Script("COMMIT", failure)) {
    return fail();
  }
  if (done.empty()) {
    done.push_back("schema norvik50 is at version " + std::to_string(kServerSchemaVersion));
  }
  done.push_back("roles norvik50_user and norvik50_admin and their grants are in place");
  return 0;
}

}  // namespace norvik50::settings
