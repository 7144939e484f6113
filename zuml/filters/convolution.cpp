#include "zuml/filters/convolution.h"

#include <cstddef>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/convolutiontask.h"
#include "zuml/filters/detail/displacedruns.h"

namespace {

using zuml_detail::Terms;

// Whether p - k is read, or p + k.
enum class Form { kMirrored, kDirect };

template <class W>
Terms<W> MakeTerms(const ZUMRaster& source, const ZUMImage<W>& kernel, Form form,
                   const ZUMRoDRef& rod) {
  const zuml_detail::KernelFromOrigin<W> moved(kernel);
  const ZUMImage<W> pixels = zuml_detail::NeededPart(moved.pixels, rod);
  ZUMDisplacementValueArray<W> direct, steps;
  if (form == Form::kMirrored) {
    steps.SymmetricFromNonZeroPixels(source, pixels);
    direct.FromNonZeroPixels(source, pixels);
  } else {
    steps.FromNonZeroPixels(source, pixels);
  }
  Terms<W> terms{moved.GetDistance(form == Form::kMirrored ? -1 : 1), {}, {}};
  for (std::size_t k = 0; k < steps.GetLength(); ++k) {
    const auto& step = steps.GetStart()[k];
    long long offset = step.offset;
    // Mirrored steps stay inside their channel. The direct one has the distance between channels
    // besides; nothing else is left of the two together.
    if (form == Form::kMirrored) offset += step.offset + direct.GetStart()[k].offset;
    terms.Add(offset, step.value);
  }
  return terms;
}

template <class OutT, class InT>
ZUMImage<OutT> RunFilter(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel, Form form) {
  const int channels = image.GetCSz(), kernel_channels = kernel.GetCSz();
  if (channels > 1 && kernel_channels > 1 && channels != kernel_channels) {
    throw XQException(
        "ZUMConv: convolution of Multichanel image and kernel with diferent number of channels is "
        "not allowed");
  }
  const ZUMRoDRef rod = form == Form::kMirrored
                            ? zuml_detail::MakeMirroredRegion(image, kernel.Rect())
                            : zuml_detail::MakeDirectRegion(image, kernel.Rect());
  using Task = CTaskConv<OutT, InT>;
  if (channels == 0) return ZUMImage<OutT>(rod, 0, nullptr);
  if (channels == 1 && kernel_channels > 1) {
    return ZUMRunTasksPerChannel<Task, OutT>(
        rod, kernel_channels, [&](int c) { return MakeTerms(image, kernel.Channel(c), form, rod); },
        [&](Task& task, const Terms<OutT>& terms) {
          task.source = &image;
          task.terms = &terms;
        });
  }
  const Terms<OutT> terms = MakeTerms(image, kernel, form, rod);
  if (channels > 1 && kernel_channels == 1) {
    return ZUMRunTasksPerChannel<Task, OutT>(
        rod, channels, [&](int c) { return image.Channel(c); },
        [&](Task& task, const ZUMImage<InT>& channel) {
          task.source = &channel;
          task.terms = &terms;
        });
  }
  return ZUMRunTasks<Task, OutT>(rod, 1, [&](Task& task) {
    task.source = &image;
    task.terms = &terms;
  });
}

}  // namespace

template <class OutT, class InT>
requires ZUMConvPixels<OutT, InT> ZUMImage<OutT> ZUMConv(const ZUMImage<InT>& image,
                                                         const ZUMImage<OutT>& kernel) {
  return RunFilter(image, kernel, Form::kMirrored);
}

template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT> ZUMImage<OutT> ZUMCorr(const ZUMImage<InT>& image,
                                                         const ZUMImage<OutT>& kernel) {
  return RunFilter(image, kernel, Form::kDirect);
}

#define ZUML_INSTANTIATE(IN)                                                                  \
  template ZUML_API ZUMImage<ZUMLong> ZUMConv(const ZUMImage<IN>&, const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMConv(const ZUMImage<IN>&, const ZUMImage<ZUMReal>&); \
  template ZUML_API ZUMImage<ZUMSReal> ZUMConv(const ZUMImage<IN>&, const ZUMImage<ZUMSReal>&);
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(IN)                                                                  \
  template ZUML_API ZUMImage<ZUMLong> ZUMCorr(const ZUMImage<IN>&, const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMCorr(const ZUMImage<IN>&, const ZUMImage<ZUMReal>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
