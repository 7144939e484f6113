#include "zuml/io/finite.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#include "zuml/core/foreachrun.h"

namespace {

// An IEEE 754 double without its sign: infinity has all bits of the exponent, and a NaN is above.
constexpr std::uint64_t kInfinity = std::uint64_t{0x7FF} << 52;

template <class Test>
bool HasPixel(const ZUMImage<ZUMReal>& image, Test test) {
  const auto misses = [test](const ZUMReal* pixels, std::ptrdiff_t n) {
    // No way out of the line, so that several pixels are tested at a time.
    bool hit = false;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      hit |= test(std::bit_cast<std::uint64_t>(pixels[i]) << 1 >> 1);
    }
    return !hit;
  };
  return !ZUMForEachRunWhile(image, misses, image);
}

}  // namespace

bool ZUMImageHasInf(const ZUMImage<ZUMReal>& image) {
  return HasPixel(image, [](std::uint64_t bits) { return bits == kInfinity; });
}

bool ZUMImageHasNaN(const ZUMImage<ZUMReal>& image) {
  return HasPixel(image, [](std::uint64_t bits) { return bits > kInfinity; });
}

bool ZUMImageIsFinite(const ZUMImage<ZUMReal>& image) {
  return !HasPixel(image, [](std::uint64_t bits) { return bits >= kInfinity; });
}
