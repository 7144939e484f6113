#include "tests/everywhere/operation.h"
#include "zuml/morphology/boxmorphology.h"
#include "zuml/morphology/colourdifference.h"
#include "zuml/morphology/directionalmorphology.h"
#include "zuml/morphology/geodesicdilation.h"
#include "zuml/morphology/labelledmorphology.h"
#include "zuml/morphology/mathmorph.h"
#include "zuml/morphology/winnermorphology.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;
using Mask = Picture<ZUMBool>;

const Register kOperations("morphology", [] {
  ADD2(kMoves, (Scalar, Two, Window), ZUMDilate(a, b), ZUMDilateEx(a, b), ZUMErode(a, b),
       ZUMErodeEx(a, b), ZUMMinAdd(a, b), ZUMMinAddEx(a, b), ZUMMinSub(a, b), ZUMMinSubEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<>), ZUMDilate(a, b), ZUMDilateEx(a, b), ZUMErode(a, b),
       ZUMErodeEx(a, b), ZUMMinAdd(a, b), ZUMMinAddEx(a, b), ZUMMinSub(a, b), ZUMMinSubEx(a, b));
  ADD2(kMoves, (Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>), ZUMDilate(a, b),
       ZUMDilateEx(a, b), ZUMErode(a, b), ZUMErodeEx(a, b), ZUMMinAdd(a, b), ZUMMinAddEx(a, b),
       ZUMMinSub(a, b), ZUMMinSubEx(a, b));
  ADD2(kMoves, (Discrete, Picture<Pix, 3>, Element<>), ZUMMaxL1Diff<ZUMLong>(a, b));
  ADD2(kMoves, (Real, Picture<Pix, 3>, Element<>), ZUMMaxL1Diff<ZUMReal>(a, b));
  ADD2(kMoves, (Scalar, Picture<Pix, 3>, Element<>), ZUMMaxL2Diff<ZUMReal>(a, b));
  ADD3(kMoves, (Real, Two, Element<ZUMLong>, Number<1>), ZUMDilateWMAcum(a, b, c, 0.5),
       ZUMDilateWMAcum2(a, b, c));
  ADD2(kMoves, (Real, Two, Element<ZUMLong, 1, 1, 0, 0>), ZUMDilateGradAcum(a, b));
  ADD3(kMoves, (Scalar, Two, Mask, Element<>), ZUMDilateValue(a, b, c));
  ADD3(kMoves, (Scalar, Two, Picture<ZUMBool, 1>, Element<>), ZUMDilateValue(a, b, c));
  ADD2(kMoves, (Discrete, Two, Element<ZUMLong>), ZUMDilateSum<ZUMLong>(a, b),
       ZUMDilateSumEx<ZUMLong>(a, b), ZUMDilateMedian<ZUMLong>(a, b));
  ADD2(kMoves, (Real, Two, Element<ZUMLong>), ZUMDilateSum<ZUMReal>(a, b),
       ZUMDilateSumEx<ZUMReal>(a, b), ZUMDilateMedian<ZUMReal>(a, b));
  ADD2(kMoves, (Bool, Two, Element<ZUMLong>), ZUMMaxErode(a, b));
  ADD2(kDepends, (Scalar, One, Element<>), ZUMDilateCoordsEx(a, b), ZUMErodeCoordsEx(a, b));
  ADD3(kMoves, (Real, One, Element<>, Element<ZUMReal>), ZUMDilateAndDistanceEx(a, b, c));
});

}  // namespace
}  // namespace zuml_everywhere
