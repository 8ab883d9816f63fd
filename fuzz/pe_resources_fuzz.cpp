// libFuzzer target for the PE resource reader. Each input is taken as a
// whole resource library: parsing, every lookup a resource member makes
// (strings in several slots and languages, custom resources by name and by
// number) and the full listing must end without reading outside the input.
// Whatever a lookup returns must lie within the input.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "resources/pe_image.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

constexpr std::array<uint16_t, 3> kLanguages{0x0000, 0x0407, 0x0409};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  namespace pe = norvik50::pe;
  const std::span<const uint8_t> bytes(data, size);
  const auto image = pe::PeImage::Parse(bytes);
  if (!image) return 0;
  for (uint16_t id : {0, 1, 15, 16, 100, 200, 65535}) {
    image->FindString(id, kLanguages);
    image->FindString(id, {});
  }
  const pe::ResourceId types[] = {
      {6, {}}, {10, {}}, {std::nullopt, u"XML"}, {std::nullopt, u"FORMS"}};
  const pe::ResourceId names[] = {{1, {}}, {7, {}}, {100, {}}, {std::nullopt, u"MAIN"}};
  for (const auto& type : types) {
    for (const auto& name : names) {
      const auto found = image->Find(type, name, kLanguages);
      if (found) Check(found->data() >= data && found->data() + found->size() <= data + size);
    }
  }
  // Every listed resource can be looked up again. Its size may differ: a
  // damaged directory can hold two entries of one id, and the lookup, like
  // the loader's, finds whichever its search meets.
  for (const auto& entry : image->List()) {
    const auto found =
        image->Find(entry.type, entry.name, std::span<const uint16_t>(&entry.language, 1));
    if (found) Check(found->data() >= data && found->data() + found->size() <= data + size);
  }
  return 0;
}
