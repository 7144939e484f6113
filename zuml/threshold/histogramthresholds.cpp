#include "zuml/threshold/histogramthresholds.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "zuml/algebra/histogram.h"
#include "zuml/threshold/detail/bins.h"

using zuml_detail::Bins;

namespace {

constexpr double kMost = std::numeric_limits<double>::max();

ZUMImage<ZUMLong> MakeByteHistogram(const ZUMImage<ZUMByte>& image) {
  return ZUMHistogram(image, 0, 1, 0);  // the full range
}

// Count, sum and sum of squares of a class.
struct Spread {
  double n = 0;
  double s = 0;
  double q = 0;

  double Deviation() const { return std::sqrt(std::max(n * q - s * s, 0.0)) / n; }
};

// What the valley selections know of the bins on one side.
struct Side {
  ZUMLong peak = 0;
  double n = 0;
  double s = 0;

  void Add(const Bins& bins, std::int64_t i) {
    peak = std::max(peak, bins.Count(i));
    n += bins.Count(i);
    s += bins.Moment(i);
  }
};

// The sides of each t: from the first bin to t - 1, and from t to the last bin but one. All sums
// are of integers that a double holds exactly, so it does not matter from which end they are
// formed.
class Sides {
 public:
  explicit Sides(const Bins& bins) : begin_(bins.Begin()) {
    const auto n = static_cast<std::size_t>(bins.End() - bins.Begin() + 1);
    low_.resize(n + 1);
    high_.resize(n + 1);
    for (std::int64_t i = bins.Begin(); i <= bins.End(); ++i) {
      low_[Index(i) + 1] = low_[Index(i)];
      low_[Index(i) + 1].Add(bins, i);
    }
    for (std::int64_t i = bins.End() - 1; i >= bins.Begin(); --i) {
      high_[Index(i)] = high_[Index(i) + 1];
      high_[Index(i)].Add(bins, i);
    }
  }

  const Side& Low(std::int64_t t) const { return low_[Index(t)]; }
  const Side& High(std::int64_t t) const { return high_[Index(t)]; }

  /// How far the bin lies below the lower of the two peaks.
  double Depth(const Bins& bins, std::int64_t t) const {
    return static_cast<double>(std::min(Low(t).peak, High(t).peak)) - bins.Count(t);
  }

 private:
  std::size_t Index(std::int64_t i) const { return static_cast<std::size_t>(i - begin_); }

  std::int64_t begin_;
  std::vector<Side> low_, high_;
};

// The bins that are local minima; a plateau is one if the histogram rises, or does not fall, at
// both of its ends.
std::vector<bool> MarkMinima(const Bins& bins) {
  const auto index = [&](std::int64_t i) { return static_cast<std::size_t>(i - bins.Begin()); };
  std::vector<bool> marks(index(bins.End()) + 1, false);
  for (std::int64_t i = bins.Begin() + 1; i < bins.End(); ++i) {
    const ZUMLong h = bins.Count(i), before = bins.Count(i - 1);
    marks[index(i)] = h > before ? false : h == before ? marks[index(i - 1)] : true;
  }
  marks[index(bins.End())] = false;
  for (std::int64_t i = bins.End() - 1; i > bins.Begin(); --i) {
    const ZUMLong h = bins.Count(i), after = bins.Count(i + 1);
    if (h > after) {
      marks[index(i)] = false;
    } else if (h == after) {
      marks[index(i)] = marks[index(i)] && marks[index(i + 1)];
    }
  }
  return marks;
}

}  // namespace

int ZUMHistogramMinVarianceThr(const ZUMImage<ZUMLong>& histogram) {
  const Bins bins(histogram);
  Spread low, high;
  for (std::int64_t i = bins.Begin(); i <= bins.End(); ++i) {
    high.n += bins.Count(i);
    high.s += bins.Moment(i);
    high.q += bins.SquareMoment(i);
  }
  double best = kMost;
  int threshold = 0;
  for (std::int64_t i = bins.Begin(); i < bins.End(); ++i) {
    if (low.n != 0 && high.n != 0) {
      const double deviations = low.Deviation() + high.Deviation();
      if (deviations < best) {
        best = deviations;
        threshold = static_cast<int>(i);
      }
    }
    const double n = bins.Count(i), s = bins.Moment(i), q = bins.SquareMoment(i);
    low = {low.n + n, low.s + s, low.q + q};
    high = {high.n - n, high.s - s, high.q - q};
  }
  return threshold;
}

ZUMByte ZUMMinVarianceThr(const ZUMImage<ZUMByte>& image) {
  return static_cast<ZUMByte>(ZUMHistogramMinVarianceThr(MakeByteHistogram(image)));
}

