/// Operations against a rule by coordinates: over every type of a list, every layout of the
/// operands, several numbers of tasks, and regions that overlap in part or not at all.
#pragma once

#include <cmath>
#include <functional>

#include "tests/support/testimages.h"
#include "zuml/core/detail/axes.h"

namespace zuml_test {

using zuml_detail::Axis;
using zuml_detail::kAxes;
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The lists of pixeltypes.h: its macros put a comma before each type.
template <class First, class... Types>
struct Suite {
  using Of = testing::Types<Types...>;
};
#define ZUML_TEST_COMMA(TYPE) , TYPE
using DiscreteTypes = Suite<void ZUML_DISCRETE_TYPES(ZUML_TEST_COMMA)>::Of;
using IntegerTypes = Suite<void ZUML_INTEGER_TYPES(ZUML_TEST_COMMA)>::Of;
using SignedTypes = Suite<void ZUML_SIGNED_TYPES(ZUML_TEST_COMMA)>::Of;
using GreyTypes = Suite<void ZUML_GREY_TYPES(ZUML_TEST_COMMA)>::Of;
using RealComplexTypes = Suite<void ZUML_REAL_COMPLEX_TYPES(ZUML_TEST_COMMA)>::Of;
using ScalarTypes = Suite<void ZUML_SCALAR_TYPES(ZUML_TEST_COMMA)>::Of;
using OrderedTypes = Suite<void ZUML_ORDERED_TYPES(ZUML_TEST_COMMA)>::Of;
using ArithmeticTypes = Suite<void ZUML_ARITHMETIC_TYPES(ZUML_TEST_COMMA)>::Of;
using AlgebraTypes = Suite<void ZUML_ALGEBRA_TYPES(ZUML_TEST_COMMA)>::Of;
using ValueTypes = Suite<void ZUML_VALUE_TYPES(ZUML_TEST_COMMA)>::Of;
using AllTypes = Suite<void ZUML_ALL_TYPES(ZUML_TEST_COMMA)>::Of;
#undef ZUML_TEST_COMMA

/// Calls f.operator()<P>() for each type of a list.
template <class... Ps, class F>
void ForTypes(testing::Types<Ps...>, F f) {
  const auto run = [&]<class P>(std::type_identity<P>) {
    SCOPED_TRACE(ZUMPixelTraits<P>::kName);
    f.template operator()<P>();
  };
  (run(std::type_identity<Ps>()), ...);
}

/// What pixels are drawn by: any value, or as likely as not one where operations go wrong.
inline constexpr auto kAnyPixel = []<class P>(Random& random) { return random.Pixel<P>(); };
template <class P>
P EdgePixel(Random& random) {
  if constexpr (std::same_as<P, ZUMComplex>) {
    const double re = EdgePixel<double>(random);
    return {re, EdgePixel<double>(random)};
  } else if constexpr (std::same_as<P, double>) {
    constexpr double kEdges[] = {0.0, -0.0, 1,    -1,    kInfinity, -kInfinity,
                                 NAN, 2.5,  -2.5, 1e308, -1e308,    5e-324};
    return random.Next() % 2 ? kEdges[random.Int(0, 11)] : random.Pixel<P>();
  } else {
    return random.Next() % 2 ? static_cast<P>(random.Int(-3, 36)) : random.Pixel<P>();
  }
}

inline Layout DrawLayout(Random& random) { return kLayouts[random.Int(0, 3)]; }

// std::function here and below, so that each type compiles these once and not for every operation.

/// Calls check(image, random) with images of `csz` channels, whose pixels make(random) draws. Some
/// regions are cut along X for the tasks, or not at all.
template <class P>
void ForEachLayout(int csz, const std::function<P(Random&)>& make,
                   const std::function<void(const ZUMImage<P>&, Random&)>& check) {
  Random random(static_cast<std::uint64_t>(csz) * 31 + sizeof(P));
  for (const Layout layout : kLayouts) {
    for (const int threads : kThreadCounts) {
      const WithThreads with(threads);
      const ZUMRect box = random.Int(0, 2) == 0 ? MakeRandomBox(random, 150, 2)
                                                : MakeRandomBox(random, 70, 9, 3, 2);
      const auto image = MakeRandomImage<P>(random, box, csz, layout);
      ForEachPoint(image, csz, [&](auto... at) { image(at...) = make(random); });
      const auto before = ZUMCopy(image);
      SCOPED_TRACE(testing::Message() << ZUMPixelTraits<P>::kName << " " << image << " layout "
                                      << static_cast<int>(layout) << " threads " << threads);
      check(image, random);
      ASSERT_TRUE(SameImage(before, image)) << "the operand has changed";
      if (testing::Test::HasFailure()) return;
    }
  }
}

template <class P>
void ForEachLayout(int csz, const std::function<void(const ZUMImage<P>&, Random&)>& check) {
  ForEachLayout<P>(
      csz, [](Random& random) { return random.Pixel<P>(); }, check);
}

/// The same for each type of a list and each number of channels; make and check are templates.
template <class... Ps, class Make, class Check>
void ForEachLayout(testing::Types<Ps...>, std::initializer_list<int> channels, const Make& make,
                   const Check& check) {
  const auto run = [&]<class P>(std::type_identity<P>, int csz) {
    ForEachLayout<P>(
        csz, [&](Random& random) { return make.template operator()<P>(random); }, check);
  };
  for (const int csz : channels) (run(std::type_identity<Ps>(), csz), ...);
}

/// A box that overlaps another in part, reaches beyond it, and now and then misses it.
inline ZUMRect MakeOverlappingBox(Random& random, ZUMRect box) {
  for (const Axis axis : kAxes) {
    const int inward = std::min(box.end.*axis - box.begin.*axis, 3);
    box.begin.*axis += random.Int(-2, inward);
    box.end.*axis = std::max(box.begin.*axis, box.end.*axis + random.Int(-inward, 2));
  }
  if (random.Int(0, 9) == 0) box.begin.y = box.end.y += 300;
  return box;
}

/// The points at which the box around two elements stays in the region.
inline ZUMRoDRef ShrinkBy(const ZUMRoDRef& rod, const ZUMRoDRef& a, const ZUMRoDRef& b) {
  ZUMRect e = a.Rect();
  for (const Axis axis : kAxes) {
    e.begin.*axis = std::min(e.begin.*axis, b.Begin().*axis);
    e.end.*axis = std::max(e.end.*axis, b.End().*axis);
  }
  return DisplaceSides(rod, -e.begin.x, -e.begin.y, -e.begin.z, -e.begin.t, -e.end.x, -e.end.y,
                       -e.end.z, -e.end.t);
}

/// A small element that may lie beside the origin; its first pixel is true.
inline ZUMImage<ZUMBool> DrawElement(Random& random) {
  const auto element =
      MakeRandomImage<ZUMBool>(random, MakeRandomBox(random, 3, 3, 2), 1, DrawLayout(random));
  element(element.Begin()) = true;
  return element;
}

/// An image of one line.
template <class P>
ZUMImage<P> MakeLine(std::initializer_list<P> pixels, int begin = 0, int csz = 1) {
  const int n = static_cast<int>(pixels.size()) / csz;
  return ZUMImage<P>(ZUMRect(begin, 0, 0, 0, begin + n - 1, 0, 0, 0), csz, pixels.begin());
}

template <class P>
bool SameBits(P a, P b) {
  return std::memcmp(&a, &b, sizeof(P)) == 0;
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

/// Expects the pixels that rule(x, y, z, t, c) gives. A NaN is a NaN: which of two an operation
/// hands on is open.
template <class R>
void ExpectPixels(const ZUMImage<R>& result, const ZUMRoDRef& rod, int csz,
                  const std::type_identity_t<std::function<R(int, int, int, int, int)>>& rule) {
  const auto one_nan = [](double v) { return std::isnan(v) ? NAN : v; };
  const auto pixel = [&](R v) -> R {
    if constexpr (std::same_as<R, double>) {
      return one_nan(v);
    } else if constexpr (std::same_as<R, ZUMComplex>) {
      return {one_nan(v.real()), one_nan(v.imag())};
    } else {
      return v;
    }
  };
  const auto expected = MakeByPoint<R>(rod, csz, [&](auto... at) { return pixel(rule(at...)); });
  EXPECT_TRUE(SameImage(
      MakeByPoint<R>(result, result.GetCSz(), [&](auto... at) { return pixel(result(at...)); }),
      expected));
}

/// Calls f(a, b, n), two images and a number; the images must stay as they are.
template <class P>
void ForEachOperands(int csz_a, int csz_b,
                     const std::function<void(const ZUMImage<P>&, const ZUMImage<P>&, P)>& f) {
  ForEachLayout<P>(csz_a, EdgePixel<P>, [&](const ZUMImage<P>& a, Random& random) {
    const auto b =
        MakeRandomImage<P>(random, MakeOverlappingBox(random, a.Rect()), csz_b, DrawLayout(random));
    ForEachPoint(b, csz_b, [&](auto... at) { b(at...) = EdgePixel<P>(random); });
    const auto before = ZUMCopy(b);
    f(a, b, EdgePixel<P>(random));
    EXPECT_TRUE(SameImage(before, b)) << "the operand has changed";
  });
}

/// Checks op(image, image) with the given channels; rule(a, b, x, y, z, t, c) gives a pixel.
template <class P, class Op, class Rule>
void CheckImages(int csz_a, int csz_b, int csz, Op op, Rule rule) {
  ForEachOperands<P>(csz_a, csz_b, [&](const ZUMImage<P>& a, const ZUMImage<P>& b, P) {
    ExpectPixels(op(a, b), Intersection(a, b), csz, [&](auto... at) { return rule(a, b, at...); });
  });
}

/// Checks op(image, number) and op(number, image) against rule(P, P).
template <class P, class Op, class Rule>
void CheckNumbers(Op op, Rule rule) {
  ForEachOperands<P>(2, 1, [&](const ZUMImage<P>& a, const ZUMImage<P>&, P n) {
    ExpectPixels(op(a, n), a, 2, [&](auto... at) { return rule(a(at...), n); });
    ExpectPixels(op(n, a), a, 2, [&](auto... at) { return rule(n, a(at...)); });
  });
}

/// Checks op(image, image) with equal channels, and, under a name, its text for others, which ends
/// with `numbers`.
template <class P, class Op, class Rule>
void CheckPairs(Op op, Rule rule, const std::string& name = "",
                const std::string& numbers = " 2!=3") {
  CheckImages<P>(2, 2, 2, op, [&](const auto& a, const auto& b, auto... at) {
    return rule(a(at...), b(at...));
  });
  if (name.empty()) return;
  const ZUMImage<P> two(ZUMRect(), 2, P()), three(two, 3, P());
  EXPECT_EQ(MessageOf([&] { (void)op(two, three); }),
            name + ": Diferent number of channels" + numbers);
}

/// Checks all three forms of an operation.
template <class P, class Op, class Rule>
void CheckForms(Op op, Rule rule, const std::string& name = "",
                const std::string& numbers = " 2!=3") {
  CheckPairs<P>(op, rule, name, numbers);
  CheckNumbers<P>(op, rule);
}

/// Checks op(image).
template <class P, class Op, class Rule>
void CheckUnary(Op op, Rule rule) {
  ForEachLayout<P>(2, EdgePixel<P>, [&](const ZUMImage<P>& a, Random&) {
    ExpectPixels(op(a), a, 2, [&](auto... at) { return rule(a(at...)); });
  });
}

}  // namespace zuml_test
