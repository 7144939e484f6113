#pragma once

#include <string>
#include <utility>

#include "zuml/core/xqdiagnostics.h"

namespace zuml_test {

/// Collects what goes to the diagnostics while the object lives.
class CaptureDiagnostics {
 public:
  CaptureDiagnostics()
      : earlier_(XQSetDiagnosticOutput([this](const char* text) { text_ += text; })) {}
  ~CaptureDiagnostics() { XQSetDiagnosticOutput(earlier_); }
  CaptureDiagnostics(const CaptureDiagnostics&) = delete;
  CaptureDiagnostics& operator=(const CaptureDiagnostics&) = delete;

  /// What has come since the last call.
  std::string Take() { return std::exchange(text_, std::string()); }

 private:
  std::string text_;
  XQTextOutput earlier_;
};

}  // namespace zuml_test
