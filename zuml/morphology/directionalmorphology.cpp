#include "zuml/morphology/directionalmorphology.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "zuml/algebra/frames.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/lines.h"
#include "zuml/morphology/detail/startvalue.h"

using zuml_detail::Direction;
using zuml_detail::Step;

namespace {

// One pixel of the element, counted from the first one.
struct SectorPixel {
  std::ptrdiff_t offset;
  int sector;
  double distance;
  float ux, uy;  // towards the element's origin
};

// The element's pixels by sector, in sweep order within a sector.
struct Sectors {
  std::vector<SectorPixel> pixels;
  std::size_t count = 0;
  Step first;

  Sectors(const ZUMRaster& target, const ZUMImage<ZUMLong>& element, Direction direction) {
    std::vector<Step> steps;
    const auto list = [&](bool measure) {
      zuml_detail::ForEachLine(element, 1, [&](int y, int z, int t, int) {
        for (int x = element.BeginX(); x <= element.EndX(); ++x) {
          const ZUMLong label = element(x, y, z, t);
          if (label <= 0) continue;
          Step step(x, y, z, t);
          if (direction == Direction::kMirrored) step = zuml_detail::Mirror(step);
          if (!measure) {
            first = step;
            count = std::max(count, static_cast<std::size_t>(label));
            continue;
          }
          const double fx = x, fy = y, fz = z, ft = t;
          const float r = std::sqrt(static_cast<float>(fx * fx + fy * fy));
          pixels.push_back({target.Displacement(step.x - first.x, step.y - first.y,
                                                step.z - first.z, step.t - first.t, 0),
                            label - 1, std::sqrt(fx * fx + fy * fy + fz * fz + ft * ft),
                            static_cast<float>(-x) / r, static_cast<float>(-y) / r});
        }
      });
    };
    list(false);
    list(true);
    std::stable_sort(pixels.begin(), pixels.end(), [](const SectorPixel& a, const SectorPixel& b) {
      return a.sector < b.sector;
    });
  }
};

// The value at (n - 1) / 2 in ascending order, by Hoare's selection; reorders the values. Every
// step of the inner loops tests its bound, so that NaNs cannot lead out of the array.
double SelectMedian(double* values, std::ptrdiff_t n) {
  const std::ptrdiff_t wanted = (n - 1) / 2;
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
    if (wanted <= j) {
      high = j;
    } else if (wanted >= i) {
      low = i;
    } else {
      break;
    }
  }
  return values[wanted];
}

}  // namespace

class CTaskDilateWMAcum final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<ZUMReal>* image;
  const Sectors* sectors;
  int half_window;
  double gain;

  void Run() override {
    const std::size_t n = sectors->count;
    maxima_.assign(n, 0.0);
    distances_.assign(n, 0.0);
    medians_.assign(n, 0.0);
    window_.assign(2 * static_cast<std::size_t>(half_window) + 1, 0.0);
    const Step& first = sectors->first;
    zuml_detail::ForEachLine(part, result->GetCSz(), [&](int y, int z, int t, int c) {
      ZUMReal* out = &(*result)(part.BeginX(), y, z, t, c);
      if (n == 0) {
        std::fill_n(out, part.RoDXSz(), 0.0);
        return;
      }
      const ZUMReal* in =
          &(*image)(part.BeginX() + first.x, y + first.y, z + first.z, t + first.t, c);
      for (int i = 0; i < part.RoDXSz(); ++i) out[i] = Accumulate(in + i);
    });
  }

 private:
  double Accumulate(const ZUMReal* pixel) {
    const auto& list = sectors->pixels;
    for (std::size_t k = 0; k < list.size(); ++k) {
      const auto s = static_cast<std::size_t>(list[k].sector);
      const double value = pixel[list[k].offset];
      if (k == 0 || list[k - 1].sector != list[k].sector || value > maxima_[s]) {
        maxima_[s] = value;
        distances_[s] = list[k].distance;
      }
    }
    const std::size_t n = sectors->count;
    std::size_t begin = n - static_cast<std::size_t>(half_window) % n;
    for (std::size_t i = 0; i < n; ++i, ++begin) {
      for (std::size_t j = 0; j < window_.size(); ++j) window_[j] = distances_[(begin + j) % n];
      medians_[i] = SelectMedian(window_.data(), static_cast<std::ptrdiff_t>(window_.size()));
    }
    // Apart from the maxima, since the selection moves them and a sector without a pixel keeps its
    // 0.
    quotients_.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
      quotients_[i] =
          maxima_[i] /
          (std::abs(distances_[i] - medians_[i]) / std::max(medians_[i], 1.0) * gain + 1.0);
    }
    return SelectMedian(quotients_.data(), static_cast<std::ptrdiff_t>(n));
  }

  std::vector<double> maxima_, distances_, medians_, window_, quotients_;
};

