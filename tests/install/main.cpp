// What a program needs of an installed library: the umbrella header compiles, templates and
// operators are found in the library, objects that exist from load time are there, and what the
// library throws is caught by its type on this side.
#include <zuml/zuml.h>

#include <cstring>
#include <iostream>

int main() {
  const ZUMImage<ZUMByte> a(ZUMRect(0, 0, 0, 0, 7, 5, 0, 0), 1, ZUMByte(200));
  const ZUMImage<ZUMByte> b(ZUMRect(4, 3, 0, 0, 11, 8, 0, 0), 1, ZUMByte(100));
  const ZUMImage<ZUMByte> sum = a + b;
  if (sum.NPixels() != 12 || sum(4, 3, 0, 0, 0) != 44) return 1;
  if (!ZUMCon8.InP(0, 0, 0, 0)) return 2;

  const ZUMImage<ZUMByte> colour(ZUMRect(0, 0, 0, 0, 7, 5, 0, 0), 3, ZUMByte(0));
  try {
    static_cast<void>(a + colour);
    return 3;
  } catch (const XQException& e) {
    if (std::strcmp(e.what(), "operator+: Diferent number of channels 1!=3") != 0) return 4;
  }
  std::cout << "the installed library works\n";
}
