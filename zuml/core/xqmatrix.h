#pragma once

#include <cstddef>
#include <vector>

#include "zuml/core/export.h"

/// A dense matrix of double, stored by rows: `m[row][column]`, and `m[row]` is the address of a
/// row's first element. Indices are not tested. Results are the same bit for bit on every machine.
class ZUML_API XQMatrix {
 public:
  /// A matrix without elements.
  XQMatrix() noexcept;

  /// A matrix of zeros. Throws XQException "XQMatrix: %d x %d is not a size" where a size is
  /// negative or the elements would take 2^31 bytes or more.
  XQMatrix(int rows, int cols);

  /// A matrix with the given rows * cols elements, row after row. Throws as above.
  XQMatrix(int rows, int cols, const double* elements);

  XQMatrix(const XQMatrix& other);
  XQMatrix(XQMatrix&& other) noexcept;
  XQMatrix& operator=(XQMatrix other) noexcept;
  ~XQMatrix();

  int Rows() const noexcept { return rows_; }
  int Cols() const noexcept { return cols_; }

  double* operator[](int row) noexcept { return elements_.data() + GetOffset(row); }
  const double* operator[](int row) const noexcept { return elements_.data() + GetOffset(row); }

 private:
  std::ptrdiff_t GetOffset(int row) const noexcept { return std::ptrdiff_t{row} * cols_; }

  int rows_ = 0;
  int cols_ = 0;
  std::vector<double> elements_;
};

/// The product of two matrices. Throws XQException "operator*: matrices of %d x %d and %d x %d have
/// no product" where the left one has not as many columns as the right one rows.
[[nodiscard]] ZUML_API XQMatrix operator*(const XQMatrix& a, const XQMatrix& b);

/// The matrix with rows and columns exchanged.
[[nodiscard]] ZUML_API XQMatrix XQTranspose(const XQMatrix& a);

/// The inverse of a square matrix, by the elimination of XQSolveGauss. Throws XQException
/// "XQInverse: a matrix of %d x %d is not square" or "XQInverse: singular matrix".
[[nodiscard]] ZUML_API XQMatrix XQInverse(const XQMatrix& a);

/// The solution x of a x = b, for one or more columns of b at once.
///
/// Gaussian elimination with complete pivoting (G. H. Golub, C. F. Van Loan: Matrix Computations,
/// section 3.4), after rows and columns have been scaled by powers of two, which is exact, to
/// greatest elements near 1: a system whose unknowns differ by many orders of magnitude, such as
/// the coefficients of a polynomial in pixels, is neither taken for a singular one nor solved
/// badly. An unknown that double does not hold is infinite and leaves the others alone. A matrix is
/// singular
/// when its greatest remaining element is not above n * 2^-52 times the first pivot, or not a
/// number. Costs about n^3 / 3 + n^2 m multiplications for n unknowns and m columns.
///
/// Throws XQException "XQSolveGauss: a matrix of %d x %d is not square", "XQSolveGauss: %d
/// equations with %d right sides", or "XQSolveGauss: singular matrix".
[[nodiscard]] ZUML_API XQMatrix XQSolveGauss(const XQMatrix& a, const XQMatrix& b);
