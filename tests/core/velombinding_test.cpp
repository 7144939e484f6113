#include "zuml/core/velombinding.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/otherregion.h"
#include "zuml/core/zumconnectivity.h"

using namespace zuml_test;

namespace {

// Made before main, of objects of the library that must exist by then.
const ZUMImage<ZUMBool> kEarlyCopy = ZUMCopy(ZUMCon8);
const ZUMImage<ZUMReal> kEarlyNone;

TEST(VeLoM, StaticObjectsFindTheLibrarysOwn) {
  EXPECT_TRUE(kEarlyCopy(-1, 1) && !kEarlyCopy(0, 0));
  EXPECT_EQ(&kEarlyNone.RoD(), &ZUMEmptyRoD.RoD());
}

TEST(VeLoM, PlainNamesAreExported) {
  ZUMRegionOfDefinition* const rod = ZUMVeLoMCreateRoDRect(-1, 2, 3, 4, 8, 6, 7, 9);
  { const ZUMRoDRef handle(rod); }
  const ZUMRoDRef handle(rod);  // the caller's reference has kept it
  rod->Unlink();
  const ZUMGenericImage image = ZUMImage<ZUMShort>(handle, 3, 5).Channels(1, 2);
  for (const char* name : {"BeginX", "BeginY", "BeginZ", "BeginT", "EndX", "EndY", "EndZ", "EndT",
                           "NPixels", "CSz", "PixelType", "RoD", "GetData", "Print"}) {
    EXPECT_TRUE(dlsym(RTLD_DEFAULT, (std::string("ZUMGenericImage") + name).c_str())) << name;
  }
  EXPECT_TRUE(dlsym(RTLD_DEFAULT, "ZUMVeLoMCreateRoDRect"));
  EXPECT_EQ(ZUMRect(ZUMGenericImageBeginX(image), ZUMGenericImageBeginY(image),
                    ZUMGenericImageBeginZ(image), ZUMGenericImageBeginT(image),
                    ZUMGenericImageEndX(image), ZUMGenericImageEndY(image),
                    ZUMGenericImageEndZ(image), ZUMGenericImageEndT(image)),
            ZUMRect(-1, 2, 3, 4, 8, 6, 7, 9));
  EXPECT_EQ(ZUMGenericImageNPixels(image) + ZUMGenericImageCSz(image), 1500 + 2);
  EXPECT_EQ(ZUMGenericImagePixelType(image), ZUMShortPixel);
  EXPECT_EQ(&ZUMGenericImageRoD(image).RoD(), rod);
  EXPECT_EQ(ZUMGenericImageGetData(image), image.GetData());
  ZUMImage<ZUMShort> pixels = image;
  VLMSetPixel<ZUMShort>(7, pixels, 1, 3, 6, 9, 1);
  EXPECT_EQ(pixels.GetPixel(1, 3, 6, 9, 1), 7);
  EXPECT_TRUE(VLMInP(pixels, 1, 3, 6, 9) && !VLMInP(pixels, 3, 6, 9, 1));
}

TEST(VeLoM, PrintsAsManyAxesAsAreUsed) {
  const auto check = [](const ZUMGenericImage& image, const char* type, const char* rest) {
    std::ostringstream stream, expected;
    stream << image;
    expected << "<Im" << type << ':' << &image << rest;
    EXPECT_EQ(stream.str(), expected.str());
  };
  using Image = ZUMImage<ZUMByte>;
  check(Image({-3, 0, 0, 0, 4, 0, 0, 0}, 2, 0), "Byte", "[-3,4]C2>");
  check(Image({1, 0, 0, 0, 4, 2, 0, 0}, 2, 0), "Byte", "(1,0)-(4,2)C2>");
  check(Image({1, 0, 0, 0, 4, 0, 3, 0}, 2, 0), "Byte", "(1,0,0)-(4,0,3)C2>");
  check(Image({1, 0, 0, -1, 4, 0, 0, 0}, 2, 0), "Byte", "(1,0,0,-1)-(4,0,0,0)C2>");
  check(Image(new OtherRegion({}), 1, 0), "Byte", "RoD Shape unknownC1>");
  const char* names[] = {"Bool", "Byte",    "Short",   "Long",   "SReal",
                         "Real", "Complex", "Pointer", "Unknown"};
  for (int i = 0; i < 9; ++i) {
    const ZUMGenericImage image(ZUMEmptyRoD, 1, static_cast<ZUMPixelType>(i));
    check(image, names[i], "(0,1,1,1)-(-1,0,0,0)C1>");
  }
}

}  // namespace
