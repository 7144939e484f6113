/// Filling of holes.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

/// The image with its holes true. The connectivity is that of the false pixels: a hole is one of
/// their components that does not reach the outside of the image in X and Y. So with ZUMCon4 a
/// closed diagonal line has an inside, with ZUMCon8 it has none. Each plane, frame and channel has
/// an outside of its own; a connectivity with steps along Z or T joins planes or frames.
///
/// The result covers the image's region with its channels. Runs on the calling thread. Throws
/// XQException "ZUMAddFrame: It is not allowed add a frame to an empty image", and what
/// ZUMRegionLabel throws for the connectivity.
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMFillRegion(const ZUMImage<ZUMBool>& image,
                                                       const ZUMImage<ZUMBool>& connectivity);
