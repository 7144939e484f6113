#include "zuml/drawing/lines.h"

#include <cmath>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/pixelarith.h"
#include "zuml/drawing/detail/channels.h"
#include "zuml/drawing/detail/segment.h"

using zuml_detail::Plane;
using zuml_detail::RequireChannel;
using zuml_detail::Segment;
using zuml_detail::SegmentWalk;

namespace {

// `does` is the operation and its verb.
void RequirePlane(const char* does, const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end) {
  if (begin.z != end.z || begin.t != end.t) throw XQException("%s on a X-Y plane", does);
}

Segment MakeSegment(const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end) {
  return {begin.x, begin.y, end.x, end.y};
}

void RequireEnd(const ZUMRoDRef& rod, const ZUMBasePoint<int>& p, const char* name) {
  if (!rod.InP(p)) {
    throw XQException("ZUMGetLine: Line out of image %s(%d,%d,%d,%d)", name, p.x, p.y, p.z, p.t);
  }
}

// The line in all channels of the image.
template <class P>
ZUMImage<P> ReadLine(const ZUMImage<P>& image, const ZUMBasePoint<int>& begin,
                     const ZUMBasePoint<int>& end) {
  RequirePlane("ZUMGetLine only reads lines", begin, end);
  RequireEnd(image, begin, "P0");
  RequireEnd(image, end, "P1");
  const SegmentWalk line(MakeSegment(begin, end));
  const ZUMImage<P> result(ZUMRect(0, 0, 0, 0, static_cast<int>(line.GetLength()), 0, 0, 0),
                           image.GetCSz(), nullptr);
  for (int c = 0; c < image.GetCSz(); ++c) {
    P* to = &result(0, 0, 0, 0, c);
    for (SegmentWalk walk = line; walk.More(); walk.Next()) {
      const P* from =
          &image(static_cast<int>(walk.GetX()), static_cast<int>(walk.GetY()), begin.z, begin.t, c);
      *to++ = zuml_detail::ValueAt(from, 0);
    }
  }
  return result;
}

}  // namespace

template <ZUMAlgebraPixel P>
void ZUMDrawLine(ZUMImage<P>& image, const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end,
                 std::type_identity_t<P> value, int channel) {
  RequireChannel("ZUMDrawLine", image, channel);
  RequirePlane("ZUMDrawLine only draws line", begin, end);
  DrawSegment(Plane<P>(image, begin.z, begin.t, channel), MakeSegment(begin, end), value);
}

void ZUMDrawLine(ZUMImage<ZUMByte>& image, const ZUMBasePoint<int>& begin,
                 const ZUMBasePoint<int>& end, std::uint32_t colour) {
  RequireChannel("ZUMDrawLine", image, zuml_detail::kLastColourChannel);
  zuml_detail::DrawInColour(
      colour, [&](ZUMByte value, int c) { ZUMDrawLine(image, begin, end, value, c); });
}

template <ZUMAlgebraPixel P>
void ZUMAddLine(ZUMImage<P>& image, const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end,
                std::type_identity_t<P> value, int channel) {
  RequireChannel("ZUMAddLine", image, channel);
  RequirePlane("ZUMAddLine only draws line", begin, end);
  const Plane<P> plane(image, begin.z, begin.t, channel);
  Segment segment = MakeSegment(begin, end);
  if (!ClipSegment(plane.GetBounds(), segment)) return;
  for (SegmentWalk walk(segment); walk.More(); walk.Next()) {
    if (P* const pixel = plane.Find(walk.GetX(), walk.GetY())) {
      if constexpr (std::same_as<P, ZUMBool>) {
        *pixel = value;
      } else {
        *pixel = ZUMWrapAdd<P>(*pixel, value);
      }
    }
  }
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMGetLine(const ZUMImage<P>& image, const ZUMBasePoint<int>& begin,
                       const ZUMBasePoint<int>& end, int channel) {
  if (channel < 0 || channel >= image.GetCSz()) {
    throw XQException("ZUMGetLine: Out of channel range (%d)", channel);
  }
  return ReadLine(image.Channel(channel), begin, end);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMGetLine(const ZUMImage<P>& image, const ZUMBasePoint<int>& begin,
                       const ZUMBasePoint<int>& end) {
  return ReadLine(image, begin, end);
}

void ZUMAddGradientLine(ZUMImage<ZUMReal>& image, const ZUMImage<ZUMReal>& gradient,
                        const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end,
                        double value) {
  if (image.GetCSz() != 1) {
    throw XQException("ZUMAddGradientLine only allows images with one channel");
  }
  if (gradient.GetCSz() != 2) {
    throw XQException("ZUMAddGradientLine only allows gradient images with two channels");
  }
  RequirePlane("ZUMAddGradientLine only draws line", begin, end);
  const Plane<ZUMReal> plane(image, begin.z, begin.t, 0);
  const Plane<ZUMReal> along_x(gradient, begin.z, begin.t, 0),
      along_y(gradient, begin.z, begin.t, 1);
  const Segment segment = MakeSegment(begin, end);
  const auto dx = static_cast<double>(segment.x1 - segment.x0);
  const auto dy = static_cast<double>(segment.y1 - segment.y0);
  const double length = std::sqrt(dx * dx + dy * dy);
  const double ux = length > 0 ? dx / length : 0, uy = length > 0 ? dy / length : 0;
  double w = value;
  SegmentWalk walk(segment);
  walk.RestrictTo(Intersection(plane.GetBounds(), along_x.GetBounds()));
  for (; walk.More(); walk.Next()) {
    ZUMReal* const pixel = plane.Find(walk.GetX(), walk.GetY());
    const ZUMReal* const gx = along_x.Find(walk.GetX(), walk.GetY());
    if (!pixel || !gx) continue;
    *pixel += w;
    const double g = ux * *gx + uy * *along_y.Find(walk.GetX(), walk.GetY());
    if (g < 0) {
      w += g;
      if (w <= 0) return;
    }
  }
}

#define ZUML_INSTANTIATE(PIX)                                                                     \
  template ZUML_API void ZUMDrawLine<PIX>(ZUMImage<PIX>&, const ZUMBasePoint<int>&,               \
                                          const ZUMBasePoint<int>&, PIX, int);                    \
  template ZUML_API void ZUMAddLine<PIX>(ZUMImage<PIX>&, const ZUMBasePoint<int>&,                \
                                         const ZUMBasePoint<int>&, PIX, int);                     \
  template ZUML_API ZUMImage<PIX> ZUMGetLine<PIX>(const ZUMImage<PIX>&, const ZUMBasePoint<int>&, \
                                                  const ZUMBasePoint<int>&, int);                 \
  template ZUML_API ZUMImage<PIX> ZUMGetLine<PIX>(const ZUMImage<PIX>&, const ZUMBasePoint<int>&, \
                                                  const ZUMBasePoint<int>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
