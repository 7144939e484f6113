#include "zuml/core/zumsweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/support/testimages.h"

namespace {

using zuml_test::Random;
using Point = ZUMBasePoint<int>;

/// A run that a sweep should hand out: the coordinates of its ends, and the channel.
struct Stretch {
  Point start, end;
  int c;
};

/// A region, now and then an empty one, and rasters of different types and sizes around it, all of
/// them channel views. The first has the fewest channels.
struct Scene {
  ZUMRoDRef rod;
  std::vector<ZUMRaster> rasters;
  std::vector<Stretch> lines, columns;

  explicit Scene(Random& random) {
    const auto [b, e] = zuml_test::MakeRandomBox(random, 5, 4, 3, 3);
    rod = ZUMRoDRef(ZUMRect(b, e));
    const auto r = [&random] { return random.Int(0, 2); };
    const int csz = random.Int(1, 3);
    for (int k = 0; k < 5; ++k) {
      const ZUMRect frame(r(), r(), r(), r(), r(), r(), r(), r());
      const int view_csz = csz + (k > 0 ? r() : 0), first = r();
      const auto type = static_cast<ZUMPixelType>(random.Int(0, 7));
      const ZUMRaster whole(rod.RoD(), frame, first + view_csz + r(), type);
      rasters.emplace_back(whole, first, view_csz);
    }
    if (random.Int(0, 9) == 0) rod = ZUMRoDRef(b.x, b.y, b.z, b.t, e.x, b.y - 1, e.z, e.t);
    zuml_test::ForEachPoint(rod, csz, [&, b = b, e = e](int x, int y, int z, int t, int c) {
      if (x == b.x) lines.push_back({{x, y, z, t}, {e.x, y, z, t}, c});
      if (y == b.y) columns.push_back({{x, y, z, t}, {x, e.y, z, t}, c});
    });
  }

  /// Whether the pointers are where the rasters have the pixel.
  bool AtP(const std::vector<void*>& pointers, const Point& p, int c) const {
    return std::equal(pointers.begin(), pointers.end(), rasters.begin(),
                      [&](void* at, const ZUMRaster& r) { return at == r.PixelAddress(p, c); });
  }
};

// What accessors a sweep has, as a list.
#define ZUML_LIST(NAME)                                                                     \
  template <class S>                                                                        \
  auto List##NAME(const S& sweep) {                                                         \
    std::vector list = {sweep.Get##NAME##1()};                                              \
    if constexpr (requires { sweep.Get##NAME##2(); }) list.push_back(sweep.Get##NAME##2()); \
    if constexpr (requires { sweep.Get##NAME##3(); }) list.push_back(sweep.Get##NAME##3()); \
    if constexpr (requires { sweep.Get##NAME##4(); }) list.push_back(sweep.Get##NAME##4()); \
    if constexpr (requires { sweep.Get##NAME##5(); }) list.push_back(sweep.Get##NAME##5()); \
    return list;                                                                            \
  }
ZUML_LIST(Start)
ZUML_LIST(End)
ZUML_LIST(LineStep)

/// Calls f(sweep) for sweeps of the kind over the first 1 to Most of the rasters.
template <template <int> class Sweep, int Most, class F>
void ForEachSweep(const ZUMRoDRef& rod, const std::vector<ZUMRaster>& rasters, F f) {
  const auto over = [&]<std::size_t... K>(std::index_sequence<K...>) {
    Sweep<sizeof...(K)> sweep(rod, rasters[K]...);
    f(sweep);
  };
  [&]<std::size_t... N>(std::index_sequence<N...>) {
    (over(std::make_index_sequence<N + 1>()), ...);
  }
  (std::make_index_sequence<Most>());
}

/// Checks a forward kind of sweep against its runs; look(sweep, run) looks at what else it tells.
template <template <int> class Sweep, int Most, class Look>
void CheckForward(const Scene& scene, const std::vector<Stretch>& runs, Look look) {
  ForEachSweep<Sweep, Most>(scene.rod, scene.rasters, [&](auto& sweep) {
    for (const Stretch& run : runs) {
      ASSERT_TRUE(scene.AtP(ListStart(sweep), run.start, run.c));
      ASSERT_TRUE(scene.AtP({sweep.GetEnd1()}, run.end, run.c));
      look(sweep, run);
      sweep.Next();
    }
    EXPECT_EQ(sweep.GetStart1(), nullptr);
    sweep.Next();
    EXPECT_EQ(sweep.GetStart1(), nullptr);
  });
}

TEST(Sweeps, VisitEveryRunInOrder) {
  Random random(14);
  for (int i = 0; i < 80; ++i) {
    const Scene scene(random);
    CheckForward<ZUMGenericSweep, 5>(scene, scene.lines, [](auto&, auto&) {});
    CheckForward<ZUMGenericSweepCoords, 4>(scene, scene.lines, [](auto& sweep, const Stretch& run) {
      ASSERT_EQ(Point(sweep.GetX(), sweep.GetY(), sweep.GetZ(), sweep.GetT()), run.start);
      ASSERT_EQ(sweep.GetC(), run.c);
    });
    CheckForward<ZUMGenericSweepY, 4>(scene, scene.columns, [&](auto& sweep, const Stretch&) {
      const ZUMRaster* r = scene.rasters.data();
      for (const int step : ListLineStep(sweep))
        ASSERT_EQ(step, r++->ByteDisplacement(0, 1, 0, 0, 0));
    });
    ForEachSweep<ZUMGenericInvSweep, 4>(scene.rod, scene.rasters, [&](auto& sweep) {
      for (auto run = scene.lines.rbegin(); run != scene.lines.rend(); ++run, sweep.Previous()) {
        ASSERT_TRUE(scene.AtP(ListEnd(sweep), run->end, run->c));
        ASSERT_TRUE(scene.AtP({sweep.GetStart1()}, run->start, run->c));
      }
      EXPECT_EQ(sweep.GetEnd1(), nullptr);
      sweep.Previous();
      EXPECT_EQ(sweep.GetEnd1(), nullptr);
    });
    ForEachSweep<ZUMGenericContinuousSweep, 2>(scene.rod, scene.rasters, [&](auto& sweep) {
      for (const Stretch& run : scene.lines) {
        // Even lines of a plane are walked to the right; all but the first start where the line
        // before ended.
        const int line = run.start.y - scene.rod.BeginY();
        const bool right = line % 2 == 0;
        Point start = right ? run.start : run.end;
        if (line > 0) --start.y;
        ASSERT_EQ(sweep.GetDirection(), line == 0 ? 0 : right ? 1 : 2);
        ASSERT_TRUE(scene.AtP(ListStart(sweep), start, run.c));
        ASSERT_TRUE(scene.AtP({sweep.GetEnd1()}, right ? run.end : run.start, run.c));
        sweep.Next();
      }
      EXPECT_EQ(sweep.GetDirection(), 3);
      sweep.Next();
      EXPECT_EQ(sweep.GetDirection(), 3);
    });
  }
}

}  // namespace
