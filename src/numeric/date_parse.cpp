#include "numeric/date_parse.h"

#include <unicode/uchar.h>

#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "core/number_text.h"

namespace norvik50 {
namespace {

// ---- words ------------------------------------------------------------------

enum WordCode : int { kUnknownWord = 0, kWeekday = 100, kAm = 200, kPm = 201 };  // 1..12 months

// The words a date may hold in one locale, lower case: the locale's and the
// English month and weekday names, full and abbreviated, and the AM/PM marks.
struct WordTable {
  std::vector<std::pair<std::u16string, int>> words;
  std::vector<std::pair<std::u16string, int>> full_months;  // for abbreviations "sept", "mär"
};

std::u16string Lower(std::u16string_view s) {
  std::u16string out;
  out.reserve(s.size());
  for (char16_t c : s) out.push_back(static_cast<char16_t>(u_tolower(c)));
  return out;
}

std::unique_ptr<WordTable> BuildWords(const Locale& locale) {
  auto table = std::make_unique<WordTable>();
  static const Locale english = LocaleForTag("en-US");
  for (const Locale* l : {&locale, &english}) {
    const CalendarNames& names = NamesFor(*l);
    for (int m = 0; m < 12; ++m) {
      table->words.emplace_back(Lower(names.months[m]), m + 1);
      table->words.emplace_back(Lower(names.short_months[m]), m + 1);
      table->full_months.emplace_back(Lower(names.months[m]), m + 1);
    }
    for (int d = 0; d < 7; ++d) {
      table->words.emplace_back(Lower(names.weekdays[d]), kWeekday);
      table->words.emplace_back(Lower(names.short_weekdays[d]), kWeekday);
    }
  }
  for (const char16_t* am : {u"am", u"a"}) table->words.emplace_back(am, kAm);
  for (const char16_t* pm : {u"pm", u"p"}) table->words.emplace_back(pm, kPm);
  if (!locale.am.empty()) table->words.emplace_back(Lower(locale.am), kAm);
  if (!locale.pm.empty()) table->words.emplace_back(Lower(locale.pm), kPm);
  return table;
}

const WordTable& WordsFor(const Locale& locale) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<WordTable>> cache;
  std::lock_guard<std::mutex> lock(mutex);
  std::unique_ptr<WordTable>& slot = cache[locale.tag];
  if (!slot) slot = BuildWords(locale);
  return *slot;
}

int WordCodeOf(std::u16string_view lower, const WordTable& table) {
  for (const auto& [word, code] : table.words) {
    if (lower == word) return code;
  }
  if (lower.size() >= 3) {  // a longer abbreviation of a month: "sept", "mär"
    for (const auto& [month, code] : table.full_months) {
      if (month.size() > lower.size() && month.compare(0, lower.size(), lower) == 0) return code;
    }
  }
  return kUnknownWord;
}

// ---- tokens -----------------------------------------------------------------

enum class CharClass { kDigit, kLetter, kBlank, kComma, kTimeSep, kDot, kDateSep, kSign, kOther };

CharClass ClassOf(char16_t c, const Locale& locale) {
  if (c >= u'0' && c <= u'9') return CharClass::kDigit;
  if (c == u',') return CharClass::kComma;
  if (c == u':' || (c == locale.time_separator && c != u'.')) return CharClass::kTimeSep;
  if (c == u'.') return CharClass::kDot;
  if (c == u'/' || c == u'-' || c == locale.date_separator) return CharClass::kDateSep;
  if (c == u'+') return CharClass::kSign;
  if (c == u' ' || c == u'\t' || u_isUWhiteSpace(c)) return CharClass::kBlank;
  if (u_isalpha(c)) return CharClass::kLetter;
  return CharClass::kOther;
}

struct Token {
  CharClass kind;  // kDigit for a number, kLetter for a word, else the separator
  int value = 0;   // number value, or word code
  int digits = 0;
};

constexpr std::size_t kMaxTokens = 40;  // a longer text is no date

bool Tokenize(std::u16string_view text, const Locale& locale, std::vector<Token>& tokens) {
  const WordTable* words = nullptr;
  for (std::size_t i = 0; i < text.size();) {
    if (tokens.size() == kMaxTokens) return false;
    const CharClass kind = ClassOf(text[i], locale);
    switch (kind) {
      case CharClass::kDigit: {
        Token t{kind};
        for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
          if (++t.digits > 4) return false;  // no part of a date has more
          t.value = t.value * 10 + (text[i] - u'0');
        }
        tokens.push_back(t);
        break;
      }
      case CharClass::kLetter: {
        char16_t lower[24];
        std::size_t n = 0;
        for (; i < text.size() && u_isalpha(text[i]); ++i) {
          if (n == std::size(lower)) return false;
          lower[n++] = static_cast<char16_t>(u_tolower(text[i]));
        }
        while (i < text.size() && text[i] == u'.') ++i;  // "Jan.", "Mo."
        if (words == nullptr) words = &WordsFor(locale);
        const int code = WordCodeOf(std::u16string_view(lower, n), *words);
        if (code == kUnknownWord) return false;
        if (code != kWeekday) tokens.push_back(Token{kind, code});  // weekdays say nothing
        break;
      }
      case CharClass::kBlank:
      case CharClass::kComma:
        if (kind == CharClass::kComma || tokens.empty() ||
            tokens.back().kind != CharClass::kBlank) {
          tokens.push_back(Token{kind});
        }
        ++i;
        break;
      case CharClass::kSign:
      case CharClass::kOther:
        return false;
      default:
        tokens.push_back(Token{kind});
        ++i;
        break;
    }
  }
  return true;
}

