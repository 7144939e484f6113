/// The sweepers of the box: how each kind of sweep goes from run to run of a ZUMRoDRect.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zuml/core/export.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/core/zumsweep.h"

namespace zuml_detail {

/// What was passed from one run to the next.
enum class SweepJump { Unit, Plane, Frame, Channel, End };

/// The offsets from the first run to the last run of a plane, a frame, a channel and the whole
/// walk, in one raster.
struct SweepSpans {
  std::ptrdiff_t plane = 0;
  std::ptrdiff_t frame = 0;
  std::ptrdiff_t channel = 0;
  std::ptrdiff_t all = 0;
};

/// What the runs of a box are in one raster, in bytes. For a walk backwards all are negated.
struct SweepGeometry {
  std::ptrdiff_t run = 0;        // from a run's near end to its far end
  std::ptrdiff_t steps[4] = {};  // for each jump, from the run before it to the run after it
  SweepSpans spans;

  SweepGeometry() = default;
  SweepGeometry(const ZUMRect& box, const ZUMRaster& r, bool columns);
  std::ptrdiff_t By(SweepJump jump) const { return steps[static_cast<int>(jump)]; }
  SweepGeometry operator-() const;
};

template <int N>
using SweepRasters = const ZUMRaster* const[static_cast<std::size_t>(N)];
template <int N>
using SweepPointers = void * [static_cast<std::size_t>(N)];

/// The walk of N pointers from run to run, at the near ends of the runs: the low ends, or in a walk
/// backwards the high ones. The jumps follow from the first pointer alone, by its distance to the
/// last run of the present plane, frame and channel, and of the whole. Addresses are compared as
/// numbers, since they are positions in memory rather than elements of one array.
template <int N, bool Backward>
class SweepWalk {
 public:
  /// A walk without a run.
  SweepWalk() = default;

  /// Puts the pointers onto the first run, and `end` onto its far end in the first raster.
  SweepWalk(const ZUMRect& box, const SweepRasters<N>& r, bool columns, SweepPointers<N>& at,
            void*& end);

  /// The jump that leads on from the run at `at`.
  SweepJump JumpFrom(const void* at) const {
    const std::uintptr_t a = Address(at);
    if (Before(a, plane_)) return SweepJump::Unit;
    if (Before(a, frame_)) return SweepJump::Plane;
    if (Before(a, channel_)) return SweepJump::Frame;
    return Before(a, all_) ? SweepJump::Channel : SweepJump::End;
  }

  /// Sets the thresholds after a jump to the run at `at`.
  void Renew(SweepJump jump, const void* at) {
    const SweepSpans& spans = geometry_[0].spans;
    if (jump >= SweepJump::Plane) plane_ = Address(at, spans.plane);
    if (jump >= SweepJump::Frame) frame_ = Address(at, spans.frame);
    if (jump >= SweepJump::Channel) channel_ = Address(at, spans.channel);
  }

  /// The next run. At the end the first pointer becomes null, and stays so.
  SweepJump Next(SweepPointers<N>& at, void*& end);

  const SweepGeometry& operator[](int k) const { return geometry_[k]; }

 private:
  static std::uintptr_t Address(const void* p, std::ptrdiff_t offset = 0) {
    return reinterpret_cast<std::uintptr_t>(p) + static_cast<std::uintptr_t>(offset);
  }
  static bool Before(std::uintptr_t a, std::uintptr_t limit) {
    return Backward ? a > limit : a < limit;
  }

  SweepGeometry geometry_[static_cast<std::size_t>(N)];
  // With all of them 0, a null pointer is at the end.
  std::uintptr_t plane_ = 0;
  std::uintptr_t frame_ = 0;
  std::uintptr_t channel_ = 0;
  std::uintptr_t all_ = 0;
};

}  // namespace zuml_detail

template <int N>
class ZUML_API ZUMSweeperRect final : public ZUMSweeper<N> {
 public:
  /// For an empty sweep, whose Next stays at the end.
  ZUMSweeperRect() = default;
  ZUMSweeperRect(ZUMGenericSweep<N>& sweep, const ZUMRect& box,
                 const zuml_detail::SweepRasters<N>& r);
  void Next(ZUMGenericSweep<N>* sweep) override;

 private:
  zuml_detail::SweepWalk<N, false> walk_;
};

