#include "zuml/core/zumsweeprect.h"

#include "zuml/core/xqdiagnostics.h"

using zuml_detail::SweepJump;
using zuml_detail::SweepSpans;
using zuml_detail::SweepSteps;

namespace {

// The sizes of a box and of one raster's block, in the units that steps are made of.
struct SweepGeometry {
  std::ptrdiff_t sx, sy, sz, st;      // the box
  std::ptrdiff_t pixel, line, plane;  // bytes of a pixel, a line, a plane of the block
  std::ptrdiff_t frame, channel;      // bytes of a frame, a channel of the block

  SweepGeometry(const ZUMRect& box, const ZUMRaster& r)
      : sx(std::ptrdiff_t{box.end.x} - box.begin.x + 1),
        sy(std::ptrdiff_t{box.end.y} - box.begin.y + 1),
        sz(std::ptrdiff_t{box.end.z} - box.begin.z + 1),
        st(std::ptrdiff_t{box.end.t} - box.begin.t + 1),
        pixel(r.GetPixSz()),
        line(pixel * r.GetXSz()),
        plane(line * r.GetYSz()),
        frame(plane * r.GetZSz()),
        channel(frame * r.GetTSz()) {}

  // Steps of runs along X: each goes back over what the unit just finished has advanced.
  SweepSteps LineSteps() const {
    return {line, plane - (sy - 1) * line, frame - (sz - 1) * plane - (sy - 1) * line,
            channel - (st - 1) * frame - (sz - 1) * plane - (sy - 1) * line};
  }

  SweepSpans LineSpans(int channels) const {
    SweepSpans spans;
    spans.plane = (sy - 1) * line;
    spans.frame = spans.plane + (sz - 1) * plane;
    spans.channel = spans.frame + (st - 1) * frame;
    spans.all = spans.channel + (channels - 1) * channel;
    return spans;
  }

  // Steps of runs along Y: columns take the place of lines.
  SweepSteps ColumnSteps() const {
    return {pixel, plane - (sx - 1) * pixel, frame - (sz - 1) * plane - (sx - 1) * pixel,
            channel - (st - 1) * frame - (sz - 1) * plane - (sx - 1) * pixel};
  }

  SweepSpans ColumnSpans(int channels) const {
    SweepSpans spans;
    spans.plane = (sx - 1) * pixel;
    spans.frame = spans.plane + (sz - 1) * plane;
    spans.channel = spans.frame + (st - 1) * frame;
    spans.all = spans.channel + (channels - 1) * channel;
    return spans;
  }
};

SweepSpans operator-(const SweepSpans& s) { return {-s.plane, -s.frame, -s.channel, -s.all}; }

void* Advance(void* p, std::ptrdiff_t bytes) { return static_cast<char*>(p) + bytes; }

template <int N>
void AdvanceAll(void* (&p)[N], const SweepSteps (&steps)[N], SweepJump jump) {
  for (int k = 0; k < N; ++k) p[k] = Advance(p[k], steps[k].By(jump));
}

template <int N>
void StartAt(void* (&start)[N], const ZUMBasePoint<int>& p, const ZUMRaster* const (&r)[N]) {
  for (int k = 0; k < N; ++k) start[k] = r[k]->PixelAddress(p, 0);
}

// A forward step: false at the end, where the first start has become null.
template <int N>
SweepJump StepForward(zuml_detail::SweepStarts<N>& at, const SweepSteps (&steps)[N],
                      zuml_detail::SweepThresholds<false>& thresholds, std::ptrdiff_t run) {
  const SweepJump jump = thresholds.Next(at.start[0]);
  if (jump == SweepJump::End) {
    at.start[0] = nullptr;
  } else {
    AdvanceAll(at.start, steps, jump);
    thresholds.Renew(jump, at.start[0]);
    at.end1 = Advance(at.start[0], run);
  }
  return jump;
}

// Nothing to visit: no point, no channel, or a block without pixels.
bool IsEmptyWalk(const ZUMRoDRect& rod, const ZUMRaster& first) {
  return rod.EmptyP() || first.GetCSz() < 1 || first.GetData() == nullptr;
}

// A state is made for a walk that visits nothing: no start, the direction at its end.
template <class Sweeper, class Sweep, int N>
void SetUpSweep(const ZUMRoDRect& rod, Sweep& sweep, const ZUMRaster* const (&r)[N]) {
  sweep.sweeper = IsEmptyWalk(rod, *r[0]) ? std::make_unique<Sweeper>()
                                          : std::make_unique<Sweeper>(sweep, rod.Rect(), r);
}

}  // namespace