class CTaskDilateGradAcum final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<ZUMReal>* gradient;
  const Sectors* sectors;

  void Run() override {
    const Step& first = sectors->first;
    zuml_detail::ForEachLine(part, 1, [&](int y, int z, int t, int) {
      ZUMReal* out = &(*result)(part.BeginX(), y, z, t);
      if (sectors->count == 0) {
        std::fill_n(out, part.RoDXSz(), 0.0);
        return;
      }
      const auto pixel = [&](int c) {
        return &(*gradient)(part.BeginX() + first.x, y + first.y, z + first.z, t + first.t, c);
      };
      const ZUMReal *gx = pixel(0), *gy = pixel(1);
      for (int i = 0; i < part.RoDXSz(); ++i) {
        out[i] = SumProjections(gx + i, gy + i) / static_cast<double>(sectors->count);
      }
    });
  }

 private:
  double SumProjections(const ZUMReal* gx, const ZUMReal* gy) const {
    double sum = 0, greatest = 0;
    int sector = 0;
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
  ZUMDisplacementValueArray<ZUMLong>().SymmetricFromNonZeroPixels(image, element);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kMirrored);
  const Sectors sectors(image, element, Direction::kMirrored);
  return ZUMRunTasks<CTaskDilateWMAcum, ZUMReal>(rod, image.GetCSz(), [&](CTaskDilateWMAcum& task) {
    task.image = &image;
    task.sectors = &sectors;
    task.half_window = std::max(half_window, 0);
    task.gain = gain;
  });
}

// The gradient, widened by zeros where an element that is not symmetric reads outside it: a zero
// gradient points nowhere.
ZUMImage<ZUMReal> WidenToReach(const ZUMImage<ZUMReal>& gradient, const ZUMRoDRef& rod,
                               const ZUMRect& element) {
  if (rod.EmptyP()) return gradient;
  ZUMRect box = gradient.Rect();
  for (const auto axis : zuml_detail::kAxes) {
    box.begin.*axis = std::min(box.begin.*axis, rod.Begin().*axis + element.begin.*axis);
    box.end.*axis = std::max(box.end.*axis, rod.End().*axis + element.end.*axis);
  }
  return box == gradient.Rect() ? gradient : ZUMPadding(gradient, box, 0);
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

ZUMImage<ZUMReal> ZUMDilateGradAcum(const ZUMImage<ZUMReal>& gradient,
                                    const ZUMImage<ZUMLong>& element) {
  zuml_detail::RequireSingleChannelElement("ZUMDilateGradAcum", element);
  if (gradient.GetCSz() != 2 || element.RoDZSz() != 1 || element.RoDTSz() != 1) {
    throw XQException("ZUMDilateGradAcum: it only allows two channels images");
  }
  ZUMDisplacementValueArray<ZUMLong>().FromNonZeroPixels(gradient, element);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(gradient, element.Rect(), Direction::kMirrored);
  const ZUMImage<ZUMReal> source = WidenToReach(gradient, rod, element.Rect());
  const Sectors sectors(source, element, Direction::kDirect);
  return ZUMRunTasks<CTaskDilateGradAcum, ZUMReal>(rod, 1, [&](CTaskDilateGradAcum& task) {
    task.gradient = &source;
    task.sectors = &sectors;
  });
}
