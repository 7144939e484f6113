#include <sstream>

#include "tests/everywhere/operation.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;

template <class Make>
std::string Steps(Make make) {
  ZUMDisplacementArray steps;
  make(steps);
  std::string text;
  for (const long long offset : steps) text += Text(offset) + " ";
  return text;
}

template <class P>
std::string Print(const ZUMImage<P>& image) {
  std::ostringstream stream;
  stream << image;
  return stream ? "printed" : "";
}

template <class P>
ZUMImage<P> DrawFrame(const ZUMImage<P>& image, const ZUMRect& margins) {
  const ZUMImage<P> framed(image, margins, 1, P());
  framed.RoD().DrawOutFrame(framed, margins, P(1));
  return framed;
}

ZUMRect Displace(const ZUMRoDRef& rod, const ZUMRect& by) {
  return DisplaceSides(rod, by.begin.x, by.begin.y, by.begin.z, by.begin.t, by.end.x, by.end.y,
                       by.end.z, by.end.t)
      .Rect();
}

ZUMPointList Points(const ZUMImage<ZUMBool>& element) {
  ZUMPointList points;
  points.FromNonZeroPixels(element);
  points.Disarrange();
  return points;
}

template <class Q>
std::string Describe(const ZUMKernel<Q>& kernel, const ZUMRoDRef& rod) {
  if (kernel.GetCSz() == 0) return "";
  std::string text = Text(kernel.Sum(0)) + " " + Text(kernel.SumSqr(0)) + Text(kernel.Rect());
  for (const ZUMSubKernel<Q>& stage : kernel.GetKernels()) {
    text += Text(stage.GetFrame()) + Text(stage.GetSymmetricFrame());
    text += Text(stage.DirectRoD(rod).Rect()) + Text(stage.SymmetricRoD(rod).Rect());
  }
  return text;
}

const Register kOperations("core", [] {
  ADD1(kShares, (Value, Two), a.Channel(1), a.Channels(0, 1), a.Row(a.BeginY()),
       a.Plane(a.BeginZ()), a.Frame(a.BeginT()), static_cast<ZUMImage<ZUMByte>>(a),
       static_cast<ZUMImage<ZUMReal>>(a));
  ADD2(kShares, (Value, Two, PlacedBox), a.Cut(b));
  ADD1(kMoves, (Value, Two), ZUMCopy(a), Print(a));
  ADD2(kShares | kGrows, (Value, Two, Margins), DrawFrame(a, b));
  ADD2(kDepends, (Bool, Two, Window), Displace(a, b),
       ZUMRoDRef(a.RoD().Translate(b.end.x, b.end.y, b.end.z, b.end.t)).Rect());
  ADD1(kDepends, (Bool, Two), ZUMRoDRef(a.RoD().Symmetry()).Rect(),
       ZUMRoDRef(a.RoD().RotateZ(90)).Rect());
  ADD2(kDepends, (Bool, Two, Number<3>), ZUMRoDRef(a.RoDPart(1, b)).Rect(),
       ZUMRoDRef(a.RoDVerticalPart(1, b)).Rect());
  ADD2(kDepends, (Bool, Two, PlacedBox), Intersection(a, ZUMRoDRef(b)).Rect());
  ADD2(kMoves, (Byte, Two, Element<>), Steps([&](auto& s) { s.FromPixels(a, b); }),
       Steps([&](auto& s) { s.FromNonZeroPixels(a, b); }),
       Steps([&](auto& s) { s.SymmetricFromNonZeroPixels(a, b); }),
       Steps([&](auto& s) { s.FromNonZeroPixelsL2RIn(a, b); }),
       Steps([&](auto& s) { s.SymmetricFromNonZeroPixelsL2ROut(a, b); }),
       Steps([&](auto& s) { s.FromPointList(a, Points(b)); }));
  ADD2(kMoves, (Byte, Two, Element<ZUMLong>), Steps([&](auto& s) { s.FromEqualPixels(a, b, 1); }));
  ADD2(kMoves, (Byte, Two, Element<ZUMBool, 1, 1, 0, 0>),
       Steps([&](auto& s) { s.SurroundPath(a, b); }));
  ADD1(kMoves, (Byte, Element<>), zuml_detail::RequireConnectivity("", a));
  ADD2(kDepends, (Byte, Two, Kernel<ZUMLong>), Describe(b, a));
  ADD2(kDepends, (Byte, Two, LineKernel<ZUMReal>), Describe(b, a));
});

}  // namespace
}  // namespace zuml_everywhere
