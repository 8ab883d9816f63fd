// The conversions as they stood before the runtime's rules for text to
// Date and Double to String were built, kept unchanged as the benchmark's
// anchor: the new code is measured against its own former cost in the same
// run. Not used anywhere else.
#ifndef NORVIK50_BENCH_CONVERSION_ANCHORS_H_
#define NORVIK50_BENCH_CONVERSION_ANCHORS_H_

#include <unicode/uchar.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "norvik50/locale.h"
#include "norvik50/values.h"

namespace norvik50::anchor {

// Double to String: printf's %G with 15 digits, which switches to the
// exponent below 1E-04 and from 1E+15.
inline std::u16string DoubleToText(double value, char16_t decimal) {
  if (value == 0) return u"0";
  char text[40];
  std::snprintf(text, sizeof text, "%.15G", value);
  std::u16string out;
  for (const char* p = text; *p; ++p) out.push_back(*p == '.' ? decimal : char16_t(*p));
  return out;
}

// Text to Date: the former reader.
struct Token {
  enum Kind { kNumber, kWord, kSeparator } kind;
  int value = 0;        // kNumber
  int digits = 0;       // kNumber
  std::u16string text;  // kWord (lower case) or kSeparator
};

inline std::u16string Lower(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  for (char16_t c : s) out.push_back(static_cast<char16_t>(u_tolower(c)));
  return out;
}

inline bool Tokenize(std::u16string_view text, std::vector<Token>& tokens) {
  for (std::size_t i = 0; i < text.size();) {
    const char16_t c = text[i];
    if (c >= u'0' && c <= u'9') {
      Token t{Token::kNumber};
      while (i < text.size() && text[i] >= u'0' && text[i] <= u'9') {
        if (++t.digits > 4) return false;  // no part of a date has more
        t.value = t.value * 10 + (text[i++] - u'0');
      }
      tokens.push_back(std::move(t));
    } else if (u_isalpha(c)) {
      std::size_t j = i;
      while (j < text.size() && (u_isalpha(text[j]) || text[j] == u'.')) ++j;
      std::u16string word = Lower(text.substr(i, j - i));
      while (!word.empty() && word.back() == u'.') word.pop_back();  // "Jan.", "Mo."
      tokens.push_back(Token{Token::kWord, 0, 0, std::move(word)});
      i = j;
    } else if (c == u' ' || c == u'\t') {
      ++i;  // blanks only separate
    } else {
      tokens.push_back(Token{Token::kSeparator, 0, 0, std::u16string(1, c)});
      ++i;
    }
  }
  return true;
}

// 1..12 for a month name or abbreviation of the locale or English, else 0.
inline int MonthOf(const std::u16string& word, const Locale& locale) {
  static const Locale english = LocaleForTag("en-US");
  for (const Locale* l : {&locale, &english}) {
    const CalendarNames& names = NamesFor(*l);
    for (int m = 0; m < 12; ++m) {
      if (word == Lower(names.months[m]) || word == Lower(names.short_months[m])) return m + 1;
    }
  }
  // Three-letter abbreviations ("sep" for "sept", "mär" for "märz").
  if (word.size() >= 3) {
    for (const Locale* l : {&locale, &english}) {
      const CalendarNames& names = NamesFor(*l);
      for (int m = 0; m < 12; ++m) {
        if (Lower(names.months[m]).compare(0, word.size(), word) == 0) return m + 1;
      }
    }
  }
  return 0;
}

inline bool IsWeekday(const std::u16string& word, const Locale& locale) {
  static const Locale english = LocaleForTag("en-US");
  for (const Locale* l : {&locale, &english}) {
    const CalendarNames& names = NamesFor(*l);
    for (int d = 0; d < 7; ++d) {
      if (word == Lower(names.weekdays[d]) || word == Lower(names.short_weekdays[d])) {
        return true;
      }
    }
  }
  return false;
}

// The locale's field order: 'd', 'M' or 'y' for each of the three fields.
inline std::u16string FieldOrder(const Locale& locale) {
  std::u16string order;
  for (char16_t c : locale.short_date) {
    if ((c == u'd' || c == u'M' || c == u'y') && order.find(c) == std::u16string::npos) {
      order.push_back(c);
    }
  }
  return order.size() == 3 ? order : u"Mdy";
}

inline int FullYear(const Token& t) {
  if (t.digits <= 2) return t.value < 30 ? 2000 + t.value : 1900 + t.value;
  return t.value;
}

inline std::optional<Date> ParseDateText(std::u16string_view text, const Locale& locale) {
  std::string ascii;
  for (char16_t c : text) ascii.push_back(c < 0x80 ? static_cast<char>(c) : '?');
  const std::size_t first = ascii.find_first_not_of(' ');
  if (first == std::string::npos) return std::nullopt;
  const std::size_t last = ascii.find_last_not_of(' ');
  if (auto iso = Date::ParseIso(std::string_view(ascii).substr(first, last - first + 1))) {
    return iso;
  }

  std::vector<Token> tokens;
  if (!Tokenize(text, tokens)) return std::nullopt;

  CivilDateTime c;
  c.hour = c.minute = c.second = 0;
  bool has_time = false, pm = false, am = false;
  std::vector<Token> numbers;
  int month_name = 0;
  const std::u16string am_mark = Lower(locale.am), pm_mark = Lower(locale.pm);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& t = tokens[i];
    const bool time_follows =
        i + 2 < tokens.size() && tokens[i + 1].kind == Token::kSeparator &&
        (tokens[i + 1].text[0] == u':' || tokens[i + 1].text[0] == locale.time_separator) &&
        tokens[i + 2].kind == Token::kNumber;
    if (t.kind == Token::kNumber && time_follows) {
      if (has_time) return std::nullopt;
      has_time = true;
      c.hour = t.value;
      c.minute = tokens[i + 2].value;
      i += 2;
      if (i + 2 < tokens.size() && tokens[i + 1].kind == Token::kSeparator &&
          tokens[i + 1].text == tokens[i - 1].text && tokens[i + 2].kind == Token::kNumber) {
        c.second = tokens[i + 2].value;
        i += 2;
      }
    } else if (t.kind == Token::kNumber) {
      numbers.push_back(t);
    } else if (t.kind == Token::kWord) {
      if (t.text == u"am" || t.text == u"a" || (!am_mark.empty() && t.text == am_mark)) {
        am = true;
      } else if (t.text == u"pm" || t.text == u"p" || (!pm_mark.empty() && t.text == pm_mark)) {
        pm = true;
      } else if (int m = MonthOf(t.text, locale); m != 0 && month_name == 0) {
        month_name = m;
      } else if (!IsWeekday(t.text, locale)) {
        return std::nullopt;
      }
    } else {
      const char16_t s = t.text[0];
      if (s != u'.' && s != u'/' && s != u'-' && s != u',' && s != locale.date_separator) {
        return std::nullopt;
      }
    }
  }
  if ((am || pm) && (!has_time || am == pm || c.hour > 12)) return std::nullopt;
  if (pm && c.hour < 12) c.hour += 12;
  if (am && c.hour == 12) c.hour = 0;

