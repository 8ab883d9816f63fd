// The wire form of one batch line: JSON text <-> a JSON document, with two
// things nlohmann's reader cannot do on its own.
//
// Depth: a line nested deeper than kMaxNesting levels is refused by a flat
// scan of its text, before anything that recurses (building, copying,
// writing or converting the document) sees it.
//
// Unpaired surrogates: host texts are UTF-16 and may hold a lone surrogate
// (a string cut inside a pair, bytes kept in a text). JSON writes one as
// "\ud800", which the reader refuses and UTF-8 cannot hold. Inside the
// document such a unit is therefore kept as two characters, the
// noncharacter U+FDD0 and U+E000 + (unit - 0xD800); a real U+FDD0 is kept
// doubled. WireTextToUtf16 and Utf16ToWireText convert the document's
// strings to host text and back; WriteJsonLine writes the escapes again. So
// every UTF-16 text travels unchanged in both directions.
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_LINE_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_LINE_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace norvik50::cli {

// Arrays and objects nested deeper than this are refused. Typed values
// take two levels each ({"vt":"Array","v":[...]}), so a request may still
// nest 100 arrays, records or collections, far beyond any real host's.
inline constexpr int kMaxNesting = 200;

// The document of `line`, or nullopt with `why` saying what is wrong
// ("not valid JSON", "nested deeper than 200 levels").
std::optional<nlohmann::ordered_json> ReadJsonLine(std::string_view line, std::string& why);

// One line of JSON (without the newline) for `value`; kept surrogates are
// written as \uXXXX escapes again.
std::string WriteJsonLine(const nlohmann::ordered_json& value);

// A string of a document read by ReadJsonLine as UTF-16, and back.
std::u16string WireTextToUtf16(std::string_view text);
std::string Utf16ToWireText(std::u16string_view text);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_LINE_H_
