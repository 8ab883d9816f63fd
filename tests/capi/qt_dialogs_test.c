/* The Qt dialogs chosen through the C interface: libnorvik50_qt is loaded
 * at run time, a real message box opens on the offscreen platform and the
 * dialog script answers it (the second button, No = 7). Then the headless
 * choice again, and a Qt library that cannot be loaded. Prints
 * "N passed, N failed". */
#include <stdio.h>
#include <stdlib.h>

#include "norvik50/norvik50.h"

static int passed;
static int failed;

static void Check(int ok, const char* what) {
  if (ok) {
    ++passed;
  } else {
    ++failed;
    fprintf(stderr, "FAILED: %s\n", what);
  }
}

static int32_t AskYesNoCancel(norvik50_lib* lib) {
  norvik50_value* args[4];
  norvik50_value* result = NULL;
  int32_t answer = -1;
  norvik50_value_new_utf8("Save?", (size_t)-1, &args[0]);
  norvik50_value_new_utf8("", 0, &args[1]);
  args[2] = norvik50_value_new_long(3); /* Yes, No, Cancel */
  norvik50_value_new_utf8("C host", (size_t)-1, &args[3]);
  if (norvik50_invoke(lib, "tklMsgBox", NORVIK50_METHOD, args, 4, &result, NULL) == 0) {
    norvik50_value_get_long(result, &answer);
  }
  norvik50_value_free(result);
  for (int i = 0; i < 4; ++i) norvik50_value_free(args[i]);
  return answer;
}

int main(void) {
  norvik50_lib* lib = NULL;
  norvik50_error err = NORVIK50_ERROR_INIT;
  if (norvik50_lib_new(&lib, NULL) != 0) return 1;

  Check(AskYesNoCancel(lib) == 10, "headless by default: the box fails at once (10)");
  Check(norvik50_set_dialogs(NORVIK50_DIALOGS_QT, &err) == 0, "the Qt dialogs load");
  Check(AskYesNoCancel(lib) == 7, "the scripted click on No answers 7");
  Check(norvik50_set_dialogs(NORVIK50_DIALOGS_HEADLESS, &err) == 0, "back to headless");
  Check(AskYesNoCancel(lib) == 10, "headless again");

  setenv("NORVIK50_QT_LIBRARY", "/nonexistent/libnorvik50_qt.so.0", 1);
  Check(norvik50_set_dialogs(NORVIK50_DIALOGS_QT, &err) == 53 && err.description != NULL,
        "a Qt library that cannot be loaded is 53");
  Check(AskYesNoCancel(lib) == 10, "the choice stays as it was");

  norvik50_error_clear(&err);
  norvik50_lib_free(lib);
  printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
