// The tour's step on the dialogs: real Qt forms on the offscreen platform,
// answered by a dialog script as a test would answer them; the headless
// answers in a build without Qt.
#ifndef NORVIK50_TOOLS_NORVIK50_DEMO_DIALOGS_H_
#define NORVIK50_TOOLS_NORVIK50_DEMO_DIALOGS_H_

#include "demo_tour.h"

namespace norvik50::cli {

void DialogsStep(Tour& tour);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_DEMO_DIALOGS_H_
