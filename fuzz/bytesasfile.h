/// What the fuzz programs share: the input as a file for readers that take a path, and a look at
/// every pixel of what was read, so that the sanitizers see bytes that nobody wrote.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/zumimage.h"
#include "zuml/core/zumsweep.h"

namespace zuml_fuzz {

/// A file in memory with the given bytes, made once and filled anew for each input.
inline const char* BytesAsFile(const std::uint8_t* bytes, std::size_t n) {
  static const int file = memfd_create("input", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(file);
  if (ftruncate(file, 0) != 0) return "";
  for (std::size_t at = 0; at < n;) {
    const ssize_t written = pwrite(file, bytes + at, n - at, static_cast<off_t>(at));
    if (written <= 0) return "";
    at += static_cast<std::size_t>(written);
  }
  return path.c_str();
}

/// Reads every byte of every pixel of the image.
inline void TouchPixels(const ZUMGenericImage& image) {
  unsigned char sum = 0;
  for (ZUMGenericSweep1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    const auto* byte = static_cast<const unsigned char*>(sweep.GetStart1());
    const auto* end = static_cast<const unsigned char*>(sweep.GetEnd1()) + image.GetPixSz();
    while (byte < end) sum = static_cast<unsigned char>(sum ^ *byte++);
  }
  asm volatile("" : : "r"(sum));  // the sum counts as used
}

/// Drops what readers report besides throwing. Called once.
inline void SilenceReports() {
  XQSetDiagnosticOutput([](const char*) {});
}

}  // namespace zuml_fuzz
