#include "zuml/morphology/detail/boxfold.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqmemory.h"
#include "zuml/morphology/detail/lines.h"

using zuml_detail::Axis;
using zuml_detail::FoldWindows;
using zuml_detail::ForEachBlock;
using zuml_detail::kX;
using zuml_detail::MakeScratch;
using zuml_detail::ScratchBlock;
using zuml_detail::Stored;
using zuml_detail::StoredPixels;

namespace {

// Windows of up to this many lines are folded line by line.
constexpr int kShortWindow = 5;

// Alternating between many lines is slow where each lies in a page of its own, so many bytes from
// the one before. Such lines are finished in scratch memory and copied one after the other.
constexpr std::ptrdiff_t kFarApart = 2048;

template <class P, class Order>
void FoldFewWindows(Stored<P>* out, const Stored<P>* in, std::ptrdiff_t count, std::ptrdiff_t step,
                    std::ptrdiff_t last, std::ptrdiff_t n) {
  switch (count) {
    case 1:
      return FoldWindows<P, Order, 1>(out, in, step, last, n);
    case 2:
      return FoldWindows<P, Order, 2>(out, in, step, last, n);
    case 3:
      return FoldWindows<P, Order, 3>(out, in, step, last, n);
    default:
      return FoldWindows<P, Order, 4>(out, in, step, last, n);
  }
}

// out[i] = the fold of in[i] to in[i + length - 1], for n pixels. The scratch lines hold
// n + length - 1 pixels each.
template <class P, class Order>
void FoldAlongLine(Stored<P>* out, const Stored<P>* in, std::ptrdiff_t length, std::ptrdiff_t n,
                   Stored<P>* scratch, Stored<P>* other) {
  std::ptrdiff_t known = 1;  // the length of the windows that `in` holds
  for (; 4 * known < length; known *= 4) {
    FoldWindows<P, Order, 4>(scratch, in, known, 3 * known, n + length - 4 * known);
    in = scratch;
    std::swap(scratch, other);
  }
  FoldFewWindows<P, Order>(out, in, (length + known - 1) / known, known, length - known, n);
}

// out0 and out1 = the folds of lines[0] to lines[length - 1] and of lines[1] to lines[length].
template <class P, class Order>
void FoldTwoLines(Stored<P>* out0, Stored<P>* out1, const Stored<P>* const* lines,
                  std::ptrdiff_t length, std::ptrdiff_t n) {
  ForEachBlock<P, 4>(n, [=]<class Block>(std::ptrdiff_t i) {
    Block common, kept;
    common.Load(lines[1] + i);
    for (std::ptrdiff_t k = 2; k < length; ++k) common.template Fold<Order>(lines[k] + i);
    kept.Load(lines[0] + i);
    kept.template Fold<Order>(common);
    kept.Store(out0 + i);
    common.template Fold<Order>(lines[length] + i);
    common.Store(out1 + i);
  });
}

// out = the fold of `count` lines.
template <class P, class Order>
void FoldLines(Stored<P>* out, const Stored<P>* const* lines, std::ptrdiff_t count,
               std::ptrdiff_t n) {
  ForEachBlock<P, 2>(n, [=]<class Block>(std::ptrdiff_t i) {
    Block kept;
    kept.Load(lines[0] + i);
    for (std::ptrdiff_t k = 1; k < count; ++k) kept.template Fold<Order>(lines[k] + i);
    kept.Store(out + i);
  });
}

// Line k of `out` = the fold of line k of `suffixes` and of lines[0] to lines[k], for `count`
// lines.
template <class P, class Order>
void FoldPrefixes(Stored<P>* out, std::ptrdiff_t out_stride, const Stored<P>* suffixes,
                  std::ptrdiff_t suffix_stride, const Stored<P>* const* lines, std::ptrdiff_t count,
                  std::ptrdiff_t n) {
  ForEachBlock<P, 2>(n, [=]<class Block>(std::ptrdiff_t i) {
    Block prefix, kept;
    prefix.Load(lines[0] + i);
    for (std::ptrdiff_t k = 0;;) {
      kept.Load(suffixes + k * suffix_stride + i);
      kept.template Fold<Order>(prefix);
      kept.Store(out + k * out_stride + i);
      if (++k == count) break;
      prefix.template Fold<Order>(lines[k] + i);
    }
  });
}

// Line k of `suffixes` = the fold of lines[k + 1] to lines[count - 1]; out = that of all lines.
template <class P, class Order>
void FoldSuffixes(Stored<P>* out, Stored<P>* suffixes, std::ptrdiff_t suffix_stride,
                  const Stored<P>* const* lines, std::ptrdiff_t count, std::ptrdiff_t n) {
  ForEachBlock<P, 2>(n, [=]<class Block>(std::ptrdiff_t i) {
    Block suffix;
    suffix.Load(lines[count - 1] + i);
    for (std::ptrdiff_t k = count - 2; k >= 0; --k) {
      suffix.Store(suffixes + k * suffix_stride + i);
      suffix.template Fold<Order>(lines[k] + i);
    }
    suffix.Store(out + i);
  });
}

// A strip of a result: `width` pixels wide, `count` lines along the axis. It asks for the source's
// lines in their order, each folded along X.
template <class P, class Order>
class Strip {
  using S = Stored<P>;

