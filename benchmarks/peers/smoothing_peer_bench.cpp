// Smoothing and rank filters against OpenCV. Its results cover the border too, which is less than a
// hundredth of the pixels.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/filters/bilateral.h"
#include "zuml/filters/gaussian.h"
#include "zuml/filters/gaussiankernels.h"
#include "zuml/filters/rank.h"

namespace {

// A slope with noise, as pictures are: neighbours differ, but not by much.
template <class P>
ZUMImage<P> MakeImage(int size) {
  ZUMImage<P> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, P());
  unsigned noise = 1;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      noise = noise * 1664525u + 1013904223u;
      image(x, y) =
          static_cast<P>((noise >> 26) + static_cast<unsigned>((x + y) * 190 / (2 * size)));
    }
  }
  return image;
}

template <class P>
cv::Mat MakeMat(const ZUMImage<P>& image) {
  const int depth = sizeof(P) == 1 ? CV_8U : sizeof(P) == 2 ? CV_16S : CV_64F;
  return cv::Mat(image.RoDYSz(), image.RoDXSz(), depth, image.GetData());
}

void RegisterPair(const std::string& what, int size, int threads, std::function<void()> ours,
                  std::function<void()> other) {
  zuml_bench::Pair(what + "/" + std::to_string(size) + "/" + std::to_string(threads) + "t",
                   static_cast<double>(size) * size, threads, std::move(ours),
                   [=, other = std::move(other)] {
                     cv::setNumThreads(threads);
                     other();
                   });
}

template <class P>
void RegisterGaussian(const char* type, int size, int threads) {
  const auto image = MakeImage<P>(size);
  for (const double sigma : {1.5, 4.0}) {
    const auto x = ZUMGaussianX(sigma), y = ZUMGaussianY(sigma);
    RegisterPair(
        "gaussian " + std::to_string(sigma).substr(0, 3) + "/" + type, size, threads,
        [=] { benchmark::DoNotOptimize(ZUMGaussianSmooth(image, sigma).GetData()); },
        [=, result = cv::Mat()]() mutable {
          cv::sepFilter2D(MakeMat(image), result, CV_64F, MakeMat(x), MakeMat(y));
        });
  }
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    const auto bytes = MakeImage<ZUMByte>(size);
    for (const int threads : {1, 2}) {
      RegisterGaussian<ZUMByte>("byte", size, threads);
      RegisterGaussian<ZUMReal>("double", size, threads);
      for (const int side : {3, 5, 15, 31}) {
        const int r = side / 2;
        const ZUMImage<ZUMBool> mask(ZUMRect(-r, -r, 0, 0, r, r, 0, 0), 1, true);
        RegisterPair(
            "median " + std::to_string(side) + "x" + std::to_string(side) + "/byte", size, threads,
            [=] { benchmark::DoNotOptimize(ZUMMedian(bytes, mask).GetData()); },
            [=, result = cv::Mat()]() mutable { cv::medianBlur(MakeMat(bytes), result, side); });
      }
      if (size == 4096) continue;
      RegisterPair(
          "bilateral radius 4/byte", size, threads,
          [=] { benchmark::DoNotOptimize(ZUMBilateral(bytes, 2, 25, 4).GetData()); },
          [=, result = cv::Mat()]() mutable {
            cv::bilateralFilter(MakeMat(bytes), result, 9, 25, 2);
          });
    }
  }
  return true;
}();

}  // namespace
