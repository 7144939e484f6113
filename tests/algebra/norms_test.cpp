#include "zuml/algebra/norms.h"

#include <cmath>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

template <class P>
class Norms : public testing::Test {};
TYPED_TEST_SUITE(Norms, GreyTypes);

TYPED_TEST(Norms, AddTheChannels) {
  using P = TypeParam;
  using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
  using Sum = std::conditional_t<std::integral<P>, std::uint64_t, P>;
  for (int csz : {1, 2, 4}) {
    ForEachLayout<P>(csz, [&](const ZUMImage<P>& image, Random&) {
      const ZUMImage<ZUMReal> norm(image, 1, 0.0);
      const ZUMImage<Out> square(image, 1, Out{}), magnitude(image, 1, Out{});
      ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
        double n = 0;
        Sum s{}, m{};
        for (int c = 0; c < csz; ++c) {
          const P v = image(x, y, z, t, c == 0 ? 0 : csz - c);
          n += static_cast<double>(v) * static_cast<double>(v);
          s += static_cast<Sum>(v) * static_cast<Sum>(v);
          m += static_cast<Sum>(std::fabs(static_cast<double>(v)));
        }
        norm(x, y, z, t) = std::sqrt(n);
        square(x, y, z, t) = static_cast<Out>(s);
        magnitude(x, y, z, t) = static_cast<Out>(m);
      });
      EXPECT_TRUE(SameImage(ZUMNorm(image), norm));
      EXPECT_TRUE(SameImage(ZUMSqrNorm<Out>(image), square));
      EXPECT_TRUE(SameImage(ZUMNormL1<Out>(image), magnitude));
    });
  }
}

TEST(NormValues, WorkedByHand) {
  EXPECT_EQ(3, ZUMNorm(MakeLine<ZUMShort>({-3}))(0));
  EXPECT_EQ(7, ZUMNormL1<ZUMLong>(MakeLine<ZUMShort>({-3, 4}, 0, 2))(0));
  // The last channel comes second: 1 and 1 make 2, which does not get lost beside 1e16.
  EXPECT_EQ(10000000000000002.0, ZUMNormL1<ZUMReal>(MakeLine<double>({1, 1e16, 1}, 0, 3))(0));
  EXPECT_EQ(10000000000000002.0, ZUMSqrNorm<ZUMReal>(MakeLine<double>({1, 1e8, 1}, 0, 3))(0));
}

}  // namespace
