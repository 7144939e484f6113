// even_light [PICTURE.png]: finds bright parts where the light falls off so far that the belt on
// one side is brighter than the parts on the other, and no single threshold fits. What stays after
// all parts have been taken away, the opening by a box wider than any of them, is the belt alone;
// the rest after subtracting it has a level of zero everywhere.

#include <zuml/zuml.h>

#include <iostream>

namespace {

constexpr int kParts = 12;

ZUMImage<ZUMByte> DrawParts() {
  const ZUMRoDRef region(0, 0, 0, 0, 319, 159, 0, 0);
  const ZUMImage<ZUMLong> x = ZUMXsImage(region), y = ZUMYsImage(region);
  ZUMImage<ZUMLong> grey = 180 - x / 2 + ZUMLong(3) * ((x * 7 + y * 13) % 5);
  for (int i = 0; i < kParts; ++i) {
    const ZUMImage<ZUMLong> dx = x - (30 + 50 * (i % 6)), dy = y - (45 + 70 * (i / 6));
    grey = ZUMImIf(dx * dx + dy * dy <= (8 + i) * (8 + i), grey + 40, grey);
  }
  return ZUMImToByte(grey);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const ZUMImage<ZUMByte> picture = argc > 1 ? ZUMReadImage(argv[1]).Channel(0) : DrawParts();

    const ZUMRect box(-22, -22, 0, 0, 22, 22, 0, 0);
    const ZUMImage<ZUMByte> belt = ZUMDilateEx(ZUMErodeEx(picture, box), box);
    const ZUMImage<ZUMByte> parts = picture - belt;

    const auto count = [](const ZUMImage<ZUMByte>& grey) {
      const ZUMImage<ZUMBool> mask = ZUMThr(grey, ZUMOtsu(grey, 0, 0, 255));
      return ZUMRegionArea(ZUMRegionLabel(mask, ZUMCon8)).NPixels();
    };
    const long long found = count(parts);
    std::cout << "parts found in the picture: " << count(picture) << ", without the belt: " << found
              << "\n";

    ZUMWritePNG(picture, "light.png");
    ZUMWritePNG(ZUMMaxcon(parts), "light_evened.png");
    return argc > 1 || found == kParts ? 0 : 1;
  } catch (const XQException& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
