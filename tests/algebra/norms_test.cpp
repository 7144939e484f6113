#include "zuml/algebra/norms.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Norms, AddTheChannels) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random&) {
    using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
    using Sum = std::conditional_t<std::integral<P>, std::uint64_t, P>;
    // Channel 0 comes first, then the others from the last one down.
    const auto fold = [&](auto term, auto x, auto... at) {
      auto sum = term(image(x, at..., 0));
      for (int c = image.GetCSz() - 1; c > 0; --c) sum += term(image(x, at..., c));
      return sum;
    };
    const auto square = [](auto v) { return v * v; };
    ExpectPixels(ZUMNorm(image), image, 1, [&](int x, int y, int z, int t, int) {
      return std::sqrt(fold([&](P v) { return square(static_cast<double>(v)); }, x, y, z, t));
    });
    ExpectPixels(ZUMSqrNorm<Out>(image), image, 1, [&](int x, int y, int z, int t, int) {
      return static_cast<Out>(fold([&](P v) { return square(static_cast<Sum>(v)); }, x, y, z, t));
    });
    ExpectPixels(ZUMNormL1<Out>(image), image, 1, [&](int x, int y, int z, int t, int) {
      const auto magnitude = [](P v) {
        return static_cast<Sum>(std::fabs(static_cast<double>(v)));
      };
      return static_cast<Out>(fold(magnitude, x, y, z, t));
    });
  };
  ForEachLayout(GreyTypes(), {1, 2, 4}, kAnyPixel, check);
}

TEST(Norms, WorkedByHand) {
  EXPECT_EQ(7, ZUMNormL1<ZUMLong>(MakeLine<ZUMShort>({-3, 4}, 0, 2))(0));
  // The last channel comes second: 1 and 1 make 2, which does not get lost beside 1e16.
  EXPECT_EQ(10000000000000002.0, ZUMNormL1<ZUMReal>(MakeLine<double>({1, 1e16, 1}, 0, 3))(0));
  // Of no channel, the empty sum.
  const ZUMImage<ZUMReal> none(ZUMRect(2, 0, 0, 0, 5, 1, 0, 0), 0, nullptr), zero(none, 1, 0.0);
  EXPECT_TRUE(SameImage(ZUMNorm(none), zero));
  EXPECT_TRUE(SameImage(ZUMSqrNorm<ZUMReal>(none), zero));
  EXPECT_TRUE(SameImage(ZUMNormL1<ZUMReal>(none), zero));
}

}  // namespace
