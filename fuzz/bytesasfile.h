/// What the fuzz programs share: the input as a file for readers that take a path, and a look at
/// every pixel of what was read, so that the sanitizer sees those that are in no memory.
#pragma once

#include <sanitizer/asan_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
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

/// Has the address sanitizer look at every byte of every pixel, as reading them would, but at the
/// pace of its shadow memory.
inline void TouchPixels(const ZUMGenericImage& image) {
  for (ZUMGenericSweep1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    auto* const first = static_cast<unsigned char*>(sweep.GetStart1());
    auto* const end = static_cast<unsigned char*>(sweep.GetEnd1()) + image.GetPixSz();
    if (__asan_region_is_poisoned(first, static_cast<std::size_t>(end - first))) std::abort();
  }
}

/// Drops what readers report besides throwing. Called once.
inline void SilenceReports() {
  XQSetDiagnosticOutput([](const char*) {});
}

}  // namespace zuml_fuzz