int ZUMHistogramValleyMinSumThr(const ZUMImage<ZUMLong>& histogram) {
  const Bins bins(histogram);
  std::int64_t best = -1;  // the areas are never negative
  int threshold = 0;
  for (std::int64_t t = bins.Begin() + 1; t <= bins.End(); ++t) {
    const auto area = [&](std::int64_t first, std::int64_t last) {
      std::int64_t sum = 0;
      for (std::int64_t i = first; i <= last; ++i) {
        sum += std::max<std::int64_t>(std::int64_t{bins.Count(i)} - bins.Count(t), 0);
      }
      return sum;
    };
    const std::int64_t lesser = std::min(area(bins.Begin(), t - 1), area(t + 1, bins.End() - 1));
    if (lesser > best) {
      best = lesser;
      threshold = static_cast<int>(t);
    }
  }
  return threshold;
}

ZUMByte ZUMValleyMinSumThr(const ZUMImage<ZUMByte>& image) {
  return static_cast<ZUMByte>(ZUMHistogramValleyMinSumThr(MakeByteHistogram(image)));
}

int ZUMHistogramValleyThr(const ZUMImage<ZUMLong>& histogram) {
  const Bins bins(histogram);
  const Sides sides(bins);
  double best_depth = 0, best_distance = -kMost;
  int threshold = 0;
  for (std::int64_t t = bins.Begin() + 1; t < bins.End(); ++t) {
    const Side &low = sides.Low(t), &high = sides.High(t);
    const double depth = sides.Depth(bins, t);
    if (depth < best_depth || low.n == 0 || high.n == 0) continue;
    const double level = static_cast<double>(t);
    const double distance = std::min(level - low.s / low.n, high.s / high.n - level);
    if (depth > best_depth || distance > best_distance) {
      best_depth = depth;
      best_distance = distance;
      threshold = static_cast<int>(t);
    }
  }
  return threshold;
}

ZUMByte ZUMValleyThr(const ZUMImage<ZUMByte>& image) {
  return static_cast<ZUMByte>(ZUMHistogramValleyThr(MakeByteHistogram(image)));
}

ZUMByte ZUMValleyParametricThr(const ZUMImage<ZUMByte>& image, ZUMReal a, ZUMReal b, ZUMReal c) {
  const ZUMImage<ZUMLong> histogram = MakeByteHistogram(image);
  const Bins bins(histogram);
  const Sides sides(bins);
  ZUMLong highest = 0;
  for (std::int64_t i = bins.Begin(); i <= bins.End(); ++i)
    highest = std::max(highest, bins.Count(i));
  const double total = bins.TotalMoment();
  const double w1 = a * 0.00392156862745098;  // 1 / 255
  const double w2 = b / highest;
  const double w3 = c * (2.0 / bins.Total());
  const std::vector<bool> marks = MarkMinima(bins);
  double best = -kMost;
  int threshold = 0;
  for (std::int64_t t = bins.Begin() + 1; t <= bins.End(); ++t) {
    if (!marks[static_cast<std::size_t>(t - bins.Begin())]) continue;
    const Side &low = sides.Low(t), &high = sides.High(t);
    const double score =
        sides.Depth(bins, t) * w2 + (high.s - low.s) * w1 / total + std::min(low.n, high.n) * w3;
    if (score > best) {
      best = score;
      threshold = static_cast<int>(t);
    }
  }
  return static_cast<ZUMByte>(threshold);
}

ZUMArray<ZUMReal> ZUMHistogramLowGaussianThr(const ZUMImage<ZUMLong>& histogram) {
  constexpr int kFirstBin = 6;
  constexpr double kDensity = 0.3989422804014327;  // 1 / sqrt(2 pi)
  const Bins bins(histogram);
  ZUMArray<ZUMReal> result(3u);
  result[0] = result[1] = result[2] = 0;
  Spread low;
  double best = kMost;
  for (std::int64_t i = bins.Begin(); i <= bins.End(); ++i) {
    low.n += bins.Count(i);
    low.s += bins.Moment(i);
    low.q += bins.SquareMoment(i);
    if (!(low.n > 0) || i < kFirstBin) continue;
    const double mean = low.s / low.n, sigma = low.Deviation();
    if (!(sigma > 0)) continue;
    double error = 0;
    for (std::int64_t j = bins.Begin(); j <= i; ++j) {
      const double from_mean = static_cast<double>(j) - mean;
      const double density =
          kDensity / sigma * std::exp(from_mean * from_mean / (-2 * (sigma * sigma)));
      const double difference = bins.Count(j) / low.n - density;
      error += difference * difference;
    }
    if (error < best) {
      best = error;
      result[0] = mean;
      result[1] = sigma;
      result[2] = static_cast<ZUMReal>(i);
    }
  }
  return result;
}
