#include "zuml/filters/convolutionex.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <vector>

#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/filters/detail/rowband.h"

namespace {

using zuml_detail::NumberAt;

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

struct Position {
  int x, y;
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
  const std::vector<Position>* translations;
  const std::vector<OutT>* weights;

  void Run() override {
    // The results of a strip's line stay in the cache while the terms pass over them.
    zuml_detail::ForEachStrip(part, 64, sizeof(OutT), [this](const ZUMRoDRef& strip) {
      for (ZUMGenericSweepCoords<2> sweep(strip, *result, *source); sweep.GetStart1();
           sweep.Next()) {
        OutT* const r = static_cast<OutT*>(sweep.GetStart1());
        const InT* const s = static_cast<const InT*>(sweep.GetStart2());
        const int n = static_cast<int>(static_cast<OutT*>(sweep.GetEnd1()) - r) + 1;
        std::fill_n(r, n, OutT());
        for (std::size_t k = 0; k < weights->size(); ++k) {
          const Position d = (*translations)[k];
          const int y = sweep.GetY() - d.y;
          if (y < source->BeginY() || y > source->EndY()) continue;
          const int first = std::max(0, source->BeginX() + d.x - sweep.GetX());
          const int last = std::min(n - 1, source->EndX() + d.x - sweep.GetX());
          if (first > last) continue;
          const InT* from = s - (d.x + source->GetLineSz() * d.y);
          Add(r + first, from + first, last - first + 1, (*weights)[k]);
        }
      }
    });
  }

