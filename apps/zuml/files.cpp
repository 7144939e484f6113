#include "apps/zuml/files.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "zuml/core/xqexception.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/readimage.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"

namespace zuml_app {
namespace {

constexpr const char* kReadable = ".zmg, .bmp, .jpg, .jpeg, .png, .tif or .tiff";
constexpr int kJpegQuality = 90;

std::string Quote(const std::string& path) { return "'" + path + "'"; }

bool IsOneOf(const std::string& text, std::initializer_list<const char*> list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

bool IsReadable(const std::string& extension) {
  return IsOneOf(extension, {".zmg", ".bmp", ".jpg", ".jpeg", ".png", ".tif", ".tiff"});
}

// What is wrong with a file can often be told before a reader has to guess at it.
void RequireFile(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) {
    throw JobError("cannot read " + Quote(path) + ": there is no such file");
  }
  if (std::filesystem::is_directory(status)) {
    throw JobError("cannot read " + Quote(path) + ": it is a folder, not a picture");
  }
  if (std::filesystem::file_size(path, error) == 0 && !error) {
    throw JobError("cannot read " + Quote(path) + ": the file is empty");
  }
  const std::string extension = GetExtension(path);
  if (!IsReadable(extension)) {
    throw JobError("cannot read " + Quote(path) + ": " +
                   (extension.empty() ? std::string("it has no extension")
                                      : "no format has the extension " + extension) +
                   "; pictures end in " + kReadable);
  }
}

template <class Read>
auto ReadOrExplain(const std::string& path, Read read) {
  RequireFile(path);
  try {
    return read(path.c_str());
  } catch (const XQException& e) {
    throw JobError("cannot read " + Quote(path) +
                   ": it is damaged, may not be opened, or is no picture in the format of its "
                   "extension (" +
                   e.what() + ")");
  }
}

// Formats other than .zmg hold one plane, of grey or colours.
void RequirePicture(const ZUMGenericImage& image, const std::string& path) {
  const std::string extension = GetExtension(path);
  const int channels = image.GetCSz();
  if (image.RoDZSz() > 1 || image.RoDTSz() > 1) {
    throw JobError("cannot write " + Quote(path) + ": the image is a stack and " + extension +
                   " files hold one plane; .zmg keeps all");
  }
  if (extension == ".png" ? channels > 4 : channels != 1 && channels != 3) {
    throw JobError("cannot write " + Quote(path) + ": the picture has " + std::to_string(channels) +
                   " channels and " + extension + " files hold " +
                   (extension == ".png" ? "1 to 4" : "1 or 3; .png holds up to 4") +
                   ", .zmg any number");
  }
}

// Formats of bytes take images of bytes only: nothing is converted behind the user's back.
ZUMImage<ZUMByte> RequireBytes(const ZUMGenericImage& image, const std::string& path) {
  if (image.GetType() != ZUMBytePixel) {
    throw JobError("cannot write " + Quote(path) + ": the picture holds " +
                   GetTypeName(image.GetType()) + " pixels and " + GetExtension(path) +
                   " files hold bytes; .zmg keeps every type, .tif all but complex");
  }
  return image;
}

}  // namespace

std::string GetExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

ZUMGenericImage ReadFile(const std::string& path) {
  const std::string extension = GetExtension(path);
  return ReadOrExplain(path, [&](const char* p) -> ZUMGenericImage {
    if (extension == ".zmg") return ZUMReadZMG(p);
    if (IsOneOf(extension, {".tif", ".tiff"})) return ZUMReadTIFF(p);
    return ZUMReadImage(p);
  });
}

ZUMImage<ZUMByte> ReadBytes(const std::string& path) {
  const ZUMGenericImage image = ReadFile(path);
  if (image.GetType() != ZUMBytePixel) {
    throw JobError("cannot measure " + Quote(path) + ": it holds " + GetTypeName(image.GetType()) +
                   " pixels, and pictures to measure hold bytes");
  }
  return image;
}

void RequireWritable(const std::string& path) {
  if (!IsReadable(GetExtension(path))) {
    throw JobError("cannot write " + Quote(path) + ": its extension is to be " + kReadable);
  }
}

void RequireDistinct(const std::string& in, const std::vector<std::string>& out) {
  namespace fs = std::filesystem;
  const auto same = [](const std::string& a, const std::string& b) {
    std::error_code error;
    return fs::path(a).lexically_normal() == fs::path(b).lexically_normal() ||
           fs::equivalent(a, b, error);
  };
  for (std::size_t i = 0; i < out.size(); ++i) {
    if (out[i].empty()) continue;
    if (same(in, out[i])) {
      throw JobError("cannot write " + Quote(out[i]) +
                     ": it is the file to read; give the result another name");
    }
    for (std::size_t k = 0; k < i; ++k) {
      if (!out[k].empty() && same(out[k], out[i])) {
        throw JobError("cannot write " + Quote(out[i]) + " twice; give each result its own name");
      }
    }
  }
}

void WriteFile(const ZUMGenericImage& image, const std::string& path) {
  RequireWritable(path);
  const std::string extension = GetExtension(path);
  if (extension != ".zmg") RequirePicture(image, path);
  try {
    if (extension == ".zmg") {
      ZUMWriteZMG(image, path.c_str(), false);
    } else if (IsOneOf(extension, {".tif", ".tiff"})) {
      ZUMWriteTIFF(image, path.c_str());
    } else if (extension == ".bmp") {
      ZUMWriteBMP(RequireBytes(image, path), path.c_str());
    } else if (extension == ".png") {
      ZUMWritePNG(RequireBytes(image, path), path.c_str());
    } else {
      ZUMWriteJPEG(RequireBytes(image, path), path.c_str(), kJpegQuality);
    }
  } catch (const XQException& e) {
    throw JobError("cannot write " + Quote(path) + " (" + e.what() + ")");
  }
}

const char* GetTypeName(ZUMPixelType type) {
  constexpr const char* kNames[] = {"bool",  "byte",   "short",   "long",
                                    "float", "double", "complex", "pointer"};
  return kNames[type];
}

}  // namespace zuml_app
