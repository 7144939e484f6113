#include <sstream>

#include "tests/everywhere/operation.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"

namespace zuml_everywhere {
namespace {

template <class P, class Make>
std::string Steps(const ZUMImage<P>& target, Make make) {
  ZUMDisplacementArray steps;
  make(steps, target);
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

const Register kCore([] {
  // Views.
  Add<Value, Picture<>>(CALL1(a.Channel(1)), kShares);
  Add<Value, Picture<>>(CALL1(a.Channels(0, 1)), kShares);
  Add<Value, Picture<>>(CALL1(a.Row(a.BeginY())), kShares);
  Add<Value, Picture<>>(CALL1(a.Plane(a.BeginZ())), kShares);
  Add<Value, Picture<>>(CALL1(a.Frame(a.BeginT())), kShares);
  Add<Value, Picture<>, PlacedBox>(CALL2(a.Cut(b)), kShares);

  Add<Value, Picture<>>(CALL1(ZUMCopy(a)));
  Add<Value, Picture<>>(CALL1(static_cast<ZUMImage<ZUMByte>>(a)), kShares);  // one of bytes, itself
  Add<Value, Picture<>>(CALL1(static_cast<ZUMImage<ZUMReal>>(a)), kShares);
  Add<Value, Picture<>>(CALL1(Print(a)));
  Add<Bool, Picture<>, Margins>(CALL2(ZUMImage<ZUMLong>(a, b, 2, 5).GetRasterSz()), kGrows);
  Add<Value, Picture<>, Margins>(CALL2([](auto image, const ZUMRect& margins) {
                                   using P = std::remove_cvref_t<decltype(image(0))>;
                                   const ZUMImage<P> framed(image, margins, 1, P());
                                   framed.RoD().DrawOutFrame(framed, margins, P(1));
                                   return framed;
                                 }(a, b)),
                                 kShares | kGrows);  // the raster keeps its margins
  Add<Bool, Picture<>, Window>(
      CALL2(ZUMRoDRef(a.RoD().DisplaceSides(b.begin.x, b.begin.y, b.begin.z, b.begin.t, b.end.x,
                                            b.end.y, b.end.z, b.end.t))
                .Rect()),
      kDepends);
  Add<Bool, Picture<>, Window>(
      CALL2(ZUMRoDRef(a.RoD().Translate(b.end.x, b.end.y, b.end.z, b.end.t)).Rect()), kDepends);
  Add<Bool, Picture<>>(CALL1(ZUMRoDRef(a.RoD().Symmetry()).Rect()), kDepends);
  Add<Bool, Picture<>>(CALL1(ZUMRoDRef(a.RoD().RotateZ(90)).Rect()), kDepends);
  Add<Bool, Picture<>, Number<3>>(CALL2(ZUMRoDRef(a.RoDPart(1, b)).Rect()), kDepends);
  Add<Bool, Picture<>, Number<3>>(CALL2(ZUMRoDRef(a.RoDVerticalPart(1, b)).Rect()), kDepends);
  Add<Bool, Picture<>, PlacedBox>(CALL2(Intersection(a, ZUMRoDRef(b)).Rect()), kDepends);

  // Elements as steps.
  Add<Byte, Picture<>, Element<>>(CALL2(Steps(a, [&b](auto& s, auto& r) { s.FromPixels(r, b); })));
  Add<Byte, Picture<>, Element<>>(
      CALL2(Steps(a, [&b](auto& s, auto& r) { s.FromNonZeroPixels(r, b); })));
  Add<Byte, Picture<>, Element<>>(
      CALL2(Steps(a, [&b](auto& s, auto& r) { s.SymmetricFromNonZeroPixels(r, b); })));
  Add<Byte, Picture<>, Element<ZUMLong>>(
      CALL2(Steps(a, [&b](auto& s, auto& r) { s.FromEqualPixels(r, b, 1); })));
  Add<Byte, Picture<>, Element<>>(
      CALL2(Steps(a, [&b](auto& s, auto& r) { s.FromNonZeroPixelsL2RIn(r, b); })));
  Add<Byte, Picture<>, Element<>>(
      CALL2(Steps(a, [&b](auto& s, auto& r) { s.SymmetricFromNonZeroPixelsL2ROut(r, b); })));
  Add<Byte, Picture<>, Element<>>(CALL2(Steps(a, [&b](auto& s, auto& r) {
    ZUMPointList points;
    points.FromNonZeroPixels(b);
    points.Disarrange();
    s.FromPointList(r, points);
  })));
  Add<Byte, Picture<>, Element<ZUMBool, 1, 1, 0, 0>>(
      CALL2(Steps(a, [&b](auto& s, auto& r) { s.SurroundPath(r, b); })));
  Add<Byte, Element<>>(CALL1(zuml_detail::RequireConnectivity("", a)));
  Add<Byte, Picture<>, Kernel<ZUMLong>>(CALL2(Describe(b, a)), kDepends);
  Add<Byte, Picture<>, LineKernel<ZUMReal>>(CALL2(Describe(b, a)), kDepends);
});

}  // namespace
}  // namespace zuml_everywhere
