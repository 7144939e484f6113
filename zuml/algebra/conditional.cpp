#include "zuml/algebra/conditional.h"

#include <concepts>
#include <cstddef>

#include "zuml/core/detail/pointwise.h"

using zuml_detail::RequireEqualChannels;
using zuml_detail::ValueAt;

namespace {

// Pixel i of what is chosen from: a run of an image, or a number.
template <class P>
P PixelOf(const P* run, std::ptrdiff_t i) {
  return ValueAt(run, i);
}
template <ZUMAlgebraPixel P>
P PixelOf(P number, std::ptrdiff_t) {
  return number;
}

template <class P, class A, class B>
void ChooseRun(P* r, const bool* mask, A a, B b, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    // Both are read, so that the loop has no branch.
    const P chosen = PixelOf(a, i), other = PixelOf(b, i);
    r[i] = ValueAt(mask, i) ? chosen : other;
  }
}

// The body of the four tasks. A and B are what the result is chosen from: `const ZUMImage<P>*`, or
// P for a number.
template <class P, class A, class B>
class Choice : public XQTask {
  static constexpr bool kImageA = !std::same_as<A, P>;
  static constexpr bool kImageB = !std::same_as<B, P>;

 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<ZUMBool>* cond;
  A a;
  B b;

  void Run() override {
    if (cond->GetCSz() == result->GetCSz()) {
      Choose(*result, a, b);
    } else {
      for (int c = 0; c < result->GetCSz(); ++c) ChooseChannel(c);
    }
  }

 private:
  void ChooseChannel(int c) const {
    if constexpr (kImageA && kImageB) {
      const ZUMImage<P> va = a->Channel(c), vb = b->Channel(c);
      Choose(result->Channel(c), &va, &vb);
    } else if constexpr (kImageA) {
      const ZUMImage<P> va = a->Channel(c);
      Choose(result->Channel(c), &va, b);
    } else if constexpr (kImageB) {
      const ZUMImage<P> vb = b->Channel(c);
      Choose(result->Channel(c), a, &vb);
    }
  }

  // The first image governs the channels of the sweep: the result's view.
  void Choose(const ZUMImage<P>& to, A from_a, B from_b) const {
    if constexpr (kImageA && kImageB) {
      ZUMForEachRun(part, ChooseRun<P, const P*, const P*>, to, *cond, *from_a, *from_b);
    } else if constexpr (kImageA) {
      ZUMForEachRun(
          part,
          [from_b](P* r, const bool* mask, const P* x, std::ptrdiff_t n) {
            ChooseRun(r, mask, x, from_b, n);
          },
          to, *cond, *from_a);
    } else if constexpr (kImageB) {
      ZUMForEachRun(
          part,
          [from_a](P* r, const bool* mask, const P* y, std::ptrdiff_t n) {
            ChooseRun(r, mask, from_a, y, n);
          },
          to, *cond, *from_b);
    } else {
      ZUMForEachRun(
          part,
          [from_a, from_b](P* r, const bool* mask, std::ptrdiff_t n) {
            ChooseRun(r, mask, from_a, from_b, n);
          },
          to, *cond);
    }
  }
};

// A mask of one channel goes with any number of channels.
void RequireMaskChannels(const ZUMRaster& cond, const ZUMRaster& image) {
  if (cond.GetCSz() != 1) RequireEqualChannels("ZUMImIf", cond, image);
}

template <class Task, class P, class A, class B>
ZUMImage<P> RunChoice(const ZUMRoDRef& rod, int csz, const ZUMImage<ZUMBool>& cond, A a, B b) {
  return ZUMRunTasks<Task, P>(rod, csz, [&](Task& task) {
    task.cond = &cond;
    task.a = a;
    task.b = b;
  });
}

}  // namespace

template <class P>
class CTaskImIfII final : public Choice<P, const ZUMImage<P>*, const ZUMImage<P>*> {};
template <class P>
class CTaskImIfIN final : public Choice<P, const ZUMImage<P>*, P> {};
template <class P>
class CTaskImIfNI final : public Choice<P, P, const ZUMImage<P>*> {};
template <class P>
class CTaskImIfNN final : public Choice<P, P, P> {};

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, const ZUMImage<P>& a, const ZUMImage<P>& b) {
  RequireEqualChannels("ZUMImIf", a, b);
  const ZUMRoDRef rod = Intersection(Intersection(cond, a), b);
  RequireMaskChannels(cond, a);
  return RunChoice<CTaskImIfII<P>, P>(rod, a.GetCSz(), cond, &a, &b);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, const ZUMImage<P>& a,
                    std::type_identity_t<P> b) {
  const ZUMRoDRef rod = Intersection(cond, a);
  RequireMaskChannels(cond, a);
  return RunChoice<CTaskImIfIN<P>, P>(rod, a.GetCSz(), cond, &a, b);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, std::type_identity_t<P> a,
                    const ZUMImage<P>& b) {
  const ZUMRoDRef rod = Intersection(cond, b);
  RequireMaskChannels(cond, b);
  return RunChoice<CTaskImIfNI<P>, P>(rod, b.GetCSz(), cond, a, &b);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, P a, P b) {
  return RunChoice<CTaskImIfNN<P>, P>(cond, cond.GetCSz(), cond, a, b);
}

#define ZUML_INSTANTIATE(PIX)                                                                  \
  template ZUML_API ZUMImage<PIX> ZUMImIf(const ZUMImage<ZUMBool>&, const ZUMImage<PIX>&,      \
                                          const ZUMImage<PIX>&);                               \
  template ZUML_API ZUMImage<PIX> ZUMImIf(const ZUMImage<ZUMBool>&, const ZUMImage<PIX>&,      \
                                          std::type_identity_t<PIX>);                          \
  template ZUML_API ZUMImage<PIX> ZUMImIf(const ZUMImage<ZUMBool>&, std::type_identity_t<PIX>, \
                                          const ZUMImage<PIX>&);                               \
  template ZUML_API ZUMImage<PIX> ZUMImIf(const ZUMImage<ZUMBool>&, PIX, PIX);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
