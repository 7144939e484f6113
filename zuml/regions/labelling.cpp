#include "zuml/regions/labelling.h"

#include <algorithm>
#include <cstddef>

#include "zuml/algebra/extrema.h"
#include "zuml/core/detail/framedcopy.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/scratch.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/regions/detail/labelruns.h"
#include "zuml/regions/detail/runlabelling.h"

using zuml_detail::MakeFramed;
using zuml_detail::PlaneNeighbours;
using zuml_detail::ValueAt;

namespace {

constexpr ZUMLong kUnlabelled = -1;

// Gives the pixels of `labels` that hold kUnlabelled their regions' numbers, from `next` on by
// sweep order. A neighbour joins if joins(start, neighbour), both as places in the raster. Returns
// the number after the last.
template <class Joins>
ZUMLong FloodRegions(const ZUMImage<ZUMLong>& labels, const ZUMImage<ZUMBool>& reach, ZUMLong next,
                     Joins joins) {
  ZUMDisplacementArray neighbours;
  neighbours.FromNonZeroPixels(labels, reach);
  ZUMGrowingStack<std::ptrdiff_t> stack(10000);
  ZUMLong* const pixels = static_cast<ZUMLong*>(labels.GetData());
  ZUMForEachRun(
      labels,
      [&](const ZUMLong* run, std::ptrdiff_t n) {
        const std::ptrdiff_t first = run - pixels;
        for (std::ptrdiff_t start = first; start < first + n; ++start) {
          if (pixels[start] != kUnlabelled) continue;
          pixels[start] = next;
          stack.Push(start);
          while (!stack.EmptyP()) {
            const std::ptrdiff_t p = stack.Pop();
            for (const long long offset : neighbours) {
              const std::ptrdiff_t q = p + offset;
              if (pixels[q] == kUnlabelled && joins(start, q)) {
                pixels[q] = next;
                stack.Push(q);
              }
            }
          }
          ++next;
        }
      },
      labels);
  return next;
}

// The components of the true pixels, written to a framed image. Returns their number.
ZUMLong FloodTruePixels(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMLong>& labels,
                        const ZUMImage<ZUMBool>& reach) {
  ZUMForEachRun(
      image,
      [](const ZUMBool* from, ZUMLong* to, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = ValueAt(from, i) ? kUnlabelled : 0;
      },
      image, labels);
  return FloodRegions(labels, reach, 1, [](std::ptrdiff_t, std::ptrdiff_t) { return true; }) - 1;
}

}  // namespace

ZUMImage<ZUMLong> ZUMRegionLabel(const ZUMImage<ZUMBool>& image,
                                 const ZUMImage<ZUMBool>& connectivity) {
  ZUMLong next_label = 1;
  return ZUMRegionLabel(image, connectivity, next_label);
}

ZUMImage<ZUMLong> ZUMRegionLabel(const ZUMImage<ZUMBool>& image,
                                 const ZUMImage<ZUMBool>& connectivity, ZUMLong& next_label) {
  zuml_detail::RequireConnectivity("RegionLabel", connectivity);
  const ZUMImage<ZUMBool> reach = zuml_detail::CutToReach(connectivity, image);
  const ZUMImage<ZUMLong> labels = MakeFramed<ZUMLong>(image, image.GetCSz(), reach, 0);
  const PlaneNeighbours neighbours = zuml_detail::FindPlaneNeighbours(reach);
  if (neighbours != PlaneNeighbours::kNone) {
    next_label = zuml_detail::LabelByRuns(image, labels, neighbours, next_label);
    return labels;
  }
  const ZUMLong count = FloodTruePixels(image, labels, reach);
  if (next_label != 1) {
    // The flood counts from 1, so that no number can be the mark of what is not labelled yet.
    const ZUMLong shift = ZUMWrapSub(next_label, 1);
    ZUMForEachRun(
        labels,
        [shift](ZUMLong* label, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            label[i] = label[i] == 0 ? 0 : ZUMWrapAdd(label[i], shift);
          }
        },
        labels);
  }
  next_label = ZUMWrapAdd(next_label, count);
  return labels;
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMLong> ZUMRegionValueLabel(const ZUMImage<P>& image,
                                      const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("RegionLabel", connectivity);
  const ZUMImage<ZUMBool> reach = zuml_detail::CutToReach(connectivity, image);
  const ZUMImage<ZUMLong> labels = MakeFramed<ZUMLong>(image, image.GetCSz(), reach, 0);
  ZUMForEachRun(
      labels, [](ZUMLong* to, std::ptrdiff_t n) { std::fill_n(to, n, kUnlabelled); }, labels);
  // A copy in a raster of the same sizes, so that one place serves both.
  const ZUMImage<P> framed = zuml_detail::MakeFramedCopy(image, image, reach, P());
  const P* const values = static_cast<const P*>(framed.GetData());
  FloodRegions(labels, reach, 0, [values](std::ptrdiff_t start, std::ptrdiff_t p) {
    return values[p] == values[start];
  });
  return labels;
}

ZUMImage<ZUMLong> ZUMRelabel(const ZUMImage<ZUMLong>& labels) {
  zuml_detail::LabelRange range;
  ZUMMinMax(labels, range.first, range.last);
  if (range.last < 1) return ZUMCopy(labels);
  range.first = std::max(range.first, 1);
  const ZUMImage<ZUMLong> numbers = zuml_detail::MakeTable<ZUMLong>(range, 1, 0);
  const zuml_detail::TableEntries<ZUMLong> number(numbers);
  zuml_detail::ForEachLabelRun(
      labels, [&number](const zuml_detail::LabelRun& run) { number[run.label] = 1; });
  ZUMForEachRun(
      numbers,
      [next = 0](ZUMLong* entry, std::ptrdiff_t n) mutable {
        for (std::ptrdiff_t i = 0; i < n; ++i) entry[i] = next += entry[i];
      },
      numbers);
  const ZUMImage<ZUMLong> result(labels, labels.GetCSz(), nullptr);
  ZUMForEachRun(
      labels,
      [&number](const ZUMLong* from, ZUMLong* to, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = from[i] > 0 ? number[from[i]] : from[i];
      },
      labels, result);
  return result;
}

#define ZUML_INSTANTIATE(PIX)                                                   \
  template ZUML_API ZUMImage<ZUMLong> ZUMRegionValueLabel(const ZUMImage<PIX>&, \
                                                          const ZUMImage<ZUMBool>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
