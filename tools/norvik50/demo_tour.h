// What the tour's steps are written with: a heading and one line of
// explanation per step, and calls by name shown as a person writes them:
//   tklVal("EUR 1.234,56") = 1234.56
#ifndef NORVIK50_TOOLS_NORVIK50_DEMO_TOUR_H_
#define NORVIK50_TOOLS_NORVIK50_DEMO_TOUR_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/lib.h"
#include "norvik50/variant.h"

namespace norvik50::cli {

// What every step may use: the one LIB object of the tour, the tour's own
// folder (its settings, log, libraries and dialog files; removed at the
// end), the locale it started in, and how many answers were not the ones
// the tour expects.
struct Tour {
  LIB& lib;
  std::string folder;
  std::string locale_tag;
  int unexpected = 0;
};

// A step's heading and its one line of explanation.
void Step(std::string_view heading, std::string_view explanation);

// An indented remark under a call: why a surprising result is the right one.
void Note(std::string_view text);

// Calls `member` by name through the dispatch, as a host would, and prints
// "member(args) = result" (and each argument the member wrote back); a
// failed call prints its error. Returns the result, if any.
std::optional<Variant> ShowCall(Tour& tour, std::string_view member, std::vector<Variant> args);

// The same, for a call whose answer the tour knows: when the result (or
// "error N" for a failed call) is not written as `expected`, a line
// starting with "!!" says what was expected and the tour fails at its end.
std::optional<Variant> ShowCall(Tour& tour, std::string_view member, std::vector<Variant> args,
                                std::string_view expected);

// Checks an answer the step worked out itself; `what` names it.
void Expect(Tour& tour, std::string_view what, const std::string& got, std::string_view expected);

// Bytes as hexadecimal pairs: "01 00 41".
std::string HexBytes(std::string_view bytes);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_DEMO_TOUR_H_
