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
///
/// A sweep over an empty region, or over a first raster without channels or pixels, is at its end
/// from the beginning. Next stays at the end.
#pragma once

#include <cstddef>
#include <memory>
#include <tuple>

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

namespace zuml_detail {

/// What the sweepers write: the starts of the run in N rasters and its end in the first.
template <int N>
struct SweepStarts {
  void* start[static_cast<std::size_t>(N)] = {};
  void* end1 = nullptr;

  void* GetStart1() const { return start[0]; }
  void* GetStart2() const requires(N >= 2) { return start[1]; }
  void* GetStart3() const requires(N >= 3) { return start[2]; }
  void* GetStart4() const requires(N >= 4) { return start[3]; }
  void* GetStart5() const requires(N >= 5) { return start[4]; }
  void* GetEnd1() const { return end1; }
};

/// With the line steps of the rasters.
template <int N>
struct SweepColumns : SweepStarts<N> {
  int line_step[static_cast<std::size_t>(N)] = {};

  int GetLineStep1() const { return line_step[0]; }
  int GetLineStep2() const requires(N >= 2) { return line_step[1]; }
  int GetLineStep3() const requires(N >= 3) { return line_step[2]; }
  int GetLineStep4() const requires(N >= 4) { return line_step[3]; }
};

/// With the coordinates of the run's first pixel.
template <int N>
struct SweepPlaces : SweepStarts<N> {
  ZUMBasePoint<int> point;
  int channel = 0;

  int GetX() const { return point.x; }
  int GetY() const { return point.y; }
  int GetZ() const { return point.z; }
  int GetT() const { return point.t; }
  int GetC() const { return channel; }
};

/// With the direction of the run.
template <int N>
struct SweepDirection : SweepStarts<N> {
  ZUMCSDirections direction = ZUMCSEnd;

  ZUMCSDirections GetDirection() const { return direction; }
};

/// The start of the run in the first raster and its ends in N.
template <int N>
struct SweepEnds {
  void* start1 = nullptr;
  void* end[static_cast<std::size_t>(N)] = {};

  void* GetStart1() const { return start1; }
  void* GetEnd1() const { return end[0]; }
  void* GetEnd2() const requires(N >= 2) { return end[1]; }
  void* GetEnd3() const requires(N >= 3) { return end[2]; }
  void* GetEnd4() const requires(N >= 4) { return end[3]; }
};

/// What the sweep objects have in common: the fields, the sweeper, and the constructor, which has
/// the region set both up by its operation for N rasters. kSetUp lists these for 1, 2, ... rasters.
template <class Sweep, int N, class Fields, class Sweeper, auto... kSetUp>
class SweepBase : public Fields {
 public:
  template <class... Rasters>
  requires(sizeof...(Rasters) == N) explicit SweepBase(const ZUMRoDRef& rod, const Rasters&... r) {
    constexpr auto set_up = std::get<N - 1>(std::tuple(kSetUp...));
    (rod.RoD().*set_up)(static_cast<Sweep&>(*this), r...);
  }
  SweepBase(const SweepBase&) = delete;
  SweepBase& operator=(const SweepBase&) = delete;

  /// The next run, or in a walk backwards the previous one.
  void Next() requires requires(Sweeper& sweeper, Sweep* sweep) { sweeper.Next(sweep); }
  { sweeper->Next(static_cast<Sweep*>(this)); }
  void Previous() requires requires(Sweeper& sweeper, Sweep* sweep) { sweeper.Previous(sweep); }
  { sweeper->Previous(static_cast<Sweep*>(this)); }

  std::unique_ptr<Sweeper> sweeper;
};

}  // namespace zuml_detail

/// A sweep along lines, low X to high X. At its end GetStart1 is null.
template <int N>
class ZUML_API ZUMGenericSweep
    : public zuml_detail::SweepBase<ZUMGenericSweep<N>, N, zuml_detail::SweepStarts<N>,
                                    ZUMSweeper<N>, &ZUMRegionOfDefinition::Sweep1,
                                    &ZUMRegionOfDefinition::Sweep2, &ZUMRegionOfDefinition::Sweep3,
                                    &ZUMRegionOfDefinition::Sweep4,
                                    &ZUMRegionOfDefinition::Sweep5> {
  using ZUMGenericSweep::SweepBase::SweepBase;
};

/// A sweep along columns, low Y to high Y. The caller goes down a column by the line step of each
/// raster, in bytes.
template <int N>
class ZUML_API ZUMGenericSweepY
    : public zuml_detail::SweepBase<
          ZUMGenericSweepY<N>, N, zuml_detail::SweepColumns<N>, ZUMSweeperY<N>,
          &ZUMRegionOfDefinition::SweepY1, &ZUMRegionOfDefinition::SweepY2,
          &ZUMRegionOfDefinition::SweepY3, &ZUMRegionOfDefinition::SweepY4> {
  using ZUMGenericSweepY::SweepBase::SweepBase;
};

/// A line sweep that also tells the coordinates of the run's first pixel and the channel of the
/// first raster's view.
template <int N>
class ZUML_API ZUMGenericSweepCoords
    : public zuml_detail::SweepBase<
          ZUMGenericSweepCoords<N>, N, zuml_detail::SweepPlaces<N>, ZUMSweeperCoords<N>,
          &ZUMRegionOfDefinition::SweepCoords1, &ZUMRegionOfDefinition::SweepCoords2,
          &ZUMRegionOfDefinition::SweepCoords3, &ZUMRegionOfDefinition::SweepCoords4> {
  using ZUMGenericSweepCoords::SweepBase::SweepBase;
};

/// A sweep along lines backwards: from the last line of the last channel to the first, the caller
/// walking each run from its end down to its start. At its end GetEnd1 is null.
template <int N>
class ZUML_API ZUMGenericInvSweep
    : public zuml_detail::SweepBase<
          ZUMGenericInvSweep<N>, N, zuml_detail::SweepEnds<N>, ZUMInvSweeper<N>,
          &ZUMRegionOfDefinition::InvSweep1, &ZUMRegionOfDefinition::InvSweep2,
          &ZUMRegionOfDefinition::InvSweep3, &ZUMRegionOfDefinition::InvSweep4> {
  using ZUMGenericInvSweep::SweepBase::SweepBase;
};

/// The backward sweep with coordinates exists by name only: making one and calling Previous report
/// a failed check, and it visits nothing.
template <int N>
class ZUML_API ZUMGenericInvSweepCoords
    : public zuml_detail::SweepBase<
          ZUMGenericInvSweepCoords<N>, N, zuml_detail::SweepEnds<N>, ZUMInvSweeperCoords<N>,
          &ZUMRegionOfDefinition::InvSweepCoords1, &ZUMRegionOfDefinition::InvSweepCoords2,
          &ZUMRegionOfDefinition::InvSweepCoords3, &ZUMRegionOfDefinition::InvSweepCoords4> {
  using ZUMGenericInvSweepCoords::SweepBase::SweepBase;
};

/// A sweep along lines in alternating direction: inside a plane, each run starts below the pixel
/// that the run before ended on. It ends with the direction 3.
template <int N>
class ZUML_API ZUMGenericContinuousSweep
    : public zuml_detail::SweepBase<
          ZUMGenericContinuousSweep<N>, N, zuml_detail::SweepDirection<N>, ZUMContinuousSweeper<N>,
          &ZUMRegionOfDefinition::ContinuousSweep1, &ZUMRegionOfDefinition::ContinuousSweep2> {
  using ZUMGenericContinuousSweep::SweepBase::SweepBase;
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
