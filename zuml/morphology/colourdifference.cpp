#include "zuml/morphology/colourdifference.h"

#include <cmath>
#include <concepts>
#include <cstddef>
#include <vector>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/lanes.h"
#include "zuml/morphology/detail/startvalue.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Step;
using zuml_detail::StepMap;
using zuml_detail::ValueAt;

namespace {

struct DistanceL1 {
  template <class R>
  static R Term(R a, R b) {
    const R difference = ZUMWrapSub<R>(a, b);
    return difference < 0 ? ZUMWrapNeg<R>(difference) : difference;
  }
};

// Compared by their squares, whose order is that of the roots.
struct DistanceL2 {
  template <class R>
  static R Term(R a, R b) {
    return (a - b) * (a - b);
  }
};

template <class Distance, class R, class P>
ZUMImage<R> FindGreatestDistances(const char* operation, const ZUMImage<P>& image,
                                  const ZUMImage<ZUMBool>& element) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  if (image.GetCSz() != 3) {
    throw XQException("%s: images with %d channels are not allowed", operation, image.GetCSz());
  }
  zuml_detail::RequirePixels<ZUMDisplacementArray>(element, Direction::kMirrored);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kMirrored);
  // An element that lies beside the origin reaches into the image from points outside it, which
  // have no colour.
  const ZUMRoDRef coloured = Intersection(rod, image);
  const ZUMImage<R> result(rod, 1, R());
  if (coloured.EmptyP()) return result;
  std::vector<std::ptrdiff_t> offsets;
  zuml_detail::ForEachStep(element, StepMap(image, coloured, Direction::kMirrored),
                           [&](const Step&, const ZUMBasePoint<int>& k, bool) {
                             offsets.push_back(image.Displacement(-k.x, -k.y, -k.z, -k.t, 0));
                           });
  ZUMForEachRun(
      coloured,
      [&](R* greatest, const P* red, const P* green, const P* blue, std::ptrdiff_t n) {
        for (const std::ptrdiff_t offset : offsets) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            const auto term = [i, offset](const P* channel) {
              return Distance::template Term<R>(static_cast<R>(ValueAt(channel, i)),
                                                static_cast<R>(ValueAt(channel, offset + i)));
            };
            const R distance = ZUMWrapAdd<R>(ZUMWrapAdd<R>(term(red), term(green)), term(blue));
            greatest[i] = Greatest::Fold(greatest[i], distance);
          }
        }
      },
      result, image.Channel(0), image.Channel(1), image.Channel(2));
  return result;
}

}  // namespace

template <class R, ZUMWidensTo<R> P>
ZUMImage<R> ZUMMaxL1Diff(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FindGreatestDistances<DistanceL1, R>("ZUMMaxL1Diff", image, element);
}

template <std::same_as<ZUMReal> R, ZUMScalarPixel P>
ZUMImage<R> ZUMMaxL2Diff(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  const ZUMImage<R> squares = FindGreatestDistances<DistanceL2, R>("ZUMMaxL2Diff", image, element);
  ZUMForEachRun(
      squares,
      [](R* pixels, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = std::sqrt(pixels[i]);
      },
      squares);
  return squares;
}

#define ZUML_INSTANTIATE(PIX)                                                          \
  template ZUML_API ZUMImage<ZUMLong> ZUMMaxL1Diff<ZUMLong, PIX>(const ZUMImage<PIX>&, \
                                                                 const ZUMImage<ZUMBool>&);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
template ZUML_API ZUMImage<ZUMReal> ZUMMaxL1Diff<ZUMReal, ZUMReal>(const ZUMImage<ZUMReal>&,
                                                                   const ZUMImage<ZUMBool>&);
#define ZUML_INSTANTIATE(PIX)                                                          \
  template ZUML_API ZUMImage<ZUMReal> ZUMMaxL2Diff<ZUMReal, PIX>(const ZUMImage<PIX>&, \
                                                                 const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
