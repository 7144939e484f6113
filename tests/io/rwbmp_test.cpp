#include "zuml/io/rwbmp.h"

#include "tests/support/oddregion.h"
#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;

std::string Field(std::int64_t value, std::size_t bytes) {
  return {reinterpret_cast<const char*>(&value), bytes};
}

// A BMP file; `kind` is planes, depth and compression, `between` what stands before the pixels.
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

class BMP : public testing::Test {
 protected:
  ZUMImage<ZUMByte> Read(const std::string& bytes) const {
    return ZUMReadBMP(folder_.Write("in.bmp", bytes).c_str());
  }
  std::string Written(const ZUMImage<ZUMByte>& image) const {
    std::filesystem::remove(folder_.Path("out.bmp"));
    ZUMWriteBMP(image, folder_.Path("out.bmp").c_str());
    return ReadFile(folder_.Path("out.bmp"));
  }

  TempFolder folder_;
};

// Planes off Z 0 and T 0 too, as a view of a volume has them, and pictures of several buffers.
TEST_F(BMP, FilesAreWrittenByteForByteAndReadBackAtTheOrigin) {
  std::string palette;
  for (int i = 0; i < 256; ++i) palette += std::string(3, static_cast<char>(i)) + '\0';
  Random random(1);
  for (const int width : {1, 2, 3, 4, 5, 6, 7, 8, 701}) {
    for (const int channels : {1, 3}) {
      for (const Layout layout : kLayouts) {
        const int z = width % 3, height = width == 701 ? 900 : 2;
        const auto image = MakeRandomImage<ZUMByte>(
            random, ZUMRect(-3, 4, z, -z, width - 4, height + 3, z, -z), channels, layout);
        std::string rows;
        for (int y = image.EndY(); y >= image.BeginY(); --y) {
          for (int x = image.BeginX(); x <= image.EndX(); ++x) {
            for (int c = channels - 1; c >= 0; --c) {
              rows += static_cast<char>(image(x, y, z, -z, c));
            }
          }
          rows.resize((rows.size() + 3) / 4 * 4);
        }
        EXPECT_EQ(Written(image),
                  File({8 * channels}, width, height, rows, static_cast<std::int64_t>(rows.size()),
                       channels == 1 ? palette : ""));
        const auto moved = MakeByPoint<ZUMByte>(
            ZUMRoDRef(0, 0, 0, 0, width - 1, height - 1, 0, 0), channels,
            [&](int x, int y, int, int, int c) { return image(x - 3, y + 4, z, -z, c); });
        EXPECT_TRUE(SameImage(ZUMReadBMP(folder_.Path("out.bmp").c_str()), moved));
      }
    }
  }
}

TEST_F(BMP, PixelsOutsideTheRegionAreBlack) {
  const ZUMRect box(1, 1, 0, 0, 5, 700, 0, 0);
  for (const int channels : {1, 3}) {
    const ZUMImage<ZUMByte> full(box, channels, ZUMByte{9});
    const ZUMImage<ZUMByte> odd(ZUMRoDRef(new OddRegion(box)), full);
    EXPECT_EQ(Written(odd), Written(MakeByPoint<ZUMByte>(
                                ZUMRoDRef(box), channels,
                                [](int x, int y, int, int, int) { return (x + y) % 2 * 9; })));
  }
}

TEST_F(BMP, EveryDepthIsRead) {
  const std::string bits("\xA0\x40\x5F\x80", 4), white_first("\xFF\xFF\xFF\0\0\0\0\0", 8);
  struct Case {
    const char* what;
    std::string file;
    int channels, width;
    std::string pixels;  // channel by channel, rows from the top
  };
  const std::string ab("\xFF\0\xFF\0\0\xFF\0\xFF", 8), ba("\0\xFF\0\xFF\xFF\0\xFF\0", 8);
  const Case cases[] = {
      {"1 bit, palette", File({1}, 4, -2, "\xA0zzz\x50zzz", 8, white_first), 1, 4, ab},
      {"1 bit, rows without a gap", File({1}, 10, 2, bits, 4), 1, 10,
       std::string("\0\xFF\0\xFF\xFF\xFF\xFF\xFF\xFF\0\xFF\0\xFF\0\0\0\0\0\0\xFF", 20)},
      {"1 bit, size 0, no gap", File({1}, 4, 2, "\xA0\x50"), 1, 4, ba},
      {"1 bit, size 0, longer file", File({1}, 4, 2, "\xA0\x50zzzzzz"), 1, 4, ba},
      {"1 bit, size too small", File({1}, 4, 2, "\xA0\x50", 1), 1, 4, ba},
      {"1 bit, a gap beyond the file", File({1}, 4, 2, "\xA0\x50", 0xFFFFFFFF), 1, 4,
       std::string("\0\0\0\0\xFF\0\xFF\0", 8)},
      {"8 bits, palette", File({8}, 3, 2, "abczdefz", 0, white_first), 1, 3, "defabc"},
      {"8 bits, top row first", File({8}, 3, -2, "abczdef"), 1, 3, "abcdef"},
      {"24 bits", File({24}, 2, 2, "123456zz789abczz"), 3, 2, "9c368b257a14"},
      {"24 bits, one pixel wide", File({24}, 1, -2, "123z456"), 3, 1, "362514"},
      {"32 bits", File({32}, 2, 1, "123z456z"), 3, 2, "362514"},
      {"32 bits, masks", File({32, 3}, 1, -2, "123z456z", 0, std::string(12, 'm')), 3, 1, "362514"},
      {"a long way to the pixels", File({8}, 2, 1, "ab", 0, std::string(5000, 'x')), 1, 2, "ab"},
  };
  for (const Case& c : cases) {
    const int height = static_cast<int>(c.pixels.size()) / c.width / c.channels;
    const auto* pixels = reinterpret_cast<const ZUMByte*>(c.pixels.data());
    EXPECT_TRUE(SameImage(
        Read(c.file),
        ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, c.width - 1, height - 1, 0, 0), c.channels, pixels)))
        << c.what;
  }
  for (const int depth : {1, 8, 24, 32}) {
    for (const int height : {0, 5, -5}) {
      const auto image = Read(File({depth}, height == 0 ? 5 : 0, height, "some pixels", 11));
      EXPECT_EQ(image.NPixels(), 0);
      EXPECT_EQ(image.GetCSz(), depth < 24 ? 1 : 3);
    }
  }
}

