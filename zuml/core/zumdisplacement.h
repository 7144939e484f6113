/// Displacement arrays: a structuring element or kernel as flat steps in one raster.
///
/// An element is an image whose region lies around the origin (0,0,0,0). Once per operation it is
/// turned into an array of signed offsets, in pixels of the raster that is then walked, and the
/// inner loop reads p[offset] without a coordinate. Such an array serves every raster with the same
/// block sizes and no other.
///
///   ZUMDisplacementArray neighbours;
///   neighbours.FromNonZeroPixels(image, ZUMCon8);
///   for (long long offset : neighbours) highest = std::max(highest, p[offset]);
///
/// What the `From...` members have in common:
/// - They empty the array, make room for every pixel of the element and fill in sweep order: lines,
///   planes, frames, channels of the element.
/// - The offset of the pixel (x, y, z, t) in channel c of the element, counted from the first
///   channel of its view, is target.Displacement(x, y, z, t, c), computed in 64 bits, so that it is
///   the true distance where an element is larger than the raster.
/// - The `Symmetric...` members negate the offsets, which visits the reflected element. Those that
///   negate channel by channel have an origin in each channel: the offset is that of the pixel in
///   channel 0, negated, and stays inside a channel. The others negate the whole offset, the
///   distance between channels with it.
/// - An element of which nothing is taken throws XQException "<member> Un elemento estructurante ha
///   de tener como mínimo un pixel" and leaves the array empty, unless a member allows it. Some
///   members throw under the name of another, given beside them.
///
/// Arrays are filled by the caller of an operation; its tasks only read them.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/pixeltypes.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumbasepoint.h"
#include "zuml/core/zumimage.h"

/// A step and the pixel of the element that it leads to.
struct ZUMDisplacementVector {
  long long offset;
  int x, y;
  int z, t;  ///< always 0

  friend bool operator==(const ZUMDisplacementVector&, const ZUMDisplacementVector&) = default;
};

/// A step and the value of the element's pixel: a weight, a height, a label.
template <ZUMOrderedPixel P>
struct ZUMDisplacementValue {
  long long offset;
  P value;

  friend bool operator==(const ZUMDisplacementValue&, const ZUMDisplacementValue&) = default;
};

/// A step and where the element's pixel lies. The element must outlive it.
template <ZUMOrderedPixel P>
struct ZUMDisplacementAddress {
  long long offset;
  const P* address;

  friend bool operator==(const ZUMDisplacementAddress&, const ZUMDisplacementAddress&) = default;
};

/// Points in order.
class ZUML_API ZUMPointList : public ZUMArray<ZUMBasePoint<int>> {
 public:
  /// The coordinates of the true pixels, in sweep order. There may be none.
  void FromNonZeroPixels(const ZUMImage<ZUMBool>& image);

  /// Reorders the points as ZUMDisplacementArray::Disarrange does.
  void Disarrange();
};

/// Steps alone: the neighbours of a flood, the pixels of a flat structuring element.
class ZUML_API ZUMDisplacementArray : public ZUMArray<long long> {
 public:
  /// Every pixel of the region, true or false.
  void FromPixels(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);
  /// The true pixels.
  void FromNonZeroPixels(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);
  /// The true pixels, negated channel by channel.
  void SymmetricFromNonZeroPixels(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);

  /// The pixels equal to `value`. Where there are none, the array is empty.
  template <ZUMDiscretePixel P>
  void FromEqualPixels(const ZUMRaster& target, const ZUMImage<P>& element,
                       std::type_identity_t<P> value);
  /// The same, negated channel by channel.
  template <ZUMDiscretePixel P>
  void SymmetricFromEqualPixels(const ZUMRaster& target, const ZUMImage<P>& element,
                                std::type_identity_t<P> value);

  // An element that slides from left to right: one pixel further, the In pixels enter its reach and
  // the Out pixels, seen from the position before, leave it, so that a running result reads these
  // only. Lines are those of the element's region.