// ---- parts ------------------------------------------------------------------

enum class Chain { kSingle, kTime, kDate, kDot };

struct Number {
  int value = 0;
  int digits = 0;
};

struct Part {
  int month = 0;  // a month name; else a chain of numbers
  Chain chain = Chain::kSingle;
  Number numbers[3];
  int count = 0;
  bool trailing_dot = false;
  int mark = 0;  // kAm or kPm following the part
};

Chain ChainOf(CharClass separator) {
  switch (separator) {
    case CharClass::kTimeSep:
      return Chain::kTime;
    case CharClass::kDot:
      return Chain::kDot;
    default:
      return Chain::kDate;
  }
}

bool IsSeparator(CharClass c) {
  return c == CharClass::kTimeSep || c == CharClass::kDot || c == CharClass::kDateSep;
}

bool BuildParts(const std::vector<Token>& t, std::vector<Part>& parts) {
  const std::size_t n = t.size();
  auto is = [&](std::size_t i, CharClass c) { return i < n && t[i].kind == c; };
  for (std::size_t i = 0; i < n; ++i) {
    const Token& token = t[i];
    switch (token.kind) {
      case CharClass::kDigit: {
        Part p;
        p.numbers[p.count++] = Number{token.value, token.digits};
        while (i + 2 < n && IsSeparator(t[i + 1].kind) && t[i + 2].kind == CharClass::kDigit) {
          const Chain kind = ChainOf(t[i + 1].kind);
          if ((p.count > 1 && kind != p.chain) || p.count == 3) return false;
          p.chain = kind;
          p.numbers[p.count++] = Number{t[i + 2].value, t[i + 2].digits};
          i += 2;
        }
        // Two numbers around a comma are a number, not a date.
        if (is(i + 1, CharClass::kComma) && is(i + 2, CharClass::kDigit)) return false;
        if (is(i + 1, CharClass::kDot) && !is(i + 2, CharClass::kLetter)) {
          p.trailing_dot = true;  // "5. März", "5.3."
          ++i;
        }
        parts.push_back(p);
        break;
      }
      case CharClass::kLetter:
        if (token.value == kAm || token.value == kPm) {
          // A mark belongs to the part right before it, and to one only.
          if (parts.empty() || parts.back().month != 0 || parts.back().mark != 0) return false;
          parts.back().mark = token.value;
        } else {
          Part p;
          p.month = token.value;
          parts.push_back(p);
        }
        break;
      case CharClass::kBlank:
      case CharClass::kComma:
        break;
      default:
        // A separator only stands between numbers (the chains above) or
        // next to a word; before everything it is a sign ("-1.1").
        if (!(is(i + 1, CharClass::kLetter) || (i > 0 && t[i - 1].kind == CharClass::kLetter))) {
          return false;
        }
        break;
    }
    if (parts.size() > 6) return false;
  }
  return true;
}

// ---- readings ---------------------------------------------------------------

// The order of day, month and year for one reading.
enum class Reading {
  kLocale,
  kLocaleSwapped,
  kYearMonthDay,
  kMonthYear,
  kYearMonth,
  kDay,
  kYear,
  kDayYear,
  kYearDay
};

// Three numbers, first valid reading wins.
constexpr Reading kThreeNumbers[] = {Reading::kLocale, Reading::kYearMonthDay,
                                     Reading::kLocaleSwapped};
// A first number that can only be a year ("2024 3 5", "45 3 5").
constexpr Reading kThreeNumbersYearFirst[] = {Reading::kYearMonthDay};
// Two numbers: day and month in the current year, else month and year.
constexpr Reading kTwoNumbers[] = {Reading::kLocale, Reading::kLocaleSwapped, Reading::kMonthYear,
                                   Reading::kYearMonth};
