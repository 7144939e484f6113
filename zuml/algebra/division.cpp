#include "zuml/algebra/division.h"

#include "zuml/core/detail/pointwise.h"
#include "zuml/core/pixelarith.h"

using zuml_detail::PointwiseII;
using zuml_detail::PointwiseIN;
using zuml_detail::PointwiseNI;
using zuml_detail::RequireSameChannels;
using zuml_detail::RunPointwiseII;
using zuml_detail::RunPointwiseIN;
using zuml_detail::RunPointwiseNI;
using zuml_detail::RunPointwisePerChannel;

namespace {

struct OpDiv {
  template <class P>
  P operator()(P a, P b) const {
    return ZUMWrapDiv(a, b);
  }
};

struct OpMod {
  template <class P>
  P operator()(P a, P b) const {
    return ZUMWrapRem(a, b);
  }
};

}  // namespace

template <class P>
class CTaskDivII final : public PointwiseII<P, P, OpDiv> {};
template <class P>
class CTaskDivIN final : public PointwiseIN<P, P, OpDiv> {};
template <class P>
class CTaskDivNI final : public PointwiseNI<P, P, OpDiv> {};
template <class P>
class CTaskModII final : public PointwiseII<P, P, OpMod> {};
template <class P>
class CTaskModIN final : public PointwiseIN<P, P, OpMod> {};
template <class P>
class CTaskModNI final : public PointwiseNI<P, P, OpMod> {};

template <ZUMArithmeticPixel P>
ZUMImage<P> operator/(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  if (b.GetCSz() != 1) {
    throw XQException("operator/: second multichannel image is not allowed image (%d,%d)",
                      a.GetCSz(), b.GetCSz());
  }
  return RunPointwisePerChannel<CTaskDivII<P>>(a, b);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> operator/(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskDivIN<P>>(a, n);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> operator/(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskDivNI<P>>(n, a);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator%(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator%", a, b);
  return RunPointwiseII<CTaskModII<P>>(a, b);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator%(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskModIN<P>>(a, n);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator%(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskModNI<P>>(n, a);
}

#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_FORMS(operator/, ZUMImage<PIX>, PIX)
ZUML_ARITHMETIC_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_FORMS(operator%, ZUMImage<PIX>, PIX)
ZUML_INTEGER_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
