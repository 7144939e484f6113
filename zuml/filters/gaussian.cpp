#include "zuml/filters/gaussian.h"

#include <cmath>
#include <cstddef>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/detail/stagedrows.h"
#include "zuml/filters/gaussiankernels.h"
#include "zuml/filters/smoothing.h"

using zuml_detail::StagedRows;
using zuml_detail::Terms;

namespace {

// The pixels in `double`, in a raster of their own.
template <class P>
ZUMImage<ZUMReal> ToReal(const ZUMImage<P>& image) {
  if constexpr (std::same_as<P, ZUMReal>) {
    return ZUMCopy(image);
  } else {
    return static_cast<ZUMImage<ZUMReal>>(image);
  }
}

bool HasWeights(const ZUMImage<ZUMReal>& kernel) {
  return !ZUMForEachRunWhile(
      kernel,
      [](const ZUMReal* w, std::ptrdiff_t n) {
        return std::all_of(w, w + n, [](ZUMReal weight) { return weight == 0; });
      },
      kernel);
}

/// The plain way to filter: the region shrinks.
struct Plain {
  template <class P>
  static ZUMImage<ZUMReal> Filter(const ZUMImage<P>& image, const ZUMImage<ZUMReal>& kernel) {
    return ZUMConv(image, kernel);
  }

  template <class P>
  static ZUMImage<ZUMReal> Filter(const ZUMImage<P>& image, const ZUMImage<ZUMReal>& x,
                                  const ZUMImage<ZUMReal>& y) {
    // A kernel without a weight is refused, where a stage without one would give 0.
    if (!HasWeights(x) || !HasWeights(y)) return ZUMConv(ZUMConv(image, x), y);
    const ZUMImage<ZUMReal> none;
    return ZUMConv(image, ZUMKernel<ZUMReal>(x, y, none, none));
  }
};

/// The way that keeps the region.
struct Extended {
  template <class P>
  static ZUMImage<ZUMReal> Filter(const ZUMImage<P>& image, const ZUMImage<ZUMReal>& kernel) {
    return ZUMSmoothEx(image, kernel);
  }

  template <class P>
  static ZUMImage<ZUMReal> Filter(const ZUMImage<P>& image, const ZUMImage<ZUMReal>& x,
                                  const ZUMImage<ZUMReal>& y) {
    return ZUMSmoothEx(ZUMSmoothEx(image, x), y);
  }
};

// Filters along the axes that the image extends on. The kernels are made when they are needed.
template <class Way, class P, class MakeX, class MakeY>
ZUMImage<ZUMReal> FilterExtents(const ZUMImage<P>& image, ZUMReal sigma, const MakeX& make_x,
                                const MakeY& make_y) {
  if (sigma == 0) return ToReal(image);
  const ZUMRect box = image.Rect();
  if (zuml_detail::SizeOf(box, zuml_detail::kX) < 2) return Way::Filter(image, make_y());
  if (zuml_detail::SizeOf(box, zuml_detail::kY) < 2) return Way::Filter(image, make_x());
  const ZUMImage<ZUMReal> x = make_x();
  return Way::Filter(image, x, make_y());
}

// Filters along the axes whose sigma is not 0.
template <class Way, class P, class MakeX, class MakeY>
ZUMImage<ZUMReal> FilterAxes(const ZUMImage<P>& image, ZUMReal sigma_x, ZUMReal sigma_y,
                             const MakeX& make_x, const MakeY& make_y) {
  if (sigma_x == 0 && sigma_y == 0) return ToReal(image);
  if (sigma_x == 0) return Way::Filter(image, make_y());
  if (sigma_y == 0) return Way::Filter(image, make_x());
  const ZUMImage<ZUMReal> x = make_x();
  return Way::Filter(image, x, make_y());
}

// The steps p - k in the source's raster.
Terms<ZUMReal> MakeTerms(const ZUMRaster& source, const ZUMImage<ZUMReal>& kernel) {
  ZUMDisplacementValueArray<ZUMReal> steps;
  steps.SymmetricFromNonZeroPixels(source, kernel);
  Terms<ZUMReal> terms;
  for (const auto& step : steps) terms.Add(step.offset, step.value);
  return terms;
}

/// The terms of the two derivatives: each a stage along X and one along Y.
struct GradientTerms {
  Terms<ZUMReal> derive_x, smooth_y, smooth_x, derive_y;
};

/// Both derivatives of a part, made row by row.
template <class P>
class GradientTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<P>* source;
  const GradientTerms* terms;

  int Cost() const { return static_cast<int>(4 * terms->derive_x.offsets.size()); }

 protected:
  // Calls store(r, dx, dy, n) for each row of the first channel.
  template <class Store>
  void ForEachGradientRow(const Store& store) {
    const long long line = source->GetLineSz();
    const std::size_t rows = terms->smooth_y.offsets.size() + terms->derive_y.offsets.size();
    zuml_detail::ForEachStrip(
        part, static_cast<long long>(rows), sizeof(ZUMReal), [&](const ZUMRoDRef& strip) {
          const std::ptrdiff_t width = strip.RoDXSz();
          StagedRows<ZUMReal, P> along_x(terms->derive_x, terms->smooth_y, line, width);
          StagedRows<ZUMReal, P> along_y(terms->smooth_x, terms->derive_y, line, width);
          const auto dx = zuml_detail::MakeScratch<ZUMReal>(static_cast<std::size_t>(width));
          const auto dy = zuml_detail::MakeScratch<ZUMReal>(static_cast<std::size_t>(width));
          ZUMForEachRun(
              strip,
              [&](ZUMReal* r, const P* s, std::ptrdiff_t n) {
                along_x.Write(s, n, dx.get());
                along_y.Write(s, n, dy.get());
                store(r, dx.get(), dy.get(), n);
              },
              result->Channel(0), *source);
        });
  }
};

}  // namespace

