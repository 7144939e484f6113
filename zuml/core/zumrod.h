/// Regions of definition: the sets of coordinates at which images have pixels, and the counted
/// handle that images, tasks and results hold them through.
#pragma once

#include <atomic>
#include <cstdint>

#include "zuml/core/export.h"
#include "zuml/core/pixeltypes.h"
#include "zuml/core/zumbasepoint.h"

class ZUMRaster;
template <class PixT>
class ZUML_API ZUMImage;
template <int N>
class ZUML_API ZUMGenericSweep;
template <int N>
class ZUML_API ZUMGenericSweepY;
template <int N>
class ZUML_API ZUMGenericSweepCoords;
template <int N>
class ZUML_API ZUMGenericInvSweep;
template <int N>
class ZUML_API ZUMGenericInvSweepCoords;
template <int N>
class ZUML_API ZUMGenericContinuousSweep;

/// A set of points (x, y, z, t) with integer coordinates. A region does not change after it is
/// made: operations that derive a region return a new object, whose reference count is 0 and which
/// the caller gives to a ZUMRoDRef at once.
class ZUML_API ZUMRegionOfDefinition {
 public:
  ZUMRegionOfDefinition() = default;
  ZUMRegionOfDefinition& operator=(const ZUMRegionOfDefinition&) = delete;
  virtual ~ZUMRegionOfDefinition();

  /// Non-zero if the region holds no point.
  virtual int EmptyP() const = 0;
  /// The bounding box.
  virtual ZUMRect Rect() const = 0;
  virtual ZUMBasePoint<int> Begin() const = 0;
  virtual int BeginX() const = 0;
  virtual int BeginY() const = 0;
  virtual int BeginZ() const = 0;
  virtual int BeginT() const = 0;
  virtual ZUMBasePoint<int> End() const = 0;
  virtual int EndX() const = 0;
  virtual int EndY() const = 0;
  virtual int EndZ() const = 0;
  virtual int EndT() const = 0;
  /// Number of points; 0 if empty.
  virtual int NPixels() const = 0;
  virtual bool InP(int x, int y, int z, int t) const = 0;

  virtual ZUMRegionOfDefinition* Intersection(const ZUMRegionOfDefinition& other) const = 0;
  virtual ZUMRegionOfDefinition* Union(const ZUMRegionOfDefinition& other) const = 0;
  /// The region with its low sides moved by (bx, by, bz, bt) and its high sides by (ex, ey, ez,
  /// et). Sides that would leave the 32-bit coordinates stop at their ends.
  virtual ZUMRegionOfDefinition* DisplaceSides(int bx, int by, int bz, int bt, int ex, int ey,
                                               int ez, int et) const = 0;
  virtual ZUMRegionOfDefinition* Translate(int x, int y, int z, int t) const = 0;
  /// Mirror through the origin: on all four axes, or on one.
  virtual ZUMRegionOfDefinition* Symmetry() const = 0;
  virtual ZUMRegionOfDefinition* SymmetryX() const = 0;
  virtual ZUMRegionOfDefinition* SymmetryY() const = 0;
  virtual ZUMRegionOfDefinition* SymmetryZ() const = 0;
  virtual ZUMRegionOfDefinition* SymmetryT() const = 0;
  /// Rotation about an axis by a whole number of degrees.
  virtual ZUMRegionOfDefinition* RotateX(int angle) const = 0;
  virtual ZUMRegionOfDefinition* RotateY(int angle) const = 0;
  virtual ZUMRegionOfDefinition* RotateZ(int angle) const = 0;
  virtual ZUMRegionOfDefinition* RotateT(int angle) const = 0;
  /// Same class and same stored values; two empty boxes with different values are not equal.
  virtual bool operator==(const ZUMRegionOfDefinition& other) const = 0;

