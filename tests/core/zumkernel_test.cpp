#include "zuml/core/zumkernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/testimages.h"

using namespace zuml_test;

namespace {

template <class T>
std::vector<ZUMKernelFactor<T>> FactorsOf(const ZUMSubKernel<T>& kernel, int c) {
  const auto& factors = kernel.GetFactors(c);
  return {factors.begin(), factors.end()};
}

// A kernel of small whole numbers, some of them 0.
template <class T>
ZUMImage<T> MakeKernelImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const ZUMImage<T> image = MakeRandomImage<T>(random, box, csz, layout);
  ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
    image(x, y, z, t, c) = static_cast<T>(std::max(0, random.Int(-4, 4)) - 1);
  });
  return image;
}

template <class T>
class Kernels : public testing::Test {};
using CoefficientTypes = testing::Types<ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Kernels, CoefficientTypes);

TYPED_TEST(Kernels, FactorsAreTheNonZeroPixels) {
  using T = TypeParam;
  Random random(3);
  for (Layout layout : kLayouts) {
    for (int csz : {1, 2, 3}) {
      const ZUMRect box = MakeRandomBox(random, 5, 4, 2, 3);
      const ZUMImage<T> image = MakeKernelImage<T>(random, box, csz, layout);
      const ZUMSubKernel<T> stage(image);
      const ZUMKernel<T> kernel(image);
      std::vector<std::vector<ZUMKernelFactor<T>>> expected(static_cast<std::size_t>(csz));
      ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
        const T value = image(x, y, z, t, c);
        if (value != 0) expected[static_cast<std::size_t>(c)].push_back({value, x, y, z, t});
      });
      ASSERT_EQ(csz, stage.GetCSz());
      ASSERT_EQ(csz, kernel.GetCSz());
      ASSERT_EQ(1, kernel.GetKernels().Length());
      for (int c = 0; c < csz; ++c) {
        const auto& factors = expected[static_cast<std::size_t>(c)];
        EXPECT_EQ(factors, FactorsOf(stage, c));
        EXPECT_EQ(factors, FactorsOf(kernel.GetKernels().GetFront(), c));
        T sum = 0, squares = 0;
        for (const auto& f : factors) {
          sum += f.coefficient;
          squares += f.coefficient * f.coefficient;
        }
        EXPECT_EQ(sum, stage.Sum(c));
        EXPECT_EQ(squares, stage.SumSqr(c));
        EXPECT_EQ(sum, kernel.Sum(c));
        EXPECT_EQ(squares, kernel.SumSqr(c));
      }
      const ZUMRect flat(box.begin.x, box.begin.y, 0, 0, box.end.x, box.end.y, 0, 0);
      EXPECT_EQ(flat, stage.GetRect());
      EXPECT_EQ(flat, kernel.Rect());
    }
  }
}

TEST(Kernels, RegionsAndFramesFollowTheBox) {
  const ZUMRoDRef rod(0, 0, 5, 6, 9, 9, 7, 8);
  const ZUMSubKernel<ZUMLong> unit(ZUMImage<ZUMLong>(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, 1));
  EXPECT_EQ(ZUMRect(1, 1, 5, 6, 8, 8, 7, 8), unit.DirectRoD(rod).Rect());
  EXPECT_EQ(ZUMRect(1, 1, 5, 6, 8, 8, 7, 8), unit.SymmetricRoD(rod).Rect());

  // The region of p + k and of p - k, point by point; the frame makes up for what they lose.
  for (const ZUMRect& box : {ZUMRect(-1, 0, 0, 0, 2, 3, 0, 0), ZUMRect(-3, -2, 0, 0, -1, 0, 0, 0),
                             ZUMRect(1, 2, 0, 0, 1, 4, 0, 0)}) {
    const ZUMSubKernel<ZUMLong> stage(ZUMImage<ZUMLong>(box, 1, 0));
    const ZUMRoDRef direct = stage.DirectRoD(rod), symmetric = stage.SymmetricRoD(rod);
    ForEachPoint(ZUMRoDRef(-8, -8, 5, 6, 18, 18, 5, 6), 1, [&](int x, int y, int z, int t, int) {
      bool plus = true, minus = true;
      ForEachPoint(box, 1, [&](int kx, int ky, int, int, int) {
        plus = plus && rod.InP(x + kx, y + ky, z, t);
        minus = minus && rod.InP(x - kx, y - ky, z, t);
      });
      ASSERT_EQ(plus, direct.InP(x, y, z, t)) << x << ',' << y;
      ASSERT_EQ(minus, symmetric.InP(x, y, z, t)) << x << ',' << y;
    });
    const ZUMRect frame = stage.GetFrame(), mirrored = stage.GetSymmetricFrame();
    EXPECT_EQ(ZUMRect(-box.begin.x, -box.begin.y, 0, 0, box.end.x, box.end.y, 0, 0), frame);
    EXPECT_EQ(ZUMRect(frame.end, frame.begin), mirrored);
  }
}

