#include "zuml/core/displayhook.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(Pages, ReachTheOutputOnly) {
  int made = 0;
  const auto make = [&made] {
    ++made;
    return std::vector<ZUMGenericImage>(2, ZUMImage<ZUMByte>());
  };
  ZUMShowPage("nobody looks", make);
  EXPECT_TRUE(made == 0 && !ZUMPageOutputP());
  std::string titles;
  EXPECT_FALSE(ZUMSetPageOutput([&](const char* title, std::span<const ZUMGenericImage> images) {
    titles += title + std::to_string(images.size());
    if (titles.size() < 3) ZUMShowPage("b", {images[0]});
    throw std::runtime_error("lost");
  }));
  ZUMShowPage("a", make);
  ZUMShowPage("c", []() -> std::vector<ZUMGenericImage> { throw 1; });
  EXPECT_TRUE(ZUMSetPageOutput(nullptr));
  ZUMShowPage("d", make);
  EXPECT_EQ(titles, "a2b1");
  EXPECT_EQ(made, 1);
}

// For the thread sanitizer.
TEST(Pages, ComeFromAnyThread) {
  std::thread other([] {
    for (int i = 0; i < 1000; ++i) ZUMShowPage("page", {ZUMGenericImage()});
  });
  for (int i = 0; i < 1000; ++i) {
    ZUMSetPageOutput([text = std::string(99, 'x')](auto...) { EXPECT_EQ(text.back(), 'x'); });
    ZUMSetPageOutput(nullptr);
  }
  other.join();
}

}  // namespace
