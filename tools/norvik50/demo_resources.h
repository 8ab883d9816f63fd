// The tour's step on languages and resources: a German and an English
// resource library (real Windows DLLs, carried inside the tool) read by
// the library's own reader.
#ifndef NORVIK50_TOOLS_NORVIK50_DEMO_RESOURCES_H_
#define NORVIK50_TOOLS_NORVIK50_DEMO_RESOURCES_H_

#include "demo_tour.h"

namespace norvik50::cli {

void ResourcesStep(Tour& tour);

// Writes the tour's libraries, Res_DE.dll and Res_EN.dll, into `folder`
// (created when missing), for `norvik50 res` and a host's own trials.
// False, after saying why on stderr, when one cannot be written.
bool WriteTourLibraries(const std::string& folder);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_DEMO_RESOURCES_H_
