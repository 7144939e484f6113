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

/// The bytes from the first pixel of the last run of a unit (a plane for `unit`'s own steps, and so
/// on outwards) to the first pixel of the first run of the next one, in one raster.
struct SweepSteps {
  std::ptrdiff_t unit = 0;
  std::ptrdiff_t plane = 0;
  std::ptrdiff_t frame = 0;
  std::ptrdiff_t channel = 0;

  std::ptrdiff_t By(SweepJump jump) const {
    return jump == SweepJump::Unit    ? unit
           : jump == SweepJump::Plane ? plane
           : jump == SweepJump::Frame ? frame
                                      : channel;
  }
  SweepSteps operator-() const { return {-unit, -plane, -frame, -channel}; }
};

/// The offsets from the first run to the last run of a plane, a frame, a channel and the whole
/// walk, in the first raster.
struct SweepSpans {
  std::ptrdiff_t plane = 0;
  std::ptrdiff_t frame = 0;
  std::ptrdiff_t channel = 0;
  std::ptrdiff_t all = 0;
};

/// The thresholds of a walk: where the first raster's pointer must be for the last run of the
/// present plane, frame and channel, and of the whole. Addresses are compared as numbers, since
/// they are positions in memory rather than elements of one array.
template <bool Backward>
class SweepThresholds {
 public:
  SweepThresholds() = default;
  SweepThresholds(const SweepSpans& spans, const void* first)
      : spans_(spans), all_(Address(first) + spans.all) {
    Renew(SweepJump::Channel, first);
  }

  /// Which jump leads on from the run at `at`.
  SweepJump Next(const void* at) const {
    const std::intptr_t a = Address(at);
    if (Before(a, plane_)) return SweepJump::Unit;
    if (Before(a, frame_)) return SweepJump::Plane;
    if (Before(a, channel_)) return SweepJump::Frame;
    return Before(a, all_) ? SweepJump::Channel : SweepJump::End;
  }

  /// After a jump to the run at `at`.
  void Renew(SweepJump jump, const void* at) {
    const std::intptr_t a = Address(at);
    if (jump >= SweepJump::Plane) plane_ = a + spans_.plane;
    if (jump >= SweepJump::Frame) frame_ = a + spans_.frame;
    if (jump >= SweepJump::Channel) channel_ = a + spans_.channel;
  }

 private:
  static std::intptr_t Address(const void* p) { return reinterpret_cast<std::intptr_t>(p); }
  static bool Before(std::intptr_t a, std::intptr_t limit) {
    return Backward ? a > limit : a < limit;
  }

  SweepSpans spans_;
  std::intptr_t plane_ = 0;
  std::intptr_t frame_ = 0;
  std::intptr_t channel_ = 0;
  std::intptr_t all_ = 0;
};

}  // namespace zuml_detail

template <int N>
class ZUML_API ZUMSweeperRect final : public ZUMSweeper<N> {
 public:
  /// Of a walk that visits nothing.
  ZUMSweeperRect() = default;
  ZUMSweeperRect(ZUMGenericSweep<N>& sweep, const ZUMRect& box, const ZUMRaster* const (&r)[N]);
  void Next(ZUMGenericSweep<N>* sweep) override;

 private:
  std::ptrdiff_t run_ = 0;
  zuml_detail::SweepSteps steps_[N];
  zuml_detail::SweepThresholds<false> thresholds_;
};

template <int N>
class ZUML_API ZUMSweeperRectY final : public ZUMSweeperY<N> {
 public:
  /// Of a walk that visits nothing.
  ZUMSweeperRectY() = default;
  ZUMSweeperRectY(ZUMGenericSweepY<N>& sweep, const ZUMRect& box, const ZUMRaster* const (&r)[N]);
  void Next(ZUMGenericSweepY<N>* sweep) override;

 private:
  std::ptrdiff_t run_ = 0;
  zuml_detail::SweepSteps steps_[N];
  zuml_detail::SweepThresholds<false> thresholds_;
};

template <int N>
class ZUML_API ZUMSweeperCoordsRect final : public ZUMSweeperCoords<N> {
 public:
  /// Of a walk that visits nothing.
  ZUMSweeperCoordsRect() = default;
  ZUMSweeperCoordsRect(ZUMGenericSweepCoords<N>& sweep, const ZUMRect& box,
                       const ZUMRaster* const (&r)[N]);
  void Next(ZUMGenericSweepCoords<N>* sweep) override;

 private:
  ZUMBasePoint<int> begin_;
  std::ptrdiff_t run_ = 0;
  zuml_detail::SweepSteps steps_[N];
  zuml_detail::SweepThresholds<false> thresholds_;
};

template <int N>
class ZUML_API ZUMInvSweeperRect final : public ZUMInvSweeper<N> {
 public:
  /// Of a walk that visits nothing.
  ZUMInvSweeperRect() = default;
  ZUMInvSweeperRect(ZUMGenericInvSweep<N>& sweep, const ZUMRect& box,
                    const ZUMRaster* const (&r)[N]);
  void Previous(ZUMGenericInvSweep<N>* sweep) override;

 private:
  std::ptrdiff_t run_ = 0;
  zuml_detail::SweepSteps steps_[N];
  zuml_detail::SweepThresholds<true> thresholds_;
};

template <int N>
class ZUML_API ZUMInvSweeperCoordsRect final : public ZUMInvSweeperCoords<N> {
 public:
  void Previous(ZUMGenericInvSweepCoords<N>* sweep) override;
};

template <int N>
class ZUML_API ZUMContinuousSweeperRect final : public ZUMContinuousSweeper<N> {
 public:
  /// Of a walk that visits nothing.
  ZUMContinuousSweeperRect() = default;
  ZUMContinuousSweeperRect(ZUMGenericContinuousSweep<N>& sweep, const ZUMRect& box,
                           const ZUMRaster* const (&r)[N]);
  void Next(ZUMGenericContinuousSweep<N>* sweep) override;

 private:
  std::ptrdiff_t run_[N] = {};
  zuml_detail::SweepSteps steps_[N];
  zuml_detail::SweepThresholds<false> thresholds_;
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
