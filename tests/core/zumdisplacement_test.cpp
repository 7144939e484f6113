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

static_assert(sizeof(ZUMDisplacementVector) == 24);
static_assert(sizeof(ZUMDisplacementValue<ZUMByte>) == 16);
static_assert(sizeof(ZUMDisplacementAddress<ZUMReal>) == 16);

using Offsets = std::vector<long long>;

template <class Array>
Offsets OffsetsOf(const Array& array) {
  Offsets offsets;
  for (const auto& record : array) {
    if constexpr (std::same_as<typename Array::value_type, long long>) {
      offsets.push_back(record);
    } else {
      offsets.push_back(record.offset);
    }
  }
  return offsets;
}

// The array that one member fills.
template <class Array, class... Parameters, class... Args>
Array Made(void (Array::*member)(Parameters...), const Args&... args) {
  Array array;
  (array.*member)(args...);
  return array;
}

ZUMImage<ZUMByte> MakeTarget(int x, int y, int csz = 1) {
  return {ZUMRect(0, 0, 0, 0, x - 1, y - 1, 0, 0), csz, ZUMByte(0)};
}

enum Origin { kDirect, kWhole, kPerChannel };

template <class P>
struct Taken {
  long long offset;
  int x, y;
  P value;
  const P* address;
};

// What a member must give: the pixels that take(x, y, z, t, c) says, in sweep order.
template <class P, class Take>
std::vector<Taken<P>> Walk(const ZUMRaster& target, const ZUMImage<P>& element, Origin origin,
                           Take take) {
  std::vector<Taken<P>> taken;
  ForEachPoint(element, element.GetCSz(), [&](int x, int y, int z, int t, int c) {
    if (!take(x, y, z, t, c)) return;
    const long long offset = target.Displacement(x, y, z, t, origin == kPerChannel ? 0 : c);
    const P* const address = &element(x, y, z, t, c);
    taken.push_back({origin == kDirect ? offset : -offset, x, y, *address, address});
  });
  return taken;
}

template <class P>
bool Matches(long long record, const Taken<P>& t) {
  return record == t.offset;
}
template <class P>
bool Matches(const ZUMDisplacementVector& record, const Taken<P>& t) {
  return record == ZUMDisplacementVector{t.offset, t.x, t.y, 0, 0};
}
template <class P>
bool Matches(const ZUMDisplacementValue<P>& record, const Taken<P>& t) {
  return record == ZUMDisplacementValue<P>{t.offset, t.value};
}
template <class P>
bool Matches(const ZUMDisplacementAddress<P>& record, const Taken<P>& t) {
  return record == ZUMDisplacementAddress<P>{t.offset, t.address};
}

template <class Record, class P>
bool Matches(const ZUMArray<Record>& array, const std::vector<Taken<P>>& taken) {
  return std::equal(array.begin(), array.end(), taken.begin(), taken.end(),
                    [](const Record& r, const Taken<P>& t) { return Matches(r, t); });
}

// Small values, so that many are equal or 0; never all of them.
template <class P>
ZUMImage<P> MakeElement(Random& random, Layout layout) {
  const ZUMImage<P> element =
      MakeRandomImage<P>(random, MakeRandomBox(random, 5, 3, 2, 2), random.Int(1, 3), layout);
  ForEachPoint(element, element.GetCSz(), [&](int x, int y, int z, int t, int c) {
    element(x, y, z, t, c) = static_cast<P>(std::max(0, random.Int(-2, 3)));
  });
  element(element.EndX(), element.BeginY(), element.EndZ(), element.BeginT()) = static_cast<P>(3);
  return element;
}

