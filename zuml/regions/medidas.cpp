#include "zuml/regions/medidas.h"

#include <algorithm>

#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"

using zuml_detail::FindLabelRange;
using zuml_detail::ForEachLabelRun;
using zuml_detail::LabelRange;
using zuml_detail::LabelRun;
using zuml_detail::MakeTable;
using zuml_detail::TableEntries;

namespace zuml_detail {

LabelRange FindLabelRange(const ZUMImage<ZUMLong>& labels) {
  // Less 1 and unsigned, positive labels come first; and there are instructions for both lines of
  // the loop.
  std::uint32_t first = INT32_MAX - 1u;
  ZUMLong last = 0;
  ZUMForEachRun(
      labels,
      [&first, &last](const ZUMLong* x, std::ptrdiff_t n) {
        std::uint32_t least = first;
        ZUMLong greatest = last;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          least = std::min(least, static_cast<std::uint32_t>(x[i]) - 1);
          greatest = std::max(greatest, x[i]);
        }
        first = least;
        last = greatest;
      },
      labels);
  return {static_cast<ZUMLong>(first + 1), last};
}

void CountLabels(const ZUMImage<ZUMLong>& labels, ZUMLong* counts) {
  ZUMForEachRun(
      labels,
      [counts](const ZUMLong* x, std::ptrdiff_t n) {
        const auto entry = [&](std::ptrdiff_t i) -> ZUMLong& { return counts[std::max(x[i], 0)]; };
        std::ptrdiff_t i = 0;
        // Where neighbours are equal one addition does for all; else each increment would wait for
        // the one before.
        constexpr std::ptrdiff_t kStep = 8;
        for (; i + kStep <= n; i += kStep) {
          ZUMLong differ = 0;
          for (std::ptrdiff_t k = 1; k < kStep; ++k) differ |= x[i + k] ^ x[i];
          if (differ == 0) {
            entry(i) += kStep;
          } else {
            for (std::ptrdiff_t k = 0; k < kStep; ++k) ++entry(i + k);
          }
        }
        for (; i < n; ++i) ++entry(i);
      },
      labels);
}

}  // namespace zuml_detail

