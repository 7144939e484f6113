#include "zuml/io/finite.h"

#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;

// What lies beside the region decides nothing; one pixel of the last channel does.
TEST(Finite, OnePixelDecides) {
  using Limits = std::numeric_limits<double>;
  const double finite[] = {Limits::max(), -Limits::max(), -0.0, Limits::denorm_min()};
  const double infinite[] = {Limits::infinity(), -Limits::infinity()};
  const double nans[] = {Limits::quiet_NaN(), -Limits::quiet_NaN(), Limits::signaling_NaN()};
  Random random(1);
  for (const Layout layout : kLayouts) {
    auto image = MakeRandomImage<ZUMReal>(random, MakeRandomBox(random, 40, 5, 2, 2), 2, layout);
    const auto expect = [&](double value, bool inf, bool nan) {
      const auto sound = ZUMCopy(image);
      std::fill_n(&image(image.AddressCoord(image.GetData()), image.GetMPC()),
                  image.GetSimpleRaster()->GetSimpleRasterSz(), value);
      image.SetPixels(sound);
      EXPECT_TRUE(ZUMImageIsFinite(image) && !ZUMImageHasInf(image) && !ZUMImageHasNaN(image));
      sound(image.End(), 1) = value;
      EXPECT_EQ(ZUMImageHasInf(sound), inf);
      EXPECT_EQ(ZUMImageHasNaN(sound), nan);
      EXPECT_EQ(ZUMImageIsFinite(sound), !inf && !nan);
    };
    for (const double value : finite) expect(value, false, false);
    for (const double value : infinite) expect(value, true, false);
    for (const double value : nans) expect(value, false, true);
  }
  const ZUMImage<ZUMReal> none;
  EXPECT_TRUE(ZUMImageIsFinite(none) && !ZUMImageHasInf(none) && !ZUMImageHasNaN(none));
}

}  // namespace
