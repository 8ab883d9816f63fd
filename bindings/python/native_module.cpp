// norvik50._native: the Python package's bridge to the C interface. It
// converts between Python's values and the library's, calls members by
// name and raises norvik50.Error; everything a member does happens behind
// the C interface. The Python classes it converts to are registered by
// the package at import (bind), so they stay plain Python.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "norvik50/norvik50.h"

namespace py = pybind11;

// The 96-bit magnitude of a Decimal fits; GCC and Clang both have it.
__extension__ typedef unsigned __int128 U128;

namespace {

struct ValueFree {
  void operator()(norvik50_value* v) const noexcept { norvik50_value_free(v); }
};
using Value = std::unique_ptr<norvik50_value, ValueFree>;

// The package's classes and the standard ones the conversions use.
struct Types {
  py::object error, empty, nothing, ref, array, record, error_value, variant, host_object,
      missing, place, decimal, datetime, date;
};

Types& T() {
  // Never destroyed: Python objects must not be released after the
  // interpreter has finalised.
  static Types* types = new Types();
  return *types;
}

constexpr int32_t kErrInvalidCall = 5;
constexpr int32_t kErrOverflow = 6;
constexpr int32_t kErrTypeMismatch = 13;

[[noreturn]] void RaiseError(int32_t number, const std::string& description,
                             const std::string& source) {
  PyErr_SetObject(T().error.ptr(),
                  py::make_tuple(number, description, source).ptr());
  throw py::error_already_set();
}

[[noreturn]] void RaiseError(norvik50_error& err) {
  const int32_t number = err.number;
  const std::string description = err.description ? err.description : "";
  const std::string source = err.source ? err.source : "";
  norvik50_error_clear(&err);
  RaiseError(number, description, source);
}

void Check(int32_t rc, const char* what) {
  if (rc != 0) RaiseError(rc, what, "norvik50");
}

Value Own(norvik50_value* v) {
  if (v == nullptr) throw std::bad_alloc();
  return Value(v);
}

// ---- Dates: the serial counts days from 1899-12-30; before it the whole
// days are negative and the time of day still counts forward.

constexpr std::chrono::sys_days kEpoch =
    std::chrono::sys_days(std::chrono::year{1899} / 12 / 30);

double SerialFromDate(py::handle value) {
  const int y = value.attr("year").cast<int>();
  const unsigned m = value.attr("month").cast<unsigned>();
  const unsigned d = value.attr("day").cast<unsigned>();
  long seconds = 0;
  if (py::isinstance(value, T().datetime)) {
    seconds = value.attr("hour").cast<long>() * 3600 + value.attr("minute").cast<long>() * 60 +
              value.attr("second").cast<long>();
  }
  const long days =
      (std::chrono::sys_days(std::chrono::year{y} / m / d) - kEpoch).count();
  const double fraction = seconds / 86400.0;
  return days >= 0 ? days + fraction : days - fraction;
}

py::object DateFromSerial(double serial) {
  double whole = std::trunc(serial);
  long seconds = std::lround(std::fabs(serial - whole) * 86400.0);
  if (seconds >= 86400) {  // rounds up into the next day
    seconds -= 86400;
    whole += serial >= 0 ? 1 : -1;
  }
  const std::chrono::year_month_day ymd{kEpoch + std::chrono::days(static_cast<long>(whole))};
  return T().datetime(static_cast<int>(ymd.year()), static_cast<unsigned>(ymd.month()),
                      static_cast<unsigned>(ymd.day()), seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
}

// ---- Decimals: sign, a 96-bit magnitude and a scale.

Value DecimalValue(py::handle value) {
  py::tuple parts = value.attr("as_tuple")();
  const int negative = parts[0].cast<int>();
  py::object exponent = parts[2];
  if (!py::isinstance<py::int_>(exponent)) RaiseError(kErrOverflow, "Overflow", "norvik50");
  long exp = exponent.cast<long>();
  U128 magnitude = 0;
  constexpr U128 kMax = (static_cast<U128>(1) << 96) - 1;
  auto push_digit = [&](unsigned digit) {
    magnitude = magnitude * 10 + digit;
    if (magnitude > kMax) RaiseError(kErrOverflow, "Overflow", "norvik50");
  };
  for (py::handle digit : py::tuple(parts[1])) push_digit(digit.cast<unsigned>());
  for (; exp > 0; --exp) push_digit(0);
  if (-exp > 28) RaiseError(kErrOverflow, "Overflow", "norvik50");
  norvik50_value* out = nullptr;
  Check(norvik50_value_new_decimal(static_cast<uint32_t>(magnitude >> 64),
                                   static_cast<uint64_t>(magnitude), static_cast<uint8_t>(-exp),
                                   negative, &out),
        "Invalid procedure call or argument");
  return Value(out);
}

std::string Digits(U128 magnitude) {
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(magnitude % 10)));
    magnitude /= 10;
  } while (magnitude != 0);
  return digits;
}

