#include "dialogs/input_request.h"

#include <charconv>
#include <string>

#include "numeric/convert_to_type.h"
#include "resources/resource_document.h"

namespace norvik50 {
namespace {

constexpr int32_t kStringType = 8;

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

bool TwoDigitsAndBar(std::u16string_view title) {
  return title.size() >= 3 && IsDigit(title[0]) && IsDigit(title[1]) && title[2] == u'|';
}

bool IsEmptyValue(const Variant& value) {
  if (value.is_empty() || value.is_null()) return true;
  return value.type() == VarType::kString && value.as_string().empty();
}

bool IsNumberType(const Variant& value) {
  const int32_t type = value.var_type();
  return type >= 2 && type <= 5;
}

}  // namespace

InputRequest MakeInputRequest(std::u16string_view prompt, std::u16string_view title,
                              const Variant& value, std::u16string_view default_text, bool masked,
                              int16_t language) {
  InputRequest request;
  if (TwoDigitsAndBar(title)) {
    request.max_length = (title[0] - u'0') * 10 + (title[1] - u'0');
    request.title = title.substr(3);
  } else {
    request.title = title;
  }
  request.prompt = prompt;
  // The members always pass a Default (empty when the caller left it out),
  // so the incoming Value is never shown; hosts rely on the box starting
  // with the default they give, and empty for an empty Value.
  if (!IsEmptyValue(value)) request.initial_text = default_text;
  request.masked = masked;
  request.ok_caption = GetResourceItem(u"cmdOK", language);
  request.cancel_caption = GetResourceItem(u"cmdCancel", language);
  request.language = language;
  return request;
}

double LeadingNumber(std::u16string_view text) {
  // Collect the numeric prefix as plain ASCII for from_chars, which reads
  // "." whatever the process locale says.
  std::string digits;
  enum class Part { kSign, kWhole, kFraction, kExponentSign, kExponent } part = Part::kSign;
  bool any_digit = false;
  std::size_t before_exponent = 0;
  for (const char16_t c : text) {
    if (c == u' ' || c == u'\t' || c == u'\n') continue;
    if ((c == u'+' || c == u'-') && (part == Part::kSign || part == Part::kExponentSign)) {
      if (c == u'-') digits += '-';
      part = part == Part::kSign ? Part::kWhole : Part::kExponent;
      continue;
    }
    if (IsDigit(c)) {
      digits += static_cast<char>(c);
      if (part == Part::kSign) part = Part::kWhole;
      if (part == Part::kExponentSign) part = Part::kExponent;
      any_digit = true;
      continue;
    }
    if (c == u'.' && (part == Part::kSign || part == Part::kWhole)) {
      digits += '.';
      part = Part::kFraction;
      continue;
    }
    const bool exponent_mark = c == u'E' || c == u'e' || c == u'D' || c == u'd';
    if (exponent_mark && any_digit && (part == Part::kWhole || part == Part::kFraction)) {
      before_exponent = digits.size();
      digits += 'e';
      part = Part::kExponentSign;
      continue;
    }
    break;
  }
  // An exponent mark without digits after it is not part of the number.
  if (part == Part::kExponentSign || (part == Part::kExponent && digits.back() == '-') ||
      (part == Part::kExponent && digits.back() == 'e')) {
    digits.resize(before_exponent);
  }
  if (!any_digit) return 0;
  double number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  (void)end;
  return error == std::errc() ? number : 0;
}

std::u16string ConfirmedValue(std::u16string_view text, const Variant& value) {
  if (!IsNumberType(value)) return std::u16string(text);
  return ConvertToType(kStringType, Variant(LeadingNumber(text))).as_string();
}

}  // namespace norvik50
