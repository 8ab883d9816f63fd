// Quote-aware search: find, test and count alternative search texts.
//
// Positions are 1-based UTF-16 units and 0 means "not found". A search text
// may hold several alternatives separated by "|" («AND|OR»); an empty search
// text has none and finds nothing. Case-insensitive searches fold each unit
// on its own in the current locale. Positions and counts are 16-bit: a value
// past 32767 is an overflow (error 6) where a member can fail.
#ifndef NORVIK50_SRC_TEXT_SEARCH_H_
#define NORVIK50_SRC_TEXT_SEARCH_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace norvik50 {

// Position of the first match of any alternative from `start`, 0 if none.
// With `find_first` the smallest position wins (the earlier alternative on
// a tie); without it the first alternative that matches anywhere wins.
// With `whole_word` a match must stand between word separators. `found`
// (if given) receives the winning alternative and is left alone when
// nothing matches. Never fails: an empty source, a start below 1 or any
// failure gives 0; a match past 32767 does not count.
int16_t FindSubString(std::u16string_view source, std::u16string_view find, int64_t start = 1,
                      bool ignore_case = true, bool find_first = true, bool whole_word = false,
                      std::u16string* found = nullptr);

// -1 when FindSubString finds any alternative (smallest position, no
// whole-word rule), else 0. Never fails.
int16_t HasSubString(std::u16string_view source, std::u16string_view find, int64_t start = 1,
                     bool ignore_case = true);

// Position of the last occurrence of `find` taken literally ("|" included)
// at or after `start`; occurrences may overlap. 0 if none.
// Raises 5 for a start below 1, 6 when an occurrence lies past 32767.
int16_t FindLastSubString(std::u16string_view source, std::u16string_view find, int64_t start = 1,
                          bool ignore_case = true);

// Number of non-overlapping occurrences of each alternative from `start`,
// summed over the alternatives (a text matched by two counts twice). 0 for
// an empty source or search text. Raises 5 for a start below 1 and 6 when
// the count or a position passes 32767; an empty alternative counts without
// end and so always overflows.
int16_t CountSubString(std::u16string_view source, std::u16string_view find, int64_t start = 1,
                       bool ignore_case = true);

// CountSubString without the occurrences that IsInSigns places inside any
// of the sign pairs in `not_in_signs` («""|''»). Same errors.
int16_t CountSubStringExt(std::u16string_view source, std::u16string_view find, int64_t start = 1,
                          bool ignore_case = true, std::u16string_view not_in_signs = u"");

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_SEARCH_H_
