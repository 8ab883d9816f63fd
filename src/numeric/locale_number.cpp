#include "numeric/locale_number.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "norvik50/error.h"

namespace norvik50 {
namespace {

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\u00A0'; }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

int HexValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// "&H..." and "&O...": the whole rest must be digits of the radix and fit
// in 32 bits; the result is the 32-bit pattern, so &HFFFF8000 is -32768.
std::optional<int32_t> ParseRadix(std::u16string_view body) {
  if (body.size() < 3 || body[0] != u'&') return std::nullopt;
  const char16_t kind = body[1];
  const int base = (kind == u'H' || kind == u'h') ? 16 : (kind == u'O' || kind == u'o') ? 8 : 0;
  if (base == 0) return std::nullopt;
  uint64_t value = 0;
  for (char16_t c : body.substr(2)) {
    const int digit = HexValue(c);
    if (digit < 0 || digit >= base) return std::nullopt;
    value = value * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
    if (value > 0xFFFFFFFFull) return std::nullopt;
  }
  return static_cast<int32_t>(static_cast<uint32_t>(value));
}

class Cursor {
 public:
  explicit Cursor(std::u16string_view text) : text_(text) {}
  bool done() const { return pos_ >= text_.size(); }
  char16_t peek() const { return done() ? u'\0' : text_[pos_]; }
  void skip_blanks() {
    while (!done() && IsBlank(text_[pos_])) ++pos_;
  }
  bool take(char16_t c) {
    if (done() || text_[pos_] != c) return false;
    ++pos_;
    return true;
  }
  bool take(std::u16string_view s) {
    if (s.empty() || text_.substr(pos_, s.size()) != s) return false;
    pos_ += s.size();
    return true;
  }
  void advance() { ++pos_; }
  std::u16string_view rest() const { return text_.substr(pos_); }

