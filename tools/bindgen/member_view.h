// The member table as the generators of the language bindings read it:
// through the C interface, as a binding at run time does, grouped by name
// with each member's forms (method, get, let) together.
#ifndef NORVIK50_TOOLS_BINDGEN_MEMBER_VIEW_H_
#define NORVIK50_TOOLS_BINDGEN_MEMBER_VIEW_H_

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace norvik50::bindgen {

struct Param {
  std::string name;
  uint16_t type = 0;
  bool by_ref = false;
  bool optional = false;
  std::string record_type;
};

struct Form {
  std::string name;
  int32_t how = 0;
  uint16_t result = 0;
  std::vector<Param> params;
};

struct Member {
  std::string name;
  std::optional<Form> method;
  std::optional<Form> get;
  std::optional<Form> let;
  // A property without arguments: read and assigned as an attribute.
  bool IsSimpleProperty() const {
    return get && let && get->params.empty() && let->params.size() == 1;
  }
};

// Every member of the loaded library, in table order.
std::vector<Member> ReadMembers();

void WritePythonStubs(const std::vector<Member>& members, std::ostream& out);
void WriteCSharpMembers(const std::vector<Member>& members, std::ostream& out);

}  // namespace norvik50::bindgen

#endif  // NORVIK50_TOOLS_BINDGEN_MEMBER_VIEW_H_
