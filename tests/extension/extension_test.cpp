#include <cmath>
#include <limits>
#include <map>
#include <queue>
#include <vector>

#include "tests/support/diagnostics.h"
#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"
#include "zuml/core/xqmatrix.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/drawing/shapes.h"
#include "zuml/extension/diffusion.h"
#include "zuml/extension/extendedframes.h"
#include "zuml/extension/interpolation.h"
#include "zuml/extension/spreading.h"
#include "zuml/filters/gaussiankernels.h"

namespace {

using namespace zuml_test;

using Mask = ZUMImage<ZUMBool>;
using Point = ZUMBasePoint<int>;

template <class P>
P ToPixel(double v) {
  if (std::isnan(v) && !std::floating_point<P>) return P(0);
  if constexpr (std::same_as<P, bool>) return v != 0;
  return static_cast<P>(v);
}

std::vector<Point> StepsOf(const Mask& con) {
  std::vector<Point> steps;
  ForEachPoint(con, 1, [&](int x, int y, int z, int t, int) {
    if (con(x, y, z, t)) steps.push_back({x, y, z, t});
  });
  return steps;
}

Point Plus(const Point& p, const Point& d) { return {p.x + d.x, p.y + d.y, p.z + d.z, p.t + d.t}; }

// A mask with holes of all sizes over a box beside the image's.
Mask MakeHoles(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const auto mask = MakeRandomImage<ZUMBool>(random, box, csz, layout);
  const int rate = random.Int(1, 8);
  ForEachPoint(mask, csz, [&](int x, int y, int z, int t, int c) {
    mask(x, y, z, t, c) = random.Int(0, 9) < rate || (x > 3 && y > 4);
  });
  return mask;
}

const Mask& Connectivity(int round) {
  static const Mask kSideways(ZUMRect(-1, 0, 0, 0, 2, 1, 0, 0), 1, true);
  return round % 3 == 0 ? ZUMCon4 : round % 3 == 1 ? ZUMCon8 : kSideways;
}

template <class P>
ZUMImage<P> SpreadByPoint(const ZUMImage<P>& image, const Mask& mask, const Mask& con, bool mean) {
  const ZUMRoDRef rod = Intersection(image, mask);
  const std::vector<Point> steps = StepsOf(con);
  ZUMImage<P> result = ZUMCopy(image.Cut(rod));
  for (int c = 0; c < image.GetCSz(); ++c) {
    const ZUMImage<int> state = MakeByPoint<int>(
        rod, 1, [&](int x, int y, int z, int t, int) { return mask(x, y, z, t, c) ? 1 : 0; });
    std::queue<Point> queue;
    ForEachPoint(rod, 1, [&](int x, int y, int z, int t, int) {
      const Point p(x, y, z, t);
      const auto beside = [&](int wanted) {
        for (const Point& d : steps) {
          if (rod.InP(Plus(p, d)) && state(Plus(p, d)) == wanted) return true;
        }
        return false;
      };
      if constexpr (ZUMScalarPixel<P>) {
        if (mean && state(p) != 0) result(p, c) = ToPixel<P>(std::nan(""));
      }
      if ((state(p) == 0) == mean || !beside(mean ? 0 : 1)) return;
      if (mean) state(p) = 2;
      queue.push(p);
    });
    for (; !queue.empty(); queue.pop()) {
      const Point p = queue.front();
      double sum = 0, count = 0;
      for (const Point& d : steps) {
        const Point q = Plus(p, d);
        if (!rod.InP(q)) continue;
        if (state(q) == 1) {
          state(q) = mean ? 2 : 0;
          if (!mean) result(q, c) = result(p, c);
          queue.push(q);
        } else if (state(q) == 0) {
          if constexpr (ZUMScalarPixel<P>) sum += static_cast<double>(result(q, c));
          ++count;
        }
      }
      if constexpr (ZUMScalarPixel<P>) {
        if (mean) result(p, c) = ToPixel<P>(sum / count);
      }
      if (mean) state(p) = 0;
    }
  }
  return result;
}

template <class P>
class Extension : public testing::Test {};
TYPED_TEST_SUITE(Extension, AlgebraTypes);

TYPED_TEST(Extension, SpreadsByFronts) {
  using P = TypeParam;
  Random random(1);
  for (int round = 0; round < 24; ++round) {
    const ZUMRect box = MakeRandomBox(random, 12, 12, round % 2 + 1, 1);
    ZUMRect other = box;
    other.begin.x -= random.Int(-2, 2);
    other.end.y += random.Int(-1, 2);
    const auto image = MakeRandomImage<P>(random, box, 1 + round % 2, kLayouts[round % 4]);
    const Mask mask = MakeHoles(random, other, 1 + round % 2, kLayouts[round / 2 % 4]);
    const Mask& con = Connectivity(round);
    EXPECT_TRUE(
        SameImage(ZUMExtendNearest(image, mask, con), SpreadByPoint(image, mask, con, false)))
        << round;
    if constexpr (ZUMScalarPixel<P>) {
      EXPECT_TRUE(SameImage(ZUMExtendMean(image, mask, con), SpreadByPoint(image, mask, con, true)))
          << round;
    }
  }
}

// Fronts and simultaneous means by points.
ZUMImage<ZUMReal> DiffuseByPoint(const ZUMImage<ZUMReal>& w, const Mask& mask, double tolerance) {
  const auto size = [&](int n) { return n > 1 ? 1 : 0; };
  const int ax = size(w.RoDXSz()), ay = size(w.RoDYSz()), az = size(w.RoDZSz());
  Mask con(ZUMRect(-ax, -ay, -az, 0, ax, ay, az, 0), 1, true);
  con(0) = false;
  const std::vector<Point> steps = StepsOf(con);
  std::map<std::array<int, 3>, bool> known;
  std::vector<Point> unknown;
  const auto key = [](const Point& p) { return std::array<int, 3>{p.x, p.y, p.z}; };
  ForEachPoint(w, 1, [&](int x, int y, int z, int t, int) {
    known[{x, y, z}] = !mask(x, y, z, t);
    if (mask(x, y, z, t)) unknown.push_back({x, y, z, t});
  });
  const auto mean = [&](const Point& p, int* n) {
    double sum = 0;
    int count = 0;
    for (const Point& d : steps) {
      if (!w.InP(Plus(p, d)) || !known[key(Plus(p, d))]) continue;
      sum += w(Plus(p, d));
      ++count;
    }
    if (n) *n = count;
    return sum / count;
  };
  for (bool more = true; more;) {
    std::vector<std::pair<Point, double>> front;
    for (const Point& p : unknown) {
      int count = 0;
      if (known[key(p)]) continue;
      const double value = mean(p, &count);
      if (count > 0) front.push_back({p, value});
    }
    for (const auto& [p, value] : front) {
      w(p) = value;
      known[key(p)] = true;
    }
    more = !front.empty();
  }
  for (double change = tolerance + 1; change > tolerance;) {
    std::vector<double> values;
    change = 0;
    for (const Point& p : unknown) {
      values.push_back(mean(p, nullptr));
      if (std::fabs(w(p) - values.back()) > change) change = std::fabs(w(p) - values.back());
    }
    for (std::size_t i = 0; i < unknown.size(); ++i) w(unknown[i]) = values[i];
  }
  return w;
}

template <class P>
ZUMImage<P> Stored(const ZUMImage<ZUMReal>& values) {
  return MakeByPoint<P>(values, 1, [&](auto... at) { return ToPixel<P>(values(at...)); });
}

template <class P>
class ScalarExtension : public testing::Test {};
TYPED_TEST_SUITE(ScalarExtension, ScalarTypes);

TYPED_TEST(ScalarExtension, DiffusesAndInterpolates) {
  using P = TypeParam;
  Random random(2);
  for (int round = 0; round < 12; ++round) {
    const ZUMRect box = MakeRandomBox(random, round % 4 == 1 ? 1 : 9, round % 4 == 2 ? 1 : 9,
                                      round % 4 == 3 ? 3 : 1);
    auto image = MakeRandomImage<P>(random, box, 1, kLayouts[round % 4]);
    ForEachPoint(image, 1, [&](auto... at) { image(at...) = static_cast<P>(random.Int(0, 90)); });
    const Mask mask = MakeHoles(random, box, 1, kLayouts[round / 2 % 4]);
    const ZUMImage<ZUMReal> real = ZUMCopy(ZUMImage<ZUMReal>(image));
    EXPECT_TRUE(SameImage(ZUMExtendDiffuse(image, mask, 0.01),
                          Stored<P>(DiffuseByPoint(ZUMCopy(real), mask, 0.01))))
        << round;

    // The band by distance, then sums over it.
    std::vector<Point> band;
    const int radius = 2;
    const Mask circle = ZUMCircleIm(radius);
    ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
      bool near = false;
      ForEachPoint(circle, 1, [&](int dx, int dy, int, int, int) {
        near = near ||
               (circle(dx, dy) && mask.InP(x - dx, y - dy, z, t) && mask(x - dx, y - dy, z, t));
      });
      if (near && !mask(x, y, z, t)) band.push_back({x, y, z, t});
    });
    const int n = static_cast<int>(band.size());
    const auto distance = [](const Point& a, const Point& b) {
      return std::sqrt(double((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) +
                              (a.z - b.z) * (a.z - b.z) + (a.t - b.t) * (a.t - b.t)));
    };
    const auto fill = [&](auto value) {
      return Stored<P>(MakeByPoint<ZUMReal>(image, 1, [&](int x, int y, int z, int t, int) {
        return mask(x, y, z, t) ? value(Point(x, y, z, t)) : real(x, y, z, t);
      }));
    };
    const int size = std::max({image.RoDXSz(), image.RoDYSz(), image.RoDZSz()});
    const auto g = ZUMGaussianX(1.3, size);
    EXPECT_TRUE(SameImage(ZUMExtendGauss(image, mask, radius, 1.3), fill([&](const Point& p) {
                            double sum = 0, weights = 0;
                            for (const Point& q : band) {
                              const double w =
                                  g(q.y - p.y) * g(q.x - p.x) * g(q.z - p.z) * g(q.t - p.t);
                              weights += w;
                              sum += real(q) * w;
                            }
                            return sum / weights;
                          })))
        << round;
    if (n == 0) {
      EXPECT_TRUE(SameImage(ZUMExtendLinear(image, mask, radius), ZUMCopy(image)));
      continue;
    }
    if (n == 1) continue;  // singular
    XQMatrix a(n, n), b(n, 1);
    for (int i = 0; i < n; ++i) {
      b[i][0] = real(band[static_cast<std::size_t>(i)]);
      for (int j = 0; j < n; ++j) {
        a[i][j] = distance(band[static_cast<std::size_t>(i)], band[static_cast<std::size_t>(j)]);
      }
    }
    const XQMatrix w = XQSolveGauss(a, b);
    EXPECT_TRUE(SameImage(ZUMExtendLinear(image, mask, radius), fill([&](const Point& p) {
                            double sum = 0;
                            for (int j = 0; j < n; ++j) {
                              sum += distance(p, band[static_cast<std::size_t>(j)]) * w[j][0];
                            }
                            return sum;
                          })))
        << round;
  }
}

