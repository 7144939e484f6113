// Operators against the plain loops that one would write for them, on one thread. Both write a new
// image, so that the pairs differ in their loops alone.

#include <cstring>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/comparison.h"
#include "zuml/algebra/conditional.h"
#include "zuml/algebra/division.h"
#include "zuml/algebra/product.h"

namespace {

constexpr int kSize = 1024;
constexpr double kPixels = 1.0 * kSize * kSize;

template <class P>
ZUMImage<P> MakeImage(unsigned seed) {
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, kSize - 1, kSize - 1, 0, 0), 1, P());
  ZUMLong state = static_cast<ZUMLong>(seed);
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      state = static_cast<ZUMLong>(static_cast<unsigned>(state) * 1664525u + 1013904223u);
      image(x, y) = static_cast<P>(state >> 9);
    }
  }
  return image;
}

// The loop over whole blocks: r[i] = f(i).
template <class R, class F>
ZUMImage<R> Fill(F f) {
  const ZUMImage<R> result(ZUMRoDRef(ZUMRect(0, 0, 0, 0, kSize - 1, kSize - 1, 0, 0)), 1, nullptr);
  R* r = static_cast<R*>(result.GetData());
  for (int i = 0; i < kSize * kSize; ++i) r[i] = f(i);
  return result;
}

template <class P>
void Register(const std::string& type) {
  const ZUMImage<P> a = MakeImage<P>(1), b = MakeImage<P>(2), same = ZUMCopy(a);
  const ZUMImage<bool> mask = MakeImage<ZUMByte>(3) < 128;
  const P* x = static_cast<const P*>(a.GetData());
  const P* y = static_cast<const P*>(b.GetData());
  const P* z = static_cast<const P*>(same.GetData());
  const bool* m = static_cast<const bool*>(mask.GetData());
  const auto pair = [&](const char* name, auto ours, auto other) {
    zuml_bench::Pair(name + ("/" + type), kPixels, 1, ours, other);
  };
  pair(
      "add", [=] { a + b; }, [=] { Fill<P>([=](int i) { return static_cast<P>(x[i] + y[i]); }); });
  pair(
      "multiply", [=] { a* b; },
      [=] { Fill<P>([=](int i) { return static_cast<P>(x[i] * y[i]); }); });
  pair(
      "divide", [=] { a / b; },
      [=] { Fill<P>([=](int i) { return static_cast<P>(y[i] == 0 ? 0 : x[i] / y[i]); }); });
  pair(
      "maximum", [=] { ZUMMax(a, b); },
      [=] { Fill<P>([=](int i) { return x[i] > y[i] ? x[i] : y[i]; }); });
  pair(
      "less", [=] { (void)(a < b); }, [=] { Fill<bool>([=](int i) { return x[i] < y[i]; }); });
  pair(
      "choose", [=] { ZUMImIf(mask, a, b); },
      [=] { Fill<P>([=](int i) { return m[i] ? x[i] : y[i]; }); });
  pair(
      "equal", [=] { benchmark::DoNotOptimize(a == same); },
      [=] { benchmark::DoNotOptimize(std::memcmp(x, z, kSize * kSize * sizeof(P))); });
}

const bool registered = [] {
  Register<ZUMByte>("byte");
  Register<ZUMShort>("short");
  Register<ZUMLong>("long");
  Register<ZUMReal>("double");
  return true;
}();

}  // namespace
