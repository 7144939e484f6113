/// The axis-parallel box of up to four axes: the region of definition of every image.
#pragma once

#include "zuml/core/zumrod.h"

/// A box with both corners inclusive. It is empty exactly when begin X > end X: a constructor that
/// receives begin > end on any axis keeps the values and then sets begin X to 0 and end X to -1.
class ZUML_API ZUMRoDRect : public ZUMRegionOfDefinition {
 public:
  ZUMRoDRect() : box_(0, 0, 0, 0, -1, 0, 0, 0) {}
  ZUMRoDRect(int bx, int by, int bz, int bt, int ex, int ey, int ez, int et)
      : ZUMRoDRect(ZUMRect(bx, by, bz, bt, ex, ey, ez, et)) {}
  explicit ZUMRoDRect(const ZUMRect& box);
  ZUMRoDRect(const ZUMRoDRect& other) : ZUMRegionOfDefinition(), box_(other.box_) {}

  int EmptyP() const override { return box_.begin.x > box_.end.x; }
  ZUMRect Rect() const override { return box_; }
  ZUMBasePoint<int> Begin() const override { return box_.begin; }
  int BeginX() const override { return box_.begin.x; }
  int BeginY() const override { return box_.begin.y; }
  int BeginZ() const override { return box_.begin.z; }
  int BeginT() const override { return box_.begin.t; }
  ZUMBasePoint<int> End() const override { return box_.end; }
  int EndX() const override { return box_.end.x; }
  int EndY() const override { return box_.end.y; }
  int EndZ() const override { return box_.end.z; }
  int EndT() const override { return box_.end.t; }
  int NPixels() const override;
  bool InP(int x, int y, int z, int t) const override;
  using ZUMRegionOfDefinition::InP;

  /// Throws XQException "ZUMRoDRect::Intersection no implementada para %s" with the class name if
  /// the other region is not a box.
  ZUMRegionOfDefinition* Intersection(const ZUMRegionOfDefinition& other) const override;
  /// Throws XQException "ZUMRoDRect::Union No implementada": the union of two boxes is not a box.
  ZUMRegionOfDefinition* Union(const ZUMRegionOfDefinition& other) const override;
  ZUMRegionOfDefinition* DisplaceSides(int bx, int by, int bz, int bt, int ex, int ey, int ez,
                                       int et) const override;
  ZUMRegionOfDefinition* Translate(int x, int y, int z, int t) const override;
  ZUMRegionOfDefinition* Symmetry() const override;
  ZUMRegionOfDefinition* SymmetryX() const override;
  ZUMRegionOfDefinition* SymmetryY() const override;
  ZUMRegionOfDefinition* SymmetryZ() const override;
  ZUMRegionOfDefinition* SymmetryT() const override;
  /// RotateX, RotateY and RotateT throw XQException "ZUMRoDRect::RotateX not implemented" and the
  /// like; RotateZ turns by multiples of 90 degrees and throws XQException "ZUMRoDRect::RotateZ
  /// only allows angles multiples of 90" for other angles.
  ZUMRegionOfDefinition* RotateX(int angle) const override;
  ZUMRegionOfDefinition* RotateY(int angle) const override;
  ZUMRegionOfDefinition* RotateZ(int angle) const override;
  ZUMRegionOfDefinition* RotateT(int angle) const override;
  bool operator==(const ZUMRegionOfDefinition& other) const override;
  // Two boxes known as such; without it the language finds their comparison ambiguous.
  bool operator==(const ZUMRoDRect& other) const { return box_ == other.box_; }

