// LIB's members as Python type stubs (.pyi).
#include "member_view.h"
#include "norvik50/norvik50.h"

namespace norvik50::bindgen {
namespace {

std::string PythonType(uint16_t type) {
  if ((type & NORVIK50_VT_ARRAY) != 0) return "Sequence[Any]";
  switch (type) {
    case NORVIK50_VT_EMPTY:
      return "None";
    case NORVIK50_VT_INTEGER:
    case NORVIK50_VT_LONG:
    case NORVIK50_VT_BYTE:
      return "int";
    case NORVIK50_VT_SINGLE:
    case NORVIK50_VT_DOUBLE:
      return "float";
    case NORVIK50_VT_CURRENCY:
    case NORVIK50_VT_DECIMAL:
      return "Decimal";
    case NORVIK50_VT_DATE:
      return "datetime";
    case NORVIK50_VT_STRING:
      return "str";
    case NORVIK50_VT_BOOLEAN:
      return "bool";
    case NORVIK50_VT_OBJECT:
      return "HostObject";
    case NORVIK50_VT_RECORD:
      return "Record";
    case NORVIK50_VT_ERROR:
      return "ErrorValue";
    default:
      return "Any";
  }
}

// Python allows a default only where every later parameter has one too.
std::vector<bool> Defaulted(const std::vector<Param>& params) {
  std::vector<bool> defaulted(params.size(), false);
  bool tail = true;
  for (std::size_t i = params.size(); i-- > 0;) {
    tail = tail && params[i].optional;
    defaulted[i] = tail;
  }
  return defaulted;
}

void WriteMethod(const Form& form, std::ostream& out) {
  const std::vector<bool> defaulted = Defaulted(form.params);
  out << "    def " << form.name << "(self";
  for (std::size_t i = 0; i < form.params.size(); ++i) {
    const Param& p = form.params[i];
    const std::string type = PythonType(p.type);
    out << ", " << p.name << ": " << (p.by_ref ? "Ref | " + type : type);
    if (defaulted[i]) out << " = ...";
  }
  out << ") -> " << PythonType(form.result) << ": ...\n";
}

}  // namespace

void WritePythonStubs(const std::vector<Member>& members, std::ostream& out) {
  for (const Member& member : members) {
    if (member.IsSimpleProperty()) {
      const std::string type = PythonType(member.get->result);
      out << "    @property\n    def " << member.name << "(self) -> " << type << ": ...\n";
      out << "    @" << member.name << ".setter\n    def " << member.name
          << "(self, value: " << type << ") -> None: ...\n";
    } else if (member.method) {
      WriteMethod(*member.method, out);
    } else if (member.get) {
      WriteMethod(*member.get, out);
    }
  }
}

}  // namespace norvik50::bindgen
