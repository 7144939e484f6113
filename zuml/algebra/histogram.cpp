#include "zuml/algebra/histogram.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "zuml/algebra/extrema.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"

using zuml_detail::ValueAt;

namespace {

// The coordinates of the bins of one channel.
struct BinRange {
  std::int64_t begin;
  std::int64_t end;
};

// A histogram or a table of sums, all 0, with one axis per channel.
template <class OutT>
ZUMImage<OutT> MakeCells(const char* operation, const BinRange* ranges, int n) {
  constexpr std::int64_t kMostCells = std::numeric_limits<ZUMLong>::max() / sizeof(OutT);
  std::int64_t cells = 1;
  BinRange box[4] = {};
  for (int k = 0; k < n; ++k) {
    const std::int64_t size = ranges[k].end - ranges[k].begin + 1;
    if (size > kMostCells / cells) throw XQException("%s: Histogram too big", operation);
    cells *= size;
    box[k] = ranges[k];
  }
  const auto begin = [&](int k) { return static_cast<int>(box[k].begin); };
  const auto end = [&](int k) { return static_cast<int>(box[k].end); };
  return ZUMImage<OutT>(
      ZUMRect(begin(0), begin(1), begin(2), begin(3), end(0), end(1), end(2), end(3)), 1, OutT{});
}

// The bin of a pixel value on an axis that is counted from 0; -1 for a value that has none.

// The value itself.
template <class P>
struct ValueBin {
  ZUMLong begin;
  unsigned size;

  int operator()(P v) const {
    const unsigned offset = static_cast<unsigned>(ZUMLong{v}) - static_cast<unsigned>(begin);
    return offset < size ? static_cast<int>(offset) : -1;
  }
};

// The scaled value.
template <class P>
struct ScaledBin {
  double min;
  double scale;
  double size;

  int operator()(P v) const {
    const double bin = (static_cast<double>(v) - min) * scale;
    // A NaN fails the first comparison.
    const double low = bin > -1 ? bin : -1.0;
    return static_cast<int>(low < size ? low : -1.0);
  }
};

// The places of n tuples in a table whose axes have the given sizes, X fastest; -1 for a tuple that
// is not in it. `bin` gives the bin in each channel.
template <class P, class Bin>
void FindPlaces(int* place, const P* x, std::ptrdiff_t n, int channels, std::ptrdiff_t channel,
                const Bin* bin, const int* sizes) {
  for (std::ptrdiff_t i = 0; i < n; ++i) place[i] = bin[0](ValueAt(x, i));
  int step = 1;
  for (int k = 1; k < channels; ++k) {
    const P* xk = x + k * channel;
    step *= sizes[k - 1];
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const int at = bin[k](ValueAt(xk, i));
      place[i] = (place[i] | at) < 0 ? -1 : place[i] + at * step;
    }
  }
}

// Calls f(place, v..., n) for stretches of the region's runs: the places of n tuples of `image`
// and, of each further image, the pixels of the first channel.
template <class P, class Bin, class Cells, class F, class... Vs>
void ForEachPlace(const Cells& cells, const ZUMImage<P>& image, const Bin* bin, F f,
                  const ZUMImage<Vs>&... values) {
  const int channels = image.GetCSz();
  if (channels == 0) return;
  const std::ptrdiff_t channel = image.GetChannelSz();
  const int sizes[] = {cells.GetXSz(), cells.GetYSz(), cells.GetZSz(), cells.GetTSz()};
  ZUMForEachRun(
      image,
      [&](const P* x, const Vs*... v, std::ptrdiff_t n) {
        constexpr std::ptrdiff_t kStretch = 512;
        int place[kStretch];
        for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
          const std::ptrdiff_t count = std::min(kStretch, n - begin);
          FindPlaces(place, x + begin, count, channels, channel, bin, sizes);
          f(place, v + begin..., count);
        }
      },
      image.Channel(0), values...);
}

