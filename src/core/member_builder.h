// Short forms for writing dispatch entries: each family's table reads like
// the member's signature.
#ifndef NORVIK50_SRC_CORE_MEMBER_BUILDER_H_
#define NORVIK50_SRC_CORE_MEMBER_BUILDER_H_

#include <string>
#include <utility>

#include "norvik50/dispatch.h"

namespace norvik50::members {

// Parameter and result types as the tables write them.
inline constexpr VarType S = VarType::kString;
inline constexpr VarType I = VarType::kInteger;
inline constexpr VarType L = VarType::kLong;
inline constexpr VarType F = VarType::kSingle;
inline constexpr VarType D = VarType::kDouble;
inline constexpr VarType B = VarType::kBoolean;
inline constexpr VarType V = VarType::kVariant;
inline constexpr VarType A = VarType::kArray;
inline constexpr VarType O = VarType::kObject;
inline constexpr VarType kNone = VarType::kEmpty;  // no result

// Writes `value` back to by-reference argument `i`, so a caller by name
// sees it.
inline void WriteBack(CallArgs& a, std::size_t i, Variant value) {
  a.at(i) = std::move(value);
  a.MarkWritten(i);
}

// A required argument passed by value.
inline ParamInfo In(std::string name, VarType type) {
  return {std::move(name), type, false, false, std::nullopt, {}};
}
// A required argument passed by reference.
inline ParamInfo Ref(std::string name, VarType type) {
  return {std::move(name), type, true, false, std::nullopt, {}};
}
// An optional argument with a default.
inline ParamInfo Opt(std::string name, VarType type, Variant default_value,
                     bool by_ref = false) {
  return {std::move(name), type, by_ref, true, std::move(default_value), {}};
}
// An optional argument without a default: the body sees it as missing.
inline ParamInfo OptMissing(std::string name, VarType type, bool by_ref = false) {
  return {std::move(name), type, by_ref, true, std::nullopt, {}};
}
// A record argument passed by reference, e.g. typFileInfo.
inline ParamInfo RecordRef(std::string name, std::string record_type) {
  return {std::move(name), VarType::kRecord, true, false, std::nullopt,
          std::move(record_type)};
}

inline MemberInfo Method(std::string name, std::vector<ParamInfo> params, VarType result,
                         std::function<Variant(LIB&, CallArgs&)> body) {
  return {std::move(name), MemberKind::kMethod, std::move(params), result, std::move(body)};
}
inline MemberInfo Get(std::string name, std::vector<ParamInfo> params, VarType result,
                      std::function<Variant(LIB&, CallArgs&)> body) {
  return {std::move(name), MemberKind::kPropertyGet, std::move(params), result,
          std::move(body)};
}
inline MemberInfo Let(std::string name, std::vector<ParamInfo> params,
                      std::function<Variant(LIB&, CallArgs&)> body) {
  return {std::move(name), MemberKind::kPropertyLet, std::move(params), VarType::kEmpty,
          std::move(body)};
}

// Marks a member whose behaviour was designed here (see
// MemberInfo::designed_here).
inline MemberInfo DesignedHere(MemberInfo member) {
  member.designed_here = true;
  return member;
}

}  // namespace norvik50::members

#endif  // NORVIK50_SRC_CORE_MEMBER_BUILDER_H_
