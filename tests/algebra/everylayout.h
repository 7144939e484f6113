/// Random images in every layout, under every number of tasks.
#pragma once

#include "tests/support/testimages.h"

namespace zuml_test {

using DiscreteTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong>;
using GreyTypes = testing::Types<ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
using ScalarTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
using OrderedTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;

inline constexpr int ZUMBasePoint<int>::*kAxes[] = {&ZUMBasePoint<int>::x, &ZUMBasePoint<int>::y,
                                                    &ZUMBasePoint<int>::z, &ZUMBasePoint<int>::t};
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// One of the layouts.
inline Layout DrawLayout(Random& random) { return kLayouts[random.Int(0, 3)]; }

/// Calls check(image, random) with images of `csz` channels, whose pixels make(random) draws. Some
/// regions are cut along X for the tasks, or not at all.
template <class P, class Make, class Check>
void ForEachLayout(int csz, const Make& make, const Check& check) {
  Random random(static_cast<std::uint64_t>(csz) * 31 + sizeof(P));
  for (const Layout layout : kLayouts) {
    for (const int threads : kThreadCounts) {
      const WithThreads with(threads);
      const ZUMRect box = random.Int(0, 2) == 0 ? MakeRandomBox(random, 150, 2)
                                                : MakeRandomBox(random, 90, 9, 3, 2);
      const auto image = MakeRandomImage<P>(random, box, csz, layout);
      ForEachPoint(image, csz, [&](auto... at) { image(at...) = make(random); });
      const auto before = ZUMCopy(image);
      SCOPED_TRACE(testing::Message() << ZUMPixelTraits<P>::kName << " " << image << " layout "
                                      << static_cast<int>(layout) << " threads " << threads);
      check(image, random);
      ASSERT_TRUE(SameImage(before, image)) << "the operand has changed";
      if (testing::Test::HasFailure()) return;
    }
  }
}

template <class P, class Check>
void ForEachLayout(int csz, const Check& check) {
  ForEachLayout<P>(
      csz, [](Random& random) { return random.Pixel<P>(); }, check);
}

/// The same for each type of a list and each number of channels; make and check are templates.
template <class... Ps, class Make, class Check>
void ForEachLayout(testing::Types<Ps...>, std::initializer_list<int> channels, const Make& make,
                   const Check& check) {
  for (const int csz : channels) {
    const auto run = [&]<class P>(std::type_identity<P>) {
      ForEachLayout<P>(
          csz, [&](Random& random) { return make.template operator()<P>(random); }, check);
    };
    (run(std::type_identity<Ps>()), ...);
  }
}

/// Any pixel.
inline constexpr auto kAnyPixel = []<class P>(Random& random) { return random.Pixel<P>(); };

/// A box that shares some lines with another, and reaches beyond it.
inline ZUMRect MakeOverlappingBox(Random& random, ZUMRect box) {
  box.begin.x -= random.Int(0, 2);
  box.end.y += random.Int(0, 2);
  box.begin.y = box.end.y - random.Int(0, 8);
  return box;
}

/// The points at which the box around two elements stays in the region.
inline ZUMRoDRef ShrinkBy(const ZUMRoDRef& rod, const ZUMRoDRef& a, const ZUMRoDRef& b) {
  ZUMRect e = a.Rect();
  for (const auto axis : kAxes) {
    e.begin.*axis = std::min(e.begin.*axis, b.Begin().*axis);
    e.end.*axis = std::max(e.end.*axis, b.End().*axis);
  }
  return DisplaceSides(rod, -e.begin.x, -e.begin.y, -e.begin.z, -e.begin.t, -e.end.x, -e.end.y,
                       -e.end.z, -e.end.t);
}

/// A small element that may lie beside the origin; its first pixel is true.
inline ZUMImage<ZUMBool> DrawElement(Random& random) {
  const auto element =
      MakeRandomImage<ZUMBool>(random, MakeRandomBox(random, 3, 3, 2), 1, DrawLayout(random));
  element(element.Begin()) = true;
  return element;
}

/// An image of one line.
template <class P>
ZUMImage<P> MakeLine(std::initializer_list<P> pixels, int begin = 0, int csz = 1) {
  const int n = static_cast<int>(pixels.size()) / csz;
  return ZUMImage<P>(ZUMRect(begin, 0, 0, 0, begin + n - 1, 0, 0, 0), csz, pixels.begin());
}

template <class P>
bool SameBits(P a, P b) {
  return std::memcmp(&a, &b, sizeof(P)) == 0;
}

}  // namespace zuml_test
