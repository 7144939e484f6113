/// Reading and writing of files as the commands need it: by extension, with errors that tell the
/// reason and what would be right.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "zuml/core/zumimage.h"

namespace zuml_app {

/// A job that failed; the text is for the user.
class JobError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The path's extension with its dot, in lower case.
std::string GetExtension(const std::string& path);

/// Reads a picture of any of the library's formats, with its pixel type.
ZUMGenericImage ReadFile(const std::string& path);

/// Reads a picture of bytes.
ZUMImage<ZUMByte> ReadBytes(const std::string& path);

/// Throws JobError unless the extension is one that WriteFile knows: checked before long work.
void RequireWritable(const std::string& path);

/// Throws JobError if a file to write is the one to read, or two of them are one; empty paths count
/// as none.
void RequireDistinct(const std::string& in, const std::vector<std::string>& out);

/// Writes the image in the format of the extension.
void WriteFile(const ZUMGenericImage& image, const std::string& path);

/// The name of a pixel type: "byte", "long" and so on.
const char* GetTypeName(ZUMPixelType type);

}  // namespace zuml_app
