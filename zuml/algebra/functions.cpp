#include "zuml/algebra/functions.h"

#include <cmath>

#include "zuml/core/detail/pointwise.h"
#include "zuml/core/pixelarith.h"

using zuml_detail::MapImage;

namespace {

// A function of real numbers. Bytes have only 256 values: their results come from a table.
template <class P, class F>
ZUMImage<ZUMReal> MapReal(const ZUMImage<P>& image, F f) {
  if constexpr (std::same_as<P, ZUMByte>) {
    ZUMReal table[256];
    for (int v = 0; v < 256; ++v) table[v] = f(static_cast<ZUMByte>(v));
    const ZUMReal* values = table;
    return MapImage<ZUMReal>(image, [values](ZUMByte v) { return values[v]; });
  } else {
    return MapImage<ZUMReal>(image, f);
  }
}

struct OpSqrt {
  double operator()(double v) const { return std::sqrt(v); }
};

template <class OutT>
struct OpSqr {
  template <class P>
  OutT operator()(P v) const {
    const OutT wide = static_cast<OutT>(v);
    return ZUMWrapMul(wide, wide);
  }
};

}  // namespace

template <class P>
class CTaskSqrt final : public zuml_detail::PointwiseI<ZUMReal, P, OpSqrt> {};
template <class OutT, class P>
class CTaskSqr final : public zuml_detail::PointwiseI<OutT, P, OpSqr<OutT>> {};

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMLog(const ZUMImage<P>& image) {
  return MapReal(image, [](P v) -> double { return std::log(static_cast<float>(v)); });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMLog10(const ZUMImage<P>& image) {
  return MapReal(image, [](P v) -> double { return std::log10(static_cast<float>(v)); });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMExp(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::exp(v); });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMSin(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::sin(v); });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMCos(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::cos(v); });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMSinh(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::sinh(v); });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMCosh(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::cosh(v); });
}

template <std::same_as<ZUMReal> P>
ZUMImage<ZUMReal> ZUMTan(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::tan(v); });
}

template <std::same_as<ZUMReal> P>
ZUMImage<ZUMReal> ZUMTanh(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::tanh(v); });
}

template <std::same_as<ZUMReal> P>
ZUMImage<ZUMReal> ZUMAsin(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::asin(v); });
}

template <std::same_as<ZUMReal> P>
ZUMImage<ZUMReal> ZUMAcos(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::acos(v); });
}

template <std::same_as<ZUMReal> P>
ZUMImage<ZUMReal> ZUMAtan(const ZUMImage<P>& image) {
  return MapReal(image, [](double v) { return std::atan(v); });
}

template <std::same_as<ZUMReal> P>
ZUMImage<ZUMReal> ZUMAtan2(const ZUMImage<P>& y, const ZUMImage<P>& x) {
  if (x.GetCSz() < y.GetCSz()) zuml_detail::RequireSameChannels("ZUMAtan2", y, x);
  return zuml_detail::MapImages<ZUMReal>(
      Intersection(y, x), y.GetCSz(), [](P vy, P vx) { return std::atan2(vy, vx); }, y, x);
}

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMSqrt(const ZUMImage<P>& image) {
  return zuml_detail::RunPointwiseI<CTaskSqrt<P>>(image);
}

template <class OutT, class P>
requires ZUMSquarePixels<OutT, P> ZUMImage<OutT> ZUMSqr(const ZUMImage<P>& image) {
  return zuml_detail::RunPointwiseI<CTaskSqr<OutT, P>>(image);
}

ZUMImage<ZUMReal> ZUMRealComponent(const ZUMImage<ZUMComplex>& image) {
  return MapImage<ZUMReal>(image, [](const ZUMComplex& v) { return v.real(); });
}

ZUMImage<ZUMReal> ZUMImagComponent(const ZUMImage<ZUMComplex>& image) {
  return MapImage<ZUMReal>(image, [](const ZUMComplex& v) { return v.imag(); });
}

ZUMImage<ZUMReal> ZUMComplexModule(const ZUMImage<ZUMComplex>& image) {
  return MapImage<ZUMReal>(image, [](const ZUMComplex& v) { return ZUMMagnitude(v); });
}

ZUMImage<ZUMReal> ZUMPhase(const ZUMImage<ZUMComplex>& image) {
  return MapImage<ZUMReal>(image,
                           [](const ZUMComplex& v) { return std::atan2(v.imag(), v.real()); });
}

ZUMImage<ZUMComplex> ZUMConjg(const ZUMImage<ZUMComplex>& image) {
  return MapImage<ZUMComplex>(image,
                              [](const ZUMComplex& v) { return ZUMComplex(v.real(), -v.imag()); });
}

#define ZUML_INSTANTIATE(PIX)                                              \
  template ZUML_API ZUMImage<ZUMReal> ZUMLog<PIX>(const ZUMImage<PIX>&);   \
  template ZUML_API ZUMImage<ZUMReal> ZUMLog10<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMExp<PIX>(const ZUMImage<PIX>&);   \
  template ZUML_API ZUMImage<ZUMReal> ZUMSin<PIX>(const ZUMImage<PIX>&);   \
  template ZUML_API ZUMImage<ZUMReal> ZUMCos<PIX>(const ZUMImage<PIX>&);   \
  template ZUML_API ZUMImage<ZUMReal> ZUMSinh<PIX>(const ZUMImage<PIX>&);  \
  template ZUML_API ZUMImage<ZUMReal> ZUMCosh<PIX>(const ZUMImage<PIX>&);  \
  template ZUML_API ZUMImage<ZUMReal> ZUMSqrt<PIX>(const ZUMImage<PIX>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

template ZUML_API ZUMImage<ZUMReal> ZUMTan<ZUMReal>(const ZUMImage<ZUMReal>&);
template ZUML_API ZUMImage<ZUMReal> ZUMTanh<ZUMReal>(const ZUMImage<ZUMReal>&);
template ZUML_API ZUMImage<ZUMReal> ZUMAsin<ZUMReal>(const ZUMImage<ZUMReal>&);
template ZUML_API ZUMImage<ZUMReal> ZUMAcos<ZUMReal>(const ZUMImage<ZUMReal>&);
template ZUML_API ZUMImage<ZUMReal> ZUMAtan<ZUMReal>(const ZUMImage<ZUMReal>&);
template ZUML_API ZUMImage<ZUMReal> ZUMAtan2<ZUMReal>(const ZUMImage<ZUMReal>&,
                                                      const ZUMImage<ZUMReal>&);

#define ZUML_INSTANTIATE(PIX)                                                     \
  template ZUML_API ZUMImage<ZUMLong> ZUMSqr<ZUMLong, PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMSqr<ZUMReal, PIX>(const ZUMImage<PIX>&);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
template ZUML_API ZUMImage<ZUMReal> ZUMSqr<ZUMReal, ZUMReal>(const ZUMImage<ZUMReal>&);
