#include "zuml/algebra/moments.h"

#include <cmath>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Moment, AddsPowersOfTheCoordinatesOfTruePixels) {
  ForEachLayout<ZUMBool>(2, [](const ZUMImage<ZUMBool>& image, Random& random) {
    int e[4];
    for (int& v : e) v = random.Int(0, 3);
    double sum = 0, centred = 0;
    ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
      if (!image(x, y, z, t, c)) return;
      std::uint32_t product = 1;
      const int at[] = {x, y, z, t};
      for (int k = 0; k < 4; ++k) {
        for (int i = 0; i < e[k]; ++i) product *= static_cast<std::uint32_t>(at[k]);
      }
      sum += static_cast<ZUMLong>(product);
      centred += std::pow(x - 1.5, e[0]) * std::pow(y + 2.25, e[1]) * std::pow(z - 0.5, e[2]) *
                 std::pow(t - 1.0, e[3]);
    });
    EXPECT_EQ(sum, ZUMMoment(image, e[0], e[1], e[2], e[3]));
    EXPECT_DOUBLE_EQ(centred, ZUMMoment(image, e[0], e[1], e[2], e[3], 1.5, -2.25, 0.5, 1));
  });
  // 65537^2 = 2^32 + 131073 wraps, but not about a centre.
  const ZUMImage<ZUMBool> point(ZUMRect(65537, 0, 0, 0, 65537, 0, 0, 0), 1, true);
  EXPECT_EQ(131073.0, ZUMMoment(point, 2, 0, 0, 0));
  EXPECT_EQ(4295098369.0, ZUMMoment(point, 2, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(0, ZUMMoment(ZUMImage<ZUMBool>(), 0, 0, 0, 0));
}

}  // namespace
