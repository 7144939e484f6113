#pragma once

#include <functional>

#include "zuml/core/export.h"

/// Where a text goes. It is called by one thread at a time; what it throws is dropped, since a
/// report never stops the work that it reports on.
using XQTextOutput = std::function<void(const char* text)>;

/// Writes a text to standard output as it stands and flushes, or hands it to the application's own
/// output. All progress, timing and failure reports of the library go through here; no result
/// depends on them. A line brings its own end of line.
ZUML_API void XQDiagnostic(const char* text) noexcept;

/// The same, with the text made as printf would.
ZUML_API void XQDiagnosticF(const char* format, ...) noexcept __attribute__((format(printf, 1, 2)));

/// Redirects the diagnostics of all threads and returns the earlier output. An empty output stands
/// for standard output; to silence the library, give one that does nothing. Once this returns, the
/// earlier output has ended in every other thread and is not called again.
ZUML_API XQTextOutput XQSetDiagnosticOutput(XQTextOutput output);

/// Shows a text to the user. It never waits for an answer: the text and an end of line go to the
/// diagnostics unless the application shows messages in its own way. The second argument is not
/// used.
ZUML_API void XQMessageBox(const char* text, int = 0) noexcept;

/// The same, with the text made as printf would.
ZUML_API void XQMessageFBox(const char* format, ...) noexcept __attribute__((format(printf, 1, 2)));

/// Redirects message boxes, whose text then comes without an end of line, and returns the earlier
/// output. An empty output stands for the diagnostics. Otherwise as XQSetDiagnosticOutput.
ZUML_API XQTextOutput XQSetMessageBoxOutput(XQTextOutput output);

/// Reports a failed internal check in one line of the diagnostics and returns false; the caller
/// goes on after it. The text is that of the expression, "0" for a path that must not be reached;
/// the message may be null.
ZUML_API bool XQVerifyFun(const char* text, const char* file, int line,
                          const char* message) noexcept;

/// Reports a condition that does not hold with the caller's place in the source, and returns the
/// condition: `XQVerify(queue.GetLength() > 0, "length>0")`.
inline bool XQVerify(bool condition, const char* text, const char* file = __builtin_FILE(),
                     int line = __builtin_LINE()) noexcept {
  return condition || XQVerifyFun(text, file, line, nullptr);
}

/// A time in seconds that never runs backwards. Only differences mean something.
[[nodiscard]] ZUML_API double XQClock() noexcept;

/// A copy of a text that belongs to the caller, who gives it back with XQFree. Null stays null.
[[nodiscard]] ZUML_API char* XQString(const char* text);