py::object PyDecimal(bool negative, U128 magnitude, unsigned scale) {
  std::string digits = Digits(magnitude);
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
  if (scale > 0) digits.insert(digits.size() - scale, ".");
  return T().decimal((negative ? "-" : "") + digits);
}

// ---- Python -> library

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


Value ToValue(py::handle value);

Value TextValue(py::handle value) {
  Py_ssize_t size = 0;
  const char* utf8 = PyUnicode_AsUTF8AndSize(value.ptr(), &size);
  if (utf8 == nullptr) {
    // Lone surrogates have no UTF-8 form; UTF-16 keeps them.
    PyErr_Clear();
    py::bytes units = py::reinterpret_steal<py::bytes>(
        PyUnicode_AsEncodedString(value.ptr(), "utf-16-le", "surrogatepass"));
    if (!units) throw py::error_already_set();
    const std::string raw = units;
    return Own(norvik50_value_new_string16(reinterpret_cast<const uint16_t*>(raw.data()),
                                           raw.size() / 2));
  }
  norvik50_value* out = nullptr;
  Check(norvik50_value_new_utf8(utf8, static_cast<size_t>(size), &out),
        "Invalid procedure call or argument");
  return Value(out);
}

Value ArrayValue(py::handle items, int32_t lower, uint16_t element_type) {
  norvik50_value* raw = nullptr;
  const size_t count = py::len(items);
  Check(norvik50_value_new_array(element_type, lower, count, &raw),
        "Invalid procedure call or argument");
  Value array(raw);
  int64_t index = lower;
  for (py::handle item : items) {
    Value element = ToValue(item);
    const int32_t rc = norvik50_array_set(array.get(), index++, element.get());
    if (rc != 0) RaiseError(rc, "Array element of the wrong type", "norvik50");
  }
  return array;
}

// A value forced to `vt`, for types Python's own values would not pick.
Value TypedValue(py::handle value, uint16_t vt) {
  switch (vt) {
    case NORVIK50_VT_INTEGER:
      return Own(norvik50_value_new_integer(value.cast<int16_t>()));
    case NORVIK50_VT_LONG:
      return Own(norvik50_value_new_long(value.cast<int32_t>()));
    case NORVIK50_VT_BYTE:
      return Own(norvik50_value_new_byte(value.cast<uint8_t>()));
    case NORVIK50_VT_SINGLE:
      return Own(norvik50_value_new_single(value.cast<float>()));
    case NORVIK50_VT_DOUBLE:
      return Own(norvik50_value_new_double(value.cast<double>()));
    case NORVIK50_VT_CURRENCY: {
      py::object scaled = T().decimal(value).attr("scaleb")(4).attr("to_integral_value")();
      return Own(norvik50_value_new_currency(scaled.cast<int64_t>()));
    }
    case NORVIK50_VT_DECIMAL:
      return DecimalValue(T().decimal(value));
    case NORVIK50_VT_ERROR:
      return Own(norvik50_value_new_error(value.cast<int32_t>()));
    default:
      break;
  }
  Value plain = ToValue(value);
  if (norvik50_value_type(plain.get()) != vt) {
    RaiseError(kErrTypeMismatch, "Type mismatch", "norvik50");
  }
  return plain;
}

