#include "zuml/filters/bilateral.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/displacedruns.h"
#include "zuml/filters/gaussiankernels.h"

namespace {

/// The pixels p - k around a pixel p: the distance from p from which their steps count, and for
/// each its weight.
template <class W>
struct Surroundings {
  zuml_detail::Distance distance;
  ZUMDisplacementValueArray<W> steps;

  Surroundings(const ZUMRaster& source, const ZUMImage<W>& kernel, const ZUMRoDRef& rod) {
    const zuml_detail::KernelFromOrigin<W> moved(kernel);
    distance = moved.GetDistance(-1);
    steps.SymmetricFromNonZeroPixels(source, zuml_detail::NeededPart(moved.pixels, rod));
  }
};

// The pixels of the image whose surroundings lie in it.
template <class W>
ZUMRoDRef MakeRegion(const ZUMRoDRef& image, const ZUMImage<W>& kernel) {
  return Intersection(zuml_detail::MakeMirroredRegion(image, kernel.Rect()), image);
}

/// The weights of differences. One 0 stands on either side for all that lie beyond.
template <class W>
class ValueWeights {
 public:
  explicit ValueWeights(const ZUMImage<W>& kernel)
      : begin_(kernel.BeginX()), end_(std::int64_t{kernel.EndX()} + 1), weights_{W(0)} {
    ZUMForEachRun(
        kernel, [this](const W* w, std::ptrdiff_t n) { weights_.insert(weights_.end(), w, w + n); },
        kernel);
    weights_.push_back(W(0));
  }

  /// Whether no difference of two bytes lies beyond.
  bool CoversBytes() const { return begin_ <= -255 && end_ > 255; }
  /// The weight of a difference inside.
  const W* Zero() const { return weights_.data() + (1 - begin_); }
  W operator[](std::int64_t difference) const {
    return weights_[static_cast<std::size_t>(std::clamp(difference, begin_ - 1, end_) - begin_ +
                                             1)];
  }

 private:
  std::int64_t begin_, end_;
  std::vector<W> weights_;
};

constexpr std::ptrdiff_t kBlock = 128;

// Adds the terms of one neighbour to both sums of n pixels.
template <class OutT, class S>
void AddTerms(OutT* numerators, OutT* divisors, const OutT* values, const S* s, OutT w,
              std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const OutT v = ZUMWrapMul(values[i], w);
    divisors[i] = ZUMWrapAdd(divisors[i], v);
    numerators[i] = ZUMWrapAdd(numerators[i], ZUMWrapMul(static_cast<OutT>(s[i]), v));
  }
}

}  // namespace

/// The filtered pixels of its part, a block of a row at a time.
template <class OutT, class InT>
class CTaskBilateralConv final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const Surroundings<OutT>* around;
  const ValueWeights<OutT>* values;

  int Cost() const { return static_cast<int>(2 * around->steps.GetLength()); }

  void Run() override {
    ZUMForEachPlacedRun(
        part,
        [this](const ZUMRunPlace& place, OutT* r, const InT* x, std::ptrdiff_t n) {
          const InT* const from = zuml_detail::PixelAt(*source, place, around->distance);
          for (std::ptrdiff_t i = 0; i < n; i += kBlock) {
            WriteBlock(r + i, zuml_detail::StoredPixels(x) + i, zuml_detail::StoredPixels(from) + i,
                       std::min(kBlock, n - i));
          }
        },
        *result, *source);
  }

 private:
  using S = zuml_detail::Stored<InT>;

  void WriteBlock(OutT* r, const S* x, const S* from, std::ptrdiff_t n) const {
    OutT numerators[kBlock] = {}, divisors[kBlock] = {}, weights[kBlock];
    for (const auto& step : around->steps) {
      const S* const s = from + step.offset;
      if constexpr (std::same_as<InT, ZUMBool>) {
        S flags[kBlock];
        for (std::ptrdiff_t i = 0; i < n; ++i) flags[i] = s[i] != 0;
        for (std::ptrdiff_t i = 0; i < n; ++i) weights[i] = (*values)[(x[i] != 0) - flags[i]];
        AddTerms(numerators, divisors, weights, flags, step.value, n);
      } else {
        if (std::same_as<InT, ZUMByte> && values->CoversBytes()) {
          const OutT* const zero = values->Zero();
          for (std::ptrdiff_t i = 0; i < n; ++i) weights[i] = zero[x[i] - s[i]];
        } else {
          for (std::ptrdiff_t i = 0; i < n; ++i) weights[i] = (*values)[std::int64_t{x[i]} - s[i]];
        }
        AddTerms(numerators, divisors, weights, s, step.value, n);
      }
    }
    for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = ZUMWrapDiv(numerators[i], divisors[i]);
  }
};

