#include "zuml/core/zumsweep.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/support/diagnostics.h"
#include "tests/support/testimages.h"
#include "zuml/core/zumsweeprect.h"

namespace {

using zuml_test::Random;
using Point = ZUMBasePoint<int>;
using Pointers = std::vector<void*>;

/// A run that a sweep should hand out: the coordinates of its ends, and the channel.
struct Stretch {
  Point start, end;
  int c;
};

/// A region and rasters of different types and sizes around it, all of them channel views. The
/// first has the fewest channels.
struct Scene {
  ZUMRoDRef rod;
  std::vector<ZUMRaster> rasters;
  std::vector<Stretch> lines, columns;

  explicit Scene(Random& random) : rod(zuml_test::MakeRandomBox(random, 5, 4, 3, 3)) {
    const auto margin = [&random] { return random.Int(0, 2); };
    const int csz = random.Int(1, 3);
    for (int k = 0; k < 5; ++k) {
      const ZUMRect frame(margin(), margin(), margin(), margin(), margin(), margin(), margin(),
                          margin());
      const int view_csz = csz + (k > 0 ? margin() : 0), first = margin();
      const ZUMRaster whole(rod.RoD(), frame, first + view_csz + margin(),
                            static_cast<ZUMPixelType>(random.Int(0, 7)));
      rasters.emplace_back(whole, first, view_csz);
    }
    const auto [b, e] = rod.Rect();
    for (int c = 0; c < csz; ++c)
      for (int t = b.t; t <= e.t; ++t)
        for (int z = b.z; z <= e.z; ++z) {
          for (int y = b.y; y <= e.y; ++y) lines.push_back({{b.x, y, z, t}, {e.x, y, z, t}, c});
          for (int x = b.x; x <= e.x; ++x) columns.push_back({{x, b.y, z, t}, {x, e.y, z, t}, c});
        }
  }

