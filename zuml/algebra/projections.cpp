#include "zuml/algebra/projections.h"

#include <concepts>
#include <cstddef>
#include <limits>

#include "zuml/algebra/detail/runsums.h"
#include "zuml/core/detail/axes.h"
#include "zuml/core/pixelarith.h"

using zuml_detail::Axis;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;
using zuml_detail::Stored;
using zuml_detail::ValueAt;

namespace {

// How a line becomes one pixel: the value to start from, and what a pixel or a run adds to it.

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
    Stored<P> b = best;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      b = Op::template Add<Stored<P>>(b, ValueAt(x, i));
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
  box.begin.*axis = box.end.*axis = 0;
  return box;
}

// The loops over a run stay functions of their own: inlined into the sweep they would get too few
// registers.

template <class Op, class OutT, class InT>
[[gnu::noinline]] void AddAlong(OutT* r, const InT* x, std::ptrdiff_t n) {
  *r = Op::AddRun(*r, x, n);
}

template <class Op, class OutT, class InT>
[[gnu::noinline]] void AddAcross(OutT* r, const InT* x, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Add(r[i], ValueAt(x, i));
}

template <class Op, class OutT, class InT>
ZUMImage<OutT> Project(const ZUMImage<InT>& image, Axis axis) {
  const ZUMRoDRef rod = MakeProjectedRegion(image, axis);
  const ZUMImage<OutT> result(rod, image.GetCSz(), Op::template kStart<OutT>);
  ZUMBasePoint<int> keep(1, 1, 1, 1);
  keep.*axis = 0;
  ZUMForEachPlacedRun(
      image,
      [&result, keep](const ZUMRunPlace& at, const InT* x, std::ptrdiff_t n) {
        OutT* r = &result(at.x * keep.x, at.y * keep.y, at.z * keep.z, at.t * keep.t, at.c);
        keep.x == 0 ? AddAlong<Op>(r, x, n) : AddAcross<Op>(r, x, n);
      },
      image);
  return result;
}

}  // namespace

template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT> ZUMImage<OutT> ZUMProjectX(const ZUMImage<InT>& image) {
  return Project<OpSum, OutT>(image, kX);
}

template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT> ZUMImage<OutT> ZUMProjectY(const ZUMImage<InT>& image) {
  return Project<OpSum, OutT>(image, kY);
}

template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT> ZUMImage<OutT> ZUMProjectZ(const ZUMImage<InT>& image) {
  return Project<OpSum, OutT>(image, kZ);
}

template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT> ZUMImage<OutT> ZUMProjectT(const ZUMImage<InT>& image) {
  return Project<OpSum, OutT>(image, kT);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMaxX(const ZUMImage<PixT>& image) {
  return Project<OpMax, PixT>(image, kX);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMaxY(const ZUMImage<PixT>& image) {
  return Project<OpMax, PixT>(image, kY);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMaxZ(const ZUMImage<PixT>& image) {
  return Project<OpMax, PixT>(image, kZ);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMaxT(const ZUMImage<PixT>& image) {
  return Project<OpMax, PixT>(image, kT);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMinX(const ZUMImage<PixT>& image) {
  return Project<OpMin, PixT>(image, kX);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMinY(const ZUMImage<PixT>& image) {
  return Project<OpMin, PixT>(image, kY);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMinZ(const ZUMImage<PixT>& image) {
  return Project<OpMin, PixT>(image, kZ);
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMProjectMinT(const ZUMImage<PixT>& image) {
  return Project<OpMin, PixT>(image, kT);
}

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