Value ToValue(py::handle value) {
  if (value.is_none()) return Own(norvik50_value_new_null());
  if (PyUnicode_Check(value.ptr())) return TextValue(value);
  if (PyBool_Check(value.ptr())) return Own(norvik50_value_new_boolean(value.ptr() == Py_True));
  if (PyLong_Check(value.ptr())) {
    int overflow = 0;
    const long long n = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
    if (overflow == 0 && n >= INT32_MIN && n <= INT32_MAX) {
      return Own(norvik50_value_new_long(static_cast<int32_t>(n)));
    }
    return Own(norvik50_value_new_double(PyLong_AsDouble(value.ptr())));
  }
  if (PyFloat_Check(value.ptr())) return Own(norvik50_value_new_double(PyFloat_AS_DOUBLE(value.ptr())));
  Types& t = T();
  if (value.is(t.empty)) return Own(norvik50_value_new_empty());
  if (value.is(t.nothing)) return Own(norvik50_value_new_nothing());
  if (py::isinstance(value, t.decimal)) return DecimalValue(value);
  if (py::isinstance(value, t.date)) {
    norvik50_value* out = nullptr;
    Check(norvik50_value_new_date(SerialFromDate(value), &out), "Overflow");
    return Value(out);
  }
  if (py::isinstance(value, t.variant)) {
    return TypedValue(value.attr("value"), value.attr("vt").cast<uint16_t>());
  }
  if (py::isinstance(value, t.error_value)) {
    return Own(norvik50_value_new_error(value.attr("code").cast<int32_t>()));
  }
  if (py::isinstance(value, t.array)) {
    const uint16_t element = value.attr("element_type").cast<uint16_t>();
    py::object lower = value.attr("lower");
    if (lower.is_none()) {
      norvik50_value* out = nullptr;
      Check(norvik50_value_new_unbounded_array(element, &out), "Invalid procedure call or argument");
      return Value(out);
    }
    return ArrayValue(value, lower.cast<int32_t>(), element);
  }
  if (py::isinstance<py::list>(value) || py::isinstance<py::tuple>(value)) {
    return ArrayValue(value, 0, NORVIK50_VT_VARIANT);
  }
  if (py::isinstance(value, t.record)) {
    norvik50_value* raw = nullptr;
    Check(norvik50_value_new_record(value.attr("type_name").cast<std::string>().c_str(), &raw),
          "Invalid procedure call or argument");
    Value record(raw);
    for (auto [name, field] : value.cast<py::dict>()) {
      Value item = ToValue(field);
      Check(norvik50_record_set(record.get(), name.cast<std::string>().c_str(), item.get()),
            "Invalid procedure call or argument");
    }
    return record;
  }
  if (py::isinstance(value, t.host_object)) {
    return Own(norvik50_value_copy(value.attr("_handle").cast<const ObjectHandle&>().get()));
  }
  RaiseError(kErrTypeMismatch,
             "Type mismatch: no library value for " +
                 py::str(value.get_type().attr("__name__")).cast<std::string>(),
             "norvik50");
}

// ---- library -> Python

