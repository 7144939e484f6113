#pragma once

#include <cstdlib>

#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"

namespace zuml_test {

inline bool RunCommand(const std::string& command) {
  return std::system(("{ " + command + "; } > /dev/null 2>&1").c_str()) == 0;
}

#define REQUIRE_PROGRAM(name) \
  if (!RunCommand("command -v " name)) GTEST_SKIP() << name " is not installed"

/// A test with a folder of its own.
class FileTest : public testing::Test {
 protected:
  std::string Path(const std::string& name = "a") const { return folder_.Path(name); }
  /// Runs a program whose arguments name files of the folder.
  bool RunHere(const std::string& command) const {
    return RunCommand("cd '" + folder_.Path() + "' && " + command);
  }

  TempFolder folder_;
};

/// A file's picture: so wide, with its channels, the first pixel at (0,0).
inline ZUMRect PictureBox(int width, int height) {
  return {0, 0, 0, 0, width - 1, height - 1, 0, 0};
}

/// The image with its first pixel at (0,0).
template <class P>
ZUMImage<P> AtOrigin(const ZUMImage<P>& image) {
  return MakeByPoint<P>(ZUMRoDRef(PictureBox(image.RoDXSz(), image.RoDYSz())), image.GetCSz(),
                        [&](int x, int y, int, int, int c) {
                          return image(image.BeginX() + x, image.BeginY() + y, image.BeginZ(),
                                       image.BeginT(), c);
                        });
}

}  // namespace zuml_test