namespace {

enum class Axis { kX, kY, kZ, kT };

// The run's first coordinate on the axis.
template <Axis kAxis>
int LowOf(const LabelRun& run) {
  return kAxis == Axis::kX ? run.x : kAxis == Axis::kY ? run.y : kAxis == Axis::kZ ? run.z : run.t;
}

template <Axis kAxis>
int HighOf(const LabelRun& run) {
  return kAxis == Axis::kX ? run.EndX() : LowOf<kAxis>(run);
}

// The wrapping sum of the coordinates of the run's pixels.
template <Axis kAxis>
ZUMLong SumOf(const LabelRun& run) {
  return ZUMLowBits<ZUMLong>(kAxis == Axis::kX ? zuml_detail::SumOfRange(run.x, run.n)
                                               : std::int64_t{LowOf<kAxis>(run)} * run.n);
}

template <Axis kAxis>
ZUMImage<ZUMLong> MakeSizes(const ZUMImage<ZUMLong>& labels) {
  struct Extent {
    int low = INT32_MAX, high = INT32_MIN;
  };
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const auto extents = zuml_detail::MakeScratch<Extent>(range.Length());
  std::fill_n(extents.get(), range.Length(), Extent());
  ForEachLabelRun(labels, [&](const LabelRun& run) {
    Extent& extent = extents[static_cast<std::size_t>(run.label - range.first)];
    extent.low = std::min(extent.low, LowOf<kAxis>(run));
    extent.high = std::max(extent.high, HighOf<kAxis>(run));
  });
  const ZUMImage<ZUMLong> table = MakeTable<ZUMLong>(range, 1, 0);
  ZUMLong* entry = &table(table.Begin());
  for (std::size_t i = 0; i < range.Length(); ++i) {
    if (extents[i].low <= extents[i].high) entry[i] = extents[i].high - extents[i].low;
  }
  return table;
}

template <Axis kAxis>
ZUMImage<ZUMLong> MakeSums(const ZUMImage<ZUMLong>& labels) {
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMLong> table = MakeTable<ZUMLong>(range, 1, 0);
  const TableEntries<ZUMLong> sum(table);
  ForEachLabelRun(labels, [&sum](const LabelRun& run) {
    sum[run.label] = ZUMWrapAdd(sum[run.label], SumOf<kAxis>(run));
  });
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
    const TableEntries<ZUMLong> area(table);
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
  const auto measures = zuml_detail::MakeScratch<Measures>(range.Length());
  std::fill_n(measures.get(), range.Length(),
              Measures{labels.EndX(), labels.EndY(), labels.BeginX(), labels.BeginY(), 0, 0, 0, 0});
  ForEachLabelRun(labels, [&](const LabelRun& run) {
    Measures& m = measures[static_cast<std::size_t>(run.label - range.first)];
    m.min_x = std::min(m.min_x, run.x);
    m.min_y = std::min(m.min_y, run.y);
    m.max_x = std::max(m.max_x, run.EndX());
    m.max_y = std::max(m.max_y, run.y);
    m.area += run.n;
    m.sum_x = ZUMWrapAdd(m.sum_x, SumOf<Axis::kX>(run));
    m.sum_y = ZUMWrapAdd(m.sum_y, SumOf<Axis::kY>(run));
  });
  static constexpr ZUMLong Measures::*kChannels[] = {
      &Measures::min_x, &Measures::min_y, &Measures::max_x, &Measures::max_y,
      &Measures::area,  &Measures::sum_x, &Measures::sum_y};
  const ZUMImage<ZUMLong> table(ZUMRect(range.first, 0, 0, 0, range.last, 0, 0, 0), 7, nullptr);
  for (int c = 0; c < 7; ++c) {
    ZUMLong* entry = &table(table.Begin(), c);
    for (std::size_t i = 0; i < range.Length(); ++i) entry[i] = measures[i].*kChannels[c];
  }
  return table;
}

ZUMImage<ZUMLong> ZUMRegionSizeX(const ZUMImage<ZUMLong>& labels) {
  return MakeSizes<Axis::kX>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSizeY(const ZUMImage<ZUMLong>& labels) {
  return MakeSizes<Axis::kY>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSizeZ(const ZUMImage<ZUMLong>& labels) {
  return MakeSizes<Axis::kZ>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSizeT(const ZUMImage<ZUMLong>& labels) {
  return MakeSizes<Axis::kT>(labels);
}

ZUMImage<ZUMLong> ZUMRegionSumX(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<Axis::kX>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSumY(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<Axis::kY>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSumZ(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<Axis::kZ>(labels);
}
ZUMImage<ZUMLong> ZUMRegionSumT(const ZUMImage<ZUMLong>& labels) {
  return MakeSums<Axis::kT>(labels);
}

ZUMImage<ZUMReal> ZUMRegionGravityCenter(const ZUMImage<ZUMLong>& labels) {
  struct Sums {
    ZUMLong axis[4];
    ZUMLong count;
  };
  const LabelRange range = FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const auto sums = zuml_detail::MakeZeroedScratch<Sums>(range.Length());
  ForEachLabelRun(labels, [&](const LabelRun& run) {
    Sums& s = sums[static_cast<std::size_t>(run.label - range.first)];
    s.axis[0] = ZUMWrapAdd(s.axis[0], SumOf<Axis::kX>(run));
    s.axis[1] = ZUMWrapAdd(s.axis[1], SumOf<Axis::kY>(run));
    s.axis[2] = ZUMWrapAdd(s.axis[2], SumOf<Axis::kZ>(run));
    s.axis[3] = ZUMWrapAdd(s.axis[3], SumOf<Axis::kT>(run));
    s.count += run.n;
  });
  const ZUMImage<ZUMReal> table = MakeTable<ZUMReal>(range, 4, 0);
  for (int c = 0; c < 4; ++c) {
    ZUMReal* entry = &table(table.Begin(), c);
    for (std::size_t i = 0; i < range.Length(); ++i) {
      if (sums[i].count != 0) entry[i] = static_cast<double>(sums[i].axis[c]) / sums[i].count;
    }
  }
  return table;
}
