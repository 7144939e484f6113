#include "zuml/core/zumdisplacement.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"

namespace {

// A line of an element's region.
template <class P>
struct ElementLine {
  const P* pixels;
  std::ptrdiff_t n;
  ZUMBasePoint<int> begin;
  int channel;

  P operator[](std::ptrdiff_t i) const { return zuml_detail::ValueAt(pixels, i); }
};

template <class P, class Visit>
void ForEachLine(const ZUMImage<P>& element, Visit&& visit) {
  ZUMForEachPlacedRun(
      element,
      [&](const ZUMRunPlace& at, const P* pixels, std::ptrdiff_t n) {
        visit(ElementLine<P>{pixels, n, {at.x, at.y, at.z, at.t}, at.c});
      },
      element);
}

// Which pixels of a line are taken.
constexpr auto kAll = [](const auto&, std::ptrdiff_t) { return true; };

constexpr auto kNonZero = [](const auto& line, std::ptrdiff_t i) { return line[i] != 0; };

constexpr auto kEndsRun = [](const ElementLine<bool>& line, std::ptrdiff_t i) {
  return line[i] && (i == line.n - 1 || !line[i + 1]);
};

constexpr auto kBeginsRun = [](const ElementLine<bool>& line, std::ptrdiff_t i) {
  return line[i] && (i == 0 || !line[i - 1]);
};

template <class P>
auto MakeEqual(P value) {
  return [value](const ElementLine<P>& line, std::ptrdiff_t i) { return line[i] == value; };
}

template <class P>
auto MakeGreater(P threshold) {
  return [threshold](const ElementLine<P>& line, std::ptrdiff_t i) { return line[i] > threshold; };
}

template <class P>
auto MakeGreaterEq(P threshold) {
  return [threshold](const ElementLine<P>& line, std::ptrdiff_t i) { return line[i] >= threshold; };
}

// What is stored of a pixel.
template <class Record, class P>
Record MakeRecord(long long offset, const ElementLine<P>& line, std::ptrdiff_t i) {
  if constexpr (std::same_as<Record, long long>) {
    return offset;
  } else if constexpr (std::same_as<Record, ZUMDisplacementVector>) {
    return {offset, line.begin.x + static_cast<int>(i), line.begin.y, 0, 0};
  } else if constexpr (std::same_as<Record, ZUMDisplacementValue<P>>) {
    return {offset, line[i]};
  } else {
    return {offset, line.pixels + i};
  }
}

long long OffsetOf(long long record) { return record; }

template <class Record>
long long OffsetOf(const Record& record) {
  return record.offset;
}

// Displacement without the narrowing to 32 bits: an element may be larger than the raster. At the
// ends of the coordinates even 64 bits may not hold it, and it wraps.
long long MakeOffset(const ZUMRaster& target, const ZUMBasePoint<int>& p, int c) {
  long long offset = p.x;
  const auto add = [&offset](long long size, long long steps) {
    offset = ZUMWrapAdd(offset, ZUMWrapMul(size, steps));
  };
  add(target.GetLineSz(), p.y);
  add(target.GetPlaneSz(), p.z);
  add(target.GetFrameSz(), p.t);
  add(target.GetChannelSz(), c);
  return offset;
}

enum class Reflection {
  kNone,
  kWhole,      // the offset negated, one origin for all channels
  kPerChannel  // the offset inside the channel negated
};

template <class Record>
void Refill(ZUMArray<Record>& array, long long room) {
  array.Clear();
  array.Reserve(static_cast<unsigned>(room));
}

// The body of every `From...` member on images.
template <class Record, class P, class Select>
void Fill(ZUMArray<Record>& array, const ZUMRaster& target, const ZUMImage<P>& element,
          Reflection reflection, const Select& select) {
  Refill(array, static_cast<long long>(element.NPixels()) * element.GetCSz());
  ForEachLine(element, [&](const ElementLine<P>& line) {
    const int channel = reflection == Reflection::kPerChannel ? 0 : line.channel;
    const long long begin = MakeOffset(target, line.begin, channel);
    for (std::ptrdiff_t i = 0; i < line.n; ++i) {
      if (!select(line, i)) continue;
      const long long offset = ZUMWrapAdd<long long>(begin, i);
      array.UnsafePut(MakeRecord<Record>(
          reflection == Reflection::kNone ? offset : ZUMWrapNeg(offset), line, i));
    }
  });
}

template <class Record, class P, class Select>
void FillNonEmpty(const char* member, ZUMArray<Record>& array, const ZUMRaster& target,
                  const ZUMImage<P>& element, Reflection reflection, const Select& select) {
  Fill(array, target, element, reflection, select);
  if (array.GetLength() == 0) {
    throw XQException("%s Un elemento estructurante ha de tener como mínimo un pixel", member);
  }
}

template <class Record, class Keep>
void KeepOffsets(ZUMArray<Record>& array, const Keep& keep) {
  array.SetEnd(std::remove_if(array.begin(), array.end(),
                              [&](const Record& record) { return !keep(OffsetOf(record)); }));
}

template <class Record>
void KeepGreater(ZUMArray<Record>& array, int limit) {
  KeepOffsets(array, [limit](long long offset) { return offset > limit; });
}

template <class Record>
void KeepLess(ZUMArray<Record>& array, int limit) {
  KeepOffsets(array, [limit](long long offset) { return offset < limit; });
}

// Strides through the array as through a ring: nearly its length at first, half of that after each
// round. An element already taken gives its turn to the next one that is not.
template <class Record>
void Reorder(ZUMArray<Record>& array) {
  const std::size_t n = array.GetLength();
  if (n == 0) return;
  ZUMArray<Record> reordered;
  Refill(reordered, static_cast<long long>(n));
  const auto taken = zuml_detail::MakeZeroedScratch<bool>(n);
  const Record* const elements = array.GetStart();
  std::size_t i = 0;
  std::size_t step = n - 1;
  for (std::size_t k = 0; k < n; ++k) {
    while (taken[i]) i = i + 1 == n ? 0 : i + 1;
    reordered.UnsafePut(elements[i]);
    taken[i] = true;
    i += step;
    if (i >= n) {
      i %= n;
      step /= 2;
    }
  }
  array = std::move(reordered);
}

}  // namespace

