// Calls members through the C interface with argument arrays generated from
// the input: every value type (text of any bytes, UTF-16 with lone
// surrogates, NaN and out-of-range numbers, arrays, records, collections),
// omitted slots, too many arguments, unknown names and call forms, NULL
// and freed library handles. Every call must answer 0 or an error number,
// every value it hands back must read and free cleanly, and nothing may
// leak (run under AddressSanitizer, UndefinedBehaviorSanitizer and the
// leak checker).
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "norvik50/norvik50.h"

namespace {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool empty() const { return pos_ >= size_; }
  uint8_t Byte() { return pos_ < size_ ? data_[pos_++] : 0; }
  template <typename T>
  T Bits() {
    T value{};
    uint8_t raw[sizeof(T)] = {};
    for (uint8_t& b : raw) b = Byte();
    std::memcpy(&value, raw, sizeof(T));
    return value;
  }
  std::string Bytes(size_t max) {
    const size_t n = Byte() % (max + 1);
    std::string out;
    for (size_t i = 0; i < n && !empty(); ++i) out.push_back(static_cast<char>(Byte()));
    return out;
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t pos_ = 0;
};

// Members that write files where their arguments point or into the store,
// or that sleep as long as asked: not for a fuzzer.
bool Unsuitable(const char* name) {
  std::string lower(name);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower.rfind("tkllog", 0) == 0 || lower.rfind("tkr", 0) == 0 || lower == "tklwait" ||
         lower == "tklerrormsg";
}

norvik50_value* MakeValue(Input& in, int depth) {
  norvik50_value* v = nullptr;
  switch (in.Byte() % 20) {
    case 0:
      return norvik50_value_new_empty();
    case 1:
      return norvik50_value_new_null();
    case 2:
      return norvik50_value_new_integer(in.Bits<int16_t>());
    case 3:
      return norvik50_value_new_long(in.Bits<int32_t>());
    case 4:
      return norvik50_value_new_single(in.Bits<float>());
    case 5:
      return norvik50_value_new_double(in.Bits<double>());
    case 6:
      return norvik50_value_new_currency(in.Bits<int64_t>());
    case 7:
      return norvik50_value_new_boolean(in.Byte());
    case 8:
      return norvik50_value_new_error(in.Bits<int32_t>());
    case 9:
      return norvik50_value_new_byte(in.Byte());
    case 10: {
      const std::string bytes = in.Bytes(24);
      std::vector<uint16_t> units(bytes.size() / 2);
      if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * 2);
      return norvik50_value_new_string16(units.data(), units.size());
    }
    case 11:
    case 12: {
      const std::string text = in.Bytes(32);
      norvik50_value_new_utf8(text.data(), text.size(), &v);  // NULL when not UTF-8
      return v;
    }
    case 13:
      norvik50_value_new_date(in.Bits<double>(), &v);
      return v;
    case 14:
      norvik50_value_new_decimal(in.Bits<uint32_t>(), in.Bits<uint64_t>(), in.Byte() % 32,
                                 in.Byte() & 1, &v);
      return v;
    case 15: {
      if (depth > 3) return nullptr;
      const uint16_t types[] = {NORVIK50_VT_VARIANT, NORVIK50_VT_STRING, NORVIK50_VT_LONG,
                                NORVIK50_VT_INTEGER, NORVIK50_VT_DOUBLE, NORVIK50_VT_RECORD};
      const uint16_t type = types[in.Byte() % 6];
      const int32_t lower = static_cast<int32_t>(in.Byte()) - 8;
      const size_t count = in.Byte() % 6;
      if (in.Byte() % 8 == 0) {
        norvik50_value_new_unbounded_array(type, &v);
        return v;
      }
      if (norvik50_value_new_array(type, lower, count, &v) != 0) return nullptr;
      for (size_t i = 0; i < count + 1; ++i) {  // one past the end, too
        norvik50_value* item = MakeValue(in, depth + 1);
        norvik50_array_set(v, lower + static_cast<int64_t>(i), item);
        norvik50_value_free(item);
      }
      return v;
    }
    case 16: {
      if (depth > 3) return nullptr;
      const std::string type = in.Byte() & 1 ? "typFileInfo" : in.Bytes(8);
      if (norvik50_value_new_record(type.c_str(), &v) != 0) return nullptr;
      const char* fields[] = {"lpDrive", "lpPath", "lpFilename", "lpExt", "lpFullName", "x"};
      for (int i = in.Byte() % 7; i > 0; --i) {
        norvik50_value* item = MakeValue(in, depth + 1);
        norvik50_record_set(v, fields[in.Byte() % 6], item);
        norvik50_value_free(item);
      }
      return v;
    }
    case 17: {
      v = norvik50_value_new_collection();
      for (int i = in.Byte() % 4; i > 0; --i) {
        norvik50_value* item = MakeValue(in, depth + 1);
        norvik50_collection_add(v, item);
        norvik50_value_free(item);
      }
      return v;
    }
    case 18:
      return norvik50_value_new_nothing();
    default:
      return nullptr;  // an omitted argument
  }
}

