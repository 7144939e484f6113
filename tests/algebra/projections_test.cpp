#include "zuml/algebra/projections.h"

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

// Folds each line along an axis into one pixel, from `start` on.
template <class Out, class P, class Fold>
ZUMImage<Out> ProjectSlowly(const ZUMImage<P>& image, int axis, Out start, Fold fold) {
  ZUMRect box = image.Rect();
  box.begin.*kAxes[axis] = box.end.*kAxes[axis] = 0;
  const ZUMImage<Out> result(box, image.GetCSz(), start);
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    ZUMBasePoint<int> at(x, y, z, t);
    at.*kAxes[axis] = 0;
    result(at, c) = fold(result(at, c), image(x, y, z, t, c));
  });
  return result;
}

template <class P>
class Projections : public testing::Test {};
TYPED_TEST_SUITE(Projections, ScalarTypes);

TYPED_TEST(Projections, FoldLinesOntoCoordinate0) {
  using P = TypeParam;
  using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
  using Sum = std::conditional_t<std::integral<P>, std::uint32_t, P>;
  ZUMImage<Out> (*const sums[])(const ZUMImage<P>&) = {ZUMProjectX<Out, P>, ZUMProjectY<Out, P>,
                                                       ZUMProjectZ<Out, P>, ZUMProjectT<Out, P>};
  ZUMImage<P> (*const maxima[])(const ZUMImage<P>&) = {ZUMProjectMaxX<P>, ZUMProjectMaxY<P>,
                                                       ZUMProjectMaxZ<P>, ZUMProjectMaxT<P>};
  ZUMImage<P> (*const minima[])(const ZUMImage<P>&) = {ZUMProjectMinX<P>, ZUMProjectMinY<P>,
                                                       ZUMProjectMinZ<P>, ZUMProjectMinT<P>};
  const auto add = [](Out sum, P v) {
    return static_cast<Out>(static_cast<Sum>(sum) + static_cast<Sum>(v));
  };
  const auto max = [](P best, P v) { return v > best ? v : best; };
  const auto min = [](P best, P v) { return v < best ? v : best; };
  ForEachLayout<P>(2, [&](const ZUMImage<P>& image, Random&) {
    for (int a = 0; a < 4; ++a) {
      const P least = std::numeric_limits<P>::lowest(), most = std::numeric_limits<P>::max();
      EXPECT_TRUE(SameImage(sums[a](image), ProjectSlowly(image, a, Out{}, add))) << a;
      EXPECT_TRUE(SameImage(maxima[a](image), ProjectSlowly(image, a, least, max))) << a;
      EXPECT_TRUE(SameImage(minima[a](image), ProjectSlowly(image, a, most, min))) << a;
    }
  });
}

TEST(ProjectionValues, WorkedByHand) {
  EXPECT_EQ(-2, ZUMProjectMaxX(MakeLine<ZUMShort>({-5, -2, -9}, 10))(0));
  const auto reals = MakeLine<double>({-kInfinity, kNaN});
  EXPECT_EQ(std::numeric_limits<double>::lowest(), ZUMProjectMaxX(reals)(0));
  EXPECT_EQ(-kInfinity, ZUMProjectMinX(reals)(0));
  const ZUMImage<ZUMByte> empty(ZUMRect(0, 3, 0, 0, -1, 4, 0, 0), 1, ZUMByte{0});
  EXPECT_TRUE(ZUMProjectMinX(empty).EmptyP());
}

}  // namespace
