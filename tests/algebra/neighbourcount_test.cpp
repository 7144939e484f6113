#include "zuml/algebra/neighbourcount.h"

#include <algorithm>
#include <vector>

#include "tests/algebra/operand_forms.h"

namespace {

using namespace zuml_test;

// The pixels under the element, in order: the count is then a walk over two sorted lists.
template <class P>
std::vector<P> GetNeighbours(const ZUMImage<P>& image, const ZUMImage<bool>& element, int x, int y,
                             int z, int t, int c) {
  std::vector<P> pixels;
  ForEachPoint(element, 1, [&](int ex, int ey, int ez, int et, int) {
    if (element(ex, ey, ez, et)) pixels.push_back(image(x + ex, y + ey, z + ez, t + et, c));
  });
  std::sort(pixels.begin(), pixels.end());
  return pixels;
}

TEST(NeighbourCount, CountsThePairs) {
  ForTypes<bool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>([]<class P>() {
    Random random(13);
    for (int k = 0; k < 24; ++k) {
      const ZUMImage<P> image =
          MakeRandomImage<P>(random, ZUMRect(-4, 3, -1, 0, 30, 12, 1, 1), 2, kLayouts[k % 4]);
      // Few values, so that equal pixels are common.
      ForEachPoint(image, 2, [&](auto... at) {
        if (random.Next() % 2) image(at...) = static_cast<P>(random.Int(0, 3));
      });
      ZUMImage<bool> s[2];
      for (ZUMImage<bool>& element : s) {
        element = MakeRandomImage<bool>(random, MakeRandomBox(random, 4, 3, 2), 1,
                                        kLayouts[random.Int(0, 3)]);
        element(element.BeginX(), element.BeginY(), element.BeginZ()) = true;
      }
      const auto low = [&](auto f) { return -std::min((s[0].*f)(), (s[1].*f)()); };
      const auto high = [&](auto f) { return -std::max((s[0].*f)(), (s[1].*f)()); };
      const ZUMRoDRef rod = DisplaceSides(image, low(&ZUMRoDRef::BeginX), low(&ZUMRoDRef::BeginY),
                                          low(&ZUMRoDRef::BeginZ), 0, high(&ZUMRoDRef::EndX),
                                          high(&ZUMRoDRef::EndY), high(&ZUMRoDRef::EndZ), 0);
      const auto greater = MakeByPoint<ZUMLong>(rod, 2, [&](auto... at) {
        const std::vector<P> p = GetNeighbours(image, s[0], at...);
        const std::vector<P> q = GetNeighbours(image, s[1], at...);
        ZUMLong pairs = 0;
        std::size_t below = 0;
        for (const P pixel : p) {
          while (below < q.size() && q[below] < pixel) ++below;
          pairs += static_cast<ZUMLong>(below);
        }
        return pairs;
      });
      const auto less = MakeByPoint<ZUMLong>(rod, 2, [&](auto... at) {
        return static_cast<ZUMLong>(GetNeighbours(image, s[0], at...).size() *
                                    GetNeighbours(image, s[1], at...).size()) -
               greater(at...);
      });
      EXPECT_TRUE(SameImage(ZUMGreaterCnt(image, s[0], s[1]), greater));
      EXPECT_TRUE(SameImage(ZUMLessCnt(image, s[0], s[1]), less));
    }
  });
}

TEST(NeighbourCount, EdgesAndErrors) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 5, 5, 0, 0), 2, 7);
  const ZUMImage<bool> one(ZUMRect(0, 0, 0, 0, 0, 0, 0, 0), 1, true);
  const ZUMImage<bool> large(ZUMRect(-9, -9, 0, 0, 9, 9, 0, 0), 1, true), two(one, 2, true);
  EXPECT_EQ(ZUMGreaterCnt(image, one, large).NPixels(), 0);
  EXPECT_EQ(MessageOf([&] { ZUMGreaterCnt(image, two, one); }),
            "ZUMGreaterCnt: Multichannel structuring elements are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMLessCnt(image, one, two); }),
            "ZUMLessCnt: Multichannel structuring elements are not allowed");
}

}  // namespace