template <int N>
ZUMSweeperRect<N>::ZUMSweeperRect(ZUMGenericSweep<N>& sweep, const ZUMRect& box,
                                  const ZUMRaster* const (&r)[N]) {
  const SweepGeometry first(box, *r[0]);
  run_ = (first.sx - 1) * first.pixel;
  for (int k = 0; k < N; ++k) steps_[k] = SweepGeometry(box, *r[k]).LineSteps();
  StartAt(sweep.at.start, box.begin, r);
  sweep.at.end1 = Advance(sweep.at.start[0], run_);
  thresholds_ = {first.LineSpans(r[0]->GetCSz()), sweep.at.start[0]};
}

template <int N>
void ZUMSweeperRect<N>::Next(ZUMGenericSweep<N>* sweep) {
  StepForward(sweep->at, steps_, thresholds_, run_);
}

template <int N>
ZUMSweeperRectY<N>::ZUMSweeperRectY(ZUMGenericSweepY<N>& sweep, const ZUMRect& box,
                                    const ZUMRaster* const (&r)[N]) {
  const SweepGeometry first(box, *r[0]);
  run_ = (first.sy - 1) * first.line;
  for (int k = 0; k < N; ++k) {
    const SweepGeometry geometry(box, *r[k]);
    steps_[k] = geometry.ColumnSteps();
    sweep.line_step[k] = static_cast<int>(geometry.line);
  }
  StartAt(sweep.at.start, box.begin, r);
  sweep.at.end1 = Advance(sweep.at.start[0], run_);
  thresholds_ = {first.ColumnSpans(r[0]->GetCSz()), sweep.at.start[0]};
}

template <int N>
void ZUMSweeperRectY<N>::Next(ZUMGenericSweepY<N>* sweep) {
  StepForward(sweep->at, steps_, thresholds_, run_);
}

template <int N>
ZUMSweeperCoordsRect<N>::ZUMSweeperCoordsRect(ZUMGenericSweepCoords<N>& sweep, const ZUMRect& box,
                                              const ZUMRaster* const (&r)[N])
    : begin_(box.begin) {
  const SweepGeometry first(box, *r[0]);
  run_ = (first.sx - 1) * first.pixel;
  for (int k = 0; k < N; ++k) steps_[k] = SweepGeometry(box, *r[k]).LineSteps();
  StartAt(sweep.at.start, box.begin, r);
  sweep.at.end1 = Advance(sweep.at.start[0], run_);
  sweep.point = box.begin;
  sweep.channel = 0;
  thresholds_ = {first.LineSpans(r[0]->GetCSz()), sweep.at.start[0]};
}

