#include "zuml/threshold/otsu.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "zuml/algebra/extrema.h"
#include "zuml/algebra/histogram.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/threshold/detail/bins.h"

using zuml_detail::Bins;

namespace {

// n0 n1 d^2, with d the distance of the classes' means; 0 unless both classes have pixels.
double BetweenClasses(double n0, double s0, double n1, double s1) {
  if (n0 == 0 || n1 == 0) return 0;
  const double d = s1 / n1 - s0 / n0;
  return n0 * n1 * (d * d);
}

// The first bin with the greatest criterion; `weight(count)` is a further factor by the bin's
// count.
template <class Weight>
int SelectOtsu(const Bins& bins, Weight weight) {
  const ZUMLong total = bins.Total();
  const double moment = bins.TotalMoment();
  ZUMLong n0 = 0;
  double s0 = 0, best = 0;
  int threshold = 0;
  for (std::int64_t i = bins.Begin(); i <= bins.End(); ++i) {
    const double criterion =
        BetweenClasses(n0, s0, ZUMWrapSub(total, n0), moment - s0) * weight(total, bins.Count(i));
    if (criterion > best) {
      best = criterion;
      threshold = static_cast<int>(i);
    }
    n0 = ZUMWrapAdd(n0, bins.Count(i));
    s0 += bins.Moment(i);
  }
  return threshold;
}

// A class's pixels, weight and first moment. The weight of a class that lost all its pixels may
// differ from 0 by the rounding; the count does not.
struct Class {
  std::int64_t count = 0;
  double weight = 0;
  double moment = 0;

  bool HasPixels() const { return count > 0 && weight > 0; }
  void Add(const Class& other) {
    count += other.count;
    weight += other.weight;
    moment += other.moment;
  }
  Class operator-(const Class& other) const {
    return {count - other.count, weight - other.weight, moment - other.moment};
  }
  double SpreadFrom(double mean) const {
    const double d = mean - moment / weight;
    return weight * (d * d);
  }
};

// A bin back in the range that a histogram of so many levels spans.
template <class P>
P ConvertBin(int bin, unsigned levels, P min, P max) {
  if (levels == 0) return static_cast<P>(bin);
  if (levels == 1) return min;
  if constexpr (std::integral<P>) {
    // In 64 bits, where the product of any range and bin fits.
    const std::int64_t range = std::int64_t{max} - min;
    return ZUMLowBits<P>(range * bin / (std::int64_t{levels} - 1) + min);
  } else {
    return (max - min) * bin / (static_cast<P>(levels) - 1) + min;
  }
}

template <class P>
void ReplaceEmptyRange(const ZUMImage<P>& image, unsigned levels, P& min, P& max) {
  if (levels != 0 && min > max) ZUMMinMax(image, min, max);
}

template <class P, class Select>
P SelectOnImage(const ZUMImage<P>& image, unsigned levels, P min, P max, Select select) {
  const int bin = select(ZUMHistogram(image, levels, min, max));
  ReplaceEmptyRange(image, levels, min, max);
  return ConvertBin(bin, levels, min, max);
}

}  // namespace

int ZUMHistogramOtsu(const ZUMImage<ZUMLong>& histogram) {
  return SelectOtsu(Bins(histogram), [](ZUMLong, ZUMLong) { return 1.0; });
}

int ZUMHistogramValleyOtsu(const ZUMImage<ZUMLong>& histogram) {
  return SelectOtsu(Bins(histogram), [](ZUMLong total, ZUMLong count) {
    return static_cast<double>(ZUMWrapSub(total, count));
  });
}

