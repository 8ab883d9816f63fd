#include "demo_resources.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include "core/library_state.h"
#include "norvik50/host.h"
#include "norvik50/xml.h"

namespace norvik50::embedded {
extern const unsigned char kDemoResDe[];
extern const std::size_t kDemoResDe_size;
extern const unsigned char kDemoResEn[];
extern const std::size_t kDemoResEn_size;
}  // namespace norvik50::embedded

namespace norvik50::cli {
namespace {

// The tour's libraries lie in a folder of their own, reached as drive R:.
constexpr char16_t kDrive = u'R';

std::string PlaceLibraries(const std::string& tour_folder) {
  const std::filesystem::path folder = std::filesystem::path(tour_folder) / "resources";
  WriteTourLibraries((folder / "App").string());
  SetDriveRoot(kDrive, folder.string());
  return folder.string();
}

void SetLanguage(Tour& tour, int32_t id) {
  tour.lib.tkrSetValue(HKEY_CURRENT_USER, BaseKey(), u"Language", Variant(id));
}

}  // namespace

bool WriteTourLibraries(const std::string& folder) {
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  const struct {
    const char* name;
    const unsigned char* bytes;
    std::size_t size;
  } libraries[] = {{"Res_DE.dll", embedded::kDemoResDe, embedded::kDemoResDe_size},
                   {"Res_EN.dll", embedded::kDemoResEn, embedded::kDemoResEn_size}};
  for (const auto& library : libraries) {
    const std::filesystem::path file = std::filesystem::path(folder) / library.name;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(library.bytes),
              static_cast<std::streamsize>(library.size));
    if (!out.flush()) {
      std::cerr << "norvik50 demo: cannot write " << file.string() << '\n';
      return false;
    }
  }
  return true;
}

void ResourcesStep(Tour& tour) {
  Step("Languages and resources",
       "Texts live in Windows resource DLLs, one per language, read natively (no Windows layer).");
  const std::string folder = PlaceLibraries(tour.folder);
  std::cout << "   R: = " << folder << "  (Res_DE.dll is PE32+, Res_EN.dll PE32)\n";
  // Under the base key for the members, at the root for tklLanguages().
  for (const std::u16string& key : {BaseKey(), std::u16string()}) {
    tour.lib.tkrSetValue(HKEY_LOCAL_MACHINE, key, u"ResourceDLL", Variant(u"R:\\App\\Res_%L.dll"));
  }
  std::cout
      << "   ResourceDLL = R:\\App\\Res_%L.dll  (HKEY_LOCAL_MACHINE; %L is the language code)\n";
  ShowCall(tour, "tklLanguages", {}, R"(Array("1;Deutsch;DE", "2;English;EN"))");
  Note("the built-in languages whose library exists");
  SetLanguage(tour, 1);
  ShowCall(tour, "tklLanguage", {}, "1");
  ShowCall(tour, "tklRes", {Variant(int32_t{100})}, "\"Gr\u00f6\u00dfe \u00e4ndern\"");
  SetLanguage(tour, 2);
  ShowCall(tour, "tklLangCode", {}, R"("EN")");
  ShowCall(tour, "tklRes", {Variant(int32_t{100})}, R"("Change size")");
  Note("\"Language\" = 2 now: the same id comes from Res_EN.dll");
  ShowCall(tour, "tklResConv",
           {Variant(u"%s has %d lines"),
            Variant(SafeArray(0, {Variant(int32_t{42}), Variant(u"orders.csv")}))},
           R"("orders.csv has 42 lines")");
  Note("numbers fill %d, texts %s, whatever their order");
  const auto form = ShowCall(tour, "tklResource", {Variant(int32_t{100}), Variant(u"XML")});
  Expect(tour, "tklResource", form && form->is_string() ? "a text" : "", "a text");
  if (form && form->is_string()) {
    auto document = std::make_shared<XmlDocument>();
    document->LoadXml(form->as_string());
    ShowCall(tour, "tklXMLRes",
             {Variant(std::shared_ptr<HostObject>(document)), Variant(u"title")},
             R"("Overview")");
    Note("an item of the XML document the library carries as custom resource #100");
  }
  SetLanguage(tour, 3);
  ShowCall(tour, "tklRes", {Variant(int32_t{100})}, R"("")");
  Note("there is no Res_FR.dll: \"\", and the failed load is in the log");
  SetLanguage(tour, 1);
  ClearDriveRoot(kDrive);
}

}  // namespace norvik50::cli
