// All operations where images and elements lie at the ends of the coordinates, are far larger than
// each other, empty or without a channel. An operation joins by a line of ForEachOperation.

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/morphology/elements.h"
#include "zuml/core/pixelarith.h"
#include "zuml/morphology/boxmorphology.h"
#include "zuml/morphology/colourdifference.h"
#include "zuml/morphology/directionalmorphology.h"
#include "zuml/morphology/geodesicdilation.h"
#include "zuml/morphology/labelledmorphology.h"
#include "zuml/morphology/mathmorph.h"
#include "zuml/morphology/winnermorphology.h"

namespace {

using namespace zuml_test;
constexpr int Point::*kAxes[] = {&Point::x, &Point::y, &Point::z, &Point::t};

// The pixels of an image that fills its raster, shared, from the point on.
template <class P>
ZUMImage<P> At(const ZUMImage<P>& image, const Point& begin) {
  if (image.EmptyP()) return image;
  const Point end = Add(begin, 1, Add(image.End(), -1, image.Begin()));
  ZUMImage<P> view(ZUMRoDRef(ZUMRect(begin, end)), image);
  view.SetMP(begin);
  return view;
}

// One element in all forms that operations take.
struct Element {
  ZUMImage<ZUMBool> flat;
  ZUMImage<ZUMLong> labels;
  ZUMImage<ZUMReal> lengths;

