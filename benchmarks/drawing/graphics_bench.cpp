// Drawing against the copy or fill of as many bytes.

#include "zuml/drawing/graphics.h"

#include <cstring>
#include <memory>
#include <string>

#include "benchmarks/support/pairs.h"

namespace {

enum class Kind { kFull, kDisc, kStripes, kNoise };

ZUMImage<ZUMBool> MakeMask(int size, Kind kind) {
  ZUMImage<ZUMBool> mask(ZUMRect(0, 0, 0, 0, size - 1, size - 1, 0, 0), 1, kind == Kind::kFull);
  if (kind == Kind::kDisc) ZUMDrawFilledCircle(mask, {size / 2, size / 2}, size * 2 / 5, true, 0);
  unsigned state = 1;
  for (int y = 0; y < size && kind >= Kind::kStripes; ++y) {
    for (int x = 0; x < size; ++x) {
      state = state * 1664525u + 1013904223u;
      mask(x, y) = kind == Kind::kStripes ? x % 24 < 12 : (state >> 31) != 0;
    }
  }
  return mask;
}

// The copy that a mask is: as many pixels read and as many written.
template <class P>
void RegisterMask(const char* name, Kind kind, int size, bool blended) {
  const ZUMImage<ZUMBool> mask = MakeMask(size, kind);
  const auto image = std::make_shared<ZUMImage<P>>(mask, 1, P());
  const ZUMImage<P> from(mask, 1, P(1));
  zuml_bench::Pair(
      std::string(blended ? "blended mask/" : "mask/") + name + "/" + std::to_string(size),
      mask.NPixels(), 1,
      [=] {
        if (blended) {
          ZUMDrawMask(*image, mask, P(200), 0.4, 0);
        } else {
          ZUMDrawMask(*image, mask, P(200), 0);
        }
      },
      [=] {
        std::memcpy(image->GetData(), from.GetData(),
                    static_cast<std::size_t>(image->NPixels()) * sizeof(P));
        benchmark::ClobberMemory();
      });
}

// Against the fill of as many rows of the same mean length.
template <class Draw>
void RegisterFilled(const char* name, int rows, double pixels, Draw draw) {
  const auto image =
      std::make_shared<ZUMImage<ZUMByte>>(ZUMRect(0, 0, 0, 0, 4095, 4095, 0, 0), 1, ZUMByte{0});
  zuml_bench::Pair(
      name, pixels, 1, [=] { draw(*image); },
      [=] {
        for (int y = 0; y < rows; ++y) {
          std::memset(&(*image)(0, y), 7, static_cast<std::size_t>(pixels / rows));
        }
        benchmark::ClobberMemory();
      });
}

const bool registered = [] {
  for (const int size : {1024, 4096}) {
    RegisterMask<ZUMByte>("full byte", Kind::kFull, size, false);
    RegisterMask<ZUMByte>("disc byte", Kind::kDisc, size, false);
    RegisterMask<ZUMByte>("stripes byte", Kind::kStripes, size, false);
    RegisterMask<ZUMByte>("noise byte", Kind::kNoise, size, false);
    RegisterMask<ZUMShort>("noise short", Kind::kNoise, size, false);
    RegisterMask<ZUMReal>("disc double", Kind::kDisc, size, false);
    RegisterMask<ZUMReal>("noise double", Kind::kNoise, size, false);
    RegisterMask<ZUMByte>("disc byte", Kind::kDisc, size, true);
    RegisterMask<ZUMByte>("noise byte", Kind::kNoise, size, true);
    RegisterMask<ZUMShort>("noise short", Kind::kNoise, size, true);
  }
  constexpr int r = 1600;
  RegisterFilled("filled rectangle/byte/4096", 4000, 4000.0 * 4000, [](ZUMImage<ZUMByte>& image) {
    ZUMDrawFilledRect(image, ZUMRect(9, 9, 0, 0, 4008, 4008, 0, 0), 7, 0);
  });
  RegisterFilled("filled circle/byte/4096", 2 * r, 3.14159 * r * r, [](ZUMImage<ZUMByte>& image) {
    ZUMDrawFilledCircle(image, {2048, 2048}, r, 7, 0);
  });
  RegisterFilled("filled ellipse/byte/4096", 2 * r, 3.14159 * r * r, [](ZUMImage<ZUMByte>& image) {
    ZUMDrawFilledEllipse(image, ZUMRect(448, 448, 0, 0, 3648, 3648, 0, 0), 7, 0);
  });
  RegisterFilled("filled polygon/byte/4096", 4078, 4078 * 2000.0, [](ZUMImage<ZUMByte>& image) {
    const ZUMBasePoint<int> points[] = {{9, 9}, {4009, 2048}, {9, 4087}};
    ZUMDrawFilledPolygon(image, points, 3, 7, 0);
  });
  return true;
}();

}  // namespace
