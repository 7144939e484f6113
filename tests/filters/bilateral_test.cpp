#include "zuml/filters/bilateral.h"

#include <cmath>

#include "tests/support/testimages.h"
#include "tests/support/weightedsums.h"
#include "zuml/filters/gaussiankernels.h"

namespace {

using namespace zuml_test;

template <class OutT, class InT>
ZUMImage<OutT> FilterByPoint(const ZUMImage<InT>& image, const ZUMImage<OutT>& spatial,
                             const ZUMImage<OutT>& value) {
  const ZUMRect k = spatial.Rect();
  // Of the pixels of the image itself.
  const ZUMRoDRef near = DisplaceSides(image, k.end.x, k.end.y, k.end.z, k.end.t, k.begin.x,
                                       k.begin.y, k.begin.z, k.begin.t);
  const ZUMRoDRef rod = Intersection(near, image);
  return MakeByPoint<OutT>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    OutT numerator = 0, divisor = 0;
    ForEachPoint(spatial, 1, [&](int kx, int ky, int kz, int kt, int) {
      const auto s = static_cast<std::int64_t>(image(x - kx, y - ky, z - kz, t - kt, c));
      const std::int64_t d = static_cast<std::int64_t>(image(x, y, z, t, c)) - s;
      if (spatial(kx, ky, kz, kt) == 0 || d < value.BeginX() || d > value.EndX()) return;
      const OutT v = ZUMWrapMul(value(static_cast<int>(d)), spatial(kx, ky, kz, kt));
      divisor = ZUMWrapAdd(divisor, v);
      numerator = ZUMWrapAdd(numerator, ZUMWrapMul(static_cast<OutT>(s), v));
    });
    return ZUMWrapDiv(numerator, divisor);
  });
}

TEST(Bilateral, EqualsTheFilterByCoordinates) {
  Random random(1);
  constexpr Box kSpatial[] = {{-2, -1, 0, 0, 3, 1, 0, 0}, {1, 0, -1, 0, 2, 0, 0, 1}};
  constexpr Box kValues[] = {
      {-255, 0, 0, 0, 255, 0, 0, 0}, {-3, 0, 0, 0, 90, 0, 0, 0}, {5, 0, 0, 0, 60, 0, 0, 0}};
  int round = 0;
  const auto check = [&]<class OutT, class InT>(OutT, InT) {
    for (const Box& k : kSpatial) {
      for (const Box& v : kValues) {
        const WithThreads threads(kThreadCounts[round % 5]);
        const ZUMRect box(-3, 2, 0, 5, 150, 8, 2, 6);
        auto image = MakeRandomImage<InT>(random, box, 1 + round % 2, kLayouts[round % 4]);
        // Close neighbours as well as the ends of the type.
        ForEachPoint(image, image.GetCSz(), [&](auto... at) {
          if (random.Int(0, 3) != 0) image(at...) = static_cast<InT>(random.Int(0, 120));
        });
        const auto spatial = MakeFilterImage<OutT>(random, MakeRect(k), 1, Layout::kCut);
        spatial(k[0], k[1], k[2], k[3]) = 0;
        const auto value = MakeFilterImage<OutT>(random, MakeRect(v), 1, kLayouts[round / 3 % 4]);
        EXPECT_TRUE(SameImage(ZUMBilateralConv(image, spatial, value),
                              FilterByPoint(image, spatial, value)))
            << round++;
      }
    }
  };
#define ZUML_TEST_INPUT(IN) check(ZUMLong(), IN()), check(ZUMReal(), IN());
  ZUML_DISCRETE_TYPES(ZUML_TEST_INPUT)
#undef ZUML_TEST_INPUT
}

TEST(Bilateral, GaussianForms) {
  Random random(2);
  const ZUMRect box(-3, 2, 0, 5, 30, 20, 0, 5);
  const auto real = MakeFilterImage<ZUMReal>(random, box, 2, Layout::kFramed);
  const ZUMImage<ZUMReal> spatial = ZUMGaussian2D(1.3, 0);
  for (const double sigma : {200.0, 0.0}) {
    const auto by_point = [&](int x, int y, int z, int t, int c) {
      double numerator = 0, divisor = 0;
      const double centre = real(x, y, z, t, c);
      ForEachPoint(spatial, 1, [&](int kx, int ky, int, int, int) {
        const double s = real(x - kx, y - ky, z, t, c), d = centre - s, w = spatial(kx, ky);
        const double g =
            sigma > 0 ? std::exp(-(d * d) / (2 * sigma * sigma)) * (0.3989422804014327 / sigma) * w
                      : (d == 0 ? w : 0);
        numerator += g * s;
        divisor += g;
      });
      return numerator / divisor;
    };
    EXPECT_TRUE(SameImage(ZUMBilateral(real, 1.3, sigma, 0),
                          MakeByPoint<ZUMReal>(Shrink(real, spatial.Rect()), 2, by_point)));
  }
  const auto bytes = MakeRandomImage<ZUMByte>(random, box, 1, Layout::kTight);
  const ZUMImage<ZUMLong> longs = bytes;
  EXPECT_TRUE(SameImage(ZUMBilateral(bytes, 1.3, 20, 3),
                        FilterByPoint(bytes, ZUMGaussian2D(1.3, 3), ZUMGaussianX(20, 255))));
  EXPECT_TRUE(SameImage(ZUMBilateral(longs, 1.3, 20, 3),
                        FilterByPoint(longs, ZUMGaussian2D(1.3, 3), ZUMGaussianX(20))));
}

TEST(Bilateral, Errors) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 4, 4, 0, 0), 1, ZUMByte(7));
  const ZUMImage<ZUMReal> dot(ZUMRect(), 1, 1.0), two(ZUMRect(), 2, 1.0);
  const ZUMImage<ZUMReal> column(ZUMRect(0, 0, 0, 0, 0, 1, 0, 0), 1, 1.0);
  EXPECT_EQ(MessageOf([&] { ZUMBilateralConv(image, dot, two); }),
            "ZUMBilateralConv: it not allows  multichanel kernels");
  EXPECT_EQ(MessageOf([&] { ZUMBilateralConv(image, dot, column); }),
            "ZUMBilateralConv: Dimensions of value kernel not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMBilateral(image, -1, -1, 2); }),
            "ZUMGaussianX: Sigma negative not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMBilateral(ZUMImage<ZUMReal>(image), 1, -1, 2); }),
            "ZUMGaussianX: Sigma negative not allowed");
}

}  // namespace
