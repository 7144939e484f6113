#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

namespace zuml_detail {

/// The text that printf would write, of any length. A format that the C library refuses is returned
/// as it stands: a reader learns more from it than from an empty text.
__attribute__((format(printf, 1, 0))) inline std::string FormatText(const char* format,
                                                                    std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (length < 0) return format;
  std::string text(static_cast<std::size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

}  // namespace zuml_detail
