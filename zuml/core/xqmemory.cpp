#include "zuml/core/xqmemory.h"

#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>

#include "zuml/core/xqexception.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZUML_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZUML_ADDRESS_SANITIZER 1
#endif
#endif
#ifdef ZUML_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace {

constexpr std::size_t kAlignment = 64;
/// More cannot be addressed; it also keeps the sums below from overflowing.
constexpr std::size_t kLargest = std::size_t{1} << 47;

/// Stands just below the address that the caller gets.
struct Header {
  void* start;           // what malloc returned; not used by mappings
  std::size_t capacity;  // bytes from the caller's address on
};
static_assert(sizeof(Header) <= kAlignment);

Header* GetHeader(void* block) { return static_cast<Header*>(block) - 1; }

#ifdef ZUML_ADDRESS_SANITIZER

// Every block comes from the sanitizer and goes back to it, exactly as long as asked for and with
// the bytes in front of it poisoned, so that the sanitizer sees each step beside it.

std::size_t GetCapacity(std::size_t size) { return size; }

void* TakeFromSystem(std::size_t capacity) {
  void* start = nullptr;
  if (posix_memalign(&start, kAlignment, kAlignment + capacity) != 0) return nullptr;
  void* const block = static_cast<char*>(start) + kAlignment;
  *GetHeader(block) = {start, capacity};
  __asan_poison_memory_region(start, kAlignment);
  return block;
}

void ReturnToSystem(void* block) {
  char* const start = static_cast<char*>(block) - kAlignment;
  __asan_unpoison_memory_region(start, kAlignment);
  std::free(start);
}

void* TakeKept(std::size_t) { return nullptr; }
void Release(void* block) { ReturnToSystem(block); }
void TrimKept() {}

#else

constexpr std::size_t kPage = 4096;
constexpr std::size_t kHugePage = std::size_t{2} << 20;
/// From this capacity on a block is worth keeping.
constexpr std::size_t kKeptFrom = std::size_t{128} << 10;
/// From this capacity on a block is a mapping of its own that asks for huge pages.
constexpr std::size_t kMappedFrom = std::size_t{4} << 20;
constexpr std::size_t kMostKeptBlocks = 16;
constexpr std::size_t kMostKeptBytes = std::size_t{512} << 20;

constexpr std::size_t RoundUp(std::size_t value, std::size_t unit) {
  return (value + unit - 1) / unit * unit;
}

/// Blocks that can be kept come in whole pages, so that sizes that differ by little share them.
std::size_t GetCapacity(std::size_t size) { return size < kKeptFrom ? size : RoundUp(size, kPage); }

/// A mapping whose block starts at a huge page, the header lying in the small page before it:
/// an image of 2^n bytes then fills whole huge pages and touches no other.
void* MapBlock(std::size_t capacity) {
  const std::size_t length = capacity + kPage + kHugePage;
  void* const mapping =
      mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping == MAP_FAILED) return nullptr;
  char* const first = static_cast<char*>(mapping);
  const auto address = reinterpret_cast<std::uintptr_t>(mapping);
  char* const block = first + (RoundUp(address + kPage, kHugePage) - address);
  const auto before = static_cast<std::size_t>(block - kPage - first);
  if (before > 0) munmap(first, before);
  const std::size_t behind = length - before - kPage - capacity;
  if (behind > 0) munmap(block + capacity, behind);
  madvise(block, capacity, MADV_HUGEPAGE);  // a wish: small pages work as well
  return block;
}

void* TakeFromSystem(std::size_t capacity) {
  void* start = nullptr;
  void* block = nullptr;
  if (capacity >= kMappedFrom) {
    block = MapBlock(capacity);
    if (!block) return nullptr;
  } else {
    // malloc aligns to 16 bytes, so the header and the gap fit into 64 together.
    start = std::malloc(capacity + kAlignment);
    if (!start) return nullptr;
    const auto address = reinterpret_cast<std::uintptr_t>(start);
    const std::uintptr_t aligned = RoundUp(address + sizeof(Header), kAlignment);
    block = static_cast<char*>(start) + (aligned - address);
  }
  *GetHeader(block) = {start, capacity};
  return block;
}

