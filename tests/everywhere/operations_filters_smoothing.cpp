#include "tests/everywhere/operation.h"
#include "zuml/filters/bilateral.h"
#include "zuml/filters/gaussian.h"
#include "zuml/filters/rank.h"
#include "zuml/filters/smoothing.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;

/// Weights of differences from -3 to 3.
template <class Q>
ZUMImage<Q> Values() {
  return ZUMImage<Q>(ZUMRect(-3, 0, 0, 0, 3, 0, 0, 0), 1, Q(1));
}

const Register kOperations("smoothing", [] {
  ADD1(kMoves, (Scalar, Two), ZUMSmooth(a), ZUMGaussianSmooth(a, 0.8), ZUMGaussianSmooth(a, 0),
       ZUMGaussianSmoothEx(a, 0.8), ZUMGaussianXYSmooth(a, 0, 0.8),
       ZUMGaussianXYSmoothEx(a, 0.8, 0.5), ZUMGaussianDerive(a, 0.5, 1, 2),
       ZUMGaussianXYDerive(a, 0.5, 0.5, 1, 2), ZUMMedian(a));
  ADD1(kMoves, (Scalar, One), ZUMGaussianGrad(a, 0.5), ZUMGaussianGradModule(a, 0.5));
  ADD2(kMoves, (Scalar, Two, Number<1>), ZUMGaussianSmooth(a, 0.8, b),
       ZUMGaussianSmoothEx(a, 0.8, b));
  ADD2(kMoves, (Scalar, Two, Element<>), ZUMSmooth(a, b), ZUMSmoothEx(a, b), ZUMRankOrder(a, b, 40),
       ZUMMedian(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMBool, 2, 2, 0, 0>), ZUMSmooth(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMLong>), ZUMSmooth(a, b), ZUMSmoothEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMReal>), ZUMSmooth(a, b), ZUMSmoothEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMReal, 1, 0, 0, 0>), ZUMSmoothEx(a, b));
  ADD2(kMoves, (Scalar, Two, Element<ZUMReal, 0, 1, 0, 0>), ZUMSmoothEx(a, b));
  ADD1(kMoves, (Grey, Two), ZUMBilateral(a, 0.8, 20, 0), ZUMRankOrder(a, 40));
  ADD2(kMoves, (Discrete, Two, Element<ZUMLong>), ZUMBilateralConv(a, b, Values<ZUMLong>()));
  ADD2(kMoves, (Discrete, Two, Element<ZUMReal>), ZUMBilateralConv(a, b, Values<ZUMReal>()));
});

}  // namespace
}  // namespace zuml_everywhere
