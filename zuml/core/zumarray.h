/// A growing array of plain data with a free choice of first index: offsets of a neighbourhood,
/// coefficients of a filter, point lists.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "zuml/core/xqmemory.h"

/// Growing array. T is plain data: elements move by block copy and no constructor or destructor of
/// T runs, so elements that were made without a value have none. Storage comes from `XQMAlloc`.
/// Neither indices nor the room that the `UnsafePut` forms need are tested. No locks.
template <class T>
class ZUMArray {
 public:
  using value_type = T;

  /// An array without a block: length 0, first index 0.
  ZUMArray() = default;

  /// n elements without a value, with indices from 0. A `Put` adds after them.
  explicit ZUMArray(unsigned n) { Allocate(0, n); }

  /// Elements without a value, with indices from `first` to `last`; none if `last` is less than
  /// `first`, and then the first `Put` goes to index `first`.
  ZUMArray(int first, int last) {
    const std::int64_t length = std::int64_t{last} - first + 1;
    Allocate(first, length > 0 ? static_cast<std::size_t>(length) : 0);
  }

  /// A block of exactly the other's length with the same first index.
  ZUMArray(const ZUMArray& other) { CopyFrom(other); }

  /// Takes the other's block; the other ends as a default array.
  ZUMArray(ZUMArray&& other) noexcept { Steal(other); }

  /// As the copy constructor, after the own block has gone back. Nothing happens if both use the
  /// same block or neither has one.
  ZUMArray& operator=(const ZUMArray& other) {
    if (start_ != other.start_) {
      Free();
      CopyFrom(other);
    }
    return *this;
  }

  ZUMArray& operator=(ZUMArray&& other) noexcept {
    if (this != &other) {
      Free();
      Steal(other);
    }
    return *this;
  }

  ~ZUMArray() {
    static_assert(std::is_trivially_copyable_v<T>, "the elements of a ZUMArray are plain data");
    Free();
  }

  /// Makes room for n further elements. Grows to exactly that size, and only if less is free.
  void Reserve(unsigned n) {
    if (static_cast<std::size_t>(capacity_end_ - end_) < n) Regrow(Length() + n);
  }

  /// Length 0. The block stays, so that the array can be filled again without an allocation.
  void Clear() { end_ = start_; }

  unsigned GetLength() const { return static_cast<unsigned>(Length()); }
  int GetFirstIndex() const { return ElementIndex(start_); }
  int GetLastIndex() const { return static_cast<int>(IndexOf(end_) - 1); }

  /// The index of the element at that address.
  int ElementIndex(const T* element) const { return static_cast<int>(IndexOf(element)); }

  /// The address that index 0 has or would have.
  T* GetBaseElements() { return base_; }
  const T* GetBaseElements() const { return base_; }

  /// The first element in use.
  T* GetStart() { return start_; }
  const T* GetStart() const { return start_; }

  /// One past the last element in use.
  T* GetEnd() { return end_; }
  const T* GetEnd() const { return end_; }

  /// Sets the end, after the block was filled through pointers into the room that `Reserve` made.
  void SetEnd(T* end) { end_ = end; }

  T* begin() { return start_; }
  T* end() { return end_; }
  const T* begin() const { return start_; }
  const T* end() const { return end_; }

  /// The element of that index, for every width and sign of index.
  template <std::integral I>
  T& operator[](I index) {
    return *ElementAt(static_cast<std::ptrdiff_t>(index));
  }
  template <std::integral I>
  const T& operator[](I index) const {
    return *ElementAt(static_cast<std::ptrdiff_t>(index));
  }

  /// Adds a copy of the element, which may be one of this array.
  void Put(const T& element) {
    if (end_ == capacity_end_) [[unlikely]] {
      const T copy = element;
      Extend();
      UnsafePut(copy);
    } else {
      UnsafePut(element);
    }
  }

  /// Adds an element without a value and returns its address, valid until the array grows.
  T* Put() {
    if (end_ == capacity_end_) [[unlikely]] {
      Extend();
    }
    return UnsafePut();
  }

  /// `Put` without a test of the room; the caller has used `Reserve`.
  void UnsafePut(const T& element) { *end_++ = element; }
  T* UnsafePut() { return end_++; }

  /// Sorts ascending by a comparison that is negative, 0 or positive as its first element comes
  /// before, beside or after the second. Equal elements keep their order.
  void Sort(int (*compare)(const T*, const T*)) {
    std::stable_sort(start_, end_,
                     [compare](const T& a, const T& b) { return compare(&a, &b) < 0; });
  }

 protected:
  /// Gives the block back and makes this a default array.
  void Free() {
    XQFree(start_);
    base_ = end_ = start_ = capacity_end_ = nullptr;
  }

  /// More than doubles the capacity: 1000, 3000, 7000, 15000 elements from an empty array.
  void Extend() { Regrow(2 * static_cast<std::size_t>(capacity_end_ - start_) + 1000); }

 private:
  static std::uintptr_t Address(const T* p) { return reinterpret_cast<std::uintptr_t>(p); }

  // In 64 bits: the end of an array whose last index is the greatest int has a greater one.
  std::ptrdiff_t IndexOf(const T* element) const {
    const auto bytes = static_cast<std::ptrdiff_t>(Address(element) - Address(base_));
    return bytes / static_cast<std::ptrdiff_t>(sizeof(T));
  }

  // base_ lies outside the block whenever the first index is not 0, where arithmetic on pointers is
  // undefined. So it is computed as an address, and elements are reached from start_, by a number
  // of bytes that compilers take out of a loop.
  static T* Displace(T* p, std::ptrdiff_t elements) {
    return reinterpret_cast<T*>(Address(p) + static_cast<std::uintptr_t>(elements) * sizeof(T));
  }

  T* ElementAt(std::ptrdiff_t index) const {
    const std::uintptr_t bytes =
        Address(base_) - Address(start_) + static_cast<std::uintptr_t>(index) * sizeof(T);
    return reinterpret_cast<T*>(reinterpret_cast<char*>(start_) +
                                static_cast<std::ptrdiff_t>(bytes));
  }

  std::size_t Length() const { return static_cast<std::size_t>(end_ - start_); }

  void Allocate(std::ptrdiff_t first, std::size_t length) {
    if (length != 0) start_ = static_cast<T*>(XQMAlloc(length * sizeof(T)));
    end_ = capacity_end_ = start_ + length;
    base_ = Displace(start_, -first);
  }

  void CopyFrom(const ZUMArray& other) {
    Allocate(other.GetFirstIndex(), other.Length());
    CopyElements(start_, other);
  }

  void Steal(ZUMArray& other) noexcept {
    base_ = std::exchange(other.base_, nullptr);
    end_ = std::exchange(other.end_, nullptr);
    start_ = std::exchange(other.start_, nullptr);
    capacity_end_ = std::exchange(other.capacity_end_, nullptr);
  }

  void Regrow(std::size_t capacity) {
    ZUMArray grown;
    grown.Allocate(GetFirstIndex(), capacity);
    CopyElements(grown.start_, *this);
    grown.end_ = grown.start_ + Length();
    *this = std::move(grown);
  }

  static void CopyElements(T* to, const ZUMArray& from) {
    if (from.Length() != 0) {
      std::memcpy(static_cast<void*>(to), from.start_, from.Length() * sizeof(T));
    }
  }

 protected:
  T* base_ = nullptr;
  T* end_ = nullptr;
  T* start_ = nullptr;
  T* capacity_end_ = nullptr;
};
