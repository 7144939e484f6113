#include "zuml/algebra/logic.h"

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

struct OpAnd {
  template <class P>
  P operator()(P a, P b) const {
    return static_cast<P>(a & b);
  }
};

struct OpOr {
  template <class P>
  P operator()(P a, P b) const {
    return static_cast<P>(a | b);
  }
};

struct OpXor {
  template <class P>
  P operator()(P a, P b) const {
    return static_cast<P>(a ^ b);
  }
};

struct OpShiftL {
  template <class P>
  P operator()(P a, P b) const {
    return ZUMShiftLeft(a, b);
  }
};

struct OpShiftR {
  template <class P>
  P operator()(P a, P b) const {
    return ZUMShiftRight(a, b);
  }
};

struct OpNotLogic {
  bool operator()(bool a) const { return !a; }
};

struct OpNot {
  template <class P>
  P operator()(P a) const {
    return static_cast<P>(~a);
  }
};

}  // namespace

template <class P>
class CTaskAndLogicII final : public PointwiseII<P, P, OpAnd> {};
template <class P>
class CTaskAndLogicIN final : public PointwiseIN<P, P, OpAnd> {};
template <class P>
class CTaskOrLogicII final : public PointwiseII<P, P, OpOr> {};
template <class P>
class CTaskOrLogicIN final : public PointwiseIN<P, P, OpOr> {};
template <class P>
class CTaskNotLogicII final : public PointwiseI<P, P, OpNotLogic> {};
template <class P>
class CTaskAndII final : public PointwiseII<P, P, OpAnd> {};
template <class P>
class CTaskAndIN final : public PointwiseIN<P, P, OpAnd> {};
template <class P>
class CTaskOrII final : public PointwiseII<P, P, OpOr> {};
template <class P>
class CTaskOrIN final : public PointwiseIN<P, P, OpOr> {};
template <class P>
class CTaskXorII final : public PointwiseII<P, P, OpXor> {};
template <class P>
class CTaskXorIN final : public PointwiseIN<P, P, OpXor> {};
template <class P>
class CTaskNotII final : public PointwiseI<P, P, OpNot> {};
template <class P>
class CTaskShiftLII final : public PointwiseII<P, P, OpShiftL> {};
template <class P>
class CTaskShiftLIN final : public PointwiseIN<P, P, OpShiftL> {};
template <class P>
class CTaskShiftLNI final : public PointwiseNI<P, P, OpShiftL> {};
template <class P>
class CTaskShiftRII final : public PointwiseII<P, P, OpShiftR> {};
template <class P>
class CTaskShiftRIN final : public PointwiseIN<P, P, OpShiftR> {};
template <class P>
class CTaskShiftRNI final : public PointwiseNI<P, P, OpShiftR> {};

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator&&(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator&&", a, b);
  return RunPointwiseII<CTaskAndLogicII<P>>(a, b);
}

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator&&(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskAndLogicIN<P>>(a, n);
}

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator&&(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a && n;
}

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator||(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator||", a, b);
  return RunPointwiseII<CTaskOrLogicII<P>>(a, b);
}

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator||(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskOrLogicIN<P>>(a, n);
}

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator||(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a || n;
}

template <std::same_as<ZUMBool> P>
ZUMImage<P> operator!(const ZUMImage<P>& a) {
  return RunPointwiseI<CTaskNotLogicII<P>>(a);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator&(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator&", a, b);
  return RunPointwiseII<CTaskAndII<P>>(a, b);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator&(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskAndIN<P>>(a, n);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator&(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a & n;
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator|(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator|", a, b);
  return RunPointwiseII<CTaskOrII<P>>(a, b);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator|(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskOrIN<P>>(a, n);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator|(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a | n;
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator^(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator^", a, b);
  return RunPointwiseII<CTaskXorII<P>>(a, b);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator^(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskXorIN<P>>(a, n);
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator^(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return a ^ n;
}

template <ZUMDiscretePixel P>
ZUMImage<P> operator~(const ZUMImage<P>& a) {
  if constexpr (std::same_as<P, bool>) {
    return !a;
  } else {
    return RunPointwiseI<CTaskNotII<P>>(a);
  }
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator<<(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator<<", a, b);
  return RunPointwiseII<CTaskShiftLII<P>>(a, b);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator<<(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskShiftLIN<P>>(a, n);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator<<(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskShiftLNI<P>>(n, a);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator>>(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireSameChannels("operator>>", a, b);
  return RunPointwiseII<CTaskShiftRII<P>>(a, b);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator>>(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunPointwiseIN<CTaskShiftRIN<P>>(a, n);
}

template <ZUMIntegerPixel P>
ZUMImage<P> operator>>(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseNI<CTaskShiftRNI<P>>(n, a);
}

ZUML_INSTANTIATE_FORMS(operator&&, ZUMImage<ZUMBool>, ZUMBool)
ZUML_INSTANTIATE_FORMS(operator||, ZUMImage<ZUMBool>, ZUMBool)
template ZUML_API ZUMImage<ZUMBool> operator!(const ZUMImage<ZUMBool>&);

#define ZUML_INSTANTIATE(PIX)                           \
  ZUML_INSTANTIATE_FORMS(operator&, ZUMImage<PIX>, PIX) \
  ZUML_INSTANTIATE_FORMS(operator|, ZUMImage<PIX>, PIX) \
  ZUML_INSTANTIATE_FORMS(operator^, ZUMImage<PIX>, PIX) \
  template ZUML_API ZUMImage<PIX> operator~(const ZUMImage<PIX>&);
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                            \
  ZUML_INSTANTIATE_FORMS(operator<<, ZUMImage<PIX>, PIX) \
  ZUML_INSTANTIATE_FORMS(operator>>, ZUMImage<PIX>, PIX)
ZUML_INTEGER_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
