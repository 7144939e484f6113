// Linear filters against OpenCV. Where it has no result of the same type, the one whose accuracy
// comes next is taken. Its results cover the border too, which is less than a hundredth of the
// pixels. From 11 x 11 on it convolves by a Fourier transform.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"

namespace {

template <class P>
ZUMImage<P> MakeImage(int width, int height, int modulus) {
  ZUMImage<P> image(ZUMRect(-width / 2, -height / 2, 0, 0, (width - 1) / 2, (height - 1) / 2, 0, 0),
                    1, P());
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      image(x - width / 2, y - height / 2) =
          static_cast<P>(1 + (x * 37 + y * 101 + x * y) % modulus);
    }
  return image;
}

template <class P>
constexpr int kDepth = std::is_same_v<P, ZUMByte>   ? CV_8U
                       : std::is_same_v<P, ZUMLong> ? CV_32S
                                                    : CV_64F;

// The image's own pixels.
template <class P>
cv::Mat MakeMat(const ZUMImage<P>& image) {
  return cv::Mat(image.RoDYSz(), image.RoDXSz(), kDepth<P>, image.GetData());
}

void RegisterPair(const std::string& what, const char* types, int size, int threads,
                  std::function<void()> ours, std::function<void()> other) {
  zuml_bench::Pair(
      what + "/" + types + "/" + std::to_string(size) + "/" + std::to_string(threads) + "t",
      static_cast<double>(size) * size, threads, std::move(ours), [=, other = std::move(other)] {
        cv::setNumThreads(threads);
        other();
      });
}

template <class OutT, class InT>
void RegisterFilters(const char* types, int depth, int size, int threads) {
  const auto image = MakeImage<InT>(size, size, 255);
  for (const int taps : {3, 7, 15}) {
    const auto kernel = MakeImage<OutT>(taps, taps, 11);
    cv::Mat weights;
    MakeMat(kernel).convertTo(weights, depth == CV_64F ? CV_64F : CV_32F);
    RegisterPair(
        "conv " + std::to_string(taps) + "x" + std::to_string(taps), types, size, threads,
        [=] { benchmark::DoNotOptimize(ZUMCorr(image, kernel).GetData()); },
        [=, result = cv::Mat()]() mutable {
          cv::filter2D(MakeMat(image), result, depth, weights);
        });
  }
  const auto x = MakeImage<OutT>(13, 1, 11), y = MakeImage<OutT>(1, 13, 11);
  const ZUMKernel<OutT> chain(x, y, ZUMImage<OutT>(), ZUMImage<OutT>());
  cv::Mat wx, wy;
  MakeMat(x).convertTo(wx, depth == CV_64F ? CV_64F : CV_32F);
  MakeMat(y).convertTo(wy, depth == CV_64F ? CV_64F : CV_32F);
  RegisterPair(
      "separable 13", types, size, threads,
      [=] { benchmark::DoNotOptimize(ZUMCorr(image, chain).GetData()); },
      [=, result = cv::Mat()]() mutable {
        cv::sepFilter2D(MakeMat(image), result, depth, wx, wy);
      });
}

template <class OutT, class InT>
void RegisterBox(const char* types, int size, int threads) {
  const auto image = MakeImage<InT>(size, size, 255);
  RegisterPair(
      "box sum 15x15", types, size, threads,
      [=] {
        const ZUMRect box(-7, -7, 0, 0, 7, 7, 0, 0);
        benchmark::DoNotOptimize(ZUMSum<OutT>(image, box).GetData());
      },
      [=, result = cv::Mat()]() mutable {
        cv::boxFilter(MakeMat(image), result, kDepth<OutT>, cv::Size(15, 15), cv::Point(-1, -1),
                      false);
      });
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    for (const int threads : {1, 2}) {
      RegisterFilters<ZUMLong, ZUMByte>("byte long", CV_32F, size, threads);
      RegisterFilters<ZUMReal, ZUMByte>("byte double", CV_64F, size, threads);
      RegisterFilters<ZUMReal, ZUMReal>("double double", CV_64F, size, threads);
      RegisterBox<ZUMLong, ZUMByte>("byte long", size, threads);
      RegisterBox<ZUMReal, ZUMReal>("double double", size, threads);
    }
  }
  return true;
}();

}  // namespace
