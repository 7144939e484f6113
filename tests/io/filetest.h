#pragma once

#include <vector>

#include "tests/support/diagnostics.h"
#include "tests/support/otherregion.h"
#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"

namespace zuml_test {

/// A test with a folder of its own and the reports kept. No file may stay open behind it.
class FileTest : public testing::Test {
 protected:
  ~FileTest() override { EXPECT_EQ(CountHandles(), handles_); }

  std::string Path(const std::string& name = "a") const { return folder_.Path(name); }
  /// What `read` makes of a file with these bytes.
  template <class Read>
  auto ReadBytes(Read read, const std::string& bytes) const {
    return read(folder_.Write("a", bytes).c_str());
  }
  /// What the reader throws for files with these bytes: a text that ends in * goes on.
  template <class Read>
  void ExpectMessages(Read read,
                      const std::vector<std::pair<std::string, std::string>>& cases) const {
    for (const auto& [bytes, text] : cases) {
      std::string message = MessageOf([&, &file = bytes] { ReadBytes(read, file); });
      if (text.ends_with('*')) message = message.substr(0, text.size() - 1) + '*';
      EXPECT_EQ(message, text);
    }
  }

  TempFolder folder_;
  CaptureDiagnostics diagnostics_;
  const std::ptrdiff_t handles_ = CountHandles();
};

/// A file's picture: so wide, with its channels, the first pixel at (0,0).
inline ZUMRect PictureBox(int width, int height) {
  return {0, 0, 0, 0, width - 1, height - 1, 0, 0};
}

/// The first plane of the image with its first pixel at (0,0).
template <class P>
ZUMImage<P> AtOrigin(const ZUMImage<P>& image) {
  return MakeByPoint<P>(ZUMRoDRef(PictureBox(image.RoDXSz(), image.RoDYSz())), image.GetCSz(),
                        [&](int x, int y, int, int, int c) {
                          return image(image.BeginX() + x, image.BeginY() + y, image.BeginZ(),
                                       image.BeginT(), c);
                        });
}

}  // namespace zuml_test
