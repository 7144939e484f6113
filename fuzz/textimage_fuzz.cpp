#include "fuzz/bytesasfile.h"
#include "zuml/core/xqexception.h"
#include "zuml/io/textimage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t n) {
  try {
    zuml_fuzz::TouchPixels(ZUMReadTxtImage(zuml_fuzz::BytesAsFile(bytes, n)));
  } catch (const XQException&) {
  }
  return 0;
}