py::object FromValue(const norvik50_value* v) {
  switch (norvik50_value_type(v)) {
    case NORVIK50_VT_EMPTY:
      return T().empty;
    case NORVIK50_VT_NULL:
      return py::none();
    case NORVIK50_VT_INTEGER: {
      int16_t x = 0;
      norvik50_value_get_integer(v, &x);
      return py::int_(x);
    }
    case NORVIK50_VT_LONG: {
      int32_t x = 0;
      norvik50_value_get_long(v, &x);
      return py::int_(x);
    }
    case NORVIK50_VT_BYTE: {
      uint8_t x = 0;
      norvik50_value_get_byte(v, &x);
      return py::int_(x);
    }
    case NORVIK50_VT_SINGLE: {
      float x = 0;
      norvik50_value_get_single(v, &x);
      return py::float_(x);
    }
    case NORVIK50_VT_DOUBLE: {
      double x = 0;
      norvik50_value_get_double(v, &x);
      return py::float_(x);
    }
    case NORVIK50_VT_BOOLEAN: {
      int16_t x = 0;
      norvik50_value_get_boolean(v, &x);
      return py::bool_(x != 0);
    }
    case NORVIK50_VT_ERROR: {
      int32_t x = 0;
      norvik50_value_get_error(v, &x);
      return T().error_value(x);
    }
    case NORVIK50_VT_CURRENCY: {
      int64_t scaled = 0;
      norvik50_value_get_currency(v, &scaled);
      const bool negative = scaled < 0;
      const U128 magnitude =
          negative ? static_cast<U128>(-(scaled + 1)) + 1
                   : static_cast<U128>(scaled);
      return PyDecimal(negative, magnitude, 4).attr("normalize")();
    }
    case NORVIK50_VT_DECIMAL: {
      uint32_t hi = 0;
      uint64_t lo = 0;
      uint8_t scale = 0;
      int negative = 0;
      norvik50_value_get_decimal(v, &hi, &lo, &scale, &negative);
      return PyDecimal(negative != 0, (static_cast<U128>(hi) << 64) | lo, scale);
    }
    case NORVIK50_VT_DATE: {
      double serial = 0;
      norvik50_value_get_date(v, &serial);
      return DateFromSerial(serial);
    }
    case NORVIK50_VT_STRING: {
      const uint16_t* units = nullptr;
      size_t length = 0;
      norvik50_value_get_string16(v, &units, &length);
      int byteorder = -1;  // little-endian, as the units are in memory
      PyObject* text = PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(units),
                                             static_cast<Py_ssize_t>(length * 2),
                                             "surrogatepass", &byteorder);
      if (text == nullptr) throw py::error_already_set();
      return py::reinterpret_steal<py::object>(text);
    }
    case NORVIK50_VT_OBJECT: {
      uintptr_t id = 0;
      norvik50_object_id(v, &id);
      if (id == 0) return T().nothing;
      return T().host_object(ObjectHandle(Own(norvik50_value_copy(v))));
    }
    case NORVIK50_VT_RECORD: {
      const char* type = nullptr;
      size_t count = 0;
      norvik50_record_type(v, &type);
      norvik50_record_field_count(v, &count);
      py::dict fields;
      for (size_t i = 0; i < count; ++i) {
        const char* name = nullptr;
        norvik50_value* field = nullptr;
        Check(norvik50_record_field(v, i, &name, &field), "Subscript out of range");
        Value owned(field);
        fields[py::str(name)] = FromValue(owned.get());
      }
      return T().record(type, fields);
    }
    default:
      break;
  }
  const uint16_t vt = norvik50_value_type(v);
  if ((vt & NORVIK50_VT_ARRAY) == 0) RaiseError(kErrTypeMismatch, "Type mismatch", "norvik50");
  const uint16_t element = vt & ~NORVIK50_VT_ARRAY;
  int32_t lower = 0;
  size_t count = 0;
  if (norvik50_array_bounds(v, &lower, &count) != 0) {
    return T().array(py::list(), py::none(), element);
  }
  py::list items(count);
  for (size_t i = 0; i < count; ++i) {
    norvik50_value* item = nullptr;
    Check(norvik50_array_get(v, lower + static_cast<int64_t>(i), &item), "Subscript out of range");
    Value owned(item);
    items[i] = FromValue(owned.get());
  }
  return T().array(items, lower, element);
}

void ObjectHandle::add(py::handle item) {
  Value v = ToValue(item);
  Check(norvik50_collection_add(value_.get(), v.get()), "Type mismatch");
}

py::object ObjectHandle::item(int32_t index) const {
  norvik50_value* out = nullptr;
  Check(norvik50_collection_item(value_.get(), index, &out), "Subscript out of range");
  Value owned(out);
  return FromValue(owned.get());
}

// ---- The library object
//
// A capsule owns the library object; the package's LIB holds it. Calls go
// through `call`, a plain CPython function taking its arguments as they
// lie on the interpreter's stack: the binding's whole overhead is paid on
// every call, so it avoids pybind11's argument dispatch and every
// allocation a call with few arguments does not need.

constexpr const char* kLibCapsule = "norvik50.lib";

struct LibBox {
  norvik50_lib* lib = nullptr;
};

void FreeBox(PyObject* capsule) {
  auto* box = static_cast<LibBox*>(PyCapsule_GetPointer(capsule, kLibCapsule));
  if (box == nullptr) return;
  if (box->lib != nullptr) norvik50_lib_free(box->lib);
  delete box;
}