  Element(Random& random, const ZUMRect& box)
      : flat(box, 1, false), labels(box, 1, 0), lengths(box, 1, 0) {
    ForEachPoint(box, 1, [&](int x, int y, int z, int t, int) {
      const Point k(x, y, z, t);
      labels(k) = k == Point() ? 3 : random.Int(0, 1) * random.Int(1, 3);
      flat(k) = labels(k) != 0;
      lengths(k) = random.Int(1, 99);
    });
  }
  void Cut(const ZUMRect& box) {
    flat = flat.Cut(box), labels = labels.Cut(box), lengths = lengths.Cut(box);
  }
  void Move(const Point& begin) {
    flat = At(flat, begin), labels = At(labels, begin), lengths = At(lengths, begin);
  }
};

// What a result depends on: the pixels under the element alone; these, as far as the image goes;
// also on where element and image lie.
enum class Kind { kPlain, kEx, kOther };

// Calls f(name, kind, channels, operation(image, element)) for each operation on images of P.
template <class P, class F>
void ForEachOperation(F f) {
  using enum Kind;
#define ZUML_OPERATION(NAME, KIND, CHANNELS, ...) \
  f(#NAME, KIND, CHANNELS,                        \
    [](const ZUMImage<P>& i, const Element& e) { return NAME(i, __VA_ARGS__); });
#define ZUML_FLAT(NAME)                          \
  ZUML_OPERATION(NAME, kPlain, 2, e.flat)        \
  ZUML_OPERATION(NAME##Ex, kEx, 2, e.flat)       \
  ZUML_OPERATION(NAME, kOther, 2, e.flat.Rect()) \
  ZUML_OPERATION(NAME##Ex, kEx, 2, e.flat.Rect())
  ZUML_FLAT(ZUMDilate)
  ZUML_FLAT(ZUMErode)
  ZUML_FLAT(ZUMMinAdd)
  ZUML_FLAT(ZUMMinSub)
  ZUML_OPERATION(ZUMDilateSum, kPlain, 2, e.labels)
  ZUML_OPERATION(ZUMDilateMedian, kPlain, 2, e.labels)
  ZUML_OPERATION(ZUMDilateSumEx, kEx, 2, e.labels)
  ZUML_OPERATION(ZUMDilateValue, kEx, 2, ZUMImage<ZUMBool>(i.Rect(), 1, true), e.flat)
  ZUML_OPERATION(ZUMMaxL1Diff, kOther, 3, e.flat)
  ZUML_OPERATION(ZUMMaxL2Diff, kOther, 3, e.flat)
  if constexpr (std::same_as<P, ZUMBool>) {
    ZUML_OPERATION(ZUMMaxErode, kOther, 2, e.labels)
  }
  if constexpr (std::same_as<P, ZUMReal>) {
    ZUML_OPERATION(ZUMDilateAndDistanceEx, kEx, 1, e.flat, e.lengths)
    ZUML_OPERATION(ZUMDilateWMAcum, kOther, 2, e.labels, 1, 2.5)
    ZUML_OPERATION(ZUMDilateWMAcum2, kOther, 2, e.labels, INT_MAX)
    ZUML_OPERATION(ZUMDilateGradAcum, kOther, 2, e.labels)
  }
#undef ZUML_OPERATION
#undef ZUML_FLAT
  // Coordinates count from the image, so that they do not depend on where it lies.
  const auto relative = [](const ZUMImage<ZUMLong>& coords, const Point& begin) {
    for (int c = 0; c < 4; ++c) {
      const ZUMImage<ZUMLong> axis = At(coords, Point()).Channel(c);
      ForEachPoint(axis, 1, [&](int x, int y, int z, int t, int) {
        axis(x, y, z, t) = ZUMWrapSub(axis(x, y, z, t), begin.*kAxes[c]);
      });
    }
    return coords;
  };
  f("ZUMDilateCoordsEx", kEx, 1, [&](const ZUMImage<P>& i, const Element& e) {
    return relative(ZUMDilateCoordsEx(i, e.flat), i.Begin());
  });
  f("ZUMErodeCoordsEx", kEx, 1, [&](const ZUMImage<P>& i, const Element& e) {
    return relative(ZUMErodeCoordsEx(i, e.flat), i.Begin());
  });
}

const ZUMRect kImageBox(0, 0, 0, 0, 8, 6, 0, 1), kElementBox(-1, -2, 0, 0, 2, 1, 0, 0);

template <class P>
class ExtremesTest : public testing::Test {
 protected:
  ZUMImage<P> MakeImage(int csz) {
    const auto image = MakeRandomImage<P>(random, kImageBox, csz, Layout::kTight);
    ForEachPoint(image, csz, [&](auto... at) { image(at...) = static_cast<P>(random.Int(-9, 9)); });
    return image;
  }

  Random random{61};
};
TYPED_TEST_SUITE(ExtremesTest, ScalarTypes);

TYPED_TEST(ExtremesTest, ImagesAtTheEndsOfTheCoordinates) {
  using P = TypeParam;
  const Element small(this->random, ZUMRect()), element(this->random, kElementBox);
  ForEachOperation<P>([&](const char* name, Kind, int csz, auto operation) {
    SCOPED_TRACE(name);
    const auto image = this->MakeImage(csz);
    for (const Element& e : {small, element}) {
      const auto expected = operation(image, e);
      for (const auto axis : kAxes) {
        const int size = image.End().*axis + 1;
        for (const int begin : {INT_MIN, INT_MAX - size + 1}) {
          Point at;
          at.*axis = begin;
          const auto result = operation(At(image, at), e);
          EXPECT_EQ(result.Begin(), Add(at, 1, expected.Begin()));
          EXPECT_TRUE(SameImage(At(result, expected.Begin()), expected)) << begin;
        }
      }
      // A block of its own that the region fills.
      EXPECT_NE(expected.GetData(), image.GetData());
      EXPECT_EQ(expected.GetRasterSz(), std::int64_t{expected.NPixels()} * expected.GetCSz());
      // Without pixels: none in the result either, but for coordinates, or a message.
      for (const auto& none : {ZUMImage<P>(), ZUMImage<P>(kImageBox, 0, P())}) {
        MessageOf([&] {
          const auto result = operation(none, e);
          EXPECT_TRUE(result.EmptyP() || result.GetCSz() % 4 == 0);
        });
      }
    }
  });
}

TYPED_TEST(ExtremesTest, ElementsBeyondTheImage) {
  using P = TypeParam;
  constexpr int kReach = 10;  // from every pixel beyond the image
  for (const auto axis : kAxes) {
    ZUMRect long_box = kElementBox,
            reach(-kReach, -kReach, -kReach, -kReach, kReach, kReach, kReach, kReach);
    long_box.begin.*axis = -3000;
    long_box.end.*axis = 3000;
    const Element element(this->random, long_box);
    Element cut = element;
    cut.Cut(reach);
    ForEachOperation<P>([&](const char* name, Kind kind, int csz, auto operation) {
      SCOPED_TRACE(name);
      const auto image = this->MakeImage(csz);
      const bool gradient =
          std::string(name) == "ZUMDilateGradAcum" && axis != &Point::x && axis != &Point::y;
      if (gradient) return;  // refused
      const auto result = operation(image, element);
      EXPECT_TRUE(kind == Kind::kEx ? SameImage(result, operation(image, cut))
                                    : testing::AssertionResult(result.EmptyP()));
      // Far from the origin the same pixels lie under it, seen from other places.
      Element moved(this->random, kElementBox);
      const auto near = operation(image, moved);
      for (const int far : {-2000000000, 2000000000, INT_MIN, INT_MAX - 9}) {
        Point at = kElementBox.begin;
        at.*axis = far;
        moved.Move(at);
        MessageOf([&] {
          const auto away = operation(image, moved);
          if (kind != Kind::kPlain || std::abs(far / 2) > 1000000000) return;
          EXPECT_TRUE(SameImage(At(away, near.Begin()), near)) << far;
        });
      }
    });
  }
}

// Boxes of any size are those cut where they cannot touch the image.
TYPED_TEST(ExtremesTest, BoxesBeyondTheImage) {
  const auto image = this->MakeImage(2);
  for (const auto axis : kAxes) {
    for (const int far : {1000, 1000000, 1000000000, INT_MAX}) {
      const int least = far == INT_MAX ? INT_MIN : -far;
      for (const auto& [lo, hi] :
           {std::pair(least, far), {least, 1}, {-1, far}, {least, -20}, {20, far}}) {
        ZUMRect box, cut;
        box.begin.*axis = lo, box.end.*axis = hi;
        cut.begin.*axis = std::max(lo, -21), cut.end.*axis = std::min(hi, 21);
        SCOPED_TRACE(testing::PrintToString(lo) + " to " + testing::PrintToString(hi));
        EXPECT_TRUE(ZUMDilate(image, box).EmptyP());
        EXPECT_TRUE(SameImage(ZUMDilateEx(image, box), ZUMDilateEx(image, cut)));
        if (lo > 0 || hi < 0) {
          const ZUMImage<TypeParam> least_value(kImageBox, 2,
                                                std::numeric_limits<TypeParam>::lowest());
          EXPECT_TRUE(SameImage(ZUMDilateEx(image, box), least_value));
          continue;
        }
        EXPECT_TRUE(ZUMMinSub(image, box).EmptyP());
        EXPECT_TRUE(SameImage(ZUMErodeEx(image, box), ZUMErodeEx(image, cut)));
        EXPECT_TRUE(SameImage(ZUMMinAddEx(image, box), ZUMMinAddEx(image, cut)));
      }
    }
  }
}

// Bool pixels in wrapped memory may hold any byte; results hold 0 and 1.
TEST(Extremes, WrappedBools) {
  Random random(67);
  const Element element(random, kElementBox);
  ForEachOperation<ZUMBool>([&](const char* name, Kind, int csz, auto operation) {
    std::vector<ZUMByte> bytes(static_cast<std::size_t>(9 * 7 * 2 * csz));
    for (ZUMByte& byte : bytes) byte = static_cast<ZUMByte>(random.Int(0, 1) * random.Int(1, 255));
    const ZUMRaster raster(kImageBox, csz, ZUMBoolPixel, bytes.data());
    const ZUMImage<ZUMBool> wrapped(kImageBox, raster);
    const ZUMImage<ZUMByte> numbers(kImageBox, csz, bytes.data());
    const ZUMImage<ZUMBool> plain = numbers;
    EXPECT_TRUE(SameImage(operation(wrapped, element), operation(plain, element))) << name;
  });
}

}  // namespace
