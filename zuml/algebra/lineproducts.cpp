#include "zuml/algebra/lineproducts.h"

#include <cstddef>
#include <type_traits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"

using zuml_detail::ValueAt;

namespace {

// A product's axis, and what it is called in the texts.
struct LineAxis {
  zuml_detail::Axis axis;
  char operation;
  const char* line;
};
constexpr LineAxis kAlongX{zuml_detail::kX, 'X', " X"};
constexpr LineAxis kAlongY{zuml_detail::kY, 'Y', "Y"};
constexpr LineAxis kAlongZ{zuml_detail::kZ, 'Z', "Z"};
constexpr LineAxis kAlongT{zuml_detail::kT, 'T', "T"};

void RequireLine(const LineAxis& along, const ZUMRegionOfDefinition& line) {
  ZUMRect other = line.Rect();
  other.begin.*along.axis = other.end.*along.axis = 0;
  if (!zuml_detail::IsBox(line) || other != ZUMRect()) {
    throw XQException("ZUM%cProduct: Line image isn't a %s line", along.operation, along.line);
  }
}

// A run times one factor, or times as many factors as it has pixels.
template <class OutT, class InT>
void MultiplyRun(OutT* r, OutT factor, const InT* x, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    r[i] = ZUMWrapMul(factor, static_cast<OutT>(ValueAt(x, i)));
  }
}
template <class OutT, class InT>
void MultiplyRun(OutT* r, const OutT* factors, const InT* x, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    r[i] = ZUMWrapMul(factors[i], static_cast<OutT>(ValueAt(x, i)));
  }
}

template <class OutT, class InT>
ZUMImage<OutT> Multiply(const LineAxis& along, const ZUMImage<OutT>& line,
                        const ZUMImage<InT>& image) {
  if (line.GetCSz() != image.GetCSz()) {
    throw XQException("ZUM%cProduct: Two images don't have same number of channels",
                      along.operation);
  }
  RequireLine(along, line.RoD());
  const zuml_detail::Axis axis = along.axis;
  ZUMRect box = image.Rect();
  box.begin.*axis = line.Begin().*axis;
  box.end.*axis = line.End().*axis;
  const ZUMRoDRef rod = Intersection(image, ZUMRoDRef(box));
  const ZUMImage<OutT> result(rod, image.GetCSz(), nullptr);
  ZUMForEachPlacedRun(
      rod,
      [&](const ZUMRunPlace& at, const InT* x, OutT* r, std::ptrdiff_t n) {
        ZUMBasePoint<int> on_line;
        on_line.*axis = ZUMBasePoint<int>(at.x, at.y, at.z, at.t).*axis;
        const OutT* factors = &line(on_line, at.c);
        if (axis == zuml_detail::kX) {
          MultiplyRun(r, factors, x, n);
        } else {
          MultiplyRun(r, OutT{*factors}, x, n);
        }
      },
      image, result);
  return result;
}

}  // namespace

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMXProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kAlongX, line, image);
}

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMYProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kAlongY, line, image);
}

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMZProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kAlongZ, line, image);
}

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMTProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kAlongT, line, image);
}

#define ZUML_INSTANTIATE_PRODUCTS(OUT, IN)                                                         \
  template ZUML_API ZUMImage<OUT> ZUMXProduct<OUT, IN>(const ZUMImage<OUT>&, const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMYProduct<OUT, IN>(const ZUMImage<OUT>&, const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMZProduct<OUT, IN>(const ZUMImage<OUT>&, const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMTProduct<OUT, IN>(const ZUMImage<OUT>&, const ZUMImage<IN>&);
#define ZUML_INSTANTIATE(PIX)             \
  ZUML_INSTANTIATE_PRODUCTS(ZUMLong, PIX) \
  ZUML_INSTANTIATE_PRODUCTS(ZUMReal, PIX)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
ZUML_INSTANTIATE_PRODUCTS(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_PRODUCTS
