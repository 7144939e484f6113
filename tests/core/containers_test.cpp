#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <list>
#include <string>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/xqcircularlist.h"
#include "zuml/core/xqsimplelist.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumbasepoint.h"

using Point = ZUMBasePoint<int>;

// Every member compiles for each kind of element, not only those called below.
template class ZUMArray<bool>;
template class XQSimpleList<XQSimpleCircularDblList<Point>>;

namespace {

struct ArrayProbe : ZUMArray<Point> {
  using ZUMArray<Point>::ZUMArray;
  std::size_t Capacity() const { return capacity_end_ - start_; }
};

TEST(ZUMArray, RandomOperationsAgainstAVector) {
  zuml_test::Random random(4);
  for (const auto& [first, last] : {std::pair{0, -1}, {-3, 3}, {5, -2000000000}}) {
    ArrayProbe array(first, last);
    std::fill(array.begin(), array.end(), Point());
    std::vector<Point> slow(array.GetLength());
    std::size_t room = slow.size();
    for (int step = 0; step < 9000; ++step) {
      const int operation = random.Int(0, 99);
      const Point point(step, operation);
      if (operation < 92) {
        if (slow.size() == room) room = 2 * room + 1000;
        // An element of the array itself leaves with the old block.
        slow.push_back(slow.empty() || operation < 50 ? point : slow.back());
        array.Put(slow.size() == 1 || operation < 50 ? point : array.GetEnd()[-1]);
      } else if (operation < 96) {
        if (room - slow.size() < 10) room = slow.size() + 10;
        array.Reserve(10);
        *array.UnsafePut() = point, slow.push_back(point);
      } else if (operation < 98) {
        ArrayProbe other = array;
        array = *&array;
        ASSERT_EQ(array.Capacity(), room);
        std::swap(array, other);
        room = slow.size();
      } else if (step % 30 == 0) {
        array.Clear(), slow.clear();
      }
      ASSERT_EQ(array.Capacity(), room);
      ASSERT_EQ(array.GetFirstIndex(), first);
      ASSERT_EQ(array.GetLastIndex(), first + static_cast<int>(slow.size()) - 1);
      if (slow.empty()) continue;
      const int i = random.Int(first, array.GetLastIndex());
      ASSERT_EQ(array[i], slow[static_cast<std::size_t>(i - first)]);
      ASSERT_TRUE(array.ElementIndex(&array[i]) == i && &array[0u] == array.GetBaseElements());
    }
    ASSERT_EQ(std::vector<Point>(array.begin(), array.end()), slow);
  }
}

TEST(ZUMArray, LastIndexMayBeTheGreatestInt) {
  constexpr int kMax = std::numeric_limits<int>::max();
  ZUMArray<bool> array(kMax - 1, kMax);
  array[kMax] = true;
  EXPECT_TRUE(array.GetFirstIndex() == kMax - 1 && array.GetLastIndex() == kMax);
  EXPECT_TRUE(array.GetEnd()[-1]);
}

TEST(ZUMArray, SortIsAscendingAndKeepsEqualElementsInOrder) {
  ZUMArray<Point> a(-50, 49);
  for (int i = -50; i < 50; ++i) a[i] = {(i * 37 + 5000) % 11, i};
  a.Sort([](const Point* p, const Point* q) { return p->x - q->x; });
  for (int i = -49; i < 50; ++i) ASSERT_LT(a[i - 1].x * 1000 + a[i - 1].y, a[i].x * 1000 + a[i].y);
}

using Simple = XQSimpleList<std::string>;
using Ring = XQSimpleCircularDblList<std::string>;
using Words = std::list<std::string>;

template <class List>
class Lists : public testing::Test {};
using ListTypes = testing::Types<Simple, Ring>;
TYPED_TEST_SUITE(Lists, ListTypes);

template <class List>
void ExpectWords(const Words& words, const List& list) {
  ASSERT_EQ(words, Words(list.begin(), list.end()));
  ASSERT_EQ(words.empty(), list.EmptyP());
}

// Lists are emptied often: an end that was not carried along shows at the next word.
TYPED_TEST(Lists, RandomOperationsAgainstTheStandardList) {
  zuml_test::Random random(5);
  TypeParam list, second;
  Words words, second_words;
  for (int step = 0; step < 20000; ++step) {
    const std::string word = std::to_string(step);
    const int operation = random.Int(0, 19);
    if (words.size() > 40) list.Clean(), words.clear();
    if (operation < 3) {
      list.PushFront(word), words.push_front(word);
    } else if (words.empty() || operation < 8) {
      ASSERT_EQ(word, list.PushBack(word));
      words.push_back(word);
    } else if (operation == 8) {
      second = list, second_words = words;
      list = *&list;
      ASSERT_TRUE(second == list);
    } else if (operation == 9) {
      std::swap(list, second), words.swap(second_words);
      ASSERT_EQ(list == second, words == second_words);
    } else if (operation == 10) {
      list.Concat(list);
      list.Concat(second), words.splice(words.end(), second_words);
      ExpectWords({}, second);
    } else if (operation < 15) {
      ASSERT_EQ(words.front(), list.PopFrontElement());
      words.pop_front();
      if (!words.empty()) list.PopFront(), words.pop_front();
    } else {
      auto at = words.begin();
      auto* node = list.GetHeadNode();
      for (auto k = random.Next() % words.size(); k > 0; --k) ++at, node = node->next;
      ASSERT_TRUE(list.MemberP(&node->value) && list.MemberP(*at));
      ASSERT_FALSE(list.MemberP(&*at) || list.MemberP(word));
      if constexpr (std::is_same_v<TypeParam, Ring>) {
        list.InsertAfter(word, node), words.insert(std::next(at), word);
        if (at != words.begin()) list.InsertBefore(word, node), words.insert(at, word);
        list.Del(node), words.erase(at);
        list.Append(list), words.insert(words.end(), words.begin(), words.end());
        ASSERT_EQ(words.back(), list.PopBackElement());
        list.PopBack(), words.pop_back(), words.pop_back();
      } else if (step % 2 == 0) {
        list.Del(&node->value), words.erase(at);
      } else {
        list.Del(node->value), words.erase(std::find(words.begin(), at, *at));
      }
    }
    ExpectWords(words, list);
    if (this->HasFatalFailure()) return;
  }
}

TEST(XQLists, Errors) {
  Ring ring;
  Simple list, empty;
  const std::string a = list.PushBack("b") + "a";
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"GetHead: List empty", [&] { ring.GetHead(); }},
      {"GetBack: List empty", [&] { ring.GetBack(); }},
      {"PopBackElement: Empty list", [&] { ring.PopBackElement(); }},
      {"PopFrontElement: Empty list", [&] { ring.PopFrontElement(); }},
      {"PopBack: Empty list", [&] { ring.PopBack(); }},
      {"PopFront: Empty list", [&] { ring.PopFront(); }},
      {"GetFront: List empty", [&] { empty.GetFront(); }},
      {"PopFront: Empty list", [&] { empty.PopFront(); }},
      {"XQSimpleList::Del No se ha podido borrar el elemento por direccion", [&] { list.Del(&a); }},
      {"XQSimpleList::Del No se ha podido borrar el elemento por igualdad", [&] { list.Del(a); }},
  };
  for (const auto& [text, operation] : cases) EXPECT_EQ(zuml_test::MessageOf(operation), text);
}

}  // namespace
