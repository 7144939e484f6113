#include "zuml/io/textimage.h"

#include <clocale>
#include <locale>
#include <vector>

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

class TxtImage : public FileTest {
 protected:
  ZUMImage<ZUMReal> Read(const std::string& text) const { return ReadBytes(ZUMReadTxtImage, text); }
  std::string Written(const ZUMImage<ZUMReal>& image) const {
    ZUMWriteTxtImage(image, Path().c_str());
    return ReadFile(Path());
  }
};

TEST_F(TxtImage, NumbersAreReadInManyForms) {
  const struct {
    std::string text;
    int columns;
    std::vector<double> values;
  } cases[] = {
      {"1,5;2.5\n3 4\n", 2, {1.5, 2.5, 3, 4}},
      {"\n\r\n 1,5\t;\r;2.5 \r\n\n\n\t3 4", 2, {1.5, 2.5, 3, 4}},
      {"1E3 -2e-1 +4e+0 .5 -,25 6.", 6, {1000, -0.2, 4, 0.5, -0.25, 6}},
      // The longest part that is a number counts; without one it is 0.
      {"1.2.3 4-5 e7 - 8e", 5, {1.2, 4, 0, 0, 8}},
      {std::string(255, '0') + "9", 1, {9}},
  };
  for (const auto& [text, columns, values] : cases) {
    const ZUMRect box = PictureBox(columns, static_cast<int>(values.size()) / columns);
    EXPECT_TRUE(SameImage(Read(text), ZUMImage<ZUMReal>(box, 1, values.data()))) << text;
  }
}

TEST_F(TxtImage, OtherTextIsRefused) {
  const std::string error = "Error al leer imagen Txt ";
  ExpectMessages(ZUMReadTxtImage,
                 {{" \n;\r\n\t", "GetFront: List empty"},
                  {"1 2 3\n4 5", error + "por filas de diferente longitud " + Path()},
                  {"1 2 3\n4 5\nword", error + "por filas de diferente longitud " + Path()},
                  {"1 else", error + Path() + " l"},
                  {std::string(257, '1'), error + Path()}});
}

TEST_F(TxtImage, ImagesAreWrittenAsLines) {
  const double numbers[] = {1, -0.0, 0.1, 123456, 1234567, 1.0 / 3, 1e-5, -2.5e300};
  EXPECT_EQ(Written(ZUMImage<ZUMReal>(ZUMRect(-1, 5, 0, 0, 2, 6, 0, 0), 1, numbers)),
            "1\t-0\t0.1\t123456\n1.23457e+06\t0.333333\t1e-05\t-2.5e+300\n");
  EXPECT_EQ(Written(ZUMImage<ZUMReal>()), "");
}

// The language of the application changes neither the files nor how they are read.
TEST_F(TxtImage, TheLocaleDoesNotMatter) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  const std::locale earlier = std::locale::global(std::locale(std::locale(), new Comma));
  std::setlocale(LC_NUMERIC, "es_ES.UTF-8");  // where it is installed
  EXPECT_EQ(Written(Read("12345.5")), "12345.5\n");
  std::setlocale(LC_NUMERIC, "C");
  std::locale::global(earlier);
}

}  // namespace
