// Number sections of the Format engine.
#include <string>

#include "numeric/format_sections.h"

namespace norvik50 {
namespace {

enum class Tok { kLiteral, kDigit, kPoint, kComma, kPercent, kExponent };

// Walks a number section and reports each token: literal text (from quotes,
// escapes or any character without a meaning), digit placeholders ('0' or
// '#' in `c`), the first decimal point, commas, percent signs and the
// exponent marker (E or e in `c`, its sign in `sign`).
template <typename Sink>
void Scan(std::u16string_view s, Sink&& sink) {
  bool point = false, exponent = false;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const char16_t c = s[i];
    switch (c) {
      case u'"': {
        const std::size_t end = s.find(u'"', i + 1);
        const std::size_t stop = end == std::u16string_view::npos ? s.size() : end;
        sink(Tok::kLiteral, s.substr(i + 1, stop - i - 1), u'\0');
        i = stop;
        break;
      }
      case u'\\':
        if (i + 1 < s.size()) sink(Tok::kLiteral, s.substr(++i, 1), u'\0');
        break;
      case u'0':
      case u'#':
        sink(Tok::kDigit, s.substr(i, 1), c);
        break;
      case u'.':
        if (!point && !exponent) {
          point = true;
          sink(Tok::kPoint, s.substr(i, 1), c);
        } else {
          sink(Tok::kLiteral, s.substr(i, 1), u'\0');
        }
        break;
      case u',':
        sink(Tok::kComma, s.substr(i, 1), c);
        break;
      case u'%':
        sink(Tok::kPercent, s.substr(i, 1), c);
        break;
      case u'E':
      case u'e':
        if (!exponent && i + 1 < s.size() && (s[i + 1] == u'+' || s[i + 1] == u'-')) {
          exponent = true;
          sink(Tok::kExponent, s.substr(i, 2), s[i + 1]);
          ++i;
          break;
        }
        [[fallthrough]];
      default:
        sink(Tok::kLiteral, s.substr(i, 1), u'\0');
        break;
    }
  }
}

struct Layout {
  std::string int_kinds;   // '0' or '#' per integer placeholder, left to right
  std::string frac_kinds;  // per fraction placeholder
  int exp_placeholders = 0;
  int exp_zeros = 0;
  bool has_point = false;
  bool grouping = false;
  int scale_commas = 0;
  int percents = 0;
  bool exponent = false;
  char16_t exp_sign = u'+';
};

Layout Analyse(std::u16string_view section) {
  Layout l;
  int pending_commas = 0;
  int pending_fraction_commas = 0;
  Scan(section, [&](Tok t, std::u16string_view, char16_t c) {
    switch (t) {
      case Tok::kDigit:
        if (l.exponent) {
          ++l.exp_placeholders;
          if (c == u'0') ++l.exp_zeros;
        } else if (l.has_point) {
          pending_fraction_commas = 0;
          l.frac_kinds.push_back(static_cast<char>(c));
        } else {
          // A comma between two integer placeholders asks for grouping.
          if (pending_commas > 0) l.grouping = true;
          pending_commas = 0;
          l.int_kinds.push_back(static_cast<char>(c));
        }
        break;
      case Tok::kComma:
        if (l.has_point && !l.exponent) {
          ++pending_fraction_commas;
        } else if (!l.exponent && !l.int_kinds.empty()) {
          ++pending_commas;
        }
        break;
      case Tok::kPoint:
      case Tok::kExponent:
        // Commas right after the last integer placeholder divide by 1000,
        // as do commas after the last fraction placeholder ("0.0,,").
        if (!l.exponent) l.scale_commas += pending_commas + pending_fraction_commas;
        pending_commas = pending_fraction_commas = 0;
        if (t == Tok::kPoint) {
          l.has_point = true;
        } else {
          l.exponent = true;
          l.exp_sign = c;
        }
        break;
      case Tok::kPercent:
        ++l.percents;
        break;
      case Tok::kLiteral:
        break;
    }
  });
  if (!l.exponent) l.scale_commas += pending_commas + pending_fraction_commas;
  return l;
}

void AppendAscii(std::u16string& out, char c) { out.push_back(static_cast<char16_t>(c)); }

}  // namespace

