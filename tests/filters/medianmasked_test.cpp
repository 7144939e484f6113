#include "zuml/filters/medianmasked.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/everylayout.h"
#include "zuml/algebra/logic.h"

namespace {

using namespace zuml_test;

TEST(MedianMasked, OfThePixelsThatTheMaskLeaves) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random& random) {
    const ZUMRect box = MakeOverlappingBox(random, image.Rect());
    const auto mask = MakeRandomImage<bool>(random, box, 2, DrawLayout(random));
    std::vector<P> values;
    const auto take = [&](auto... at) {
      if (!mask(at...)) values.push_back(image(at...));
    };
    const auto median = [&](P missing) {
      std::sort(values.begin(), values.end());
      return values.empty() ? missing : values[(values.size() - 1) / 2];
    };
    const ZUMRoDRef shared = Intersection(image, mask);
    ForEachPoint(shared, 2, take);
    EXPECT_EQ(median(P{}), values.empty() ? P{} : ZUMMedianMasked(image, mask));
    // Beside the origin the element gives results beside the image.
    const ZUMImage<bool> element = DrawElement(random);
    const ZUMRoDRef rod = ShrinkBy(shared, element, element);
    const auto expected = MakeByPoint<P>(rod, 2, [&](int x, int y, int z, int t, int c) {
      values.clear();
      ForEachPoint(element, 1, [&](int i, int j, int k, int, int) {
        if (element(i, j, k)) take(x + i, y + j, z + k, t, c);
      });
      return median(image.InP(x, y, z, t) ? image(x, y, z, t, c) : P{});
    });
    EXPECT_TRUE(SameImage(ZUMMedianMasked(image, element, mask), expected));
  };
  ForEachLayout(ScalarTypes(), {2}, kAnyPixel, check);
}

TEST(MedianMasked, EdgesAndErrors) {
  const ZUMImage<bool> none(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), 1, false), all = !none,
                                                                        two(none, 2, false);
  EXPECT_EQ(7, ZUMMedianMasked(MakeLine<double>({kNaN, 7, kNaN, 3}), none));
  EXPECT_TRUE(std::isnan(ZUMMedianMasked(MakeLine<double>({kNaN, 7, kNaN, kNaN}), none)));
  const std::string channels = ": im and mask don't have the same number of channels";
  const auto expect = [](const std::string& text, auto... operands) {
    EXPECT_EQ("ZUMMedianMasked" + text, MessageOf([&] { ZUMMedianMasked(operands...); }));
  };
  expect(channels, all, two);
  expect(channels, all, all, two);
  expect(": Multichannel structuring elements are not allowed", all, two, two);
  expect(":Valor indefinido por imagen vacia", all, all);
}

}  // namespace
