// Several images of the library's own format in one stream; each that is read is written and read
// again.

#include <cstdlib>
#include <sstream>

#include "fuzz/bytesasfile.h"
#include "zuml/core/xqexception.h"
#include "zuml/io/zmg.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t n) {
  std::istringstream stream(std::string(reinterpret_cast<const char*>(bytes), n));
  try {
    for (int i = 0; i < 3; ++i) {
      const ZUMGenericImage image = ZUMReadZMG(stream);
      zuml_fuzz::TouchPixels(image);
      std::stringstream copy;
      ZUMWriteZMG(image, copy, (n & 1) != 0);
      const ZUMGenericImage again = ZUMReadZMG(copy);
      if (again.Rect() != image.Rect() || again.GetCSz() != image.GetCSz()) std::abort();
      zuml_fuzz::TouchPixels(again);
    }
  } catch (const XQException&) {
  }
  return 0;
}