  /// The true pixels that end a run of true pixels on the right: the last pixel of a line, or one
  /// with a false pixel on its right.
  void FromNonZeroPixelsL2RIn(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);
  /// The true pixels that begin a run of true pixels on the left: the first pixel of a line, or one
  /// with a false pixel on its left. Throws as ZUMDisplacementArray::FromNonZeroPixels.
  void FromNonZeroPixelsL2ROut(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);
  /// The same for the reflected element: the pixels of FromNonZeroPixelsL2ROut, negated.
  void SymmetricFromNonZeroPixelsL2RIn(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);
  /// The same for the reflected element: the pixels of FromNonZeroPixelsL2RIn, negated. Throws as
  /// ZUMDisplacementArray::FromNonZeroPixels.
  void SymmetricFromNonZeroPixelsL2ROut(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);

  /// The points in order, in channel 0. The list may be empty.
  void FromPointList(const ZUMRaster& target, const ZUMPointList& points);

  /// The pixels of a closed curve in the order of a walk along it. The curve is one pixel wide,
  /// runs around the origin and lies in the first channel and the plane Z = T = 0 of `path`. The
  /// walk starts at the first true pixel of its region right of the origin on the line Y = 0 and
  /// goes on to the first neighbour not visited yet in the order E, SE, S, SW, W, NW, N, NE (Y
  /// grows downwards), until there is none. Throws XQException "ZUMAddFrame: It is not allowed add
  /// a frame to an empty image", "SurroundPath: path start not found".
  void SurroundPath(const ZUMRaster& target, const ZUMImage<ZUMBool>& path);

  /// Keeps, in order, the offsets strictly above `limit`: with 0, the pixels that a forward sweep
  /// visits after the origin.
  void GreaterDisplacements(int limit);
  /// Keeps, in order, the offsets strictly below `limit`.
  void LessDisplacements(int limit);
  /// Brings the elements into a fixed order whose neighbours lay far apart before, so that a test
  /// that gives up at its first failure fails early: strides over the whole array come first, then
  /// strides over ever smaller parts of it.
  void Disarrange();
};

/// Steps with the element's X and Y, not negated in the symmetric form.
class ZUML_API ZUMDisplacementVectorArray : public ZUMArray<ZUMDisplacementVector> {
 public:
  /// The true pixels. Throws as ZUMDisplacementArray::FromNonZeroPixels.
  void FromNonZeroPixels(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);
  /// The true pixels, negated. Throws as ZUMDisplacementArray::SymmetricFromNonZeroPixels.
  void SymmetricFromNonZeroPixels(const ZUMRaster& target, const ZUMImage<ZUMBool>& element);

  // As in ZUMDisplacementArray.
  void GreaterDisplacements(int limit);
  void LessDisplacements(int limit);
};

/// Steps with the element's values. The errors name the class "ZUMDisplacementValueArray<PixT>",
/// whatever P is.
template <ZUMOrderedPixel P>
class ZUML_API ZUMDisplacementValueArray : public ZUMArray<ZUMDisplacementValue<P>> {
 public:
  /// Every pixel of the region.
  void FromPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// The pixels other than 0.
  void FromNonZeroPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// Every pixel of the region, negated channel by channel.
  void SymmetricFromPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// The pixels other than 0, negated channel by channel.
  void SymmetricFromNonZeroPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// The pixels above the threshold.
  void FromGreaterPixels(const ZUMRaster& target, const ZUMImage<P>& element, P threshold);
  /// The pixels at or above the threshold.
  void FromGreaterEqPixels(const ZUMRaster& target, const ZUMImage<P>& element, P threshold);

  // As in ZUMDisplacementArray.
  void GreaterDisplacements(int limit);
  void LessDisplacements(int limit);
  void Disarrange();
};

/// Steps with the addresses of the element's pixels: the element must outlive the array, and may
/// change its values meanwhile. The errors name the class "ZUMDisplacementAddressArray<PixT>",
/// whatever P is.
template <ZUMOrderedPixel P>
class ZUML_API ZUMDisplacementAddressArray : public ZUMArray<ZUMDisplacementAddress<P>> {
 public:
  /// Every pixel of the region.
  void FromPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// The pixels other than 0.
  void FromNonZeroPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// Every pixel of the region, negated.
  void SymmetricFromPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// The pixels other than 0, negated.
  void SymmetricFromNonZeroPixels(const ZUMRaster& target, const ZUMImage<P>& element);
  /// The pixels at or above the threshold.
  void FromGreaterEqPixels(const ZUMRaster& target, const ZUMImage<P>& element, P threshold);

  // As in ZUMDisplacementArray.
  void GreaterDisplacements(int limit);
  void LessDisplacements(int limit);
  void Disarrange();
};
