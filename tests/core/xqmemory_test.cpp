#include "zuml/core/xqmemory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/sanitizers.h"
#include "zuml/core/xqexception.h"

namespace {

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kMiB = 1024 * kKiB;

TEST(XQMAlloc, BlocksAreAlignedAndApart) {
  const std::size_t sizes[] = {0,          1,        64,           65,       128 * kKiB - 1,
                               128 * kKiB, 4 * kMiB, 4 * kMiB + 1, 7 * kMiB, 4 * kMiB - 1};
  std::vector<unsigned char*> blocks;
  for (const std::size_t size : sizes) {
    blocks.push_back(static_cast<unsigned char*>(XQMAlloc(size)));
    const bool is_huge = size >= 4 * kMiB && !kAddressSanitizer;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % (is_huge ? 2 * kMiB : 64), 0u);
    std::memset(blocks.back(), static_cast<int>(blocks.size()), size);
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    for (std::size_t k = 0; k < sizes[i]; ++k) ASSERT_EQ(blocks[i][k], i + 1) << sizes[i];
    XQFree(blocks[i]);
  }
}

TEST(XQMAlloc, TakesTheSmallestKeptBlockThatIsNotMuchTooLarge) {
  if (kAddressSanitizer) GTEST_SKIP() << "nothing is kept";
  for (const std::size_t unit : {128 * kKiB, 4 * kMiB}) {
    XQTrimMemory();
    void* const small = XQMAlloc(unit);
    void* const middle = XQMAlloc(unit / 8 * 9);
    void* const large = XQMAlloc(2 * unit);
    for (void* block : {large, middle, small}) XQFree(block);
    EXPECT_EQ(XQMAlloc(unit), small);
    EXPECT_EQ(XQMAlloc(unit), middle);
    void* const fresh = XQMAlloc(unit);  // the large block is more than a quarter too large
    EXPECT_EQ(XQMAlloc(unit / 4 * 7), large);
    for (void* block : {small, middle, large, fresh}) XQFree(block);
  }
}

TEST(XQMAlloc, KeepsABoundedNumberOfBlocksAndBytes) {
  if (kAddressSanitizer) GTEST_SKIP() << "nothing is kept";
  const auto is_mapped = [](void* block) { return msync(block, 4096, MS_ASYNC) == 0; };
  XQTrimMemory();
  const struct {
    std::size_t size;
    int freed;
    int kept;
  } cases[] = {{4 * kMiB, 20, 16}, {200 * kMiB, 3, 2}, {512 * kMiB, 1, 1}, {513 * kMiB, 1, 0}};
  for (const auto& c : cases) {
    std::vector<void*> blocks;
    for (int i = 0; i < c.freed; ++i) blocks.push_back(XQMAlloc(c.size));
    for (void* block : blocks) XQFree(block);
    for (int i = 0; i < c.freed; ++i) {  // the oldest ones had to go
      EXPECT_EQ(is_mapped(blocks[i]), i >= c.freed - c.kept) << c.size << ", " << i;
    }
    XQTrimMemory();
    for (void* block : blocks) EXPECT_FALSE(is_mapped(block)) << c.size;
  }
}

TEST(XQMAlloc, ThreadsHandBlocksToOneAnother) {
  std::array<std::atomic<std::size_t*>, 8> slots{};
  std::atomic<int> torn{0};
  const auto trade = [&](unsigned seed) {
    std::mt19937 random(seed);
    for (int i = 0; i < 2000; ++i) {
      // The block's first and last words tell its size to whoever frees it.
      const std::size_t words = 2 + random() % (i % 8 == 0 ? 700000 : 500);
      auto* block = static_cast<std::size_t*>(XQMAlloc(words * sizeof(std::size_t)));
      block[0] = block[words - 1] = words;
      block = slots[random() % slots.size()].exchange(block);
      if (block && block[block[0] - 1] != block[0]) ++torn;
      XQFree(block);
    }
  };
  std::vector<std::thread> threads;
  for (unsigned seed = 1; seed <= 4; ++seed) threads.emplace_back(trade, seed);
  for (std::thread& thread : threads) thread.join();
  for (auto& slot : slots) XQFree(slot.load());
  EXPECT_EQ(torn, 0);
}

TEST(XQMAlloc, RefusesSizesThatNoMachineHas) {
  for (const std::size_t size : {SIZE_MAX, SIZE_MAX / 2}) {
    try {
      XQFree(XQMAlloc(size));
      ADD_FAILURE() << size;
    } catch (const XQException& failure) {
      EXPECT_EQ(failure.what(), "XQMAlloc: out of memory (" + std::to_string(size) + " bytes)");
    }
  }
  EXPECT_THROW(zuml_detail::MakeZeroedScratch<double>(SIZE_MAX / 8 + 2).reset(), XQException);
}

TEST(XQMAlloc, GivesKeptBlocksBackBeforeItFails) {
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
