#include "zuml/algebra/medianmasked.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

// The lower median by sorting; `missing` if there is no value.
template <class P>
P SortMedian(std::vector<P> values, P missing) {
  if (values.empty()) return missing;
  std::sort(values.begin(), values.end());
  return values[(values.size() - 1) / 2];
}

template <class P>
class MedianMasked : public testing::Test {};
TYPED_TEST_SUITE(MedianMasked, ScalarTypes);

TYPED_TEST(MedianMasked, OfThePixelsThatTheMaskLeaves) {
  using P = TypeParam;
  ForEachLayout<P>(2, [&](const ZUMImage<P>& image, Random& random) {
    ZUMRect mask_box = image.Rect();
    mask_box.begin.x -= random.Int(0, 2);
    mask_box.end.y += random.Int(0, 2);
    mask_box.begin.y = mask_box.end.y - random.Int(0, 8);
    const auto mask = MakeRandomImage<bool>(random, mask_box, 2, DrawLayout(random));
    const auto element =
        MakeRandomImage<bool>(random, MakeRandomBox(random, 3, 3, 2), 1, DrawLayout(random));
    element(element.Begin()) = true;
    const ZUMRoDRef shared = Intersection(image, mask);
    std::vector<P> all;
    ForEachPoint(shared, 2, [&](auto... at) {
      if (!mask(at...)) all.push_back(image(at...));
    });
    EXPECT_EQ(SortMedian(all, P{}), all.empty() ? P{} : ZUMMedianMasked(image, mask));
    // The element may lie beside the origin, and its results beside the image.
    const ZUMRect e = element.Rect();
    const ZUMRoDRef rod = DisplaceSides(shared, -e.begin.x, -e.begin.y, -e.begin.z, 0, -e.end.x,
                                        -e.end.y, -e.end.z, 0);
    const auto expected = MakeByPoint<P>(rod, 2, [&](int x, int y, int z, int t, int c) {
      std::vector<P> values;
      ForEachPoint(element, 1, [&](int dx, int dy, int dz, int, int) {
        if (element(dx, dy, dz) && !mask(x + dx, y + dy, z + dz, t, c)) {
          values.push_back(image(x + dx, y + dy, z + dz, t, c));
        }
      });
      return SortMedian(values, image.InP(x, y, z, t) ? image(x, y, z, t, c) : P{});
    });
    EXPECT_TRUE(SameImage(ZUMMedianMasked(image, element, mask), expected));
  });
}

TEST(MedianMaskedValues, NaNsComeLast) {
  const ZUMImage<bool> mask(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), 1, false);
  EXPECT_EQ(7, ZUMMedianMasked(MakeLine<double>({kNaN, 7, kNaN, 3}), mask));
  EXPECT_TRUE(std::isnan(ZUMMedianMasked(MakeLine<double>({kNaN, 7, kNaN, kNaN}), mask)));
}

TEST(MedianMaskedValues, Refused) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, ZUMByte{1});
  const ZUMImage<bool> mask(image, 1, true), two(image, 2, true), none(image, 1, false);
  const std::string kChannels =
      "ZUMMedianMasked: im and mask don't have the same number of channels";
  EXPECT_EQ(kChannels, MessageOf([&] { ZUMMedianMasked(image, two); }));
  EXPECT_EQ(kChannels, MessageOf([&] { ZUMMedianMasked(image, mask, two); }));
  EXPECT_EQ("ZUMMedianMasked: Multichannel structuring elements are not allowed",
            MessageOf([&] { ZUMMedianMasked(image, two, two); }));
  EXPECT_EQ("ZUMMedianMasked:Valor indefinido por imagen vacia",
            MessageOf([&] { ZUMMedianMasked(image, mask); }));
  EXPECT_NE("", MessageOf([&] { ZUMMedianMasked(image, none, mask); }));
}

}  // namespace
