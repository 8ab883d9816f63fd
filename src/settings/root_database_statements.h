// The prepared statements a root database keeps for the life of its
// connection (private to the RootDatabase implementation files).
#ifndef NORVIK50_SRC_SETTINGS_ROOT_DATABASE_STATEMENTS_H_
#define NORVIK50_SRC_SETTINGS_ROOT_DATABASE_STATEMENTS_H_

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "settings/root_database.h"

namespace norvik50::settings {

struct RootDatabase::Statements {
  explicit Statements(SQLite::Database& db);

  SQLite::Statement find_path, find_child, insert_key, key_exists, has_children, get_value,
      put_value, remove_value, child_at, child_after, child_before, value_at, value_after,
      value_before, remove_values, remove_key;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_ROOT_DATABASE_STATEMENTS_H_
