// norvik50 res list|string|get: a look into a Windows resource library
// (a resource DLL, PE32 or PE32+) on Linux, with the library's own reader.
//   res list FILE               every resource: type, name, language, size
//   res string FILE ID          string-table entry ID (UTF-8, one line)
//   res get FILE TYPE NAME      the bytes of a custom resource, e.g.
//                               res get Res_DE.dll XML '#100' > form.xml;
//                               on a terminal, the text a resource call
//                               reads from them (--raw: the bytes there too)
// FILE is a Windows-style path through the drive map or a Linux path;
// TYPE and NAME take "#n" for numbers, as resource calls do. Strings and
// resources come in the language a resource call without a language picks
// for the current locale. Exit codes: 0 done, 1 no such string or
// resource, or a listing cut short by a damaged directory, 2 the file is
// missing or no resource library.
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "commands.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/locale.h"
#include "resources/file_image_bytes.h"
#include "resources/own_resources.h"
#include "resources/pe_image.h"
#include "resources/resource_languages.h"

namespace norvik50::cli {
namespace {

constexpr int kNotFound = 1;
constexpr int kListingCut = 1;
constexpr int kNoLibrary = 2;

// The library at `path`, or nullopt after telling why on stderr. It is read
// as a lookup needs it, as the resource members read it.
std::optional<pe::PeImage> OpenLibrary(const std::string& path) {
  const auto linux_path = ToLinuxPath(FromUtf8(path));
  std::optional<pe::PeImage> image;
  if (linux_path) {
    if (auto bytes = FileImageBytes::Open(*linux_path))
      image = pe::PeImage::Parse(std::move(bytes));
  }
  if (!image) {
    std::cerr << "norvik50 res: '" << path << "' is missing or no resource library\n";
    ExitCode() = kNoLibrary;
  }
  return image;
}

const char* TypeName(const pe::ResourceId& type) {
  if (!type.number) return nullptr;
  switch (*type.number) {
    case 1:
      return "CURSOR";
    case 2:
      return "BITMAP";
    case 3:
      return "ICON";
    case 4:
      return "MENU";
    case 5:
      return "DIALOG";
    case 6:
      return "STRING";
    case 9:
      return "ACCELERATOR";
    case 10:
      return "RCDATA";
    case 12:
      return "GROUP_CURSOR";
    case 14:
      return "GROUP_ICON";
    case 16:
      return "VERSION";
    case 24:
      return "MANIFEST";
    default:
      return nullptr;
  }
}

// A type or name as the listing shows it: one that is longer than a
// person reads in a table is cut, with its full length after the marker
// ("AAAA…(65535 characters)"). A damaged file may name 65,535 entries with
// one string of 65,535 characters; in full, that listing alone would be
// gigabytes.
std::string Shown(const pe::ResourceId& id) {
  constexpr std::size_t kLongest = 64;
  const std::u16string text = pe::ResourceIdText(id);
  if (text.size() <= kLongest) return ToUtf8(text);
  std::size_t kept = kLongest;
  if (text[kept - 1] >= 0xD800 && text[kept - 1] <= 0xDBFF) --kept;  // keep a pair whole
  return ToUtf8(std::u16string_view(text).substr(0, kept)) + "\u2026(" +
         std::to_string(text.size()) + " characters)";
}

void List(const std::string& path) {
  const auto library = OpenLibrary(path);
  if (!library) return;
  const pe::ResourceListing listing = library->List();
  std::printf("%s %s\n", path.c_str(), library->is_pe32_plus() ? "(PE32+)" : "(PE32)");
  std::printf("%-20s %-20s %-9s %s\n", "TYPE", "NAME", "LANGUAGE", "SIZE");
  for (const pe::ResourceEntry& entry : listing.entries) {
    std::string type = Shown(*entry.type);
    if (const char* known = TypeName(*entry.type)) type += std::string(" ") + known;
    std::printf("%-20s %-20s 0x%04X    %u\n", type.c_str(), Shown(*entry.name).c_str(),
                entry.language, entry.size);
  }
  std::fflush(stdout);
  if (!listing.complete) {
    std::cerr << "norvik50 res: the directories of '" << path
              << "' overlap (damaged); the listing stops there\n";
    ExitCode() = kListingCut;
  }
}

void String(const std::string& path, uint32_t id) {
  const auto library = OpenLibrary(path);
  if (!library) return;
  const auto text = library->FindString(static_cast<uint16_t>(id),
                                        PreferredResourceLanguages(CurrentLocale().tag));
  if (!text) {
    std::cerr << "norvik50 res: no string " << id << " in '" << path << "'\n";
    ExitCode() = kNotFound;
    return;
  }
  std::cout << ToUtf8(*text) << '\n';
}

void Get(const std::string& path, const std::string& type, const std::string& name, bool raw) {
  const auto library = OpenLibrary(path);
  if (!library) return;
  const auto type_id = pe::ParseResourceId(FromUtf8(type));
  const auto name_id = pe::ParseResourceId(FromUtf8(name));
  const auto data =
      type_id && name_id
          ? library->Find(*type_id, *name_id, PreferredResourceLanguages(CurrentLocale().tag))
          : std::nullopt;
  if (!data) {
    std::cerr << "norvik50 res: no resource " << type << " " << name << " in '" << path << "'\n";
    ExitCode() = kNotFound;
    return;
  }
  if (raw || ::isatty(STDOUT_FILENO) == 0) {
    std::fwrite(data->data(), 1, data->size(), stdout);
    std::fflush(stdout);
    return;
  }
  // A person reads the document as a resource call reads it: one
  // Windows-1252 character per byte, from the first "<" (which drops a
  // byte-order mark) and in the terminal's UTF-8, so that "\xDC" shows as
  // "Ü" and not as a replacement character.
  const std::string_view bytes(reinterpret_cast<const char*>(data->data()), data->size());
  const std::string text = ToUtf8(FromFirstAngleBracket(BytesToText(bytes)));
  std::cout << text << (text.empty() || text.back() != '\n' ? "\n" : "") << std::flush;
}

}  // namespace

void AddResCommand(CLI::App& app) {
  CLI::App* res = app.add_subcommand("res", "Look into a Windows resource library (DLL)");
  res->require_subcommand(1);
  static std::string path, type, name;
  static uint32_t id = 0;

  CLI::App* list = res->add_subcommand("list", "Every resource: type, name, language, size");
  list->add_option("FILE", path, "the resource library")->required();
  list->callback([] { List(path); });

  CLI::App* string = res->add_subcommand("string", "One string-table entry, as UTF-8");
  string->add_option("FILE", path, "the resource library")->required();
  string->add_option("ID", id, "the string id (0 to 65535)")
      ->required()
      ->check(CLI::Range(0, 65535));
  string->callback([] { String(path, id); });

  CLI::App* get = res->add_subcommand("get", "The bytes of a custom resource on stdout");
  get->add_option("FILE", path, "the resource library")->required();
  get->add_option("TYPE", type, "type name or #number (XML, #10)")->required();
  get->add_option("NAME", name, "name or #number (#100)")->required();
  static bool raw = false;
  get->add_flag("--raw", raw, "The bytes as they are, on a terminal too");
  get->callback([] { Get(path, type, name, raw); });
}

}  // namespace norvik50::cli
