#include "zuml/io/rwbmp.h"

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

std::string Field(std::int64_t value, std::size_t bytes) {
  return {reinterpret_cast<const char*>(&value), bytes};
}

// A BMP file, with the bytes `between` before the pixels.
struct Kind {
  int bits, compression = 0, planes = 1, header_size = 40;
};
std::string File(Kind kind, std::int64_t width, std::int64_t height, const std::string& pixels,
                 std::int64_t image_bytes = 0, const std::string& between = "") {
  const auto offset = static_cast<std::int64_t>(54 + between.size());
  return "BM" + Field(offset + static_cast<std::int64_t>(pixels.size()), 4) + Field(0, 4) +
         Field(offset, 4) + Field(kind.header_size, 4) + Field(width, 4) + Field(height, 4) +
         Field(kind.planes, 2) + Field(kind.bits, 2) + Field(kind.compression, 4) +
         Field(image_bytes, 4) + std::string(16, '\0') + between + pixels;
}

using BMP = FileTest;

TEST_F(BMP, FilesAreWrittenByteForByte) {
  std::string palette;
  for (int i = 0; i < 256; ++i) palette += std::string(3, static_cast<char>(i)) + '\0';
  Random random(1);
  for (const int width : {1, 2, 3, 4, 5, 19}) {
    for (const int channels : {1, 3}) {
      const auto image = MakeRandomImage<ZUMByte>(random, ZUMRect(-3, 4, 0, 0, width - 4, 5, 0, 0),
                                                  channels, Layout::kChannels);
      std::string rows;
      for (const int y : {5, 4}) {
        for (int x = -3; x < width - 3; ++x) {
          for (int c = channels - 1; c >= 0; --c) rows += static_cast<char>(image(x, y, 0, 0, c));
        }
        rows.resize((rows.size() + 3) / 4 * 4);
      }
      ZUMWriteBMP(image, Path().c_str());
      EXPECT_EQ(ReadFile(Path()),
                File({8 * channels}, width, 2, rows, static_cast<int>(rows.size()),
                     channels == 1 ? palette : ""));
    }
  }
}

TEST_F(BMP, EveryDepthIsRead) {
  const std::string bits("\xA0\x40\x5F\x80", 4), white_first("\xFF\xFF\xFF\0\0\0\0\0", 8);
  const std::string ab("\xFF\0\xFF\0\0\xFF\0\xFF", 8), ba("\0\xFF\0\xFF\xFF\0\xFF\0", 8);
  const struct {
    std::string file;
    int channels, width;
    std::string pixels;  // channel by channel, rows from the top
  } cases[] = {
      {File({1}, 4, -2, "\xA0zzz\x50zzz", 8, white_first), 1, 4, ab},
      {File({1}, 10, 2, bits, 4), 1, 10,
       std::string("\0\xFF\0\xFF\xFF\xFF\xFF\xFF\xFF\0\xFF\0\xFF\0\0\0\0\0\0\xFF", 20)},
      {File({1}, 4, 2, "\xA0\x50zzzzzz"), 1, 4, ba},
      {File({1}, 4, 2, "\xA0\x50", 1), 1, 4, ba},  // an image size that is too small
      {File({1}, 4, 2, "\xA0\x50", 0xFFFFFFFF), 1, 4, std::string("\0\0\0\0\xFF\0\xFF\0", 8)},
      {File({8}, 3, 2, "abczdefz", 0, white_first), 1, 3, "defabc"},
      {File({8}, 3, -2, "abczdef"), 1, 3, "abcdef"},
      {File({24}, 2, 2, "123456zz789abczz"), 3, 2, "9c368b257a14"},
      {File({24}, 1, -2, "123z456"), 3, 1, "362514"},
      {File({32}, 2, 1, "123z456z"), 3, 2, "362514"},
      {File({32, 3}, 1, -2, "123z456z", 0, std::string(5000, 'm')), 3, 1, "362514"},
      {File({24}, 5, 0, "some pixels"), 3, 1, ""},
      {File({1}, 5, 0, "some pixels", 11), 1, 1, ""},
  };
  for (const auto& [file, channels, width, pixels] : cases) {
    const int height = static_cast<int>(pixels.size()) / width / channels;
    const ZUMImage<ZUMByte> read = ReadBytes(ZUMReadBMP, file);
    EXPECT_EQ(read.GetCSz(), channels);
    EXPECT_EQ(read.NPixels(), width * height);
    const auto* const data = static_cast<const char*>(read.GetData());
    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), data)) << file;
  }
}

TEST_F(BMP, OtherFilesAreRefused) {
  const std::string in = "\"" + Path() + "\"",
                    unreadable = "error " + in + " is a not readable BMP file";
  constexpr std::int64_t kMost = 0x7FFFFFFF;
  ExpectMessages(
      ZUMReadBMP,
      {{"BM", "error reading file " + in},
       {File({8}, 2, 2, "").substr(0, 53), "error reading file " + in},
       {File({4}, 2, 2, ""), unreadable},
       {File({8, 1}, 2, 2, ""), unreadable},
       {File({8, 0, 2}, 2, 2, ""), unreadable},
       {File({8, 0, 1, 12}, 2, 2, ""), unreadable},
       {File({8}, -2, 2, ""), unreadable},
       {File({8}, 2, -kMost - 1, ""), unreadable},
       {File({32}, kMost, -kMost, ""),
        "ZUMReadBMP: " + in +
            ": 2147483647 x 2147483647 pixels with 3 channels are beyond the limits"},
       {File({24}, 1 << 14, 1 << 14, ""),
        "ZUMReadBMP: " + in + " is too short for 16384 x 16384 pixels with 3 channels"}});
  diagnostics_.Take();
  ExpectMessages(ZUMReadBMP, {{File({16, 3}, 2, 2, ""), unreadable}});
  EXPECT_EQ(diagnostics_.Take(),
            "type: 19778\nfile size: 54\nreserved 1: 0\nreserved 2: 0\noffset of pixels: 54\n"
            "header size: 40\nplanes: 1\nbits per pixel: 16\ncompression: 3\n");
}

}  // namespace