// A month name with one number: its day, else its year ("Jan 35").
constexpr Reading kMonthNameOneNumber[] = {Reading::kDay, Reading::kYear};
constexpr Reading kMonthNameTwoNumbers[] = {Reading::kDayYear};
constexpr Reading kMonthNameTwoNumbersYearFirst[] = {Reading::kYearDay};

// The fields of a reading as letters: 'd' day, 'M' month, 'y' year.
std::string_view FieldsOf(Reading r, std::string_view locale_order, std::size_t count,
                          char buffer[4]) {
  switch (r) {
    case Reading::kLocale:
    case Reading::kLocaleSwapped: {
      std::size_t n = 0;
      for (char f : locale_order) {
        if (f == 'y' && count == 2) continue;
        if (r == Reading::kLocaleSwapped && f != 'y') f = f == 'd' ? 'M' : 'd';
        buffer[n++] = f;
      }
      return std::string_view(buffer, n);
    }
    case Reading::kYearMonthDay:
      return "yMd";
    case Reading::kMonthYear:
      return "My";
    case Reading::kYearMonth:
      return "yM";
    case Reading::kDay:
      return "d";
    case Reading::kYear:
      return "y";
    case Reading::kDayYear:
      return "dy";
    case Reading::kYearDay:
      return "yd";
  }
  return "";
}

int FullYear(const Number& n) {
  if (n.digits <= 2) return n.value < 30 ? 2000 + n.value : 1900 + n.value;
  return n.value;
}

struct DateFields {
  Number numbers[3];
  int count = 0;
  int month_name = 0;
};

std::optional<CivilDateTime> Apply(std::string_view fields, const DateFields& f,
                                   CurrentYearSource current_year) {
  CivilDateTime c;
  c.month = f.month_name;
  c.day = 1;
  bool has_year = false;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Number& n = f.numbers[i];
    switch (fields[i]) {
      case 'y':
        c.year = FullYear(n);
        has_year = true;
        break;
      case 'M':
        if (n.digits > 2) return std::nullopt;
        c.month = n.value;
        break;
      default:
        if (n.digits > 2) return std::nullopt;
        c.day = n.value;
        break;
    }
  }
  if (!has_year) c.year = current_year();
  c.hour = c.minute = c.second = 0;
  if (!Date::IsValidCivil(c)) return std::nullopt;
  return c;
}

std::optional<CivilDateTime> ReadDate(const DateFields& f, std::string_view locale_order,
                                      CurrentYearSource current_year) {
  const bool long_first = f.count > 0 && (f.numbers[0].digits > 2 || f.numbers[0].value > 31);
  std::span<const Reading> readings;
  if (f.month_name != 0) {
    if (f.count == 1) readings = kMonthNameOneNumber;
    if (f.count == 2) {
      readings = long_first ? std::span<const Reading>(kMonthNameTwoNumbersYearFirst)
                            : std::span<const Reading>(kMonthNameTwoNumbers);
    }
  } else {
    if (f.count == 2) readings = kTwoNumbers;
    if (f.count == 3) {
      readings = long_first ? std::span<const Reading>(kThreeNumbersYearFirst)
                            : std::span<const Reading>(kThreeNumbers);
    }
  }
  char buffer[4];
  for (Reading r : readings) {
    const std::string_view fields = FieldsOf(r, locale_order, f.count, buffer);
    if (auto c = Apply(fields, f, current_year)) return c;
  }
  return std::nullopt;
}

// The locale's field order: 'd', 'M' or 'y' for each of the three fields.
std::string LocaleOrder(const Locale& locale) {
  std::string order;
  for (char16_t c : locale.short_date) {
    if ((c == u'd' || c == u'M' || c == u'y') && order.find(static_cast<char>(c)) == order.npos) {
      order.push_back(static_cast<char>(c));
    }
  }
  return order.size() == 3 ? order : "Mdy";
}

struct Time {
  int hour = 0, minute = 0, second = 0;
};

// `dots_are_times`: "." is not the locale's date separator, so a dot chain
// is a time in its own right.
std::optional<Time> ReadTime(const Part& p, bool dots_are_times) {
  // A lone number is an hour only with a mark ("1 am").
  if (p.month != 0 || (p.count == 1 && p.mark == 0)) return std::nullopt;
  int fields[3] = {0, 0, 0};
  for (int i = 0; i < p.count; ++i) {
    if (p.numbers[i].digits > 2) return std::nullopt;
    fields[i] = p.numbers[i].value;
  }
  // "0.0" there reads as the number zero, not as midnight ("0.1" and
  // "0:00" are times).
  if (dots_are_times && p.chain == Chain::kDot && p.count == 2 && fields[0] == 0 &&
      fields[1] == 0) {
    return std::nullopt;
  }
  Time t{fields[0], fields[1], fields[2]};
  if (t.hour > 23 || t.minute > 59 || t.second > 59) return std::nullopt;
  // A mark on an hour of the 24-hour clock is redundant.
  if (p.mark == kPm && t.hour < 12) t.hour += 12;
  if (p.mark == kAm && t.hour == 12) t.hour = 0;
  return t;
}

