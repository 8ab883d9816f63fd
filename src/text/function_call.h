// Call expressions in a text: a name directly followed by a bracket pair,
// as in «Round(a, 2)». Brackets and double-quoted literals are respected
// throughout: «Format(x, "a,b")» has two arguments, «f(g(a, b))» one.
#ifndef NORVIK50_SRC_TEXT_FUNCTION_CALL_H_
#define NORVIK50_SRC_TEXT_FUNCTION_CALL_H_

#include <string>
#include <string_view>
#include <vector>

namespace norvik50 {

// Whether `c` may stand in a function name: a letter or digit (any
// script), "_", "." (object and module prefixes) or "$" (the runtime's
// text-typed functions such as Left$). A name starts with a letter or "_".
bool IsNameUnit(char16_t c);

struct CallExpression {
  std::u16string expression;  // the name and the bracket pair
  std::u16string before;      // the text before the name
  std::u16string after;       // the text after the ")"
  std::u16string name;        // as written; "" for a bare bracket pair
};

// With an empty `name`: the first bracket pair as ExtractBrackets finds it,
// together with the name directly before its "(" (none for a bare pair).
// Otherwise the leftmost call of that name (compared as a whole name,
// without case when `ignore_case`) outside double quotes whose bracket
// closes. False, `out` untouched, when there is none. Never fails.
bool ExtractExpression(std::u16string_view source, std::u16string_view name, bool ignore_case,
                       CallExpression& out);

// When the blank-trimmed `source` is exactly one call, «Name(arguments)»
// with nothing after its ")": True, `name` receives the name and
// `arguments` the arguments split at the commas that stand outside nested
// brackets and literals, each trimmed of blanks («f(a, , "x,y")» gives
// «a», «», «"x,y"»; «f()» and «f( )» give none). False, outputs
// untouched, otherwise. Never fails.
bool SeparateFunction(std::u16string_view source, std::u16string& name,
                      std::vector<std::u16string>& arguments);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_FUNCTION_CALL_H_
