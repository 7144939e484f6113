// With the checks of pixel access, in a program whose other sources are compiled without. Nothing
// of tests/support that reads pixels is included: the same templates would be compiled in both
// ways.
#define ZUML_CHECKS

#include <gtest/gtest.h>

#include <string>

#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"

namespace {

template <class F>
std::string ReasonOf(F f) {
  try {
    f();
  } catch (const XQException& e) {
    return e.what();
  }
  return "";
}

TEST(Checks, PixelsOutsideThrow) {
  const ZUMImage<ZUMByte> framed(ZUMRoDRef(-1, 2, 0, 0, 3, 4, 1, 0),
                                 ZUMRect(1, 1, 1, 1, 1, 1, 1, 1), 2, 5);
  const std::string box = "outside of the image (-1,2,0,0)-(3,4,1,0), 2 channels";
  EXPECT_EQ(framed(-1, 2) + framed({3, 4, 1, 0}, 1) + framed(ZUMBasePoint2D<int>(0, 3), 1), 15);
  EXPECT_EQ(ReasonOf([&] { framed(4, 2, 1); }), "pixel (4,2,1,0), channel 0: " + box);
  EXPECT_EQ(ReasonOf([&] { framed({0, 2, 2, 0}, 1); }), "pixel (0,2,2,0), channel 1: " + box);
  EXPECT_EQ(ReasonOf([&] { framed(ZUMBasePoint2D<int>(0, 5)); }),
            "pixel (0,5,0,0), channel 0: " + box);
  EXPECT_EQ(ReasonOf([&] { framed(0, 2, 0, 0, -1); }), "pixel (0,2,0,0), channel -1: " + box);
  EXPECT_EQ(ReasonOf([&] { framed(0, 2, 0, 0, 2); }), "pixel (0,2,0,0), channel 2: " + box);
  EXPECT_EQ(ReasonOf([&] { ZUMImage<ZUMReal>()(0); }),
            "pixel (0,0,0,0), channel 0: the image is empty, (0,1,1,1)-(-1,0,0,0), 1 channels");
}

// The library reads the frame of a working image by the same operator.
TEST(Checks, AreNotTheLibrarys) {
  ZUMDisplacementArray path;
  path.SurroundPath(ZUMCon8, ZUMCon8);
  EXPECT_EQ(path.GetLength(), 8u);
}

}  // namespace
