/// The commands of the program. Each throws JobError, or an exception of the library, on failure.
#pragma once

#include <string>

namespace zuml_app {

/// How the threshold between parts and background is found.
struct Threshold {
  enum class Kind { kOtsu, kValley, kMinVariance, kFixed };
  Kind kind = Kind::kOtsu;
  int value = 0;  // of kFixed
};

struct MeasureOptions {
  std::string image;
  Threshold threshold;
  bool dark = false;
  int open = 0, close = 0;  // reach of the squares, in pixels
  int connectivity = 8;
  int min_area = 1;
  int max_area = 2147483647;
  bool fill = false;
  std::string channel = "gray";
  int rows = 20;
  std::string labels, overlay, table;  // files to write; none if empty
};

/// Finds the parts of a picture and prints a table of the largest.
void Measure(const MeasureOptions& options);

/// Prints what a file holds.
void Info(const std::string& file);

/// Reads a file and writes it in the format of the other's extension.
void Convert(const std::string& in, const std::string& out);

}  // namespace zuml_app
