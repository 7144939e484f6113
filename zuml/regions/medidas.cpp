#include "zuml/regions/medidas.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "zuml/core/detail/axes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"

using zuml_detail::Axis;
using zuml_detail::FindLabelRange;
using zuml_detail::ForEachLabelRun;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;
using zuml_detail::LabelRange;
using zuml_detail::LabelRun;
using zuml_detail::MakeTable;
using zuml_detail::SumOfRun;

namespace {

// What is counted for each label of a range, before it becomes a table.
template <class T>
class Entries {
 public:
  Entries(const LabelRange& range, const T& start)
      : range_(range), entries_(zuml_detail::MakeScratch<T>(range.Length())) {
    std::fill_n(entries_.get(), range.Length(), start);
  }

  T& operator[](ZUMLong label) { return entries_[static_cast<std::size_t>(label - range_.first)]; }

  // Writes to_pixel(entry) for each label to a channel of the table.
  template <class P, class ToPixel>
  void WriteTo(const ZUMImage<P>& table, int c, ToPixel to_pixel) const {
    P* const pixels = &table(table.Begin(), c);
    for (std::size_t i = 0; i < range_.Length(); ++i) pixels[i] = to_pixel(entries_[i]);
  }

 private:
  LabelRange range_;
  zuml_detail::ScratchBlock<T> entries_;
};

// A sum as a pixel: of 64 bits, an integer has the low 32.
template <class P>
P ToPixel(std::int64_t sum) {
  if constexpr (std::same_as<P, ZUMLong>) {
    return ZUMLowBits<ZUMLong>(sum);
  } else {
    return static_cast<P>(sum);
  }
}

template <Axis kAxis>
ZUMImage<ZUMLong> MakeSizes(const ZUMImage<ZUMLong>& labels) {
  struct Extent {
    int low = std::numeric_limits<int>::max(), high = std::numeric_limits<int>::min();
  };
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMLong> table = MakeTable<ZUMLong>(range, 1, 0);
  Entries<Extent> extents(range, Extent());
  ForEachLabelRun(labels, [&extents](const LabelRun& run) {
    Extent& extent = extents[run.label];
    extent.low = std::min(extent.low, run.First(kAxis));
    extent.high = std::max(extent.high, run.Last(kAxis));
  });
  extents.WriteTo(table, 0, [](const Extent& e) { return e.low > e.high ? 0 : e.high - e.low; });
  return table;
}

// The sums in 64 bits, which no image exceeds, as pixels of the table.
template <Axis kAxis, class P>
ZUMImage<P> MakeSums(const ZUMImage<ZUMLong>& labels) {
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<P> table = MakeTable<P>(range, 1, 0);
  Entries<std::int64_t> sums(range, 0);
  ForEachLabelRun(labels,
                  [&sums](const LabelRun& run) { sums[run.label] += SumOfRun<kAxis>(run); });
  sums.WriteTo(table, 0, ToPixel<P>);
  return table;
}

// The sums over the number of pixels, each sum as a pixel of type S.
template <class S>
ZUMImage<ZUMReal> MakeCentres(const ZUMImage<ZUMLong>& labels) {
  struct Sums {
    std::int64_t axis[4];
    ZUMLong count;
  };
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMReal> table = MakeTable<ZUMReal>(range, 4, 0);
  Entries<Sums> sums(range, Sums{});
  ForEachLabelRun(labels, [&sums](const LabelRun& run) {
    Sums& s = sums[run.label];
    s.axis[0] += SumOfRun<kX>(run);
    s.axis[1] += SumOfRun<kY>(run);
    s.axis[2] += SumOfRun<kZ>(run);
    s.axis[3] += SumOfRun<kT>(run);
    s.count += run.n;
  });
  for (int c = 0; c < 4; ++c) {
    sums.WriteTo(table, c, [c](const Sums& s) {
      return s.count == 0 ? 0 : static_cast<double>(ToPixel<S>(s.axis[c])) / s.count;
    });
  }
  return table;
}

}  // namespace

void ZUMLabelInterval(const ZUMImage<ZUMLong>& labels, ZUMLong& first, ZUMLong& last) {
  const LabelRange range = FindLabelRange(labels);
  first = range.EmptyP() ? 1 : range.first;
  last = range.last;
}

