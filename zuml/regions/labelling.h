/// Labelling: connected components of bool images and flat zones of images as label images.
///
/// A label image is a ZUMImage<ZUMLong>: 0 is background, values above 0 are regions, values below
/// 0 lie outside any region. Regions of several channels do not touch, but are numbered on: a label
/// occurs in one channel only.
///
/// All of it runs on the calling thread. The results cover the operand's region with its channels;
/// the raster of label images may have margins, which floods need.
/// The connectivity's true pixels are the neighbours, and it may be larger than the image; its
/// centre does not matter. One that is not its own mirror image is followed in its direction only:
/// a region is what its first pixel in sweep order reaches.
///
/// The functions that take a connectivity throw XQException "RegionLabel: Dimensions of the
/// connectivity image are not allowed" unless it has one channel and its region holds the origin,
/// and "ZUMRaster: It is not allowed create a framed raster with an empty RoD" for an empty image.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

/// The connected components of the true pixels, numbered 1, 2, ... by their first pixels in sweep
/// order; 0 elsewhere.
///
/// The neighbourhoods of ZUMCon4 and ZUMCon8 are labelled by runs and a union-find forest
/// (Rosenfeld and Pfaltz 1966), at a cost that does not depend on the number of regions. Others are
/// flooded.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionLabel(const ZUMImage<ZUMBool>& image,
                                                        const ZUMImage<ZUMBool>& connectivity);
/// The same with numbers from next_label on, which is left one above the last label, so that
/// several images can have disjoint labels.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionLabel(const ZUMImage<ZUMBool>& image,
                                                        const ZUMImage<ZUMBool>& connectivity,
                                                        ZUMLong& next_label);

/// The flat zones: connected pixels of equal value, numbered 0, 1, 2, ... by their first pixels in
/// sweep order, so that every pixel has a label. A NaN is a zone of its own.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionValueLabel(const ZUMImage<P>& image,
                                                             const ZUMImage<ZUMBool>& connectivity);

/// The positive labels made consecutive, 1, 2, 3, ... in their order; 0 and negative values stay.
/// Throws XQException "ZUMMinMax:Valor indefinido por imagen vacia" for an empty image.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRelabel(const ZUMImage<ZUMLong>& labels);