// Calls test(element, target) for elements and targets of all layouts.
template <class P, class Test>
void ForElements(Test test) {
  Random random(17);
  for (Layout layout : kLayouts) {
    for (int round = 0; round < 6; ++round) {
      SCOPED_TRACE(testing::Message() << "layout " << static_cast<int>(layout) << ' ' << round);
      const Layout other = kLayouts[round % 4];
      test(MakeElement<P>(random, layout),
           MakeRandomImage<ZUMShort>(random, MakeRandomBox(random, 9, 7, 3, 3), 2, other));
    }
  }
}

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
  ForElements<P>([](const ZUMImage<P>& element, const ZUMRaster& target) {
    const auto check = [&](auto member, Origin origin, auto take, auto... threshold) {
      EXPECT_TRUE(Matches(Made(member, target, element, threshold...),
                          Walk(target, element, origin, take)));
    };
    const P one = static_cast<P>(std::same_as<P, bool> ? 0 : 1);
    const auto all = [](auto...) { return true; };
    const auto set = [&](auto... p) { return element(p...) != 0; };
    const auto greater = [&](auto... p) { return element(p...) > one; };
    const auto greater_eq = [&](auto... p) { return element(p...) >= one; };
    check(&V::FromPixels, kDirect, all);
    check(&V::FromNonZeroPixels, kDirect, set);
    check(&V::SymmetricFromPixels, kPerChannel, all);
    check(&V::SymmetricFromNonZeroPixels, kPerChannel, set);
    check(&V::FromGreaterPixels, kDirect, greater, one);
    check(&V::FromGreaterEqPixels, kDirect, greater_eq, one);
    check(&A::FromPixels, kDirect, all);
    check(&A::FromNonZeroPixels, kDirect, set);
    check(&A::SymmetricFromPixels, kWhole, all);
    check(&A::SymmetricFromNonZeroPixels, kWhole, set);
    check(&A::FromGreaterEqPixels, kDirect, greater_eq, one);
    if constexpr (ZUMDiscretePixel<P>) {
      const auto equal = [&](auto... p) { return element(p...) == one; };
      check(&O::FromEqualPixels<P>, kDirect, equal, one);
      check(&O::SymmetricFromEqualPixels<P>, kPerChannel, equal, one);
    }
    if constexpr (std::same_as<P, bool>) {
      const auto right = [&](int x, auto... p) {
        return element(x, p...) && (x == element.EndX() || !element(x + 1, p...));
      };
      const auto left = [&](int x, auto... p) {
        return element(x, p...) && (x == element.BeginX() || !element(x - 1, p...));
      };
      check(&O::FromPixels, kDirect, all);
      check(&O::FromNonZeroPixels, kDirect, set);
      check(&O::SymmetricFromNonZeroPixels, kPerChannel, set);
      check(&O::FromNonZeroPixelsL2RIn, kDirect, right);
      check(&O::FromNonZeroPixelsL2ROut, kDirect, left);
      check(&O::SymmetricFromNonZeroPixelsL2RIn, kWhole, left);
      check(&O::SymmetricFromNonZeroPixelsL2ROut, kWhole, right);
      check(&W::FromNonZeroPixels, kDirect, set);
      check(&W::SymmetricFromNonZeroPixels, kWhole, set);
    }
  });
}

TEST(Displacements, WorkedByHand) {
  using A = ZUMDisplacementArray;
  using V = ZUMDisplacementVectorArray;
  const ZUMImage<ZUMByte> target = MakeTarget(100, 3, 2);
  const auto made = [&](auto member, const ZUMImage<ZUMBool>& element) {
    return OffsetsOf(Made(member, target, element));
  };
  EXPECT_EQ((Offsets{-100, -1, 1, 100}), made(&A::FromNonZeroPixels, ZUMCon4));
  EXPECT_EQ((Offsets{100, 1, -1, -100}), made(&A::SymmetricFromNonZeroPixels, ZUMCon4));
  EXPECT_EQ((Offsets{-100, -1, 1, 100}), made(&A::FromNonZeroPixelsL2RIn, ZUMCon4));
  const ZUMImage<ZUMBool> full(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, true);
  EXPECT_EQ((Offsets{-99, 1, 101}), made(&A::FromNonZeroPixelsL2RIn, full));
  EXPECT_EQ((Offsets{101, 1, -99}), made(&A::SymmetricFromNonZeroPixelsL2RIn, full));

  // Gaps within a line; runs that meet only at the ends of lines; two channels 300 pixels apart.
  const bool pixels[] = {1, 1, 0, 1, 1, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 0};
  const ZUMImage<ZUMBool> gaps(ZUMRect(0, 0, 0, 0, 3, 1, 0, 0), 2, pixels);
  EXPECT_EQ((Offsets{1, 3, 100, 103, 302, 400}), made(&A::FromNonZeroPixelsL2RIn, gaps));
  EXPECT_EQ((Offsets{0, 3, 100, 103, 302, 400}), made(&A::FromNonZeroPixelsL2ROut, gaps));
  EXPECT_EQ((Offsets{0, -1, -3, -100, -103, -2, -100}), made(&A::SymmetricFromNonZeroPixels, gaps));
  EXPECT_EQ((Offsets{0, -1, -3, -100, -103, -302, -400}),
            made(&V::SymmetricFromNonZeroPixels, gaps));

  // Beyond 32 bits, where no pixel of the target can lie.
  const ZUMImage<ZUMBool> far(ZUMRect(0, -70000, 0, 90000, 0, -70000, 0, 90000), 1, true);
  EXPECT_EQ(Offsets{90000LL * 1000000 - 70000LL * 1000},
            OffsetsOf(Made(&A::FromPixels, MakeTarget(1000, 1000), far)));

  // Zero is by value.
  const double reals[] = {std::numeric_limits<double>::quiet_NaN(), -0.0, 0.5, 0.0, 5e-324};
  const ZUMImage<ZUMReal> line(ZUMRect(0, 0, 0, 0, 4, 0, 0, 0), 1, reals);
  EXPECT_EQ((Offsets{0, 2, 4}),
            OffsetsOf(Made(&ZUMDisplacementValueArray<ZUMReal>::FromNonZeroPixels, target, line)));
}

