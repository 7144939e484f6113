#include "zuml/algebra/channels.h"

#include <vector>

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Channels, AppendInOrderOverTheCommonRegion) {
  const auto check = []<class P>(const ZUMImage<P>& a, Random& random) {
    const auto make = [&](int csz) {
      return MakeRandomImage<P>(random, MakeOverlappingBox(random, a.Rect()), csz,
                                DrawLayout(random));
    };
    const ZUMImage<P> b = make(1), c = make(3);
    const auto expect = [](const ZUMImage<P>& result, const std::vector<ZUMImage<P>>& images) {
      ZUMRoDRef rod = images[0];
      std::vector<ZUMImage<P>> channels;
      for (const ZUMImage<P>& image : images) {
        rod = Intersection(rod, image);
        for (int k = 0; k < image.GetCSz(); ++k) channels.push_back(image.Channel(k));
      }
      const int csz = static_cast<int>(channels.size());
      ExpectPixels(result, rod, csz, [&](int x, int y, int z, int t, int k) {
        return channels[static_cast<std::size_t>(k)](x, y, z, t);
      });
      EXPECT_EQ(result.GetRasterSz(), rod.EmptyP() ? 0 : rod.NPixels() * csz) << "not tight";
    };
    expect(ZUMAppendChannels(a, b), {a, b});
    expect(ZUMAppendChannels(a, b, c), {a, b, c});
    const ZUMImage<P>* list[] = {&c, &a, &c, &b};
    expect(ZUMAppendChannels(4, list), {c, a, c, b});
  };
  ForEachLayout(AlgebraTypes(), {2}, kAnyPixel, check);
}

TEST(Channels, AppendedOfNothing) {
  const ZUMImage<ZUMByte>* nothing[] = {nullptr};
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels<ZUMByte>(3, nullptr); }),
            "AppendChannels: A NULL pointer to an array of images are not allowed");
  const std::string zero = "AppendChannels: An array of zero images are not allowed";
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels(1, nothing); }), zero);
  EXPECT_EQ(MessageOf([&] { ZUMAppendChannels(0, nothing); }), zero);
  const ZUMImage<ZUMByte> none(ZUMRect(), 0, nullptr), one(ZUMRect(), 1, 5);
  EXPECT_TRUE(SameImage(ZUMAppendChannels(none, one, none), one));
}

}  // namespace
