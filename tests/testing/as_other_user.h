// Test support: running a check as an ordinary user. Refusals (a file
// that may not be read, a folder that may not be listed) are what other
// users meet, and root meets none of them; tests run as root reach them
// through a child process that has become "nobody".
#ifndef NORVIK50_TESTS_TESTING_AS_OTHER_USER_H_
#define NORVIK50_TESTS_TESTING_AS_OTHER_USER_H_

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace norvik50::testing {

// The result of `check` (0 to 254) run as an unprivileged user: in this
// process when it is not root, else in a child that became "nobody" (uid
// and gid 65534) first. -1 when the child could not become nobody or did
// not end normally. Everything `check` reaches must be open to others.
inline int AsOrdinaryUser(const std::function<int()>& check) {
  if (::geteuid() != 0) return check();
  const pid_t child = ::fork();
  if (child == 0) {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(255);
    ::_exit(check());
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) return -1;
  if (!WIFEXITED(status) || WEXITSTATUS(status) == 255) return -1;
  return WEXITSTATUS(status);
}

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_TESTING_AS_OTHER_USER_H_
