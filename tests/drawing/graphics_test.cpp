#include "zuml/drawing/graphics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "tests/support/everylayout.h"
#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"
#include "zuml/geometry/gridmoves.h"

using namespace zuml_test;

namespace {

__extension__ typedef __int128 Wide;
using Point = ZUMBasePoint<int>;
using Path = std::vector<std::pair<long long, long long>>;
constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();

Path Walk(long long x, long long y, long long x1, long long y1) {
  const long long dx = std::llabs(x1 - x), dy = std::llabs(y1 - y), length = std::max(dx, dy);
  Path path{{x, y}};
  for (long long i = 0, d = 2 * std::min(dx, dy) - length; i < length; ++i) {
    if (dx < dy || d >= 0) y += y1 > y ? 1 : -1;
    if (dx >= dy || d >= 0) x += x1 > x ? 1 : -1;
    d += 2 * (d >= 0 ? std::min(dx, dy) - length : std::min(dx, dy));
    path.push_back({x, y});
  }
  return path;
}

// The path of the part in the box, from the lesser X on if it is ordered.
Path WalkCut(const ZUMRect& box, const Point& begin, const Point& end, bool ordered) {
  Wide x[] = {begin.x, end.x}, y[] = {begin.y, end.y};
  const auto code = [&](int i) {
    return (x[i] < box.begin.x ? 1
            : x[i] > box.end.x ? 2
                               : 0) +
           (y[i] < box.begin.y ? 4
            : y[i] > box.end.y ? 8
                               : 0);
  };
  while (code(0) | code(1)) {
    if (code(0) & code(1)) return {};
    const int i = code(0) ? 0 : 1;
    const Wide at_y = code(i) >= 8 ? box.end.y : box.begin.y;
    const Wide at_x = code(i) == 2 ? box.end.x : box.begin.x;
    const bool on_y = code(i) >= 4;
    const Wide cut_x = on_y ? x[0] + (x[1] - x[0]) * (at_y - y[0]) / (y[1] - y[0]) : at_x;
    y[i] = on_y ? at_y : y[0] + (y[1] - y[0]) * (at_x - x[0]) / (x[1] - x[0]);
    x[i] = cut_x;
  }
  const int first = ordered && x[0] > x[1] ? 1 : 0;
  const auto at = [](Wide v) { return static_cast<long long>(v); };
  return Walk(at(x[first]), at(y[first]), at(x[1 - first]), at(y[1 - first]));
}

// The midpoint rule, step by step: set(x, y) for the circle's points, or for the rows between them.
template <class Set>
void DrawCircleByRule(const Point& centre, int r, bool filled, Set set) {
  const long long cx = centre.x, cy = centre.y;
  const auto row = [&](long long y, long long half) {
    const long long step = filled ? 1 : std::max(1LL, 2 * half);
    for (long long x = cx - half; x <= cx + half; x += step) set(x, y);
  };
  row(cy, r);
  if (!filled) row(cy - r, 0), row(cy + r, 0);
  for (long long x = 0, y = r, d = 5 - 4LL * r; x < y;) {
    ++x;
    d += d < 0 ? 8 * x + 4 : 8 * (x - y-- + 1) + 4;
    row(cy - y, x), row(cy + y, x), row(cy - x, y), row(cy + x, y);
  }
}

template <class P>
P Blended(P pixel, P value, double alpha) {
  if constexpr (std::same_as<P, ZUMComplex>) {
    return pixel * (1 - alpha) + value * alpha;
  } else {
    return ZUMTruncate<P>(static_cast<double>(pixel) * (1 - alpha) +
                          static_cast<double>(value) * alpha);
  }
}

// Two equal images: the library draws into one, a reference into the other. Then their whole blocks
// must be equal, what lies around the region included.
template <class P>
struct Twins {
  ZUMImage<P> drawn, expected;

  // In all layouts, and at both ends of the 32 bits.
  Twins(Random& random, int round, int csz) {
    const bool far = round % 6 >= 4;
    const Layout layout = far ? Layout::kTight : kLayouts[round % 6];
    const ZUMRect box = far ? ZUMRect(0, 0, 0, 0, 7, 9, 1, 1) : MakeRandomBox(random, 12, 12, 2, 2);
    const Point low(kLow, kLow), high(kHigh - 7, kHigh - 9);
    const Point to = round % 6 == 4 ? low : far ? high : Point();
    Random a(random.Next()), b = a;
    drawn = ZUMTranslate(MakeRandomImage<P>(a, box, csz, layout), to);
    expected = ZUMTranslate(MakeRandomImage<P>(b, box, csz, layout), to);
  }

