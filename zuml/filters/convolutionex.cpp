#include "zuml/filters/convolutionex.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/filters/detail/rowband.h"

namespace {

using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::NumberAt;
using zuml_detail::SizeOf;

// The type that a weight and a pixel are multiplied in: the output's, unless floating pixels would
// lose their fractions, or doubles their precision.
template <class OutT, class InT>
using ProductType =
    std::conditional_t<(std::is_integral_v<OutT> && std::is_floating_point_v<InT>) ||
                           std::is_same_v<InT, ZUMReal>,
                       InT, OutT>;

template <class OutT, class InT>
OutT Multiply(OutT w, InT value) {
  using T = ProductType<OutT, InT>;
  const T product = ZUMWrapMul(static_cast<T>(w), static_cast<T>(value));
  if constexpr (std::is_same_v<T, OutT>) {
    return product;
  } else {
    return ZUMTruncate<OutT>(static_cast<double>(product));
  }
}

struct Translation {
  std::ptrdiff_t x, y;
};

}  // namespace

/// Adds all terms to its part. The terms of a pixel are added by one task, in the kernel's order,
/// so that rounding does not depend on the number of tasks.
template <class OutT, class InT>
class CTaskConvEx2 final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const std::vector<Translation>* translations;
  const std::vector<OutT>* weights;

  int Cost() const { return static_cast<int>(weights->size()); }

  void Run() override {
    // The results of a strip's line stay in the cache while the terms pass over them.
    zuml_detail::ForEachStrip(part, 64, sizeof(OutT), [this](const ZUMRoDRef& strip) {
      const ZUMRect box = source->Rect();
      ZUMForEachPlacedRun(
          strip,
          [&](const ZUMRunPlace& place, OutT* r, const InT* s, std::ptrdiff_t n) {
            const std::ptrdiff_t begin = std::ptrdiff_t{box.begin.x} - place.x;
            const std::ptrdiff_t end = std::ptrdiff_t{box.end.x} - place.x;
            std::fill_n(r, n, OutT());
            for (std::size_t k = 0; k < weights->size(); ++k) {
              const Translation d = (*translations)[k];
              const std::ptrdiff_t y = place.y - d.y;
              if (y < box.begin.y || y > box.end.y) continue;
              const std::ptrdiff_t first = std::max(std::ptrdiff_t{0}, begin + d.x);
              const std::ptrdiff_t last = std::min(n - 1, end + d.x);
              if (first > last) continue;
              const InT* from = s + (first - d.x - source->GetLineSz() * d.y);
              Add(r + first, from, last - first + 1, (*weights)[k]);
            }
          },
          *result, *source);
    });
  }

 private:
  static void Add(OutT* r, const InT* s, std::ptrdiff_t n, OutT w) {
    if constexpr (std::is_integral_v<OutT> && std::is_floating_point_v<InT>) {
      const InT weight = static_cast<InT>(w);
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        const InT sum = weight * s[i] + static_cast<InT>(r[i]);
        r[i] = ZUMTruncate<OutT>(static_cast<double>(sum));
      }
    } else {
      for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = ZUMWrapAdd(r[i], Multiply(w, NumberAt(s, i)));
    }
  }
};

template <class OutT, class InT>
requires ZUMConvPixels<OutT, InT> ZUMImage<OutT> ZUMConvEx(const ZUMImage<InT>& image,
                                                           const ZUMImage<OutT>& kernel) {
  if (kernel.GetCSz() != 1) throw XQException("ZUMConvEx: Multichannel kernels are not allowed");
  std::vector<Translation> translations;
  std::vector<OutT> weights;
  // Terms that lead outside from everywhere take no part.
  const std::ptrdiff_t x_size = SizeOf(image.Rect(), kX), y_size = SizeOf(image.Rect(), kY);
  ZUMForEachPlacedRun(
      kernel,
      [&](const ZUMRunPlace& place, const OutT* w, std::ptrdiff_t n) {
        const std::ptrdiff_t y = place.y;
        if (std::abs(y) >= y_size) return;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (w[i] == 0 || std::abs(place.x + i) >= x_size) continue;
          translations.push_back({place.x + i, y});
          weights.push_back(w[i]);
        }
      },
      kernel);
  using Task = CTaskConvEx2<OutT, InT>;
  return ZUMRunTasks<Task, OutT>(image, image.GetCSz(), [&](Task& task) {
    task.source = &image;
    task.translations = &translations;
    task.weights = &weights;
  });
}

namespace {

// The weights of a kernel along an axis, for the offsets from `begin` on.
template <class OutT>
struct Line {
  std::vector<OutT> weights;
  std::ptrdiff_t begin;

