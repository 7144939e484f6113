#include "zuml/algebra/neighbourcount.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

// The number of pairs at each pixel for which the comparison holds.
template <class P, class Compare>
void ExpectCounts(const ZUMImage<ZUMLong>& result, const ZUMImage<P>& image,
                  const ZUMImage<bool>& s1, const ZUMImage<bool>& s2, Compare compare) {
  ExpectPixels(result, ShrinkBy(image, s1, s2), 2, [&](int x, int y, int z, int t, int c) {
    ZUMLong pairs = 0;
    ForEachPoint(s1, 1, [&](int i, int j, int k, int, int) {
      if (!s1(i, j, k)) return;
      const P p = image(x + i, y + j, z + k, t, c);
      ForEachPoint(s2, 1, [&](int l, int m, int n, int, int) {
        pairs += s2(l, m, n) && compare(p, image(x + l, y + m, z + n, t, c));
      });
    });
    return pairs;
  });
}

TEST(NeighbourCount, CountsThePairs) {
  const auto make = []<class P>(Random& random) { return static_cast<P>(random.Int(0, 3)); };
  ForEachLayout(ScalarTypes(), {2}, make, []<class P>(const ZUMImage<P>& image, Random& random) {
    const ZUMImage<bool> a = DrawElement(random), b = DrawElement(random);
    ExpectCounts(ZUMGreaterCnt(image, a, b), image, a, b, std::greater<P>());
    ExpectCounts(ZUMLessCnt(image, a, b), image, a, b, std::less_equal<P>());
  });
  const ZUMImage<bool> one(ZUMRect(), 1, true), two(ZUMRect(), 2, true);
  const std::string text = "Cnt: Multichannel structuring elements are not allowed";
  EXPECT_EQ(MessageOf([&] { ZUMGreaterCnt(one, two, one); }), "ZUMGreater" + text);
  EXPECT_EQ(MessageOf([&] { ZUMLessCnt(one, one, two); }), "ZUMLess" + text);
}

}  // namespace
