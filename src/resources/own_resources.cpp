#include "resources/own_resources.h"

#include <array>

#include "norvik50/encoding.h"

namespace norvik50::embedded {
extern const unsigned char kBuiltinResourcesXml[];
extern const std::size_t kBuiltinResourcesXml_size;
}  // namespace norvik50::embedded

namespace norvik50 {
namespace {

struct OwnResource {
  std::u16string_view type;
  int16_t id;
  const unsigned char* bytes;
  const std::size_t* size;
};

const std::array kOwnResources = {
    OwnResource{u"XML", 1, embedded::kBuiltinResourcesXml, &embedded::kBuiltinResourcesXml_size},
};

bool SameType(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    auto upper = [](char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - 32) : c; };
    if (upper(a[i]) != upper(b[i])) return false;
  }
  return true;
}

}  // namespace

std::optional<std::string_view> OwnResourceBytes(std::u16string_view type, int16_t id) {
  for (const OwnResource& own : kOwnResources) {
    if (own.id == id && SameType(own.type, type)) {
      return std::string_view(reinterpret_cast<const char*>(own.bytes), *own.size);
    }
  }
  return std::nullopt;
}

std::u16string LoadResourceText(int16_t id, std::u16string_view type) {
  const auto bytes = OwnResourceBytes(type, id);
  if (!bytes) return u"";
  return FromFirstAngleBracket(BytesToText(*bytes));
}

std::u16string FromFirstAngleBracket(std::u16string text) {
  const auto first = text.find(u'<');
  if (first != std::u16string::npos && first > 0) text.erase(0, first);
  return text;
}

}  // namespace norvik50
