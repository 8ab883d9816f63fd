// norvik50 store: which store holds each root key, and whether a settings
// server named for one answers.
// norvik50 store init CONNECTION: makes (or brings up to date) the
// settings schema, its roles and their grants on a server; run by the
// database's owner, any number of times.
//
// Exit codes: 0 done (every named server answers); 1 a server does not
// answer or init failed; 2 a wrong command line.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "norvik50/encoding.h"
#include "norvik50/registry.h"
#include "settings/pg_connection.h"
#include "settings/pg_schema.h"
#include "settings/pg_store.h"
#include "settings/registry_names.h"
#include "settings/store_config.h"
#include "settings/store_location.h"

namespace norvik50::cli {
namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

int Show() {
  int code = 0;
  for (const int32_t root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    const std::string name = ToUtf8(settings::RootKeyName(root));
    const auto choice = settings::ServerStoreFor(root);
    if (!choice) {
      const auto& file = settings::StoreFileFor(root);
      std::cout << name << ": local file " << (file ? file->path : "(no folder)") << '\n';
      continue;
    }
    settings::PgStoreOptions options;
    options.conninfo = choice->conninfo;
    settings::PgStore store(options);
    const std::string problem = store.Check();
    std::cout << name << ": server " << store.described() << " (from " << choice->source << "): ";
    if (problem.empty()) {
      std::cout << "reachable as role " << store.session_user() << ", schema version "
                << settings::kServerSchemaVersion << '\n';
    } else {
      std::cout << "NOT reachable: " << problem << '\n';
      code = kFailed;
    }
  }
  const auto& machine = settings::StoreFileFor(HKEY_CLASSES_ROOT);
  std::cout << "other roots: local files in " << (machine ? machine->folder : "(no folder)")
            << '\n';
  if (const std::string conf = settings::StoreConfigFile(); !conf.empty()) {
    std::cout << "configuration file: " << conf << '\n';
  }
  return code;
}

int Init(const std::string& conninfo) {
  std::string error;
  auto conn = settings::PgConnection::Connect(conninfo, 10, error);
  if (!conn) {
    std::cerr << "ERROR: cannot connect: " << error << '\n';
    return kFailed;
  }
  std::vector<std::string> done;
  settings::PgFailure failure;
  if (settings::InitServerSchema(*conn, done, failure) != 0) {
    std::cerr << "ERROR: " << failure.message << "; nothing was changed.\n";
    return kFailed;
  }
  for (const std::string& step : done) std::cout << step << '\n';
  std::cout << "The grants in place:\n" << settings::ServerGrantsSql();
  std::cout << "Give each login role one of them: GRANT norvik50_user TO alice; "
               "GRANT norvik50_admin TO it_admin;\n";
  return 0;
}

}  // namespace

void AddStoreCommand(CLI::App& app) {
  CLI::App* store = app.add_subcommand(
      "store", "Which store holds each root key; 'store init CONNECTION' prepares a server");
  auto words = std::make_shared<std::vector<std::string>>();
  store->add_option("words", *words, "nothing, or: init CONNECTION");
  store->footer(
      "A root key is held on a settings server when NORVIK50_STORE_HKLM / "
      "NORVIK50_STORE_HKCU (or store.conf in the machine-wide settings folder) "
      "names one by a libpq connection string. Exit codes: 0 done, 1 a server "
      "does not answer or init failed, 2 a wrong command line.");
  store->callback([=] {
    if (words->empty()) {
      ExitCode() = Show();
    } else if ((*words)[0] == "init" && words->size() == 2) {
      ExitCode() = Init((*words)[1]);
    } else {
      std::cerr << "usage: norvik50 store [init CONNECTION]\n";
      ExitCode() = kUsage;
    }
  });
}

}  // namespace norvik50::cli
