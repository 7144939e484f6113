#include "zuml/io/textimage.h"

#include <clocale>
#include <locale>
#include <vector>

#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;

class TxtImage : public testing::Test {
 protected:
  ZUMImage<ZUMReal> Read(const std::string& text) const {
    return ZUMReadTxtImage(folder_.Write("in.txt", text).c_str());
  }
  std::string Written(const ZUMImage<ZUMReal>& image) const {
    ZUMWriteTxtImage(image, folder_.Path("out.txt").c_str());
    return ReadFile(folder_.Path("out.txt"));
  }

  TempFolder folder_;
};

TEST_F(TxtImage, NumbersAreReadInManyForms) {
  struct Case {
    std::string text;
    int columns;
    std::vector<double> values;
  };
  const Case cases[] = {
      {"1,5;2.5\n3 4\n", 2, {1.5, 2.5, 3, 4}},
      {"\n\r\n 1,5\t;\r;2.5 \r\n\n\n\t3 4", 2, {1.5, 2.5, 3, 4}},
      {"7", 1, {7}},
      {"1E3 -2e-1 +4e+0 .5 -,25 6.", 6, {1000, -0.2, 4, 0.5, -0.25, 6}},
      // The longest part that is a number counts; without one it is 0.
      {"1.2.3 4-5 e7 - 8e", 5, {1.2, 4, 0, 0, 8}},
      {"1e999 1e-999", 2, {std::numeric_limits<double>::infinity(), 0}},
      {std::string(255, '0') + "9", 1, {9}},
  };
  for (const Case& c : cases) {
    const int rows = static_cast<int>(c.values.size()) / c.columns;
    EXPECT_TRUE(SameImage(
        Read(c.text),
        ZUMImage<ZUMReal>(ZUMRect(0, 0, 0, 0, c.columns - 1, rows - 1, 0, 0), 1, c.values.data())))
        << c.text;
  }
}

TEST_F(TxtImage, OtherTextIsRefused) {
  const std::string in = folder_.Path("in.txt");
  const std::string uneven = "Error al leer imagen Txt por filas de diferente longitud " + in;
  const std::pair<std::string, std::string> cases[] = {
      {" \n;\r\n\t", "GetFront: List empty"},
      {"1 2 3\n4 5", uneven},
      {"1 2\n3 4 5", uneven},
      {"1 2 3\n4 5\nword", uneven},
      {"1 else", "Error al leer imagen Txt " + in + " l"},
      {std::string(257, '1'), "Error al leer imagen Txt " + in},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_EQ(MessageOf([&, &text = text] { Read(text); }), message);
  }
  // Every character alone: a separator, a number, or an error with that character.
  for (int c = 1; c < 256; ++c) {
    const std::string text(1, static_cast<char>(c));
    const std::string message = MessageOf([&] { Read("3" + text); });
    const bool allowed = std::string("0123456789+-,.Ee \t\r\n;").find(text) != std::string::npos;
    EXPECT_EQ(message, allowed ? "" : "Error al leer imagen Txt " + in + " " + text);
  }
}

TEST_F(TxtImage, ImagesAreWrittenAsLinesAndReadBack) {
  const double numbers[] = {1,       -0.0,    0.1,       123456,
                            1234567, 1.0 / 3, 1e-5,      -2.5e300,
                            100000,  12.5,    1.0000005, -std::numeric_limits<double>::infinity()};
  const ZUMImage<ZUMReal> image(ZUMRect(-1, 5, 0, 0, 2, 7, 0, 0), 1, numbers);
  EXPECT_EQ(Written(image),
            "1\t-0\t0.1\t123456\n1.23457e+06\t0.333333\t1e-05\t-2.5e+300\n"
            "100000\t12.5\t1\t-inf\n");

  // More than a buffer of text; multiples of 1/8 below 500 have at most six digits.
  Random random(1);
  for (const Layout layout : kLayouts) {
    const auto picture =
        MakeRandomImage<ZUMReal>(random, ZUMRect(0, 0, 0, 0, 99, 149, 0, 0), 1, layout);
    EXPECT_TRUE(SameImage(Read(Written(picture)), ZUMCopy(picture)));
  }
  // Of a volume, the plane at Z 0; of a view of another plane, that one.
  const auto volume = MakeByPoint<ZUMReal>(ZUMRoDRef(0, 0, -1, 0, 0, 0, 1, 0), 1,
                                           [](int, int, int z, int, int) { return 10 + z; });
  EXPECT_EQ(Written(volume), "10\n");
  EXPECT_EQ(Written(volume.Plane(1)), "11\n");
  EXPECT_EQ(Written(ZUMImage<ZUMReal>()), "");
}

// The language of the application changes neither the files nor how they are read.
TEST_F(TxtImage, TheLocaleDoesNotMatter) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale earlier = std::locale::global(std::locale(std::locale(), new Comma));
  std::setlocale(LC_NUMERIC, "es_ES.UTF-8");  // where it is installed
  const ZUMImage<ZUMReal> image(ZUMRect(0, 0, 0, 0, 0, 0, 0, 0), 1, 12345.5);
  EXPECT_EQ(Written(image), "12345.5\n");
  EXPECT_EQ(Read("12345.5")(0, 0), 12345.5);
  std::setlocale(LC_NUMERIC, "C");
  std::locale::global(earlier);
}

}  // namespace
