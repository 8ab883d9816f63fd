// Errors, text and version of the C interface.
#include <cstdlib>
#include <cstring>
#include <string>

#include "capi/capi_support.h"
#include "norvik50/encoding.h"
#include "norvik50/version.h"

namespace norvik50::capi {
namespace {

// malloc'd so that norvik50_free (free) releases it, whoever allocated.
char* Duplicate(const std::string& text) noexcept {
  char* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy != nullptr) std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

void FreeTexts(norvik50_error* err) noexcept {
  std::free(err->description);
  std::free(err->source);
  err->description = nullptr;
  err->source = nullptr;
}

}  // namespace

const Variant& Deref(const norvik50_value* v) {
  if (v == nullptr) Raise(kErrObjectNotSet);
  return *AsVariant(v);
}

Variant& Deref(norvik50_value* v) {
  if (v == nullptr) Raise(kErrObjectNotSet);
  return *AsVariant(v);
}

norvik50_value* NewHandle(Variant value) { return AsHandle(new Variant(std::move(value))); }

void Hand(norvik50_value** out, Variant value) {
  if (out == nullptr) Raise(kErrInvalidCall);
  *out = NewHandle(std::move(value));
}

int32_t Report(norvik50_error* err, int32_t number, std::u16string_view description,
               std::u16string_view source) noexcept {
  if (err == nullptr) return number;
  FreeTexts(err);
  err->number = number;
  try {
    err->description = Duplicate(ToUtf8(description));
    err->source = Duplicate(ToUtf8(source));
  } catch (...) {
    FreeTexts(err);  // the number still tells what happened
  }
  return number;
}

void ReportSuccess(norvik50_error* err) noexcept {
  if (err == nullptr) return;
  FreeTexts(err);
  err->number = 0;
}

int32_t ReportCurrentException(norvik50_error* err) noexcept {
  try {
    throw;
  } catch (const Error& e) {
    return Report(err, e.number(), e.description(), e.source());
  } catch (const std::bad_alloc&) {
    return Report(err, kErrOutOfMemory, u"Out of memory", kErrorSource);
  } catch (const std::exception& e) {
    std::u16string what;
    try {
      what = u"Internal error: " + FromUtf8(e.what());
    } catch (...) {
    }
    return Report(err, kErrInternal, what, kErrorSource);
  } catch (...) {
    return Report(err, kErrInternal, u"Internal error: unknown exception", kErrorSource);
  }
}

}  // namespace norvik50::capi

extern "C" {

void norvik50_error_clear(norvik50_error* err) { norvik50::capi::ReportSuccess(err); }

void norvik50_free(void* text) { std::free(text); }

const char* norvik50_version(void) { return norvik50::Version(); }

}  // extern "C"
