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

/// The rows with six digits of each element.
std::string Text(const XQMatrix& a) {
  std::string text;
  for (int i = 0; i < a.Rows(); ++i) {
    for (int j = 0; j < a.Cols(); ++j) text += XQException("%g ", a[i][j]).what();
    text += "| ";
  }
  return text;
}

TEST(XQMatrix, WorkedExamples) {
  const XQMatrix a = Make(2, 3, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(Text(a * Make(3, 2, {7, 8, 9, 10, 11, 12})), "58 64 | 139 154 | ");
  EXPECT_EQ(Text(XQTranspose(a)), "1 4 | 2 5 | 3 6 | ");
  EXPECT_EQ(Text(XQInverse(Make(2, 2, {4, 7, 2, 6}))), "0.6 -0.7 | -0.2 0.4 | ");
  // Zeros on the diagonal, so that rows and columns have to change places.
  const XQMatrix zeros = Make(3, 3, {0, 2, 1, 1, 0, 0, 3, 0, 1});
  const XQMatrix x = Make(3, 2, {1, -1, 2, 0.5, 3, 4});
  EXPECT_EQ(Text(XQSolveGauss(zeros, zeros * x)), Text(x));
  // An unknown that double does not hold leaves the others alone.
  const XQMatrix tiny = Make(3, 3, {1e-310, 0, 0, 0, 3, 0, 0, 0, 1e300});
  EXPECT_EQ(Text(XQInverse(tiny)), "inf 0 0 | 0 0.333333 0 | 0 0 1e-300 | ");
  EXPECT_EQ(Text(XQSolveGauss(tiny, Make(3, 1, {1, 0.6, 2}))), "inf | 0.2 | 2e-300 | ");
  const XQMatrix low = Make(2, 2, {1e-320, 3e-320, 1, 2});
  EXPECT_EQ(Text(XQSolveGauss(low, low * Make(2, 1, {2, -1}))), "2 | -1 | ");
}

// A calibration fits cubics in pixels, whose normal equations span 18 orders of magnitude.
TEST(XQMatrix, FitsAPolynomialInPixels) {
  XQMatrix x(1024, 4), y(1024, 1);
  for (int p = 0; p < 1024; ++p) {
    for (int j = 0; j < 4; ++j) x[p][j] = std::pow(p, j);
    y[p][0] = 12.5 - 0.25 * p + 3e-4 * x[p][2] - 2e-7 * x[p][3];
  }
  const XQMatrix fitted = XQInverse(XQTranspose(x) * x) * XQTranspose(x) * y;
  EXPECT_EQ(Text(fitted), "12.5 | -0.25 | 0.0003 | -2e-07 | ");
}

TEST(XQMatrix, RefusesWhatHasNoResult) {
  const XQMatrix dependent = Make(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), flat(2, 3);
  const XQMatrix nan = Make(2, 2, {1, NAN, 0, 1});
  const std::pair<std::string, std::function<XQMatrix()>> cases[] = {
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
