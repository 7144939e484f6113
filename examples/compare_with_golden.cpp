// compare_with_golden: finds what a printed piece has too much and too little, beside a good one.
// Edges never lie exactly where they should, so each pixel may have any grey that the good piece
// has within one pixel around, and a little more or less; defects of a single pixel are noise.

#include <zuml/zuml.h>

#include <iostream>

namespace {

ZUMImage<ZUMByte> DrawTracks() {
  ZUMImage<ZUMByte> board(ZUMRect(0, 0, 0, 0, 239, 119, 0, 0), 1, 50);
  for (int i = 0; i < 5; ++i) {
    board.Cut(ZUMRect(20, 14 + 22 * i, 0, 0, 219, 21 + 22 * i, 0, 0)).SetPixels(190);
    board.Cut(ZUMRect(60 + 30 * i, 8 + 22 * i, 0, 0, 79 + 30 * i, 27 + 22 * i, 0, 0))
        .SetPixels(190);
  }
  return board;
}

}  // namespace

int main() {
  try {
    const ZUMImage<ZUMByte> golden = DrawTracks();

    // The piece under test lies a pixel further right, and has a gap, a bridge and a pinhole.
    const ZUMImage<ZUMByte> piece = ZUMCopy(golden);
    piece.Cut(ZUMRect(1, 0, 0, 0, 239, 119, 0, 0))
        .SetPixels(ZUMTranslate(golden, ZUMBasePoint<int>(1, 0, 0, 0)));
    piece.Cut(ZUMRect(180, 12, 0, 0, 184, 23, 0, 0)).SetPixels(ZUMByte(50));
    piece.Cut(ZUMRect(40, 44, 0, 0, 43, 58, 0, 0)).SetPixels(ZUMByte(190));
    piece.Cut(ZUMRect(158, 88, 0, 0, 161, 91, 0, 0)).SetPixels(ZUMByte(90));

    const ZUMRect tolerance(-1, -1, 0, 0, 1, 1, 0, 0);
    const ZUMImage<ZUMLong> most = ZUMDilateEx(golden, tolerance);
    const ZUMImage<ZUMLong> least = ZUMErodeEx(golden, tolerance);
    const ZUMImage<ZUMLong> found = piece;
    const ZUMImage<ZUMBool> differs = found > most + 30 || found < least - 30;
    const ZUMImage<ZUMLong> defects =
        ZUMRegionLabel(ZUMAreaFilter(differs, 2, 1 << 30, ZUMCon8), ZUMCon8);

    const ZUMImage<ZUMLong> measures = ZUMRegionMeasures2D(defects);
    for (int label = measures.BeginX(); label <= measures.EndX(); ++label) {
      const auto measure = [&](int c) { return measures(label, 0, 0, 0, c); };
      std::cout << "defect " << label << ": " << measure(4) << " pixels in (" << measure(0) << ","
                << measure(1) << ")-(" << measure(2) << "," << measure(3) << ")\n";
    }

    const ZUMImage<ZUMByte> red = ZUMImIf(differs, 255, piece), other = ZUMImIf(differs, 0, piece);
    ZUMWritePNG(piece, "board.png");
    ZUMWritePNG(ZUMAppendChannels(red, other, other), "board_defects.png");
    return measures.NPixels() == 3 ? 0 : 1;
  } catch (const XQException& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
