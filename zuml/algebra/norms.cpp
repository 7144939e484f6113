#include "zuml/algebra/norms.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"

namespace {

// A norm: the term of a channel's pixel, and what the sum of terms becomes. Terms add by wrapping.

struct OpNorm {
  static double Term(double v) { return v * v; }
  static double Finish(double sum) { return std::sqrt(sum); }
};

struct OpSqrNorm {
  static ZUMLong Term(ZUMLong v) { return ZUMWrapMul(v, v); }
  static double Term(double v) { return v * v; }
  template <class OutT>
  static OutT Finish(OutT sum) {
    return sum;
  }
};

struct OpNormL1 {
  // The sum of magnitudes in `double` is exact, so its low bits are those of the wrapped sum.
  static ZUMLong Term(ZUMLong v) { return v < 0 ? ZUMWrapNeg(v) : v; }
  static double Term(double v) { return std::fabs(v); }
  template <class OutT>
  static OutT Finish(OutT sum) {
    return sum;
  }
};

// The pixels of one stretch: `last` is the last channel, `channel` the step between channels.

// Few channels, as gradients and colours have them, in one pass.
template <int kLast, class Op, class OutT, class P>
void AddFewTerms(OutT* r, const P* x, std::ptrdiff_t channel, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    OutT sum = Op::Term(static_cast<OutT>(x[i]));
    for (int c = kLast; c >= 1; --c) {
      sum = ZUMWrapAdd(sum, Op::Term(static_cast<OutT>(x[c * channel + i])));
    }
    r[i] = Op::Finish(sum);
  }
}

template <class Op, class OutT, class P>
void AddManyTerms(OutT* r, const P* x, std::ptrdiff_t channel, int last, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Term(static_cast<OutT>(x[i]));
  for (int c = last; c >= 1; --c) {
    const P* xc = x + c * channel;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      r[i] = ZUMWrapAdd(r[i], Op::Term(static_cast<OutT>(xc[i])));
    }
  }
  for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Finish(r[i]);
}

// A function of its own, for its own registers.
template <class Op, class OutT, class P>
[[gnu::noinline]] void AddTerms(OutT* r, const P* x, std::ptrdiff_t channel, int last,
                                std::ptrdiff_t n) {
  switch (last) {
    case 0:
      return AddFewTerms<0, Op>(r, x, channel, n);
    case 1:
      return AddFewTerms<1, Op>(r, x, channel, n);
    case 2:
      return AddFewTerms<2, Op>(r, x, channel, n);
    default:
      return AddManyTerms<Op>(r, x, channel, last, n);
  }
}

template <class OutT, class P, class Op>
class NormTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<P>* image;

  void Run() override {
    const int last = image->GetCSz() - 1;
    const std::ptrdiff_t channel = image->GetChannelSz();
    ZUMForEachRun(
        part,
        [=](OutT* r, const P* x, std::ptrdiff_t n) {
          // The sums stay in the nearest cache from one channel to the next.
          constexpr std::ptrdiff_t kStretch = 1024;
          for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
            AddTerms<Op>(r + begin, x + begin, channel, last, std::min(kStretch, n - begin));
          }
        },
        *result, *image);
  }
};

template <class Task, class OutT, class P>
ZUMImage<OutT> RunNorm(const ZUMImage<P>& image) {
  if (image.GetCSz() == 0) return ZUMImage<OutT>(image, 1, OutT{});
  return ZUMRunTasks<Task, OutT>(image, 1, [&](Task& task) { task.image = &image; });
}

}  // namespace

template <class P>
class CTaskNorm final : public NormTask<ZUMReal, P, OpNorm> {};
template <class OutT, class P>
class CTaskSqrNorm final : public NormTask<OutT, P, OpSqrNorm> {};
template <class OutT, class P>
class CTaskNormL1 final : public NormTask<OutT, P, OpNormL1> {};

template <ZUMGreyPixel P>
ZUMImage<ZUMReal> ZUMNorm(const ZUMImage<P>& image) {
  return RunNorm<CTaskNorm<P>, ZUMReal>(image);
}

template <class OutT, class P>
requires ZUMNormPixels<OutT, P> ZUMImage<OutT> ZUMSqrNorm(const ZUMImage<P>& image) {
  return RunNorm<CTaskSqrNorm<OutT, P>, OutT>(image);
}

template <class OutT, class P>
requires ZUMNormPixels<OutT, P> ZUMImage<OutT> ZUMNormL1(const ZUMImage<P>& image) {
  return RunNorm<CTaskNormL1<OutT, P>, OutT>(image);
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMImage<ZUMReal> ZUMNorm<PIX>(const ZUMImage<PIX>&);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                         \
  template ZUML_API ZUMImage<ZUMLong> ZUMSqrNorm<ZUMLong, PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<ZUMLong> ZUMNormL1<ZUMLong, PIX>(const ZUMImage<PIX>&);
ZUML_INTEGER_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
template ZUML_API ZUMImage<ZUMReal> ZUMSqrNorm<ZUMReal, ZUMReal>(const ZUMImage<ZUMReal>&);
template ZUML_API ZUMImage<ZUMReal> ZUMNormL1<ZUMReal, ZUMReal>(const ZUMImage<ZUMReal>&);
