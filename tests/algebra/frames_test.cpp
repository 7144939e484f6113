#include "zuml/algebra/frames.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"

namespace {

using zuml_test::kLayouts;
using zuml_test::MakeByPoint;
using zuml_test::MakeRandomBox;
using zuml_test::MakeRandomImage;
using zuml_test::MessageOf;
using zuml_test::Random;
using zuml_test::SameImage;

constexpr int kMax = std::numeric_limits<int>::max();

template <class P>
class Frames : public testing::Test {
 protected:
  Random random{16};

  int Margin() { return random.Int(0, 3); }
  ZUMRect Frame() {
    return {Margin(), Margin(), Margin(), Margin(), Margin(), Margin(), Margin(), Margin()};
  }
  ZUMRect Box() { return MakeRandomBox(random, 5, 5, 3, 3); }
  ZUMImage<P> Image(int i, int csz) {
    return MakeRandomImage<P>(random, Box(), csz, kLayouts[i % 4]);
  }
  P Pixel() { return random.Pixel<P>(); }
};
TYPED_TEST_SUITE(Frames, zuml_test::AlgebraTypes);

TYPED_TEST(Frames, AppendChannelsInOrderOverTheCommonRegion) {
  using P = TypeParam;
  for (int i = 0; i < 24; ++i) {
    const ZUMImage<P> a = this->Image(i, 2), b = this->Image(i + 1, 1), c = this->Image(i + 2, 3);
    const ZUMImage<P> kept = ZUMCopy(c);
    const auto check = [&](const ZUMImage<P>& result, std::vector<const ZUMImage<P>*> images) {
      ZUMRoDRef rod = *images[0];
      std::vector<ZUMImage<P>> channels;
      for (const ZUMImage<P>* image : images) {
        rod = Intersection(rod, *image);
        for (int k = 0; k < image->GetCSz(); ++k) channels.push_back(image->Channel(k));
      }
      const int csz = static_cast<int>(channels.size());
      EXPECT_TRUE(
          SameImage(result, MakeByPoint<P>(rod, csz, [&](int x, int y, int z, int t, int k) {
                      return channels[static_cast<std::size_t>(k)](x, y, z, t);
                    })));
      EXPECT_EQ(result.GetRasterSz(), 1LL * rod.NPixels() * csz);
    };
    check(ZUMAppendChannels(a, b), {&a, &b});
    check(ZUMAppendChannels(a, b, c), {&a, &b, &c});
    const ZUMImage<P>* list[] = {&c, &a, &c, &b};
    for (const int n : {1, 2, 4}) {
      check(ZUMAppendChannels(n, list), {list, list + n});
    }
    EXPECT_TRUE(SameImage(c, kept));
  }
  const ZUMImage<P> none;
  EXPECT_EQ(ZUMAppendChannels(none, this->Image(0, 2)).GetCSz(), 3);
  const ZUMImage<P>* nothing[] = {nullptr};
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels<P>(3, nullptr); }),
            "AppendChannels: A NULL pointer to an array of images are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels(1, nothing); }),
            "AppendChannels: An array of zero images are not allowed");
}

