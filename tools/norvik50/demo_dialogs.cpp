#include "demo_dialogs.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <nlohmann/json.hpp>

#include "dialog_choice.h"
#include "norvik50/host.h"

namespace norvik50::cli {
namespace {

Variant Text(const char16_t* text) { return Variant(std::u16string(text)); }

// One line of the dialog log as a person reads it: the form, what happened,
// its title, and what it answered or showed.
std::string Readable(const std::string& line) {
  const nlohmann::json entry = nlohmann::json::parse(line, nullptr, false);
  if (!entry.is_object()) return line;
  const auto text = [&](const char* key) { return entry.value(key, std::string()); };
  std::string out = text("form");
  if (entry.contains("event")) out += " " + text("event");
  out += ", title \"" + text("title") + "\"";
  if (entry.contains("value")) out += ", value \"" + text("value") + "\"";
  if (entry.contains("counter")) {
    out += ", counter " + std::to_string(entry.value("counter", 0)) + " of " +
           std::to_string(entry.value("counterMax", 0));
  } else {
    out += ", answer " + std::to_string(entry.value("answer", 0));
  }
  return out;
}

// One answer per modal dialog, in the order the step opens them.
constexpr const char* kScript =
    R"({"text":"K-1017-XYZ","click":"OK"})"
    "\n"
    R"({"click":2})"
    "\n";

}  // namespace

void DialogsStep(Tour& tour) {
  const std::filesystem::path folder = std::filesystem::path(tour.folder) / "dialogs";
  std::filesystem::create_directories(folder);
  const std::string script = (folder / "script.jsonl").string();
  const std::string log = (folder / "dialogs.jsonl").string();
  std::ofstream(script, std::ios::binary | std::ios::trunc) << kScript;
  std::ofstream(log, std::ios::binary | std::ios::trunc);
  // The forms stay invisible even on a desktop: the script answers them.
  setenv("NORVIK50_DIALOG_SCRIPT", script.c_str(), 1);
  setenv("NORVIK50_DIALOG_LOG", log.c_str(), 1);
  const bool qt = InstallOffscreenDialogs();
  Step("Dialogs",
       qt ? "Real Qt forms on the offscreen platform, answered by a dialog script as tests do."
          : "This build has no Qt dialogs: every dialog answers at once as one that failed.");

  ShowCall(tour, "tklInputValue",
           {Text(u"Customer number:"), Text(u"08|Customer"), Text(u""), Text(u"")},
           qt ? "1" : "2");
  if (qt) Note("the script typed K-1017-XYZ; the title's \"08|\" let the box take 8 characters");
  ShowCall(tour, "tklMsgBox",
           {Text(u"Save the changes?"), Text(u"Invoice 2024-117 was changed."),
            Variant(int32_t{4 + 32}), Text(u"Tour")},
           qt ? "7" : "10");
  if (qt) Note("the script clicked the second button, No (7); captions in the current language");
  ShowCall(tour, "tklSendMessage",
           {Text(u"Posting invoices ..."), Text(u"Tour"), Variant(true), Variant(150.4),
            Variant(int32_t{100})});
  Note("a counter past the maximum raises the bar's maximum to it; both come back as Longs");
  ShowCall(tour, "tklClearMessage", {});

  if (qt) {
    std::ifstream lines(log, std::ios::binary);
    std::cout << "   The dialog log (NORVIK50_DIALOG_LOG, JSON lines), read aloud:\n";
    std::string read_aloud;
    for (std::string line; std::getline(lines, line);) {
      read_aloud += Readable(line) + "\n";
      std::cout << "     | " << Readable(line) << '\n';
    }
    Expect(tour, "the dialog log", read_aloud,
           "frmInput, title \"Customer\", value \"K-1017-X\", answer 1\n"
           "frmStdMsg, title \"Tour\", answer 7\n"
           "frmMessage shown, title \"Tour\", counter 150 of 150\n"
           "frmMessage unloaded, title \"Tour\", counter 150 of 150\n");
    std::cout << "   norvik50 demo --gallery DIR draws every form in German and English.\n";
  }
  unsetenv("NORVIK50_DIALOG_SCRIPT");
  unsetenv("NORVIK50_DIALOG_LOG");
  SetUserInterface(nullptr);
}

}  // namespace norvik50::cli
