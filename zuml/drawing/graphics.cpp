#include "zuml/drawing/graphics.h"

#include <cmath>
#include <concepts>
#include <functional>
#include <limits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/drawing/detail/channels.h"
#include "zuml/drawing/detail/maskedruns.h"

using zuml_detail::Blend;
using zuml_detail::Paint;

namespace {

const ZUMBasePoint<int> kInPlace;

void RequireChannels(const ZUMRaster& target, const ZUMRaster& source, int channel) {
  if (channel < 0) throw XQException("negative number of channel");
  if (target.GetCSz() < std::int64_t{source.GetCSz()} + channel) {
    throw XQException("out of channel range");
  }
}

// Whether the blocks of two images have bytes in common.
bool MayShare(const ZUMRaster& a, const ZUMRaster& b) {
  const auto begin = [](const ZUMRaster& r) { return static_cast<const char*>(r.GetData()); };
  const auto end = [&](const ZUMRaster& r) {
    return begin(r) + r.GetSimpleRaster()->GetSimpleRasterSz() * r.GetPixSz();
  };
  const std::less<const char*> before;
  return before(begin(a), end(b)) && before(begin(b), end(a));
}

// The region's points less a displacement are the source's.
ZUMRoDRef MoveRegion(const ZUMRoDRef& rod, const ZUMBasePoint<int>& d) {
  if (!zuml_detail::IsBox(rod)) return rod.RoD().Translate(d.x, d.y, d.z, d.t);
  // What would leave the 32 bits is cut off, so that the points that stay keep their distances.
  return zuml_detail::MoveSides(rod, 1, d, 1, d);
}

// A box cannot be intersected with a region of another class, but maybe the other way round.
ZUMRoDRef MakeCommonRegion(const ZUMRoDRef& a, const ZUMRoDRef& b) {
  return zuml_detail::IsBox(a) ? Intersection(b, a) : Intersection(a, b);
}

// Calls draw(to, from, n) for each run of the target's pixels that the source, displaced by d, lies
// over. The displacement moves addresses and not the raster, whose coordinates could overflow.
template <class P, class S, class Draw>
void DrawOver(const ZUMImage<P>& target, const ZUMImage<S>& source, const ZUMBasePoint<int>& d,
              int channel, const Draw& draw) {
  RequireChannels(target, source, channel);
  if (source.GetCSz() == 0) return;
  const ZUMImage<S> from = MayShare(target, source) ? ZUMCopy(source) : source;
  ZUMForEachPlacedRun(
      MakeCommonRegion(target, MoveRegion(source, d)),
      [&, draw](const ZUMRunPlace& p, P* to, std::ptrdiff_t n) {
        draw(to, &from(p.x - d.x, p.y - d.y, p.z - d.z, p.t - d.t, p.c), n);
      },
      target.Channels(channel, channel + source.GetCSz() - 1));
}

template <class P>
void CopyPixels(P* to, const P* from, std::ptrdiff_t n) {
  if constexpr (std::same_as<P, ZUMBool>) {
    for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = zuml_detail::ValueAt(from, i);
  } else {
    ZUMCopyRun(to, from, n);
  }
}

template <class P, class Op>
void DrawMask(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask, const ZUMBasePoint<int>& d,
              const Op& op, int channel) {
  DrawOver(image, mask, d, channel, [op](P* to, const ZUMBool* under, std::ptrdiff_t n) {
    zuml_detail::ApplyMaskedRun(to, under, n, op);
  });
}

// A source position's pixels: the nearest one, or two of which the second has a weight.
struct Neighbours {
  std::int64_t first, second;
  double weight;
};

// Whether a position can be near a coordinate; not a NaN.
bool IsNear(double s) { return std::fabs(s) < 1e12; }
constexpr Neighbours kNone{std::numeric_limits<std::int64_t>::min(), 0, 0};

Neighbours FindNearest(double s) {
  if (!IsNear(s)) return kNone;
  const auto x = static_cast<std::int64_t>(s >= 0 ? s + 0.5 : s - 0.5);
  return {x, x, 0};
}

Neighbours FindPair(double s) {
  if (!IsNear(s)) return kNone;
  const auto x = static_cast<std::int64_t>(s);
  return {x, s >= 0 ? x + 1 : x - 1, s - static_cast<double>(x)};
}

// A channel of a warp's source, at Z = T = 0.
template <class P>
class WarpSource {
 public:
  WarpSource(const ZUMImage<P>& image, int channel)
      : image_(image), channel_(channel), box_(image.Rect()) {}

  // Whether the region has the pixels of both on both axes.
  bool Holds(const Neighbours& x, const Neighbours& y) const {
    for (const std::int64_t px : {x.first, x.second}) {
      for (const std::int64_t py : {y.first, y.second}) {
        if (px < box_.begin.x || px > box_.end.x || py < box_.begin.y || py > box_.end.y ||
            !image_.InP(static_cast<int>(px), static_cast<int>(py), 0, 0)) {
          return false;
        }
      }
    }
    return true;
  }

  P Get(std::int64_t x, std::int64_t y) const {
    const P* pixel = &image_(static_cast<int>(x), static_cast<int>(y), 0, 0, channel_);
    return zuml_detail::ValueAt(pixel, 0);
  }

