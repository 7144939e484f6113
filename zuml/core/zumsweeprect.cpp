#include "zuml/core/zumsweeprect.h"

#include <memory>

#include "zuml/core/xqdiagnostics.h"

using zuml_detail::SweepGeometry;
using zuml_detail::SweepJump;

namespace zuml_detail {

SweepGeometry::SweepGeometry(const ZUMRect& box, const ZUMRaster& r, bool columns) {
  const std::ptrdiff_t sx = std::ptrdiff_t{box.end.x} - box.begin.x + 1;
  const std::ptrdiff_t sy = std::ptrdiff_t{box.end.y} - box.begin.y + 1;
  const std::ptrdiff_t sz = std::ptrdiff_t{box.end.z} - box.begin.z + 1;
  const std::ptrdiff_t st = std::ptrdiff_t{box.end.t} - box.begin.t + 1;
  const std::ptrdiff_t pixel = r.GetPixSz();
  const std::ptrdiff_t line = pixel * r.GetXSz();
  const std::ptrdiff_t plane = line * r.GetYSz();
  const std::ptrdiff_t frame = plane * r.GetZSz();
  const std::ptrdiff_t channel = frame * r.GetTSz();
  run = columns ? (sy - 1) * line : (sx - 1) * pixel;
  spans.plane = columns ? (sx - 1) * pixel : (sy - 1) * line;
  spans.frame = spans.plane + (sz - 1) * plane;
  spans.channel = spans.frame + (st - 1) * frame;
  spans.all = spans.channel + (r.GetCSz() - 1) * channel;
  // Each goes back over what the unit just finished has advanced.
  steps[0] = columns ? pixel : line;
  steps[1] = plane - spans.plane;
  steps[2] = frame - spans.frame;
  steps[3] = channel - spans.channel;
}

SweepGeometry SweepGeometry::operator-() const {
  SweepGeometry negated;
  negated.run = -run;
  for (int i = 0; i < 4; ++i) negated.steps[i] = -steps[i];
  negated.spans = {-spans.plane, -spans.frame, -spans.channel, -spans.all};
  return negated;
}

}  // namespace zuml_detail

namespace {

void* Advance(void* p, std::ptrdiff_t bytes) { return static_cast<char*>(p) + bytes; }

// Whether there is no point, no channel, or no pixel in the block.
bool IsEmptyWalk(const ZUMRoDRect& rod, const ZUMRaster& first) {
  return rod.EmptyP() || first.GetCSz() < 1 || first.GetData() == nullptr;
}

// Without a run, a sweep object stays as it was made: null pointers, the direction at its end.
template <class Sweeper, class Sweep, int N>
void SetUpSweep(const ZUMRoDRect& rod, Sweep& sweep, const ZUMRaster* const (&r)[N]) {
  sweep.sweeper = IsEmptyWalk(rod, *r[0]) ? std::make_unique<Sweeper>()
                                          : std::make_unique<Sweeper>(sweep, rod.Rect(), r);
}

}  // namespace

template <int N, bool Backward>
zuml_detail::SweepWalk<N, Backward>::SweepWalk(const ZUMRect& box,
                                               const zuml_detail::SweepRasters<N>& r, bool columns,
                                               SweepPointers<N>& at, void*& end) {
  const int last_channel = r[0]->GetCSz() - 1;
  for (int k = 0; k < N; ++k) {
    const SweepGeometry geometry(box, *r[k], columns);
    geometry_[k] = Backward ? -geometry : geometry;
    at[k] = Backward ? r[k]->PixelAddress(box.end, last_channel) : r[k]->PixelAddress(box.begin, 0);
  }
  end = Advance(at[0], geometry_[0].run);
  all_ = Address(at[0], geometry_[0].spans.all);
  Renew(SweepJump::Channel, at[0]);
}

template <int N, bool Backward>
SweepJump zuml_detail::SweepWalk<N, Backward>::Next(SweepPointers<N>& at, void*& end) {
  const SweepJump jump = JumpFrom(at[0]);
  if (jump == SweepJump::End) {
    at[0] = nullptr;
    plane_ = frame_ = channel_ = all_ = 0;
  } else {
    for (int k = 0; k < N; ++k) at[k] = Advance(at[k], geometry_[k].By(jump));
    end = Advance(at[0], geometry_[0].run);
    Renew(jump, at[0]);
  }
  return jump;
}

