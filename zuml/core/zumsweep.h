/// Sweeps: walks over the pixels of a region in up to five rasters at once. A sweep hands out runs,
/// maximal stretches of pixels along a line or a column, as plain pointers; the caller's inner loop
/// only advances them. The step from run to run takes the raster's geometry into account, so the
/// same loop serves cut images, framed rasters and channel views.
///
/// The first raster governs: the run's end and the number of channels visited come from it. Every
/// other raster must cover the region and have at least as many channels in its view. The order is
/// lines, planes, frames, channels.
///
///   ZUMGenericSweep2 sweep(rod, source, result);
///   while (sweep.GetStart1()) {
///     auto* s = static_cast<const ZUMByte*>(sweep.GetStart1());
///     auto* end = static_cast<const ZUMByte*>(sweep.GetEnd1());  // inclusive
///     auto* r = static_cast<ZUMByte*>(sweep.GetStart2());
///     for (; s <= end; ++s, ++r) *r = *s;
///     sweep.Next();
///   }
#pragma once

#include <memory>

#include "zuml/core/export.h"
#include "zuml/core/zumraster.h"
#include "zuml/core/zumrod.h"

/// The step from run to run of a line sweep; made by a region for its own shape.
template <int N>
class ZUML_API ZUMSweeper {
 public:
  virtual ~ZUMSweeper() = default;
  virtual void Next(ZUMGenericSweep<N>* sweep) = 0;
};

template <int N>
class ZUML_API ZUMSweeperY {
 public:
  virtual ~ZUMSweeperY() = default;
  virtual void Next(ZUMGenericSweepY<N>* sweep) = 0;
};

template <int N>
class ZUML_API ZUMSweeperCoords {
 public:
  virtual ~ZUMSweeperCoords() = default;
  virtual void Next(ZUMGenericSweepCoords<N>* sweep) = 0;
};

template <int N>
class ZUML_API ZUMInvSweeper {
 public:
  virtual ~ZUMInvSweeper() = default;
  virtual void Previous(ZUMGenericInvSweep<N>* sweep) = 0;
};

template <int N>
class ZUML_API ZUMInvSweeperCoords {
 public:
  virtual ~ZUMInvSweeperCoords() = default;
  virtual void Previous(ZUMGenericInvSweepCoords<N>* sweep) = 0;
};

template <int N>
class ZUML_API ZUMContinuousSweeper {
 public:
  virtual ~ZUMContinuousSweeper() = default;
  virtual void Next(ZUMGenericContinuousSweep<N>* sweep) = 0;
};

namespace zuml_detail {

/// N starts and the end of the first raster's run, shared by the forward states. The fields are
/// written by the region's sweepers.
template <int N>
struct SweepStarts {
  void* start[N] = {};
  void* end1 = nullptr;

  void* Start(int k) const { return start[k]; }
};

}  // namespace zuml_detail

/// A sweep along lines, low X to high X. At its end GetStart1 is null.
template <int N>
class ZUML_API ZUMGenericSweep {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit ZUMGenericSweep(const ZUMRoDRef& rod,
                                                             const Rasters&... r) {
    const ZUMRegionOfDefinition& region = rod.RoD();
    if constexpr (N == 1) region.Sweep1(*this, r...);
    if constexpr (N == 2) region.Sweep2(*this, r...);
    if constexpr (N == 3) region.Sweep3(*this, r...);
    if constexpr (N == 4) region.Sweep4(*this, r...);
    if constexpr (N == 5) region.Sweep5(*this, r...);
  }
  ZUMGenericSweep(const ZUMGenericSweep&) = delete;
  ZUMGenericSweep& operator=(const ZUMGenericSweep&) = delete;

  void Next() { sweeper->Next(this); }

