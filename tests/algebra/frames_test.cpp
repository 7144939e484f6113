#include "zuml/algebra/frames.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Frames, AddedRemovedAndPadded) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random& random) {
    const P value = random.Pixel<P>();
    const auto expected = [&](int x, int y, int z, int t, int c) {
      return image.InP(x, y, z, t) ? image(x, y, z, t, c) : value;
    };
    const ZUMRect box = MakeOverlappingBox(random, image.Rect());
    ExpectPixels(ZUMPadding(image, box, value), box, 2, expected);
    ZUMRect frame, wide = image.Rect();
    for (const Axis axis : kAxes) {
      wide.begin.*axis -= frame.begin.*axis = std::max(0, random.Int(-1, 3));
      wide.end.*axis += frame.end.*axis = std::max(0, random.Int(-1, 3));
    }
    if (random.Int(0, 4) == 0) frame = ZUMRect(), wide = image.Rect();
    const ZUMImage<P> framed = ZUMAddFrame(image, frame, value);
    ExpectPixels(framed, wide, 2, expected);
    EXPECT_NE(framed.GetSimpleRaster(), image.GetSimpleRaster());
    const ZUMImage<P> back = ZUMRemoveFrame(framed, frame);
    EXPECT_TRUE(SameImage(back, image));
    EXPECT_EQ(back.GetSimpleRaster(), framed.GetSimpleRaster());
    EXPECT_TRUE(ZUMRemoveFrame(image, {image.RoDXSz(), 0, 0, 0, 0, 0, 0, 0}).EmptyP());
  };
  ForEachLayout(AlgebraTypes(), {2}, kAnyPixel, check);
}

// A margin stops where the coordinates do, and takes no memory beyond.
TEST(Frames, AtTheEndsOfTheCoordinates) {
  constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();
  using Corner = ZUMBasePoint<int> ZUMRect::*;
  for (const Axis axis : kAxes) {
    for (const bool high : {false, true}) {
      const Corner outer = high ? &ZUMRect::end : &ZUMRect::begin;
      const Corner inner = high ? &ZUMRect::begin : &ZUMRect::end;
      ZUMRect box(0, 0, 0, 0, 2, 2, 2, 2), thin, wide;
      box.begin.*axis = high ? kHigh - 2 : kLow;
      box.end.*axis = high ? kHigh : kLow + 2;
      Random random(9);
      const auto image =
          MakeByPoint<ZUMShort>(box, 2, [&](auto...) { return random.Pixel<ZUMShort>(); });
      for (const int beyond : {0, 1, 1000, 1000000, 1000000000, kHigh}) {
        ZUMRect frame(1, 1, 1, 1, 1, 1, 1, 1);
        wide = ZUMRect(-1, -1, -1, -1, 3, 3, 3, 3);
        wide.begin.*axis = high ? kHigh - 3 : kLow;
        wide.end.*axis = high ? kHigh : kLow + 3;
        frame.*outer.*axis = beyond;
        const auto expected = [&](int x, int y, int z, int t, int c) {
          return image.InP(x, y, z, t) ? image(x, y, z, t, c) : ZUMShort{-9};
        };
        ExpectPixels(ZUMAddFrame(image, frame, -9), wide, 2, expected);
        thin.*inner.*axis = beyond;
        EXPECT_EQ(ZUMRemoveFrame(image, thin).EmptyP(), beyond > 2);
      }
      EXPECT_TRUE(SameImage(ZUMAddFrame(image, ZUMRect(), 0), image));
      EXPECT_TRUE(SameImage(ZUMPadding(image, box, 0), image));
      const std::string text = MessageOf([&] { ZUMAddFrame(image, thin, 0); });
      EXPECT_EQ(text.find("ZUMSimpleRaster: a block"), 0u) << text;
    }
  }
}

TEST(Frames, RefusedOnes) {
  const ZUMImage<ZUMByte> image({0, 0, 0, 0, 2, 2, 0, 0}, 1, 0), none;
  const auto add = [](const ZUMImage<ZUMByte>& i, const ZUMRect& frame) {
    return MessageOf([&] { ZUMAddFrame(i, frame, 0); });
  };
  for (int side = 0; side < 8; ++side) {
    int m[8] = {};
    m[side] = -1;
    const ZUMRect frame(m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7]);
    EXPECT_EQ(add(image, frame), "ZUMAddFrame: It is not allowed add a negative frame to an image");
    EXPECT_EQ(add(none, frame), "ZUMAddFrame: It is not allowed add a frame to an empty image");
    EXPECT_EQ(MessageOf([&] { ZUMRemoveFrame(none, frame); }),
              "ZUMAddFrame: It is not allowed remove a negative frame to an image");
  }
  const ZUMRect huge(99, 99, 0, 0, 99, 99, 0, 0);
  EXPECT_TRUE(ZUMRemoveFrame(image, huge).EmptyP());
  EXPECT_EQ(&ZUMRemoveFrame(none, huge).RoD(), &none.RoD());
}

// Float and pointer images have no frames.
template <class P>
concept HasFrames = requires(ZUMImage<P> image) {
  ZUMRemoveFrame(image, ZUMRect());
};
static_assert(HasFrames<ZUMComplex> && !HasFrames<ZUMSReal> && !HasFrames<ZUMPointer>);

}  // namespace
