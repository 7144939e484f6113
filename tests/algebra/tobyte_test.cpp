#include "zuml/algebra/tobyte.h"

#include "tests/support/everylayout.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;

TEST(ToByte, ClampsAndStretches) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random&) {
    double min = static_cast<double>(image(image.Begin())), max = min;
    ForEachPoint(image, 2, [&](auto... at) {
      min = std::min(min, static_cast<double>(image(at...)));
      max = std::max(max, static_cast<double>(image(at...)));
    });
    const auto expect = [&](const ZUMImage<ZUMByte>& result, auto f) {
      ExpectPixels(result, image, 2,
                   [&](auto... at) { return f(static_cast<double>(image(at...))); });
    };
    if constexpr (ZUMScalarPixel<P>) {
      expect(ZUMImToByte(image), [](double v) {
        return static_cast<ZUMByte>(v < 0 ? 0 : v > 255 ? 255 : v);
      });
    }
    const double factor = max == min ? 0.0 : 255.0 / (max - min);
    expect(ZUMMaxcon(image), [&](double v) {
      // The difference of integers wraps in 32 bits.
      const double difference = v - min > 2147483647.0 ? v - min - 4294967296.0 : v - min;
      return ZUMTruncate<ZUMByte>(difference * factor);
    });
  };
  ForEachLayout(OrderedTypes(), {2}, kAnyPixel, check);
}

TEST(ToByte, WorkedByHand) {
  using Bytes = std::initializer_list<ZUMByte>;
  const auto same = [](const ZUMImage<ZUMByte>& result, Bytes expected) {
    EXPECT_TRUE(SameImage(result, MakeLine<ZUMByte>(expected)));
  };
  same(ZUMImToByte(MakeLine<double>({-3.7, 254.9, 300, kNaN, 0.999, -0.0, kInfinity, 1e300})),
       {0, 254, 255, 0, 0, 0, 255, 255});
  same(ZUMMaxcon(MakeLine<double>({0, 0.5, 1})), {0, 127, 255});
  same(ZUMMaxcon(MakeLine<ZUMLong>({9, 9})), {0, 0});
  // 25 * 10.2 is below 255.
  same(ZUMMaxcon(MakeLine<ZUMShort>({-5, 20, 7})), {0, 254, 122});
  same(ZUMMaxcon(MakeLine<float>({0.1f, 0.7f})), {0, 255});
  same(ZUMMaxcon(MakeLine<double>({2, kNaN, 4})), {0, 0, 255});
  same(ZUMMaxcon(MakeLine<double>({-kInfinity, 0, 1})), {0, 0, 0});
  EXPECT_EQ("ZUMMinMax:Valor indefinido por imagen vacia",
            MessageOf([] { ZUMMaxcon(ZUMImage<ZUMByte>()); }));
}

TEST(Thermography, HasTheColoursOfTheRamps) {
  const ZUMByte kColours[][4] = {{0, 0, 0, 64},        {20, 0, 0, 124},     {42, 0, 0, 192},
                                 {43, 0, 0, 192},      {60, 0, 103, 115},   {85, 0, 255, 0},
                                 {86, 0, 255, 0},      {100, 87, 255, 0},   {127, 255, 255, 0},
                                 {128, 255, 255, 0},   {170, 255, 127, 0},  {171, 255, 128, 0},
                                 {190, 255, 69, 0},    {212, 255, 0, 0},    {213, 255, 0, 0},
                                 {230, 255, 103, 103}, {255, 255, 255, 255}};
  for (const auto& k : kColours) {
    EXPECT_TRUE(SameImage(ZUMThermography(MakeLine<ZUMByte>({k[0]}, -4)),
                          MakeLine<ZUMByte>({k[1], k[2], k[3]}, -4, 3)))
        << int{k[0]};
  }
}

}  // namespace
