/// The task of all plain linear filters.
#pragma once

#include "zuml/core/taskframe.h"
#include "zuml/filters/detail/weightedsum.h"

/// Weighted sums over its part.
template <class OutT, class InT>
class CTaskConv final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const zuml_detail::Terms<OutT>* terms;

  int Cost() const { return static_cast<int>(terms->offsets.size()); }

  void Run() override { zuml_detail::WriteWeightedSums(part, *result, *source, *terms); }
};