// Whether a number of the date stands on each side of part `time`: the
// time comes before all of the date's numbers or after them all, never in
// between ("1 2:30 3", "1 2 am 3"). Month names do not count.
bool TimeSplitsTheDate(const std::vector<Part>& parts, int time) {
  bool before = false, after = false;
  for (int i = 0; i < static_cast<int>(parts.size()); ++i) {
    const Part& p = parts[static_cast<std::size_t>(i)];
    if (i == time || p.month != 0) continue;
    (i < time ? before : after) = true;
  }
  return before && after;
}

// The date and time with part `time` as the time (or none); nullopt when
// the rest makes no date.
std::optional<Date> Read(const std::vector<Part>& parts, int time, std::string_view locale_order,
                         bool dots_are_times, CurrentYearSource current_year) {
  Time t;
  if (time >= 0) {
    auto read = ReadTime(parts[static_cast<std::size_t>(time)], dots_are_times);
    if (!read || TimeSplitsTheDate(parts, time)) return std::nullopt;
    t = *read;
  }
  DateFields f;
  bool fraction = false;
  for (int i = 0; i < static_cast<int>(parts.size()); ++i) {
    if (i == time) continue;
    const Part& p = parts[static_cast<std::size_t>(i)];
    if (p.mark != 0 || p.chain == Chain::kTime) return std::nullopt;  // a second time
    if (p.month != 0) {
      if (f.month_name != 0) return std::nullopt;
      f.month_name = p.month;
      continue;
    }
    if (p.chain == Chain::kDot && p.count == 2 && !p.trailing_dot) fraction = true;
    if (f.count + p.count > 3) return std::nullopt;
    for (int k = 0; k < p.count; ++k) f.numbers[f.count++] = p.numbers[k];
  }
  if (fraction && (f.count > 2 || f.month_name != 0))
    return std::nullopt;  // "1.5 2": a fraction, not a date
  CivilDateTime c;
  if (f.count == 0 && f.month_name == 0) {
    if (time < 0) return std::nullopt;  // nothing at all
  } else {
    auto date = ReadDate(f, locale_order, current_year);
    if (!date) return std::nullopt;
    c = *date;
  }
  c.hour = t.hour;
  c.minute = t.minute;
  c.second = t.second;
  return Date::FromCivil(c);
}

std::optional<Date> ReadParts(const std::vector<Part>& parts, const Locale& locale,
                              CurrentYearSource current_year) {
  const std::string order = LocaleOrder(locale);
  const bool dots_are_times = locale.date_separator != u'.';
  int time = -1;
  std::vector<int> dots;  // dot chains that may still be a date
  for (int i = 0; i < static_cast<int>(parts.size()); ++i) {
    const Part& p = parts[static_cast<std::size_t>(i)];
    const bool is_time =
        p.mark != 0 || p.chain == Chain::kTime || (p.chain == Chain::kDot && dots_are_times);
    if (is_time) {
      if (time >= 0) return std::nullopt;  // two times
      time = i;
    } else if (p.chain == Chain::kDot) {
      dots.push_back(i);
    }
  }
  if (auto d = Read(parts, time, order, dots_are_times, current_year)) return d;
  if (time >= 0) return std::nullopt;
  // No date with every dot chain a date: the last one, then earlier ones, is the time.
  for (auto it = dots.rbegin(); it != dots.rend(); ++it) {
    if (auto d = Read(parts, *it, order, dots_are_times, current_year)) return d;
  }
  return std::nullopt;
}

std::u16string_view Trim(std::u16string_view text) {
  while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
  return text;
}

std::optional<Date> ReadIso(std::u16string_view text) {
  if (text.size() < 10 || text.size() > 32 || text[4] != u'-') return std::nullopt;
  char ascii[33];
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] >= 0x80) return std::nullopt;
    ascii[i] = static_cast<char>(text[i]);
  }
  return Date::ParseIso(std::string_view(ascii, text.size()));
}

}  // namespace

int CurrentYearNow() { return Date::Now().ToCivil().year; }

std::optional<Date> ParseDateText(std::u16string_view text, const Locale& locale,
                                  CurrentYearSource current_year) {
  text = Trim(text);
  if (auto iso = ReadIso(text)) return iso;
  std::vector<Token> tokens;
  tokens.reserve(16);
  if (!Tokenize(text, locale, tokens)) return std::nullopt;
  std::vector<Part> parts;
  parts.reserve(6);
  if (!BuildParts(tokens, parts) || parts.empty()) return std::nullopt;
  return ReadParts(parts, locale, current_year);
}

}  // namespace norvik50