// Bytes of one channel: each of the 256 values is counted, then its count goes to its bin. Pixels
// side by side are often equal; four counts of each value keep an increment from waiting for the
// one before. One count is a tenth faster where neighbours differ at random, and half as long again
// on smooth pictures.
template <class Bin>
void CountBytes(ZUMLong* cell, const ZUMImage<ZUMByte>& image, const Bin& bin) {
  ZUMLong count[4][256] = {};
  ZUMForEachRun(
      image,
      [&count](const ZUMByte* x, std::ptrdiff_t n) {
        std::ptrdiff_t i = 0;
        for (; i + 4 <= n; i += 4) {
          for (int k = 0; k < 4; ++k) ++count[k][x[i + k]];
        }
        for (; i < n; ++i) ++count[0][x[i]];
      },
      image);
  for (int v = 0; v < 256; ++v) {
    const int place = bin(static_cast<ZUMByte>(v));
    if (place >= 0) cell[place] += count[0][v] + count[1][v] + count[2][v] + count[3][v];
  }
}

template <class P, class Bin>
void CountPixels(const ZUMImage<ZUMLong>& cells, const ZUMImage<P>& image, const Bin* bin) {
  ZUMLong* cell = &cells(cells.Begin());
  if constexpr (std::same_as<P, ZUMByte>) {
    if (image.GetCSz() == 1) return CountBytes(cell, image, bin[0]);
  }
  ForEachPlace(cells, image, bin, [cell](const int* place, std::ptrdiff_t n) {
    std::ptrdiff_t i = 0;
    // Where four neighbours are equal, as in flat parts and labels, one addition does for all; else
    // each increment would wait for the one before.
    for (; i + 4 <= n; i += 4) {
      const int* p = place + i;
      if ((p[0] == p[1]) & (p[1] == p[2]) & (p[2] == p[3])) {
        if (p[0] >= 0) cell[p[0]] += 4;
      } else {
        for (int k = 0; k < 4; ++k) {
          if (p[k] >= 0) ++cell[p[k]];
        }
      }
    }
    for (; i < n; ++i) {
      if (place[i] >= 0) ++cell[place[i]];
    }
  });
}

template <class P, class Bin>
ZUMImage<ZUMLong> MakeHistogram(const ZUMImage<P>& image, const BinRange& range, const Bin& bin) {
  const BinRange ranges[] = {range, range, range, range};
  const Bin bins[] = {bin, bin, bin, bin};
  const ZUMImage<ZUMLong> cells = MakeCells<ZUMLong>("ZUMHistogram", ranges, image.GetCSz());
  CountPixels(cells, image, bins);
  return cells;
}

// The range of each channel's values. Where there is no channel there is no value: ZUMMinMax
// refuses such an image as it refuses an empty one.
template <class P>
void FindRanges(const ZUMImage<P>& image, BinRange* ranges, ValueBin<P>* bins) {
  P min, max;
  if (image.GetCSz() == 0) ZUMMinMax(image, min, max);
  for (int k = 0; k < image.GetCSz(); ++k) {
    ZUMMinMax(image.Channel(k), min, max);
    ranges[k] = {min, max};
    bins[k] = {min, static_cast<unsigned>(std::int64_t{max} - min + 1)};
  }
}

void RequireThreeChannels(const ZUMRaster& image) {
  if (image.GetCSz() > 3) throw XQException("ZUMPixelValueCnt: number of channels not allowed");
}

}  // namespace

