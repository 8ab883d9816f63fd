// Python values to the library's values and back, through the C
// interface: the conversions of the norvik50 package's extension.
#ifndef NORVIK50_BINDINGS_PYTHON_PY_VALUES_H_
#define NORVIK50_BINDINGS_PYTHON_PY_VALUES_H_

#include <pybind11/pybind11.h>

#include <memory>
#include <string>

#include "norvik50/norvik50.h"

namespace norvik50py {

namespace py = pybind11;

struct ValueFree {
  void operator()(norvik50_value* v) const noexcept { norvik50_value_free(v); }
};
using Value = std::unique_ptr<norvik50_value, ValueFree>;

// The package's classes and the standard ones the conversions use,
// registered by the package at import.
struct Types {
  py::object error, empty, nothing, ref, array, record, error_value, variant, host_object, missing,
      place, decimal, datetime, date;
};
Types& T();

// Raises norvik50.Error (a pending Python exception, thrown on as
// py::error_already_set).
[[noreturn]] void RaiseError(int32_t number, const std::string& description,
                             const std::string& source);
// The same from a failed call's error, which is cleared.
[[noreturn]] void RaiseError(norvik50_error& err);
// Raises norvik50.Error(rc, what) when rc is not 0.
void Check(int32_t rc, const char* what);
// Takes ownership of a value a constructor made; bad_alloc for NULL.
Value Own(norvik50_value* v);

// A new library value for a Python value; norvik50.Error 13 for a Python
// value the library has no type for, 6 for one outside its type's range.
Value ToValue(py::handle value);
// The Python value of a library value (not taken over).
py::object FromValue(const norvik50_value* v);

// An object value, kept alive by the Python object that wraps it.
class ObjectHandle {
 public:
  explicit ObjectHandle(Value v) : value_(std::move(v)) {}
  const norvik50_value* get() const { return value_.get(); }
  uintptr_t id() const {
    uintptr_t id = 0;
    norvik50_object_id(value_.get(), &id);
    return id;
  }
  int32_t count() const {
    int32_t n = 0;
    Check(norvik50_collection_count(value_.get(), &n), "Type mismatch");
    return n;
  }
  void add(py::handle item);
  py::object item(int32_t index) const;

 private:
  Value value_;
};

}  // namespace norvik50py

#endif  // NORVIK50_BINDINGS_PYTHON_PY_VALUES_H_
