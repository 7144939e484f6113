// Labelling, with and without a table of areas and boxes, against OpenCV's connected components.

#include <opencv2/imgproc.hpp>

#include "benchmarks/regions/pictures.h"
#include "benchmarks/support/pairs.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/regions/labelling.h"
#include "zuml/regions/medidas.h"

namespace {

const bool registered = [] {
  constexpr int kSize = 2048;
  for (const auto& [name, image] : zuml_bench::MakePictures(kSize)) {
    // The same memory: one byte a pixel.
    const cv::Mat mat(kSize, kSize, CV_8U, image.GetData());
    for (const int neighbours : {4, 8}) {
      const ZUMImage<ZUMBool> con = neighbours == 4 ? ZUMCon4 : ZUMCon8;
      zuml_bench::Pair(
          "label" + std::to_string(neighbours) + "/" + name, kSize * kSize, 1,
          [image = image, con] { benchmark::DoNotOptimize(ZUMRegionLabel(image, con).GetData()); },
          [image = image, mat, neighbours] {
            cv::setNumThreads(1);
            cv::Mat labels;
            cv::connectedComponents(mat, labels, neighbours, CV_32S);
            benchmark::DoNotOptimize(labels.data);
          });
      zuml_bench::Pair(
          "label" + std::to_string(neighbours) + " and measures/" + name, kSize * kSize, 1,
          [image = image, con] {
            benchmark::DoNotOptimize(ZUMRegionMeasures2D(ZUMRegionLabel(image, con)).GetData());
          },
          [image = image, mat, neighbours] {
            cv::setNumThreads(1);
            cv::Mat labels, stats, centroids;
            cv::connectedComponentsWithStats(mat, labels, stats, centroids, neighbours, CV_32S);
            benchmark::DoNotOptimize(labels.data);
          });
    }
  }
  return true;
}();

}  // namespace
