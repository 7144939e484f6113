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
      SCOPED_TRACE(testing::Message()
                   << image << " layout " << static_cast<int>(layout) << " threads " << threads);
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
