// Arrays, records and objects of the C interface.
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "capi/capi_support.h"
#include "norvik50/collection.h"
#include "norvik50/dispatch.h"

using norvik50::Raise;
using norvik50::Variant;
using norvik50::VarType;
using namespace norvik50::capi;

namespace {

// The scalar types an array may be declared of, and Variant.
bool IsElementType(uint16_t type) {
  switch (static_cast<VarType>(type)) {
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kSingle:
    case VarType::kDouble:
    case VarType::kCurrency:
    case VarType::kDate:
    case VarType::kString:
    case VarType::kError:
    case VarType::kBoolean:
    case VarType::kVariant:
    case VarType::kDecimal:
    case VarType::kByte:
      return true;
    default:
      return false;
  }
}

const norvik50::SafeArray& ArrayOf(const norvik50_value* v) {
  const Variant& value = Deref(v);
  if (!value.is_array()) Raise(norvik50::kErrTypeMismatch);
  return value.as_array();
}

const norvik50::Record& RecordOf(const norvik50_value* v) {
  const Variant& value = Deref(v);
  if (!value.is_record()) Raise(norvik50::kErrTypeMismatch);
  return value.as_record();
}

norvik50::Collection& CollectionOf(const norvik50_value* v) {
  const Variant& value = Deref(v);
  if (!value.is_object()) Raise(norvik50::kErrTypeMismatch);
  auto* collection = dynamic_cast<norvik50::Collection*>(value.as_object().get());
  if (collection == nullptr) Raise(norvik50::kErrTypeMismatch);
  return *collection;
}

// A value as an element of `type`: an element of a typed array holds only
// its type, as a typed array does in the runtime.
Variant AsElement(const Variant& item, VarType type) {
  return type == VarType::kVariant ? item : norvik50::CoerceTo(item, type);
}

}  // namespace

extern "C" {

int32_t norvik50_value_new_array(uint16_t element_type, int32_t lower, size_t count,
                                 norvik50_value** out) {
  return Guarded(nullptr, [&] {
    if (!IsElementType(element_type)) Raise(norvik50::kErrInvalidCall);
    // The last index must still be a Long.
    if (count > static_cast<size_t>(std::numeric_limits<int32_t>::max()) ||
        static_cast<int64_t>(lower) + static_cast<int64_t>(count) - 1 >
            std::numeric_limits<int32_t>::max()) {
      Raise(norvik50::kErrInvalidCall);
    }
    const auto type = static_cast<VarType>(element_type);
    Hand(out, Variant(norvik50::SafeArray::Bounded(
                  lower, static_cast<int32_t>(lower + static_cast<int64_t>(count) - 1), type)));
  });
}

int32_t norvik50_value_new_unbounded_array(uint16_t element_type, norvik50_value** out) {
  return Guarded(nullptr, [&] {
    if (!IsElementType(element_type)) Raise(norvik50::kErrInvalidCall);
    Hand(out, Variant(norvik50::SafeArray(static_cast<VarType>(element_type))));
  });
}

int32_t norvik50_array_bounds(const norvik50_value* v, int32_t* lower, size_t* count) {
  return Guarded(nullptr, [&] {
    const norvik50::SafeArray& array = ArrayOf(v);
    if (lower == nullptr || count == nullptr) Raise(norvik50::kErrInvalidCall);
    *lower = array.lbound();  // 9 for an unbounded array
    *count = array.size();
  });
}

int32_t norvik50_array_get(const norvik50_value* v, int64_t index, norvik50_value** out) {
  return Guarded(nullptr, [&] { Hand(out, ArrayOf(v).at(index)); });
}

int32_t norvik50_array_set(norvik50_value* v, int64_t index, const norvik50_value* item) {
  return Guarded(nullptr, [&] {
    ArrayOf(v);  // 13 before anything else for a value that is no array
    norvik50::SafeArray& array = Deref(v).as_array();
    Variant element = AsElement(Deref(item), array.element_type());
    array.at(index) = std::move(element);
  });
}

int32_t norvik50_value_new_record(const char* type_name, norvik50_value** out) {
  return Guarded(nullptr, [&] {
    if (type_name == nullptr || *type_name == '\0') Raise(norvik50::kErrInvalidCall);
    Hand(out, Variant(norvik50::Record(type_name, {})));
  });
}

int32_t norvik50_record_type(const norvik50_value* v, const char** type_name) {
  return Guarded(nullptr, [&] {
    const norvik50::Record& record = RecordOf(v);
    if (type_name == nullptr) Raise(norvik50::kErrInvalidCall);
    *type_name = record.type_name().c_str();
  });
}

int32_t norvik50_record_field_count(const norvik50_value* v, size_t* count) {
  return Guarded(nullptr, [&] {
    const norvik50::Record& record = RecordOf(v);
    if (count == nullptr) Raise(norvik50::kErrInvalidCall);
    *count = record.fields().size();
  });
}

int32_t norvik50_record_field(const norvik50_value* v, size_t index, const char** name,
                              norvik50_value** out) {
  return Guarded(nullptr, [&] {
    const auto& fields = RecordOf(v).fields();
    if (index >= fields.size()) Raise(norvik50::kErrSubscript);
    if (out != nullptr) *out = NewHandle(fields[index].second);
    if (name != nullptr) *name = fields[index].first.c_str();
  });
}

int32_t norvik50_record_set(norvik50_value* v, const char* name, const norvik50_value* item) {
  return Guarded(nullptr, [&] {
    const norvik50::Record& record = RecordOf(v);
    if (name == nullptr || *name == '\0') Raise(norvik50::kErrInvalidCall);
    Variant value = Deref(item);
    norvik50::Record& target = Deref(v).as_record();
    if (Variant* field = target.find(name)) {
      *field = std::move(value);
      return;
    }
    auto fields = record.fields();
    fields.emplace_back(name, std::move(value));
    target = norvik50::Record(record.type_name(), std::move(fields));
  });
}

norvik50_value* norvik50_value_new_nothing(void) {
  return Constructed([] { return Variant(std::shared_ptr<norvik50::HostObject>()); });
}

norvik50_value* norvik50_value_new_collection(void) {
  return Constructed([] {
    return Variant(std::shared_ptr<norvik50::HostObject>(std::make_shared<norvik50::Collection>()));
  });
}

int32_t norvik50_object_id(const norvik50_value* v, uintptr_t* id) {
  return Guarded(nullptr, [&] {
    const Variant& value = Deref(v);
    if (!value.is_object()) Raise(norvik50::kErrTypeMismatch);
    if (id == nullptr) Raise(norvik50::kErrInvalidCall);
    *id = reinterpret_cast<uintptr_t>(value.as_object().get());
  });
}

int32_t norvik50_collection_count(const norvik50_value* v, int32_t* count) {
  return Guarded(nullptr, [&] {
    const norvik50::Collection& collection = CollectionOf(v);
    if (count == nullptr) Raise(norvik50::kErrInvalidCall);
    *count = collection.Count();
  });
}

int32_t norvik50_collection_add(norvik50_value* v, const norvik50_value* item) {
  return Guarded(nullptr, [&] { CollectionOf(v).Add(Deref(item)); });
}

int32_t norvik50_collection_item(const norvik50_value* v, int32_t index, norvik50_value** out) {
  return Guarded(nullptr, [&] { Hand(out, CollectionOf(v).Item(index)); });
}

}  // extern "C"
