#include "fuzz/bytesasfile.h"
#include "zuml/core/xqexception.h"
#include "zuml/io/jpeg.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t n) {
  static const bool silent = (zuml_fuzz::SilenceReports(), true);
  static_cast<void>(silent);
  try {
    zuml_fuzz::TouchPixels(ZUMReadJPEG(zuml_fuzz::BytesAsFile(bytes, n)));
  } catch (const XQException&) {
  }
  return 0;
}
