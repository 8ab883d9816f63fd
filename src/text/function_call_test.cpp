#include "text/function_call.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace norvik50 {
namespace {

using std::u16string;

struct ExpressionCase {
  const char16_t* source;
  const char16_t* name;  // looked for; "" for any
  bool ignore_case;
  bool found;
  CallExpression expected;
};

TEST(ExtractExpression, FirstPairOrNamedCall) {
  const ExpressionCase cases[] = {
      // Any name: the first pair, with the name before it.
      {u"x = Round(a, 2) * 3", u"", true, true, {u"Round(a, 2)", u"x = ", u" * 3", u"Round"}},
      {u"(a + b) * c", u"", true, true, {u"(a + b)", u"", u" * c", u""}},
      {u"obj.Sum$(a(1))", u"", true, true, {u"obj.Sum$(a(1))", u"", u"", u"obj.Sum$"}},
      // A name begins with a letter or "_"; a blank stands between words.
      {u"x*3ab(y)", u"", true, true, {u"ab(y)", u"x*3", u"", u"ab"}},
      {u"AND (y)", u"", true, true, {u"(y)", u"AND ", u"", u""}},
      // The first pair as tklExtractBrackets finds it: a "(" that never
      // closes stops the search.
      {u"f(a g(b)", u"", true, false, {}},
      // A named call: a whole name, outside literals, whose bracket closes.
      {u"MyRound(1) + round(2)",
       u"Round",
       true,
       true,
       {u"round(2)", u"MyRound(1) + ", u"", u"round"}},
      {u"MyRound(1) + round(2)", u"Round", false, false, {}},
      {u"\"Round(1)\" & Round(2", u"Round", true, false, {}},
      {u"\"Round(1)\" & Round(2)",
       u"Round",
       true,
       true,
       {u"Round(2)", u"\"Round(1)\" & ", u"", u"Round"}},
      {u"f(a Round(b)", u"round", true, true, {u"Round(b)", u"f(a ", u"", u"Round"}},
      {u"x.Round(1)", u"Round", true, false, {}},  // a method of x, not the function
      {u"", u"", true, false, {}},
  };
  for (const ExpressionCase& c : cases) {
    CallExpression out{u"E0", u"B0", u"A0", u"N0"};
    const bool found = ExtractExpression(c.source, c.name, c.ignore_case, out);
    const std::string where = ::testing::PrintToString(u16string(c.source)) + " " +
                              ::testing::PrintToString(u16string(c.name));
    ASSERT_EQ(found, c.found) << where;
    const CallExpression& expected =
        c.found ? c.expected : CallExpression{u"E0", u"B0", u"A0", u"N0"};
    EXPECT_EQ(out.expression, expected.expression) << where;
    EXPECT_EQ(out.before, expected.before) << where;
    EXPECT_EQ(out.after, expected.after) << where;
    EXPECT_EQ(out.name, expected.name) << where;
  }
}

TEST(SeparateFunction, NameAndArguments) {
  struct Case {
    const char16_t* source;
    bool found;
    const char16_t* name;
    std::vector<u16string> arguments;
  };
  const Case cases[] = {
      {u"Round(a, 2)", true, u"Round", {u"a", u"2"}},
      {u"  Format(x, \"a,b\")  ", true, u"Format", {u"x", u"\"a,b\""}},  // literals whole
      {u"f(g(a, b), c)", true, u"f", {u"g(a, b)", u"c"}},                // nested calls whole
      {u"f(a, , c)", true, u"f", {u"a", u"", u"c"}},                     // an omitted argument
      {u"f(a,)", true, u"f", {u"a", u""}},
      {u"f()", true, u"f", {}},
      {u"f(   )", true, u"f", {}},
      {u"f(\")\")", true, u"f", {u"\")\""}},
      {u"Left$(s, 3)", true, u"Left$", {u"s", u"3"}},
      {u"f(a) + 1", false, u"", {}},  // more than one call
      {u"f(a)(b)", false, u"", {}},   //
      {u"f(a", false, u"", {}},       // never closes
      {u"(a)", false, u"", {}},       // no name
      {u"f (a)", false, u"", {}},     // the bracket must follow the name
      {u"1f(a)", false, u"", {}},     // a name begins with a letter or "_"
      {u"a+b(c)", false, u"", {}},    //
      {u"\"f(a)\"", false, u"", {}},  //
      {u"", false, u"", {}},
  };
  for (const Case& c : cases) {
    u16string name = u"N0";
    std::vector<u16string> arguments{u"A0"};
    const bool found = SeparateFunction(c.source, name, arguments);
    const std::string where = ::testing::PrintToString(u16string(c.source));
    ASSERT_EQ(found, c.found) << where;
    EXPECT_EQ(name, c.found ? u16string(c.name) : u"N0") << where;
    EXPECT_EQ(arguments, c.found ? c.arguments : std::vector<u16string>{u"A0"}) << where;
  }
}

TEST(SeparateFunction, AnOutputMayBeTheSourceItself) {
  u16string text = u"Mid(s, 2)";
  std::vector<u16string> arguments;
  ASSERT_TRUE(SeparateFunction(text, text, arguments));
  EXPECT_EQ(text, u"Mid");
  EXPECT_EQ(arguments, (std::vector<u16string>{u"s", u"2"}));
}

}  // namespace
}  // namespace norvik50
