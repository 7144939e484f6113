/// An open TIFF file, for the sources that read and write such files.
#pragma once

#include <tiffio.h>

#include <cstdarg>
#include <cstdint>

namespace zuml_detail {

/// A handle of libtiff; closed on every path. It reports its errors here and not to the handlers of
/// the process, so that files may be open in several threads, and nothing is thrown through the
/// codec's frames.
class TiffFile {
 public:
  /// Opens a file as TIFFOpen does. With "h" in the mode, the directory is not read yet.
  TiffFile(const char* path, const char* mode);
  ~TiffFile() { Close(); }
  TiffFile(const TiffFile&) = delete;
  TiffFile& operator=(const TiffFile&) = delete;

  TIFF* get() const { return tiff_; }
  /// Writes what is left to write, and closes. Failures show in FailedP.
  void Close();

  bool FailedP() const { return error_[0] != '\0'; }
  /// Throws XQException "TIFF Error: %s %s" with the first error's module and message, if there was
  /// one.
  void RequireNoError() const;

  /// A field of the directory; `otherwise` where the file has none.
  template <class T>
  T GetField(std::uint32_t tag, T otherwise) const {
    T value = otherwise;
    return TIFFGetField(tiff_, tag, &value) == 1 ? value : otherwise;
  }

  /// Refuses a picture whose pixels this file cannot hold, and one whose strips or tiles are laid
  /// over one another so often that to read them would take time without end. `pixel_bytes` are
  /// those of all channels.
  void RequirePicture(const char* operation, const char* path, int channels, int pixel_bytes) const;

 private:
  static int KeepError(TIFF* tiff, void* file, const char* module, const char* format,
                       std::va_list arguments);

  // No allocation may fail while the codec reports. Messages can name the path.
  char error_[4608] = "";
  TIFF* tiff_ = nullptr;
};

/// "TIFF Error: " is put before this by those who throw it.
void FormatTiffError(char* text, std::size_t size, const char* module, const char* format,
                     std::va_list arguments);

}  // namespace zuml_detail
