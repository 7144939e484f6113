/// Benchmarks in pairs: an operation of the library and what it is measured against, run in turns
/// in one process, so that the ratio does not depend on the machine's mood.
///
///   zuml_bench::Pair("add/byte/1024/1t", pixels, [&] { a + b; }, [&] { plain loop; });
///
/// The main program prints one table: nanoseconds a pixel of both, and the ratio (below 1: the
/// library is faster). For costs of a whole call, give 1 as the number of pixels.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace zuml_bench {

/// Registers both runs of a pair; `with_threads` is what XQTask::SetNThreads gets before each, 0
/// for the default.
void Pair(const std::string& name, double pixels, int with_threads, std::function<void()> ours,
          std::function<void()> other);

/// Runs body(first, last) over the halves, or whatever number of parts, of n items: one part in the
/// calling thread and one in each of threads - 1 others that wait in a spin. The fair partner of an
/// operation with that number of tasks.
void ParallelLoop(int threads, long long n, const std::function<void(long long, long long)>& body);

/// Runs what is registered and prints the table; the program's return value.
int RunPairs(int argc, char** argv);

}  // namespace zuml_bench
