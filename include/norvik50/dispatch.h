// Dispatch by name: the LIB interface as data. Every member has one entry
// (name, kind, parameters with types, defaults and by-reference flags, result
// type) and `Invoke` calls a member by name with Variant arguments, applying
// defaults, coercing arguments to the declared types and writing back the
// by-reference arguments the member changed. Scripting hosts and the
// command line reach the library this way.
#ifndef NORVIK50_DISPATCH_H_
#define NORVIK50_DISPATCH_H_

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

class LIB;

// How a parameter or result is typed. A scalar VarType means the argument is
// coerced to that type (kVariant: taken as it is). kArray means an array of
// Variants (any element type accepted); kRecord a record whose type name is
// given in ParamInfo::record_type; kObject a host object.
struct ParamInfo {
  std::string name;
  VarType type = VarType::kVariant;
  bool by_ref = false;
  bool optional = false;
  // Default for an optional parameter; nullopt = "optional without a
  // default" (the member receives it as missing).
  std::optional<Variant> default_value;
  std::string record_type;
};

enum class MemberKind { kMethod, kPropertyGet, kPropertyLet };

// The arguments as a member body sees them: one slot per declared parameter,
// defaults already applied and values coerced; a missing optional without a
// default is nullopt. Bodies write back by assigning to the slot and calling
// MarkWritten.
class NORVIK50_EXPORT CallArgs {
 public:
  explicit CallArgs(std::vector<std::optional<Variant>> values);
  std::size_t size() const noexcept { return values_.size(); }
  bool has(std::size_t i) const noexcept;
  const Variant& operator[](std::size_t i) const;
  Variant& at(std::size_t i);
  std::optional<Variant>& slot(std::size_t i) { return values_.at(i); }
  // Records that by-reference argument `i` was written by the member.
  void MarkWritten(std::size_t i) { written_.push_back(i); }
  const std::vector<std::size_t>& written() const noexcept { return written_; }

  // Convenience readers for bodies (values are already coerced).
  const std::u16string& str(std::size_t i) const { return (*this)[i].as_string(); }
  int16_t i16(std::size_t i) const { return (*this)[i].as_integer(); }
  int32_t i32(std::size_t i) const { return (*this)[i].as_long(); }
  bool flag(std::size_t i) const { return (*this)[i].as_boolean() != 0; }

 private:
  std::vector<std::optional<Variant>> values_;
  std::vector<std::size_t> written_;
};

struct MemberInfo {
  std::string name;
  MemberKind kind = MemberKind::kMethod;
  std::vector<ParamInfo> params;
  // kEmpty: the member returns nothing.
  VarType result = VarType::kEmpty;
  std::function<Variant(LIB&, CallArgs&)> body;
  // The member's behaviour was designed for this library (its interface
  // lists no such member, or only its name); the README describes it.
  bool designed_here = false;
};

// The table of all members. Lookup by name is case-insensitive (ASCII), as
// automation names are.
class NORVIK50_EXPORT MemberTable {
 public:
  void Add(MemberInfo info);
  // The entry for `name` and `kind`, or nullptr.
  const MemberInfo* Find(std::string_view name, MemberKind kind) const;
  // Whether any form of `name` exists.
  bool Has(std::string_view name) const;
  const std::vector<MemberInfo>& members() const noexcept { return members_; }

 private:
  std::vector<MemberInfo> members_;
  std::map<std::string, std::vector<std::size_t>> index_;  // lower-case name
};

// The table of every member of LIB.
NORVIK50_EXPORT const MemberTable& Members();

// A name of the interface hosts call that this library does not answer. A
// call by name raises 438 with `reason` as its description, so a host being
// ported learns why instead of reading "doesn't support this property or
// method" for a member its old code called.
struct UnavailableMember {
  std::string_view name;
  std::string_view family;
  // "not available on this platform: ..." for a member with no honest
  // reading on Linux; "not available in this version: ..." for one still to
  // be built.
  std::u16string_view reason;
};

// Every such name, sorted by name without case.
NORVIK50_EXPORT const std::vector<UnavailableMember>& UnavailableMembers();
// The entry for `name` (compared without case), or nullptr.
NORVIK50_EXPORT const UnavailableMember* FindUnavailableMember(std::string_view name);

struct InvokeResult {
  std::optional<Variant> result;             // absent for members without one
  std::map<std::size_t, Variant> by_ref;     // written-back arguments by index
};

// Calls `member` on `lib`. `args` may be shorter than the parameter list
// (trailing optionals omitted); an element that is nullopt is an omitted
// optional. With `let`, the property's let form is called and the new value
// is the last argument.
// Arguments convert to their parameters' types in the current locale, as
// the runtime converts them ("1.234,56" is 1234.56 in German).
// Raises 438 for an unknown member, 449 for an omitted required argument,
// 450 for too many arguments, 13 or 6 when an argument cannot be coerced,
// and whatever the member itself raises.
NORVIK50_EXPORT InvokeResult Invoke(LIB& lib, std::string_view member,
                                    std::vector<std::optional<Variant>> args,
                                    bool let = false);

// The locale-independent part of the argument conversion, for callers that
// hold a value of unknown type: coerces `value` to `type`:
// numbers between numeric types (rounding half to even into Integer, Long
// and Byte; overflow 6 outside the range), Booleans and numbers both ways,
// numeric text to numbers (13 when it is not a number), numbers to text.
NORVIK50_EXPORT Variant CoerceTo(const Variant& value, VarType type);

}  // namespace norvik50

#endif  // NORVIK50_DISPATCH_H_
