#include "zuml/core/velombinding.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/otherregion.h"
#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"
#include "zuml/core/zumconnectivity.h"

namespace {

// Made before main, of objects of the library that must exist by then.
const ZUMImage<ZUMBool> kEarlyCopy = ZUMCopy(ZUMCon8);
const ZUMImage<ZUMLong> kEarlyConversion = ZUMCon4;
const ZUMImage<ZUMReal> kEarlyNone;

std::string Print(const ZUMGenericImage& image) {
  std::ostringstream stream, other;
  stream << image;
  ZUMGenericImagePrint(other, image);
  EXPECT_EQ(stream.str(), other.str());
  return stream.str();
}

/// What is printed of the image: the type's name, the address, the rest.
std::string Expect(const char* type, const ZUMGenericImage& image, const char* rest) {
  std::ostringstream stream;
  stream << "<Im" << type << ':' << &image << rest;
  return stream.str();
}

TEST(VeLoM, StaticObjectsFindTheLibrarysOwn) {
  EXPECT_EQ(kEarlyCopy.NPixels(), 9);
  EXPECT_TRUE(kEarlyCopy(-1, 1));
  EXPECT_EQ(kEarlyConversion(1, 1), 0);
  EXPECT_EQ(kEarlyNone.RoD(), ZUMEmptyRoD.RoD());
}

TEST(VeLoM, PlainNamesAreExported) {
  const char* suffixes[] = {"BeginX", "BeginY",  "BeginZ", "BeginT",    "EndX", "EndY",    "EndZ",
                            "EndT",   "NPixels", "CSz",    "PixelType", "RoD",  "GetData", "Print"};
  for (const char* suffix : suffixes) {
    const std::string name = std::string("ZUMGenericImage") + suffix;
    EXPECT_NE(dlsym(RTLD_DEFAULT, name.c_str()), nullptr) << name;
  }
  EXPECT_NE(dlsym(RTLD_DEFAULT, "ZUMVeLoMCreateRoDRect"), nullptr);
  ZUMRegionOfDefinition* const rod = ZUMVeLoMCreateRoDRect(-1, 2, 3, 4, 8, 6, 7, 9);
  { const ZUMRoDRef handle(rod); }
  const ZUMRoDRef handle(rod);  // the caller's reference has kept it
  rod->Unlink();
  const ZUMRect frame(1, 1, 1, 1, 1, 1, 1, 1);
  const auto image = ZUMImage<ZUMShort>(handle, frame, 3, ZUMShort(5)).Channels(1, 2);
  EXPECT_EQ(
      (std::vector{
          ZUMGenericImageBeginX(image), ZUMGenericImageBeginY(image), ZUMGenericImageBeginZ(image),
          ZUMGenericImageBeginT(image), ZUMGenericImageEndX(image), ZUMGenericImageEndY(image),
          ZUMGenericImageEndZ(image), ZUMGenericImageEndT(image), ZUMGenericImageNPixels(image),
          ZUMGenericImageCSz(image), static_cast<int>(ZUMGenericImagePixelType(image))}),
      (std::vector{-1, 2, 3, 4, 8, 6, 7, 9, 10 * 5 * 5 * 6, 2, 2}));
  EXPECT_EQ(&ZUMGenericImageRoD(image).RoD(), &image.RoD());
  EXPECT_EQ(ZUMGenericImageGetData(image), image.GetData());
}

TEST(VeLoM, PrintsAsManyAxesAsAreUsed) {
  const struct {
    ZUMRect box;
    const char* rest;
  } cases[] = {{{-3, 0, 0, 0, 4, 0, 0, 0}, "[-3,4]C2>"},
               {{1, 0, 0, 0, 4, 2, 0, 0}, "(1,0)-(4,2)C2>"},
               {{1, 0, 0, 0, 4, 0, 3, 0}, "(1,0,0)-(4,0,3)C2>"},
               {{1, 0, 0, -1, 4, 0, 0, 0}, "(1,0,0,-1)-(4,0,0,0)C2>"},
               {{0, 0, 0, 0, 5, -1, 0, 0}, "(0,0)-(-1,-1)C2>"}};
  for (const auto& [box, rest] : cases) {
    const ZUMImage<ZUMByte> image(box, 2, 0);
    EXPECT_EQ(Print(image), Expect("Byte", image, rest));
  }
  const char* names[] = {"Bool", "Byte",    "Short",   "Long",   "SReal",
                         "Real", "Complex", "Pointer", "Unknown"};
  for (int i = 0; i < 9; ++i) {
    const ZUMGenericImage image(ZUMEmptyRoD, 1, static_cast<ZUMPixelType>(i));
    EXPECT_EQ(Print(image), Expect(names[i], image, "(0,1,1,1)-(-1,0,0,0)C1>"));
  }
  const ZUMImage<ZUMByte> other(new zuml_test::OtherRegion(ZUMRect()), 1, 0);
  EXPECT_EQ(Print(other), Expect("Byte", other, "RoD Shape unknownC1>"));
}

template <class P>
class VeLoMPixels : public testing::Test {};
TYPED_TEST_SUITE(VeLoMPixels, zuml_test::ValueTypes);

TYPED_TEST(VeLoMPixels, AreTestedAndSet) {
  ZUMImage<TypeParam> image(ZUMRoDRef(1, 2, 3, 4, 2, 3, 4, 5), 2, TypeParam(0));
  EXPECT_TRUE(VLMInP(image, 2, 3, 4, 5));
  EXPECT_FALSE(VLMInP(image, 2, 3, 4, 6));
  VLMSetPixel<TypeParam>(1, image, 1, 3, 3, 4, 1);
  EXPECT_EQ(image(1, 3, 3, 4, 1), TypeParam(1));
  EXPECT_EQ(zuml_test::MessageOf([&] { VLMSetPixel<TypeParam>(1, image, 1, 2, 3, 4, 2); }),
            "Pixel coordinates out of image (1,2,3,4,2)");
}

}  // namespace
