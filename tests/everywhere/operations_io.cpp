#include <sstream>

#include "tests/everywhere/operation.h"
#include "tests/support/tempfiles.h"
#include "zuml/io/eps.h"
#include "zuml/io/finite.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/readimage.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/textimage.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"
#include "zuml/io/zumimagewriter.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;

/// The bytes that are written.
template <class Writer, class P>
std::string Write(Writer write, const ZUMImage<P>& image) {
  const zuml_test::TempFolder folder;
  write(image, folder.Path("image.png").c_str());
  return zuml_test::ReadFile(folder.Path("image.png"));
}

template <class Writer, class Reader, class P>
ZUMGenericImage WriteAndRead(Writer write, Reader read, const ZUMImage<P>& image) {
  const zuml_test::TempFolder folder;
  write(image, folder.Path("image.png").c_str());
  return read(folder.Path("image.png").c_str());
}

template <class P>
ZUMGenericImage Stream(const ZUMImage<P>& image) {
  std::stringstream stream;
  ZUMWriteZMG(image, stream, false);
  return ZUMReadZMG(stream);
}

void WriteLater(const ZUMImage<ZUMByte>& image) {
  const zuml_test::TempFolder folder;
  CAsyncImageWriter writer;
  writer.PutImage(folder.Path("image.png").c_str(), image);
  writer.Wait();
}

const Register kOperations("io", [] {
  ADD1(kDepends, (Byte, Plane<Pix, 3>), Write(ZUMWriteEPS, a));
  ADD1(kDepends, (Byte, Plane<>), Write(ZUMWriteEPS, a));
  ADD1(kStays, (Byte, Plane<Pix, 1>), WriteAndRead(ZUMWriteBMP, ZUMReadBMP, a),
       WriteAndRead(ZUMWritePNG, ZUMReadPNG, a), WriteAndRead(ZUMWriteByteTIFF, ZUMReadByteTIFF, a),
       WriteAndRead([](auto& i, auto p) { ZUMWriteJPEG(i, p, 90); }, ZUMReadJPEG, a),
       WriteAndRead(ZUMWritePNG, ZUMReadImage, a));
  ADD1(kStays, (Ordered, Plane<Pix, 1>), WriteAndRead(ZUMWriteTIFF, ZUMReadTIFF, a));
  ADD1(kStays, (Byte, Plane<Pix, 3>), WriteAndRead(ZUMWriteBMP, ZUMReadBMP, a),
       WriteAndRead(ZUMWritePNG, ZUMReadPNG, a), WriteAndRead(ZUMWriteByteTIFF, ZUMReadByteTIFF, a),
       WriteAndRead([](auto& i, auto p) { ZUMWriteJPEG(i, p, 90); }, ZUMReadJPEG, a),
       WriteAndRead(ZUMWritePNG, ZUMReadImage, a));
  ADD1(kStays, (Ordered, Plane<Pix, 3>), WriteAndRead(ZUMWriteTIFF, ZUMReadTIFF, a));
  ADD2(kMoves, (Byte, Plane<>, Number<90>),
       Write([&b](auto& i, auto p) { ZUMWriteJPEG(i, p, b); }, a));
  ADD1(kStays, (Real, Plane<>), WriteAndRead(ZUMWriteTxtImage, ZUMReadTxtImage, a));
  ADD1(kMoves, (Value, Two),
       WriteAndRead([](auto& i, auto p) { ZUMWriteZMG(i, p, false); },
                    [](auto p) { return ZUMReadZMG(p); }, a),
       WriteAndRead([](auto& i, auto p) { ZUMWriteZMG(i, p, true); },
                    [](auto p) { return ZUMReadZMG(p); }, a),
       Stream(a));
  ADD1(kMoves, (Real, Two), ZUMImageHasInf(a), ZUMImageHasNaN(a), ZUMImageIsFinite(a));
  ADD1(kMoves, (Byte, Plane<>), WriteLater(a));
});

}  // namespace
}  // namespace zuml_everywhere
