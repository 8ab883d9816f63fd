// tklRes and tklResource on real resource libraries behind the drive map,
// with every report of their failures.
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <future>

#include "norvik50/resource_module.h"
#include "norvik50/xml.h"
#include "resources/resource_test_support.h"

namespace norvik50 {
namespace {

using testing::ResourceMachineTest;

class ResourceMembersTest : public ResourceMachineTest {
 protected:
  void SetUp() override { SetMachineValue(u"ResourceDLL", u"C:\\App\\Res_%L.dll"); }
  // No library configured; the file dialog will answer `choice`.
  void PromptWith(int32_t language, std::u16string choice) {
    lib_.tkrSetValue(HKEY_LOCAL_MACHINE, lib_.tklRegKey(), u"ResourceDLL", Variant(u""));
    SetLanguage(language);
    ui_->file_choice = std::move(choice);
  }
  std::u16string MachineValue(std::u16string_view name) {
    return lib_.tkrGetString(HKEY_LOCAL_MACHINE, lib_.tklRegKey(), name, u"<absent>");
  }
};

TEST_F(ResourceMembersTest, StringsOfTheCurrentLanguagesLibrary) {
  SetLanguage(LANG_GERMAN);
  EXPECT_EQ(lib_.tklRes(100), u"Größe ändern");  // PE32+
  EXPECT_EQ(lib_.tklRes(65535), u"Letzte Zeichenkette");
  EXPECT_EQ(lib_.tklRes(100 + 65536), u"Größe ändern");  // the id's low 16 bits
  SetLanguage(LANG_ENGLISH);
  EXPECT_EQ(lib_.tklRes(100), u"Change size");  // PE32
  EXPECT_EQ(lib_.tklRes(17), u"Seventeen");
  // Absent strings are "" and report nothing.
  EXPECT_EQ(lib_.tklRes(101), u"");
  EXPECT_EQ(lib_.tklRes(1000), u"");
  EXPECT_TRUE(LoggedErrors().empty());
  EXPECT_TRUE(ui_->messages.empty());
}

TEST_F(ResourceMembersTest, AMissingLibraryIsReportedWithAMessageBox) {
  SetLanguage(LANG_FRENCH);
  EXPECT_EQ(lib_.tklRes(100), u"");
  ASSERT_EQ(LoggedErrors().size(), 1u);
  EXPECT_EQ(LoggedErrors()[0],
            "ERR=-2147221504 'LoadLibrary 'C:\\App\\Res_FR.dll' failed.' (Source=Norvik50.tklRes)");
  ASSERT_EQ(ui_->messages.size(), 1u);
  EXPECT_EQ(
      ui_->messages[0],
      u"Runtime error '&H80040000':|LoadLibrary 'C:\\App\\Res_FR.dll' failed.|Norvik50.tklRes");
}

TEST_F(ResourceMembersTest, ADamagedLibraryFailsToLoad) {
  WriteFile("c/App/Res_IT.dll", "MZ this is no image");
  SetLanguage(LANG_ITALIC);
  EXPECT_EQ(lib_.tklRes(100), u"");
  EXPECT_EQ(lib_.tklResource(100, u"XML"), u"");
  EXPECT_EQ(LoggedErrors().size(), 2u);  // the file exists: no 53
}

TEST_F(ResourceMembersTest, AnAbsentResourceDllValueIsCreatedEmpty) {
  lib_.tkrSetValue(HKEY_LOCAL_MACHINE, lib_.tklRegKey(), u"ResourceDLL", Variant(u"-"));
  SetLanguage(LANG_GERMAN);
  EXPECT_EQ(lib_.tklRes(100), u"");
  EXPECT_EQ(MachineValue(u"ResourceDLL"), u"");
  EXPECT_EQ(LoggedErrors().at(0),
            "ERR=-2147221504 'LoadLibrary '' failed.' (Source=Norvik50.tklRes)");
}

TEST_F(ResourceMembersTest, CustomResourcesAsText) {
  SetLanguage(LANG_GERMAN);
  // The BOM before the document goes; the bytes are Windows-1252 text.
  const std::u16string form = lib_.tklResource(100, u"XML");
  EXPECT_EQ(form.substr(0, 11), u"<resources>");
  EXPECT_NE(form.find(u"Übersicht"), std::u16string::npos);
  EXPECT_EQ(lib_.tklResource(101, u"XML"), u"<def>");  // abc<def>
  EXPECT_EQ(lib_.tklResource(101, u"xml"), u"<def>");  // types in upper case
  EXPECT_EQ(lib_.tklResource(999, u"XML"), u"");
  EXPECT_EQ(lib_.tklResource(100, u"RTF"), u"");
  EXPECT_TRUE(LoggedErrors().empty());
}

TEST_F(ResourceMembersTest, DebugFileReplacesTheLibrary) {
  SetLanguage(LANG_GERMAN);
  WriteFile("c/Dev/form_DE.xml", "lead-in <doc a=\"\xE4\"/>");
  SetMachineValue(u"DebugXML_100", u"C:\\Dev\\form_%L.xml");
  SetMachineValue(u"ResourceDLL", u"C:\\Nowhere\\Res_%L.dll");
  EXPECT_EQ(lib_.tklResource(100, u"XML"), u"<doc a=\"ä\"/>");
  EXPECT_TRUE(LoggedErrors().empty());
  // Other ids still go to the library.
  EXPECT_EQ(lib_.tklResource(101, u"XML"), u"");
  EXPECT_EQ(LoggedErrors().size(), 2u);
}

// `call` must come back within seconds; one that blocks ends the test
// program rather than hanging the whole run.
template <typename Call>
auto Promptly(Call call) {
  auto answer = std::async(std::launch::async, call);
  if (answer.wait_for(std::chrono::seconds(5)) != std::future_status::ready) {
    ADD_FAILURE() << "blocked";
    std::_Exit(1);
  }
  return answer.get();
}

// A stored path may name a FIFO that nobody writes or a device that never
// ends: the members answer as for an unreadable file, at once, and read
// nothing from the device.
TEST_F(ResourceMembersTest, FifosAndDevicesNeitherBlockNorExhaustMemory) {
  SetLanguage(LANG_GERMAN);
  ASSERT_EQ(::mkfifo(temp_.File("c/App/Pipe_DE.dll").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(temp_.File("c/App/form.xml").c_str(), 0600), 0);
  SetDriveRoot(u'D', "/dev");
  for (const char16_t* debug : {u"C:\\App\\form.xml", u"D:\\zero"}) {
    SetMachineValue(u"DebugXML_100", debug);
    EXPECT_EQ(Promptly([&] { return lib_.tklResource(100, u"XML"); }), u"");
  }
  SetMachineValue(u"DebugXML_100", u"");
  for (const char16_t* library : {u"C:\\App\\Pipe_%L.dll", u"D:\\zero"}) {
    SetMachineValue(u"ResourceDLL", library);
    EXPECT_EQ(Promptly([&] { return lib_.tklRes(100); }), u"") << ToUtf8(library);
  }
  for (const char16_t* document : {u"C:\\App\\form.xml", u"D:\\zero", u"D:\\null"}) {
    XmlDocument xml;
    EXPECT_FALSE(Promptly([&] { return xml.Load(document); })) << ToUtf8(document);
  }
  ClearDriveRoot(u'D');
}

TEST_F(ResourceMembersTest, AMissingFileIsReportedBeforeTheLoad) {
  SetLanguage(LANG_FRENCH);
  EXPECT_EQ(lib_.tklResource(100, u"XML"), u"");
  EXPECT_EQ(LoggedErrors(),
            (std::vector<std::string>{
                "ERR=53 'File not found ('C:\\App\\Res_FR.dll').' (Source=Norvik50.tklResource)",
                "ERR=-2147221504 'LoadLibrary 'C:\\App\\Res_FR.dll' failed.' "
                "(Source=Norvik50.tklResource)"}));
  // Only the load failure shows a message box.
  EXPECT_EQ(ui_->messages.size(), 1u);
}

TEST_F(ResourceMembersTest, PromptsForTheLibraryAndStoresItsPattern) {
  PromptWith(LANG_GERMAN, u"C:\\App\\Res_EN.dll");
  EXPECT_EQ(lib_.tklResource(101, u"XML"), u"<def>");
  EXPECT_EQ(MachineValue(u"ResourceDLL"), u"C:\\App\\Res_%L.dll");
  EXPECT_EQ(ui_->dialog,
            u"Resource Bibliothek (*.DLL)|*.DLL|Definieren Sie bitte den Standort der deutschen "
            u"Resource-DLL|4096||open");
}

TEST_F(ResourceMembersTest, AChosenFileWithoutACodeStoresNothing) {
  PromptWith(LANG_ENGLISH, u"C:\\App\\Res.dll");
  EXPECT_EQ(lib_.tklResource(100, u"XML"), u"");
  EXPECT_EQ(MachineValue(u"ResourceDLL"), u"");
  EXPECT_EQ(ui_->dialog.substr(0, 30), u"Resource Library (*.DLL)|*.DLL");
  const std::string not_found =
      "ERR=-2147221504 'Resourcefile entry 'ResourceDLL' in "
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\VANTEX\\Global not found.' (Source=Norvik50.tklResource)";
  EXPECT_EQ(LoggedErrors(), std::vector<std::string>{not_found});
  // Cancelling reports the same.
  ui_->file_choice.clear();
  EXPECT_EQ(lib_.tklResource(100, u"XML"), u"");
  EXPECT_EQ(LoggedErrors().size(), 2u);
}

// A host's own module source through the seam: the string goes through the
// ANSI code page and the 32767-character buffer as a native one does.
class TextModule : public ResourceModule {
 public:
  std::optional<std::u16string> FetchString(uint16_t id) override {
    if (id == 1) return u"Ω and €";
    if (id == 2) return std::u16string(40000, u'x');
    return std::nullopt;
  }
  std::optional<std::string> FetchResource(std::u16string_view, std::u16string_view) override {
    return std::nullopt;
  }
};

TEST_F(ResourceMembersTest, HostModulesPlugIn) {
  std::vector<std::u16string> opened;
  SetResourceModuleOpener([&](std::u16string_view path) -> std::unique_ptr<ResourceModule> {
    opened.emplace_back(path);
    return std::make_unique<TextModule>();
  });
  SetLanguage(LANG_ENGLISH);
  EXPECT_EQ(lib_.tklRes(1), u"? and €");
  EXPECT_EQ(lib_.tklRes(2).size(), 32766u);
  EXPECT_EQ(opened, (std::vector<std::u16string>{u"C:\\App\\Res_EN.dll", u"C:\\App\\Res_EN.dll"}));
  SetResourceModuleOpener(nullptr);
}

}  // namespace
}  // namespace norvik50

namespace norvik50 {
namespace {

// The machine-wide store as an ordinary user meets it: readable, every
// write refused (5).
class ReadOnlyMachineStore final : public RegistryStore {
 public:
  explicit ReadOnlyMachineStore(std::shared_ptr<RegistryStore> inner) : inner_(std::move(inner)) {}
  int32_t OpenKey(RegKey p, std::u16string_view s, int32_t a, RegKey& k) override {
    if (p == HKEY_LOCAL_MACHINE && (a & KEY_SET_VALUE)) return ++refused, ERROR_ACCESS_DENIED;
    return inner_->OpenKey(p, s, a, k);
  }
  int32_t CreateKey(RegKey p, std::u16string_view s, int32_t o, int32_t a, RegKey& k,
                    int32_t* d) override {
    if (p == HKEY_LOCAL_MACHINE) return ++refused, ERROR_ACCESS_DENIED;
    return inner_->CreateKey(p, s, o, a, k, d);
  }
  int32_t QueryValue(RegKey k, std::u16string_view n, std::size_t b, int32_t& t,
                     std::string& d) override {
    return inner_->QueryValue(k, n, b, t, d);
  }
  int32_t SetValue(RegKey k, std::u16string_view n, int32_t t, std::string_view d) override {
    return inner_->SetValue(k, n, t, d);
  }
  int32_t DeleteValue(RegKey k, std::u16string_view n) override {
    return inner_->DeleteValue(k, n);
  }
  int32_t EnumKey(RegKey k, uint32_t i, std::size_t b, std::u16string& n) override {
    return inner_->EnumKey(k, i, b, n);
  }
  int32_t EnumValue(RegKey k, uint32_t i, std::u16string& n, int32_t& t, std::string& d) override {
    return inner_->EnumValue(k, i, n, t, d);
  }
  int32_t DeleteKey(RegKey p, std::u16string_view s) override { return inner_->DeleteKey(p, s); }
  int32_t CloseKey(RegKey k) override { return inner_->CloseKey(k); }
  int refused = 0;

