#include "zuml/geometry/scaling.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"

using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::SizeOf;

namespace {

int FloorDivide(int a, int n) { return a / n - (a % n < 0 ? 1 : 0); }

// The sums of integer blocks are formed in 32 bits and wrap; all others in double.
template <class P>
using BlockSum = std::conditional_t<std::integral<P>, ZUMLong, double>;

template <class P, int N>
P MeanOfWholeBlock(BlockSum<P> sum) {
  if constexpr (std::integral<P>) {
    return static_cast<P>(N == 2 ? sum >> 2 : sum / 9);
  } else {
    return static_cast<P>(N == 2 ? sum * 0.25 : sum / 9);
  }
}

// Two neighbouring bytes, added. Read as one word, they need no shuffle of vectors.
inline unsigned AddPair(const ZUMByte* pair) {
  std::uint16_t word;
  std::memcpy(&word, pair, sizeof word);
  return (word & 255u) + (word >> 8);
}

// The sum of a 2 x 2 block of bytes fits 16 bits.
inline void Bin2x2(ZUMByte* to, const ZUMByte* from, std::ptrdiff_t pitch, int count) {
  for (int i = 0; i < count; ++i) {
    const auto sum =
        static_cast<std::uint16_t>(AddPair(from + 2 * i) + AddPair(from + pitch + 2 * i));
    to[i] = static_cast<ZUMByte>(sum >> 2);
  }
}

template <class P>
class BinningBase : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* image;
  int nx = 1;
  int ny = 1;

 protected:
  // The mean over the pixels of the block at x of a line that the region holds.
  P MeanOfClippedBlock(const ZUMRunPlace& line, long long x) const {
    const long long y = line.y;
    const long long x0 = std::max<long long>(x * nx, image->BeginX());
    const long long x1 = std::min<long long>(x * nx + nx - 1, image->EndX());
    const long long y0 = std::max<long long>(y * ny, image->BeginY());
    const long long y1 = std::min<long long>(y * ny + ny - 1, image->EndY());
    double sum = 0;
    for (long long j = y0; j <= y1; ++j) {
      const P* p = &(*image)(static_cast<int>(x0), static_cast<int>(j), line.z, line.t, line.c);
      for (long long i = 0; i <= x1 - x0; ++i) sum += static_cast<double>(p[i]);
    }
    const double scale = 1 / (static_cast<double>(x1 - x0 + 1) * static_cast<double>(y1 - y0 + 1));
    return ZUMTruncate<P>(sum * scale);
  }

  // Hands the whole blocks of each result line to `line` as (to, from, count), and does the clipped
  // ones itself; `from` is the first pixel of the first block.
  template <class Line>
  void ForEachLine(const Line& line) const {
    ZUMForEachPlacedRun(
        part,
        [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t count) {
          const long long x = place.x, y = static_cast<long long>(place.y) * ny;
          const bool whole_y = y >= image->BeginY() && y + ny - 1 <= image->EndY();
          std::ptrdiff_t first = 0, last = count;  // the whole blocks
          while (first < last && (!whole_y || (x + first) * nx < image->BeginX())) ++first;
          while (first < last && (x + last) * nx - 1 > image->EndX()) --last;
          for (std::ptrdiff_t i = 0; i < first; ++i) to[i] = MeanOfClippedBlock(place, x + i);
          if (first < last) {
            line(to + first,
                 &(*image)(static_cast<int>((x + first) * nx), static_cast<int>(y), place.z,
                           place.t, place.c),
                 static_cast<int>(last - first));
          }
          for (std::ptrdiff_t i = last; i < count; ++i) to[i] = MeanOfClippedBlock(place, x + i);
        },
        *result);
  }
};

template <class P, int N>
class BinningSquare : public BinningBase<P> {
 public:
  void Run() override {
    const auto pitch = static_cast<std::ptrdiff_t>(this->image->GetLineSz());
    this->ForEachLine([pitch](P* to, const P* from, int count) {
      if constexpr (N == 2 && std::same_as<P, ZUMByte>) return Bin2x2(to, from, pitch, count);
      for (int i = 0; i < count; ++i) {
        BlockSum<P> sum = 0;
        for (int j = 0; j < N; ++j) {
          for (int k = 0; k < N; ++k) {
            sum = ZUMWrapAdd(sum, static_cast<BlockSum<P>>(from[j * pitch + N * i + k]));
          }
        }
        to[i] = MeanOfWholeBlock<P, N>(sum);
      }
    });
  }
};

}  // namespace

template <class P>
class CTaskBinning2D2x2 final : public BinningSquare<P, 2> {};

