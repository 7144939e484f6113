#include "zuml/drawing/shapes.h"

#include <algorithm>
#include <vector>

#include "zuml/core/pixelarith.h"
#include "zuml/drawing/detail/channels.h"
#include "zuml/drawing/detail/midpointcircle.h"
#include "zuml/drawing/detail/segment.h"
#include "zuml/drawing/lines.h"

using zuml_detail::Bounds;
using zuml_detail::DrawInColour;
using zuml_detail::kLastColourChannel;
using zuml_detail::MidpointCircle;
using zuml_detail::Plane;
using zuml_detail::RequireChannel;

namespace {

void RequireCircle(const ZUMRaster& image, int radius, int channel) {
  RequireChannel("ZUMDrawLine", image, channel);
  if (radius < 0) throw XQException("ZUMDrawCircle: Radius less than zero");
}

// Calls f(x, y) for the octant's points at which origin + sign * x lies from low to high.
template <class F>
void ForEachPoint(const MidpointCircle& circle, std::int64_t origin, int sign, std::int64_t low,
                  std::int64_t high, F f) {
  const std::int64_t first = sign > 0 ? low - origin : origin - high;
  const std::int64_t last = sign > 0 ? high - origin : origin - low;
  for (std::int64_t x = std::max<std::int64_t>(first, 1); x <= std::min(last, circle.GetLast());
       ++x) {
    f(x, circle.GetY(x));
  }
}

// Whether the pixels of a row belong to the ellipse; along the row it is one stretch around the
// middle.
struct EllipseRow {
  double cx, a, b, rest;  // (x - cx)^2 b <= rest

  bool Holds(std::int64_t x) const {
    const double dx = static_cast<double>(x) - cx;
    return dx * dx * b + rest <= a * b;
  }
};

void RequirePolygon(const char* operation, const ZUMRaster& image, const ZUMBasePoint<int>* points,
                    int count, int channel) {
  RequireChannel(operation, image, channel);
  if (!points || count < 3) throw XQException("%s: few points", operation);
  for (int i = 1; i < count; ++i) {
    if (points[i].z != points[0].z || points[i].t != points[0].t) {
      throw XQException("ZUMDrawLine only draws line on a X-Y plane");
    }
  }
}

// Calls f(point, next point) for the sides, the closing one first.
template <class F>
void ForEachSide(const ZUMBasePoint<int>* points, int count, F f) {
  for (int i = 0, j = count - 1; i < count; j = i++) f(points[j], points[i]);
}

template <class P>
void DrawSides(const ZUMImage<P>& image, const ZUMBasePoint<int>* points, int count, P value,
               int channel) {
  const Plane<P> plane(image, points->z, points->t, channel);
  ForEachSide(points, count, [&](const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end) {
    DrawSegment(plane, {begin.x, begin.y, end.x, end.y}, value);
  });
}

}  // namespace

template <ZUMArithmeticPixel P>
void ZUMDrawRect(ZUMImage<P>& image, const ZUMRect& box, std::type_identity_t<P> value,
                 int channel) {
  const ZUMBasePoint<int> b = box.begin, e = box.end;
  ZUMDrawLine(image, b, {e.x, b.y, e.z, e.t}, value, channel);
  ZUMDrawLine(image, b, {b.x, e.y, e.z, e.t}, value, channel);
  ZUMDrawLine(image, {e.x, b.y, b.z, b.t}, e, value, channel);
  ZUMDrawLine(image, {b.x, e.y, b.z, b.t}, e, value, channel);
}

void ZUMDrawRect(ZUMImage<ZUMByte>& image, const ZUMRect& box, std::uint32_t colour) {
  RequireChannel("ZUMDrawLine", image, kLastColourChannel);
  DrawInColour(colour, [&](ZUMByte value, int c) { ZUMDrawRect(image, box, value, c); });
}

template <ZUMAlgebraPixel P>
void ZUMDrawFilledRect(ZUMImage<P>& image, const ZUMRect& box, std::type_identity_t<P> value,
                       int channel) {
  image.Channel(channel).Cut(box).SetPixels(value);
}

