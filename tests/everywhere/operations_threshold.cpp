#include "tests/everywhere/operation.h"
#include "zuml/threshold/histogramthresholds.h"
#include "zuml/threshold/otsu.h"
#include "zuml/threshold/sigmoid.h"
#include "zuml/threshold/thresholding.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;

const Register kOperations("threshold", [] {
  ADD1(kMoves, (Bool, Table<ZUMLong, -3, 20>), ZUMHistogramMinVarianceThr(a),
       ZUMHistogramValleyMinSumThr(a), ZUMHistogramValleyThr(a), ZUMHistogramLowGaussianThr(a),
       ZUMHistogramOtsu(a), ZUMHistogramValleyOtsu(a), ZUMHistogramTrimodalOtsu(a));
  ADD1(kMoves, (Byte, One), ZUMMinVarianceThr(a), ZUMValleyMinSumThr(a), ZUMValleyThr(a),
       ZUMValleyParametricThr(a, 0.5, 0.5, 0.5), ZUMOtsu(a, 0, 1, 0), ZUMValleyOtsu(a, 0, 1, 0),
       ZUMTrimodalOtsu(a, 0, 1, 0));
  ADD2(kGrows, (Grey, One, Number<7>), ZUMOtsu(a, static_cast<unsigned>(b), 0, 6),
       ZUMValleyOtsu(a, static_cast<unsigned>(b), 0, 6));
  ADD1(kMoves, (Integer, One), ZUMOtsu(a, 0, 0, 6), ZUMValleyOtsu(a, 0, 0, 6),
       ZUMTrimodalOtsu(a, 0, 0, 6));
  ADD1(kMoves, (Grey, One), ZUMTrimodalOtsu(a, 7, 0, 6), ZUMPixelOtsu(a));
  ADD2(kGrows, (Bool, Number<-5>, Number<6>), ZUMSigmoidX(0.5, 0.25, 2, a, b),
       ZUMSigmoidX(0.5, 0.25, 2, 0.7, 3, a, b));
  ADD1(kMoves, (Grey, Two), ZUMThr(a, 3), ZUMDblThr(a, 1, 3));
});

}  // namespace
}  // namespace zuml_everywhere
