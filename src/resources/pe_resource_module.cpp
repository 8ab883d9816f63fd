// The native resource-library reader behind the ResourceModule seam, and
// the process's opener.
#include <optional>

#include "norvik50/host.h"
#include "norvik50/locale.h"
#include "norvik50/resource_module.h"
#include "resources/file_image_bytes.h"
#include "resources/pe_image.h"
#include "resources/resource_languages.h"

namespace norvik50 {
namespace {

// The locale seldom changes between the opens of a resource library;
// asking ICU for its Windows id once per change keeps opening cheap.
const std::vector<uint16_t>& LanguagesForCurrentLocale() {
  thread_local std::string tag;
  thread_local std::vector<uint16_t> languages;
  const std::string& current = CurrentLocale().tag;
  if (languages.empty() || tag != current) {
    tag = current;
    languages = PreferredResourceLanguages(current);
  }
  return languages;
}

class PeResourceModule final : public ResourceModule {
 public:
  explicit PeResourceModule(pe::PeImage image)
      : image_(std::move(image)), languages_(LanguagesForCurrentLocale()) {}

  std::optional<std::u16string> FetchString(uint16_t id) override {
    return image_.FindString(id, languages_);
  }

  std::optional<std::string> FetchResource(std::u16string_view type,
                                           std::u16string_view name) override {
    const auto type_id = pe::ParseResourceId(type);
    const auto name_id = pe::ParseResourceId(name);
    if (!type_id || !name_id) return std::nullopt;
    const auto data = image_.Find(*type_id, *name_id, languages_);
    if (!data) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data->data()), data->size());
  }

 private:
  pe::PeImage image_;  // holds the open file it reads from
  std::vector<uint16_t> languages_;
};

ResourceModuleOpener& InstalledOpener() {
  static ResourceModuleOpener opener;
  return opener;
}

}  // namespace

ResourceModule::~ResourceModule() = default;

std::unique_ptr<ResourceModule> OpenPeResourceModule(const std::string& linux_path) {
  auto file = FileImageBytes::Open(linux_path);
  if (!file) return nullptr;
  auto image = pe::PeImage::Parse(std::move(file));
  if (!image) return nullptr;
  return std::make_unique<PeResourceModule>(std::move(*image));
}

std::unique_ptr<ResourceModule> OpenResourceModule(std::u16string_view path) {
  if (const ResourceModuleOpener& opener = InstalledOpener()) return opener(path);
  const auto linux_path = ToLinuxPath(path);
  if (!linux_path) return nullptr;
  return OpenPeResourceModule(*linux_path);
}

void SetResourceModuleOpener(ResourceModuleOpener opener) { InstalledOpener() = std::move(opener); }

}  // namespace norvik50
