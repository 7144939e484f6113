#include "zuml/regions/neighbours.h"

#include <algorithm>
#include <cstddef>

#include "zuml/algebra/extrema.h"
#include "zuml/core/detail/framedcopy.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/regions/detail/labelruns.h"

namespace {

constexpr ZUMLong kNone = -1;  // what lies outside, and pixels that count as no neighbours
constexpr int kRows = 21;
constexpr int kMostListed = 19;

// Calls body(a, b) for each pixel, with value a, and each of its neighbours, with value b, that
// differs from it; frame pixels have the value given. pixel_begins() precedes each such pixel's
// first call.
template <class PixelBegins, class Body>
void ForEachContact(const ZUMImage<ZUMLong>& labels, const ZUMImage<ZUMBool>& connectivity,
                    ZUMLong frame_value, PixelBegins pixel_begins, Body body) {
  const ZUMImage<ZUMBool> reach = zuml_detail::CutToReach(connectivity, labels);
  const ZUMImage<ZUMLong> framed = zuml_detail::MakeFramedCopy(labels, labels, reach, frame_value);
  ZUMDisplacementArray neighbours;
  neighbours.FromNonZeroPixels(framed, reach);
  ZUMForEachRun(
      framed,
      [&](const ZUMLong* p, std::ptrdiff_t n) {
        for (const ZUMLong* const end = p + n; p < end; ++p) {
          // Most pixels lie inside a region, and need no more than this.
          ZUMLong differ = 0;
          for (const long long offset : neighbours) differ |= p[offset] ^ *p;
          if (differ == 0) continue;
          pixel_begins();
          for (const long long offset : neighbours) {
            if (p[offset] != *p) body(*p, p[offset]);
          }
        }
      },
      framed);
}

// Fills the lists of neighbours, all 0 before, and counts the pairs in the same rows of another
// image, if there is one.
void ListNeighbours(const ZUMImage<ZUMLong>& labels, const ZUMImage<ZUMBool>& connectivity,
                    const ZUMImage<ZUMLong>& lists, const ZUMImage<ZUMLong>* pairs) {
  const std::ptrdiff_t row = lists.GetLineSz();
  ForEachContact(
      labels, connectivity, kNone, [] {},
      [&](ZUMLong a, ZUMLong b) {
        if (b == kNone) return;
        ZUMLong* const list = &lists(a);
        std::ptrdiff_t r = 1;
        while (r <= *list && list[r * row] != b) ++r;
        if (r > *list) {
          if (*list == kMostListed) return;
          ++*list;
          list[r * row] = b;
        }
        if (pairs) ++(&(*pairs)(a))[r * row];
      });
}

// An image with a column of rows for each value of the label image, all 0.
ZUMImage<ZUMLong> MakeColumns(const ZUMImage<ZUMLong>& labels) {
  ZUMLong first = 0, last = 0;
  ZUMMinMax(labels, first, last);
  return ZUMImage<ZUMLong>(ZUMRect(first, 0, 0, 0, last, kRows - 1, 0, 0), 1, 0);
}

}  // namespace

ZUMImage<ZUMLong> ZUMRegionExtFrontierArea(const ZUMImage<ZUMLong>& labels,
                                           const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("ZUMRegionExtFrontierArea", connectivity);
  const zuml_detail::LabelRange range = zuml_detail::FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMLong> table = zuml_detail::MakeTable<ZUMLong>(range, 1, 0);
  const zuml_detail::TableEntries<ZUMLong> area(table);
  ZUMArray<ZUMLong> seen;
  ForEachContact(
      labels, connectivity, 0, [&seen] { seen.Clear(); },
      [&](ZUMLong, ZUMLong label) {
        if (label <= 0 || std::find(seen.begin(), seen.end(), label) != seen.end()) return;
        seen.Put(label);
        ++area[label];
      });
  return table;
}

ZUMImage<ZUMLong> ZUMRegionNeighbour(const ZUMImage<ZUMLong>& labels,
                                     const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("ZUMRegionNeighbour", connectivity);
  ZUMLong first = 0, last = 0;
  ZUMMinMax(labels, first, last);
  const ZUMImage<ZUMLong> matrix(ZUMRect(first, first, 0, 0, last, last, 0, 0), 1, 0);
  ForEachContact(
      labels, connectivity, kNone, [] {},
      [&matrix](ZUMLong a, ZUMLong b) {
        if (b != kNone) ++matrix(b, a);
      });
  return matrix;
}

ZUMImage<ZUMLong> ZUMRegionNeighbour2(const ZUMImage<ZUMLong>& labels,
                                      const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("ZUMRegionNeighbour2", connectivity);
  const ZUMImage<ZUMLong> lists = MakeColumns(labels);
  ListNeighbours(labels, connectivity, lists, nullptr);
  return lists;
}

ZUMImage<ZUMLong> ZUMRegionNeighbourFrontier2(const ZUMImage<ZUMLong>& labels,
                                              const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("ZUMRegionNeighbourFrontier2", connectivity);
  const ZUMImage<ZUMLong> lists = MakeColumns(labels), pairs = MakeColumns(labels);
  ListNeighbours(labels, connectivity, lists, &pairs);
  return pairs;
}
