/// What runs in the tasks of a fold, apart from the task classes: these are names for one body.
#pragma once

#include "zuml/core/taskframe.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// A pass over an image: it computes the result's pixels on a part of its region.
class FoldPass {
 public:
  /// About how many pixels it reads for one of the result.
  virtual int Cost() const = 0;
  virtual void Run(const ZUMRoDRef& part, const ZUMGenericImage& result) const = 0;

 protected:
  ~FoldPass() = default;
};

/// The base of the task classes.
class FoldTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMGenericImage* result;
  const FoldPass* pass;

  int Cost() const { return pass->Cost(); }
  void Run() override { pass->Run(part, *result); }
};

/// The pass in tasks of the class, over a new image.
template <class Task, class P>
ZUMImage<P> RunFold(const ZUMRoDRef& rod, int csz, const FoldPass& pass) {
  return ZUMRunTasks<Task, P>(rod, csz, [&](Task& task) { task.pass = &pass; });
}

}  // namespace zuml_detail