template <ZUMGreyPixel P>
ZUMImage<ZUMLong> ZUMHistogram(const ZUMImage<P>& image, unsigned levels,
                               std::type_identity_t<P> min, std::type_identity_t<P> max) {
  if (image.GetCSz() > 4) {
    throw XQException(std::integral<P>
                          ? "ZUMHistogram only allows images with 1,2,3, or 4 channels"
                          : "ZUMHistogram only allows images with 1,2,3 or 4 channels");
  }
  if constexpr (sizeof(P) <= 2) {
    if (min > max) {
      min = std::numeric_limits<P>::min();
      max = std::numeric_limits<P>::max();
    }
  } else if (min > max) {
    throw XQException("ZUMHistogram: Histogram too big");
  }
  if constexpr (std::integral<P>) {
    const std::int64_t values = std::int64_t{max} - min + 1;
    if (levels == 0 || levels == values) {
      const BinRange range = levels == 0 ? BinRange{min, max} : BinRange{0, values - 1};
      return MakeHistogram(
          image, range,
          ValueBin<P>{static_cast<ZUMLong>(range.begin), static_cast<unsigned>(values)});
    }
  } else if (levels == 0) {
    throw XQException("ZUMHistogram: Histogram with 0 level is not allowed");
  }
  const double low = static_cast<double>(min);
  const double last = static_cast<double>(levels) - 1;
  const ScaledBin<P> bin{low, last / (static_cast<double>(max) - low), last + 1};
  return MakeHistogram(image, BinRange{0, std::int64_t{levels} - 1}, bin);
}

template <ZUMDiscretePixel PixT>
ZUMImage<ZUMLong> ZUMPixelValueCnt(const ZUMImage<PixT>& image) {
  RequireThreeChannels(image);
  BinRange ranges[3];
  ValueBin<PixT> bins[3];
  FindRanges(image, ranges, bins);
  const ZUMImage<ZUMLong> cells = MakeCells<ZUMLong>("ZUMPixelValueCnt", ranges, image.GetCSz());
  CountPixels(cells, image, bins);
  return cells;
}

template <class OutT, class BinT, class ValT>
requires ZUMBinSumPixels<OutT, BinT, ValT> ZUMImage<OutT> ZUMPixelValueCnt(
    const ZUMImage<BinT>& bins, const ZUMImage<ValT>& values) {
  if (bins.GetCSz() != values.GetCSz()) {
    throw XQException(
        "ZUMPixelValueCnt: Binds and value image don't have the same number of channels");
  }
  RequireThreeChannels(bins);
  const ZUMRoDRef rod = Intersection(bins, values);
  const ZUMImage<BinT> cut = bins.Cut(rod);
  BinRange ranges[3];
  ValueBin<BinT> bin[3];
  FindRanges(cut, ranges, bin);
  const ZUMImage<OutT> cells = MakeCells<OutT>("ZUMPixelValueCnt", ranges, cut.GetCSz());
  OutT* cell = &cells(cells.Begin());
  ForEachPlace(
      cells, cut, bin,
      [cell](const int* place, const ValT* v, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          cell[place[i]] = ZUMWrapAdd(cell[place[i]], static_cast<OutT>(ValueAt(v, i)));
        }
      },
      values);
  return cells;
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<ZUMLong> ZUMHistogram<PIX>(const ZUMImage<PIX>&, unsigned, PIX, PIX);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                      \
  template ZUML_API ZUMImage<ZUMLong> ZUMPixelValueCnt<PIX>(const ZUMImage<PIX>&); \
  ZUML_INSTANTIATE_SUMS(ZUMLong, PIX, ZUMBool)                                     \
  ZUML_INSTANTIATE_SUMS(ZUMLong, PIX, ZUMByte)                                     \
  ZUML_INSTANTIATE_SUMS(ZUMLong, PIX, ZUMShort)                                    \
  ZUML_INSTANTIATE_SUMS(ZUMLong, PIX, ZUMLong)                                     \
  ZUML_INSTANTIATE_SUMS(ZUMReal, PIX, ZUMReal)
#define ZUML_INSTANTIATE_SUMS(OUT, BIN, VAL)                                            \
  template ZUML_API ZUMImage<OUT> ZUMPixelValueCnt<OUT, BIN, VAL>(const ZUMImage<BIN>&, \
                                                                  const ZUMImage<VAL>&);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE_SUMS
#undef ZUML_INSTANTIATE
