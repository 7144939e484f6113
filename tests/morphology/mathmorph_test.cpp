#include "zuml/morphology/mathmorph.h"

#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/morphology/boxmorphology.h"

namespace {

using namespace zuml_test;

template <class P>
using ByElement = ZUMImage<P> (*)(const ZUMImage<P>&, const ZUMImage<ZUMBool>&);
template <class P>
using ByBox = ZUMImage<P> (*)(const ZUMImage<P>&, const ZUMRect&);

// One operation: what it is called, its two overloads and its rules.
template <class P>
struct Form {
  const char* name;
  ByElement<P> by_element;
  ByBox<P> by_box;
  bool maximum, direct_element, direct_box, ex;
};

template <class P>
const std::vector<Form<P>>& Forms() {
  constexpr bool kBool = std::same_as<P, ZUMBool>;
  static const std::vector<Form<P>> forms = {
      {"ZUMDilate", ZUMDilate<P>, ZUMDilate<P>, true, kBool, false, false},
      {"ZUMErode", ZUMErode<P>, ZUMErode<P>, false, kBool, false, false},
      {"ZUMMinAdd", ZUMMinAdd<P>, ZUMMinAdd<P>, true, true, true, false},
      {"ZUMMinSub", ZUMMinSub<P>, ZUMMinSub<P>, false, true, true, false},
      {"ZUMDilateEx", ZUMDilateEx<P>, ZUMDilateEx<P>, true, false, false, true},
      {"ZUMErodeEx", ZUMErodeEx<P>, ZUMErodeEx<P>, false, false, false, true},
      {"ZUMMinAddEx", ZUMMinAddEx<P>, ZUMMinAddEx<P>, true, true, true, true},
      {"ZUMMinSubEx", ZUMMinSubEx<P>, ZUMMinSubEx<P>, false, true, true, true},
  };
  return forms;
}

template <class P>
void Fold(P& kept, P value, bool maximum) {
  if (maximum ? value > kept : value < kept) kept = value;
}

ZUMRoDRef Shrink(const ZUMRoDRef& rod, const ZUMRect& k, bool direct) {
  const auto b = k.begin, e = k.end;
  return direct ? DisplaceSides(rod, -b.x, -b.y, -b.z, -b.t, -e.x, -e.y, -e.z, -e.t)
                : DisplaceSides(rod, e.x, e.y, e.z, e.t, b.x, b.y, b.z, b.t);
}

template <class P>
P Extreme(const ZUMImage<P>& image, bool maximum) {
  P kept = image(image.Begin());
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    Fold(kept, image(x, y, z, t, c), maximum);
  });
  return kept;
}

// By coordinates, pixel by pixel and element by element.
template <class P>
ZUMImage<P> Reference(const Form<P>& form, const ZUMImage<P>& image,
                      const ZUMImage<ZUMBool>& element) {
  const int sign = form.direct_element ? 1 : -1;
  const bool origin = element.InP(0, 0, 0, 0) && element(0, 0);
  const P start = form.ex && !origin ? Extreme(image, !form.maximum) : P();
  const ZUMRoDRef rod =
      form.ex ? ZUMRoDRef(image) : Shrink(image, element.Rect(), form.direct_element);
  return MakeByPoint<P>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    bool begun = form.ex;
    P kept = form.ex && origin ? image(x, y, z, t, c) : start;
    ForEachPoint(element, 1, [&](int kx, int ky, int kz, int kt, int) {
      if (!element(kx, ky, kz, kt)) return;
      const ZUMBasePoint<int> p(x + sign * kx, y + sign * ky, z + sign * kz, t + sign * kt);
      if (form.ex && !image.InP(p)) return;
      if (begun) Fold(kept, image(p, c), form.maximum);
      if (!begun) kept = image(p, c);
      begun = true;
    });
    return kept;
  });
}