template <int N>
class ZUML_API ZUMSweeperRectY final : public ZUMSweeperY<N> {
 public:
  /// For an empty sweep, whose Next stays at the end.
  ZUMSweeperRectY() = default;
  ZUMSweeperRectY(ZUMGenericSweepY<N>& sweep, const ZUMRect& box,
                  const zuml_detail::SweepRasters<N>& r);
  void Next(ZUMGenericSweepY<N>* sweep) override;

 private:
  zuml_detail::SweepWalk<N, false> walk_;
};

template <int N>
class ZUML_API ZUMSweeperCoordsRect final : public ZUMSweeperCoords<N> {
 public:
  /// For an empty sweep, whose Next stays at the end.
  ZUMSweeperCoordsRect() = default;
  ZUMSweeperCoordsRect(ZUMGenericSweepCoords<N>& sweep, const ZUMRect& box,
                       const zuml_detail::SweepRasters<N>& r);
  void Next(ZUMGenericSweepCoords<N>* sweep) override;

 private:
  ZUMBasePoint<int> begin_;
  zuml_detail::SweepWalk<N, false> walk_;
};

template <int N>
class ZUML_API ZUMInvSweeperRect final : public ZUMInvSweeper<N> {
 public:
  /// For an empty sweep, whose Next stays at the end.
  ZUMInvSweeperRect() = default;
  ZUMInvSweeperRect(ZUMGenericInvSweep<N>& sweep, const ZUMRect& box,
                    const zuml_detail::SweepRasters<N>& r);
  void Previous(ZUMGenericInvSweep<N>* sweep) override;

 private:
  zuml_detail::SweepWalk<N, true> walk_;
};

template <int N>
class ZUML_API ZUMInvSweeperCoordsRect final : public ZUMInvSweeperCoords<N> {
 public:
  void Previous(ZUMGenericInvSweepCoords<N>* sweep) override;
};

template <int N>
class ZUML_API ZUMContinuousSweeperRect final : public ZUMContinuousSweeper<N> {
 public:
  /// For an empty sweep, whose Next stays at the end.
  ZUMContinuousSweeperRect() = default;
  ZUMContinuousSweeperRect(ZUMGenericContinuousSweep<N>& sweep, const ZUMRect& box,
                           const zuml_detail::SweepRasters<N>& r);
  void Next(ZUMGenericContinuousSweep<N>* sweep) override;

 private:
  zuml_detail::SweepWalk<N, false> walk_;
};

using ZUMSweeperRect1 = ZUMSweeperRect<1>;
using ZUMSweeperRect2 = ZUMSweeperRect<2>;
using ZUMSweeperRect3 = ZUMSweeperRect<3>;
using ZUMSweeperRect4 = ZUMSweeperRect<4>;
using ZUMSweeperRect5 = ZUMSweeperRect<5>;
using ZUMSweeperRectY1 = ZUMSweeperRectY<1>;
using ZUMSweeperRectY2 = ZUMSweeperRectY<2>;
using ZUMSweeperRectY3 = ZUMSweeperRectY<3>;
using ZUMSweeperRectY4 = ZUMSweeperRectY<4>;
using ZUMSweeperCoordsRect1 = ZUMSweeperCoordsRect<1>;
using ZUMSweeperCoordsRect2 = ZUMSweeperCoordsRect<2>;
using ZUMSweeperCoordsRect3 = ZUMSweeperCoordsRect<3>;
using ZUMSweeperCoordsRect4 = ZUMSweeperCoordsRect<4>;
using ZUMInvSweeperRect1 = ZUMInvSweeperRect<1>;
using ZUMInvSweeperRect2 = ZUMInvSweeperRect<2>;
using ZUMInvSweeperRect3 = ZUMInvSweeperRect<3>;
using ZUMInvSweeperRect4 = ZUMInvSweeperRect<4>;
using ZUMInvSweeperCoordsRect1 = ZUMInvSweeperCoordsRect<1>;
using ZUMInvSweeperCoordsRect2 = ZUMInvSweeperCoordsRect<2>;
using ZUMInvSweeperCoordsRect3 = ZUMInvSweeperCoordsRect<3>;
using ZUMInvSweeperCoordsRect4 = ZUMInvSweeperCoordsRect<4>;
using ZUMContinuousSweeperRect1 = ZUMContinuousSweeperRect<1>;
using ZUMContinuousSweeperRect2 = ZUMContinuousSweeperRect<2>;
