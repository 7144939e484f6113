#pragma once

#include "tests/support/otherregion.h"

namespace zuml_test {

/// A region that leaves points of its box out: those with x + y even.
class OddRegion final : public OtherRegion {
 public:
  using OtherRegion::OtherRegion;
  bool InP(int x, int y, int z, int t) const override {
    return ((x + y) & 1) != 0 && OtherRegion::InP(x, y, z, t);
  }
};

}  // namespace zuml_test