 private:
  std::shared_ptr<RegistryStore> inner_;
};

TEST_F(ResourceMembersTest, AMachineStoreThatRefusesWritesStillAnswers) {
  SetLanguage(LANG_GERMAN);
  auto store = std::make_shared<ReadOnlyMachineStore>(CurrentRegistryStore());
  SetRegistryStore(store);
  // "ResourceDLL" exists: read as it is.
  EXPECT_EQ(lib_.tklRes(100), u"Größe ändern");
  EXPECT_TRUE(ui_->messages.empty());
  // "DebugXML_100" is read without write-back, "ResourceDLL" with it: the
  // refused write of an absent value changes nothing the caller sees.
  SetRegistryStore(nullptr);
  lib_.tkrSetValue(HKEY_LOCAL_MACHINE, lib_.tklRegKey(), u"ResourceDLL", Variant(u"-"));
  SetRegistryStore(store);
  EXPECT_EQ(lib_.tklRes(100), u"");
  EXPECT_GT(store->refused, 0);
  ASSERT_EQ(ui_->messages.size(), 1u);  // the failed load, nothing about the store
  EXPECT_NE(ui_->messages[0].find(u"LoadLibrary ''"), std::u16string::npos);
  SetRegistryStore(nullptr);
}

}  // namespace
}  // namespace norvik50
