#include "zuml/algebra/product.h"

#include <cmath>
#include <complex>
#include <cstddef>

#include "zuml/core/detail/pointwise.h"
#include "zuml/core/pixelarith.h"

using zuml_detail::MapImage;
using zuml_detail::MapImages;
using zuml_detail::PointwiseII;
using zuml_detail::PointwiseIN;
using zuml_detail::RunPointwiseII;
using zuml_detail::RunPointwiseIN;
using zuml_detail::RunPointwisePerChannel;

namespace {

struct OpMul {
  template <class P>
  P operator()(P a, P b) const {
    return ZUMWrapMul(a, b);
  }
};

void RequireProductChannels(const char* operation, const ZUMRaster& a, const ZUMRaster& b) {
  if (a.GetCSz() != b.GetCSz() && a.GetCSz() != 1 && b.GetCSz() != 1) {
    throw XQException("%s: Diferent number of channels and no one channel image %d!=%d", operation,
                      a.GetCSz(), b.GetCSz());
  }
}

// The scalar product over the operands' channels; kChannels is their number, or 0 for any. The
// sweep runs over the result's one channel, and the operands' other channels lie at fixed
// distances.
template <class P, int kChannels>
class ScalarProduct : public XQTask {
 public:
  using ResultPixel = P;

  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* a;
  const ZUMImage<P>* b;

  void Run() override {
    const std::ptrdiff_t dx = a->GetChannelSz(), dy = b->GetChannelSz();
    ZUMForEachRun(
        part,
        [dx, dy, channels = a->GetCSz()](P* r, const P* x, const P* y, std::ptrdiff_t n) {
          if constexpr (kChannels > 0) {
            for (std::ptrdiff_t i = 0; i < n; ++i) {
              P sum = ZUMWrapMul(x[i], y[i]);
              for (int c = 1; c < kChannels; ++c) {
                sum = ZUMWrapAdd(sum, ZUMWrapMul(x[c * dx + i], y[c * dy + i]));
              }
              r[i] = sum;
            }
          } else {
            for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = ZUMWrapMul(x[i], y[i]);
            for (int c = 1; c < channels; ++c) {
              x += dx;
              y += dy;
              for (std::ptrdiff_t i = 0; i < n; ++i) {
                r[i] = ZUMWrapAdd(r[i], ZUMWrapMul(x[i], y[i]));
              }
            }
          }
        },
        *result, *a, *b);
  }
};

}  // namespace

template <class P>
class CTaskMulII final : public PointwiseII<P, P, OpMul> {};
template <class P>
class CTaskMulIIC2 final : public ScalarProduct<P, 2> {};
template <class P>
class CTaskMulIIC3 final : public ScalarProduct<P, 3> {};
template <class P>
class CTaskMulIICN final : public ScalarProduct<P, 0> {};
template <class P>
class CTaskMulIN final : public PointwiseIN<P, P, OpMul> {};
template <class P>
class CTaskPointMulII final : public PointwiseII<P, P, OpMul> {};
template <class P>
class CTaskPointMulIN final : public PointwiseIN<P, P, OpMul> {};

template <ZUMArithmeticPixel P>
ZUMImage<P> operator*(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireProductChannels("operator*", a, b);
  if (a.GetCSz() != b.GetCSz()) return RunPointwisePerChannel<CTaskMulII<P>>(a, b);
  switch (a.GetCSz()) {
    case 0:
      return ZUMImage<P>(Intersection(a, b), 1, P());
    case 1:
      return RunPointwiseII<CTaskMulII<P>>(a, b);
    case 2:
      return RunPointwiseII<CTaskMulIIC2<P>>(a, b, 1);
    case 3:
      return RunPointwiseII<CTaskMulIIC3<P>>(a, b, 1);
    default:
      return RunPointwiseII<CTaskMulIICN<P>>(a, b, 1);
  }
}

template <ZUMArithmeticPixel P>
ZUMImage<P> operator*(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskMulIN<P>>(a, n);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> operator*(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a * n;
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMPointProduct(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireProductChannels("ZUMPointProduct", a, b);
  if (a.GetCSz() != b.GetCSz()) return RunPointwisePerChannel<CTaskPointMulII<P>>(a, b);
  return RunPointwiseII<CTaskPointMulII<P>>(a, b);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> ZUMPointProduct(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointMulIN<P>>(a, n);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> ZUMPointProduct(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return ZUMPointProduct(a, n);
}

template <ZUMRealComplexPixel P>
ZUMImage<P> ZUMPow(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  if (a.GetCSz() != b.GetCSz()) throw XQException("Diferent number of channels");
  return MapImages<P>(
      Intersection(a, b), a.GetCSz(), [](P x, P y) { return std::pow(x, y); }, a, b);
}

template <ZUMRealComplexPixel P>
ZUMImage<P> ZUMPow(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return MapImage<P>(a, [n](P x) { return std::pow(x, n); });
}

template <ZUMRealComplexPixel P>
ZUMImage<P> ZUMPow(std::type_identity_t<P> n, const ZUMImage<P>& b) {
  return MapImage<P>(b, [n](P y) { return std::pow(n, y); });
}

#define ZUML_INSTANTIATE(PIX)                                                 \
  ZUML_INSTANTIATE_FORMS(operator*, ZUMImage<PIX>, PIX)                       \
  template ZUML_API ZUMImage<PIX> ZUMPointProduct(const ZUMImage<PIX>&,       \
                                                  std::type_identity_t<PIX>); \
  template ZUML_API ZUMImage<PIX> ZUMPointProduct(std::type_identity_t<PIX>, const ZUMImage<PIX>&);
ZUML_ARITHMETIC_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<PIX> ZUMPointProduct(const ZUMImage<PIX>&, const ZUMImage<PIX>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_FORMS(ZUMPow, ZUMImage<PIX>, PIX)
ZUML_REAL_COMPLEX_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
