#include "zuml/core/zumkernel.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/support/testimages.h"

using namespace zuml_test;

namespace {

template <class T>
using Factors = std::vector<ZUMKernelFactor<T>>;

template <class T>
class Kernels : public testing::Test {};
using CoefficientTypes = testing::Types<ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Kernels, CoefficientTypes);

TYPED_TEST(Kernels, FactorsAreTheNonZeroPixels) {
  using T = TypeParam;
  Random random(3);
  for (int i = 0; i < 12; ++i) {
    const ZUMRect box = MakeRandomBox(random, 5, 4, 2, 3);
    const ZUMImage<T> image = MakeRandomImage<T>(random, box, 2, kLayouts[i % 4]);
    ForEachPoint(image, 2, [&](auto... p) { image(p...) = std::max(0, random.Int(-4, 4)) - 1; });
    const ZUMKernel<T> kernel(image);
    ASSERT_EQ(kernel.GetKernels().Length(), 1);
    EXPECT_EQ(kernel.GetCSz(), 2);
    EXPECT_EQ(kernel.Rect(), ZUMRect(box.begin.x, box.begin.y, 0, 0, box.end.x, box.end.y, 0, 0));
    Factors<T> factors[2];
    T sums[2] = {}, squares[2] = {};
    ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
      const T value = image(x, y, z, t, c);
      if (value != 0) factors[c].push_back({value, x, y, z, t});
      sums[c] += value;
      squares[c] += value * value;
    });
    for (int c = 0; c < 2; ++c) {
      const auto& list = kernel.GetKernels().GetFront().GetFactors(c);
      EXPECT_EQ(Factors<T>(list.begin(), list.end()), factors[c]);
      EXPECT_EQ(kernel.Sum(c), sums[c]);
      EXPECT_EQ(kernel.SumSqr(c), squares[c]);
    }
  }
}

TEST(Kernels, RegionsAndFramesFollowTheBox) {
  const ZUMRoDRef rod(0, 0, 5, 6, 9, 9, 7, 8);
  const ZUMSubKernel<ZUMLong> stage(ZUMImage<ZUMLong>({-1, -3, 0, 0, 2, -2, 0, 0}, 1, 0));
  EXPECT_EQ(stage.DirectRoD(rod).Rect(), ZUMRect(1, 3, 5, 6, 7, 11, 7, 8));
  EXPECT_EQ(stage.SymmetricRoD(rod).Rect(), ZUMRect(2, -2, 5, 6, 8, 6, 7, 8));
  EXPECT_EQ(stage.GetFrame(), ZUMRect(1, 3, 0, 0, 2, -2, 0, 0));
  EXPECT_EQ(stage.GetSymmetricFrame(), ZUMRect(2, -2, 0, 0, 1, 3, 0, 0));
  // The least int has no negative.
  constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();
  const ZUMSubKernel<ZUMLong> far(
      ZUMImage<ZUMLong>({kMin, kMax - 1, 0, 0, kMin, kMax, 0, 0}, 1, 5));
  EXPECT_EQ(far.GetFrame(), ZUMRect(kMax, -kMax + 1, 0, 0, kMin, kMax, 0, 0));
  EXPECT_TRUE(far.DirectRoD(rod).EmptyP());
  EXPECT_EQ(far.DirectRoD({kMin, 0, 0, 0, -1, 9, 0, 0}).Rect(),
            ZUMRect(0, 1 - kMax, 0, 0, kMax, 9 - kMax, 0, 0));
}

TEST(Kernels, SeparableOnesHaveAStagePerAxis) {
  const ZUMLong x_values[] = {1, 0, 2, 0x7FFFFFFF, 2, 1}, y_values[] = {1, -1, 2, 2};
  const ZUMImage<ZUMLong> kx({-1, 0, 0, 0, 1, 0, 0, 0}, 2, x_values);
  const ZUMImage<ZUMLong> ky({0, 2, 0, 0, 0, 3, 0, 0}, 2, y_values);
  const ZUMImage<ZUMLong> kz({0, 0, -1, 0, 0, 0, 1, 0}, 2, 2), kt({0, 0, 0, 4, 0, 0, 0, 5}, 2, 3);
  const ZUMKernel<ZUMLong> all(kx, ky, kz, kt), plane(kx, ky, {}, {}), none({}, {}, {}, {});
  EXPECT_EQ(plane.GetKernels().Length(), 2);
  EXPECT_EQ(plane.GetCSz(), 2);
  EXPECT_EQ(plane.Rect(), ZUMRect(-1, 0, 0, 0, 1, 3, 0, 0));
  EXPECT_EQ(plane.Sum(0), 0);
  // Modulo 2^32, (2^31 + 2) times an even number is that number doubled, and the square of
  // 2^31 - 1 is 1.
  EXPECT_EQ(all.Sum(1), 2 * 4 * 6 * 6);
  EXPECT_EQ(plane.SumSqr(1), (1 + 4 + 1) * 8);
  EXPECT_EQ(all.GetKernels().GetFront().Sum(0), 3);
  EXPECT_TRUE(none.GetCSz() == -1 && none.Sum(0) == 1 && none.SumSqr(5) == 1);
  EXPECT_EQ(none.Rect(), ZUMRect());
}

TEST(Kernels, SeparableOnesAreTested) {
  using Image = ZUMImage<ZUMReal>;
  const auto make = [](int csz, auto... end) { return Image({0, 0, 0, 0, end...}, csz, 1.0); };
  const auto check = [](const char* problem, const Image(&k)[4]) {
    EXPECT_EQ(MessageOf([&] { ZUMKernel<ZUMReal>(k[0], k[1], k[2], k[3]); }), problem);
  };
  const char* const linear = "ZUMLSKernel::ZUMKernel: Non linear kernel aren't allowed";
  const char* const channels = "ZUMLSKernel::ZUMKernel: kernels with different number of channels";
  const Image lines[] = {make(1, 1, 0, 0, 0), make(1, 0, 1, 0, 0), make(1, 0, 0, 1, 0),
                         make(1, 0, 0, 0, 1)};
  check("", lines);
  for (int i = 0; i < 16; ++i) {
    Image kernels[4];
    kernels[i / 4] = lines[i % 4];
    check(i / 4 == i % 4 ? "" : linear, kernels);
  }
  const int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
  check(linear, {Image(ZUMRoDRef(0, least, 0, 0, -1, most, 0, 0), 1, nullptr), {}, {}, {}});
  const Image wide = make(2, 2, 0, 0, 0);
  check(linear, {wide, lines[0], {}, {}});
  check(channels, {wide, {}, {}, lines[3]});
}

}  // namespace
