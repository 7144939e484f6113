#include "zuml/core/scratch.h"

#include <gtest/gtest.h>

#include <deque>
#include <limits>
#include <map>
#include <numeric>
#include <random>
#include <vector>

namespace {

static_assert(sizeof(ZUMBlockFIFO<void*>::Block) == 8008);  // A link and 1000 records.

template <class Queue>
void ExpectQueueOrder() {
  std::mt19937 random(3);
  Queue queue;
  std::deque<int> slow;
  for (int step = 0; step < 5000; ++step) {
    // Long runs of writes and of reads, so that the queue empties at every place of a block.
    const bool filling = (step / 50) % 2 == 0;
    if (filling != (random() % 3 == 0)) {
      queue.Push(step), slow.push_back(step);
    } else if (!slow.empty()) {
      ASSERT_EQ(slow.front(), queue.Pop());
      slow.pop_front();
    }
    if (step % 997 == 0) queue.Clear(), slow.clear();
    ASSERT_EQ(slow.empty(), queue.EmptyP());
  }
}

TEST(ZUMBlockFIFO, ServesInTheOrderOfArrival) {
  ExpectQueueOrder<ZUMBlockFIFO<int, 1>>();
  ExpectQueueOrder<ZUMBlockFIFO<int, 7>>();
  ExpectQueueOrder<ZUMBlockFIFO<int>>();
}

TEST(ZUMGrowingStack, DoublesAndKeepsTheOrderOfArrival) {
  for (std::size_t room : {0u, 1u, 10u}) {
    ZUMGrowingStack<int> stack(room);
    stack.Push(0);
    // The record pushed leaves with the old block.
    for (int i = 1; i < 100; ++i) stack.Push(stack.Top()), stack.end()[-1] = i;
    for (int i = 0; i < 100; ++i) ASSERT_EQ(i, stack.begin()[i]);
    for (int i = 99; i >= 10; --i) ASSERT_EQ(i, stack.Pop());
    EXPECT_EQ(10u, stack.GetLength());
  }
}

struct Entry {
  double key;
  int id;
};
using Smallest = ZUMSmallestFirst<&Entry::key>;

// The rules of the heap by exchanges of neighbours.
struct SlowHeap {
  std::vector<Entry> entries{Entry{}};
  bool BetterP(std::size_t a, std::size_t b) const { return entries[a].key < entries[b].key; }
  void Push(const Entry& entry) {
    entries.push_back(entry);
    for (std::size_t i = entries.size() - 1; i > 1 && BetterP(i, i / 2); i /= 2) {
      std::swap(entries[i], entries[i / 2]);
    }
  }
  Entry Pop() {
    const Entry top = entries[1];
    entries[1] = entries.back();
    entries.pop_back();
    for (std::size_t i = 1; 2 * i < entries.size();) {
      const std::size_t right = 2 * i + 1;
      const std::size_t child = right < entries.size() && BetterP(right, 2 * i) ? right : 2 * i;
      if (!BetterP(child, i)) break;
      std::swap(entries[i], entries[child]);
      i = child;
    }
    return top;
  }
};

TEST(ZUMArrayHeap, EqualKeysComeInTheOrderOfTheRules) {
  std::mt19937 random(9);
  for (unsigned range : {1u, 3u, 1000u}) {
    ZUMArrayHeap<Entry, Smallest> heap(0);
    SlowHeap slow;
    for (int step = 0; step < 4000; ++step) {
      if (random() % 5 < 3) {
        const Entry entry{static_cast<double>(random() % range), step};
        heap.Push(entry), slow.Push(entry);
      } else if (!heap.EmptyP()) {
        ASSERT_EQ(slow.Pop().id, heap.Pop().id);
      }
      ASSERT_EQ(slow.entries.size() - 1, heap.GetLength());
    }
    heap.Clear();
    heap.Push({5000, 6});
    EXPECT_EQ(6, heap.Pop().id);
  }
}

TEST(ZUMArrayHeap, SentinelsEndTheWayUp) {
  constexpr double inf = std::numeric_limits<double>::infinity();
  ZUMArrayHeap<Entry, Smallest> smallest(10);
  for (double key : {0.0, inf, -inf, 1.0, -inf}) smallest.Push({key, 0});
  for (double key : {-inf, -inf, 0.0, 1.0, inf}) EXPECT_EQ(key, smallest.Pop().key);
  // Records that are addresses themselves bring a sentinel of their own.
  Entry sentinel{inf, 0}, low{1, 1}, high{2, 2};
  ZUMArrayHeap<Entry*, ZUMGreatestFirst<&Entry::key>> entries(100, &sentinel);
  for (Entry* entry : {&low, &high}) entries.Push(entry);
  EXPECT_EQ(&high, entries.Pop());
}

struct Waiting {
  short* pixel;
  int id;
  unsigned sequence;
};

int LevelOf(const Waiting& waiting) { return *waiting.pixel; }

// Best key first, equal keys by arrival, also when a better record comes than the last one served.
template <class Before, class Queue>
void ExpectArrivalOrder(Queue&& queue) {
  std::mt19937 random(17);
  std::vector<short> pixels(51);
  std::iota(pixels.begin(), pixels.end(), short{-20});
  std::multimap<int, int, Before> slow;
  for (int step = 0; step < 20000; ++step) {
    const bool filling = (step / 3000) % 2 == 0;
    if (filling != (random() % 3 == 0)) {
      short& pixel = pixels[random() % pixels.size()];
      queue.Push({&pixel, step, 99});
      slow.emplace(pixel, step);
    } else if (!slow.empty()) {
      ASSERT_EQ(slow.begin()->second, queue.Pop().id);
      slow.erase(slow.begin());
    }
    ASSERT_EQ(slow.size(), queue.GetLength());
  }
}

TEST(ArrivalOrder, HeapsAndLevelQueuesServeAlike) {
  using Lowest = ZUMSmallestFirst<&Waiting::pixel>;
  using Highest = ZUMGreatestFirst<&Waiting::pixel>;
  short best = 30;
  ExpectArrivalOrder<std::less<>>(ZUMFIFOHeap<Waiting, Lowest>(10));
  ExpectArrivalOrder<std::greater<>>(
      ZUMFIFOHeap<Waiting, ZUMGreatestFirst<&LevelOf>>(10, Waiting{&best, 0, 50}));
  ExpectArrivalOrder<std::less<>>(ZUMLevelQueue<Waiting, Lowest>(-20, 30));
  ExpectArrivalOrder<std::greater<>>(ZUMLevelQueue<Waiting, Highest, 3>(-20, 30));
  EXPECT_TRUE((ZUMLevelQueue<Waiting, Lowest>(1, 0).EmptyP()));

  // Equal to the sentinel: neither the key nor the sequence is better.
  ZUMFIFOHeap<Waiting, Lowest> heap(10);
  best = std::numeric_limits<short>::min();
  for (int id : {1, 2}) heap.Push({&best, id, 0});
  for (unsigned sequence : {1u, 2u}) EXPECT_EQ(sequence, heap.Pop().sequence);
}

}  // namespace
