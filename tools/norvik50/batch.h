// The batch protocol: one JSON request per line in, one JSON answer per
// line out, in order, over one LIB object that lives for the whole batch.
//   {"id": 1, "member": "tklGetFullPath", "args": ["C:\\Temp", "x.LOG"]}
//   {"id": 1, "ok": true, "result": {"vt":"String","v":"C:\\Temp\\x.LOG"}}
// A bad line gets {"id":..., "ok": false, "error": {...}} and the batch
// goes on: whatever a line holds (any JSON, any depth, values out of every
// range, a failure no member documents), it ends in exactly one answer.
#ifndef NORVIK50_TOOLS_NORVIK50_BATCH_H_
#define NORVIK50_TOOLS_NORVIK50_BATCH_H_

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string_view>

#include "norvik50/lib.h"

namespace norvik50::cli {

// The answer to one request line; never throws for anything in the line.
// Strings in the answer are in the wire form (write it with WriteJsonLine).
nlohmann::ordered_json AnswerRequest(LIB& lib, std::string_view line);

// Answers every line of `in` on `out`; blank lines are skipped. Returns the
// number of requests that failed.
int RunBatch(std::istream& in, std::ostream& out);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_BATCH_H_