 public:
  Strip(const ZUMImage<P>& image, const ZUMRect& window, Axis axis, std::ptrdiff_t most)
      : image_(image),
        box_(image.Rect()),
        window_(window),
        axis_(axis),
        length_(zuml_detail::SizeOf(window, axis)),
        x_length_(zuml_detail::SizeOf(window, kX)),
        room_((most + 63) / 64 * 64),
        lines_(static_cast<std::size_t>(length_ + 1)),
        buffers_(MakeScratch<S>(static_cast<std::size_t>(room_) *
                                static_cast<std::size_t>(2 * length_ + 2))),
        scratch_(MakeScratch<S>(3 * static_cast<std::size_t>(room_ + x_length_))),
        neutral_(MakeScratch<S>(static_cast<std::size_t>(room_))) {
    std::fill_n(neutral_.get(), room_, Order::template kNeutral<S>);
  }

  // `at` is the first pixel of the strip in the result, whose lines lie `stride` apart from `out`
  // on.
  void Fold(S* out, std::ptrdiff_t stride, std::ptrdiff_t count, const ZUMRunPlace& at,
            std::ptrdiff_t width) {
    at_ = ZUMBasePoint<int>(at.x, at.y, at.z, at.t);
    c_ = at.c;
    width_ = width;
    if (length_ == 1) {
      for (std::ptrdiff_t k = 0; k < count; ++k, out += stride) {
        const S* line = GetLine(k, out);
        if (line != out) FoldWindows<P, Order, 1>(out, line, 0, 0, width_);
      }
    } else if (length_ <= kShortWindow) {
      FoldShort(out, stride, count);
    } else {
      FoldLong(out, stride, count);
    }
  }

 private:
  // Line k of the source, counted from the first that the strip's first line asks for. It is
  // computed into `to` or lies elsewhere.
  const S* GetLine(std::ptrdiff_t k, S* to) {
    const std::int64_t line = at_.*axis_ + std::int64_t{window_.begin.*axis_} + k;
    if (line < box_.begin.*axis_ || line > box_.end.*axis_) return neutral_.get();
    ZUMBasePoint<int> p = at_;
    p.*axis_ = static_cast<int>(line);
    const std::int64_t x = std::int64_t{p.x} + window_.begin.x;
    const std::ptrdiff_t n = width_ + x_length_ - 1;
    const S* in;
    S* const padded = scratch_.get() + 2 * (room_ + x_length_);
    if (x < box_.begin.x || x + n - 1 > box_.end.x) {
      zuml_detail::CopyPaddedLine(padded, image_, x, p.y, p.z, p.t, c_, n,
                                  Order::template kNeutral<S>);
      in = padded;
    } else {
      p.x = static_cast<int>(x);
      in = StoredPixels(&image_(p, c_));
      if (x_length_ == 1) return in;
    }
    FoldAlongLine<P, Order>(to, in, x_length_, width_, scratch_.get(),
                            scratch_.get() + room_ + x_length_);
    return to;
  }

  S* Buffer(std::ptrdiff_t k) { return buffers_.get() + k * room_; }

  // Two lines of the result at a time share all source lines but two.
  void FoldShort(S* out, std::ptrdiff_t stride, std::ptrdiff_t count) {
    const std::ptrdiff_t ring = length_ + 1;
    for (std::ptrdiff_t k = 0; k < length_ - 1; ++k)
      lines_[static_cast<std::size_t>(k)] = GetLine(k, Buffer(k));
    std::ptrdiff_t k = 0;
    const auto add = [&](std::ptrdiff_t place, std::ptrdiff_t line) {
      lines_[static_cast<std::size_t>(place)] = GetLine(line, Buffer(line % ring));
    };
    for (; k + 1 < count; k += 2, out += 2 * stride) {
      add(length_ - 1, k + length_ - 1);
      add(length_, k + length_);
      FoldTwoLines<P, Order>(out, out + stride, lines_.data(), length_, width_);
      std::move(lines_.begin() + 2, lines_.end(), lines_.begin());
    }
    if (k < count) {
      add(length_ - 1, k + length_ - 1);
      FoldLines<P, Order>(out, lines_.data(), length_, width_);
    }
  }