TEST(Diffusion, WeightsOfNeighbours) {
  // Weights 1 to the left and 3 to the right: known 8, two unknown, known 0.
  const ZUMReal row[] = {8, 50, 50, 0};
  const ZUMRect box(3, 1, 0, 0, 6, 1, 0, 0);
  const ZUMImage<ZUMReal> image(box, 1, row);
  const bool unknown[] = {false, true, true, false};
  const Mask mask(box, 1, unknown);
  ZUMImage<ZUMReal> weights(box, 2, 1.0);
  weights.Channel(1).SetPixels(3.0);
  CaptureDiagnostics diagnostics;
  const auto result = ZUMExtendDiffuse(image, mask, 0.5, weights);
  // 8 and 0 first; then (8 + 0) / 4 and 2 / 4; then (8 + 1.5) / 4 and 2.375 / 4.
  EXPECT_EQ(result(4, 1), 2.375);
  EXPECT_EQ(result(5, 1), 0.59375);
  EXPECT_EQ(diagnostics.Take(), "1:1.5\n2:6\n3:0.375\n");
  // Nothing leads to a pixel without weights.
  const auto kept = ZUMExtendDiffuse(image, mask, 0.5, ZUMImage<ZUMReal>(box, 2, 0.0));
  EXPECT_TRUE(SameImage(kept, image));
}

