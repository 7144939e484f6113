// The objects that exist from load time, in one source, so that they are made in this order and
// before any static object of an application, and none is used before it exists.

#include "zuml/core/xqexception.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

// Static objects of users have the default priority, 65535, and so come later.
#define ZUML_FIRST __attribute__((init_priority(1000)))

namespace {

ZUMRect UnitBox() { return {-1, -1, 0, 0, 1, 1, 0, 0}; }

// A 3 x 3 image around the origin, line by line.
template <class P>
ZUMImage<P> MakeUnit(const P (&values)[9]) {
  return ZUMImage<P>(UnitBox(), 1, values);
}

}  // namespace

ZUML_FIRST const ZUMRoDRef ZUMEmptyRoD(0, 1, 1, 1, -1, 0, 0, 0);

ZUML_FIRST const ZUMImage<ZUMBool> ZUMCon8 =
    MakeUnit<ZUMBool>({true, true, true, true, false, true, true, true, true});
ZUML_FIRST const ZUMImage<ZUMBool> ZUMCon4 =
    MakeUnit<ZUMBool>({false, true, false, true, false, true, false, true, false});
ZUML_FIRST const ZUMImage<ZUMLong> ZUMDistL1 = MakeUnit<ZUMLong>({1, 1, 1, 1, 0, 1, 1, 1, 1});
ZUML_FIRST const ZUMImage<ZUMLong> ZUMChamferSteps =
    MakeUnit<ZUMLong>({22, 16, 22, 16, 0, 16, 22, 16, 22});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask1 = MakeUnit<ZUMByte>({1, 1, 1, 0, 2, 0, 2, 2, 2});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask2 = MakeUnit<ZUMByte>({0, 1, 1, 2, 2, 1, 0, 2, 0});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask3 = MakeUnit<ZUMByte>({2, 0, 1, 2, 2, 1, 2, 0, 1});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask4 = MakeUnit<ZUMByte>({0, 2, 0, 2, 2, 1, 0, 1, 1});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask5 = MakeUnit<ZUMByte>({2, 2, 2, 0, 2, 0, 1, 1, 1});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask6 = MakeUnit<ZUMByte>({0, 2, 0, 1, 2, 2, 1, 1, 0});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask7 = MakeUnit<ZUMByte>({1, 0, 2, 1, 2, 2, 1, 0, 2});
ZUML_FIRST const ZUMImage<ZUMByte> ZUMThinMask8 = MakeUnit<ZUMByte>({1, 1, 0, 1, 2, 2, 0, 2, 0});

namespace zuml_detail {

void RequireConnectivity(const char* operation, const ZUMImage<ZUMBool>& con) {
  if (!con.InP(0, 0, 0, 0) || con.GetCSz() != 1) {
    throw XQException("%s: Dimensions of the connectivity image are not allowed", operation);
  }
}

}  // namespace zuml_detail
