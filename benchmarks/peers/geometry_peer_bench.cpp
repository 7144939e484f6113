// Histograms and geometric transforms against OpenCV, on the same pixels.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/algebra/histogram.h"
#include "zuml/geometry/gridmoves.h"
#include "zuml/geometry/scaling.h"
#include "zuml/geometry/warp.h"

namespace {

using benchmark::DoNotOptimize;

template <class P>
ZUMImage<P> MakeImage(int size) {
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, P());
  auto* pixels = static_cast<P*>(image.GetData());
  unsigned seed = 7;
  for (long long i = 0; i < image.GetChannelSz(); ++i) {
    seed = seed * 1664525u + 1013904223u;
    pixels[i] = static_cast<P>(seed >> 24);
  }
  return image;
}

template <class Ours, class Peer>
void Register(const std::string& name, int size, double pixels, Ours ours, Peer peer) {
  for (const int threads : {1, 2}) {
    zuml_bench::Pair(name + "/" + std::to_string(size) + "/" + std::to_string(threads) + "t",
                     pixels, threads, ours, [=]() mutable {
                       cv::setNumThreads(threads);
                       peer();
                     });
  }
}

template <class P>
void RegisterTransforms(const std::string& type, int cv_type, int size) {
  const ZUMImage<P> a = MakeImage<P>(size);
  const cv::Mat ca(size, size, cv_type, a.GetData());
  const double n = static_cast<double>(size) * size;
  const auto both = [&](const char* name, double pixels, auto ours, auto peer) {
    Register(
        std::string(name) + "/" + type, size, pixels, [=] { DoNotOptimize(ours(a).GetData()); },
        [=, out = cv::Mat()]() mutable { peer(ca, out); });
  };
  // A turn by 10 degrees about the middle, from the result to the source.
  const double c = 0.984807753012208, s = 0.17364817766693033, m = size / 2.0;
  struct Matrix {
    double rows[2][3];
  };
  const Matrix matrix{{{c, -s, m - c * m + s * m}, {s, c, m - s * m - c * m}}};
  const cv::Mat peer_matrix =
      (cv::Mat_<double>(2, 3) << c, -s, m - c * m + s * m, s, c, m - s * m - c * m);
  both(
      "warp nearest", n,
      [=](auto& x) { return ZUMWarpAffine2D(x, x, matrix.rows, ZUMInterpolationNearest, P(0)); },
      [=](auto& x, auto& r) {
        cv::warpAffine(x, r, peer_matrix, x.size(), cv::INTER_NEAREST | cv::WARP_INVERSE_MAP);
      });
  both(
      "warp linear", n,
      [=](auto& x) { return ZUMWarpAffine2D(x, x, matrix.rows, ZUMInterpolationLinear, P(0)); },
      [=](auto& x, auto& r) {
        cv::warpAffine(x, r, peer_matrix, x.size(), cv::INTER_LINEAR | cv::WARP_INVERSE_MAP);
      });
  both(
      "quarter turn", n, [](auto& x) { return ZUMRotateZ(x, 90); },
      [](auto& x, auto& r) { cv::rotate(x, r, cv::ROTATE_90_CLOCKWISE); });
  both(
      "transpose", n, [](auto& x) { return ZUMTranspose(x); },
      [](auto& x, auto& r) { cv::transpose(x, r); });
  both(
      "mirror X", n, [](auto& x) { return ZUMSymmetryX(x); },
      [](auto& x, auto& r) { cv::flip(x, r, 1); });
  both(
      "mirror Y", n, [](auto& x) { return ZUMSymmetryY(x); },
      [](auto& x, auto& r) { cv::flip(x, r, 0); });
  both(
      "binning 2x2", n, [](auto& x) { return ZUMBinning2D(x, 2, 2); },
      [=](auto& x, auto& r) {
        cv::resize(x, r, cv::Size(size / 2, size / 2), 0, 0, cv::INTER_AREA);
      });
  both(
      "zoom 2x2", 4 * n, [](auto& x) { return ZUMZoom2D(x, 2, 2); },
      [=](auto& x, auto& r) {
        cv::resize(x, r, cv::Size(size * 2, size * 2), 0, 0, cv::INTER_NEAREST);
      });
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    const ZUMImage<ZUMByte> a = MakeImage<ZUMByte>(size);
    const cv::Mat ca(size, size, CV_8U, a.GetData());
    Register(
        "histogram/byte", size, static_cast<double>(size) * size,
        [=] { DoNotOptimize(ZUMHistogram(a, 0, 0, 255).GetData()); },
        [=, out = cv::Mat()]() mutable {
          const int channels[] = {0}, bins[] = {256};
          const float range[] = {0, 256};
          const float* ranges[] = {range};
          cv::calcHist(&ca, 1, channels, cv::Mat(), out, 1, bins, ranges);
        });
  }
  RegisterTransforms<ZUMByte>("byte", CV_8U, 1024);
  RegisterTransforms<ZUMByte>("byte", CV_8U, 4096);
  RegisterTransforms<ZUMReal>("double", CV_64F, 1024);
  RegisterTransforms<ZUMReal>("double", CV_64F, 4096);
  return true;
}();

}  // namespace
