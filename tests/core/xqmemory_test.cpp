#include "zuml/core/xqmemory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/sanitizers.h"
#include "tests/support/testimages.h"

namespace {

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kMiB = 1024 * kKiB;

TEST(XQMAlloc, BlocksAreAlignedAndWhole) {
  const std::size_t sizes[] = {0,          1,        65,           128 * kKiB - 1,
                               128 * kKiB, 4 * kMiB, 4 * kMiB + 1, 4 * kMiB - 1};
  std::vector<void*> blocks;
  for (const std::size_t size : sizes) {
    blocks.push_back(XQMAlloc(size));
    const bool is_huge = size >= 4 * kMiB && !kAddressSanitizer;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % (is_huge ? 2 * kMiB : 64), 0u);
    std::memset(blocks.back(), 255, size);
  }
  for (void* block : blocks) XQFree(block);
}

TEST(XQMAlloc, TakesTheSmallestKeptBlockThatIsNotMuchTooLarge) {
  if (kAddressSanitizer) GTEST_SKIP() << "nothing is kept";
  for (const std::size_t unit : {128 * kKiB, 4 * kMiB}) {
    XQTrimMemory();
    void* const blocks[] = {XQMAlloc(unit), XQMAlloc(unit / 8 * 9), XQMAlloc(unit / 2 * 3)};
    for (const int i : {2, 1, 0}) XQFree(blocks[i]);
    for (const int i : {0, 1}) EXPECT_EQ(XQMAlloc(unit), blocks[i]);
    void* const fresh = XQMAlloc(unit);
    EXPECT_EQ(XQMAlloc(unit / 8 * 10), blocks[2]) << "is more than a quarter too large for a unit";
    for (void* block : {blocks[0], blocks[1], blocks[2], fresh}) XQFree(block);
  }
}

TEST(XQMAlloc, KeepsABoundedNumberOfBlocksAndBytes) {
  if (kAddressSanitizer) GTEST_SKIP() << "nothing is kept";
  const auto is_mapped = [](void* block) { return msync(block, 4096, MS_ASYNC) == 0; };
  XQTrimMemory();
  const std::size_t cases[][3] = {{4, 20, 16}, {200, 3, 2}, {512, 1, 1}, {513, 1, 0}};
  for (const auto& [megabytes, freed, kept] : cases) {
    std::vector<void*> blocks;
    while (blocks.size() < freed) blocks.push_back(XQMAlloc(megabytes * kMiB));
    for (void* block : blocks) XQFree(block);
    for (std::size_t i = 0; i < freed; ++i) {  // the oldest ones had to go
      EXPECT_EQ(is_mapped(blocks[i]), i >= freed - kept) << megabytes << ", " << i;
    }
    XQTrimMemory();
    EXPECT_FALSE(is_mapped(blocks.back())) << megabytes;
  }
}

TEST(XQMAlloc, ABlockHasOneHolder) {
  std::vector<std::thread> threads;
  for (int id = 0; id < 4; ++id) {
    threads.emplace_back([id] {
      for (std::size_t i = 0; i < 3000; ++i) {
        int* const block = static_cast<int*>(XQMAlloc((120 + i % 20) * kKiB));
        *block = id;
        std::this_thread::yield();
        EXPECT_EQ(*block, id);
        XQFree(block);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(XQMAlloc, GivesKeptBlocksBackBeforeItFails) {
  for (const std::size_t size : {SIZE_MAX, SIZE_MAX / 2}) {
    EXPECT_EQ(zuml_test::MessageOf([size] { XQFree(XQMAlloc(size)); }),
              "XQMAlloc: out of memory (" + std::to_string(size) + " bytes)");
  }
  EXPECT_THROW(zuml_detail::MakeZeroedScratch<double>(SIZE_MAX / 8 + 2).reset(), XQException);
  if (kAddressSanitizer || kThreadSanitizer) GTEST_SKIP() << "address space cannot be limited";
  XQTrimMemory();
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  rlimit earlier;
  ASSERT_EQ(getrlimit(RLIMIT_AS, &earlier), 0);
  const rlimit limit = {pages * 4096 + 300 * kMiB, earlier.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
  XQFree(XQMAlloc(200 * kMiB));
  EXPECT_NO_THROW(XQFree(XQMAlloc(280 * kMiB)));
  EXPECT_THROW(XQFree(XQMAlloc(400 * kMiB)), XQException);
  ASSERT_EQ(setrlimit(RLIMIT_AS, &earlier), 0);
}

}  // namespace
