#include "tests/everywhere/operation.h"
#include "zuml/regions/areafilters.h"
#include "zuml/regions/feret.h"
#include "zuml/regions/filling.h"
#include "zuml/regions/labelcolor.h"
#include "zuml/regions/labelling.h"
#include "zuml/regions/medidas.h"
#include "zuml/regions/neighbours.h"
#include "zuml/regions/regionmoments.h"
#include "zuml/regions/regionshape.h"
#include "zuml/regions/singleregion.h"
#include "zuml/regions/zones.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;

ZUMImage<ZUMLong> LabelFrom(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMBool>& connectivity,
                            ZUMLong first) {
  return ZUMRegionLabel(image, connectivity, first);
}

std::string Interval(const ZUMImage<ZUMLong>& labels) {
  ZUMLong first = 0, last = 0;
  ZUMLabelInterval(labels, first, last);
  return Text(first) + " " + Text(last);
}

const Register kOperations("regions", [] {
  ADD2(kMoves, (Bool, Two, Element<>), ZUMBigRegion(a, b), ZUMFillRegion(a, b));
  ADD3(kMoves, (Bool, Two, Element<>, Number<2>), ZUMAreaFilter(a, c, 9, b));
  ADD1(kFramed, (Bool, Two), ZUMRegionLabel(a, ZUMCon4), ZUMRegionLabel(a, ZUMCon8));
  ADD1(kMoves, (Bool, Two), ZUMFillRegion(a, ZUMCon4), ZUMFillRegion(a, ZUMCon8), ZUMRegionWidth(a),
       ZUMRegionHeight(a), ZUMRegionArea(a));
  ADD2(kFramed, (Bool, Two, Element<>), ZUMRegionLabel(a, b));
  ADD3(kFramed, (Bool, Two, Element<>, Number<5>), LabelFrom(a, b, c));
  ADD2(kFramed, (Algebra, Two, Element<>), ZUMRegionValueLabel(a, b));
  ADD1(kFramed, (Algebra, Two), ZUMRegionValueLabel(a, ZUMCon8));
  ADD1(kMoves, (Long, Two), ZUMRelabel(a), ZUMLabelColor(a), Interval(a));
  ADD2(kDepends | kGrows, (Bool, Two, Number<8>), ZUMRegionFeretDiameters(a, b));
  ADD2(kDepends | kGrows, (Long, Two, Number<8>), ZUMRegionFeretDiameters(a, b));
  ADD1(kStays, (Long, Two), ZUMRegionArea(a), ZUMRegionSizeX(a), ZUMRegionSizeY(a),
       ZUMRegionSizeZ(a), ZUMRegionSizeT(a), ZUMRegionCircularity(a));
  ADD1(kDepends, (Long, Two), ZUMRegionMeasures2D(a), ZUMRegionSumX(a), ZUMRegionSumY(a),
       ZUMRegionSumZ(a), ZUMRegionSumT(a), ZUMRegionGravityCenter(a), ZUMRegionElongation(a));
  ADD2(kStays, (Long, Two, Element<>), ZUMRegionExtFrontierArea(a, b), ZUMRegionNeighbour(a, b),
       ZUMRegionNeighbour2(a, b), ZUMRegionNeighbourFrontier2(a, b));
  ADD3(kDepends, (Long, Two, Number<1>, Number<2>), ZUMRegionMoment(a, b, c),
       ZUMRegionCenteredMoment(a, b, c));
  ADD1(kDepends, (Scalar, Two), ZUMGravityCenter(a));
  ADD1(kDepends, (Bool, Two), ZUMRegionRectHull(a));
  ADD2(kFramed, (Grey, Two, Element<>), ZUMRegionsOfInfluence(a, b));
  ADD1(kFramed, (Grey, Two), ZUMRegionsOfInfluence(a, ZUMCon8));
  ADD3(kFramed, (Grey, Picture<ZUMBool>, Two, Element<>), ZUMExtendRegionToMax(a, b, c),
       ZUMExtendRegionToMin(a, b, c));
});

}  // namespace
}  // namespace zuml_everywhere