ZUMArray<ZUMLong> ZUMHistogramTrimodalOtsu(const ZUMImage<ZUMLong>& histogram) {
  const Bins bins(histogram);
  ZUMArray<ZUMLong> thresholds(2u);
  thresholds[0] = thresholds[1] = 0;
  const double total = bins.Total();
  const auto bin_class = [&](std::int64_t i) {
    const double p = bins.Count(i) / total;
    return Class{bins.Count(i), p, static_cast<double>(i) * p};
  };
  Class whole;
  for (std::int64_t i = bins.Begin(); i <= bins.End(); ++i) whole.Add(bin_class(i));
  const double mean = whole.moment / whole.weight;
  double best = 0;
  Class low;
  for (std::int64_t t1 = bins.Begin(); t1 < bins.End(); ++t1) {
    Class middle, high = whole - low;
    for (std::int64_t t2 = t1; t2 < bins.End(); ++t2) {
      if (low.HasPixels() && middle.HasPixels() && high.HasPixels()) {
        const double spread =
            low.SpreadFrom(mean) + middle.SpreadFrom(mean) + high.SpreadFrom(mean);
        if (spread > best) {
          best = spread;
          thresholds[0] = static_cast<ZUMLong>(t1);
          thresholds[1] = static_cast<ZUMLong>(t2);
        }
      }
      const Class moved = bin_class(t2);
      middle.Add(moved);
      high = high - moved;
    }
    low.Add(bin_class(t1));
  }
  return thresholds;
}

template <ZUMGreyPixel P>
P ZUMOtsu(const ZUMImage<P>& image, unsigned levels, std::type_identity_t<P> min,
          std::type_identity_t<P> max) {
  return SelectOnImage(image, levels, min, max, ZUMHistogramOtsu);
}

template <ZUMGreyPixel P>
P ZUMValleyOtsu(const ZUMImage<P>& image, unsigned levels, std::type_identity_t<P> min,
                std::type_identity_t<P> max) {
  return SelectOnImage(image, levels, min, max, ZUMHistogramValleyOtsu);
}

template <ZUMGreyPixel P>
ZUMArray<P> ZUMTrimodalOtsu(const ZUMImage<P>& image, unsigned levels, std::type_identity_t<P> min,
                            std::type_identity_t<P> max) {
  const ZUMArray<ZUMLong> bins = ZUMHistogramTrimodalOtsu(ZUMHistogram(image, levels, min, max));
  ReplaceEmptyRange(image, levels, min, max);
  ZUMArray<P> thresholds(2u);
  for (int k = 0; k < 2; ++k) thresholds[k] = ConvertBin(bins[k], levels, min, max);
  return thresholds;
}

template <ZUMGreyPixel P>
P ZUMPixelOtsu(const ZUMImage<P>& image) {
  if (image.GetCSz() != 1) {
    throw XQException("ZUMPixelOtsu does not allow multichannel images");
  }
  std::vector<P> pixels;
  pixels.reserve(static_cast<std::size_t>(image.NPixels()));
  ZUMForEachRun(
      image, [&](const P* p, std::ptrdiff_t n) { pixels.insert(pixels.end(), p, p + n); }, image);
  const auto numbers = std::partition(pixels.begin(), pixels.end(), [](P p) { return p == p; });
  std::sort(pixels.begin(), numbers);

  double total = 0;
  for (const P p : pixels) total += static_cast<double>(p);
  const double n = static_cast<double>(pixels.size());
  double s0 = 0, best = 0;
  P threshold = 0;
  for (std::size_t k = 0; k < pixels.size(); ++k) {
    const double n0 = static_cast<double>(k);
    const double criterion = BetweenClasses(n0, s0, n - n0, total - s0);
    if (criterion > best) {
      best = criterion;
      threshold = pixels[k];
    }
    s0 += static_cast<double>(pixels[k]);
  }
  return threshold;
}

#define ZUML_INSTANTIATE(PIX)                                                                \
  template ZUML_API PIX ZUMOtsu(const ZUMImage<PIX>&, unsigned, PIX, PIX);                   \
  template ZUML_API PIX ZUMValleyOtsu(const ZUMImage<PIX>&, unsigned, PIX, PIX);             \
  template ZUML_API ZUMArray<PIX> ZUMTrimodalOtsu(const ZUMImage<PIX>&, unsigned, PIX, PIX); \
  template ZUML_API PIX ZUMPixelOtsu(const ZUMImage<PIX>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
