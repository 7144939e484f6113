// Linear filters against the plain loops that one would write for them.

#include "zuml/filters/convolution.h"

#include <string>
#include <vector>

#include "benchmarks/support/pairs.h"
#include "zuml/filters/boxsum.h"

namespace {

template <class P>
ZUMImage<P> MakeImage(int size) {
  ZUMImage<P> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, P());
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) image(x, y) = static_cast<P>((x * 37 + y * 101 + x * y) % 256);
  return image;
}

template <class P>
ZUMImage<P> MakeKernel(int width, int height) {
  const int x = width / 2, y = height / 2;
  ZUMImage<P> kernel(ZUMRect(-x, -y, 0, 0, x, y, 0, 0), 1, P());
  for (int j = -y; j <= y; ++j)
    for (int i = -x; i <= x; ++i) kernel(i, j) = static_cast<P>(1 + (i * i + 3 * j + 500) % 17);
  return kernel;
}

// For each pixel, the kernel row by row.
template <class OutT, class InT>
void ConvolvePlainly(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel, int threads,
                     const ZUMImage<OutT>& result) {
  const int rx = kernel.EndX(), ry = kernel.EndY(), n = image.RoDXSz() - 2 * rx;
  zuml_bench::ParallelLoop(threads, image.RoDYSz() - 2 * ry, [&](long long first, long long last) {
    for (long long y = first; y < last; ++y) {
      OutT* r = &result(rx, static_cast<int>(y) + ry);
      for (int x = 0; x < n; ++x) {
        OutT sum = 0;
        for (int j = 0; j <= 2 * ry; ++j) {
          const InT* s = &image(x, static_cast<int>(y) + j);
          const OutT* w = &kernel(-rx, j - ry);
          for (int i = 0; i <= 2 * rx; ++i) sum += w[i] * static_cast<OutT>(s[i]);
        }
        r[x] = sum;
      }
    }
  });
}

std::string NameOf(const char* what, const char* types, int size, int threads) {
  return std::string(what) + "/" + types + "/" + std::to_string(size) + "/" +
         std::to_string(threads) + "t";
}

template <class OutT, class InT>
void RegisterConvolution(const char* types, int taps, int size, int threads) {
  const auto image = MakeImage<InT>(size);
  const auto kernel = MakeKernel<OutT>(taps, taps);
  const auto result = ZUMConv(image, kernel);
  const std::string what = "conv " + std::to_string(taps) + "x" + std::to_string(taps);
  zuml_bench::Pair(
      NameOf(what.c_str(), types, size, threads), result.NPixels(), threads,
      [=] { benchmark::DoNotOptimize(ZUMConv(image, kernel).GetData()); },
      [=] { ConvolvePlainly(image, kernel, threads, result); });
}

template <class OutT, class InT>
void RegisterSeparable(const char* types, int size, int threads) {
  const auto image = MakeImage<InT>(size);
  const auto x = MakeKernel<OutT>(13, 1), y = MakeKernel<OutT>(1, 13);
  const ZUMKernel<OutT> kernel(x, y, ZUMImage<OutT>(), ZUMImage<OutT>());
  const ZUMImage<OutT> rows(image, 1, OutT()), result(image, 1, OutT());
  zuml_bench::Pair(
      NameOf("separable 13", types, size, threads), image.NPixels(), threads,
      [=] { benchmark::DoNotOptimize(ZUMConv(image, kernel).GetData()); },
      [=] {
        ConvolvePlainly(image, x, threads, rows);
        ConvolvePlainly(rows, y, threads, result);
      });
}

template <class OutT, class InT>
void RegisterBox(const char* types, int size, int threads) {
  const auto image = MakeImage<InT>(size);
  const ZUMRect box(-7, -7, 0, 0, 7, 7, 0, 0);
  const ZUMImage<OutT> x(ZUMRect(-7, 0, 0, 0, 7, 0, 0, 0), 1, OutT(1));
  const ZUMImage<OutT> y(ZUMRect(0, -7, 0, 0, 0, 7, 0, 0), 1, OutT(1));
  const ZUMImage<OutT> rows(image, 1, OutT()), result(image, 1, OutT());
  zuml_bench::Pair(
      NameOf("box sum 15x15", types, size, threads), image.NPixels(), threads,
      [=] { benchmark::DoNotOptimize(ZUMSum<OutT>(image, box).GetData()); },
      [=] {
        ConvolvePlainly(image, x, threads, rows);
        ConvolvePlainly(rows, y, threads, result);
      });
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    for (const int threads : {1, 2}) {
      for (const int taps : {3, 7, 15}) {
        RegisterConvolution<ZUMLong, ZUMByte>("byte long", taps, size, threads);
        RegisterConvolution<ZUMReal, ZUMByte>("byte double", taps, size, threads);
        RegisterConvolution<ZUMReal, ZUMReal>("double double", taps, size, threads);
      }
      RegisterSeparable<ZUMLong, ZUMByte>("byte long", size, threads);
      RegisterSeparable<ZUMReal, ZUMByte>("byte double", size, threads);
      RegisterSeparable<ZUMReal, ZUMReal>("double double", size, threads);
      RegisterBox<ZUMLong, ZUMByte>("byte long", size, threads);
      RegisterBox<ZUMReal, ZUMReal>("double double", size, threads);
    }
  }
  return true;
}();

}  // namespace
