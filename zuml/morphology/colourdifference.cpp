#include "zuml/morphology/colourdifference.h"

#include <cmath>

#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/lines.h"
#include "zuml/morphology/detail/startvalue.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Step;
using zuml_detail::Stored;
using zuml_detail::StoredPixels;

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
  ZUMDisplacementArray().SymmetricFromNonZeroPixels(image, element);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kMirrored);
  const ZUMImage<R> result(rod, 1, R());
  const std::vector<Step> steps = zuml_detail::ListSteps(element, Direction::kMirrored);
  // An element that lies beside the origin reaches into the image from points outside it, which
  // have no colour.
  const ZUMRoDRef coloured = Intersection(rod, image);
  const int first = coloured.BeginX(), n = coloured.RoDXSz();
  zuml_detail::ForEachLine(coloured, 1, [&](int y, int z, int t, int) {
    R* const greatest = &result(first, y, z, t);
    const auto line = [&](const Step& s, int c) {
      return StoredPixels(&image(first + s.x, y + s.y, z + s.z, t + s.t, c));
    };
    const Stored<P>* const here[] = {line(Step(), 0), line(Step(), 1), line(Step(), 2)};
    for (const Step& step : steps) {
      const Stored<P>* const there[] = {line(step, 0), line(step, 1), line(step, 2)};
      for (int i = 0; i < n; ++i) {
        const auto term = [&](int c) {
          // Of bool pixels only the truth counts.
          if constexpr (std::same_as<P, ZUMBool>) {
            return Distance::template Term<R>(here[c][i] != 0, there[c][i] != 0);
          } else {
            return Distance::template Term<R>(static_cast<R>(here[c][i]),
                                              static_cast<R>(there[c][i]));
          }
        };
        const R distance = ZUMWrapAdd<R>(ZUMWrapAdd<R>(term(0), term(1)), term(2));
        greatest[i] = Greatest::Fold(greatest[i], distance);
      }
    }
  });
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