template <int N>
ZUMSweeperRect<N>::ZUMSweeperRect(ZUMGenericSweep<N>& sweep, const ZUMRect& box,
                                  const zuml_detail::SweepRasters<N>& r)
    : walk_(box, r, false, sweep.start, sweep.end1) {}

template <int N>
void ZUMSweeperRect<N>::Next(ZUMGenericSweep<N>* sweep) {
  walk_.Next(sweep->start, sweep->end1);
}

template <int N>
ZUMSweeperRectY<N>::ZUMSweeperRectY(ZUMGenericSweepY<N>& sweep, const ZUMRect& box,
                                    const zuml_detail::SweepRasters<N>& r)
    : walk_(box, r, true, sweep.start, sweep.end1) {
  for (int k = 0; k < N; ++k) sweep.line_step[k] = r[k]->GetXSz() * r[k]->GetPixSz();
}

template <int N>
void ZUMSweeperRectY<N>::Next(ZUMGenericSweepY<N>* sweep) {
  walk_.Next(sweep->start, sweep->end1);
}

template <int N>
ZUMSweeperCoordsRect<N>::ZUMSweeperCoordsRect(ZUMGenericSweepCoords<N>& sweep, const ZUMRect& box,
                                              const zuml_detail::SweepRasters<N>& r)
    : begin_(box.begin), walk_(box, r, false, sweep.start, sweep.end1) {
  sweep.point = box.begin;
}

template <int N>
void ZUMSweeperCoordsRect<N>::Next(ZUMGenericSweepCoords<N>* sweep) {
  ZUMBasePoint<int>& p = sweep->point;
  switch (walk_.Next(sweep->start, sweep->end1)) {
    case SweepJump::Unit:
      ++p.y;
      break;
    case SweepJump::Plane:
      p.y = begin_.y;
      ++p.z;
      break;
    case SweepJump::Frame:
      p.y = begin_.y;
      p.z = begin_.z;
      ++p.t;
      break;
    case SweepJump::Channel:
      p = begin_;
      ++sweep->channel;
      break;
    case SweepJump::End:
      break;
  }
}

template <int N>
ZUMInvSweeperRect<N>::ZUMInvSweeperRect(ZUMGenericInvSweep<N>& sweep, const ZUMRect& box,
                                        const zuml_detail::SweepRasters<N>& r)
    : walk_(box, r, false, sweep.end, sweep.start1) {}

template <int N>
void ZUMInvSweeperRect<N>::Previous(ZUMGenericInvSweep<N>* sweep) {
  walk_.Next(sweep->end, sweep->start1);
}

template <int N>
void ZUMInvSweeperCoordsRect<N>::Previous(ZUMGenericInvSweepCoords<N>*) {
  XQVerifyFun("0", __FILE__, __LINE__, nullptr);
}

template <int N>
ZUMContinuousSweeperRect<N>::ZUMContinuousSweeperRect(ZUMGenericContinuousSweep<N>& sweep,
                                                      const ZUMRect& box,
                                                      const zuml_detail::SweepRasters<N>& r)
    : walk_(box, r, false, sweep.start, sweep.end1) {
  sweep.direction = ZUMCSNewRun;
}

template <int N>
void ZUMContinuousSweeperRect<N>::Next(ZUMGenericContinuousSweep<N>* sweep) {
  const ZUMCSDirections direction = sweep->direction;
  if (direction == ZUMCSEnd) return;
  if (direction < ZUMCSNewRun || direction > ZUMCSEnd) {
    XQVerifyFun("0", __FILE__, __LINE__, nullptr);
    return;
  }
  auto& start = sweep->start;
  void*& end1 = sweep->end1;
  const SweepJump jump = walk_.JumpFrom(direction == ZUMCSNewRun ? start[0] : end1);
  if (jump == SweepJump::End) {
    sweep->direction = ZUMCSEnd;
    return;
  }
  const bool to_low = direction == ZUMCSBackward;
  for (int k = 0; k < N; ++k) {
    const SweepGeometry& g = walk_[k];
    // From the start, in all runs but a new one the last pixel of the run before, to the low end of
    // the present line and to the pixel that the present run ends on.
    std::ptrdiff_t low = 0;
    if (direction != ZUMCSNewRun) low = g.By(SweepJump::Unit) - (to_low ? g.run : 0);
    const std::ptrdiff_t last = to_low ? low : low + g.run;
    start[k] = Advance(start[k], jump == SweepJump::Unit ? last : low + g.By(jump));
  }
  if (jump == SweepJump::Unit) {
    end1 =
        Advance(start[0], walk_[0].By(SweepJump::Unit) + (to_low ? walk_[0].run : -walk_[0].run));
    sweep->direction = to_low ? ZUMCSForward : ZUMCSBackward;
  } else {
    end1 = Advance(start[0], walk_[0].run);
    walk_.Renew(jump, start[0]);
    sweep->direction = ZUMCSNewRun;
  }
}

