#include "resources/resource_strings.h"

#include <algorithm>

#include "core/library_state.h"
#include "norvik50/encoding.h"
#include "resources/language_selection.h"
#include "resources/resource_document.h"

namespace norvik50 {
namespace {

// The string buffer holds 32767 characters with the terminating zero, so a
// string resource comes back with at most 32766 of them.
constexpr std::size_t kStringBufferChars = 32767 - 1;

// The ANSI string call hands the text through the system's 8-bit code
// page: a character Windows-1252 lacks comes back as "?". Done in place,
// character by character, as the round trip through bytes would.
void ThroughAnsi(std::u16string& text) {
  for (char16_t& c : text) {
    if (c < 0x80) continue;  // ASCII passes unchanged
    const std::optional<uint8_t> byte = CharToCp1252(c);
    c = byte ? Cp1252ToChar(*byte) : u'?';
  }
}

// A block's bytes as UTF-16 units (little-endian); an odd last byte
// belongs to no unit.
std::u16string BlockUnits(const std::string& bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(static_cast<uint8_t>(bytes[2 * i]) |
                                     static_cast<uint8_t>(bytes[2 * i + 1]) << 8);
  }
  return units;
}

// Slot `slot` of a string block: sixteen strings, each a count of units
// and the units. nullopt for an empty slot and for one the block is too
// short for.
std::optional<std::u16string_view> StringInBlock(std::u16string_view block, unsigned slot) {
  std::size_t at = 0;
  for (unsigned skipped = 0; skipped < slot; ++skipped) {
    if (at >= block.size()) return std::nullopt;
    at += 1 + std::size_t{block[at]};
  }
  if (at >= block.size()) return std::nullopt;
  const std::size_t length = block[at];
  if (length == 0 || at + 1 + length > block.size()) return std::nullopt;
  return block.substr(at + 1, length);
}

}  // namespace

ResourceStrings::ResourceStrings(LIB& lib)
    : path_(ReplaceLanguageCode(
          lib.tkrGetString(HKEY_LOCAL_MACHINE, BaseKey(), u"ResourceDLL", u"", true),
          lib.tklLangCode())),
      module_(OpenResourceModule(path_)) {}

void ResourceStrings::ReportFailure(LIB& lib, std::u16string_view source) const {
  if (!module_) lib.tklLogError(kErrResource, LoadLibraryFailed(path_), source, true);
}

std::optional<std::u16string_view> ResourceStrings::Find(int32_t id) {
  if (!module_) return std::nullopt;
  const auto low = static_cast<uint16_t>(id);
  const auto number = static_cast<uint16_t>((low >> 4) + 1);
  auto block = blocks_.find(number);
  if (block == blocks_.end()) {
    std::optional<std::string> bytes = module_->FetchResource(u"#6", u"#" + DecimalText(number));
    block = blocks_
                .emplace(number,
                         bytes ? std::optional<std::u16string>(BlockUnits(*bytes)) : std::nullopt)
                .first;
  }
  std::optional<std::u16string_view> text;
  if (block->second) {
    text = StringInBlock(*block->second, low & 15u);
  } else if (std::optional<std::u16string> alone = module_->FetchString(low)) {
    converted_ = std::move(*alone);
    text = converted_;
  }
  if (!text) return std::nullopt;
  text = text->substr(0, kStringBufferChars);
  if (std::all_of(text->begin(), text->end(), [](char16_t c) { return c < 0x80; })) return text;
  if (text->data() != converted_.data()) converted_.assign(*text);
  converted_.resize(text->size());
  ThroughAnsi(converted_);
  return std::u16string_view(converted_);
}

}  // namespace norvik50
