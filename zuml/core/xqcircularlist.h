/// A doubly linked ring: closed sequences, such as the points of a contour.
#pragma once

#include <algorithm>
#include <iterator>
#include <utility>

#include "zuml/core/nodeiterator.h"
#include "zuml/core/xqexception.h"

/// Doubly linked list whose nodes form a ring: the head's previous node is the last one. Elements
/// never move, so that their addresses hold until they are removed. Nodes come from the ordinary
/// heap. No locks.
template <class T>
class XQSimpleCircularDblList {
 public:
  struct Node {
    T value;
    Node* next;
    Node* previous;
  };

  using value_type = T;
  using iterator = zuml_detail::NodeIterator<Node, T>;
  using const_iterator = zuml_detail::NodeIterator<Node, const T>;

  XQSimpleCircularDblList() = default;

  /// Copies the elements in order.
  XQSimpleCircularDblList(const XQSimpleCircularDblList& other) : XQSimpleCircularDblList() {
    for (const T& value : other) PushBack(value);
  }

  /// Takes the nodes of the other, which ends empty.
  XQSimpleCircularDblList(XQSimpleCircularDblList&& other) noexcept
      : head_(std::exchange(other.head_, nullptr)) {}

  XQSimpleCircularDblList& operator=(const XQSimpleCircularDblList& other) {
    if (this != &other) *this = XQSimpleCircularDblList(other);
    return *this;
  }

  XQSimpleCircularDblList& operator=(XQSimpleCircularDblList&& other) noexcept {
    if (this != &other) {
      Clean();
      head_ = std::exchange(other.head_, nullptr);
    }
    return *this;
  }

  ~XQSimpleCircularDblList() { Clean(); }

  /// Removes all elements.
  void Clean() {
    while (head_ != nullptr) Del(head_);
  }

  bool EmptyP() const { return head_ == nullptr; }

  /// The number of elements, by a walk around the ring.
  int Length() const { return static_cast<int>(std::distance(begin(), end())); }

  /// The head node, null in an empty list.
  Node* GetHeadNode() const { return head_; }

  /// The first element. Throws "GetHead: List empty".
  T& GetHead() { return RequireHead("GetHead: List empty")->value; }
  const T& GetHead() const { return RequireHead("GetHead: List empty")->value; }

  /// The last element. Throws "GetBack: List empty".
  T& GetBack() { return RequireHead("GetBack: List empty")->previous->value; }
  const T& GetBack() const { return RequireHead("GetBack: List empty")->previous->value; }

  /// One turn around the ring, from the head.
  iterator begin() { return {head_, head_}; }
  iterator end() { return {}; }
  const_iterator begin() const { return {head_, head_}; }
  const_iterator end() const { return {}; }

  /// Adds an element at the end, which is before the head, and returns it where it is stored.
  T& PushBack(const T& value) {
    Node* const node = MakeNodeBefore(head_, value);
    if (head_ == nullptr) head_ = node;
    return node->value;
  }

  /// Adds an element as the new head and returns it where it is stored.
  T& PushFront(const T& value) {
    head_ = MakeNodeBefore(head_, value);
    return head_->value;
  }

  /// Adds an element next to a node of this list. The head stays: an element before it is the last.
  void InsertAfter(const T& value, Node* node) { MakeNodeBefore(node->next, value); }
  void InsertBefore(const T& value, Node* node) { MakeNodeBefore(node, value); }

  /// Removes the last element and returns it. Throws "PopBackElement: Empty list".
  T PopBackElement() { return Extract(RequireHead("PopBackElement: Empty list")->previous); }

  /// Removes the first element and returns it. Throws "PopFrontElement: Empty list".
  T PopFrontElement() { return Extract(RequireHead("PopFrontElement: Empty list")); }

  /// Removes the last element. Throws "PopBack: Empty list".
  void PopBack() { Del(RequireHead("PopBack: Empty list")->previous); }

  /// Removes the first element. Throws "PopFront: Empty list".
  void PopFront() { Del(RequireHead("PopFront: Empty list")); }

  /// Removes a node of this list. If it was the head, the next node becomes the head.
  void Del(Node* node) {
    if (node->next == node) {
      head_ = nullptr;
    } else {
      Link(node->previous, node->next);
      if (node == head_) head_ = node->next;
    }
    delete node;
  }

  /// Whether the list holds an element at that address.
  bool MemberP(const T* element) const {
    return std::any_of(begin(), end(), [element](const T& value) { return &value == element; });
  }

  /// Whether the list holds an element equal to that one.
  bool MemberP(const T& element) const { return std::find(begin(), end(), element) != end(); }

  /// Adds a copy of each element of the other at the end, in order. The other may be this list.
  void Append(const XQSimpleCircularDblList& other) {
    XQSimpleCircularDblList copy(other);
    Concat(copy);
  }

  /// Moves all nodes of the other list to the end of this one, in order and without copying. The
  /// other ends empty; a list moved to its own end stays as it is.
  void Concat(XQSimpleCircularDblList& other) noexcept {
    if (this == &other || other.EmptyP()) return;
    Node* const first = std::exchange(other.head_, nullptr);
    if (head_ == nullptr) {
      head_ = first;
      return;
    }
    Node* const last = first->previous;
    Link(head_->previous, first);
    Link(last, head_);
  }

  /// The same length, and equal elements in order from the heads.
  bool operator==(const XQSimpleCircularDblList& other) const {
    return std::equal(begin(), end(), other.begin(), other.end());
  }

 private:
  Node* RequireHead(const char* text) const {
    if (head_ == nullptr) throw XQException("%s", text);
    return head_;
  }

  static void Link(Node* before, Node* after) {
    before->next = after;
    after->previous = before;
  }

  // A new node before the given one; a ring of its own if that is null.
  static Node* MakeNodeBefore(Node* at, const T& value) {
    Node* const node = new Node{value, nullptr, nullptr};
    Link(at == nullptr ? node : at->previous, node);
    Link(node, at == nullptr ? node : at);
    return node;
  }

  T Extract(Node* node) {
    T value = std::move(node->value);
    Del(node);
    return value;
  }

  Node* head_ = nullptr;
};
