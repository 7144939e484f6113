#include "zuml/core/zumimage.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ostream>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumsweep.h"

namespace {

// Fills the image's region from packed bytes; runs keep their order and leave no gaps.
void ReadPackedPixels(const ZUMGenericImage& image, const void* data) {
  const char* from = static_cast<const char*>(data);
  for (ZUMGenericSweep1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    char* start = static_cast<char*>(sweep.GetStart1());
    const std::ptrdiff_t bytes = static_cast<char*>(sweep.GetEnd1()) - start + image.GetPixSz();
    std::memmove(start, from, static_cast<std::size_t>(bytes));
    from += bytes;
  }
}

template <class PixT>
const ZUMRaster& RequirePixelType(const ZUMRaster& raster) {
  if (raster.GetType() != ZUMPixelTraits<PixT>::kType) {
    throw XQException("Type Error on construction ZUMImage<%s>", ZUMPixelTraits<PixT>::kName);
  }
  return raster;
}

template <class PixT>
void RequirePixel(const ZUMImage<PixT>& image, int x, int y, int z, int t, int c) {
  if (!image.InP(x, y, z, t) || c >= image.GetCSz()) {
    throw XQException("Pixel coordinates out of image (%d,%d,%d,%d,%d)", x, y, z, t, c);
  }
}

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

ZUMGenericImage::ZUMGenericImage() : ZUMGenericImage(ZUMEmptyRoD, 1, ZUMBoolPixel) {}

ZUMGenericImage::ZUMGenericImage(const ZUMRoDRef& rod, int csz, ZUMPixelType type, const void* data)
    : ZUMRoDRef(rod), ZUMRaster(rod.RoD(), csz, type) {
  if (data) ReadPackedPixels(*this, data);
}

ZUMGenericImage::ZUMGenericImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz,
                                 ZUMPixelType type, const void* data)
    : ZUMRoDRef(rod), ZUMRaster(rod.RoD(), frame, csz, type) {
  if (data) ReadPackedPixels(*this, data);
}

ZUMGenericImage::ZUMGenericImage(const ZUMRoDRef& rod, const ZUMRaster& raster)
    : ZUMRoDRef(rod), ZUMRaster(raster) {}

ZUMGenericImage& ZUMGenericImage::operator=(const ZUMGenericImage& other) {
  if (this != &other) {
    ZUMRaster::operator=(other);
    ZUMRoDRef::operator=(other);
  }
  return *this;
}

template <class PixT>
ZUMImage<PixT>::ZUMImage() : ZUMGenericImage(ZUMEmptyRoD, 1, ZUMPixelTraits<PixT>::kType) {}

template <class PixT>
ZUMImage<PixT>::ZUMImage(const ZUMRoDRef& rod, int csz, PixT value)
    : ZUMGenericImage(rod, csz, ZUMPixelTraits<PixT>::kType) {
  SetPixels(value);
}

template <class PixT>
ZUMImage<PixT>::ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, PixT value)
    : ZUMGenericImage(rod, frame, csz, ZUMPixelTraits<PixT>::kType) {
  SetPixels(value);
}

template <class PixT>
ZUMImage<PixT>::ZUMImage(const ZUMRoDRef& rod, int csz, Data data)
    : ZUMGenericImage(rod, csz, ZUMPixelTraits<PixT>::kType, data.pixels) {}

template <class PixT>
ZUMImage<PixT>::ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, Data data)
    : ZUMGenericImage(rod, frame, csz, ZUMPixelTraits<PixT>::kType, data.pixels) {}

template <class PixT>
ZUMImage<PixT>::ZUMImage(const ZUMRoDRef& rod, const ZUMRaster& raster)
    : ZUMGenericImage(rod, RequirePixelType<PixT>(raster)) {}

template <class PixT>
void ZUMImage<PixT>::Clean() {
  *this = ZUMImage();
}

template <class PixT>
PixT ZUMImage<PixT>::GetPixel(int x, int y, int z, int t, int c) const {
  RequirePixel(*this, x, y, z, t, c);
  return (*this)(x, y, z, t, c);
}