/// The filtered real pixels of its part.
class CTaskBilateralReal final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<ZUMReal>* source;
  const Surroundings<ZUMReal>* around;
  double sigma;

  int Cost() const { return static_cast<int>(16 * around->steps.GetLength()); }

  void Run() override {
    const double width = 2 * sigma * sigma, peak = 0.3989422804014327 / sigma;
    ZUMForEachPlacedRun(
        part,
        [=, this](const ZUMRunPlace& place, ZUMReal* r, const ZUMReal* x, std::ptrdiff_t n) {
          const ZUMReal* const from = zuml_detail::PixelAt(*source, place, around->distance);
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            double numerator = 0, divisor = 0;
            for (const auto& step : around->steps) {
              const double s = from[i + step.offset], d = x[i] - s;
              const double g = width > 0 ? std::exp(-(d * d) / width) * peak * step.value
                                         : (d == 0 ? step.value : 0);
              numerator += g * s;
              divisor += g;
            }
            r[i] = numerator / divisor;
          }
        },
        *result, *source);
  }
};

template <ZUMGreyPixel PixT>
ZUMImage<ZUMReal> ZUMBilateral(const ZUMImage<PixT>& image, double sigma_space, double sigma_value,
                               int radius) {
  const ZUMImage<ZUMReal> spatial = ZUMGaussian2D(sigma_space, radius);
  if constexpr (std::same_as<PixT, ZUMReal>) {
    if (!(sigma_value >= 0)) throw XQException("ZUMGaussianX: Sigma negative not allowed");
    const ZUMRoDRef rod = MakeRegion(image, spatial);
    const Surroundings<ZUMReal> around(image, spatial, rod);
    using Task = CTaskBilateralReal;
    return ZUMRunTasks<Task, ZUMReal>(rod, image.GetCSz(), [&](Task& task) {
      task.source = &image;
      task.around = &around;
      task.sigma = sigma_value;
    });
  } else {
    return ZUMBilateralConv(image, spatial,
                            ZUMGaussianX(sigma_value, std::same_as<PixT, ZUMByte> ? 255 : 0));
  }
}

template <class OutT, class InT>
requires ZUMKernelCoefficient<OutT> && ZUMDiscretePixel<InT> ZUMImage<OutT> ZUMBilateralConv(
    const ZUMImage<InT>& image, const ZUMImage<OutT>& spatial, const ZUMImage<OutT>& value) {
  if (value.GetCSz() != 1) {
    throw XQException("ZUMBilateralConv: it not allows  multichanel kernels");
  }
  ZUMRect across = value.Rect();
  across.begin.x = across.end.x = 0;
  if (!zuml_detail::IsBox(value) || across != ZUMRect()) {
    throw XQException("ZUMBilateralConv: Dimensions of value kernel not allowed");
  }
  const ZUMRoDRef rod = MakeRegion(image, spatial);
  const Surroundings<OutT> around(image, spatial, rod);
  const ValueWeights<OutT> values(value);
  using Task = CTaskBilateralConv<OutT, InT>;
  return ZUMRunTasks<Task, OutT>(rod, image.GetCSz(), [&](Task& task) {
    task.source = &image;
    task.around = &around;
    task.values = &values;
  });
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<ZUMReal> ZUMBilateral(const ZUMImage<PIX>&, double, double, int);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(IN)                                                    \
  template ZUML_API ZUMImage<ZUMLong> ZUMBilateralConv(                         \
      const ZUMImage<IN>&, const ZUMImage<ZUMLong>&, const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMBilateralConv(                         \
      const ZUMImage<IN>&, const ZUMImage<ZUMReal>&, const ZUMImage<ZUMReal>&);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
