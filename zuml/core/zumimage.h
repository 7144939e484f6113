/// Images: a region of definition plus a raster.
///
/// What shares pixels and what copies them:
/// - Copying, assigning and passing an image shares region and raster, and so does
///   `ZUMImage<P>(image)` where the image has the pixel type P already: C++ copies an object of the
///   same type, it does not convert it. So do the views (Channel, Channels, Cut, Row, Plane, Frame)
///   and the step from a ZUMGenericImage to its typed image.
/// - Conversion of a ZUMImage to another pixel type makes a new raster.
/// - ZUMCopy always makes a new raster. Code that converts to a pixel type given as a parameter,
///   and whose result must share with nothing, calls it where the two types are equal.
/// - The constructors with a value or with data make a new raster; SetPixels writes into the one
///   that is there.
#pragma once

#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/pixeltypes.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumbasepoint.h"
#include "zuml/core/zumraster.h"
#include "zuml/core/zumrod.h"

template <class PixT>
class ZUML_API ZUMImage;

/// With ZUML_CHECKS defined, the pixel operator of ZUMImage tests its coordinates.
///
/// The choice is a template argument, so that the operator with the test and the one without are
/// two functions: sources that differ in it can be linked, and the library, which is compiled
/// without, never calls the tested one. What holds for the operator does not hold for a program's
/// own inline functions and templates that call it; define ZUML_CHECKS for a whole program.
#ifdef ZUML_CHECKS
#define ZUML_CHECK_PIXELS true
#else
#define ZUML_CHECK_PIXELS false
#endif

namespace zuml_detail {

/// Throws XQException "pixel (%d,%d,%d,%d), channel %d: outside of the image
/// (%d,%d,%d,%d)-(%d,%d,%d,%d), %d channels", or "pixel ...: the image is empty, ...".
[[noreturn]] inline void ThrowOutside(const ZUMRoDRef& rod, int csz, const ZUMBasePoint<int>& p,
                                      int c) {
  const ZUMBasePoint<int> b = rod.Begin(), e = rod.End();
  throw XQException("pixel (%d,%d,%d,%d), channel %d: %s (%d,%d,%d,%d)-(%d,%d,%d,%d), %d channels",
                    p.x, p.y, p.z, p.t, c,
                    rod.EmptyP() ? "the image is empty," : "outside of the image", b.x, b.y, b.z,
                    b.t, e.x, e.y, e.z, e.t, csz);
}

}  // namespace zuml_detail

/// An image whose pixel type is known at run time only. It is its region's handle and its raster,
/// and goes wherever one of the two is taken. Every point of the region lies inside the raster.
class ZUML_API ZUMGenericImage : public ZUMRoDRef, public ZUMRaster {
 public:
  /// An empty image of one channel and type ZUMBoolPixel.
  ZUMGenericImage();
  /// A new raster over the region; its pixels are read from `data` in sweep order (channels, then
  /// T, Z, Y and X innermost, without gaps), or stay undefined if it is null.
  ZUMGenericImage(const ZUMRoDRef& rod, int csz, ZUMPixelType type, const void* data = nullptr);
  /// The same on a raster widened by a frame, whose pixels stay undefined.
  ZUMGenericImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, ZUMPixelType type,
                  const void* data = nullptr);
  /// Shares the raster.
  ZUMGenericImage(const ZUMRoDRef& rod, const ZUMRaster& raster);
  ZUMGenericImage(const ZUMGenericImage&) = default;
  ZUMGenericImage& operator=(const ZUMGenericImage& other);

  /// A typed image that shares region and raster. Throws XQException "Type Error on construction
  /// ZUMImage<ZUMByte>" (and the like) if the raster holds another type.
  template <ZUMAnyPixel P>
  operator ZUMImage<P>() const {
    return ZUMImage<P>(*this, *this);
  }
};

/// An image of pixels of type PixT.
template <class PixT>
class ZUML_API ZUMImage : public ZUMGenericImage {
  static_assert(ZUMAnyPixel<PixT>, "ZUMImage is offered for the eight pixel types");

 public:
  using PixelType = PixT;