 private:
  static void Add(OutT* r, const InT* s, int n, OutT w) {
    if constexpr (std::is_integral_v<OutT> && std::is_floating_point_v<InT>) {
      const InT weight = static_cast<InT>(w);
      for (int i = 0; i < n; ++i) {
        const InT sum = weight * s[i] + static_cast<InT>(r[i]);
        r[i] = ZUMTruncate<OutT>(static_cast<double>(sum));
      }
    } else {
      for (int i = 0; i < n; ++i) r[i] = ZUMWrapAdd(r[i], Multiply(w, NumberAt(s, i)));
    }
  }
};

template <class OutT, class InT>
requires ZUMConvPixels<OutT, InT> ZUMImage<OutT> ZUMConvEx(const ZUMImage<InT>& image,
                                                           const ZUMImage<OutT>& kernel) {
  if (kernel.GetCSz() != 1) throw XQException("ZUMConvEx: Multichannel kernels are not allowed");
  std::vector<Position> translations;
  std::vector<OutT> weights;
  for (ZUMGenericSweepCoords1 sweep(kernel, kernel); sweep.GetStart1(); sweep.Next()) {
    const OutT* const end = static_cast<const OutT*>(sweep.GetEnd1());
    int x = sweep.GetX();
    for (const OutT* p = static_cast<const OutT*>(sweep.GetStart1()); p <= end; ++p, ++x) {
      if (*p == 0) continue;
      translations.push_back({x, sweep.GetY()});
      weights.push_back(*p);
    }
  }
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
  int begin;

  int Last() const { return static_cast<int>(weights.size()) - 1; }
  bool ShortP(int length) const { return length - 1 <= Last(); }
};

template <class OutT>
Line<OutT> MakeLine(const ZUMImage<OutT>& kernel, bool along_y) {
  const ZUMBasePoint<int> b = kernel.Begin();
  Line<OutT> line{{}, along_y ? b.y : b.x};
  const int n = along_y ? kernel.RoDYSz() : kernel.RoDXSz();
  for (int j = 0; j < n; ++j) {
    line.weights.push_back(along_y ? kernel(b.x, b.y + j, b.z, b.t)
                                   : kernel(b.x + j, b.y, b.z, b.t));
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
  int first, last;
};
template <class OutT>
Range OnLine(const Line<OutT>& line, int i, int length) {
  return {std::max(0, -(i + line.begin)), std::min(line.Last(), length - 1 - (i + line.begin))};
}

template <class OutT>
OutT SumWeights(const Line<OutT>& line, Range range) {
  OutT sum = 0;
  for (int j = range.first; j <= range.last; ++j) {
    sum = ZUMWrapAdd(sum, line.weights[static_cast<std::size_t>(j)]);
  }
  return sum;
}

// r += w s along a row.
template <class OutT, class InT>
void AddRow(OutT* r, const InT* s, int n, OutT w) {
  for (int i = 0; i < n; ++i) r[i] = ZUMWrapAdd(r[i], Multiply(w, NumberAt(s, i)));
}

template <class OutT, class InT>
void DeriveAlongY(const ZUMImage<OutT>& result, const ZUMImage<InT>& image,
                  const Line<OutT>& line) {
  const int length = image.RoDYSz();
  for (ZUMGenericSweepCoords<2> sweep(image, result, image); sweep.GetStart1(); sweep.Next()) {
    OutT* const r = static_cast<OutT*>(sweep.GetStart1());
    const InT* const s = static_cast<const InT*>(sweep.GetStart2());
    const int n = static_cast<int>(static_cast<OutT*>(sweep.GetEnd1()) - r) + 1;
    const Range range = OnLine(line, sweep.GetY() - image.BeginY(), length);
    std::fill_n(r, n, OutT());
    for (int j = range.first; j <= range.last; ++j) {
      AddRow(r, s + image.GetLineSz() * (line.begin + j), n,
             line.weights[static_cast<std::size_t>(j)]);
    }
    if (line.ShortP(length)) {
      const OutT weights = SumWeights(line, range);
      for (int i = 0; i < n; ++i) r[i] = Divide(r[i], weights);
    }
  }
}

template <class OutT, class InT>
void DeriveAlongX(const ZUMImage<OutT>& result, const ZUMImage<InT>& image,
                  const Line<OutT>& line) {
  const int length = image.RoDXSz();
  if (image.EmptyP()) return;
  if (line.ShortP(length)) {
    for (ZUMGenericSweep<2> sweep(image, result, image); sweep.GetStart1(); sweep.Next()) {
      OutT* const r = static_cast<OutT*>(sweep.GetStart1());
      const InT* const s = static_cast<const InT*>(sweep.GetStart2());
      for (int i = 0; i < length; ++i) {
        const Range range = OnLine(line, i, length);
        OutT sum = 0;
        for (int j = range.first; j <= range.last; ++j) {
          sum = ZUMWrapAdd(sum, Multiply(line.weights[static_cast<std::size_t>(j)],
                                         NumberAt(s, i + line.begin + j)));
        }
        r[i] = Divide(sum, SumWeights(line, range));
      }
    }
    return;
  }
  // Each line is copied and continued by its ends, so that all offsets find a pixel. What a kernel
  // far away from the origin reads is one end throughout.
  const int first = std::clamp(line.begin, -length, length);
  const int last = std::clamp(line.begin + line.Last(), -length, length);
  const int before = std::max(0, -first), after = std::max(0, last);
  using Number = decltype(NumberAt(static_cast<const InT*>(nullptr), 0));
  const auto padded = zuml_detail::MakeScratch<Number>(static_cast<std::size_t>(before) +
                                                       static_cast<std::size_t>(length + after));
  Number* const middle = padded.get() + before;
  for (ZUMGenericSweep<2> sweep(image, result, image); sweep.GetStart1(); sweep.Next()) {
    OutT* const r = static_cast<OutT*>(sweep.GetStart1());
    const InT* const s = static_cast<const InT*>(sweep.GetStart2());
    zuml_detail::WidenRow(middle, s, length);
    std::fill(padded.get(), middle, middle[0]);
    std::fill_n(middle + length, after, middle[length - 1]);
    std::fill_n(r, length, OutT());
    for (int j = 0; j <= line.Last(); ++j) {
      AddRow(r, middle + std::clamp(line.begin + j, -length, length), length,
             line.weights[static_cast<std::size_t>(j)]);
    }
  }
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
  const Line<OutT> line = MakeLine(kernel, along_y);
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