// The box's side of the sweeps.

void ZUMRoDRect::Sweep1(ZUMGenericSweep<1>& sweep, const ZUMRaster& r1) const {
  SetUpSweep<ZUMSweeperRect<1>>(*this, sweep, {&r1});
}
void ZUMRoDRect::Sweep2(ZUMGenericSweep<2>& sweep, const ZUMRaster& r1, const ZUMRaster& r2) const {
  SetUpSweep<ZUMSweeperRect<2>>(*this, sweep, {&r1, &r2});
}
void ZUMRoDRect::Sweep3(ZUMGenericSweep<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                        const ZUMRaster& r3) const {
  SetUpSweep<ZUMSweeperRect<3>>(*this, sweep, {&r1, &r2, &r3});
}
void ZUMRoDRect::Sweep4(ZUMGenericSweep<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                        const ZUMRaster& r3, const ZUMRaster& r4) const {
  SetUpSweep<ZUMSweeperRect<4>>(*this, sweep, {&r1, &r2, &r3, &r4});
}
void ZUMRoDRect::Sweep5(ZUMGenericSweep<5>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                        const ZUMRaster& r3, const ZUMRaster& r4, const ZUMRaster& r5) const {
  SetUpSweep<ZUMSweeperRect<5>>(*this, sweep, {&r1, &r2, &r3, &r4, &r5});
}
void ZUMRoDRect::SweepY1(ZUMGenericSweepY<1>& sweep, const ZUMRaster& r1) const {
  SetUpSweep<ZUMSweeperRectY<1>>(*this, sweep, {&r1});
}
void ZUMRoDRect::SweepY2(ZUMGenericSweepY<2>& sweep, const ZUMRaster& r1,
                         const ZUMRaster& r2) const {
  SetUpSweep<ZUMSweeperRectY<2>>(*this, sweep, {&r1, &r2});
}
void ZUMRoDRect::SweepY3(ZUMGenericSweepY<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                         const ZUMRaster& r3) const {
  SetUpSweep<ZUMSweeperRectY<3>>(*this, sweep, {&r1, &r2, &r3});
}
void ZUMRoDRect::SweepY4(ZUMGenericSweepY<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                         const ZUMRaster& r3, const ZUMRaster& r4) const {
  SetUpSweep<ZUMSweeperRectY<4>>(*this, sweep, {&r1, &r2, &r3, &r4});
}
void ZUMRoDRect::SweepCoords1(ZUMGenericSweepCoords<1>& sweep, const ZUMRaster& r1) const {
  SetUpSweep<ZUMSweeperCoordsRect<1>>(*this, sweep, {&r1});
}
void ZUMRoDRect::SweepCoords2(ZUMGenericSweepCoords<2>& sweep, const ZUMRaster& r1,
                              const ZUMRaster& r2) const {
  SetUpSweep<ZUMSweeperCoordsRect<2>>(*this, sweep, {&r1, &r2});
}
void ZUMRoDRect::SweepCoords3(ZUMGenericSweepCoords<3>& sweep, const ZUMRaster& r1,
                              const ZUMRaster& r2, const ZUMRaster& r3) const {
  SetUpSweep<ZUMSweeperCoordsRect<3>>(*this, sweep, {&r1, &r2, &r3});
}
void ZUMRoDRect::SweepCoords4(ZUMGenericSweepCoords<4>& sweep, const ZUMRaster& r1,
                              const ZUMRaster& r2, const ZUMRaster& r3, const ZUMRaster& r4) const {
  SetUpSweep<ZUMSweeperCoordsRect<4>>(*this, sweep, {&r1, &r2, &r3, &r4});
}
void ZUMRoDRect::InvSweep1(ZUMGenericInvSweep<1>& sweep, const ZUMRaster& r1) const {
  SetUpSweep<ZUMInvSweeperRect<1>>(*this, sweep, {&r1});
}
void ZUMRoDRect::InvSweep2(ZUMGenericInvSweep<2>& sweep, const ZUMRaster& r1,
                           const ZUMRaster& r2) const {
  SetUpSweep<ZUMInvSweeperRect<2>>(*this, sweep, {&r1, &r2});
}
void ZUMRoDRect::InvSweep3(ZUMGenericInvSweep<3>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                           const ZUMRaster& r3) const {
  SetUpSweep<ZUMInvSweeperRect<3>>(*this, sweep, {&r1, &r2, &r3});
}
void ZUMRoDRect::InvSweep4(ZUMGenericInvSweep<4>& sweep, const ZUMRaster& r1, const ZUMRaster& r2,
                           const ZUMRaster& r3, const ZUMRaster& r4) const {
  SetUpSweep<ZUMInvSweeperRect<4>>(*this, sweep, {&r1, &r2, &r3, &r4});
}

