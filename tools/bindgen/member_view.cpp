#include "member_view.h"

#include <map>
#include <stdexcept>

#include "norvik50/norvik50.h"

namespace norvik50::bindgen {

std::vector<Member> ReadMembers() {
  std::vector<Member> members;
  std::map<std::string, std::size_t> index;
  const std::size_t count = norvik50_member_count();
  for (std::size_t m = 0; m < count; ++m) {
    norvik50_member info{};
    if (norvik50_member_get(m, &info) != 0) throw std::runtime_error("member table unreadable");
    Form form{info.name, info.how, info.result_type, {}};
    for (std::size_t p = 0; p < info.param_count; ++p) {
      norvik50_param param{};
      if (norvik50_member_param(m, p, &param) != 0) {
        throw std::runtime_error("member table unreadable");
      }
      form.params.push_back(
          {param.name, param.type, param.by_ref != 0, param.optional != 0, param.record_type});
    }
    auto [it, added] = index.emplace(form.name, members.size());
    if (added) members.push_back(Member{form.name, {}, {}, {}});
    Member& member = members[it->second];
    switch (info.how) {
      case NORVIK50_PROPERTYGET:
        member.get = std::move(form);
        break;
      case NORVIK50_PROPERTYLET:
        member.let = std::move(form);
        break;
      default:
        member.method = std::move(form);
    }
  }
  return members;
}

}  // namespace norvik50::bindgen
