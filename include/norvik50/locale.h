// The process-wide locale: the separators and date forms that number and
// date conversions use, and the ICU locale for case folding and collation.
//
// It is taken once from NORVIK50_LOCALE (e.g. "de-DE", "en-US") or else the
// POSIX variables LC_ALL, LC_NUMERIC, LANG; hosts may replace it at any time
// with SetCurrentLocale. German (de-DE, de-AT, de-CH) and English (en-US,
// en-GB) are built in exactly as Windows writes them; other tags take their
// separators and date patterns from ICU.
#ifndef NORVIK50_LOCALE_H_
#define NORVIK50_LOCALE_H_

#include <string>
#include <string_view>

#include "norvik50/export.h"

namespace norvik50 {

struct Locale {
  std::string tag;               // BCP 47 tag, e.g. "de-DE"
  std::string icu_name;          // ICU locale id, e.g. "de_DE"
  char16_t decimal = u'.';       // decimal separator
  char16_t thousands = u',';     // digit grouping separator
  std::u16string currency_symbol = u"$";
  // Position of the currency symbol, as the Windows setting numbers it:
  // 0 "$1", 1 "1$", 2 "$ 1", 3 "1 $".
  int currency_position = 0;
  int currency_digits = 2;
  std::u16string short_date = u"M/d/yyyy";  // Windows-style date patterns
  std::u16string long_date = u"dddd, MMMM d, yyyy";
  std::u16string time_format = u"h:mm:ss tt";
  char16_t date_separator = u'/';
  char16_t time_separator = u':';
  std::u16string am = u"AM";
  std::u16string pm = u"PM";
  bool is_german() const noexcept { return tag.rfind("de", 0) == 0; }
};

// The current process-wide locale.
NORVIK50_EXPORT const Locale& CurrentLocale();
// Makes `tag` the current locale ("de-DE", "de_AT.UTF-8", "en", "C"...).
// Unknown or empty tags fall back to en-US. Returns the locale now in effect.
NORVIK50_EXPORT const Locale& SetCurrentLocale(std::string_view tag);
// The locale a tag describes, without making it current.
NORVIK50_EXPORT Locale LocaleForTag(std::string_view tag);

}  // namespace norvik50

#endif  // NORVIK50_LOCALE_H_
