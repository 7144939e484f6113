#include "zuml/core/wrappixels.h"

#include <cstdint>
#include <limits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/xqexception.h"

using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;
using zuml_detail::SizeOf;

namespace {

// What 64 bits do not hold becomes the greatest number, which no buffer has.
std::int64_t Multiply(std::int64_t a, std::int64_t b) {
  std::int64_t product;
  return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<std::int64_t>::max()
                                                : product;
}

std::int64_t CountLines(const ZUMRect& box) {
  return Multiply(Multiply(SizeOf(box, kY), SizeOf(box, kZ)), SizeOf(box, kT));
}

// The step from line to line, in pixels; 0 bytes stand for lines without padding.
template <class P>
std::int64_t RequireLineStep(const char* operation, std::span<P> pixels, const ZUMRect& box,
                             int csz, std::int64_t width, std::int64_t line_bytes) {
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    if (SizeOf(box, axis) > 0) continue;
    const ZUMBasePoint<int> b = box.begin, e = box.end;
    throw XQException("%s: no point in the box (%d,%d,%d,%d)-(%d,%d,%d,%d)", operation, b.x, b.y,
                      b.z, b.t, e.x, e.y, e.z, e.t);
  }
  if (csz < 1) throw XQException("%s: %d channels", operation, csz);
  constexpr int kPixSz = static_cast<int>(sizeof(P));
  if (reinterpret_cast<std::uintptr_t>(pixels.data()) % alignof(P) != 0) {
    throw XQException("%s: pixels of %d bytes lie at an odd address", operation, kPixSz);
  }
  if (line_bytes == 0) return width;
  if (line_bytes / kPixSz < width) {
    throw XQException("%s: lines of %lld bytes do not hold %lld pixels of %d bytes", operation,
                      static_cast<long long>(line_bytes), static_cast<long long>(width), kPixSz);
  }
  if (line_bytes % kPixSz != 0) {
    throw XQException("%s: lines of %lld bytes end within a pixel of %d bytes", operation,
                      static_cast<long long>(line_bytes), kPixSz);
  }
  return line_bytes / kPixSz;
}

template <class P>
void RequirePixels(const char* operation, std::span<P> pixels, std::int64_t needed) {
  if (static_cast<std::uint64_t>(needed) > pixels.size()) {
    throw XQException("%s: a buffer of %zu pixels is too small, %lld are needed", operation,
                      pixels.size(), static_cast<long long>(needed));
  }
}

template <class P>
ZUMImage<P> Wrap(const char* operation, std::span<P> pixels, const ZUMRect& box, int csz,
                 std::int64_t line_bytes) {
  const std::int64_t width = SizeOf(box, kX);
  const std::int64_t step = RequireLineStep(operation, pixels, box, csz, width, line_bytes);
  RequirePixels(operation, pixels, Multiply(Multiply(step, CountLines(box)), csz));
  // The padding is a frame on the right. One above the greatest int is refused by the raster.
  const ZUMRect padding(0, 0, 0, 0, zuml_detail::ToCoordinate(step - width), 0, 0, 0);
  const ZUMRoDRef rod(box);
  return ZUMImage<P>(rod,
                     ZUMRaster(rod.RoD(), padding, csz, ZUMPixelTraits<P>::kType, pixels.data()));
}

}  // namespace

template <ZUMAnyPixel PixT>
ZUMImage<PixT> ZUMWrapPixels(std::span<PixT> pixels, const ZUMRect& box, int csz) {
  return Wrap("ZUMWrapPixels", pixels, box, csz, 0);
}

template <ZUMAnyPixel PixT>
ZUMImage<PixT> ZUMWrapPaddedPixels(std::span<PixT> pixels, const ZUMRect& box, int csz,
                                   std::ptrdiff_t line_bytes) {
  return Wrap("ZUMWrapPaddedPixels", pixels, box, csz, line_bytes);
}

template <class Q>
requires ZUMAnyPixel<std::remove_const_t<Q>> ZUMImage<std::remove_const_t<Q>>
ZUMCopyInterleavedPixels(std::span<Q> pixels, const ZUMRect& box, int csz,
                         std::ptrdiff_t line_bytes) {
  using P = std::remove_const_t<Q>;
  const char* const operation = "ZUMCopyInterleavedPixels";
  const std::int64_t width = SizeOf(box, kX), lines = CountLines(box);
  const std::int64_t step = RequireLineStep(operation, pixels, box, csz, width * csz, line_bytes);
  const std::int64_t before_last = Multiply(step, lines - 1);
  RequirePixels(operation, pixels,
                before_last > std::numeric_limits<std::int64_t>::max() - width * csz
                    ? before_last
                    : before_last + width * csz);
  const ZUMImage<P> image(ZUMRoDRef(box), csz, nullptr);
  P* const planes = static_cast<P*>(image.GetData());
  for (std::int64_t line = 0; line < lines; ++line) {
    const Q* const from = pixels.data() + line * step;
    for (int c = 0; c < csz; ++c) {
      P* const to = planes + (c * lines + line) * width;
      for (std::int64_t x = 0; x < width; ++x) {
        to[x] = zuml_detail::ValueAt(from, x * csz + c);
      }
    }
  }
  return image;
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<PIX> ZUMWrapPixels(std::span<PIX>, const ZUMRect&, int);            \
  template ZUML_API ZUMImage<PIX> ZUMWrapPaddedPixels(std::span<PIX>, const ZUMRect&, int,       \
                                                      std::ptrdiff_t);                           \
  template ZUML_API ZUMImage<PIX> ZUMCopyInterleavedPixels(std::span<PIX>, const ZUMRect&, int,  \
                                                           std::ptrdiff_t);                      \
  template ZUML_API ZUMImage<PIX> ZUMCopyInterleavedPixels(std::span<const PIX>, const ZUMRect&, \
                                                           int, std::ptrdiff_t);
ZUML_ALL_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