  /// Where the first n rasters have the pixel.
  Pointers At(int n, const Point& p, int c) const {
    Pointers pointers;
    for (const ZUMRaster& r : rasters) pointers.push_back(r.PixelAddress(p, c));
    pointers.resize(static_cast<std::size_t>(n));
    return pointers;
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

/// Calls f(sweep, n) for sweeps of the kind over the first 1 to Most of the rasters.
template <template <int> class Sweep, int Most, class F>
void ForEachSweep(const ZUMRoDRef& rod, const std::vector<ZUMRaster>& rasters, F f) {
  const auto over = [&]<std::size_t... K>(std::index_sequence<K...>) {
    Sweep<sizeof...(K)> sweep(rod, rasters[K]...);
    f(sweep, static_cast<int>(sizeof...(K)));
  };
  [&]<std::size_t... N>(std::index_sequence<N...>) {
    (over(std::make_index_sequence<N + 1>()), ...);
  }
  (std::make_index_sequence<Most>());
}

/// Checks a forward kind of sweep against its runs; look(sweep, run) looks at what else it tells.
template <template <int> class Sweep, int Most, class Look>
void CheckForward(const Scene& scene, const std::vector<Stretch>& runs, Look look) {
  ForEachSweep<Sweep, Most>(scene.rod, scene.rasters, [&](auto& sweep, int n) {
    for (const Stretch& run : runs) {
      ASSERT_EQ(ListStart(sweep), scene.At(n, run.start, run.c));
      ASSERT_EQ(sweep.GetEnd1(), scene.At(1, run.end, run.c)[0]);
      look(sweep, run);
      sweep.Next();
    }
    EXPECT_EQ(sweep.GetStart1(), nullptr);
  });
}

TEST(Sweeps, VisitEveryRunInOrder) {
  Random random(14);
  for (int i = 0; i < 60; ++i) {
    const Scene scene(random);
    CheckForward<ZUMGenericSweep, 5>(scene, scene.lines, [](auto&, auto&) {});
    CheckForward<ZUMGenericSweepCoords, 4>(scene, scene.lines, [](auto& sweep, const Stretch& run) {
      ASSERT_EQ(Point(sweep.GetX(), sweep.GetY(), sweep.GetZ(), sweep.GetT()), run.start);
      ASSERT_EQ(sweep.GetC(), run.c);
    });
    CheckForward<ZUMGenericSweepY, 4>(scene, scene.columns, [&](auto& sweep, const Stretch&) {
      auto raster = scene.rasters.begin();
      for (const int step : ListLineStep(sweep)) {
        ASSERT_EQ(step, raster++->ByteDisplacement(0, 1, 0, 0, 0));
      }
    });
    ForEachSweep<ZUMGenericInvSweep, 4>(scene.rod, scene.rasters, [&](auto& sweep, int n) {
      for (auto run = scene.lines.rbegin(); run != scene.lines.rend(); ++run, sweep.Previous()) {
        ASSERT_EQ(ListEnd(sweep), scene.At(n, run->end, run->c));
        ASSERT_EQ(sweep.GetStart1(), scene.At(1, run->start, run->c)[0]);
      }
      EXPECT_EQ(sweep.GetEnd1(), nullptr);
    });
    ForEachSweep<ZUMGenericContinuousSweep, 2>(scene.rod, scene.rasters, [&](auto& sweep, int n) {
      for (const Stretch& run : scene.lines) {
        // Even lines of a plane are walked to the right; all but the first start where the line
        // before ended.
        const int line = run.start.y - scene.rod.BeginY();
        const bool right = line % 2 == 0;
        Point start = right ? run.start : run.end;
        if (line > 0) --start.y;
        ASSERT_EQ(sweep.GetDirection(), line == 0 ? 0 : right ? 1 : 2);
        ASSERT_EQ(ListStart(sweep), scene.At(n, start, run.c));
        ASSERT_EQ(sweep.GetEnd1(), scene.At(1, right ? run.end : run.start, run.c)[0]);
        sweep.Next();
      }
      EXPECT_EQ(sweep.GetDirection(), 3);
      sweep.Next();
      EXPECT_EQ(sweep.GetDirection(), 3);
    });
  }
}

// Whatever there is nothing of: points, channels, or pixels of any kind.
TEST(Sweeps, VisitNothingOfEmptyRegionsAndRasters) {
  const ZUMRoDRef point(0, 0, 0, 0, 0, 0, 0, 0);
  const struct {
    ZUMRoDRef rod;
    ZUMRaster raster;
  } cases[] = {{ZUMEmptyRoD, ZUMImage<ZUMReal>()},
               {ZUMEmptyRoD, ZUMRaster(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 2, ZUMShortPixel)},
               {ZUMRoDRef(3, 4, 0, 0, 9, 3, 0, 0), ZUMImage<ZUMByte>()},
               {point, ZUMRaster(point.RoD(), 0, ZUMBytePixel)},
               {point, ZUMImage<ZUMByte>()}};
  for (const auto& test : cases) {
    const std::vector<ZUMRaster> rasters(5, test.raster);
    const auto expect_end = [](auto& sweep, int) {
      for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(sweep.GetStart1(), nullptr);
        EXPECT_EQ(sweep.GetEnd1(), nullptr);
        if constexpr (requires { sweep.GetDirection(); }) {
          EXPECT_EQ(sweep.GetDirection(), 3);
        }
        if constexpr (requires { sweep.Next(); }) sweep.Next();
        if constexpr (requires { sweep.Previous(); }) sweep.Previous();
      }
    };
    ForEachSweep<ZUMGenericSweep, 5>(test.rod, rasters, expect_end);
    ForEachSweep<ZUMGenericSweepY, 4>(test.rod, rasters, expect_end);
    ForEachSweep<ZUMGenericSweepCoords, 4>(test.rod, rasters, expect_end);
    ForEachSweep<ZUMGenericInvSweep, 4>(test.rod, rasters, expect_end);
    ForEachSweep<ZUMGenericContinuousSweep, 2>(test.rod, rasters, expect_end);
  }
}

TEST(Sweeps, ReportWhatMustNotBeReached) {
  const ZUMImage<ZUMByte> image(ZUMRoDRef(0, 0, 0, 0, 3, 3, 0, 0), 1, 0);
  zuml_test::CaptureDiagnostics diagnostics;
  const auto reported = [&] {
    const std::string text = diagnostics.Take();
    return text.starts_with("zumsweeprect.cpp:") && text.ends_with(" internal check failed: 0\n") &&
           text.find('\n') == text.size() - 1;
  };
  const std::vector<ZUMRaster> rasters(4, image);
  ForEachSweep<ZUMGenericInvSweepCoords, 4>(image, rasters, [&](auto& sweep, int) {
    EXPECT_TRUE(reported());
    EXPECT_EQ(sweep.GetEnd1(), nullptr);
    sweep.Previous();
    EXPECT_TRUE(reported());
    EXPECT_EQ(sweep.GetStart1(), nullptr);
  });
  ZUMGenericContinuousSweep2 sweep(image, image, image);
  for (const int direction : {-1, 4, 1000}) {
    sweep.direction = static_cast<ZUMCSDirections>(direction);
    sweep.Next();
    EXPECT_TRUE(reported()) << direction;
    EXPECT_EQ(sweep.GetStart1(), image.GetData());
  }
}

}  // namespace
