// libFuzzer target for the date reader and the number writer, the two
// conversions hosts feed with their own text and values. The date reader
// must answer a Date inside the runtime's range or refuse, never crash or
// hang, and read its own ISO answer back to the same Date. Every Double and
// Single written as text must read back to a value within the type's
// significant digits. The locale alternates between German and English.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/number_text.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "numeric/date_parse.h"
#include "numeric/locale_number.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

int FixedYear() { return 2031; }

void CheckNumberText(double value, double tolerance, const std::u16string& text,
                     const norvik50::Locale& locale) {
  const std::optional<double> back = norvik50::LocaleTextToDouble(text, locale);
  Check(back.has_value());
  Check(std::fabs(*back - value) <= std::fabs(value) * tolerance || *back == value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 9) return 0;
  const norvik50::Locale& locale = norvik50::SetCurrentLocale((data[0] & 1) ? "de-DE" : "en-US");
  double number;
  std::memcpy(&number, data + 1, sizeof number);
  data += 9;
  size -= 9;

  // The largest Doubles round up past the range at 15 digits and overflow
  // when read back, as they do in the runtime.
  if (std::isfinite(number) && std::fabs(number) < 1.7976931348623e308) {
    CheckNumberText(number, 1e-14, norvik50::DoubleToText(number, locale.decimal), locale);
    const float single = static_cast<float>(number);
    if (std::isfinite(single)) {
      CheckNumberText(single, 1e-6, norvik50::SingleToText(single, locale.decimal), locale);
    }
  }

  // Bytes become UTF-16 units two by two, so any unit can appear.
  std::u16string text;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    text.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
  }
  const std::optional<norvik50::Date> date = norvik50::ParseDateText(text, locale, &FixedYear);
  if (date) {
    Check(date->serial >= norvik50::Date::kMinSerial && date->serial <= norvik50::Date::kMaxSerial);
    const std::string iso = date->ToIsoString();
    const std::u16string iso16(iso.begin(), iso.end());
    const std::optional<norvik50::Date> again = norvik50::ParseDateText(iso16, locale, &FixedYear);
    Check(again && again->serial == date->serial);
  }
  return 0;
}
