// norvik50 reg query|add|delete|export|import: the settings store from the
// command line, with the options and messages of the Windows reg command
// (/v NAME, /ve, /va, /t TYPE, /d DATA, /s, /f, /y; "-v" works too).
//
// add, delete and import flush what they changed before they return, so
// that it is on disk when the command ends (a one-shot command has no later
// moment to do it); an import is all or nothing.
//
// Exit codes: 0 done; 1 the key or value does not exist, the store refused
// or could not be used, the file could not be read, written or parsed, or
// the user declined a confirmation. Errors go to stderr as "ERROR: ...".
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands.h"
#include "help_format.h"
#include "norvik50/encoding.h"
#include "norvik50/registry.h"
#include "settings/reg_file.h"
#include "settings/reg_transfer.h"
#include "settings/registry_algorithms.h"
#include "settings/registry_names.h"
#include "settings/value_bytes.h"

namespace norvik50::cli {
namespace {

using settings::RegFile;
using settings::RegFormat;

constexpr int kFailed = 1;
constexpr int32_t kRegQword = 11;
constexpr const char* kNotFound =
    "ERROR: The system was unable to find the specified registry key or value.";

struct Options {
  std::string key, file, value, type = "REG_SZ", data, separator = "\\0";
  bool default_value = false, all_values = false, force = false, recurse = false, regedit4 = false;
};

int Fail(const std::string& message) {
  std::cerr << message << '\n';
  return kFailed;
}

// Prints the store's pending problem (a damaged database) and fails.
int StoreFailure(RegistryStore& store, int32_t code) {
  const std::u16string problem = store.TakeProblem();
  if (!problem.empty()) return Fail("ERROR: " + ToUtf8(problem));
  if (code == 2) return Fail(kNotFound);
  if (code == 5) return Fail("ERROR: Access is denied.");
  return Fail("ERROR: The settings store failed (code " + std::to_string(code) + ").");
}

// Makes the changes under `roots` durable; 0, or fails saying why.
int FlushRoots(RegistryStore& store, const std::vector<int32_t>& roots) {
  for (const int32_t root : roots) {
    if (const int32_t code = store.FlushKey(root); code != 0) {
      const std::u16string problem = store.TakeProblem();
      return Fail(
          "ERROR: The change was made but could not be written to disk" +
          (problem.empty() ? " (code " + std::to_string(code) + ")." : ": " + ToUtf8(problem)));
    }
  }
  return 0;
}

// Says the operation is done, once its changes under `roots` are on disk.
int Completed(RegistryStore& store, const std::vector<int32_t>& roots) {
  if (const int failed = FlushRoots(store, roots); failed != 0) return failed;
  std::cout << "The operation completed successfully.\n";
  return 0;
}

bool Confirm(const std::string& question) {
  std::cout << question << " (Yes/No)? " << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) return false;
  return !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

std::string TypeName(int32_t type) {
  static const char* const kNames[] = {"REG_NONE",
                                       "REG_SZ",
                                       "REG_EXPAND_SZ",
                                       "REG_BINARY",
                                       "REG_DWORD",
                                       "REG_DWORD_BIG_ENDIAN",
                                       "REG_LINK",
                                       "REG_MULTI_SZ",
                                       "REG_RESOURCE_LIST",
                                       "REG_FULL_RESOURCE_DESCRIPTOR",
                                       "REG_RESOURCE_REQUIREMENTS_LIST",
                                       "REG_QWORD"};
  return type >= 0 && type <= 11 ? kNames[type] : "REG_UNKNOWN(" + std::to_string(type) + ")";
}

std::string Shown(int32_t type, const std::string& data) {
  char buf[32];
  // Numbers as the Windows command shows them: hexadecimal of the value,
  // whatever the byte order it is stored in.
  const bool little_endian_number =
      (type == REG_DWORD && data.size() == 4) || (type == kRegQword && data.size() == 8);
  if (little_endian_number || (type == REG_DWORD_BIG_ENDIAN && data.size() == 4)) {
    uint64_t v = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
      const std::size_t at = little_endian_number ? data.size() - 1 - i : i;
      v = (v << 8) | static_cast<uint8_t>(data[at]);
    }
    std::snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
  }
  if (settings::IsTextType(type)) {
    std::string text = data;
    if (!text.empty() && text.back() == '\0') text.pop_back();
    if (type == REG_MULTI_SZ) {
      if (!text.empty() && text.back() == '\0') text.pop_back();
      std::string shown;
      for (const char c : text) shown += c == '\0' ? std::string("\\0") : std::string(1, c);
      return shown;
    }
    return text;
  }
  std::string hex;
  for (const char c : data) {
    std::snprintf(buf, sizeof buf, "%02X", static_cast<uint8_t>(c));
    hex += buf;
  }
  return hex;
}

std::optional<std::pair<int32_t, std::u16string>> ParseKey(const std::string& key) {
  return settings::SplitFullKeyName(FromUtf8(key));
}

std::string FullName(int32_t root, const std::u16string& path) {
  return ToUtf8(settings::RootKeyName(root)) + (path.empty() ? "" : "\\" + ToUtf8(path));
}

int Query(const Options& o) {
  const auto key = ParseKey(o.key);
  if (!key) return Fail("ERROR: Invalid key name.");
  auto store = CurrentRegistryStore();
  const bool one_value = o.default_value || !o.value.empty();
  const std::u16string wanted = o.default_value ? u"" : FromUtf8(o.value);
  int found = 0;
  // Prints one key (and, with /s, its subtree); the store's code.
  std::function<int32_t(const std::u16string&)> show = [&](const std::u16string& path) {
    RegKey k = 0;
    if (const int32_t code = store->OpenKey(key->first, path, KEY_QUERY_VALUE, k); code != 0) {
      return code;
    }
    std::ostringstream lines;
    std::u16string name;
    int32_t type = 0;
    std::string data;
    for (uint32_t i = 0; store->EnumValue(k, i, name, type, data) == 0; ++i) {
      if (one_value && settings::FoldName(name) != settings::FoldName(wanted)) continue;
      ++found;
      lines << "    " << (name.empty() ? "(Default)" : ToUtf8(name)) << "    " << TypeName(type)
            << "    " << Shown(type, data) << "\n";
    }
    std::vector<std::u16string> children;
    for (uint32_t i = 0; store->EnumKey(k, i, settings::kMaxKeyNameLength + 1, name) == 0; ++i) {
      children.push_back(name);
    }
    store->CloseKey(k);
    const std::string header = FullName(key->first, path);
    if (!one_value || !lines.str().empty()) std::cout << "\n" << header << "\n" << lines.str();
    for (const auto& child : children) {
      const std::u16string sub = path.empty() ? child : path + u"\\" + child;
      if (o.recurse) {
        show(sub);
      } else if (!one_value) {
        if (&child == &children.front()) std::cout << "\n";
        std::cout << FullName(key->first, sub) << "\n";
      }
    }
    return 0;
  };
  const int32_t code = show(key->second);
  if (code != 0) return StoreFailure(*store, code);
  if (one_value && found == 0) return Fail(kNotFound);
  return 0;
}

std::optional<std::pair<int32_t, std::string>> DataFor(const Options& o) {
  const std::string t = o.type;
  auto number = [&](uint64_t max) -> std::optional<uint64_t> {
    try {
      std::size_t used = 0;
      const uint64_t v = std::stoull(o.data.empty() ? "0" : o.data, &used, 0);
      if (used != (o.data.empty() ? 1 : o.data.size()) || v > max) return std::nullopt;
      return v;
    } catch (...) {
      return std::nullopt;
    }
  };
  if (t == "REG_SZ" || t == "REG_EXPAND_SZ") {
    return std::make_pair(t == "REG_SZ" ? int32_t{REG_SZ} : int32_t{REG_EXPAND_SZ}, o.data);
  }
  if (t == "REG_MULTI_SZ") {
    std::string data = o.data, out;
    const std::string sep = o.separator;
    for (std::size_t i = 0; i < data.size();) {
      if (!sep.empty() && data.compare(i, sep.size(), sep) == 0) {
        out.push_back('\0');
        i += sep.size();
      } else {
        out.push_back(data[i++]);
      }
    }
    if (!out.empty()) out.push_back('\0');
    out.push_back('\0');
    return std::make_pair(int32_t{REG_MULTI_SZ}, out);
  }
  if (t == "REG_DWORD" || t == "REG_DWORD_BIG_ENDIAN" || t == "REG_DWORD_LITTLE_ENDIAN") {
    const auto v = number(0xFFFFFFFFull);
    if (!v) return std::nullopt;
    std::string bytes = settings::DwordBytes(static_cast<uint32_t>(*v));
    if (t == "REG_DWORD_BIG_ENDIAN") bytes = std::string(bytes.rbegin(), bytes.rend());
    return std::make_pair(
        t == "REG_DWORD_BIG_ENDIAN" ? int32_t{REG_DWORD_BIG_ENDIAN} : int32_t{REG_DWORD}, bytes);
  }
  if (t == "REG_QWORD") {
    const auto v = number(~0ull);
    if (!v) return std::nullopt;
    std::string bytes;
    for (int i = 0; i < 8; ++i) bytes.push_back(static_cast<char>((*v >> (8 * i)) & 0xFF));
    return std::make_pair(kRegQword, bytes);
  }
  if (t == "REG_BINARY" || t == "REG_NONE") {
    if (o.data.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < o.data.size(); i += 2) {
      const std::string pair = o.data.substr(i, 2);
      if (pair.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        return std::nullopt;
      bytes.push_back(static_cast<char>(std::stoi(pair, nullptr, 16)));
    }
    return std::make_pair(t == "REG_BINARY" ? int32_t{REG_BINARY} : int32_t{REG_NONE}, bytes);
  }
  return std::nullopt;
}

int Add(const Options& o) {
  const auto key = ParseKey(o.key);
  if (!key) return Fail("ERROR: Invalid key name.");
  const auto data = DataFor(o);
  if (!data) return Fail("ERROR: Invalid type or data for " + o.type + ".");
  auto store = CurrentRegistryStore();
  RegKey k = 0;
  if (const int32_t code = store->CreateKey(key->first, key->second, 0, KEY_ALL_ACCESS, k, nullptr);
      code != 0) {
    return StoreFailure(*store, code);
  }
  const std::u16string name = o.default_value ? u"" : FromUtf8(o.value);
  const bool set = !o.value.empty() || o.default_value || !o.data.empty();
  if (set) {
    int32_t type = 0;
    std::string old;
    if (!o.force && store->QueryValue(k, name, SIZE_MAX, type, old) == 0 &&
        !Confirm("Value " + (name.empty() ? std::string("(Default)") : ToUtf8(name)) +
                 " exists, overwrite")) {
      store->CloseKey(k);
      return Fail("The operation was canceled by the user.");
    }
    if (const int32_t code = store->SetValue(k, name, data->first, data->second); code != 0) {
      store->CloseKey(k);
      return StoreFailure(*store, code);
    }
  }
  store->CloseKey(k);
  return Completed(*store, {key->first});
}

int Delete(const Options& o) {
  const auto key = ParseKey(o.key);
  if (!key) return Fail("ERROR: Invalid key name.");
  auto store = CurrentRegistryStore();
  const bool one_value = o.default_value || !o.value.empty();
  std::string what = one_value ? "the registry value " + (o.default_value ? "(Default)" : o.value)
                     : o.all_values ? "all values under the registry key " + o.key
                                    : "the registry key " + o.key;
  if (!o.force && !Confirm("Delete " + what))
    return Fail("The operation was canceled by the user.");
  int32_t code = 0;
  if (one_value || o.all_values) {
    RegKey k = 0;
    code = store->OpenKey(key->first, key->second, KEY_SET_VALUE, k);
    if (code == 0) {
      if (one_value) {
        code = store->DeleteValue(k, o.default_value ? u"" : FromUtf8(o.value));
      } else {
        std::u16string name;
        int32_t type = 0;
        std::string data;
        while (code == 0 && store->EnumValue(k, 0, name, type, data) == 0) {
          code = store->DeleteValue(k, name);
        }
      }
      store->CloseKey(k);
    }
  } else {
    code = settings::RegDeleteKeyTree(*store, key->first, key->second, true);
  }
  if (code != 0) return StoreFailure(*store, code);
  return Completed(*store, {key->first});
}

int Export(const Options& o) {
  const auto key = ParseKey(o.key);
  if (!key) return Fail("ERROR: Invalid key name.");
  auto store = CurrentRegistryStore();
  RegFile file;
  if (const int32_t code = settings::ExportKeys(*store, key->first, key->second, file); code != 0) {
    return StoreFailure(*store, code);
  }
  if (!o.force && std::ifstream(o.file).good() &&
      !Confirm("File " + o.file + " already exists. Overwrite")) {
    return Fail("The operation was canceled by the user.");
  }
  const std::string bytes =
      settings::WriteRegFile(file, o.regedit4 ? RegFormat::kRegedit4 : RegFormat::kVersion5);
  // Written beside the target and renamed over it, so that a failure never
  // leaves half a file.
  const std::string temp = o.file + ".tmp";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    out << bytes;
    if (!out.flush()) {
      std::remove(temp.c_str());
      return Fail("ERROR: Cannot write " + o.file + ".");
    }
  }
  if (std::rename(temp.c_str(), o.file.c_str()) != 0) {
    std::remove(temp.c_str());
    return Fail("ERROR: Cannot write " + o.file + ".");
  }
  std::cout << "The operation completed successfully.\n";
  return 0;
}

int Import(const Options& o) {
  std::ifstream in(o.file, std::ios::binary);
  if (!in) return Fail("ERROR: Error opening the file. There may be a disk or file system error.");
  std::ostringstream content;
  content << in.rdbuf();
  settings::RegParseError error;
  const auto file = settings::ParseRegFile(content.str(), error);
  if (!file) {
    return Fail("ERROR: " + o.file + (error.line ? ":" + std::to_string(error.line) : "") + ": " +
                error.message + "; nothing was imported.");
  }
  auto store = CurrentRegistryStore();
  std::u16string failed;
  if (const int32_t code = settings::ImportKeys(*store, *file, failed); code != 0) {
    if (code == kRegNotSupported) {
      return Fail(
          "ERROR: This settings store cannot import a file all or nothing; nothing was "
          "imported.");
    }
    std::cerr << "ERROR: " << (failed.empty() ? "The import" : "Importing " + ToUtf8(failed))
              << " failed; nothing was imported.\n";
    return StoreFailure(*store, code);
  }
  std::vector<int32_t> roots;
  for (const auto& k : file->keys) {
    if (std::find(roots.begin(), roots.end(), k.root) == roots.end()) roots.push_back(k.root);
  }
  return Completed(*store, roots);
}

// Help that shows each switch as users type it: /v, /ve, /reg4, /?.
class RegSwitchFormatter : public ToolFormatter {
 public:
  std::string make_option_name(const CLI::Option* opt, bool is_positional) const override {
    if (is_positional) return ToolFormatter::make_option_name(opt, is_positional);
    if (opt->check_lname("help")) return "/?";
    std::string names;
    for (const std::string& name : opt->get_snames()) names += (names.empty() ? "/" : ", /") + name;
    for (const std::string& name : opt->get_lnames()) names += (names.empty() ? "/" : ", /") + name;
    return names;
  }
};

void AddValueOptions(CLI::App* cmd, Options& o) {
  cmd->add_option("-v", o.value, "Value name")->ignore_case();
  cmd->add_flag("--ve", o.default_value, "The default value (empty name)")->ignore_case();
}

}  // namespace

