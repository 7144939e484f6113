#include "tests/everywhere/operation.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/comparison.h"
#include "zuml/algebra/conditional.h"
#include "zuml/algebra/division.h"
#include "zuml/algebra/extrema.h"
#include "zuml/algebra/frames.h"
#include "zuml/algebra/functions.h"
#include "zuml/algebra/histogram.h"
#include "zuml/algebra/lineproducts.h"
#include "zuml/algebra/logic.h"
#include "zuml/algebra/lut.h"
#include "zuml/algebra/moments.h"
#include "zuml/algebra/neighbourcount.h"
#include "zuml/algebra/norms.h"
#include "zuml/algebra/product.h"
#include "zuml/algebra/projections.h"
#include "zuml/algebra/readline.h"
#include "zuml/algebra/statistics.h"
#include "zuml/algebra/tobyte.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;
using Mask = Picture<ZUMBool>;

template <class Image>
using Like = typename std::remove_cvref_t<Image>::PixelType;

template <class P>
std::string MinMax(const ZUMImage<P>& image) {
  P least{}, greatest{};
  ZUMMinMax(image, least, greatest);
  return Text(least) + " " + Text(greatest);
}

template <class P>
std::string SearchEqual(const ZUMImage<P>& image) {
  ZUMBasePoint<int> point;
  const bool found = ZUMSearchEqual(image, P(1), point);
  return Text(found) + Text(point);
}

template <class P>
ZUMImage<P> Append(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  const ZUMImage<P>* images[] = {&a, &b, &a};
  return ZUMAppendChannels(3, images);
}

/// The caller sees to the table's reach; only an empty one is out of it.
template <class P, class Q>
ZUMImage<Q> UnsafeLut(const ZUMImage<P>& image, const ZUMImage<Q>& lut) {
  return lut.EmptyP() ? ZUMImage<Q>() : ZUMUnsafeLut(image, lut);
}

