#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"

using namespace zuml_test;

namespace {

// The integer nearest to zero, then its low bits.
template <class Q>
Q Truncate(double value) {
  return std::abs(value) < 0x1p63 ? static_cast<Q>(static_cast<long long>(value)) : Q(0);
}

template <class Q, class P>
Q Convert(P value) {
  if constexpr (std::same_as<P, Q>) {
    return value;
  } else if constexpr (std::same_as<Q, ZUMComplex>) {
    return static_cast<double>(value);
  } else if constexpr (std::same_as<P, ZUMComplex>) {
    if constexpr (std::same_as<Q, bool>) return value != ZUMComplex();
    const double re = value.real(), im = value.imag();
    return static_cast<Q>(Truncate<ZUMLong>(std::sqrt(re * re + im * im)));
  } else if constexpr (std::floating_point<P> && std::integral<Q> && !std::same_as<Q, bool>) {
    return Truncate<Q>(static_cast<double>(value));
  } else {
    return static_cast<Q>(value);
  }
}

// Where careless conversions go wrong.
constexpr double kSpecial[] = {0.3,        -0.7,         255.9,     300.7,   32768.5,
                               -32769.5,   2147483647.5, 0x1p31,    -0x1p31, -2147483649.5,
                               0x1p32 + 1, 0x1p53 + 2,   9.3e18,    -9.3e18, 1e300,
                               5e-324,     HUGE_VAL,     -HUGE_VAL, NAN};

// Calls f with a value of each type that images are converted to.
template <class F>
void ForEachValueType(F f) {
#define ZUML_CALL(TYPE) f(TYPE());
  ZUML_VALUE_TYPES(ZUML_CALL)
#undef ZUML_CALL
}

// By name, the only way to convert to an image's own type.
template <class Q, class P>
ZUMImage<Q> ConvertImage(const ZUMImage<P>& image) {
  return image.operator ZUMImage<Q>();
}

template <class P>
class Conversion : public testing::Test {};
TYPED_TEST_SUITE(Conversion, ValueTypes);

TYPED_TEST(Conversion, FollowsTheRuleOfEachPair) {
  using P = TypeParam;
  Random random(11);
  ForEachValueType([&]<class Q>(Q) {
    for (int i = 0; i < 10; ++i) {
      const WithThreads threads(kThreadCounts[i % 5]);
      // The long lines hold stretches that fit in 32 bits and others that do not.
      const ZUMRect box =
          i < 5 ? ZUMRect(-1, 2, -3, 4, 5, 4, -2, 5) : ZUMRect(3, 0, 0, 0, 1300, 7, 0, 0);
      const auto image = MakeRandomImage<P>(random, box, 2, kLayouts[i % 4]);
      ForEachPoint(image, 2, [&](int x, int y, auto... p) {
        if (y % 4 == 1 || random.Int(0, 3) != 0) return;
        image(x, y, p...) = Convert<P>(kSpecial[random.Int(0, std::size(kSpecial) - 1)]);
      });
      const auto converted = ConvertImage<Q>(image);
      EXPECT_TRUE(SameImage(
          converted, MakeByPoint<Q>(image, 2, [&](auto... p) { return Convert<Q>(image(p...)); })))
          << ZUMPixelTraits<Q>::kName;
      EXPECT_NE(converted.GetSimpleRaster(), image.GetSimpleRaster());
      EXPECT_EQ(converted.GetRasterSz(), 2LL * image.NPixels());
    }
    EXPECT_EQ(ConvertImage<Q>(ZUMImage<P>()).RoD(), ZUMEmptyRoD.RoD());
  });
}

// However the conversion comes about: a typed image copies, a generic image and one of the same
// type share.
TYPED_TEST(Conversion, SharesGenericImagesAndCopiesTypedOnes) {
  const auto check = []<class Q, class Image>(Q, Image source, bool shares) {
    const auto pass = [](ZUMImage<Q> image) { return image; };
    const auto refer = [](const ZUMImage<Q>& image) { return image; };
    const ZUMImage<Q> copied = std::as_const(source), direct(source), temporary = Image(source);
    ZUMImage<Q> set;
    set = source;
    for (const auto& image : {copied, direct, temporary, set, pass(source), refer(source)}) {
      EXPECT_EQ(image.GetSimpleRaster() == source.GetSimpleRaster(), shares);
    }
  };
  const ZUMImage<TypeParam> image({0, 0, 0, 0, 3, 2, 0, 0}, 1, TypeParam());
  ForEachValueType([&]<class Q>(Q q) { check(q, image, std::same_as<Q, TypeParam>); });
  check(TypeParam(), ZUMGenericImage(image), true);
}

TEST(ConversionOfBool, ReadsBytesOtherThan0And1) {
  unsigned char bytes[] = {0, 1, 2, 0x80, 0xFF, 0};
  const ZUMRoDRef rod(0, 0, 0, 0, 5, 0, 0, 0);
  const ZUMImage<bool> image(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  ForEachValueType([&]<class Q>(Q) {
    const auto expected = MakeByPoint<Q>(rod, 1, [&](int x, auto...) { return Q(bytes[x] != 0); });
    EXPECT_TRUE(SameImage(ConvertImage<Q>(image), expected));
  });
}

}  // namespace
