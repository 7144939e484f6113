#include "zuml/core/velombinding.h"

#include <ostream>
#include <typeinfo>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/zumrodrect.h"

namespace {

const char* PixelTypeName(ZUMPixelType type) {
  switch (type) {
#define ZUML_NAME_CASE(TYPE) \
  case TYPE##Pixel:          \
    return &#TYPE[3];  // without the prefix: "Bool", "Byte", ...
    ZUML_ALL_TYPES(ZUML_NAME_CASE)
#undef ZUML_NAME_CASE
  }
  return "Unknown";
}

void PrintRegion(std::ostream& stream, const ZUMRegionOfDefinition& rod) {
  if (!zuml_detail::IsBox(rod)) {
    stream << "RoD Shape unknown";
    return;
  }
  const ZUMBasePoint<int> b = rod.Begin(), e = rod.End();
  if (b.t != 0 || e.t != 0) {
    stream << '(' << b.x << ',' << b.y << ',' << b.z << ',' << b.t << ")-(" << e.x << ',' << e.y
           << ',' << e.z << ',' << e.t << ')';
  } else if (b.z != 0 || e.z != 0) {
    stream << '(' << b.x << ',' << b.y << ',' << b.z << ")-(" << e.x << ',' << e.y << ',' << e.z
           << ')';
  } else if (b.y != 0 || e.y != 0) {
    stream << '(' << b.x << ',' << b.y << ")-(" << e.x << ',' << e.y << ')';
  } else {
    stream << '[' << b.x << ',' << e.x << ']';
  }
}

}  // namespace

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

void ZUMGenericImagePrint(std::ostream& stream, const ZUMGenericImage& image) {
  stream << "<Im" << PixelTypeName(image.GetType()) << ':' << static_cast<const void*>(&image);
  PrintRegion(stream, image.RoD());
  stream << 'C' << image.GetCSz() << '>';
}

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