ZUMImage<ZUMLong> ZUMRegionArea(const ZUMImage<ZUMLong>& labels) {
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMLong> table = MakeTable<ZUMLong>(range, 1, 0);
  if (range.first <= 1024) {
    // Labels as a rule begin at 1. Then a few entries more spare a test of each pixel.
    const auto counts =
        zuml_detail::MakeZeroedScratch<ZUMLong>(static_cast<std::size_t>(range.last) + 1);
    zuml_detail::CountLabels(labels, counts.get());
    ZUMCopyRun(&table(table.Begin()), counts.get() + range.first,
               static_cast<std::ptrdiff_t>(range.Length()));
  } else {
    const zuml_detail::TableEntries<ZUMLong> area(table);
    ForEachLabelRun(labels, [&area](const LabelRun& run) { area[run.label] += run.n; });
  }
  return table;
}

ZUMImage<ZUMLong> ZUMRegionMeasures2D(const ZUMImage<ZUMLong>& labels) {
  // One cache line holds two; the table's channels would be seven.
  struct Measures {
    int min_x, min_y, max_x, max_y;
    ZUMLong area, sum_x, sum_y, unused;
  };
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMLong> table = MakeTable<ZUMLong>(range, 7, 0);
  Entries<Measures> measures(
      range, {labels.EndX(), labels.EndY(), labels.BeginX(), labels.BeginY(), 0, 0, 0, 0});
  ForEachLabelRun(labels, [&measures](const LabelRun& run) {
    Measures& m = measures[run.label];
    m.min_x = std::min(m.min_x, run.First(kX));
    m.min_y = std::min(m.min_y, run.First(kY));
    m.max_x = std::max(m.max_x, run.Last(kX));
    m.max_y = std::max(m.max_y, run.Last(kY));
    m.area += run.n;
    m.sum_x = ZUMWrapAdd(m.sum_x, ZUMLowBits<ZUMLong>(SumOfRun<kX>(run)));
    m.sum_y = ZUMWrapAdd(m.sum_y, ZUMLowBits<ZUMLong>(SumOfRun<kY>(run)));
  });
  static constexpr ZUMLong Measures::*kChannels[] = {
      &Measures::min_x, &Measures::min_y, &Measures::max_x, &Measures::max_y,
      &Measures::area,  &Measures::sum_x, &Measures::sum_y};
  for (int c = 0; c < 7; ++c) {
    measures.WriteTo(table, c, [c](const Measures& m) { return m.*kChannels[c]; });
  }
  return table;
}

ZUMImage<ZUMLong> ZUMRegionSizeX(const ZUMImage<ZUMLong>& labels) { return MakeSizes<kX>(labels); }
ZUMImage<ZUMLong> ZUMRegionSizeY(const ZUMImage<ZUMLong>& labels) { return MakeSizes<kY>(labels); }
ZUMImage<ZUMLong> ZUMRegionSizeZ(const ZUMImage<ZUMLong>& labels) { return MakeSizes<kZ>(labels); }
ZUMImage<ZUMLong> ZUMRegionSizeT(const ZUMImage<ZUMLong>& labels) { return MakeSizes<kT>(labels); }

ZUMImage<ZUMLong> ZUMRegionSumX(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kX, ZUMLong>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSumY(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kY, ZUMLong>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSumZ(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kZ, ZUMLong>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSumT(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kT, ZUMLong>(labels);
}

ZUMImage<ZUMReal> ZUMRegionSumXWide(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kX, ZUMReal>(labels);
}
ZUMImage<ZUMReal> ZUMRegionSumYWide(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kY, ZUMReal>(labels);
}
ZUMImage<ZUMReal> ZUMRegionSumZWide(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kZ, ZUMReal>(labels);
}
ZUMImage<ZUMReal> ZUMRegionSumTWide(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<kT, ZUMReal>(labels);
}

ZUMImage<ZUMReal> ZUMRegionGravityCenter(const ZUMImage<ZUMLong>& labels) {
  return MakeCentres<ZUMLong>(labels);
}
ZUMImage<ZUMReal> ZUMRegionGravityCenterWide(const ZUMImage<ZUMLong>& labels) {
  return MakeCentres<ZUMReal>(labels);
}
