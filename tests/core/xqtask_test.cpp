#include "zuml/core/xqtask.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/forked.h"
#include "tests/support/sanitizers.h"
#include "tests/support/testimages.h"

namespace {

using zuml_test::WithThreads;

class FunctionTask final : public XQTask {
 public:
  std::function<void()> function;
  void Run() override { function(); }
};
using Tasks = std::array<FunctionTask, 32>;

void Sleep(int microseconds) {
  std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

void SendAll(Tasks& tasks, int n) {
  for (int i = 0; i < n; ++i) i % 3 == 0 ? tasks[i].SendLazily() : tasks[i].Send();
}

/// Calls the function in n tasks.
void RunInTasks(int n, const std::function<void()>& function) {
  Tasks tasks;
  for (FunctionTask& task : tasks) task.function = function;
  SendAll(tasks, n);
  for (int i = 0; i < n; ++i) tasks[i].Wait();
}

bool TasksRunP(int n) {
  std::atomic<int> count{0};
  RunInTasks(n, [&count] { ++count; });
  return count == n;
}

// Made before the workers are first needed, so it goes after they have ended.
struct AtEnd {
  ~AtEnd() {
    if (!TasksRunP(5)) std::_Exit(1);
  }
} at_end;

TEST(XQTask, GetNThreadsIsChosenFrom1To32) {
  for (const auto& [n, expected] :
       {std::pair{7, 7}, {33, 32}, {-5, 1}, {0, XQTask::GetNThreads()}}) {
    const WithThreads chosen(n);
    EXPECT_EQ(XQTask::GetNThreads(), expected) << n;
  }
}

/// What leaves a task, and the text that its caller gets.
const std::string kTexts[] = {"%s", "%s", "%s", "unknown exception", ""};
void Fail(int i) {
  if (i % 5 == 0) throw XQException("%s", "%s");
  if (i % 5 == 1) throw XQExcepIOError("%%s");
  if (i % 5 == 2) throw std::runtime_error("%s");
  if (i % 5 == 3) throw i;
}

TEST(XQTask, ManyThreadsSendTheirObjectsAgainAndAgain) {
  const auto call = [](int caller) {
    Tasks tasks;
    ASSERT_EQ(tasks[0].Wait(), nullptr) << "never sent";
    for (int round = 0; round < 300; ++round) {
      std::atomic<int> count{0};
      const int n = 1 + (caller + round) % 32;
      for (int i = 0; i < n; ++i) {
        tasks[i].function = [&count, i, round] {
          ++count;
          if (round % 50 == 0) Sleep(200);  // and so do who waits and the idle workers
          Fail(i + round);
        };
      }
      SendAll(tasks, n);
      if (round % 2 == 0) SendAll(tasks, n);  // An object that is sent again has run before.
      for (int i = 0; i < n; ++i) {
        const XQException* const failure = tasks[i].Wait();
        ASSERT_EQ(failure ? failure->what() : "", kTexts[(i + round) % 5]);
        ASSERT_EQ(dynamic_cast<const XQExcepIOError*>(failure) != nullptr, (i + round) % 5 == 1);
      }
      ASSERT_EQ(count, round % 2 == 0 ? 2 * n : n);
    }
  };
  for (const int n : {2, 32}) {
    const WithThreads chosen(n);
    std::vector<std::thread> callers;
    for (int i = 0; i < 8; ++i) callers.emplace_back(call, i);
    for (std::thread& caller : callers) caller.join();
  }
}

/// An operation of 8 tasks, each of which is such an operation one level down. While a thread waits
/// inside a task, it must not begin with another one of the same level: that one could be long, or
/// need what the first one holds.
void RunNested(int depth, std::atomic<int>& leaves) {
  RunInTasks(8, [&leaves, depth] {
    thread_local std::array<bool, 4> is_inside{};
    EXPECT_FALSE(is_inside[depth]);
    is_inside[depth] = true;
    if (depth > 0) RunNested(depth - 1, leaves);
    if (depth == 0) ++leaves, Sleep(1);  // so that others wait for it
    is_inside[depth] = false;
  });
}

TEST(XQTask, OperationsNestInsideTasks) {
  for (const int n : {1, 2, 7, 32}) {
    const WithThreads chosen(n);
    std::atomic<int> leaves{0};
    for (int round = 0; round < 3; ++round) RunNested(2, leaves);
    EXPECT_EQ(leaves, 3 * 512) << n;
  }
}

TEST(XQTask, AForkedProcessHasWorkersOfItsOwn) {
  if (kThreadSanitizer) GTEST_SKIP() << "a child may not start threads";
  EXPECT_TRUE(TasksRunP(8));
  EXPECT_TRUE(zuml_test::SucceedsForked([] {
    const WithThreads one(1);  // and yet a worker takes what is sent
    // None is here that could take the first one before the process forks again.
    FunctionTask queued, task;
    std::atomic<int> runs{0};
    queued.function = task.function = [&runs] { ++runs; };
    queued.SendLazily();
    const auto work = [&] {
      task.Send();
      while (runs == 0) std::this_thread::yield();
      task.Wait();
      queued.Wait();
      return runs == 2 && TasksRunP(32);
    };
    return zuml_test::SucceedsForked(work) && work();
  }));
}

}  // namespace
