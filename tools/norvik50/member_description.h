// Members described for a person, straight from the dispatch table, so the
// command line's help can never drift from what a call by name accepts.
//   tkrGetLong(lRegKey: Long, sKey: String, sValueName: String,
//              [lDefault: Long = 0], [bWriteBack: Boolean = False]): Long
//   tklMid(ref Source: String, Start: Long, [ref length: Long = -1]): String
// "ref" marks an argument passed by reference (the member may write it
// back); brackets an optional one, "= value" its default (without one it
// arrives as missing).
#ifndef NORVIK50_TOOLS_NORVIK50_MEMBER_DESCRIPTION_H_
#define NORVIK50_TOOLS_NORVIK50_MEMBER_DESCRIPTION_H_

#include <string>
#include <string_view>
#include <vector>

#include "norvik50/dispatch.h"

namespace norvik50::cli {

// The one-line signature of one form of a member (a let form reads
// "tklRegKey let(...)").
std::string MemberSignature(const MemberInfo& member);

// The signature and one line per argument: index (as the batch's "byref"
// counts), name, type, how it is passed, optional and default.
std::string MemberDetails(const MemberInfo& member);

// Every member form whose name contains `pattern` (ignoring case; all of
// them for an empty pattern), sorted by name, get before let.
std::vector<const MemberInfo*> MatchingMembers(std::string_view pattern);

// Every name not answered whose name contains `pattern`, sorted by name.
std::vector<const UnavailableMember*> MatchingUnavailableMembers(std::string_view pattern);

// `text` in ASCII lower case, for comparing member names.
std::string Lower(std::string_view text);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_MEMBER_DESCRIPTION_H_
