#include "tests/everywhere/operation.h"
#include "zuml/threshold/histogramthresholds.h"
#include "zuml/threshold/otsu.h"
#include "zuml/threshold/sigmoid.h"
#include "zuml/threshold/thresholding.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;

const Register kThreshold([] {
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramMinVarianceThr(a)));
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramValleyMinSumThr(a)));
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramValleyThr(a)));
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramLowGaussianThr(a)));
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramOtsu(a)));
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramValleyOtsu(a)));
  Add<Bool, Table<ZUMLong, -3, 20>>(CALL1(ZUMHistogramTrimodalOtsu(a)));
  Add<Byte, One>(CALL1(ZUMMinVarianceThr(a)));
  Add<Byte, One>(CALL1(ZUMValleyMinSumThr(a)));
  Add<Byte, One>(CALL1(ZUMValleyThr(a)));
  Add<Byte, One>(CALL1(ZUMValleyParametricThr(a, 0.5, 0.5, 0.5)));
  Add<Grey, One, Number<7>>(CALL2(ZUMOtsu(a, static_cast<unsigned>(b), 0, 6)), kGrows);
  Add<Integer, One>(CALL1(ZUMOtsu(a, 0, 0, 6)));
  Add<Types<ZUMByte, ZUMShort>, One>(CALL1(ZUMOtsu(a, 0, 1, 0)));
  Add<Grey, One, Number<7>>(CALL2(ZUMValleyOtsu(a, static_cast<unsigned>(b), 0, 6)), kGrows);
  Add<Integer, One>(CALL1(ZUMValleyOtsu(a, 0, 0, 6)));
  Add<Types<ZUMByte, ZUMShort>, One>(CALL1(ZUMValleyOtsu(a, 0, 1, 0)));
  Add<Grey, One, Number<7>>(CALL2(ZUMTrimodalOtsu(a, static_cast<unsigned>(b), 0, 6)), kGrows);
  Add<Integer, One>(CALL1(ZUMTrimodalOtsu(a, 0, 0, 6)));
  Add<Byte, One>(CALL1(ZUMTrimodalOtsu(a, 0, 1, 0)));
  Add<Grey, One>(CALL1(ZUMPixelOtsu(a)));
  Add<Bool, Number<-5>, Number<6>>(CALL2(ZUMSigmoidX(0.5, 0.25, 2, a, b)), kGrows);
  Add<Bool, Number<-5>, Number<6>>(CALL2(ZUMSigmoidX(0.5, 0.25, 2, 0.7, 3, a, b)), kGrows);
  Add<Grey, Two>(CALL1(ZUMThr(a, 3)));
  Add<Grey, Two>(CALL1(ZUMDblThr(a, 1, 3)));
});

}  // namespace
}  // namespace zuml_everywhere
