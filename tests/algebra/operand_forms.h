// The three forms of an operation (two images; an image and a number on either side) against a
// pixel rule, over every layout, several numbers of tasks, and regions that overlap partly or not
// at all.
#pragma once

#include <cmath>
#include <functional>
#include <type_traits>

#include "tests/algebra/everylayout.h"

namespace zuml_test {

/// Calls f.operator()<P>() for each type.
template <class... Ps, class F>
void ForTypes(F f) {
  const auto run = [&]<class P>(std::type_identity<P>) {
    SCOPED_TRACE(ZUMPixelTraits<P>::kName);
    f.template operator()<P>();
  };
  (run(std::type_identity<Ps>()), ...);
}

/// The low bits of an integer: what pixel arithmetic keeps.
template <class P>
P Wrap(long long value) {
  return static_cast<P>(static_cast<unsigned long long>(value));
}

/// An operator as a pixel rule: integers go through 64 bits and keep the low bits.
template <class Op>
auto InPixels(Op op) {
  return [op]<class P>(P a, std::same_as<P> auto... b) -> P {
    if constexpr (std::integral<P>) {
      return Wrap<P>(op(static_cast<long long>(a), static_cast<long long>(b)...));
    } else {
      return op(a, b...);
    }
  };
}

/// A pixel that is as likely as not one of the values where operations go wrong.
template <class P>
P EdgePixel(Random& random) {
  if constexpr (std::same_as<P, ZUMComplex>) {
    const double re = EdgePixel<double>(random);
    return {re, EdgePixel<double>(random)};
  } else if constexpr (std::same_as<P, double>) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    constexpr double kEdges[] = {0.0, -0.0, 1,    -1,    kInf,   -kInf,
                                 NAN, 2.5,  -2.5, 1e308, -1e308, 5e-324};
    return random.Next() % 2 ? kEdges[random.Int(0, 11)] : random.Pixel<P>();
  } else {
    return random.Next() % 2 ? Wrap<P>(random.Int(-3, 36)) : random.Pixel<P>();
  }
}

/// A region that overlaps most others of its kind.
inline ZUMRect MakeOperandBox(Random& random) {
  ZUMRect box = MakeRandomBox(random, 40, 16);
  box.begin.z = -1;
  box.end.z = random.Int(-1, 0);
  box.end.t = random.Int(0, 1);
  return box;
}

template <class P>
ZUMImage<P> MakeEdgeImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const ZUMImage<P> image = MakeRandomImage<P>(random, box, csz, layout);
  ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
    image(x, y, z, t, c) = EdgePixel<P>(random);
  });
  return image;
}

/// One NaN for all: which of two an operation hands on is open.
template <class R>
ZUMImage<R> WithOneNaN(const ZUMImage<R>& image) {
  if constexpr (std::same_as<R, double> || std::same_as<R, ZUMComplex>) {
    const auto fix = [](double v) { return std::isnan(v) ? NAN : v; };
    return MakeByPoint<R>(image, image.GetCSz(), [&](auto... at) -> R {
      if constexpr (std::same_as<R, double>) {
        return fix(image(at...));
      } else {
        return {fix(image(at...).real()), fix(image(at...).imag())};
      }
    });
  } else {
    return image;
  }
}

/// Calls f(a, b, n), two images and a number, in many settings; the images must stay as they are.
template <class P, class F>
void ForEachOperands(int csz_a, int csz_b, F f) {
  Random random(7);
  for (int k = 0; k < 5; ++k) {
    const WithThreads threads(kThreadCounts[k]);
    for (int i = 0; i < 4; ++i) {
      SCOPED_TRACE(testing::Message() << "threads " << kThreadCounts[k] << ", layout " << i);
      const auto make = [&](int csz, int layout) {
        return MakeEdgeImage<P>(random, MakeOperandBox(random), csz, kLayouts[layout]);
      };
      const ZUMImage<P> a = make(csz_a, i), b = make(csz_b, (i + k) % 4);
      const ZUMImage<P> kept_a = ZUMCopy(a), kept_b = ZUMCopy(b);
      f(a, b, EdgePixel<P>(random));
      EXPECT_TRUE(SameImage(a, kept_a));
      EXPECT_TRUE(SameImage(b, kept_b));
    }
  }
}

/// Checks op(image, image) with the given channels; rule(a, b, x, y, z, t, c) gives a pixel.
template <class P, class Op, class Rule>
void CheckImages(int csz_a, int csz_b, int csz, Op op, Rule rule) {
  ForEachOperands<P>(csz_a, csz_b, [&](const ZUMImage<P>& a, const ZUMImage<P>& b, P) {
    const auto result = op(a, b);
    using R = typename decltype(op(a, b))::PixelType;
    const ZUMImage<R> expected =
        MakeByPoint<R>(Intersection(a, b), csz, [&](auto... at) -> R { return rule(a, b, at...); });
    EXPECT_TRUE(SameImage(WithOneNaN(result), WithOneNaN(expected)));
  });
}

/// Checks op(image, number) and op(number, image) against rule(P, P).
template <class P, class Op, class Rule>
void CheckNumbers(Op op, Rule rule) {
  ForEachOperands<P>(2, 1, [&](const ZUMImage<P>& a, const ZUMImage<P>&, P n) {
    using R = typename decltype(op(a, n))::PixelType;
    const auto expect = [&](const ZUMImage<R>& result, auto pixel) {
      EXPECT_TRUE(SameImage(WithOneNaN(result), WithOneNaN(MakeByPoint<R>(a, 2, pixel))));
    };
    expect(op(a, n), [&](auto... at) -> R { return rule(a(at...), n); });
    expect(op(n, a), [&](auto... at) -> R { return rule(n, a(at...)); });
  });
}

/// Checks all three forms of an operation that wants images with the same number of channels, and
/// its text for other ones, which ends with `numbers`.
template <class P, class Op, class Rule>
void CheckForms(Op op, Rule rule, const std::string& name = "",
                const std::string& numbers = " 2!=3") {
  CheckImages<P>(2, 2, 2, op, [&](const auto& a, const auto& b, auto... at) {
    return rule(a(at...), b(at...));
  });
  CheckNumbers<P>(op, rule);
  const ZUMImage<P> two(ZUMRect(), 2, P()), three(two, 3, P());
  if (name.empty()) return;
  EXPECT_EQ(MessageOf([&] { (void)op(two, three); }),
            name + ": Diferent number of channels" + numbers);
}

/// Checks op(image).
template <class P, class Op, class Rule>
void CheckUnary(Op op, Rule rule) {
  ForEachOperands<P>(2, 1, [&](const ZUMImage<P>& a, const ZUMImage<P>&, P) {
    EXPECT_TRUE(SameImage(WithOneNaN(op(a)), WithOneNaN(MakeByPoint<P>(a, 2, [&](auto... at) -> P {
                            return rule(a(at...));
                          }))));
  });
}

}  // namespace zuml_test
