#include "numeric/format.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/number_text.h"
#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "numeric/date_parse.h"
#include "numeric/decimal_digits.h"
#include "numeric/format_sections.h"
#include "numeric/locale_number.h"

namespace norvik50 {
namespace {

// What a value is to the Format engine.
struct Input {
  enum Kind { kNumber, kDate, kText, kNothing } kind = kNothing;
  DecimalDigits digits;  // kNumber and kDate: the value (a Date's serial)
  double serial = 0;     // kNumber and kDate: the value as a serial date
  const Variant* original = nullptr;
};

DecimalDigits CheckedDigitsOfDouble(double v) {
  if (!std::isfinite(v)) Raise(kErrOverflow);
  return DigitsOfDouble(v);
}

Input Classify(const Variant& value) {
  Input in;
  in.original = &value;
  in.kind = Input::kNumber;
  switch (value.type()) {
    case VarType::kEmpty:
      break;  // 0
    case VarType::kNull:
      in.kind = Input::kNothing;
      break;
    case VarType::kInteger:
      in.digits = DigitsOfInteger(value.as_integer());
      break;
    case VarType::kLong:
      in.digits = DigitsOfInteger(value.as_long());
      break;
    case VarType::kByte:
      in.digits = DigitsOfInteger(value.as_byte());
      break;
    case VarType::kBoolean:
      in.digits = DigitsOfInteger(value.as_boolean() ? -1 : 0);
      break;
    case VarType::kSingle:
      if (!std::isfinite(value.as_single())) Raise(kErrOverflow);
      in.digits = DigitsOfSingle(value.as_single());
      break;
    case VarType::kDouble:
      in.digits = CheckedDigitsOfDouble(value.as_double());
      break;
    case VarType::kCurrency:
      in.digits = DigitsOfCurrency(value.as_currency());
      break;
    case VarType::kDecimal:
      in.digits = DigitsOfDecimal(value.as_decimal());
      break;
    case VarType::kDate:
      in.kind = Input::kDate;
      in.digits = CheckedDigitsOfDouble(value.as_date().serial);
      break;
    case VarType::kString: {
      const std::u16string& text = value.as_string();
      if (auto number = LocaleTextToDouble(text)) {
        in.digits = DigitsOfDouble(*number);
        in.serial = *number;
      } else if (auto date = ParseDateText(text, CurrentLocale())) {
        in.kind = Input::kDate;
        in.digits = DigitsOfDouble(date->serial);
        in.serial = date->serial;
      } else {
        in.kind = Input::kText;
      }
      return in;
    }
    default:
      Raise(kErrTypeMismatch);
  }
  if (in.kind != Input::kNothing) in.serial = value.numeric_value().value_or(0);
  return in;
}

CivilDateTime CivilOf(const Input& in) {
  if (!(in.serial >= Date::kMinSerial && in.serial <= Date::kMaxSerial)) Raise(kErrOverflow);
  return Date{in.serial}.ToCivil();
}

bool EqualsNoCase(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char16_t x = a[i], y = b[i];
    if (x >= u'A' && x <= u'Z') x += 32;
    if (y >= u'A' && y <= u'Z') y += 32;
    if (x != y) return false;
  }
  return true;
}

// The text the runtime writes for a value without a pattern.
std::u16string PlainText(const Variant& value, const Input& in, const Locale& locale) {
  const char16_t decimal = locale.decimal;
  switch (value.type()) {
    case VarType::kEmpty:
    case VarType::kNull:
      return u"";
    case VarType::kString:
      return value.as_string();
    case VarType::kBoolean:
      return value.as_boolean() ? u"True" : u"False";
    case VarType::kSingle:
      return SingleToText(value.as_single(), decimal);
    case VarType::kCurrency:
      return CurrencyToText(value.as_currency(), decimal);
    case VarType::kDecimal:
      return DecimalToText(value.as_decimal(), decimal);
    case VarType::kDate:
      return GeneralDateText(CivilOf(in), locale);
    default:
      return DoubleToText(in.serial, decimal);
  }
}

// Formats a number or date through the sections of a custom pattern.
std::u16string FormatWithSections(const Input& in, std::u16string_view pattern,
                                  const Locale& locale) {
  std::u16string_view sections[3];
  const int count = SplitSections(pattern, sections);
  const bool negative = in.digits.negative && !in.digits.is_zero();
  int index = 0;
  bool minus = false;
  if (negative) {
    if (count >= 2 && !sections[1].empty()) {
      index = 1;
    } else {
      minus = true;  // the positive section with a sign in front
    }
  } else if (in.digits.is_zero() && count >= 3 && !sections[2].empty()) {
    index = 2;
  }
  const std::u16string_view section = sections[index];
  std::u16string out;
  if (IsDateSection(section)) {
    FormatDateSection(CivilOf(in), section, locale, out);
  } else {
    if (minus) out.push_back(u'-');
    FormatNumberSection(in.digits, section, locale, out);
  }
  return out;
}

std::u16string CurrencyText(const Input& in, const Locale& locale) {
  std::u16string pattern = u"#,##0";
  if (locale.currency_digits > 0) {
    pattern += u'.';
    pattern.append(static_cast<std::size_t>(locale.currency_digits), u'0');
  }
  std::u16string number;
  FormatNumberSection(in.digits, pattern, locale, number);
  const std::u16string& symbol = locale.currency_symbol;
  std::u16string out;
  switch (locale.currency_position) {
    case 1:
      out = number + symbol;
      break;
    case 2:
      out = symbol + u' ' + number;
      break;
    case 3:
      out = number + u' ' + symbol;
      break;
    default:
      out = symbol + number;
      break;
  }
  if (in.digits.negative && !in.digits.is_zero()) {
    // United States custom writes a negative amount in brackets.
    out = locale.tag == "en-US" ? u"(" + out + u")" : u"-" + out;
  }
  return out;
}

// The named formats; nullopt when `pattern` names none.
std::optional<std::u16string> Named(const Input& in, std::u16string_view pattern,
                                    const Locale& locale) {
  if (pattern.size() < 5 || pattern.size() > 14) return std::nullopt;
  const bool german = locale.is_german();
  const auto choice = [&](std::u16string_view yes_en, std::u16string_view no_en,
                          std::u16string_view yes_de, std::u16string_view no_de) {
    const bool yes = !in.digits.is_zero();
    return std::u16string(german ? (yes ? yes_de : no_de) : (yes ? yes_en : no_en));
  };
  if (EqualsNoCase(pattern, u"General Number")) {
    // A Single shows its own 7 digits, Currency and Decimal all of theirs.
    const VarType type = in.original->type();
    if (type == VarType::kSingle || type == VarType::kCurrency || type == VarType::kDecimal) {
      return PlainText(*in.original, in, locale);
    }
    return DoubleToText(in.serial, locale.decimal);
  }
  if (EqualsNoCase(pattern, u"Currency")) return CurrencyText(in, locale);
  if (EqualsNoCase(pattern, u"Fixed")) return FormatWithSections(in, u"0.00", locale);
  if (EqualsNoCase(pattern, u"Standard")) return FormatWithSections(in, u"#,##0.00", locale);
  if (EqualsNoCase(pattern, u"Percent")) return FormatWithSections(in, u"0.00%", locale);
  if (EqualsNoCase(pattern, u"Scientific")) return FormatWithSections(in, u"0.00E+00", locale);
  if (EqualsNoCase(pattern, u"Yes/No")) return choice(u"Yes", u"No", u"Ja", u"Nein");
  if (EqualsNoCase(pattern, u"True/False")) return choice(u"True", u"False", u"Wahr", u"Falsch");
  if (EqualsNoCase(pattern, u"On/Off")) return choice(u"On", u"Off", u"Ein", u"Aus");
  if (EqualsNoCase(pattern, u"Short Date")) {
    return RenderLocalePattern(locale.short_date, CivilOf(in), locale);
  }
  if (EqualsNoCase(pattern, u"Long Date")) {
    return RenderLocalePattern(locale.long_date, CivilOf(in), locale);
  }
  if (EqualsNoCase(pattern, u"Short Time")) {
    std::u16string out;
    FormatDateSection(CivilOf(in), u"hh:nn", locale, out);
    return out;
  }
  if (EqualsNoCase(pattern, u"Long Time")) {
    return RenderLocalePattern(locale.time_format, CivilOf(in), locale);
  }
  if (EqualsNoCase(pattern, u"General Date")) return GeneralDateText(CivilOf(in), locale);
  return std::nullopt;
}

}  // namespace

