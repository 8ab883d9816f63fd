#include "numeric/decimal_chars.h"

#include <algorithm>
#include <exception>
#include <vector>

#include "norvik50/error.h"
#include "numeric/locale_number.h"
#include "text/brackets.h"
#include "text/haystack.h"
#include "text/replace.h"
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

// The blanks that rebuilt Format calls put after their closing brackets,
// kept by the index of the unit each stands before: the calls are found in
// the text without them, and a position in the text with them is the
// index plus the blanks before it. Only positions near 32767 need that
// exactly; the counts by index (a Fenwick tree) are built when the first
// of them is asked for.
class InsertedBlanks {
 public:
  explicit InsertedBlanks(std::size_t size) : size_(size) {}

  std::size_t size() const { return at_.size(); }

  void AddBefore(std::size_t index) {
    at_.push_back(index);
    if (!tree_.empty()) Count(index);
  }

  // The blanks standing before unit `index` (those put before it included).
  std::size_t UpTo(std::size_t index) {
    if (tree_.empty()) {
      tree_.assign(size_ + 2, 0);
      for (std::size_t at : at_) Count(at);
    }
    std::size_t count = 0;
    for (std::size_t i = std::min(index + 1, tree_.size() - 1); i > 0; i -= i & (~i + 1)) {
      count += tree_[i];
    }
    return count;
  }

  // `raw` with the blanks in.
  u16string PutInto(u16string_view raw) {
    std::sort(at_.begin(), at_.end());
    u16string out;
    out.reserve(raw.size() + at_.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i <= raw.size(); ++i) {
      for (; next < at_.size() && at_[next] == i; ++next) out += u' ';
      if (i < raw.size()) out += raw[i];
    }
    return out;
  }

 private:
  void Count(std::size_t index) {
    for (std::size_t i = index + 1; i < tree_.size(); i += i & (~i + 1)) ++tree_[i];
  }

  std::size_t size_;
  std::vector<std::size_t> at_;
  std::vector<uint32_t> tree_;
};

// The Format calls of a text, rewritten in one pass over it. Each call at
// position p is cut around its first bracket pair (brackets inside double
// quotes, counted from p, do not count); the commas of the last quoted
// literal of its term (the pattern) become points, so that the call reads
// the same in "." notation; the call is rebuilt with ") " after its
// bracket, and the whole text trimmed; the search goes on at p + 1, so
// calls nested in the term are rewritten too. Rebuilding changes nothing
// but commas and the blanks after the brackets and at the ends, and no
// blank can be part of a call's name, of a bracket or of a quote: so the
// calls are found and cut in the text as it was, and the blanks come in at
// the end. Positions past 32767 end it as the 16-bit searches do.
class FormatCallRewriter {
 public:
  explicit FormatCallRewriter(u16string_view text)
      : text_(text), blanks_(text.size()), hay_(text_, true) {
    for (std::size_t k = 0; k < 2; ++k) needles_[k] = hay_.Needle(kNames[k]);
  }

  // False when a position passed 32767 in a call's term, which ends the
  // member with `text` as transformed so far.
  bool Run(u16string& text) {
    bool complete = true;
    try {
      Rewrite();
    } catch (const std::exception&) {
      complete = false;
    }
    text = blanks_.PutInto(text_);
    if (rebuilt_) text = u16string(TrimBlanks(text));
    return complete;
  }

 private:
  static constexpr u16string_view kNames[2] = {u"format(", u"format ("};

  void Rewrite() {
    std::size_t from = 0;
    while (true) {
      const std::size_t at = NextCall(from);
      if (at == u16string::npos) return;
      // Its position in the text as rebuilt so far; the search sees none
      // past 32767.
      if (PastTheLimit(at + 1 - lead_, at)) return;
      from = at + 1;
      std::size_t open = 0, close = 0;
      if (!BracketPair(at, open, close)) continue;
      RewritePattern(open, close);
      blanks_.AddBefore(close + 1);
      if (!rebuilt_) {
        rebuilt_ = true;
        while (lead_ < text_.size() && text_[lead_] == u' ') ++lead_;
      }
    }
  }

  // Whether `position`, counted without the blanks put in, is past 32767
  // with the blanks before unit `index`.
  bool PastTheLimit(std::size_t position, std::size_t index) {
    constexpr auto kMax = static_cast<std::size_t>(kMaxPosition);
    return position + blanks_.size() > kMax && position + blanks_.UpTo(index) > kMax;
  }

  // The first index from `from` where a call's name starts; npos if none.
  std::size_t NextCall(std::size_t from) {
    std::size_t best = u16string::npos;
    for (std::size_t k = 0; k < 2; ++k) {
      if (next_[k] == kUnknown || (next_[k] != u16string::npos && next_[k] < from)) {
        next_[k] = hay_.Find(needles_[k], from);
      }
      best = std::min(best, next_[k]);
    }
    return best;
  }

  // The first "(" from `at` outside double quotes (counted from `at`) and
  // the ")" closing it.
  bool BracketPair(std::size_t at, std::size_t& open, std::size_t& close) const {
    if (!FindBracketPair(u16string_view(text_).substr(at), open, close)) return false;
    open += at;
    close += at;
    return true;
  }

  // The commas between the last two double quotes of the term (open,
  // close) become points.
  void RewritePattern(std::size_t open, std::size_t close) {
    std::size_t q2 = close;
    while (q2 > open + 1 && text_[q2 - 1] != u'"') --q2;
    if (q2 == open + 1) return;  // no quote in the term
    --q2;
    // The last quote's position in the term with its blanks must fit 16 bits.
    if (q2 - open + blanks_.size() > static_cast<std::size_t>(kMaxPosition) &&
        q2 - open + blanks_.UpTo(q2) - blanks_.UpTo(open) >
            static_cast<std::size_t>(kMaxPosition)) {
      Raise(kErrOverflow);
    }
    std::size_t q1 = q2;
    while (q1 > open + 1 && text_[q1 - 1] != u'"') --q1;
    if (q1 == open + 1) return;  // a single quote
    --q1;
    std::replace(text_.begin() + static_cast<std::ptrdiff_t>(q1) + 1,
                 text_.begin() + static_cast<std::ptrdiff_t>(q2), u',', u'.');
  }

  static constexpr std::size_t kUnknown = u16string::npos - 1;

  u16string text_;  // without the blanks put in
  InsertedBlanks blanks_;
  Haystack hay_;
  u16string needles_[2];
  std::size_t next_[2] = {kUnknown, kUnknown};  // each name's next start, npos: none
  bool rebuilt_ = false;
  std::size_t lead_ = 0;  // leading blanks trimmed away by the first rebuild
};

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

bool RewriteFormatCalls(std::u16string& text) { return FormatCallRewriter(text).Run(text); }

std::u16string RewriteNumbers(std::u16string_view text, bool german_to_english) {
  return NumberRewriter(text, german_to_english).Run();
}

std::u16string ReplaceDecimalChars(std::u16string_view source, bool german_to_english) {
  u16string text(source);
  try {
    CollapseBlanks(text);
    if (!RewriteFormatCalls(text)) return text;
    text = RewriteNumbers(text, german_to_english);
  } catch (const std::exception&) {
    // The first run-time error ends the member with what it has.
  }
  return text;
}

}  // namespace norvik50