  void Sweep1(ZUMGenericSweep<1>& sweep, const ZUMRaster& r1) const override;
  void Sweep2(ZUMGenericSweep<2>& sweep, const ZUMRaster& r1, const ZUMRaster& r2) const override;
  void Sweep3(ZUMGenericSweep<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
              const ZUMRaster& r3) const override;
  void Sweep4(ZUMGenericSweep<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
              const ZUMRaster& r3, const ZUMRaster& r4) const override;
  void Sweep5(ZUMGenericSweep<5>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
              const ZUMRaster& r3, const ZUMRaster& r4, const ZUMRaster& r5) const override;
  void SweepY1(ZUMGenericSweepY<1>& sweep, const ZUMRaster& r1) const override;
  void SweepY2(ZUMGenericSweepY<2>& sweep, const ZUMRaster& r1, const ZUMRaster& r2) const override;
  void SweepY3(ZUMGenericSweepY<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
               const ZUMRaster& r3) const override;
  void SweepY4(ZUMGenericSweepY<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
               const ZUMRaster& r3, const ZUMRaster& r4) const override;
  void SweepCoords1(ZUMGenericSweepCoords<1>& sweep, const ZUMRaster& r1) const override;
  void SweepCoords2(ZUMGenericSweepCoords<2>& sweep, const ZUMRaster& r1,
                    const ZUMRaster& r2) const override;
  void SweepCoords3(ZUMGenericSweepCoords<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                    const ZUMRaster& r3) const override;
  void SweepCoords4(ZUMGenericSweepCoords<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                    const ZUMRaster& r3, const ZUMRaster& r4) const override;
  void InvSweep1(ZUMGenericInvSweep<1>& sweep, const ZUMRaster& r1) const override;
  void InvSweep2(ZUMGenericInvSweep<2>& sweep, const ZUMRaster& r1,
                 const ZUMRaster& r2) const override;
  void InvSweep3(ZUMGenericInvSweep<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                 const ZUMRaster& r3) const override;
  void InvSweep4(ZUMGenericInvSweep<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                 const ZUMRaster& r3, const ZUMRaster& r4) const override;
  void InvSweepCoords1(ZUMGenericInvSweepCoords<1>& sweep, const ZUMRaster& r1) const override;
  void InvSweepCoords2(ZUMGenericInvSweepCoords<2>& sweep, const ZUMRaster& r1,
                       const ZUMRaster& r2) const override;
  void InvSweepCoords3(ZUMGenericInvSweepCoords<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                       const ZUMRaster& r3) const override;
  void InvSweepCoords4(ZUMGenericInvSweepCoords<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                       const ZUMRaster& r3, const ZUMRaster& r4) const override;
  void ContinuousSweep1(ZUMGenericContinuousSweep<1>& sweep, const ZUMRaster& r1) const override;
  void ContinuousSweep2(ZUMGenericContinuousSweep<2>& sweep, const ZUMRaster& r1,
                        const ZUMRaster& r2) const override;

  void DrawOutFrame(const ZUMImage<void*>& image, const ZUMRect& frame, void* value) const override;
  void DrawOutFrame(const ZUMImage<ZUMComplex>& image, const ZUMRect& frame,
                    ZUMComplex value) const override;
  void DrawOutFrame(const ZUMImage<ZUMReal>& image, const ZUMRect& frame,
                    ZUMReal value) const override;
  void DrawOutFrame(const ZUMImage<ZUMSReal>& image, const ZUMRect& frame,
                    ZUMSReal value) const override;
  void DrawOutFrame(const ZUMImage<ZUMLong>& image, const ZUMRect& frame,
                    ZUMLong value) const override;
  void DrawOutFrame(const ZUMImage<ZUMShort>& image, const ZUMRect& frame,
                    ZUMShort value) const override;
  void DrawOutFrame(const ZUMImage<ZUMByte>& image, const ZUMRect& frame,
                    ZUMByte value) const override;
  void DrawOutFrame(const ZUMImage<ZUMBool>& image, const ZUMRect& frame,
                    ZUMBool value) const override;

  ZUMRegionOfDefinition* RoDPart(int i, int n) const override;
  ZUMRegionOfDefinition* RoDHorizontalPart(int i, int n) const override;
  ZUMRegionOfDefinition* RoDVerticalPart(int i, int n) const override;

 private:
  ZUMRect box_;
};
