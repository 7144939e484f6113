#include "zuml/filters/corcoef.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/functions.h"
#include "zuml/algebra/statistics.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pointwise.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/detail/displacedruns.h"

/// The coefficients of its part from the sums.
class CTaskCorCoef final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<ZUMReal>* sums;      // of the image
  const ZUMImage<ZUMReal>* squares;   // of its squares
  const ZUMImage<ZUMReal>* products;  // with the pattern
  double n, mean, deviation;          // of the pattern; the deviation is not divided by n

  void Run() override {
    ZUMForEachRun(
        part,
        [this](double* r, const double* a, const double* b, const double* p, std::ptrdiff_t count) {
          for (std::ptrdiff_t i = 0; i < count; ++i) {
            const double m = a[i] / n;
            const double denominator = std::sqrt(b[i] - n * (m * m)) * deviation;
            const double value = (p[i] - mean * n * m) / denominator;
            r[i] = value >= -1.0 && value <= 1.0 ? value : -1.0;
          }
        },
        *result, *sums, *squares, *products);
  }
};

namespace {

// The image mirrored through the origin, whose sweep order is the reverse one.
ZUMImage<ZUMReal> Mirror(const ZUMImage<ZUMReal>& image) {
  const ZUMImage<ZUMReal> tight = ZUMCopy(image);
  const ZUMImage<ZUMReal> mirrored(ZUMRoDRef(image.RoD().Symmetry()), image.GetCSz(), nullptr);
  const auto* from = static_cast<const ZUMReal*>(tight.GetData());
  auto* to = static_cast<ZUMReal*>(mirrored.GetData());
  for (int c = 0; c < image.GetCSz(); ++c) {
    const std::ptrdiff_t begin = c * tight.GetChannelSz(), n = tight.GetChannelSz();
    std::reverse_copy(from + begin, from + begin + n, to + begin);
  }
  return mirrored;
}

}  // namespace

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMCorCoef(const ZUMImage<PixT>& image, const ZUMImage<PixT>& pattern) {
  // With the box of the pattern at the origin everything lies inside the image. The result gets its
  // own coordinates in the end.
  const zuml_detail::KernelFromOrigin<PixT> moved(pattern);
  const bool at_origin = zuml_detail::IsBox(pattern);
  const ZUMImage<PixT> near = at_origin ? moved.pixels : pattern;
  const ZUMBasePoint<int> begin = at_origin ? moved.begin : ZUMBasePoint<int>();
  const ZUMImage<ZUMReal> reals = image, mirrored = Mirror(near);
  const ZUMRoDRef& box = near;
  const double n = pattern.NPixels();
  const ZUMImage<ZUMReal> sums = ZUMSum<ZUMReal>(reals, box);
  const ZUMRoDRef rod = zuml_detail::MakeDirectRegion(image, pattern.Rect());
  const double mean = ZUMSum<ZUMReal>(mirrored) / n;
  const double deviation = std::sqrt(ZUMSum<ZUMReal>(ZUMSqr<ZUMReal>(mirrored - mean)));
  // A pattern without deviation has no coefficient. One of zeros would be no kernel besides.
  if (deviation == 0 && pattern.GetCSz() == 1) return ZUMImage<ZUMReal>(rod, sums.GetCSz(), -1.0);
  const ZUMImage<ZUMReal> squares = ZUMSum<ZUMReal>(ZUMSqr<ZUMReal>(reals), box);
  const ZUMImage<ZUMReal> products = ZUMConv(reals, mirrored);
  // The convolution adds the channels up, or gives each of the pattern; the sums keep the image's.
  zuml_detail::RequireSameChannels("operator-", products, sums);
  using Task = CTaskCorCoef;
  const ZUMRoDRef inside = zuml_detail::MoveSides(rod, 1, begin, 1, begin);
  const ZUMImage<ZUMReal> result =
      ZUMRunTasks<Task, ZUMReal>(inside, sums.GetCSz(), [&](Task& task) {
        task.sums = &sums;
        task.squares = &squares;
        task.products = &products;
        task.n = n;
        task.mean = mean;
        task.deviation = deviation;
      });
  ZUMRaster raster = result;
  raster.SetMP(rod.Begin());
  return ZUMImage<ZUMReal>(rod, raster);
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<ZUMReal> ZUMCorCoef(const ZUMImage<PIX>&, const ZUMImage<PIX>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
