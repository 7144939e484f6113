#include "zuml/algebra/extrema.h"

#include <cmath>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

// A pixel of few values, so that many are equal; among reals zeros of both signs and what is no
// number.
template <class P>
P DrawFewValued(Random& random) {
  static constexpr double kReals[] = {0, -0.0, 1, 1, -1, kInfinity, -kInfinity, kNaN};
  if constexpr (std::floating_point<P>) {
    return static_cast<P>(kReals[random.Int(0, random.Int(0, 1) == 0 ? 2 : 7)]);
  } else {
    return random.Int(0, 20) == 0 ? random.Pixel<P>() : static_cast<P>(random.Int(0, 1));
  }
}

// The extreme pixel by strict comparison in sweep order.
template <class P, class Better>
ZUMBasePoint<int> FindSlowly(const ZUMImage<P>& image, P& best, Better better) {
  ZUMBasePoint<int> found = image.Begin();
  best = image(found);
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    if (!better(image(x, y, z, t, c), best)) return;
    best = image(x, y, z, t, c);
    found = ZUMBasePoint<int>(x, y, z, t);
  });
  return found;
}

template <class P>
class Extrema : public testing::Test {};
TYPED_TEST_SUITE(Extrema, OrderedTypes);

TYPED_TEST(Extrema, FirstInSweepOrder) {
  using P = TypeParam;
  const auto check = [](const ZUMImage<P>& image, Random& random) {
    P max, min, low, high;
    const ZUMBasePoint<int> max_at = FindSlowly(image, max, std::greater<P>());
    const ZUMBasePoint<int> min_at = FindSlowly(image, min, std::less<P>());
    ZUMMinMax(image, low, high);
    EXPECT_TRUE(SameBits(max, ZUMMax(image)) && SameBits(max, high)) << max;
    EXPECT_TRUE(SameBits(min, ZUMMin(image)) && SameBits(min, low)) << min;
    if constexpr (ZUMScalarPixel<P>) {
      if (image.GetCSz() != 1) return;
      EXPECT_EQ(max_at, ZUMSearchMax(image));
      EXPECT_EQ(min_at, ZUMSearchMin(image));
      const P value = random.Int(0, 1) == 0 ? min : DrawFewValued<P>(random);
      bool found = false;
      ZUMBasePoint<int> expected(91, 92, 93, 94), point = expected;
      ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
        if (!found && image(x, y, z, t) == value) expected = ZUMBasePoint<int>(x, y), found = true;
      });
      EXPECT_EQ(found, ZUMSearchEqual(image, value, point));
      EXPECT_EQ(expected, point);
    }
  };
  for (int csz : {1, 2}) {
    ForEachLayout<P>(csz, check);
    ForEachLayout<P>(csz, DrawFewValued<P>, check);
  }
}

TEST(ExtremaOfParts, WrappedBoolPixelsAreTrueOrFalse) {
  // Any byte but 0 is true, and none is more true than another.
  unsigned char bytes[100];
  std::fill(bytes, bytes + 100, 2);
  bytes[90] = 255;
  const ZUMRect box(0, 0, 0, 0, 99, 0, 0, 0);
  const ZUMImage<bool> image(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  EXPECT_EQ(ZUMBasePoint<int>(0, 0), ZUMSearchMax(image));
  bytes[95] = 0;
  EXPECT_EQ(ZUMBasePoint<int>(95, 0), ZUMSearchMin(image));
}

TEST(ExtremaOfParts, RefuseWhatHasNone) {
  const ZUMImage<ZUMShort> empty, two(ZUMEmptyRoD, 2, ZUMShort{0});
  ZUMShort low = 5, high = 6;
  ZUMBasePoint<int> point;
  const std::pair<std::string, std::string> kMessages[] = {
      {"ZUMMax:Valor indefinido por imagen vacia", MessageOf([&] { ZUMMax(empty); })},
      {"ZUMMin:Valor indefinido por imagen vacia", MessageOf([&] { ZUMMin(two); })},
      {"ZUMMinMax:Valor indefinido por imagen vacia",
       MessageOf([&] { ZUMMinMax(empty, low, high); })},
      {"ZUMSearchMax: It not works width empty images", MessageOf([&] { ZUMSearchMax(empty); })},
      {"ZUMSearchMin: It not works width empty images", MessageOf([&] { ZUMSearchMin(empty); })},
      {"ZUMSearchMax: It only allows single channel images", MessageOf([&] { ZUMSearchMax(two); })},
      {"ZUMSearchMin: It only allows images of a one channel",
       MessageOf([&] { ZUMSearchMin(two); })},
      {"ZUMSearchEqual: only it allows images of a one channel",
       MessageOf([&] { ZUMSearchEqual(two, 0, point); })}};
  for (const auto& [expected, message] : kMessages) EXPECT_EQ(expected, message);
}

}  // namespace
