#include "zuml/morphology/directionalmorphology.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

#include "zuml/algebra/extrema.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/startvalue.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Direction;
using zuml_detail::Step;
using zuml_detail::StepMap;

namespace {

// One pixel of the element.
struct SectorPixel {
  std::ptrdiff_t offset;
  ZUMLong label;
  std::size_t sector;  // among those that have pixels
  double distance;
  float ux, uy;  // towards the element's origin
};

// The element's pixels by sector, in sweep order within a sector. The sectors lie in a circle of
// `count`, of which only those with pixels are kept: labels may be large.
struct Sectors {
  std::vector<SectorPixel> pixels;
  std::vector<std::int64_t> places;  // of the sectors with pixels, in the circle
  std::int64_t count;

  Sectors(const ZUMRaster& target, const ZUMImage<ZUMLong>& element, const StepMap& map)
      : count(std::max(ZUMMax(element), 0)) {
    zuml_detail::ForEachStep(
        element, map, [&](const Step& step, const ZUMBasePoint<int>& k, ZUMLong label) {
          if (label <= 0) return;
          const double x = k.x, y = k.y, z = k.z, t = k.t;
          const float r = std::sqrt(static_cast<float>(x * x + y * y));
          pixels.push_back({target.Displacement(step, 0), label, 0,
                            std::sqrt(x * x + y * y + z * z + t * t), static_cast<float>(-x) / r,
                            static_cast<float>(-y) / r});
        });
    std::stable_sort(pixels.begin(), pixels.end(),
                     [](const SectorPixel& a, const SectorPixel& b) { return a.label < b.label; });
    for (SectorPixel& pixel : pixels) {
      if (places.empty() || places.back() != pixel.label - 1) places.push_back(pixel.label - 1);
      pixel.sector = places.size() - 1;
    }
  }
};

// The value at `rank` in ascending order, by Hoare's selection; reorders the values. Every step of
// the inner loops tests its bound, so that NaNs cannot lead out of the array.
double Select(double* values, std::ptrdiff_t n, std::ptrdiff_t rank) {
  std::ptrdiff_t low = 0, high = n - 1;
  while (low < high) {
    const double a = values[low], b = values[low + (high - low) / 2], c = values[high];
    const double pivot = std::max(std::min(a, b), std::min(std::max(a, b), c));
    std::ptrdiff_t i = low, j = high;
    while (i <= j) {
      while (i < high && values[i] < pivot) ++i;
      while (j > low && values[j] > pivot) --j;
      if (i <= j) std::swap(values[i++], values[j--]);
    }
    if (rank <= j) {
      high = j;
    } else if (rank >= i) {
      low = i;
    } else {
      break;
    }
  }
  return values[rank];
}

// The median of the values and of so many zeros.
double SelectMedian(std::vector<double>& values, std::int64_t zeros) {
  const auto n = static_cast<std::ptrdiff_t>(values.size());
  const std::int64_t rank = (n + zeros - 1) / 2;
  const auto below =
      zeros == 0 ? n : std::count_if(values.begin(), values.end(), [](double v) { return v < 0; });
  if (rank < below) return Select(values.data(), n, rank);
  if (rank < below + zeros) return 0;
  return Select(values.data(), n, rank - zeros);
}

// The sectors around one of them: those with pixels are a part of their list, which may go on at
// its beginning.
struct Window {
  std::size_t begin = 0, size = 0;
  std::int64_t zeros = 0;  // sectors without a pixel
};

// What the windows of a half width hold. A window longer than the circle goes around it `turns`
// times, and over a part of it once more.
struct Windows {
  std::int64_t half;
  std::int64_t turns;
  std::vector<Window> parts;

