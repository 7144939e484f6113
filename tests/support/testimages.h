/// What the tests share: images in every layout that an operation must cope with, walks by
/// coordinates, comparison to the bit, and the text of what is thrown.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "zuml/core/xqexception.h"
#include "zuml/core/xqtask.h"
#include "zuml/core/zumimage.h"

namespace zuml_test {

/// A small random generator with the same numbers everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  /// An integer from low to high, both included.
  int Int(int low, int high) {
    return low + static_cast<int>(Next() % static_cast<std::uint64_t>(high - low + 1));
  }

  /// A pixel: any value of an integer type, its ends more often; small reals with fractions.
  template <class P>
  P Pixel() {
    if constexpr (std::same_as<P, ZUMComplex>) {
      const double re = Pixel<double>();
      return {re, Pixel<double>()};
    } else if constexpr (std::is_pointer_v<P>) {
      return reinterpret_cast<P>(static_cast<std::uintptr_t>(Next()));
    } else if constexpr (std::same_as<P, bool>) {
      return (Next() & 1) != 0;
    } else if constexpr (std::integral<P>) {
      switch (Next() % 16) {
        case 0:
          return std::numeric_limits<P>::min();
        case 1:
          return std::numeric_limits<P>::max();
        case 2:
          return 0;
        default:
          return static_cast<P>(Next());
      }
    } else {
      return static_cast<P>(Int(-4000, 4000)) / 8;
    }
  }

 private:
  std::uint64_t state_;
};

/// How an image lies in its raster.
enum class Layout {
  kTight,    // the raster is the region
  kCut,      // a part of a larger image
  kFramed,   // a raster with margins
  kChannels  // inner channels of an image with more
};
inline constexpr Layout kLayouts[] = {Layout::kTight, Layout::kCut, Layout::kFramed,
                                      Layout::kChannels};

/// Calls f(x, y, z, t, c) for every point of the region and every channel, in sweep order.
template <class F>
void ForEachPoint(const ZUMRoDRef& rod, int csz, F f) {
  if (rod.EmptyP()) return;
  // In 64 bits, so that a region may end where the coordinates end.
  using Long = std::int64_t;
  for (int c = 0; c < csz; ++c)
    for (Long t = rod.BeginT(); t <= rod.EndT(); ++t)
      for (Long z = rod.BeginZ(); z <= rod.EndZ(); ++z)
        for (Long y = rod.BeginY(); y <= rod.EndY(); ++y)
          for (Long x = rod.BeginX(); x <= rod.EndX(); ++x)
            f(static_cast<int>(x), static_cast<int>(y), static_cast<int>(z), static_cast<int>(t),
              c);
}

/// An image over the box in the layout, every byte of its raster filled with random pixels, so that
/// a read outside the region is likely to show.
template <class P>
ZUMImage<P> MakeRandomImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const auto fill = [&random](const ZUMImage<P>& image) {
    auto* pixels = static_cast<P*>(image.GetData());
    const long long n = image.GetSimpleRaster()->GetSimpleRasterSz();
    for (long long i = 0; i < n; ++i) pixels[i] = random.Pixel<P>();
  };
  const ZUMRect frame(2, 1, 1, 0, 1, 3, 0, 1);
  const ZUMRect larger(box.begin.x - 2, box.begin.y - 1, box.begin.z - 1, box.begin.t,
                       box.end.x + 1, box.end.y + 3, box.end.z, box.end.t + 1);
  if (box.begin.x > box.end.x) layout = Layout::kTight;
  switch (layout) {
    case Layout::kCut: {
      const ZUMImage<P> image(ZUMRoDRef(larger), csz, P());
      fill(image);
      return image.Cut(box);
    }
    case Layout::kFramed: {
      const ZUMImage<P> image(ZUMRoDRef(box), frame, csz, P());
      fill(image);
      return image;
    }
    case Layout::kChannels: {
      const ZUMImage<P> image(ZUMRoDRef(box), csz + 3, P());
      fill(image);
      return image.Channels(1, csz + 1).Channels(1, csz);
    }
    case Layout::kTight:
      break;
  }
  const ZUMImage<P> image(ZUMRoDRef(box), csz, P());
  fill(image);
  return image;
}

/// A random box: sizes 1 to `most` on each axis that is asked for, begins on both sides of 0.
inline ZUMRect MakeRandomBox(Random& random, int most_x, int most_y, int most_z = 1,
                             int most_t = 1) {
  const auto begin = [&random](int most) { return most > 1 ? random.Int(-5, 5) : 0; };
  const int x = begin(most_x), y = begin(most_y), z = begin(most_z), t = begin(most_t);
  const int ex = x + random.Int(1, most_x) - 1, ey = y + random.Int(1, most_y) - 1;
  const int ez = z + random.Int(1, most_z) - 1, et = t + random.Int(1, most_t) - 1;
  return {x, y, z, t, ex, ey, ez, et};
}

/// Whether two images have the same stored box, the same channels and the same pixels, bit for bit
/// (so that -0.0 and 0.0 differ and a NaN equals itself).
template <class P>
testing::AssertionResult SameImage(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  if (a.Rect() != b.Rect() || a.GetCSz() != b.GetCSz()) {
    return testing::AssertionFailure()
           << testing::PrintToString(a) << " against " << testing::PrintToString(b);
  }
  testing::AssertionResult result = testing::AssertionSuccess();
  ForEachPoint(a, a.GetCSz(), [&](int x, int y, int z, int t, int c) {
    const P pa = a(x, y, z, t, c), pb = b(x, y, z, t, c);
    if (result && std::memcmp(&pa, &pb, sizeof(P)) != 0) {
      result = testing::AssertionFailure()
               << "(" << x << "," << y << "," << z << "," << t << "," << c
               << "): " << testing::PrintToString(pa) << " against " << testing::PrintToString(pb);
    }
  });
  return result;
}

/// The image that f(x, y, z, t, c) gives pixel by pixel: the slow, obvious reference.
template <class P, class F>
ZUMImage<P> MakeByPoint(const ZUMRoDRef& rod, int csz, F f) {
  const ZUMImage<P> image(rod, csz, P());
  ForEachPoint(rod, csz,
               [&](int x, int y, int z, int t, int c) { image(x, y, z, t, c) = f(x, y, z, t, c); });
  return image;
}

/// The text of the XQException that f throws; "" if it throws none.
template <class F>
std::string MessageOf(F f) {
  try {
    f();
  } catch (const XQException& e) {
    return e.what();
  }
  return "";
}

/// The number of tasks, while the object lives.
class WithThreads {
 public:
  explicit WithThreads(int n) { XQTask::SetNThreads(n); }
  ~WithThreads() { XQTask::SetNThreads(0); }
  WithThreads(const WithThreads&) = delete;
  WithThreads& operator=(const WithThreads&) = delete;
};

/// The numbers of tasks that results must not depend on.
inline constexpr int kThreadCounts[] = {1, 2, 3, 7, 32};

}  // namespace zuml_test
