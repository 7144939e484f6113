/// The samples of a TIFF file as they stand in it.
#pragma once

#include "zuml/core/zumimage.h"
#include "zuml/io/detail/tifffile.h"

namespace zuml_detail {

/// Reads the directory and all samples of a file that was opened without its directory. Throws what
/// ZUMReadTIFF throws behind the opening.
ZUMGenericImage ReadSamples(const TiffFile& file, const char* path);

}  // namespace zuml_detail
