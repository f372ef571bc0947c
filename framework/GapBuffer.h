#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// A sequence with a gap that follows the last change, so that adding at the end and removing from the bottom
/// up both cost constant time an element, whatever stays.
template <class T>
class GapBuffer {
 public:
  std::size_t Size() const { return head_.size() + tail_.size(); }

  T& operator[](std::size_t index) {
    return index < head_.size() ? head_[index] : tail_[tail_.size() - 1 - (index - head_.size())];
  }
  const T& operator[](std::size_t index) const { return const_cast<GapBuffer&>(*this)[index]; }

  void Append(T element) {
    MoveGap(Size());
    head_.push_back(std::move(element));
  }
  void Remove(std::size_t index) {
    MoveGap(index + 1);
    head_.pop_back();
  }
  void Clear() {
    head_ = {};
    tail_ = {};
  }

 private:
  void MoveGap(std::size_t index) {
    while (head_.size() > index) Move(head_, tail_);
    while (head_.size() < index) Move(tail_, head_);
  }
  static void Move(std::vector<T>& from, std::vector<T>& to) {
    to.push_back(std::move(from.back()));
    from.pop_back();
  }

  std::vector<T> head_;  // what stands before the gap
  std::vector<T> tail_;  // what stands behind it, last element first
};