  const int current_year = Date::Now().ToCivil().year;
  if (month_name != 0) {
    c.month = month_name;
    if (numbers.size() == 2) {
      const bool year_first = numbers[0].digits > 2;
      c.day = numbers[year_first ? 1 : 0].value;
      c.year = FullYear(numbers[year_first ? 0 : 1]);
    } else if (numbers.size() == 1) {
      if (numbers[0].digits > 2) {  // "März 2024": the first of the month
        c.day = 1;
        c.year = numbers[0].value;
      } else {
        c.day = numbers[0].value;
        c.year = current_year;
      }
    } else {
      return std::nullopt;
    }
  } else if (numbers.size() == 3 || numbers.size() == 2) {
    std::u16string order = FieldOrder(locale);
    if (numbers.size() == 3 && numbers[0].digits > 2) order = u"yMd";
    if (numbers.size() == 2) order.erase(order.find(u'y'), 1);
    c.year = current_year;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      switch (order[i]) {
        case u'd':
          c.day = numbers[i].value;
          break;
        case u'M':
          c.month = numbers[i].value;
          break;
        default:
          c.year = FullYear(numbers[i]);
          break;
      }
    }
    if (c.month > 12 && c.day <= 12) std::swap(c.month, c.day);
  } else if (numbers.empty() && has_time) {
    c.year = 1899;
    c.month = 12;
    c.day = 30;
  } else {
    return std::nullopt;
  }
  if (!Date::IsValidCivil(c)) return std::nullopt;
  return Date::FromCivil(c);
}

}  // namespace norvik50::anchor

#endif  // NORVIK50_BENCH_CONVERSION_ANCHORS_H_
