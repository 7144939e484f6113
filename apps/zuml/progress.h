/// What the program tells while it works, on standard error, which leaves standard output to
/// results.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <string>

#include "zuml/core/xqdiagnostics.h"

namespace zuml_app {

/// Names the step that a long job is at, if somebody watches.
class Progress {
 public:
  Progress() : start_(XQClock()), watched_(isatty(STDERR_FILENO) == 1) {}
  ~Progress() { Erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Step(const std::string& text) {
    Erase();
    if (!watched_ || XQClock() - start_ < kPatience) return;
    std::fprintf(stderr, "%s...", text.c_str());
    std::fflush(stderr);
    shown_ = true;
  }

 private:
  static constexpr double kPatience = 0.5;  // seconds

  void Erase() {
    if (shown_) std::fputs("\r\033[K", stderr);
    shown_ = false;
  }

  double start_;
  bool watched_;
  bool shown_ = false;
};

/// A remark that does not stop the job.
inline void Remark(const std::string& text) { std::fprintf(stderr, "zuml: %s\n", text.c_str()); }

}  // namespace zuml_app
