#include "zuml/regions/detail/runlabelling.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqmemory.h"

namespace zuml_detail {

namespace {

using Word = std::uint64_t;
constexpr std::ptrdiff_t kWordBits = 64;

// Bit i of the words is set where byte i is not 0; there is at least one clear bit behind the last.
void PackLine(Word* words, const ZUMByte* line, std::ptrdiff_t n) {
  const auto pack16 = [](const ZUMByte* bytes) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128()));
    return static_cast<Word>(~zeros & 0xffff);
  };
  std::ptrdiff_t i = 0;
  for (; i + kWordBits <= n; i += kWordBits) {
    *words++ = pack16(line + i) | pack16(line + i + 16) << 16 | pack16(line + i + 32) << 32 |
               pack16(line + i + 48) << 48;
  }
  Word word = 0;
  int bit = 0;
  for (; i + 16 <= n; i += 16, bit += 16) word |= pack16(line + i) << bit;
  for (; i < n; ++i, ++bit) word |= Word{line[i] != 0} << bit;
  *words = word;
}

// The words of a line one after the other, with what the bits before bring in.
class LineReader {
 public:
  explicit LineReader(const Word* words) : words_(words) {}

  // The next word's bits; Starts and Widened belong to it.
  Word Next() {
    const Word bits = *words_++;
    before_ = bits << 1 | carry_;
    carry_ = bits >> (kWordBits - 1);
    bits_ = bits;
    return bits;
  }
  // The first bits of runs.
  Word Starts() const { return bits_ & ~before_; }
  // The runs, each one bit longer.
  Word Widened() const { return bits_ | before_; }
  // The first bits of runs and the first bits behind runs.
  Word Edges() const { return bits_ ^ before_; }
  Word Bits() const { return bits_; }

 private:
  const Word* words_;
  Word bits_ = 0;
  Word before_ = 0;
  Word carry_ = 0;
};

// A union-find forest over the runs; the root of a tree is its least run.
class Forest {
 public:
  explicit Forest(std::size_t runs) : size_(runs), parent_(MakeScratch<std::uint32_t>(runs)) {
    for (std::size_t i = 0; i < runs; ++i) parent_[i] = static_cast<std::uint32_t>(i);
  }

  void Unite(std::uint32_t a, std::uint32_t b) {
    if (parent_[a] == parent_[b]) return;
    a = FindRoot(a);
    b = FindRoot(b);
    parent_[std::max(a, b)] = std::min(a, b);
  }

  // Puts each run's label in its place: `next` and on for the roots in their order.
  ZUMLong NumberTrees(ZUMLong next) {
    // A parent is less than its child, and thus numbered already.
    for (std::size_t i = 0; i < size_; ++i) {
      if (parent_[i] == i) {
        parent_[i] = static_cast<std::uint32_t>(next);
        next = ZUMWrapAdd(next, 1);
      } else {
        parent_[i] = parent_[parent_[i]];
      }
    }
    return next;
  }

  // After NumberTrees, the labels of the runs in sweep order.
  const std::uint32_t* GetLabels() const { return parent_.get(); }

 private:
  std::uint32_t FindRoot(std::uint32_t i) {
    while (parent_[i] != i) i = parent_[i] = parent_[parent_[i]];
    return i;
  }

  std::size_t size_;
  ScratchBlock<std::uint32_t> parent_;
};

// Unites the runs of a line with those of the line above that they touch. Two runs touch across a
// corner if and only if they overlap after each is made one longer; the overlap begins where one of
// them starts. The numbers are those of the lines' first runs; `number` is left at the next line's.
template <PlaneNeighbours kNeighbours>
void UniteLines(Forest& forest, const Word* above, const Word* line, std::ptrdiff_t words,
                std::uint32_t number_above, std::uint32_t number) {
  LineReader up(above), here(line);
  for (std::ptrdiff_t w = 0; w < words; ++w) {
    up.Next();
    here.Next();
    const Word starts_up = up.Starts(), starts = here.Starts();
    const Word common = kNeighbours == PlaneNeighbours::kEight ? up.Widened() & here.Widened()
                                                               : up.Bits() & here.Bits();
    for (Word left = (starts_up | starts) & common; left != 0; left &= left - 1) {
      const Word upto = left ^ (left - 1);  // all bits up to the lowest one set
      forest.Unite(number_above + static_cast<std::uint32_t>(std::popcount(starts_up & upto)) - 1,
                   number + static_cast<std::uint32_t>(std::popcount(starts & upto)) - 1);
    }
    number_above += static_cast<std::uint32_t>(std::popcount(starts_up));
    number += static_cast<std::uint32_t>(std::popcount(starts));
  }
}

// Fills from `from` to `to` and up to kOverhang pixels behind it: a short run needs one store and a
// decision that is nearly always the same.
constexpr std::ptrdiff_t kOverhang = 8;
inline void FillOver(ZUMLong* line, std::ptrdiff_t from, std::ptrdiff_t to, ZUMLong value) {
  const auto fill = [&] {
    for (std::ptrdiff_t k = 0; k < kOverhang; ++k) line[from + k] = value;
  };
  fill();
  while (to - from > kOverhang) {
    from += kOverhang;
    fill();
  }
}