  void* GetStart1() const { return at.Start(0); }
  void* GetStart2() const requires(N >= 2) { return at.Start(1); }
  void* GetStart3() const requires(N >= 3) { return at.Start(2); }
  void* GetStart4() const requires(N >= 4) { return at.Start(3); }
  void* GetStart5() const requires(N >= 5) { return at.Start(4); }
  void* GetEnd1() const { return at.end1; }

  // For the sweepers.
  zuml_detail::SweepStarts<N> at;
  std::unique_ptr<ZUMSweeper<N>> sweeper;
};

/// A sweep along columns, low Y to high Y. The caller goes down a column by the line step of each
/// raster, in bytes.
template <int N>
class ZUML_API ZUMGenericSweepY {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit ZUMGenericSweepY(const ZUMRoDRef& rod,
                                                              const Rasters&... r) {
    const ZUMRegionOfDefinition& region = rod.RoD();
    if constexpr (N == 1) region.SweepY1(*this, r...);
    if constexpr (N == 2) region.SweepY2(*this, r...);
    if constexpr (N == 3) region.SweepY3(*this, r...);
    if constexpr (N == 4) region.SweepY4(*this, r...);
  }
  ZUMGenericSweepY(const ZUMGenericSweepY&) = delete;
  ZUMGenericSweepY& operator=(const ZUMGenericSweepY&) = delete;

  void Next() { sweeper->Next(this); }

  void* GetStart1() const { return at.Start(0); }
  void* GetStart2() const requires(N >= 2) { return at.Start(1); }
  void* GetStart3() const requires(N >= 3) { return at.Start(2); }
  void* GetStart4() const requires(N >= 4) { return at.Start(3); }
  void* GetEnd1() const { return at.end1; }
  int GetLineStep1() const { return LineStep(0); }
  int GetLineStep2() const requires(N >= 2) { return LineStep(1); }
  int GetLineStep3() const requires(N >= 3) { return LineStep(2); }
  int GetLineStep4() const requires(N >= 4) { return LineStep(3); }

  // For the sweepers.
  zuml_detail::SweepStarts<N> at;
  int LineStep(int k) const { return line_step[k]; }
  int line_step[N] = {};
  std::unique_ptr<ZUMSweeperY<N>> sweeper;
};

/// A line sweep that also tells the coordinates of the run's first pixel and the channel of the
/// first raster's view.
template <int N>
class ZUML_API ZUMGenericSweepCoords {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit ZUMGenericSweepCoords(const ZUMRoDRef& rod,
                                                                   const Rasters&... r) {
    const ZUMRegionOfDefinition& region = rod.RoD();
    if constexpr (N == 1) region.SweepCoords1(*this, r...);
    if constexpr (N == 2) region.SweepCoords2(*this, r...);
    if constexpr (N == 3) region.SweepCoords3(*this, r...);
    if constexpr (N == 4) region.SweepCoords4(*this, r...);
  }
  ZUMGenericSweepCoords(const ZUMGenericSweepCoords&) = delete;
  ZUMGenericSweepCoords& operator=(const ZUMGenericSweepCoords&) = delete;

  void Next() { sweeper->Next(this); }

  void* GetStart1() const { return at.Start(0); }
  void* GetStart2() const requires(N >= 2) { return at.Start(1); }
  void* GetStart3() const requires(N >= 3) { return at.Start(2); }
  void* GetStart4() const requires(N >= 4) { return at.Start(3); }
  void* GetEnd1() const { return at.end1; }
  int GetX() const { return point.x; }
  int GetY() const { return point.y; }
  int GetZ() const { return point.z; }
  int GetT() const { return point.t; }
  int GetC() const { return channel; }

  // For the sweepers.
  zuml_detail::SweepStarts<N> at;
  ZUMBasePoint<int> point;
  int channel = 0;
  std::unique_ptr<ZUMSweeperCoords<N>> sweeper;
};

