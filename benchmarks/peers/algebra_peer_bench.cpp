// Pixel algebra and statistics against OpenCV, on the same pixels: arithmetic, comparison, choice,
// lookup, conversion and reductions.
//
// OpenCV's byte and short arithmetic saturates where ours wraps; both are one instruction.

#include <cstdint>
#include <opencv2/core.hpp>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/comparison.h"
#include "zuml/algebra/conditional.h"
#include "zuml/algebra/extrema.h"
#include "zuml/algebra/histogram.h"
#include "zuml/algebra/lut.h"
#include "zuml/algebra/product.h"
#include "zuml/algebra/statistics.h"

namespace {

using benchmark::DoNotOptimize;

// The peer's view of an image's pixels.
template <class P>
cv::Mat View(const ZUMImage<P>& image) {
  constexpr int kType = sizeof(P) == 1 ? CV_8U : sizeof(P) == 4 ? CV_32S : CV_64F;
  return cv::Mat(image.RoDYSz(), image.RoDXSz(), kType, image.GetData());
}

template <class P>
ZUMImage<P> MakeImage(int size, std::uint32_t seed) {
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, P());
  auto* pixels = static_cast<P*>(image.GetData());
  for (long long i = 0; i < image.GetChannelSz(); ++i) {
    seed = seed * 1664525u + 1013904223u;
    pixels[i] = static_cast<P>(seed >> 24);
  }
  return image;
}

// One operation at one size: ours and the peer's, with one and with two threads.
template <class Ours, class Peer>
void Register(const std::string& name, int size, Ours ours, Peer peer) {
  for (const int threads : {1, 2}) {
    zuml_bench::Pair(name + "/" + std::to_string(size) + "/" + std::to_string(threads) + "t",
                     static_cast<double>(size) * size, threads, ours, [=]() mutable {
                       cv::setNumThreads(threads);
                       peer();
                     });
  }
}

template <class P>
void RegisterArithmetic(const std::string& type, int size) {
  const ZUMImage<P> a = MakeImage<P>(size, 1), b = MakeImage<P>(size, 2);
  const cv::Mat ca = View(a), cb = View(b);
  // The peer's result is kept from call to call, as ours is by the allocator.
  const auto both = [&](const char* name, auto ours, auto peer) {
    Register(
        std::string(name) + "/" + type, size, [=] { DoNotOptimize(ours(a, b).GetData()); },
        [=, out = cv::Mat()]() mutable { peer(ca, cb, out); });
  };
  both(
      "add", [](auto& x, auto& y) { return x + y; },
      [](auto& x, auto& y, auto& r) { cv::add(x, y, r); });
  both(
      "subtract", [](auto& x, auto& y) { return x - y; },
      [](auto& x, auto& y, auto& r) { cv::subtract(x, y, r); });
  both(
      "multiply", [](auto& x, auto& y) { return ZUMPointProduct(x, y); },
      [](auto& x, auto& y, auto& r) { cv::multiply(x, y, r); });
  both(
      "less", [](auto& x, auto& y) { return x < y; },
      [](auto& x, auto& y, auto& r) { cv::compare(x, y, r, cv::CMP_LT); });
  const ZUMImage<ZUMBool> mask = MakeImage<ZUMByte>(size, 3) < ZUMByte(128);
  cv::Mat peer_mask = View(mask) * 255;
  Register(
      "choose/" + type, size, [=] { DoNotOptimize(ZUMImIf(mask, a, b).GetData()); },
      [=, out = cv::Mat()]() mutable {
        cb.copyTo(out);
        ca.copyTo(out, peer_mask);
      });
  Register(
      "min and max/" + type, size,
      [=] {
        P min, max;
        ZUMMinMax(a, min, max);
        DoNotOptimize(min);
        DoNotOptimize(max);
      },
      [=] {
        double min, max;
        cv::minMaxLoc(ca, &min, &max);
        DoNotOptimize(min);
      });
  Register(
      "position of max/" + type, size, [=] { DoNotOptimize(ZUMSearchMax(a)); },
      [=] {
        double max;
        cv::Point at;
        cv::minMaxLoc(ca, nullptr, &max, nullptr, &at);
        DoNotOptimize(at);
      });
}

void RegisterBytes(int size) {
  const ZUMImage<ZUMByte> a = MakeImage<ZUMByte>(size, 1);
  const cv::Mat ca = View(a);
  const ZUMImage<ZUMByte> table(ZUMRect(0, 0, 0, 0, 255, 0, 0, 0), 1, 0);
  for (int i = 0; i < 256; ++i) table(i) = static_cast<ZUMByte>(255 - i);
  const cv::Mat peer_table(1, 256, CV_8U, table.GetData());
  Register(
      "lookup/byte", size, [=] { DoNotOptimize(ZUMUnsafeLut(a, table).GetData()); },
      [=, out = cv::Mat()]() mutable { cv::LUT(ca, peer_table, out); });
  Register(
      "convert/byte to double", size,
      [=] { DoNotOptimize(static_cast<ZUMImage<ZUMReal>>(a).GetData()); },
      [=, out = cv::Mat()]() mutable { ca.convertTo(out, CV_64F); });
  Register(
      "sum/byte", size, [=] { DoNotOptimize(ZUMSum<ZUMLong>(a)); },
      [=] { DoNotOptimize(cv::sum(ca)); });
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    RegisterArithmetic<ZUMByte>("byte", size);
    RegisterArithmetic<ZUMLong>("long", size);
    RegisterArithmetic<ZUMReal>("double", size);
    RegisterBytes(size);
    const ZUMImage<ZUMReal> d = MakeImage<ZUMReal>(size, 4);
    const cv::Mat cd = View(d);
    Register(
        "sum/double", size, [=] { DoNotOptimize(ZUMSum<ZUMReal>(d)); },
        [=] { DoNotOptimize(cv::sum(cd)); });
  }
  return true;
}();

}  // namespace
