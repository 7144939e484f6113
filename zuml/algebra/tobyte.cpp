#include "zuml/algebra/tobyte.h"

#include <concepts>
#include <cstdint>

#include "zuml/algebra/extrema.h"
#include "zuml/algebra/lut.h"
#include "zuml/core/detail/pointwise.h"
#include "zuml/core/pixelarith.h"

namespace {

struct OpImToByte {
  // In this order of operands a NaN takes the limit 0.
  template <class P>
  ZUMByte operator()(P v) const {
    const P low = v > P{0} ? v : P{0};
    return static_cast<ZUMByte>(low < P{255} ? low : P{255});
  }
  ZUMByte operator()(bool v) const { return v; }
  ZUMByte operator()(ZUMByte v) const { return v; }
  ZUMByte operator()(double v) const {
    const double low = v > 0 ? v : 0;
    return static_cast<ZUMByte>(static_cast<std::int32_t>(low < 255 ? low : 255));
  }
};

template <class P>
struct OpMaxcon {
  P min{};
  double factor = 0;

  ZUMByte operator()(P v) const {
    if constexpr (std::integral<P>) {
      // A difference that has wrapped is below the range in magnitude, so this fits in 32 bits.
      const ZUMLong difference = ZUMWrapSub<ZUMLong>(v, min);
      return ZUMLowBits<ZUMByte>(static_cast<std::int32_t>(difference * factor));
    } else {
      // Outside of this interval are only a NaN and infinities, which truncate to 0.
      const double scaled = static_cast<double>(v - min) * factor;
      return static_cast<ZUMByte>(
          static_cast<std::int32_t>(scaled >= 0 && scaled < 256 ? scaled : 0.0));
    }
  }
};

// max - min: in the pixel type for reals, as the pixels take theirs, and without wrapping for
// integers.
template <class P>
double MakeRange(P min, P max) {
  if constexpr (std::integral<P>) {
    return static_cast<double>(max) - static_cast<double>(min);
  } else {
    return static_cast<double>(max - min);
  }
}

// One ramp of a colour table: entries first to last of channel c, from `from` by `step` * i /
// (last - first).
void DrawRamp(const ZUMImage<ZUMByte>& table, int first, int last, int c, int from, int step) {
  for (int x = first; x <= last; ++x) {
    table(x, 0, 0, 0, c) = static_cast<ZUMByte>(from + step * (x - first) / (last - first));
  }
}

ZUMImage<ZUMByte> MakeThermographyTable() {
  const ZUMImage<ZUMByte> table(ZUMRect(0, 0, 0, 0, 255, 0, 0, 0), 3, ZUMByte{0});
  DrawRamp(table, 0, 42, 2, 64, 128);
  DrawRamp(table, 43, 85, 1, 0, 255);
  DrawRamp(table, 43, 85, 2, 192, -192);
  DrawRamp(table, 86, 127, 0, 0, 255);
  DrawRamp(table, 86, 127, 1, 255, 0);
  DrawRamp(table, 128, 255, 0, 255, 0);
  DrawRamp(table, 128, 170, 1, 255, -128);
  DrawRamp(table, 171, 212, 1, 128, -128);
  DrawRamp(table, 213, 255, 1, 0, 255);
  DrawRamp(table, 213, 255, 2, 0, 255);
  return table;
}

}  // namespace

template <class P>
class CTaskImToByte final : public zuml_detail::PointwiseI<ZUMByte, P, OpImToByte> {};
template <class P>
class CTaskMaxcon final : public zuml_detail::PointwiseI<ZUMByte, P, OpMaxcon<P>> {};

template <ZUMScalarPixel P>
ZUMImage<ZUMByte> ZUMImToByte(const ZUMImage<P>& image) {
  return zuml_detail::RunPointwiseI<CTaskImToByte<P>>(image);
}

template <ZUMOrderedPixel P>
ZUMImage<ZUMByte> ZUMMaxcon(const ZUMImage<P>& image) {
  P min, max;
  ZUMMinMax(image, min, max);
  const double factor = max == min ? 0.0 : 255.0 / MakeRange(min, max);
  return zuml_detail::RunPointwiseI<CTaskMaxcon<P>>(image, {min, factor});
}

ZUMImage<ZUMByte> ZUMThermography(const ZUMImage<ZUMByte>& image) {
  return ZUMLut(image, MakeThermographyTable(), 0);
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<ZUMByte> ZUMImToByte<PIX>(const ZUMImage<PIX>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<ZUMByte> ZUMMaxcon<PIX>(const ZUMImage<PIX>&);
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
