#include "tests/everywhere/operation.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/channels.h"
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

const Register kOperations("algebra", [] {
  ADD2(kMoves, (Arithmetic, Two, Two), a + b);
  ADD1(kMoves, (Arithmetic, Two), a + 3, 3 + a, abs(a), a / 3, 3 / a, a * 3, 3 * a,
       ZUMPointProduct(a, 3), ZUMPointProduct(3, a));
  ADD2(kMoves, (Algebra, Two, Two), a - b, a == b, a != b, ZUMPointEqual(a, b),
       ZUMPointNotEqual(a, b), ZUMAppendChannels(a, b));
  ADD1(kMoves, (Algebra, Two), a - 3, 3 - a, -a, a == 3, 3 == a, a != 3, 3 != a,
       ZUMPointEqual(a, 3), ZUMPointEqual(3, a), ZUMPointNotEqual(a, 3), ZUMPointNotEqual(3, a));
  ADD2(kMoves, (Scalar, Two, Two), ZUMSymmetricSubtraction(a, b), a<b, a> b, a <= b, a >= b);
  ADD1(kMoves, (Scalar, Two), ZUMSymmetricSubtraction(a, 3), ZUMSymmetricSubtraction(3, a),
       a<3, 3 < a, a> 3, 3 > a, a <= 3, 3 <= a, a >= 3, 3 >= a, ZUMSqr<ZUMReal>(a), ZUMImToByte(a));
  ADD1(kMoves, (Grey, Two), ZUMAbs(a), ZUMMax(a, 3), ZUMMax(3, a), ZUMMin(a, 3), ZUMMin(3, a),
       ZUMLog(a), ZUMLog10(a), ZUMExp(a), ZUMSin(a), ZUMCos(a), ZUMSinh(a), ZUMCosh(a), ZUMSqrt(a),
       ZUMNorm(a), ZUMMean(a), ZUMStdDeviation(a), ZUMVariance(a));
  ADD1(kMoves, (Types<ZUMShort, ZUMLong, ZUMReal>, Two), ZUMSign(a));
  ADD2(kMoves, (Grey, Two, Two), ZUMMax(a, b), ZUMMin(a, b), ZUMPointProduct(a, b));
  ADD3(kMoves, (Algebra, Mask, Two, Two), ZUMImIf(a, b, c));
  ADD2(kMoves, (Algebra, Mask, Two), ZUMImIf(a, b, 3), ZUMImIf(a, 3, b));
  ADD2(kMoves, (Algebra, Picture<ZUMBool, 1>, Two), ZUMImIf(a, b, 3));
  ADD1(kMoves, (Bool, Mask), ZUMImIf(a, 3.0, 5.0));
  ADD2(kMoves, (Arithmetic, Two, One), a / b, a * b);
  ADD2(kMoves, (Integer, Two, Two), a % b, a << b, a >> b);
  ADD1(kMoves, (Integer, Two), a % 3, 3 % a, a << 3, 3 << a, a >> 3, 3 >> a, ZUMSqrNorm<ZUMLong>(a),
       ZUMNormL1<ZUMLong>(a));
  ADD1(kMoves, (Ordered, Two), ZUMMax(a), ZUMMin(a), MinMax(a), ZUMMaxcon(a));
  ADD1(kDepends, (Scalar, One), ZUMSearchMax(a), ZUMSearchMin(a), SearchEqual(a));
  ADD3(kMoves, (Algebra, Two, One, Two), ZUMAppendChannels(a, b, c));
  ADD2(kMoves, (Algebra, Two, One), Append(a, b));
  ADD2(kGrows, (Algebra, Two, Margins), ZUMAddFrame(a, b, 3));
  ADD2(kShares, (Algebra, Two, Margins), ZUMRemoveFrame(a, b));
  ADD2(kGrows, (Algebra, Two, PlacedBox), ZUMPadding(a, b, 3));
  ADD1(kMoves, (Real, Two), ZUMTan(a), ZUMTanh(a), ZUMAsin(a), ZUMAcos(a), ZUMAtan(a),
       ZUMSqrNorm<ZUMReal>(a), ZUMNormL1<ZUMReal>(a), ZUMSum<ZUMReal>(a),
       ZUMSumChannels<ZUMReal>(a));
  ADD2(kMoves, (Real, Two, Two), ZUMAtan2(a, b));
  ADD1(kMoves, (Discrete, Two), ZUMSqr<ZUMLong>(a), a & 3, 3 & a, a | 3, 3 | a, a ^ 3, 3 ^ a, ~a,
       ZUMSum<ZUMLong>(a), ZUMSumChannels<ZUMLong>(a));
  ADD1(kMoves, (Complex, Two), ZUMRealComponent(a), ZUMImagComponent(a), ZUMComplexModule(a),
       ZUMPhase(a), ZUMConjg(a), ZUMSum<ZUMComplex>(a), ZUMSumChannels<ZUMComplex>(a));
  ADD2(kStays | kGrows, (Grey, Two, Number<6, 1>), ZUMHistogram(a, static_cast<unsigned>(b), 0, 6));
  ADD3(kStays, (Grey, One, Number<0, 0>, Number<6, 0>),
       ZUMHistogram(a, 5, static_cast<Like<decltype(a)>>(b), static_cast<Like<decltype(a)>>(c)));
  ADD1(kStays, (Integer, Two), ZUMHistogram(a, 0, 0, 6));
  ADD1(kStays, (Discrete, Two), ZUMPixelValueCnt(a), ZUMProjectX<ZUMLong>(a),
       ZUMProjectY<ZUMLong>(a), ZUMProjectZ<ZUMLong>(a), ZUMProjectT<ZUMLong>(a));
  ADD2(kStays, (Discrete, Two, Picture<ZUMLong>), ZUMPixelValueCnt<ZUMLong>(a, b));
  ADD2(kStays, (Discrete, Two, Picture<ZUMReal>), ZUMPixelValueCnt<ZUMReal>(a, b));
  ADD2(kMoves, (Discrete, Line<ZUMLong, 0>, Two), ZUMXProduct(a, b));
  ADD2(kMoves, (Scalar, Line<ZUMReal, 0>, Two), ZUMXProduct(a, b));
  ADD2(kMoves, (Discrete, Line<ZUMLong, 1>, Two), ZUMYProduct(a, b));
  ADD2(kMoves, (Scalar, Line<ZUMReal, 1>, Two), ZUMYProduct(a, b));
  ADD2(kMoves, (Discrete, Line<ZUMLong, 2>, Two), ZUMZProduct(a, b));
  ADD2(kMoves, (Scalar, Line<ZUMReal, 2>, Two), ZUMZProduct(a, b));
  ADD2(kMoves, (Discrete, Line<ZUMLong, 3>, Two), ZUMTProduct(a, b));
  ADD2(kMoves, (Scalar, Line<ZUMReal, 3>, Two), ZUMTProduct(a, b));
  ADD2(kMoves, (Bool, Two, Two), a && b, a || b);
  ADD1(kMoves, (Bool, Two), a && 3, 3 && a, a || 3, 3 || a, !a);
  ADD2(kMoves, (Discrete, Two, Two), a & b, a | b, a ^ b);
  ADD2(kMoves, (Types<ZUMByte, ZUMShort>, One, Table<ZUMReal, -40000, 40000>), UnsafeLut(a, b));
  ADD2(kMoves, (Discrete, One, Table<ZUMByte, -2, 4>), ZUMLut(a, b, 7));
  ADD2(kMoves, (Discrete, Two, Table<ZUMComplex, 1, 4>), ZUMLut(a, b, 7));
  ADD1(kDepends, (Bool, Two), ZUMMoment(a, 1, 2, 0, 1),
       ZUMMoment(a, 1, 2, 0, 1, 0.5, 0.5, 0.5, 0.5));
  ADD3(kDepends, (Bool, Two, Number<2>, Number<1>), ZUMMoment(a, b, c, 0, 0));
  ADD3(kMoves, (Scalar, Two, Element<>, Element<ZUMBool, 2, 0>), ZUMGreaterCnt(a, b, c),
       ZUMLessCnt(a, b, c));
  ADD2(kMoves, (Types<ZUMReal, ZUMComplex>, Two, Two), ZUMPow(a, b));
  ADD1(kMoves, (Types<ZUMReal, ZUMComplex>, Two), ZUMPow(a, 3), ZUMPow(3, a));
  ADD1(kStays, (Real, Two), ZUMProjectX<ZUMReal>(a), ZUMProjectY<ZUMReal>(a),
       ZUMProjectZ<ZUMReal>(a), ZUMProjectT<ZUMReal>(a));
  ADD1(kStays, (Scalar, Two), ZUMProjectMaxX(a), ZUMProjectMinX(a), ZUMProjectMaxY(a),
       ZUMProjectMinY(a), ZUMProjectMaxZ(a), ZUMProjectMinZ(a), ZUMProjectMaxT(a),
       ZUMProjectMinT(a));
  ADD3(kDepends, (Scalar, Plane<>, Number<3>, Number<4>), ZUMReadLine(a, b, 2, 7, c, 0, 0));
  ADD1(kDepends, (Scalar, Plane<>),
       ZUMReadLine(a, a.BeginX(), a.BeginY(), a.EndX(), a.EndY(), a.BeginZ(), 0));
  ADD3(kDepends, (Scalar, Plane<>, Number<0>, Number<0>), ZUMReadLine(a, 1, 2, 7, 4, b, c));
  ADD1(kMoves, (Byte, One), ZUMThermography(a));
});

}  // namespace
}  // namespace zuml_everywhere
