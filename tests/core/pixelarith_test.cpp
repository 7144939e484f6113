#include "zuml/core/pixelarith.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"

namespace {

template <class P>
class IntegerArithmetic : public testing::Test {};
TYPED_TEST_SUITE(IntegerArithmetic, zuml_test::IntegerTypes);

TYPED_TEST(IntegerArithmetic, Wraps) {
  using P = TypeParam;
  zuml_test::Random random(13);
  for (int i = 0; i < 20000; ++i) {
    const P a = random.Pixel<P>(), b = random.Pixel<P>();
    const std::int64_t wide_a = a, wide_b = b;  // Conversions to a narrower type keep the low bits.
    ASSERT_EQ(ZUMWrapAdd(a, b), static_cast<P>(wide_a + wide_b));
    ASSERT_EQ(ZUMWrapSub(a, b), static_cast<P>(wide_a - wide_b));
    ASSERT_EQ(ZUMWrapMul(a, b), static_cast<P>(wide_a * wide_b));
    ASSERT_EQ(ZUMWrapNeg(a), static_cast<P>(-wide_a));
    const auto count = static_cast<std::int32_t>(random.Next());
    ASSERT_EQ(ZUMShiftLeft(a, count), static_cast<P>(wide_a * (std::int64_t{1} << (count & 31))));
    ASSERT_EQ(ZUMShiftRight(a, count), static_cast<P>(wide_a >> (count & 31)));
  }
}

// In constant expressions the compiler refuses whatever is undefined.
static_assert(ZUMTruncate<ZUMByte>(300.7) == 44 && ZUMTruncate64(-2.9) == -2);
static_assert(ZUMTruncate<ZUMLong>(std::numeric_limits<double>::quiet_NaN()) == 0);
static_assert(ZUMTruncate64(-0x1p63) == INT64_MIN && ZUMTruncate64(0x1p63) == INT64_MIN);
static_assert(ZUMTruncate<bool>(0.2) && !ZUMTruncate<bool>(-0.0) && ZUMLowBits<bool>(1ll << 40));

TEST(PixelArithmetic, ComplexProductsFollowTheFormula) {
  EXPECT_EQ(ZUMWrapMul(ZUMComplex(2, 3), ZUMComplex(-5, 7)), ZUMComplex(-31, -1));
  // The standard operator would turn this into an infinity.
  EXPECT_TRUE(std::isnan(ZUMWrapMul(ZUMComplex(HUGE_VAL, HUGE_VAL), ZUMComplex(1, 1)).real()));
  EXPECT_EQ(ZUMMagnitude(ZUMComplex(0x3p600, -0x4p600)), 0x5p600);
}

}  // namespace
