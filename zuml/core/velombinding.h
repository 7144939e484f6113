/// The plain, undecorated names that the VeLoM scripting binding links, and its pixel helpers.
#pragma once

#include <iosfwd>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

extern "C" {

/// A new box, linked once: the caller holds that reference and drops it with Unlink.
ZUML_API ZUMRegionOfDefinition* ZUMVeLoMCreateRoDRect(int bx, int by, int bz, int bt, int ex,
                                                      int ey, int ez, int et);

ZUML_API int ZUMGenericImageBeginX(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageBeginY(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageBeginZ(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageBeginT(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageEndX(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageEndY(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageEndZ(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageEndT(const ZUMGenericImage& image);
ZUML_API int ZUMGenericImageNPixels(const ZUMGenericImage& image);
/// The channels of the view.
ZUML_API int ZUMGenericImageCSz(const ZUMGenericImage& image);
ZUML_API ZUMPixelType ZUMGenericImagePixelType(const ZUMGenericImage& image);
ZUML_API ZUMRoDRef ZUMGenericImageRoD(const ZUMGenericImage& image);
/// The block's first byte.
ZUML_API void* ZUMGenericImageGetData(const ZUMGenericImage& image);
/// Writes "<Im", the pixel type's name, ":", the object's address, the region, "C", the number of
/// channels and ">", without a line end.
ZUML_API void ZUMGenericImagePrint(std::ostream& stream, const ZUMGenericImage& image);
}

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

/// Whether the image's region holds the point.
template <ZUMValuePixel PixT>
ZUML_API bool VLMInP(const ZUMImage<PixT>& image, int x, int y, int z, int t);

/// ZUMImage::SetPixel with the value first, with its error.
template <ZUMValuePixel PixT>
ZUML_API void VLMSetPixel(std::type_identity_t<PixT> value, ZUMImage<PixT>& image, int x, int y,
                          int z, int t, int c);