void FormatNumberSection(DecimalDigits number, std::u16string_view section, const Locale& locale,
                         std::u16string& out) {
  const Layout l = Analyse(section);
  const int64_t int_count = static_cast<int64_t>(l.int_kinds.size());
  const int64_t frac_count = static_cast<int64_t>(l.frac_kinds.size());
  number.negative = false;
  ShiftPoint(number, 2 * static_cast<int64_t>(l.percents) - 3 * l.scale_commas);

  // The exponent moves the point so that the mantissa has as many integer
  // digits as the pattern has integer placeholders.
  int64_t exponent = 0;
  if (l.exponent) {
    RoundToSignificant(number, int_count + frac_count);
    if (!number.is_zero()) {
      exponent = number.point - int_count;
      number.point = int_count;
    }
  } else {
    RoundToPlaces(number, frac_count);
  }
  const std::string int_digits = number.IntegerPart();
  const std::string frac_digits = number.FractionPart(frac_count);
  const int64_t k = static_cast<int64_t>(int_digits.size());

  // Trailing '#' places show no zeros.
  int64_t frac_shown = frac_count;
  while (frac_shown > 0 && l.frac_kinds[frac_shown - 1] == '#' &&
         frac_digits[frac_shown - 1] == '0') {
    --frac_shown;
  }

  // How many integer digits will be written, for the grouping positions.
  int64_t total = k > int_count ? k - int_count : 0;
  for (int64_t j = 0; j < int_count; ++j) {
    const int64_t d = k - int_count + j;
    if (d >= 0 || l.int_kinds[j] == '0') ++total;
  }
  if (int_count == 0) total = k;
  int64_t remaining = total;
  const auto put_digit = [&](char digit) {
    AppendAscii(out, digit);
    --remaining;
    if (l.grouping && remaining > 0 && remaining % 3 == 0) out.push_back(locale.thousands);
  };

  std::string exp_text;
  if (l.exponent) {
    uint64_t magnitude =
        exponent < 0 ? static_cast<uint64_t>(-exponent) : static_cast<uint64_t>(exponent);
    exp_text = std::to_string(magnitude);
    if (static_cast<int>(exp_text.size()) < l.exp_zeros) {
      exp_text.insert(0, static_cast<std::size_t>(l.exp_zeros) - exp_text.size(), '0');
    }
  }

  int64_t int_index = 0, frac_index = 0;
  bool after_point = false, in_exponent = false, exp_written = false;
  Scan(section, [&](Tok t, std::u16string_view text, char16_t c) {
    switch (t) {
      case Tok::kLiteral:
        out.append(text);
        break;
      case Tok::kPercent:
        out.push_back(u'%');
        break;
      case Tok::kComma:
        // A comma before any placeholder means nothing to the number.
        if (int_index == 0 && !after_point && !in_exponent) out.push_back(u',');
        break;
      case Tok::kPoint:
        if (int_count == 0) {
          for (char digit : int_digits) put_digit(digit);
        }
        out.push_back(locale.decimal);
        after_point = true;
        break;
      case Tok::kExponent:
        if (int_count == 0 && !after_point) {
          for (char digit : int_digits) put_digit(digit);
        }
        out.push_back(text[0]);
        if (exponent < 0) {
          out.push_back(u'-');
        } else if (c == u'+') {
          out.push_back(u'+');
        }
        in_exponent = true;
        break;
      case Tok::kDigit:
        if (in_exponent) {
          if (!exp_written) {
            for (char digit : exp_text) AppendAscii(out, digit);
            exp_written = true;
          }
        } else if (after_point) {
          if (frac_index < frac_shown) AppendAscii(out, frac_digits[frac_index]);
          ++frac_index;
        } else {
          const int64_t j = int_index++;
          if (j == 0) {
            for (int64_t d = 0; d < k - int_count; ++d) put_digit(int_digits[d]);
          }
          const int64_t d = k - int_count + j;
          if (d >= 0) {
            put_digit(int_digits[d]);
          } else if (c == u'0') {
            put_digit('0');
          }
        }
        break;
    }
  });
  if (l.exponent && !exp_written) {
    for (char digit : exp_text) AppendAscii(out, digit);
  }
}

}  // namespace norvik50