void ReturnToSystem(void* block) {
  const Header header = *GetHeader(block);
  if (header.capacity >= kMappedFrom) {
    munmap(static_cast<char*>(block) - kPage, header.capacity + kPage);
  } else {
    std::free(header.start);
  }
}

/// The kept blocks, oldest first.
struct KeptBlocks {
  std::mutex mutex;
  std::array<void*, kMostKeptBlocks> blocks;
  std::size_t count;
  std::size_t bytes;
};

// Set up by the compiler and never destroyed: objects that live as long as the process use it.
constinit KeptBlocks kept{};

/// Takes one block out of the list, whose lock the caller holds.
void* TakeOut(std::size_t index) {
  void* const block = kept.blocks[index];
  std::copy(kept.blocks.begin() + index + 1, kept.blocks.begin() + kept.count,
            kept.blocks.begin() + index);
  --kept.count;
  kept.bytes -= GetHeader(block)->capacity;
  return block;
}

void* TakeKept(std::size_t capacity) {
  if (capacity < kKeptFrom) return nullptr;
  const std::lock_guard<std::mutex> lock(kept.mutex);
  std::size_t best = kept.count;
  std::size_t least = capacity + capacity / 4;
  for (std::size_t i = kept.count; i-- > 0;) {  // the newest first: its bytes may be in the cache
    const std::size_t offered = GetHeader(kept.blocks[i])->capacity;
    if (offered >= capacity && (offered < least || (offered == least && best == kept.count))) {
      best = i;
      least = offered;
    }
  }
  return best == kept.count ? nullptr : TakeOut(best);
}

/// Keeps a block or gives it back; the oldest blocks make room, since nobody has wanted their size.
void Release(void* block) {
  const std::size_t capacity = GetHeader(block)->capacity;
  if (capacity < kKeptFrom || capacity > kMostKeptBytes) {
    ReturnToSystem(block);
    return;
  }
  std::array<void*, kMostKeptBlocks> old;
  std::size_t n_old = 0;
  {
    const std::lock_guard<std::mutex> lock(kept.mutex);
    while (kept.count == kMostKeptBlocks || kept.bytes + capacity > kMostKeptBytes) {
      old[n_old++] = TakeOut(0);
    }
    kept.blocks[kept.count++] = block;
    kept.bytes += capacity;
  }
  std::for_each_n(old.begin(), n_old, ReturnToSystem);
}

void TrimKept() {
  std::array<void*, kMostKeptBlocks> all;
  std::size_t n_all = 0;
  {
    const std::lock_guard<std::mutex> lock(kept.mutex);
    while (kept.count > 0) all[n_all++] = TakeOut(kept.count - 1);
  }
  std::for_each_n(all.begin(), n_all, ReturnToSystem);
}

// A process that forks while another thread holds the lock would leave it locked in the child.
const int fork_handlers = pthread_atfork([] { kept.mutex.lock(); }, [] { kept.mutex.unlock(); },
                                         [] { kept.mutex.unlock(); });

#endif

}  // namespace

void* XQMAlloc(std::size_t size) {
  if (size <= kLargest) {
    const std::size_t capacity = GetCapacity(size);
    void* block = TakeKept(capacity);
    if (!block) block = TakeFromSystem(capacity);
    if (!block) {
      TrimKept();
      block = TakeFromSystem(capacity);
    }
    if (block) return block;
  }
  throw XQException("XQMAlloc: out of memory (%zu bytes)", size);
}

void XQFree(void* block) noexcept {
  if (block) Release(block);
}

void XQTrimMemory() noexcept { TrimKept(); }
