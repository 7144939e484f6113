/// Walks over a label image by runs of equal labels, and the tables that they fill: what a measure
/// costs depends on the pixels, not on the number of regions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// n pixels of a line, all in one region.
struct LabelRun {
  ZUMLong label;
  ZUMBasePoint<int> begin;
  int n;

  /// The coordinates of the first and of the last pixel.
  int First(Axis axis) const { return begin.*axis; }
  int Last(Axis axis) const { return begin.*axis + (axis == kX ? n - 1 : 0); }
};

/// The first pixel from i on that is not equal to pixel i; n if there is none.
inline std::ptrdiff_t FindRunEnd(const ZUMLong* line, std::ptrdiff_t i, std::ptrdiff_t n) {
  const ZUMLong label = line[i];
  constexpr std::ptrdiff_t kStep = 8;
  for (; i + kStep <= n; i += kStep) {
    ZUMLong differ = 0;
    for (std::ptrdiff_t k = 0; k < kStep; ++k) differ |= line[i + k] ^ label;
    if (differ != 0) break;
  }
  while (i < n && line[i] == label) ++i;
  return i;
}

/// The first byte from i on that is not 0; n if there is none.
inline std::ptrdiff_t FindTrue(const ZUMByte* line, std::ptrdiff_t i, std::ptrdiff_t n) {
  for (; i + 8 <= n; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, line + i, 8);
    if (word != 0) break;
  }
  while (i < n && line[i] == 0) ++i;
  return i;
}

/// The run of n pixels from pixel i on of a line that begins at the place.
inline LabelRun MakeRun(ZUMLong label, const ZUMRunPlace& place, std::ptrdiff_t i,
                        std::ptrdiff_t n) {
  return {label, {place.x + static_cast<int>(i), place.y, place.z, place.t}, static_cast<int>(n)};
}

/// Calls body(LabelRun) for each maximal run of a positive label along a line, in sweep order.
template <class Body>
void ForEachLabelRun(const ZUMImage<ZUMLong>& labels, Body body) {
  ZUMForEachPlacedRun(
      labels,
      [&body](const ZUMRunPlace& place, const ZUMLong* line, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0, end; i < n; i = end) {
          end = FindRunEnd(line, i, n);
          if (line[i] > 0) body(MakeRun(line[i], place, i, end - i));
        }
      },
      labels);
}

/// The same for the runs of true pixels of a bool image; their label is 1.
template <class Body>
void ForEachLabelRun(const ZUMImage<ZUMBool>& image, Body body) {
  ZUMForEachPlacedRun(
      image,
      [&body](const ZUMRunPlace& place, const ZUMBool* pixels, std::ptrdiff_t n) {
        const ZUMByte* const line = StoredPixels(pixels);
        for (std::ptrdiff_t i = FindTrue(line, 0, n), end; i < n; i = FindTrue(line, end, n)) {
          end = i;
          while (end < n && line[end] != 0) ++end;
          body(MakeRun(1, place, i, end - i));
        }
      },
      image);
}

/// The sum of the coordinates of the run's pixels. A block has less than 2^31 pixels, so 64 bits
/// hold the sums of all runs of an image too.
template <Axis kAxis>
std::int64_t SumOfRun(const LabelRun& run) {
  const std::int64_t n = run.n;
  return n * run.First(kAxis) + (kAxis == kX ? n * (n - 1) / 2 : 0);
}

/// The least and the greatest positive label: the X axis of a table.
struct LabelRange {
  ZUMLong first = INT32_MAX;
  ZUMLong last = 0;

  bool EmptyP() const { return last == 0; }
  std::size_t Length() const { return static_cast<std::size_t>(last - first) + 1; }
};

LabelRange FindLabelRange(const ZUMImage<ZUMLong>& labels);

/// A table over the range, all entries `start`. The range is not empty. It is made before any
/// scratch of its length, since it is what refuses a range that no block holds.
template <class P>
ZUMImage<P> MakeTable(const LabelRange& range, int csz, P start) {
  return ZUMImage<P>(ZUMRect(range.first, 0, 0, 0, range.last, 0, 0, 0), csz, start);
}

/// The entries of one channel of a table, indexed by label.
template <class P>
class TableEntries {
 public:
  TableEntries(const ZUMImage<P>& table, int c = 0)
      : start_(&table(table.Begin(), c)), first_(table.BeginX()) {}
  P& operator[](ZUMLong label) const { return start_[label - first_]; }

 private:
  P* start_;
  ZUMLong first_;
};

/// Counts the pixels of each label from 0 to `last`; what is below 0 counts as 0. `counts` has last
/// + 1 entries, all 0 before.
void CountLabels(const ZUMImage<ZUMLong>& labels, ZUMLong* counts);

}  // namespace zuml_detail