// One axis of a box at a time, as a result's pixel sees it.
template <class P>
ZUMImage<P> Reference(const Form<P>& form, const ZUMImage<P>& image, const ZUMRect& box) {
  const bool own = form.ex && std::string(form.name) != "ZUMDilateEx";
  ZUMImage<P> folded = image;
  for (const auto axis : {&ZUMBasePoint<int>::x, &ZUMBasePoint<int>::y, &ZUMBasePoint<int>::z,
                          &ZUMBasePoint<int>::t}) {
    if (box.begin.*axis == box.end.*axis) continue;
    ZUMRect along;
    along.begin.*axis = form.direct_box ? box.begin.*axis : -(box.end.*axis);
    along.end.*axis = form.direct_box ? box.end.*axis : -(box.begin.*axis);
    const ZUMImage<P> source = folded;
    const ZUMRoDRef rod = form.ex ? ZUMRoDRef(source) : Shrink(source, along, true);
    folded = MakeByPoint<P>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
      ZUMBasePoint<int> p(x, y, z, t);
      const int here = p.*axis, first = along.begin.*axis, last = along.end.*axis;
      if (!form.ex) {
        p.*axis = here + first;
        P kept = source(p, c);
        for (int k = first; k <= last; ++k)
          p.*axis = here + k, Fold(kept, source(p, c), form.maximum);
        return kept;
      }
      P kept = own ? source(p, c) : std::numeric_limits<P>::lowest();
      for (int k = last; k >= first; --k) {
        p.*axis = here + k;
        if (source.InP(p)) Fold(kept, source(p, c), form.maximum);
      }
      return kept;
    });
  }
  return folded;
}

template <class P>
ZUMImage<P> MakeImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const ZUMImage<P> image = MakeRandomImage<P>(random, box, csz, layout);
  if constexpr (std::floating_point<P>) {
    const P special[] = {std::nan(""), -0.0, 0.0, std::numeric_limits<P>::infinity(),
                         -std::numeric_limits<P>::infinity()};
    ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
      if (random.Int(0, 5) == 0) image(x, y, z, t, c) = special[random.Int(0, 4)];
    });
  }
  return image;
}

ZUMImage<ZUMBool> MakeDisc(int radius) {
  return MakeByPoint<ZUMBool>(
      ZUMRoDRef(-radius, -radius, 0, 0, radius, radius, 0, 0), 1,
      [=](int x, int y, int, int, int) { return x * x + y * y <= radius * radius; });
}

template <class P>
class MorphologyTest : public testing::Test {};
using PixelTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(MorphologyTest, PixelTypes);

TYPED_TEST(MorphologyTest, ElementsFollowTheCoordinates) {
  using P = TypeParam;
  Random random(41);
  struct Case {
    ZUMRect image;
    ZUMImage<ZUMBool> element;
  };
  const auto box = [](int bx, int by, int bz, int bt, int ex, int ey, int ez, int et) {
    return ZUMRect(bx, by, bz, bt, ex, ey, ez, et);
  };
  std::vector<Case> cases = {
      {box(-3, 2, 0, 0, 70, 30, 0, 0), ZUMCon8},
      {box(-3, 2, 0, 0, 70, 30, 0, 0), MakeDisc(7)},
      {box(5, -4, 0, 0, 44, 30, 1, 0),
       MakeRandomImage<ZUMBool>(random, box(-2, -1, 0, 0, 3, 2, 0, 0), 1, Layout::kCut)},
      {box(0, 0, -2, 3, 40, 9, 4, 6),
       MakeRandomImage<ZUMBool>(random, box(-9, 0, -1, 0, 6, 2, 1, 1), 1, Layout::kFramed)},
      // Without the origin, on either side of it; wider than the image; full boxes.
      {box(0, 0, 0, 0, 21, 12, 0, 0),
       MakeRandomImage<ZUMBool>(random, box(2, 1, 0, 0, 7, 3, 0, 0), 1, Layout::kTight)},
      {box(0, 0, 0, 0, 7, 5, 0, 0), ZUMImage<ZUMBool>(box(-12, -9, 0, 0, -3, 9, 0, 0), 1, true)},
      {box(0, 0, 0, 0, 50, 25, 0, 0), ZUMImage<ZUMBool>(box(-3, -6, 0, 0, 12, 5, 0, 0), 1, true)},
      {box(0, 0, 0, 0, 9, 9, 0, 0), ZUMImage<ZUMBool>(box(2, -1, 0, 0, 2, -1, 0, 0), 1, true)},
  };
  for (const Layout layout : kLayouts) {
    for (std::size_t i = 0; i < cases.size(); ++i) {
      const auto image = MakeImage<P>(random, cases[i].image, 2, layout);
      const ZUMImage<P> before = ZUMCopy(image);
      for (const Form<P>& form : Forms<P>()) {
        const WithThreads threads(kThreadCounts[i % std::size(kThreadCounts)]);
        EXPECT_TRUE(SameImage(form.by_element(image, cases[i].element),
                              Reference(form, image, cases[i].element)))
            << form.name << " case " << i << " layout " << static_cast<int>(layout);
      }
      EXPECT_TRUE(SameImage(ZUMCopy(image), before));
    }
  }
}

