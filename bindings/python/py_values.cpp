#include "py_values.h"

#include <chrono>
#include <cmath>
#include <string>
#include <vector>

// The 96-bit magnitude of a Decimal fits; GCC and Clang both have it.
__extension__ typedef unsigned __int128 U128;

namespace norvik50py {
namespace {

constexpr int32_t kErrOverflow = 6;
constexpr int32_t kErrTypeMismatch = 13;

}  // namespace

Types& T() {
  // Never destroyed: Python objects must not be released after the
  // interpreter has finalised.
  static Types* types = new Types();
  return *types;
}

[[noreturn]] void RaiseError(int32_t number, const std::string& description,
                             const std::string& source) {
  PyErr_SetObject(T().error.ptr(), py::make_tuple(number, description, source).ptr());
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

namespace {

// ---- Dates: the serial counts days from 1899-12-30; before it the whole
// days are negative and the time of day still counts forward.

constexpr std::chrono::sys_days kEpoch = std::chrono::sys_days(std::chrono::year{1899} / 12 / 30);

double SerialFromDate(py::handle value) {
  const int y = value.attr("year").cast<int>();
  const unsigned m = value.attr("month").cast<unsigned>();
  const unsigned d = value.attr("day").cast<unsigned>();
  long seconds = 0;
  if (py::isinstance(value, T().datetime)) {
    seconds = value.attr("hour").cast<long>() * 3600 + value.attr("minute").cast<long>() * 60 +
              value.attr("second").cast<long>();
  }
  const long days = (std::chrono::sys_days(std::chrono::year{y} / m / d) - kEpoch).count();
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
    return Own(
        norvik50_value_new_string16(reinterpret_cast<const uint16_t*>(raw.data()), raw.size() / 2));
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

}  // namespace

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
  if (PyFloat_Check(value.ptr()))
    return Own(norvik50_value_new_double(PyFloat_AS_DOUBLE(value.ptr())));
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
      Check(norvik50_value_new_unbounded_array(element, &out),
            "Invalid procedure call or argument");
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
          negative ? static_cast<U128>(-(scaled + 1)) + 1 : static_cast<U128>(scaled);
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
      PyObject* text =
          PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(units),
                                static_cast<Py_ssize_t>(length * 2), "surrogatepass", &byteorder);
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

}  // namespace norvik50py
