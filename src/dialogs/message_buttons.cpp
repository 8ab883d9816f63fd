#include "dialogs/message_buttons.h"

#include <unicode/uchar.h>

#include <array>

#include "resources/resource_document.h"

namespace norvik50 {

std::vector<std::u16string> ButtonTagsForStyle(int32_t style) {
  // Bit tests in this order, first match wins: a style of 6 or 7, which no
  // host defines, therefore gets the yes/no or retry/cancel set. Hosts
  // depend on exactly these sets, so the order must not be "tidied".
  if ((style & 5) == 5) return {u"retry", u"cancel"};
  if ((style & 4) != 0) return {u"yes", u"no"};
  if ((style & 3) == 3) return {u"yes", u"no", u"cancel"};
  if ((style & 2) != 0) return {u"abort", u"retry", u"ignore"};
  if ((style & 1) != 0) return {u"cmdOK", u"cmdCancel"};
  return {u"cmdOK"};
}

int32_t DefaultButtonForStyle(int32_t style, int32_t count) {
  // 0 always matches and 768 also matches 256 and 512, so the last match
  // wins; a mark on a button that does not exist (768 with three buttons)
  // leaves the default where the previous match put it.
  int32_t chosen = 1;
  for (int32_t i = 0; i <= 3; ++i) {
    if ((style & (i * 256)) == i * 256 && i + 1 <= count) chosen = i + 1;
  }
  return chosen;
}

int32_t SymbolForStyle(int32_t style) {
  if ((style & 48) == 48) return 48;
  if ((style & 64) == 64) return 64;
  if ((style & 16) != 0) return 16;
  if ((style & 32) != 0) return 32;
  return 0;
}

int32_t ButtonResultOf(std::u16string_view tag) {
  // "ok" is accepted although no button carries it, and an unknown tag
  // counts as Cancel; both are how hosts have always seen it.
  if (tag == u"ok" || tag == u"cmdOK") return 1;
  if (tag == u"cancel" || tag == u"cmdCancel") return 2;
  if (tag == u"ignore") return 5;
  if (tag == u"retry") return 4;
  if (tag == u"abort") return 3;
  if (tag == u"yes") return 6;
  if (tag == u"no") return 7;
  return 2;
}

std::optional<uint32_t> PaletteColor(int32_t index) {
  static constexpr std::array<uint32_t, 16> kPalette = {
      0x000000, 0x000080, 0x008000, 0x008080, 0x800000, 0x800080, 0x808000, 0xC0C0C0,
      0x808080, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};
  if (index < 0 || index > 15) return std::nullopt;
  return kPalette[static_cast<std::size_t>(index)];
}

void FillButtons(MessageBoxRequest& request, int32_t style, int16_t language) {
  request.style = style;
  request.language = language;
  request.symbol = SymbolForStyle(style);
  request.buttons.clear();
  for (std::u16string& tag : ButtonTagsForStyle(style)) {
    DialogButton button;
    button.caption = GetResourceItem(tag, language);
    button.answer = ButtonResultOf(tag);
    button.tag = std::move(tag);
    request.buttons.push_back(std::move(button));
  }
  const auto count = static_cast<int32_t>(request.buttons.size());
  request.default_button = DefaultButtonForStyle(style, count);
  request.cancel_button = count;
}

std::u16string AcceleratorOf(std::u16string_view caption) {
  std::u16string rest;
  rest.reserve(caption.size());
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == u'&' && i + 1 < caption.size() && caption[i + 1] == u'&') {
      ++i;  // "&&" goes before the search, so "Q&&A &Test" finds T
      continue;
    }
    rest.push_back(caption[i]);
  }
  const std::size_t amp = rest.find(u'&');
  if (amp == std::u16string::npos || amp + 1 >= rest.size()) return u"";
  // The runtime's UCase on one unit: letters beyond ASCII (ä) go up too.
  return std::u16string(1, static_cast<char16_t>(u_toupper(rest[amp + 1])));
}

}  // namespace norvik50
