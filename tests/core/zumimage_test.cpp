#include "zuml/core/zumimage.h"

#include <gtest/gtest.h>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"
#include "zuml/core/zumrodrect.h"

using namespace zuml_test;

namespace {

const ZUMRect kBox(-2, 3, 1, -1, 2, 6, 2, 1);
const ZUMRect kFrame(1, 2, 0, 1, 0, 1, 2, 0);

template <class P>
class ImageTest : public testing::Test {};
TYPED_TEST_SUITE(ImageTest, AllTypes);

TYPED_TEST(ImageTest, DefaultImagesAreNoImage) {
  using P = TypeParam;
  ZUMImage<P> image(kBox, 2, P()), view = image.Row(4).Channel(1);
  image.Clean();
  view(0, 4, 1, 1) = P();  // the block lives on
  for (const auto& none : {ZUMImage<P>(), image, ZUMCopy(image)}) {
    EXPECT_EQ(none.RoD(), ZUMEmptyRoD.RoD());
    EXPECT_TRUE(none.GetCSz() == 1 && none.GetData() == nullptr);
    EXPECT_EQ(none.GetType(), ZUMPixelTraits<P>::kType);
    EXPECT_TRUE(none.Row(0).EmptyP() && none.Cut(kBox).Plane(1).Frame(1).EmptyP());
  }
}

TYPED_TEST(ImageTest, IsBuiltFromAValueOrFromPackedPixels) {
  using P = TypeParam;
  Random random(7);
  const ZUMRoDRef rod(kBox);
  const auto source = MakeRandomImage<P>(random, kBox, 2, Layout::kTight);
  P* const data = static_cast<P*>(source.GetData());
  constexpr ZUMPixelType kType = ZUMPixelTraits<P>::kType;
  const ZUMImage<P> framed(rod, kFrame, 2, data);
  EXPECT_EQ(framed.GetMPX() + kFrame.begin.x, framed.BeginX());
  EXPECT_EQ(framed.GetFrameSz(), 6 * 7 * 4);
  for (const auto& image : {framed, ZUMImage<P>(rod, 2, data), ZUMImage<P>(kBox, 2, data),
                            ZUMImage<P>({-2, 3, 1, -1, 2, 6, 2, 1}, 2, data),
                            ZUMImage<P>(ZUMGenericImage(rod, 2, kType, data)),
                            ZUMImage<P>(ZUMGenericImage(rod, kFrame, 2, kType, data))}) {
    EXPECT_TRUE(SameImage(image, source));
  }
  // A literal 0 is a value, whatever the type; a null pointer is no data.
  const auto zeros = MakeByPoint<P>(rod, 2, [](auto...) { return P(); });
  for (const auto& image :
       {ZUMImage<P>(rod, 2, 0), ZUMImage<P>(kBox, 2, 0),
        ZUMImage<P>({-2, 3, 1, -1, 2, 6, 2, 1}, 2, 0), ZUMImage<P>(rod, kFrame, 2, 0)}) {
    EXPECT_TRUE(SameImage(image, zeros));
  }
  for (const auto& image :
       {ZUMImage<P>(rod, 2, nullptr), ZUMImage<P>(kBox, 2, nullptr),
        ZUMImage<P>(rod, ZUMRect(), 2, nullptr), ZUMImage<P>(rod, 2, static_cast<P*>(nullptr))}) {
    EXPECT_EQ(image.GetRasterSz(), 2 * rod.NPixels());
  }
}

TYPED_TEST(ImageTest, SetPixelsWritesItsRegionOnly) {
  using P = TypeParam;
  Random random(8);
  const auto other = MakeRandomImage<P>(random, kBox, 3, Layout::kCut);
  const auto packed = ZUMCopy(other.Channels(0, 1));
  const P value = random.Pixel<P>();
  for (int form = 0; form < 3; ++form) {
    const auto whole = MakeRandomImage<P>(random, {-4, 2, 0, -2, 3, 8, 2, 1}, 4, Layout::kFramed);
    const ZUMImage<P> before = ZUMCopy(whole);
    ZUMImage<P> image = whole.Cut(kBox).Channels(1, 2);
    if (form == 0) image.SetPixels(other);
    if (form == 1) image.SetPixels(static_cast<P*>(packed.GetData()));
    if (form == 2) image.SetPixels(value);
    image.SetPixels(image);
    EXPECT_TRUE(SameImage(whole, MakeByPoint<P>(whole, 4, [&](int x, int y, int z, int t, int c) {
                            if (!image.InP(x, y, z, t) || c % 3 == 0) return before(x, y, z, t, c);
                            return form == 2 ? value : other(x, y, z, t, c - 1);
                          })));
  }
}

TYPED_TEST(ImageTest, ViewsShowPartsOfOneRaster) {
  using P = TypeParam;
  Random random(9);
  for (const Layout layout : kLayouts) {
    const ZUMImage<P> image = MakeRandomImage<P>(random, kBox, 3, layout);
    const auto check = [&](const ZUMImage<P>& view, const ZUMRect& box, int first, int csz) {
      EXPECT_EQ(view.GetSimpleRaster(), image.GetSimpleRaster());
      const auto shown = MakeByPoint<P>(box, csz, [&](int x, int y, int z, int t, int c) {
        return image(x, y, z, t, c + first);
      });
      EXPECT_TRUE(SameImage(view, shown));
      // A copy has the region's pixels on a raster as large as the region.
      EXPECT_TRUE(SameImage(ZUMCopy(view), shown));
      EXPECT_EQ(ZUMCopy(view).GetRasterSz(), csz * view.NPixels());
    };
    check(image.Channel(1), kBox, 1, 1);
    check(image.Channels(1, 2), kBox, 1, 2);
    check(image.Channels(1, 2).Channel(1), kBox, 2, 1);
    check(image.Cut({-9, 4, 0, 0, 0, 99, 1, 0}), {-2, 4, 1, 0, 0, 6, 1, 0}, 0, 3);
    check(image.Cut(image.Row(4)), {-2, 4, 1, -1, 2, 4, 2, 1}, 0, 3);
    check(image.Plane(2), {-2, 3, 2, -1, 2, 6, 2, 1}, 0, 3);
    check(image.Frame(-1), {-2, 3, 1, -1, 2, 6, 2, -1}, 0, 3);
    check(image.Row(7), ZUMRoDRect(-2, 7, 1, -1, 2, 6, 2, 1).Rect(), 0, 3);
  }
}

TYPED_TEST(ImageTest, RefusesWhatIsNotThere) {
  using P = TypeParam;
  ZUMImage<P> image({0, 0, 0, 0, 1, 1, 1, 1}, 3, P());
  EXPECT_EQ(&image(ZUMBasePoint2D<int>(1, 1), 2), &image(1, 1, 0, 0, 2));
  const P value = Random(10).Pixel<P>();
  image.SetPixel({0, 1, 0, 1}, 2, value);
  EXPECT_EQ(image(0, 1, 0, 1, 2), value);
  EXPECT_EQ(image.GetPixel({0, 1, 0, 1}, 2), value);
  EXPECT_EQ(MessageOf([&] { image.GetPixel(-1, 0, 1, 0, 2); }),
            "Pixel coordinates out of image (-1,0,1,0,2)");
  EXPECT_EQ(MessageOf([&] { image.SetPixel(0, 0, 0, 1, 3, P()); }),
            "Pixel coordinates out of image (0,0,0,1,3)");
  const std::string name = "ZUMImage<PixT>::Channel";
  EXPECT_EQ(MessageOf([&] { image.Channel(-1); }), name + ": channel -1 out of image");
  EXPECT_EQ(MessageOf([&] { image.Channel(3); }), name + ": channel 3 out of image");
  EXPECT_EQ(MessageOf([&] { image.Channels(-2, 7); }), name + "s: channel -2 out of image");
  EXPECT_EQ(MessageOf([&] { image.Channels(5, 3); }), name + "s: channel 3 out of image");
  EXPECT_EQ(MessageOf([&] { image.Channels(2, 1); }), name + "s: empty channels interval [2,1]");
  const std::string pixel_type = ZUMPixelTraits<P>::kName;
  for (int i = 0; i < 8; ++i) {
    const ZUMGenericImage generic(ZUMRoDRef(kBox), 2, static_cast<ZUMPixelType>(i));
    EXPECT_EQ(MessageOf([&] { const ZUMImage<P> typed = generic; }),
              generic.GetType() == image.GetType()
                  ? ""
                  : "Type Error on construction ZUMImage<" + pixel_type + ">");
  }
}

}  // namespace