py::object NewLib() {
  auto box = std::make_unique<LibBox>();
  norvik50_error err = NORVIK50_ERROR_INIT;
  if (norvik50_lib_new(&box->lib, &err) != 0) RaiseError(err);
  PyObject* capsule = PyCapsule_New(box.get(), kLibCapsule, &FreeBox);
  if (capsule == nullptr) {
    norvik50_lib_free(box->lib);
    throw py::error_already_set();
  }
  box.release();
  return py::reinterpret_steal<py::object>(capsule);
}

LibBox& Box(PyObject* capsule) {
  auto* box = static_cast<LibBox*>(PyCapsule_GetPointer(capsule, kLibCapsule));
  if (box == nullptr) throw py::error_already_set();
  return *box;
}

void CloseLib(py::handle capsule) {
  LibBox& box = Box(capsule.ptr());
  if (box.lib != nullptr) norvik50_lib_free(box.lib);
  box.lib = nullptr;  // a later call is refused by the library (91)
}

// Arguments of a call: on the stack up to kInline, which every member fits.
class CallSlots {
 public:
  static constexpr size_t kInline = 16;
  explicit CallSlots(size_t n) : n_(n) {
    if (n > kInline) {
      heap_owned_.resize(n);
      heap_slots_.resize(n, nullptr);
    }
  }
  Value& owned(size_t i) { return n_ > kInline ? heap_owned_[i] : owned_[i]; }
  norvik50_value** slots() { return n_ > kInline ? heap_slots_.data() : slots_; }

 private:
  size_t n_;
  Value owned_[kInline];
  norvik50_value* slots_[kInline] = {};
  std::vector<Value> heap_owned_;
  std::vector<norvik50_value*> heap_slots_;
};

PyObject* Call(norvik50_lib* lib, const char* name, int32_t how, PyObject* const* args,
               size_t argc) {
  CallSlots call(argc);
  norvik50_value** slots = call.slots();
  bool any_ref = false;
  Types& t = T();
  const auto* ref_type = reinterpret_cast<PyTypeObject*>(t.ref.ptr());
  for (size_t i = 0; i < argc; ++i) {
    py::handle arg = args[i];
    if (arg.is(t.missing)) continue;
    if (Py_TYPE(arg.ptr()) == ref_type) {
      any_ref = true;
      arg = arg.attr("value");
      if (arg.is(t.missing)) continue;
    }
    call.owned(i) = ToValue(arg);
    slots[i] = call.owned(i).get();
  }
  norvik50_value* result = nullptr;
  norvik50_error err = NORVIK50_ERROR_INIT;
  if (norvik50_invoke(lib, name, how, slots, argc, &result, &err) != 0) RaiseError(err);
  Value result_owned(result);
  for (size_t i = 0; i < argc; ++i) {
    if (slots[i] != call.owned(i).get()) call.owned(i).reset(slots[i]);  // filled in for us
  }
  if (any_ref) {
    // Each Ref holds the argument as the member left it.
    for (size_t i = 0; i < argc; ++i) {
      if (Py_TYPE(args[i]) == ref_type && slots[i] != nullptr) {
        py::handle(args[i]).attr("value") = FromValue(slots[i]);
      }
    }
  }
  return (result ? FromValue(result) : py::none()).release().ptr();
}

