#include "tests/everywhere/operation.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/extension/extendedframes.h"
#include "zuml/extension/interpolation.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;
using One = Picture<Pix, 1>;

const Register kOperations("extension", [] {
  ADD3(kFramed, (Algebra, Two, Picture<ZUMBool>, Element<>), ZUMExtendNearest(a, b, c));
  ADD3(kFramed, (Scalar, Two, Picture<ZUMBool>, Element<>), ZUMExtendMean(a, b, c));
  ADD2(kMoves, (Scalar, One, Picture<ZUMBool, 1>), ZUMExtendLinear(a, b, 2),
       ZUMExtendGauss(a, b, 2, 0.8), ZUMExtendDiffuse(a, b, 0.1));
  ADD2(kFramed | kGrows, (Real, Two, Margins), ZUMAddFrameMean(a, b, ZUMCon8));
  ADD2(kFramed | kGrows, (Real, Two, PlacedBox), ZUMPaddingNearest(a, b, ZUMCon8));
});

}  // namespace
}  // namespace zuml_everywhere
