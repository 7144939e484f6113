/// Images whose pixels are their own coordinates.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Four channels over the region: X, Y, Z and T of each pixel.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMCoorsImage(const ZUMRoDRef& rod);

/// One channel over the region: one of the coordinates of each pixel.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMXsImage(const ZUMRoDRef& rod);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMYsImage(const ZUMRoDRef& rod);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMZsImage(const ZUMRoDRef& rod);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMTsImage(const ZUMRoDRef& rod);
