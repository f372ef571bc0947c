#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "framework/ByteBuffer.h"

/// Text as a value: a sequence of Unicode code points, each reached in constant time.
///
/// UTF-8 is decoded on the way in and encoded on the way out. A byte that is no valid UTF-8 is carried as
/// a code point of its own (U+DC80 to U+DCFF, which valid text never holds) and comes out as that byte again,
/// so text that only passes through the program is never changed.
///
/// A copy shares its characters with the original until one of the two changes. Text of ASCII alone, which
/// nearly all tool output is, takes one byte a character; text of at most one character takes no memory from
/// the heap. docs/performance.md says what that gains over standard strings.
class String {
 public:
  String() = default;
  String(const char* utf8) : String(std::string_view(utf8)) {}
  String(const std::string& utf8) : String(std::string_view(utf8)) {}
  String(std::string_view utf8);
  /// Takes a large buffer of pure ASCII over; copies any other.
  explicit String(ByteBuffer utf8);
  explicit String(char32_t codePoint) : size_(1) { held_.single = codePoint; }
  String(const String& other) : size_(other.size_), held_(other.held_) {
    if (IsShared()) held_.shared->references.fetch_add(1, std::memory_order_relaxed);
  }
  String(String&& other) noexcept : String() { Swap(other); }
  String& operator=(String other) noexcept {
    Swap(other);
    return *this;
  }
  ~String() {
    if (IsShared()) Release(held_.shared);
  }

  /// The text as UTF-8, with carried bytes as they came.
  std::string Utf8() const;

  /// Number of code points.
  std::size_t Size() const { return size_; }
  bool Empty() const { return size_ == 0; }

  /// The code point at `index`, counted from 0; `index` must be below Size().
  char32_t operator[](std::size_t index) const {
    if (!IsShared()) return held_.single;
    if (held_.shared->wide) [[unlikely]]
      return held_.shared->Wide()[index];
    return static_cast<unsigned char>(held_.shared->Ascii()[index]);
  }

  /// `count` code points from `index` on, counted from 0; the range must lie inside the text.
  String Slice(std::size_t index, std::size_t count) const;

  String& operator+=(const String& tail) {
    if (tail.size_ == 1)
      AppendOne(tail.held_.single);
    else
      Append(tail);
    return *this;
  }

  void Clear() { *this = String(); }

  /// True when the two are the same to the letter. `==` ignores case.
  bool Identical(const String& other) const;

  /// Calls `visitor` with the characters as a std::string_view of ASCII or a std::u32string_view.
  template <class Visitor>
  auto Visit(Visitor&& visitor) const {
    if (!IsShared()) return visitor(std::u32string_view(&held_.single, size_));
    if (held_.shared->wide) return visitor(std::u32string_view(held_.shared->Wide(), size_));
    return visitor(std::string_view(held_.shared->Ascii(), size_));
  }

 private:
  /// A counted block of characters. They stand right behind this header, or in memory that was taken over.
  struct Shared {
    std::atomic<std::uint32_t> references;
    bool wide;             // one char32_t a character instead of one char
    std::size_t capacity;  // characters
    void* characters;

    char* Ascii() const { return static_cast<char*>(characters); }
    char32_t* Wide() const { return static_cast<char32_t*>(characters); }
    bool IsBehind() const { return characters == this + 1; }
  };

  static Shared* Allocate(std::size_t capacity, bool wide);
  static void Free(Shared* shared);
  void Resize(std::size_t capacity);

  bool IsShared() const { return size_ > 1; }
  /// True when no other text shares the characters.
  bool IsOwn() const { return held_.shared->references.load(std::memory_order_acquire) == 1; }
  bool IsWide() const { return IsShared() ? held_.shared->wide : size_ == 1 && held_.single >= 0x80; }

  void Swap(String& other) noexcept {
    std::swap(size_, other.size_);
    std::swap(held_, other.held_);
  }
  // By value, so that a loop over characters can keep its one-character texts in registers.
  static void Release(Shared* shared) {
    if (shared->references.fetch_sub(1, std::memory_order_acq_rel) == 1) Free(shared);
  }
  void Append(String tail);
  /// The fast path of a loop that appends one character at a time.
  void AppendOne(char32_t c) {
    if (IsShared() && size_ < held_.shared->capacity && IsOwn()) [[likely]] {
      if (c < 0x80 && !held_.shared->wide) [[likely]] {
        held_.shared->Ascii()[size_++] = static_cast<char>(c);
        return;
      }
      if (held_.shared->wide) {
        held_.shared->Wide()[size_++] = c;
        return;
      }
    }
    Append(String(c));
  }

  union Held {
    Shared* shared;   // two characters or more
    char32_t single;  // the only one
  };

  std::size_t size_ = 0;
  Held held_{nullptr};
};

String operator+(const String& head, const String& tail);

/// Appends a code point as UTF-8, a carried byte as that byte.
void AppendUtf8(std::string& bytes, char32_t codePoint);

/// What comparisons that ignore case take a character for: an ASCII capital counts as its small letter.
constexpr char32_t FoldCase(char32_t c) {
  return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;
}

/// Equality that ignores the case of ASCII letters.
bool operator==(const String& left, const String& right);
