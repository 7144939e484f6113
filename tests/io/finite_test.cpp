#include "zuml/io/finite.h"

#include <cmath>

#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;

// What lies beside the region decides nothing; one pixel of the last channel does.
TEST(Finite, OnePixelDecides) {
  using Limits = std::numeric_limits<double>;
  const double values[] = {Limits::max(),       Limits::denorm_min(), Limits::infinity(),
                           -Limits::infinity(), Limits::quiet_NaN(),  -Limits::signaling_NaN()};
  Random random(1);
  for (const Layout layout : kLayouts) {
    for (const double value : values) {
      auto image = MakeRandomImage<ZUMReal>(random, MakeRandomBox(random, 40, 5, 2, 2), 2, layout);
      const auto sound = ZUMCopy(image);
      std::fill_n(static_cast<double*>(image.GetData()),
                  image.GetSimpleRaster()->GetSimpleRasterSz(), value);
      image.SetPixels(sound);
      EXPECT_TRUE(ZUMImageIsFinite(image) && !ZUMImageHasInf(image) && !ZUMImageHasNaN(image));
      sound(image.End(), 1) = value;
      EXPECT_EQ(ZUMImageHasInf(sound), std::isinf(value));
      EXPECT_EQ(ZUMImageHasNaN(sound), std::isnan(value));
      EXPECT_EQ(ZUMImageIsFinite(sound), std::isfinite(value));
    }
  }
  const ZUMImage<ZUMReal> none;
  EXPECT_TRUE(ZUMImageIsFinite(none) && !ZUMImageHasInf(none) && !ZUMImageHasNaN(none));
}

}  // namespace