TYPED_TEST(MorphologyTest, BoxesFollowTheCoordinates) {
  using P = TypeParam;
  Random random(43);
  const ZUMRect boxes[] = {{-1, -1, 0, 0, 1, 1, 0, 0},     {-2, 0, 0, 0, 4, 0, 0, 0},
                           {0, -3, 0, 0, 0, 12, 0, 0},     {-9, -7, 0, 0, 21, 7, 0, 0},
                           {-40, -20, 0, 0, 40, 20, 0, 0}, {0, 0, -1, -2, 0, 0, 2, 1},
                           {-3, -1, -1, 0, 0, 0, 6, 2},    {0, 0, 0, 0, 0, 0, 0, 0},
                           {2, 3, 0, 0, 6, 3, 0, 0},       {2, 0, 0, 0, 2, 0, 0, 0}};
  const ZUMRect regions[] = {{-3, 2, 0, 0, 90, 40, 0, 0}, {4, 0, -2, 1, 20, 11, 6, 4}};
  for (const Layout layout : kLayouts) {
    for (const ZUMRect& region : regions) {
      const auto image = MakeImage<P>(random, region, 2, layout);
      for (std::size_t i = 0; i < std::size(boxes); ++i) {
        const WithThreads threads(kThreadCounts[i % std::size(kThreadCounts)]);
        for (const Form<P>& form : Forms<P>()) {
          const bool dilates = std::string(form.name).starts_with("ZUMDilate");
          if (boxes[i].begin.x > 0 && !dilates) continue;
          EXPECT_TRUE(SameImage(form.by_box(image, boxes[i]), Reference(form, image, boxes[i])))
              << form.name << " box " << i << " layout " << static_cast<int>(layout);
        }
      }
    }
  }
}

TYPED_TEST(MorphologyTest, ManyTasksGiveTheSame) {
  using P = TypeParam;
  Random random(47);
  const auto image = MakeImage<P>(random, ZUMRect(0, 0, 0, 0, 299, 170, 0, 0), 1, Layout::kCut);
  const ZUMRect box(-6, -7, 0, 0, 9, 7, 0, 0);
  for (const Form<P>& form : Forms<P>()) {
    XQTask::SetNThreads(1);
    const auto by_element = form.by_element(image, MakeDisc(5));
    const auto by_box = form.by_box(image, box);
    for (const int n : kThreadCounts) {
      const WithThreads threads(n);
      EXPECT_TRUE(SameImage(form.by_element(image, MakeDisc(5)), by_element)) << form.name << n;
      EXPECT_TRUE(SameImage(form.by_box(image, box), by_box)) << form.name << n;
    }
  }
}

