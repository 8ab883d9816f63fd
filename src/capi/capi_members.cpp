// The member table of the C interface: the dispatch's own table, so that a
// binding generated from it offers exactly what a call by name accepts.
#include "capi/capi_support.h"
#include "norvik50/dispatch.h"

using norvik50::Members;
using norvik50::Raise;
using namespace norvik50::capi;

namespace {

int32_t HowOf(norvik50::MemberKind kind) {
  switch (kind) {
    case norvik50::MemberKind::kPropertyGet:
      return NORVIK50_PROPERTYGET;
    case norvik50::MemberKind::kPropertyLet:
      return NORVIK50_PROPERTYLET;
    default:
      return NORVIK50_METHOD;
  }
}

const norvik50::MemberInfo& Member(size_t index) {
  const auto& all = Members().members();
  if (index >= all.size()) Raise(norvik50::kErrSubscript);
  return all[index];
}

}  // namespace

extern "C" {

size_t norvik50_member_count(void) {
  try {
    return Members().members().size();
  } catch (...) {
    return 0;  // the table could not be built: nothing to call
  }
}

int32_t norvik50_member_get(size_t index, norvik50_member* out) {
  return Guarded(nullptr, [&] {
    const norvik50::MemberInfo& member = Member(index);
    if (out == nullptr) Raise(norvik50::kErrInvalidCall);
    out->name = member.name.c_str();
    out->how = HowOf(member.kind);
    out->result_type = static_cast<uint16_t>(member.result);
    out->designed_here = member.designed_here ? 1 : 0;
    out->param_count = member.params.size();
  });
}

int32_t norvik50_member_param(size_t member, size_t param, norvik50_param* out) {
  return Guarded(nullptr, [&] {
    const auto& params = Member(member).params;
    if (param >= params.size()) Raise(norvik50::kErrSubscript);
    if (out == nullptr) Raise(norvik50::kErrInvalidCall);
    const norvik50::ParamInfo& p = params[param];
    out->name = p.name.c_str();
    out->type = static_cast<uint16_t>(p.type);
    out->by_ref = p.by_ref ? 1 : 0;
    out->optional = p.optional ? 1 : 0;
    out->default_value = p.default_value ? AsHandle(&*p.default_value) : nullptr;
    out->record_type = p.record_type.c_str();
  });
}

}  // extern "C"