TEST_F(BMP, OtherFilesAreRefused) {
  const std::string in = "\"" + folder_.Path("in.bmp") + "\"";
  const std::string unreadable = "error " + in + " is a not readable BMP file";
  constexpr std::int64_t kMost = 0x7FFFFFFF;
  const std::pair<std::string, std::string> cases[] = {
      {File({4}, 2, 2, ""), unreadable},
      {File({16}, 2, 2, ""), unreadable},
      {File({8, 1}, 2, 2, ""), unreadable},
      {File({8, 0, 2}, 2, 2, ""), unreadable},
      {File({8, 0, 1, 12}, 2, 2, ""), unreadable},
      {File({8}, -2, 2, ""), unreadable},
      {File({8}, 2, -kMost - 1, ""), unreadable},
      {File({8}, 1 << 16, 1 << 15, ""),
       "ZUMReadBMP: " + in + ": 65536 x 32768 pixels with 1 channels are beyond the limits"},
      {File({32}, kMost, -kMost, ""),
       "ZUMReadBMP: " + in +
           ": 2147483647 x 2147483647 pixels with 3 channels are beyond the limits"},
      {File({24}, 1 << 14, 1 << 14, ""),
       "ZUMReadBMP: " + in + " is too short for 16384 x 16384 pixels with 3 channels"},
  };
  const auto handles = CountHandles();
  for (const auto& [file, message] : cases) {
    const CapturedDiagnostics diagnostics;
    EXPECT_EQ(MessageOf([&, &bytes = file] { Read(bytes); }), message);
    EXPECT_EQ(diagnostics.Text().empty(), message != unreadable);
  }
  const CapturedDiagnostics diagnostics;
  MessageOf([&] { Read(File({16, 3}, 2, 2, "")); });
  EXPECT_EQ(diagnostics.Text(),
            "type: 19778\nfile size: 54\nreserved 1: 0\nreserved 2: 0\noffset of pixels: 54\n"
            "header size: 40\nplanes: 1\nbits per pixel: 16\ncompression: 3\n");
  EXPECT_EQ(CountHandles(), handles);
}

// Half a pixel counts as far as it goes; what lies behind the end is 0.
TEST_F(BMP, DamagedFilesGiveAMessageOrZeros) {
  const CapturedDiagnostics diagnostics;
  for (const int depth : {1, 8, 24, 32}) {
    const std::size_t size = depth == 1 ? 12 : depth == 8 ? 24 : depth == 24 ? 48 : 60;
    const std::string whole = File({depth}, 5, 3, std::string(size, '\xFF'), 12);
    for (std::size_t n = 0; n < whole.size(); ++n) {
      std::string part = whole.substr(0, n), filled = part;
      filled.resize(whole.size());
      if (n < 54) {
        EXPECT_EQ(MessageOf([&] { Read(part); }),
                  "error reading file \"" + folder_.Path("in.bmp") + "\"");
      } else {
        EXPECT_TRUE(SameImage(Read(part), Read(filled))) << depth << " " << n;
      }
    }
    ForEachCorruption(whole, 54, [&](const std::string& damaged) {
      // Pixels that nobody wrote would differ from one reading to the next.
      MessageOf([&] {
        const auto first = Read(damaged);
        const auto bytes = static_cast<std::size_t>(first.GetRasterSz());
        if (bytes == 0 || bytes > 1 << 20) return;
        EXPECT_EQ(std::memcmp(first.GetData(), Read(damaged).GetData(), bytes), 0);
      });
    });
  }
}

}  // namespace
