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

const Register kMorphology([] {
  Add<Scalar, Two, Window>(CALL2(ZUMDilate(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMDilate(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMDilate(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMDilateEx(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMDilateEx(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMDilateEx(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMErode(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMErode(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMErode(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMErodeEx(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMErodeEx(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMErodeEx(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMMinAdd(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMMinAdd(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMMinAdd(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMMinAddEx(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMMinAddEx(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMMinAddEx(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMMinSub(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMMinSub(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMMinSub(a, b)));
  Add<Scalar, Two, Window>(CALL2(ZUMMinSubEx(a, b)));
  Add<Scalar, Two, Element<>>(CALL2(ZUMMinSubEx(a, b)));
  Add<Types<ZUMBool, ZUMByte>, Two, Element<ZUMBool, 2, 0, 0, 0>>(CALL2(ZUMMinSubEx(a, b)));
  Add<Discrete, Picture<Pix, 3>, Element<>>(CALL2(ZUMMaxL1Diff<ZUMLong>(a, b)));
  Add<Real, Picture<Pix, 3>, Element<>>(CALL2(ZUMMaxL1Diff<ZUMReal>(a, b)));
  Add<Scalar, Picture<Pix, 3>, Element<>>(CALL2(ZUMMaxL2Diff<ZUMReal>(a, b)));
  Add<Real, Two, Element<ZUMLong>, Number<1>>(CALL3(ZUMDilateWMAcum(a, b, c, 0.5)));
  Add<Real, Two, Element<ZUMLong>, Number<1>>(CALL3(ZUMDilateWMAcum2(a, b, c)));
  Add<Real, Two, Element<ZUMLong, 1, 1, 0, 0>>(CALL2(ZUMDilateGradAcum(a, b)));
  Add<Scalar, Two, Mask, Element<>>(CALL3(ZUMDilateValue(a, b, c)));
  Add<Scalar, Two, Picture<ZUMBool, 1>, Element<>>(CALL3(ZUMDilateValue(a, b, c)));
  Add<Discrete, Two, Element<ZUMLong>>(CALL2(ZUMDilateSum<ZUMLong>(a, b)));
  Add<Real, Two, Element<ZUMLong>>(CALL2(ZUMDilateSum<ZUMReal>(a, b)));
  Add<Discrete, Two, Element<ZUMLong>>(CALL2(ZUMDilateSumEx<ZUMLong>(a, b)));
  Add<Real, Two, Element<ZUMLong>>(CALL2(ZUMDilateSumEx<ZUMReal>(a, b)));
  Add<Discrete, Two, Element<ZUMLong>>(CALL2(ZUMDilateMedian<ZUMLong>(a, b)));
  Add<Real, Two, Element<ZUMLong>>(CALL2(ZUMDilateMedian<ZUMReal>(a, b)));
  Add<Bool, Two, Element<ZUMLong>>(CALL2(ZUMMaxErode(a, b)));
  Add<Scalar, One, Element<>>(CALL2(ZUMDilateCoordsEx(a, b)), kDepends);
  Add<Scalar, One, Element<>>(CALL2(ZUMErodeCoordsEx(a, b)), kDepends);
  Add<Real, One, Element<>, Element<ZUMReal>>(CALL3(ZUMDilateAndDistanceEx(a, b, c)));
});

}  // namespace
}  // namespace zuml_everywhere
