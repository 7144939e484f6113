#include "zuml/morphology/geodesicdilation.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/scratch.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Direction;
using zuml_detail::Step;
using zuml_detail::StoredPixels;

namespace {

// A pixel of the flood and how far it lies from where the flood began on X and Y.
template <class P>
struct FloodedPixel {
  P* result;
  ZUMByte* mask;
  int x, y;
};

// A neighbour by the connectivity.
struct Neighbour {
  std::ptrdiff_t result, mask;  // offsets
  int x, y;
};

// The floods of one channel. The framed mask is also the map of what a flood has visited: it is
// false there until the flood has ended.
template <class P>
class BallFlood {
 public:
  BallFlood(const ZUMRaster& result, const ZUMRaster& mask, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
      neighbours_.push_back(
          {result.Displacement(step, 0), mask.Displacement(step, 0), step.x, step.y});
    }
  }

  void Spread(P* result, ZUMByte* mask, P value) {
    const double most = static_cast<double>(value) - 1;
    Visit({result, mask, 0, 0});
    while (!queue_.EmptyP()) {
      const FloodedPixel<P> from = queue_.Pop();
      for (const Neighbour& step : neighbours_) {
        ZUMByte* const neighbour = from.mask + step.mask;
        if (*neighbour == 0) continue;
        const FloodedPixel<P> to{from.result + step.result, neighbour, from.x + step.x,
                                 from.y + step.y};
        if (!(Length(to) <= most)) continue;
        Visit(to);
        if (value > *to.result) *to.result = value;
      }
    }
    for (ZUMByte* pixel : visited_) *pixel = 1;
    visited_.Clear();
  }

 private:
  static double Length(const FloodedPixel<P>& p) {
    const double x = p.x, y = p.y;
    return std::sqrt(x * x + y * y);
  }

  void Visit(const FloodedPixel<P>& pixel) {
    *pixel.mask = 0;
    visited_.Push(pixel.mask);
    queue_.Push(pixel);
  }

  std::vector<Neighbour> neighbours_;
  ZUMBlockFIFO<FloodedPixel<P>> queue_;
  ZUMGrowingStack<ZUMByte*> visited_{10000};
};

// The mask over the region, moved to the origin with it, as zeros and ones inside zeros as wide as
// the steps reach.
ZUMImage<ZUMBool> MakeFramedMask(const ZUMImage<ZUMBool>& mask, const ZUMRoDRef& rod,
                                 const std::vector<Step>& steps) {
  ZUMRect reach;
  for (const Step& step : steps) zuml_detail::Include(reach, step);
  ZUMRect wide = zuml_detail::MoveToOrigin(rod);
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    wide.begin.*axis = reach.begin.*axis;
    wide.end.*axis = zuml_detail::ToCoordinate(std::int64_t{wide.end.*axis} + reach.end.*axis);
  }
  const ZUMImage<ZUMBool> framed(wide, 1, false);
  const ZUMImage<ZUMBool> known = mask.Cut(rod);
  if (known.EmptyP()) return framed;
  const ZUMRoDRef moved = zuml_detail::MoveSides(known, -1, rod.Begin(), -1, rod.Begin());
  zuml_detail::MapRuns(
      moved, [](ZUMBool mark) { return mark; }, framed, zuml_detail::Place(known, moved));
  return framed;
}

// Spreads the values of one channel, which begins at the origin, into a copy of it.
template <class P>
void SpreadValues(const ZUMImage<P>& result, const ZUMImage<P>& image,
                  const ZUMImage<ZUMBool>& mask, const std::vector<Step>& steps) {
  BallFlood<P> flood(result, mask, steps);
  ZUMForEachRun(
      result,
      [&](P* to, const P* from, ZUMBool* marks, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (marks[i]) {
            flood.Spread(to + i, StoredPixels(marks) + i, zuml_detail::ValueAt(from, i));
          }
        }
      },
      result, image, mask);
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMDilateValue(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                           const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("ZUMDilateArea", connectivity);
  zuml_detail::RequirePixels<ZUMDisplacementArray>(connectivity, Direction::kDirect);
  return zuml_detail::ComputeAtOrigin<P>(
      image, image, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef&) {
        const std::vector<Step> steps = zuml_detail::ListSteps(
            connectivity, zuml_detail::StepMap(image, image, Direction::kDirect));
        const ZUMImage<P> result = zuml_detail::MapImage<P>(source, [](P value) { return value; });
        // A mask of no channel marks nothing.
        for (int c = 0; c < image.GetCSz() && mask.GetCSz() > 0; ++c) {
          const ZUMImage<ZUMBool> marks = mask.Channel(c < mask.GetCSz() ? c : 0);
          SpreadValues(result.Channel(c), source.Channel(c), MakeFramedMask(marks, image, steps),
                       steps);
        }
        return result;
      });
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<PIX> ZUMDilateValue(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                 const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
