/// A singly linked list: results of unknown number, such as the contours of an image.
#pragma once

#include <algorithm>
#include <iterator>
#include <utility>

#include "zuml/core/nodeiterator.h"
#include "zuml/core/xqexception.h"

/// Singly linked list that grows at its end in constant time. Elements never move, so that their
/// addresses hold until they are removed. Nodes come from the ordinary heap. No locks.
template <class T>
class XQSimpleList {
 public:
  struct Node {
    T value;
    Node* next;
  };

  using value_type = T;
  using iterator = zuml_detail::NodeIterator<Node, T>;
  using const_iterator = zuml_detail::NodeIterator<Node, const T>;

  XQSimpleList() = default;

  /// Copies the elements in order.
  XQSimpleList(const XQSimpleList& other) : XQSimpleList() {
    for (const T& value : other) PushBack(value);
  }

  /// Takes the nodes of the other, which ends empty.
  XQSimpleList(XQSimpleList&& other) noexcept { Concat(other); }

  XQSimpleList& operator=(const XQSimpleList& other) {
    if (this != &other) *this = XQSimpleList(other);
    return *this;
  }

  XQSimpleList& operator=(XQSimpleList&& other) noexcept {
    if (this != &other) {
      Clean();
      Concat(other);
    }
    return *this;
  }

  ~XQSimpleList() { Clean(); }

  /// Removes all elements.
  void Clean() {
    while (head_ != nullptr) Unlink(&head_);
  }

  bool EmptyP() const { return head_ == nullptr; }

  /// The number of elements, by a walk.
  int Length() const { return static_cast<int>(std::distance(begin(), end())); }

  /// The first node, null in an empty list.
  Node* GetHeadNode() const { return head_; }

  /// The first element. Throws "GetFront: List empty".
  T& GetFront() { return RequireHead("GetFront: List empty")->value; }
  const T& GetFront() const { return RequireHead("GetFront: List empty")->value; }

  iterator begin() { return {head_, nullptr}; }
  iterator end() { return {}; }
  const_iterator begin() const { return {head_, nullptr}; }
  const_iterator end() const { return {}; }

  /// Adds an element at the end and returns it where it is stored.
  T& PushBack(const T& value) { return LinkLast(new Node{value, nullptr}); }
  T& PushBack(T&& value) { return LinkLast(new Node{std::move(value), nullptr}); }

  /// Adds an element at the front and returns it where it is stored.
  T& PushFront(const T& value) {
    Node* const node = new Node{value, head_};
    if (head_ == nullptr) link_ = &node->next;
    head_ = node;
    return node->value;
  }

  /// Removes the first element. Throws "PopFront: Empty list".
  void PopFront() {
    RequireHead("PopFront: Empty list");
    Unlink(&head_);
  }

  /// Removes the first element and returns it. Throws "PopFrontElement: Empty list".
  T PopFrontElement() {
    T value = std::move(RequireHead("PopFrontElement: Empty list")->value);
    Unlink(&head_);
    return value;
  }

  /// Whether the list holds an element at that address.
  bool MemberP(const T* element) const {
    return *Find([element](const T& value) { return &value == element; }) != nullptr;
  }

  /// Whether the list holds an element equal to that one.
  bool MemberP(const T& element) const {
    return *Find([&element](const T& value) { return value == element; }) != nullptr;
  }

  /// Removes the element at that address. Throws "XQSimpleList::Del No se ha podido borrar el
  /// elemento por direccion" if the list does not hold it.
  void Del(const T* element) {
    Node** const link = Find([element](const T& value) { return &value == element; });
    if (*link == nullptr) {
      throw XQException("XQSimpleList::Del No se ha podido borrar el elemento por direccion");
    }
    Unlink(link);
  }

  /// Removes the first element that is equal to that one. Throws "XQSimpleList::Del No se ha podido
  /// borrar el elemento por igualdad" if there is none.
  void Del(const T& element) {
    Node** const link = Find([&element](const T& value) { return value == element; });
    if (*link == nullptr) {
      throw XQException("XQSimpleList::Del No se ha podido borrar el elemento por igualdad");
    }
    Unlink(link);
  }

  /// Moves all nodes of the other list to the end of this one, in order and without copying. The
  /// other ends empty; a list moved to its own end stays as it is.
  void Concat(XQSimpleList& other) noexcept {
    if (this == &other || other.EmptyP()) return;
    *link_ = std::exchange(other.head_, nullptr);
    link_ = std::exchange(other.link_, &other.head_);
  }

  /// The same length, and equal elements in order.
  bool operator==(const XQSimpleList& other) const {
    return std::equal(begin(), end(), other.begin(), other.end());
  }

 private:
  Node* RequireHead(const char* text) const {
    if (head_ == nullptr) throw XQException("%s", text);
    return head_;
  }

  T& LinkLast(Node* node) {
    *link_ = node;
    link_ = &node->next;
    return node->value;
  }

  // The link to the first node that matches; the last link, which is null, if none does.
  template <class Match>
  Node** Find(Match match) const {
    Node** link = const_cast<Node**>(&head_);
    while (*link != nullptr && !match((*link)->value)) link = &(*link)->next;
    return link;
  }

  void Unlink(Node** link) {
    Node* const node = *link;
    *link = node->next;
    if (link_ == &node->next) link_ = link;
    delete node;
  }

  Node* head_ = nullptr;
  Node** link_ = &head_;  // The link that receives the next node: points into this very object
                          // while the list is empty.
};