int SplitSections(std::u16string_view pattern, std::u16string_view (&sections)[3]) {
  int count = 0;
  std::size_t start = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char16_t c = pattern[i];
    if (c == u'"') {
      quoted = !quoted;
    } else if (c == u'\\' && !quoted) {
      ++i;
    } else if (c == u';' && !quoted) {
      sections[count++] = pattern.substr(start, i - start);
      start = i + 1;
      if (count == 3) return count;
    }
  }
  sections[count++] = pattern.substr(std::min(start, pattern.size()));
  return count;
}

bool IsDateSection(std::u16string_view section) {
  for (std::size_t i = 0; i < section.size(); ++i) {
    char16_t c = section[i];
    if (c == u'"') {
      const std::size_t end = section.find(u'"', i + 1);
      if (end == std::u16string_view::npos) return false;
      i = end;
      continue;
    }
    if (c == u'\\') {
      ++i;
      continue;
    }
    if (c == u'0' || c == u'#') return false;
    if (c >= u'A' && c <= u'Z') c += 32;
    if (IsDateFieldLetter(c)) return true;
    switch (c) {
      case u'a':  // AM/PM, A/P, AMPM
        if (EqualsNoCase(section.substr(i, 5), u"am/pm") ||
            EqualsNoCase(section.substr(i, 3), u"a/p") ||
            EqualsNoCase(section.substr(i, 4), u"ampm")) {
          return true;
        }
        break;
      case u't':
        if (EqualsNoCase(section.substr(i, 5), u"ttttt")) return true;
        break;
      default:
        break;
    }
  }
  return false;
}

std::u16string FormatValue(const Variant& value, std::u16string_view pattern) {
  const Locale& locale = CurrentLocale();
  const Input in = Classify(value);
  if (in.kind == Input::kNothing) return u"";
  if (in.kind == Input::kText) return value.as_string();
  if (pattern.empty()) {
    if (value.is_empty()) return u"";
    if (in.kind == Input::kDate) return GeneralDateText(CivilOf(in), locale);
    return PlainText(value, in, locale);
  }
  if (auto named = Named(in, pattern, locale)) return *std::move(named);
  return FormatWithSections(in, pattern, locale);
}

}  // namespace norvik50
