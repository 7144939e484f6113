/// Scratch structures of the floods and labellings: a queue, a stack, and the priority queues whose
/// order of service is part of a flood's result. Each operation makes them for a record of its own,
/// lets them live for one call, and shares them with no other thread.
///
/// A record is plain data, as a rule the addresses of one pixel in the rasters that the flood
/// walks; records lie in memory from `XQMAlloc`. The queues share the names `Push`, `Pop` and
/// `EmptyP`, so that one flood can be written over a queue policy. `Pop`, `Top` and `Front` need a
/// structure that is not empty.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "zuml/core/xqmemory.h"

/// First in, first out. The queue is a chain of blocks, each one link and N records; a write that
/// fills a block takes the next one, a read that leaves a block gives it back, so that the memory
/// is bound by the records that wait. No record moves once stored. A queue takes its first block at
/// its first write: a level queue over 16-bit pixels has 65,536 of them and uses a few.
template <class Record, std::size_t N = 1000>
class ZUMBlockFIFO {
  static_assert(std::is_trivially_copyable_v<Record>, "a record is plain data");
  static_assert(N > 0);

 public:
  struct Block {
    Block* next;
    Record records[N];
  };

  ZUMBlockFIFO() = default;
  ZUMBlockFIFO(const ZUMBlockFIFO&) = delete;
  ZUMBlockFIFO& operator=(const ZUMBlockFIFO&) = delete;
  ~ZUMBlockFIFO() {
    Clear();
    XQFree(write_block_);
  }

  bool EmptyP() const { return read_ == write_; }

  /// The oldest record.
  const Record& Front() const { return *read_; }

  void Push(const Record& record) {
    if (write_ == write_last_) [[unlikely]] {
      PushLast(record);
    } else {
      *write_++ = record;
    }
  }

  /// Removes the oldest record and returns it.
  Record Pop() {
    const Record record = *read_;
    if (++read_ == read_block_->records + N) [[unlikely]] {
      LeaveBlock();
    }
    return record;
  }

  /// Empties the queue. One block stays for the next use.
  void Clear() {
    while (read_block_ != write_block_) LeaveBlock();
    read_ = write_ = write_block_ == nullptr ? nullptr : write_block_->records;
  }

 private:
  // The record takes the last place of the write block, or there is no block yet. The new block is
  // taken first: if that fails, the queue is as it was.
  void PushLast(const Record& record) {
    Block* const block = static_cast<Block*>(XQMAlloc(sizeof(Block)));
    block->next = nullptr;
    const bool first = write_block_ == nullptr;
    if (first) {
      read_block_ = block;
      read_ = block->records;
    } else {
      *write_ = record;
      write_block_->next = block;
    }
    write_block_ = block;
    write_ = block->records;
    write_last_ = block->records + (N - 1);
    if (first) Push(record);
  }

  // A block that was filled has a next one.
  void LeaveBlock() {
    Block* const left = read_block_;
    read_block_ = left->next;
    read_ = read_block_->records;
    XQFree(left);
  }

  Block* read_block_ = nullptr;
  Record* read_ = nullptr;
  Block* write_block_ = nullptr;
  Record* write_ = nullptr;
  Record* write_last_ = nullptr;  // The last place of the write block.
};

/// Last in, first out, in one block that doubles when it is full. Also the list of visited pixels
/// by which a flood undoes its marks: the records stand in the order of arrival between `begin` and
/// `end`.
template <class Record>
class ZUMGrowingStack {
 public:
  /// A stack with room for that many records, 1000 or 10000 as a rule.
  explicit ZUMGrowingStack(std::size_t room)
      : block_(zuml_detail::MakeScratch<Record>(room)),
        end_(block_.get()),
        capacity_end_(block_.get() + room) {}
  ZUMGrowingStack(const ZUMGrowingStack&) = delete;
  ZUMGrowingStack& operator=(const ZUMGrowingStack&) = delete;

  bool EmptyP() const { return end_ == begin(); }
  std::size_t GetLength() const { return static_cast<std::size_t>(end_ - begin()); }

  const Record& Top() const { return end_[-1]; }

  /// The record may be one of this stack.
  void Push(const Record& record) {
    if (end_ == capacity_end_) [[unlikely]] {
      const Record copy = record;
      Double();
      *end_++ = copy;
    } else {
      *end_++ = record;
    }
  }

  /// Removes the newest record and returns it.
  Record Pop() { return *--end_; }

