#include "zuml/morphology/detail/elementfold.h"

#include <algorithm>
#include <bit>
#include <tuple>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumsweep.h"
#include "zuml/morphology/detail/lines.h"

namespace zuml_detail {

std::vector<Step> ListSteps(const ZUMImage<ZUMBool>& element, Direction direction) {
  std::vector<Step> steps;
  for (ZUMGenericSweepCoords1 sweep(element, element); sweep.GetStart1(); sweep.Next()) {
    const auto* start = static_cast<const ZUMByte*>(sweep.GetStart1());
    const auto* end = static_cast<const ZUMByte*>(sweep.GetEnd1());
    for (const ZUMByte* p = start; p <= end; ++p) {
      if (*p == 0) continue;
      const Step k(sweep.GetX() + static_cast<int>(p - start), sweep.GetY(), sweep.GetZ(),
                   sweep.GetT());
      steps.push_back(direction == Direction::kDirect ? k : Mirror(k));
    }
  }
  return steps;
}

ZUMRoDRef ShrinkRegion(const ZUMRoDRef& rod, const ZUMRect& bounds, Direction direction) {
  return direction == Direction::kDirect ? MakeDirectRegion(rod, bounds)
                                         : MakeMirroredRegion(rod, bounds);
}

ZUMRect BoundsOf(const std::vector<Step>& steps) {
  ZUMRect bounds(steps.front(), steps.front());
  for (const Step& s : steps) {
    for (const auto axis : kAxes) {
      bounds.begin.*axis = std::min(bounds.begin.*axis, s.*axis);
      bounds.end.*axis = std::max(bounds.end.*axis, s.*axis);
    }
  }
  return bounds;
}

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

// Reads the image itself. The addresses are formed from that of the first tap, which lies in the
// image also where the result's pixel does not.
template <class P, class Order>
void ElementFold<P, Order>::RunLines(const ZUMRoDRef& part, const ZUMImage<P>& result) const {
  const Step first = plan_.taps.front().at;
  std::vector<std::ptrdiff_t> offsets;
  for (const ElementPlan::Tap& tap : plan_.taps) {
    offsets.push_back(image_.Displacement(tap.at.x - first.x, tap.at.y - first.y,
                                          tap.at.z - first.z, tap.at.t - first.t, 0));
  }
  ForEachLine(part, result.GetCSz(), [&](int y, int z, int t, int c) {
    FoldTaps<P, Order>(
        StoredPixels(&result(part.BeginX(), y, z, t, c)),
        StoredPixels(&(image_)(part.BeginX() + first.x, y + first.y, z + first.z, t + first.t, c)),
        offsets.data(), static_cast<int>(offsets.size()), start_, part.RoDXSz());
  });
}

// Reads copies of tiles, widened by the element's reach, with neutral values outside the image.
template <class P, class Order>
void ElementFold<P, Order>::RunTiles(const ZUMRoDRef& part, const ZUMImage<P>& result) const {
  using S = Stored<P>;
  constexpr std::ptrdiff_t kTileBytes = 192 * 1024;  // stays in the second cache
  constexpr std::ptrdiff_t kLineBytes = 2048;
  const ZUMRect reach = plan_.reach;
  const int reach_x = reach.end.x - reach.begin.x, reach_y = reach.end.y - reach.begin.y;
  const int slabs = static_cast<int>(plan_.slabs.size()), planes = plan_.levels + 1;

  const int width = static_cast<int>(
      std::min<std::ptrdiff_t>(part.RoDXSz(), kLineBytes / static_cast<int>(sizeof(S))));
  const std::ptrdiff_t line = width + reach_x;
  const std::ptrdiff_t line_bytes = line * static_cast<int>(sizeof(S)) * slabs * planes;
  const int height = static_cast<int>(std::min<std::ptrdiff_t>(
      part.RoDYSz(), std::max<std::ptrdiff_t>({16, reach_y, kTileBytes / line_bytes - reach_y})));
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

  const auto fill = [&](int x, int y, int n, int lines, int z, int t, int c) {
    for (int s = 0; s < slabs; ++s) {
      S* const slab = tile.get() + s * slab_size;
      for (int i = 0; i < lines + reach_y; ++i) {
        CopyPaddedLine(slab + i * line, image_, x + reach.begin.x, n + reach_x,
                       Step(0, y + reach.begin.y + i, z + plan_.slabs[static_cast<size_t>(s)].first,
                            t + plan_.slabs[static_cast<size_t>(s)].second),
                       c, Order::template kNeutral<S>);
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
  corners.end.y = corners.begin.y;
  ForEachLine(ZUMRoDRef(corners), result.GetCSz(), [&](int, int z, int t, int c) {
    for (int y = part.BeginY(); y <= part.EndY(); y += height) {
      for (int x = part.BeginX(); x <= part.EndX(); x += width) {
        const int n = std::min(width, part.EndX() - x + 1);
        const int lines = std::min(height, part.EndY() - y + 1);
        fill(x, y, n, lines, z, t, c);
        for (int i = 0; i < lines; ++i) {
          FoldTaps<P, Order>(StoredPixels(&result(x, y + i, z, t, c)), tile.get() + i * line,
                             offsets.data(), static_cast<int>(offsets.size()), start_, n);
        }
      }
    }
  });
}

#define ZUML_INSTANTIATE(PIX)                \
  template class ElementFold<PIX, Greatest>; \
  template class ElementFold<PIX, Least>;
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
