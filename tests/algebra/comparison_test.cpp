#include "zuml/algebra/comparison.h"

#include "tests/support/everylayout.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/logic.h"
#include "zuml/algebra/product.h"

namespace {

using namespace zuml_test;

TEST(Comparison, PointWise) {
  ForTypes(ScalarTypes(), []<class P>() {
    CheckForms<P>(std::less<>(), std::less<>(), "operator<", "");
    CheckForms<P>(std::greater<>(), std::greater<>(), "operator>", "");
    CheckForms<P>(std::less_equal<>(), std::less_equal<>(), "operator<=", "");
    CheckForms<P>(std::greater_equal<>(), std::greater_equal<>(), "operator>=", "");
  });
  ForTypes(AlgebraTypes(), []<class P>() {
    CheckForms<P>([](const auto& a, const auto& b) { return ZUMPointEqual(a, b); },
                  std::equal_to<>(), "ZUMPointEqual", "");
    CheckForms<P>([](const auto& a, const auto& b) { return ZUMPointNotEqual(a, b); },
                  std::not_equal_to<>(), "ZUMPointNotEqual", "");
  });
}

// Each pixel in turn makes the difference, in every layout and in runs longer than a stretch.
TEST(Comparison, WholeImages) {
  ForTypes(AlgebraTypes(), []<class P>() {
    Random random(5);
    for (const Layout layout : kLayouts) {
      for (const ZUMRect box :
           {ZUMRect(-3, 2, 0, 1, 0, 3, 1, 2), ZUMRect(0, 0, 0, 0, 3000, 0, 0, 0)}) {
        const ZUMImage<P> a = MakeRandomImage<P>(random, box, 2, layout);
        ZUMImage<P> b = ZUMCopy(a);
        EXPECT_TRUE(a == b && !(a != b));
        ForEachPoint(a, 2, [&](int x, int y, int z, int t, int c) {
          if (x % 341 > 1) return;  // 1023 and 1024 among them
          const P kept = b(x, y, z, t, c);
          b(x, y, z, t, c) = kept == P(1) ? P(0) : P(1);
          EXPECT_TRUE(a != b && !(a == b));
          b(x, y, z, t, c) = kept;
        });
        b.SetPixels(P(1));
        EXPECT_TRUE(b == P(1) && P(1) == b && b != P(0) && P(0) != b);
        b(box.end.x, box.end.y, box.end.z, box.end.t, 1) = P(0);
        EXPECT_TRUE(b != P(1) && P(1) != b && !(b == P(1)));
      }
    }
  });
}

TEST(Comparison, WholeImagesAtTheirEdges) {
  const ZUMRect box(0, 0, 0, 0, 3, 0, 0, 0);
  const ZUMImage<double> a(box, 1, 0.0), more(box, 2, 0.0), nan(box, 1, NAN);
  const ZUMImage<double> larger(ZUMRect(0, 0, 0, 0, 4, 0, 0, 0), 1, 0.0);
  EXPECT_TRUE(a == ZUMImage<double>(box, 1, -0.0));
  EXPECT_FALSE(a == more);
  EXPECT_FALSE(a == larger);
  EXPECT_TRUE(a == larger.Cut(box));
  EXPECT_TRUE(SameImage(ZUMPointEqual(a, larger), ZUMImage<bool>(box, 1, true)));
  EXPECT_FALSE(nan == nan);
  EXPECT_FALSE(nan == double(NAN));
  // Empty images are equal if their boxes are; every pixel of them equals any number.
  const ZUMImage<double> empty;
  const ZUMImage<double> other = a.Cut(ZUMRect(9, 0, 0, 0, 9, 0, 0, 0));
  EXPECT_TRUE(empty == ZUMImage<double>());
  EXPECT_FALSE(empty == other);
  EXPECT_TRUE(other == ZUMCopy(other));
  EXPECT_TRUE(empty == 1 && 2 == empty);
  EXPECT_FALSE(empty != 1 || 2 != empty);
  // Bytes other than 0 and 1 in memory that was wrapped are true.
  unsigned char bytes[] = {0, 1, 2, 255};
  const ZUMRoDRef rod(box);
  const ZUMImage<bool> wrapped(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  const ZUMImage<bool> truth = MakeLine<bool>({false, true, true, true});
  EXPECT_TRUE(wrapped == truth);
  EXPECT_TRUE(wrapped.Cut(ZUMRect(1, 0, 0, 0, 3, 0, 0, 0)) == true);
  EXPECT_TRUE(SameImage(wrapped > false, truth));
  EXPECT_TRUE(SameImage(wrapped || wrapped, truth));
  EXPECT_TRUE(SameImage(wrapped - false, truth));
}

// A plain integer beside an image is taken for a pixel of any type; an operator has one meaning.
TEST(Comparison, LiteralsBesideImages) {
  ForTypes(AlgebraTypes(), []<class P>() {
    const ZUMImage<P> one(ZUMRect(0, 0, 0, 0, 4, 1, 0, 0), 2, P(1));
    EXPECT_TRUE(one == 1 && 1 == one && one != 0 && 0 != one);
    EXPECT_TRUE(one - 1 == 0 && 1 - one == 0 && one - one == 0);
    EXPECT_TRUE(ZUMPointEqual(one, 1) == true && ZUMPointNotEqual(1, one) == false);
    if constexpr (!std::same_as<P, bool>) {
      EXPECT_TRUE(one + 1 == 2 && 1 + one == 2 && 3 * one == 3 && one * 3 == 3);
    }
    if constexpr (!std::same_as<P, ZUMComplex>) {
      EXPECT_TRUE((one < 1) == false && (0 < one) == true && (one >= 1) == true);
      EXPECT_TRUE((one > 0) == true && (1 > one) == false && (0 <= one) == true);
    }
    if constexpr (std::same_as<P, bool>) {
      EXPECT_TRUE((one && true) == one && (false || one) == one && !(!one) == one);
    } else if constexpr (std::integral<P>) {
      EXPECT_TRUE((one << 1) == 2 && (1 << one) == 2 && (2 >> one) == 1 && (one & 1) == 1);
    }
  });
}

}  // namespace