TEST(ExtendedFrames, FillWhatIsNew) {
  const ZUMByte square[] = {1, 2, 3, 4};
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 1, square);
  const ZUMRect frame(1, 1, 0, 0, 1, 1, 0, 0), box(-1, -1, 0, 0, 2, 2, 0, 0);
  // Corners are reached from the seed that comes first in sweep order.
  const ZUMByte nearest[] = {1, 1, 2, 2, 1, 1, 2, 2, 3, 3, 4, 4, 3, 3, 4, 4};
  EXPECT_TRUE(
      SameImage(ZUMAddFrameNearest(image, frame, ZUMCon4), ZUMImage<ZUMByte>(box, 1, nearest)));
  EXPECT_TRUE(
      SameImage(ZUMPaddingNearest(image, box, ZUMCon4), ZUMImage<ZUMByte>(box, 1, nearest)));
  Mask unknown(box, 1, true);
  ZUMImage<ZUMByte> padded(box, 1, ZUMByte(0));
  ForEachPoint(image, 1, [&](int x, int y, int, int, int) {
    unknown(x, y) = false;
    padded(x, y) = image(x, y);
  });
  EXPECT_TRUE(
      SameImage(ZUMAddFrameMean(image, frame, ZUMCon8), ZUMExtendMean(padded, unknown, ZUMCon8)));
  EXPECT_TRUE(
      SameImage(ZUMPaddingMean(image, box, ZUMCon8), ZUMExtendMean(padded, unknown, ZUMCon8)));
  EXPECT_TRUE(
      SameImage(ZUMAddFrameDiffuse(image, frame, 0.1), ZUMExtendDiffuse(padded, unknown, 0.1)));
  EXPECT_TRUE(
      SameImage(ZUMPaddingDiffuse(image, box, 0.1), ZUMExtendDiffuse(padded, unknown, 0.1)));
  // A box that cuts the image off.
  EXPECT_EQ(ZUMPaddingNearest(image, ZUMRect(1, 0, 0, 0, 3, 0, 0, 0), ZUMCon4)(3, 0), 2);
}

