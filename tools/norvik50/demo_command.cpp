// The tour: what the library does, shown by calling it.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <sstream>

#include "batch.h"
#include "commands.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "norvik50/locale.h"

namespace norvik50::cli {
namespace {

void Heading(const char* text) { std::cout << "\n== " << text << " ==\n"; }

void Show(const char* label, const std::u16string& value) {
  std::cout << "  " << label << ": " << ToUtf8(value) << '\n';
}

// A dispatched call, shown as the request line and its answer.
void ShowCall(LIB& lib, const std::string& request) {
  std::cout << "  > " << request << '\n'
            << "  < " << AnswerRequest(lib, request).dump() << '\n';
}

// The calls whose members exist in this build.
void ShowCalls(LIB& lib, std::initializer_list<std::string> requests) {
  for (const std::string& request : requests) {
    const auto member = nlohmann::ordered_json::parse(request)["member"].get<std::string>();
    if (Members().Has(member)) ShowCall(lib, request);
  }
}

void PrintLog(LIB& lib) {
  const auto path = ToLinuxPath(lib.tklGetFullPath(lib.tklTempDir(), u"nvk50err.LOG"));
  std::ifstream log(path.value_or(""), std::ios::binary);
  std::string line;
  std::cout << "  " << path.value_or("?") << ":\n";
  while (std::getline(log, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::cout << "    | " << ToUtf8(BytesToText(line)) << '\n';
  }
}

void RunDemo() {
  std::cout << "norvik50 " << NORVIK50_VERSION
            << ": a function library for desktop business applications.\n"
            << "Locale: " << CurrentLocale().tag << " (set NORVIK50_LOCALE to change)\n";
  const std::string locale_tag = CurrentLocale().tag;
  // The tour keeps its settings out of the user's own store.
  std::string registry_dir;
  if (const char* configured = std::getenv("NORVIK50_REGISTRY_DIR")) {
    registry_dir = configured;
  } else {
    registry_dir = (std::filesystem::temp_directory_path() / "norvik50-demo-registry").string();
    std::filesystem::create_directories(registry_dir);
    setenv("NORVIK50_REGISTRY_DIR", registry_dir.c_str(), 1);
  }
  LIB lib;

  Heading("Folders and the base key");
  Show("tklSystemDir", lib.tklSystemDir());
  Show("tklTempDir", lib.tklTempDir());
  Show("tklRegKey", lib.tklRegKey());
  Show("current folder", CurrentFolder());
  std::cout << "  drives:";
  for (const auto& [letter, root] : DriveRoots()) {
    std::cout << ' ' << static_cast<char>(letter) << ":=" << root;
  }
  std::cout << "  (NORVIK50_DRIVES=\"C=/srv/c\" adds more)\n";

  Heading("Paths");
  Show("tklGetFullPath(C:\\Temp\\, \\x.LOG)", lib.tklGetFullPath(u"C:\\Temp\\", u"\\x.LOG"));
  typFileInfo info;
  lib.tklSeparateFile(u"c:\\data\\report.final.txt", info);
  std::cout << "  tklSeparateFile(c:\\data\\report.final.txt): drive " << ToUtf8(info.lpDrive)
            << ", path " << ToUtf8(info.lpPath) << ", name " << ToUtf8(info.lpFilename)
            << ", ext " << ToUtf8(info.lpExt) << '\n';
  std::cout << "  tklPathExists(tklTempDir) = " << lib.tklPathExists(lib.tklTempDir())
            << " (the folder attribute, not True)\n";

  Heading("The log");
  lib.tklLogAction(u"The tour wrote this line.");
  lib.tklLogError(13, u"Type mismatch", u"LIB:tkrSetValue()");
  PrintLog(lib);

  Heading("Calls by name (the batch protocol)");
  ShowCall(lib, R"({"id":1,"member":"tklGetFullPath","args":["C:\\Temp","x.LOG"]})");
  ShowCall(lib, R"({"id":2,"member":"tklSeparateFile","args":["readme",{"vt":"Record","type":"typFileInfo","v":{}}]})");
  ShowCall(lib, R"({"id":3,"member":"tklRegKey","let":true,"args":["SOFTWARE\\Demo"]})");
  ShowCall(lib, R"({"id":4,"member":"tklRegKey"})");
  ShowCall(lib, R"({"id":5,"member":"tklNoSuchMember"})");

  lib.tklRegKey(u"");

  Heading("Text: quote-aware search and replace");
  ShowCalls(lib, {
      R"({"id":10,"member":"tklFindSubString","args":["x AND y OR z","OR|AND",1,true,true,true,""]})",
      R"({"id":11,"member":"tklFindSubString","args":["ANDx","AND",1,true,true,true]})",
      R"({"id":12,"member":"tklReplaceInString","args":["a \"b\" b","b","c"]})",
      R"({"id":13,"member":"tklReplaceInString","args":["Abc abc","ABC","x",1,false]})",
      R"({"id":14,"member":"tklCountSubStringExt","args":["a 'a' a","a",1,true,"''"]})",
      R"({"id":15,"member":"tklSeparateString","args":["a+b-c","-|+","","",""]})",
  });

