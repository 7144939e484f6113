#include "zuml/core/scratch.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <numeric>
#include <vector>

#include "tests/support/testimages.h"

namespace {

struct Entry {
  short* pixel;
  int id;
  unsigned sequence;
};
int LevelOf(const Entry& entry) { return *entry.pixel; }
using Lowest = ZUMSmallestFirst<&Entry::pixel>;
using Highest = ZUMGreatestFirst<&LevelOf>;

/// Best key first, equal keys by arrival.
template <class Before>
struct SlowLevels {
  std::multimap<int, int, Before> ids;
  void Push(const Entry& entry) { ids.emplace(*entry.pixel, entry.id); }
  int Pop() { return ids.extract(ids.begin()).mapped(); }
};

/// Short and long runs of writes and of reads, so that a queue empties at every place of a block,
/// and better records come than the one served last.
template <class Slow, class Queue>
void ExpectOrder(Queue&& queue, int keys) {
  zuml_test::Random random(3);
  std::vector<short> pixels(static_cast<std::size_t>(keys));
  std::iota(pixels.begin(), pixels.end(), short{-20});
  Slow slow;
  for (int step = 0, length = 0; step < 30000; ++step) {
    const bool filling = (step / (step < 8000 ? 50 : 3000)) % 2 == 0;
    if (filling != (random.Int(0, 2) == 0)) {
      const Entry entry{&pixels[static_cast<std::size_t>(random.Int(0, keys - 1))], step, 99};
      queue.Push(entry), slow.Push(entry), ++length;
    } else if (length > 0) {
      ASSERT_EQ(slow.Pop(), queue.Pop().id);
      --length;
    }
    if constexpr (requires { queue.Clear(); }) {
      if (step % 997 == 0) queue.Clear(), slow = Slow(), length = 0;
    }
    ASSERT_EQ(length == 0, queue.EmptyP());
  }
}

TEST(Scratch, OrderOfService) {
  static_assert(sizeof(ZUMBlockFIFO<void*>::Block) == 8008);  // A link and 1000 records.
  using Ascending = SlowLevels<std::less<>>;
  using Descending = SlowLevels<std::greater<>>;
  ExpectOrder<Ascending>(ZUMBlockFIFO<Entry, 1>(), 1);
  ExpectOrder<Ascending>(ZUMBlockFIFO<Entry, 7>(), 1);
  ExpectOrder<Ascending>(ZUMBlockFIFO<Entry>(), 1);
  short best = 30;
  ExpectOrder<Ascending>(ZUMFIFOHeap<Entry, Lowest>(10), 51);
  ExpectOrder<Descending>(ZUMFIFOHeap<Entry, Highest>(10, {&best, 0, 50}), 51);
  ExpectOrder<Ascending>(ZUMLevelQueue<Entry, Lowest>(-20, 30), 51);
  ExpectOrder<Descending>(ZUMLevelQueue<Entry, Highest, 3>(-20, 30), 51);
  EXPECT_TRUE((ZUMLevelQueue<Entry, Lowest>(1, 0).EmptyP()));
}

/// The order in which a plain heap serves records with these keys.
std::vector<int> ServedIds(std::vector<short> keys) {
  ZUMArrayHeap<Entry, Lowest> heap(0);
  for (short& key : keys) heap.Push({&key, static_cast<int>(&key - keys.data()), 0});
  std::vector<int> ids;
  while (!heap.EmptyP()) ids.push_back(heap.Pop().id);
  return ids;
}

TEST(Scratch, EqualKeysFollowTheRulesOfTheHeap) {
  // An equal record stays below its parent, and the last one goes to the root.
  EXPECT_EQ(ServedIds({5, 5, 5, 5}), (std::vector{0, 3, 2, 1}));
  // Of equal children the left one moves up.
  EXPECT_EQ(ServedIds({1, 2, 2, 3}), (std::vector{0, 1, 2, 3}));
}

TEST(Scratch, SentinelsEndTheWayUp) {
  struct Real {
    double key;
  };
  constexpr double inf = std::numeric_limits<double>::infinity();
  ZUMArrayHeap<Real, ZUMSmallestFirst<&Real::key>> smallest(10);
  for (const double key : {0.0, inf, -inf, 1.0, -inf}) smallest.Push({key});
  for (const double key : {-inf, -inf, 0.0, 1.0, inf}) EXPECT_EQ(key, smallest.Pop().key);
}

}  // namespace
