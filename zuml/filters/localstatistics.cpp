#include "zuml/filters/localstatistics.h"

#include <cmath>
#include <cstddef>
#include <type_traits>

#include "zuml/algebra/functions.h"
#include "zuml/algebra/statistics.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"

namespace {

enum class Measure { kMean, kStdDeviation, kVariance };

// One pixel from its sum, its sum of squares and the total weight.
template <Measure kMeasure>
double MeasureOf(double a, double b, double n) {
  if constexpr (kMeasure == Measure::kMean) {
    return a / n;
  } else if constexpr (kMeasure == Measure::kStdDeviation) {
    const double d = n * b - a * a;
    return std::sqrt(d > 0 ? d : 0) / n;
  } else {
    return (b - a * a / n) / n;
  }
}

}  // namespace

/// The measure of its part from the images of sums.
template <class OutT, Measure kMeasure>
class CTaskLocalStatistics final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<OutT>* sums;
  const ZUMImage<OutT>* squares;
  double n;

  void Run() override {
    ZUMForEachRun(
        part,
        [this](double* r, const OutT* a, const OutT* b, std::ptrdiff_t count) {
          for (std::ptrdiff_t i = 0; i < count; ++i) {
            r[i] = MeasureOf<kMeasure>(static_cast<double>(a[i]), static_cast<double>(b[i]), n);
          }
        },
        *result, *sums, *squares);
  }
};

namespace {

// The sums of an image under its surroundings, and the total weight of these.
template <class PixT>
auto SumUnder(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& mask) {
  return ZUMSum<std::conditional_t<std::is_integral_v<PixT>, ZUMLong, ZUMReal>>(image, mask);
}
template <class PixT, class Weights>
auto SumUnder(const ZUMImage<PixT>& image, const Weights& weights) {
  return ZUMConv(image, weights);
}
double TotalOf(const ZUMImage<ZUMBool>& mask) { return ZUMSum<ZUMLong>(mask); }
template <class W>
double TotalOf(const ZUMImage<W>& weights) {
  return static_cast<double>(ZUMSum<W>(weights));
}
template <class W>
double TotalOf(const ZUMKernel<W>& kernel) {
  return static_cast<double>(kernel.Sum(0));
}

// The name in the message follows the surroundings too.
template <Measure kMeasure, class Weights>
const char* NameOf() {
  if (kMeasure == Measure::kMean) return "ZUMMean";
  const bool integers =
      std::is_same_v<Weights, ZUMImage<ZUMBool>> || std::is_same_v<Weights, ZUMImage<ZUMLong>>;
  return kMeasure == Measure::kStdDeviation && integers ? "ZUMStdDeviation" : "ZUMVariance";
}

template <Measure kMeasure, class PixT, class Weights>
ZUMImage<ZUMReal> RunMeasure(const ZUMImage<PixT>& image, const Weights& weights) {
  if (weights.GetCSz() > 1 || weights.GetCSz() == 0) {
    throw XQException("%s only allows a mask with one channel", NameOf<kMeasure, Weights>());
  }
  using Square = std::conditional_t<std::is_integral_v<PixT>, ZUMLong, ZUMReal>;
  const auto sums = SumUnder(image, weights);
  const auto squares = kMeasure == Measure::kMean ? sums : SumUnder(ZUMSqr<Square>(image), weights);
  const double n = TotalOf(weights);
  using Task = CTaskLocalStatistics<typename decltype(sums)::PixelType, kMeasure>;
  return ZUMRunTasks<Task, ZUMReal>(sums, sums.GetCSz(), [&](Task& task) {
    task.sums = &sums;
    task.squares = &squares;
    task.n = n;
  });
}

}  // namespace

#define ZUML_DEFINE(NAME, CONCEPT, WEIGHTS)                                          \
  template <CONCEPT PixT>                                                            \
  ZUMImage<ZUMReal> ZUM##NAME(const ZUMImage<PixT>& image, const WEIGHTS& weights) { \
    return RunMeasure<Measure::k##NAME>(image, weights);                             \
  }
#define ZUML_DEFINE_ALL(NAME)                             \
  ZUML_DEFINE(NAME, ZUMScalarPixel, ZUMImage<ZUMBool>)    \
  ZUML_DEFINE(NAME, ZUMDiscretePixel, ZUMImage<ZUMLong>)  \
  ZUML_DEFINE(NAME, ZUMScalarPixel, ZUMImage<ZUMReal>)    \
  ZUML_DEFINE(NAME, ZUMDiscretePixel, ZUMKernel<ZUMLong>) \
  ZUML_DEFINE(NAME, ZUMScalarPixel, ZUMKernel<ZUMReal>)
ZUML_DEFINE_ALL(Mean)
ZUML_DEFINE_ALL(StdDeviation)
ZUML_DEFINE_ALL(Variance)
#undef ZUML_DEFINE_ALL
#undef ZUML_DEFINE

#define ZUML_INSTANTIATE(PIX, WEIGHTS)                                                       \
  template ZUML_API ZUMImage<ZUMReal> ZUMMean(const ZUMImage<PIX>&, const WEIGHTS&);         \
  template ZUML_API ZUMImage<ZUMReal> ZUMStdDeviation(const ZUMImage<PIX>&, const WEIGHTS&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMVariance(const ZUMImage<PIX>&, const WEIGHTS&);
#define ZUML_INSTANTIATE_ANY(PIX)          \
  ZUML_INSTANTIATE(PIX, ZUMImage<ZUMBool>) \
  ZUML_INSTANTIATE(PIX, ZUMImage<ZUMReal>) \
  ZUML_INSTANTIATE(PIX, ZUMKernel<ZUMReal>)
#define ZUML_INSTANTIATE_DISCRETE(PIX)     \
  ZUML_INSTANTIATE(PIX, ZUMImage<ZUMLong>) \
  ZUML_INSTANTIATE(PIX, ZUMKernel<ZUMLong>)
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE_ANY)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_DISCRETE)
#undef ZUML_INSTANTIATE_DISCRETE
#undef ZUML_INSTANTIATE_ANY
#undef ZUML_INSTANTIATE
