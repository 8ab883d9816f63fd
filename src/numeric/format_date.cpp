// Date sections of the Format engine.
#include <chrono>
#include <string>

#include "core/number_text.h"
#include "numeric/format_sections.h"

namespace norvik50 {
namespace {

enum class DTok { kLiteral, kRaw, kField, kAmPm };

char16_t LowerAscii(char16_t c) { return (c >= u'A' && c <= u'Z') ? c + 32 : c; }

bool StartsWithNoCase(std::u16string_view s, std::size_t i, std::u16string_view word) {
  if (s.size() - i < word.size()) return false;
  for (std::size_t k = 0; k < word.size(); ++k) {
    if (LowerAscii(s[i + k]) != word[k]) return false;
  }
  return true;
}

// Walks a date section: literal text (quoted or escaped), raw characters
// (any other character without a meaning), fields (a run of one letter, `c`
// lower-cased, `run` long) and AM/PM markers (`text` is the marker as
// written: "AM/PM", "am/pm", "A/P", "a/p" or "AMPM").
template <typename Sink>
void Scan(std::u16string_view s, Sink&& sink) {
  for (std::size_t i = 0; i < s.size();) {
    const char16_t c = s[i];
    if (c == u'"') {
      const std::size_t end = s.find(u'"', i + 1);
      const std::size_t stop = end == std::u16string_view::npos ? s.size() : end;
      sink(DTok::kLiteral, s.substr(i + 1, stop - i - 1), u'\0', 0);
      i = stop + 1;
      continue;
    }
    if (c == u'\\') {
      if (i + 1 < s.size()) sink(DTok::kLiteral, s.substr(i + 1, 1), u'\0', 0);
      i += 2;
      continue;
    }
    if (StartsWithNoCase(s, i, u"am/pm")) {
      sink(DTok::kAmPm, s.substr(i, 5), u'\0', 0);
      i += 5;
      continue;
    }
    if (StartsWithNoCase(s, i, u"a/p")) {
      sink(DTok::kAmPm, s.substr(i, 3), u'\0', 0);
      i += 3;
      continue;
    }
    if (StartsWithNoCase(s, i, u"ampm")) {
      sink(DTok::kAmPm, s.substr(i, 4), u'\0', 0);
      i += 4;
      continue;
    }
    const char16_t lower = LowerAscii(c);
    if (IsDateFieldLetter(lower) || lower == u't') {
      std::size_t run = 1;
      while (i + run < s.size() && LowerAscii(s[i + run]) == lower) ++run;
      // A run of t shorter than five is plain text.
      if (lower == u't' && run < 5) {
        sink(DTok::kLiteral, s.substr(i, run), u'\0', 0);
      } else {
        sink(DTok::kField, s.substr(i, run), lower, run);
      }
      i += run;
      continue;
    }
    sink(DTok::kRaw, s.substr(i, 1), u'\0', 0);
    ++i;
  }
}

void AppendNumber(std::u16string& out, int64_t value, int width) {
  const std::string digits = std::to_string(value);
  for (int i = static_cast<int>(digits.size()); i < width; ++i) out.push_back(u'0');
  for (char d : digits) out.push_back(static_cast<char16_t>(d));
}

int DayOfYear(const CivilDateTime& c) {
  using namespace std::chrono;
  const sys_days day{year_month_day{year{c.year}, month{static_cast<unsigned>(c.month)},
                                    std::chrono::day{static_cast<unsigned>(c.day)}}};
  const sys_days first{year_month_day{year{c.year}, January, std::chrono::day{1}}};
  return static_cast<int>((day - first).count()) + 1;
}

// Week of the year: week 1 holds January 1, weeks start on Sunday.
int WeekOfYear(const CivilDateTime& c) {
  const CivilDateTime first{c.year, 1, 1, 0, 0, 0};
  return (DayOfYear(c) - 1 + WeekdayOf(first)) / 7 + 1;
}

}  // namespace

void FormatDateSection(const CivilDateTime& c, std::u16string_view section, const Locale& locale,
                       std::u16string& out) {
  bool twelve_hour = false;
  Scan(section, [&](DTok t, std::u16string_view, char16_t, std::size_t) {
    if (t == DTok::kAmPm) twelve_hour = true;
  });
  const CalendarNames& names = NamesFor(locale);
  const bool afternoon = c.hour >= 12;
  bool after_hour = false;
  Scan(section, [&](DTok t, std::u16string_view text, char16_t f, std::size_t run) {
    if (t == DTok::kLiteral) {
      out.append(text);
      return;
    }
    if (t == DTok::kRaw) {
      // Unless quoted or escaped, "/" and ":" are the locale's separators.
      const char16_t ch = text[0];
      out.push_back(ch == u'/' ? locale.date_separator : ch == u':' ? locale.time_separator : ch);
      return;
    }
    if (t == DTok::kAmPm) {
      if (text.size() == 4) {  // AMPM: the locale's own marks
        out += afternoon ? locale.pm : locale.am;
      } else if (text.size() == 5) {  // AM/PM as written
        out.append(text.substr(afternoon ? 3 : 0, 2));
      } else {  // A/P as written
        out.push_back(text[afternoon ? 2 : 0]);
      }
      return;
    }
    const int width = run >= 2 ? 2 : 1;
    const bool was_after_hour = after_hour;
    after_hour = false;
    switch (f) {
      case u'c':
        out += GeneralDateText(c, locale);
        break;
      case u'd':
        if (run <= 2) {
          AppendNumber(out, c.day, width);
        } else if (run == 3) {
          out += names.short_weekdays[WeekdayOf(c)];
        } else if (run == 4) {
          out += names.weekdays[WeekdayOf(c)];
        } else if (run == 5) {
          out += RenderLocalePattern(locale.short_date, c, locale);
        } else {
          out += RenderLocalePattern(locale.long_date, c, locale);
        }
        break;
      case u'w':
        AppendNumber(out, run == 1 ? WeekdayOf(c) + 1 : WeekOfYear(c), 1);
        break;
      case u'm':
        if (run <= 2 && was_after_hour) {
          AppendNumber(out, c.minute, width);
        } else if (run <= 2) {
          AppendNumber(out, c.month, width);
        } else if (run == 3) {
          out += names.short_months[c.month - 1];
        } else {
          out += names.months[c.month - 1];
        }
        break;
      case u'q':
        AppendNumber(out, (c.month - 1) / 3 + 1, 1);
        break;
      case u'y':
        if (run == 1) {
          AppendNumber(out, DayOfYear(c), 1);
        } else if (run == 2) {
          AppendNumber(out, c.year % 100, 2);
        } else {
          AppendNumber(out, c.year, 4);
        }
        break;
      case u'h': {
        const int hour = twelve_hour ? (c.hour % 12 == 0 ? 12 : c.hour % 12) : c.hour;
        AppendNumber(out, hour, width);
        after_hour = true;
        break;
      }
      case u'n':
        AppendNumber(out, c.minute, width);
        break;
      case u's':
        AppendNumber(out, c.second, width);
        break;
      case u't':
        out += RenderLocalePattern(locale.time_format, c, locale);
        break;
    }
  });
}

}  // namespace norvik50
