/// What the tests of regions share: pictures in letters, label images with gaps and negative
/// values, and connectivities of every kind.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/zumconnectivity.h"

namespace zuml_test {

/// Lines of '#' and '.' as an image from (0, 0) on.
inline ZUMImage<ZUMBool> ReadPicture(const std::string& text) {
  const int width = static_cast<int>(std::min(text.find('\n'), text.size()));
  const int height = static_cast<int>((text.size() + 1) / static_cast<std::size_t>(width + 1));
  return MakeByPoint<ZUMBool>(ZUMRoDRef(0, 0, 0, 0, width - 1, height - 1, 0, 0), 1,
                              [&](int x, int y, int, int, int) {
                                return text[static_cast<std::size_t>(y * (width + 1) + x)] == '#';
                              });
}

inline std::string WritePicture(const ZUMImage<ZUMBool>& image) {
  std::string text;
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    text += image(x, y, z, t, c) ? '#' : '.';
    if (x == image.EndX()) text += '\n';
  });
  return text;
}

/// Digits as labels, '.' as 0, '-' as -1; from (0, 0) on.
inline ZUMImage<ZUMLong> ReadLabels(const std::string& text) {
  const ZUMImage<ZUMBool> shape = ReadPicture(text);
  return MakeByPoint<ZUMLong>(shape, 1, [&](int x, int y, int, int, int) {
    const char letter = text[static_cast<std::size_t>(y * (shape.RoDXSz() + 1) + x)];
    return letter == '.' ? 0 : letter == '-' ? -1 : letter - '0';
  });
}

/// Labels in short runs, with stacks and channels: 0, negative values, and positive ones with gaps
/// from 3 up to `greatest`, or none at all if that is 0.
inline ZUMImage<ZUMLong> MakeRandomLabels(Random& random, Layout layout, int greatest) {
  const ZUMRect box = MakeRandomBox(random, 30, 12, 2, 2);
  const ZUMImage<ZUMLong> labels = MakeRandomImage<ZUMLong>(random, box, random.Int(1, 2), layout);
  ZUMLong label = 0;
  ForEachPoint(labels, labels.GetCSz(), [&](auto... at) {
    if (random.Int(0, 2) == 0) label = 3 * random.Int(-4, greatest / 3);
    labels(at...) = label;
  });
  return labels;
}

/// The steps of a connectivity in sweep order.
inline std::vector<ZUMBasePoint<int>> StepsOf(const ZUMImage<ZUMBool>& con) {
  std::vector<ZUMBasePoint<int>> steps;
  ForEachPoint(con, 1, [&](int x, int y, int z, int t, int) {
    if (con(x, y, z, t)) steps.push_back({x, y, z, t});
  });
  return steps;
}

/// Plane ones, a stack's, one along T, and a frame wider than the steps.
inline std::vector<ZUMImage<ZUMBool>> MakeSymmetricConnectivities() {
  const ZUMImage<ZUMBool> wide(ZUMRect(-3, -2, 0, 0, 3, 2, 0, 0), 1, false);
  wide(-3, 1) = wide(3, -1) = wide(2, 0) = wide(-2, 0) = true;
  return {ZUMCon4, ZUMCon8, wide, ZUMImage<ZUMBool>(ZUMRect(-1, -1, -1, 0, 1, 1, 1, 0), 1, true),
          ZUMImage<ZUMBool>(ZUMRect(-1, 0, 0, -1, 1, 0, 0, 1), 1, true)};
}

/// These, and some that lead in one direction.
inline std::vector<ZUMImage<ZUMBool>> MakeConnectivities() {
  std::vector<ZUMImage<ZUMBool>> all = MakeSymmetricConnectivities();
  all.push_back(ZUMImage<ZUMBool>(ZUMRect(0, 0, 0, 0, 2, 1, 0, 0), 1, true));
  all.push_back(ZUMImage<ZUMBool>(ZUMRect(-1, -2, 0, 0, 0, 0, 0, 0), 1, true));
  return all;
}

}  // namespace zuml_test
