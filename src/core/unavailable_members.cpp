// The names a ported host may call that this library does not answer, each
// with the reason a call by name reports.
#include <algorithm>
#include <cctype>

#include "norvik50/dispatch.h"

namespace norvik50 {
namespace {

constexpr std::string_view kControls = "Control helpers";

bool LessWithoutCase(std::string_view a, std::string_view b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) <
           std::tolower(static_cast<unsigned char>(y));
  });
}

std::vector<UnavailableMember> MakeList() {
  std::vector<UnavailableMember> list = {
      {"tklLVWCallback", kControls,
       u"not available on this platform: it is the window procedure through which a Windows "
       u"list view's messages reached the host; a Qt item view reports the same events as "
       u"signals that the host connects to its own code"},
      {"tklHasIndex", kControls,
       u"not available on this platform: it asks whether a control is an element of a control "
       u"array, and Qt forms have no control arrays (a host keeps such controls in a container "
       u"of its own)"},
      {"tklSetNoNumbers", kControls,
       u"not available on this platform: it switches a style bit of the native Windows list "
       u"view, which Qt's item views do not have"},
  };
  std::sort(list.begin(), list.end(), [](const UnavailableMember& a, const UnavailableMember& b) {
    return LessWithoutCase(a.name, b.name);
  });
  return list;
}

}  // namespace

const std::vector<UnavailableMember>& UnavailableMembers() {
  static const std::vector<UnavailableMember> list = MakeList();
  return list;
}

const UnavailableMember* FindUnavailableMember(std::string_view name) {
  const auto& list = UnavailableMembers();
  const auto it = std::lower_bound(
      list.begin(), list.end(), name,
      [](const UnavailableMember& m, std::string_view n) { return LessWithoutCase(m.name, n); });
  if (it == list.end() || LessWithoutCase(name, it->name)) return nullptr;
  return &*it;
}

}  // namespace norvik50
