#include "zuml/algebra/lineproducts.h"

#include <typeinfo>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumrodrect.h"

using zuml_detail::ValueAt;

namespace {

// A product's axis, and its name in the texts.
struct LineAxis {
  int ZUMBasePoint<int>::*coordinate;
  char operation;
  const char* line;
};
constexpr LineAxis kX{&ZUMBasePoint<int>::x, 'X', " X"};
constexpr LineAxis kY{&ZUMBasePoint<int>::y, 'Y', "Y"};
constexpr LineAxis kZ{&ZUMBasePoint<int>::z, 'Z', "Z"};
constexpr LineAxis kT{&ZUMBasePoint<int>::t, 'T', "T"};

void RequireLine(const LineAxis& axis, const ZUMRegionOfDefinition& line) {
  ZUMRect other = line.Rect();
  other.begin.*axis.coordinate = other.end.*axis.coordinate = 0;
  if (!zuml_detail::IsBox(line) || other != ZUMRect()) {
    throw XQException("ZUM%cProduct: Line image isn't a %s line", axis.operation, axis.line);
  }
}

template <class OutT, class InT>
ZUMImage<OutT> Multiply(const LineAxis& axis, const ZUMImage<OutT>& line,
                        const ZUMImage<InT>& image) {
  if (line.GetCSz() != image.GetCSz()) {
    throw XQException("ZUM%cProduct: Two images don't have same number of channels",
                      axis.operation);
  }
  RequireLine(axis, line.RoD());
  ZUMRect box = image.Rect();
  box.begin.*axis.coordinate = line.Begin().*axis.coordinate;
  box.end.*axis.coordinate = line.End().*axis.coordinate;
  const ZUMRoDRef rod = Intersection(image, ZUMRoDRef(box));
  const ZUMImage<OutT> result(rod, image.GetCSz(), nullptr);
  for (ZUMGenericSweepCoords2 sweep(rod, image, result); sweep.GetStart1(); sweep.Next()) {
    const auto* x = static_cast<const InT*>(sweep.GetStart1());
    const std::ptrdiff_t n = static_cast<const InT*>(sweep.GetEnd1()) - x + 1;
    auto* r = static_cast<OutT*>(sweep.GetStart2());
    const ZUMBasePoint<int> at(sweep.GetX(), sweep.GetY(), sweep.GetZ(), sweep.GetT());
    ZUMBasePoint<int> on_line;
    on_line.*axis.coordinate = at.*axis.coordinate;
    const OutT* factor = &line(on_line, sweep.GetC());
    if (axis.coordinate == kX.coordinate) {
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        r[i] = ZUMWrapMul(factor[i], static_cast<OutT>(ValueAt(x, i)));
      }
    } else {
      const OutT k = *factor;
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        r[i] = ZUMWrapMul(k, static_cast<OutT>(ValueAt(x, i)));
      }
    }
  }
  return result;
}

}  // namespace

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMXProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kX, line, image);
}

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMYProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kY, line, image);
}

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMZProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kZ, line, image);
}

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT> ZUMImage<OutT> ZUMTProduct(const ZUMImage<OutT>& line,
                                                                const ZUMImage<InT>& image) {
  return Multiply(kT, line, image);
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
