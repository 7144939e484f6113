/// A pixel of a neighbourhood as one small record.
#pragma once

#include "zuml/core/export.h"

/// The offset of a pixel in its raster, in pixels, and the value that goes with it: 16 bytes for
/// every pixel type up to `double`, copied as a whole.
template <class T>
struct LocalPosition {
  long long offset;
  T value;
};
