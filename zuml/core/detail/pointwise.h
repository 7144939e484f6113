/// The pointwise families: one task body per pattern of operands, for every operation whose result
/// pixel depends on the operands' pixels at the same coordinates alone.
///
/// An operation is a function object that gives one result pixel. Its task class derives from the
/// pattern's body, so that a failure report names it.
///
///   image, image    PointwiseII<R, P, Op>   RunPointwiseII<CTaskAddII<P>>(a, b)
///   image, number   PointwiseIN<R, P, Op>   RunPointwiseIN<CTaskAddIN<P>>(a, n)
///   number, image   PointwiseNI<R, P, Op>   RunPointwiseNI<CTaskSubNI<P>>(n, a)
///   image           PointwiseI<R, P, Op>    RunPointwiseI<CTaskNeg<P>>(a)
#pragma once

#include <type_traits>

#include "zuml/core/detail/mapped.h"
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

/// What the bodies share: the part, the result and the operation.
template <class R, class Op>
class PointwiseTask : public XQTask {
 public:
  using ResultPixel = R;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  Op op;
};

/// result = op(a, b), both images.
template <class R, class P, class Op>
class PointwiseII : public PointwiseTask<R, Op> {
 public:
  const ZUMImage<P>* a;
  const ZUMImage<P>* b;

  void Run() override { MapRuns(this->part, this->op, *this->result, *a, *b); }
};

/// result = op(a, number).
template <class R, class P, class Op>
class PointwiseIN : public PointwiseTask<R, Op> {
 public:
  const ZUMImage<P>* a;
  P number;

  void Run() override {
    MapRuns(
        this->part, [op = this->op, n = number](P x) { return op(x, n); }, *this->result, *a);
  }
};

/// result = op(number, a).
template <class R, class P, class Op>
class PointwiseNI : public PointwiseTask<R, Op> {
 public:
  const ZUMImage<P>* a;
  P number;

  void Run() override {
    MapRuns(
        this->part, [op = this->op, n = number](P x) { return op(n, x); }, *this->result, *a);
  }
};

/// result = op(a).
template <class R, class P, class Op>
class PointwiseI : public PointwiseTask<R, Op> {
 public:
  const ZUMImage<P>* a;

  void Run() override { MapRuns(this->part, this->op, *this->result, *a); }
};

/// The frame for two images: their common region, `csz` channels, or the first one's.
template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseII(const ZUMImage<P>& a, const ZUMImage<P>& b, int csz) {
  return ZUMRunTasks<Task, R>(Intersection(a, b), csz, [&](Task& task) {
    task.a = &a;
    task.b = &b;
  });
}

template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseII(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  return RunPointwiseII<Task, R>(a, b, a.GetCSz());
}

/// The frames with one image: its region, shared, and its channels.
template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseIN(const ZUMImage<P>& a, std::type_identity_t<P> n) {
  return ZUMRunTasks<Task, R>(a, a.GetCSz(), [&](Task& task) {
    task.a = &a;
    task.number = n;
  });
}

template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseNI(std::type_identity_t<P> n, const ZUMImage<P>& a) {
  return RunPointwiseIN<Task, R>(a, n);
}

template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwiseI(const ZUMImage<P>& a, const decltype(Task::op)& op = {}) {
  return ZUMRunTasks<Task, R>(a, a.GetCSz(), [&](Task& task) {
    task.a = &a;
    task.op = op;
  });
}

/// Two images of which one has a single channel, which meets every channel of the other: a pass of
/// the frame for each.
template <class Task, class R = typename Task::ResultPixel, class P>
ZUMImage<R> RunPointwisePerChannel(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  const ZUMRoDRef rod = Intersection(a, b);
  if (a.GetCSz() == 1) {
    return ZUMRunTasksPerChannel<Task, R>(
        rod, b.GetCSz(), [&](int c) { return b.Channel(c); },
        [&](Task& task, const ZUMImage<P>& channel) {
          task.a = &a;
          task.b = &channel;
        });
  }
  return ZUMRunTasksPerChannel<Task, R>(
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
