#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace zuml_test {

/// Whether f returns true in a forked process, within a minute.
template <class F>
bool SucceedsForked(F f) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    _exit(f() ? 0 : 1);
  }
  int status = -1;
  return waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace zuml_test
