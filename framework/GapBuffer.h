#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// A stack in blocks. Its elements stay where they are as it grows, and its memory shrinks with it.
/// docs/performance.md says what that gains over a vector and a deque.
template <class T>
class BlockStack {
 public:
  std::size_t Size() const { return size_; }
  const T& operator[](std::size_t index) const { return blocks_[index / kBlock][index % kBlock]; }

  void Push(T&& element) {
    if (size_ % kBlock == 0) blocks_.emplace_back().reserve(kBlock);
    blocks_.back().push_back(std::move(element));
    ++size_;
  }
  T Pop() {
    T top = std::move(blocks_.back().back());
    blocks_.back().pop_back();
    if (blocks_.back().empty()) blocks_.pop_back();
    --size_;
    return top;
  }

 private:
  static constexpr std::size_t kBlock = 256;

  std::vector<std::vector<T>> blocks_;
  std::size_t size_ = 0;
};

/// A sequence with a gap that follows the last change, so that adding at the end and removing from the bottom
/// up both cost constant time an element, whatever stays.
template <class T>
class GapBuffer {
 public:
  std::size_t Size() const { return head_.Size() + tail_.Size(); }

  const T& operator[](std::size_t index) const {
    return index < head_.Size() ? head_[index] : tail_[tail_.Size() - 1 - (index - head_.Size())];
  }
  T& operator[](std::size_t index) { return const_cast<T&>(std::as_const(*this)[index]); }

  void Append(T&& element) {
    MoveGap(Size());
    head_.Push(std::move(element));
  }
  void Remove(std::size_t index) {
    MoveGap(index + 1);
    head_.Pop();
  }
  void Clear() {
    head_ = {};
    tail_ = {};
  }

 private:
  void MoveGap(std::size_t index) {
    while (head_.Size() > index) tail_.Push(head_.Pop());
    while (head_.Size() < index) head_.Push(tail_.Pop());
  }

  BlockStack<T> head_;  // what stands before the gap
  BlockStack<T> tail_;  // what stands behind it, last element first
};
