// Dilation by boxes and discs against the loops that one would write at once: for a box, a running
// fold along X and one along Y; for a disc, one step for each of its pixels.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/support/pairs.h"
#include "zuml/morphology/boxmorphology.h"
#include "zuml/morphology/mathmorph.h"

namespace {

template <class P>
ZUMImage<P> MakeNoise(int size) {
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, P());
  unsigned state = 1;
  P* pixels = &image(0);
  for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{size} * size; ++i) {
    state = state * 1664525u + 1013904223u;
    pixels[i] = static_cast<P>(state >> 24 & (std::is_same_v<P, ZUMBool> ? 1u : 255u));
  }
  return image;
}

ZUMImage<ZUMBool> MakeDisc(int radius) {
  ZUMImage<ZUMBool> disc(ZUMRect(-radius, -radius, 0, 0, radius, radius, 0, 0), 1, false);
  for (int y = -radius; y <= radius; ++y) {
    for (int x = -radius; x <= radius; ++x) disc(x, y) = x * x + y * y <= radius * radius;
  }
  return disc;
}

// The fold of the pixels at the offsets, line by line.
template <class P>
void FoldPlainly(const ZUMImage<P>& from, const ZUMImage<P>& to, int margin,
                 const std::vector<std::ptrdiff_t>& offsets, int threads) {
  const int size = from.RoDXSz(), n = size - 2 * margin;
  zuml_bench::ParallelLoop(threads, n, [&](long long first, long long last) {
    for (long long y = first; y < last; ++y) {
      const P* in = &from(margin, margin + static_cast<int>(y));
      P* __restrict out = &to(margin, margin + static_cast<int>(y));
      std::copy_n(in + offsets[0], n, out);
      for (const std::ptrdiff_t offset : offsets) {
        const P* __restrict moved = in + offset;
        for (int i = 0; i < n; ++i) out[i] = std::max(out[i], moved[i]);
      }
    }
  });
}

template <class P>
void RegisterBox(const char* type, int size, int side, int threads) {
  const ZUMImage<P> image = MakeNoise<P>(size);
  const ZUMImage<P> rows = ZUMCopy(image), out = ZUMCopy(image);
  const int r = side / 2;
  std::vector<std::ptrdiff_t> x, y;
  for (int k = -r; k <= r; ++k) x.push_back(k), y.push_back(std::ptrdiff_t{k} * size);
  const ZUMRect box(-r, -r, 0, 0, r, r, 0, 0);
  zuml_bench::Pair(
      "box " + std::to_string(side) + "/" + type + "/" + std::to_string(size) + "/" +
          std::to_string(threads) + "t",
      static_cast<double>(size) * size, threads,
      [=] { benchmark::DoNotOptimize(ZUMDilate(image, box).GetData()); },
      [=] {
        FoldPlainly(image, rows, r, x, threads);
        FoldPlainly(rows, out, r, y, threads);
      });
}

template <class P>
void RegisterDisc(const char* type, int size, int radius, int threads) {
  const ZUMImage<P> image = MakeNoise<P>(size), out = ZUMCopy(image);
  const ZUMImage<ZUMBool> disc = MakeDisc(radius);
  std::vector<std::ptrdiff_t> offsets;
  for (int y = -radius; y <= radius; ++y) {
    for (int x = -radius; x <= radius; ++x) {
      if (disc(x, y)) offsets.push_back(std::ptrdiff_t{y} * size + x);
    }
  }
  zuml_bench::Pair(
      "disc " + std::to_string(radius) + "/" + type + "/" + std::to_string(size) + "/" +
          std::to_string(threads) + "t",
      static_cast<double>(size) * size, threads,
      [=] { benchmark::DoNotOptimize(ZUMDilate(image, disc).GetData()); },
      [=] { FoldPlainly(image, out, radius, offsets, threads); });
}

template <class P>
void RegisterType(const char* type) {
  for (const int size : {1024, 4096}) {
    for (const int threads : {1, 2}) {
      for (const int side : {3, 15, 31}) RegisterBox<P>(type, size, side, threads);
      RegisterDisc<P>(type, size, 7, threads);
    }
  }
}

const bool registered = [] {
  RegisterType<ZUMByte>("byte");
  RegisterType<ZUMBool>("bool");
  RegisterBox<ZUMShort>("short", 1024, 15, 1);
  RegisterBox<ZUMReal>("double", 1024, 15, 1);
  RegisterDisc<ZUMReal>("double", 1024, 7, 1);
  return true;
}();

}  // namespace
