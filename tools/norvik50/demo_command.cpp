// The tour: what the library does, shown by calling it by name as a host
// would. One function per step; a new step is a function and a line in
// kSteps.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "batch.h"
#include "commands.h"
#include "demo_dialogs.h"
#include "demo_resources.h"
#include "demo_tour.h"
#include "dialog_choice.h"
#include "json_line.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/locale.h"
#include "numeric/format.h"
#include "variant_literal.h"

namespace norvik50::cli {
namespace {

const Variant kCurrentUser(int32_t{-2147483647});  // HKEY_CURRENT_USER

Variant Text(const char16_t* text) { return Variant(std::u16string(text)); }
Variant Long(int32_t value) { return Variant(value); }
Variant Dbl(double value) { return Variant(value); }

void FoldersStep(Tour& tour) {
  Step("Folders and drives",
       "Hosts keep Windows paths; drive letters map to Linux folders (Z: is /).");
  const auto windows = ShowCall(tour, "tklSystemDir", {});
  const auto windows_folder = windows ? ToLinuxPath(windows->as_string()) : std::nullopt;
  if (!windows_folder || !std::filesystem::is_directory(*windows_folder)) {
    Note("not there yet: cmake --install creates it; NORVIK50_WINDIR names another folder");
  }
  ShowCall(tour, "tklTempDir", {});
  Note("always with one trailing backslash");
  ShowCall(tour, "tklRegKey", {}, R"("SOFTWARE\VANTEX\Global")");
  std::cout << "   drives:";
  for (const auto& [letter, root] : DriveRoots()) {
    std::cout << ' ' << static_cast<char>(letter) << ": = " << root;
  }
  std::cout << "   (NORVIK50_DRIVES=\"C=/srv/c\" adds more)\n";
}

void PathsStep(Tour& tour) {
  Step("Paths", "Joined and split by Windows rules, whatever the Linux folder looks like.");
  ShowCall(tour, "tklGetFullPath", {Text(u"C:\\Temp\\"), Text(u"\\x.LOG")}, R"("C:\Temp\x.LOG")");
  Note("exactly one backslash between folder and name");
  ShowCall(tour, "tklSeparateFile",
           {Text(u"c:\\data\\report.final.txt"), Variant(Record("typFileInfo", {}))}, "True");
  ShowCall(tour, "tklPathExists", {Variant(tour.lib.tklTempDir())}, "16");
  Note("16 is the folder attribute: hosts test for non-zero, not for True");
}

void TextStep(Tour& tour) {
  Step("Text: quote-aware search and replace",
       "Alternatives are separated by |; whole-word matching; text in quotes is skipped.");
  ShowCall(tour, "tklFindSubString",
           {Text(u"x AND y OR z"), Text(u"OR|AND"), Long(1), Variant(true), Variant(true),
            Variant(true), Text(u"")},
           "3");
  ShowCall(tour, "tklFindSubString",
           {Text(u"ANDx"), Text(u"AND"), Long(1), Variant(true), Variant(true), Variant(true)},
           "1");
  Note(
      "intended: a single character after the match is not tested, so ANDx counts as the "
      "whole word AND");
  ShowCall(tour, "tklFindSubString",
           {Text(u"xANDy"), Text(u"AND"), Long(1), Variant(true), Variant(true), Variant(true)},
           "0");
  ShowCall(tour, "tklReplaceInString", {Text(u"a \"b\" b"), Text(u"b"), Text(u"c")},
           R"("a ""b"" c")");
  Note("the quoted b stays");
  ShowCall(tour, "tklCountSubStringExt",
           {Text(u"a 'a' a"), Text(u"a"), Long(1), Variant(true), Text(u"''")}, "2");
  ShowCall(tour, "tklSeparateString",
           {Text(u"a+b-c"), Text(u"-|+"), Text(u""), Text(u""), Text(u"")});
}

void NumbersStep(Tour& tour) {
  Step("Numbers: German and English conventions",
       "Texts become numbers with the current locale's separators, so one call can differ.");
  for (const char* tag : {"de-DE", "en-US"}) {
    SetCurrentLocale(tag);
    const bool german = std::string(tag) == "de-DE";
    std::cout << "   in " << tag << ":\n";
    ShowCall(tour, "tklVal", {Text(u"EUR 1.234,56")}, german ? "1234.56" : "1.23456");
    if (!german) {
      Note(
          "intended: in English \".\" is the decimal point and \",\" a thousands separator "
          "to skip, so the digits read as 1.23456");
    }
    ShowCall(tour, "tklCVal", {Long(5), Text(u"1,234.5")}, german ? "1.2345" : "1234.5");
    if (german) {
      Note(
          "type 5 is Double; in German \",\" is the decimal separator and \".\" groups "
          "thousands");
    }
    ShowCall(tour, "tklSQLDouble", {Dbl(1234.5)}, R"("1234.5")");
  }
  SetCurrentLocale(tour.locale_tag);
  std::cout << "   in any locale:\n";
  ShowCall(tour, "tklRound", {Dbl(-0.125), Long(2)}, "-0.13");
  Note("half away from zero, on the decimal digits");
  ShowCall(tour, "tklHexToDec", {Text(u"FFFFFFFF")}, "-1");
  Note("32-bit: FFFFFFFF is -1");
  ShowCall(tour, "tklBruchrechnung", {Dbl(0.75), Long(0), Long(0)});
}

void FormatStep(Tour& tour) {
  Step("The Format engine", "Patterns as hosts write them, in the current locale (" +
                                tour.locale_tag +
                                "); rounding, SQL dates and the settings store use it.");
  const Variant date(*Date::ParseIso("2024-03-05T14:07:09"));
  const std::pair<Variant, const char16_t*> samples[] = {
      {Dbl(1234.5), u"#,##0.00"},  {Dbl(0.125), u"0.0%"},        {Dbl(-2.5), u"0;(0);\"zero\""},
      {Dbl(0), u"0;(0);\"zero\""}, {Dbl(1234.5), u"Currency"},   {date, u"dd.mm.yyyy hh:nn"},
      {date, u"Long Date"},        {date, u"ddd, d. mmmm yyyy"},
  };
  for (const auto& [value, pattern] : samples) {
    std::cout << "   Format(" << Literal(value) << ", " << Literal(Variant(std::u16string(pattern)))
              << ") = " << Literal(Variant(FormatValue(value, pattern))) << '\n';
  }
}

void SqlStep(Tour& tour) {
  Step("SQL literals", "Values written for a SQL text, the same in every locale.");
  const Variant date(*Date::ParseIso("2024-03-05T14:07:09"));
  ShowCall(tour, "tklSQLDate", {date, Variant(true)},
           R"x("CONVERT(DATETIME, '2024-03-05 14:07:09', 102)")x");
  ShowCall(tour, "tklSQLFilter",
           {Variant(SafeArray(0, {Text(u"Name"), Text(u"Meier"), Text(u"Aktiv"), Variant(true),
                                  Text(u"Betrag"), Dbl(12.5)}))},
           R"("Name=""Meier"" AND Aktiv=TRUE AND Betrag=12.5")");
}

void LzwStep(Tour& tour) {
  Step("LZW codec",
       "tklGlobalVar(\"DEFLATE\", text) packs a text into byte characters; INFLATE unpacks it.");
  const Variant text(u"Rechnung 4711, Rechnung 4712, Rechnung 4713, Rechnung 4714");
  const Variant packed = tour.lib.tklGlobalVar(u"DEFLATE", text);
  const std::string bytes = TextToBytesLossy(packed.as_string());
  std::cout << "   tklGlobalVar(\"DEFLATE\", " << Literal(text) << ")\n"
            << "      = " << bytes.size() << " bytes for " << text.as_string().size()
            << " characters:\n        " << HexBytes(bytes) << '\n';
  const Variant unpacked = tour.lib.tklGlobalVar(u"INFLATE", packed);
  std::cout << "   tklGlobalVar(\"INFLATE\", those bytes) = " << Literal(unpacked) << '\n';
  Expect(tour, "INFLATE", Literal(unpacked), Literal(text));
}

void SettingsStep(Tour& tour) {
  Step("Settings store",
       "Registry semantics on SQLite: names ignore case, values keep their type. This tour's "
       "store: " +
           tour.folder + "/registry");
  tour.lib.tkrDeleteKey(kCurrentUser.as_long(), u"SOFTWARE\\Demo", false);  // a fresh start
  ShowCall(tour, "tkrSetValue", {kCurrentUser, Text(u"SOFTWARE\\Demo"), Text(u"Ratio"), Dbl(2.5)},
           "True");
  Note("-2147483647 is HKEY_CURRENT_USER");
  ShowCall(tour, "tkrGetString", {kCurrentUser, Text(u"software\\demo"), Text(u"RATIO")},
           "\"2" + ToUtf8(std::u16string(1, CurrentLocale().decimal)) + "50\"");
  Note(
      "another spelling of the same key and value; a Double is stored as text with two "
      "decimals in the locale's form");
  ShowCall(tour, "tkrGetLong",
           {kCurrentUser, Text(u"SOFTWARE\\Demo"), Text(u"Width"), Long(5), Variant(true)}, "5");
  Note("missing: the default 5, stored because bWriteBack is True");
  ShowCall(tour, "tkrSubKeyCount", {kCurrentUser, Text(u"SOFTWARE\\Demo")}, "1");
  Note("intended: the count includes the key itself, so a key without sub-keys gives 1");
}

void DesignedHereStep(Tour& tour) {
  Step("Members designed here",
       "Members a ported host calls whose behaviour this library defines (README: Members "
       "designed here).");
  ShowCall(tour, "tklReplaceInStringExt",
           {Text(u"f(a) + a"), Text(u"a"), Text(u"b"), Long(1), Variant(false), Variant(false),
            Variant(false), Variant(false), Variant(false), Text(u"()")},
           R"("f(a) + b")");
  Note("the a inside the bracket pair of sNotInSigns stays");
  ShowCall(tour, "tklSeparateFunction",
           {Text(u"Round(a, Format(x, \"a,b\"))"), Text(u""), Variant()}, "True");
  Note("a nested call and a quoted comma stay inside their argument");
  ShowCall(tour, "tklGetRelativePath",
           {Text(u"C:\\Data\\Reports\\q1.txt"), Text(u"c:\\data\\archive")},
           R"("..\Reports\q1.txt")");
  ShowCall(tour, "tklGetAbsolutePath", {Text(u"..\\Reports\\q1.txt"), Text(u"C:\\Data\\Archive")},
           R"("C:\Data\Reports\q1.txt")");
  const std::optional<Variant> sealed = ShowCall(tour, "tklEncryptedValue", {Text(u"Kennwort 42")});
  Note("a fresh nonce every time; the key lives beside this user's settings store");
  if (sealed) ShowCall(tour, "tklDecryptedValue", {*sealed}, R"("Kennwort 42")");
}

void LogStep(Tour& tour) {
  Step("The log",
       "Each LIB object starts nvk50err.LOG in the temporary folder afresh; lines are stamped.");
  ShowCall(tour, "tklLogAction", {Text(u"The tour wrote this line.")});
  ShowCall(tour, "tklLogError",
           {Long(13), Text(u"Type mismatch"), Text(u"LIB:tkrSetValue()"), Variant(false)});
  Note("written on purpose to show an error line; nothing failed");
  const auto path = ToLinuxPath(tour.lib.tklGetFullPath(tour.lib.tklTempDir(), u"nvk50err.LOG"));
  std::ifstream log(path.value_or(""), std::ios::binary);
  std::cout << "   " << path.value_or("?") << ":\n";
  std::string lines;
  for (std::string line; std::getline(log, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::string text = ToUtf8(BytesToText(line));
    std::cout << "     | " << text << '\n';
    // What each line says, without its time stamp.
    for (const char* said : {"initialized.", "Res_FR.dll", "The tour wrote", "ERR=13"}) {
      if (text.find(said) != std::string::npos)
        lines += (lines.empty() ? "" : ", ") + std::string(said);
    }
  }
  Expect(tour, "the log", lines, "initialized., Res_FR.dll, The tour wrote, ERR=13");
}

void BatchStep(Tour& tour) {
  Step("Calls by name from any language",
       "norvik50 batch reads one JSON request per line and writes one JSON answer per line:");
  const std::pair<const char*, const char*> exchanges[] = {
      {R"({"id":1,"member":"tklGetFullPath","args":["C:\\Temp","x.LOG"]})",
       R"({"id":1,"ok":true,"result":{"vt":"String","v":"C:\\Temp\\x.LOG"}})"},
      {R"({"id":2,"member":"tklRound","args":[{"vt":"Double","v":2.675},2]})",
       R"({"id":2,"ok":true,"result":{"vt":"Double","v":2.68}})"},
      {R"({"id":3,"member":"tklNoSuchMember"})",
       R"({"id":3,"ok":false,"error":{"number":438,"description":"Object doesn't support this )"
       R"(property or method","source":"Norvik50"}})"},
      {R"({"id":4,"member":"tklGetSemiTransparentPicture","args":[{"vt":"Object","type":"Picture",)"
       R"("v":{"width":2,"height":1,"pixels":["FFFF0000","FF0000FF"]}},50]})",
       R"({"id":4,"ok":true,"result":{"vt":"Object","type":"Picture","v":{"width":2,"height":1,)"
       R"("pixels":["80FF0000","800000FF"]}}})"},
  };
  for (const auto& [request, expected] : exchanges) {
    const std::string answer = WriteJsonLine(AnswerRequest(tour.lib, request));
    std::cout << "   > " << request << '\n' << "   < " << answer << '\n';
    Expect(tour, "the answer", answer, expected);
  }
}

using StepFunction = void (*)(Tour&);
constexpr StepFunction kSteps[] = {
    FoldersStep,  PathsStep,     TextStep,    NumbersStep,      FormatStep, SqlStep,  LzwStep,
    SettingsStep, ResourcesStep, DialogsStep, DesignedHereStep, LogStep,    BatchStep};

// Everything the tour writes (settings, log, resource libraries, dialog
// files) lies in a folder of its own run, so that runs by other users or at
// the same time never meet; the folder goes when the tour ends.
class TourFolder {
 public:
  TourFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "norvik50-demo-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) return;
    path_ = pattern;
    std::filesystem::create_directory(path_ + "/registry");
    setenv("NORVIK50_REGISTRY_DIR", (path_ + "/registry").c_str(), 1);
    // The log goes to the temporary folder: this one, for the tour.
    setenv("TMPDIR", path_.c_str(), 1);
  }
  ~TourFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TourFolder(const TourFolder&) = delete;
  TourFolder& operator=(const TourFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

void RunDemo() {
  std::cout << "norvik50 " << NORVIK50_VERSION
            << ": a function library for desktop business applications.\n"
            << "Locale " << CurrentLocale().tag
            << " (NORVIK50_LOCALE changes it). Every call below goes by name through the\n"
               "dispatch, as `norvik50 call` and `norvik50 batch` do.\n";
  const TourFolder folder;
  if (folder.path().empty()) {
    std::cerr << "norvik50 demo: cannot make a folder for the tour in "
              << std::filesystem::temp_directory_path().string() << ": " << std::strerror(errno)
              << '\n';
    ExitCode() = 1;
    return;
  }
  std::cout << "This tour's settings, log and files: " << folder.path()
            << " (removed at the end).\n";
  int unexpected = 0;
  {
    LIB lib;
    Tour tour{lib, folder.path(), CurrentLocale().tag};
    for (const StepFunction step : kSteps) step(tour);
    unexpected = tour.unexpected;
  }
  std::cout << "\n"
            << Members().members().size()
            << " member forms answer by name. Next:\n"
               "   norvik50 members tkr                          the settings members and their "
               "arguments\n"
               "   norvik50 call tklVal --help                   one member\n"
               "   norvik50 call tklGetFullPath 'C:\\Temp' x.LOG  one call\n";
  if (unexpected > 0) {
    std::cerr << "norvik50 demo: " << unexpected
              << " answers were not the ones the tour expects (the lines marked !! above)\n";
    ExitCode() = 1;
  }
}

}  // namespace

void AddDemoCommand(CLI::App& app) {
  CLI::App* demo = app.add_subcommand("demo", "A short tour of the library");
  auto gallery = std::make_shared<std::string>();
  demo->add_option("--gallery", *gallery,
                   "Render every dialog in German and English to PNG files in DIR");
  auto libraries = std::make_shared<std::string>();
  demo->add_option("--libraries", *libraries,
                   "Write the tour's resource libraries Res_DE.dll and Res_EN.dll to DIR");
  demo->callback([gallery, libraries] {
    if (!libraries->empty()) {
      ExitCode() = WriteTourLibraries(*libraries) ? 0 : 1;
      if (ExitCode() == 0) std::cout << "Res_DE.dll and Res_EN.dll in " << *libraries << '\n';
    } else if (!gallery->empty()) {
      ExitCode() = RunDialogGallery(*gallery);
    } else {
      RunDemo();
    }
  });
}

}  // namespace norvik50::cli
