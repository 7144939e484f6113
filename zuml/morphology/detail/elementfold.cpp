#include "zuml/morphology/detail/elementfold.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqmemory.h"
#include "zuml/morphology/detail/lines.h"

namespace zuml_detail {

ElementPlan::ElementPlan(const std::vector<Step>& steps, bool any_order, bool inside) {
  for (const Step& s : steps) {
    const std::pair slab(s.z, s.t);
    if (std::find(slabs.rbegin(), slabs.rend(), slab) == slabs.rend()) slabs.push_back(slab);
    taps.push_back({0, s});
  }
  if (!steps.empty()) reach = BoundsOf(steps);
  tiled = !inside;
  if (!any_order) return;

  std::vector<Step> sorted = steps;
  std::sort(sorted.begin(), sorted.end(), [](const Step& a, const Step& b) {
    return std::tie(a.t, a.z, a.y, a.x) < std::tie(b.t, b.z, b.y, b.x);
  });
  std::vector<Tap> windows;
  int highest = 0;
  for (std::size_t i = 0, next; i < sorted.size(); i = next) {
    const Step& first = sorted[i];
    for (next = i + 1; next < sorted.size(); ++next) {
      const Step& s = sorted[next];
      const bool same_line = s.y == first.y && s.z == first.z && s.t == first.t;
      if (!same_line || s.x != first.x + static_cast<int>(next - i)) break;
    }
    const auto length = static_cast<unsigned>(next - i);
    const int level = std::bit_width(length) - 1;
    windows.push_back({level, first});
    if (!std::has_single_bit(length)) {
      Step last = first;
      last.x += static_cast<int>(length) - (1 << level);
      windows.push_back({level, last});
    }
    highest = std::max(highest, level);
  }
  // A level costs two reads and a write, a tile that would not be needed otherwise one of each.
  const std::size_t cost =
      windows.size() + 3 * static_cast<std::size_t>(highest) + (inside ? 2 : 0);
  if (cost >= taps.size()) return;
  taps = std::move(windows);
  levels = highest;
  tiled = true;
}

template <class P, class Order>
void ElementFold<P, Order>::Run(const ZUMRoDRef& part, const ZUMGenericImage& generic) const {
  const auto& result = static_cast<const ZUMImage<P>&>(generic);
  if (part.EmptyP()) return;
  if (plan_.taps.empty()) {
    result.Cut(part).SetPixels(static_cast<P>(*start_));
  } else if (plan_.tiled) {
    RunTiles(part, result);
  } else {
    RunLines(part, result);
  }
}

// Reads the image itself: every step leads from a pixel of the image to one of the image.
template <class P, class Order>
void ElementFold<P, Order>::RunLines(const ZUMRoDRef& part, const ZUMImage<P>& result) const {
  std::vector<std::ptrdiff_t> offsets;
  for (const ElementPlan::Tap& tap : plan_.taps) offsets.push_back(image_.Displacement(tap.at, 0));
  ZUMForEachRun(
      part,
      [&](P* out, const P* in, std::ptrdiff_t n) {
        FoldTaps<P, Order>(StoredPixels(out), StoredPixels(in), offsets.data(),
                           static_cast<int>(offsets.size()), start_, n);
      },
      result, image_);
}

// Reads copies of tiles, widened by the element's reach, with neutral values outside the image.
template <class P, class Order>
void ElementFold<P, Order>::RunTiles(const ZUMRoDRef& part, const ZUMImage<P>& result) const {
  using S = Stored<P>;
  constexpr std::ptrdiff_t kTileBytes = 192 * 1024;  // stays in the second cache
  constexpr std::ptrdiff_t kLineBytes = 2048;
  const ZUMRect reach = plan_.reach;
  const std::ptrdiff_t reach_x = SizeOf(reach, kX) - 1, reach_y = SizeOf(reach, kY) - 1;
  const auto slabs = static_cast<std::ptrdiff_t>(plan_.slabs.size());
  const int planes = plan_.levels + 1;

  const std::ptrdiff_t width =
      std::min<std::ptrdiff_t>(part.RoDXSz(), kLineBytes / static_cast<int>(sizeof(S)));
  const std::ptrdiff_t line = width + reach_x;
  const std::ptrdiff_t line_bytes = line * static_cast<int>(sizeof(S)) * slabs * planes;
  const std::ptrdiff_t height = std::min<std::ptrdiff_t>(
      part.RoDYSz(), std::max<std::ptrdiff_t>({16, reach_y, kTileBytes / line_bytes - reach_y}));
  const std::ptrdiff_t slab_size = line * (height + reach_y), plane_size = slab_size * slabs;
  const auto tile = MakeScratch<S>(static_cast<std::size_t>(plane_size * planes));

  std::vector<std::ptrdiff_t> offsets;
  for (const ElementPlan::Tap& tap : plan_.taps) {
    const auto slab =
        std::find(plan_.slabs.begin(), plan_.slabs.end(), std::pair(tap.at.z, tap.at.t)) -
        plan_.slabs.begin();
    offsets.push_back(tap.level * plane_size + slab * slab_size +
                      (tap.at.y - reach.begin.y) * line + tap.at.x - reach.begin.x);
  }

  // The copies for `lines` lines of n pixels of the result, which begin at (x, y, z, t).
  const auto fill = [&](std::int64_t x, std::int64_t y, std::int64_t z, std::int64_t t, int c,
                        std::ptrdiff_t n, std::ptrdiff_t lines) {
    for (std::ptrdiff_t s = 0; s < slabs; ++s) {
      S* const slab = tile.get() + s * slab_size;
      const auto& [slab_z, slab_t] = plan_.slabs[static_cast<std::size_t>(s)];
      for (std::ptrdiff_t i = 0; i < lines + reach_y; ++i) {
        CopyPaddedLine(slab + i * line, image_, x + reach.begin.x, y + reach.begin.y + i,
                       z + slab_z, t + slab_t, c, n + reach_x, Order::template kNeutral<S>);
      }
      // A window that reaches beyond the end of its line holds no pixel that a tap asks for.
      const std::ptrdiff_t filled = line * (lines + reach_y);
      for (int level = 1; level < planes; ++level) {
        S* const windows = slab + level * plane_size;
        const std::ptrdiff_t half = std::ptrdiff_t{1} << (level - 1);
        FoldWindows<P, Order, 2>(windows, windows - plane_size, half, half, filled - half);
        std::fill(windows + filled - half, windows + filled, S());
      }
    }
  };

  ZUMRect corners = part.Rect();
  const std::ptrdiff_t rows = SizeOf(corners, kY), out_line = result.GetLineSz();
  corners.end.y = corners.begin.y;
  ZUMForEachPlacedRun(
      corners,
      [&](const ZUMRunPlace& at, P* out, std::ptrdiff_t columns) {
        for (std::ptrdiff_t y = 0; y < rows; y += height) {
          for (std::ptrdiff_t x = 0; x < columns; x += width) {
            const std::ptrdiff_t n = std::min(width, columns - x),
                                 lines = std::min(height, rows - y);
            fill(at.x + x, at.y + y, at.z, at.t, at.c, n, lines);
            for (std::ptrdiff_t i = 0; i < lines; ++i) {
              FoldTaps<P, Order>(StoredPixels(out + (y + i) * out_line + x), tile.get() + i * line,
                                 offsets.data(), static_cast<int>(offsets.size()), start_, n);
            }
          }
        }
      },
      result);
}

#define ZUML_INSTANTIATE(PIX)                \
  template class ElementFold<PIX, Greatest>; \
  template class ElementFold<PIX, Least>;
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