template <class PixT>
void ZUMImage<PixT>::SetPixel(int x, int y, int z, int t, int c, PixT value) {
  RequirePixel(*this, x, y, z, t, c);
  (*this)(x, y, z, t, c) = value;
}

template <class PixT>
void ZUMImage<PixT>::SetPixels(const ZUMImage& other) {
  ZUMForEachRun(
      *this, [](PixT* to, const PixT* from, std::ptrdiff_t n) { ZUMCopyRun(to, from, n); }, *this,
      other);
}

template <class PixT>
void ZUMImage<PixT>::SetPixels(PixT value) {
  ZUMForEachRun(
      *this, [value](PixT* to, std::ptrdiff_t n) { std::fill(to, to + n, value); }, *this);
}

template <class PixT>
void ZUMImage<PixT>::ReadPixels(const PixT* data) {
  ReadPackedPixels(*this, data);
}

template <class PixT>
ZUMImage<PixT> ZUMImage<PixT>::Channel(int c) const {
  if (c < 0 || c >= GetCSz()) {
    throw XQException("ZUMImage<PixT>::Channel: channel %d out of image", c);
  }
  return ZUMImage(*this, ZUMRaster(*this, c, 1));
}

template <class PixT>
ZUMImage<PixT> ZUMImage<PixT>::Channels(int first, int last) const {
  if (first < 0 || last >= GetCSz()) {
    throw XQException("ZUMImage<PixT>::Channels: channel %d out of image",
                      first < 0 ? first : last);
  }
  if (first > last) {
    throw XQException("ZUMImage<PixT>::Channels: empty channels interval [%d,%d]", first, last);
  }
  return ZUMImage(*this, ZUMRaster(*this, first, last - first + 1));
}

template <class PixT>
ZUMImage<PixT> ZUMImage<PixT>::Cut(const ZUMRoDRef& rod) const {
  return ZUMImage(Intersection(*this, rod), *this);
}

template <class PixT>
ZUMImage<PixT> ZUMImage<PixT>::Row(int y) const {
  ZUMRect box = Rect();
  box.begin.y = box.end.y = y;
  return Cut(box);
}

template <class PixT>
ZUMImage<PixT> ZUMImage<PixT>::Plane(int z) const {
  ZUMRect box = Rect();
  box.begin.z = box.end.z = z;
  return Cut(box);
}

template <class PixT>
ZUMImage<PixT> ZUMImage<PixT>::Frame(int t) const {
  ZUMRect box = Rect();
  box.begin.t = box.end.t = t;
  return Cut(box);
}

template <ZUMAnyPixel PixT>
ZUMImage<PixT> ZUMCopy(const ZUMImage<PixT>& image) {
  ZUMGenericImage copy(image, image.GetCSz(), ZUMPixelTraits<PixT>::kType);
  ZUMImage<PixT> result = copy;
  result.SetPixels(image);
  return result;
}

#define ZUML_INSTANTIATE(PIX)   \
  template class ZUMImage<PIX>; \
  template ZUML_API ZUMImage<PIX> ZUMCopy<PIX>(const ZUMImage<PIX>&);
ZUML_ALL_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

ZUMImage<ZUMBool> ZUMNullImageBool() { return {}; }
ZUMImage<ZUMByte> ZUMNullImageByte() { return {}; }
ZUMImage<ZUMShort> ZUMNullImageShort() { return {}; }
ZUMImage<ZUMLong> ZUMNullImageLong() { return {}; }
ZUMImage<ZUMSReal> ZUMNullImageSReal() { return {}; }
ZUMImage<ZUMReal> ZUMNullImageReal() { return {}; }
ZUMImage<ZUMComplex> ZUMNullImageComplex() { return {}; }
ZUMImage<ZUMPointer> ZUMNullImagePointer() { return {}; }

std::ostream& operator<<(std::ostream& stream, const ZUMGenericImage& image) {
  stream << "<Im" << PixelTypeName(image.GetType()) << ':' << static_cast<const void*>(&image);
  PrintRegion(stream, image.RoD());
  return stream << 'C' << image.GetCSz() << '>';
}
