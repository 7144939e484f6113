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

const Register kRegions([] {
  Add<Bool, Two, Element<>>(CALL2(ZUMBigRegion(a, b)));
  Add<Bool, Two, Element<>, Number<2>>(CALL3(ZUMAreaFilter(a, c, 9, b)));
  Add<Bool, Two>(CALL1(ZUMRegionLabel(a, ZUMCon4)));
  Add<Bool, Two>(CALL1(ZUMFillRegion(a, ZUMCon4)));
  Add<Bool, Two>(CALL1(ZUMRegionLabel(a, ZUMCon8)));
  Add<Bool, Two>(CALL1(ZUMFillRegion(a, ZUMCon8)));
  Add<Bool, Two, Element<>>(CALL2(ZUMRegionLabel(a, b)));
  Add<Bool, Two, Element<>, Number<5>>(CALL3(LabelFrom(a, b, c)));
  Add<Algebra, Two, Element<>>(CALL2(ZUMRegionValueLabel(a, b)));
  Add<Algebra, Two>(CALL1(ZUMRegionValueLabel(a, ZUMCon8)));
  Add<Long, Two>(CALL1(ZUMRelabel(a)));
  Add<Bool, Two, Number<8>>(CALL2(ZUMRegionFeretDiameters(a, b)), kDepends | kGrows);
  Add<Long, Two, Number<8>>(CALL2(ZUMRegionFeretDiameters(a, b)), kDepends | kGrows);
  Add<Bool, Two, Element<>>(CALL2(ZUMFillRegion(a, b)));
  Add<Long, Two>(CALL1(ZUMLabelColor(a)));
  Add<Long, Two>(CALL1(Interval(a)));
  Add<Long, Two>(CALL1(ZUMRegionArea(a)), kStays);
  Add<Long, Two>(CALL1(ZUMRegionSizeX(a)), kStays);
  Add<Long, Two>(CALL1(ZUMRegionSizeY(a)), kStays);
  Add<Long, Two>(CALL1(ZUMRegionSizeZ(a)), kStays);
  Add<Long, Two>(CALL1(ZUMRegionSizeT(a)), kStays);
  Add<Long, Two>(CALL1(ZUMRegionCircularity(a)), kStays);
  Add<Long, Two>(CALL1(ZUMRegionMeasures2D(a)), kDepends);
  Add<Long, Two>(CALL1(ZUMRegionSumX(a)), kDepends);
  Add<Long, Two>(CALL1(ZUMRegionSumY(a)), kDepends);
  Add<Long, Two>(CALL1(ZUMRegionSumZ(a)), kDepends);
  Add<Long, Two>(CALL1(ZUMRegionSumT(a)), kDepends);
  Add<Long, Two>(CALL1(ZUMRegionGravityCenter(a)), kDepends);
  Add<Long, Two>(CALL1(ZUMRegionElongation(a)), kDepends);
  Add<Long, Two, Element<>>(CALL2(ZUMRegionExtFrontierArea(a, b)), kStays);
  Add<Long, Two, Element<>>(CALL2(ZUMRegionNeighbour(a, b)), kStays);
  Add<Long, Two, Element<>>(CALL2(ZUMRegionNeighbour2(a, b)), kStays);
  Add<Long, Two, Element<>>(CALL2(ZUMRegionNeighbourFrontier2(a, b)), kStays);
  Add<Long, Two, Number<1>, Number<2>>(CALL3(ZUMRegionMoment(a, b, c)), kDepends);
  Add<Long, Two, Number<1>, Number<2>>(CALL3(ZUMRegionCenteredMoment(a, b, c)), kDepends);
  Add<Scalar, Two>(CALL1(ZUMGravityCenter(a)), kDepends);
  Add<Bool, Two>(CALL1(ZUMRegionWidth(a)));
  Add<Bool, Two>(CALL1(ZUMRegionHeight(a)));
  Add<Bool, Two>(CALL1(ZUMRegionArea(a)));
  Add<Bool, Two>(CALL1(ZUMRegionRectHull(a)), kDepends);
  Add<Grey, Two, Element<>>(CALL2(ZUMRegionsOfInfluence(a, b)));
  Add<Grey, Two>(CALL1(ZUMRegionsOfInfluence(a, ZUMCon8)));
  Add<Grey, Picture<ZUMBool>, Two, Element<>>(CALL3(ZUMExtendRegionToMax(a, b, c)));
  Add<Grey, Picture<ZUMBool>, Two, Element<>>(CALL3(ZUMExtendRegionToMin(a, b, c)));
});

}  // namespace
}  // namespace zuml_everywhere
