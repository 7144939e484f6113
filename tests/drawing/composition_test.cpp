#include "zuml/drawing/composition.h"

#include <gtest/gtest.h>

#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"

using namespace zuml_test;

namespace {

const ZUMRect kBox(-3, 2, 0, 0, 5, 7, 0, 0);

TEST(Composition, OverlaysAColouredMask) {
  const ZUMImage<ZUMBool> mask(ZUMRect(-1, 0, 0, 0, 9, 5, 0, 0), 1, true);
  ZUMImage<ZUMShort> image(kBox, 1, ZUMShort{-100});
  image(5, 7) = 155;
  image(-1, 2) = 0;
  const auto blended = ZUMOverlay(image, mask, 255, 7, 0, 0.25);
  EXPECT_EQ(blended.Rect(), kBox);
  EXPECT_TRUE(blended(-1, 2) == 138 && blended(-1, 2, 0, 0, 1) == 76 && blended(5, 7) == 255);
  const auto covered = ZUMOverlay(ZUMOverlay(image, mask, 1, 2, 3), mask, 9, 7, 5);
  EXPECT_TRUE(covered(5, 5, 0, 0, 2) == 5 && covered(-2, 2) == 0 && covered(5, 7, 0, 0, 2) == 255);
  EXPECT_EQ(MessageOf([&] { ZUMOverlay(ZUMImage<double>(ZUMEmptyRoD, 2, 0.0), mask, 0, 0, 0); }),
            "ZUMOverlay: it only accepts one o three channels image");
}

TEST(Composition, JoinsImagesOfAllTypesInOrder) {
  const int high = std::numeric_limits<int>::max(), low = std::numeric_limits<int>::min();
  const ZUMImage<ZUMBool> a(ZUMRect(0, 0, 0, 0, 2, 1, 0, 0), 1, true);
  const ZUMImage<ZUMByte> b(ZUMRect(2, 1, 0, 0, 3, 3, 1, 0), 3, ZUMByte{9});
  const ZUMImage<ZUMSReal> c(ZUMRect(high, -1, 0, 0, high, -1, 0, 0), 1, 5.0f), none;
  const ZUMImage<ZUMByte> d(new OtherRegion(ZUMRect(low, low, 0, 0, low, low, 0, 0)), 1,
                            ZUMByte{4});
  const auto joint = ZUMJointIm(a, b, none, 1, 2, 3);
  EXPECT_TRUE(SameImage(joint, MakeByPoint<ZUMByte>(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 3,
                                                    [&](int x, int y, int z, int t, int k) {
                                                      return b.InP(x, y, z, t)   ? 9
                                                             : a.InP(x, y, z, t) ? 255
                                                                                 : k + 1;
                                                    })));
  const auto row = ZUMHJointIm(none, b, a, c, 1, 2, 3);
  EXPECT_EQ(row.Rect(), ZUMRect(0, -1, 0, 0, 5, 3, 0, 0));
  EXPECT_TRUE(row(0, 1) == 9 && row(1, 3) == 9 && row(2, 1) == 255 && row(5, -1) == 0);
  EXPECT_TRUE(row(0, -1) == 1 && row(5, 0) == 1 && row(0, -1, 0, 0, 2) == 3);
  EXPECT_EQ(ZUMHJointIm(d, d, 0, 0, 0)(1, low), 4);
  EXPECT_NE(MessageOf([&] { ZUMVJointIm(c, d, 0, 0, 0); }), "");  // too wide for a raster
  EXPECT_EQ(ZUMVJointIm(a, b, 0, 0, 0).Rect(), ZUMRect(0, 0, 0, 0, 3, 4, 0, 0));
  const ZUMGenericImage* const nothing[] = {nullptr};
  EXPECT_TRUE(ZUMVJointIm(nothing, 0, 0, 0).EmptyP());
  EXPECT_EQ(ZUMJointIm(a, a, a, a, a, a, a, a, a, a, 0, 0, 0).GetCSz(), 1);
  EXPECT_EQ(MessageOf([&] { ZUMJointIm(a, ZUMImage<ZUMByte>(kBox, 2, 0), 0, 0, 0); }),
            "ZUMJointIm:: It don't accept images with 2 channels");
  EXPECT_EQ(MessageOf([&] { ZUMHJointIm(a, ZUMImage<ZUMComplex>(kBox, 1, 0), 0, 0, 0); }),
            "No se puede convertir una imagen de tipo Complex a Byte");
}

}  // namespace
