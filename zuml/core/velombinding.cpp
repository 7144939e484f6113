#include "zuml/core/velombinding.h"

#include "zuml/core/zumrodrect.h"

ZUMRegionOfDefinition* ZUMVeLoMCreateRoDRect(int bx, int by, int bz, int bt, int ex, int ey, int ez,
                                             int et) {
  auto* rod = new ZUMRoDRect(bx, by, bz, bt, ex, ey, ez, et);
  rod->Link();
  return rod;
}

int ZUMGenericImageBeginX(const ZUMGenericImage& image) { return image.BeginX(); }
int ZUMGenericImageBeginY(const ZUMGenericImage& image) { return image.BeginY(); }
int ZUMGenericImageBeginZ(const ZUMGenericImage& image) { return image.BeginZ(); }
int ZUMGenericImageBeginT(const ZUMGenericImage& image) { return image.BeginT(); }
int ZUMGenericImageEndX(const ZUMGenericImage& image) { return image.EndX(); }
int ZUMGenericImageEndY(const ZUMGenericImage& image) { return image.EndY(); }
int ZUMGenericImageEndZ(const ZUMGenericImage& image) { return image.EndZ(); }
int ZUMGenericImageEndT(const ZUMGenericImage& image) { return image.EndT(); }
int ZUMGenericImageNPixels(const ZUMGenericImage& image) { return image.NPixels(); }
int ZUMGenericImageCSz(const ZUMGenericImage& image) { return image.GetCSz(); }
ZUMPixelType ZUMGenericImagePixelType(const ZUMGenericImage& image) { return image.GetType(); }
ZUMRoDRef ZUMGenericImageRoD(const ZUMGenericImage& image) { return image; }
void* ZUMGenericImageGetData(const ZUMGenericImage& image) { return image.GetData(); }

void ZUMGenericImagePrint(std::ostream& stream, const ZUMGenericImage& image) { stream << image; }

template <ZUMValuePixel PixT>
bool VLMInP(const ZUMImage<PixT>& image, int x, int y, int z, int t) {
  return image.InP(x, y, z, t);
}

template <ZUMValuePixel PixT>
void VLMSetPixel(std::type_identity_t<PixT> value, ZUMImage<PixT>& image, int x, int y, int z,
                 int t, int c) {
  image.SetPixel(x, y, z, t, c, value);
}

#define ZUML_INSTANTIATE(PIX)                                              \
  template ZUML_API bool VLMInP(const ZUMImage<PIX>&, int, int, int, int); \
  template ZUML_API void VLMSetPixel<PIX>(PIX, ZUMImage<PIX>&, int, int, int, int, int);
ZUML_VALUE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
