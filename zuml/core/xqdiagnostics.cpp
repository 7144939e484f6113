#include "zuml/core/xqdiagnostics.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "zuml/core/detail/formattext.h"
#include "zuml/core/xqmemory.h"

namespace {

/// One redirectable output. The lock is held while the text is written, so that texts of several
/// threads do not mix and an output that was replaced is no longer in use; it is recursive because
/// an application's output may call the library, which may have something to report.
class Output {
 public:
  explicit Output(void (*standard)(const char*)) : standard_(standard) {}

  void Write(const char* text) {
    const std::lock_guard<std::recursive_mutex> lock(mutex_);
    // The output may replace itself while it runs.
    const std::shared_ptr<const XQTextOutput> chosen = chosen_;
    if (chosen) {
      (*chosen)(text);
    } else {
      standard_(text);
    }
  }

  XQTextOutput Replace(XQTextOutput output) {
    std::shared_ptr<const XQTextOutput> chosen;
    if (output) chosen = std::make_shared<const XQTextOutput>(std::move(output));
    {
      const std::lock_guard<std::recursive_mutex> lock(mutex_);
      chosen_.swap(chosen);
    }
    return chosen ? *chosen : XQTextOutput();
  }

 private:
  std::recursive_mutex mutex_;
  std::shared_ptr<const XQTextOutput> chosen_;
  void (*const standard_)(const char*);
};

// The outputs are never destroyed: objects that end with the process may still report.

Output& GetDiagnosticOutput() {
  static Output* const output = new Output([](const char* text) {
    std::fputs(text, stdout);
    std::fflush(stdout);
  });
  return *output;
}

Output& GetMessageBoxOutput() {
  static Output* const output = new Output([](const char* text) { XQDiagnosticF("%s\n", text); });
  return *output;
}

}  // namespace

void XQDiagnostic(const char* text) noexcept {
  try {
    GetDiagnosticOutput().Write(text);
  } catch (...) {
    // There is nobody left to tell.
  }
}

void XQDiagnosticF(const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  try {
    GetDiagnosticOutput().Write(zuml_detail::FormatText(format, arguments).c_str());
  } catch (...) {
  }
  va_end(arguments);
}

XQTextOutput XQSetDiagnosticOutput(XQTextOutput output) {
  return GetDiagnosticOutput().Replace(std::move(output));
}

void XQMessageBox(const char* text, int) noexcept {
  try {
    GetMessageBoxOutput().Write(text);
  } catch (...) {
  }
}

void XQMessageFBox(const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  try {
    GetMessageBoxOutput().Write(zuml_detail::FormatText(format, arguments).c_str());
  } catch (...) {
  }
  va_end(arguments);
}

XQTextOutput XQSetMessageBoxOutput(XQTextOutput output) {
  return GetMessageBoxOutput().Replace(std::move(output));
}

bool XQVerifyFun(const char* text, const char* file, int line, const char* message) noexcept {
  // The folder is that of the machine that built the library and tells the reader nothing.
  const char* const slash = std::strrchr(file, '/');
  XQDiagnosticF("%s:%d: internal check failed: %s%s%s\n", slash ? slash + 1 : file, line, text,
                message ? ": " : "", message ? message : "");
  return false;
}

double XQClock() noexcept {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(time).count();
}

char* XQString(const char* text) {
  if (!text) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  return static_cast<char*>(std::memcpy(XQMAlloc(size), text, size));
}
