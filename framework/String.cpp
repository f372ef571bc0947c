#include "framework/String.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <optional>

namespace {

constexpr char32_t kCarriedByte = 0xDC00;  // plus the byte, 0x80 to 0xFF

bool IsAscii(std::string_view text) {
  constexpr std::size_t kStride = 4096;  // within it the compiler looks at many bytes at once
  while (!text.empty()) {
    unsigned char bits = 0;
    for (const char c : text.substr(0, kStride)) bits |= static_cast<unsigned char>(c);
    if (bits >= 0x80) return false;
    text.remove_prefix(std::min(kStride, text.size()));
  }
  return true;
}

struct Sequence {
  char32_t codePoint;
  std::size_t length;  // bytes
};

/// The well-formed UTF-8 sequence that `bytes` begins with, shortest form only and no surrogates.
std::optional<Sequence> ReadSequence(std::string_view bytes) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return Sequence{lead, 1};
  std::size_t length;
  char32_t codePoint;
  char32_t least;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, codePoint = lead & 0x1Fu, least = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, codePoint = lead & 0x0Fu, least = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, codePoint = lead & 0x07u, least = 0x10000;
  } else {
    return std::nullopt;
  }
  if (bytes.size() < length) return std::nullopt;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return std::nullopt;
    codePoint = codePoint << 6 | (byte(i) & 0x3Fu);
  }
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (codePoint < least || codePoint > 0x10FFFF || surrogate) return std::nullopt;
  return Sequence{codePoint, length};
}

/// Writes the code points of the text to `to`, where there is room for as many as the text has bytes, and
/// gives their end.
char32_t* Decode(std::string_view utf8, char32_t* to) {
  while (!utf8.empty()) {
    std::size_t length = 1;
    if (const auto byte = static_cast<unsigned char>(utf8[0]); byte < 0x80) {
      *to++ = byte;
    } else if (const auto sequence = ReadSequence(utf8)) {
      *to++ = sequence->codePoint;
      length = sequence->length;
    } else {
      *to++ = kCarriedByte + byte;
    }
    utf8.remove_prefix(length);
  }
  return to;
}

std::size_t Bytes(std::size_t characters, bool wide) {
  return characters * (wide ? sizeof(char32_t) : sizeof(char));
}

/// Characters that a growing text has room for at first: as many as most lines of a tool have, so that
/// a line takes memory once.
constexpr std::size_t kLeastCapacity = 80;

/// Smaller texts are copied: a buffer that is taken over keeps its unused room.
constexpr std::size_t kManyBytes = 64 * 1024;

}  // namespace

// All from malloc, as a long text that grows is then moved by the system in whole pages, and not copied.

String::Shared* String::Allocate(std::size_t capacity, bool wide) {
  void* const memory = std::malloc(sizeof(Shared) + Bytes(capacity, wide));
  if (!memory) throw std::bad_alloc();
  return new (memory) Shared{1, wide, capacity, static_cast<Shared*>(memory) + 1};
}

void String::Free(Shared* shared) {
  if (!shared->IsBehind()) std::free(shared->characters);
  shared->~Shared();
  std::free(shared);
}

/// Makes room for more or fewer characters of the same width in a run that is our own.
void String::Resize(std::size_t capacity) {
  const bool behind = held_.shared->IsBehind();
  const bool wide = held_.shared->wide;
  void* const moved = std::realloc(behind ? held_.shared : held_.shared->characters,
                                   Bytes(capacity, wide) + (behind ? sizeof(Shared) : 0));
  if (!moved) throw std::bad_alloc();
  if (behind) {
    held_.shared = new (moved) Shared{1, wide, capacity, static_cast<Shared*>(moved) + 1};
  } else {
    held_.shared->characters = moved;
    held_.shared->capacity = capacity;
  }
}

