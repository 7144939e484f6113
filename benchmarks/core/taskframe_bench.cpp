// What the task frame costs: an empty operation against nothing, and the addition of two images
// against a plain loop over the same memory with the same number of threads.

#include <cstddef>
#include <memory>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"

namespace {

class CTaskNothing final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMByte>* result = nullptr;
  void Run() override {}
};

template <class P>
void RegisterAddition(const char* type, int size, int threads) {
  const ZUMRect box(0, 0, 0, 0, size - 1, size - 1, 0, 0);
  const ZUMImage<P> a(box, 1, P(3)), b(box, 1, P(5)), r(box, 1, P(0));
  const long long n = static_cast<long long>(size) * size;
  zuml_bench::Pair(
      std::string("add/") + type + "/" + std::to_string(size) + "/" + std::to_string(threads) + "t",
      static_cast<double>(n), threads, [=] { benchmark::DoNotOptimize((a + b).GetData()); },
      [=] {
        zuml_bench::ParallelLoop(threads, n, [&](long long first, long long last) {
          const P* x = &a(0);
          const P* y = &b(0);
          P* z = &r(0);
          for (long long i = first; i < last; ++i) z[i] = ZUMWrapAdd(x[i], y[i]);
        });
      });
}

const bool registered = [] {
  for (const int threads : {1, 2}) {
    const ZUMRoDRef rod(0, 0, 0, 0, 15, 15, 0, 0);
    zuml_bench::Pair(
        "empty frame/" + std::to_string(threads) + "t", 1, threads,
        [rod] {
          benchmark::DoNotOptimize(
              ZUMRunTasks<CTaskNothing, ZUMByte>(rod, 1, [](CTaskNothing&) {}).GetData());
        },
        [threads] { zuml_bench::ParallelLoop(threads, threads, [](long long, long long) {}); });
    for (const int size : {16, 1024, 4096}) {
      RegisterAddition<ZUMByte>("byte", size, threads);
      RegisterAddition<ZUMLong>("long", size, threads);
      RegisterAddition<ZUMReal>("double", size, threads);
    }
  }
  return true;
}();

}  // namespace
