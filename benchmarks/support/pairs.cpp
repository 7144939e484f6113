#include "benchmarks/support/pairs.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "zuml/core/xqtask.h"

namespace zuml_bench {
namespace {

constexpr std::string_view kOurs = "zuml|";
constexpr std::string_view kOther = "peer|";

// What is registered, in order: benchmarks register before main begins.
struct Registered {
  std::vector<std::string> names;
  std::map<std::string, double> pixels;
};

Registered& GetRegistered() {
  static Registered registered;
  return registered;
}

// Collects the real times of the repetitions; the table shows the medians.
class TableReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      times_[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                   static_cast<double>(run.iterations) * 1e9);
    }
  }

  void Finalize() override {
    std::printf("%-44s %12s %12s %8s\n", "ns a pixel", "zuml", "other", "ratio");
    for (const std::string& name : GetRegistered().names) {
      const double ours = Median(std::string(kOurs) + name);
      const double other = Median(std::string(kOther) + name);
      if (ours < 0 || other < 0) continue;
      const double n = GetRegistered().pixels[name];
      std::printf("%-44s %12.4f %12.4f %8.2f\n", name.c_str(), ours / n, other / n, ours / other);
    }
  }

 private:
  double Median(const std::string& name) {
    std::vector<double>& times = times_[name];
    if (times.empty()) return -1;
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
  }

  std::map<std::string, std::vector<double>> times_;
};

// A thread that takes work within a fraction of a microsecond.
class Partner {
 public:
  Partner() : thread_([this] { Serve(); }) {}
  ~Partner() {
    stop_ = true;
    thread_.join();
  }

  void Start(std::function<void()> work) {
    work_ = std::move(work);
    busy_.store(true, std::memory_order_release);
  }
  void Join() const {
    while (busy_.load(std::memory_order_acquire)) __builtin_ia32_pause();
  }

 private:
  void Serve() {
    // It yields after a while, not to take a processor from what is measured without it.
    for (int idle = 0; !stop_; ++idle) {
      if (busy_.load(std::memory_order_acquire)) {
        work_();
        busy_.store(false, std::memory_order_release);
        idle = 0;
      } else if (idle > 20000) {
        std::this_thread::sleep_for(std::chrono::microseconds(50));
      } else {
        __builtin_ia32_pause();
      }
    }
  }

  std::function<void()> work_;
  std::atomic<bool> busy_{false};
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

std::vector<std::unique_ptr<Partner>>& GetPartners() {
  static std::vector<std::unique_ptr<Partner>> partners;
  return partners;
}

void Register(std::string_view side, const std::string& name, int threads,
              std::function<void()> body) {
  benchmark::RegisterBenchmark((std::string(side) + name).c_str(),
                               [threads, body](benchmark::State& state) {
                                 // Whoever spins for an earlier run would take a processor.
                                 GetPartners().clear();
                                 XQTask::SetNThreads(threads);
                                 body();
                                 for (auto _ : state) body();
                                 XQTask::SetNThreads(0);
                               })
      ->UseRealTime()
      ->MinTime(0.04)
      ->Repetitions(5);
}

}  // namespace

void Pair(const std::string& name, double pixels, int with_threads, std::function<void()> ours,
          std::function<void()> other) {
  GetRegistered().pixels[name] = pixels;
  GetRegistered().names.push_back(name);
  Register(kOurs, name, with_threads, std::move(ours));
  Register(kOther, name, with_threads, std::move(other));
}

void ParallelLoop(int threads, long long n, const std::function<void(long long, long long)>& body) {
  auto& partners = GetPartners();
  while (static_cast<int>(partners.size()) < threads - 1) {
    partners.push_back(std::make_unique<Partner>());
  }
  for (int i = 1; i < threads; ++i) {
    partners[static_cast<std::size_t>(i - 1)]->Start(
        [=, &body] { body(n * i / threads, n * (i + 1) / threads); });
  }
  body(0, n / threads);
  for (int i = 1; i < threads; ++i) partners[static_cast<std::size_t>(i - 1)]->Join();
}

int RunPairs(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  arguments.push_back(interleave.data());
  int n = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&n, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(n, arguments.data())) return 2;
  TableReporter table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return 0;
}

}  // namespace zuml_bench

int main(int argc, char** argv) { return zuml_bench::RunPairs(argc, argv); }