  // Each sets a sweep over the rasters up; the sweep objects' constructors call them.
  virtual void Sweep1(ZUMGenericSweep<1>& sweep, const ZUMRaster& r1) const = 0;
  virtual void Sweep2(ZUMGenericSweep<2>& sweep, const ZUMRaster& r1,
                      const ZUMRaster& r2) const = 0;
  virtual void Sweep3(ZUMGenericSweep<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                      const ZUMRaster& r3) const = 0;
  virtual void Sweep4(ZUMGenericSweep<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                      const ZUMRaster& r3, const ZUMRaster& r4) const = 0;
  virtual void Sweep5(ZUMGenericSweep<5>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                      const ZUMRaster& r3, const ZUMRaster& r4, const ZUMRaster& r5) const = 0;
  virtual void SweepY1(ZUMGenericSweepY<1>& sweep, const ZUMRaster& r1) const = 0;
  virtual void SweepY2(ZUMGenericSweepY<2>& sweep, const ZUMRaster& r1,
                       const ZUMRaster& r2) const = 0;
  virtual void SweepY3(ZUMGenericSweepY<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                       const ZUMRaster& r3) const = 0;
  virtual void SweepY4(ZUMGenericSweepY<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                       const ZUMRaster& r3, const ZUMRaster& r4) const = 0;
  virtual void SweepCoords1(ZUMGenericSweepCoords<1>& sweep, const ZUMRaster& r1) const = 0;
  virtual void SweepCoords2(ZUMGenericSweepCoords<2>& sweep, const ZUMRaster& r1,
                            const ZUMRaster& r2) const = 0;
  virtual void SweepCoords3(ZUMGenericSweepCoords<3>& sweep, const ZUMRaster& r1,
                            const ZUMRaster& r2, const ZUMRaster& r3) const = 0;
  virtual void SweepCoords4(ZUMGenericSweepCoords<4>& sweep, const ZUMRaster& r1,
                            const ZUMRaster& r2, const ZUMRaster& r3,
                            const ZUMRaster& r4) const = 0;
  virtual void InvSweep1(ZUMGenericInvSweep<1>& sweep, const ZUMRaster& r1) const = 0;
  virtual void InvSweep2(ZUMGenericInvSweep<2>& sweep, const ZUMRaster& r1,
                         const ZUMRaster& r2) const = 0;
  virtual void InvSweep3(ZUMGenericInvSweep<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                         const ZUMRaster& r3) const = 0;
  virtual void InvSweep4(ZUMGenericInvSweep<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                         const ZUMRaster& r3, const ZUMRaster& r4) const = 0;
  // Backward sweeps with coordinates do not exist: these report a failed check and visit nothing.
  virtual void InvSweepCoords1(ZUMGenericInvSweepCoords<1>& sweep, const ZUMRaster& r1) const = 0;
  virtual void InvSweepCoords2(ZUMGenericInvSweepCoords<2>& sweep, const ZUMRaster& r1,
                               const ZUMRaster& r2) const = 0;
  virtual void InvSweepCoords3(ZUMGenericInvSweepCoords<3>& sweep, const ZUMRaster& r1,
                               const ZUMRaster& r2, const ZUMRaster& r3) const = 0;
  virtual void InvSweepCoords4(ZUMGenericInvSweepCoords<4>& sweep, const ZUMRaster& r1,
                               const ZUMRaster& r2, const ZUMRaster& r3,
                               const ZUMRaster& r4) const = 0;
  virtual void ContinuousSweep1(ZUMGenericContinuousSweep<1>& sweep, const ZUMRaster& r1) const = 0;
  virtual void ContinuousSweep2(ZUMGenericContinuousSweep<2>& sweep, const ZUMRaster& r1,
                                const ZUMRaster& r2) const = 0;

  /// Sets every pixel of this region widened by `frame` that lies outside this region to `value`,
  /// in all channels of `image`. The image's raster must cover the widened region.
  virtual void DrawOutFrame(const ZUMImage<void*>& image, const ZUMRect& frame,
                            void* value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMComplex>& image, const ZUMRect& frame,
                            ZUMComplex value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMReal>& image, const ZUMRect& frame,
                            ZUMReal value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMSReal>& image, const ZUMRect& frame,
                            ZUMSReal value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMLong>& image, const ZUMRect& frame,
                            ZUMLong value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMShort>& image, const ZUMRect& frame,
                            ZUMShort value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMByte>& image, const ZUMRect& frame,
                            ZUMByte value) const = 0;
  virtual void DrawOutFrame(const ZUMImage<ZUMBool>& image, const ZUMRect& frame,
                            ZUMBool value) const = 0;

  /// Part i of n (0 <= i < n) along the first axis in the order Y, Z, T, X that has at least n
  /// coordinates. If no axis has, or the region is empty, part 0 is the whole and the others are
  /// empty, as is a part outside 0 to n - 1.
  virtual ZUMRegionOfDefinition* RoDPart(int i, int n) const = 0;
  /// The same, never cut along X: the axes Y, Z, T are tried.
  virtual ZUMRegionOfDefinition* RoDHorizontalPart(int i, int n) const = 0;
  /// The same, never cut along Y: the axes X, Z, T are tried.
  virtual ZUMRegionOfDefinition* RoDVerticalPart(int i, int n) const = 0;

