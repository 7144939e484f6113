#include "zuml/regions/labelcolor.h"

#include <array>
#include <cstdint>

#include "zuml/algebra/extrema.h"
#include "zuml/algebra/lut.h"

namespace {

constexpr int kRows = 10002;
using Row = std::array<ZUMByte, 3>;

// Regions that lie together have labels that do: from row to row the hue goes on by the golden
// section of the circle, so that near rows differ, in one of three strengths and two brightnesses,
// all far from black.
constexpr std::array<Row, kRows> MakePalette() {
  std::array<Row, kRows> rows{{{181, 201, 148}, {65, 205, 5}, {9, 104, 3}, {115, 104, 63}}};
  for (unsigned i = 4; i < kRows; ++i) {
    constexpr unsigned kGoldenSection = 0x9E3779B1u;      // in 2^-32 of the circle
    const unsigned hue = (i * kGoldenSection >> 16) * 6;  // sixths of the circle above bit 16
    const unsigned high = i % 2 ? 255 : 205, low = i % 3 * 50;
    const unsigned rise = low + (high - low) * (hue & 0xffff) / 0x10000;
    // Of the primary colours of a third of the circle, first the next one rises and then its own
    // falls.
    const std::size_t from = (hue >> 16) / 2;
    const bool falls = hue >> 16 & 1;
    Row& row = rows[i];
    row[from] = static_cast<ZUMByte>(falls ? high + low - rise : high);
    row[(from + 1) % 3] = static_cast<ZUMByte>(falls ? high : rise);
    row[(from + 2) % 3] = static_cast<ZUMByte>(low);
  }
  return rows;
}

constexpr std::array<Row, kRows> kPalette = MakePalette();

}  // namespace

ZUMImage<ZUMByte> ZUMLabelColor(const ZUMImage<ZUMLong>& labels) {
  const ZUMLong first = ZUMMin(labels), last = ZUMMax(labels);
  const ZUMImage<ZUMByte> table(ZUMRect(first, 0, 0, 0, last, 0, 0, 0), 3, nullptr);
  const std::int64_t length = std::int64_t{last} - first + 1;
  for (int c = 0; c < 3; ++c) {
    ZUMByte* entry = &table(table.Begin(), c);
    for (std::int64_t i = 0; i < length; ++i) {
      entry[i] = kPalette[static_cast<std::size_t>(i % kRows)][static_cast<std::size_t>(c)];
    }
    if (first <= 0 && last >= 0) table(0, 0, 0, 0, c) = 0;
  }
  return ZUMLut(labels, table, 0);
}
