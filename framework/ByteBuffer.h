#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

/// Bytes that grow at their end. Unwritten bytes are not zeroed, and the system moves a long buffer that
/// grows in whole pages, so a flood is taken without being copied. docs/performance.md says what that gains.
class ByteBuffer {
 public:
  std::string_view View() const { return {bytes_.get(), size_}; }
  std::size_t Size() const { return size_; }

  /// Room for `count` bytes behind the end. `Add` takes over those that were written.
  char* Room(std::size_t count) {
    if (capacity_ - size_ < count) Grow(std::max(size_ + count, capacity_ * 2));
    return bytes_.get() + size_;
  }
  void Add(std::size_t count) { size_ += count; }

  /// Hands the memory over, which std::free gives back.
  char* Release() { return bytes_.release(); }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  void Grow(std::size_t capacity) {
    auto* const moved = static_cast<char*>(std::realloc(bytes_.get(), capacity));
    if (!moved) throw std::bad_alloc();
    static_cast<void>(bytes_.release());
    bytes_.reset(moved);
    capacity_ = capacity;
  }

  std::unique_ptr<char, Free> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};
