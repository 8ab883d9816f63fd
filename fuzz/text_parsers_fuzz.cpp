// libFuzzer target for the text parsers of call expressions, bracket pairs,
// numeric words and the extended replace. The input's first two bytes are
// flags and a start position; the rest, read as byte characters, is cut at
// 0x1F into the source, the search text, the replacement, the sign pairs
// and a function name. Beyond not crashing, each answer is checked:
//  - the extended replace raises only 5 or 6, and with the double-quote
//    pair or no pair (no numeric rules) answers exactly as the plain one;
//  - a call expression found is a slice of the source with the text before
//    and after it; a separated call has a name and no more arguments than
//    commas allow;
//  - every bracket pair is a "(" and its ")", and taking pairs out never
//    adds a bracket.
// Seeds in fuzz/corpus/text_parsers.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "text/bracket_pairs.h"
#include "text/function_call.h"
#include "text/numeric_word.h"
#include "text/replace.h"
#include "text/replace_ext.h"

namespace {

using std::u16string;

void Check(bool ok) {
  if (!ok) std::abort();
}

std::vector<u16string> Fields(const u16string& text) {
  std::vector<u16string> fields(1);
  for (char16_t c : text) {
    if (c == u'\x1F') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  fields.resize(std::max<std::size_t>(fields.size(), 5));
  return fields;
}

// The answer of a replace, or the number of the error it raised.
template <typename Fn>
std::pair<int, u16string> Outcome(Fn fn) {
  try {
    return {0, fn()};
  } catch (const norvik50::Error& e) {
    Check(e.number() == norvik50::kErrInvalidCall || e.number() == norvik50::kErrOverflow);
    return {e.number(), u""};
  }
}

void CheckReplace(const std::vector<u16string>& f, uint8_t flags, int start) {
  using namespace norvik50;
  const bool at_beginning = (flags & 1) != 0, whole_word = (flags & 2) != 0;
  const bool quotes = (flags & 4) != 0;
  ExtendedReplaceRules rules{at_beginning, whole_word, (flags & 8) != 0, (flags & 16) != 0, f[3]};
  Outcome([&] { return ReplaceInStringExt(f[0], f[1], f[2], start, rules); });
  rules.not_numeric = rules.only_numeric = false;
  rules.not_in_signs = quotes ? u"\"\"" : u"";
  Check(Outcome([&] { return ReplaceInStringExt(f[0], f[1], f[2], start, rules); }) == Outcome([&] {
          return ReplaceInString(f[0], f[1], f[2], start, true, at_beginning, quotes, whole_word);
        }));
}

void CheckCalls(const u16string& source, const u16string& name, bool ignore_case) {
  using namespace norvik50;
  CallExpression call;
  if (ExtractExpression(source, name, ignore_case, call)) {
    Check(call.before + call.expression + call.after == source);
    Check(call.expression.rfind(call.name, 0) == 0 && call.expression.back() == u')');
  }
  u16string function;
  std::vector<u16string> arguments;
  if (SeparateFunction(source, function, arguments)) {
    Check(!function.empty());
    Check(arguments.size() <=
          static_cast<std::size_t>(std::count(source.begin(), source.end(), u',')) + 1);
  }
}

void CheckBrackets(const u16string& source) {
  using namespace norvik50;
  for (const BracketPair& p : CompleteBracketPairs(source)) {
    Check(p.open < p.close && source[p.open] == u'(' && source[p.close] == u')');
  }
  const u16string phrase = PhraseWithoutBrackets(source);
  Check(phrase.size() <= source.size());
  Check(std::count(phrase.begin(), phrase.end(), u'(') <=
        std::count(source.begin(), source.end(), u'('));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const uint8_t flags = data[0];
  const int start = static_cast<int8_t>(data[1]);
  const std::string bytes(reinterpret_cast<const char*>(data + 2), size - 2);
  const std::vector<u16string> f = Fields(norvik50::BytesToText(bytes));

  const std::string tag = (flags & 32) != 0 ? "de-DE" : "en-US";
  if (norvik50::CurrentLocale().tag != tag) norvik50::SetCurrentLocale(tag);

  CheckReplace(f, flags, start);
  CheckCalls(f[0], f[4], (flags & 64) != 0);
  CheckBrackets(f[0]);
  norvik50::IsNumericWord(f[0]);
  return 0;
}
