// The commands about files: info and convert.

#include <cstdio>
#include <string>

#include "apps/zuml/commands.h"
#include "apps/zuml/files.h"
#include "zuml/algebra/extrema.h"
#include "zuml/algebra/statistics.h"

namespace zuml_app {
namespace {

// The range of the values, channel by channel, for the pixel types that have an order.
template <class P>
void PrintRange(const ZUMImage<P>& image) {
  for (int c = 0; c < image.GetCSz(); ++c) {
    P min, max;
    ZUMMinMax(image.Channel(c), min, max);
    std::printf("channel %d   %.10g to %.10g\n", c, static_cast<double>(min),
                static_cast<double>(max));
  }
}

void PrintRange(const ZUMGenericImage& image) {
  if (image.EmptyP()) return;
  switch (image.GetType()) {
#define ZUML_RANGE_CASE(TYPE)                       \
  case TYPE##Pixel:                                 \
    PrintRange<TYPE>(ZUMImage<TYPE>(image, image)); \
    break;
    ZUML_ORDERED_TYPES(ZUML_RANGE_CASE)
#undef ZUML_RANGE_CASE
    default:
      break;
  }
}

}  // namespace

void Info(const std::string& file) {
  const ZUMGenericImage image = ReadFile(file);
  const ZUMRect box = image.Rect();
  std::printf("file        %s\n", file.c_str());
  std::printf("pixels      %s, %d channel%s\n", GetTypeName(image.GetType()), image.GetCSz(),
              image.GetCSz() == 1 ? "" : "s");
  std::printf("region      (%d, %d, %d, %d) to (%d, %d, %d, %d)\n", box.begin.x, box.begin.y,
              box.begin.z, box.begin.t, box.end.x, box.end.y, box.end.z, box.end.t);
  if (image.EmptyP()) {
    std::printf("size        empty\n");
  } else {
    std::printf("size        %d x %d", image.RoDXSz(), image.RoDYSz());
    if (image.RoDZSz() != 1 || image.RoDTSz() != 1) {
      std::printf(" x %d x %d", image.RoDZSz(), image.RoDTSz());
    }
    std::printf("\n");
  }
  PrintRange(image);
}

void Convert(const std::string& in, const std::string& out) {
  RequireWritable(out);
  RequireDistinct(in, {out});
  WriteFile(ReadFile(in), out);
}

}  // namespace zuml_app
