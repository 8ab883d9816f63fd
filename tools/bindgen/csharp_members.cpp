// The .NET Lib class's members (C#): typed parameters, `ref` for
// by-reference arguments, nullable optional arguments where null omits
// them, and overloads that leave out trailing optional `ref` arguments,
// which C# cannot give defaults.
#include <set>

#include "member_view.h"
#include "norvik50/norvik50.h"

namespace norvik50::bindgen {
namespace {

std::string CsType(uint16_t type) {
  if ((type & NORVIK50_VT_ARRAY) != 0) return "System.Array";
  switch (type) {
    case NORVIK50_VT_EMPTY:
      return "void";
    case NORVIK50_VT_INTEGER:
      return "short";
    case NORVIK50_VT_LONG:
      return "int";
    case NORVIK50_VT_BYTE:
      return "byte";
    case NORVIK50_VT_SINGLE:
      return "float";
    case NORVIK50_VT_DOUBLE:
      return "double";
    case NORVIK50_VT_CURRENCY:
    case NORVIK50_VT_DECIMAL:
      return "decimal";
    case NORVIK50_VT_DATE:
      return "DateTime";
    case NORVIK50_VT_STRING:
      return "string";
    case NORVIK50_VT_BOOLEAN:
      return "bool";
    case NORVIK50_VT_RECORD:
      return "Record";
    case NORVIK50_VT_ERROR:
      return "ErrorValue";
    default:
      return "object";
  }
}

bool IsValueType(const std::string& cs) {
  static const std::set<std::string> kValueTypes = {"short",  "int",     "byte",     "float",
                                                    "double", "decimal", "DateTime", "bool"};
  return kValueTypes.count(cs) != 0;
}

// The type of an optional argument passed by value: null omits it.
std::string OptionalType(const std::string& cs) { return IsValueType(cs) ? cs + "?" : cs; }

std::string Name(const Param& p) { return "@" + p.name; }

// Writes one overload taking params[0..count-1].
void WriteOverload(const Form& form, const std::string& method_name, std::size_t count,
                   std::ostream& out) {
  const std::vector<Param>& params = form.params;
  // A default only on the trailing run of optional arguments passed by value.
  std::size_t defaults_from = count;
  while (defaults_from > 0 && params[defaults_from - 1].optional &&
         !params[defaults_from - 1].by_ref) {
    --defaults_from;
  }
  const std::string result = CsType(form.result);
  out << "    public " << result << " " << method_name << "(";
  for (std::size_t i = 0; i < count; ++i) {
    const Param& p = params[i];
    const std::string type = CsType(p.type);
    if (i > 0) out << ", ";
    if (p.by_ref) {
      out << "ref " << type << " " << Name(p);
    } else if (p.optional) {
      out << OptionalType(type) << " " << Name(p);
      if (i >= defaults_from) out << " = null";
    } else {
      out << type << " " << Name(p);
    }
  }
  out << ") {\n      object[] a = { ";
  for (std::size_t i = 0; i < count; ++i) {
    const Param& p = params[i];
    if (i > 0) out << ", ";
    if (p.optional && !p.by_ref) {
      out << "Given(" << Name(p) << ")";
    } else {
      out << Name(p);
    }
  }
  out << " };\n      ";
  if (result != "void") out << "object r = ";
  out << "Invoke(\"" << form.name << "\", " << form.how << ", a);\n";
  for (std::size_t i = 0; i < count; ++i) {
    if (params[i].by_ref) {
      out << "      " << Name(params[i]) << " = As<" << CsType(params[i].type) << ">(a[" << i
          << "]);\n";
    }
  }
  if (result != "void") out << "      return As<" << result << ">(r);\n";
  out << "    }\n";
}

// Overloads end before each optional `ref` argument that only optional
// arguments follow, and at the last argument.
void WriteForm(const Form& form, const std::string& method_name, std::ostream& out) {
  const std::vector<Param>& params = form.params;
  std::size_t required = 0;
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (!params[i].optional) required = i + 1;
  }
  for (std::size_t count = required; count <= params.size(); ++count) {
    if (count == params.size() || params[count].by_ref)
      WriteOverload(form, method_name, count, out);
  }
}

}  // namespace

void WriteCSharpMembers(const std::vector<Member>& members, std::ostream& out) {
  out << "// Generated from the member table by norvik50_bindgen: do not edit.\n"
         "using System;\n\nnamespace Norvik50 {\n  public partial class Lib {\n";
  for (const Member& member : members) {
    if (member.IsSimpleProperty()) {
      const std::string type = CsType(member.get->result);
      out << "    public " << type << " " << member.name << " {\n      get { return As<" << type
          << ">(Invoke(\"" << member.name << "\", " << NORVIK50_PROPERTYGET
          << ", new object[0])); }\n      set { Invoke(\"" << member.name << "\", "
          << NORVIK50_PROPERTYLET << ", new object[] { value }); }\n    }\n";
      continue;
    }
    if (member.method) WriteForm(*member.method, member.name, out);
    if (member.get) WriteForm(*member.get, member.name, out);
    if (member.let) WriteForm(*member.let, "Let_" + member.name, out);
  }
  out << "  }\n}\n";
}

}  // namespace norvik50::bindgen
