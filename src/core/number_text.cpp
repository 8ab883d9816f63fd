#include "core/number_text.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "norvik50/locale.h"

namespace norvik50 {
namespace {

std::u16string WithDecimal(const char* ascii, char16_t decimal) {
  std::u16string out;
  for (const char* p = ascii; *p; ++p) out.push_back(*p == '.' ? decimal : char16_t(*p));
  return out;
}

std::u16string Digits(int value, int width) {
  std::u16string out;
  std::string s = std::to_string(value);
  if (static_cast<int>(s.size()) < width) s.insert(0, width - s.size(), '0');
  return std::u16string(s.begin(), s.end());
}

}  // namespace

std::u16string DoubleToText(double value, char16_t decimal) {
  if (value == 0) return u"0";  // no "-0"
  char text[40];
  // %G switches to the exponent exactly where the runtime does (exponent
  // below -4 or at least the precision) and drops trailing zeros.
  std::snprintf(text, sizeof text, "%.15G", value);
  return WithDecimal(text, decimal);
}

std::u16string SingleToText(float value, char16_t decimal) {
  if (value == 0) return u"0";
  char text[40];
  std::snprintf(text, sizeof text, "%.7G", static_cast<double>(value));
  return WithDecimal(text, decimal);
}

std::u16string CurrencyToText(Currency value, char16_t decimal) {
  return WithDecimal(value.ToString().c_str(), decimal);
}

std::u16string DecimalToText(const Decimal& value, char16_t decimal) {
  std::string text = value.ToString();
  if (text.find('.') != std::string::npos) {  // the runtime drops trailing zeros
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  if (text == "-0") text = "0";
  return WithDecimal(text.c_str(), decimal);
}

std::u16string DateToText(Date value) {
  const CivilDateTime c = value.ToCivil();
  const Locale& locale = CurrentLocale();
  std::u16string out;
  const std::u16string& pattern = locale.short_date;
  for (std::size_t i = 0; i < pattern.size();) {
    std::size_t run = 1;
    while (i + run < pattern.size() && pattern[i + run] == pattern[i]) ++run;
    switch (pattern[i]) {
      case u'd': out += Digits(c.day, run >= 2 ? 2 : 1); break;
      case u'M': out += Digits(c.month, run >= 2 ? 2 : 1); break;
      case u'y': out += run <= 2 ? Digits(c.year % 100, 2) : Digits(c.year, 4); break;
      default: out.append(run, pattern[i]); break;
    }
    i += run;
  }
  if (c.hour != 0 || c.minute != 0 || c.second != 0) {
    out += u' ' + Digits(c.hour, 2) + locale.time_separator + Digits(c.minute, 2) +
           locale.time_separator + Digits(c.second, 2);
  }
  return out;
}

std::optional<double> ParsePlainNumber(std::u16string_view text, char16_t decimal) {
  while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  std::string ascii;
  for (char16_t c : text) {
    if (c == decimal) {
      ascii.push_back('.');
    } else if (c < 0x80) {
      ascii.push_back(static_cast<char>(c));
    } else {
      return std::nullopt;
    }
  }
  if (ascii.size() > 2 && ascii[0] == '&' && (ascii[1] == 'H' || ascii[1] == 'h' ||
                                              ascii[1] == 'O' || ascii[1] == 'o')) {
    const int base = (ascii[1] == 'H' || ascii[1] == 'h') ? 16 : 8;
    char* end = nullptr;
    const unsigned long long v = std::strtoull(ascii.c_str() + 2, &end, base);
    if (*end != '\0' || v > 0xFFFFFFFFull) return std::nullopt;
    // Radix literals are 32-bit patterns: &HFFFFFFFF is -1.
    return static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(v)));
  }
  for (char c : ascii) {  // strtod would also take "inf", "nan" and hex floats
    if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '+' ||
          c == '-' || c == 'e' || c == 'E')) {
      return std::nullopt;
    }
  }
  char* end = nullptr;
  const double v = std::strtod(ascii.c_str(), &end);
  if (end == ascii.c_str() || *end != '\0' || !std::isfinite(v)) return std::nullopt;
  return v;
}

}  // namespace norvik50
