#include "numeric/decimal_digits.h"

#include <charconv>
#include <cstdlib>

namespace norvik50 {
namespace {

// Builds the digits from to_chars' scientific form "d.ddde±x".
DecimalDigits FromScientific(const char* first, const char* last, bool negative) {
  DecimalDigits out;
  out.negative = negative;
  const char* p = first;
  for (; p != last && *p != 'e'; ++p) {
    if (*p != '.') out.digits.push_back(*p);
  }
  int64_t exponent = 0;
  if (p != last) std::from_chars(p + 1 + (p[1] == '+' ? 1 : 0), last, exponent);
  out.point = exponent + 1;
  const std::size_t first_nonzero = out.digits.find_first_not_of('0');
  if (first_nonzero == std::string::npos) return DecimalDigits{negative, "", 0};
  out.digits.erase(0, first_nonzero);
  out.point -= static_cast<int64_t>(first_nonzero);
  while (!out.digits.empty() && out.digits.back() == '0') out.digits.pop_back();
  return out;
}

DecimalDigits FromPlain(std::string text, bool negative, int64_t scale) {
  DecimalDigits out;
  out.negative = negative;
  out.point = static_cast<int64_t>(text.size()) - scale;
  const std::size_t first_nonzero = text.find_first_not_of('0');
  if (first_nonzero == std::string::npos) return DecimalDigits{negative, "", 0};
  text.erase(0, first_nonzero);
  out.point -= static_cast<int64_t>(first_nonzero);
  while (text.back() == '0') text.pop_back();
  out.digits = std::move(text);
  return out;
}

// Cuts the digit string to `keep` digits, rounding half away from zero.
void Cut(DecimalDigits& n, int64_t keep) {
  if (keep >= static_cast<int64_t>(n.digits.size())) return;
  if (keep < 0) {
    n.digits.clear();
    n.point = 0;
    return;
  }
  const bool up = n.digits[static_cast<std::size_t>(keep)] >= '5';
  n.digits.resize(static_cast<std::size_t>(keep));
  if (up) {
    std::size_t i = n.digits.size();
    while (i > 0 && n.digits[i - 1] == '9') n.digits[--i] = '0';
    if (i == 0) {
      n.digits.insert(n.digits.begin(), '1');
      ++n.point;
    } else {
      ++n.digits[i - 1];
    }
  }
  while (!n.digits.empty() && n.digits.back() == '0') n.digits.pop_back();
  if (n.digits.empty()) n.point = 0;
}

}  // namespace

std::string DecimalDigits::IntegerPart() const {
  if (point <= 0 || digits.empty()) return "";
  std::string out = digits.substr(0, static_cast<std::size_t>(point));
  if (static_cast<int64_t>(out.size()) < point) {
    out.append(static_cast<std::size_t>(point) - out.size(), '0');
  }
  return out;
}

std::string DecimalDigits::FractionPart(int64_t places) const {
  std::string out;
  if (places <= 0) return out;
  out.reserve(static_cast<std::size_t>(places));
  for (int64_t i = 0; i < places; ++i) {
    const int64_t index = point + i;  // digit index of the (i+1)-th place
    out.push_back(index >= 0 && index < static_cast<int64_t>(digits.size())
                      ? digits[static_cast<std::size_t>(index)]
                      : '0');
  }
  return out;
}

DecimalDigits DigitsOfDouble(double value) {
  char buffer[40];
  const bool negative = value < 0;
  const auto r = std::to_chars(buffer, buffer + sizeof buffer, negative ? -value : value,
                               std::chars_format::scientific);
  DecimalDigits out = FromScientific(buffer, r.ptr, negative);
  RoundToSignificant(out, 15);
  return out;
}

DecimalDigits DigitsOfSingle(float value) {
  char buffer[32];
  const bool negative = value < 0;
  const auto r = std::to_chars(buffer, buffer + sizeof buffer, negative ? -value : value,
                               std::chars_format::scientific);
  DecimalDigits out = FromScientific(buffer, r.ptr, negative);
  RoundToSignificant(out, 7);
  return out;
}

DecimalDigits DigitsOfInteger(int64_t value) {
  const bool negative = value < 0;
  const uint64_t magnitude =
      negative ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  return FromPlain(std::to_string(magnitude), negative, 0);
}

DecimalDigits DigitsOfCurrency(Currency value) {
  const bool negative = value.scaled < 0;
  const uint64_t magnitude = negative ? uint64_t{0} - static_cast<uint64_t>(value.scaled)
                                      : static_cast<uint64_t>(value.scaled);
  return FromPlain(std::to_string(magnitude), negative, 4);
}

DecimalDigits DigitsOfDecimal(const Decimal& value) {
  std::string text = value.ToString();
  const bool negative = !text.empty() && text[0] == '-';
  if (negative) text.erase(0, 1);
  int64_t scale = 0;
  if (const std::size_t dot = text.find('.'); dot != std::string::npos) {
    scale = static_cast<int64_t>(text.size() - dot - 1);
    text.erase(dot, 1);
  }
  return FromPlain(std::move(text), negative, scale);
}

void RoundToPlaces(DecimalDigits& number, int64_t places) {
  if (number.is_zero()) return;
  Cut(number, number.point + places);
}

void RoundToSignificant(DecimalDigits& number, int64_t count) {
  Cut(number, count < 1 ? 1 : count);
}

}  // namespace norvik50
