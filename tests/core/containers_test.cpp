#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <random>
#include <string>

#include "zuml/core/localposition.h"
#include "zuml/core/xqcircularlist.h"
#include "zuml/core/xqsimplelist.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumbasepoint.h"

using Point = ZUMBasePoint<int>;

// Every member compiles for each kind of element, not only those called below.
template class ZUMArray<bool>;
template class ZUMArray<long long>;
template class ZUMArray<Point>;
template class XQSimpleList<bool>;
template class XQSimpleList<Point*>;
template class XQSimpleList<XQSimpleCircularDblList<Point>>;
template class XQSimpleCircularDblList<Point>;

namespace {

static_assert(sizeof(ZUMArray<double>) == 4 * sizeof(void*));
static_assert(sizeof(LocalPosition<unsigned char>) == 16 && sizeof(LocalPosition<double>) == 16);
static_assert(std::forward_iterator<XQSimpleList<int>::iterator>);
static_assert(std::forward_iterator<XQSimpleCircularDblList<int>::const_iterator>);
template <class T>
concept ReadsWithoutWriting =
    std::is_const_v<std::remove_reference_t<decltype(*std::declval<const T&>().begin())>>;
static_assert(ReadsWithoutWriting<ZUMArray<int>> && ReadsWithoutWriting<XQSimpleList<int>> &&
              ReadsWithoutWriting<XQSimpleCircularDblList<int>>);

template <class T>
struct ArrayProbe : ZUMArray<T> {
  using ZUMArray<T>::ZUMArray;
  std::ptrdiff_t Capacity() const { return this->capacityEnd_ - this->start_; }
};

TEST(ZUMArray, IndicesFollowTheFirstOne) {
  ZUMArray<int> a(-3, 3);
  EXPECT_EQ(7u, a.GetLength());
  EXPECT_EQ(a.GetStart(), &a[-3]);
  EXPECT_EQ(a.GetBaseElements(), &a[0]);
  EXPECT_EQ(2, a.ElementIndex(a.GetEnd() - 2));
  for (int i = -3; i <= 3; ++i) a[i] = 10 * i;
  for (int i = 4; i < 2000; ++i) a.Put(10 * i);
  const ZUMArray<int> copy = a;
  EXPECT_EQ(-3, copy.GetFirstIndex());
  EXPECT_EQ(1999, copy.GetLastIndex());
  for (int i = -3; i < 2000; ++i) ASSERT_EQ(10 * i, copy[i]);
  const int* const fifth = copy.GetStart() + 8;
  EXPECT_TRUE(fifth == &copy[5u] && fifth == &copy[5L] && fifth == &copy[5UL] &&
              fifth == &copy[5LL] && fifth == &copy[5ULL] && fifth == &copy[short{5}]);
  EXPECT_EQ(fifth - 6, &copy[-1LL]);
}

TEST(ZUMArray, AnEmptyArrayKeepsItsFirstIndex) {
  for (int last : {4, 3, -2000000000}) {
    const ZUMArray<Point> a(5, last);
    EXPECT_EQ(0u, a.GetLength());
    ZUMArray<Point> b = a;
    b.Put({1, 2});
    EXPECT_EQ(5, b.GetLastIndex());
    EXPECT_EQ(Point(1, 2), b[5]);
  }
  ZUMArray<int> none, other;
  none = other;
  EXPECT_EQ(-1, none.GetLastIndex());
}

TEST(ZUMArray, CapacityGrowsByTheRule) {
  ArrayProbe<int> a;
  for (int capacity : {1000, 3000, 7000, 15000}) {
    a.Put(capacity);
    EXPECT_EQ(capacity, a.Capacity());
    while (a.GetEnd() != a.GetStart() + capacity) *a.Put() = 7;
  }
  a.Put(a[14999]);  // The element leaves with the old block.
  EXPECT_EQ(7, a[15000]);

  ArrayProbe<int> b(-1, 2);
  b.Reserve(10);
  EXPECT_EQ(14, b.Capacity());
  const int* const block = b.GetStart();
  b.Reserve(10);
  for (int i = 0; i < 9; ++i) b.UnsafePut(i);
  *b.UnsafePut() = 9;
  EXPECT_EQ(9, b[12]);
  b.SetEnd(b.GetStart() + 1);
  EXPECT_EQ(-1, b.GetLastIndex());
  b.Clear();
  b.Put(42);
  EXPECT_EQ(42, b[-1]);
  EXPECT_EQ(block, b.GetStart());
  EXPECT_EQ(14, b.Capacity());
  EXPECT_EQ(1, ArrayProbe<int>(b).Capacity());
}

TEST(ZUMArray, AssignmentAndMove) {
  ZUMArray<int> a(1, 2), b(7, 9);
  a[1] = 10, a[2] = 20;
  b = a;
  b = *&b;
  const int* const block = b.GetStart();
  EXPECT_NE(a.GetStart(), block);
  ZUMArray<int> c = std::move(b);
  a = std::move(c);
  EXPECT_EQ(block, a.GetStart());
  EXPECT_EQ(20, a[2]);
  b.Put(1);
  EXPECT_EQ(0, b.GetLastIndex());
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
List MakeList(const Words& words) {
  List list;
  for (const std::string& word : words) list.PushBack(word);
  return list;
}

// The list holds these words, and a ring also backwards.
template <class List>
void ExpectWords(const Words& words, const List& list) {
  ASSERT_EQ(words, Words(list.begin(), list.end()));
  ASSERT_EQ(words.empty(), list.EmptyP());
  ASSERT_EQ(static_cast<int>(words.size()), list.Length());
  if constexpr (std::is_same_v<List, Ring>) {
    const auto* node = list.GetHeadNode();
    for (auto word = words.rbegin(); word != words.rend(); ++word) {
      node = node->previous;
      ASSERT_EQ(*word, node->value);
    }
    ASSERT_EQ(list.GetHeadNode(), node);
  }
}

template <class List>
class Lists : public testing::Test {};
using ListTypes = testing::Types<Simple, Ring>;
TYPED_TEST_SUITE(Lists, ListTypes);

// What is added to a list after it was copied, moved or emptied shows whether its links are whole.
TYPED_TEST(Lists, CopiesAndMovesAreWhole) {
  for (const Words& words : {Words{}, Words{"a"}, Words{"a", "b", "c"}}) {
    Words longer = words;
    longer.push_back("z");
    TypeParam list = MakeList<TypeParam>(words), swapped, assigned = MakeList<TypeParam>({"x"});
    TypeParam copy = list;
    assigned = list = *&list;
    TypeParam moved = std::move(list), target = MakeList<TypeParam>({"x", "y"});
    target = std::move(moved);
    std::swap(target, swapped);
    for (TypeParam* full : {&copy, &assigned, &swapped}) {
      full->PushBack("z");
      ExpectWords(longer, *full);
    }
    for (TypeParam* empty : {&list, &moved, &target}) {
      ExpectWords({}, *empty);
      empty->PushBack("z");
      ExpectWords({"z"}, *empty);
    }
    EXPECT_TRUE(copy == assigned);
    EXPECT_EQ(words.empty(), copy == list);
    copy.Concat(copy);
    copy.Concat(list);  // All of one, nothing, and into an empty list.
    copy.Concat(list);
    list.Concat(copy);
    ExpectWords({}, copy);
    longer.push_back("z");
    ExpectWords(longer, list);
  }
}

TYPED_TEST(Lists, RandomOperationsAgainstTheStandardList) {
  std::mt19937 random(5);
  TypeParam list;
  Words words;
  for (int step = 0; step < 3000; ++step) {
    const std::string word = std::to_string(step);
    const auto operation = random() % (words.empty() ? 2 : 6);
    if (operation == 0) {
      list.PushFront(word), words.push_front(word);
    } else if (operation < 4) {
      list.PushBack(word), words.push_back(word);
    } else if (operation == 4) {
      ASSERT_EQ(words.front(), list.PopFrontElement());
      words.pop_front();
      if (!words.empty()) list.PopFront(), words.pop_front();
    } else {
      auto at = words.begin();
      auto* node = list.GetHeadNode();
      for (auto k = random() % words.size(); k > 0; --k) ++at, node = node->next;
      ASSERT_TRUE(list.MemberP(&node->value) && list.MemberP(*at));
      ASSERT_FALSE(list.MemberP(&*at) || list.MemberP(word));
      if constexpr (std::is_same_v<TypeParam, Ring>) {
        list.InsertAfter(word, node), words.insert(std::next(at), word);
        if (at != words.begin()) list.InsertBefore(word, node), words.insert(at, word);
        list.Del(node), words.erase(at);
      } else if (step % 2 == 0) {
        list.Del(&node->value), words.erase(at);
      } else {
        list.Del(node->value), words.erase(at);
      }
    }
    ExpectWords(words, list);
    if (this->HasFatalFailure()) return;
  }
}

TEST(XQLists, Errors) {
  Ring ring;
  Simple list;
  const std::string a = list.PushBack("b") + "a";
  Simple empty;
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"GetHead: List empty", [&] { ring.GetHead(); }},
      {"GetBack: List empty", [&] { ring.GetBack(); }},
      {"PopBackElement: Empty list", [&] { ring.PopBackElement(); }},
      {"PopFrontElement: Empty list", [&] { ring.PopFrontElement(); }},
      {"PopBack: Empty list", [&] { ring.PopBack(); }},
      {"PopFront: Empty list", [&] { ring.PopFront(); }},
      {"GetFront: List empty", [&] { empty.GetFront(); }},
      {"PopFrontElement: Empty list", [&] { empty.PopFrontElement(); }},
      {"PopFront: Empty list", [&] { empty.PopFront(); }},
      {"XQSimpleList::Del No se ha podido borrar el elemento por direccion", [&] { list.Del(&a); }},
      {"XQSimpleList::Del No se ha podido borrar el elemento por igualdad", [&] { list.Del(a); }},
  };
  for (const auto& [text, operation] : cases) {
    try {
      operation();
      ADD_FAILURE() << "nothing was thrown instead of " << text;
    } catch (const XQException& e) {
      EXPECT_STREQ(text, e.what());
    }
  }
}

TEST(XQSimpleCircularDblList, BothEnds) {
  Ring ring;
  ring.PushFront("a");
  EXPECT_EQ(&ring.GetHead(), &ring.GetBack());
  ring.InsertBefore("b", ring.GetHeadNode());
  ring.Append(ring);
  ExpectWords({"a", "b", "a", "b"}, ring);
  EXPECT_EQ("b", ring.PopBackElement());
  ring.PopBack();
  ExpectWords({"a", "b"}, ring);
  EXPECT_TRUE(ring != MakeList<Ring>({"b", "a"}) && ring != MakeList<Ring>({"a"}));
}

}  // namespace