namespace {

template <int N>
void ReportInvSweepCoords(ZUMGenericInvSweepCoords<N>& sweep) {
  sweep.sweeper = std::make_unique<ZUMInvSweeperCoordsRect<N>>();
  XQVerifyFun("0", __FILE__, __LINE__, nullptr);
}

}  // namespace

void ZUMRoDRect::InvSweepCoords1(ZUMGenericInvSweepCoords<1>& sweep, const ZUMRaster&) const {
  ReportInvSweepCoords(sweep);
}
void ZUMRoDRect::InvSweepCoords2(ZUMGenericInvSweepCoords<2>& sweep, const ZUMRaster&,
                                 const ZUMRaster&) const {
  ReportInvSweepCoords(sweep);
}
void ZUMRoDRect::InvSweepCoords3(ZUMGenericInvSweepCoords<3>& sweep, const ZUMRaster&,
                                 const ZUMRaster&, const ZUMRaster&) const {
  ReportInvSweepCoords(sweep);
}
void ZUMRoDRect::InvSweepCoords4(ZUMGenericInvSweepCoords<4>& sweep, const ZUMRaster&,
                                 const ZUMRaster&, const ZUMRaster&, const ZUMRaster&) const {
  ReportInvSweepCoords(sweep);
}
void ZUMRoDRect::ContinuousSweep1(ZUMGenericContinuousSweep<1>& sweep, const ZUMRaster& r1) const {
  SetUpSweep<ZUMContinuousSweeperRect<1>>(*this, sweep, {&r1});
}
void ZUMRoDRect::ContinuousSweep2(ZUMGenericContinuousSweep<2>& sweep, const ZUMRaster& r1,
                                  const ZUMRaster& r2) const {
  SetUpSweep<ZUMContinuousSweeperRect<2>>(*this, sweep, {&r1, &r2});
}

#define ZUML_INSTANTIATE_KINDS(N)             \
  template class ZUMGenericSweepY<N>;         \
  template class ZUMGenericSweepCoords<N>;    \
  template class ZUMGenericInvSweep<N>;       \
  template class ZUMGenericInvSweepCoords<N>; \
  template class ZUMSweeperY<N>;              \
  template class ZUMSweeperCoords<N>;         \
  template class ZUMInvSweeper<N>;            \
  template class ZUMInvSweeperCoords<N>;      \
  template class ZUMSweeperRectY<N>;          \
  template class ZUMSweeperCoordsRect<N>;     \
  template class ZUMInvSweeperRect<N>;        \
  template class ZUMInvSweeperCoordsRect<N>;
ZUML_INSTANTIATE_KINDS(1)
ZUML_INSTANTIATE_KINDS(2)
ZUML_INSTANTIATE_KINDS(3)
ZUML_INSTANTIATE_KINDS(4)
#undef ZUML_INSTANTIATE_KINDS

#define ZUML_INSTANTIATE_LINES(N)    \
  template class ZUMGenericSweep<N>; \
  template class ZUMSweeper<N>;      \
  template class ZUMSweeperRect<N>;
ZUML_INSTANTIATE_LINES(1)
ZUML_INSTANTIATE_LINES(2)
ZUML_INSTANTIATE_LINES(3)
ZUML_INSTANTIATE_LINES(4)
ZUML_INSTANTIATE_LINES(5)
#undef ZUML_INSTANTIATE_LINES

#define ZUML_INSTANTIATE_CONTINUOUS(N)         \
  template class ZUMGenericContinuousSweep<N>; \
  template class ZUMContinuousSweeper<N>;      \
  template class ZUMContinuousSweeperRect<N>;
ZUML_INSTANTIATE_CONTINUOUS(1)
ZUML_INSTANTIATE_CONTINUOUS(2)
#undef ZUML_INSTANTIATE_CONTINUOUS
