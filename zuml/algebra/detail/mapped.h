/// Functions of one image: one body for every operation whose result pixel depends on the operand's
/// pixel at the same coordinates alone, on the calling thread or with tasks.
#pragma once

#include <cstddef>
#include <type_traits>

#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"

namespace zuml_detail {

/// What a pixel is in memory: bool pixels of wrapped memory may hold other bytes than 0 and 1, and
/// are only read as bytes.
template <class P>
using Stored = std::conditional_t<std::same_as<P, bool>, unsigned char, P>;

/// Pixel i of a run.
template <class P>
inline P ValueAt(const P* x, std::ptrdiff_t i) {
  if constexpr (std::same_as<P, bool>) {
    return reinterpret_cast<const unsigned char*>(x)[i] != 0;
  } else {
    return x[i];
  }
}

template <class R, class P, class Op>
inline void MapRun(R* r, const P* x, std::ptrdiff_t n, const Op& op) {
  for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = op(ValueAt(x, i));
}

/// result = op(image), on the calling thread.
template <class R, class P, class Op>
ZUMImage<R> MapImage(const ZUMImage<P>& image, const Op& op) {
  const ZUMImage<R> result(image, image.GetCSz(), nullptr);
  ForEachRun(
      image, [op](const P* x, R* r, std::ptrdiff_t n) { MapRun(r, x, n, op); }, image, result);
  return result;
}

/// The task body of result = op(image). An operation's task class derives from it, so that a
/// failure report names it.
template <class R, class P, class Op>
class MappedTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const ZUMImage<P>* image;
  Op op;

  void Run() override {
    // The copy of op belongs to the loop: pixels written through `r` cannot change it.
    ForEachRun(
        part, [o = op](R* r, const P* x, std::ptrdiff_t n) { MapRun(r, x, n, o); }, *result,
        *image);
  }
};

/// result = op(image) with tasks.
template <class Task, class R, class P>
ZUMImage<R> RunMapped(const ZUMImage<P>& image, const decltype(Task::op)& op = {}) {
  return RunTasks<Task, R>(image, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.op = op;
  });
}

}  // namespace zuml_detail