void ZUMDrawFilledRect(ZUMImage<ZUMByte>& image, const ZUMRect& box, std::uint32_t colour) {
  // All views are taken before the first is drawn into.
  ZUMImage<ZUMByte> views[] = {image.Channel(0), image.Channel(1), image.Channel(2)};
  DrawInColour(colour, [&](ZUMByte value, int c) { ZUMDrawFilledRect(views[c], box, value, 0); });
}

template <ZUMAlgebraPixel P>
void ZUMDrawCircle(ZUMImage<P>& image, const ZUMBasePoint<int>& centre, int radius,
                   std::type_identity_t<P> value, int channel) {
  RequireCircle(image, radius, channel);
  const Plane<P> plane(image, centre.z, centre.t, channel);
  const std::int64_t cx = centre.x, cy = centre.y, r = radius;
  plane.Set(cx, cy + r, value);
  plane.Set(cx, cy - r, value);
  plane.Set(cx + r, cy, value);
  plane.Set(cx - r, cy, value);
  // Two octants at a time, and only the steps beside the region.
  const MidpointCircle circle(radius);
  const Bounds& bounds = plane.GetBounds();
  for (const int sign : {1, -1}) {
    ForEachPoint(circle, cx, sign, bounds.begin_x, bounds.end_x,
                 [&](std::int64_t x, std::int64_t y) {
                   plane.Set(cx + sign * x, cy + y, value);
                   plane.Set(cx + sign * x, cy - y, value);
                 });
    ForEachPoint(circle, cy, sign, bounds.begin_y, bounds.end_y,
                 [&](std::int64_t x, std::int64_t y) {
                   plane.Set(cx + y, cy + sign * x, value);
                   plane.Set(cx - y, cy + sign * x, value);
                 });
  }
}

void ZUMDrawCircle(ZUMImage<ZUMByte>& image, const ZUMBasePoint<int>& centre, int radius,
                   std::uint32_t colour) {
  RequireChannel("ZUMDrawLine", image, kLastColourChannel);
  DrawInColour(colour,
               [&](ZUMByte value, int c) { ZUMDrawCircle(image, centre, radius, value, c); });
}

template <ZUMAlgebraPixel P>
void ZUMDrawFilledCircle(ZUMImage<P>& image, const ZUMBasePoint<int>& centre, int radius,
                         std::type_identity_t<P> value, int channel) {
  RequireCircle(image, radius, channel);
  const Plane<P> plane(image, centre.z, centre.t, channel);
  const std::int64_t cx = centre.x, cy = centre.y, r = radius;
  const MidpointCircle circle(radius);
  const std::int64_t last = std::min(cy + r, plane.GetBounds().end_y);
  for (std::int64_t y = std::max(cy - r, plane.GetBounds().begin_y); y <= last; ++y) {
    const std::int64_t width = circle.GetHalfWidth(y < cy ? cy - y : y - cy);
    plane.FillRow(cx - width, cx + width, y, value);
  }
}

void ZUMDrawFilledCircle(ZUMImage<ZUMByte>& image, const ZUMBasePoint<int>& centre, int radius,
                         std::uint32_t colour) {
  RequireChannel("ZUMDrawLine", image, kLastColourChannel);
  DrawInColour(colour,
               [&](ZUMByte value, int c) { ZUMDrawFilledCircle(image, centre, radius, value, c); });
}

ZUMImage<ZUMBool> ZUMCircleIm(int radius) {
  if (radius < 0) throw XQException("ZUMDrawCircle: Radius less than zero");
  ZUMImage<ZUMBool> image(ZUMRect(-radius, -radius, 0, 0, radius, radius, 0, 0), 1, false);
  ZUMDrawFilledCircle(image, {0, 0}, radius, true, 0);
  return image;
}

