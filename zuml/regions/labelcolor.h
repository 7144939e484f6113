/// Label images made visible.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// A picture of the labels in three channels: red, green, blue. The least value of the image takes
/// the first colour of a fixed palette of 10002, the next value the second, and so on, from the
/// first again after the last; 0 is black.
///
/// It is a lookup by ZUMLut, on the calling thread, and takes labels of one channel. Throws
/// XQException "ZUMMin:Valor indefinido por imagen vacia" for an empty image.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMLabelColor(const ZUMImage<ZUMLong>& labels);
