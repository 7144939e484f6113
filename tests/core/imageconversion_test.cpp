#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"
#include "zuml/core/zumimage.h"

namespace {

using zuml_test::Layout;
using zuml_test::MakeByPoint;
using zuml_test::MakeRandomImage;
using zuml_test::Random;
using zuml_test::SameImage;

// The integer nearest to zero, then what is left of it modulo 2^bits.
template <class Q>
Q Truncate(double value) {
  constexpr int kBits = 8 * static_cast<int>(sizeof(Q));
  if (!(std::abs(value) < 0x1p63)) return 0;
  double left = std::fmod(std::trunc(value), std::ldexp(1.0, kBits));
  if (left < static_cast<double>(std::numeric_limits<Q>::min())) left += std::ldexp(1.0, kBits);
  if (left > static_cast<double>(std::numeric_limits<Q>::max())) left -= std::ldexp(1.0, kBits);
  return static_cast<Q>(left);
}

template <class Q, class P>
Q Convert(P value) {
  if constexpr (std::same_as<P, Q>) {
    return value;
  } else if constexpr (std::same_as<P, ZUMComplex>) {
    if constexpr (std::same_as<Q, bool>) return value != ZUMComplex();
    const double re = value.real(), im = value.imag();
    const double magnitude = Truncate<ZUMLong>(std::sqrt(re * re + im * im));
    if constexpr (std::integral<Q> && !std::same_as<Q, bool>) return Truncate<Q>(magnitude);
    if constexpr (std::floating_point<Q>) return static_cast<Q>(magnitude);
  } else if constexpr (std::same_as<Q, bool>) {
    return value != 0;
  } else if constexpr (std::integral<Q>) {
    return Truncate<Q>(static_cast<double>(value));
  } else {
    return static_cast<Q>(value);
  }
}

// Random pixels, and those at which careless conversions go wrong.
template <class P>
P MakePixel(Random& random) {
  static const double kSpecial[] = {0.3,        -0.7,         255.9,     300.7,       32768.5,
                                    -32769.5,   2147483647.5, 0x1p31,    -0x1p31,     -2147483649.5,
                                    0x1p32 + 1, 0x1p53 + 2,   9.3e18,    -9.3e18,     1e300,
                                    5e-324,     HUGE_VAL,     -HUGE_VAL, std::nan("")};
  if (std::integral<P> || random.Int(0, 3) != 0) return random.Pixel<P>();
  const auto special = [&] { return kSpecial[random.Int(0, std::size(kSpecial) - 1)]; };
  if constexpr (std::same_as<P, ZUMComplex>) {
    const double re = special();
    return {re, special()};
  } else {
    return static_cast<P>(special());
  }
}

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

bool Shares(const ZUMGenericImage& a, const ZUMGenericImage& b) {
  return a.GetSimpleRaster() == b.GetSimpleRaster();
}

template <class P>
class Conversion : public testing::Test {};
TYPED_TEST_SUITE(Conversion, zuml_test::ValueTypes);

TYPED_TEST(Conversion, FollowsTheRuleOfEachPair) {
  using P = TypeParam;
  Random random(11);
  ForEachValueType([&]<class Q>(Q) {
    for (int i = 0; i < 10; ++i) {
      const zuml_test::WithThreads threads(zuml_test::kThreadCounts[i % 5]);
      // The long lines hold stretches that fit in 32 bits and others that do not.
      const ZUMRect box =
          i < 5 ? ZUMRect(-1, 2, -3, 4, 5, 4, -2, 5) : ZUMRect(3, 0, 0, 0, 1300, 7, 0, 0);
      const auto image = MakeRandomImage<P>(random, box, 2, zuml_test::kLayouts[i % 4]);
      zuml_test::ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
        if (y % 4 != 1) image(x, y, z, t, c) = MakePixel<P>(random);
      });
      const ZUMImage<P> before = ZUMCopy(image);
      const auto expected = MakeByPoint<Q>(image, 2, [&](int x, int y, int z, int t, int c) {
        return Convert<Q>(image(x, y, z, t, c));
      });
      const ZUMImage<Q> converted = ConvertImage<Q>(image);
      EXPECT_TRUE(SameImage(converted, expected)) << ZUMPixelTraits<Q>::kName;
      EXPECT_FALSE(Shares(converted, image)) << ZUMPixelTraits<Q>::kName;
      EXPECT_EQ(converted.GetRasterSz(), 2LL * image.NPixels());
      EXPECT_TRUE(SameImage(image, before));
    }
    EXPECT_EQ(ConvertImage<Q>(ZUMImage<P>()).RoD(), ZUMEmptyRoD.RoD());
  });
}

