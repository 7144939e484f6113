#include "zuml/core/wrappixels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/testimages.h"

using namespace zuml_test;

namespace {

template <class P>
void CheckBuffers() {
  constexpr auto kSz = static_cast<std::ptrdiff_t>(sizeof(P));
  Random random(21);
  for (int i = 0; i < 12; ++i) {
    const int csz = random.Int(1, 3), padding = i % 3;
    ZUMRect box = MakeRandomBox(random, 5, 4, 3, 2);
    if (i % 4 == 3) box.begin.x = box.end.x = std::numeric_limits<int>::max() - 1;
    const ZUMRoDRef rod(box);
    const int width = rod.RoDXSz(), lines = rod.NPixels() / width;
    const int line = width + padding, mixed_line = width * csz + padding;
    std::vector<P> planar(static_cast<std::size_t>(line * lines * csz)), mixed(planar.size() * 3);
    for (P& pixel : planar) pixel = random.Pixel<P>();
    for (int k = 0; k < width * lines * csz; ++k) {
      const int x = k % width, y = k / width % lines, c = k / width / lines;
      mixed[static_cast<std::size_t>(y * mixed_line + x * csz + c)] =
          planar[static_cast<std::size_t>((c * lines + y) * line + x)];
    }
    // Interleaved buffers need not hold the padding of the last line.
    mixed.resize(static_cast<std::size_t>(mixed_line * lines - padding));
    const std::span<P> all(planar);
    const std::span<const P> interleaved(mixed);
    const auto image = padding == 0 ? ZUMWrapPixels(all, box, csz)
                                    : ZUMWrapPaddedPixels(all, box, csz, line * kSz);
    EXPECT_EQ(image.GetData(), planar.data());
    EXPECT_TRUE(SameImage(ZUMCopy(image),
                          ZUMCopyInterleavedPixels(interleaved, box, csz, mixed_line * kSz)));
    const auto check_one_less = [](const std::string& name, auto buffer, auto make) {
      const auto n = buffer.size();
      EXPECT_EQ(MessageOf([&] { make(buffer.first(n - 1)); }),
                name + ": a buffer of " + std::to_string(n - 1) + " pixels is too small, " +
                    std::to_string(n) + " are needed");
    };
    check_one_less("ZUMWrapPaddedPixels", all,
                   [&](auto b) { ZUMWrapPaddedPixels(b, box, csz, line * kSz); });
    check_one_less("ZUMCopyInterleavedPixels", interleaved,
                   [&](auto b) { ZUMCopyInterleavedPixels(b, box, csz, mixed_line * kSz); });
  }
}

TEST(WrapPixels, FindsEachPixelOfABuffer) {
  CheckBuffers<ZUMByte>();
  CheckBuffers<ZUMComplex>();
}

TEST(WrapPixels, RefusesWhatNoBufferIs) {
  alignas(8) ZUMShort pixels[64] = {};
  const ZUMRect box = ZUMPlaneBox(-1, 2, 6, 3);
  EXPECT_EQ(box, ZUMRect(-1, 2, 0, 0, 6, 3, 0, 0));
  const auto check = [&](const char* text, const ZUMRect& r, int csz, std::ptrdiff_t bytes,
                         int byte = 0, std::size_t n = 60) {
    auto* const p = reinterpret_cast<ZUMShort*>(reinterpret_cast<char*>(pixels) + byte);
    const auto thrown = MessageOf([&] { ZUMWrapPaddedPixels(std::span(p, n), r, csz, bytes); });
    EXPECT_NE(thrown.find(text), std::string::npos) << thrown;
  };
  constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();
  check("no point in the box (0,5,0,0)-(7,4,0,0)", ZUMPlaneBox(0, 5, 7, 4), 1, 16);
  check("ZUMWrapPaddedPixels: 0 channels", box, 0, 16);
  check("lines of 17 bytes end within a pixel of 2 bytes", box, 1, 17);
  check("lines of -16 bytes do not hold 8 pixels of 2 bytes", box, 1, -16);
  check("pixels of 2 bytes lie at an odd address", box, 1, 16, 1);
  check("9223372036854775807 are needed", {kMin, kMin, kMin, kMin, kMax, kMax, kMax, kMax}, kMax,
        0);
  check("beyond the limit of 2147483647", box, 1, std::ptrdiff_t{1} << 33, 0, SIZE_MAX / 2);
}

}  // namespace
