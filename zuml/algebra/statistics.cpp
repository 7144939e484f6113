#include "zuml/algebra/statistics.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zuml/algebra/detail/runsums.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"

using zuml_detail::kExactIntegers;
using zuml_detail::SumRun;
using zuml_detail::SumSquaresRun;
using zuml_detail::ValueAt;

namespace {

// The number of pixels of all channels.
template <class P>
double CountOf(const ZUMImage<P>& image) {
  return static_cast<double>(image.NPixels()) * image.GetCSz();
}

// What pixels are summed in: 64 bits for integers, which no image fills, or the pixel type.
template <class P>
using SumType = std::conditional_t<ZUMDiscretePixel<P>, std::int64_t, P>;

// The loops over a run stay functions of their own: inlined into the sweep, whose calls spoil the
// vector registers, they would keep the sum in memory.

template <class P>
[[gnu::noinline]] SumType<P> AddRun(SumType<P> sum, const P* x, std::ptrdiff_t n) {
  if constexpr (ZUMDiscretePixel<P>) {
    return sum + SumRun(x, n);
  } else {
    for (std::ptrdiff_t i = 0; i < n; ++i) sum += x[i];
    return sum;
  }
}

// Adds the squares in `double` from left to right, or in any way that cannot differ.
template <class P>
[[gnu::noinline]] double AddSquares(double sum, const P* x, std::ptrdiff_t n) {
  if constexpr (sizeof(P) <= 2) {
    constexpr double kLargest = sizeof(P) == 1 ? 255.0 * 255.0 : 32768.0 * 32768.0;
    if (sum + static_cast<double>(n) * kLargest <= kExactIntegers) {
      return sum + static_cast<double>(SumSquaresRun(x, n));
    }
  }
  // Conversions go ahead of the chain of additions.
  constexpr std::ptrdiff_t kStretch = 256;
  double square[kStretch];
  for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
    const std::ptrdiff_t count = std::min(kStretch, n - begin);
    const P* from = x + begin;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      square[i] = static_cast<double>(from[i]) * static_cast<double>(from[i]);
    }
    for (std::ptrdiff_t i = 0; i < count; ++i) sum += square[i];
  }
  return sum;
}

// Both sums of a run. Of reals, in one loop: the two chains of additions run side by side.
template <class P>
void AddMoments(SumType<P>& s, double& q, const P* x, std::ptrdiff_t n) {
  s = AddRun(s, x, n);
  q = AddSquares(q, x, n);
}
template <>
[[gnu::noinline]] void AddMoments(double& s, double& q, const double* x, std::ptrdiff_t n) {
  double run_s = s, run_q = q;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    run_s += x[i];
    run_q += x[i] * x[i];
  }
  s = run_s;
  q = run_q;
}

template <class P>
SumType<P> SumPixels(const ZUMImage<P>& image) {
  SumType<P> sum{};
  ZUMForEachRun(
      image, [&sum](const P* x, std::ptrdiff_t n) { sum = AddRun(sum, x, n); }, image);
  return sum;
}

// What deviation and variance are made of.
struct Moments {
  double n, s, q;
};

template <class P>
Moments SweepMoments(const ZUMImage<P>& image) {
  SumType<P> s{};
  double q = 0;
  ZUMForEachRun(
      image, [&](const P* x, std::ptrdiff_t n) { AddMoments(s, q, x, n); }, image);
  if constexpr (std::integral<P>) s = ZUMLowBits<ZUMLong>(s);
  return {CountOf(image), static_cast<double>(s), q};
}

// 128 bits hold n times the squares of any block: n below 2^31 / 4 pixels of 32 bits, whose squares
// are below 2^62 each.
__extension__ using Wide = __int128;

template <class P>
Wide SumSquares(const P* x, std::ptrdiff_t n) {
  if constexpr (sizeof(P) <= 2) {
    return SumSquaresRun(x, n);
  } else {
    // Both halves of a square have room for more than 2^31 more like them.
    std::uint64_t low = 0, high = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const auto square = static_cast<std::uint64_t>(std::int64_t{x[i]} * x[i]);
      low += square & 0xFFFFFFFFu;
      high += square >> 32;
    }
    return (Wide{high} << 32) + low;
  }
}

