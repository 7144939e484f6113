#include "zuml/core/zumdisplacement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/zumconnectivity.h"

using namespace zuml_test;

namespace {

using Offsets = std::vector<long long>;

long long OffsetOf(long long record) { return record; }
template <class Record>
long long OffsetOf(const Record& record) {
  return record.offset;
}

template <class Array>
Offsets OffsetsOf(const Array& array) {
  Offsets offsets;
  for (const auto& record : array) offsets.push_back(OffsetOf(record));
  return offsets;
}

template <class Record, class P>
Record MakeRecord(long long offset, int x, int y, const P& pixel) {
  if constexpr (std::same_as<Record, long long>) {
    return offset;
  } else if constexpr (std::same_as<Record, ZUMDisplacementVector>) {
    return {offset, x, y, 0, 0};
  } else if constexpr (std::same_as<Record, ZUMDisplacementValue<P>>) {
    return {offset, pixel};
  } else {
    return {offset, &pixel};
  }
}

const ZUMRaster kTarget(ZUMRect(0, 0, 0, 0, 99, 2, 0, 0), 2, ZUMBytePixel);

enum Origin { kDirect, kWhole, kPerChannel };

template <class P>
class Displacements : public testing::Test {};
using OrderedTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(Displacements, OrderedTypes);

TYPED_TEST(Displacements, FollowTheCoordinates) {
  using P = TypeParam;
  using O = ZUMDisplacementArray;
  using W = ZUMDisplacementVectorArray;
  using V = ZUMDisplacementValueArray<P>;
  using A = ZUMDisplacementAddressArray<P>;
  Random random(17);
  for (int round = 0; round < 24; ++round) {
    const ZUMRaster target = MakeRandomImage<ZUMShort>(random, MakeRandomBox(random, 9, 7, 3, 3), 2,
                                                       kLayouts[round / 4 % 4]);
    const ZUMRect box = MakeRandomBox(random, 5, 3, 2, 2);
    const auto mixed = MakeRandomImage<P>(random, box, random.Int(1, 3), kLayouts[round % 4]);
    ForEachPoint(mixed, mixed.GetCSz(),
                 [&](auto... p) { mixed(p...) = static_cast<P>(std::max(0, random.Int(-2, 3))); });
    // What the member gives is what `take` says, in sweep order; where that is nothing, it throws
    // in the given name.
    const auto check = [&]<class Array, class... Args>(const std::string& name,
                                                       void (Array::*member)(Args...),
                                                       Origin origin, auto take, auto... value) {
      using Record = typename Array::value_type;
      for (const auto& element : {mixed, ZUMImage<P>(box, 2, 0), ZUMImage<P>()}) {
        std::vector<Record> expected;
        ForEachPoint(element, element.GetCSz(), [&](int x, int y, int z, int t, int c) {
          if (!take(element, x, y, z, t, c)) return;
          const auto offset = target.Displacement(x, y, z, t, origin == kPerChannel ? 0 : c);
          expected.push_back(MakeRecord<Record>(origin == kDirect ? offset : -offset, x, y,
                                                element(x, y, z, t, c)));
        });
        Array array;
        array.Put();
        EXPECT_EQ(MessageOf([&] { (array.*member)(target, element, value...); }),
                  expected.empty() && name != ""
                      ? name + " Un elemento estructurante ha de tener como mínimo un pixel"
                      : "");
        EXPECT_EQ(std::vector<Record>(array.begin(), array.end()), expected) << name << element;
      }
    };
    const P one = std::same_as<P, bool> ? 0 : 1;
    const auto all = [](auto...) { return true; };
    const auto set = [](const auto& e, auto... p) { return e(p...) != 0; };
    const auto greater = [one](const auto& e, auto... p) { return e(p...) > one; };
    const auto greater_eq = [one](const auto& e, auto... p) { return e(p...) >= one; };
    const std::string v = "ZUMDisplacementValueArray<PixT>::";
    check(v + "FromPixels", &V::FromPixels, kDirect, all);
    check(v + "FromNonZeroPixels", &V::FromNonZeroPixels, kDirect, set);
    check(v + "SymmetricFromPixels", &V::SymmetricFromPixels, kPerChannel, all);
    check(v + "SymmetricFromNonZeroPixels", &V::SymmetricFromNonZeroPixels, kPerChannel, set);
    check(v + "FromGreaterPixels", &V::FromGreaterPixels, kDirect, greater, one);
    check(v + "FromGreaterEqPixels", &V::FromGreaterEqPixels, kDirect, greater_eq, one);
    const std::string a = "ZUMDisplacementAddressArray<PixT>::";
    check(a + "FromPixels", &A::FromPixels, kDirect, all);
    check(a + "FromNonZeroPixels", &A::FromNonZeroPixels, kDirect, set);
    check(a + "SymmetricFromPixels", &A::SymmetricFromPixels, kWhole, all);
    check(a + "SymmetricFromNonZeroPixels", &A::SymmetricFromNonZeroPixels, kWhole, set);
    check(a + "FromGreaterEqPixels", &A::FromGreaterEqPixels, kDirect, greater_eq, one);
    if constexpr (ZUMDiscretePixel<P>) {
      const auto equal = [one](const auto& e, auto... p) { return e(p...) == one; };
      check("", &O::FromEqualPixels<P>, kDirect, equal, one);
      check("", &O::SymmetricFromEqualPixels<P>, kPerChannel, equal, one);
    }
    if constexpr (std::same_as<P, bool>) {
      const auto right = [](const auto& e, int x, auto... p) {
        return e(x, p...) && (x == e.EndX() || !e(x + 1, p...));
      };
      const auto left = [](const auto& e, int x, auto... p) {
        return e(x, p...) && (x == e.BeginX() || !e(x - 1, p...));
      };
      const std::string o = "ZUMDisplacementArray::", direct = o + "FromNonZeroPixels",
                        mirrored = o + "SymmetricFromNonZeroPixels";
      check(o + "FromPixels", &O::FromPixels, kDirect, all);
      check(direct, &O::FromNonZeroPixels, kDirect, set);
      check(direct + "L2RIn", &O::FromNonZeroPixelsL2RIn, kDirect, right);
      check(direct, &O::FromNonZeroPixelsL2ROut, kDirect, left);
      check(mirrored, &O::SymmetricFromNonZeroPixels, kPerChannel, set);
      check(mirrored + "L2RIn", &O::SymmetricFromNonZeroPixelsL2RIn, kWhole, left);
      check(direct, &O::SymmetricFromNonZeroPixelsL2ROut, kWhole, right);
      check(direct, &W::FromNonZeroPixels, kDirect, set);
      check(mirrored, &W::SymmetricFromNonZeroPixels, kWhole, set);
    }
  }
}

TEST(Displacements, OddBytesOfWrappedBoolsAreTrue) {
  unsigned char bytes[] = {0, 2, 255, 0, 1, 64};
  const ZUMRect box(0, 0, 0, 0, 5, 0, 0, 0);
  const ZUMImage<ZUMBool> element(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  ZUMDisplacementArray a;
  a.SurroundPath(kTarget, element);
  EXPECT_EQ(OffsetsOf(a), (Offsets{1, 2}));
  ZUMDisplacementValueArray<ZUMBool> v;
  v.FromGreaterEqPixels(kTarget, element, true);
  EXPECT_EQ(OffsetsOf(v), (Offsets{1, 2, 4, 5}));
  for (const auto& record : v) {
    EXPECT_EQ(reinterpret_cast<const unsigned char&>(record.value), 1);
  }
}

TEST(Displacements, AreSelectedByStrictLimitsAndReorderedAsWholeRecords) {
  const auto check = [&]<class Array>(Array array, const auto& element) {
    array.FromNonZeroPixels(kTarget, element);
    const Array all = array;
    array.GreaterDisplacements(-100);
    EXPECT_EQ(OffsetsOf(array), (Offsets{-99, -1, 1, 99, 100, 101}));
    array.LessDisplacements(100);
    EXPECT_EQ(OffsetsOf(array), (Offsets{-99, -1, 1, 99}));
    if constexpr (requires { array.Disarrange(); }) {
      array.Disarrange();
      EXPECT_EQ(OffsetsOf(array), (Offsets{-99, 99, 1, -1}));
    }
    for (const auto& record : array) EXPECT_TRUE(std::count(all.begin(), all.end(), record));
  };
  check(ZUMDisplacementArray(), ZUMCon8);
  check(ZUMDisplacementVectorArray(), ZUMCon8);
  check(ZUMDisplacementValueArray<ZUMLong>(), ZUMChamferSteps);
  check(ZUMDisplacementAddressArray<ZUMLong>(), ZUMChamferSteps);
}

TEST(Displacements, DisarrangeHasAFixedOrder) {
  for (const int n : {0, 1, 10, 4097}) {
    ZUMDisplacementArray a;
    for (int i = 0; i < n; ++i) a.Put(i);
    a.Disarrange();
    if (n == 10) {
      EXPECT_EQ(OffsetsOf(a), (Offsets{0, 9, 8, 2, 4, 6, 1, 3, 5, 7}));
    }
    std::sort(a.begin(), a.end());
    for (int i = 0; i < n; ++i) ASSERT_EQ(a[i], i);
  }
}

TEST(Displacements, PointListsKeepTheirOrder) {
  const ZUMImage<ZUMBool> image({-1, 0, 2, 0, 2, 1, 2, 0}, 2, false);
  image(2, 0, 2) = image(-1, 1, 2) = image(0, 0, 2, 0, 1) = image(1, 0, 2, 0, 1) = true;
  ZUMPointList points;
  ZUMDisplacementArray a;
  points.FromNonZeroPixels(image);
  points.Put({1, 0, 0, 90000000});  // beyond what 32 bits hold
  a.FromPointList(kTarget, points);
  EXPECT_EQ(OffsetsOf(a), (Offsets{602, 699, 600, 601, 27000000001}));
  points.Disarrange();
  a.FromPointList(kTarget, points);
  EXPECT_EQ(OffsetsOf(a), (Offsets{602, 27000000001, 601, 699, 600}));
  a.FromPointList(kTarget, ZUMPointList());
  EXPECT_EQ(OffsetsOf(a), Offsets());
}

TEST(Displacements, SurroundPathWalksClockwise) {
  ZUMDisplacementArray a;
  const auto walk = [&](const ZUMImage<ZUMBool>& path) {
    a.Put();
    const std::string text = MessageOf([&] { a.SurroundPath(kTarget, path); });
    EXPECT_TRUE(text.empty() || a.GetLength() == 0);
    return text;
  };
  // True pixels around the region of a cut are none of the path; nor are those of a second channel.
  const ZUMImage<ZUMBool> surroundings({-4, -4, 0, 0, 4, 4, 0, 0}, 2, true);
  const ZUMImage<ZUMBool> ring = surroundings.Cut(ZUMCon8);
  ring.Channel(0).SetPixels(ZUMCon8);
  EXPECT_EQ(walk(ring), "");
  EXPECT_EQ(OffsetsOf(a), (Offsets{1, 101, 100, 99, -1, -101, -100, -99}));
  EXPECT_TRUE(SameImage(ring.Channel(0), ZUMCon8)) << "the path has changed";
  // The start is the first pixel right of the origin, and the walk ends where it cannot go on.
  const ZUMImage<ZUMBool> arc({2, -1, 0, 0, 4, 1, 0, 0}, 1, false);
  arc(3, 0) = arc(4, 0) = arc(2, 1) = true;
  EXPECT_EQ(walk(arc), "");
  EXPECT_EQ(OffsetsOf(a), (Offsets{3, 4}));

  const ZUMImage<ZUMBool> left({-2, 0, 0, 0, 2, 0, 0, 0}, 1, false);
  left(0) = left(-1) = true;
  EXPECT_EQ(walk(left), "SurroundPath: path start not found");
  EXPECT_EQ(walk({ZUMRect(0, 1, 0, 0, 3, 2, 0, 0), 1, true}), "SurroundPath: path start not found");
  EXPECT_EQ(walk({}), "ZUMAddFrame: It is not allowed add a frame to an empty image");
  // Far from the origin, where the search once took seconds, and at the ends of 32 bits.
  constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();
  for (const int x : {1000000000, kMax - 1}) {
    EXPECT_EQ(walk({ZUMRect(x, 0, 0, 0, x + 1, 0, 0, 0), 1, true}), "");
    EXPECT_EQ(OffsetsOf(a), (Offsets{x, x + 1}));
    EXPECT_EQ(walk({ZUMRect(x, 0, 0, 0, x + 1, 0, 0, 0), 1, false}),
              "SurroundPath: path start not found");
  }
  const ZUMImage<ZUMBool> corner({kMax, kMax, kMin, kMin, kMax, kMax, kMin, kMin}, 1, true);
  ZUMPointList points;
  points.FromNonZeroPixels(corner);
  EXPECT_EQ(points[0], ZUMBasePoint<int>(kMax, kMax, kMin, kMin));
  const ZUMRaster huge(ZUMRect(1, 0, 0, 0, kMax, 0, 0, 0), 1, ZUMBytePixel, &a);
  a.SymmetricFromNonZeroPixels(huge, corner);
  EXPECT_EQ(a[0], -kMax - kMax * (0LL + kMax + kMin + kMin));
}

}  // namespace
