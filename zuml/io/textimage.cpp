#include "zuml/io/textimage.h"

#include <locale.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/io/detail/files.h"
#include "zuml/io/detail/flatimage.h"
#include "zuml/io/detail/realtext.h"

namespace {

using zuml_detail::FileHandle;

constexpr int kLongestNumber = 256;
constexpr std::size_t kBufferBytes = std::size_t{64} << 10;
constexpr std::size_t kMostNumbers = zuml_detail::kMostBlockBytes / sizeof(ZUMReal);

bool IsSeparator(int c) { return c == '\t' || c == '\r' || c == ' ' || c == ';'; }

bool IsInNumber(int c) {
  return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == ',' || c == '.' || c == 'E' ||
         c == 'e';
}

/// A file, character by character.
class Characters {
 public:
  explicit Characters(std::FILE* file) : file_(file), buffer_(kBufferBytes) {}

  /// The next character; EOF at the end.
  int Get() {
    if (next_ == end_) {
      end_ = std::fread(buffer_.data(), 1, buffer_.size(), file_);
      next_ = 0;
      if (end_ == 0) return EOF;
    }
    return buffer_[next_++];
  }

 private:
  std::FILE* file_;
  std::vector<unsigned char> buffer_;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
};

/// The rows of a text image, all of one length.
class Rows {
 public:
  explicit Rows(const char* path) : path_(path) {}

  void AddNumber(double value) {
    if (values_.size() == kMostNumbers) {
      throw XQException("ZUMReadTxtImage: the image of %s is beyond the limits", path_);
    }
    values_.push_back(value);
    ++columns_;
  }

  // A row without a number does not count.
  void EndRow() {
    if (columns_ == 0) return;
    if (rows_ == 0) first_columns_ = columns_;
    if (columns_ != first_columns_) {
      throw XQException("Error al leer imagen Txt por filas de diferente longitud %s", path_);
    }
    ++rows_;
    columns_ = 0;
  }

  ZUMImage<ZUMReal> MakeImage() const {
    if (rows_ == 0) throw XQException("GetFront: List empty");
    return ZUMImage<ZUMReal>(ZUMRoDRef(0, 0, 0, 0, first_columns_ - 1, rows_ - 1, 0, 0), 1,
                             values_.data());
  }

 private:
  const char* path_;
  std::vector<double> values_;
  int columns_ = 0;
  int first_columns_ = 0;
  int rows_ = 0;
};

// The conversion of the language "C", whose decimal sign is the point.
double ParseReal(const char* text) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text, nullptr, plain);
}

}  // namespace

void ZUMWriteTxtImage(const ZUMImage<ZUMReal>& image, const char* path) {
  if (image.GetCSz() != 1) {
    throw XQException("ZUMWriteTxtImage: It don't accept multichannel images");
  }
  if (!zuml_detail::IsBox(image)) {
    throw XQException("ZUMWriteTxtImage: It olny accepts rectagular images");
  }
  FileHandle file = zuml_detail::OpenFile(path, "w");
  if (!file) throw XQException("ZUMWriteTxtImage: Error opening file %s", path);
  std::string text;
  const auto write = [&] {
    std::fwrite(text.data(), 1, text.size(), file.get());
    text.clear();
  };
  const zuml_detail::FlatPlane plane = zuml_detail::GetFlatPlane(image);
  const std::int64_t columns = image.EmptyP() ? 0 : image.RoDXSz();
  const std::int64_t rows = image.EmptyP() ? 0 : image.RoDYSz();
  for (std::int64_t i = 0; i < rows; ++i) {
    const ZUMReal* const row =
        &image(image.BeginX(), image.BeginY() + static_cast<int>(i), plane.z, plane.t);
    for (std::int64_t x = 0; x < columns; ++x) {
      zuml_detail::AppendReal(text, row[x]);
      text += x + 1 < columns ? '\t' : '\n';
      if (text.size() >= kBufferBytes) write();
    }
  }
  write();
  if (!zuml_detail::FinishFile(file)) {
    throw XQException("ZUMWriteTxtImage: Error writing image to file %s", path);
  }
}

ZUMImage<ZUMReal> ZUMReadTxtImage(const char* path) {
  const FileHandle file = zuml_detail::OpenFile(path, "r");
  if (!file) throw XQException("ZUMReadTxtImage: Error opening file %s", path);
  Characters characters(file.get());
  Rows rows(path);
  char number[kLongestNumber + 1];
  int c = characters.Get();
  while (c != EOF) {
    if (IsSeparator(c)) {
      c = characters.Get();
    } else if (c == '\n') {
      rows.EndRow();
      c = characters.Get();
    } else if (IsInNumber(c)) {
      int n = 0;
      for (; IsInNumber(c); c = characters.Get()) {
        if (n == kLongestNumber) throw XQException("Error al leer imagen Txt %s", path);
        number[n++] = c == ',' ? '.' : static_cast<char>(c);
      }
      number[n] = '\0';
      rows.AddNumber(ParseReal(number));
    } else {
      throw XQException("Error al leer imagen Txt %s %c", path, c);
    }
  }
  rows.EndRow();
  return rows.MakeImage();
}
