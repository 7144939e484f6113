#include "zuml/regions/zones.h"

#include <algorithm>
#include <cstddef>
#include <functional>

#include "zuml/core/detail/framedcopy.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/scratch.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"

using zuml_detail::CutToReach;
using zuml_detail::MakeFramedCopy;

namespace {

// The climb from a region over steps from p to q with passes(image(q), image(p)).
template <class P, class Passes>
ZUMImage<ZUMBool> ExtendRegion(const char* operation, const ZUMImage<ZUMBool>& region,
                               const ZUMImage<P>& image, const ZUMImage<ZUMBool>& connectivity,
                               Passes passes) {
  if (region.GetCSz() != image.GetCSz()) {
    throw XQException("%s: Images with different number of channels are not allowed", operation);
  }
  zuml_detail::RequireConnectivity(operation, connectivity);
  // The frame counts as region, so that the image is not read outside.
  const ZUMRoDRef rod = Intersection(region, image);
  const ZUMImage<ZUMBool> reach = CutToReach(connectivity, rod);
  const ZUMImage<ZUMBool> result = MakeFramedCopy(region, rod, reach, true);

  struct Step {
    long long region, image;
  };
  ZUMDisplacementArray in_region, in_image;
  in_region.FromNonZeroPixels(result, reach);
  in_image.FromNonZeroPixels(image, reach);
  ZUMArray<Step> steps;
  for (unsigned k = 0; k < in_region.GetLength(); ++k) steps.Put({in_region[k], in_image[k]});

  struct Place {
    ZUMBool* region;
    const P* image;
  };
  ZUMGrowingStack<Place> stack(10000);
  ZUMForEachRun(
      result,
      [&](ZUMBool* r, const P* p, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (!r[i]) continue;
          const bool leaves = std::any_of(steps.begin(), steps.end(), [&](const Step& step) {
            return !r[i + step.region] && passes(p[i + step.image], p[i]);
          });
          if (leaves) stack.Push({r + i, p + i});
        }
      },
      result, image);
  while (!stack.EmptyP()) {
    const Place place = stack.Pop();
    for (const Step& step : steps) {
      ZUMBool* const r = place.region + step.region;
      if (*r || !passes(place.image[step.image], *place.image)) continue;
      *r = true;
      stack.Push({r, place.image + step.image});
    }
  }
  return result;
}

}  // namespace

template <ZUMGreyPixel P>
ZUMImage<P> ZUMRegionsOfInfluence(const ZUMImage<P>& seeds, const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("RegionsOfInfluence", connectivity);
  // No front enters the frame, since it is not 0.
  const ZUMImage<ZUMBool> reach = CutToReach(connectivity, seeds);
  const ZUMImage<P> result = MakeFramedCopy(seeds, seeds, reach, 1);
  ZUMDisplacementArray neighbours;
  neighbours.FromNonZeroPixels(result, reach);
  ZUMBlockFIFO<P*> queue;
  ZUMForEachRun(
      result,
      [&](P* p, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (p[i] == 0) continue;
          const bool front = std::any_of(neighbours.begin(), neighbours.end(),
                                         [&](long long offset) { return p[i + offset] == 0; });
          if (front) queue.Push(p + i);
        }
      },
      result);
  while (!queue.EmptyP()) {
    P* const p = queue.Pop();
    for (const long long offset : neighbours) {
      if (p[offset] == 0) {
        p[offset] = *p;
        queue.Push(p + offset);
      }
    }
  }
  return result;
}

template <ZUMGreyPixel P>
ZUMImage<ZUMBool> ZUMExtendRegionToMax(const ZUMImage<ZUMBool>& region, const ZUMImage<P>& image,
                                       const ZUMImage<ZUMBool>& connectivity) {
  return ExtendRegion("ZUMExtendRegionToMax", region, image, connectivity, std::greater_equal<P>());
}

template <ZUMGreyPixel P>
ZUMImage<ZUMBool> ZUMExtendRegionToMin(const ZUMImage<ZUMBool>& region, const ZUMImage<P>& image,
                                       const ZUMImage<ZUMBool>& connectivity) {
  return ExtendRegion("ZUMExtendRegionToMin", region, image, connectivity, std::less_equal<P>());
}

#define ZUML_INSTANTIATE(PIX)                                                      \
  template ZUML_API ZUMImage<PIX> ZUMRegionsOfInfluence(const ZUMImage<PIX>&,      \
                                                        const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<ZUMBool> ZUMExtendRegionToMax(                        \
      const ZUMImage<ZUMBool>&, const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);   \
  template ZUML_API ZUMImage<ZUMBool> ZUMExtendRegionToMin(                        \
      const ZUMImage<ZUMBool>&, const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
