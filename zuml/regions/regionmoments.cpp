#include "zuml/regions/regionmoments.h"

#include <algorithm>
#include <cstddef>

#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"

using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::LabelRun;

namespace {

// The sum of x^p over the n integers from x on, p up to 2.
double SumOfPowers(double x, double n, int p) {
  switch (p) {
    case 0:
      return n;
    case 1:
      return n * x + n * (n - 1) / 2;
    default:
      return n * x * x + x * n * (n - 1) + (n - 1) * n * (2 * n - 1) / 6;
  }
}

// x^p, p up to 2.
double Power(double x, int p) { return p == 0 ? 1 : p == 1 ? x : x * x; }

// The moments about the origin of one label.
struct Moments {
  double m[3][3];
};

// One of the formulas.
double CentreMoment(const Moments& about, int p, int q) {
  const auto& m = about.m;
  const double area = std::max(m[0][0], 1.0);
  const double a = m[1][0] / area, b = m[0][1] / area;
  switch (10 * p + q) {
    case 0:
      return m[0][0];
    case 11:
      return m[1][1] - a * m[0][1];
    case 20:
      return m[2][0] - a * m[1][0];
    case 2:
      return m[0][2] - b * m[0][1];
    case 12:
      return m[1][2] - 2 * b * m[1][1] - a * m[0][2] + 2 * b * b * m[1][0];
    case 21:
      return m[2][1] - 2 * a * m[1][1] - b * m[2][0] + 2 * a * a * m[0][1];
    default:
      return 0;
  }
}

}  // namespace

ZUMImage<ZUMReal> ZUMRegionMoment(const ZUMImage<ZUMLong>& labels, int p, int q) {
  if (p < 0 || p > 2 || q < 0 || q > 2) {
    throw XQException("ZUMRegionMoment: it only calcules moments of order 0,1 and 2");
  }
  const zuml_detail::LabelRange range = zuml_detail::FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMReal> table = zuml_detail::MakeTable<ZUMReal>(range, 1, 0);
  const zuml_detail::TableEntries<ZUMReal> moment(table);
  zuml_detail::ForEachLabelRun(labels, [&](const LabelRun& run) {
    moment[run.label] += SumOfPowers(run.First(kX), run.n, p) * Power(run.First(kY), q);
  });
  return table;
}

ZUMImage<ZUMReal> ZUMRegionCenteredMoment(const ZUMImage<ZUMLong>& labels, int p, int q) {
  if (p < 0 || q < 0 || p > 2 || q > 2 || (p == 2 && q == 2)) {
    throw XQException("ZUMRegionCenteredMoment: it only calcules moments of order 0,1 and 2");
  }
  const zuml_detail::LabelRange range = zuml_detail::FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMReal> result = zuml_detail::MakeTable<ZUMReal>(range, 1, 0);
  const auto moments = zuml_detail::MakeZeroedScratch<Moments>(range.Length());
  zuml_detail::ForEachLabelRun(labels, [&](const LabelRun& run) {
    Moments& of_label = moments[static_cast<std::size_t>(run.label - range.first)];
    for (int i = 0; i < 3; ++i) {
      const double sum = SumOfPowers(run.First(kX), run.n, i);
      for (int j = 0; j < 3; ++j) of_label.m[i][j] += sum * Power(run.First(kY), j);
    }
  });
  ZUMReal* entry = &result(result.Begin());
  for (std::size_t i = 0; i < range.Length(); ++i) entry[i] = CentreMoment(moments[i], p, q);
  return result;
}
