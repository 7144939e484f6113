/// The walk over linked nodes that the lists offer to a range-based for.
#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <type_traits>

#include "zuml/core/export.h"

namespace zuml_detail {

/// Forward iterator over nodes with the fields `value` and `next`. Value is the element type, const
/// in the walk of a const list. The walk ends at `stop`: null in a chain, the head in a ring.
template <class Node, class Value>
class NodeIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = std::remove_const_t<Value>;
  using difference_type = std::ptrdiff_t;
  using pointer = Value*;
  using reference = Value&;

  NodeIterator() = default;
  NodeIterator(Node* node, Node* stop) : node_(node), stop_(stop) {}

  /// An iterator of the mutable walk serves as one of the const walk.
  template <class Other>
  requires std::same_as<Value, const Other> NodeIterator(const NodeIterator<Node, Other>& other)
      : node_(other.node_), stop_(other.stop_) {}

  reference operator*() const { return node_->value; }
  pointer operator->() const { return &node_->value; }

  NodeIterator& operator++() {
    node_ = node_->next == stop_ ? nullptr : node_->next;
    return *this;
  }
  NodeIterator operator++(int) {
    NodeIterator before = *this;
    ++*this;
    return before;
  }

  friend bool operator==(const NodeIterator& a, const NodeIterator& b) {
    return a.node_ == b.node_;
  }

 private:
  template <class, class>
  friend class NodeIterator;

  Node* node_ = nullptr;
  Node* stop_ = nullptr;
};

}  // namespace zuml_detail