  Windows(const Sectors& sectors, int half_window)
      : half(half_window), turns((2 * half + 1) / std::max<std::int64_t>(sectors.count, 1)) {
    const auto& places = sectors.places;
    const std::int64_t count = sectors.count, length = 2 * half + 1 - turns * count;
    for (const std::int64_t place : places) {
      const std::int64_t first = (place - half % count + count) % count;
      // The number of sectors with pixels below a place; the circle goes on behind its end.
      const auto rank = [&](std::int64_t p) {
        const auto end = std::lower_bound(places.begin(), places.end(), p < count ? p : p - count);
        return (end - places.begin()) + (p < count ? 0 : std::ssize(places));
      };
      Window part;
      part.begin = static_cast<std::size_t>(rank(first));
      part.size = static_cast<std::size_t>(rank(first + length)) - part.begin;
      part.zeros = length - static_cast<std::int64_t>(part.size);
      parts.push_back(part);
    }
  }
};

}  // namespace

class CTaskDilateWMAcum final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<ZUMReal>* image;
  const Sectors* sectors;
  const Windows* windows;
  double gain;

  int Cost() const { return static_cast<int>(sectors->pixels.size() + 8 * sectors->places.size()); }

  void Run() override {
    const std::size_t n = sectors->places.size();
    maxima_.resize(n);
    distances_.resize(n);
    ZUMForEachRun(
        part,
        [&](ZUMReal* out, const ZUMReal* in, std::ptrdiff_t pixels) {
          for (std::ptrdiff_t i = 0; i < pixels; ++i) out[i] = n == 0 ? 0 : Accumulate(in + i);
        },
        *result, *image);
  }

 private:
  double Accumulate(const ZUMReal* pixel) {
    const auto& list = sectors->pixels;
    for (std::size_t k = 0; k < list.size(); ++k) {
      const std::size_t s = list[k].sector;
      const double value = pixel[list[k].offset];
      if (k == 0 || list[k - 1].sector != s || value > maxima_[s]) {
        maxima_[s] = value;
        distances_[s] = list[k].distance;
      }
    }
    if (windows->turns > 0) SortDistances();
    quotients_.clear();
    for (std::size_t s = 0; s < maxima_.size(); ++s) {
      const double median = FindMedian(windows->parts[s]);
      quotients_.push_back(maxima_[s] /
                           (std::abs(distances_[s] - median) / std::max(median, 1.0) * gain + 1.0));
    }
    return SelectMedian(quotients_, sectors->count - std::ssize(quotients_));
  }

  // The median of the distances in a window; that of a sector without a pixel is 0.
  double FindMedian(const Window& window) {
    const std::size_t n = distances_.size();
    if (windows->turns == 0) {
      window_.resize(window.size);
      for (std::size_t j = 0, s = window.begin % n; j < window.size;
           ++j, s = s + 1 < n ? s + 1 : 0) {
        window_[j] = distances_[s];
      }
      return SelectMedian(window_, window.zeros);
    }
    // All distances `turns` times, and those of the part once more, in ascending order.
    const std::int64_t empty = sectors->count - std::ssize(distances_);
    std::int64_t seen = windows->turns * empty + window.zeros;
    if (seen > windows->half) return 0;
    for (const std::size_t s : order_) {
      seen += windows->turns + ((s + n - window.begin % n) % n < window.size ? 1 : 0);
      if (seen > windows->half) return distances_[s];
    }
    return 0;
  }

  void SortDistances() {
    order_.resize(distances_.size());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::sort(order_.begin(), order_.end(),
              [&](std::size_t a, std::size_t b) { return distances_[a] < distances_[b]; });
  }

  std::vector<double> maxima_, distances_, window_, quotients_;
  std::vector<std::size_t> order_;
};

