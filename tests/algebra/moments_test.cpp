#include "zuml/algebra/moments.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Moment, AddsPowersOfTheCoordinatesOfTruePixels) {
  ForEachLayout<ZUMBool>(2, [](const ZUMImage<ZUMBool>& image, Random& random) {
    int e[4];
    for (int& v : e) v = random.Int(0, 3);
    double sum = 0, centred = 0;
    const auto product = [&e](double x, double y, double z, double t) {
      return std::pow(x, e[0]) * std::pow(y, e[1]) * std::pow(z, e[2]) * std::pow(t, e[3]);
    };
    ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
      if (!image(x, y, z, t, c)) return;
      sum += static_cast<ZUMLong>(static_cast<std::int64_t>(product(x, y, z, t)));
      centred += product(x - 1.5, y + 2.25, z - 0.5, t - 1.0);
    });
    EXPECT_EQ(sum, ZUMMoment(image, e[0], e[1], e[2], e[3]));
    EXPECT_DOUBLE_EQ(centred, ZUMMoment(image, e[0], e[1], e[2], e[3], 1.5, -2.25, 0.5, 1));
  });
  EXPECT_EQ(0, ZUMMoment(ZUMImage<ZUMBool>(), 0, 0, 0, 0));
  // Far wider than what memory has numbers for, but of no channel.
  const ZUMRect wide(0, 0, 0, 0, std::numeric_limits<int>::max() - 1, 0, 0, 0);
  EXPECT_EQ(0, ZUMMoment(ZUMImage<ZUMBool>(wide, 0, nullptr), 1, 0, 0, 0));
}

}  // namespace