  P Interpolate(const Neighbours& x, const Neighbours& y) const {
    const auto along_x = [&](std::int64_t py) {
      const auto p = static_cast<double>(Get(x.first, py));
      return p + (static_cast<double>(Get(x.second, py)) - p) * x.weight;
    };
    const double a = along_x(y.first);
    return ZUMTruncate<P>(a + (along_x(y.second) - a) * y.weight);
  }

 private:
  const ZUMImage<P>& image_;
  int channel_;
  ZUMRect box_;
};

}  // namespace

template <ZUMAlgebraPixel P>
void ZUMDrawImage(ZUMImage<P>& target, const ZUMImage<P>& source, int channel) {
  ZUMDrawImage(target, source, kInPlace, channel);
}

template <ZUMAlgebraPixel P>
void ZUMDrawImage(ZUMImage<P>& target, const ZUMImage<P>& source,
                  const ZUMBasePoint<int>& displacement, int channel) {
  DrawOver(target, source, displacement, channel, CopyPixels<P>);
}

template <ZUMScalarPixel P>
void ZUMDrawWarpAffine2D(ZUMImage<P>& target, const ZUMImage<P>& source, const double (&M)[2][3],
                         ZUMInterpolation interpolation, int channel) {
  RequireChannels(target, source, channel);
  const bool nearest = interpolation == ZUMInterpolationNearest;
  if (!nearest && interpolation != ZUMInterpolationLinear) {
    throw XQException("ZUMWarpAffine2D: Unknown interpolation method");
  }
  if (source.GetCSz() == 0) return;
  const ZUMImage<P> image = MayShare(target, source) ? ZUMCopy(source) : source;
  ZUMForEachPlacedRun(
      target,
      [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t n) {
        const WarpSource<P> from(image, place.c);
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const double x = place.x + static_cast<double>(i), y = place.y;
          const double xs = M[0][0] * x + M[0][1] * y + M[0][2];
          const double ys = M[1][0] * x + M[1][1] * y + M[1][2];
          if (nearest) {
            const Neighbours px = FindNearest(xs), py = FindNearest(ys);
            if (from.Holds(px, py)) to[i] = from.Get(px.first, py.first);
          } else {
            const Neighbours px = FindPair(xs), py = FindPair(ys);
            if (from.Holds(px, py)) to[i] = from.Interpolate(px, py);
          }
        }
      },
      target.Channels(channel, channel + source.GetCSz() - 1));
}

template <ZUMAlgebraPixel P>
void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask, std::type_identity_t<P> value,
                 int channel) {
  DrawMask(image, mask, kInPlace, Paint<P>(value), channel);
}

template <ZUMAlgebraPixel P>
void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                 const ZUMBasePoint<int>& displacement, std::type_identity_t<P> value,
                 int channel) {
  DrawMask(image, mask, displacement, Paint<P>(value), channel);
}

template <ZUMAlgebraPixel P>
void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask, std::type_identity_t<P> value,
                 double alpha, int channel) {
  DrawMask(image, mask, kInPlace, Blend<P>(value, alpha), channel);
}

template <ZUMAlgebraPixel P>
void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                 const ZUMBasePoint<int>& displacement, std::type_identity_t<P> value, double alpha,
                 int channel) {
  DrawMask(image, mask, displacement, Blend<P>(value, alpha), channel);
}

void ZUMDrawMask(ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask, std::uint32_t colour) {
  ZUMDrawMask(image, mask, kInPlace, colour);
}

void ZUMDrawMask(ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask,
                 const ZUMBasePoint<int>& displacement, std::uint32_t colour) {
  RequireChannels(image, mask, zuml_detail::kLastColourChannel);
  zuml_detail::DrawInColour(colour, [&](ZUMByte value, int c) {
    DrawMask(image, mask, displacement, Paint<ZUMByte>(value), c);
  });
}

void zuml_detail::BlendColouredMask(const ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask,
                                    const ZUMBasePoint<int>& displacement, std::uint32_t colour,
                                    double alpha) {
  RequireChannels(image, mask, zuml_detail::kLastColourChannel);
  zuml_detail::DrawInColour(colour, [&](ZUMByte value, int c) {
    DrawMask(image, mask, displacement, Blend<ZUMByte>(value, alpha), c);
  });
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API void ZUMDrawImage<PIX>(ZUMImage<PIX>&, const ZUMImage<PIX>&, int);           \
  template ZUML_API void ZUMDrawImage<PIX>(ZUMImage<PIX>&, const ZUMImage<PIX>&,                 \
                                           const ZUMBasePoint<int>&, int);                       \
  template ZUML_API void ZUMDrawMask<PIX>(ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, PIX, int);   \
  template ZUML_API void ZUMDrawMask<PIX>(ZUMImage<PIX>&, const ZUMImage<ZUMBool>&,              \
                                          const ZUMBasePoint<int>&, PIX, int);                   \
  template ZUML_API void ZUMDrawMask<PIX>(ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, PIX, double, \
                                          int);                                                  \
  template ZUML_API void ZUMDrawMask<PIX>(ZUMImage<PIX>&, const ZUMImage<ZUMBool>&,              \
                                          const ZUMBasePoint<int>&, PIX, double, int);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                           \
  template ZUML_API void ZUMDrawWarpAffine2D<PIX>(ZUMImage<PIX>&, const ZUMImage<PIX>&, \
                                                  const double(&)[2][3], ZUMInterpolation, int);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
