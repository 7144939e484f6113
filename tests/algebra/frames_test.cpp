#include "zuml/algebra/frames.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"

using namespace zuml_test;

namespace {

template <class P>
class Frames : public testing::Test {
 protected:
  // Boxes that all hold the origin.
  ZUMRect Box() {
    const auto side = [this] { return random.Int(0, 3); };
    return {-side(), -side(), -side(), -side(), side(), side(), side(), side()};
  }
  ZUMImage<P> Image(int i, int csz) {
    return MakeRandomImage<P>(random, Box(), csz, kLayouts[i % 4]);
  }

  Random random{16};
  const P value = random.Pixel<P>();
};
TYPED_TEST_SUITE(Frames, AlgebraTypes);

TYPED_TEST(Frames, AppendChannelsInOrderOverTheCommonRegion) {
  using P = TypeParam;
  for (int i = 0; i < 24; ++i) {
    const ZUMImage<P> a = this->Image(i, 2), b = this->Image(i + 1, 1), c = this->Image(i + 2, 3);
    const auto check = [&](const ZUMImage<P>& result, std::vector<ZUMImage<P>> images) {
      ZUMRoDRef rod = images[0];
      std::vector<ZUMImage<P>> channels;
      for (const ZUMImage<P>& image : images) {
        rod = Intersection(rod, image);
        for (int k = 0; k < image.GetCSz(); ++k) channels.push_back(image.Channel(k));
      }
      const auto expected = [&](int x, int y, int z, int t, int k) {
        return channels[static_cast<std::size_t>(k)](x, y, z, t);
      };
      EXPECT_TRUE(SameImage(result, MakeByPoint<P>(rod, result.GetCSz(), expected)));
      EXPECT_EQ(result.GetRasterSz(), rod.NPixels() * static_cast<int>(channels.size()));
    };
    check(ZUMAppendChannels(a, b), {a, b});
    check(ZUMAppendChannels(a, b, c), {a, b, c});
    const ZUMImage<P>* list[] = {&c, &a, &c, &b};
    check(ZUMAppendChannels(4, list), {c, a, c, b});
  }
  const ZUMImage<P>* nothing[] = {nullptr};
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels<P>(3, nullptr); }),
            "AppendChannels: A NULL pointer to an array of images are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels(1, nothing); }),
            "AppendChannels: An array of zero images are not allowed");
}

TYPED_TEST(Frames, AddedRemovedAndPadded) {
  using P = TypeParam;
  for (int i = 0; i < 40; ++i) {
    const ZUMImage<P> image = this->Image(i, 2);
    ZUMRect box = i % 8 == 0 ? ZUMRect(90, 0, 0, 0, 99, 2, 0, 0) : this->Box();
    const auto expected = [&](int x, int y, int z, int t, int c) {
      return image.InP(x, y, z, t) ? image(x, y, z, t, c) : this->value;
    };
    EXPECT_TRUE(SameImage(ZUMPadding(image, box, this->value), MakeByPoint<P>(box, 2, expected)));
    const int n = i % 5;  // without a margin, too
    const ZUMRect frame(n, n / 2, 2 * n, n % 3, n % 2, 2 * n, n, n % 4);
    const ZUMRoDRef wide =
        DisplaceSides(image, -n, -(n / 2), -2 * n, -(n % 3), n % 2, 2 * n, n, n % 4);
    const ZUMImage<P> framed = ZUMAddFrame(image, frame, this->value);
    EXPECT_TRUE(SameImage(framed, MakeByPoint<P>(wide, 2, expected)));
    EXPECT_NE(framed.GetSimpleRaster(), image.GetSimpleRaster());
    const ZUMImage<P> back = ZUMRemoveFrame(framed, frame);
    EXPECT_TRUE(SameImage(back, image));
    EXPECT_EQ(back.GetSimpleRaster(), framed.GetSimpleRaster());
    EXPECT_TRUE(ZUMRemoveFrame(image, {image.RoDXSz(), 0, 0, 0, 0, 0, 0, 0}).EmptyP());
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
