#include "zuml/core/taskframe.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "tests/support/diagnostics.h"
#include "tests/support/testimages.h"

namespace {

/// Runs what the test gives it.
template <class P>
class CTaskAny final : public XQTask {
 public:
  ZUMRoDRef part;
  std::function<void()> work;
  int cost = 1;

  int Cost() const { return cost; }

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
    EXPECT_EQ(zuml_test::MessageOf([&] { ZUMRunPass(tasks, rod, 1, setup); }),
              "failure in " + std::to_string(last));
    EXPECT_EQ(runs, n) << "the others run to their end";
    const std::string of_type = " de tipo (anonymous namespace)::CTaskAny<int>\n";
    std::string lines = "Error en CTask " + std::to_string(first) + of_type;
    if (last != first) lines += "Error en CTask " + std::to_string(last) + of_type;
    EXPECT_EQ(diagnostics.Take(), lines);
  }
}

// Workers that sleep are woken for much work on few pixels.
TEST(TaskFrame, CostlyTasksOfASmallRegionRunAtTheSameTime) {
  const zuml_test::WithThreads threads(2);
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
  std::atomic<int> begun{0};
  CTaskAny<int> tasks[ZUMMaxTasks];
  ZUMRunPass(tasks, ZUMRoDRef(0, 0, 0, 0, 31, 31, 0, 0), 1, [&begun](CTaskAny<int>& task) {
    task.cost = 100;
    task.work = [&begun] {
      ++begun;
      const double end = XQClock() + 20;
      while (begun < 2 && XQClock() < end) std::this_thread::yield();
      EXPECT_EQ(begun, 2);
    };
  });
}

}  // namespace