  /// An empty image of one channel: what stands for "no image" in optional arguments.
  ZUMImage();
  /// A new raster, all pixels set to `value`.
  ZUMImage(const ZUMRoDRef& rod, int csz, PixT value);
  /// The same on a raster widened by a frame, whose pixels stay undefined.
  ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, PixT value);
  // A template, as whatever takes a box here: eight ints in braces make a region as well as a box,
  // and the region is then taken.
  template <std::same_as<ZUMRect> Box = ZUMRect>
  ZUMImage(const Box& box, int csz, PixT value) : ZUMImage(ZUMRoDRef(box), csz, value) {}
  /// A new raster with the pixels from `data` in sweep order, or undefined if it is null. A literal
  /// 0 is a pixel value, never a null `data`.
  template <std::same_as<PixT> Q>
  ZUMImage(const ZUMRoDRef& rod, int csz, const Q* data) : ZUMImage(rod, csz, Data{data}) {}
  template <std::same_as<PixT> Q>
  ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, const Q* data)
      : ZUMImage(rod, frame, csz, Data{data}) {}
  template <std::same_as<PixT> Q, std::same_as<ZUMRect> Box = ZUMRect>
  ZUMImage(const Box& box, int csz, const Q* data) : ZUMImage(ZUMRoDRef(box), csz, Data{data}) {}
  /// A new raster with undefined pixels, for images whose pixels are all written next.
  // Templates, since a literal 0 would convert to a plain std::nullptr_t parameter.
  template <std::same_as<std::nullptr_t> Null>
  requires(!std::is_pointer_v<PixT>) ZUMImage(const ZUMRoDRef& rod, int csz, Null)
      : ZUMImage(rod, csz, Data{nullptr}) {}
  template <std::same_as<std::nullptr_t> Null>
  requires(!std::is_pointer_v<PixT>)
      ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, Null)
      : ZUMImage(rod, frame, csz, Data{nullptr}) {}
  // Pixels of another type are not data; without these, a pointer would become the bool value true.
  template <class Q>
  requires(!std::same_as<Q, PixT> && !std::is_pointer_v<PixT>)
      ZUMImage(const ZUMRoDRef& rod, int csz, const Q* data)
  = delete;
  template <class Q>
  requires(!std::same_as<Q, PixT> && !std::is_pointer_v<PixT>)
      ZUMImage(const ZUMRect& box, int csz, const Q* data)
  = delete;
  template <class Q>
  requires(!std::same_as<Q, PixT> && !std::is_pointer_v<PixT>)
      ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, const Q* data)
  = delete;
  /// Shares the raster. Throws XQException "Type Error on construction ZUMImage<ZUMByte>" (and the
  /// like) if it holds another type.
  ZUMImage(const ZUMRoDRef& rod, const ZUMRaster& raster);
  ZUMImage(const ZUMImage&) = default;
  ZUMImage& operator=(const ZUMImage& other) = default;

  /// Makes this a default image; the region and the raster are released.
  void Clean();

  /// The pixel at the coordinates. They are not tested, unless the program defines ZUML_CHECKS
  /// before it includes the library: then a point outside the region, also one of a frame, or a
  /// channel that is not there throws XQException, whose text names the point and the box (see
  /// zuml_detail::ThrowOutside).
  template <bool kChecked = ZUML_CHECK_PIXELS>
  PixT& operator()(int x, int y = 0, int z = 0, int t = 0, int c = 0) const {
    if constexpr (kChecked) {
      if (!InP(x, y, z, t) || c < 0 || c >= GetCSz()) {
        zuml_detail::ThrowOutside(*this, GetCSz(), {x, y, z, t}, c);
      }
    }
    return *static_cast<PixT*>(PixelAddress(x, y, z, t, c));
  }
  template <bool kChecked = ZUML_CHECK_PIXELS>
  PixT& operator()(const ZUMBasePoint<int>& p, int c = 0) const {
    return this->template operator()<kChecked>(p.x, p.y, p.z, p.t, c);
  }
  template <bool kChecked = ZUML_CHECK_PIXELS>
  PixT& operator()(const ZUMBasePoint2D<int>& p, int c = 0) const {
    return this->template operator()<kChecked>(p.x, p.y, 0, 0, c);
  }

  /// The tested forms. They throw XQException "Pixel coordinates out of image (%d,%d,%d,%d,%d)" for
  /// a point outside the region or a channel beyond the last.
  PixT GetPixel(int x, int y, int z, int t, int c) const;
  PixT GetPixel(const ZUMBasePoint<int>& p, int c) const { return GetPixel(p.x, p.y, p.z, p.t, c); }
  void SetPixel(int x, int y, int z, int t, int c, PixT value);
  void SetPixel(const ZUMBasePoint<int>& p, int c, PixT value) {
    SetPixel(p.x, p.y, p.z, p.t, c, value);
  }

  /// Sets the pixels of this image's region from the same coordinates of `other`, whose raster must
  /// cover the region and the channels; its own region is not consulted. The two may overlap in
  /// memory: each run, in sweep order, is read whole before it is written.
  void SetPixels(const ZUMImage& other);
  /// Sets the pixels from packed data in sweep order.
  template <std::same_as<PixT> Q>
  void SetPixels(const Q* data) {
    ReadPixels(data);
  }
  template <class Q>
  requires(!std::same_as<Q, PixT> &&
           !std::is_pointer_v<PixT>) void SetPixels(const Q* data) = delete;
  void SetPixels(PixT value);

  /// The view of one channel. Throws XQException "ZUMImage<PixT>::Channel: channel %d out of
  /// image".
  ZUMImage Channel(int c) const;
  /// The view of the channels first to last. Throws XQException "ZUMImage<PixT>::Channels: channel
  /// %d out of image" or "ZUMImage<PixT>::Channels: empty channels interval [%d,%d]".
  ZUMImage Channels(int first, int last) const;
  /// The part of the image inside the region, on the same raster.
  ZUMImage Cut(const ZUMRoDRef& rod) const;
  template <std::same_as<ZUMRect> Box = ZUMRect>
  ZUMImage Cut(const Box& box) const {
    return Cut(ZUMRoDRef(box));
  }
  /// The part at one Y, Z or T.
  ZUMImage Row(int y) const;
  ZUMImage Plane(int z) const;
  ZUMImage Frame(int t) const;

  /// A new image with a raster of its own and the pixels converted: a number to bool is value != 0;
  /// a floating value to an integer is truncated toward zero and keeps the low bits (NaN, and what
  /// 64 bits do not hold, give 0); a complex value becomes its magnitude sqrt(re*re + im*im)
  /// truncated to a 32-bit integer, then the target type. Called by name, `image.operator
  /// ZUMImage<P>()`, it copies to the image's own type too; `ZUMImage<P>(image)` shares there.
  /// Tasks: CTaskConvert.
  template <ZUMValuePixel Q>
  requires ZUMValuePixel<PixT>
  operator ZUMImage<Q>() const;
  // A typed image is a generic image as well, whose conversion shares. Both are visible; the one
  // above is taken, since its constraint is the stricter one. Pointers are not numbers. The
  // inherited conversion, which shares, is for generic images only.
  template <ZUMAnyPixel Q>
  requires(!ZUMValuePixel<PixT> || !ZUMValuePixel<Q>) operator ZUMImage<Q>() const = delete;

 private:
  // Tells data from a value in the constructors that do the work.
  struct Data {
    const PixT* pixels;
  };
  ZUMImage(const ZUMRoDRef& rod, int csz, Data data);
  ZUMImage(const ZUMRoDRef& rod, const ZUMRect& frame, int csz, Data data);
  void ReadPixels(const PixT* data);
};

/// Default images, the "no image" of optional arguments.
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMNullImageBool();
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMNullImageByte();
[[nodiscard]] ZUML_API ZUMImage<ZUMShort> ZUMNullImageShort();
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMNullImageLong();
[[nodiscard]] ZUML_API ZUMImage<ZUMSReal> ZUMNullImageSReal();
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMNullImageReal();
[[nodiscard]] ZUML_API ZUMImage<ZUMComplex> ZUMNullImageComplex();
[[nodiscard]] ZUML_API ZUMImage<ZUMPointer> ZUMNullImagePointer();

/// A new image over the same region with the same channels and a raster of its own, whatever the
/// operand shares; a frame is not copied.
template <ZUMAnyPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMCopy(const ZUMImage<PixT>& image);

/// Writes "<Im", the pixel type, the object's address, the region and the number of channels.
ZUML_API std::ostream& operator<<(std::ostream& stream, const ZUMGenericImage& image);
