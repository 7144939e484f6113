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

// filters: convolution, smoothing, rank and edge filters

// geometry: geometric transforms and colour spaces

// io: image files

// morphology: dilation, erosion, reconstruction, area filters, thinning

// threshold: global and local thresholds

// regions: labelling, measurement, blobs, contours, distance maps, skeletons
