#include "fuzz/bytesasfile.h"
#include "zuml/core/xqexception.h"
#include "zuml/io/rwbmp.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  zuml_fuzz::SilenceReports();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t n) {
  try {
    zuml_fuzz::TouchPixels(ZUMReadBMP(zuml_fuzz::BytesAsFile(bytes, n)));
  } catch (const XQException&) {
  }
  return 0;
}
