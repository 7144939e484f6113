// The conversions of images between pixel types.

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"

namespace {

// Floating pixels to integers. The conversion through 64 bits does not vectorise; a short stretch
// of pixels that all fit in 32 bits, which is nearly every stretch, takes the plain conversion,
// which has the same result there.
template <class Q, class P>
void TruncateRun(Q* to, const P* from, std::ptrdiff_t n) {
  constexpr std::ptrdiff_t kStretch = 256;
  constexpr double kLimit = 2147483648.0;
  for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
    const std::ptrdiff_t count = std::min(kStretch, n - begin);
    const P* f = from + begin;
    Q* t = to + begin;
    unsigned fits = 1;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      fits &= static_cast<unsigned>(static_cast<double>(f[i]) > -kLimit) &
              static_cast<unsigned>(static_cast<double>(f[i]) < kLimit);
    }
    if (fits) {
      for (std::ptrdiff_t i = 0; i < count; ++i) {
        t[i] = static_cast<Q>(static_cast<std::int32_t>(f[i]));
      }
    } else {
      for (std::ptrdiff_t i = 0; i < count; ++i) t[i] = ZUMConvertPixel<Q>(f[i]);
    }
  }
}

template <class Q, class P>
void ConvertRun(Q* to, const P* from, std::ptrdiff_t n) {
  if constexpr (std::same_as<P, Q> && !std::same_as<P, bool>) {
    ZUMCopyRun(to, from, n);
  } else if constexpr (std::floating_point<P> && std::integral<Q> && !std::same_as<Q, bool>) {
    TruncateRun(to, from, n);
  } else {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      to[i] = ZUMConvertPixel<Q>(zuml_detail::ValueAt(from, i));
    }
  }
}

}  // namespace

/// Converts its part of an image.
template <class Q, class P>
class CTaskConvert final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<Q>* result;
  const ZUMImage<P>* image;

  void Run() override {
    ZUMForEachRun(
        part, [](Q* to, const P* from, std::ptrdiff_t n) { ConvertRun(to, from, n); }, *result,
        *image);
  }
};

template <class PixT>
template <ZUMValuePixel Q>
requires ZUMValuePixel<PixT> ZUMImage<PixT>::operator ZUMImage<Q>() const {
  return ZUMRunTasks<CTaskConvert<Q, PixT>, Q>(*this, GetCSz(),
                                               [this](auto& task) { task.image = this; });
}

#define ZUML_INSTANTIATE_FROM(PIX)                             \
  template ZUMImage<PIX>::operator ZUMImage<ZUMBool>() const;  \
  template ZUMImage<PIX>::operator ZUMImage<ZUMByte>() const;  \
  template ZUMImage<PIX>::operator ZUMImage<ZUMShort>() const; \
  template ZUMImage<PIX>::operator ZUMImage<ZUMLong>() const;  \
  template ZUMImage<PIX>::operator ZUMImage<ZUMSReal>() const; \
  template ZUMImage<PIX>::operator ZUMImage<ZUMReal>() const;  \
  template ZUMImage<PIX>::operator ZUMImage<ZUMComplex>() const;
ZUML_VALUE_TYPES(ZUML_INSTANTIATE_FROM)
#undef ZUML_INSTANTIATE_FROM
