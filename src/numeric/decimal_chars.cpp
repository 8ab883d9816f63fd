#include "numeric/decimal_chars.h"

#include <exception>

#include "numeric/locale_number.h"
#include "text/brackets.h"
#include "text/replace.h"
#include "text/search.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

using std::u16string;
using std::u16string_view;

void CollapseBlanks(u16string& text) {
  while (true) {
    u16string next = ReplaceInString(text, u"  ", u" ");
    if (next == text) return;
    text = std::move(next);
  }
}

// The pattern of a Format call is its last quoted literal; its commas
// become points so that the call reads the same in "." notation.
void RewriteFormatCalls(u16string& text) {
  int64_t start = 1;
  while (true) {
    const int16_t p = FindSubString(text, u"format(|format (", start);
    if (p == 0) return;
    start = p + 1;
    u16string term, before, after;
    if (!ExtractBrackets(u16string_view(text).substr(static_cast<std::size_t>(p - 1)), term, before,
                         after)) {
      continue;
    }
    const int16_t q2 = FindLastSubString(term, u"\"");
    const int16_t q1 =
        q2 > 1 ? FindLastSubString(u16string_view(term).substr(0, static_cast<std::size_t>(q2 - 1)),
                                   u"\"")
               : 0;
    if (q1 >= 1 && q1 < q2) {
      for (int16_t i = q1; i < q2 - 1; ++i) {  // strictly between the quotes
        if (term[static_cast<std::size_t>(i)] == u',') term[static_cast<std::size_t>(i)] = u'.';
      }
    }
    // Always ") " with one blank after the bracket, then the whole trimmed.
    const u16string rebuilt =
        text.substr(0, static_cast<std::size_t>(p - 1)) + before + u"(" + term + u") " + after;
    text = u16string(TrimBlanks(rebuilt));
  }
}

void RewriteNumbers(u16string& text, bool german_to_english) {
  int64_t start = 1;
  while (true) {
    const int16_t hit = FindSubString(text, u"0|1|2|3|4|5|6|7|8|9|,|.", start);
    if (hit == 0) return;
    const std::size_t p = static_cast<std::size_t>(hit);  // 1-based
    if (CountSubString(u16string_view(text).substr(0, p - 1), u"\"") % 2 == 1) {
      start = hit + 1;  // inside a quoted literal
      continue;
    }
    std::size_t end = 0;  // 1-based position of the number's end, 0: abandoned
    for (std::size_t k = p; k <= text.size(); ++k) {
      const char16_t c = text[k - 1];
      if (c == u' ' || c == u';' || c == u')') {
        end = k;
        // k > p always: the hit itself is a digit or a separator.
        if (k > p && (text[k - 2] == u',' || text[k - 2] == u'.')) end = k - 1;
        break;
      }
      if (!((c >= u'0' && c <= u'9') || c == u',' || c == u'.')) break;
    }
    // A number that runs to the end of the text has no delimiter and is
    // left as it stands, deliberately.
    if (end == 0) {
      start = hit + 1;
      continue;
    }
    if (end > static_cast<std::size_t>(kMaxPosition)) return;  // 16-bit positions
    u16string number = text.substr(p - 1, end - p);
    const char16_t grouping = german_to_english ? u'.' : u',';
    std::erase(number, grouping);
    if (IsLocaleNumeric(number)) {
      for (char16_t& c : number) {
        if (c == u',') c = u'.';
      }
      text = text.substr(0, p - 1) + number + text.substr(end - 1);
    }
    // Counted in the text before the replacement, so separators removed
    // from the number may let the search skip a few characters.
    start = static_cast<int64_t>(end) + 1;
  }
}

}  // namespace

std::u16string ReplaceDecimalChars(std::u16string_view source, bool german_to_english) {
  u16string text(source);
  try {
    CollapseBlanks(text);
    RewriteFormatCalls(text);
    RewriteNumbers(text, german_to_english);
  } catch (const std::exception&) {
    // The first run-time error ends the member with what it has.
  }
  return text;
}

}  // namespace norvik50
