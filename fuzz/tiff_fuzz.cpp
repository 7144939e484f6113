#include "fuzz/bytesasfile.h"
#include "zuml/core/xqexception.h"
#include "zuml/io/tiff.h"

// Both readers: of samples as they stand, and of the picture.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t n) {
  static const bool silent = (zuml_fuzz::SilenceReports(), true);
  static_cast<void>(silent);
  const char* path = zuml_fuzz::BytesAsFile(bytes, n);
  try {
    zuml_fuzz::TouchPixels(ZUMReadTIFF(path));
  } catch (const XQException&) {
  }
  try {
    zuml_fuzz::TouchPixels(ZUMReadByteTIFF(path));
  } catch (const XQException&) {
  }
  return 0;
}
