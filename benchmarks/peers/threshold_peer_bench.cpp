// Otsu's threshold against OpenCV: finding it, and the binary image with it.

#include <opencv2/imgproc.hpp>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/threshold/otsu.h"
#include "zuml/threshold/thresholding.h"

namespace {

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, 0);
    for (int y = 0; y < size; ++y) {
      for (int x = 0; x < size; ++x) {
        image(x, y) = static_cast<ZUMByte>((x / 64 + y / 64) % 2 * 120 + (x * 7 + y * 13) % 50);
      }
    }
    const cv::Mat mat(size, size, CV_8U, image.GetData());
    for (const int threads : {1, 2}) {
      zuml_bench::Pair(
          "otsu/byte/" + std::to_string(size) + "/" + std::to_string(threads) + "t",
          static_cast<double>(size) * size, threads,
          [=] {
            const ZUMByte threshold = ZUMOtsu(image, 0, 0, 255);
            benchmark::DoNotOptimize(ZUMThr(image, threshold).GetData());
          },
          [=, out = cv::Mat()]() mutable {
            cv::setNumThreads(threads);
            cv::threshold(mat, out, 0, 1, cv::THRESH_BINARY | cv::THRESH_OTSU);
          });
    }
  }
  return true;
}();

}  // namespace