// Writes the places where runs begin and end, in turns, and twice n behind them. Returns the number
// of runs.
std::ptrdiff_t ListEdges(std::int32_t* edges, const Word* words, std::ptrdiff_t count,
                         std::ptrdiff_t n) {
  LineReader reader(words);
  std::int32_t* edge = edges;
  for (std::ptrdiff_t w = 0; w < count; ++w) {
    reader.Next();
    const auto base = static_cast<std::int32_t>(w * kWordBits);
    for (Word left = reader.Edges(); left != 0; left &= left - 1) {
      *edge++ = base + std::countr_zero(left);
    }
  }
  edge[0] = edge[1] = static_cast<std::int32_t>(n);
  return (edge - edges) / 2;
}

// Writes the labels of a line of `runs` runs; `line` has room for kOverhang pixels behind its end.
void PaintLine(ZUMLong* line, const std::int32_t* edges, std::ptrdiff_t runs,
               const std::uint32_t* labels) {
  FillOver(line, 0, edges[0], 0);
  for (std::ptrdiff_t k = 0; k < runs; ++k) {
    FillOver(line, edges[2 * k], edges[2 * k + 1], static_cast<ZUMLong>(labels[k]));
    FillOver(line, edges[2 * k + 1], edges[2 * k + 2], 0);
  }
}

}  // namespace

PlaneNeighbours FindPlaneNeighbours(const ZUMImage<ZUMBool>& connectivity) {
  int neighbours = 0, edges = 0;
  const bool in_plane = ZUMForEachPlacedRunWhile(
      connectivity,
      [&](const ZUMRunPlace& place, const ZUMBool* line, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (!ValueAt(line, i)) continue;
          const std::ptrdiff_t x = place.x + i;
          const int y = place.y;
          if (place.z != 0 || place.t != 0 || x < -1 || x > 1 || y < -1 || y > 1) return false;
          neighbours += x != 0 || y != 0;
          edges += (x == 0) != (y == 0);
        }
        return true;
      },
      connectivity);
  if (!in_plane || edges != 4) return PlaneNeighbours::kNone;
  return neighbours == 4   ? PlaneNeighbours::kFour
         : neighbours == 8 ? PlaneNeighbours::kEight
                           : PlaneNeighbours::kNone;
}

ZUMLong LabelByRuns(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMLong>& labels,
                    PlaneNeighbours neighbours, ZUMLong next) {
  const std::ptrdiff_t n = image.RoDXSz();
  const std::ptrdiff_t words = n / kWordBits + 1;
  const std::ptrdiff_t height = image.RoDYSz();
  const std::ptrdiff_t lines = height * image.RoDZSz() * image.RoDTSz() * image.GetCSz();
  const auto bits = MakeScratch<Word>(static_cast<std::size_t>(lines * words));
  // The number of the first run of each line, and the number of all runs.
  const auto first = MakeScratch<std::uint32_t>(static_cast<std::size_t>(lines) + 1);

  std::ptrdiff_t line = 0;
  std::uint32_t runs = 0;
  ZUMForEachRun(
      image,
      [&](const ZUMBool* pixels, std::ptrdiff_t) {
        Word* packed = &bits[static_cast<std::size_t>(line * words)];
        PackLine(packed, StoredPixels(pixels), n);
        first[static_cast<std::size_t>(line++)] = runs;
        LineReader reader(packed);
        for (std::ptrdiff_t w = 0; w < words; ++w) {
          reader.Next();
          runs += static_cast<std::uint32_t>(std::popcount(reader.Starts()));
        }
      },
      image);
  first[static_cast<std::size_t>(lines)] = runs;

  Forest forest(runs);
  const auto unite = neighbours == PlaneNeighbours::kEight ? UniteLines<PlaneNeighbours::kEight>
                                                           : UniteLines<PlaneNeighbours::kFour>;
  for (std::ptrdiff_t k = 0; k < lines; ++k) {
    if (k % height == 0) continue;  // the line above belongs to another plane
    const auto at = static_cast<std::size_t>(k);
    if (first[at] == first[at - 1] || first[at + 1] == first[at]) continue;
    const Word* packed = &bits[static_cast<std::size_t>(k * words)];
    unite(forest, packed - words, packed, words, first[at - 1], first[at]);
  }
  next = forest.NumberTrees(next);

  const auto buffer = MakeScratch<ZUMLong>(static_cast<std::size_t>(n + kOverhang));
  const auto edges = MakeScratch<std::int32_t>(static_cast<std::size_t>(n) + 3);
  const std::uint32_t* label = forest.GetLabels();
  const Word* packed = bits.get();
  ZUMForEachRun(
      image,
      [&](ZUMLong* to, std::ptrdiff_t) {
        const std::ptrdiff_t count = ListEdges(edges.get(), packed, words, n);
        PaintLine(buffer.get(), edges.get(), count, label);
        label += count;
        packed += words;
        ZUMCopyRun(to, buffer.get(), n);
      },
      labels);
  return next;
}

}  // namespace zuml_detail
