#include "zuml/algebra/arithmetic.h"

#include <cmath>
#include <concepts>

#include "zuml/core/detail/pointwise.h"
#include "zuml/core/pixelarith.h"

using zuml_detail::PointwiseI;
using zuml_detail::PointwiseII;
using zuml_detail::PointwiseIN;
using zuml_detail::PointwiseNI;
using zuml_detail::RequireSameChannels;
using zuml_detail::RunPointwiseI;
using zuml_detail::RunPointwiseII;
using zuml_detail::RunPointwiseIN;
using zuml_detail::RunPointwiseNI;

namespace {

struct OpAdd {
  template <class P>
  P operator()(P a, P b) const {
    return ZUMWrapAdd(a, b);
  }
};

struct OpSub {
  template <class P>
  P operator()(P a, P b) const {
    if constexpr (std::same_as<P, bool>) {
      return a > b;
    } else {
      return ZUMWrapSub(a, b);
    }
  }
};

struct OpNeg {
  template <class P>
  P operator()(P a) const {
    if constexpr (std::same_as<P, bool>) {
      return !a;
    } else {
      return ZUMWrapNeg(a);
    }
  }
};

// b - a is taken as the opposite of a - b, which is the same value: a loop with one floating
// subtraction in either branch is not vectorised.
struct OpSymSub {
  template <class P>
  P operator()(P a, P b) const {
    if constexpr (std::same_as<P, bool>) {
      return a != b;
    } else {
      const P difference = ZUMWrapSub(a, b);
      return a >= b ? difference : ZUMWrapNeg(difference);
    }
  }
};

struct OpAbs {
  template <class P>
  P operator()(P a) const {
    if constexpr (std::same_as<P, ZUMComplex>) {
      return ZUMMagnitude(a);
    } else if constexpr (std::same_as<P, double>) {
      return std::fabs(a);
    } else {
      return a < 0 ? ZUMWrapNeg(a) : a;
    }
  }
};

struct OpSign {
  template <class P>
  P operator()(P a) const {
    return static_cast<P>(a > 0 ? 1 : a == 0 ? 0 : -1);
  }
};

// Not std::max and std::min, which treat a NaN the other way round.
struct OpMax {
  template <class P>
  P operator()(P a, P b) const {
    return a > b ? a : b;
  }
};

struct OpMin {
  template <class P>
  P operator()(P a, P b) const {
    return a < b ? a : b;
  }
};

}  // namespace

template <class P>
class CTaskAddII final : public PointwiseII<P, P, OpAdd> {};
template <class P>
class CTaskAddIN final : public PointwiseIN<P, P, OpAdd> {};
template <class P>
class CTaskSubII final : public PointwiseII<P, P, OpSub> {};
template <class P>
class CTaskSubIN final : public PointwiseIN<P, P, OpSub> {};
template <class P>
class CTaskSubNI final : public PointwiseNI<P, P, OpSub> {};
template <class P>
class CTaskNeg final : public PointwiseI<P, P, OpNeg> {};
template <class P>
class CTaskSymSubII final : public PointwiseII<P, P, OpSymSub> {};
template <class P>
class CTaskSymSubIN final : public PointwiseIN<P, P, OpSymSub> {};
template <class P>
class CTaskSymSubNI final : public PointwiseNI<P, P, OpSymSub> {};
template <class P>
class CTaskAbs final : public PointwiseI<P, P, OpAbs> {};
template <class P>
class CTaskSign final : public PointwiseI<P, P, OpSign> {};
template <class P>
class CTaskMaxII final : public PointwiseII<P, P, OpMax> {};
template <class P>
class CTaskMaxIN final : public PointwiseIN<P, P, OpMax> {};
template <class P>
class CTaskMinII final : public PointwiseII<P, P, OpMin> {};
template <class P>
class CTaskMinIN final : public PointwiseIN<P, P, OpMin> {};

template <ZUMArithmeticPixel P>
ZUMImage<P> operator+(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator+", a, b);
  return RunPointwiseII<CTaskAddII<P>>(a, b);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> operator+(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskAddIN<P>>(a, n);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> operator+(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a + n;
}

template <ZUMAlgebraPixel P>
ZUMImage<P> operator-(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator-", a, b);
  return RunPointwiseII<CTaskSubII<P>>(a, b);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> operator-(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskSubIN<P>>(a, n);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> operator-(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskSubNI<P>>(n, a);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> operator-(const ZUMImage<P>& a) {
  return RunPointwiseI<CTaskNeg<P>>(a);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMSymmetricSubtraction(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("ZUMSymmetricSubtraction", a, b);
  return RunPointwiseII<CTaskSymSubII<P>>(a, b);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMSymmetricSubtraction(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskSymSubIN<P>>(a, n);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMSymmetricSubtraction(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskSymSubNI<P>>(n, a);
}

template <ZUMArithmeticPixel P>
ZUMImage<P> abs(const ZUMImage<P>& a) {
  return RunPointwiseI<CTaskAbs<P>>(a);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMAbs(const ZUMImage<P>& a) {
  return abs(a);
}

template <ZUMSignedPixel P>
ZUMImage<P> ZUMSign(const ZUMImage<P>& a) {
  return RunPointwiseI<CTaskSign<P>>(a);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMMax(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("ZUMMax", a, b);
  return RunPointwiseII<CTaskMaxII<P>>(a, b);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMMax(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskMaxIN<P>>(a, n);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMMax(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return ZUMMax(a, n);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMMin(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("ZUMMin", a, b);
  return RunPointwiseII<CTaskMinII<P>>(a, b);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMMin(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskMinIN<P>>(a, n);
}

template <ZUMGreyPixel P>
ZUMImage<P> ZUMMin(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return ZUMMin(a, n);
}

#define ZUML_INSTANTIATE(PIX)                           \
  ZUML_INSTANTIATE_FORMS(operator+, ZUMImage<PIX>, PIX) \
  template ZUML_API ZUMImage<PIX> abs(const ZUMImage<PIX>&);
ZUML_ARITHMETIC_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                           \
  ZUML_INSTANTIATE_FORMS(operator-, ZUMImage<PIX>, PIX) \
  template ZUML_API ZUMImage<PIX> operator-(const ZUMImage<PIX>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_FORMS(ZUMSymmetricSubtraction, ZUMImage<PIX>, PIX)
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                        \
  ZUML_INSTANTIATE_FORMS(ZUMMax, ZUMImage<PIX>, PIX) \
  ZUML_INSTANTIATE_FORMS(ZUMMin, ZUMImage<PIX>, PIX) \
  template ZUML_API ZUMImage<PIX> ZUMAbs(const ZUMImage<PIX>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) template ZUML_API ZUMImage<PIX> ZUMSign(const ZUMImage<PIX>&);
ZUML_SIGNED_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
