#include "norvik50/locale.h"

#include <unicode/datefmt.h>
#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include <cstdlib>
#include <memory>

namespace norvik50 {
namespace {

std::u16string FromIcu(const icu::UnicodeString& s) {
  return std::u16string(reinterpret_cast<const char16_t*>(s.getBuffer()),
                        static_cast<std::size_t>(s.length()));
}

// "de_AT.UTF-8@euro" -> "de-AT"; "C" and "POSIX" mean no preference.
std::string NormaliseTag(std::string_view raw) {
  std::string tag(raw.substr(0, raw.find_first_of(".@")));
  for (char& c : tag) {
    if (c == '_') c = '-';
  }
  if (tag == "C" || tag == "POSIX") tag.clear();
  return tag;
}

// ICU writes patterns in its own letters; the Format engine reads the
// Windows ones (dddd for the weekday name, tt for AM/PM, H for 24 hours).
std::u16string IcuPatternToWindows(const std::u16string& icu_pattern) {
  std::u16string out;
  bool quoted = false;
  for (std::size_t i = 0; i < icu_pattern.size(); ++i) {
    const char16_t c = icu_pattern[i];
    if (c == u'\'') {
      quoted = !quoted;
      out.push_back(c);
      continue;
    }
    if (quoted) {
      out.push_back(c);
      continue;
    }
    std::size_t run = 1;
    while (i + run < icu_pattern.size() && icu_pattern[i + run] == c) ++run;
    switch (c) {
      case u'E': out += run >= 4 ? u"dddd" : u"ddd"; break;
      case u'a': out += u"tt"; break;
      case u'L': out.append(run, u'M'); break;
      case u'y': out += run == 2 ? u"yy" : u"yyyy"; break;
      default: out.append(run, c); break;
    }
    i += run - 1;
  }
  return out;
}

Locale FromIcu(std::string tag) {
  Locale l;
  l.tag = tag;
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale icu_locale = icu::Locale::forLanguageTag(tag, status);
  if (U_FAILURE(status) || icu_locale.isBogus()) return l;  // icu_name stays empty
  l.icu_name = icu_locale.getName();
  icu::DecimalFormatSymbols symbols(icu_locale, status);
  if (U_SUCCESS(status)) {
    const auto decimal = FromIcu(symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol));
    const auto grouping = FromIcu(symbols.getSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol));
    const auto currency = FromIcu(symbols.getSymbol(icu::DecimalFormatSymbols::kCurrencySymbol));
    if (decimal.size() == 1) l.decimal = decimal[0];
    if (grouping.size() == 1) l.thousands = grouping[0];
    if (!currency.empty()) l.currency_symbol = currency;
  }
  auto pattern_of = [&](icu::DateFormat::EStyle date_style, icu::DateFormat::EStyle time_style,
                        std::u16string& target) {
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(date_style, time_style, icu_locale));
    if (auto* simple = dynamic_cast<icu::SimpleDateFormat*>(format.get())) {
      icu::UnicodeString pattern;
      simple->toPattern(pattern);
      target = IcuPatternToWindows(FromIcu(pattern));
    }
  };
  pattern_of(icu::DateFormat::kShort, icu::DateFormat::kNone, l.short_date);
  pattern_of(icu::DateFormat::kFull, icu::DateFormat::kNone, l.long_date);
  pattern_of(icu::DateFormat::kNone, icu::DateFormat::kMedium, l.time_format);
  // The first non-letter of the short pattern separates its fields.
  for (char16_t c : l.short_date) {
    if (!(c >= u'a' && c <= u'z') && !(c >= u'A' && c <= u'Z')) {
      l.date_separator = c;
      break;
    }
  }
  return l;
}

Locale German(std::string tag, std::string icu_name) {
  Locale l;
  l.tag = std::move(tag);
  l.icu_name = std::move(icu_name);
  l.decimal = u',';
  l.thousands = u'.';
  l.currency_symbol = u"\u20AC";
  l.currency_position = 3;  // "1.234,56 €"
  l.short_date = u"dd.MM.yyyy";
  l.long_date = u"dddd, d. MMMM yyyy";
  l.time_format = u"HH:mm:ss";
  l.date_separator = u'.';
  l.am = u"";
  l.pm = u"";
  return l;
}

Locale Build(const std::string& tag) {
  if (tag == "de-DE" || tag == "de" || tag == "de-LU" || tag == "de-LI") {
    return German("de-DE", "de_DE");
  }
  if (tag == "de-AT") return German("de-AT", "de_AT");
  if (tag == "de-CH") {
    Locale l = German("de-CH", "de_CH");
    l.decimal = u'.';
    l.thousands = u'\u2019';  // right single quotation mark, as Windows writes it
    l.currency_symbol = u"CHF";
    l.currency_position = 2;  // "CHF 1’234.56"
    return l;
  }
  if (tag.empty() || tag == "en-US" || tag == "en") {
    Locale l;  // the defaults are en-US
    l.tag = "en-US";
    l.icu_name = "en_US";
    return l;
  }
  if (tag == "en-GB") {
    Locale l;
    l.tag = "en-GB";
    l.icu_name = "en_GB";
    l.currency_symbol = u"\u00A3";
    l.short_date = u"dd/MM/yyyy";
    l.long_date = u"dd MMMM yyyy";
    l.time_format = u"HH:mm:ss";
    return l;
  }
  return FromIcu(tag);
}

Locale& Current() {
  static Locale current = [] {
    for (const char* name : {"NORVIK50_LOCALE", "LC_ALL", "LC_NUMERIC", "LANG"}) {
      const char* value = std::getenv(name);
      if (value != nullptr && *value != '\0') return LocaleForTag(value);
    }
    return LocaleForTag("");
  }();
  return current;
}

}  // namespace

Locale LocaleForTag(std::string_view tag) {
  const std::string normal = NormaliseTag(tag);
  Locale l = Build(normal);
  // ICU accepts almost anything; a tag it cannot place gets the default.
  if (l.icu_name.empty()) return Build("");
  return l;
}

const Locale& CurrentLocale() { return Current(); }

const Locale& SetCurrentLocale(std::string_view tag) {
  Current() = LocaleForTag(tag);
  return Current();
}

}  // namespace norvik50
