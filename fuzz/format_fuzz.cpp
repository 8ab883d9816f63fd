// libFuzzer target for the Format engine, a parser of outside text (the
// patterns hosts store with their settings and resources). The input is
// split into a value and a pattern; the value is tried as each kind of
// Variant the engine takes. Every call must answer with text or with one of
// the documented errors (13, 6), never crash, hang or read outside its
// input. The locale alternates between German and English.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"
#include "numeric/numeric_text.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

void Try(const norvik50::Variant& value, std::u16string_view pattern) {
  try {
    const std::u16string text = norvik50::FormatValue(value, pattern);
    // Output stays linear in the pattern: at most a few hundred digits of
    // the value plus what each pattern character can produce.
    Check(text.size() <= 2048 + 64 * pattern.size());
  } catch (const norvik50::Error& e) {
    Check(e.number() == norvik50::kErrTypeMismatch || e.number() == norvik50::kErrOverflow);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using norvik50::Variant;
  if (size < 10) return 0;
  norvik50::SetCurrentLocale((data[0] & 1) ? "de-DE" : "en-US");
  double number;
  std::memcpy(&number, data + 1, sizeof number);
  const uint8_t split = data[9];
  data += 10;
  size -= 10;
  // Bytes become UTF-16 units two by two, so any unit can appear.
  std::u16string units;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    units.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
  }
  const std::size_t cut = units.empty() ? 0 : split % (units.size() + 1);
  const std::u16string value_text = units.substr(0, cut);
  const std::u16string pattern = units.substr(cut);

  Try(Variant(number), pattern);
  Try(Variant(static_cast<float>(number)), pattern);
  Try(Variant(norvik50::Date{number}), pattern);
  const bool fits = number > -9e14 && number < 9e14;  // also false for NaN
  Try(Variant(norvik50::Currency{fits ? static_cast<int64_t>(number * 10000) : 0}), pattern);
  Try(Variant(static_cast<int32_t>(split) - 128), pattern);
  Try(Variant(value_text), pattern);
  Try(Variant(), pattern);
  // The conversions that read text never raise.
  (void)norvik50::ConvertToType(5, Variant(value_text));
  (void)norvik50::ConvertToType(7, Variant(value_text));
  (void)norvik50::Val(value_text);
  return 0;
}