  // The source's lines form blocks of `length` lines; a window is the suffix of one block and the
  // prefix of the next.
  void FoldLong(S* out, std::ptrdiff_t stride, std::ptrdiff_t count) {
    S* const suffixes = Buffer(length_);
    const std::ptrdiff_t total = count + length_ - 1;
    for (std::ptrdiff_t first = 0; first < total; first += length_) {
      const std::ptrdiff_t lines = std::min(length_, total - first);
      for (std::ptrdiff_t k = 0; k < lines; ++k) {
        lines_[static_cast<std::size_t>(k)] = GetLine(first + k, Buffer(k));
      }
      if (first > 0) {
        WriteFolds(out + (first - length_ + 1) * stride, stride, suffixes,
                   std::min(lines, length_ - 1));
      }
      if (first < count) {
        FoldSuffixes<P, Order>(out + first * stride, suffixes, room_, lines_.data(), length_,
                               width_);
      }
    }
  }

  // Writes `count` lines of the result from the suffixes of one block and the prefixes of the next.
  void WriteFolds(S* out, std::ptrdiff_t stride, S* suffixes, std::ptrdiff_t count) {
    const bool far_apart = std::abs(stride) * static_cast<std::ptrdiff_t>(sizeof(S)) >= kFarApart;
    FoldPrefixes<P, Order>(far_apart ? suffixes : out, far_apart ? room_ : stride, suffixes, room_,
                           lines_.data(), count, width_);
    if (!far_apart) return;
    for (std::ptrdiff_t k = 0; k < count; ++k) {
      std::copy_n(suffixes + k * room_, width_, out + k * stride);
    }
  }

  const ZUMImage<P>& image_;
  const ZUMRect box_, window_;
  const Axis axis_;
  const std::ptrdiff_t length_, x_length_;
  const std::ptrdiff_t room_;  // for a line; a multiple of the cache's lines
  std::vector<const S*> lines_;
  ScratchBlock<S> buffers_, scratch_, neutral_;
  ZUMBasePoint<int> at_;
  int c_ = 0;
  std::ptrdiff_t width_ = 0;
};

// As wide as the second cache allows with the lines that a strip keeps, and a page at least: long
// runs are fetched and stored faster.
std::ptrdiff_t GetStripBytes(std::ptrdiff_t length) {
  constexpr std::ptrdiff_t kKeptBytes = 128 * 1024, kLeastBytes = 4096;
  const std::ptrdiff_t lines = length <= kShortWindow ? length + 1 : 2 * length;
  return std::max(kKeptBytes / lines, kLeastBytes);
}

// The window without what lies outside the image from every pixel of the part: windows as long as
// twice the image would cost as much memory. One that misses the image keeps a single step.
ZUMRect ClipWindow(const ZUMRect& window, const ZUMRect& image, const ZUMRect& part, Axis axis) {
  ZUMRect clipped = window;
  for (const Axis a : {axis, kX}) {
    const auto least = zuml_detail::ToCoordinate(std::int64_t{image.begin.*a} - part.end.*a);
    const auto most = zuml_detail::ToCoordinate(std::int64_t{image.end.*a} - part.begin.*a);
    clipped.begin.*a = std::max(window.begin.*a, least);
    clipped.end.*a = std::min(window.end.*a, most);
    if (clipped.begin.*a > clipped.end.*a) {
      clipped.begin.*a = clipped.end.*a = window.begin.*a;
    }
  }
  return clipped;
}

}  // namespace

namespace zuml_detail {

template <class P, class Order>
void BoxPass<P, Order>::Run(const ZUMRoDRef& part, const ZUMGenericImage& generic) const {
  if (part.EmptyP()) return;
  const auto& result = static_cast<const ZUMImage<P>&>(generic);
  const ZUMRect box = part.Rect();
  const ZUMRect window = ClipWindow(window_, image_.Rect(), box, axis_);
  const std::ptrdiff_t most = std::min<std::ptrdiff_t>(
      part.RoDXSz(), GetStripBytes(SizeOf(window, axis_)) / static_cast<int>(sizeof(P)));
  Strip<P, Order> strip(image_, window, axis_, most);
  ZUMRect heads = box;
  heads.end.*axis_ = heads.begin.*axis_;
  ZUMBasePoint<int> step;
  step.*axis_ = 1;
  const std::ptrdiff_t stride = result.Displacement(step, 0);
  ZUMForEachPlacedRun(
      heads,
      [&](ZUMRunPlace at, P* out, std::ptrdiff_t n) {
        const int first = at.x;
        for (std::ptrdiff_t x = 0; x < n; x += most) {
          at.x = static_cast<int>(first + x);
          strip.Fold(StoredPixels(out + x), stride, SizeOf(box, axis_), at, std::min(most, n - x));
        }
      },
      result);
}

#define ZUML_INSTANTIATE(PIX)            \
  template class BoxPass<PIX, Greatest>; \
  template class BoxPass<PIX, Least>;
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
