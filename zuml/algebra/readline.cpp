#include "zuml/algebra/readline.h"

#include <cstdint>
#include <cstdlib>

#include "zuml/core/detail/mapped.h"
#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"

namespace {

// Calls f(x, y) for the points of the segment in order.
template <class F>
void WalkSegment(int x0, int y0, int x1, int y1, F f) {
  const std::int64_t dx = std::abs(std::int64_t{x1} - x0), dy = std::abs(std::int64_t{y1} - y0);
  const bool steep = dx < dy;
  const std::int64_t length = steep ? dy : dx, width = steep ? dx : dy;
  const int sx = x1 > x0 ? 1 : -1, sy = y1 > y0 ? 1 : -1;
  std::int64_t e = 2 * width - length;
  int x = x0, y = y0;
  for (std::int64_t i = 0;; ++i) {
    f(x, y);
    if (i == length) return;
    const bool aside = e >= 0;
    e += aside ? 2 * (width - length) : 2 * width;
    if (aside || !steep) x += sx;
    if (aside || steep) y += sy;
  }
}

bool IsOutside(int coordinate, int size) { return coordinate < 0 || coordinate >= size; }

}  // namespace

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMReadLine(const ZUMImage<PixT>& image, int x0, int y0, int x1, int y1, int z,
                           int c) {
  if (IsOutside(x0, image.GetXSz()) || IsOutside(x1, image.GetXSz()) ||
      IsOutside(y0, image.GetYSz()) || IsOutside(y1, image.GetYSz()) ||
      IsOutside(z, image.GetZSz()) || IsOutside(c, image.GetCSz())) {
    XQDiagnostic("Coordenadas fuera de la imagen\n");
  }
  // All points are tested before there is a result: only an image can be as long as a segment in
  // it.
  int n = 0;
  WalkSegment(x0, y0, x1, y1, [&](int x, int y) {
    if (c < 0 || c >= image.GetCSz() || !image.InP(x, y, z, 0)) {
      throw XQException("Pixel coordinates out of image (%d,%d,%d,%d,%d)", x, y, z, 0, c);
    }
    ++n;
  });
  const ZUMImage<PixT> result(ZUMRect(0, 0, 0, 0, n - 1, 0, 0, 0), 1, nullptr);
  PixT* r = &result(0);
  WalkSegment(x0, y0, x1, y1,
              [&](int x, int y) { *r++ = zuml_detail::ValueAt(&image(x, y, z, 0, c), 0); });
  return result;
}

#define ZUML_INSTANTIATE(PIX)                                                                     \
  template ZUML_API ZUMImage<PIX> ZUMReadLine<PIX>(const ZUMImage<PIX>&, int, int, int, int, int, \
                                                   int);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