TEST(Displacements, OddBytesOfWrappedBoolsAreTrue) {
  unsigned char bytes[] = {0, 2, 255, 0, 1, 64};
  const ZUMRect box(0, 0, 0, 0, 5, 0, 0, 0);
  const ZUMImage<ZUMBool> element(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  const ZUMImage<ZUMByte> target = MakeTarget(10, 3);
  ZUMDisplacementArray a;
  a.FromNonZeroPixels(target, element);
  EXPECT_EQ((Offsets{1, 2, 4, 5}), OffsetsOf(a));
  a.FromEqualPixels(target, element, true);
  EXPECT_EQ((Offsets{1, 2, 4, 5}), OffsetsOf(a));
  a.FromNonZeroPixelsL2RIn(target, element);
  EXPECT_EQ((Offsets{2, 5}), OffsetsOf(a));
  a.SurroundPath(target, element);
  EXPECT_EQ((Offsets{1, 2}), OffsetsOf(a));
  ZUMPointList points;
  points.FromNonZeroPixels(element);
  EXPECT_EQ(4u, points.GetLength());
  ZUMDisplacementValueArray<ZUMBool> v;
  v.FromGreaterEqPixels(target, element, true);
  EXPECT_EQ((Offsets{1, 2, 4, 5}), OffsetsOf(v));
  for (const auto& record : v) {
    EXPECT_EQ(1, reinterpret_cast<const unsigned char&>(record.value));
  }
}

TEST(Displacements, AnEmptyResultThrowsAndLeavesNothing) {
  const ZUMImage<ZUMByte> target = MakeTarget(100, 3);
  const ZUMRect box(-1, -1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMBool> none(box, 1, false);
  const ZUMImage<ZUMReal> zeros(box, 2, 0.0), empty;
  using A = ZUMDisplacementArray;
  using W = ZUMDisplacementVectorArray;
  using V = ZUMDisplacementValueArray<ZUMReal>;
  using P = ZUMDisplacementAddressArray<ZUMReal>;
  const auto check = []<class Array, class... Parameters>(const std::string& text,
                                                          void (Array::*member)(Parameters...),
                                                          const auto&... args) {
    Array array;
    array.Put();
    EXPECT_EQ(text, MessageOf([&] { (array.*member)(args...); }));
    EXPECT_EQ(0u, array.GetLength()) << text;
  };
  const std::string tail = " Un elemento estructurante ha de tener como m\xC3\xADnimo un pixel";
  const std::string flat = "ZUMDisplacementArray::",
                    symmetric = flat + "SymmetricFromNonZeroPixels";
  check(flat + "FromPixels" + tail, &A::FromPixels, target, ZUMImage<ZUMBool>());
  check(flat + "FromNonZeroPixels" + tail, &A::FromNonZeroPixels, target, none);
  check(flat + "FromNonZeroPixels" + tail, &A::FromNonZeroPixelsL2ROut, target, none);
  check(flat + "FromNonZeroPixels" + tail, &A::SymmetricFromNonZeroPixelsL2ROut, target, none);
  check(flat + "FromNonZeroPixels" + tail, &W::FromNonZeroPixels, target, none);
  check(flat + "FromNonZeroPixelsL2RIn" + tail, &A::FromNonZeroPixelsL2RIn, target, none);
  check(symmetric + tail, &A::SymmetricFromNonZeroPixels, target, none);
  check(symmetric + tail, &W::SymmetricFromNonZeroPixels, target, none);
  check(symmetric + "L2RIn" + tail, &A::SymmetricFromNonZeroPixelsL2RIn, target, none);
  const auto check_both = [&](const std::string& name, auto value, auto address, auto... args) {
    check("ZUMDisplacementValueArray<PixT>::" + name + tail, value, target, args...);
    check("ZUMDisplacementAddressArray<PixT>::" + name + tail, address, target, args...);
  };
  check_both("FromPixels", &V::FromPixels, &P::FromPixels, empty);
  check_both("FromNonZeroPixels", &V::FromNonZeroPixels, &P::FromNonZeroPixels, zeros);
  check_both("SymmetricFromPixels", &V::SymmetricFromPixels, &P::SymmetricFromPixels, empty);
  check_both("SymmetricFromNonZeroPixels", &V::SymmetricFromNonZeroPixels,
             &P::SymmetricFromNonZeroPixels, zeros);
  check_both("FromGreaterEqPixels", &V::FromGreaterEqPixels, &P::FromGreaterEqPixels, zeros, 0.5);
  check("ZUMDisplacementValueArray<PixT>::FromGreaterPixels" + tail, &V::FromGreaterPixels, target,
        zeros, 0.0);

  check("", &A::FromEqualPixels<ZUMBool>, target, none, true);
  check("", &A::SymmetricFromEqualPixels<ZUMBool>, target, none, true);
  check("", &A::FromPointList, target, ZUMPointList());
}

TEST(Displacements, LimitsAreStrict) {
  ZUMDisplacementArray a;
  a.FromNonZeroPixels(MakeTarget(100, 3), ZUMCon8);
  ZUMDisplacementArray b = a;
  b.GreaterDisplacements(0);
  EXPECT_EQ((Offsets{1, 99, 100, 101}), OffsetsOf(b));
  b.GreaterDisplacements(99);
  EXPECT_EQ((Offsets{100, 101}), OffsetsOf(b));
  a.LessDisplacements(-1);
  EXPECT_EQ((Offsets{-101, -100, -99}), OffsetsOf(a));
  a.LessDisplacements(-101);
  EXPECT_EQ(Offsets{}, OffsetsOf(a));
}

TEST(Displacements, DisarrangeHasAFixedOrder) {
  const auto order = [](int n) {
    ZUMDisplacementArray a;
    for (int i = 0; i < n; ++i) a.Put(i);
    a.Disarrange();
    return OffsetsOf(a);
  };
  EXPECT_EQ(Offsets{}, order(0));
  EXPECT_EQ(Offsets{0}, order(1));
  EXPECT_EQ((Offsets{0, 3, 2, 1}), order(4));
  EXPECT_EQ((Offsets{0, 9, 8, 2, 4, 6, 1, 3, 5, 7}), order(10));
  for (int n : {2, 3, 5, 64, 1000, 4097}) {
    Offsets sorted = order(n);
    std::sort(sorted.begin(), sorted.end());
    for (int i = 0; i < n; ++i) ASSERT_EQ(i, sorted[static_cast<std::size_t>(i)]) << n;
  }
}

// Selecting and reordering move whole records.
TEST(Displacements, RecordsStayWhole) {
  const ZUMImage<ZUMByte> target = MakeTarget(100, 3);
  const auto check = [&]<class Array>(Array array, const auto& element) {
    const auto check_records = [&](const Offsets& offsets) {
      EXPECT_EQ(offsets, OffsetsOf(array));
      const Array all = Made(&Array::FromNonZeroPixels, target, element);
      for (const auto& record : array)
        EXPECT_NE(all.end(), std::find(all.begin(), all.end(), record));
    };
    array.FromNonZeroPixels(target, element);
    array.GreaterDisplacements(-100);
    check_records({-99, -1, 1, 99, 100, 101});
    array.LessDisplacements(100);
    check_records({-99, -1, 1, 99});
    if constexpr (requires { array.Disarrange(); }) {
      array.Disarrange();
      check_records({-99, 99, 1, -1});
    }
  };
  check(ZUMDisplacementVectorArray(), ZUMCon8);
  check(ZUMDisplacementValueArray<ZUMLong>(), ZUMChamferSteps);
  check(ZUMDisplacementAddressArray<ZUMLong>(), ZUMChamferSteps);
}

TEST(Displacements, PointListsKeepTheirOrder) {
  const ZUMImage<ZUMBool> image(ZUMRect(-1, 0, 2, 0, 2, 1, 2, 0), 2, false);
  image(2, 0, 2) = image(-1, 1, 2) = image(0, 0, 2, 0, 1) = image(1, 0, 2, 0, 1) = true;
  ZUMPointList points;
  points.FromNonZeroPixels(image);
  ASSERT_EQ(4u, points.GetLength());
  EXPECT_EQ((ZUMBasePoint<int>{-1, 1, 2}), points[1]);
  const ZUMImage<ZUMByte> target = MakeTarget(10, 5);
  ZUMDisplacementArray a;
  a.FromPointList(target, points);
  EXPECT_EQ((Offsets{102, 109, 100, 101}), OffsetsOf(a));
  points.Disarrange();
  a.FromPointList(target, points);
  EXPECT_EQ((Offsets{102, 101, 100, 109}), OffsetsOf(a));
}

TEST(SurroundPath, WalksTheRingClockwise) {
  const ZUMImage<ZUMByte> target = MakeTarget(100, 3);
  ZUMDisplacementArray a;
  a.SurroundPath(target, ZUMCon8);
  EXPECT_EQ((Offsets{1, 101, 100, 99, -1, -101, -100, -99}), OffsetsOf(a));
  a.SurroundPath(target, ZUMCon4);
  EXPECT_EQ((Offsets{1, 100, -1, -100}), OffsetsOf(a));

  // True pixels all around the region, as in a cut image, are none of the path; nor are those of a
  // second channel. The path stays as it is.
  const ZUMImage<ZUMBool> surroundings(ZUMRect(-4, -4, 0, 0, 4, 4, 0, 0), 2, true);
  const ZUMImage<ZUMBool> path = surroundings.Cut(ZUMCon8);
  path.Channel(0).SetPixels(ZUMCon8);
  const ZUMImage<ZUMBool> before = ZUMCopy(path);
  a.SurroundPath(target, path);
  EXPECT_EQ((Offsets{1, 101, 100, 99, -1, -101, -100, -99}), OffsetsOf(a));
  EXPECT_TRUE(SameImage(before, path));

  // The start is the first pixel right of the origin, and the walk ends where it cannot go on.
  const ZUMImage<ZUMBool> arc(ZUMRect(2, -1, 0, 0, 4, 1, 0, 0), 1, false);
  arc(3, 0) = arc(4, 0) = arc(2, 1) = true;
  a.SurroundPath(target, arc);
  EXPECT_EQ((Offsets{3, 4}), OffsetsOf(a));
}

TEST(SurroundPath, RefusesAPathWithoutStart) {
  const ZUMImage<ZUMByte> target = MakeTarget(100, 3);
  ZUMDisplacementArray a;
  const ZUMImage<ZUMBool> left(ZUMRect(-2, 0, 0, 0, 2, 0, 0, 0), 1, false);
  left(0) = left(-1) = true;
  const ZUMImage<ZUMBool> below(ZUMRect(0, 1, 0, 0, 3, 2, 0, 0), 1, true);
  for (const ZUMImage<ZUMBool>& path : {left, below}) {
    a.FromPixels(target, left);
    EXPECT_EQ("SurroundPath: path start not found",
              MessageOf([&] { a.SurroundPath(target, path); }));
    EXPECT_EQ(0u, a.GetLength());
  }
  EXPECT_EQ("ZUMAddFrame: It is not allowed add a frame to an empty image",
            MessageOf([&] { a.SurroundPath(target, {}); }));
}

TEST(Connectivity, HoldsTheOriginAndHasOneChannel) {
  const auto text = [](const ZUMImage<ZUMBool>& con) {
    return MessageOf([&] { zuml_detail::RequireConnectivity("ZUMWsh", con); });
  };
  const std::string refused = "ZUMWsh: Dimensions of the connectivity image are not allowed";
  EXPECT_EQ("", text(ZUMCon4));
  EXPECT_EQ("", text({ZUMRect(0, 0, 0, 0, 0, 0, 0, 0), 1, false}));
  EXPECT_EQ(refused, text({ZUMCon4, 2, true}));
  EXPECT_EQ(refused, text({ZUMRect(1, 1, 0, 0, 3, 3, 0, 0), 1, true}));
  EXPECT_EQ(refused, text({ZUMRect(-1, -1, 1, 0, 1, 1, 1, 0), 1, true}));
  EXPECT_EQ(refused, text({}));
}

}  // namespace