  P* Find(long long x, long long y, int z, int t, int c) const {
    const int px = static_cast<int>(x), py = static_cast<int>(y);
    return px == x && py == y && expected.InP(px, py, z, t) ? &expected(px, py, z, t, c) : nullptr;
  }
  void Check(const char* what) const {
    const auto bytes = drawn.GetSimpleRaster()->GetSimpleRasterSz() * drawn.GetPixSz();
    EXPECT_EQ(std::memcmp(drawn.GetData(), expected.GetData(), static_cast<std::size_t>(bytes)), 0)
        << what << testing::PrintToString(drawn);
  }
  // Around the box, or anywhere.
  Point MakePoint(Random& random, int z, int t) const {
    const auto near = [&](long long begin, long long end) {
      const int kind = random.Int(0, 9), reach = kind < 7 ? 2 : 20;
      if (kind == 9) return static_cast<int>(random.Next());
      const long long at = begin + random.Int(-reach, static_cast<int>(end - begin) + reach);
      return static_cast<int>(std::clamp<long long>(at, kLow, kHigh));
    };
    return {near(drawn.BeginX(), drawn.EndX()), near(drawn.BeginY(), drawn.EndY()), z, t};
  }
};

template <class P>
class Graphics : public testing::Test {};
TYPED_TEST_SUITE(Graphics, AlgebraTypes);

TYPED_TEST(Graphics, LinesAndShapesAreThoseOfTheirFormulas) {
  using P = TypeParam;
  Random random(3);
  for (int round = 0; round < 400; ++round) {
    const Twins<P> twins(random, round, 3);
    ZUMImage<P> image = twins.drawn, twin = twins.expected;
    const int z = random.Int(0, 1), t = random.Int(0, 1), c = random.Int(0, 2);
    const int r = random.Int(0, round % 4 ? 9 : 80);
    std::vector<Point> p;
    for (int i = 0; i < 5; ++i) p.push_back(twins.MakePoint(random, z, t));
    if (round % 10 == 0) p[1] = p[0];
    P value = random.Pixel<P>();
    const auto put = [&](long long x, long long y) {
      if (P* const pixel = twins.Find(x, y, z, t, c)) *pixel = value;
    };

    ZUMDrawLine(image, p[0], p[1], value, c);
    for (const auto& [x, y] : WalkCut(image.Rect(), p[0], p[1], true)) put(x, y);
    twins.Check("line");
    value = random.Pixel<P>();
    ZUMAddLine(image, p[0], p[1], value, c);
    for (const auto& [x, y] : WalkCut(image.Rect(), p[0], p[1], false)) {
      P* const pixel = twins.Find(x, y, z, t, c);
      if (pixel) *pixel = std::same_as<P, bool> ? value : ZUMWrapAdd(*pixel, value);
    }
    twins.Check("added line");
    if (image.InP(p[0]) && image.InP(p[1])) {
      const Path path = Walk(p[0].x, p[0].y, p[1].x, p[1].y);
      const ZUMRect row(0, 0, 0, 0, static_cast<int>(path.size()) - 1, 0, 0, 0);
      const auto read = MakeByPoint<P>(row, 3, [&](int k, int, int, int, int channel) {
        const auto& [x, y] = path[static_cast<std::size_t>(k)];
        return *twins.Find(x, y, z, t, channel);
      });
      EXPECT_TRUE(SameImage(ZUMGetLine(image, p[0], p[1]), read));
      EXPECT_TRUE(SameImage(ZUMGetLine(image, p[0], p[1], c), ZUMCopy(read.Channel(c))));
    }

    for (const bool filled : {false, true}) {
      value = random.Pixel<P>();
      (filled ? ZUMDrawFilledCircle<P> : ZUMDrawCircle<P>)(image, p[0], r, value, c);
      DrawCircleByRule(p[0], r, filled, put);
      twins.Check("circle");
      value = random.Pixel<P>();
      (filled ? ZUMDrawFilledPolygon<P> : ZUMDrawPolygon<P>)(image, p.data(), 5, value, c);
      for (std::size_t i = 0; i < 5; ++i) ZUMDrawLine(twin, p[(i + 4) % 5], p[i], value, c);
      for (long long y = image.BeginY(); filled && y <= image.EndY(); ++y) {
        std::vector<long long> nodes;
        for (std::size_t i = 0, j = 4; i < 5; j = i++) {
          if ((p[i].y < y && p[j].y >= y) || (p[j].y < y && p[i].y >= y)) {
            const double share = static_cast<double>(y - p[i].y) / (1.0 * p[j].y - p[i].y);
            nodes.push_back(static_cast<long long>(share * (1.0 * p[j].x - p[i].x) + p[i].x + 0.5));
          }
        }
        std::sort(nodes.begin(), nodes.end());
        for (std::size_t k = 0; k < nodes.size(); k += 2) {
          for (long long x = image.BeginX(); x <= image.EndX(); ++x) {
            P* const pixel = twins.Find(x, y, 0, 0, c);
            if (pixel && nodes[k] <= x && x <= nodes[k + 1]) *pixel = value;
          }
        }
      }
      twins.Check("polygon");
    }
    if (round % 6 >= 4) continue;
    const Point corner(random.Int(-9, 5), random.Int(-9, 5), z, t);
    const ZUMRect box(corner, {corner.x + random.Int(0, 9), corner.y + random.Int(0, 20), z, t});
    if constexpr (!std::same_as<P, ZUMComplex>) {
      ZUMDrawFilledEllipse(image, box, value, c);
      const double cx = (box.begin.x + box.end.x) / 2.0, cy = (box.begin.y + box.end.y) / 2.0;
      const double a = std::pow(box.end.x - cx, 2), b = std::pow(box.end.y - cy, 2);
      ForEachPoint(box, 1, [&](int x, int y, int, int, int) {
        if (std::pow(x - cx, 2) * b + std::pow(y - cy, 2) * a <= a * b) put(x, y);
      });
      twins.Check("ellipse");
    }
    ZUMDrawFilledRect(image, {corner, box.end}, value, c);
    ForEachPoint(box, 1, [&](int x, int y, int, int, int) { put(x, y); });
    twins.Check("rectangle");
  }
}

TYPED_TEST(Graphics, ImagesMasksAndWarpsLieOverTheTarget) {
  using P = TypeParam;
  Random random(4);
  for (int round = 0; round < 300; ++round) {
    if (round % 6 == 5) continue;
    const Twins<P> twins(random, round, 4);
    ZUMImage<P> image = twins.drawn;
    const ZUMRect box = MakeRandomBox(random, round % 20 ? 12 : 200, 12, 2, 2);
    const auto source = MakeRandomImage<P>(random, box, 2, kLayouts[round % 3]);
    const auto mask = MakeRandomImage<ZUMBool>(random, box, 2, kLayouts[round % 4]);
    if (round % 3 == 0) mask.Channel(1).SetPixels(true);
    const bool moved = round % 6 == 4 || round % 2;
    const Point far(image.BeginX(), image.BeginY()), near(random.Int(-9, 9), random.Int(-9, 9));
    const Point d = round % 6 == 4 ? far : moved ? near : Point();
    const int c = random.Int(0, 2);
    // Calls f(pixel, x, y, z, t, k) for the expected pixels below those of the source.
    const auto for_each_below = [&](auto f) {
      ForEachPoint(source, 2, [&](int x, int y, int z, int t, int k) {
        P* const pixel = twins.Find(x + 0LL + d.x, y + 0LL + d.y, z, t, c + k);
        if (pixel) f(*pixel, x, y, z, t, k);
      });
    };
    moved ? ZUMDrawImage(image, source, d, c) : ZUMDrawImage(image, source, c);
    for_each_below([&](P& pixel, auto... at) { pixel = source(at...); });
    twins.Check("image");
    const P value = random.Pixel<P>(), tint = random.Pixel<P>();
    moved ? ZUMDrawMask(image, mask, d, value, c) : ZUMDrawMask(image, mask, value, c);
    for_each_below([&](P& pixel, auto... at) { pixel = mask(at...) ? value : pixel; });
    twins.Check("mask");
    const double alpha = round % 7 ? random.Int(-8, 24) / 16.0 : round % 2;
    moved ? ZUMDrawMask(image, mask, d, tint, alpha, c) : ZUMDrawMask(image, mask, tint, alpha, c);
    for_each_below([&](P& pixel, auto... at) {
      if (mask(at...)) pixel = Blended(pixel, tint, alpha);
    });
    twins.Check("blended mask");
  }
}

TEST(Warps, TakeTheirOwnPairBelow0) {
  const ZUMImage<ZUMShort> source(ZUMRect(-3, -1, 0, 0, 3, 2, 0, 0), 1, ZUMShort{0});
  for (int x = -3; x <= 3; ++x) source.Cut(ZUMRect(x, -1, 0, 0, x, 2, 0, 0)).SetPixels(x * x * 10);
  const double half[2][3] = {{0.5, 0, -0.25}, {0, 1, 0}};  // (x - 1/2) / 2
  // Beyond the nearest of -1/4 is 0 + (10 - 0) (-1/4), cut toward zero.
  const ZUMShort nearest[] = {90, 90, 40, 40, 10, 10, 0, 0, 10, 10, 40, 40, 90, 90};
  const ZUMShort linear[] = {7, 2, 27, -12, 2, -7, -2, 2, 7, 17, 32, 52, 77, 7};
  for (const bool between : {false, true}) {
    ZUMImage<ZUMShort> image(ZUMRect(-6, 0, 4, 0, 7, 0, 4, 0), 2, ZUMShort{7});
    ZUMDrawWarpAffine2D(image, source, half, static_cast<ZUMInterpolation>(between), 1);
    for (int x = -6; x <= 7; ++x) {
      EXPECT_EQ(image(x, 0, 4, 0, 1), (between ? linear : nearest)[x + 6]) << x;
      EXPECT_EQ(image(x, 0, 4, 0, 0), 7);
    }
  }
}

TEST(Lines, LoseStrengthAgainstTheGradient) {
  ZUMImage<double> image(ZUMRect(-3, -3, 0, 0, 3, 3, 0, 0), 1, 1.0);
  const ZUMImage<double> gradient(ZUMRect(-2, -9, 0, 0, 9, 9, 0, 0), 2, 0.0);
  gradient(-1, 0, 0, 0, 0) = 5;  // backwards, it runs against these
  gradient(1, 0, 0, 0, 0) = 2;
  gradient(0, 0, 0, 0, 1) = -9;  // across
  ZUMAddGradientLine(image, gradient, {9, 0}, {-9, 0}, 6);
  const double row[] = {1, 1, 5, 5, 7, 7, 7};
  for (int x = -3; x <= 3; ++x) EXPECT_EQ(image(x, 0), row[x + 3]);
  ZUMAddGradientLine(image, gradient, {2, 2}, {2, 2}, -1);
  EXPECT_EQ(image(2, 2), 0);
  // 2^32 pixels long, and no time.
  ZUMAddGradientLine(image, gradient, {kLow, kLow}, {kHigh, kHigh}, 3);
  EXPECT_TRUE(image(-2, -2) == 4 && image(0, 0) == 8 && image(1, 1) == 1);
}

TEST(Circles, OfTheGreatestRadius) {
  ZUMImage<ZUMByte> image(ZUMRect(0, kHigh - 1, 0, 0, 50000, kHigh, 0, 0), 1, ZUMByte{0});
  ZUMDrawFilledCircle(image, {0, 0}, kHigh, 1, 0);
  ZUMDrawCircle(image, {0, 0}, kHigh, 2, 0);
  const int x = 46340;  // the last with x^2 + (r - 1/2)^2 < r^2
  EXPECT_TRUE(image(x, kHigh) == 2 && image(x + 1, kHigh) == 0 && image(x, kHigh - 1) == 1);
  EXPECT_TRUE(image(x + 1, kHigh - 1) == 2);
}

TEST(Shapes, OnARegionWithHolesAndInColours) {
  ZUMImage<ZUMByte> image(new OddRegion(ZUMRect(0, 0, 0, 0, 8, 8, 0, 0)), 4, ZUMByte{0});
  ZUMDrawFilledCircle(image, {4, 4}, 9, 0x030201);
  ZUMDrawCircle(image, {4, 4}, 3, 0x060504);
  ZUMDrawLine(image, {-9, 4}, {20, 4}, 0x090807);
  ZUMImage<ZUMByte> box(ZUMRect(0, 0, 0, 0, 8, 8, 0, 0), 3, ZUMByte{0});
  ZUMDrawFilledRect(box, ZUMRect(-5, -5, 0, 0, 9, 9, 0, 0), 0x030201);
  ZUMDrawRect(box, ZUMRect(2, 2, 0, 0, 6, 6, 0, 0), 0x060504);
  ForEachPoint(box, 3, [&](int x, int y, int, int, int c) {
    const int dx = std::abs(x - 4), dy = std::abs(y - 4), d = std::max(dx, dy);
    EXPECT_EQ(box(x, y, 0, 0, c), d == 2 ? c + 4 : c + 1);
    const bool ring = (d == 3 && std::min(dx, dy) < 2) || (dx == 2 && dy == 2);
    const int colour = y == 4 ? c + 7 : ring ? c + 4 : c + 1;
    EXPECT_EQ(image(x, y, 0, 0, c), (x + y) % 2 == 0 ? 0 : colour);
    EXPECT_EQ(image(x, y, 0, 0, 3), 0);
  });
}

TEST(Masks, LiteralsOfEveryTypeAndColours) {
  const ZUMImage<ZUMBool> mask(ZUMRect(0, 0, 0, 0, 1, 0, 0, 0), 1, true);
  const auto draw = [&]<class P>(P, auto... literals) {
    ZUMImage<P> image(mask, 2, P());
    ((ZUMDrawMask(image, mask, literals, 0)), ...);
    ZUMDrawMask(image, mask, {1, 0}, P(), 0);
    ZUMDrawMask(image, mask, 1, 0.5, 0);
    ZUMDrawMask(image, mask, Point(), 1, 1);
    EXPECT_EQ(image(0, 0, 0, 0, 1), P(1));
  };
  draw(ZUMBool(), true, 1), draw(ZUMByte(), 255, 'a', 255u), draw(ZUMShort(), -1, ZUMShort{1});
  draw(ZUMLong(), 1L, 1), draw(ZUMReal(), 1, 0.5, 0.5f), draw(ZUMComplex(), 1, 0.5, ZUMComplex(1));
  ZUMImage<ZUMByte> bytes(mask, 3, ZUMByte{100});
  ZUMDrawMask(bytes, mask, 255, 0);
  ZUMDrawMask(bytes, mask, {1, 0}, 0x302010);
  ZUMDrawMask(bytes, mask, {1, 0}, 0x302010, 0.5);
  EXPECT_TRUE(bytes(0) == 255 && bytes(0, 0, 0, 0, 1) == 100 && bytes(1, 0, 0, 0, 2) == 0x30);
  ZUMDrawMask(bytes, mask, 0x302012, 0.5);
  EXPECT_TRUE(bytes(0) == 136 && bytes(0, 0, 0, 0, 2) == 74);
  ZUMDrawMask(bytes, mask, 0x302012);
  EXPECT_TRUE(bytes(0) == 0x12 && bytes(0, 0, 0, 0, 2) == 0x30);
  // Over itself, and over a region that leaves points out.
  ZUMImage<ZUMByte> row(new OtherRegion(ZUMRect(0, 0, 0, 0, 9, 0, 0, 0)), 1, ZUMByte{0});
  for (int x = 0; x < 10; ++x) row(x) = static_cast<ZUMByte>(x);
  ZUMDrawImage(row, row.Cut(ZUMRect(0, 0, 0, 0, 7, 0, 0, 0)), {2, 0}, 0);
  for (int x = 0; x < 10; ++x) EXPECT_EQ(row(x), x < 2 ? x : x - 2);
  ZUMDrawImage(bytes, row, 2);
  EXPECT_EQ(bytes(1, 0, 0, 0, 2), 1);
}

TEST(Drawing, RefusalsLeaveTheImageAsItIs) {
  ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 3, 3, 1, 0), 2, ZUMByte{0});
  ZUMImage<double> one(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 0.0), two(one, 2, 0.0);
  const ZUMImage<ZUMBool> mask(image, 1, true);
  const ZUMRect flat(0, 0, 0, 0, 3, 3, 0, 0), deep(0, 0, 0, 0, 3, 3, 1, 0);
  const Point p[] = {{0, 0}, {3, 0}, {3, 3, 1}}, out(4, 0);
  const double m[2][3] = {};
  const auto odd = static_cast<ZUMInterpolation>(2);
  const char* const negative = "negative number of channel";
  const char* const beyond = "out of channel range";
  const char* const line = "ZUMDrawLine: Out of channel range";
  const char* const plane = "ZUMDrawLine only draws line on a X-Y plane";
  const char* const radius = "ZUMDrawCircle: Radius less than zero";
  const std::pair<const char*, std::function<void()>> refusals[] = {
      {negative, [&] { ZUMDrawImage(image, image, -1); }},
      {beyond,
       [&] {
         ZUMDrawImage(image, image, {1, 0}, 1);
       }},
      {negative, [&] { ZUMDrawMask(image, mask, 1, kLow); }},
      {beyond, [&] { ZUMDrawMask(image, mask, 1, 0.5, 2); }},
      {beyond, [&] { ZUMDrawMask(image, mask, 0xFFFFFF); }},
      {"ZUMWarpAffine2D: Unknown interpolation method",
       [&] { ZUMDrawWarpAffine2D(image, image, m, odd, 0); }},
      {line, [&] { ZUMDrawLine(image, p[0], p[2], 1, 2); }},
      {line, [&] { ZUMDrawLine(image, p[0], p[1], 0xFFFFFF); }},
      {plane, [&] { ZUMDrawLine(image, p[0], p[2], 1, 0); }},
      {"ZUMAddLine: Out of channel range", [&] { ZUMAddLine(image, p[0], p[2], 1, -1); }},
      {"ZUMAddLine only draws line on a X-Y plane", [&] { ZUMAddLine(image, p[0], p[2], 1, 0); }},
      {"ZUMGetLine: Out of channel range (2)", [&] { ZUMGetLine(image, p[0], p[2], 2); }},
      {"ZUMGetLine only reads lines on a X-Y plane", [&] { ZUMGetLine(image, out, p[2]); }},
      {"ZUMGetLine: Line out of image P0(4,0,0,0)", [&] { ZUMGetLine(image, out, p[0]); }},
      {"ZUMGetLine: Line out of image P1(4,0,0,0)", [&] { ZUMGetLine(image, p[0], out, 1); }},
      {"ZUMAddGradientLine only allows images with one channel",
       [&] { ZUMAddGradientLine(two, two, p[0], p[2], 1); }},
      {"ZUMAddGradientLine only allows gradient images with two channels",
       [&] { ZUMAddGradientLine(one, one, p[0], p[2], 1); }},
      {"ZUMAddGradientLine only draws line on a X-Y plane",
       [&] { ZUMAddGradientLine(one, two, p[0], p[2], 1); }},
      {plane, [&] { ZUMDrawRect(image, deep, 1, 0); }},
      {"ZUMImage<PixT>::Channel: channel 2 out of image",
       [&] { ZUMDrawFilledRect(image, flat, 1); }},
      {line, [&] { ZUMDrawCircle(image, p[0], -1, 1, 2); }},
      {line, [&] { ZUMDrawFilledCircle(image, p[0], 1, 1); }},
      {radius, [&] { ZUMDrawFilledCircle(image, p[0], kLow, 1, 0); }},
      {radius, [&] { ZUMCircleIm(kLow); }},
      {"ZUMDrawFilledEllipse: Out of channel range",
       [&] { ZUMDrawFilledEllipse(image, deep, 1, 2); }},
      {"ZUMDrawFilledEllipse only draws ellipses on a X-Y plane",
       [&] { ZUMDrawFilledEllipse(image, deep, 1, 0); }},
      {"ZUMDrawPolygon: Out of channel range", [&] { ZUMDrawPolygon(image, p, 2, 1, 2); }},
      {"ZUMDrawPolygon: few points", [&] { ZUMDrawPolygon(image, p, 2, 1, 0); }},
      {plane, [&] { ZUMDrawPolygon(image, p, 3, 1, 0); }},
      {"ZUMDrawFilledPolygon: Out of channel range",
       [&] { ZUMDrawFilledPolygon(image, p, 3, 1, -1); }},
      {"ZUMDrawFilledPolygon: few points", [&] { ZUMDrawFilledPolygon(image, nullptr, 3, 1, 0); }},
      {plane, [&] { ZUMDrawFilledPolygon(image, p, 3, 1, 0); }},
  };
  for (const auto& [text, draw] : refusals) {
    EXPECT_EQ(MessageOf(draw), text);
    EXPECT_TRUE(SameImage(image, ZUMImage<ZUMByte>(image, 2, 0))) << text;
  }
}

}  // namespace
