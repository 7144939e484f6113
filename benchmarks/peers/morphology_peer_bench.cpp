// Dilation and erosion of bytes and bools against OpenCV's, which has no bool images and works on
// bytes for both. Its border is that of the forms that keep the region; the plain forms shrink.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/morphology/boxmorphology.h"
#include "zuml/morphology/mathmorph.h"

namespace {

template <class P>
void Register(const char* type, int size, int threads) {
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, P());
  cv::Mat mat(size, size, CV_8UC1);
  unsigned state = 1;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      state = state * 1664525u + 1013904223u;
      const auto value =
          static_cast<unsigned char>(state >> 24 & (std::is_same_v<P, ZUMBool> ? 1u : 255u));
      image(x, y) = static_cast<P>(value);
      mat.at<unsigned char>(y, x) = value;
    }
  }
  const auto name = [&](const std::string& what) {
    return what + "/" + type + "/" + std::to_string(size) + "/" + std::to_string(threads) + "t";
  };
  const auto pair = [&](const std::string& what, auto ours, const cv::Mat& kernel, bool dilates) {
    zuml_bench::Pair(
        name(what), static_cast<double>(size) * size, threads,
        [=] { benchmark::DoNotOptimize(ours().GetData()); },
        [=] {
          cv::setNumThreads(threads);
          cv::Mat out;
          if (dilates) {
            cv::dilate(mat, out, kernel);
          } else {
            cv::erode(mat, out, kernel);
          }
          benchmark::DoNotOptimize(out.data);
        });
  };
  for (const int side : {3, 15, 31}) {
    const int r = side / 2;
    const ZUMRect box(-r, -r, 0, 0, r, r, 0, 0);
    const cv::Mat kernel = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(side, side));
    const ZUMImage<ZUMBool> element(box, 1, true);
    pair(
        "dilate box " + std::to_string(side), [=] { return ZUMDilate(image, box); }, kernel, true);
    pair(
        "erode element " + std::to_string(side), [=] { return ZUMErode(image, element); }, kernel,
        false);
    pair(
        "dilate Ex box " + std::to_string(side), [=] { return ZUMDilateEx(image, box); }, kernel,
        true);
  }
  ZUMImage<ZUMBool> disc(ZUMRect(-7, -7, 0, 0, 7, 7, 0, 0), 1, false);
  cv::Mat kernel(15, 15, CV_8UC1);
  for (int y = -7; y <= 7; ++y) {
    for (int x = -7; x <= 7; ++x) {
      disc(x, y) = x * x + y * y <= 49;
      kernel.at<unsigned char>(y + 7, x + 7) = disc(x, y);
    }
  }
  pair(
      "dilate disc 7", [=] { return ZUMDilate(image, disc); }, kernel, true);
  pair(
      "erode Ex disc 7", [=] { return ZUMErodeEx(image, disc); }, kernel, false);
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    for (const int threads : {1, 2}) {
      Register<ZUMByte>("byte", size, threads);
      Register<ZUMBool>("bool", size, threads);
    }
  }
  return true;
}();

}  // namespace