 private:
  std::u16string_view text_;
  std::size_t pos_ = 0;
};

}  // namespace

std::optional<NumberText> ParseLocaleNumber(std::u16string_view text, const Locale& locale) {
  Cursor in(text);
  NumberText out;
  bool bracket = false, sign = false, currency = false;

  // Leading decorations, in any order, each at most once.
  for (bool progress = true; progress;) {
    in.skip_blanks();
    progress = false;
    if (!bracket && !sign && in.take(u'(')) {
      bracket = progress = true;
    } else if (!sign && !bracket && (in.peek() == u'-' || in.peek() == u'+')) {
      out.negative = in.peek() == u'-';
      in.advance();
      sign = progress = true;
    } else if (!currency && in.take(locale.currency_symbol)) {
      currency = progress = true;
    }
  }
  if (!bracket && !sign && !currency) {
    if (auto radix = ParseRadix(in.rest())) {
      out.radix_value = radix;
      return out;
    }
  }

  // The number itself.
  bool point = false, digits = false;
  while (!in.done()) {
    const char16_t c = in.peek();
    if (IsDigit(c)) {
      out.mantissa.push_back(static_cast<char>(c));
      digits = true;
    } else if (c == locale.decimal && !point) {
      out.mantissa.push_back('.');
      point = true;
    } else if (c == locale.thousands && digits) {
      // The grouping separator is accepted and ignored wherever it stands
      // after the first digit, so English "1.234,56" reads as 1.23456.
    } else {
      break;
    }
    in.advance();
  }
  if (!digits) return std::nullopt;
  const char16_t e = in.peek();
  if (e == u'E' || e == u'e' || e == u'D' || e == u'd') {
    in.advance();
    bool exp_negative = false;
    if (in.peek() == u'-' || in.peek() == u'+') {
      exp_negative = in.peek() == u'-';
      in.advance();
    }
    if (!IsDigit(in.peek())) return std::nullopt;
    int64_t exponent = 0;
    while (IsDigit(in.peek())) {
      // Past a million the value is 0 or an overflow either way.
      if (exponent < 1000000) exponent = exponent * 10 + (in.peek() - u'0');
      in.advance();
    }
    out.exponent = exp_negative ? -exponent : exponent;
  }

  // Trailing decorations.
  for (bool progress = true; progress;) {
    in.skip_blanks();
    progress = false;
    if (!sign && !bracket && (in.peek() == u'-' || in.peek() == u'+')) {
      out.negative = in.peek() == u'-';
      in.advance();
      sign = progress = true;
    } else if (!currency && in.take(locale.currency_symbol)) {
      currency = progress = true;
    } else if (bracket && in.take(u')')) {
      out.negative = true;
      bracket = false;
      progress = true;
    }
  }
  if (bracket || !in.done()) return std::nullopt;
  return out;
}

std::optional<double> NumberTextToDouble(const NumberText& number) {
  if (number.radix_value) return static_cast<double>(*number.radix_value);
  char buffer[64];
  std::string long_form;
  const char* first = nullptr;
  const char* last = nullptr;
  // from_chars wants "digits[.digits][e±n]"; a lone trailing or leading
  // point is fine for it except ".": that cannot occur (a digit is required).
  const std::size_t need = number.mantissa.size() + 24;
  if (need <= sizeof buffer) {
    std::size_t n = number.mantissa.copy(buffer, number.mantissa.size());
    if (number.exponent != 0) {
      buffer[n++] = 'e';
      n = static_cast<std::size_t>(
          std::to_chars(buffer + n, buffer + sizeof buffer, number.exponent).ptr - buffer);
    }
    first = buffer;
    last = buffer + n;
  } else {
    long_form = number.mantissa;
    if (number.exponent != 0) long_form += "e" + std::to_string(number.exponent);
    first = long_form.data();
    last = first + long_form.size();
  }
  double value = 0;
  const auto [ptr, ec] = std::from_chars(first, last, value, std::chars_format::general);
  if (ec == std::errc::result_out_of_range) {
    // Out of range is an overflow only for large values; tiny ones are 0.
    const std::size_t point = number.mantissa.find('.');
    const std::size_t first_digit = number.mantissa.find_first_of("123456789");
    if (first_digit == std::string::npos) return 0.0;
    const int64_t int_len =
        static_cast<int64_t>(point == std::string::npos ? number.mantissa.size() : point) -
        static_cast<int64_t>(first_digit);
    if (int_len + number.exponent > 0) return std::nullopt;
    return number.negative ? -0.0 : 0.0;
  }
  if (ec != std::errc() || ptr != last || !std::isfinite(value)) return std::nullopt;
  return number.negative ? -value : value;
}

std::optional<Currency> NumberTextToCurrency(const NumberText& number) {
  if (!number.radix_value && number.exponent == 0) {
    std::string text = (number.negative ? "-" : "") + number.mantissa;
    if (!text.empty() && text.back() == '.') text.pop_back();
    if (auto c = Currency::Parse(text)) return c;
  }
  const std::optional<double> value = NumberTextToDouble(number);
  if (!value || !(std::fabs(*value) * Currency::kScale < 9223372036854775807.0)) {
    return std::nullopt;
  }
  return Currency::FromDouble(*value);
}

std::optional<Decimal> NumberTextToDecimal(const NumberText& number) {
  if (!number.radix_value && number.exponent == 0) {
    std::string text = number.mantissa;
    if (!text.empty() && text.back() == '.') text.pop_back();
    if (auto d = Decimal::Parse(text)) {
      d->negative = number.negative && (d->hi != 0 || d->lo != 0);
      return d;
    }
  }
  const std::optional<double> value = NumberTextToDouble(number);
  if (!value || !(std::fabs(*value) < 7.9228162514264338e28)) return std::nullopt;
  return Decimal::FromDouble(*value);
}

std::optional<double> LocaleTextToDouble(std::u16string_view text, const Locale& locale) {
  // The everyday form first, in one pass: a sign, digits with separators.
  // Anything else (blanks, exponents, currency, brackets, radix forms, long
  // texts) takes the general reading, which gives the same result.
  char buffer[48];
  std::size_t n = 0;
  const char16_t* p = text.data();
  const char16_t* const end = p + text.size();
  bool negative = false, point = false, digits = false, simple = text.size() < 40;
  if (simple && p != end && (*p == u'-' || *p == u'+')) negative = *p++ == u'-';
  for (; simple && p != end; ++p) {
    const char16_t c = *p;
    if (c >= u'0' && c <= u'9') {
      buffer[n++] = static_cast<char>(c);
      digits = true;
    } else if (c == locale.decimal && !point) {
      buffer[n++] = '.';
      point = true;
    } else if (!(c == locale.thousands && digits)) {
      simple = false;
    }
  }
  if (simple && digits) {
    double value = 0;
    const auto [ptr, ec] = std::from_chars(buffer, buffer + n, value);
    if (ec == std::errc() && ptr == buffer + n) return negative ? -value : value;
  }
  const std::optional<NumberText> number = ParseLocaleNumber(text, locale);
  if (!number) return std::nullopt;
  return NumberTextToDouble(*number);
}

std::optional<double> LocaleTextToDouble(std::u16string_view text) {
  return LocaleTextToDouble(text, CurrentLocale());
}

bool IsLocaleNumeric(std::u16string_view text) {
  return ParseLocaleNumber(text, CurrentLocale()).has_value();
}

}  // namespace norvik50
