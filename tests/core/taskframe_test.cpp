#include "zuml/core/taskframe.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>

#include "tests/support/diagnostics.h"
#include "tests/support/testimages.h"

namespace {

/// Runs what the test gives it.
template <class P>
class CTaskAny final : public XQTask {
 public:
  ZUMRoDRef part;
  std::function<void()> work;

  void Run() override { work(); }
};

TEST(TaskFrame, ReportsEachFailureAndThrowsTheLast) {
  for (const int n : zuml_test::kThreadCounts) {
    const zuml_test::WithThreads threads(n);
    const int first = n / 3, last = n - 1 - n / 4;
    std::atomic<int> runs{0};
    zuml_test::CaptureDiagnostics diagnostics;
    int i = 0;
    CTaskAny<int> tasks[ZUMMaxTasks];
    const auto setup = [&](CTaskAny<int>& task) {
      task.work = [&, index = i++]() {
        ++runs;
        if (index != first && index != last) return;
        throw XQExcepIOError("failure in %d", index);
      };
    };
    const ZUMRoDRef rod(0, 0, 0, 0, 999, 63, 0, 0);
    EXPECT_EQ(zuml_test::MessageOf([&] { RunPass(tasks, rod, 1, setup); }),
              "failure in " + std::to_string(last));
    EXPECT_EQ(runs, n) << "the others run to their end";
    const std::string of_type = " de tipo (anonymous namespace)::CTaskAny<int>\n";
    std::string lines = "Error en CTask " + std::to_string(first) + of_type;
    if (last != first) lines += "Error en CTask " + std::to_string(last) + of_type;
    EXPECT_EQ(diagnostics.Take(), lines);
  }
}

}  // namespace
