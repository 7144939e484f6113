#include "zuml/algebra/conditional.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

// All forms, with a mask of one channel and with one of as many as the images.
TEST(Conditional, ChoosesByTheMask) {
  ForTypes(AlgebraTypes(), []<class P>() {
    Random random(11);
    for (const int masks : {1, 3}) {
      ForEachOperands<P>(3, 3, [&](const ZUMImage<P>& a, const ZUMImage<P>& b, P n) {
        const ZUMImage<bool> cond = MakeRandomImage<bool>(
            random, MakeOverlappingBox(random, a.Rect()), masks, DrawLayout(random));
        const P m = EdgePixel<P>(random);
        const auto expect = [&](const ZUMImage<P>& result, const ZUMRoDRef& rod, int csz,
                                auto pixel_a, auto pixel_b) {
          ExpectPixels(result, rod, csz, [&](int x, int y, int z, int t, int c) {
            return cond(x, y, z, t, masks == 1 ? 0 : c) ? pixel_a(x, y, z, t, c)
                                                        : pixel_b(x, y, z, t, c);
          });
        };
        const auto from_m = [&](auto...) { return m; };
        const auto from_n = [&](auto...) { return n; };
        expect(ZUMImIf(cond, a, b), Intersection(Intersection(cond, a), b), 3, a, b);
        expect(ZUMImIf(cond, a, n), Intersection(cond, a), 3, a, from_n);
        expect(ZUMImIf(cond, n, b), Intersection(cond, b), 3, from_n, b);
        expect(ZUMImIf(cond, m, n), cond, masks, from_m, from_n);
      });
    }
  });
}

TEST(Conditional, LiteralsAndForeignBools) {
  unsigned char bytes[] = {0, 1, 2, 255};
  const ZUMRoDRef rod(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0));
  const ZUMImage<bool> cond(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  const ZUMImage<ZUMByte> image = MakeLine<ZUMByte>({10, 11, 12, 13});
  EXPECT_TRUE(SameImage(ZUMImIf(cond, image, 0), MakeLine<ZUMByte>({0, 11, 12, 13})));
  EXPECT_TRUE(SameImage(ZUMImIf(cond, 5, 7), MakeLine<ZUMLong>({7, 5, 5, 5})));
  EXPECT_TRUE(SameImage(ZUMImIf<ZUMByte>(cond, 5, 7), MakeLine<ZUMByte>({7, 5, 5, 5})));
  EXPECT_TRUE(SameImage(ZUMImIf(cond, cond, true), MakeLine<bool>({true, true, true, true})));
}

TEST(Conditional, ChannelsMustFit) {
  const ZUMImage<ZUMShort> one(ZUMRect(), 1, 0), three(ZUMRect(), 3, 0);
  const ZUMImage<bool> mask(ZUMRect(), 1, true), mask2(ZUMRect(), 2, true);
  const std::string text = "ZUMImIf: Diferent number of channels";
  EXPECT_EQ(MessageOf([&] { ZUMImIf(mask, one, three); }), text);
  EXPECT_EQ(MessageOf([&] { ZUMImIf(mask2, three, three); }), text);
  EXPECT_EQ(MessageOf([&] { ZUMImIf(mask2, one, 0); }), text);
  EXPECT_EQ(MessageOf([&] { ZUMImIf(mask2, 0, three); }), text);
}

}  // namespace
