/// Regions of classes of their own: for what depends on a region's class, for what must work
/// through the virtual operations alone, and to see regions live and die.
#pragma once

#include <atomic>

#include "zuml/core/zumrodrect.h"

namespace zuml_test {

/// The points of a box.
class OtherRegion : public ZUMRoDRect {
 public:
  explicit OtherRegion(const ZUMRect& box) : ZUMRoDRect(box) { ++alive; }
  ~OtherRegion() override { --alive; }
  bool operator==(const ZUMRegionOfDefinition& other) const override { return &other == this; }

  inline static std::atomic<int> alive{0};
};

/// A region that leaves points of its box out: those with x + y even.
class OddRegion final : public OtherRegion {
 public:
  using OtherRegion::InP;
  using OtherRegion::OtherRegion;
  bool InP(int x, int y, int z, int t) const override {
    return ((x + y) & 1) != 0 && OtherRegion::InP(x, y, z, t);
  }
};

}  // namespace zuml_test
