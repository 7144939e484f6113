#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

#include "zuml/core/export.h"

/// A block of at least `size` bytes, contents undefined, that starts at a multiple of 64 bytes; a
/// size of 0 gives a valid block too. The result is never null: where memory runs out, kept blocks
/// are given back first, and then XQException "XQMAlloc: out of memory (%zu bytes)" is thrown.
///
/// Pixels and scratch arrays come from here. A block that the process has not touched yet costs
/// more in page faults than most pixel operations do, so a few large blocks are kept when they are
/// freed and handed out again, and very large ones ask for huge pages. Any thread may call, and a
/// block may be freed by another thread than the one that took it.
[[nodiscard]] ZUML_API void* XQMAlloc(std::size_t size);

/// Gives back a block of XQMAlloc. Null is allowed and does nothing.
ZUML_API void XQFree(void* block) noexcept;

/// Gives all kept blocks back to the system: at most 16 blocks and 512 MiB in all.
ZUML_API void XQTrimMemory() noexcept;

namespace zuml_detail {

struct FreeBlock {
  void operator()(void* block) const noexcept { XQFree(block); }
};

/// The owner of a scratch array of plain data. Indexed like an array; `get()` is its address.
template <class T>
using ScratchBlock = std::unique_ptr<T[], FreeBlock>;

/// A scratch array of `count` elements, contents undefined.
template <class T>
[[nodiscard]] ScratchBlock<T> MakeScratch(std::size_t count) {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
  static_assert(alignof(T) <= 64);
  // No block is that large, so the allocation reports the failure.
  const std::size_t size = count <= SIZE_MAX / sizeof(T) ? count * sizeof(T) : SIZE_MAX;
  return ScratchBlock<T>(static_cast<T*>(XQMAlloc(size)));
}

/// A scratch array of `count` elements, all bytes 0.
template <class T>
[[nodiscard]] ScratchBlock<T> MakeZeroedScratch(std::size_t count) {
  ScratchBlock<T> scratch = MakeScratch<T>(count);
  std::memset(static_cast<void*>(scratch.get()), 0, count * sizeof(T));
  return scratch;
}

}  // namespace zuml_detail