template <class P>
class CTaskConvGrad final : public GradientTask<P> {
 public:
  void Run() override {
    const long long channel = this->result->GetChannelSz();
    this->ForEachGradientRow(
        [channel](ZUMReal* r, const ZUMReal* dx, const ZUMReal* dy, std::ptrdiff_t n) {
          ZUMCopyRun(r, dx, n);
          ZUMCopyRun(r + channel, dy, n);
        });
  }
};

template <class P>
class CTaskConvSqrAddSqrt final : public GradientTask<P> {
 public:
  void Run() override {
    this->ForEachGradientRow(
        [](ZUMReal* r, const ZUMReal* dx, const ZUMReal* dy, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = std::sqrt(dy[i] * dy[i] + dx[i] * dx[i]);
        });
  }
};

namespace {

template <class Task, class P>
ZUMImage<ZUMReal> RunGradient(const char* operation, const ZUMImage<P>& image, ZUMReal sigma,
                              int radius, int channels) {
  if (image.GetCSz() != 1) {
    throw XQException("%s: It only allows monochannel images", operation);
  }
  const ZUMImage<ZUMReal> derive_x = ZUMGaussianX_D(sigma, 1, radius);
  const ZUMImage<ZUMReal> smooth_x = ZUMGaussianX(sigma, radius);
  const ZUMImage<ZUMReal> derive_y = ZUMGaussianY_D(sigma, 1, radius);
  const ZUMImage<ZUMReal> smooth_y = ZUMGaussianY(sigma, radius);
  const GradientTerms terms{MakeTerms(image, derive_x), MakeTerms(image, smooth_y),
                            MakeTerms(image, smooth_x), MakeTerms(image, derive_y)};
  const int r = derive_x.EndX();
  const ZUMRoDRef rod = zuml_detail::MakeDirectRegion(image, ZUMRect(-r, -r, 0, 0, r, r, 0, 0));
  return ZUMRunTasks<Task, ZUMReal>(rod, channels, [&](Task& task) {
    task.source = &image;
    task.terms = &terms;
  });
}

}  // namespace

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianSmooth(const ZUMImage<PixT>& image, ZUMReal sigma, int radius) {
  return FilterExtents<Plain>(
      image, sigma, [&] { return ZUMGaussianX(sigma, radius); },
      [&] { return ZUMGaussianY(sigma, radius); });
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianSmoothEx(const ZUMImage<PixT>& image, ZUMReal sigma, int radius) {
  return FilterExtents<Extended>(
      image, sigma, [&] { return ZUMGaussianX(sigma, radius); },
      [&] { return ZUMGaussianY(sigma, radius); });
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianXYSmooth(const ZUMImage<PixT>& image, ZUMReal sigma_x, ZUMReal sigma_y,
                                      int radius_x, int radius_y) {
  return FilterAxes<Plain>(
      image, sigma_x, sigma_y, [&] { return ZUMGaussianX(sigma_x, radius_x); },
      [&] { return ZUMGaussianY(sigma_y, radius_y); });
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianXYSmoothEx(const ZUMImage<PixT>& image, ZUMReal sigma_x,
                                        ZUMReal sigma_y, int radius_x, int radius_y) {
  return FilterAxes<Extended>(
      image, sigma_x, sigma_y, [&] { return ZUMGaussianX(sigma_x, radius_x); },
      [&] { return ZUMGaussianY(sigma_y, radius_y); });
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianDerive(const ZUMImage<PixT>& image, ZUMReal sigma, int ndx, int ndy,
                                    int radius) {
  return FilterExtents<Plain>(
      image, sigma, [&] { return ZUMGaussianX_D(sigma, ndx, radius); },
      [&] { return ZUMGaussianY_D(sigma, ndy, radius); });
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianXYDerive(const ZUMImage<PixT>& image, ZUMReal sigma_x, ZUMReal sigma_y,
                                      int ndx, int ndy, int radius_x, int radius_y) {
  return FilterAxes<Plain>(
      image, sigma_x, sigma_y, [&] { return ZUMGaussianX_D(sigma_x, ndx, radius_x); },
      [&] { return ZUMGaussianY_D(sigma_y, ndy, radius_y); });
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianGrad(const ZUMImage<PixT>& image, ZUMReal sigma, int radius) {
  return RunGradient<CTaskConvGrad<PixT>>("ZUMGaussianGrad", image, sigma, radius, 2);
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMGaussianGradModule(const ZUMImage<PixT>& image, ZUMReal sigma, int radius) {
  return RunGradient<CTaskConvSqrAddSqrt<PixT>>("ZUMGaussianGradModule", image, sigma, radius, 1);
}

#define ZUML_INSTANTIATE(PIX)                                                                     \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianSmooth(const ZUMImage<PIX>&, ZUMReal, int);      \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianSmoothEx(const ZUMImage<PIX>&, ZUMReal, int);    \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianXYSmooth(const ZUMImage<PIX>&, ZUMReal, ZUMReal, \
                                                          int, int);                              \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianXYSmoothEx(const ZUMImage<PIX>&, ZUMReal,        \
                                                            ZUMReal, int, int);                   \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianDerive(const ZUMImage<PIX>&, ZUMReal, int, int,  \
                                                        int);                                     \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianXYDerive(const ZUMImage<PIX>&, ZUMReal, ZUMReal, \
                                                          int, int, int, int);                    \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianGrad(const ZUMImage<PIX>&, ZUMReal, int);        \
  template ZUML_API ZUMImage<ZUMReal> ZUMGaussianGradModule(const ZUMImage<PIX>&, ZUMReal, int);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