  std::ptrdiff_t Last() const { return static_cast<std::ptrdiff_t>(weights.size()) - 1; }
  bool IsLonger(std::ptrdiff_t length) const { return length - 1 <= Last(); }
  OutT operator[](std::ptrdiff_t j) const { return weights[static_cast<std::size_t>(j)]; }
};

template <class OutT>
Line<OutT> MakeLine(const ZUMImage<OutT>& kernel, zuml_detail::Axis axis) {
  ZUMBasePoint<int> p = kernel.Begin();
  Line<OutT> line{{}, p.*axis};
  const std::ptrdiff_t n = kernel.EmptyP() ? 0 : SizeOf(kernel.Rect(), axis);
  for (std::ptrdiff_t j = 0; j < n; ++j) {
    p.*axis = static_cast<int>(line.begin + j);
    line.weights.push_back(kernel(p));
  }
  return line;
}

template <class OutT>
OutT Divide(OutT sum, OutT weights) {
  if constexpr (std::is_integral_v<OutT>) {
    if (weights == 0) return 0;
    return ZUMLowBits<OutT>(std::int64_t{sum} / weights);
  } else {
    return sum / weights;
  }
}

// The terms j of result i on a line of that length which lie on the line: [first, last].
struct Range {
  std::ptrdiff_t first, last;
};
template <class OutT>
Range OnLine(const Line<OutT>& line, std::ptrdiff_t i, std::ptrdiff_t length) {
  const std::ptrdiff_t at = i + line.begin;
  return {std::max(std::ptrdiff_t{0}, -at), std::min(line.Last(), length - 1 - at)};
}

template <class OutT>
OutT SumWeights(const Line<OutT>& line, Range range) {
  OutT sum = 0;
  for (std::ptrdiff_t j = range.first; j <= range.last; ++j) sum = ZUMWrapAdd(sum, line[j]);
  return sum;
}

// r += w s along a row.
template <class OutT, class InT>
void AddRow(OutT* r, const InT* s, std::ptrdiff_t n, OutT w) {
  for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = ZUMWrapAdd(r[i], Multiply(w, NumberAt(s, i)));
}

template <class OutT, class InT>
void DeriveAlongY(const ZUMImage<OutT>& result, const ZUMImage<InT>& image,
                  const Line<OutT>& line) {
  const std::ptrdiff_t length = image.RoDYSz();
  ZUMForEachPlacedRun(
      image,
      [&](const ZUMRunPlace& place, OutT* r, const InT* s, std::ptrdiff_t n) {
        const Range range = OnLine(line, place.y - image.BeginY(), length);
        std::fill_n(r, n, OutT());
        for (std::ptrdiff_t j = range.first; j <= range.last; ++j) {
          AddRow(r, s + image.GetLineSz() * (line.begin + j), n, line[j]);
        }
        if (line.IsLonger(length)) {
          const OutT weights = SumWeights(line, range);
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Divide(r[i], weights);
        }
      },
      result, image);
}

template <class OutT, class InT>
void DeriveAlongX(const ZUMImage<OutT>& result, const ZUMImage<InT>& image,
                  const Line<OutT>& line) {
  const std::ptrdiff_t length = image.RoDXSz();
  if (image.EmptyP()) return;
  if (line.IsLonger(length)) {
    ZUMForEachRun(
        image,
        [&](OutT* r, const InT* s, std::ptrdiff_t) {
          for (std::ptrdiff_t i = 0; i < length; ++i) {
            const Range range = OnLine(line, i, length);
            OutT sum = 0;
            for (std::ptrdiff_t j = range.first; j <= range.last; ++j) {
              sum = ZUMWrapAdd(sum, Multiply(line[j], NumberAt(s, i + line.begin + j)));
            }
            r[i] = Divide(sum, SumWeights(line, range));
          }
        },
        result, image);
    return;
  }
  // Each line is copied and continued by its ends, so that all offsets find a pixel. What a kernel
  // far away from the origin reads is one end throughout.
  const std::ptrdiff_t first = std::clamp(line.begin, -length, length);
  const std::ptrdiff_t last = std::clamp(line.begin + line.Last(), -length, length);
  const std::ptrdiff_t before = std::max(std::ptrdiff_t{0}, -first);
  const std::ptrdiff_t after = std::max(std::ptrdiff_t{0}, last);
  using Number = decltype(NumberAt(static_cast<const InT*>(nullptr), 0));
  const auto padded =
      zuml_detail::MakeScratch<Number>(static_cast<std::size_t>(before + length + after));
  Number* const middle = padded.get() + before;
  ZUMForEachRun(
      image,
      [&](OutT* r, const InT* s, std::ptrdiff_t) {
        zuml_detail::WidenRow(middle, s, length);
        std::fill(padded.get(), middle, middle[0]);
        std::fill_n(middle + length, after, middle[length - 1]);
        std::fill_n(r, length, OutT());
        for (std::ptrdiff_t j = 0; j <= line.Last(); ++j) {
          AddRow(r, middle + std::clamp(line.begin + j, -length, length), length, line[j]);
        }
      },
      result, image);
}

}  // namespace

template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT> ZUMImage<OutT> ZUMDeriveEx(const ZUMImage<InT>& image,
                                                             const ZUMImage<OutT>& kernel) {
  if (kernel.GetCSz() != 1) throw XQException("ZUMDeriveEx: Multichannel kernels are not allowed");
  const bool along_y = kernel.BeginX() == 0 && kernel.EndX() == 0;
  if (!along_y && (kernel.BeginY() != 0 || kernel.EndY() != 0)) {
    throw XQException("ZUMDeriveEx: Only accepts unidimensional kernels");
  }
  const ZUMImage<OutT> result(image, image.GetCSz(), nullptr);
  const Line<OutT> line = MakeLine(kernel, along_y ? kY : kX);
  along_y ? DeriveAlongY(result, image, line) : DeriveAlongX(result, image, line);
  return result;
}

#define ZUML_INSTANTIATE(IN)                                                                    \
  template ZUML_API ZUMImage<ZUMLong> ZUMConvEx(const ZUMImage<IN>&, const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMConvEx(const ZUMImage<IN>&, const ZUMImage<ZUMReal>&); \
  template ZUML_API ZUMImage<ZUMSReal> ZUMConvEx(const ZUMImage<IN>&, const ZUMImage<ZUMSReal>&);
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(IN)                                                                      \
  template ZUML_API ZUMImage<ZUMLong> ZUMDeriveEx(const ZUMImage<IN>&, const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMDeriveEx(const ZUMImage<IN>&, const ZUMImage<ZUMReal>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
