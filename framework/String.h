#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// Text as a value: a sequence of Unicode code points, each reached in constant time.
///
/// UTF-8 is decoded on the way in and encoded on the way out. A byte that is no valid UTF-8 is carried as
/// a code point of its own (U+DC80 to U+DCFF, which valid text never holds) and comes out as that byte again,
/// so text that only passes through the program is never changed.
///
/// A copy shares its characters with the original until one of the two changes. Text of ASCII alone, which
/// nearly all tool output is, takes one byte a character; text of at most one character takes no memory from
/// the heap.
class String {
 public:
  String() = default;
  String(const char* utf8) : String(std::string_view(utf8)) {}
  String(const std::string& utf8) : String(std::string_view(utf8)) {}
  String(std::string_view utf8);
  explicit String(char32_t codePoint) : single_(codePoint) {}
  String(const String& other) : single_(other.single_), shared_(other.shared_) { Hold(); }
  String(String&& other) noexcept
      : single_(std::exchange(other.single_, kNone)), shared_(std::exchange(other.shared_, nullptr)) {}
  String& operator=(String other) noexcept {
    std::swap(single_, other.single_);
    std::swap(shared_, other.shared_);
    return *this;
  }
  ~String() { Release(); }

  /// The text as UTF-8, with carried bytes as they came.
  std::string Utf8() const;

  /// Number of code points.
  std::size_t Size() const { return shared_ ? shared_->size : single_ != kNone; }
  bool Empty() const { return Size() == 0; }

  /// The code point at `index`, counted from 0; `index` must be below Size().
  char32_t operator[](std::size_t index) const {
    if (!shared_) return single_;
    return shared_->wide ? shared_->Wide()[index] : static_cast<unsigned char>(shared_->Ascii()[index]);
  }

  /// `count` code points from `index` on, counted from 0; the range must lie inside the text.
  String Slice(std::size_t index, std::size_t count) const;

  String& operator+=(const String& tail) {
    const bool hasRoom = shared_ && !shared_->wide && shared_->size < shared_->capacity &&
                         shared_->references.load(std::memory_order_relaxed) == 1;
    if (hasRoom && !tail.shared_ && tail.single_ < 0x80)  // the case of a loop over characters
      shared_->Ascii()[shared_->size++] = static_cast<char>(tail.single_);
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
    if (!shared_) return visitor(std::u32string_view(&single_, Size()));
    if (shared_->wide) return visitor(std::u32string_view(shared_->Wide(), shared_->size));
    return visitor(std::string_view(shared_->Ascii(), shared_->size));
  }

 private:
  static constexpr char32_t kNone = 0xFFFFFFFF;

  /// A counted run of characters, which stand behind it.
  struct Shared {
    std::atomic<std::uint32_t> references;
    bool wide;  // one char32_t a character instead of one char
    std::size_t size;
    std::size_t capacity;

    char* Ascii() { return reinterpret_cast<char*>(this + 1); }
    char32_t* Wide() { return reinterpret_cast<char32_t*>(this + 1); }
  };

  static Shared* Allocate(std::size_t capacity, bool wide);
  static void Free(Shared* shared);

  void Hold() const {
    if (shared_) shared_->references.fetch_add(1, std::memory_order_relaxed);
  }
  void Release() {
    if (shared_ && shared_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) Free(shared_);
  }
  void Append(const String& tail);
  bool IsWide() const { return shared_ ? shared_->wide : single_ != kNone && single_ >= 0x80; }

  char32_t single_ = kNone;   // the only character, while nothing is shared
  Shared* shared_ = nullptr;  // two characters or more, or text that is still growing
};

String operator+(const String& head, const String& tail);

/// Equality that ignores the case of ASCII letters.
bool operator==(const String& left, const String& right);
