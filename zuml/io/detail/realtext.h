#pragma once

#include <charconv>
#include <string>

namespace zuml_detail {

/// Appends a number as a stream does by default, with six significant digits, but always with a
/// decimal point: a file must not depend on the language that the application speaks.
inline void AppendReal(std::string& text, double value) {
  char digits[32];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
  text.append(digits, end);
}

}  // namespace zuml_detail
