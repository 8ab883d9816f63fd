// The table of every LIB member, assembled from the families' entries.
#include "core/invoke.h"
#include "core/member_registry.h"
#include "numeric/convert_to_type.h"

namespace norvik50 {

const MemberTable& Members() {
  static const MemberTable table = [] {
    MemberTable t;
    RegisterCoreMembers(t);
    RegisterTextMembers(t);
    RegisterCodecMembers(t);
    RegisterNumericMembers(t);
    RegisterSettingsMembers(t);
    RegisterResourceMembers(t);
    RegisterDialogMembers(t);
    RegisterWindowMembers(t);
    RegisterListBoxMembers(t);
    RegisterPictureMembers(t);
    RegisterFormFieldMembers(t);
    return t;
  }();
  return table;
}

}  // namespace norvik50

namespace norvik50 {

namespace {

// Arguments by name convert as the runtime converts them: text to numbers
// and dates in the current locale ("1.234,56" in German), numbers to text
// with its separators. Arrays, records and objects are only checked.
Variant CoerceArgument(const Variant& value, VarType type) {
  switch (type) {
    case VarType::kVariant:
    case VarType::kArray:
    case VarType::kRecord:
    case VarType::kObject:
      return CoerceTo(value, type);
    default:
      return value.type() == type ? value : ConvertStrict(static_cast<int32_t>(type), value);
  }
}

}  // namespace

InvokeResult Invoke(LIB& lib, std::string_view member, std::vector<std::optional<Variant>> args,
                    bool let) {
  return InvokeMember(Members(), lib, member, std::move(args), let, &CoerceArgument);
}

}  // namespace norvik50
