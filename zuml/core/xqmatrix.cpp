#include "zuml/core/xqmatrix.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "zuml/core/xqexception.h"

namespace {

std::size_t RequireSize(int rows, int cols) {
  constexpr std::int64_t kMostElements = INT32_MAX / std::int64_t{sizeof(double)};
  if (rows < 0 || cols < 0 || std::int64_t{rows} * cols > kMostElements) {
    throw XQException("XQMatrix: %d x %d is not a size", rows, cols);
  }
  return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
}

using Dense = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

Eigen::Map<Dense> View(XQMatrix& a) { return {a[0], a.Rows(), a.Cols()}; }
Eigen::Map<const Dense> View(const XQMatrix& a) { return {a[0], a.Rows(), a.Cols()}; }

void RequireSquare(const char* operation, const XQMatrix& a) {
  if (a.Rows() != a.Cols()) {
    throw XQException("%s: a matrix of %d x %d is not square", operation, a.Rows(), a.Cols());
  }
}

/// The exponent that brings a value to between 0.5 and 1; 0 where there is none.
int GetScale(double value) {
  int exponent = 0;
  if (value > 0.0 && std::isfinite(value)) std::frexp(value, &exponent);
  return -exponent;
}

/// The powers of two that a system was scaled by.
struct Scales {
  std::vector<int> rows;
  std::vector<int> cols;
};

/// Scales the rows, then the columns of a to greatest elements near 1.
Scales ScaleMatrix(XQMatrix& a) {
  const int n = a.Rows();
  Scales scales;
  std::vector<double> greatest(static_cast<std::size_t>(n), 0.0);
  for (int i = 0; i < n; ++i) {
    double most = 0.0;
    for (int j = 0; j < n; ++j) most = std::max(most, std::abs(a[i][j]));
    scales.rows.push_back(GetScale(most));
    for (int j = 0; j < n; ++j) {
      a[i][j] = std::ldexp(a[i][j], scales.rows.back());
      double& of_column = greatest[static_cast<std::size_t>(j)];
      of_column = std::max(of_column, std::abs(a[i][j]));
    }
  }
  for (int j = 0; j < n; ++j) {
    scales.cols.push_back(GetScale(greatest[static_cast<std::size_t>(j)]));
    for (int i = 0; i < n; ++i) a[i][j] = std::ldexp(a[i][j], scales.cols.back());
  }
  return scales;
}

/// A scaled right side may leave the range of double: row scales reach 2^1074. So it is solved in
/// bands of exponents, each brought near 1, whose solutions add up. Nearly every right side lies in
/// band 0 alone.
constexpr int kBandWidth = 1024;
constexpr int kBands[] = {0, -2, -1, 1, 2};

int GetBand(double value, int row_scale) {
  if (value == 0.0 || !std::isfinite(value)) return 0;
  const double exponent = std::ilogb(value) + row_scale;
  return static_cast<int>(std::floor(exponent / kBandWidth + 0.5));
}

/// The x of a x = b for a square a, by an LU decomposition with full pivoting of the scaled system.
XQMatrix Solve(const char* operation, XQMatrix a, const XQMatrix& b) {
  const Scales scales = ScaleMatrix(a);
  if (!View(a).allFinite()) throw XQException("%s: singular matrix", operation);
  const Eigen::FullPivLU<Dense> decomposition(View(a));
  if (!decomposition.isInvertible()) throw XQException("%s: singular matrix", operation);
  XQMatrix x(a.Cols(), b.Cols());
  if (x.Rows() == 0 || x.Cols() == 0) return x;
  for (const int band : kBands) {
    XQMatrix part(b.Rows(), b.Cols());
    bool has_elements = band == 0;
    for (int i = 0; i < b.Rows(); ++i) {
      const int row_scale = scales.rows[static_cast<std::size_t>(i)];
      for (int j = 0; j < b.Cols(); ++j) {
        if (GetBand(b[i][j], row_scale) != band) continue;
        part[i][j] = std::ldexp(b[i][j], row_scale - band * kBandWidth);
        has_elements = true;
      }
    }
    if (!has_elements) continue;
    const Dense solved = decomposition.solve(View(std::as_const(part)));
    for (int i = 0; i < x.Rows(); ++i) {
      const int scale = scales.cols[static_cast<std::size_t>(i)] + band * kBandWidth;
      for (int j = 0; j < x.Cols(); ++j) {
        const double unknown = std::ldexp(solved(i, j), scale);
        x[i][j] = band == 0 ? unknown : x[i][j] + unknown;
      }
    }
  }
  return x;
}

}  // namespace

XQMatrix::XQMatrix() noexcept = default;

XQMatrix::XQMatrix(int rows, int cols)
    : rows_(rows), cols_(cols), elements_(RequireSize(rows, cols)) {}

XQMatrix::XQMatrix(int rows, int cols, const double* elements)
    : rows_(rows), cols_(cols), elements_(elements, elements + RequireSize(rows, cols)) {}

XQMatrix::XQMatrix(const XQMatrix& other) = default;

XQMatrix::XQMatrix(XQMatrix&& other) noexcept
    : rows_(std::exchange(other.rows_, 0)),
      cols_(std::exchange(other.cols_, 0)),
      elements_(std::move(other.elements_)) {}

XQMatrix& XQMatrix::operator=(XQMatrix other) noexcept {
  std::swap(rows_, other.rows_);
  std::swap(cols_, other.cols_);
  elements_.swap(other.elements_);
  return *this;
}

XQMatrix::~XQMatrix() = default;

XQMatrix operator*(const XQMatrix& a, const XQMatrix& b) {
  if (a.Cols() != b.Rows()) {
    throw XQException("operator*: matrices of %d x %d and %d x %d have no product", a.Rows(),
                      a.Cols(), b.Rows(), b.Cols());
  }
  XQMatrix product(a.Rows(), b.Cols());
  View(product).noalias() = View(a).lazyProduct(View(b));
  return product;
}

XQMatrix XQTranspose(const XQMatrix& a) {
  XQMatrix transpose(a.Cols(), a.Rows());
  View(transpose) = View(a).transpose();
  return transpose;
}

XQMatrix XQInverse(const XQMatrix& a) {
  RequireSquare("XQInverse", a);
  XQMatrix unit(a.Rows(), a.Rows());
  for (int i = 0; i < a.Rows(); ++i) unit[i][i] = 1.0;
  return Solve("XQInverse", a, unit);
}

XQMatrix XQSolveGauss(const XQMatrix& a, const XQMatrix& b) {
  RequireSquare("XQSolveGauss", a);
  if (a.Rows() != b.Rows()) {
    throw XQException("XQSolveGauss: %d equations with %d right sides", a.Rows(), b.Rows());
  }
  return Solve("XQSolveGauss", a, b);
}
