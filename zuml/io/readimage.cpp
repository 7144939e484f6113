#include "zuml/io/readimage.h"

#include <string>
#include <string_view>

#include "zuml/core/xqexception.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"

namespace {

struct Reader {
  std::string_view extension;
  ZUMImage<ZUMByte> (*read)(const char* path);
};

// Giving a generic image as one of bytes tests its pixel type.
constexpr Reader kReaders[] = {
    {".zmg", [](const char* path) -> ZUMImage<ZUMByte> { return ZUMReadZMG(path); }},
    {".bmp", ZUMReadBMP},
    {".jpg", ZUMReadJPEG},
    {".jpeg", ZUMReadJPEG},
    {".tif", [](const char* path) -> ZUMImage<ZUMByte> { return ZUMReadTIFF(path); }},
    {".tiff", [](const char* path) -> ZUMImage<ZUMByte> { return ZUMReadTIFF(path); }},
    {".png", ZUMReadPNG},
};

// In small letters, whatever language the application speaks.
std::string GetExtension(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  std::string extension(dot == name.npos ? "" : name.substr(dot));
  for (char& c : extension) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return extension;
}

}  // namespace

ZUMImage<ZUMByte> ZUMReadImage(const char* path) {
  const std::string extension = GetExtension(path ? path : "");
  for (const Reader& reader : kReaders) {
    if (reader.extension == extension) return reader.read(path);
  }
  throw XQException("ZUMReadImage: Image file extension not recognized %s", extension.c_str());
}