template <class P>
class CTaskBinning2D3x3 final : public BinningSquare<P, 3> {};

template <class P>
class CTaskBinning2DNxN final : public BinningBase<P> {
 public:
  void Run() override {
    const auto pitch = static_cast<std::ptrdiff_t>(this->image->GetLineSz());
    const int width = this->nx, height = this->ny;
    const double scale = 1 / (static_cast<double>(width) * height);
    this->ForEachLine([=](P* to, const P* from, int count) {
      for (int i = 0; i < count; ++i, from += width) {
        double sum = 0;
        for (int j = 0; j < height; ++j) {
          for (int k = 0; k < width; ++k) sum += static_cast<double>(from[j * pitch + k]);
        }
        to[i] = ZUMTruncate<P>(sum * scale);
      }
    });
  }
};

namespace {

template <class Task, class P>
ZUMImage<P> RunBinning(const ZUMImage<P>& image, const ZUMRoDRef& rod, int nx, int ny) {
  return ZUMRunTasks<Task, P>(rod, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.nx = nx;
    task.ny = ny;
  });
}

}  // namespace

template <ZUMNumericPixel P>
ZUMImage<P> ZUMBinning2D(const ZUMImage<P>& image, int nx, int ny) {
  if (nx < 1 || ny < 1) throw XQException("Solo puede hacerse binning para números positivos");
  if (!zuml_detail::IsBox(image)) {
    throw XQException("Solo puede hacerse binning NxN para rectangulares");
  }
  const std::int64_t x_size = SizeOf(image.Rect(), kX), y_size = SizeOf(image.Rect(), kY);
  if (nx > x_size) {
    throw XQException("Solo puede hacerse binning NxN para imágenes con ancho mayor o igual que N");
  }
  if (ny > y_size) {
    throw XQException("Solo puede hacerse binning NxN para imágenes con alto mayor o igual que N");
  }
  if (nx == 1 && ny == 1) return image;
  const int bx = image.BeginX() / nx, by = image.BeginY() / ny;
  const ZUMRoDRef rod(bx, by, image.BeginZ(), image.BeginT(),
                      static_cast<int>(bx + x_size / nx - 1),
                      static_cast<int>(by + y_size / ny - 1), image.EndZ(), image.EndT());
  if (nx == 2 && ny == 2) return RunBinning<CTaskBinning2D2x2<P>>(image, rod, nx, ny);
  if (nx == 3 && ny == 3) return RunBinning<CTaskBinning2D3x3<P>>(image, rod, nx, ny);
  return RunBinning<CTaskBinning2DNxN<P>>(image, rod, nx, ny);
}

namespace {

// N is the factor along X, or 0 where only the run knows it.
template <class P, int N>
class Zoom : public XQTask {
  using Pixel = zuml_detail::Stored<P>;

 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* image;
  int nx = 1;
  int ny = 1;

  void Run() override {
    const Pixel* line_above = nullptr;
    const Pixel* source_above = nullptr;
    ZUMForEachPlacedRun(
        part,
        [&](const ZUMRunPlace& place, P* start, std::ptrdiff_t n) {
          // Read here, since pixels of one byte might be anything for the compiler.
          const int factor = N != 0 ? N : nx;
          Pixel* to = zuml_detail::StoredPixels(start);
          Pixel* const end = to + n;
          const int x = FloorDivide(place.x, factor);
          const auto* from = static_cast<const Pixel*>(
              image->PixelAddress(x, FloorDivide(place.y, ny), place.z, place.t, place.c));
          const bool repeated = from == source_above;
          if (repeated) std::copy(line_above, line_above + n, to);
          source_above = from;
          line_above = to;
          if (repeated) return;
          // A part that begins inside a repeated pixel goes on with it.
          const int rest = factor - (place.x - x * factor);
          if (rest < factor) {
            to = std::fill_n(to, std::min<std::ptrdiff_t>(rest, n), *from);
            ++from;
          }
          for (; end - to >= factor; to += factor, ++from) {
            for (int k = 0; k < factor; ++k) to[k] = *from;
          }
          if (to < end) std::fill(to, end, *from);
        },
        *result);
  }
};

// The first coordinate that a pixel at `a` fills, plus `shift`.
int ZoomCoordinate(long long a, int n, int shift = 0) {
  const long long zoomed = a * n + shift;
  if (zoomed != zuml_detail::ToCoordinate(zoomed)) {
    throw XQException("ZUMZoom2D: coordinate %lld times %d is beyond 32 bits", a, n);
  }
  return static_cast<int>(zoomed);
}

template <class Task, class P>
ZUMImage<P> RunZoom(const ZUMImage<P>& image, const ZUMRoDRef& rod, int nx, int ny) {
  return ZUMRunTasks<Task, P>(rod, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.nx = nx;
    task.ny = ny;
  });
}

}  // namespace

