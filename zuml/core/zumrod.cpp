#include "zuml/core/zumrod.h"

#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/zumrodrect.h"

// Regions are not copied through their base class; a derived class builds a fresh base.
ZUMRegionOfDefinition::ZUMRegionOfDefinition(const ZUMRegionOfDefinition&) {
  XQVerifyFun("0", __FILE__, __LINE__, nullptr);
}

ZUMRegionOfDefinition::~ZUMRegionOfDefinition() = default;

void ZUMRegionOfDefinition::Unlink() const noexcept {
  // The last holder must see all that the others did with the region before it is deleted.
  if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

ZUMRoDRef::ZUMRoDRef(int bx, int by, int bz, int bt, int ex, int ey, int ez, int et)
    : ZUMRoDRef(new ZUMRoDRect(bx, by, bz, bt, ex, ey, ez, et)) {}

ZUMRoDRef::ZUMRoDRef(const ZUMRect& box) : ZUMRoDRef(new ZUMRoDRect(box)) {}

ZUMRoDRef& ZUMRoDRef::operator=(ZUMRegionOfDefinition* rod) noexcept {
  if (rod != rod_) {
    // Linked first: the new region may be held by what the old one is held by.
    if (rod) rod->Link();
    if (rod_) rod_->Unlink();
    rod_ = rod;
  }
  return *this;
}

ZUMRoDRef Intersection(const ZUMRoDRef& a, const ZUMRoDRef& b) {
  return a.RoD().Intersection(b.RoD());
}

ZUMRoDRef DisplaceSides(const ZUMRoDRef& rod, int bx, int by, int bz, int bt, int ex, int ey,
                        int ez, int et) {
  return rod.RoD().DisplaceSides(bx, by, bz, bt, ex, ey, ez, et);
}