void ZUMPointList::FromNonZeroPixels(const ZUMImage<ZUMBool>& image) {
  Refill(*this, static_cast<long long>(image.NPixels()) * image.GetCSz());
  ForEachLine(image, [this](const ElementLine<bool>& line) {
    for (int i = 0; i < line.n; ++i) {
      if (line[i]) UnsafePut({line.begin.x + i, line.begin.y, line.begin.z, line.begin.t});
    }
  });
}

void ZUMPointList::Disarrange() { Reorder(*this); }

void ZUMDisplacementArray::FromPixels(const ZUMRaster& target, const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::FromPixels", *this, target, element, Reflection::kNone, kAll);
}

void ZUMDisplacementArray::FromNonZeroPixels(const ZUMRaster& target,
                                             const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::FromNonZeroPixels", *this, target, element, Reflection::kNone,
               kNonZero);
}

void ZUMDisplacementArray::SymmetricFromNonZeroPixels(const ZUMRaster& target,
                                                      const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::SymmetricFromNonZeroPixels", *this, target, element,
               Reflection::kPerChannel, kNonZero);
}

template <ZUMDiscretePixel P>
void ZUMDisplacementArray::FromEqualPixels(const ZUMRaster& target, const ZUMImage<P>& element,
                                           std::type_identity_t<P> value) {
  Fill(*this, target, element, Reflection::kNone, MakeEqual<P>(value));
}

template <ZUMDiscretePixel P>
void ZUMDisplacementArray::SymmetricFromEqualPixels(const ZUMRaster& target,
                                                    const ZUMImage<P>& element,
                                                    std::type_identity_t<P> value) {
  Fill(*this, target, element, Reflection::kPerChannel, MakeEqual<P>(value));
}