  /// Empties the stack; the block stays.
  void Clear() { end_ = begin(); }

  /// The records from the oldest to the newest.
  Record* begin() { return block_.get(); }
  Record* end() { return end_; }
  const Record* begin() const { return block_.get(); }
  const Record* end() const { return end_; }

 private:
  void Double() {
    const std::size_t room = EmptyP() ? 1 : 2 * GetLength();
    auto block = zuml_detail::MakeScratch<Record>(room);
    end_ = std::copy(begin(), end_, block.get());
    capacity_end_ = block.get() + room;
    block_ = std::move(block);
  }

  zuml_detail::ScratchBlock<Record> block_;
  Record* end_;
  Record* capacity_end_;
};

namespace zuml_detail {

/// An order of service by a key of the record. Key is a member of the record, or a function of it;
/// a key that is an address stands for the value there.
template <auto Key, bool kSmallest>
struct KeyOrder {
  template <class Record>
  static auto GetKey(const Record& record) {
    const auto& key = std::invoke(Key, record);
    if constexpr (std::is_pointer_v<std::remove_cvref_t<decltype(key)>>) {
      return *key;
    } else {
      return key;
    }
  }

  template <class K>
  static constexpr bool BetterKeyP(const K& a, const K& b) {
    return kSmallest ? a < b : b < a;
  }

  template <class Record>
  static bool BetterP(const Record& a, const Record& b) {
    return BetterKeyP(GetKey(a), GetKey(b));
  }

  /// A record with the best key there is and zeros besides; the key has to be a member. A floating
  /// key is infinite, so that infinite pixels end a way up too.
  template <class Record>
  static Record MakeSentinel() {
    using K = decltype(GetKey(std::declval<const Record&>()));
    using Limits = std::numeric_limits<K>;
    constexpr K kHighest = Limits::has_infinity ? Limits::infinity() : Limits::max();
    constexpr K kLowest = Limits::has_infinity ? -Limits::infinity() : Limits::lowest();
    // Not const, since a record may hold addresses of writable pixels; nothing writes to it.
    static K best = kSmallest ? kLowest : kHighest;
    Record record{};
    if constexpr (std::is_pointer_v<std::remove_reference_t<decltype(record.*Key)>>) {
      record.*Key = &best;
    } else {
      record.*Key = best;
    }
    return record;
  }
};

}  // namespace zuml_detail

/// Order of service by the smallest key. `ZUMSmallestFirst<&Entry::key>` compares a field,
/// `ZUMSmallestFirst<&Entry::pixel>` the pixel values at the addresses in a field, and
/// `ZUMSmallestFirst<&MeanOf>` the results of a function of the record.
template <auto Key>
using ZUMSmallestFirst = zuml_detail::KeyOrder<Key, true>;

/// Order of service by the greatest key.
template <auto Key>
using ZUMGreatestFirst = zuml_detail::KeyOrder<Key, false>;

/// Makes an order serve equal keys by arrival: of two records with equal keys the one with the
/// smaller `sequence` is the better one.
template <class KeyOrder>
struct ZUMArrivalOrder : KeyOrder {
  template <class Record>
  static bool BetterP(const Record& a, const Record& b) {
    const auto key_a = KeyOrder::GetKey(a);
    const auto key_b = KeyOrder::GetKey(b);
    return key_a == key_b ? a.sequence < b.sequence : KeyOrder::BetterKeyP(key_a, key_b);
  }
};

/// Priority queue: a binary heap in an array that doubles when it is full, with a sentinel at index
/// 0 and the best record at index 1.
///
/// Order has `static bool BetterP(const Record&, const Record&)`, a strict comparison. Equal
/// records are served in an order that these rules fix, and on which the results of floods rest: a
/// pushed record moves up while it is strictly better than its parent; a removal moves the last
/// record to the root's place and down, to the right child only if that is strictly better than the
/// left one, until the chosen child is not strictly better than the moved record.
///
/// The sentinel ends the way up without a test of the index: no pushed record may be better than
/// it. A key that is read through an address may change while the record waits; no record moves for
/// it before the next sift passes.
template <class Record, class Order>
class ZUMArrayHeap {
 public:
  /// A heap with room for that many records, with the sentinel of the order.
  explicit ZUMArrayHeap(std::size_t room = 1000)
      : ZUMArrayHeap(room, Order::template MakeSentinel<Record>()) {}

