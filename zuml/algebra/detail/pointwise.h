/// The pointwise families: one task body per pattern of operands, for every operation whose result
/// pixel depends on the operands' pixels at the same coordinates alone.
///
/// An operation is a struct with a static `Do`, which gives one result pixel. Its task class
/// derives from the pattern's body, so that a failure report names it.
///
///   image, image    PointwiseII<R, P, Op>   RunPointwiseII<CTaskAddII<P>>(a, b)
///   image, number   PointwiseIN<R, P, Op>   RunPointwiseIN<CTaskAddIN<P>>(a, n)
///   number, image   PointwiseNI<R, P, Op>   RunPointwiseNI<CTaskSubNI<P>>(n, a)
///   image           PointwiseI<R, P, Op>    RunPointwiseI<CTaskNeg<P>>(a)
#pragma once

#include <cstddef>
#include <type_traits>

#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"

namespace zuml_detail {

/// Throws "<operation>: Diferent number of channels %d!=%d".
inline void RequireSameChannels(const char* operation, const ZUMRaster& a, const ZUMRaster& b) {
  if (a.GetCSz() != b.GetCSz()) {
    throw XQException("%s: Diferent number of channels %d!=%d", operation, a.GetCSz(), b.GetCSz());
  }
}

/// The same without the numbers: "<operation>: Diferent number of channels".
inline void RequireEqualChannels(const char* operation, const ZUMRaster& a, const ZUMRaster& b) {
  if (a.GetCSz() != b.GetCSz()) {
    throw XQException("%s: Diferent number of channels", operation);
  }
}

/// The value of a pixel. Bool pixels may come from wrapped memory, and hold other bytes than 0 and
/// 1 there: they are read as bytes.
template <class P>
P ReadPixel(const P* pixel) {
  if constexpr (std::is_same_v<P, bool>) {
    return *reinterpret_cast<const unsigned char*>(pixel) != 0;
  } else {
    return *pixel;
  }
}

/// result = Op(a, b), both images.
template <class R, class P, class Op>
class PointwiseII : public XQTask {
 public:
  using ResultPixel = R;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const ZUMImage<P>* a;
  const ZUMImage<P>* b;

  void Run() override {
    ForEachRun(
        part,
        [](R* r, const P* x, const P* y, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Do(ReadPixel(x + i), ReadPixel(y + i));
        },
        *result, *a, *b);
  }
};

/// result = Op(a, number). The loop works on a copy of the number: through the task object, it
/// would be read anew after every byte that is written.
template <class R, class P, class Op>
class PointwiseIN : public XQTask {
 public:
  using ResultPixel = R;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const ZUMImage<P>* a;
  P number;

  void Run() override {
    ForEachRun(
        part,
        [second = number](R* r, const P* x, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Do(ReadPixel(x + i), second);
        },
        *result, *a);
  }
};

/// result = Op(number, a).
template <class R, class P, class Op>
class PointwiseNI : public XQTask {
 public:
  using ResultPixel = R;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  P number;
  const ZUMImage<P>* a;

  void Run() override {
    ForEachRun(
        part,
        [first = number](R* r, const P* x, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Do(first, ReadPixel(x + i));
        },
        *result, *a);
  }
};

/// result = Op(a).
template <class R, class P, class Op>
class PointwiseI : public XQTask {
 public:
  using ResultPixel = R;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const ZUMImage<P>* a;

  void Run() override {
    ForEachRun(
        part,
        [](R* r, const P* x, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = Op::Do(ReadPixel(x + i));
        },
        *result, *a);
  }
};

/// The frame for two images: their common region, the first one's channels.
template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseII(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  return RunTasks<Task, R>(Intersection(a, b), a.GetCSz(), [&](Task& task) {
    task.a = &a;
    task.b = &b;
  });
}

/// The frames with one image: its region, shared, and its channels.
template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseIN(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return RunTasks<Task, R>(a, a.GetCSz(), [&](Task& task) {
    task.a = &a;
    task.number = n;
  });
}

template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseNI(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseIN<Task, R>(a, n);
}

template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseI(const ZUMImage<P>& a) {
  return RunTasks<Task, R>(a, a.GetCSz(), [&](Task& task) { task.a = &a; });
}

/// Two images of which one has a single channel, which meets every channel of the other: a pass of
/// the frame for each.
template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwisePerChannel(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  const ZUMRoDRef rod = Intersection(a, b);
  if (a.GetCSz() == 1) {
    return RunTasksPerChannel<Task, R>(
        rod, b.GetCSz(), [&](int c) { return b.Channel(c); },
        [&](Task& task, const ZUMImage<P>& channel) {
          task.a = &a;
          task.b = &channel;
        });
  }
  return RunTasksPerChannel<Task, R>(
      rod, a.GetCSz(), [&](int c) { return a.Channel(c); },
      [&](Task& task, const ZUMImage<P>& channel) {
        task.a = &channel;
        task.b = &b;
      });
}

}  // namespace zuml_detail

/// Instantiates the forms (image, image), (image, number) and (number, image) of an operation that
/// returns RESULT for pixels of type PIX.
#define ZUML_INSTANTIATE_FORMS(NAME, RESULT, PIX)                                 \
  template ZUML_API RESULT NAME(const ZUMImage<PIX>&, const ZUMImage<PIX>&);      \
  template ZUML_API RESULT NAME(const ZUMImage<PIX>&, std::type_identity_t<PIX>); \
  template ZUML_API RESULT NAME(std::type_identity_t<PIX>, const ZUMImage<PIX>&);
