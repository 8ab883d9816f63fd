// Test support: the number of the norvik50::Error a call raises.
#ifndef NORVIK50_TESTS_TESTING_ERROR_NUMBER_H_
#define NORVIK50_TESTS_TESTING_ERROR_NUMBER_H_

#include "norvik50/error.h"

namespace norvik50::testing {

// Runs `fn` and returns the number of the Error it raised, or 0 when it
// raised none.
template <typename Fn>
int ErrorOf(Fn&& fn) {
  try {
    fn();
  } catch (const Error& e) {
    return e.number();
  }
  return 0;
}

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_TESTING_ERROR_NUMBER_H_
