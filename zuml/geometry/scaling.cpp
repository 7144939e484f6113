#include "zuml/geometry/scaling.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <typeinfo>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/core/zumsweep.h"

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
  // The mean over the pixels of the block that the region holds.
  P MeanOfClippedBlock(int x, int y, int z, int t, int c) const {
    const int x0 = std::max(x * nx, image->BeginX()), x1 = std::min(x * nx + nx - 1, image->EndX());
    const int y0 = std::max(y * ny, image->BeginY()), y1 = std::min(y * ny + ny - 1, image->EndY());
    double sum = 0;
    for (int j = y0; j <= y1; ++j) {
      const P* p = &(*image)(x0, j, z, t, c);
      for (int i = 0; i <= x1 - x0; ++i) sum += static_cast<double>(p[i]);
    }
    const double scale = 1 / (static_cast<double>(x1 - x0 + 1) * (y1 - y0 + 1));
    return ZUMTruncate<P>(sum * scale);
  }

  // Hands the whole blocks of each result line to `line` as (to, from, count), and does the clipped
  // ones itself; `from` is the first pixel of the first block.
  template <class Line>
  void ForEachLine(const Line& line) const {
    for (ZUMGenericSweepCoords1 sweep(part, *result); sweep.GetStart1(); sweep.Next()) {
      P* to = static_cast<P*>(sweep.GetStart1());
      const int count = static_cast<int>(static_cast<P*>(sweep.GetEnd1()) - to) + 1;
      const int x = sweep.GetX(), y = sweep.GetY(), z = sweep.GetZ(), t = sweep.GetT();
      const int c = sweep.GetC();
      const bool whole_y = y * ny >= image->BeginY() && y * ny + ny - 1 <= image->EndY();
      int first = 0, last = count;  // the whole blocks
      while (first < last && (!whole_y || (x + first) * nx < image->BeginX())) ++first;
      while (first < last && (x + last) * nx - 1 > image->EndX()) --last;
      for (int i = 0; i < first; ++i) to[i] = MeanOfClippedBlock(x + i, y, z, t, c);
      if (first < last) {
        line(to + first, &(*image)((x + first) * nx, y * ny, z, t, c), last - first);
      }
      for (int i = last; i < count; ++i) to[i] = MeanOfClippedBlock(x + i, y, z, t, c);
    }
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
  if (nx > image.RoDXSz()) {
    throw XQException("Solo puede hacerse binning NxN para imágenes con ancho mayor o igual que N");
  }
  if (ny > image.RoDYSz()) {
    throw XQException("Solo puede hacerse binning NxN para imágenes con alto mayor o igual que N");
  }
  if (nx == 1 && ny == 1) return image;
  const int bx = image.BeginX() / nx, by = image.BeginY() / ny;
  const ZUMRoDRef rod(bx, by, image.BeginZ(), image.BeginT(), bx + image.RoDXSz() / nx - 1,
                      by + image.RoDYSz() / ny - 1, image.EndZ(), image.EndT());
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
    const int factor = N != 0 ? N : nx;
    const Pixel* line_above = nullptr;
    const Pixel* source_above = nullptr;
    for (ZUMGenericSweepCoords1 sweep(part, *result); sweep.GetStart1(); sweep.Next()) {
      auto* to = static_cast<Pixel*>(sweep.GetStart1());
      auto* const end = static_cast<Pixel*>(sweep.GetEnd1()) + 1;
      const int x = FloorDivide(sweep.GetX(), factor);
      const auto* from = static_cast<const Pixel*>(image->PixelAddress(
          x, FloorDivide(sweep.GetY(), ny), sweep.GetZ(), sweep.GetT(), sweep.GetC()));
      if (from == source_above) {
        std::copy(line_above, line_above + (end - to), to);
        line_above = to;
        continue;
      }
      source_above = from;
      line_above = to;
      // A part that begins inside a repeated pixel goes on with it.
      const int rest = factor - (sweep.GetX() - x * factor);
      if (rest < factor) {
        to = std::fill_n(to, std::min<std::ptrdiff_t>(rest, end - to), *from);
        ++from;
      }
      for (; end - to >= factor; to += factor, ++from) {
        for (int k = 0; k < factor; ++k) to[k] = *from;
      }
      if (to < end) std::fill(to, end, *from);
    }
  }
};

int ZoomCoordinate(int a, int n) {
  const long long zoomed = static_cast<long long>(a) * n;
  if (zoomed <= std::numeric_limits<int>::min() || zoomed > std::numeric_limits<int>::max()) {
    throw XQException("ZUMZoom2D: coordinate %d times %d is beyond 32 bits", a, n);
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
  const ZUMRoDRef rod(ZoomCoordinate(image.BeginX(), nx), ZoomCoordinate(image.BeginY(), ny),
                      image.BeginZ(), image.BeginT(), ZoomCoordinate(image.EndX() + 1, nx) - 1,
                      ZoomCoordinate(image.EndY() + 1, ny) - 1, image.EndZ(), image.EndT());
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
  if (!doubled) box.end.y = box.begin.y + (image.EndY() - image.BeginY() - parity) / 2;
  if (paired) box.end.x = box.begin.x + (image.EndX() - image.BeginX()) / 2;
  const ZUMImage<P> result(ZUMRoDRef(box), image.GetCSz(), nullptr);

  const int last_row = (image.RoDYSz() - 1 - parity) / 2;  // of the field
  const int width = image.RoDXSz();
  for (ZUMGenericSweepCoords1 sweep(result, result); sweep.GetStart1(); sweep.Next()) {
    P* to = static_cast<P*>(sweep.GetStart1());
    const int row = std::min((sweep.GetY() - box.begin.y) / (doubled ? 2 : 1), last_row);
    const int y = std::min(image.BeginY() + 2 * row + parity, image.EndY());
    const P* from = &image(image.BeginX(), y, sweep.GetZ(), sweep.GetT(), sweep.GetC());
    if (!paired) {
      std::copy_n(from, width, to);
      continue;
    }
    for (int i = 0; i < width / 2; ++i) to[i] = MeanOfPair(from[2 * i], from[2 * i + 1]);
    if (width % 2 != 0) to[width / 2] = from[width - 1];
  }
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
