/// Regions that grow: zones of influence of seeds, and climbs along monotone paths. All of it runs
/// on the calling thread; the connectivity's true pixels are the neighbours. The rasters of the
/// results keep the margins that the walks need. Throws XQException
/// "ZUMRaster: It is not allowed create a framed raster with an empty RoD" for an empty operand.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

/// Every pixel that is 0 takes the value of the nearest seed, a pixel that is not 0. Distance is
/// counted in steps of the connectivity. Of seeds equally near, the one whose front arrives first
/// wins; fronts advance in the sweep order of the seeds. What no seed reaches stays 0. The result
/// covers the image's region with its channels.
///
/// Throws XQException "RegionsOfInfluence: Dimensions of the connectivity image are not allowed".
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMRegionsOfInfluence(const ZUMImage<P>& seeds,
                                                         const ZUMImage<ZUMBool>& connectivity);

/// The region with all pixels that a path reaches from it along which the image does not fall (does
/// not rise): flat parts are passed, a pixel below its predecessor is not. The result covers the
/// common region of both, with their channels; each channel climbs in its own.
///
/// Throws XQException "ZUMExtendRegionToMax: Images with different number of channels are not
/// allowed", "ZUMExtendRegionToMax: Dimensions of the connectivity image are not allowed", and the
/// same with ZUMExtendRegionToMin.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMExtendRegionToMax(
    const ZUMImage<ZUMBool>& region, const ZUMImage<P>& image,
    const ZUMImage<ZUMBool>& connectivity);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMExtendRegionToMin(
    const ZUMImage<ZUMBool>& region, const ZUMImage<P>& image,
    const ZUMImage<ZUMBool>& connectivity);