template <class P>
class CTaskZoom2D2x2 final : public Zoom<P, 2> {};

template <class P>
class CTaskZoom2D3x3 final : public Zoom<P, 3> {};

template <class P>
class CTaskZoom2DNxN final : public Zoom<P, 0> {};

template <ZUMOrderedPixel P>
ZUMImage<P> ZUMZoom2D(const ZUMImage<P>& image, int nx, int ny) {
  if (nx < 1 || ny < 1) throw XQException("Solo puede hacerse zoom para números positivos");
  if (!zuml_detail::IsBox(image))
    throw XQException("Solo puede hacerse zoom NxN para rectangulares");
  if (nx == 1 && ny == 1) return image;
  ZUMRect box = image.Rect();
  box.begin.x = ZoomCoordinate(image.BeginX(), nx);
  box.begin.y = ZoomCoordinate(image.BeginY(), ny);
  box.end.x = ZoomCoordinate(image.EndX() + 1LL, nx, -1);
  box.end.y = ZoomCoordinate(image.EndY() + 1LL, ny, -1);
  const ZUMRoDRef rod = box;
  if (nx == 2 && ny == 2) return RunZoom<CTaskZoom2D2x2<P>>(image, rod, nx, ny);
  if (nx == 3 && ny == 3) return RunZoom<CTaskZoom2D3x3<P>>(image, rod, nx, ny);
  return RunZoom<CTaskZoom2DNxN<P>>(image, rod, nx, ny);
}

namespace {

template <class P>
P MeanOfPair(P a, P b) {
  if constexpr (std::same_as<P, bool>) {
    return a && b;
  } else if constexpr (std::integral<P>) {
    return static_cast<P>(ZUMWrapAdd<ZUMLong>(a, b) >> 1);
  } else {
    return 0.5 * (a + b);
  }
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMInterlacedField(const ZUMImage<P>& image, int field) {
  if (image.EmptyP()) return image;
  if (image.RoDZSz() != 1 || image.RoDTSz() != 1) {
    throw XQException("ZUMInterlacedField only allows 2D images");
  }
  if (field < 0 || field > 5) {
    throw XQException("ZUMInterlacedField: Fields allowed are 0 (odd lines), 1 (even lines)");
  }
  const bool paired = field == 2 || field == 3, doubled = field >= 4;
  const int parity = field % 2;
  ZUMRect box = image.Rect();
  const std::int64_t width = SizeOf(box, kX), height = SizeOf(box, kY);
  if (!doubled) box.end.y = static_cast<int>(box.begin.y + (height - 1 - parity) / 2);
  if (paired) box.end.x = static_cast<int>(box.begin.x + (width - 1) / 2);
  const ZUMImage<P> result(ZUMRoDRef(box), image.GetCSz(), nullptr);

  const std::int64_t last_row = (height - 1 - parity) / 2;  // of the field
  ZUMForEachPlacedRun(
      result,
      [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t) {
        const std::int64_t down = std::int64_t{place.y} - box.begin.y;
        const std::int64_t row = std::min(doubled ? down / 2 : down, last_row);
        const std::int64_t y = image.BeginY() + std::min(2 * row + parity, height - 1);
        const P* from = &image(box.begin.x, static_cast<int>(y), place.z, place.t, place.c);
        if (!paired) {
          std::copy_n(from, width, to);
          return;
        }
        for (std::int64_t i = 0; i < width / 2; ++i) {
          to[i] = MeanOfPair(from[2 * i], from[2 * i + 1]);
        }
        if (width % 2 != 0) to[width / 2] = from[width - 1];
      },
      result);
  return result;
}

#define ZUML_INSTANTIATE_BINNING(PIX) \
  template ZUML_API ZUMImage<PIX> ZUMBinning2D(const ZUMImage<PIX>&, int, int);
ZUML_NUMERIC_TYPES(ZUML_INSTANTIATE_BINNING)
#undef ZUML_INSTANTIATE_BINNING

#define ZUML_INSTANTIATE_ZOOM(PIX) \
  template ZUML_API ZUMImage<PIX> ZUMZoom2D(const ZUMImage<PIX>&, int, int);
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE_ZOOM)
#undef ZUML_INSTANTIATE_ZOOM

#define ZUML_INSTANTIATE_FIELD(PIX) \
  template ZUML_API ZUMImage<PIX> ZUMInterlacedField(const ZUMImage<PIX>&, int);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE_FIELD)
#undef ZUML_INSTANTIATE_FIELD