// nQ - SS, which is never negative.
template <class P>
double SpreadWide(const ZUMImage<P>& image) {
  Wide n = 0, s = 0, q = 0;
  ZUMForEachRun(
      image,
      [&](const P* x, std::ptrdiff_t count) {
        n += count;
        s += AddRun(std::int64_t{0}, x, count);
        q += SumSquares(x, count);
      },
      image);
  return static_cast<double>(n * q - s * s);
}

}  // namespace

/// Adds up the channels of its part.
template <class OutT, class InT>
class CTaskSumChannels final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* image;

  void Run() override {
    const int channels = image->GetCSz();
    const std::ptrdiff_t channel = image->GetChannelSz();
    ZUMForEachRun(
        part,
        [=](OutT* r, const InT* x, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = static_cast<OutT>(ValueAt(x, i));
          for (int c = 1; c < channels; ++c) {
            const InT* xc = x + c * channel;
            for (std::ptrdiff_t i = 0; i < n; ++i) {
              r[i] = ZUMWrapAdd(r[i], static_cast<OutT>(ValueAt(xc, i)));
            }
          }
        },
        *result, *image);
  }
};

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> OutT ZUMSum(const ZUMImage<InT>& image) {
  if constexpr (ZUMDiscretePixel<InT>) {
    return ZUMLowBits<OutT>(SumPixels(image));
  } else {
    return SumPixels(image);
  }
}

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> ZUMImage<OutT> ZUMSumChannels(const ZUMImage<InT>& image) {
  if (image.GetCSz() == 0) return ZUMImage<OutT>(image, 1, OutT{});
  return ZUMRunTasks<CTaskSumChannels<OutT, InT>, OutT>(image, 1,
                                                        [&](auto& task) { task.image = &image; });
}

template <ZUMGreyPixel PixT>
ZUMReal ZUMMean(const ZUMImage<PixT>& image) {
  return static_cast<double>(SumPixels(image)) / CountOf(image);
}

template <ZUMGreyPixel PixT>
ZUMReal ZUMStdDeviation(const ZUMImage<PixT>& image) {
  const Moments m = SweepMoments(image);
  const double spread = m.n * m.q - m.s * m.s;
  // Written so that a NaN stays a NaN.
  return std::sqrt(spread < 0 ? 0.0 : spread) * (1 / m.n);
}

template <ZUMGreyPixel PixT>
ZUMReal ZUMVariance(const ZUMImage<PixT>& image) {
  const Moments m = SweepMoments(image);
  return (m.q - m.s * m.s / m.n) / m.n;
}

template <ZUMDiscretePixel PixT>
long long ZUMSumWide(const ZUMImage<PixT>& image) {
  return SumPixels(image);
}

template <ZUMIntegerPixel PixT>
ZUMReal ZUMStdDeviationWide(const ZUMImage<PixT>& image) {
  return std::sqrt(SpreadWide(image)) / CountOf(image);
}

template <ZUMIntegerPixel PixT>
ZUMReal ZUMVarianceWide(const ZUMImage<PixT>& image) {
  return SpreadWide(image) / (CountOf(image) * CountOf(image));
}

#define ZUML_INSTANTIATE_SUMS(OUT, IN)                        \
  template ZUML_API OUT ZUMSum<OUT, IN>(const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMSumChannels<OUT, IN>(const ZUMImage<IN>&);
#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_SUMS(ZUMLong, PIX)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
ZUML_INSTANTIATE_SUMS(ZUMReal, ZUMReal)
ZUML_INSTANTIATE_SUMS(ZUMComplex, ZUMComplex)
#undef ZUML_INSTANTIATE_SUMS

#define ZUML_INSTANTIATE(PIX)                                           \
  template ZUML_API ZUMReal ZUMMean<PIX>(const ZUMImage<PIX>&);         \
  template ZUML_API ZUMReal ZUMStdDeviation<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMReal ZUMVariance<PIX>(const ZUMImage<PIX>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) template ZUML_API long long ZUMSumWide<PIX>(const ZUMImage<PIX>&);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                               \
  template ZUML_API ZUMReal ZUMStdDeviationWide<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMReal ZUMVarianceWide<PIX>(const ZUMImage<PIX>&);
ZUML_INTEGER_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