  Heading("Numbers: German and English conventions");
  for (const char* tag : {"de-DE", "en-US"}) {
    SetCurrentLocale(tag);
    std::cout << "  locale " << tag << '\n';
    ShowCalls(lib, {
        R"({"id":20,"member":"tklVal","args":["EUR 1.234,56"]})",
        R"({"id":21,"member":"tklCVal","args":[5,"1,234.5"]})",
        R"({"id":22,"member":"tklRound","args":[{"vt":"Double","v":-0.125},2]})",
        R"({"id":23,"member":"tklSQLDouble","args":[{"vt":"Double","v":1234.5}]})",
    });
  }
  SetCurrentLocale(locale_tag);
  ShowCalls(lib, {
      R"({"id":24,"member":"tklSQLDate","args":[{"vt":"Date","v":"2024-03-05T14:07:09"},true]})",
      R"({"id":25,"member":"tklSQLFilter","args":[{"vt":"Array","lb":0,"v":["Name","Meier","Aktiv",true,"Betrag",12.5,"Datum",{"vt":"Date","v":"2024-03-05T00:00:00"}]}]})",
      R"({"id":26,"member":"tklHexToDec","args":["FFFFFFFF"]})",
      R"({"id":27,"member":"tklBruchrechnung","args":[0.75,0,0]})",
  });

  Heading("LZW codec");
  if (Members().Has("tklGlobalVar")) {
    const std::u16string text =
        u"Rechnung 4711, Rechnung 4712, Rechnung 4713, Rechnung 4714, Rechnung 4715";
    const Variant packed = lib.tklGlobalVar(u"DEFLATE", Variant(text));
    const Variant unpacked = lib.tklGlobalVar(u"INFLATE", packed);
    std::cout << "  DEFLATE: " << text.size() << " characters -> "
              << packed.as_string().size() << "; INFLATE gives the text back: "
              << (unpacked.as_string() == text ? "yes" : "NO") << '\n';
    ShowCall(lib, R"({"id":30,"member":"tklGlobalVar","args":["deflate","a"]})");
  }

  Heading("Settings store (registry semantics on SQLite)");
  std::cout << "  store folder: " << registry_dir << '\n';
  ShowCalls(lib, {
      R"({"id":40,"member":"tkrGetLong","args":[-2147483647,"SOFTWARE\\Demo","Width",5,true]})",
      R"({"id":41,"member":"tkrSetValue","args":[-2147483647,"SOFTWARE\\Demo","Ratio",{"vt":"Double","v":2.5}]})",
      R"({"id":42,"member":"tkrGetString","args":[-2147483647,"software\\demo","RATIO"]})",
      R"({"id":43,"member":"tkrSubKeyCount","args":[-2147483647,"SOFTWARE\\Demo"]})",
  });

  std::cout << "\n" << Members().members().size() << " members answer by name; "
            << "try: norvik50 call tklGetFullPath 'C:\\Temp' x.LOG\n";
}

}  // namespace

void AddDemoCommand(CLI::App& app) {
  app.add_subcommand("demo", "A short tour of the library")->callback(RunDemo);
}

}  // namespace norvik50::cli
