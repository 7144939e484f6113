// measure_parts [PICTURE.png]: reads a picture, thresholds it, labels its parts, measures them, and
// stores the labels with their region. Without a picture it draws two parts itself.

#include <zuml/zuml.h>

#include <iostream>

namespace {

ZUMImage<ZUMByte> DrawTwoParts() {
  ZUMImage<ZUMByte> picture(ZUMRect(0, 0, 0, 0, 199, 99, 0, 0), 1, 40);
  picture.Cut(ZUMRect(20, 30, 0, 0, 79, 69, 0, 0)).SetPixels(200);
  const auto from_centre = [](const ZUMImage<ZUMLong>& coordinates, ZUMLong centre) {
    return (coordinates - centre) * (coordinates - centre);
  };
  const ZUMImage<ZUMLong> distance =
      from_centre(ZUMXsImage(picture), 140) + from_centre(ZUMYsImage(picture), 50);
  return ZUMImIf(distance <= 30 * 30, 210, picture);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const ZUMImage<ZUMByte> picture = argc > 1 ? ZUMReadImage(argv[1]) : DrawTwoParts();
    const ZUMImage<ZUMByte> gray = picture.Channel(0);

    const ZUMByte threshold = ZUMOtsu(gray, 0, 0, 255);
    const ZUMImage<ZUMBool> mask = ZUMFillRegion(ZUMThr(gray, threshold), ZUMCon4);
    const ZUMImage<ZUMLong> labels =
        ZUMRegionLabel(ZUMAreaFilter(mask, 50, 1 << 30, ZUMCon8), ZUMCon8);

    // Tables: one pixel for each label along X.
    const ZUMImage<ZUMLong> area = ZUMRegionArea(labels);
    const ZUMImage<ZUMReal> centre = ZUMRegionGravityCenterWide(labels);
    const ZUMImage<ZUMReal> circularity = ZUMRegionCircularity(labels);
    std::cout << "threshold " << int(threshold) << ", " << area.NPixels() << " parts\n";
    for (int label = area.BeginX(); label <= area.EndX(); ++label) {
      std::cout << "part " << label << ": area " << area(label) << ", centre ("
                << centre(label, 0, 0, 0, 0) << ", " << centre(label, 0, 0, 0, 1)
                << "), circularity " << circularity(label) << "\n";
    }
    ZUMWriteZMG(labels, "labels.zmg", false);
  } catch (const XQException& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