/// A sweep along lines backwards: from the last line of the last channel to the first, the caller
/// walking each run from its end down to its start. At its end GetEnd1 is null.
template <int N>
class ZUML_API ZUMGenericInvSweep {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit ZUMGenericInvSweep(const ZUMRoDRef& rod,
                                                                const Rasters&... r) {
    const ZUMRegionOfDefinition& region = rod.RoD();
    if constexpr (N == 1) region.InvSweep1(*this, r...);
    if constexpr (N == 2) region.InvSweep2(*this, r...);
    if constexpr (N == 3) region.InvSweep3(*this, r...);
    if constexpr (N == 4) region.InvSweep4(*this, r...);
  }
  ZUMGenericInvSweep(const ZUMGenericInvSweep&) = delete;
  ZUMGenericInvSweep& operator=(const ZUMGenericInvSweep&) = delete;

  void Previous() { sweeper->Previous(this); }

  void* GetStart1() const { return start1; }
  void* GetEnd1() const { return End(0); }
  void* GetEnd2() const requires(N >= 2) { return End(1); }
  void* GetEnd3() const requires(N >= 3) { return End(2); }
  void* GetEnd4() const requires(N >= 4) { return End(3); }

  // For the sweepers.
  void* End(int k) const { return end[k]; }
  void* start1 = nullptr;
  void* end[N] = {};
  std::unique_ptr<ZUMInvSweeper<N>> sweeper;
};

/// The backward sweep with coordinates exists by name only: making one and calling Previous report
/// a failed check, and it visits nothing.
template <int N>
class ZUML_API ZUMGenericInvSweepCoords {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit ZUMGenericInvSweepCoords(const ZUMRoDRef& rod,
                                                                      const Rasters&... r) {
    const ZUMRegionOfDefinition& region = rod.RoD();
    if constexpr (N == 1) region.InvSweepCoords1(*this, r...);
    if constexpr (N == 2) region.InvSweepCoords2(*this, r...);
    if constexpr (N == 3) region.InvSweepCoords3(*this, r...);
    if constexpr (N == 4) region.InvSweepCoords4(*this, r...);
  }
  ZUMGenericInvSweepCoords(const ZUMGenericInvSweepCoords&) = delete;
  ZUMGenericInvSweepCoords& operator=(const ZUMGenericInvSweepCoords&) = delete;

  void Previous() { sweeper->Previous(this); }

  void* GetStart1() const { return nullptr; }
  void* GetEnd1() const { return nullptr; }

  // For the sweepers.
  std::unique_ptr<ZUMInvSweeperCoords<N>> sweeper;
};

/// How a continuous sweep walks its present run.
enum ZUMCSDirections : int {
  /// A new run, from its first pixel Start1 to its last pixel End1, toward higher X.
  ZUMCSNewRun = 0,
  /// One line further, toward higher X: End1 is its last pixel, Start1 the last of the run before.
  ZUMCSForward = 1,
  /// One line further, toward lower X: End1 is its last pixel, Start1 the last of the run before.
  ZUMCSBackward = 2,
  /// Finished.
  ZUMCSEnd = 3
};

/// A sweep along lines in alternating direction: inside a plane, each run starts below the pixel
/// that the run before ended on. It ends with the direction 3.
template <int N>
class ZUML_API ZUMGenericContinuousSweep {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit ZUMGenericContinuousSweep(const ZUMRoDRef& rod,
                                                                       const Rasters&... r) {
    const ZUMRegionOfDefinition& region = rod.RoD();
    if constexpr (N == 1) region.ContinuousSweep1(*this, r...);
    if constexpr (N == 2) region.ContinuousSweep2(*this, r...);
  }
  ZUMGenericContinuousSweep(const ZUMGenericContinuousSweep&) = delete;
  ZUMGenericContinuousSweep& operator=(const ZUMGenericContinuousSweep&) = delete;

  void Next() { sweeper->Next(this); }

  ZUMCSDirections GetDirection() const { return direction; }
  void* GetStart1() const { return at.Start(0); }
  void* GetStart2() const requires(N >= 2) { return at.Start(1); }
  void* GetEnd1() const { return at.end1; }

