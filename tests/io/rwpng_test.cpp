#include "zuml/io/rwpng.h"

#include <sys/resource.h>

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

using Png = FileTest;

// A text of 1.6 gigabytes is announced between the header and the end of the file.
TEST_F(Png, ATextTakesNoMemory) {
  ZUMWritePNG(ZUMImage<ZUMByte>(PictureBox(4, 4), 1, 5), Path().c_str());
  constexpr std::size_t kBehindHeader = 33;
  const std::string file = ReadFile(Path()).insert(kBehindHeader, "\x64\x64\x64\x64zTXtfew bytes");
  const auto get_peak_kilobytes = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  const auto peak = get_peak_kilobytes();
  EXPECT_EQ(MessageOf([&] { ReadBytes(ZUMReadPNG, file); }), "error \"" + Path() + "\" not found");
  EXPECT_LT(get_peak_kilobytes() - peak, 200'000);
}

// Headers alone, with right checksums: many pixels of a bit each, and many rows of one pixel.
TEST_F(Png, RefusesAPictureThatItsFileCannotHold) {
  const std::pair<std::string, std::string> cases[] = {
      {std::string("\0\0\x75\x30\0\0\x75\x30\x01\0\0\0\0\x4e\x5c\xc5\x17", 17), "30000 x 30000"},
      {std::string("\0\0\0\x01\x02\xfa\xf0\x80\x08\0\0\0\0\xcb\xb1\x46\xf5", 17), "1 x 50000000"}};
  for (const auto& [header, size] : cases) {
    const std::string file = std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + header +
                             std::string("\0\0\0\0IDAT\x35\xaf\x06\x1e", 12);
    EXPECT_EQ(
        MessageOf([&, &bytes = file] { ReadBytes(ZUMReadPNG, bytes); }),
        "ZUMReadPNG: \"" + Path() + "\" is too short for " + size + " pixels with 1 channels");
  }
}

}  // namespace
