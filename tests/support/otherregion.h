/// A region of a class of its own with the points of a box: for what depends on a region's class,
/// for what must work through the virtual operations alone, and to see regions live and die.
#pragma once

#include <atomic>

#include "zuml/core/zumrodrect.h"

namespace zuml_test {

#define ZUML_TEST_FORWARD(RESULT, NAME) \
  RESULT NAME() const override { return box_.NAME(); }
#define ZUML_TEST_DERIVE(NAME) \
  ZUMRegionOfDefinition* NAME() const override { return box_.NAME(); }
#define ZUML_TEST_ROTATE(NAME) \
  ZUMRegionOfDefinition* NAME(int angle) const override { return box_.NAME(angle); }
#define ZUML_TEST_PART(NAME) \
  ZUMRegionOfDefinition* NAME(int i, int n) const override { return box_.NAME(i, n); }
#define ZUML_TEST_SWEEP1(KIND)                                                        \
  void KIND##1(ZUMGeneric##KIND<1> & sweep, const ZUMRaster& r1) const override {     \
    box_.KIND##1(sweep, r1);                                                          \
  }                                                                                   \
  void KIND##2(ZUMGeneric##KIND<2> & sweep, const ZUMRaster& r1, const ZUMRaster& r2) \
      const override {                                                                \
    box_.KIND##2(sweep, r1, r2);                                                      \
  }
#define ZUML_TEST_SWEEP4(KIND)                                                        \
  ZUML_TEST_SWEEP1(KIND)                                                              \
  void KIND##3(ZUMGeneric##KIND<3> & sweep, const ZUMRaster& r1, const ZUMRaster& r2, \
               const ZUMRaster& r3) const override {                                  \
    box_.KIND##3(sweep, r1, r2, r3);                                                  \
  }                                                                                   \
  void KIND##4(ZUMGeneric##KIND<4> & sweep, const ZUMRaster& r1, const ZUMRaster& r2, \
               const ZUMRaster& r3, const ZUMRaster& r4) const override {             \
    box_.KIND##4(sweep, r1, r2, r3, r4);                                              \
  }
#define ZUML_TEST_DRAW(TYPE)                                                       \
  void DrawOutFrame(const ZUMImage<TYPE>& image, const ZUMRect& frame, TYPE value) \
      const override {                                                             \
    box_.DrawOutFrame(image, frame, value);                                        \
  }

class OtherRegion : public ZUMRegionOfDefinition {
 public:
  explicit OtherRegion(const ZUMRect& box) : box_(box) { ++alive; }
  ~OtherRegion() override { --alive; }

  inline static std::atomic<int> alive{0};

  ZUML_TEST_FORWARD(int, EmptyP)
  ZUML_TEST_FORWARD(ZUMRect, Rect)
  ZUML_TEST_FORWARD(ZUMBasePoint<int>, Begin)
  ZUML_TEST_FORWARD(int, BeginX)
  ZUML_TEST_FORWARD(int, BeginY)
  ZUML_TEST_FORWARD(int, BeginZ)
  ZUML_TEST_FORWARD(int, BeginT)
  ZUML_TEST_FORWARD(ZUMBasePoint<int>, End)
  ZUML_TEST_FORWARD(int, EndX)
  ZUML_TEST_FORWARD(int, EndY)
  ZUML_TEST_FORWARD(int, EndZ)
  ZUML_TEST_FORWARD(int, EndT)
  ZUML_TEST_FORWARD(int, NPixels)
  bool InP(int x, int y, int z, int t) const override { return box_.InP(x, y, z, t); }
  using ZUMRegionOfDefinition::InP;
  ZUMRegionOfDefinition* Intersection(const ZUMRegionOfDefinition& other) const override {
    return box_.Intersection(other);
  }
  ZUMRegionOfDefinition* Union(const ZUMRegionOfDefinition& other) const override {
    return box_.Union(other);
  }
  ZUMRegionOfDefinition* DisplaceSides(int bx, int by, int bz, int bt, int ex, int ey, int ez,
                                       int et) const override {
    return box_.DisplaceSides(bx, by, bz, bt, ex, ey, ez, et);
  }
  ZUMRegionOfDefinition* Translate(int x, int y, int z, int t) const override {
    return box_.Translate(x, y, z, t);
  }
  ZUML_TEST_DERIVE(Symmetry)
  ZUML_TEST_DERIVE(SymmetryX)
  ZUML_TEST_DERIVE(SymmetryY)
  ZUML_TEST_DERIVE(SymmetryZ)
  ZUML_TEST_DERIVE(SymmetryT)
  ZUML_TEST_ROTATE(RotateX)
  ZUML_TEST_ROTATE(RotateY)
  ZUML_TEST_ROTATE(RotateZ)
  ZUML_TEST_ROTATE(RotateT)
  bool operator==(const ZUMRegionOfDefinition& other) const override { return &other == this; }
  ZUML_TEST_SWEEP4(Sweep)
  void Sweep5(ZUMGenericSweep<5>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
              const ZUMRaster& r3, const ZUMRaster& r4, const ZUMRaster& r5) const override {
    box_.Sweep5(sweep, r1, r2, r3, r4, r5);
  }
  ZUML_TEST_SWEEP4(SweepY)
  ZUML_TEST_SWEEP4(SweepCoords)
  ZUML_TEST_SWEEP4(InvSweep)
  ZUML_TEST_SWEEP4(InvSweepCoords)
  ZUML_TEST_SWEEP1(ContinuousSweep)
  ZUML_ALL_TYPES(ZUML_TEST_DRAW)
  ZUML_TEST_PART(RoDPart)
  ZUML_TEST_PART(RoDHorizontalPart)
  ZUML_TEST_PART(RoDVerticalPart)

 private:
  ZUMRoDRect box_;
};

#undef ZUML_TEST_FORWARD
#undef ZUML_TEST_DERIVE
#undef ZUML_TEST_ROTATE
#undef ZUML_TEST_PART
#undef ZUML_TEST_SWEEP1
#undef ZUML_TEST_SWEEP4
#undef ZUML_TEST_DRAW

}  // namespace zuml_test
