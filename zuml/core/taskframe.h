/// The task frame: how an operation runs in parallel. The region of the result is cut into one part
/// per worker, a task object runs on each part, all are waited for, and a failure of a task reaches
/// the caller. An operation says only what differs: its task class and how a task gets its
/// operands.
///
/// A task class derives from XQTask, is default-constructible and has the members `part` (its
/// ZUMRoDRef) and, for ZUMRunTasks, `result` (a pointer to the image it writes). One that does much
/// for each pixel of the result has `int Cost() const`: about how many pixels it reads for one.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/xqtask.h"
#include "zuml/core/zumimage.h"

/// The number of task objects of an operation; XQTask::GetNThreads is at most this.
inline constexpr int ZUMMaxTasks = 32;

namespace zuml_detail {

/// Waits for the tasks in order, without an early exit. For each that failed it writes the line
/// "Error en CTask <i> de tipo <class>"; then a copy of the last failure is thrown.
ZUML_API void WaitForTasks(XQTask* const* tasks, int n);

/// Below this many pixels read, all channels counted, an operation is not worth waking a sleeping
/// worker.
inline constexpr long long kSmallWork = 16384;

template <class Task>
long long GetCost(const Task& task) {
  if constexpr (requires { task.Cost(); }) {
    return task.Cost();
  } else {
    return 1;
  }
}

}  // namespace zuml_detail

/// Joins the first n tasks of an array; see zuml_detail::WaitForTasks for what a failure does.
template <class Task>
void ZUMWaitTasks(Task* tasks, int n) {
  XQTask* pointers[ZUMMaxTasks];
  for (int i = 0; i < n; ++i) pointers[i] = &tasks[i];
  zuml_detail::WaitForTasks(pointers, n);
}

/// One pass of the frame: part i of n of the region goes to task i, `setup(task)` gives it its
/// operands, all are sent and then joined. Every task is ready before the first is sent, so that
/// nothing can fail while tasks run. The objects can serve further passes.
template <class Task, class Setup>
void ZUMRunPass(Task (&tasks)[ZUMMaxTasks], const ZUMRoDRef& rod, int csz, Setup&& setup) {
  const int n = XQTask::GetNThreads();
  for (int i = 0; i < n; ++i) {
    tasks[i].part = rod.RoDPart(i, n);
    setup(tasks[i]);
  }
  const long long work = zuml_detail::GetCost(tasks[0]) * rod.NPixels() * csz;
  const bool lazily = n == 1 || work < zuml_detail::kSmallWork;
  for (int i = 0; i < n; ++i) lazily ? tasks[i].SendLazily() : tasks[i].Send();
  ZUMWaitTasks(tasks, n);
}

/// The whole frame for a result over `rod` with `csz` channels: a new image with a tight raster,
/// one pass of tasks that write all its pixels, the image.
template <class Task, ZUMAnyPixel P, class Setup>
ZUMImage<P> ZUMRunTasks(const ZUMRoDRef& rod, int csz, Setup&& setup) {
  const ZUMImage<P> result = ZUMGenericImage(rod, csz, ZUMPixelTraits<P>::kType);
  Task tasks[ZUMMaxTasks];
  ZUMRunPass(tasks, rod, csz, [&](Task& task) {
    task.result = &result;
    setup(task);
  });
  return result;
}

/// The frame's variant with passes per channel, for an operand of one channel beside operands of
/// several: for each channel c a whole pass writes channel c of the result. `operands(c)` makes
/// what the pass reads, such as a view of channel c, and lives until the pass is joined;
/// `setup(task, operands)` hands it to a task. Passes follow each other.
template <class Task, ZUMAnyPixel P, class Operands, class Setup>
ZUMImage<P> ZUMRunTasksPerChannel(const ZUMRoDRef& rod, int csz, Operands&& operands,
                                  Setup&& setup) {
  const ZUMImage<P> result = ZUMGenericImage(rod, csz, ZUMPixelTraits<P>::kType);
  Task tasks[ZUMMaxTasks];
  for (int c = 0; c < csz; ++c) {
    const ZUMImage<P> view = result.Channel(c);
    const auto held = operands(c);
    ZUMRunPass(tasks, rod, 1, [&](Task& task) {
      task.result = &view;
      setup(task, held);
    });
  }
  return result;
}
