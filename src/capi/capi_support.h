// What every part of the C interface shares: the value handle is a Variant
// seen through an opaque C type, and each entry point runs its body behind
// one guard that turns every C++ exception into an error number, because
// an exception that reached a C caller would end its process.
#ifndef NORVIK50_SRC_CAPI_CAPI_SUPPORT_H_
#define NORVIK50_SRC_CAPI_CAPI_SUPPORT_H_

#include <cstdint>
#include <new>
#include <string_view>

#include "norvik50/error.h"
#include "norvik50/norvik50.h"
#include "norvik50/variant.h"

namespace norvik50::capi {

// The runtime's "Object variable or With block variable not set": what a
// NULL or dead handle is.
inline constexpr int32_t kErrObjectNotSet = 91;
// A failure no member documents (a library fault).
inline constexpr int32_t kErrInternal = 51;

// A norvik50_value is a Variant: the C type is declared, never defined, so
// a handle can be nothing else.
inline Variant* AsVariant(norvik50_value* v) noexcept { return reinterpret_cast<Variant*>(v); }
inline const Variant* AsVariant(const norvik50_value* v) noexcept {
  return reinterpret_cast<const Variant*>(v);
}
inline norvik50_value* AsHandle(Variant* v) noexcept {
  return reinterpret_cast<norvik50_value*>(v);
}
inline const norvik50_value* AsHandle(const Variant* v) noexcept {
  return reinterpret_cast<const norvik50_value*>(v);
}

// The Variant behind `v`; raises 91 for NULL.
const Variant& Deref(const norvik50_value* v);
Variant& Deref(norvik50_value* v);

// A new handle holding `value`; the caller owns it.
norvik50_value* NewHandle(Variant value);

// Writes the error into `err` (when not NULL), freeing what it held, and
// returns its number. Never throws: without memory for the texts, the
// number alone is written.
int32_t Report(norvik50_error* err, int32_t number, std::u16string_view description,
               std::u16string_view source) noexcept;
// Marks `err` (when not NULL) as a success.
void ReportSuccess(norvik50_error* err) noexcept;
// The error of the exception being handled, reported into `err`.
int32_t ReportCurrentException(norvik50_error* err) noexcept;

// Runs `body`; 0 on success, else the number of what it raised.
template <typename Body>
int32_t Guarded(norvik50_error* err, Body&& body) noexcept {
  try {
    body();
  } catch (...) {
    return ReportCurrentException(err);
  }
  ReportSuccess(err);
  return 0;
}

// A constructor's body: the new handle, or NULL when memory is exhausted.
template <typename Make>
norvik50_value* Constructed(Make&& make) noexcept {
  try {
    return NewHandle(make());
  } catch (...) {
    return nullptr;
  }
}

// Text a host gave as NUL-terminated UTF-8; raises 5 when it is not
// well-formed or NULL.
std::u16string Utf8Argument(const char* text);

// Stores `value` as a new handle in *out; raises 5 when `out` is NULL.
void Hand(norvik50_value** out, Variant value);

}  // namespace norvik50::capi

#endif  // NORVIK50_SRC_CAPI_CAPI_SUPPORT_H_
