#include "zuml/algebra/projections.h"

#include "tests/support/everylayout.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;

// Compares with the lines along an axis folded into one pixel each, from `start` on.
template <class Out, class P, class Fold>
void Expect(const ZUMImage<Out>& projection, const ZUMImage<P>& image, Axis axis, Out start,
            Fold fold) {
  ZUMRect box = image.Rect();
  box.begin.*axis = box.end.*axis = 0;
  const ZUMImage<Out> expected(box, image.GetCSz(), start);
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    ZUMBasePoint<int> at(x, y, z, t);
    at.*axis = 0;
    expected(at, c) = fold(expected(at, c), image(x, y, z, t, c));
  });
  EXPECT_TRUE(SameImage(projection, expected));
}

TEST(Projections, FoldLinesOntoCoordinate0) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random&) {
    using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
    const ZUMImage<Out> sums[] = {ZUMProjectX<Out>(image), ZUMProjectY<Out>(image),
                                  ZUMProjectZ<Out>(image), ZUMProjectT<Out>(image)};
    const ZUMImage<P> maxima[] = {ZUMProjectMaxX(image), ZUMProjectMaxY(image),
                                  ZUMProjectMaxZ(image), ZUMProjectMaxT(image)};
    const ZUMImage<P> minima[] = {ZUMProjectMinX(image), ZUMProjectMinY(image),
                                  ZUMProjectMinZ(image), ZUMProjectMinT(image)};
    const P least = std::numeric_limits<P>::lowest(), most = std::numeric_limits<P>::max();
    const auto add = [](Out sum, P v) { return ZUMWrapAdd(sum, static_cast<Out>(v)); };
    for (int a = 0; a < 4; ++a) {
      Expect(sums[a], image, kAxes[a], Out{}, add);
      Expect(maxima[a], image, kAxes[a], least, [](P best, P v) { return v > best ? v : best; });
      Expect(minima[a], image, kAxes[a], most, [](P best, P v) { return v < best ? v : best; });
    }
  };
  ForEachLayout(ScalarTypes(), {2}, kAnyPixel, check);
  const auto reals = MakeLine<double>({-kInfinity, kNaN});
  EXPECT_EQ(std::numeric_limits<double>::lowest(), ZUMProjectMaxX(reals)(0));
  EXPECT_EQ(-kInfinity, ZUMProjectMinX(reals)(0));
  EXPECT_TRUE(ZUMProjectMinX(ZUMImage<ZUMByte>()).EmptyP());
}

}  // namespace