template <int N>
void ZUMSweeperCoordsRect<N>::Next(ZUMGenericSweepCoords<N>* sweep) {
  ZUMBasePoint<int>& p = sweep->point;
  switch (StepForward(sweep->at, steps_, thresholds_, run_)) {
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
                                        const ZUMRaster* const (&r)[N]) {
  const SweepGeometry first(box, *r[0]);
  const int last_channel = r[0]->GetCSz() - 1;
  run_ = (first.sx - 1) * first.pixel;
  for (int k = 0; k < N; ++k) {
    steps_[k] = -SweepGeometry(box, *r[k]).LineSteps();
    sweep.end[k] = r[k]->PixelAddress(box.end, last_channel);
  }
  sweep.start1 = Advance(sweep.end[0], -run_);
  thresholds_ = {-first.LineSpans(r[0]->GetCSz()), sweep.end[0]};
}

template <int N>
void ZUMInvSweeperRect<N>::Previous(ZUMGenericInvSweep<N>* sweep) {
  const SweepJump jump = thresholds_.Next(sweep->end[0]);
  if (jump == SweepJump::End) {
    sweep->end[0] = nullptr;
    return;
  }
  AdvanceAll(sweep->end, steps_, jump);
  thresholds_.Renew(jump, sweep->end[0]);
  sweep->start1 = Advance(sweep->end[0], -run_);
}

template <int N>
void ZUMInvSweeperCoordsRect<N>::Previous(ZUMGenericInvSweepCoords<N>*) {
  XQVerifyFun("0", __FILE__, __LINE__, nullptr);
}

template <int N>
ZUMContinuousSweeperRect<N>::ZUMContinuousSweeperRect(ZUMGenericContinuousSweep<N>& sweep,
                                                      const ZUMRect& box,
                                                      const ZUMRaster* const (&r)[N]) {
  for (int k = 0; k < N; ++k) {
    const SweepGeometry geometry(box, *r[k]);
    run_[k] = (geometry.sx - 1) * geometry.pixel;
    steps_[k] = geometry.LineSteps();
  }
  StartAt(sweep.at.start, box.begin, r);
  sweep.at.end1 = Advance(sweep.at.start[0], run_[0]);
  sweep.direction = ZUMCSNewRun;
  thresholds_ = {SweepGeometry(box, *r[0]).LineSpans(r[0]->GetCSz()), sweep.at.start[0]};
}

template <int N>
void ZUMContinuousSweeperRect<N>::Next(ZUMGenericContinuousSweep<N>* sweep) {
  const ZUMCSDirections direction = sweep->direction;
  if (direction == ZUMCSEnd) return;
  if (direction < ZUMCSNewRun || direction > ZUMCSEnd) {
    XQVerifyFun("0", __FILE__, __LINE__, nullptr);
    return;
  }
  auto& start = sweep->at.start;
  void*& end1 = sweep->at.end1;
  const SweepJump jump = thresholds_.Next(direction == ZUMCSNewRun ? start[0] : end1);
  if (jump == SweepJump::End) {
    sweep->direction = ZUMCSEnd;
    return;
  }
  // The other raster's start stands where the first one's does: at the last pixel of the run
  // before, or in a new run at its first pixel.
  if (jump == SweepJump::Unit) {
    for (int k = 1; k < N; ++k) {
      const std::ptrdiff_t along = direction == ZUMCSBackward ? -run_[k] : run_[k];
      start[k] = Advance(start[k], direction == ZUMCSNewRun ? along : steps_[k].unit + along);
    }
    start[0] = end1;
    if (direction == ZUMCSBackward) {
      end1 = Advance(end1, steps_[0].unit + run_[0]);
      sweep->direction = ZUMCSForward;
    } else {
      end1 = Advance(end1, steps_[0].unit - run_[0]);
      sweep->direction = ZUMCSBackward;
    }
    return;
  }
  for (int k = 0; k < N; ++k) {
    // From the start to the lower end of the present line, then on to the next unit.
    const std::ptrdiff_t to_low = direction == ZUMCSNewRun    ? 0
                                  : direction == ZUMCSForward ? steps_[k].unit
                                                              : steps_[k].unit - run_[k];
    start[k] = Advance(start[k], to_low + steps_[k].By(jump));
  }
  end1 = Advance(start[0], run_[0]);
  thresholds_.Renew(jump, start[0]);
  sweep->direction = ZUMCSNewRun;
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
