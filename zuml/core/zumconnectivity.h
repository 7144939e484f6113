/// Neighbourhood images that exist from load time, and the test of a connectivity image.
///
/// A connectivity image is a bool image of one channel whose region holds the origin; its true
/// pixels are the neighbours. All images here have the box (-1,-1,0,0) to (1,1,0,0).
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The four neighbours that share an edge, and the eight that share an edge or a corner.
extern ZUML_API const ZUMImage<ZUMBool> ZUMCon4;
extern ZUML_API const ZUMImage<ZUMBool> ZUMCon8;
/// Steps of length 1 to the eight neighbours, 0 at the centre.
extern ZUML_API const ZUMImage<ZUMLong> ZUMDistL1;
/// Chamfer steps: 16 along the axes, 22 along the diagonals.
extern ZUML_API const ZUMImage<ZUMLong> ZUMChamferSteps;
/// The eight masks of thinning, in the order in which it applies them: where a mask matches, the
/// pixels under its 1s are false and those under its 2s are true; those under its 0s are either.
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask1;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask2;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask3;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask4;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask5;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask6;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask7;
extern ZUML_API const ZUMImage<ZUMByte> ZUMThinMask8;

namespace zuml_detail {

/// Throws XQException "<operation>: Dimensions of the connectivity image are not allowed" unless
/// the image has one channel and its region holds the origin.
ZUML_API void RequireConnectivity(const char* operation, const ZUMImage<ZUMBool>& con);

}  // namespace zuml_detail