template <ZUMScalarPixel P>
void ZUMDrawFilledEllipse(ZUMImage<P>& image, const ZUMRect& box, std::type_identity_t<P> value,
                          int channel) {
  RequireChannel("ZUMDrawFilledEllipse", image, channel);
  if (box.begin.z != box.end.z || box.begin.t != box.end.t) {
    throw XQException("ZUMDrawFilledEllipse only draws ellipses on a X-Y plane");
  }
  const Plane<P> plane(image, box.begin.z, box.begin.t, channel);
  const std::int64_t bx = box.begin.x, ex = box.end.x, by = box.begin.y, ey = box.end.y;
  if (bx > ex) return;
  const double width = static_cast<double>(ex - bx), height = static_cast<double>(ey - by);
  const double a = width * width / 4, b = height * height / 4;
  const double cx = static_cast<double>(bx + ex) / 2, cy = static_cast<double>(by + ey) / 2;
  const std::int64_t last = std::min(ey, plane.GetBounds().end_y);
  for (std::int64_t y = std::max(by, plane.GetBounds().begin_y); y <= last; ++y) {
    const double dy = static_cast<double>(y) - cy;
    const EllipseRow row{cx, a, b, dy * dy * a};
    // The first pixel, by bisection up to the middle; the last one mirrors it.
    std::int64_t low = bx, high = bx + (ex - bx) / 2;
    if (!row.Holds(high)) continue;
    while (low < high) {
      const std::int64_t middle = low + (high - low) / 2;
      if (row.Holds(middle)) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    plane.FillRow(low, bx + ex - low, y, value);
  }
}

template <ZUMAlgebraPixel P>
void ZUMDrawPolygon(ZUMImage<P>& image, const ZUMBasePoint<int>* points, int count,
                    std::type_identity_t<P> value, int channel) {
  RequirePolygon("ZUMDrawPolygon", image, points, count, channel);
  DrawSides(image, points, count, value, channel);
}

template <ZUMAlgebraPixel P>
void ZUMDrawFilledPolygon(ZUMImage<P>& image, const ZUMBasePoint<int>* points, int count,
                          std::type_identity_t<P> value, int channel) {
  RequirePolygon("ZUMDrawFilledPolygon", image, points, count, channel);
  DrawSides(image, points, count, value, channel);
  const Plane<P> plane(image, 0, 0, channel);
  std::vector<std::int64_t> nodes;
  for (std::int64_t y = plane.GetBounds().begin_y; y <= plane.GetBounds().end_y; ++y) {
    nodes.clear();
    ForEachSide(points, count, [&](const ZUMBasePoint<int>& j, const ZUMBasePoint<int>& i) {
      if ((i.y < y) == (j.y < y)) return;
      const double share =
          static_cast<double>(y - i.y) / static_cast<double>(std::int64_t{j.y} - i.y);
      const double x = share * static_cast<double>(std::int64_t{j.x} - i.x) + i.x + 0.5;
      nodes.push_back(ZUMTruncate64(x));
    });
    std::sort(nodes.begin(), nodes.end());
    for (std::size_t k = 0; k + 1 < nodes.size(); k += 2) {
      plane.FillRow(nodes[k], nodes[k + 1], y, value);
    }
  }
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API void ZUMDrawRect<PIX>(ZUMImage<PIX>&, const ZUMRect&, PIX, int);
ZUML_ARITHMETIC_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API void ZUMDrawFilledEllipse<PIX>(ZUMImage<PIX>&, const ZUMRect&, PIX, int);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                                     \
  template ZUML_API void ZUMDrawFilledRect<PIX>(ZUMImage<PIX>&, const ZUMRect&, PIX, int);        \
  template ZUML_API void ZUMDrawCircle<PIX>(ZUMImage<PIX>&, const ZUMBasePoint<int>&, int, PIX,   \
                                            int);                                                 \
  template ZUML_API void ZUMDrawFilledCircle<PIX>(ZUMImage<PIX>&, const ZUMBasePoint<int>&, int,  \
                                                  PIX, int);                                      \
  template ZUML_API void ZUMDrawPolygon<PIX>(ZUMImage<PIX>&, const ZUMBasePoint<int>*, int, PIX,  \
                                             int);                                                \
  template ZUML_API void ZUMDrawFilledPolygon<PIX>(ZUMImage<PIX>&, const ZUMBasePoint<int>*, int, \
                                                   PIX, int);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
