#include "zuml/io/readimage.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <functional>

#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"

namespace {

using namespace zuml_test;

struct Format {
  const char* name;
  std::function<void(const ZUMImage<ZUMByte>&, const char*)> write;
};

const Format kFormats[] = {
    {"a.zmg", [](const auto& image, const char* path) { ZUMWriteZMG(image, path, false); }},
    {"B.BMP", ZUMWriteBMP},
    {"c.v2.jpg", [](const auto& image, const char* path) { ZUMWriteJPEG(image, path, 90); }},
    {"d.JPeG", [](const auto& image, const char* path) { ZUMWriteJPEG(image, path, 90); }},
    {"e.tif", ZUMWriteByteTIFF},
    {"f.Tiff", ZUMWriteTIFF},
    {".png", ZUMWritePNG},
};

TEST(ReadImage, TakesTheReaderThatTheExtensionNames) {
  const TempFolder folder;
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 20, 10, 0, 0), 3, 77);
  for (const Format& format : kFormats) {
    const std::string path = folder.Path(format.name);
    format.write(image, path.c_str());
    EXPECT_TRUE(SameImage(ZUMReadImage(path.c_str()), image)) << format.name;
  }
}

TEST(ReadImage, RefusesOtherExtensionsAndOtherPixels) {
  const TempFolder folder;
  const auto read = [](const std::string& path) {
    return MessageOf([&] { ZUMReadImage(path.c_str()); });
  };
  for (const auto& [path, extension] : {std::pair{"a.JPE", ".jpe"},
                                        {"image", ""},
                                        {"", ""},
                                        {"folder.png/image", ""},
                                        {"a.png ", ".png "},
                                        {"a.png.", "."},
                                        {"a.tif.gz", ".gz"}}) {
    EXPECT_EQ(read(path),
              std::string("ZUMReadImage: Image file extension not recognized ") + extension);
  }
  const ZUMImage<ZUMLong> longs(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 1000);
  ZUMWriteZMG(longs, folder.Path("a.zmg").c_str(), false);
  ZUMWriteTIFF(longs, folder.Path("a.tif").c_str());
  EXPECT_EQ(read(folder.Path("a.zmg")), "Type Error on construction ZUMImage<ZUMByte>");
  EXPECT_EQ(read(folder.Path("a.tif")), "Type Error on construction ZUMImage<ZUMByte>");
  // The contents do not count.
  ZUMWriteBMP(ZUMImage<ZUMByte>(longs), folder.Path("b.png").c_str());
  EXPECT_EQ(read(folder.Path("b.png")), "error \"" + folder.Path("b.png") + "\" not found");
}

class MemoryFile {
 public:
  MemoryFile() : file_(memfd_create("damaged", 0)) {}
  ~MemoryFile() { close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string Path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

// Whatever is wrong with a file, its reader gives an image or an XQException, the same each time,
// and closes the file. The sanitizers see the rest.
TEST(ReadImage, DamagedFilesAreReadOrRefused) {
  const TempFolder folder;
  CapturedDiagnostics silence;
  Random random(3);
  const auto image =
      MakeRandomImage<ZUMByte>(random, ZUMRect(0, 0, 0, 0, 12, 8, 0, 0), 3, Layout::kTight);
  const MemoryFile memory;
  const auto handles = CountHandles();
  for (const Format& format : kFormats) {
    const std::string path = folder.Path(format.name);
    format.write(image, path.c_str());
    const std::string bytes = ReadFile(path);
    // Thousands of files cost a disk too much: the name stands for memory from here on.
    std::filesystem::remove(path);
    std::filesystem::create_symlink(memory.Path(), path);
    const auto try_read = [&](const std::string& damaged) {
      folder.Write(format.name, damaged);
      ZUMImage<ZUMByte> results[2];
      std::string messages[2];
      for (int i = 0; i < 2; ++i) {
        messages[i] = MessageOf([&] { results[i] = ZUMReadImage(path.c_str()); });
      }
      EXPECT_EQ(messages[0], messages[1]);
      EXPECT_TRUE(SameImage(results[0], results[1]));
      if (format.name[0] == 'e') MessageOf([&] { ZUMReadByteTIFF(path.c_str()); });
    };
    for (std::size_t n = 0; n < bytes.size(); n += 1 + n / 40) try_read(bytes.substr(0, n));
    // TIFF has its directory at the end.
    const bool tiff = format.name[0] == 'e' || format.name[0] == 'f';
    ForEachCorruption(bytes, 120, try_read);
    if (tiff) {
      const std::size_t directory = bytes.size() - std::min<std::size_t>(bytes.size(), 220);
      ForEachCorruption(bytes.substr(directory), 220, [&](const std::string& end) {
        try_read(bytes.substr(0, directory) + end);
      });
    }
  }
  EXPECT_EQ(CountHandles(), handles);
}

}  // namespace