  ZUMArrayHeap(std::size_t room, const Record& sentinel) : entries_(room + 1) {
    entries_.Push(sentinel);
  }

  bool EmptyP() const { return GetLength() == 0; }
  std::size_t GetLength() const { return entries_.GetLength() - 1; }

  /// The best record.
  const Record& Top() const { return entries_.begin()[1]; }

  void Push(const Record& record) {
    const Record entry = record;
    entries_.Push(entry);
    Record* const heap = entries_.begin();
    std::size_t i = GetLength();
    for (; Order::BetterP(entry, heap[i / 2]); i /= 2) heap[i] = heap[i / 2];
    heap[i] = entry;
  }

  /// Removes the best record and returns it.
  Record Pop() {
    Record* const heap = entries_.begin();
    const Record top = heap[1];
    const Record moved = entries_.Pop();
    const std::size_t length = GetLength();
    std::size_t i = 1;
    for (std::size_t child = 2; child <= length; child = 2 * i) {
      // A branch: without one, 75,000 waiting records take 1.3 to 1.4 times as long.
      if (child < length && Order::BetterP(heap[child + 1], heap[child])) ++child;
      if (!Order::BetterP(heap[child], moved)) break;
      heap[i] = heap[child];
      i = child;
    }
    heap[i] = moved;
    return top;
  }

  /// Empties the heap; the block stays.
  void Clear() {
    const Record sentinel = *entries_.begin();
    entries_.Clear();
    entries_.Push(sentinel);
  }

 private:
  ZUMGrowingStack<Record> entries_;
};

/// A heap that serves equal keys in the order of arrival, as a level queue does. Record has a field
/// `sequence`, which `Push` fills from a counter that starts at 1. Its integer type has to count
/// the pushes of one flood.
template <class Record, class KeyOrder>
class ZUMFIFOHeap : private ZUMArrayHeap<Record, ZUMArrivalOrder<KeyOrder>> {
  using Heap = ZUMArrayHeap<Record, ZUMArrivalOrder<KeyOrder>>;

 public:
  explicit ZUMFIFOHeap(std::size_t room = 1000) : Heap(room) {}
  ZUMFIFOHeap(std::size_t room, const Record& sentinel) : Heap(room, WithSequence(sentinel, 0)) {}

  using Heap::Clear;
  using Heap::EmptyP;
  using Heap::GetLength;
  using Heap::Pop;
  using Heap::Top;

  void Push(const Record& record) { Heap::Push(WithSequence(record, next_++)); }

 private:
  using Sequence = decltype(Record::sequence);

  static Record WithSequence(Record record, Sequence sequence) {
    record.sequence = sequence;
    return record;
  }

  Sequence next_ = 1;
};

/// Priority queue for keys of a small range: one first-in, first-out queue per level, so that the
/// best level is served first and equal keys in the order of arrival, at a constant cost. A record
/// may be better than the one served last; it is then the next one. A level takes memory when it is
/// first written.
///
/// Order is `ZUMSmallestFirst` or `ZUMGreatestFirst` of an integer key.
template <class Record, class Order, std::size_t N = 100>
class ZUMLevelQueue {
 public:
  /// A queue for keys from `min` to `max`; no record may have another one.
  ZUMLevelQueue(int min, int max)
      : levels_(new Level[static_cast<std::size_t>(
            std::max(std::int64_t{max} - min + 1, std::int64_t{0}))]),
        min_(min) {}

  bool EmptyP() const { return length_ == 0; }
  std::size_t GetLength() const { return length_; }

  void Push(const Record& record) {
    const int level = Order::GetKey(record);
    LevelAt(level).Push(record);
    if (length_++ == 0 || Order::BetterKeyP(level, current_)) current_ = level;
  }

  /// Removes the oldest record of the best level that has one and returns it.
  Record Pop() {
    constexpr int kWorse = Order::BetterKeyP(0, 1) ? 1 : -1;
    while (LevelAt(current_).EmptyP()) current_ += kWorse;
    --length_;
    return LevelAt(current_).Pop();
  }

 private:
  using Level = ZUMBlockFIFO<Record, N>;

  Level& LevelAt(int level) { return levels_[static_cast<std::size_t>(level - min_)]; }

  std::unique_ptr<Level[]> levels_;
  int min_;
  int current_ = 0;         // No level that is better has a record.
  std::size_t length_ = 0;  // With one above 0, the way to the next record needs no bound.
};