  // For the sweepers.
  ZUMCSDirections direction = ZUMCSEnd;
  zuml_detail::SweepStarts<N> at;
  std::unique_ptr<ZUMContinuousSweeper<N>> sweeper;
};

using ZUMGenericSweep1 = ZUMGenericSweep<1>;
using ZUMGenericSweep2 = ZUMGenericSweep<2>;
using ZUMGenericSweep3 = ZUMGenericSweep<3>;
using ZUMGenericSweep4 = ZUMGenericSweep<4>;
using ZUMGenericSweep5 = ZUMGenericSweep<5>;
using ZUMGenericSweepY1 = ZUMGenericSweepY<1>;
using ZUMGenericSweepY2 = ZUMGenericSweepY<2>;
using ZUMGenericSweepY3 = ZUMGenericSweepY<3>;
using ZUMGenericSweepY4 = ZUMGenericSweepY<4>;
using ZUMGenericSweepCoords1 = ZUMGenericSweepCoords<1>;
using ZUMGenericSweepCoords2 = ZUMGenericSweepCoords<2>;
using ZUMGenericSweepCoords3 = ZUMGenericSweepCoords<3>;
using ZUMGenericSweepCoords4 = ZUMGenericSweepCoords<4>;
using ZUMGenericInvSweep1 = ZUMGenericInvSweep<1>;
using ZUMGenericInvSweep2 = ZUMGenericInvSweep<2>;
using ZUMGenericInvSweep3 = ZUMGenericInvSweep<3>;
using ZUMGenericInvSweep4 = ZUMGenericInvSweep<4>;
using ZUMGenericInvSweepCoords1 = ZUMGenericInvSweepCoords<1>;
using ZUMGenericInvSweepCoords2 = ZUMGenericInvSweepCoords<2>;
using ZUMGenericInvSweepCoords3 = ZUMGenericInvSweepCoords<3>;
using ZUMGenericInvSweepCoords4 = ZUMGenericInvSweepCoords<4>;
using ZUMGenericContinuousSweep1 = ZUMGenericContinuousSweep<1>;
using ZUMGenericContinuousSweep2 = ZUMGenericContinuousSweep<2>;

using ZUMSweeper1 = ZUMSweeper<1>;
using ZUMSweeper2 = ZUMSweeper<2>;
using ZUMSweeper3 = ZUMSweeper<3>;
using ZUMSweeper4 = ZUMSweeper<4>;
using ZUMSweeper5 = ZUMSweeper<5>;
using ZUMSweeperY1 = ZUMSweeperY<1>;
using ZUMSweeperY2 = ZUMSweeperY<2>;
using ZUMSweeperY3 = ZUMSweeperY<3>;
using ZUMSweeperY4 = ZUMSweeperY<4>;
using ZUMSweeperCoords1 = ZUMSweeperCoords<1>;
using ZUMSweeperCoords2 = ZUMSweeperCoords<2>;
using ZUMSweeperCoords3 = ZUMSweeperCoords<3>;
using ZUMSweeperCoords4 = ZUMSweeperCoords<4>;
using ZUMInvSweeper1 = ZUMInvSweeper<1>;
using ZUMInvSweeper2 = ZUMInvSweeper<2>;
using ZUMInvSweeper3 = ZUMInvSweeper<3>;
using ZUMInvSweeper4 = ZUMInvSweeper<4>;
using ZUMInvSweeperCoords1 = ZUMInvSweeperCoords<1>;
using ZUMInvSweeperCoords2 = ZUMInvSweeperCoords<2>;
using ZUMInvSweeperCoords3 = ZUMInvSweeperCoords<3>;
using ZUMInvSweeperCoords4 = ZUMInvSweeperCoords<4>;
using ZUMContinuousSweeper1 = ZUMContinuousSweeper<1>;
using ZUMContinuousSweeper2 = ZUMContinuousSweeper<2>;
