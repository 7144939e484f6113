// Convolution and correlation by kernels in stages.

#include <algorithm>
#include <type_traits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqexception.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/detail/convolutiontask.h"
#include "zuml/filters/detail/displacedruns.h"

/// Adds weighted sums to what the result holds.
template <class OutT, class InT>
class CTaskAcumProduct final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const zuml_detail::Terms<OutT>* terms;

  int Cost() const { return static_cast<int>(terms->offsets.size()); }

  void Run() override { zuml_detail::WriteWeightedSums(part, *result, *source, *terms, true); }
};

/// Two stages at once, the first one's rows made as the second needs them.
template <class OutT, class InT>
class CTaskConvStages final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const zuml_detail::Terms<OutT>* first;
  const zuml_detail::Terms<OutT>* second;

  int Cost() const { return static_cast<int>(first->offsets.size() + second->offsets.size()); }

  void Run() override { zuml_detail::WriteSumsOfSums(part, *result, *source, *first, *second); }
};

namespace {

using zuml_detail::Terms;

// 1 to read p + k, -1 to read p - k.
enum Sign { kDirect = 1, kMirrored = -1 };

// The box of a stage. Its own one has no Z and T; there, the coefficients tell how far the stage
// reaches.
template <class OutT>
ZUMRect MakeBox(const ZUMSubKernel<OutT>& stage) {
  ZUMRect box = stage.GetRect();
  bool first = true;
  for (int c = 0; c < stage.GetCSz(); ++c) {
    for (const auto& factor : stage.GetFactors(c)) {
      box.begin.z = first ? factor.z : std::min(box.begin.z, factor.z);
      box.begin.t = first ? factor.t : std::min(box.begin.t, factor.t);
      box.end.z = first ? factor.z : std::max(box.end.z, factor.z);
      box.end.t = first ? factor.t : std::max(box.end.t, factor.t);
      first = false;
    }
  }
  return box;
}

// The region of a stage's result.
template <class OutT>
ZUMRoDRef MakeRegion(const ZUMRoDRef& rod, const ZUMSubKernel<OutT>& stage, Sign sign) {
  const ZUMRect box = MakeBox(stage);
  return sign == kDirect ? zuml_detail::MakeDirectRegion(rod, box)
                         : zuml_detail::MakeMirroredRegion(rod, box);
}

template <class OutT>
Terms<OutT> MakeTerms(const ZUMRaster& source, const ZUMSubKernel<OutT>& stage, int c, Sign sign) {
  const ZUMBasePoint<int> b = MakeBox(stage).begin;
  const long long x = b.x, y = b.y, z = b.z, t = b.t;
  Terms<OutT> terms{{sign * x, sign * y, sign * z, sign * t}, {}, {}};
  for (const auto& factor : stage.GetFactors(c)) {
    const long long offset = factor.x - x + source.GetLineSz() * (factor.y - y) +
                             source.GetPlaneSz() * (factor.z - z) +
                             source.GetFrameSz() * (factor.t - t);
    terms.Add(sign * offset, factor.coefficient);
  }
  return terms;
}

// Whether a stage of one channel reads from one line only.
template <class OutT>
bool IsRow(const ZUMSubKernel<OutT>& stage) {
  const auto& factors = stage.GetFactors(0);
  return !factors.EmptyP() && std::all_of(factors.begin(), factors.end(), [&](const auto& factor) {
    const auto& front = factors.GetFront();
    return factor.y == front.y && factor.z == front.z && factor.t == front.t;
  });
}

// One stage, with several channels in the kernel and `one` channel in the result or as many.
template <class OutT, class InT>
ZUMImage<OutT> RunStage(const ZUMImage<InT>& image, const ZUMSubKernel<OutT>& stage, Sign sign,
                        bool one) {
  const ZUMRoDRef rod = MakeRegion(image, stage, sign);
  using Task = CTaskConv<OutT, InT>;
  if (stage.GetCSz() == 1) {
    const Terms<OutT> terms = MakeTerms(image, stage, 0, sign);
    return ZUMRunTasks<Task, OutT>(rod, image.GetCSz(), [&](Task& task) {
      task.source = &image;
      task.terms = &terms;
    });
  }
  if (image.GetCSz() == 0 || stage.GetCSz() == 0) return ZUMImage<OutT>(rod, 0, nullptr);
  struct Operands {
    ZUMImage<InT> source;
    Terms<OutT> terms;
  };
  const auto make = [&](int c) {
    return Operands{image.Channel(image.GetCSz() == 1 ? 0 : c), MakeTerms(image, stage, c, sign)};
  };
  const auto give = [](auto& task, const Operands& operands) {
    task.source = &operands.source;
    task.terms = &operands.terms;
  };
  if (!one) return ZUMRunTasksPerChannel<Task, OutT>(rod, stage.GetCSz(), make, give);

  const ZUMImage<OutT> result = ZUMRunTasksPerChannel<Task, OutT>(rod, 1, make, give);
  CTaskAcumProduct<OutT, InT> tasks[ZUMMaxTasks];
  for (int c = 1; c < stage.GetCSz(); ++c) {
    const Operands operands = make(c);
    ZUMRunPass(tasks, rod, 1, [&](auto& task) {
      task.result = &result;
      give(task, operands);
    });
  }
  return result;
}

template <class OutT, class InT>
ZUMImage<OutT> RunChain(const char* operation, const ZUMImage<InT>& image,
                        const ZUMKernel<OutT>& kernel, Sign sign) {
  const int channels = image.GetCSz(), kernel_channels = kernel.GetCSz();
  if (channels > 1 && kernel_channels > 1 && channels != kernel_channels) {
    throw XQException(
        "%s: multichannel Image and kernel with different number of channels are not allowed",
        operation);
  }
  // The first stage reads the source as it is where that gives what its conversion to OutT would.
  if constexpr (std::is_same_v<OutT, ZUMLong> && std::is_same_v<InT, ZUMReal>) {
    return RunChain(operation, static_cast<ZUMImage<OutT>>(image), kernel, sign);
  } else {
    const auto& stages = kernel.GetKernels();
    auto stage = stages.begin();
    if (stage == stages.end()) return zuml_detail::ConvertCopy<OutT>(image);
    const bool one = channels > 1;
    ZUMImage<OutT> result;
    const auto& front = *stage++;
    if (stage != stages.end() && kernel_channels == 1 && IsRow(front) &&
        !(*stage).GetFactors(0).EmptyP()) {
      const auto& next = *stage++;
      const Terms<OutT> first = MakeTerms(image, front, 0, sign);
      const Terms<OutT> second = MakeTerms(image, next, 0, sign);
      using Task = CTaskConvStages<OutT, InT>;
      result = ZUMRunTasks<Task, OutT>(MakeRegion(MakeRegion(image, front, sign), next, sign),
                                       channels, [&](Task& task) {
                                         task.source = &image;
                                         task.first = &first;
                                         task.second = &second;
                                       });
    } else {
      result = RunStage(image, front, sign, one);
    }
    for (; stage != stages.end(); ++stage) result = RunStage(result, *stage, sign, one);
    return result;
  }
}

}  // namespace

template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT> ZUMImage<OutT> ZUMConv(const ZUMImage<InT>& image,
                                                         const ZUMKernel<OutT>& kernel) {
  return RunChain("ZUMConv", image, kernel, kMirrored);
}

template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT> ZUMImage<OutT> ZUMCorr(const ZUMImage<InT>& image,
                                                         const ZUMKernel<OutT>& kernel) {
  return RunChain("ZUMCorr", image, kernel, kDirect);
}

#define ZUML_INSTANTIATE(IN)                                                                   \
  template ZUML_API ZUMImage<ZUMLong> ZUMConv(const ZUMImage<IN>&, const ZUMKernel<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMConv(const ZUMImage<IN>&, const ZUMKernel<ZUMReal>&); \
  template ZUML_API ZUMImage<ZUMLong> ZUMCorr(const ZUMImage<IN>&, const ZUMKernel<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMCorr(const ZUMImage<IN>&, const ZUMKernel<ZUMReal>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
