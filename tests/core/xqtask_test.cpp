#include "zuml/core/xqtask.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/sanitizers.h"

namespace {

class FunctionTask final : public XQTask {
 public:
  std::function<void()> function;
  void Run() override { function(); }
};

/// Chooses a number of threads for as long as it lives.
struct WithNThreads {
  explicit WithNThreads(int n) { XQTask::SetNThreads(n); }
  ~WithNThreads() { XQTask::SetNThreads(0); }
};

/// Adds 1 to n in each of n tasks and returns what came of it.
int CountTasks(int n) {
  std::array<FunctionTask, 32> tasks;
  std::atomic<int> count{0};
  for (int i = 0; i < n; ++i) tasks[i].function = [&count] { ++count; };
  for (int i = 0; i < n; ++i) i % 3 == 0 ? tasks[i].SendLazily() : tasks[i].Send();
  for (int i = 0; i < n; ++i) tasks[i].Wait();
  return count;
}

// Made before the workers are first needed, so it goes after they have ended.
struct AtEnd {
  ~AtEnd() {
    if (CountTasks(5) != 5) std::_Exit(1);
  }
} at_end;

TEST(XQTask, GetNThreadsIsChosenFrom1To32) {
  const int processors = XQTask::GetNThreads();
  EXPECT_TRUE(processors >= 1 && processors <= 32);
  const int cases[][2] = {{7, 7}, {32, 32}, {33, 32}, {-5, 1}, {0, processors}};
  for (const auto& [n, expected] : cases) {
    const WithNThreads chosen(n);
    EXPECT_EQ(XQTask::GetNThreads(), expected) << n;
  }
}

TEST(XQTask, KeepsWhatLeavesRun) {
  const struct {
    std::function<void()> fail;
    std::string text;
  } cases[] = {
      {[] { throw XQException("100%% %s", "wrong"); }, "100% wrong"},
      {[] { throw XQExcepIOError("io"); }, "io"},
      {[] { throw std::runtime_error("100%s"); }, "100%s"},
      {[] { throw std::bad_alloc(); }, "std::bad_alloc"},
      {[] { throw 7; }, "unknown exception"},
  };
  const WithNThreads one(1);  // and yet a worker takes what is sent
  for (const bool by_worker : {false, true}) {
    for (const auto& c : cases) {
      std::atomic<bool> has_begun{false};
      FunctionTask task;
      EXPECT_EQ(task.Wait(), nullptr) << "never sent";
      task.function = [&] {
        has_begun = true;
        c.fail();
      };
      if (by_worker) {
        task.Send();
        while (!has_begun) std::this_thread::yield();
      } else {
        task.SendLazily();
      }
      const XQException* const failure = task.Wait();
      ASSERT_NE(failure, nullptr) << c.text;
      EXPECT_EQ(failure->what(), c.text);
      EXPECT_EQ(dynamic_cast<const XQExcepIOError*>(failure) != nullptr, c.text == "io");
      EXPECT_EQ(task.Wait(), failure);
      const XQException copy(*failure);
      task.function = [] {};
      task.Send();
      EXPECT_EQ(task.Wait(), nullptr) << "an object sent again forgets its failure";
      EXPECT_EQ(copy.what(), c.text);
    }
  }
}

TEST(XQTask, IsSentThousandsOfTimes) {
  int count = 0;
  FunctionTask task;
  task.function = [&count] { ++count; };
  for (int round = 0; round < 3000; ++round) {
    task.Send();
    task.SendLazily();  // the earlier run comes first
    if (round % 2 == 0) task.Wait();
  }
  task.Wait();
  EXPECT_EQ(count, 6000);
}

// The caller sleeps until the worker has ended, and takes the object away at once.
TEST(XQTask, MayBeDestroyedAsSoonAsItHasRun) {
  for (int round = 0; round < 200; ++round) {
    const auto task = std::make_unique<FunctionTask>();
    std::atomic<bool> has_begun{false};
    task->function = [&] {
      has_begun = true;
      std::this_thread::sleep_for(std::chrono::microseconds(round));
    };
    task->Send();
    while (!has_begun) std::this_thread::yield();
    EXPECT_EQ(task->Wait(), nullptr);
  }
}

/// An operation of 8 tasks, each of which is such an operation one level down. While a thread waits
/// inside a task, it must not begin with another one of the same level: that one could be long, or
/// need what the first one holds.
class NestedTask final : public XQTask {
 public:
  int depth = 0;
  std::atomic<int>* leaves = nullptr;

  void Run() override {
    thread_local std::array<bool, 4> is_inside{};
    EXPECT_FALSE(is_inside[depth]);
    is_inside[depth] = true;
    if (depth == 0) {
      std::this_thread::sleep_for(std::chrono::microseconds(1));  // so that others wait for it
      ++*leaves;
    } else {
      RunAll(depth - 1, *leaves);
    }
    is_inside[depth] = false;
  }

  static void RunAll(int depth, std::atomic<int>& leaves) {
    std::array<NestedTask, 8> tasks;
    for (NestedTask& task : tasks) {
      task.depth = depth;
      task.leaves = &leaves;
      task.Send();
    }
    for (NestedTask& task : tasks) task.Wait();
  }
};

TEST(XQTask, OperationsNestInsideTasks) {
  for (const int n : {1, 2, 7, 32}) {
    const WithNThreads chosen(n);
    for (int round = 0; round < 3; ++round) {
      std::atomic<int> leaves{0};
      NestedTask::RunAll(2, leaves);
      EXPECT_EQ(leaves, 512) << n;
    }
  }
}

TEST(XQTask, ManyThreadsSendAtOnce) {
  for (const int n : {2, 32}) {
    const WithNThreads chosen(n);
    std::atomic<int> wrong{0};
    std::vector<std::thread> callers;
    for (int i = 0; i < 8; ++i) {
      callers.emplace_back([&wrong] {
        for (int round = 0; round < 300; ++round) {
          if (CountTasks(1 + round % 32) != 1 + round % 32) ++wrong;
          // Long enough a pause now and then for the workers to fall asleep.
          if (round % 50 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
      });
    }
    for (std::thread& caller : callers) caller.join();
    EXPECT_EQ(wrong, 0);
  }
}

TEST(XQTask, AForkedProcessHasWorkersOfItsOwn) {
  if (kThreadSanitizer) GTEST_SKIP() << "a child may not start threads";
  EXPECT_EQ(CountTasks(8), 8);
  const pid_t child = fork();
  if (child == 0) {
    // No worker is here yet that could take this one before the process forks again.
    FunctionTask queued;
    int runs = 0;
    queued.function = [&runs] { ++runs; };
    queued.SendLazily();
    const pid_t grandchild = fork();
    alarm(60);
    FunctionTask task;
    std::atomic<bool> has_run{false};
    task.function = [&has_run] { has_run = true; };
    task.Send();
    while (!has_run) std::this_thread::yield();
    task.Wait();
    queued.Wait();
    int status = runs == 1 && CountTasks(32) == 32 ? 0 : 1;
    if (status == 0 && grandchild != 0) waitpid(grandchild, &status, 0);
    _exit(status == 0 ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

}  // namespace
