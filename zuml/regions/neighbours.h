/// Which regions touch, and along how many pixels. All of it runs on the calling thread. The
/// connectivity's true pixels are the neighbours; pixels of different channels are never
/// neighbours. All functions throw XQException "<operation>: Dimensions of the connectivity image
/// are not allowed".
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

/// Per positive label, a table as in medidas.h: the number of pixels outside the region, background
/// ones among them, that have a neighbour in it.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionExtFrontierArea(
    const ZUMImage<ZUMLong>& labels, const ZUMImage<ZUMBool>& connectivity);

// The following take all values of the image as labels, 0 and negative ones too, except that a
// neighbour with -1 does not count. X runs from the least to the greatest value. They throw
// XQException "ZUMMinMax:Valor indefinido por imagen vacia" for an empty image.

/// The matrix of contacts, X and Y over the labels: entry (b, a) is the number of pairs of a pixel
/// with a and a neighbour with b. The diagonal is 0.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionNeighbour(const ZUMImage<ZUMLong>& labels,
                                                            const ZUMImage<ZUMBool>& connectivity);

/// The list of neighbours of each label: column x, with Y from 0 to 20, has their number in row 0
/// and their labels from row 1 on, in the order in which a sweep meets them. At most 19 are listed;
/// further ones are dropped.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionNeighbour2(const ZUMImage<ZUMLong>& labels,
                                                             const ZUMImage<ZUMBool>& connectivity);

/// The lengths of the frontiers in the order of those lists: row r of column x is the number of
/// pairs of a pixel with x and a neighbour with the label in row r of ZUMRegionNeighbour2. Row 0 is
/// 0.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionNeighbourFrontier2(
    const ZUMImage<ZUMLong>& labels, const ZUMImage<ZUMBool>& connectivity);
