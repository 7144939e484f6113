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

const Register kOperations("filters", [] {
  ADD1(kMoves, (Discrete, Plane<>), ZUMAccumImage<ZUMLong>(a), ZUMXAccumImage<ZUMLong>(a),
       ZUMYAccumImage<ZUMLong>(a));
  ADD1(kMoves, (Real, Plane<>), ZUMAccumImage<ZUMReal>(a), ZUMXAccumImage<ZUMReal>(a),
       ZUMYAccumImage<ZUMReal>(a));
  ADD2(kMoves, (Discrete, Two, Element<>), ZUMSum<ZUMLong>(a, b));
  ADD2(kMoves, (Discrete, Two, Element<ZUMBool, 1, 1, 0, 0, 2>), ZUMSum<ZUMLong>(a, b));
  ADD2(kMoves, (Discrete, Two, Element<ZUMBool, 2, 1, 0, 0>), ZUMSum<ZUMLong>(a, b));
  ADD2(kMoves, (Discrete, Two, Window), ZUMSum<ZUMLong>(a, b), ZUMSum<ZUMLong>(a, ZUMRoDRef(b)));
  ADD2(kMoves, (Real, Two, Element<>), ZUMSum<ZUMReal>(a, b));
  ADD2(kMoves, (Real, Two, Element<ZUMBool, 1, 1, 0, 0, 2>), ZUMSum<ZUMReal>(a, b));
  ADD2(kMoves, (Real, Two, Element<ZUMBool, 2, 1, 0, 0>), ZUMSum<ZUMReal>(a, b));
  ADD2(kMoves, (Real, Two, Window), ZUMSum<ZUMReal>(a, b), ZUMSum<ZUMReal>(a, ZUMRoDRef(b)));
  ADD2(kMoves, (Complex, Two, Element<>), ZUMSum<ZUMComplex>(a, b));
  ADD2(kMoves, (Complex, Two, Element<ZUMBool, 1, 1, 0, 0, 2>), ZUMSum<ZUMComplex>(a, b));
  ADD2(kMoves, (Complex, Two, Element<ZUMBool, 2, 1, 0, 0>), ZUMSum<ZUMComplex>(a, b));
  ADD2(kMoves, (Complex, Two, Window), ZUMSum<ZUMComplex>(a, b),
       ZUMSum<ZUMComplex>(a, ZUMRoDRef(b)));
  ADD3(kMoves, (Discrete, Two, Element<>, Mask), ZUMSumMasked<ZUMLong>(a, b, c, 3));
  ADD3(kMoves, (Discrete, Two, Element<ZUMBool, 1, 1, 0, 0, 2>, Mask),
       ZUMSumMasked<ZUMLong>(a, b, c, 3));
  ADD3(kMoves, (Real, Two, Element<>, Mask), ZUMSumMasked<ZUMReal>(a, b, c, 3));
  ADD3(kMoves, (Real, Two, Element<ZUMBool, 1, 1, 0, 0, 2>, Mask),
       ZUMSumMasked<ZUMReal>(a, b, c, 3));
  ADD3(kMoves, (Integer, Two, Two, Element<>), ZUMSumThr<ZUMLong>(a, b, c));
  ADD3(kMoves, (Real, Two, Two, Element<>), ZUMSumThr<ZUMReal>(a, b, c));
  ADD2(kMoves, (Ordered, Two, Element<ZUMLong>), ZUMConv(a, b), ZUMConvEx(a, b));
  ADD2(kMoves, (Ordered, Two, Element<ZUMReal>), ZUMConv(a, b), ZUMConvEx(a, b));
  ADD2(kMoves, (Ordered, Two, Element<ZUMSReal>), ZUMConv(a, b), ZUMConvEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMLong, 1, 1, 0, 0, 2>), ZUMConv(a, b), ZUMCorr(a, b));
  ADD2(kMoves, (Scalar, One, Element<ZUMReal, 1, 1, 0, 0, 2>), ZUMConv(a, b), ZUMCorr(a, b));
  ADD2(kMoves, (Scalar, Two, Kernel<ZUMLong>), ZUMConv(a, b), ZUMCorr(a, b));
  ADD2(kMoves, (Scalar, Two, LineKernel<ZUMLong>), ZUMConv(a, b), ZUMCorr(a, b));
  ADD1(kMoves, (Scalar, Two), ZUMConv(a, NoStage<ZUMLong>()), ZUMConv(a, NoStage<ZUMReal>()),
       ZUMCorr(a, NoStage<ZUMLong>()), ZUMCorr(a, NoStage<ZUMReal>()));
  ADD2(kMoves, (Scalar, Two, Kernel<ZUMReal>), ZUMConv(a, b), ZUMCorr(a, b));
  ADD2(kMoves, (Scalar, Two, LineKernel<ZUMReal>), ZUMConv(a, b), ZUMCorr(a, b), ZUMMean(a, b),
       ZUMStdDeviation(a, b), ZUMVariance(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMLong>), ZUMCorr(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMReal>), ZUMCorr(a, b), ZUMMean(a, b), ZUMStdDeviation(a, b),
       ZUMVariance(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMLong, 1, 0, 0, 0>), ZUMDeriveEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMLong, 0, 1, 0, 0>), ZUMDeriveEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMReal, 1, 0, 0, 0>), ZUMDeriveEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMReal, 0, 1, 0, 0>), ZUMDeriveEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<Pix>), ZUMCorCoef(a, b));
  ADD2(kMoves, (Scalar, Two, Element<>), ZUMMean(a, b), ZUMStdDeviation(a, b), ZUMVariance(a, b));
  ADD2(kMoves, (Discrete, Two, Element<ZUMLong>), ZUMMean(a, b), ZUMStdDeviation(a, b),
       ZUMVariance(a, b));
  ADD2(kMoves, (Discrete, Two, Kernel<ZUMLong>), ZUMMean(a, b), ZUMStdDeviation(a, b),
       ZUMVariance(a, b));
  ADD2(kMoves, (Integer, One, Element<>), MaskMaxVol<ZUMLong>(a, b));
  ADD2(kMoves, (Real, One, Element<>), MaskMaxVol<ZUMReal>(a, b));
  ADD2(kMoves, (Scalar, Two, Mask), ZUMMedianMasked(a, b));
  ADD3(kMoves, (Scalar, Two, Element<>, Mask), ZUMMedianMasked(a, b, c));
});

}  // namespace
}  // namespace zuml_everywhere
