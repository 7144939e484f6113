// Statistics, lookup tables and functions against the plain loops that one would write for them, on
// one thread.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "benchmarks/support/pairs.h"
#include "zuml/algebra/extrema.h"
#include "zuml/algebra/functions.h"
#include "zuml/algebra/histogram.h"
#include "zuml/algebra/lut.h"
#include "zuml/algebra/norms.h"
#include "zuml/algebra/statistics.h"
#include "zuml/algebra/tobyte.h"

namespace {

constexpr int kSize = 1024;
constexpr int kCount = kSize * kSize;
const ZUMRect kBox(0, 0, 0, 0, kSize - 1, kSize - 1, 0, 0);

// Values 0 to 255 without order, or one value.
template <class P>
ZUMImage<P> MakeImage(bool flat, int csz = 1) {
  const ZUMImage<P> image(ZUMRoDRef(kBox), csz, P{7});
  P* x = static_cast<P*>(image.GetData());
  unsigned state = 1;
  for (int i = 0; i < csz * kCount && !flat; ++i) {
    state = state * 1664525u + 1013904223u;
    x[i] = static_cast<P>(state >> 24);
  }
  return image;
}

template <class R, class F>
ZUMImage<R> Fill(F f) {
  const ZUMImage<R> result(ZUMRoDRef(kBox), 1, nullptr);
  R* r = static_cast<R*>(result.GetData());
  for (int i = 0; i < kCount; ++i) r[i] = f(i);
  return result;
}

template <class P, class V, class F>
void Fold(const P* x, V value, F f) {
  for (int i = 0; i < kCount; ++i) value = f(value, x[i]);
  benchmark::DoNotOptimize(value);
}

template <class P>
void Register(const std::string& type) {
  using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
  const auto pair = [&](const char* name, auto ours, auto other) {
    zuml_bench::Pair(name + ("/" + type), kCount, 1, ours, other);
  };
  const ZUMImage<P> a = MakeImage<P>(false), flat = MakeImage<P>(true);
  const ZUMImage<P> gradient = MakeImage<P>(false, 2);
  const P* x = static_cast<const P*>(a.GetData());
  const P* g = static_cast<const P*>(gradient.GetData());
  pair(
      "sum", [=] { benchmark::DoNotOptimize(ZUMSum<Out>(a)); },
      [=] { Fold(x, Out{}, [](Out s, P v) { return static_cast<Out>(s + v); }); });
  pair(
      "deviation", [=] { benchmark::DoNotOptimize(ZUMStdDeviation(a)); },
      [=] {
        double s = 0, q = 0;
        for (int i = 0; i < kCount; ++i) s += x[i], q += static_cast<double>(x[i]) * x[i];
        benchmark::DoNotOptimize(kCount * q - s * s);
      });
  pair(
      "max", [=] { benchmark::DoNotOptimize(ZUMMax(a)); },
      [=] { Fold(x, x[0], [](P best, P v) { return v > best ? v : best; }); });
  pair(
      "minmax",
      [=] {
        P min, max;
        ZUMMinMax(a, min, max);
        benchmark::DoNotOptimize(max - min);
      },
      [=] { benchmark::DoNotOptimize(std::minmax_element(x, x + kCount)); });
  pair(
      "searchmax", [=] { benchmark::DoNotOptimize(ZUMSearchMax(a)); },
      [=] { benchmark::DoNotOptimize(std::max_element(x, x + kCount)); });
  const auto count = [](const P* from) {
    std::vector<ZUMLong> cells(256);
    for (int i = 0; i < kCount; ++i) ++cells[static_cast<unsigned char>(from[i])];
    benchmark::DoNotOptimize(cells.data());
  };
  const P* y = static_cast<const P*>(flat.GetData());
  pair(
      "histogram", [=] { ZUMHistogram(a, 256, 0, 255); }, [=] { count(x); });
  pair(
      "histogram flat", [=] { ZUMHistogram(flat, 256, 0, 255); }, [=] { count(y); });
  pair(
      "maxcon", [=] { ZUMMaxcon(a); },
      [=] { Fill<ZUMByte>([=](int i) { return static_cast<ZUMByte>(x[i] * 1.0); }); });
  pair(
      "norm", [=] { ZUMNorm(gradient); },
      [=] {
        Fill<ZUMReal>([=](int i) {
          const double v = g[i], w = g[i + kCount];
          return std::sqrt(v * v + w * w);
        });
      });
  pair(
      "exp", [=] { ZUMExp(a); },
      [=] { Fill<ZUMReal>([=](int i) { return std::exp(static_cast<double>(x[i])); }); });
  if constexpr (std::integral<P>) {
    const ZUMImage<ZUMByte> table(ZUMRect(0, 0, 0, 0, 255, 0, 0, 0), 1, ZUMByte{1});
    const ZUMByte* t = static_cast<const ZUMByte*>(table.GetData());
    const auto look_up = [=] { Fill<ZUMByte>([=](int i) { return t[x[i]]; }); };
    pair(
        "unsafelut", [=] { ZUMUnsafeLut(a, table); }, look_up);
    pair(
        "lut", [=] { ZUMLut(a, table, 0); }, look_up);
  }
}

const bool registered = [] {
  Register<ZUMByte>("byte");
  Register<ZUMShort>("short");
  Register<ZUMLong>("long");
  Register<ZUMReal>("double");
  return true;
}();

}  // namespace
