#include "zuml/regions/labelcolor.h"

#include <array>
#include <cstdint>

#include "zuml/algebra/extrema.h"
#include "zuml/algebra/lut.h"

namespace {

constexpr int kRows = 10002;
using Row = std::array<ZUMByte, 3>;

// The colours only have to differ between neighbours in the table and from black: the three bytes
// of a scrambled row number, one of them made bright.
constexpr std::array<Row, kRows> MakePalette() {
  std::array<Row, kRows> rows{{{181, 201, 148}, {65, 205, 5}, {9, 104, 3}, {115, 104, 63}}};
  for (unsigned i = 4; i < kRows; ++i) {
    std::uint32_t hash = i * 0x9E3779B1u;
    hash = (hash ^ hash >> 15) * 0x85EBCA6Bu;
    hash ^= hash >> 13;
    Row& row = rows[i];
    row = {static_cast<ZUMByte>(hash), static_cast<ZUMByte>(hash >> 8),
           static_cast<ZUMByte>(hash >> 16)};
    row[i % 3] |= 0x80;
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
