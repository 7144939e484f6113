#include "zuml/io/finite.h"

#include <bit>
#include <cstdint>

#include "zuml/core/zumsweep.h"

namespace {

// An IEEE 754 double without its sign: infinity has all bits of the exponent, and a NaN is above.
constexpr std::uint64_t kInfinity = std::uint64_t{0x7FF} << 52;

template <class Test>
bool HasPixel(const ZUMImage<ZUMReal>& image, Test test) {
  for (ZUMGenericSweep1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    const auto* pixel = static_cast<const ZUMReal*>(sweep.GetStart1());
    const auto* const last = static_cast<const ZUMReal*>(sweep.GetEnd1());
    // No way out of the line, so that several pixels are tested at a time.
    bool hit = false;
    for (; pixel <= last; ++pixel) hit |= test(std::bit_cast<std::uint64_t>(*pixel) << 1 >> 1);
    if (hit) return true;
  }
  return false;
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
