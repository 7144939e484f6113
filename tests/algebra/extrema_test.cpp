#include "zuml/algebra/extrema.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

// Of few values, so that many are equal; among reals zeros of both signs and what is no number.
constexpr auto kFewValues = []<class P>(Random& random) {
  constexpr double kReals[] = {0, -0.0, 1, 1, -1, kInfinity, -kInfinity, kNaN};
  if (std::floating_point<P>) return static_cast<P>(kReals[random.Int(0, 2 + random.Int(0, 5))]);
  return random.Int(0, 20) == 0 ? random.Pixel<P>() : static_cast<P>(random.Int(0, 1));
};

// The first point whose pixel no other is better than, by strict comparison in sweep order.
template <class P, class Better>
ZUMBasePoint<int> FindSlowly(const ZUMImage<P>& image, P& best, Better better) {
  ZUMBasePoint<int> found = image.Begin();
  best = image(found);
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    if (!better(image(x, y, z, t, c), best)) return;
    best = image(x, y, z, t, c), found = ZUMBasePoint<int>(x, y, z, t);
  });
  return found;
}

TEST(Extrema, FirstInSweepOrder) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random& random) {
    P max, min, low, high;
    FindSlowly(image, max, std::greater<P>());
    FindSlowly(image, min, std::less<P>());
    ZUMMinMax(image, low, high);
    EXPECT_TRUE(SameBits(max, ZUMMax(image)) && SameBits(max, high)) << max;
    EXPECT_TRUE(SameBits(min, ZUMMin(image)) && SameBits(min, low)) << min;
    if constexpr (ZUMScalarPixel<P>) {
      const ZUMImage<P> one = image.Channel(1);
      EXPECT_EQ(FindSlowly(one, max, std::greater<P>()), ZUMSearchMax(one));
      EXPECT_EQ(FindSlowly(one, min, std::less<P>()), ZUMSearchMin(one));
      const P value = random.Int(0, 1) == 0 ? min : kFewValues.template operator()<P>(random);
      const auto equal = [value](P v, P best) { return v == value && best != value; };
      ZUMBasePoint<int> point(91, 92, 93, 94), expected = FindSlowly(one, max, equal);
      expected = max == value ? ZUMBasePoint<int>(expected.x, expected.y) : point;
      EXPECT_EQ(max == value, ZUMSearchEqual(one, value, point));
      EXPECT_EQ(expected, point);
    }
  };
  ForEachLayout(OrderedTypes(), {2}, kFewValues, check);
}

TEST(Extrema, OfNothingAreRefused) {
  const ZUMImage<ZUMShort> empty, two(ZUMEmptyRoD, 2, ZUMShort{0}), none(ZUMRect(), 0, nullptr);
  ZUMShort low, high;
  ZUMBasePoint<int> point;
  const auto expect = [](const char* text, auto call) { EXPECT_EQ(text, MessageOf(call)); };
  expect("ZUMMax:Valor indefinido por imagen vacia", [&] { ZUMMax(none); });
  expect("ZUMMin:Valor indefinido por imagen vacia", [&] { ZUMMin(two); });
  expect("ZUMMinMax:Valor indefinido por imagen vacia", [&] { ZUMMinMax(empty, low, high); });
  expect("ZUMSearchMax: It not works width empty images", [&] { ZUMSearchMax(empty); });
  expect("ZUMSearchMin: It not works width empty images", [&] { ZUMSearchMin(empty); });
  expect("ZUMSearchMax: It only allows single channel images", [&] { ZUMSearchMax(two); });
  expect("ZUMSearchMin: It only allows images of a one channel", [&] { ZUMSearchMin(two); });
  expect("ZUMSearchEqual: only it allows images of a one channel",
         [&] { ZUMSearchEqual(two, 0, point); });
}

}  // namespace
