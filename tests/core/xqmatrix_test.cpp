#include "zuml/core/xqmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/testimages.h"

namespace {

XQMatrix Make(int rows, int cols, const std::vector<double>& elements) {
  return XQMatrix(rows, cols, elements.data());
}

void ExpectNear(const XQMatrix& actual, const XQMatrix& expected, double tolerance) {
  ASSERT_EQ(std::pair(actual.Rows(), actual.Cols()), std::pair(expected.Rows(), expected.Cols()));
  for (int i = 0; i < actual.Rows(); ++i) {
    for (int j = 0; j < actual.Cols(); ++j) {
      EXPECT_NEAR(actual[i][j], expected[i][j], tolerance) << i << ", " << j;
    }
  }
}

TEST(XQMatrix, WorkedExamples) {
  const XQMatrix a = Make(2, 3, {1, 2, 3, 4, 5, 6});
  ExpectNear(a * Make(3, 2, {7, 8, 9, 10, 11, 12}), Make(2, 2, {58, 64, 139, 154}), 0);
  ExpectNear(XQTranspose(a), Make(3, 2, {1, 4, 2, 5, 3, 6}), 0);
  ExpectNear(XQInverse(Make(2, 2, {4, 7, 2, 6})), Make(2, 2, {0.6, -0.7, -0.2, 0.4}), 1e-15);
  // Zeros on the diagonal, so that rows and columns have to change places.
  const XQMatrix zeros = Make(3, 3, {0, 2, 1, 1, 0, 0, 3, 0, 1});
  const XQMatrix x = Make(3, 2, {1, -1, 2, 0.5, 3, 4});
  ExpectNear(XQSolveGauss(zeros, zeros * x), x, 1e-15);
}

// A calibration fits cubics in pixels, whose normal equations span 18 orders of magnitude.
TEST(XQMatrix, FitsAPolynomialInPixels) {
  const std::vector<double> expected = {12.5, -0.25, 3e-4, -2e-7};
  XQMatrix x(1024, 4), y(1024, 1);
  for (int p = 0; p < 1024; ++p) {
    for (int j = 0; j < 4; ++j) y[p][0] += expected[j] * (x[p][j] = std::pow(p, j));
  }
  const XQMatrix fitted = XQInverse(XQTranspose(x) * x) * XQTranspose(x) * y;
  for (int j = 0; j < 4; ++j) EXPECT_NEAR(fitted[j][0] / expected[j], 1.0, 1e-7);
}

TEST(XQMatrix, RefusesWhatHasNoResult) {
  const XQMatrix dependent = Make(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), flat(2, 3);
  const XQMatrix nan = Make(2, 2, {1, NAN, 0, 1});
  const std::pair<std::string, std::function<XQMatrix()>> cases[] = {
      {"XQMatrix: -1 x 2 is not a size", [] { return XQMatrix(-1, 2); }},
      {"XQMatrix: 65536 x 65536 is not a size", [] { return XQMatrix(65536, 65536); }},
      {"operator*: matrices of 2 x 3 and 2 x 3 have no product", [&] { return flat * flat; }},
      {"XQInverse: a matrix of 2 x 3 is not square", [&] { return XQInverse(flat); }},
      {"XQSolveGauss: 2 equations with 3 right sides",
       [&] { return XQSolveGauss(nan, XQMatrix(3, 1)); }},
      {"XQInverse: singular matrix", [&] { return XQInverse(nan); }},
      {"XQSolveGauss: singular matrix", [&] { return XQSolveGauss(dependent, XQMatrix(3, 1)); }},
  };
  for (const auto& [text, operation] : cases) EXPECT_EQ(zuml_test::MessageOf(operation), text);
}

}  // namespace