class CTaskDilateGradAcum final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<ZUMReal>* gradient;
  const Sectors* sectors;

  int Cost() const { return 2 * static_cast<int>(sectors->pixels.size()); }

  void Run() override {
    const double most = static_cast<double>(std::max<std::int64_t>(sectors->count, 1));
    ZUMForEachRun(
        part,
        [&](ZUMReal* out, const ZUMReal* gx, const ZUMReal* gy, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            out[i] = SumProjections(gx + i, gy + i) / most;
          }
        },
        *result, gradient->Channel(0), gradient->Channel(1));
  }

 private:
  double SumProjections(const ZUMReal* gx, const ZUMReal* gy) const {
    double sum = 0, greatest = 0;
    std::size_t sector = 0;
    for (const SectorPixel& k : sectors->pixels) {
      if (k.sector != sector) {
        sum += greatest;
        greatest = 0;
        sector = k.sector;
      }
      const double projection = gy[k.offset] * k.uy + gx[k.offset] * k.ux;
      if (projection > greatest) greatest = projection;
    }
    return sum + greatest;
  }
};

namespace {

ZUMImage<ZUMReal> AccumulateMaxima(const char* operation, const ZUMImage<ZUMReal>& image,
                                   const ZUMImage<ZUMLong>& element, int half_window, double gain) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  zuml_detail::RequirePixels<ZUMDisplacementValueArray<ZUMLong>>(element, Direction::kMirrored);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kMirrored);
  return zuml_detail::ComputeAtOrigin<ZUMReal>(
      image, rod, image.GetCSz(), [&](const ZUMImage<ZUMReal>& source, const ZUMRoDRef& box) {
        const Sectors sectors(source, element, StepMap(image, rod, Direction::kMirrored));
        const Windows windows(sectors, std::max(half_window, 0));
        return ZUMRunTasks<CTaskDilateWMAcum, ZUMReal>(box, image.GetCSz(),
                                                       [&](CTaskDilateWMAcum& task) {
                                                         task.image = &source;
                                                         task.sectors = &sectors;
                                                         task.windows = &windows;
                                                         task.gain = gain;
                                                       });
      });
}

}  // namespace

ZUMImage<ZUMReal> ZUMDilateWMAcum(const ZUMImage<ZUMReal>& image, const ZUMImage<ZUMLong>& element,
                                  int half_window, double gain) {
  return AccumulateMaxima("ZUMDilateWMAcum", image, element, half_window, gain);
}

ZUMImage<ZUMReal> ZUMDilateWMAcum2(const ZUMImage<ZUMReal>& image, const ZUMImage<ZUMLong>& element,
                                   int half_window) {
  return AccumulateMaxima("ZUMDilateWMAcum2", image, element, half_window, 1.0);
}

// The result's region is a mirrored one and the element is read directly, so that one that is not
// symmetric reads outside the gradient. A zero gradient there points nowhere.
ZUMImage<ZUMReal> ZUMDilateGradAcum(const ZUMImage<ZUMReal>& gradient,
                                    const ZUMImage<ZUMLong>& element) {
  zuml_detail::RequireSingleChannelElement("ZUMDilateGradAcum", element);
  const ZUMRect extent = element.Rect();
  if (gradient.GetCSz() != 2 || zuml_detail::SizeOf(extent, zuml_detail::kZ) != 1 ||
      zuml_detail::SizeOf(extent, zuml_detail::kT) != 1) {
    throw XQException("ZUMDilateGradAcum: it only allows two channels images");
  }
  zuml_detail::RequirePixels<ZUMDisplacementValueArray<ZUMLong>>(element, Direction::kDirect);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(gradient, extent, Direction::kMirrored);
  return zuml_detail::ComputeAtOrigin<ZUMReal>(
      gradient, rod, 1, [&](const ZUMImage<ZUMReal>& source, const ZUMRoDRef& box) {
        const StepMap map(gradient, rod, Direction::kDirect);
        ZUMRect reach;
        zuml_detail::ForEachStep(element, map, [&](const Step& step, const auto&...) {
          zuml_detail::Include(reach, step);
        });
        const ZUMImage<ZUMReal> wide = zuml_detail::WidenToReach(source, box, reach);
        const Sectors sectors(wide, element, map);
        return ZUMRunTasks<CTaskDilateGradAcum, ZUMReal>(box, 1, [&](CTaskDilateGradAcum& task) {
          task.gradient = &wide;
          task.sectors = &sectors;
        });
      });
}