// call(lib, name, how, *args, **kwargs): the member's result; raises
// norvik50.Error. Keyword arguments are put in place by the package.
PyObject* CallEntry(PyObject*, PyObject* const* argv, Py_ssize_t nargsf, PyObject* kwnames) {
  try {
    const Py_ssize_t nargs = PyVectorcall_NARGS(nargsf);
    if (nargs < 3) {
      PyErr_SetString(PyExc_TypeError, "call(lib, name, how, *args, **kwargs)");
      return nullptr;
    }
    const char* name = PyUnicode_AsUTF8(argv[1]);
    if (name == nullptr) return nullptr;
    const long how = PyLong_AsLong(argv[2]);
    if (how == -1 && PyErr_Occurred()) return nullptr;
    norvik50_lib* lib = Box(argv[0]).lib;
    if (kwnames == nullptr || PyTuple_GET_SIZE(kwnames) == 0) {
      return Call(lib, name, static_cast<int32_t>(how), argv + 3, static_cast<size_t>(nargs - 3));
    }
    py::tuple positional(nargs - 3);
    for (Py_ssize_t i = 3; i < nargs; ++i) positional[i - 3] = py::handle(argv[i]);
    py::dict keywords;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(kwnames); ++i) {
      keywords[py::handle(PyTuple_GET_ITEM(kwnames, i))] = py::handle(argv[nargs + i]);
    }
    py::tuple placed = T().place(py::handle(argv[1]), py::handle(argv[2]), positional, keywords);
    return Call(lib, name, static_cast<int32_t>(how), &PyTuple_GET_ITEM(placed.ptr(), 0),
                static_cast<size_t>(PyTuple_GET_SIZE(placed.ptr())));
  } catch (py::error_already_set& e) {
    e.restore();
  } catch (py::builtin_exception& e) {
    e.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& e) {
    PyErr_SetString(PyExc_RuntimeError, e.what());
  }
  return nullptr;
}

PyMethodDef kCallDef = {"call", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&CallEntry)),
                        METH_FASTCALL | METH_KEYWORDS,
                        "call(lib, name, how, *args, **kwargs): calls a member by name"};

py::list MemberTable() {
  py::list table;
  const size_t count = norvik50_member_count();
  for (size_t m = 0; m < count; ++m) {
    norvik50_member info{};
    Check(norvik50_member_get(m, &info), "Subscript out of range");
    py::list params;
    for (size_t p = 0; p < info.param_count; ++p) {
      norvik50_param param{};
      Check(norvik50_member_param(m, p, &param), "Subscript out of range");
      py::dict entry;
      entry["name"] = param.name;
      entry["type"] = param.type;
      entry["by_ref"] = param.by_ref != 0;
      entry["optional"] = param.optional != 0;
      entry["has_default"] = param.default_value != nullptr;
      entry["default"] = param.default_value ? FromValue(param.default_value) : py::none();
      entry["record_type"] = param.record_type;
      params.append(entry);
    }
    py::dict entry;
    entry["name"] = info.name;
    entry["how"] = info.how;
    entry["result_type"] = info.result_type;
    entry["designed_here"] = info.designed_here != 0;
    entry["params"] = params;
    table.append(entry);
  }
  return table;
}

}  // namespace

PYBIND11_MODULE(_native, m) {
  m.doc() = "The C interface of norvik50, for the norvik50 package";
  m.def("version", [] { return std::string(norvik50_version()); });
  m.def("bind", [](py::kwargs types) {
    Types& t = T();
    t.error = types["Error"];
    t.empty = types["Empty"];
    t.nothing = types["Nothing"];
    t.ref = types["Ref"];
    t.array = types["Array"];
    t.record = types["Record"];
    t.error_value = types["ErrorValue"];
    t.variant = types["Variant"];
    t.host_object = types["HostObject"];
    t.missing = types["Missing"];
    t.place = types["Place"];
    t.decimal = py::module_::import("decimal").attr("Decimal");
    py::module_ datetime = py::module_::import("datetime");
    t.datetime = datetime.attr("datetime");
    t.date = datetime.attr("date");
  });
  m.def("members", &MemberTable);
  m.def("set_dialogs", [](int32_t which) {
    norvik50_error err = NORVIK50_ERROR_INIT;
    if (norvik50_set_dialogs(which, &err) != 0) RaiseError(err);
  });
  m.def("set_host_application", [](const std::string& name, const std::string& title) {
    Check(norvik50_set_host_application(name.c_str(), title.c_str()),
          "Invalid procedure call or argument");
  });
  m.def("new_collection", [] { return ObjectHandle(Own(norvik50_value_new_collection())); });
  py::class_<ObjectHandle>(m, "ObjectHandle")
      .def("id", &ObjectHandle::id)
      .def("count", &ObjectHandle::count)
      .def("add", &ObjectHandle::add)
      .def("item", &ObjectHandle::item);
  m.def("new_lib", &NewLib);
  m.def("close_lib", &CloseLib);
  m.add_object("call", py::reinterpret_steal<py::object>(PyCFunction_New(&kCallDef, nullptr)));
}
