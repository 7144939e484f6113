/// Labelling of plane connectivities by runs.
#pragma once

#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// Which of the two plane neighbourhoods a connectivity image stands for, whatever its centre.
enum class PlaneNeighbours : int { kNone, kFour, kEight };
PlaneNeighbours FindPlaneNeighbours(const ZUMImage<ZUMBool>& connectivity);

/// Writes the connected components of the true pixels to `labels`, an image over the same region
/// with the same channels: `next`, next + 1, ... by their first pixels in sweep order, 0 elsewhere.
/// Returns the label after the last.
///
/// Lines become words of bits. In a word, the starts of runs that lie under a run of the line above
/// (or above which one starts) are found at once, and the number of a run is the count of starts
/// before it, so that the work for a pair of touching runs has no branch but the forest's. The root
/// of a tree is its first run; so roots are numbered in sweep order.
ZUMLong LabelByRuns(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMLong>& labels,
                    PlaneNeighbours neighbours, ZUMLong next);

}  // namespace zuml_detail
