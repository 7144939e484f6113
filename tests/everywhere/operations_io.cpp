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

const Register kIo([] {
  Add<Byte, Plane<Pix, 3>>(CALL1(Write(ZUMWriteEPS, a)), kDepends);
  Add<Byte, Plane<>>(CALL1(Write(ZUMWriteEPS, a)), kDepends);
  Add<Byte, Plane<Pix, 1>>(CALL1(WriteAndRead(ZUMWriteBMP, ZUMReadBMP, a)), kStays);
  Add<Byte, Plane<Pix, 1>>(CALL1(WriteAndRead(ZUMWritePNG, ZUMReadPNG, a)), kStays);
  Add<Byte, Plane<Pix, 1>>(CALL1(WriteAndRead(ZUMWriteByteTIFF, ZUMReadByteTIFF, a)), kStays);
  Add<Byte, Plane<Pix, 1>>(
      CALL1(WriteAndRead([](auto& i, auto p) { ZUMWriteJPEG(i, p, 90); }, ZUMReadJPEG, a)), kStays);
  Add<Byte, Plane<Pix, 1>>(CALL1(WriteAndRead(ZUMWritePNG, ZUMReadImage, a)), kStays);
  Add<Ordered, Plane<Pix, 1>>(CALL1(WriteAndRead(ZUMWriteTIFF, ZUMReadTIFF, a)), kStays);
  Add<Byte, Plane<Pix, 3>>(CALL1(WriteAndRead(ZUMWriteBMP, ZUMReadBMP, a)), kStays);
  Add<Byte, Plane<Pix, 3>>(CALL1(WriteAndRead(ZUMWritePNG, ZUMReadPNG, a)), kStays);
  Add<Byte, Plane<Pix, 3>>(CALL1(WriteAndRead(ZUMWriteByteTIFF, ZUMReadByteTIFF, a)), kStays);
  Add<Byte, Plane<Pix, 3>>(
      CALL1(WriteAndRead([](auto& i, auto p) { ZUMWriteJPEG(i, p, 90); }, ZUMReadJPEG, a)), kStays);
  Add<Byte, Plane<Pix, 3>>(CALL1(WriteAndRead(ZUMWritePNG, ZUMReadImage, a)), kStays);
  Add<Ordered, Plane<Pix, 3>>(CALL1(WriteAndRead(ZUMWriteTIFF, ZUMReadTIFF, a)), kStays);
  Add<Byte, Plane<>, Number<90>>(CALL2(Write([&b](auto& i, auto p) { ZUMWriteJPEG(i, p, b); }, a)));
  Add<Real, Plane<>>(CALL1(WriteAndRead(ZUMWriteTxtImage, ZUMReadTxtImage, a)), kStays);
  Add<Value, Two>(CALL1(WriteAndRead([](auto& i, auto p) { ZUMWriteZMG(i, p, false); },
                                     [](auto p) { return ZUMReadZMG(p); }, a)));
  Add<Value, Two>(CALL1(WriteAndRead([](auto& i, auto p) { ZUMWriteZMG(i, p, true); },
                                     [](auto p) { return ZUMReadZMG(p); }, a)));
  Add<Value, Two>(CALL1(Stream(a)));
  Add<Real, Two>(CALL1(ZUMImageHasInf(a)));
  Add<Real, Two>(CALL1(ZUMImageHasNaN(a)));
  Add<Real, Two>(CALL1(ZUMImageIsFinite(a)));
  Add<Byte, Plane<>>(CALL1(WriteLater(a)));
});

}  // namespace
}  // namespace zuml_everywhere
