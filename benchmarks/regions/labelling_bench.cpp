// Labelling and tables against the simple flood and one plain pass over the labels.

#include <algorithm>
#include <vector>

#include "benchmarks/regions/pictures.h"
#include "benchmarks/support/pairs.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/regions/labelling.h"
#include "zuml/regions/medidas.h"

namespace {

ZUMImage<ZUMLong> Flood(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMBool>& con) {
  const ZUMRect frame(1, 1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMLong> labels(image, frame, 1, 0);
  image.RoD().DrawOutFrame(labels, frame, 0);
  ZUMDisplacementArray neighbours;
  neighbours.FromNonZeroPixels(labels, con);
  for (int y = image.BeginY(); y <= image.EndY(); ++y) {
    for (int x = image.BeginX(); x <= image.EndX(); ++x) labels(x, y) = image(x, y) ? -1 : 0;
  }
  std::vector<ZUMLong*> stack;
  ZUMLong next = 0;
  for (int y = image.BeginY(); y <= image.EndY(); ++y) {
    for (int x = image.BeginX(); x <= image.EndX(); ++x) {
      if (labels(x, y) != -1) continue;
      labels(x, y) = ++next;
      stack.push_back(&labels(x, y));
      while (!stack.empty()) {
        ZUMLong* const p = stack.back();
        stack.pop_back();
        for (const long long offset : neighbours) {
          if (p[offset] != -1) continue;
          p[offset] = next;
          stack.push_back(p + offset);
        }
      }
    }
  }
  return labels;
}

// Boxes, areas and sums pixel by pixel.
std::vector<int> Measure(const ZUMImage<ZUMLong>& labels) {
  ZUMLong last = 0;
  for (int y = labels.BeginY(); y <= labels.EndY(); ++y) {
    for (int x = labels.BeginX(); x <= labels.EndX(); ++x) last = std::max(last, labels(x, y));
  }
  std::vector<int> table(static_cast<std::size_t>(last + 1) * 7);
  for (int y = labels.BeginY(); y <= labels.EndY(); ++y) {
    for (int x = labels.BeginX(); x <= labels.EndX(); ++x) {
      const ZUMLong label = labels(x, y);
      if (label <= 0) continue;
      int* m = &table[static_cast<std::size_t>(label) * 7];
      m[0] = std::min(m[0], x);
      m[1] = std::min(m[1], y);
      m[2] = std::max(m[2], x);
      m[3] = std::max(m[3], y);
      ++m[4];
      m[5] += x;
      m[6] += y;
    }
  }
  return table;
}

std::vector<int> CountPixels(const ZUMImage<ZUMLong>& labels) {
  std::vector<int> table(1);
  for (int y = labels.BeginY(); y <= labels.EndY(); ++y) {
    for (int x = labels.BeginX(); x <= labels.EndX(); ++x) {
      const auto label = static_cast<std::size_t>(labels(x, y));
      if (label >= table.size()) table.resize(label + 1);
      ++table[label];
    }
  }
  return table;
}

const bool registered = [] {
  constexpr int kSize = 2048;
  constexpr double kPixels = kSize * kSize;
  for (const auto& [name, image] : zuml_bench::MakePictures(kSize)) {
    for (const auto& [con_name, con] : {std::pair{"4", ZUMCon4}, {"8", ZUMCon8}}) {
      zuml_bench::Pair(
          "label" + std::string(con_name) + "/" + name, kPixels, 1,
          [image = image, con = con] {
            benchmark::DoNotOptimize(ZUMRegionLabel(image, con).GetData());
          },
          [image = image, con = con] { benchmark::DoNotOptimize(Flood(image, con).GetData()); });
    }
    const ZUMImage<ZUMLong> labels = ZUMRegionLabel(image, ZUMCon8);
    zuml_bench::Pair(
        "area/" + name, kPixels, 1,
        [labels] { benchmark::DoNotOptimize(ZUMRegionArea(labels).GetData()); },
        [labels] { benchmark::DoNotOptimize(CountPixels(labels).data()); });
    zuml_bench::Pair(
        "measures2d/" + name, kPixels, 1,
        [labels] { benchmark::DoNotOptimize(ZUMRegionMeasures2D(labels).GetData()); },
        [labels] { benchmark::DoNotOptimize(Measure(labels).data()); });
  }
  return true;
}();

}  // namespace
