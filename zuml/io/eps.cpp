#include "zuml/io/eps.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "zuml/core/xqexception.h"
#include "zuml/io/detail/files.h"
#include "zuml/io/detail/interleave.h"
#include "zuml/io/detail/realtext.h"

namespace {

// The page in points: a margin, and the room for the picture.
constexpr int kMargin = 36;
constexpr float kWidth = 504;
constexpr float kHeight = 840;
constexpr std::size_t kBufferBytes = std::size_t{64} << 10;
constexpr ZUMByte kPaper = 255;

std::string RealText(double value) {
  std::string text;
  zuml_detail::AppendReal(text, value);
  return text;
}

std::string MakeHeader(const ZUMImage<ZUMByte>& image, const char* path) {
  const std::int64_t width = image.GetXSz(), height = image.GetYSz();
  const std::int64_t row = width * image.GetCSz();
  // Single precision on purpose: the digits of the scale are part of the file's form.
  const double scale =
      std::min(kWidth / static_cast<float>(width), kHeight / static_cast<float>(row));
  const double right = static_cast<double>(width) * scale + kMargin;
  const double top = static_cast<double>(height) * scale + kMargin;
  const auto text = [](std::int64_t number) { return std::to_string(number); };
  const std::string x = text(width), y = text(height);
  const std::string corner = text(kMargin) + " " + text(kMargin);
  return "% !PS - Adobe - 3.0 EPSF - 3.0\n"
         "%%Creator: (ZUML)\n"
         "%%Title : (" +
         std::string(path) +
         ")\n"
         "%%BoundingBox: " +
         corner + " " + text(static_cast<std::int64_t>(right)) + " " +
         text(static_cast<std::int64_t>(top)) +
         "\n"
         "%%HiResBoundingBox: " +
         corner + " " + RealText(right) + " " + RealText(top) +
         "\n"
         "%%DocumentData : Clean7Bit\n"
         "%%LanguageLevel : 1\n"
         "%%Pages : 1\n"
         "%%EndComments\n"
         "\n"
         "gsave\n" +
         corner + " translate\n" + RealText(scale) + " " + RealText(scale) + " scale\n" +
         "/picstr " + text(row) + " string def\n" + x + " " + y + " scale\n" + x + " " + y +
         " 8 [" + x + " 0 0 -" + y + " 0 " + y + "]{currentfile picstr readhexstring pop}" +
         (image.GetCSz() == 1 ? "image" : "false 3 colorimage") + "\n";
}

/// The text of pixel values, in lines of about 80 characters.
class HexWriter {
 public:
  explicit HexWriter(std::FILE* file) : file_(file) {}
  ~HexWriter() { Write(); }

  void AddPixel(const ZUMByte* values, int channels) {
    constexpr char kDigits[] = "0123456789abcdef";
    if (in_line_ > 40) {
      text_ += '\n';
      in_line_ = 0;
      if (text_.size() >= kBufferBytes) Write();
    }
    for (int c = 0; c < channels; ++c) {
      text_ += kDigits[values[c] >> 4];
      text_ += kDigits[values[c] & 15];
    }
    in_line_ += channels;
  }

 private:
  void Write() {
    std::fwrite(text_.data(), 1, text_.size(), file_);
    text_.clear();
  }

  std::FILE* file_;
  std::string text_;
  int in_line_ = 0;
};

void WritePixels(const ZUMImage<ZUMByte>& image, std::FILE* file) {
  HexWriter hex(file);
  const int channels = image.GetCSz();
  std::vector<ZUMByte> row(static_cast<std::size_t>(image.GetLineSz() * channels), kPaper);
  const std::vector<ZUMByte> empty_row = row;
  // The margins of the raster before the region. Coordinates of margins count modulo 2^32.
  const auto margin = [](int begin, int raster_begin) {
    return static_cast<std::uint32_t>(begin) - static_cast<std::uint32_t>(raster_begin);
  };
  const std::size_t left = margin(image.BeginX(), image.GetMPX());
  const std::int64_t above = margin(image.BeginY(), image.GetMPY());
  for (int i = 0; i < image.GetYSz(); ++i) {
    const bool in_region = i >= above && i < above + image.RoDYSz();
    if (in_region) {
      zuml_detail::GatherRow(image, image.BeginY() + static_cast<int>(i - above),
                             zuml_detail::ChannelOrder::kFirstToLast, kPaper,
                             &row[left * static_cast<std::size_t>(channels)]);
    }
    const ZUMByte* values = in_region ? row.data() : empty_row.data();
    for (int x = 0; x < image.GetXSz(); ++x, values += channels) hex.AddPixel(values, channels);
  }
}

}  // namespace

void ZUMWriteEPS(const ZUMImage<ZUMByte>& image, const char* path) {
  zuml_detail::RequireFlatImage("EPS", image);
  zuml_detail::FileHandle file = zuml_detail::OpenFile(path, "w");
  if (!file) throw XQException("Error opening EPS %s", path);
  const std::string header = MakeHeader(image, path);
  std::fwrite(header.data(), 1, header.size(), file.get());
  WritePixels(image, file.get());
  std::fputs("\ngrestore\nshowpage\n", file.get());
  if (!zuml_detail::FinishFile(file)) {
    throw XQException("ZUMWriteEPS: Error writing image to file %s", path);
  }
}
