#include "zuml/morphology/mathmorph.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <optional>
#include <vector>

#include "tests/morphology/elements.h"
#include "tests/support/diagnostics.h"
#include "tests/support/sanitizers.h"
#include "zuml/algebra/extrema.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/morphology/boxmorphology.h"

// Counts down to an allocation that fails; below 0 none does.
static std::atomic<int> allocations_left{-1};

// The thread sanitizer has these itself, and lets nobody replace them.
#if !defined(__SANITIZE_THREAD__) && !__has_feature(thread_sanitizer)
void* operator new(std::size_t size) {
  if (allocations_left >= 0 && allocations_left-- == 0) throw std::bad_alloc();
  if (void* block = std::malloc(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
#endif

namespace {

using namespace zuml_test;

template <class P>
using ByElement = ZUMImage<P> (*)(const ZUMImage<P>&, const ZUMImage<ZUMBool>&);
template <class P>
using ByBox = ZUMImage<P> (*)(const ZUMImage<P>&, const ZUMRect&);

// One operation: what it is called, its two overloads and its rules.
template <class P>
struct Form {
  const char* name;
  ByElement<P> by_element;
  ByBox<P> by_box;
  bool maximum, direct_element, direct_box, ex;
  bool dilates = std::string(name).starts_with("ZUMDilate");
};

template <class P>
const std::vector<Form<P>>& Forms() {
  constexpr bool kBool = std::same_as<P, ZUMBool>;
  static const std::vector<Form<P>> forms = {
      {"ZUMDilate", ZUMDilate<P>, ZUMDilate<P>, true, kBool, false, false},
      {"ZUMErode", ZUMErode<P>, ZUMErode<P>, false, kBool, false, false},
      {"ZUMMinAdd", ZUMMinAdd<P>, ZUMMinAdd<P>, true, true, true, false},
      {"ZUMMinSub", ZUMMinSub<P>, ZUMMinSub<P>, false, true, true, false},
      {"ZUMDilateEx", ZUMDilateEx<P>, ZUMDilateEx<P>, true, false, false, true},
      {"ZUMErodeEx", ZUMErodeEx<P>, ZUMErodeEx<P>, false, false, false, true},
      {"ZUMMinAddEx", ZUMMinAddEx<P>, ZUMMinAddEx<P>, true, true, true, true},
      {"ZUMMinSubEx", ZUMMinSubEx<P>, ZUMMinSubEx<P>, false, true, true, true},
  };
  return forms;
}

// The fold of the pixels at p + k that the image holds, in the order of the steps k; it begins with
// `start`, if there is one.
template <class P>
ZUMImage<P> FoldSteps(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                      const std::vector<Point>& steps, bool maximum, std::optional<P> start) {
  return MakeByPoint<P>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    std::optional<P> kept = start;
    for (const Point& k : steps) {
      const Point p = Add(Point(x, y, z, t), 1, k);
      if (!image.InP(p)) continue;
      const P value = image(p, c);
      if (!kept || (maximum ? value > *kept : value < *kept)) kept = value;
    }
    return *kept;
  });
}

template <class P>
ZUMImage<P> Reference(const Form<P>& form, const ZUMImage<P>& image,
                      const ZUMImage<ZUMBool>& element) {
  const int sign = form.direct_element ? 1 : -1;
  std::vector<Point> steps;
  std::optional<P> start;
  if (form.ex && element.InP(0, 0, 0, 0) && element(0, 0)) {
    steps.push_back(Point(0, 0));  // the own value comes first
  } else if (form.ex) {
    start = form.maximum ? ZUMMin(image) : ZUMMax(image);
  }
  ForEachElement(element, [&](const Point& k, bool) { steps.push_back(Add(Point(), sign, k)); });
  const ZUMRoDRef inside = Shrink(image, element.Rect(), form.direct_element);
  return FoldSteps<P>(image, form.ex ? ZUMRoDRef(image) : inside, steps, form.maximum, start);
}

// One axis of a box at a time.
template <class P>
ZUMImage<P> Reference(const Form<P>& form, const ZUMImage<P>& image, const ZUMRect& box) {
  ZUMImage<P> folded = image;
  for (const auto axis : {&Point::x, &Point::y, &Point::z, &Point::t}) {
    if (box.begin.*axis == box.end.*axis) continue;
    ZUMRect along;
    along.begin.*axis = form.direct_box ? box.begin.*axis : -(box.end.*axis);
    along.end.*axis = form.direct_box ? box.end.*axis : -(box.begin.*axis);
    std::vector<Point> steps;
    for (int k = along.begin.*axis; k <= along.end.*axis; ++k) {
      Point step;
      step.*axis = k;
      steps.push_back(step);
    }
    std::optional<P> start;
    if (form.ex && form.dilates) start = std::numeric_limits<P>::lowest();
    if (form.ex && !form.dilates) steps.push_back(Point(0, 0));
    if (form.ex) std::reverse(steps.begin(), steps.end());
    const ZUMRoDRef rod = form.ex ? ZUMRoDRef(image) : Shrink(folded, along, true);
    folded = FoldSteps<P>(folded, rod, steps, form.maximum, start);
  }
  return folded;
}

template <class P>
ZUMImage<P> MakeImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const ZUMImage<P> image = MakeRandomImage<P>(random, box, csz, layout);
  if constexpr (std::floating_point<P>) {
    const P special[] = {std::nan(""), -0.0, 0.0, std::numeric_limits<P>::infinity(),
                         -std::numeric_limits<P>::infinity()};
    ForEachPoint(image, csz, [&](auto... at) {
      if (random.Int(0, 5) == 0) image(at...) = special[random.Int(0, 4)];
    });
  }
  return image;
}

ZUMImage<ZUMBool> MakeDisc(int radius) {
  return MakeByPoint<ZUMBool>(
      ZUMRoDRef(-radius, -radius, 0, 0, radius, radius, 0, 0), 1,
      [=](int x, int y, int, int, int) { return x * x + y * y <= radius * radius; });
}

template <class P>
class MorphologyTest : public testing::Test {};
TYPED_TEST_SUITE(MorphologyTest, ScalarTypes);

TYPED_TEST(MorphologyTest, ElementsFollowTheCoordinates) {
  using P = TypeParam;
  Random random(41);
  const auto noise = [&](const ZUMRect& box, Layout layout) {
    return MakeRandomImage<ZUMBool>(random, box, 1, layout);
  };
  const std::pair<ZUMRect, ZUMImage<ZUMBool>> cases[] = {
      {{-3, 2, 0, 0, 70, 30, 0, 0}, ZUMCon8},
      {{-3, 2, 0, 0, 70, 30, 0, 0}, MakeDisc(7)},
      {{5, -4, 0, 0, 44, 30, 1, 0}, noise({-2, -1, 0, 0, 3, 2, 0, 0}, Layout::kCut)},
      {{0, 0, -2, 3, 40, 9, 4, 6}, noise({-9, 0, -1, 0, 6, 2, 1, 1}, Layout::kFramed)},
      // Without the origin, on either side of it; wider than the image; full boxes; many strips.
      {{0, 0, 0, 0, 21, 12, 0, 0}, noise({2, 1, 0, 0, 7, 3, 0, 0}, Layout::kTight)},
      {{0, 0, 0, 0, 7, 5, 0, 0}, ZUMImage<ZUMBool>(ZUMRect(-12, -9, 0, 0, -3, 9, 0, 0), 1, true)},
      {{0, 0, 0, 0, 50, 25, 0, 0}, ZUMImage<ZUMBool>(ZUMRect(-3, -6, 0, 0, 12, 5, 0, 0), 1, true)},
      {{0, 0, 0, 0, 9, 9, 0, 0}, ZUMImage<ZUMBool>(ZUMRect(2, -1, 0, 0, 2, -1, 0, 0), 1, true)},
      {{0, 0, 0, 0, 2200, 6, 0, 0}, MakeDisc(2)},
  };
  for (const Layout layout : kLayouts) {
    for (std::size_t i = 0; i < std::size(cases); ++i) {
      const auto& [region, element] = cases[i];
      const auto image = MakeImage<P>(random, region, 2, layout);
      const ZUMImage<P> before = ZUMCopy(image);
      for (const Form<P>& form : Forms<P>()) {
        const WithThreads threads(kThreadCounts[(i + static_cast<std::size_t>(layout)) % 5]);
        EXPECT_TRUE(SameImage(form.by_element(image, element), Reference(form, image, element)))
            << form.name << " case " << i << " layout " << static_cast<int>(layout);
      }
      EXPECT_TRUE(SameImage(ZUMCopy(image), before));
    }
  }
}

TYPED_TEST(MorphologyTest, BoxesFollowTheCoordinates) {
  using P = TypeParam;
  Random random(43);
  const ZUMRect flat(-3, 2, 0, 0, 90, 40, 0, 0), deep(4, 0, -2, 1, 20, 11, 6, 4);
  const ZUMRect wide(0, 0, 0, 0, 4500, 25, 0, 0);
  const std::pair<ZUMRect, ZUMRect> cases[] = {
      {flat, {-1, -1, 0, 0, 1, 1, 0, 0}},     {flat, {-2, 0, 0, 0, 4, 0, 0, 0}},
      {flat, {0, -3, 0, 0, 0, 12, 0, 0}},     {flat, {-9, -7, 0, 0, 21, 7, 0, 0}},
      {flat, {-40, -20, 0, 0, 40, 20, 0, 0}}, {deep, {-9, -7, 0, 0, 21, 7, 0, 0}},
      {deep, {0, 0, -1, -2, 0, 0, 2, 1}},     {deep, {-3, -1, -1, 0, 0, 0, 6, 2}},
      {flat, {0, 0, 0, 0, 0, 0, 0, 0}},       {flat, {2, 3, 0, 0, 6, 3, 0, 0}},
      {flat, {2, 0, 0, 0, 2, 0, 0, 0}},       {wide, {-1, -9, 0, 0, 2, 9, 0, 0}}};
  for (const Layout layout : kLayouts) {
    for (std::size_t i = 0; i < std::size(cases); ++i) {
      const auto& [region, box] = cases[i];
      if (region == wide && layout != Layout::kCut) continue;
      const auto image = MakeImage<P>(random, region, 2, layout);
      const WithThreads threads(kThreadCounts[(i + static_cast<std::size_t>(layout)) % 5]);
      for (const Form<P>& form : Forms<P>()) {
        if (box.begin.x > 0 && !form.dilates) continue;
        EXPECT_TRUE(SameImage(form.by_box(image, box), Reference(form, image, box)))
            << form.name << " box " << i << " layout " << static_cast<int>(layout);
      }
    }
  }
}

TYPED_TEST(MorphologyTest, RefusedElements) {
  using P = TypeParam;
  const ZUMRect square(0, 0, 0, 0, 1, 1, 0, 0), right(1, 0, 0, 0, 1, 0, 0, 0);
  const ZUMRect crossed(0, 0, 0, 1, 0, 0, 0, 0), beside(0, -3, 0, 0, 1, -1, 0, 0);
  const ZUMImage<P> empty, image(ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 1, P(1));
  const ZUMImage<ZUMBool> two(square, 2, true), none(square, 1, false), away(right, 1, true);
  const std::string least = " Un elemento estructurante ha de tener como mínimo un pixel";
  const std::string undefined = ":Valor indefinido por imagen vacia";
  for (const Form<P>& form : Forms<P>()) {
    const std::string name = form.name, sign = form.direct_element ? "" : "Symmetric";
    const std::string box_text = (name == "ZUMErodeEx" ? "ZUMErode" : name) +
                                 ": empty rectangle is not allowed" +
                                 (form.dilates ? "" : " or origin is out of rectange");
    EXPECT_EQ(MessageOf([&] { form.by_element(image, two); }),
              name + ": Multichannel structuring elements are not allowed");
    EXPECT_EQ(MessageOf([&] { form.by_element(image, none); }),
              form.ex ? "" : "ZUMDisplacementArray::" + sign + "FromNonZeroPixels" + least);
    EXPECT_EQ(MessageOf([&] { form.by_box(image, crossed); }), box_text);
    EXPECT_EQ(MessageOf([&] { form.by_box(image, beside); }), form.dilates ? "" : box_text);
    // Of an image without a pixel there is no least value.
    EXPECT_EQ(MessageOf([&] { form.by_element(empty, away); }),
              form.ex ? (form.maximum ? "ZUMMin" : "ZUMMax") + undefined : "");
  }
}

// A fold that begins with -0.0 keeps its sign, in vectors as in single pixels.
TEST(MathMorph, NegativeZeroAsStart) {
  const ZUMImage<ZUMReal> image(ZUMRect(0, 0, 0, 0, 40, 1, 0, 0), 1, -0.0);
  const ZUMImage<ZUMBool> away(ZUMRect(1, 0, 0, 0, 2, 0, 0, 0), 1, true);
  for (const Form<ZUMReal>& form : Forms<ZUMReal>()) {
    EXPECT_TRUE(SameImage(form.by_element(image, away), Reference(form, image, away))) << form.name;
  }
}

// Memory that runs out inside a task is reported with the name of its class.
TEST(MathMorph, FailuresNameTheTask) {
  if (kThreadSanitizer) GTEST_SKIP() << "no allocation can be made to fail";
  const ZUMImage<ZUMBool> bools(ZUMRect(0, 0, 0, 0, 9, 9, 3, 3), 1, true);
  const ZUMImage<ZUMByte> bytes = bools;
  const ZUMImage<ZUMReal> reals = bools;
  const ZUMRect x(0, 0, 0, 0, 1, 0, 0, 0), y(0, -1, 0, 0, 0, 0, 0, 0), z(0, 0, 0, 0, 0, 0, 1, 0),
      t(0, 0, 0, -1, 0, 0, 0, 1);
  const ZUMImage<ZUMBool> row(ZUMRect(-1, 0, 0, 0, 2, 0, 0, 0), 1, true);
  const std::pair<std::string, std::function<void()>> cases[] = {
      {"CTaskDilateX<unsigned char>", [&] { ZUMDilate(bools, x); }},
      {"CTaskErodeY<unsigned char>", [&] { ZUMMinSub(bytes, y); }},
      {"CTaskDilateZ<double>", [&] { ZUMMinAdd(reals, z); }},
      {"CTaskErodeT<double>", [&] { ZUMErode(reals, t); }},
      {"CTaskDilateExY<double>", [&] { ZUMDilateEx(reals, y); }},
      {"CTaskErodeExT<unsigned char>", [&] { ZUMErodeEx(bytes, t); }},
      {"CTaskErodeExX<double>", [&] { ZUMMinSubEx(reals, x); }},
      {"CTaskDilateExZ<unsigned char>", [&] { ZUMMinAddEx(bools, z); }},
      {"CTaskDilateBool", [&] { ZUMMinAdd(bools, row); }},
      {"CTaskErodeBool", [&] { ZUMErode(bools, row); }},
      {"CTaskDilateByte", [&] { ZUMDilate(bytes, row); }},
      {"CTaskErodeByte", [&] { ZUMMinSub(bytes, row); }},
      {"CTaskDilate<double>", [&] { ZUMDilate(reals, row); }},
      {"CTaskErode<unsigned char>", [&] { ZUMErode(bytes, ZUMCon8); }},
      {"CTaskMinAddEx<bool>", [&] { ZUMMinAddEx(bools, row); }},
      {"CTaskErodeEx<double>", [&] { ZUMErodeEx(reals, row); }}};
  const WithThreads threads(1);
  for (const auto& [name, run] : cases) {
    CaptureDiagnostics output;
    std::string report;
    for (int k = 0; k < 200 && report.empty(); ++k) {
      allocations_left = k;
      try {
        run();
      } catch (const std::exception&) {
      }
      allocations_left = -1;
      report = output.Take();
    }
    EXPECT_EQ(report, "Error en CTask 0 de tipo " + name + "\n");
  }
}

}  // namespace