String::String(std::string_view utf8) {
  if (utf8.empty()) return;
  const auto first = ReadSequence(utf8);
  if (utf8.size() == (first ? first->length : 1)) {
    size_ = 1;
    Decode(utf8, &held_.single);
  } else if (IsAscii(utf8)) {
    held_.shared = Allocate(utf8.size(), false);
    size_ = utf8.size();
    std::copy(utf8.begin(), utf8.end(), held_.shared->Ascii());
  } else {
    // Room that nothing is written to takes no memory, and goes back.
    held_.shared = Allocate(utf8.size(), true);
    size_ = static_cast<std::size_t>(Decode(utf8, held_.shared->Wide()) - held_.shared->Wide());
    Resize(size_);
  }
}

String::String(ByteBuffer utf8) {
  const std::size_t size = utf8.Size();
  if (size < kManyBytes || !IsAscii(utf8.View())) {
    *this = String(utf8.View());
    return;
  }
  held_.shared = Allocate(0, false);
  held_.shared->characters = utf8.Release();
  held_.shared->capacity = size;
  size_ = size;
}

std::string String::Utf8() const {
  std::string utf8;
  Visit([&](auto text) {
    utf8.reserve(text.size());
    for (const auto c : text) AppendUtf8(utf8, static_cast<char32_t>(c));
  });
  return utf8;
}

String String::Slice(std::size_t index, std::size_t count) const {
  if (count == 0) return {};
  if (count == 1) return String((*this)[index]);
  if (count == Size()) return *this;
  const bool wide = IsWide();
  String slice;
  slice.held_.shared = Allocate(count, wide);
  slice.size_ = count;
  if (wide)
    std::copy_n(held_.shared->Wide() + index, count, slice.held_.shared->Wide());
  else
    std::copy_n(held_.shared->Ascii() + index, count, slice.held_.shared->Ascii());
  return slice;
}

/// Where there is no room, the run grows. Where it is shared, as when a text is appended to itself, or the
/// tail needs wide characters, it is copied.
void String::Append(String tail) {
  if (tail.Empty()) return;
  if (Empty()) {
    *this = std::move(tail);
    return;
  }
  const std::size_t size = Size();
  const std::size_t whole = size + tail.Size();
  const bool wide = IsWide() || tail.IsWide();
  const std::size_t capacity = std::max({kLeastCapacity, whole, size * 2});
  if (!IsShared() || held_.shared->wide != wide || !IsOwn()) {
    Shared* const copy = Allocate(capacity, wide);
    for (std::size_t i = 0; i < size; ++i) {
      if (wide)
        copy->Wide()[i] = (*this)[i];
      else
        copy->Ascii()[i] = static_cast<char>((*this)[i]);
    }
    if (IsShared()) Release(held_.shared);
    held_.shared = copy;
  } else if (held_.shared->capacity < whole) {
    Resize(capacity);
  }
  size_ = whole;
  tail.Visit([&](auto text) {
    if (wide)
      std::copy(text.begin(), text.end(), held_.shared->Wide() + size);
    else
      std::transform(text.begin(), text.end(), held_.shared->Ascii() + size,
                     [](auto c) { return static_cast<char>(c); });
  });
}

bool String::Identical(const String& other) const {
  if (Size() != other.Size()) return false;
  if (IsShared() && held_.shared == other.held_.shared) return true;
  return Visit([&](auto left) {
    return other.Visit([&](auto right) {
      return std::equal(left.begin(), left.end(), right.begin(),
                        [](auto a, auto b) { return static_cast<char32_t>(a) == static_cast<char32_t>(b); });
    });
  });
}

void AppendUtf8(std::string& bytes, char32_t c) {
  const auto put = [&](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
  const auto putRest = [&](int shift) { put(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) {
    put(c);
  } else if (c >= kCarriedByte + 0x80 && c <= kCarriedByte + 0xFF) {
    put(c - kCarriedByte);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6), putRest(0);
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12), putRest(6), putRest(0);
  } else {
    put(0xF0 | c >> 18), putRest(12), putRest(6), putRest(0);
  }
}

String operator+(const String& head, const String& tail) {
  String whole = head;
  whole += tail;
  return whole;
}

bool operator==(const String& left, const String& right) {
  if (left.Size() != right.Size()) return false;
  for (std::size_t i = 0; i < left.Size(); ++i)
    if (FoldCase(left[i]) != FoldCase(right[i])) return false;
  return true;
}
