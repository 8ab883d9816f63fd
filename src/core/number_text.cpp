#include "core/number_text.h"

#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>

#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>

#include "core/number_text_digits.h"
#include "norvik50/error.h"
#include "norvik50/locale.h"

namespace norvik50 {
namespace {

std::u16string WithDecimal(const char* ascii, char16_t decimal) {
  std::u16string out;
  for (const char* p = ascii; *p; ++p) out.push_back(*p == '.' ? decimal : char16_t(*p));
  return out;
}

std::u16string FromIcu(const icu::UnicodeString& s) {
  std::u16string out(reinterpret_cast<const char16_t*>(s.getBuffer()),
                     static_cast<std::size_t>(s.length()));
  // Dates show "Mo" and "Jan" where ICU's abbreviations may end in a period.
  if (!out.empty() && out.back() == u'.') out.pop_back();
  return out;
}

std::unique_ptr<CalendarNames> LoadNames(const std::string& icu_name) {
  auto names = std::make_unique<CalendarNames>();
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale(icu_name.empty() ? "en_US" : icu_name.c_str());
  icu::DateFormatSymbols symbols(locale, status);
  if (U_FAILURE(status)) {
    status = U_ZERO_ERROR;
    symbols = icu::DateFormatSymbols(icu::Locale("en_US"), status);
  }
  using S = icu::DateFormatSymbols;
  int32_t count = 0;
  const icu::UnicodeString* months = symbols.getMonths(count, S::FORMAT, S::WIDE);
  for (int i = 0; i < 12 && i < count; ++i) names->months[i] = FromIcu(months[i]);
  months = symbols.getMonths(count, S::STANDALONE, S::ABBREVIATED);
  for (int i = 0; i < 12 && i < count; ++i) names->short_months[i] = FromIcu(months[i]);
  // ICU's weekday arrays start at index 1 (Sunday).
  const icu::UnicodeString* days = symbols.getWeekdays(count, S::FORMAT, S::WIDE);
  for (int i = 0; i < 7 && i + 1 < count; ++i) names->weekdays[i] = FromIcu(days[i + 1]);
  days = symbols.getWeekdays(count, S::STANDALONE, S::ABBREVIATED);
  for (int i = 0; i < 7 && i + 1 < count; ++i) names->short_weekdays[i] = FromIcu(days[i + 1]);
  return names;
}

void AppendNumber(std::u16string& out, int value, int width) {
  char buffer[16];
  int n = 0;
  unsigned v = static_cast<unsigned>(value < 0 ? -value : value);
  do {
    buffer[n++] = static_cast<char>('0' + v % 10);
    v /= 10;
  } while (v != 0);
  for (int i = n; i < width; ++i) out.push_back(u'0');
  while (n > 0) out.push_back(static_cast<char16_t>(buffer[--n]));
}

}  // namespace

// The runtime's general number form: the value rounded to the type's
// significant digits, then fixed notation when it needs no more digits
// before the point, nor after it, than the type has significant digits
// (0.000056789 and 999999999999999 stay fixed), else the exponent form
// with at least two exponent digits ("1E+15", "5.6789E-12").
std::u16string GeneralNumberText(double value, int precision, char16_t decimal) {
  if (value == 0) return u"0";  // no "-0"
  if (!std::isfinite(value)) {
    char text[16];
    std::snprintf(text, sizeof text, "%G", value);
    return WithDecimal(text, decimal);
  }
  const SignificantDigits s = SignificantDigitsOf(value, precision);
  std::u16string out;
  out.reserve(32);
  if (s.negative) out.push_back(u'-');
  const int before = s.exponent + 1;
  const int after = s.count - before;
  if (before <= precision && after <= precision) {
    if (before <= 0) {
      out.push_back(u'0');
      out.push_back(decimal);
      out.append(static_cast<std::size_t>(-before), u'0');
      for (int i = 0; i < s.count; ++i) out.push_back(static_cast<char16_t>(s.digits[i]));
      return out;
    }
    for (int i = 0; i < before; ++i) {
      out.push_back(i < s.count ? static_cast<char16_t>(s.digits[i]) : u'0');
    }
    if (after > 0) {
      out.push_back(decimal);
      for (int i = before; i < s.count; ++i) out.push_back(static_cast<char16_t>(s.digits[i]));
    }
    return out;
  }
  out.push_back(static_cast<char16_t>(s.digits[0]));
  if (s.count > 1) {
    out.push_back(decimal);
    for (int i = 1; i < s.count; ++i) out.push_back(static_cast<char16_t>(s.digits[i]));
  }
  out.push_back(u'E');
  out.push_back(s.exponent < 0 ? u'-' : u'+');
  AppendNumber(out, s.exponent, 2);
  return out;
}

std::u16string DoubleToText(double value, char16_t decimal) {
  return GeneralNumberText(value, 15, decimal);
}

std::u16string SingleToText(float value, char16_t decimal) {
  return GeneralNumberText(static_cast<double>(value), 7, decimal);
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
  // A serial outside the Date range has no calendar day (and NaN none at all).
  if (!(value.serial >= Date::kMinSerial && value.serial <= Date::kMaxSerial)) {
    Raise(kErrOverflow);
  }
  return GeneralDateText(value.ToCivil(), CurrentLocale());
}

// German and English names as Windows writes them; ICU's differ in places
// ("Mär." and "Mo." in German, "Sept" in British English), and hosts compare
// formatted dates with what they always got.
const CalendarNames& GermanNames() {
  static const CalendarNames names{
      {u"Januar", u"Februar", u"M\u00E4rz", u"April", u"Mai", u"Juni", u"Juli", u"August",
       u"September", u"Oktober", u"November", u"Dezember"},
      {u"Jan", u"Feb", u"Mrz", u"Apr", u"Mai", u"Jun", u"Jul", u"Aug", u"Sep", u"Okt", u"Nov",
       u"Dez"},
      {u"Sonntag", u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag"},
      {u"So", u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa"}};
  return names;
}

const CalendarNames& EnglishNames() {
  static const CalendarNames names{
      {u"January", u"February", u"March", u"April", u"May", u"June", u"July", u"August",
       u"September", u"October", u"November", u"December"},
      {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct", u"Nov",
       u"Dec"},
      {u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"},
      {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"}};
  return names;
}

const CalendarNames& NamesFor(const Locale& locale) {
  if (locale.is_german()) return GermanNames();
  if (locale.tag == "en-US" || locale.tag == "en-GB") return EnglishNames();
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<CalendarNames>> cache;
  std::lock_guard<std::mutex> lock(mutex);
  std::unique_ptr<CalendarNames>& slot = cache[locale.icu_name];
  if (!slot) slot = LoadNames(locale.icu_name);
  return *slot;
}

int WeekdayOf(const CivilDateTime& c) {
  const std::chrono::year_month_day ymd{std::chrono::year{c.year},
                                        std::chrono::month{static_cast<unsigned>(c.month)},
                                        std::chrono::day{static_cast<unsigned>(c.day)}};
  return static_cast<int>(std::chrono::weekday{std::chrono::sys_days{ymd}}.c_encoding());
}

std::u16string RenderLocalePattern(std::u16string_view pattern, const CivilDateTime& c,
                                   const Locale& locale, bool pad_year) {
  const CalendarNames& names = NamesFor(locale);
  std::u16string out;
  for (std::size_t i = 0; i < pattern.size();) {
    const char16_t ch = pattern[i];
    if (ch == u'\'') {  // quoted text; '' inside stands for one quote
      std::size_t j = i + 1;
      for (; j < pattern.size(); ++j) {
        if (pattern[j] != u'\'') {
          out.push_back(pattern[j]);
        } else if (j + 1 < pattern.size() && pattern[j + 1] == u'\'') {
          out.push_back(u'\'');
          ++j;
        } else {
          break;
        }
      }
      i = j + 1;
      continue;
    }
    std::size_t run = 1;
    while (i + run < pattern.size() && pattern[i + run] == ch) ++run;
    const int width = run >= 2 ? 2 : 1;
    switch (ch) {
      case u'd':
        if (run >= 4) {
          out += names.weekdays[WeekdayOf(c)];
        } else if (run == 3) {
          out += names.short_weekdays[WeekdayOf(c)];
        } else {
          AppendNumber(out, c.day, width);
        }
        break;
      case u'M':
        if (run >= 4) {
          out += names.months[c.month - 1];
        } else if (run == 3) {
          out += names.short_months[c.month - 1];
        } else {
          AppendNumber(out, c.month, width);
        }
        break;
      case u'y':
        if (run <= 2) {
          AppendNumber(out, c.year % 100, run == 1 ? 1 : 2);
        } else {
          AppendNumber(out, c.year, pad_year ? 4 : 1);
        }
        break;
      case u'h':
        AppendNumber(out, c.hour % 12 == 0 ? 12 : c.hour % 12, width);
        break;
      case u'H':
        AppendNumber(out, c.hour, width);
        break;
      case u'm':
        AppendNumber(out, c.minute, width);
        break;
      case u's':
        AppendNumber(out, c.second, width);
        break;
      case u't': {
        const std::u16string& mark = c.hour < 12 ? locale.am : locale.pm;
        if (run == 1) {
          if (!mark.empty()) out.push_back(mark[0]);
        } else {
          out += mark;
        }
        break;
      }
      case u'g':
        break;  // era: none in the Gregorian calendar
      default:
        out.append(run, ch);
        break;
    }
    i += run;
  }
  // A locale without AM/PM marks leaves a dangling blank in "h:mm:ss tt".
  while (!out.empty() && out.back() == u' ') out.pop_back();
  return out;
}

std::u16string GeneralDateText(const CivilDateTime& c, const Locale& locale) {
  const bool pure_time = c.year == 1899 && c.month == 12 && c.day == 30;
  const bool midnight = c.hour == 0 && c.minute == 0 && c.second == 0;
  std::u16string out;
  // The general form writes a year below 1000 as it is ("1/1/100").
  if (!pure_time) out = RenderLocalePattern(locale.short_date, c, locale, false);
  if (pure_time || !midnight) {
    if (!out.empty()) out.push_back(u' ');
    out += RenderLocalePattern(locale.time_format, c, locale);
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
  if (ascii.size() > 2 && ascii[0] == '&' &&
      (ascii[1] == 'H' || ascii[1] == 'h' || ascii[1] == 'O' || ascii[1] == 'o')) {
    const int base = (ascii[1] == 'H' || ascii[1] == 'h') ? 16 : 8;
    char* end = nullptr;
    const unsigned long long v = std::strtoull(ascii.c_str() + 2, &end, base);
    if (*end != '\0' || v > 0xFFFFFFFFull) return std::nullopt;
    // Radix literals are 32-bit patterns: &HFFFFFFFF is -1.
    return static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(v)));
  }
  for (char c : ascii) {  // strtod would also take "inf", "nan" and hex floats
    if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '+' || c == '-' ||
          c == 'e' || c == 'E')) {
      return std::nullopt;
    }
  }
  char* end = nullptr;
  const double v = std::strtod(ascii.c_str(), &end);
  if (end == ascii.c_str() || *end != '\0' || !std::isfinite(v)) return std::nullopt;
  return v;
}

}  // namespace norvik50