std::vector<std::string> TranslateRegSwitches(std::vector<std::string> args) {
  // Only the switch words themselves: "/tmp/x.reg" stays a path.
  static const std::pair<const char*, const char*> kSwitches[] = {
      {"/v", "-v"}, {"/ve", "--ve"}, {"/va", "--va"}, {"/t", "-t"},        {"/d", "-d"},
      {"/s", "-s"}, {"/f", "-f"},    {"/y", "-y"},    {"/reg4", "--reg4"}, {"/?", "--help"}};
  if (args.size() < 2 || args[1] != "reg") return args;
  for (std::size_t i = 2; i < args.size(); ++i) {
    std::string lower = args[i];
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const auto& [windows, posix] : kSwitches) {
      if (lower == windows) args[i] = posix;
    }
  }
  return args;
}

void AddRegCommand(CLI::App& app) {
  CLI::App* reg = app.add_subcommand(
      "reg", "The settings store: query, add, delete, export and import keys and values");
  reg->require_subcommand(1);
  // Before the subcommands are added: they take the parent's formatter.
  reg->formatter(std::make_shared<RegSwitchFormatter>());
  reg->footer(
      "KEY is ROOT\\Path, ROOT one of HKCU, HKLM, HKCR, HKU, HKCC or the full names. Options "
      "are written /v or -v. Exit codes: 0 done, 1 failed or cancelled, 2 a wrong command line.");
  auto o = std::make_shared<Options>();
  auto run = [o](int (*fn)(const Options&)) { return [o, fn] { ExitCode() = fn(*o); }; };

  CLI::App* query = reg->add_subcommand("query", "Show a key's values and sub-keys");
  query->add_option("key", o->key, "The key")->required();
  AddValueOptions(query, *o);
  query->add_flag("-s", o->recurse, "All sub-keys and values, recursively")->ignore_case();
  query->callback(run(Query));

  CLI::App* add = reg->add_subcommand("add", "Create a key, or set a value");
  add->add_option("key", o->key, "The key")->required();
  AddValueOptions(add, *o);
  add->add_option("-t", o->type,
                  "REG_SZ (default), REG_EXPAND_SZ, REG_MULTI_SZ, REG_DWORD, "
                  "REG_DWORD_BIG_ENDIAN, REG_QWORD, REG_BINARY, REG_NONE")
      ->ignore_case()
      ->transform([](std::string t) {
        for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        return t;
      });
  add->add_option("-d", o->data, "The data (numbers decimal or 0x hex; binary as hex digits)")
      ->ignore_case();
  add->add_option("-s", o->separator, "Separator of REG_MULTI_SZ strings (default \\0)")
      ->ignore_case();
  add->add_flag("-f", o->force, "Overwrite without asking")->ignore_case();
  add->callback(run(Add));

  CLI::App* del = reg->add_subcommand("delete", "Delete a key with its sub-keys, or values");
  del->add_option("key", o->key, "The key")->required();
  AddValueOptions(del, *o);
  del->add_flag("--va", o->all_values, "All values of the key")->ignore_case();
  del->add_flag("-f", o->force, "Delete without asking")->ignore_case();
  del->callback(run(Delete));

  CLI::App* exp = reg->add_subcommand("export", "Write a key and its subtree to a .reg file");
  exp->add_option("key", o->key, "The key")->required();
  exp->add_option("file", o->file, "The .reg file")->required();
  exp->add_flag("-y", o->force, "Overwrite an existing file without asking")->ignore_case();
  exp->add_flag("--reg4", o->regedit4, "Write the REGEDIT4 (ANSI) format")->ignore_case();
  exp->callback(run(Export));

  CLI::App* imp = reg->add_subcommand("import", "Apply a .reg file (either format)");
  imp->add_option("file", o->file, "The .reg file")->required();
  imp->callback(run(Import));
}

}  // namespace norvik50::cli
