/// Cases that may crash, hang or take all memory: they run in a forked process, which is started
/// again behind the case that ended it.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "tests/support/sanitizers.h"

namespace zuml_everywhere {

class ForkedCases {
 public:
  /// Whether the case is to be run; from here on it is the one that a crash is put down to.
  bool Begin(const std::string& name) {
    if (++number_ < first_) return false;
    shared_->number = number_;
    std::snprintf(shared_->name, sizeof shared_->name, "%s", name.c_str());
    // Time of the processors, not of the clock: another process may keep this one waiting.
    const itimerval limit{{0, 0}, {kSeconds, 0}};
    setitimer(ITIMER_PROF, &limit, nullptr);
    return true;
  }

  /// A failure of the case begun last.
  void Fail(const std::string& text) {
    const std::string line = std::string(shared_->name) + ": " + text + "\n";
    if (write(pipe_, line.data(), line.size()) < 0) _exit(1);
  }

  /// Runs f(cases) until it has come through, and reports the failures.
  template <class F>
  static void Run(F f) {
    Shared* const shared = static_cast<Shared*>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    for (int first = 0, status = -1; status != 0; first = shared->number + 1) {
      int ends[2];
      ASSERT_EQ(pipe(ends), 0);
      const pid_t child = fork();
      ASSERT_GE(child, 0);
      if (child == 0) {
        close(ends[0]);
        RunChild(f, shared, first, ends[1]);
      }
      close(ends[1]);
      ReportLines(ends[0]);
      waitpid(child, &status, 0);
      if (status == 0) break;
      const bool late = WIFSIGNALED(status) && WTERMSIG(status) == SIGPROF;
      ADD_FAILURE() << shared->name << ": " << (late ? "does not end" : "crashes");
    }
    munmap(shared, sizeof(Shared));
  }

 private:
  static constexpr int kSeconds = kAddressSanitizer ? 60 : 20;
  static constexpr rlim_t kMemory = rlim_t{3} << 29;

  struct Shared {
    int number;
    char name[300];
  };

  ForkedCases(Shared* shared, int first, int write_end)
      : shared_(shared), first_(first), pipe_(write_end) {}

  template <class F>
  [[noreturn]] static void RunChild(F f, Shared* shared, int first, int write_end) {
    // The sanitizer's shadow alone is larger than any limit.
    const rlimit limit{kMemory, kMemory}, no_core{0, 0};
    if (!kAddressSanitizer) setrlimit(RLIMIT_AS, &limit);
    setrlimit(RLIMIT_CORE, &no_core);
    ForkedCases cases(shared, first, write_end);
    f(cases);
    _exit(0);
  }

  static void ReportLines(int read_end) {
    std::string text;
    char buffer[4096];
    for (ssize_t n = 0; (n = read(read_end, buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(n));
    }
    close(read_end);
    if (!text.empty()) ADD_FAILURE() << text;
  }

  Shared* shared_;
  int first_;
  int number_ = -1;
  int pipe_;
};

}  // namespace zuml_everywhere
