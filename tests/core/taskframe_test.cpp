#include "zuml/core/taskframe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/diagnostics.h"
#include "tests/support/testimages.h"
#include "zuml/core/foreachrun.h"

namespace {

using zuml_test::CaptureDiagnostics;
using zuml_test::kThreadCounts;
using zuml_test::MessageOf;
using zuml_test::WithThreads;

/// Runs what the test gives it on its part.
template <class P>
class CTaskAny final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result = nullptr;
  std::function<void(CTaskAny&)> work;
  int index = -1;

  void Run() override { work(*this); }
};
using Task = CTaskAny<ZUMLong>;
const std::string kErrorIn = "Error en CTask ";
const std::string kOfType = " de tipo (anonymous namespace)::CTaskAny<int>\n";

TEST(TaskFrame, EveryPixelBelongsToOneTask) {
  const ZUMRect boxes[] = {{0, 0, 0, 0, 0, 0, 0, 0},
                           {-3, 2, 0, 0, 60, 40, 0, 0},
                           {0, 0, -2, 1, 4, 3, 9, 8},
                           {-7, 0, 0, 0, 210, 99, 1, 0},
                           {0, 1, 1, 1, -1, 0, 0, 0}};
  for (const ZUMRect& box : boxes) {
    for (const int n : kThreadCounts) {
      const WithThreads threads(n);
      const ZUMImage<ZUMLong> image(ZUMRoDRef(box), 2, 0);
      Task tasks[ZUMMaxTasks];
      std::atomic<int> runs{0}, with_pixels{0};
      for (int pass = 1; pass <= 3; ++pass) {
        RunPass(tasks, image, 2, [&](Task& task) {
          task.work = [&](Task& t) {
            ++runs;
            with_pixels += t.part.EmptyP() == 0;
            const auto add = [](ZUMLong* r, std::ptrdiff_t k) {
              while (k-- > 0) ++r[k];
            };
            ForEachRun(t.part, add, image);
          };
        });
        EXPECT_TRUE(zuml_test::SameImage(image, ZUMImage<ZUMLong>(box, 2, pass)));
        EXPECT_EQ(runs, pass * n);
      }
      const int longest = std::max({image.RoDXSz(), image.RoDYSz(), image.RoDZSz()});
      const int used = image.EmptyP() ? 0 : longest >= n ? n : 1;
      EXPECT_EQ(with_pixels, 3 * used) << "only task 0 where no axis is cut";
    }
  }
}

TEST(TaskFrame, ReportsEachFailureAndThrowsTheLast) {
  for (const int n : kThreadCounts) {
    const WithThreads threads(n);
    const int first = n / 3, last = n - 1 - n / 4;
    const ZUMRoDRef rod(0, 0, 0, 0, 999, 63, 0, 0);
    Task tasks[ZUMMaxTasks];
    std::atomic<int> runs{0};
    CaptureDiagnostics diagnostics;
    const auto run = [&](bool failing) {
      int i = 0;
      RunPass(tasks, rod, 1, [&](Task& task) {
        task.index = i++;
        task.work = [&, failing](Task& t) {
          ++runs;
          if (!failing || (t.index != first && t.index != last)) return;
          const std::string text = "failure in " + std::to_string(t.index);
          if (n % 2 == 0) throw std::runtime_error(text);
          throw XQExcepIOError("%s", text.c_str());
        };
      });
    };
    try {
      run(true);
      ADD_FAILURE() << "no failure of " << n;
    } catch (const std::exception& e) {
      EXPECT_EQ(typeid(e), typeid(XQException));
      EXPECT_EQ(e.what(), "failure in " + std::to_string(last));
    }
    EXPECT_EQ(runs, n) << "the others run to their end";
    std::string lines = kErrorIn + std::to_string(first) + kOfType;
    if (last != first) lines += kErrorIn + std::to_string(last) + kOfType;
    EXPECT_EQ(diagnostics.Take(), lines);
    // The same objects serve again, and have forgotten.
    run(false);
    EXPECT_EQ(runs, 2 * n);
    EXPECT_EQ(diagnostics.Take(), "");
  }
}

TEST(TaskFrame, PassesPerChannel) {
  const ZUMRoDRef rod(-1, 2, 0, 0, 130, 80, 0, 0);
  const auto expected = zuml_test::MakeByPoint<ZUMLong>(
      rod, 3, [](int, int, int, int, int c) { return ZUMLong{10 * c}; });
  for (const int n : kThreadCounts) {
    const WithThreads threads(n);
    std::vector<int> made;
    const auto run = [&](int failing) {
      const auto make = [&](int c) { return made.emplace_back(10 * c); };
      return RunTasksPerChannel<Task, ZUMLong>(
          rod, 3, make, [failing](Task& task, const int& number) {
            task.work = [&number, failing](Task& t) {
              if (number == failing) throw XQException("failed");
              const auto fill = [&](ZUMLong* r, std::ptrdiff_t k) { std::fill(r, r + k, number); };
              ForEachRun(t.part, fill, *t.result);
            };
          });
    };
    EXPECT_TRUE(zuml_test::SameImage(run(-1), expected));
    EXPECT_EQ(made, (std::vector{0, 10, 20}));
    const CaptureDiagnostics diagnostics;
    EXPECT_EQ(MessageOf([&] { run(10); }), "failed");
    EXPECT_EQ(made, (std::vector{0, 10, 20, 0, 10})) << "no pass follows one that failed";
  }
}

// Tasks that call operations, many callers at once, some of them with failures.
TEST(TaskFrame, OperationsInsideTasksOfManyCallers) {
  const CaptureDiagnostics diagnostics;
  const auto call = [](int caller) {
    for (int round = 0; round < 8; ++round) {
      const bool fails = (caller + round) % 3 == 0, large = round % 2 == 0;
      const ZUMRoDRef rod(0, caller, 0, 0, large ? 400 : 7, caller + 60, 0, 0);
      const ZUMImage<ZUMReal> source(rod, 1, caller + 0.5);
      const auto setup = [&](Task& task) {
        task.work = [&](Task& t) {
          const ZUMImage<ZUMLong> inner = source;  // frames of their own
          const ZUMImage<ZUMShort> innermost = inner;
          const auto copy = [](ZUMLong* r, const ZUMShort* x, auto n) { std::copy(x, x + n, r); };
          ForEachRun(t.part, copy, *t.result, innermost);
          if (fails) throw XQException("caller %d", caller);
        };
      };
      const std::string message = MessageOf([&] {
        const auto result = RunTasks<Task, ZUMLong>(rod, 1, setup);
        EXPECT_TRUE(zuml_test::SameImage(result, ZUMImage<ZUMLong>(rod, 1, caller)));
      });
      EXPECT_EQ(message, fails ? "caller " + std::to_string(caller) : "");
    }
  };
  for (const int n : {2, 5}) {
    const WithThreads threads(n);
    std::vector<std::thread> callers;
    for (int i = 0; i < 8; ++i) callers.emplace_back(call, i);
    for (std::thread& caller : callers) caller.join();
  }
}

}  // namespace
