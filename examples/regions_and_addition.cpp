// Two images over different parts of the plane, and their sum.
//
// An image knows where its pixels are: its region holds absolute coordinates, which need not start
// at 0. Pixels at equal coordinates meet, and a result covers what its operands share.

#include <zuml/zuml.h>

#include <iomanip>
#include <iostream>

int main() {
  // The box of a region: the low corner (X, Y, Z, T), then the high one; both belong to it.
  const ZUMImage<ZUMByte> a(ZUMRect(0, 0, 0, 0, 7, 5, 0, 0), 1, ZUMByte(200));
  const ZUMImage<ZUMByte> b(ZUMRect(4, 3, 0, 0, 11, 8, 0, 0), 1, ZUMByte(100));

  const ZUMImage<ZUMByte> sum = a + b;
  std::cout << "a      " << a << "\n"
            << "b      " << b << "\n"
            << "a + b  " << sum << "\n";

  // Pixel arithmetic keeps the pixel type and wraps: 200 + 100 is 44 in a byte. Who wants 300
  // converts first.
  const ZUMImage<ZUMLong> wide = ZUMImage<ZUMLong>(a) + ZUMImage<ZUMLong>(b);
  std::cout << "the pixel at (4, 3): " << int(sum(4, 3, 0, 0, 0)) << " in bytes, "
            << wide(4, 3, 0, 0, 0) << " in 32 bits\n";

  // A cut is another view of the same pixels: what is written through it shows in the image.
  ZUMImage<ZUMByte> corner = sum.Cut(ZUMRect(6, 4, 0, 0, 7, 5, 0, 0));
  corner.SetPixels(ZUMByte(255));
  for (int y = sum.BeginY(); y <= sum.EndY(); ++y) {
    for (int x = sum.BeginX(); x <= sum.EndX(); ++x) {
      std::cout << std::setw(4) << int(sum(x, y, 0, 0, 0));
    }
    std::cout << "\n";
  }

  // What cannot be computed is refused with an exception that says why.
  try {
    const ZUMImage<ZUMByte> colour(ZUMRect(0, 0, 0, 0, 7, 5, 0, 0), 3, ZUMByte(0));
    std::cout << a + colour << "\n";
  } catch (const XQException& error) {
    std::cout << error.what() << "\n";
  }
}