// Reads everything `v` holds, as a host would, so that a value the call
// left broken shows up here.
void ReadAll(const norvik50_value* v, int depth) {
  if (v == nullptr || depth > 8) return;
  const uint16_t type = norvik50_value_type(v);
  double d;
  int16_t i16;
  int32_t i32;
  int64_t i64;
  float f;
  uint8_t byte;
  uint32_t hi;
  uint64_t lo;
  uint8_t scale;
  int negative;
  const uint16_t* units;
  size_t length;
  char* text = nullptr;
  switch (type) {
    case NORVIK50_VT_INTEGER:
      norvik50_value_get_integer(v, &i16);
      break;
    case NORVIK50_VT_LONG:
      norvik50_value_get_long(v, &i32);
      break;
    case NORVIK50_VT_SINGLE:
      norvik50_value_get_single(v, &f);
      break;
    case NORVIK50_VT_DOUBLE:
      norvik50_value_get_double(v, &d);
      break;
    case NORVIK50_VT_CURRENCY:
      norvik50_value_get_currency(v, &i64);
      break;
    case NORVIK50_VT_DATE:
      norvik50_value_get_date(v, &d);
      break;
    case NORVIK50_VT_BOOLEAN:
      norvik50_value_get_boolean(v, &i16);
      break;
    case NORVIK50_VT_ERROR:
      norvik50_value_get_error(v, &i32);
      break;
    case NORVIK50_VT_BYTE:
      norvik50_value_get_byte(v, &byte);
      break;
    case NORVIK50_VT_DECIMAL:
      norvik50_value_get_decimal(v, &hi, &lo, &scale, &negative);
      break;
    case NORVIK50_VT_STRING:
      if (norvik50_value_get_string16(v, &units, &length) != 0) abort();
      if (norvik50_value_get_utf8(v, &text, &length) != 0) abort();
      norvik50_free(text);
      break;
    case NORVIK50_VT_RECORD: {
      size_t count = 0;
      norvik50_record_field_count(v, &count);
      for (size_t k = 0; k < count; ++k) {
        const char* name = nullptr;
        norvik50_value* field = nullptr;
        if (norvik50_record_field(v, k, &name, &field) != 0) abort();
        ReadAll(field, depth + 1);
        norvik50_value_free(field);
      }
      break;
    }
    default:
      if ((type & NORVIK50_VT_ARRAY) != 0) {
        int32_t lower = 0;
        size_t count = 0;
        if (norvik50_array_bounds(v, &lower, &count) != 0) break;
        for (size_t k = 0; k < count; ++k) {
          norvik50_value* item = nullptr;
          if (norvik50_array_get(v, lower + static_cast<int64_t>(k), &item) != 0) abort();
          ReadAll(item, depth + 1);
          norvik50_value_free(item);
        }
      }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static norvik50_lib* lib = [] {
    setenv("NORVIK50_REGISTRY_DIR", "/nonexistent/norvik50-fuzz", 1);
    norvik50_lib* made = nullptr;
    norvik50_lib_new(&made, nullptr);
    return made;
  }();
  static const size_t member_count = norvik50_member_count();
  Input in(data, size);

  // The member: one of the table, or a name made of the input's bytes.
  std::string name;
  const uint8_t pick = in.Byte();
  if (pick < 240 && member_count > 0) {
    norvik50_member member{};
    norvik50_member_get(in.Byte() % member_count, &member);
    name = member.name;
  } else {
    name = in.Bytes(20);
  }
  if (Unsuitable(name.c_str())) return 0;
  const int32_t forms[] = {NORVIK50_METHOD,
                           NORVIK50_PROPERTYGET,
                           NORVIK50_PROPERTYLET,
                           NORVIK50_METHOD | NORVIK50_PROPERTYGET,
                           0,
                           7};
  const int32_t how = forms[in.Byte() % 6];

  std::vector<norvik50_value*> args(in.Byte() % 12);
  for (norvik50_value*& arg : args) arg = MakeValue(in, 0);

  norvik50_lib* target = lib;
  norvik50_lib* freed = nullptr;
  switch (in.Byte() % 32) {
    case 0:
      target = nullptr;
      break;
    case 1:
      norvik50_lib_new(&freed, nullptr);
      norvik50_lib_free(freed);
      target = freed;
      break;
    default:
      break;
  }

  norvik50_value* result = nullptr;
  norvik50_error err = NORVIK50_ERROR_INIT;
  const int32_t rc =
      norvik50_invoke(target, name.c_str(), how, args.data(), args.size(), &result, &err);
  if (rc != err.number) abort();
  if (rc != 0 && (result != nullptr || err.description == nullptr)) abort();
  if ((target == nullptr || target == freed) && rc != 91) abort();
  ReadAll(result, 0);
  norvik50_value_free(result);
  for (norvik50_value* arg : args) {
    ReadAll(arg, 0);
    norvik50_value_free(arg);
  }
  norvik50_error_clear(&err);
  return 0;
}