TYPED_TEST(MorphologyTest, RefusedElements) {
  using P = TypeParam;
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 1, P(1));
  const ZUMImage<ZUMBool> two_channels(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 2, true);
  const ZUMImage<ZUMBool> none(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 1, false);
  const ZUMRect crossed(0, 0, 0, 1, 0, 0, 0, 0), beside(0, -3, 0, 0, 1, -1, 0, 0);
  for (const Form<P>& form : Forms<P>()) {
    const std::string name = form.name;
    EXPECT_EQ(MessageOf([&] { form.by_element(image, two_channels); }),
              name + ": Multichannel structuring elements are not allowed");
    EXPECT_EQ(MessageOf([&] { form.by_element(image, none); }),
              form.ex ? ""
                      : std::string("ZUMDisplacementArray::") +
                            (form.direct_element ? "" : "Symmetric") +
                            "FromNonZeroPixels Un elemento estructurante ha de tener como mínimo "
                            "un pixel");
    const bool dilates = name.starts_with("ZUMDilate");
    const std::string text =
        (name == "ZUMErodeEx" ? "ZUMErode" : name) +
        (dilates ? ": empty rectangle is not allowed"
                 : ": empty rectangle is not allowed or origin is out of rectange");
    EXPECT_EQ(MessageOf([&] { form.by_box(image, crossed); }), text);
    EXPECT_EQ(MessageOf([&] { form.by_box(image, beside); }), dilates ? "" : text);
    // Of an image without a pixel there is no least value.
    const std::string least = name.ends_with("Ex") ? (form.maximum ? "ZUMMin" : "ZUMMax") : "";
    const ZUMImage<ZUMBool> away(ZUMRect(1, 0, 0, 0, 1, 0, 0, 0), 1, true);
    EXPECT_EQ(MessageOf([&] { form.by_element(ZUMImage<P>(), away); }),
              least.empty() ? "" : least + ":Valor indefinido por imagen vacia");
    EXPECT_TRUE(form.by_element(ZUMImage<P>(), ZUMImage<ZUMBool>(ZUMRect(), 1, true)).EmptyP());
    EXPECT_TRUE(form.by_box(ZUMImage<P>(), ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0)).EmptyP());
  }
}

// The plain forms of bool images read on the other side of a pixel than those of bytes.
TEST(MathMorph, BoolElementsAreDirect) {
  const ZUMRect line(0, 0, 0, 0, 8, 0, 0, 0);
  ZUMImage<ZUMBool> dot(line, 1, false), pair(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0), 1, true);
  dot(4) = true;
  pair(1) = false;
  const ZUMImage<ZUMByte> bytes = dot;
  const ZUMImage<ZUMBool> direct = ZUMDilate(dot, pair);
  const ZUMImage<ZUMByte> mirrored = ZUMDilate(bytes, pair);
  EXPECT_EQ(direct.Rect(), ZUMRect(0, 0, 0, 0, 6, 0, 0, 0));
  EXPECT_EQ(mirrored.Rect(), ZUMRect(2, 0, 0, 0, 8, 0, 0, 0));
  for (int x = 0; x <= 6; ++x) {
    EXPECT_EQ(direct(x), x == 2 || x == 4) << x;
    EXPECT_EQ(mirrored(8 - x) != 0, direct(x)) << x;
  }
}

// Bool pixels in wrapped memory may hold any byte; results hold 0 and 1.
TEST(MathMorph, WrappedBools) {
  ZUMByte bytes[64];
  for (int i = 0; i < 64; ++i) bytes[i] = static_cast<ZUMByte>(i % 3 == 0 ? 0 : 1 << (i % 8));
  const ZUMRect box(0, 0, 0, 0, 31, 1, 0, 0);
  const ZUMImage<ZUMBool> image(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  const ZUMImage<ZUMBool> pair(ZUMRect(0, 0, 0, 0, 1, 0, 0, 0), 1, true);
  for (const auto& result :
       {ZUMErode(image, pair), ZUMErode(image, ZUMRect(0, 0, 0, 0, 1, 1, 0, 0)),
        ZUMDilateEx(image, ZUMCon8), ZUMErodeEx(image, pair)}) {
    ForEachPoint(result, 1, [&](int x, int y, int, int, int) {
      EXPECT_LE(*reinterpret_cast<const ZUMByte*>(&result(x, y)), 1);
    });
  }
  EXPECT_FALSE(ZUMErode(image, pair)(0));
  EXPECT_TRUE(ZUMErode(image, pair)(1));
}

}  // namespace
