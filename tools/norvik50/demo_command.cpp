// The tour: what the library does, shown by calling it.
#include <fstream>
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

  for (const auto& [name, request] : std::vector<std::pair<std::string, std::string>>{
           {"tklFindSubString", R"({"id":6,"member":"tklFindSubString","args":["x AND y OR z","OR|AND",1,true,true,true,""]})"},
           {"tklReplaceInString", R"({"id":7,"member":"tklReplaceInString","args":["a \"b\" b","b","c"]})"},
           {"tklGlobalVar", R"({"id":8,"member":"tklGlobalVar","args":["DEFLATE","Hello, Hello, Hello"]})"},
       }) {
    if (Members().Has(name)) ShowCall(lib, request);
  }
  std::cout << "\n" << Members().members().size() << " members answer by name; "
            << "try: norvik50 call tklGetFullPath 'C:\\Temp' x.LOG\n";
}

}  // namespace

void AddDemoCommand(CLI::App& app) {
  app.add_subcommand("demo", "A short tour of the library")->callback(RunDemo);
}

}  // namespace norvik50::cli
