// Filters of images and by kernels that lie anywhere among the 32-bit coordinates give the pixels
// that they give around the origin, as far as 32 bits go.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/filters/accumulation.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/convolutionex.h"
#include "zuml/filters/corcoef.h"
#include "zuml/filters/localstatistics.h"
#include "zuml/filters/medianmasked.h"

namespace {

using namespace zuml_test;
using zuml_detail::Axis;
using zuml_detail::kAxes;

constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
constexpr int kFar[] = {kLeast, -1000000000, -1000000, -1000, 1000, 1000000, 1000000000, kMost - 2};

/// A filter of an image by the true pixels of a mask. Where the mask moves, the result moves the
/// other way (-1), the same way (1) or is another one (0).
template <class P>
struct Filter {
  const char* name;
  int follows;
  std::function<ZUMGenericImage(const ZUMImage<P>&, const ZUMImage<bool>&)> run;
};

/// The filters; a new one joins by a line.
template <class P>
std::vector<Filter<P>> AllFilters() {
  using W = ZUMNaturalSum<P>;
  using Im = const ZUMImage<P>&;
  using Mask = const ZUMImage<bool>&;
  const ZUMImage<W> none, x(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 1, 2),
      y(ZUMRect(0, 0, 0, 0, 0, 2, 0, 0), 1, 3);
  const ZUMKernel<W> separable(x, y, none, none), empty(none, none, none, none);
  return {
      {"sum, mask", -1, [](Im a, Mask k) { return ZUMSum(a, k); }},
      {"sum, two masks", -1, [](Im a, Mask k) { return ZUMSum(a, ZUMImage<bool>(k, 2, true)); }},
      {"sum, box", -1, [](Im a, Mask k) { return ZUMSum(a, k.Rect()); }},
      {"sum, region", -1,
       [](Im a, Mask k) { return ZUMSum(a, ZUMRoDRef(new OtherRegion(k.Rect()))); }},
      {"sum, masked", -1,
       [](Im a, Mask k) {
         return ZUMSumMasked(a, k, ZUMImage<bool>(ZUMSum(a, k), a.GetCSz(), true), W(7));
       }},
      {"sum, threshold", 0, [](Im a, Mask k) { return ZUMSumThr(a, a, k); }},
      {"conv", 1, [](Im a, Mask k) { return ZUMConv(a, ZUMImage<W>(k)); }},
      {"corr", -1, [](Im a, Mask k) { return ZUMCorr(a, ZUMImage<W>(k)); }},
      {"conv, kernel", 1, [](Im a, Mask k) { return ZUMConv(a, ZUMKernel<W>(ZUMImage<W>(k))); }},
      {"corr, kernel", -1, [](Im a, Mask k) { return ZUMCorr(a, ZUMKernel<W>(ZUMImage<W>(k))); }},
      {"conv, no stage", 0, [=](Im a, Mask) { return ZUMConv(a, empty); }},
      {"conv, stages", 0, [=](Im a, Mask) { return ZUMConv(a, separable); }},
      {"conv, Ex", 0, [](Im a, Mask k) { return ZUMConvEx(a, ZUMImage<W>(k)); }},
      {"derive, X", 0, [=](Im a, Mask) { return ZUMDeriveEx(a, x); }},
      {"derive, Y", 0, [=](Im a, Mask) { return ZUMDeriveEx(a, y); }},
      {"median", -1,
       [](Im a, Mask k) { return ZUMMedianMasked(a, k, ZUMImage<bool>(a, a.GetCSz(), false)); }},
      {"variance", 1, [](Im a, Mask k) { return ZUMVariance(a, ZUMKernel<W>(ZUMImage<W>(k))); }},
      {"correlation coefficient", -1, [](Im a, Mask k) { return ZUMCorCoef(a, ZUMImage<P>(k)); }},
      {"sums along X", 0, [](Im a, Mask) { return ZUMXAccumImage(a); }},
      {"sums along Y", 0, [](Im a, Mask) { return ZUMYAccumImage(a); }},
      {"sums in the plane", 0,
       [](Im a, Mask) { return ZUMAccumImage(a.Plane(a.BeginZ()).Frame(a.BeginT())); }},
  };
}

/// A copy of the image that begins elsewhere on an axis.
template <class P>
ZUMImage<P> CopyTo(int begin, const ZUMImage<P>& image, Axis axis) {
  ZUMRect box = image.Rect();
  box.end.*axis = begin + (box.end.*axis - box.begin.*axis);
  box.begin.*axis = begin;
  return ZUMImage<P>(box, image.GetCSz(), static_cast<const P*>(ZUMCopy(image).GetData()));
}

/// Expects `far` to be `near` moved along the axis, as far as 32 bits go, on a tight raster.
void ExpectMoved(const ZUMGenericImage& far, const ZUMGenericImage& near, Axis axis, long long by) {
  ZUMRect box = near.Rect();
  const long long begin = box.begin.*axis + by, end = box.end.*axis + by;
  ASSERT_EQ(far.GetCSz(), near.GetCSz());
  ASSERT_EQ(!far.EmptyP(), !near.EmptyP() && begin <= kMost && end >= kLeast);
  if (far.EmptyP()) return;
  box.begin.*axis = zuml_detail::ToCoordinate(begin);
  box.end.*axis = zuml_detail::ToCoordinate(end);
  ASSERT_EQ(far.Rect(), box);
  ASSERT_EQ(far.GetRasterSz(), static_cast<long long>(far.NPixels()) * far.GetCSz());
  const auto size = static_cast<std::size_t>(near.GetPixSz());
  ForEachPoint(near, near.GetCSz(), [&](int x, int y, int z, int t, int c) {
    ZUMBasePoint<int> p(x, y, z, t);
    const long long moved = p.*axis + by;
    if (moved < box.begin.*axis || moved > box.end.*axis) return;
    p.*axis = static_cast<int>(moved);
    ASSERT_EQ(std::memcmp(far.PixelAddress(p, c), near.PixelAddress(x, y, z, t, c), size), 0);
  });
}

template <class P>
class FilterLimits : public testing::Test {
 protected:
  Random random_{31};
  // Y and Z of the mask are on one side, so that results leave the image.
  ZUMImage<bool> mask_{ZUMRect(-1, 0, 0, 0, 1, 2, 1, 0), 1, true};
  ZUMImage<P> image_ =
      MakeRandomImage<P>(random_, ZUMRect(0, 0, 0, 0, 8, 5, 3, 1), 2, Layout::kCut);
};
using SumTypes = testing::Types<ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(FilterLimits, SumTypes);

TYPED_TEST(FilterLimits, MoveWithTheirOperands) {
  const auto& mask = this->mask_;
  const auto& image = this->image_;
  for (const auto& filter : AllFilters<TypeParam>()) {
    const ZUMGenericImage near = filter.run(image, mask);
    for (const Axis axis : kAxes) {
      const int size = image.End().*axis + 1, mask_begin = mask.Begin().*axis;
      for (const int begin : {kLeast, -1, kMost - size + 1}) {
        SCOPED_TRACE(testing::Message() << filter.name << " at " << begin << " of " << size);
        const auto far = CopyTo(begin, image, axis);
        ExpectMoved(filter.run(far, mask), near, axis, begin);
        if (filter.follows == 0) continue;
        for (const int away : kFar) {
          const auto moved = CopyTo(away, mask, axis);
          SCOPED_TRACE(testing::Message() << "mask at " << away);
          ExpectMoved(filter.run(far, moved), near, axis,
                      begin + filter.follows * (static_cast<long long>(away) - mask_begin));
        }
      }
    }
  }
}

// Kernels out of reach contribute nothing, or the ends of lines.
TYPED_TEST(FilterLimits, KernelsOutOfReachOfTheFormsThatKeepTheRegion) {
  using W = ZUMNaturalSum<TypeParam>;
  for (const int begin : {kLeast, kMost - 8}) {
    for (const Axis axis : {zuml_detail::kX, zuml_detail::kY}) {
      const auto& near = this->image_;
      const auto far = CopyTo(begin, near, axis);
      ZUMRect box;
      box.end.*axis = 2;
      const ZUMImage<W> kernel(box, 1, 3), zeros(near, 2, 0);
      for (const int away : kFar) {
        const auto moved = CopyTo(away, kernel, axis);
        ExpectMoved(ZUMConvEx(far, moved), zeros, axis, begin);
        const auto ends = ZUMDeriveEx(near, CopyTo(away < 0 ? -100 : 100, kernel, axis));
        ExpectMoved(ZUMDeriveEx(far, moved), ends, axis, begin);
      }
    }
  }
}

TYPED_TEST(FilterLimits, LargeBoxesAndNoChannel) {
  ZUMRect box(kLeast, 0, 0, 0, kMost, 0, 0, 0);
  EXPECT_TRUE(ZUMSum(this->image_, box).EmptyP());
  EXPECT_TRUE(ZUMSum(this->image_, ZUMRoDRef(new OtherRegion(box))).EmptyP());
  const ZUMImage<TypeParam> none(this->image_, 0, nullptr);
  for (const auto& filter : AllFilters<TypeParam>()) {
    EXPECT_EQ(filter.run(none, this->mask_).GetCSz(), 0) << filter.name;
  }
  const ZUMImage<ZUMNaturalSum<TypeParam>> three(this->mask_, 3, 1);
  EXPECT_EQ(ZUMConv(none, three).GetCSz(), 0);
  EXPECT_EQ(ZUMConv(none, ZUMKernel(three)).GetCSz(), 0);
}

}  // namespace
