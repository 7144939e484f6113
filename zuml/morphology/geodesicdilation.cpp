#include "zuml/morphology/geodesicdilation.h"

#include <cmath>

#include "zuml/core/foreachrun.h"
#include "zuml/core/scratch.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/lanes.h"

using zuml_detail::StoredPixels;

namespace {

// A pixel of the flood and how far it lies from where the flood began.
template <class P>
struct FloodedPixel {
  P* result;
  ZUMByte* mask;
  int x, y, z, t;
};

// The floods of one channel. The framed mask is also the map of what a flood has visited: it is
// false there until the flood has ended.
template <class P>
class BallFlood {
 public:
  BallFlood(const ZUMRaster& result, const ZUMRaster& mask, const ZUMImage<ZUMBool>& connectivity) {
    result_steps_.FromNonZeroPixels(result, connectivity);
    mask_steps_.FromNonZeroPixels(mask, connectivity);
  }

  void Spread(P* result, ZUMByte* mask, P value) {
    const double most = static_cast<double>(value) - 1;
    Visit({result, mask, 0, 0, 0, 0});
    while (!queue_.EmptyP()) {
      const FloodedPixel<P> from = queue_.Pop();
      for (unsigned i = 0; i < mask_steps_.GetLength(); ++i) {
        const ZUMDisplacementVector& step = mask_steps_.begin()[i];
        ZUMByte* const neighbour = from.mask + step.offset;
        if (*neighbour == 0) continue;
        const FloodedPixel<P> to{from.result + result_steps_.begin()[i],
                                 neighbour,
                                 from.x + step.x,
                                 from.y + step.y,
                                 from.z + step.z,
                                 from.t + step.t};
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
    const double x = p.x, y = p.y, z = p.z, t = p.t;
    return std::sqrt(x * x + y * y + z * z + t * t);
  }

  void Visit(const FloodedPixel<P>& pixel) {
    *pixel.mask = 0;
    visited_.Push(pixel.mask);
    queue_.Push(pixel);
  }

  ZUMDisplacementArray result_steps_;
  ZUMDisplacementVectorArray mask_steps_;
  ZUMBlockFIFO<FloodedPixel<P>> queue_;
  ZUMGrowingStack<ZUMByte*> visited_{10000};
};

// The mask over the region as zeros and ones, inside zeros as wide as the connectivity.
ZUMImage<ZUMBool> MakeFramedMask(const ZUMImage<ZUMBool>& mask, const ZUMRoDRef& rod,
                                 const ZUMImage<ZUMBool>& connectivity) {
  const ZUMBasePoint<int> b = connectivity.Begin();
  const ZUMRect frame(ZUMBasePoint<int>(-b.x, -b.y, -b.z, -b.t), connectivity.End());
  ZUMImage<ZUMBool> framed(rod, frame, 1, false);
  rod.RoD().DrawOutFrame(framed, frame, false);
  ZUMForEachRun(
      Intersection(rod, mask),
      [](ZUMBool* to, const ZUMBool* from, std::ptrdiff_t n) {
        const ZUMByte* bytes = StoredPixels(from);
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = bytes[i] != 0;
      },
      framed, mask);
  return framed;
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMDilateValue(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                           const ZUMImage<ZUMBool>& connectivity) {
  zuml_detail::RequireConnectivity("ZUMDilateArea", connectivity);
  const ZUMImage<P> result = ZUMCopy(image);
  if (image.EmptyP()) return result;
  for (int c = 0; c < image.GetCSz(); ++c) {
    const ZUMImage<P> channel = result.Channel(c);
    const ZUMImage<ZUMBool> framed =
        MakeFramedMask(mask.Channel(c < mask.GetCSz() ? c : 0), image, connectivity);
    BallFlood<P> flood(channel, framed, connectivity);
    ZUMForEachRun(
        image,
        [&](P* to, const P* from, ZUMBool* marks, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            if (marks[i]) {
              const P value = static_cast<P>(StoredPixels(from)[i]);
              flood.Spread(to + i, StoredPixels(marks) + i, value);
            }
          }
        },
        channel, image.Channel(c), framed);
  }
  return result;
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<PIX> ZUMDilateValue(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                 const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