void ZUMDisplacementArray::FromNonZeroPixelsL2RIn(const ZUMRaster& target,
                                                  const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::FromNonZeroPixelsL2RIn", *this, target, element,
               Reflection::kNone, kEndsRun);
}

void ZUMDisplacementArray::FromNonZeroPixelsL2ROut(const ZUMRaster& target,
                                                   const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::FromNonZeroPixels", *this, target, element, Reflection::kNone,
               kBeginsRun);
}

void ZUMDisplacementArray::SymmetricFromNonZeroPixelsL2RIn(const ZUMRaster& target,
                                                           const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::SymmetricFromNonZeroPixelsL2RIn", *this, target, element,
               Reflection::kWhole, kBeginsRun);
}

void ZUMDisplacementArray::SymmetricFromNonZeroPixelsL2ROut(const ZUMRaster& target,
                                                            const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::FromNonZeroPixels", *this, target, element,
               Reflection::kWhole, kEndsRun);
}

void ZUMDisplacementArray::FromPointList(const ZUMRaster& target, const ZUMPointList& points) {
  Refill(*this, points.GetLength());
  for (const ZUMBasePoint<int>& p : points) UnsafePut(MakeOffset(target, p, 0));
}

void ZUMDisplacementArray::SurroundPath(const ZUMRaster& target, const ZUMImage<ZUMBool>& path) {
  Clear();
  if (path.EmptyP()) {
    throw XQException("ZUMAddFrame: It is not allowed add a frame to an empty image");
  }
  if (path.GetCSz() < 1) throw XQException("SurroundPath: path start not found");
  // The false frame spares the walk a test of coordinates.
  const ZUMRect frame(1, 1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMBool> left(path, frame, 1, nullptr);
  path.RoD().DrawOutFrame(left, frame, false);
  ZUMForEachRun(
      path,
      [](bool* to, const bool* from, std::ptrdiff_t n) {
        const ElementLine<bool> line{from, n, {}, 0};
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = line[i];
      },
      left, path);

  // Coordinates are tested in 64 bits: the region may end at the greatest int.
  std::int64_t x = std::max(1, path.BeginX());
  const auto is_start = [&](int at) { return path.InP(at, 0, 0, 0) && left(at); };
  while (x <= path.EndX() && !is_start(static_cast<int>(x))) ++x;
  if (x > path.EndX()) throw XQException("SurroundPath: path start not found");
  ZUMBasePoint<int> p(static_cast<int>(x), 0);

  constexpr int kSteps[][2] = {{1, 0},  {1, 1},   {0, 1},  {-1, 1},
                               {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
  const auto* step = std::begin(kSteps);
  while (step != std::end(kSteps)) {
    Put(MakeOffset(target, p, 0));
    left(p) = false;
    // A neighbour in the frame may lie beyond the ends of 32 bits.
    const auto neighbour = [&p](const int(&s)[2]) {
      return ZUMBasePoint<int>(zuml_detail::WrapSum(p.x, s[0]), zuml_detail::WrapSum(p.y, s[1]));
    };
    step = std::find_if(std::begin(kSteps), std::end(kSteps),
                        [&](const int(&s)[2]) { return left(neighbour(s)); });
    if (step != std::end(kSteps)) p = neighbour(*step);
  }
}

void ZUMDisplacementArray::GreaterDisplacements(int limit) { KeepGreater(*this, limit); }
void ZUMDisplacementArray::LessDisplacements(int limit) { KeepLess(*this, limit); }
void ZUMDisplacementArray::Disarrange() { Reorder(*this); }

void ZUMDisplacementVectorArray::FromNonZeroPixels(const ZUMRaster& target,
                                                   const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::FromNonZeroPixels", *this, target, element, Reflection::kNone,
               kNonZero);
}

void ZUMDisplacementVectorArray::SymmetricFromNonZeroPixels(const ZUMRaster& target,
                                                            const ZUMImage<ZUMBool>& element) {
  FillNonEmpty("ZUMDisplacementArray::SymmetricFromNonZeroPixels", *this, target, element,
               Reflection::kWhole, kNonZero);
}

void ZUMDisplacementVectorArray::GreaterDisplacements(int limit) { KeepGreater(*this, limit); }
void ZUMDisplacementVectorArray::LessDisplacements(int limit) { KeepLess(*this, limit); }

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::FromPixels(const ZUMRaster& target, const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementValueArray<PixT>::FromPixels", *this, target, element,
               Reflection::kNone, kAll);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::FromNonZeroPixels(const ZUMRaster& target,
                                                     const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementValueArray<PixT>::FromNonZeroPixels", *this, target, element,
               Reflection::kNone, kNonZero);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::SymmetricFromPixels(const ZUMRaster& target,
                                                       const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementValueArray<PixT>::SymmetricFromPixels", *this, target, element,
               Reflection::kPerChannel, kAll);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::SymmetricFromNonZeroPixels(const ZUMRaster& target,
                                                              const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementValueArray<PixT>::SymmetricFromNonZeroPixels", *this, target,
               element, Reflection::kPerChannel, kNonZero);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::FromGreaterPixels(const ZUMRaster& target,
                                                     const ZUMImage<P>& element, P threshold) {
  FillNonEmpty("ZUMDisplacementValueArray<PixT>::FromGreaterPixels", *this, target, element,
               Reflection::kNone, MakeGreater(threshold));
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::FromGreaterEqPixels(const ZUMRaster& target,
                                                       const ZUMImage<P>& element, P threshold) {
  FillNonEmpty("ZUMDisplacementValueArray<PixT>::FromGreaterEqPixels", *this, target, element,
               Reflection::kNone, MakeGreaterEq(threshold));
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::GreaterDisplacements(int limit) {
  KeepGreater(*this, limit);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::LessDisplacements(int limit) {
  KeepLess(*this, limit);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementValueArray<P>::Disarrange() {
  Reorder(*this);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::FromPixels(const ZUMRaster& target,
                                                const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementAddressArray<PixT>::FromPixels", *this, target, element,
               Reflection::kNone, kAll);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::FromNonZeroPixels(const ZUMRaster& target,
                                                       const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementAddressArray<PixT>::FromNonZeroPixels", *this, target, element,
               Reflection::kNone, kNonZero);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::SymmetricFromPixels(const ZUMRaster& target,
                                                         const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementAddressArray<PixT>::SymmetricFromPixels", *this, target, element,
               Reflection::kWhole, kAll);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::SymmetricFromNonZeroPixels(const ZUMRaster& target,
                                                                const ZUMImage<P>& element) {
  FillNonEmpty("ZUMDisplacementAddressArray<PixT>::SymmetricFromNonZeroPixels", *this, target,
               element, Reflection::kWhole, kNonZero);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::FromGreaterEqPixels(const ZUMRaster& target,
                                                         const ZUMImage<P>& element, P threshold) {
  FillNonEmpty("ZUMDisplacementAddressArray<PixT>::FromGreaterEqPixels", *this, target, element,
               Reflection::kNone, MakeGreaterEq(threshold));
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::GreaterDisplacements(int limit) {
  KeepGreater(*this, limit);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::LessDisplacements(int limit) {
  KeepLess(*this, limit);
}

template <ZUMOrderedPixel P>
void ZUMDisplacementAddressArray<P>::Disarrange() {
  Reorder(*this);
}

#define ZUML_INSTANTIATE(PIX)                                                                   \
  template ZUML_API void ZUMDisplacementArray::FromEqualPixels<PIX>(const ZUMRaster&,           \
                                                                    const ZUMImage<PIX>&, PIX); \
  template ZUML_API void ZUMDisplacementArray::SymmetricFromEqualPixels<PIX>(                   \
      const ZUMRaster&, const ZUMImage<PIX>&, PIX);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                    \
  template class ZUMDisplacementValueArray<PIX>; \
  template class ZUMDisplacementAddressArray<PIX>;
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