  void Link() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
  /// Drops one reference; the last one deletes the region.
  void Unlink() const noexcept;

  /// End - begin + 1 on each axis, also for an empty region; the low 32 bits where it has more.
  int RoDXSz() const { return Size(BeginX(), EndX()); }
  int RoDYSz() const { return Size(BeginY(), EndY()); }
  int RoDZSz() const { return Size(BeginZ(), EndZ()); }
  int RoDTSz() const { return Size(BeginT(), EndT()); }
  bool InP(const ZUMBasePoint<int>& p) const { return InP(p.x, p.y, p.z, p.t); }
  bool operator!=(const ZUMRegionOfDefinition& other) const { return !(*this == other); }

 private:
  ZUMRegionOfDefinition(const ZUMRegionOfDefinition&);

  // A region may span all coordinates, whose number 32 bits do not hold.
  static int Size(int begin, int end) { return static_cast<int>(end - std::int64_t{begin} + 1); }

  mutable std::atomic<int> count_{0};
};

/// The counted handle of a region; null by default. Handles of one region may be made and dropped
/// from any thread.
class ZUML_API ZUMRoDRef {
 public:
  ZUMRoDRef() = default;
  ZUMRoDRef(ZUMRegionOfDefinition* rod) noexcept : rod_(rod) {
    if (rod_) rod_->Link();
  }
  ZUMRoDRef(const ZUMRoDRef& other) noexcept : ZUMRoDRef(other.rod_) {}
  /// A new box.
  ZUMRoDRef(int bx, int by, int bz, int bt, int ex, int ey, int ez, int et);
  ZUMRoDRef(const ZUMRect& box);
  ~ZUMRoDRef() {
    if (rod_) rod_->Unlink();
  }

  ZUMRoDRef& operator=(const ZUMRoDRef& other) noexcept { return *this = other.rod_; }
  ZUMRoDRef& operator=(ZUMRegionOfDefinition* rod) noexcept;

  ZUMRegionOfDefinition& RoD() const { return *rod_; }

  int EmptyP() const { return rod_->EmptyP(); }
  ZUMRect Rect() const { return rod_->Rect(); }
  ZUMBasePoint<int> Begin() const { return rod_->Begin(); }
  int BeginX() const { return rod_->BeginX(); }
  int BeginY() const { return rod_->BeginY(); }
  int BeginZ() const { return rod_->BeginZ(); }
  int BeginT() const { return rod_->BeginT(); }
  ZUMBasePoint<int> End() const { return rod_->End(); }
  int EndX() const { return rod_->EndX(); }
  int EndY() const { return rod_->EndY(); }
  int EndZ() const { return rod_->EndZ(); }
  int EndT() const { return rod_->EndT(); }
  int NPixels() const { return rod_->NPixels(); }
  int RoDXSz() const { return rod_->RoDXSz(); }
  int RoDYSz() const { return rod_->RoDYSz(); }
  int RoDZSz() const { return rod_->RoDZSz(); }
  int RoDTSz() const { return rod_->RoDTSz(); }
  bool InP(int x, int y, int z, int t) const { return rod_->InP(x, y, z, t); }
  bool InP(const ZUMBasePoint<int>& p) const { return rod_->InP(p); }
  ZUMRegionOfDefinition* RoDPart(int i, int n) const { return rod_->RoDPart(i, n); }
  ZUMRegionOfDefinition* RoDHorizontalPart(int i, int n) const {
    return rod_->RoDHorizontalPart(i, n);
  }
  ZUMRegionOfDefinition* RoDVerticalPart(int i, int n) const { return rod_->RoDVerticalPart(i, n); }

 private:
  ZUMRegionOfDefinition* rod_ = nullptr;
};

/// The region common to both. The box throws XQException "ZUMRoDRect::Intersection no implementada
/// para %s" for a region of another class.
[[nodiscard]] ZUML_API ZUMRoDRef Intersection(const ZUMRoDRef& a, const ZUMRoDRef& b);
/// The region with its sides moved; sides that cross make it empty.
[[nodiscard]] ZUML_API ZUMRoDRef DisplaceSides(const ZUMRoDRef& rod, int bx, int by, int bz, int bt,
                                               int ex, int ey, int ez, int et);

/// The region of default images: empty, with the corners (0,1,1,1) and (-1,0,0,0). It exists from
/// load time.
extern ZUML_API const ZUMRoDRef ZUMEmptyRoD;
