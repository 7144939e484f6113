#include "zuml/extension/spreading.h"

#include <cstddef>

#include "zuml/core/detail/framedcopy.h"
#include "zuml/core/detail/pointwise.h"
#include "zuml/core/scratch.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/extension/detail/computedpixel.h"

using zuml_detail::ValueAt;

namespace {

// The work of both: the framed result and a framed state image over the common region, with the
// neighbours as steps in either, and the queue of pixels in both.
template <class P, class S>
class Spread {
 public:
  struct Pixel {
    P* result;
    S* state;
  };

  Spread(const ZUMRoDRef& rod, const ZUMImage<ZUMBool>& mask, int csz,
         const ZUMImage<ZUMBool>& reach, S frame)
      : result(rod, zuml_detail::FrameOf(reach), csz, nullptr),
        state_(zuml_detail::MakeFramed<S>(rod, csz, reach, frame)) {
    zuml_detail::MapRuns(
        rod, [](bool unknown) { return static_cast<S>(unknown); }, state_, mask);
    on_result_.FromNonZeroPixels(result, reach);
    on_state_.FromNonZeroPixels(state_, reach);
  }

  // Calls visit(Pixel, image pixel) in sweep order.
  template <class Visit>
  void Seed(const ZUMImage<P>& image, const Visit& visit) {
    ZUMForEachRun(
        result,
        [&](P* r, S* s, const P* x, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) visit(Pixel{r + i, s + i}, ValueAt(x, i));
        },
        result, state_, image);
  }

  // Calls visit(Pixel) for the pixels of the queue, oldest first.
  template <class Visit>
  void Drain(const Visit& visit) {
    while (!queue_.EmptyP()) visit(queue_.Pop());
  }

  void Push(Pixel p) { queue_.Push(p); }

  template <class Visit>
  void ForEachNeighbour(Pixel p, const Visit& visit) const {
    const long long* on_result = on_result_.begin();
    for (const long long step : on_state_) visit(Pixel{p.result + *on_result++, p.state + step});
  }

  bool HasNeighbour(Pixel p, S state) const {
    for (const long long step : on_state_) {
      if (p.state[step] == state) return true;
    }
    return false;
  }

  const ZUMImage<P> result;

 private:
  const ZUMImage<S> state_;
  ZUMDisplacementArray on_result_, on_state_;
  ZUMBlockFIFO<Pixel> queue_;
};

// Checks the operands, and fills where image and mask meet: fill(region, reach of the neighbours).
template <class P, class Fill>
ZUMImage<P> RunSpread(const char* operation, const ZUMImage<P>& image,
                      const ZUMImage<ZUMBool>& mask, const ZUMImage<ZUMBool>& connectivity,
                      const Fill& fill) {
  zuml_detail::RequireConnectivity(operation, connectivity);
  zuml_detail::RequireSameChannels(operation, image, mask);
  const ZUMRoDRef rod = Intersection(image, mask);
  if (rod.EmptyP()) return ZUMImage<P>(rod, image.GetCSz(), nullptr);
  return fill(rod, zuml_detail::CutToReach(connectivity, rod));
}

}  // namespace

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMExtendNearest(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                             const ZUMImage<ZUMBool>& connectivity) {
  return RunSpread("ZUMExtendNearest", image, mask, connectivity,
                   [&](const ZUMRoDRef& rod, const ZUMImage<ZUMBool>& reach) {
                     // A state is whether the pixel is still to reach.
                     using Spread = Spread<P, ZUMByte>;
                     using Pixel = typename Spread::Pixel;
                     Spread spread(rod, mask, image.GetCSz(), reach, false);
                     spread.Seed(image, [&](Pixel p, P value) {
                       *p.result = value;
                       if (*p.state == 0 && spread.HasNeighbour(p, 1)) spread.Push(p);
                     });
                     spread.Drain([&](Pixel p) {
                       spread.ForEachNeighbour(p, [&](Pixel q) {
                         if (*q.state == 0) return;
                         *q.state = 0;
                         *q.result = *p.result;
                         spread.Push(q);
                       });
                     });
                     return spread.result;
                   });
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMExtendMean(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          const ZUMImage<ZUMBool>& connectivity) {
  return RunSpread("ZUMExtendMean", image, mask, connectivity,
                   [&](const ZUMRoDRef& rod, const ZUMImage<ZUMBool>& reach) {
                     enum State : ZUMByte { kKnown, kToReach, kQueued };
                     using Spread = Spread<P, ZUMByte>;
                     using Pixel = typename Spread::Pixel;
                     Spread spread(rod, mask, image.GetCSz(), reach, kQueued);
                     spread.Seed(image, [&](Pixel p, P value) {
                       if (*p.state == kKnown) {
                         *p.result = value;
                       } else {
                         *p.result =
                             zuml_detail::ToPixel<P>(std::numeric_limits<double>::quiet_NaN());
                         if (!spread.HasNeighbour(p, kKnown)) return;
                         *p.state = kQueued;
                         spread.Push(p);
                       }
                     });
                     spread.Drain([&](Pixel p) {
                       double sum = 0;
                       std::ptrdiff_t count = 0;
                       spread.ForEachNeighbour(p, [&](Pixel q) {
                         if (*q.state == kToReach) {
                           *q.state = kQueued;
                           spread.Push(q);
                         } else if (*q.state == kKnown) {
                           sum += static_cast<double>(*q.result);
                           ++count;
                         }
                       });
                       *p.result = zuml_detail::ToPixel<P>(sum / static_cast<double>(count));
                       *p.state = kKnown;
                     });
                     return spread.result;
                   });
}

#define ZUML_INSTANTIATE(PIX)                                                                      \
  template ZUML_API ZUMImage<PIX> ZUMExtendNearest(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                   const ZUMImage<ZUMBool>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                                   \
  template ZUML_API ZUMImage<PIX> ZUMExtendMean(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
