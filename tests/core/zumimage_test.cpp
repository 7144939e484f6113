#include "zuml/core/zumimage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"
#include "zuml/core/zumrodrect.h"

namespace {

using zuml_test::kLayouts;
using zuml_test::Layout;
using zuml_test::MakeByPoint;
using zuml_test::MakeRandomImage;
using zuml_test::MessageOf;
using zuml_test::Random;
using zuml_test::SameImage;

const ZUMRect kBox(-2, 3, 1, -1, 2, 6, 2, 1);
const ZUMRect kFrame(1, 2, 0, 1, 0, 1, 2, 0);

/// Every pixel of the image's block, also of channels and margins that it does not show.
template <class P>
ZUMImage<P> MakeWhole(const ZUMImage<P>& image) {
  ZUMRaster raster(image);
  raster.SetMP({});
  raster.SetMPC(0);
  raster.SetCSz(raster.GetSimpleRaster()->GetCSz());
  return {ZUMRoDRef(0, 0, 0, 0, raster.GetXSz() - 1, raster.GetYSz() - 1, raster.GetZSz() - 1,
                    raster.GetTSz() - 1),
          raster};
}

/// The pixels of the image's region in sweep order. (A vector of bool would hold no bools.)
template <class P>
std::unique_ptr<P[]> MakePacked(const ZUMImage<P>& image) {
  std::unique_ptr<P[]> packed(new P[static_cast<std::size_t>(image.NPixels() * image.GetCSz())]);
  P* next = packed.get();
  zuml_test::ForEachPoint(image, image.GetCSz(), [&](auto... at) { *next++ = image(at...); });
  return packed;
}

template <class P>
class ImageTest : public testing::Test {};
TYPED_TEST_SUITE(ImageTest, zuml_test::AllTypes);

TYPED_TEST(ImageTest, DefaultImagesAreNoImage) {
  using P = TypeParam;
  ZUMImage<P> image(ZUMRoDRef(kBox), 2, P());
  image.Clean();
  for (const ZUMImage<P>& none : {ZUMImage<P>(), image, ZUMCopy(image)}) {
    EXPECT_EQ(none.NPixels(), 0);
    EXPECT_EQ(none.RoD(), ZUMEmptyRoD.RoD());
    EXPECT_EQ(none.GetCSz(), 1);
    EXPECT_EQ(none.GetType(), ZUMPixelTraits<P>::kType);
    EXPECT_EQ(none.GetData(), nullptr);
    EXPECT_TRUE(none.Row(0).EmptyP());
    EXPECT_TRUE(none.Cut(kBox).Plane(1).Frame(1).EmptyP());
  }
}

TYPED_TEST(ImageTest, IsBuiltFromAValueOrFromPackedPixels) {
  using P = TypeParam;
  Random random(7);
  const P value = random.Pixel<P>();
  const ZUMRoDRef rod(kBox);
  const auto constant = MakeByPoint<P>(rod, 2, [&](auto...) { return value; });
  const auto zeros = MakeByPoint<P>(rod, 2, [](auto...) { return P(); });
  EXPECT_TRUE(SameImage(ZUMImage<P>(rod, 2, value), constant));
  EXPECT_TRUE(SameImage(ZUMImage<P>(kBox, 2, value), constant));
  EXPECT_TRUE(SameImage(ZUMImage<P>(rod, kFrame, 2, value), constant));
  // A literal 0 is a value too, whatever the type.
  EXPECT_TRUE(SameImage(ZUMImage<P>(rod, 2, 0), zeros));
  EXPECT_TRUE(SameImage(ZUMImage<P>(kBox, 2, 0), zeros));
  EXPECT_TRUE(SameImage(ZUMImage<P>(rod, kFrame, 2, 0), zeros));

  constexpr ZUMPixelType kType = ZUMPixelTraits<P>::kType;
  const auto source = MakeRandomImage<P>(random, kBox, 2, Layout::kTight);
  const auto packed = MakePacked(source);
  const P* const data = packed.get();
  const ZUMImage<P> framed(rod, kFrame, 2, data);
  for (const ZUMImage<P>& image :
       {framed, ZUMImage<P>(rod, 2, data), ZUMImage<P>(kBox, 2, packed.get()),
        ZUMImage<P>(ZUMGenericImage(rod, 2, kType, data)),
        ZUMImage<P>(ZUMGenericImage(rod, kFrame, 2, kType, data))}) {
    EXPECT_TRUE(SameImage(image, source));
  }
  EXPECT_EQ(framed.GetMPX() + kFrame.begin.x, framed.BeginX());
  EXPECT_EQ(framed.GetMPT() + kFrame.begin.t, framed.BeginT());
  EXPECT_EQ(framed.GetFrameSz(), 6 * 7 * 4);

  // A null pointer is no data.
  for (const ZUMImage<P>& undefined :
       {ZUMImage<P>(rod, 3, nullptr), ZUMImage<P>(kBox, 3, nullptr),
        ZUMImage<P>(rod, ZUMRect(), 3, nullptr), ZUMImage<P>(rod, 3, static_cast<P*>(nullptr)),
        ZUMImage<P>(ZUMGenericImage(rod, 3, kType, nullptr))}) {
    EXPECT_EQ(undefined.GetRasterSz(), 3 * rod.NPixels());
  }
}

TYPED_TEST(ImageTest, SetPixelsWritesItsRegionOnly) {
  using P = TypeParam;
  Random random(8);
  const auto other = MakeRandomImage<P>(random, kBox, 3, Layout::kCut);
  const auto packed = MakePacked(other.Channels(0, 1));
  const P value = random.Pixel<P>();
  for (const Layout layout : kLayouts) {
    for (int form = 0; form < 3; ++form) {
      ZUMImage<P> image = MakeRandomImage<P>(random, kBox, 2, layout);
      const ZUMImage<P> whole = MakeWhole(image), before = ZUMCopy(whole);
      if (form == 0) image.SetPixels(other);
      if (form == 1) image.SetPixels(packed.get());
      if (form == 2) image.SetPixels(value);
      const auto expected = [&](int x, int y, int z, int t, int c) {
        const int ix = x + image.GetMPX(), iy = y + image.GetMPY(), iz = z + image.GetMPZ();
        const int it = t + image.GetMPT(), ic = c + image.GetMPC();
        if (!image.InP(ix, iy, iz, it) || ic < 0 || ic > 1) return before(x, y, z, t, c);
        return form == 2 ? value : other(ix, iy, iz, it, ic);
      };
      EXPECT_TRUE(SameImage(whole, MakeByPoint<P>(whole, whole.GetCSz(), expected)));
      image.SetPixels(image);
    }
  }
}

TYPED_TEST(ImageTest, ViewsShowPartsOfOneRaster) {
  using P = TypeParam;
  Random random(9);
  for (const Layout layout : kLayouts) {
    const ZUMImage<P> image = MakeRandomImage<P>(random, kBox, 3, layout);
    const auto check = [&](const ZUMImage<P>& view, const ZUMRect& box, int first, int csz) {
      EXPECT_EQ(view.GetSimpleRaster(), image.GetSimpleRaster());
      const auto expected = [&](int x, int y, int z, int t, int c) {
        return image(x, y, z, t, c + first);
      };
      EXPECT_TRUE(SameImage(view, MakeByPoint<P>(box, csz, expected)));
    };
    check(image.Channel(1), kBox, 1, 1);
    check(image.Channels(1, 2), kBox, 1, 2);
    check(image.Channels(1, 2).Channel(1), kBox, 2, 1);
    check(image.Cut(ZUMRect(-9, 4, 0, 0, 0, 99, 1, 0)), {-2, 4, 1, 0, 0, 6, 1, 0}, 0, 3);
    check(image.Row(4), {-2, 4, 1, -1, 2, 4, 2, 1}, 0, 3);
    check(image.Plane(2), {-2, 3, 2, -1, 2, 6, 2, 1}, 0, 3);
    check(image.Frame(-1), {-2, 3, 1, -1, 2, 6, 2, -1}, 0, 3);
    check(image.Row(6).Plane(1).Frame(0).Channel(2), {-2, 6, 1, 0, 2, 6, 1, 0}, 2, 1);
    check(image.Row(7), ZUMRoDRect(-2, 7, 1, -1, 2, 6, 2, 1).Rect(), 0, 3);
    // A copy has the region's pixels on a raster as large as the region.
    const ZUMImage<P> copy = ZUMCopy(image.Channels(1, 2).Row(4));
    EXPECT_TRUE(SameImage(copy, image.Channels(1, 2).Row(4)));
    EXPECT_EQ(copy.GetRasterSz(), 2 * copy.NPixels());
    EXPECT_EQ(&image(ZUMBasePoint<int>(0, 4, 2, 1), 2), &image.Channels(1, 2)(0, 4, 2, 1, 1));
  }
  const ZUMImage<P> image(ZUMRoDRef(0, 0, 0, 0, 1, 1, 0, 0), 3, P());
  EXPECT_EQ(&image(ZUMBasePoint2D<int>(1, 1), 2), &image(1, 1, 0, 0, 2));
  EXPECT_EQ(&image(1), &image(1, 0, 0, 0, 0));
  const std::string name = "ZUMImage<PixT>::Channel";
  for (const int c : {-1, 3}) {
    const std::string out = "channel " + std::to_string(c) + " out of image";
    EXPECT_EQ(MessageOf([&] { image.Channel(c); }), name + ": " + out);
    EXPECT_EQ(MessageOf([&] { image.Channels(std::min(c, 0), std::max(c, 0)); }),
              name + "s: " + out);
  }
  EXPECT_EQ(MessageOf([&] { image.Channels(-2, 7); }), name + "s: channel -2 out of image");
  EXPECT_EQ(MessageOf([&] { image.Channels(5, 3); }), name + "s: channel 3 out of image");
  EXPECT_EQ(MessageOf([&] { image.Channels(2, 1); }), name + "s: empty channels interval [2,1]");
}

TYPED_TEST(ImageTest, TestedPixelAccess) {
  using P = TypeParam;
  Random random(10);
  ZUMImage<P> image = MakeRandomImage<P>(random, kBox, 2, Layout::kChannels);
  const P value = random.Pixel<P>();
  image.SetPixel(1, 5, 2, -1, 1, value);
  EXPECT_EQ(image(1, 5, 2, -1, 1), value);
  EXPECT_EQ(image.GetPixel(ZUMBasePoint<int>(1, 5, 2, -1), 1), value);
  const ZUMImage<P> before = ZUMCopy(image);
  const int outside[][5] = {{-3, 3, 1, -1, 0}, {0, 7, 1, -1, 0}, {0, 3, 0, -1, 0},
                            {0, 3, 1, 2, 0},   {0, 3, 1, -1, 2}, {0, 3, 1, -1, 99}};
  for (const auto& p : outside) {
    char text[80];
    std::snprintf(text, sizeof text, "Pixel coordinates out of image (%d,%d,%d,%d,%d)", p[0], p[1],
                  p[2], p[3], p[4]);
    const ZUMBasePoint<int> point(p[0], p[1], p[2], p[3]);
    EXPECT_EQ(MessageOf([&] { image.GetPixel(point, p[4]); }), text);
    EXPECT_EQ(MessageOf([&] { image.SetPixel(point, p[4], value); }), text);
  }
  EXPECT_TRUE(SameImage(image, before));
}

TYPED_TEST(ImageTest, TheTypeOfARasterIsChecked) {
  using P = TypeParam;
  const std::string text =
      std::string("Type Error on construction ZUMImage<") + ZUMPixelTraits<P>::kName + ">";
  for (int i = 0; i < 8; ++i) {
    const ZUMGenericImage generic(ZUMRoDRef(kBox), 2, static_cast<ZUMPixelType>(i));
    const std::string expected = i == ZUMPixelTraits<P>::kType ? "" : text;
    EXPECT_EQ(MessageOf([&] { ZUMImage<P>(generic, generic); }), expected);
    EXPECT_EQ(MessageOf([&] { const ZUMImage<P> image = generic; }), expected);
    EXPECT_EQ(MessageOf([&] { ZUMImage<P>() = generic; }), expected);
  }
}

TYPED_TEST(ImageTest, IsItsRegionAndItsRaster) {
  using P = TypeParam;
  ZUMImage<P> a(ZUMRoDRef(kBox), 2, P()), b(ZUMRoDRef(0, 0, 1, 0, 9, 5, 1, 0), 1, P());
  EXPECT_EQ(Intersection(a, b).Rect(), ZUMRect(0, 3, 1, 0, 2, 5, 1, 0));
  EXPECT_EQ(a.Cut(b).Rect(), ZUMRect(0, 3, 1, 0, 2, 5, 1, 0));
  EXPECT_EQ(ZUMImage<P>(b, a).GetMPX(), -2) << "the region of one image, the raster of another";

  const ZUMImage<P>& self = a;
  a = self;
  EXPECT_EQ(a.Rect(), kBox);
  b = a.Row(4).Channel(1);
  a.Clean();
  b(0, 4, 1, 1) = P();  // its block lives on
  ZUMGenericImage generic;
  EXPECT_EQ(generic.GetType(), ZUMBoolPixel);
  EXPECT_EQ(&generic.RoD(), &ZUMEmptyRoD.RoD());
  generic = b;
  EXPECT_EQ(generic.GetType(), ZUMPixelTraits<P>::kType);
  EXPECT_EQ(generic.PixelAddress(0, 4, 1, 1, 0), &b(0, 4, 1, 1));
}

}  // namespace
