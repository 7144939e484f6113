/// Pictures that labellings are measured on.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "zuml/core/zumimage.h"

namespace zuml_bench {

struct Picture {
  std::string name;
  ZUMImage<ZUMBool> image;
};

/// Text: rows of letters made of strokes. Blobs: large smooth spots. Noise: every second pixel at
/// random. Grains: one pixel in ten.
inline std::vector<Picture> MakePictures(int size) {
  std::uint32_t state = 12345;
  const auto next = [&state] { return (state = state * 1664525u + 1013904223u) >> 8; };
  const ZUMRect box(0, 0, 0, 0, size - 1, size - 1, 0, 0);
  const ZUMImage<ZUMBool> text(box, 1, false), blobs(box, 1, false), noise(box, 1, false),
      grains(box, 1, false);
  for (int y = 4; y + 20 < size; y += 24) {
    for (int x = 4; x + 12 < size; x += 14) {
      for (int stroke = next() % 5; stroke > 0; --stroke) {  // some places stay blank
        const bool upright = next() % 2 != 0;
        const int at = static_cast<int>(next() % 9);
        for (int i = 0; i < (upright ? 16 : 10); ++i) {
          for (int thick = 0; thick < 2; ++thick) {
            upright ? text(x + at + thick, y + i) = true : text(x + i, y + at + thick) = true;
          }
        }
      }
    }
  }
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const double v =
          std::sin(x * 0.05 + std::cos(y * 0.031) * 2) + std::sin(y * 0.043 + x * 0.011);
      blobs(x, y) = v > 0.3;
      noise(x, y) = next() % 2 != 0;
      grains(x, y) = next() % 10 == 0;
    }
  }
  return {{"text", text}, {"blobs", blobs}, {"noise", noise}, {"grains", grains}};
}

}  // namespace zuml_bench