TYPED_TEST(Frames, FramesAreAddedAndRemoved) {
  using P = TypeParam;
  for (int i = 0; i < 24; ++i) {
    const ZUMImage<P> image = this->Image(i, 2), kept = ZUMCopy(image);
    const ZUMRect frame = i % 6 == 0 ? ZUMRect() : this->Frame();
    const auto [b, e] = frame;
    const P value = this->Pixel();
    const ZUMImage<P> framed = ZUMAddFrame(image, frame, value);
    const ZUMRoDRef wide = DisplaceSides(image, -b.x, -b.y, -b.z, -b.t, e.x, e.y, e.z, e.t);
    EXPECT_TRUE(SameImage(framed, MakeByPoint<P>(wide, 2, [&](int x, int y, int z, int t, int c) {
                            return image.InP(x, y, z, t) ? image(x, y, z, t, c) : value;
                          })));
    EXPECT_NE(framed.GetSimpleRaster(), image.GetSimpleRaster());
    EXPECT_EQ(framed.GetRasterSz(), 2LL * wide.NPixels());
    const ZUMImage<P> back = ZUMRemoveFrame(framed, frame);
    EXPECT_TRUE(SameImage(back, image));
    EXPECT_EQ(back.GetSimpleRaster(), framed.GetSimpleRaster());
    EXPECT_TRUE(SameImage(image, kept));
    const int width = image.RoDXSz();
    EXPECT_TRUE(ZUMRemoveFrame(image, {width, 0, 0, 0, 0, 0, 0, 0}).EmptyP());
    EXPECT_TRUE(ZUMRemoveFrame(image, {kMax, kMax, 0, 0, kMax, kMax, 0, 0}).EmptyP());
  }
}

TYPED_TEST(Frames, FramesThatAreRefused) {
  using P = TypeParam;
  const ZUMImage<P> image(ZUMRoDRef(0, 0, 0, 0, 2, 2, 0, 0), 1, P()), none;
  const auto add = [](const ZUMImage<P>& i, const ZUMRect& frame) {
    return MessageOf([&] { ZUMAddFrame(i, frame, 0); });
  };
  for (int side = 0; side < 8; ++side) {
    int m[8] = {};
    m[side] = -1;
    const ZUMRect frame(m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7]);
    EXPECT_EQ(add(image, frame), "ZUMAddFrame: It is not allowed add a negative frame to an image");
    EXPECT_EQ(add(none, frame), "ZUMAddFrame: It is not allowed add a frame to an empty image");
    for (const ZUMImage<P>& i : {image, none}) {
      EXPECT_EQ(MessageOf([&] { ZUMRemoveFrame(i, frame); }),
                "ZUMAddFrame: It is not allowed remove a negative frame to an image");
    }
  }
  EXPECT_EQ(add(none, ZUMRect()), "ZUMAddFrame: It is not allowed add a frame to an empty image");
  EXPECT_NE(add(image, {kMax, 0, 0, 0, kMax, 0, 0, 0}).find("beyond the limit"), std::string::npos);
  const ZUMImage<P> same = ZUMRemoveFrame(none, {1, 1, 1, 1, 1, 1, 1, 1});
  EXPECT_EQ(&same.RoD(), &none.RoD());
  EXPECT_EQ(same.GetSimpleRaster(), none.GetSimpleRaster());
}

TYPED_TEST(Frames, PaddingCoversABox) {
  using P = TypeParam;
  for (int i = 0; i < 40; ++i) {
    const ZUMImage<P> image = this->Image(i, 2), kept = ZUMCopy(image);
    ZUMRect box = this->Box();
    if (i % 8 == 0) box.begin.x += 100, box.end.x += 100;
    const P value = this->Pixel();
    const auto expected = MakeByPoint<P>(box, 2, [&](int x, int y, int z, int t, int c) {
      return image.InP(x, y, z, t) ? image(x, y, z, t, c) : value;
    });
    EXPECT_TRUE(SameImage(ZUMPadding(image, box, value), expected));
    EXPECT_TRUE(SameImage(image, kept));
  }
  const ZUMImage<P> none;
  EXPECT_TRUE(ZUMPadding(this->Image(1, 1), none.Rect(), 0).EmptyP());
  EXPECT_EQ(ZUMPadding(none, {0, 0, 0, 0, 1, 1, 0, 0}, P(1))(1, 1), P(1));
}

// Float and pointer images have no frames.
template <class P>
concept HasFrames = requires(ZUMImage<P> image) {
  ZUMRemoveFrame(image, ZUMRect());
};
static_assert(HasFrames<ZUMComplex> && !HasFrames<ZUMSReal> && !HasFrames<ZUMPointer>);

}  // namespace
