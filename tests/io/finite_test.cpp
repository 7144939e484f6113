#include "zuml/io/finite.h"

#include <cmath>

#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;

// What lies outside the region decides nothing; one pixel of the last channel does.
TEST(Finite, OnePixelDecides) {
  using Limits = std::numeric_limits<double>;
  Random random(1);
  for (const double value : {Limits::max(), Limits::denorm_min(), Limits::infinity(),
                             -Limits::infinity(), Limits::quiet_NaN(), -Limits::signaling_NaN()}) {
    const ZUMImage<ZUMReal> all(ZUMRect(-6, -1, -6, -6, 40, 5, 8, 8), 3, value);
    const auto image = all.Cut(MakeRandomBox(random, 35, 1, 2, 2)).Channels(0, 1);
    image.Channel(0).SetPixels(1);
    image.Channel(1).SetPixels(2);
    EXPECT_TRUE(ZUMImageIsFinite(image) && !ZUMImageHasInf(image) && !ZUMImageHasNaN(image));
    image(image.End(), 1) = value;
    EXPECT_EQ(ZUMImageHasInf(image), std::isinf(value));
    EXPECT_EQ(ZUMImageHasNaN(image), std::isnan(value));
    EXPECT_EQ(ZUMImageIsFinite(image), std::isfinite(value));
  }
  const ZUMImage<ZUMReal> none;
  EXPECT_TRUE(ZUMImageIsFinite(none) && !ZUMImageHasInf(none) && !ZUMImageHasNaN(none));
}

}  // namespace
