#pragma once

/// The whole library. A program that is compiled often does better to include the headers that it
/// uses. This file is written by `scripts/check-headers --fix`.

// core: regions, rasters, images, sweeps, the task frame, containers, neighbourhoods
#include "zuml/core/export.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/localposition.h"
#include "zuml/core/nodeiterator.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/pixeltypes.h"
#include "zuml/core/scratch.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/typenames.h"
#include "zuml/core/velombinding.h"
#include "zuml/core/xqcircularlist.h"
#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmatrix.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/xqsimplelist.h"
#include "zuml/core/xqtask.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumbasepoint.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/core/zumimage.h"
#include "zuml/core/zumkernel.h"
#include "zuml/core/zumraster.h"
#include "zuml/core/zumrod.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/core/zumsweep.h"
#include "zuml/core/zumsweeprect.h"

// algebra: arithmetic, comparison, logic, functions, lookup tables, frames, statistics
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/comparison.h"
#include "zuml/algebra/conditional.h"
#include "zuml/algebra/division.h"
#include "zuml/algebra/extrema.h"
#include "zuml/algebra/frames.h"
#include "zuml/algebra/functions.h"
#include "zuml/algebra/histogram.h"
#include "zuml/algebra/lineproducts.h"
#include "zuml/algebra/logic.h"
#include "zuml/algebra/lut.h"
#include "zuml/algebra/medianmasked.h"
#include "zuml/algebra/moments.h"
#include "zuml/algebra/neighbourcount.h"
#include "zuml/algebra/norms.h"
#include "zuml/algebra/product.h"
#include "zuml/algebra/projections.h"
#include "zuml/algebra/readline.h"
#include "zuml/algebra/statistics.h"
#include "zuml/algebra/tobyte.h"

// filters: convolution, smoothing, rank and edge filters
#include "zuml/filters/accumulation.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/convolutionex.h"
#include "zuml/filters/corcoef.h"
#include "zuml/filters/localstatistics.h"
#include "zuml/filters/maskmaxvol.h"

// geometry: geometric transforms and colour spaces
#include "zuml/geometry/coordinates.h"
#include "zuml/geometry/gridmoves.h"
#include "zuml/geometry/scaling.h"
#include "zuml/geometry/warp.h"

// io: image files
#include "zuml/io/eps.h"
#include "zuml/io/finite.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/readimage.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/textimage.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"
#include "zuml/io/zumimagewriter.h"

// morphology: dilation, erosion, reconstruction, area filters, thinning
#include "zuml/morphology/boxmorphology.h"
#include "zuml/morphology/colourdifference.h"
#include "zuml/morphology/directionalmorphology.h"
#include "zuml/morphology/geodesicdilation.h"
#include "zuml/morphology/labelledmorphology.h"
#include "zuml/morphology/mathmorph.h"
#include "zuml/morphology/pixelpairs.h"
#include "zuml/morphology/winnermorphology.h"

// threshold: global and local thresholds
#include "zuml/threshold/histogramthresholds.h"
#include "zuml/threshold/otsu.h"
#include "zuml/threshold/sigmoid.h"
#include "zuml/threshold/thresholding.h"

// regions: labelling, measurement, blobs, contours, distance maps, skeletons