TEST(ExtensionErrors, Texts) {
  const ZUMImage<ZUMByte> one(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, ZUMByte(1));
  const ZUMImage<ZUMByte> two(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 2, ZUMByte(1));
  const Mask mask = one, masks = two, aside(ZUMRect(1, 0, 0, 0, 1, 0, 0, 0), 1, true);
  const ZUMImage<ZUMReal> weights(one, 8, 1.0), seven(one, 7, 1.0);
  const ZUMRect negative(0, -1, 0, 0, 0, 0, 0, 0);
  const std::pair<std::string, std::string> cases[] = {
      {MessageOf([&] { ZUMExtendNearest(two, mask, aside); }),
       "ZUMExtendNearest: Dimensions of the connectivity image are not allowed"},
      {MessageOf([&] { ZUMExtendMean(two, mask, ZUMCon4); }),
       "ZUMExtendMean: Diferent number of channels 2!=1"},
      {MessageOf([&] { ZUMExtendLinear(two, masks, 1); }),
       "ZUMExtendLinear: It only accepts images with one channel (2)"},
      {MessageOf([&] { ZUMExtendGauss(one, masks, 1, 1); }),
       "ZUMExtendGauss: Diferent number of channels 1!=2"},
      {MessageOf([&] { ZUMAddFrameDiffuse(two, ZUMRect(), 0.1); }),
       "ZUMExtendDiffuse: It only accepts images with one channel (2)"},
      {MessageOf([&] { ZUMExtendDiffuse(one, mask, 0.0); }),
       "ZUMExtendDiffuse: Tolerance 0 not allowed"},
      {MessageOf(
           [&] { ZUMExtendDiffuse(one, mask, 0.1, weights.Cut(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0))); }),
       "ZUMExtendDiffuse: Diferent number of channels 1!=1"},
      {MessageOf([&] { ZUMExtendDiffuse(one, mask, 0.1, seven); }),
       "ZUMExtendDiffuse: Anisotropy don't have 8 channels"},
      {MessageOf([&] { ZUMAddFrameMean(one, negative, ZUMCon4); }),
       "ZUMAddFrameMean: It is not allowed add a negative frame to an image"},
      {MessageOf([&] { ZUMAddFrameNearest(ZUMImage<ZUMByte>(), negative, ZUMCon4); }),
       "ZUMAddFrameNearest: It is not allowed add a frame to an empty image"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(text, expected);
  EXPECT_TRUE(ZUMExtendMean(one, mask.Cut(ZUMRect(9, 9, 0, 0, 9, 9, 0, 0)), ZUMCon8).EmptyP());
}

}  // namespace
