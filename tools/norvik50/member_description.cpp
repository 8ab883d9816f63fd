#include "member_description.h"

#include <algorithm>
#include <cstdio>

#include "norvik50/encoding.h"
#include "variant_literal.h"

namespace norvik50::cli {

std::string Lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

namespace {

std::string TypeText(const ParamInfo& param) {
  if (!param.record_type.empty()) return param.record_type;
  if (param.type == VarType::kArray) return "Array";
  return ToUtf8(VarTypeName(param.type));
}

std::string NameOf(const MemberInfo& member) {
  return member.kind == MemberKind::kPropertyLet ? member.name + " let" : member.name;
}

std::string ParamText(const ParamInfo& param) {
  std::string text = (param.by_ref ? "ref " : "") + param.name + ": " + TypeText(param);
  if (!param.optional) return text;
  if (param.default_value) text += " = " + Literal(*param.default_value);
  return "[" + text + "]";
}

}  // namespace

std::string MemberSignature(const MemberInfo& member) {
  std::string text = NameOf(member) + "(";
  for (std::size_t i = 0; i < member.params.size(); ++i) {
    if (i != 0) text += ", ";
    text += ParamText(member.params[i]);
  }
  text += ")";
  if (member.result != VarType::kEmpty) text += ": " + ToUtf8(VarTypeName(member.result));
  if (member.designed_here) text += "  (designed here)";
  return text;
}

std::string MemberDetails(const MemberInfo& member) {
  std::string text = MemberSignature(member) + "\n";
  switch (member.kind) {
    case MemberKind::kMethod:
      text += "  a method";
      break;
    case MemberKind::kPropertyGet:
      text += "  a property (get form)";
      break;
    case MemberKind::kPropertyLet:
      text += "  a property (let form: call with --let, new value last)";
      break;
  }
  text += member.result == VarType::kEmpty
              ? "; no result\n"
              : "; result " + ToUtf8(VarTypeName(member.result)) + "\n";
  if (member.params.empty()) return text + "  no arguments\n";
  std::size_t name_width = 4, type_width = 4;
  for (const ParamInfo& param : member.params) {
    name_width = std::max(name_width, param.name.size());
    type_width = std::max(type_width, TypeText(param).size());
  }
  char line[256];
  std::snprintf(line, sizeof line, "  %-3s %-*s  %-*s  %s\n", "#", static_cast<int>(name_width),
                "name", static_cast<int>(type_width), "type", "passed");
  text += line;
  for (std::size_t i = 0; i < member.params.size(); ++i) {
    const ParamInfo& param = member.params[i];
    std::string passed = param.by_ref ? "by reference" : "by value";
    if (param.optional) {
      passed += param.default_value ? ", optional, default " + Literal(*param.default_value)
                                    : ", optional, missing when left out";
    }
    std::snprintf(line, sizeof line, "  %-3zu %-*s  %-*s  ", i, static_cast<int>(name_width),
                  param.name.c_str(), static_cast<int>(type_width), TypeText(param).c_str());
    text += line + passed + "\n";
  }
  return text;
}

std::vector<const MemberInfo*> MatchingMembers(std::string_view pattern) {
  const std::string wanted = Lower(pattern);
  std::vector<const MemberInfo*> found;
  for (const MemberInfo& member : Members().members()) {
    if (Lower(member.name).find(wanted) != std::string::npos) found.push_back(&member);
  }
  std::stable_sort(found.begin(), found.end(), [](const MemberInfo* a, const MemberInfo* b) {
    const std::string la = Lower(a->name), lb = Lower(b->name);
    if (la != lb) return la < lb;
    return a->kind < b->kind;  // method or get before let
  });
  return found;
}

std::vector<const UnavailableMember*> MatchingUnavailableMembers(std::string_view pattern) {
  const std::string wanted = Lower(pattern);
  std::vector<const UnavailableMember*> found;
  for (const UnavailableMember& member : UnavailableMembers()) {
    if (Lower(member.name).find(wanted) != std::string::npos) found.push_back(&member);
  }
  return found;
}

}  // namespace norvik50::cli