template <class Q>
ZUMImage<Q> PassByValue(ZUMImage<Q> image) {
  return image;
}
template <class Q>
ZUMImage<Q> PassByReference(const ZUMImage<Q>& image) {
  return image;
}
template <class Q, class Image>
ZUMImage<Q> Return(const Image& image) {
  return image;
}

// However the conversion comes about: a typed image copies, a generic image and one of the same
// type share.
template <class Q, class Image>
void ExpectSharing(const Image& source, bool shares) {
  Image changeable = source;
  const ZUMImage<Q> copied = source, direct(source), braced{source}, listed = {source};
  ZUMImage<Q> from_changeable = changeable, from_temporary = Image(source), assigned;
  assigned = source;
  for (const ZUMImage<Q>& image : {copied, direct, braced, listed, from_changeable, from_temporary,
                                   assigned, static_cast<ZUMImage<Q>>(source), Return<Q>(source),
                                   PassByValue<Q>(source), PassByValue<Q>(changeable),
                                   PassByReference<Q>(source), PassByReference<Q>(Image(source))}) {
    EXPECT_EQ(Shares(image, source), shares);
    EXPECT_EQ(image.NPixels(), source.NPixels());
  }
}

TYPED_TEST(Conversion, SharesGenericImagesAndCopiesTypedOnes) {
  const ZUMImage<TypeParam> image(ZUMRoDRef(0, 0, 0, 0, 3, 2, 0, 0), 1, TypeParam());
  ForEachValueType([&]<class Q>(Q) { ExpectSharing<Q>(image, std::same_as<Q, TypeParam>); });
  ExpectSharing<TypeParam>(ZUMGenericImage(image), true);
}

TEST(ConversionOfBool, ReadsBytesOtherThan0And1) {
  unsigned char bytes[] = {0, 1, 2, 0x80, 0xFF, 0, 3, 1};
  const ZUMRoDRef rod(0, 0, 0, 0, 7, 0, 0, 0);
  const ZUMImage<bool> image(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  ForEachValueType([&]<class Q>(Q) {
    const auto expected = MakeByPoint<Q>(
        rod, 1, [&](int x, int, int, int, int) { return bytes[x] != 0 ? Q(1) : Q(0); });
    EXPECT_TRUE(SameImage(ConvertImage<Q>(image), expected));
  });
}

TEST(ConversionOfNumbers, WorkedByHand) {
  const ZUMRoDRef rod(0, 0, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(ZUMImage<ZUMByte>(ZUMImage<ZUMReal>(rod, 1, 300.7))(0), 44);
  EXPECT_EQ(ZUMImage<ZUMShort>(ZUMImage<ZUMReal>(rod, 1, -98304.5))(0), -32768);
  EXPECT_EQ(ZUMImage<ZUMReal>(ZUMImage<ZUMComplex>(rod, 1, {3, 4}))(0), 5.0);
  EXPECT_EQ(ZUMImage<ZUMSReal>(ZUMImage<ZUMComplex>(rod, 1, {1, 1}))(0), 1.0f);
  EXPECT_EQ(ZUMImage<ZUMReal>(ZUMImage<ZUMComplex>(rod, 1, 0x1p31))(0), -0x1p31);
}

}  // namespace
