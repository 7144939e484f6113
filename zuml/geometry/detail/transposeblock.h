/// Transposition of blocks of memory, the inner part of ZUMTranspose and of the quarter turns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/vectors.h"

namespace zuml_detail {

/// What a pixel of so many bytes is moved as.
template <std::size_t Bytes>
struct MovedAs;
template <>
struct MovedAs<1> {
  using Type = std::uint8_t;
};
template <>
struct MovedAs<2> {
  using Type = std::uint16_t;
};
template <>
struct MovedAs<4> {
  using Type = std::uint32_t;
};
template <>
struct MovedAs<8> {
  using Type = std::uint64_t;
};

/// Transposes n x n pixels, n such that a line fills 16 bytes: to[i * to_pitch + j] =
/// from[j * from_pitch + i]. Each of the log2(n) rounds interleaves the first half of the lines
/// with the second half, which rotates the bits of the position (line, column) by one.
template <class W>
inline void TransposeSquare(W* to, std::ptrdiff_t to_pitch, const W* from,
                            std::ptrdiff_t from_pitch) {
  constexpr int n = 16 / sizeof(W);
  using V = Vector<W, 16>;
  V lines[n], next[n];
  for (int j = 0; j < n; ++j) lines[j] = LoadVector<V>(from + j * from_pitch);
  for (int round = 1; round < n; round *= 2) {
    for (int j = 0; j < n / 2; ++j) {
      const V a = lines[j], b = lines[j + n / 2];
      if constexpr (n == 16) {
        next[2 * j] =
            __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
        next[2 * j + 1] = __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13,
                                                  29, 14, 30, 15, 31);
      } else if constexpr (n == 8) {
        next[2 * j] = __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
        next[2 * j + 1] = __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
      } else if constexpr (n == 4) {
        next[2 * j] = __builtin_shufflevector(a, b, 0, 4, 1, 5);
        next[2 * j + 1] = __builtin_shufflevector(a, b, 2, 6, 3, 7);
      } else {
        next[2 * j] = __builtin_shufflevector(a, b, 0, 2);
        next[2 * j + 1] = __builtin_shufflevector(a, b, 1, 3);
      }
    }
    std::memcpy(lines, next, sizeof lines);
  }
  for (int i = 0; i < n; ++i) StoreVector(to + i * to_pitch, lines[i]);
}

/// A transposition in memory: to[i * to_pitch + j] = from[j * row + i * column], where column is 1
/// or -1. P is an unsigned integer of the pixel's size, or the pixel where none has it.
template <class P>
struct Transposition {
  P* to;
  std::ptrdiff_t to_pitch;
  const P* from;
  std::ptrdiff_t row, column;

  /// The same from line i and pixel j of the result on.
  Transposition From(std::ptrdiff_t i, std::ptrdiff_t j) const {
    return {to + i * to_pitch + j, to_pitch, from + j * row + i * column, row, column};
  }

  /// The pixels [0, lines) x [0, pixels) in squares, and what fills none one by one.
  void MoveSquares(std::ptrdiff_t lines, std::ptrdiff_t pixels) const {
    std::ptrdiff_t whole_lines = 0, whole_pixels = 0;
    if constexpr (sizeof(P) <= 8) {
      constexpr std::ptrdiff_t n = 16 / sizeof(P);
      whole_lines = lines - lines % n;
      whole_pixels = pixels - pixels % n;
      for (std::ptrdiff_t j = 0; j < whole_pixels; j += n) {
        for (std::ptrdiff_t i = 0; i < whole_lines; i += n) {
          // Columns that run backwards are read as a forward square and written from its last line.
          const P* square = from + j * row + (column > 0 ? i : -(i + n - 1));
          P* target = to + (column > 0 ? i : i + n - 1) * to_pitch + j;
          TransposeSquare<P>(target, column > 0 ? to_pitch : -to_pitch, square, row);
        }
      }
    }
    MoveOneByOne(0, whole_lines, whole_pixels, pixels);
    MoveOneByOne(whole_lines, lines, 0, pixels);
  }

 private:
  void MoveOneByOne(std::ptrdiff_t i0, std::ptrdiff_t i1, std::ptrdiff_t j0,
                    std::ptrdiff_t j1) const {
    for (std::ptrdiff_t i = i0; i < i1; ++i) {
      for (std::ptrdiff_t j = j0; j < j1; ++j) to[i * to_pitch + j] = from[j * row + i * column];
    }
  }
};

/// Runs a transposition of [0, lines) x [0, pixels). Lines of sizes that are powers of two fall on
/// the same places of the cache, which then drops them between one write and the next. So tiles as
/// wide as a line of the cache are made beside the result, and each of its lines is written once.
template <class P>
void RunTransposition(const Transposition<P>& all, std::ptrdiff_t lines, std::ptrdiff_t pixels) {
  constexpr std::ptrdiff_t m = 64 / sizeof(P), kLinesAtATime = 64;
  const std::ptrdiff_t whole_lines = lines - lines % m, whole_pixels = pixels - pixels % m;
  alignas(64) P tile[m * m];
  for (std::ptrdiff_t first = 0; first < whole_lines; first += kLinesAtATime) {
    const std::ptrdiff_t last =
        first + kLinesAtATime < whole_lines ? first + kLinesAtATime : whole_lines;
    for (std::ptrdiff_t j = 0; j < whole_pixels; j += m) {
      for (std::ptrdiff_t i = first; i < last; i += m) {
        const Transposition<P> part = all.From(i, j);
        Transposition<P>{tile, m, part.from, part.row, part.column}.MoveSquares(m, m);
        for (std::ptrdiff_t k = 0; k < m; ++k) {
          std::memcpy(part.to + k * part.to_pitch, tile + k * m, sizeof(P) * m);
        }
      }
    }
  }
  all.From(0, whole_pixels).MoveSquares(whole_lines, pixels - whole_pixels);
  all.From(whole_lines, 0).MoveSquares(lines - whole_lines, pixels);
}

/// to[i * to_pitch + j] = from[j * row + i * column] for i below lines and j below pixels; column
/// is 1 or -1.
template <class P>
void TransposeBlock(P* to, std::ptrdiff_t to_pitch, const P* from, std::ptrdiff_t row, int column,
                    std::ptrdiff_t lines, std::ptrdiff_t pixels) {
  if constexpr (sizeof(P) > 8) {
    RunTransposition<P>({to, to_pitch, from, row, column}, lines, pixels);
  } else {
    using W = typename MovedAs<sizeof(P)>::Type;
    RunTransposition<W>(
        {reinterpret_cast<W*>(to), to_pitch, reinterpret_cast<const W*>(from), row, column}, lines,
        pixels);
  }
}

}  // namespace zuml_detail