TEST(Kernels, SeparableOnesHaveAStagePerAxis) {
  const ZUMLong x_values[] = {1, 0, 2, 3, 4, 5}, y_values[] = {1, -1, 2, 2};
  const ZUMImage<ZUMLong> kx(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 2, x_values);
  const ZUMImage<ZUMLong> ky(ZUMRect(0, 2, 0, 0, 0, 3, 0, 0), 2, y_values);
  const ZUMImage<ZUMLong> kz(ZUMRect(0, 0, -1, 0, 0, 0, 1, 0), 2, ZUMLong(2));
  const ZUMImage<ZUMLong> kt(ZUMRect(0, 0, 0, 4, 0, 0, 0, 5), 2, ZUMLong(3));

  const ZUMKernel<ZUMLong> plane(kx, ky, {}, {});
  EXPECT_EQ(2, plane.GetKernels().Length());
  EXPECT_EQ(2, plane.GetCSz());
  EXPECT_EQ(ZUMRect(-1, 0, 0, 0, 1, 3, 0, 0), plane.Rect());
  EXPECT_EQ(3 * 0, plane.Sum(0));
  EXPECT_EQ(12 * 4, plane.Sum(1));
  EXPECT_EQ(5 * 2, plane.SumSqr(0));
  EXPECT_EQ(50 * 8, plane.SumSqr(1));

  // Positions off the plane are kept; the box leaves them out.
  const ZUMKernel<ZUMLong> all(kx, ky, kz, kt);
  EXPECT_EQ(12 * 4 * 6 * 6, all.Sum(1));
  const auto last = std::next(all.GetKernels().begin(), 3);
  EXPECT_EQ((std::vector<ZUMKernelFactor<ZUMLong>>{{3, 0, 0, 0, 4}, {3, 0, 0, 0, 5}}),
            FactorsOf(*last, 1));
  EXPECT_EQ(ZUMRect(), last->GetRect());

  const ZUMKernel<ZUMReal> none({}, {}, {}, {});
  EXPECT_EQ(-1, none.GetCSz());
  EXPECT_EQ(1.0, none.Sum(0));
  EXPECT_EQ(1.0, none.SumSqr(5));
  EXPECT_EQ(ZUMRect(), none.Rect());
}

TEST(Kernels, SeparableOnesAreTested) {
  const auto text = [](const ZUMImage<ZUMReal>& kx, const ZUMImage<ZUMReal>& ky,
                       const ZUMImage<ZUMReal>& kz, const ZUMImage<ZUMReal>& kt) {
    return MessageOf([&] { ZUMKernel<ZUMReal>(kx, ky, kz, kt); });
  };
  const auto make = [](int x, int y, int z, int t, int csz = 1) {
    return ZUMImage<ZUMReal>(ZUMRect(0, 0, 0, 0, x - 1, y - 1, z - 1, t - 1), csz, 1.0);
  };
  const std::string linear = "ZUMLSKernel::ZUMKernel: Non linear kernel aren't allowed";
  const std::string channels = "ZUMLSKernel::ZUMKernel: kernels with different number of channels";
  const ZUMImage<ZUMReal> point = make(1, 1, 1, 1), none;
  EXPECT_EQ("", text(point, point, point, point));
  EXPECT_EQ("", text(make(3, 1, 1, 1), make(1, 3, 1, 1), make(1, 1, 3, 1), make(1, 1, 1, 3)));
  // The one axis that is allowed differs from argument to argument.
  const ZUMImage<ZUMReal> lines[] = {make(2, 1, 1, 1), make(1, 2, 1, 1), make(1, 1, 2, 1),
                                     make(1, 1, 1, 2)};
  for (int axis = 0; axis < 4; ++axis) {
    const ZUMImage<ZUMReal>& line = lines[axis];
    EXPECT_EQ(axis == 0 ? "" : linear, text(line, none, none, none)) << axis;
    EXPECT_EQ(axis == 1 ? "" : linear, text(none, line, none, none)) << axis;
    EXPECT_EQ(axis == 2 ? "" : linear, text(none, none, line, none)) << axis;
    EXPECT_EQ(axis == 3 ? "" : linear, text(none, none, none, line)) << axis;
  }
  EXPECT_EQ(linear, text(make(3, 3, 1, 1), none, none, none));
  EXPECT_EQ(linear, text(make(3, 1, 1, 1, 2), make(2, 1, 1, 1), none, none));
  EXPECT_EQ(channels, text(make(3, 1, 1, 1, 2), none, none, point));
  EXPECT_EQ(channels, text(none, point, make(1, 1, 1, 1, 3), none));
}

TEST(Kernels, SumsWrap) {
  constexpr ZUMLong kMax = std::numeric_limits<ZUMLong>::max();
  const ZUMLong values[] = {kMax, 1};
  const ZUMKernel<ZUMLong> kernel(ZUMImage<ZUMLong>(ZUMRect(0, 0, 0, 0, 1, 0, 0, 0), 1, values));
  EXPECT_EQ(std::numeric_limits<ZUMLong>::min(), kernel.Sum(0));
  EXPECT_EQ(2, kernel.SumSqr(0));  // (2^31 - 1)^2 is 1 modulo 2^32
}

}  // namespace
