#include "zuml/io/jpeg.h"

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

using Jpeg = FileTest;

// Slopes that the codec keeps nearly, different in each channel, so that a shifted row or channels
// in another order are far off.
TEST_F(Jpeg, KeepsPixelsNearlyInEveryLayout) {
  Random random(1);
  for (const int channels : {1, 3}) {
    for (const Layout layout : kLayouts) {
      const ZUMRect box(-7, 5, 0, 0, 42, 35, 0, 0);
      const auto image = MakeRandomImage<ZUMByte>(random, box, channels, layout);
      const auto value = [](int x, int y, int c) {
        return 40 * c + 2 * x + (c == 1 ? -y : y) + 32;
      };
      ForEachPoint(box, channels, [&](int x, int y, int, int, int c) {
        image(x, y, 0, 0, c) = static_cast<ZUMByte>(value(x + 7, y - 5, c));
      });
      ZUMWriteJPEG(image, Path().c_str(), 100);
      const auto read = ZUMReadJPEG(Path().c_str());
      ASSERT_EQ(read.Rect(), ZUMRect(0, 0, 0, 0, 49, 30, 0, 0));
      ASSERT_EQ(read.GetCSz(), channels);
      int worst = 0;
      ForEachPoint(read, channels, [&](int x, int y, int, int, int c) {
        worst = std::max(worst, std::abs(read(x, y, 0, 0, c) - value(x, y, c)));
      });
      EXPECT_LE(worst, channels == 1 ? 1 : 6);
    }
  }
}

TEST_F(Jpeg, RefusesWithTheToldTexts) {
  CapturedDiagnostics diagnostics;
  const auto handles = CountHandles();
  const auto write = [](const ZUMImage<ZUMByte>& image, const std::string& path) {
    return MessageOf([&] { ZUMWriteJPEG(image, path.c_str(), 90); });
  };
  const auto read = [](const std::string& path) {
    return MessageOf([&] { ZUMReadJPEG(path.c_str()); });
  };
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 3, 50);
  EXPECT_THROW(ZUMWriteJPEG(image, folder_.Path("").c_str(), 90), XQExcepIOError);
  EXPECT_THROW(ZUMReadJPEG(Path().c_str()), XQExcepNotFound);
  EXPECT_EQ(diagnostics.Text(), "");

  // What the codec refuses comes with its own text, in the diagnostics too.
  for (const std::string& message :
       {write(image, "/dev/full"),
        write(ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 65500, 0, 0, 0), 1, 0), Path()),
        read(folder_.Write("empty.jpg", "")), read(folder_.Write("b.jpg", "BMxxxx"))}) {
    EXPECT_NE(message, "");
    EXPECT_NE(diagnostics.Text().find("ERROR JPEG " + message + "\n"), std::string::npos);
  }
  EXPECT_EQ(CountHandles(), handles);
}

// The sizes stand behind FF C0, length and precision; the number of components behind them.
TEST_F(Jpeg, RefusesPicturesThatTheFileCannotHoldAndOtherChannels) {
  ZUMWriteJPEG(ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 1, 50), Path().c_str(), 90);
  std::string bytes = ReadFile(Path());
  const std::size_t frame = bytes.find("\xff\xc0");
  ASSERT_NE(frame, std::string::npos);
  bytes.replace(frame + 5, 4, "\x75\x30\x75\x30");
  const auto read = [&] { return MessageOf([&] { ZUMReadJPEG(Path().c_str()); }); };
  folder_.Write("a", bytes);
  EXPECT_EQ(read(), "ZUMReadJPEG: \"" + Path() +
                        "\" is too short for 30000 x 30000 pixels with 1 channels");
  bytes.replace(frame + 2, 11, std::string("\0\x0e\x08\0\x09\0\x09\x02\x01\x11\0\x02\x11\0", 14));
  folder_.Write("a", bytes);
  EXPECT_EQ(read(), "ReadJPEG: Número de canales erroneo");
}

}  // namespace
