#include "zuml/core/xqdiagnostics.h"

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "zuml/core/detail/formattext.h"
#include "zuml/core/xqmemory.h"

namespace {

/// A lock that its holder may take again. Unlike the standard one, it can be let go of in the child
/// of a fork.
class ReentrantLock {
 public:
  void lock() {
    if (holder_.load(std::memory_order_relaxed) != std::this_thread::get_id()) {
      mutex_.lock();
      holder_.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ++depth_;
  }

  void unlock() {
    if (--depth_ == 0) {
      holder_.store(std::thread::id(), std::memory_order_relaxed);
      mutex_.unlock();
    }
  }

 private:
  std::mutex mutex_;
  std::atomic<std::thread::id> holder_{};
  int depth_ = 0;
};

/// What the application chose; null for the standard.
using ChosenOutput = std::shared_ptr<const XQTextOutput>;

/// The redirectable outputs. The lock is held while a text is written, so that texts of several
/// threads do not mix and an output that was replaced is no longer in use. It can be taken again
/// because an application's output may call the library, which may have something to report; it is
/// one lock since either output may write to the other.
struct Outputs {
  ReentrantLock lock;
  ChosenOutput diagnostics;
  ChosenOutput message_boxes;
};

/// Never destroyed: objects that end with the process may still report. A process that forks while
/// another thread reports would leave the lock locked in the child. The handlers are set up at
/// first use and so run before those of the locks that an application's output may need to end.
Outputs& GetOutputs() {
  static Outputs* const outputs = [] {
    Outputs* const made = new Outputs;
    pthread_atfork([] { GetOutputs().lock.lock(); }, [] { GetOutputs().lock.unlock(); },
                   [] { GetOutputs().lock.unlock(); });
    return made;
  }();
  return *outputs;
}

void Write(ChosenOutput Outputs::*output, const char* text) {
  Outputs& outputs = GetOutputs();
  const std::lock_guard<ReentrantLock> lock(outputs.lock);
  // The output may replace itself while it runs.
  if (const ChosenOutput chosen = outputs.*output) {
    (*chosen)(text);
  } else if (output == &Outputs::message_boxes) {
    XQDiagnosticF("%s\n", text);
  } else {
    std::fputs(text, stdout);
    std::fflush(stdout);
  }
}

XQTextOutput Replace(ChosenOutput Outputs::*output, XQTextOutput next) {
  ChosenOutput chosen;
  if (next) chosen = std::make_shared<const XQTextOutput>(std::move(next));
  {
    Outputs& outputs = GetOutputs();
    const std::lock_guard<ReentrantLock> lock(outputs.lock);
    (outputs.*output).swap(chosen);
  }
  return chosen ? *chosen : XQTextOutput();
}

}  // namespace

void XQDiagnostic(const char* text) noexcept {
  try {
    Write(&Outputs::diagnostics, text);
  } catch (...) {
    // There is nobody left to tell.
  }
}

void XQDiagnosticF(const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  try {
    Write(&Outputs::diagnostics, zuml_detail::FormatText(format, arguments).c_str());
  } catch (...) {
  }
  va_end(arguments);
}

XQTextOutput XQSetDiagnosticOutput(XQTextOutput output) {
  return Replace(&Outputs::diagnostics, std::move(output));
}

void XQMessageBox(const char* text, int) noexcept {
  try {
    Write(&Outputs::message_boxes, text);
  } catch (...) {
  }
}

void XQMessageFBox(const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  try {
    Write(&Outputs::message_boxes, zuml_detail::FormatText(format, arguments).c_str());
  } catch (...) {
  }
  va_end(arguments);
}

XQTextOutput XQSetMessageBoxOutput(XQTextOutput output) {
  return Replace(&Outputs::message_boxes, std::move(output));
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
