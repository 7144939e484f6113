#include "tests/everywhere/operation.h"
#include "zuml/filters/accumulation.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/convolutionex.h"
#include "zuml/filters/corcoef.h"
#include "zuml/filters/localstatistics.h"
#include "zuml/filters/maskmaxvol.h"
#include "zuml/filters/medianmasked.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;
using Mask = Picture<ZUMBool>;

/// A chain without stages.
template <class Q>
ZUMKernel<Q> NoStage() {
  const ZUMImage<Q> none;
  return ZUMKernel<Q>(none, none, none, none);
}

template <class Out, class P>
std::string MaskMaxVol(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask) {
  int x = 0, y = 0;
  Out value{};
  ZUMMaskMaxVol(image, mask, &x, &y, &value);
  return Text(x) + " " + Text(y) + " " + Text(value);
}

const Register kFilters([] {
  Add<Discrete, Plane<>>(CALL1(ZUMAccumImage<ZUMLong>(a)));
  Add<Real, Plane<>>(CALL1(ZUMAccumImage<ZUMReal>(a)));
  Add<Discrete, Plane<>>(CALL1(ZUMXAccumImage<ZUMLong>(a)));
  Add<Real, Plane<>>(CALL1(ZUMXAccumImage<ZUMReal>(a)));
  Add<Discrete, Plane<>>(CALL1(ZUMYAccumImage<ZUMLong>(a)));
  Add<Real, Plane<>>(CALL1(ZUMYAccumImage<ZUMReal>(a)));
  Add<Discrete, Two, Element<>>(CALL2(ZUMSum<ZUMLong>(a, b)));
  Add<Discrete, Two, Element<ZUMBool, 1, 1, 0, 0, 2>>(CALL2(ZUMSum<ZUMLong>(a, b)));
  Add<Discrete, Two, Element<ZUMBool, 2, 1, 0, 0>>(CALL2(ZUMSum<ZUMLong>(a, b)));
  Add<Discrete, Two, Window>(CALL2(ZUMSum<ZUMLong>(a, b)));
  Add<Discrete, Two, Window>(CALL2(ZUMSum<ZUMLong>(a, ZUMRoDRef(b))));
  Add<Real, Two, Element<>>(CALL2(ZUMSum<ZUMReal>(a, b)));
  Add<Real, Two, Element<ZUMBool, 1, 1, 0, 0, 2>>(CALL2(ZUMSum<ZUMReal>(a, b)));
  Add<Real, Two, Element<ZUMBool, 2, 1, 0, 0>>(CALL2(ZUMSum<ZUMReal>(a, b)));
  Add<Real, Two, Window>(CALL2(ZUMSum<ZUMReal>(a, b)));
  Add<Real, Two, Window>(CALL2(ZUMSum<ZUMReal>(a, ZUMRoDRef(b))));
  Add<Complex, Two, Element<>>(CALL2(ZUMSum<ZUMComplex>(a, b)));
  Add<Complex, Two, Element<ZUMBool, 1, 1, 0, 0, 2>>(CALL2(ZUMSum<ZUMComplex>(a, b)));
  Add<Complex, Two, Element<ZUMBool, 2, 1, 0, 0>>(CALL2(ZUMSum<ZUMComplex>(a, b)));
  Add<Complex, Two, Window>(CALL2(ZUMSum<ZUMComplex>(a, b)));
  Add<Complex, Two, Window>(CALL2(ZUMSum<ZUMComplex>(a, ZUMRoDRef(b))));
  Add<Discrete, Two, Element<>, Mask>(CALL3(ZUMSumMasked<ZUMLong>(a, b, c, 3)));
  Add<Discrete, Two, Element<ZUMBool, 1, 1, 0, 0, 2>, Mask>(
      CALL3(ZUMSumMasked<ZUMLong>(a, b, c, 3)));
  Add<Real, Two, Element<>, Mask>(CALL3(ZUMSumMasked<ZUMReal>(a, b, c, 3)));
  Add<Real, Two, Element<ZUMBool, 1, 1, 0, 0, 2>, Mask>(CALL3(ZUMSumMasked<ZUMReal>(a, b, c, 3)));
  Add<Integer, Two, Two, Element<>>(CALL3(ZUMSumThr<ZUMLong>(a, b, c)));
  Add<Real, Two, Two, Element<>>(CALL3(ZUMSumThr<ZUMReal>(a, b, c)));
  Add<Ordered, Two, Element<ZUMLong>>(CALL2(ZUMConv(a, b)));
  Add<Ordered, Two, Element<ZUMReal>>(CALL2(ZUMConv(a, b)));
  Add<Ordered, Two, Element<ZUMSReal>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, Two, Element<ZUMLong, 1, 1, 0, 0, 2>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, One, Element<ZUMReal, 1, 1, 0, 0, 2>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, Two, Kernel<ZUMLong>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, Two, LineKernel<ZUMLong>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, Two>(CALL1(ZUMConv(a, NoStage<ZUMLong>())));
  Add<Scalar, Two, Kernel<ZUMReal>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, Two, LineKernel<ZUMReal>>(CALL2(ZUMConv(a, b)));
  Add<Scalar, Two>(CALL1(ZUMConv(a, NoStage<ZUMReal>())));
  Add<Scalar, Two, Element<ZUMLong>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two, Element<ZUMReal>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two, Element<ZUMLong, 1, 1, 0, 0, 2>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, One, Element<ZUMReal, 1, 1, 0, 0, 2>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two, Kernel<ZUMLong>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two, LineKernel<ZUMLong>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two>(CALL1(ZUMCorr(a, NoStage<ZUMLong>())));
  Add<Scalar, Two, Kernel<ZUMReal>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two, LineKernel<ZUMReal>>(CALL2(ZUMCorr(a, b)));
  Add<Scalar, Two>(CALL1(ZUMCorr(a, NoStage<ZUMReal>())));
  Add<Ordered, Two, Element<ZUMLong>>(CALL2(ZUMConvEx(a, b)));
  Add<Ordered, Two, Element<ZUMReal>>(CALL2(ZUMConvEx(a, b)));
  Add<Ordered, Two, Element<ZUMSReal>>(CALL2(ZUMConvEx(a, b)));
  Add<Scalar, Two, Element<ZUMLong, 1, 0, 0, 0>>(CALL2(ZUMDeriveEx(a, b)));
  Add<Scalar, Two, Element<ZUMLong, 0, 1, 0, 0>>(CALL2(ZUMDeriveEx(a, b)));
  Add<Scalar, Two, Element<ZUMReal, 1, 0, 0, 0>>(CALL2(ZUMDeriveEx(a, b)));
  Add<Scalar, Two, Element<ZUMReal, 0, 1, 0, 0>>(CALL2(ZUMDeriveEx(a, b)));
  Add<Scalar, Two, Element<Pix>>(CALL2(ZUMCorCoef(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMMean(a, b)));
  Add<Discrete, Two, Element<ZUMLong>>(CALL2(ZUMMean(a, b)));
  Add<Scalar, Two, Element<ZUMReal>>(CALL2(ZUMMean(a, b)));
  Add<Discrete, Two, Kernel<ZUMLong>>(CALL2(ZUMMean(a, b)));
  Add<Scalar, Two, LineKernel<ZUMReal>>(CALL2(ZUMMean(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMStdDeviation(a, b)));
  Add<Discrete, Two, Element<ZUMLong>>(CALL2(ZUMStdDeviation(a, b)));
  Add<Scalar, Two, Element<ZUMReal>>(CALL2(ZUMStdDeviation(a, b)));
  Add<Discrete, Two, Kernel<ZUMLong>>(CALL2(ZUMStdDeviation(a, b)));
  Add<Scalar, Two, LineKernel<ZUMReal>>(CALL2(ZUMStdDeviation(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMVariance(a, b)));
  Add<Discrete, Two, Element<ZUMLong>>(CALL2(ZUMVariance(a, b)));
  Add<Scalar, Two, Element<ZUMReal>>(CALL2(ZUMVariance(a, b)));
  Add<Discrete, Two, Kernel<ZUMLong>>(CALL2(ZUMVariance(a, b)));
  Add<Scalar, Two, LineKernel<ZUMReal>>(CALL2(ZUMVariance(a, b)));
  Add<Integer, One, Element<>>(CALL2(MaskMaxVol<ZUMLong>(a, b)));
  Add<Real, One, Element<>>(CALL2(MaskMaxVol<ZUMReal>(a, b)));
  Add<Scalar, Two, Mask>(CALL2(ZUMMedianMasked(a, b)));
  Add<Scalar, Two, Element<>, Mask>(CALL3(ZUMMedianMasked(a, b, c)));
});

}  // namespace
}  // namespace zuml_everywhere
