#include "zuml/algebra/projections.h"

#include <limits>

#include "zuml/algebra/detail/runsums.h"
#include "zuml/core/pixelarith.h"

using zuml_detail::ValueAt;

namespace {

enum class Axis { kX, kY, kZ, kT };

// What is made of a line: its value before the first pixel, with one pixel more, and with a run.

struct OpSum {
  template <class OutT>
  static constexpr OutT kStart{};

  template <class OutT, class InT>
  static OutT Add(OutT sum, InT v) {
    return ZUMWrapAdd(sum, static_cast<OutT>(v));
  }
  template <class OutT, class InT>
  static OutT AddRun(OutT sum, const InT* x, std::ptrdiff_t n) {
    if constexpr (std::integral<OutT>) {
      return ZUMWrapAdd(sum, ZUMLowBits<OutT>(zuml_detail::SumRun(x, n)));
    } else {
      for (std::ptrdiff_t i = 0; i < n; ++i) sum = Add(sum, x[i]);
      return sum;
    }
  }
};

template <class Op>
struct OpExtremum {
  template <class P>
  static P AddRun(P best, const P* x, std::ptrdiff_t n) {
    zuml_detail::Stored<P> b = best;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      b = Op::template Add<zuml_detail::Stored<P>>(b, ValueAt(x, i));
    }
    return b;
  }
};

struct OpMax : OpExtremum<OpMax> {
  template <class P>
  static constexpr P kStart = std::numeric_limits<P>::lowest();

  template <class P>
  static P Add(P best, P v) {
    return v > best ? v : best;
  }
};

struct OpMin : OpExtremum<OpMin> {
  template <class P>
  static constexpr P kStart = std::numeric_limits<P>::max();

  template <class P>
  static P Add(P best, P v) {
    return v < best ? v : best;
  }
};

// The source's region with the axis reduced to 0.
ZUMRoDRef MakeProjectedRegion(const ZUMRoDRef& rod, Axis axis) {
  if (rod.EmptyP()) return rod;
  ZUMRect box = rod.Rect();
  if (axis == Axis::kX) box.begin.x = box.end.x = 0;
  if (axis == Axis::kY) box.begin.y = box.end.y = 0;
  if (axis == Axis::kZ) box.begin.z = box.end.z = 0;
  if (axis == Axis::kT) box.begin.t = box.end.t = 0;
  return box;
}

template <class Op, class OutT, class InT>
ZUMImage<OutT> Project(const ZUMImage<InT>& image, Axis axis) {
  const ZUMRoDRef rod = MakeProjectedRegion(image, axis);
  const ZUMImage<OutT> result(rod, image.GetCSz(), Op::template kStart<OutT>);
  for (ZUMGenericSweepCoords1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    const auto* x = static_cast<const InT*>(sweep.GetStart1());
    const std::ptrdiff_t n = static_cast<const InT*>(sweep.GetEnd1()) - x + 1;
    OutT* r = &result(rod.BeginX(), axis == Axis::kY ? 0 : sweep.GetY(),
                      axis == Axis::kZ ? 0 : sweep.GetZ(), axis == Axis::kT ? 0 : sweep.GetT(),
                      sweep.GetC());
    if (axis == Axis::kX) {
      *r = Op::AddRun(*r, x, n);
    } else {
      for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Add(r[i], ValueAt(x, i));
    }
  }
  return result;
}

}  // namespace

#define ZUML_DEFINE_PROJECTIONS(AXIS)                                      \
  template <class OutT, class InT>                                         \
  requires ZUMProjectionPixels<OutT, InT> ZUMImage<OutT> ZUMProject##AXIS( \
      const ZUMImage<InT>& image) {                                        \
    return Project<OpSum, OutT>(image, Axis::k##AXIS);                     \
  }                                                                        \
  template <ZUMScalarPixel PixT>                                           \
  ZUMImage<PixT> ZUMProjectMax##AXIS(const ZUMImage<PixT>& image) {        \
    return Project<OpMax, PixT>(image, Axis::k##AXIS);                     \
  }                                                                        \
  template <ZUMScalarPixel PixT>                                           \
  ZUMImage<PixT> ZUMProjectMin##AXIS(const ZUMImage<PixT>& image) {        \
    return Project<OpMin, PixT>(image, Axis::k##AXIS);                     \
  }
ZUML_DEFINE_PROJECTIONS(X)
ZUML_DEFINE_PROJECTIONS(Y)
ZUML_DEFINE_PROJECTIONS(Z)
ZUML_DEFINE_PROJECTIONS(T)
#undef ZUML_DEFINE_PROJECTIONS

#define ZUML_INSTANTIATE_SUMS(OUT, IN)                                       \
  template ZUML_API ZUMImage<OUT> ZUMProjectX<OUT, IN>(const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMProjectY<OUT, IN>(const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMProjectZ<OUT, IN>(const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMProjectT<OUT, IN>(const ZUMImage<IN>&);
#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_SUMS(ZUMLong, PIX)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
ZUML_INSTANTIATE_SUMS(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_SUMS

#define ZUML_INSTANTIATE(PIX)                                                \
  template ZUML_API ZUMImage<PIX> ZUMProjectMaxX<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMaxY<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMaxZ<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMaxT<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMinX<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMinY<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMinZ<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMProjectMinT<PIX>(const ZUMImage<PIX>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
