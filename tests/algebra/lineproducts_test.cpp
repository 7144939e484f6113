#include "zuml/algebra/lineproducts.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

template <class Out, class P>
inline constexpr ZUMImage<Out> (*kProducts[])(const ZUMImage<Out>&, const ZUMImage<P>&) = {
    ZUMXProduct<Out, P>, ZUMYProduct<Out, P>, ZUMZProduct<Out, P>, ZUMTProduct<Out, P>};

template <class Out, class P>
void CheckProducts() {
  ForEachLayout<P>(2, [&](const ZUMImage<P>& image, Random& random) {
    for (int a = 0; a < 4; ++a) {
      const auto axis = kAxes[a];
      ZUMRect line_box, box = image.Rect();
      line_box.begin.*axis = box.begin.*axis + random.Int(-3, 1);
      line_box.end.*axis = line_box.begin.*axis + random.Int(0, 50);
      const auto line = MakeRandomImage<Out>(random, line_box, 2, DrawLayout(random));
      box.begin.*axis = std::max(box.begin.*axis, line_box.begin.*axis);
      box.end.*axis = std::min(box.end.*axis, line_box.end.*axis);
      ExpectPixels(kProducts<Out, P>[a](line, image), box, 2,
                   [&](int x, int y, int z, int t, int c) {
                     ZUMBasePoint<int> on_line;
                     on_line.*axis = ZUMBasePoint<int>(x, y, z, t).*axis;
                     const auto v = static_cast<Out>(image(x, y, z, t, c));
                     return InPixels(std::multiplies<>())(line(on_line, c), v);
                   });
    }
  });
}

TEST(LineProducts, MultiplyAtTheCoordinateOfTheAxis) {
  ForTypes(DiscreteTypes(), []<class P>() { CheckProducts<ZUMLong, P>(); });
  ForTypes(ScalarTypes(), []<class P>() { CheckProducts<ZUMReal, P>(); });
}

TEST(LineProducts, RefuseWhatIsNoLine) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 3, 3, 3, 3), 1, ZUMByte{1});
  const char* const lines[] = {" X", "Y", "Z", "T"};
  for (int a = 0; a < 4; ++a) {
    const auto message = [&](const ZUMRect& box, int csz) {
      const ZUMImage<ZUMLong> line(box, csz, 1);
      return MessageOf([&] { kProducts<ZUMLong, ZUMByte>[a](line, image); });
    };
    const std::string name = std::string("ZUM") + "XYZT"[a] + "Product: ";
    for (int other = 0; other < 4; ++other) {
      ZUMRect box;
      box.begin.*kAxes[other] = box.end.*kAxes[other] = 90;
      EXPECT_EQ(other == a ? "" : name + "Line image isn't a " + lines[a] + " line",
                message(box, 1));
      EXPECT_EQ(name + "Two images don't have same number of channels", message(box, 2));
    }
  }
}

}  // namespace
