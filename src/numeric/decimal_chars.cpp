#include "numeric/decimal_chars.h"

#include <algorithm>
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

bool IsNumberUnit(char16_t c) { return (c >= u'0' && c <= u'9') || c == u',' || c == u'.'; }

bool EndsNumber(char16_t c) { return c == u' ' || c == u';' || c == u')'; }

// The numbers of `text`, rewritten in one pass. The text under edit is
// always `out` followed by the unread rest of the input: `out` is final,
// and the number of double quotes in it (its parity) is kept as it grows,
// so no number recounts the quotes to its left. Positions are those of the
// text under edit, as the searches of the rule see them.
class NumberRewriter {
 public:
  NumberRewriter(u16string_view in, bool german_to_english)
      : in_(in), grouping_(german_to_english ? u'.' : u',') {
    out_.reserve(in.size());
  }

  // The rewritten text; a failure ends the rewriting and keeps the text
  // as transformed up to there.
  u16string Run() {
    try {
      Rewrite();
    } catch (const std::exception&) {
    }
    Take(in_.size() - rest_);
    return std::move(out_);
  }

 private:
  void Rewrite() {
    std::size_t resume = 0;  // 0-based: where the next search starts
    while (true) {
      // What lies before the resume position is not searched.
      if (resume > out_.size()) Take(std::min(resume - out_.size(), in_.size() - rest_));
      std::size_t hit = rest_;
      while (hit < in_.size() && !IsNumberUnit(in_[hit])) ++hit;
      if (hit == in_.size()) return;
      const std::size_t p = out_.size() + (hit - rest_);        // 0-based, in the text under edit
      if (p >= static_cast<std::size_t>(kMaxPosition)) return;  // no match past 32767
      Take(hit - rest_);
      if (inside_quotes_) {  // a quoted literal: searched on one unit later
        Take(1);
        resume = p + 1;
        continue;
      }
      std::size_t k = hit;
      while (k < in_.size() && IsNumberUnit(in_[k])) ++k;
      if (k == in_.size() || !EndsNumber(in_[k])) {
        // Abandoned: a letter, or the end of the text (a number there is
        // left as it stands, deliberately). Every later hit in this run
        // stops at the same unit and is abandoned too.
        Take(k - hit);
        resume = out_.size();
        continue;
      }
      // A separator just before the delimiter is punctuation.
      const std::size_t length = k - hit - (in_[k - 1] == u',' || in_[k - 1] == u'.' ? 1 : 0);
      const std::size_t end = p + length + 1;  // 1-based position of the number's end
      if (end > static_cast<std::size_t>(kMaxPosition)) return;  // 16-bit positions
      u16string number(in_.substr(hit, length));
      std::erase(number, grouping_);
      if (IsLocaleNumeric(number)) {
        std::replace(number.begin(), number.end(), u',', u'.');
        out_ += number;
        rest_ = hit + length;
      } else {
        Take(length);
      }
      // Counted in the text before the replacement, so separators removed
      // from the number make the search skip as many units after it.
      resume = end;
    }
  }

  // Moves the next `count` units of the input to `out_` unchanged.
  void Take(std::size_t count) {
    const u16string_view taken = in_.substr(rest_, count);
    for (char16_t c : taken) inside_quotes_ ^= (c == u'"');
    out_ += taken;
    rest_ += taken.size();
  }

  const u16string_view in_;
  const char16_t grouping_;
  u16string out_;
  std::size_t rest_ = 0;  // the first input unit not yet in out_
  bool inside_quotes_ = false;
};

}  // namespace

std::u16string RewriteNumbers(std::u16string_view text, bool german_to_english) {
  return NumberRewriter(text, german_to_english).Run();
}

std::u16string ReplaceDecimalChars(std::u16string_view source, bool german_to_english) {
  u16string text(source);
  try {
    CollapseBlanks(text);
    RewriteFormatCalls(text);
    text = RewriteNumbers(text, german_to_english);
  } catch (const std::exception&) {
    // The first run-time error ends the member with what it has.
  }
  return text;
}

}  // namespace norvik50