const Register kAlgebra([] {
  Add<Arithmetic, Two, Two>(CALL2(a + b));
  Add<Arithmetic, Two>(CALL1(a + 3));
  Add<Arithmetic, Two>(CALL1(3 + a));
  Add<Algebra, Two, Two>(CALL2(a - b));
  Add<Algebra, Two>(CALL1(a - 3));
  Add<Algebra, Two>(CALL1(3 - a));
  Add<Algebra, Two>(CALL1(-a));
  Add<Scalar, Two, Two>(CALL2(ZUMSymmetricSubtraction(a, b)));
  Add<Scalar, Two>(CALL1(ZUMSymmetricSubtraction(a, 3)));
  Add<Scalar, Two>(CALL1(ZUMSymmetricSubtraction(3, a)));
  Add<Arithmetic, Two>(CALL1(abs(a)));
  Add<Grey, Two>(CALL1(ZUMAbs(a)));
  Add<Types<ZUMShort, ZUMLong, ZUMReal>, Two>(CALL1(ZUMSign(a)));
  Add<Grey, Two, Two>(CALL2(ZUMMax(a, b)));
  Add<Grey, Two>(CALL1(ZUMMax(a, 3)));
  Add<Grey, Two>(CALL1(ZUMMax(3, a)));
  Add<Grey, Two, Two>(CALL2(ZUMMin(a, b)));
  Add<Grey, Two>(CALL1(ZUMMin(a, 3)));
  Add<Grey, Two>(CALL1(ZUMMin(3, a)));
  Add<Algebra, Two, Two>(CALL2(a == b));
  Add<Algebra, Two>(CALL1(a == 3));
  Add<Algebra, Two>(CALL1(3 == a));
  Add<Algebra, Two, Two>(CALL2(a != b));
  Add<Algebra, Two>(CALL1(a != 3));
  Add<Algebra, Two>(CALL1(3 != a));
  Add<Algebra, Two, Two>(CALL2(ZUMPointEqual(a, b)));
  Add<Algebra, Two>(CALL1(ZUMPointEqual(a, 3)));
  Add<Algebra, Two>(CALL1(ZUMPointEqual(3, a)));
  Add<Algebra, Two, Two>(CALL2(ZUMPointNotEqual(a, b)));
  Add<Algebra, Two>(CALL1(ZUMPointNotEqual(a, 3)));
  Add<Algebra, Two>(CALL1(ZUMPointNotEqual(3, a)));
  Add<Scalar, Two, Two>(CALL2(a < b));
  Add<Scalar, Two>(CALL1(a < 3));
  Add<Scalar, Two>(CALL1(3 < a));
  Add<Scalar, Two, Two>(CALL2(a > b));
  Add<Scalar, Two>(CALL1(a > 3));
  Add<Scalar, Two>(CALL1(3 > a));
  Add<Scalar, Two, Two>(CALL2(a <= b));
  Add<Scalar, Two>(CALL1(a <= 3));
  Add<Scalar, Two>(CALL1(3 <= a));
  Add<Scalar, Two, Two>(CALL2(a >= b));
  Add<Scalar, Two>(CALL1(a >= 3));
  Add<Scalar, Two>(CALL1(3 >= a));
  Add<Algebra, Mask, Two, Two>(CALL3(ZUMImIf(a, b, c)));
  Add<Algebra, Mask, Two>(CALL2(ZUMImIf(a, b, 3)));
  Add<Algebra, Mask, Two>(CALL2(ZUMImIf(a, 3, b)));
  Add<Algebra, Picture<ZUMBool, 1>, Two>(CALL2(ZUMImIf(a, b, 3)));
  Add<Bool, Mask>(CALL1(ZUMImIf(a, 3.0, 5.0)));
  Add<Arithmetic, Two, One>(CALL2(a / b));
  Add<Arithmetic, Two>(CALL1(a / 3));
  Add<Arithmetic, Two>(CALL1(3 / a));
  Add<Integer, Two, Two>(CALL2(a % b));
  Add<Integer, Two>(CALL1(a % 3));
  Add<Integer, Two>(CALL1(3 % a));
  Add<Ordered, Two>(CALL1(ZUMMax(a)));
  Add<Ordered, Two>(CALL1(ZUMMin(a)));
  Add<Ordered, Two>(CALL1(MinMax(a)));
  Add<Scalar, One>(CALL1(ZUMSearchMax(a)), kDepends);
  Add<Scalar, One>(CALL1(ZUMSearchMin(a)), kDepends);
  Add<Scalar, One>(CALL1(SearchEqual(a)), kDepends);
  Add<Algebra, Two, Two>(CALL2(ZUMAppendChannels(a, b)));
  Add<Algebra, Two, One, Two>(CALL3(ZUMAppendChannels(a, b, c)));
  Add<Algebra, Two, One>(CALL2(Append(a, b)));
  Add<Algebra, Two, Margins>(CALL2(ZUMAddFrame(a, b, 3)), kGrows);
  Add<Algebra, Two, Margins>(CALL2(ZUMRemoveFrame(a, b)), kShares);
  Add<Algebra, Two, PlacedBox>(CALL2(ZUMPadding(a, b, 3)), kGrows);
  Add<Grey, Two>(CALL1(ZUMLog(a)));
  Add<Grey, Two>(CALL1(ZUMLog10(a)));
  Add<Grey, Two>(CALL1(ZUMExp(a)));
  Add<Grey, Two>(CALL1(ZUMSin(a)));
  Add<Grey, Two>(CALL1(ZUMCos(a)));
  Add<Grey, Two>(CALL1(ZUMSinh(a)));
  Add<Grey, Two>(CALL1(ZUMCosh(a)));
  Add<Grey, Two>(CALL1(ZUMSqrt(a)));
  Add<Real, Two>(CALL1(ZUMTan(a)));
  Add<Real, Two>(CALL1(ZUMTanh(a)));
  Add<Real, Two>(CALL1(ZUMAsin(a)));
  Add<Real, Two>(CALL1(ZUMAcos(a)));
  Add<Real, Two>(CALL1(ZUMAtan(a)));
  Add<Real, Two, Two>(CALL2(ZUMAtan2(a, b)));
  Add<Discrete, Two>(CALL1(ZUMSqr<ZUMLong>(a)));
  Add<Scalar, Two>(CALL1(ZUMSqr<ZUMReal>(a)));
  Add<Complex, Two>(CALL1(ZUMRealComponent(a)));
  Add<Complex, Two>(CALL1(ZUMImagComponent(a)));
  Add<Complex, Two>(CALL1(ZUMComplexModule(a)));
  Add<Complex, Two>(CALL1(ZUMPhase(a)));
  Add<Complex, Two>(CALL1(ZUMConjg(a)));
  Add<Grey, Two, Number<6, 1>>(CALL2(ZUMHistogram(a, static_cast<unsigned>(b), 0, 6)),
                               kStays | kGrows);
  Add<Grey, One, Number<0, 0>, Number<6, 0>>(
      CALL3(
          ZUMHistogram(a, 5, static_cast<Like<decltype(a)>>(b), static_cast<Like<decltype(a)>>(c))),
      kStays);
  Add<Integer, Two>(CALL1(ZUMHistogram(a, 0, 0, 6)), kStays);
  Add<Discrete, Two>(CALL1(ZUMPixelValueCnt(a)), kStays);
  Add<Discrete, Two, Picture<ZUMLong>>(CALL2(ZUMPixelValueCnt<ZUMLong>(a, b)), kStays);
  Add<Discrete, Two, Picture<ZUMReal>>(CALL2(ZUMPixelValueCnt<ZUMReal>(a, b)), kStays);
  Add<Discrete, Line<ZUMLong, 0>, Two>(CALL2(ZUMXProduct(a, b)));
  Add<Scalar, Line<ZUMReal, 0>, Two>(CALL2(ZUMXProduct(a, b)));
  Add<Discrete, Line<ZUMLong, 1>, Two>(CALL2(ZUMYProduct(a, b)));
  Add<Scalar, Line<ZUMReal, 1>, Two>(CALL2(ZUMYProduct(a, b)));
  Add<Discrete, Line<ZUMLong, 2>, Two>(CALL2(ZUMZProduct(a, b)));
  Add<Scalar, Line<ZUMReal, 2>, Two>(CALL2(ZUMZProduct(a, b)));
  Add<Discrete, Line<ZUMLong, 3>, Two>(CALL2(ZUMTProduct(a, b)));
  Add<Scalar, Line<ZUMReal, 3>, Two>(CALL2(ZUMTProduct(a, b)));
  Add<Bool, Two, Two>(CALL2(a && b));
  Add<Bool, Two>(CALL1(a && 3));
  Add<Bool, Two>(CALL1(3 && a));
  Add<Bool, Two, Two>(CALL2(a || b));
  Add<Bool, Two>(CALL1(a || 3));
  Add<Bool, Two>(CALL1(3 || a));
  Add<Bool, Two>(CALL1(!a));
  Add<Discrete, Two, Two>(CALL2(a & b));
  Add<Discrete, Two>(CALL1(a & 3));
  Add<Discrete, Two>(CALL1(3 & a));
  Add<Discrete, Two, Two>(CALL2(a | b));
  Add<Discrete, Two>(CALL1(a | 3));
  Add<Discrete, Two>(CALL1(3 | a));
  Add<Discrete, Two, Two>(CALL2(a ^ b));
  Add<Discrete, Two>(CALL1(a ^ 3));
  Add<Discrete, Two>(CALL1(3 ^ a));
  Add<Discrete, Two>(CALL1(~a));
  Add<Integer, Two, Two>(CALL2(a << b));
  Add<Integer, Two>(CALL1(a << 3));
  Add<Integer, Two>(CALL1(3 << a));
  Add<Integer, Two, Two>(CALL2(a >> b));
  Add<Integer, Two>(CALL1(a >> 3));
  Add<Integer, Two>(CALL1(3 >> a));
  Add<Types<ZUMByte, ZUMShort>, One, Table<ZUMReal, -40000, 40000>>(CALL2(UnsafeLut(a, b)));
  Add<Discrete, One, Table<ZUMByte, -2, 4>>(CALL2(ZUMLut(a, b, 7)));
  Add<Discrete, Two, Table<ZUMComplex, 1, 4>>(CALL2(ZUMLut(a, b, 7)));
  Add<Bool, Two>(CALL1(ZUMMoment(a, 1, 2, 0, 1)), kDepends);
  Add<Bool, Two>(CALL1(ZUMMoment(a, 1, 2, 0, 1, 0.5, 0.5, 0.5, 0.5)), kDepends);
  Add<Bool, Two, Number<2>, Number<1>>(CALL3(ZUMMoment(a, b, c, 0, 0)), kDepends);
  Add<Scalar, Two, Element<>, Element<ZUMBool, 2, 0>>(CALL3(ZUMGreaterCnt(a, b, c)));
  Add<Scalar, Two, Element<>, Element<ZUMBool, 2, 0>>(CALL3(ZUMLessCnt(a, b, c)));
  Add<Grey, Two>(CALL1(ZUMNorm(a)));
  Add<Integer, Two>(CALL1(ZUMSqrNorm<ZUMLong>(a)));
  Add<Real, Two>(CALL1(ZUMSqrNorm<ZUMReal>(a)));
  Add<Integer, Two>(CALL1(ZUMNormL1<ZUMLong>(a)));
  Add<Real, Two>(CALL1(ZUMNormL1<ZUMReal>(a)));
  Add<Arithmetic, Two, One>(CALL2(a * b));
  Add<Arithmetic, Two>(CALL1(a * 3));
  Add<Arithmetic, Two>(CALL1(3 * a));
  Add<Grey, Two, Two>(CALL2(ZUMPointProduct(a, b)));
  Add<Arithmetic, Two>(CALL1(ZUMPointProduct(a, 3)));
  Add<Arithmetic, Two>(CALL1(ZUMPointProduct(3, a)));
  Add<Types<ZUMReal, ZUMComplex>, Two, Two>(CALL2(ZUMPow(a, b)));
  Add<Types<ZUMReal, ZUMComplex>, Two>(CALL1(ZUMPow(a, 3)));
  Add<Types<ZUMReal, ZUMComplex>, Two>(CALL1(ZUMPow(3, a)));
  Add<Discrete, Two>(CALL1(ZUMProjectX<ZUMLong>(a)), kStays);
  Add<Real, Two>(CALL1(ZUMProjectX<ZUMReal>(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMaxX(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMinX(a)), kStays);
  Add<Discrete, Two>(CALL1(ZUMProjectY<ZUMLong>(a)), kStays);
  Add<Real, Two>(CALL1(ZUMProjectY<ZUMReal>(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMaxY(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMinY(a)), kStays);
  Add<Discrete, Two>(CALL1(ZUMProjectZ<ZUMLong>(a)), kStays);
  Add<Real, Two>(CALL1(ZUMProjectZ<ZUMReal>(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMaxZ(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMinZ(a)), kStays);
  Add<Discrete, Two>(CALL1(ZUMProjectT<ZUMLong>(a)), kStays);
  Add<Real, Two>(CALL1(ZUMProjectT<ZUMReal>(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMaxT(a)), kStays);
  Add<Scalar, Two>(CALL1(ZUMProjectMinT(a)), kStays);
  Add<Scalar, Plane<>, Number<3>, Number<4>>(CALL3(ZUMReadLine(a, b, 2, 7, c, 0, 0)), kDepends);
  Add<Scalar, Plane<>>(
      CALL1(ZUMReadLine(a, a.BeginX(), a.BeginY(), a.EndX(), a.EndY(), a.BeginZ(), 0)), kDepends);
  Add<Scalar, Plane<>, Number<0>, Number<0>>(CALL3(ZUMReadLine(a, 1, 2, 7, 4, b, c)), kDepends);
  Add<Discrete, Two>(CALL1(ZUMSum<ZUMLong>(a)));
  Add<Real, Two>(CALL1(ZUMSum<ZUMReal>(a)));
  Add<Complex, Two>(CALL1(ZUMSum<ZUMComplex>(a)));
  Add<Discrete, Two>(CALL1(ZUMSumChannels<ZUMLong>(a)));
  Add<Real, Two>(CALL1(ZUMSumChannels<ZUMReal>(a)));
  Add<Complex, Two>(CALL1(ZUMSumChannels<ZUMComplex>(a)));
  Add<Grey, Two>(CALL1(ZUMMean(a)));
  Add<Grey, Two>(CALL1(ZUMStdDeviation(a)));
  Add<Grey, Two>(CALL1(ZUMVariance(a)));
  Add<Scalar, Two>(CALL1(ZUMImToByte(a)));
  Add<Ordered, Two>(CALL1(ZUMMaxcon(a)));
  Add<Byte, One>(CALL1(ZUMThermography(a)));
});

}  // namespace
}  // namespace zuml_everywhere
