#include "zuml/algebra/comparison.h"

#include <algorithm>
#include <cstddef>

#include "zuml/algebra/detail/flagbeside.h"
#include "zuml/core/detail/pointwise.h"

using zuml_detail::FlagBeside;
using zuml_detail::PointwiseII;
using zuml_detail::PointwiseIN;
using zuml_detail::PointwiseNI;
using zuml_detail::RequireEqualChannels;
using zuml_detail::RunPointwiseII;
using zuml_detail::RunPointwiseIN;
using zuml_detail::RunPointwiseNI;
using zuml_detail::ValueAt;

namespace {

struct OpEqual {
  template <class P>
  bool operator()(P a, P b) const {
    return a == b;
  }
};

struct OpNotEqual {
  template <class P>
  bool operator()(P a, P b) const {
    return a != b;
  }
};

struct OpLess {
  template <class P>
  bool operator()(P a, P b) const {
    return a < b;
  }
};

struct OpGreater {
  template <class P>
  bool operator()(P a, P b) const {
    return a > b;
  }
};

struct OpLessEqual {
  template <class P>
  bool operator()(P a, P b) const {
    return a <= b;
  }
};

struct OpGreaterEqual {
  template <class P>
  bool operator()(P a, P b) const {
    return a >= b;
  }
};

// Whether equal(i) holds for every pixel of a run of P. It is asked for a stretch at a time, since
// a loop that may leave at every pixel is not vectorised.
template <class P, class Equal>
bool AllOfRun(std::ptrdiff_t n, Equal equal) {
  constexpr std::ptrdiff_t kStretch = 1024;
  for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
    const std::ptrdiff_t end = std::min(n, begin + kStretch);
    FlagBeside<P> differ = 0;
    for (std::ptrdiff_t i = begin; i < end; ++i) differ = equal(i) ? differ : FlagBeside<P>{1};
    if (differ) return false;
  }
  return true;
}

}  // namespace

template <class P>
class CTaskPointEqualII final : public PointwiseII<bool, P, OpEqual> {};
template <class P>
class CTaskPointEqualIN final : public PointwiseIN<bool, P, OpEqual> {};
template <class P>
class CTaskPointNotEqualII final : public PointwiseII<bool, P, OpNotEqual> {};
template <class P>
class CTaskPointNotEqualIN final : public PointwiseIN<bool, P, OpNotEqual> {};
template <class P>
class CTaskPointLessII final : public PointwiseII<bool, P, OpLess> {};
template <class P>
class CTaskPointLessIN final : public PointwiseIN<bool, P, OpLess> {};
template <class P>
class CTaskPointLessNI final : public PointwiseNI<bool, P, OpLess> {};
template <class P>
class CTaskPointGreaterII final : public PointwiseII<bool, P, OpGreater> {};
template <class P>
class CTaskPointGreaterIN final : public PointwiseIN<bool, P, OpGreater> {};
template <class P>
class CTaskPointGreaterNI final : public PointwiseNI<bool, P, OpGreater> {};
template <class P>
class CTaskPointLessEqualII final : public PointwiseII<bool, P, OpLessEqual> {};
template <class P>
class CTaskPointLessEqualIN final : public PointwiseIN<bool, P, OpLessEqual> {};
template <class P>
class CTaskPointLessEqualNI final : public PointwiseNI<bool, P, OpLessEqual> {};
template <class P>
class CTaskPointGreaterEqualII final : public PointwiseII<bool, P, OpGreaterEqual> {};
template <class P>
class CTaskPointGreaterEqualIN final : public PointwiseIN<bool, P, OpGreaterEqual> {};
template <class P>
class CTaskPointGreaterEqualNI final : public PointwiseNI<bool, P, OpGreaterEqual> {};

template <ZUMAlgebraPixel P>
bool operator==(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  if (a.GetCSz() != b.GetCSz() || a.RoD() != b.RoD()) return false;
  return ZUMForEachRunWhile(
      a,
      [](const P* x, const P* y, std::ptrdiff_t n) {
        return AllOfRun<P>(n, [=](std::ptrdiff_t i) { return ValueAt(x, i) == ValueAt(y, i); });
      },
      a, b);
}

template <ZUMAlgebraPixel P>
bool operator==(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return ZUMForEachRunWhile(
      a,
      [n](const P* x, std::ptrdiff_t count) {
        return AllOfRun<P>(count, [=](std::ptrdiff_t i) { return ValueAt(x, i) == n; });
      },
      a);
}

template <ZUMAlgebraPixel P>
bool operator==(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a == n;
}

template <ZUMAlgebraPixel P>
bool operator!=(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  return !(a == b);
}

template <ZUMAlgebraPixel P>
bool operator!=(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return !(a == n);
}

template <ZUMAlgebraPixel P>
bool operator!=(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return !(a == n);
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMBool> ZUMPointEqual(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("ZUMPointEqual", a, b);
  return RunPointwiseII<CTaskPointEqualII<P>>(a, b);
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMBool> ZUMPointEqual(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointEqualIN<P>>(a, n);
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMBool> ZUMPointEqual(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return ZUMPointEqual(a, n);
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMBool> ZUMPointNotEqual(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("ZUMPointNotEqual", a, b);
  return RunPointwiseII<CTaskPointNotEqualII<P>>(a, b);
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMBool> ZUMPointNotEqual(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointNotEqualIN<P>>(a, n);
}

template <ZUMAlgebraPixel P>
ZUMImage<ZUMBool> ZUMPointNotEqual(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return ZUMPointNotEqual(a, n);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator<(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("operator<", a, b);
  return RunPointwiseII<CTaskPointLessII<P>>(a, b);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator<(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointLessIN<P>>(a, n);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator<(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskPointLessNI<P>>(n, a);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator>(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("operator>", a, b);
  return RunPointwiseII<CTaskPointGreaterII<P>>(a, b);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator>(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointGreaterIN<P>>(a, n);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator>(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskPointGreaterNI<P>>(n, a);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator<=(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("operator<=", a, b);
  return RunPointwiseII<CTaskPointLessEqualII<P>>(a, b);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator<=(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointLessEqualIN<P>>(a, n);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator<=(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskPointLessEqualNI<P>>(n, a);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator>=(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("operator>=", a, b);
  return RunPointwiseII<CTaskPointGreaterEqualII<P>>(a, b);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator>=(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskPointGreaterEqualIN<P>>(a, n);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMBool> operator>=(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskPointGreaterEqualNI<P>>(n, a);
}

#define ZUML_INSTANTIATE(PIX)                                   \
  ZUML_INSTANTIATE_FORMS(operator==, bool, PIX)                 \
  ZUML_INSTANTIATE_FORMS(operator!=, bool, PIX)                 \
  ZUML_INSTANTIATE_FORMS(ZUMPointEqual, ZUMImage<ZUMBool>, PIX) \
  ZUML_INSTANTIATE_FORMS(ZUMPointNotEqual, ZUMImage<ZUMBool>, PIX)
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                \
  ZUML_INSTANTIATE_FORMS(operator<, ZUMImage<ZUMBool>, PIX)  \
  ZUML_INSTANTIATE_FORMS(operator>, ZUMImage<ZUMBool>, PIX)  \
  ZUML_INSTANTIATE_FORMS(operator<=, ZUMImage<ZUMBool>, PIX) \
  ZUML_INSTANTIATE_FORMS(operator>=, ZUMImage<ZUMBool>, PIX)
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
