#include "zuml/io/jpeg.h"

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

using Jpeg = FileTest;

// A progressive grey file of which each pass says in a byte that all is 0.
std::string MakeProgressive(int size, int scans) {
  const std::string side{static_cast<char>(size >> 8), static_cast<char>(size)};
  const std::string table = "\1" + std::string(16, '\0');
  std::string file = std::string("\xff\xd8\xff\xdb\0\x43\0", 7) + std::string(64, '\1') +
                     std::string("\xff\xc2\0\x0b\x08", 5) + side + side +
                     std::string("\1\1\x11\0\xff\xc4\0\x14\0", 9) + table +
                     std::string("\xff\xc4\0\x14\x10", 5) + table;
  for (int i = 0; i < scans; ++i) {
    const std::string band(2, static_cast<char>(i % 64));
    file += std::string("\xff\xda\0\x08\1\1\0", 7) + band + std::string(2, '\0');
  }
  return file + "\xff\xd9";
}

TEST_F(Jpeg, RefusesWithTheToldTexts) {
  const std::string start = "ZUMReadJPEG: \"" + Path() + "\" is ";
  std::string two = MakeProgressive(8, 1);
  two.replace(two.find("\xff\xc2") + 2, 11,
              std::string("\0\x0e\x08\0\x09\0\x09\x02\x01\x11\0\x02\x11\0", 14));
  // Each pass over a large picture takes as much time, for bytes that are soon written.
  const std::string large = MakeProgressive(8200, 21) + std::string(40000, ' ');
  ExpectMessages(
      ZUMReadJPEG,
      {{MakeProgressive(9, 100), ""},
       {MakeProgressive(9, 101), "ReadJPEG: more than 100 scans"},
       {large, "ReadJPEG: more than 20 scans"},
       {MakeProgressive(30000, 1), start + "too short for 30000 x 30000 pixels with 1 channels"},
       {MakeProgressive(50000, 1),
        start + "beyond the limits with 50000 x 50000 pixels with 1 channels"},
       {two, "ReadJPEG: Número de canales erroneo"}});
  // What the codec refuses comes with its own text, in the diagnostics too.
  diagnostics_.Take();
  ExpectMessages(ZUMReadJPEG, {{"BMxxxx", "Not a JPEG file: starts with 0x42 0x4d"}});
  EXPECT_EQ(diagnostics_.Take(), "ERROR JPEG Not a JPEG file: starts with 0x42 0x4d\n");
}

}  // namespace
