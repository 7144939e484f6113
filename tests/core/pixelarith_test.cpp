#include "zuml/core/pixelarith.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"

namespace {

using zuml_test::Random;

__extension__ typedef __int128 Wide;

// What is left of an integer of any size in P's bits.
template <class P>
P Wrap(Wide value) {
  constexpr Wide kRange = static_cast<Wide>(1) << (8 * sizeof(P));
  value = (value % kRange + kRange) % kRange;
  return static_cast<P>(value > std::numeric_limits<P>::max() ? value - kRange : value);
}

template <class P>
class IntegerArithmetic : public testing::Test {};
TYPED_TEST_SUITE(IntegerArithmetic, zuml_test::IntegerTypes);

TYPED_TEST(IntegerArithmetic, Wraps) {
  using P = TypeParam;
  Random random(13);
  for (int i = 0; i < 20000; ++i) {
    const P a = random.Pixel<P>(), b = random.Pixel<P>();
    const Wide wide_a = a, wide_b = b;
    ASSERT_EQ(ZUMWrapAdd(a, b), Wrap<P>(wide_a + wide_b));
    ASSERT_EQ(ZUMWrapSub(a, b), Wrap<P>(wide_a - wide_b));
    ASSERT_EQ(ZUMWrapMul(a, b), Wrap<P>(wide_a * wide_b));
    ASSERT_EQ(ZUMWrapNeg(a), Wrap<P>(-wide_a));
    const auto count = static_cast<std::int32_t>(random.Next());
    const int shift = ((count % 32) + 32) % 32;
    ASSERT_EQ(ZUMShiftLeft(a, count), Wrap<P>(wide_a * (static_cast<Wide>(1) << shift)));
    ASSERT_EQ(ZUMShiftRight(a, count), Wrap<P>(wide_a >> shift));
    const auto wide = static_cast<std::int64_t>(random.Next());
    ASSERT_EQ(ZUMLowBits<P>(wide), Wrap<P>(wide));
    ASSERT_EQ((ZUMConvertPixel<P, ZUMLong>(static_cast<ZUMLong>(wide))),
              Wrap<P>(static_cast<ZUMLong>(wide)));
  }
}

// In constant expressions the compiler refuses whatever is undefined.
static_assert(ZUMWrapAdd<ZUMLong>(0x7FFFFFFF, 1) == INT32_MIN);
static_assert(ZUMWrapMul<ZUMLong>(0x10001, 0x10001) == 0x20001);
static_assert(ZUMWrapMul<std::int64_t>(INT64_MAX, 2) == -2);
static_assert(ZUMWrapNeg<ZUMLong>(INT32_MIN) == INT32_MIN);
static_assert(ZUMShiftLeft<ZUMShort>(-1, 15) == INT16_MIN);
static_assert(ZUMShiftRight<ZUMShort>(-1, 31) == -1 && ZUMShiftRight<ZUMByte>(128, 7) == 1);
static_assert(ZUMTruncate<ZUMByte>(300.7) == 44 && ZUMTruncate<ZUMByte>(-0.9) == 0);
static_assert(ZUMTruncate<ZUMLong>(std::numeric_limits<double>::quiet_NaN()) == 0);
static_assert(ZUMTruncate<ZUMLong>(-0x1p63) == 0 && ZUMTruncate<ZUMLong>(0x1p63) == 0);
static_assert(ZUMTruncate64(-2.9) == -2 && ZUMTruncate64(0x1p53 + 2) == 9007199254740994);
static_assert(ZUMTruncate64(-0x1p63) == INT64_MIN && ZUMTruncate64(0x1p62) == int64_t{1} << 62);
static_assert(ZUMTruncate<bool>(0.2) && !ZUMTruncate<bool>(-0.0) &&
              ZUMTruncate<float>(0.5) == 0.5f);
static_assert(ZUMLowBits<bool>(int64_t{1} << 40));

TEST(PixelArithmetic, ComplexProductsFollowTheFormula) {
  const ZUMComplex product = ZUMWrapMul(ZUMComplex(2, 3), ZUMComplex(-5, 7));
  EXPECT_EQ(product, ZUMComplex(-31, -1));
  // The standard operator would turn this into an infinity.
  const ZUMComplex infinite = ZUMWrapMul(ZUMComplex(HUGE_VAL, HUGE_VAL), ZUMComplex(1, 1));
  EXPECT_TRUE(std::isnan(infinite.real()));
  EXPECT_EQ(infinite.imag(), HUGE_VAL);
  EXPECT_EQ(ZUMWrapNeg(ZUMComplex(1, -2)), ZUMComplex(-1, 2));
  EXPECT_EQ(ZUMMagnitude(ZUMComplex(0x3p600, -0x4p600)), 0x5p600);
}

}  // namespace
