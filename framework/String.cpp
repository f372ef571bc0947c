#include "framework/String.h"

#include <algorithm>
#include <new>
#include <optional>

namespace {

constexpr char32_t kCarriedByte = 0xDC00;  // plus the byte, 0x80 to 0xFF

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
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

std::u32string Decode(std::string_view utf8) {
  std::u32string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const auto sequence = ReadSequence(utf8);
    text.push_back(sequence ? sequence->codePoint : kCarriedByte + static_cast<unsigned char>(utf8[0]));
    utf8.remove_prefix(sequence ? sequence->length : 1);
  }
  return text;
}

void Encode(char32_t c, std::string& utf8) {
  const auto put = [&](char32_t byte) { utf8.push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c >= kCarriedByte + 0x80 && c <= kCarriedByte + 0xFF) {
    put(c - kCarriedByte);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6), put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18), put(0x80 | (c >> 12 & 0x3F)), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
  }
}

char32_t LowerAscii(char32_t c) {
  return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;
}

constexpr std::size_t kLeastCapacity = 32;  // characters

}  // namespace

String::Shared* String::Allocate(std::size_t capacity, bool wide) {
  const std::size_t bytes = capacity * (wide ? sizeof(char32_t) : sizeof(char));
  return new (::operator new(sizeof(Shared) + bytes)) Shared{1, wide, 0, capacity};
}

void String::Free(Shared* shared) {
  shared->~Shared();
  ::operator delete(shared);
}

String::String(std::string_view utf8) {
  if (utf8.empty()) return;
  if (IsAscii(utf8)) {
    if (utf8.size() == 1) {
      single_ = static_cast<unsigned char>(utf8[0]);
      return;
    }
    shared_ = Allocate(utf8.size(), false);
    std::copy(utf8.begin(), utf8.end(), shared_->Ascii());
    shared_->size = utf8.size();
    return;
  }
  const std::u32string text = Decode(utf8);
  if (text.size() == 1) {
    single_ = text[0];
    return;
  }
  shared_ = Allocate(text.size(), true);
  std::copy(text.begin(), text.end(), shared_->Wide());
  shared_->size = text.size();
}

std::string String::Utf8() const {
  std::string utf8;
  Visit([&](auto text) {
    utf8.reserve(text.size());
    for (const auto c : text) Encode(static_cast<char32_t>(c), utf8);
  });
  return utf8;
}

String String::Slice(std::size_t index, std::size_t count) const {
  if (count == 0) return {};
  if (count == 1) return String((*this)[index]);
  if (count == Size()) return *this;
  const bool wide = IsWide();
  String slice;
  slice.shared_ = Allocate(count, wide);
  slice.shared_->size = count;
  if (wide)
    std::copy_n(shared_->Wide() + index, count, slice.shared_->Wide());
  else
    std::copy_n(shared_->Ascii() + index, count, slice.shared_->Ascii());
  return slice;
}

// The characters move to a larger run, or to one of our own where this one is shared, or to a wide one where
// the tail needs it.
void String::Append(const String& tail) {
  if (tail.Empty()) return;
  if (Empty()) {
    *this = tail;
    return;
  }
  const std::size_t size = Size();
  const std::size_t whole = size + tail.Size();
  const bool wide = IsWide() || tail.IsWide();
  const bool fits = shared_ && shared_->references.load(std::memory_order_acquire) == 1 &&
                    shared_->capacity >= whole && shared_->wide == wide;
  const String kept = tail;  // may be this very text
  if (!fits) {
    Shared* const larger = Allocate(std::max({kLeastCapacity, whole, size * 2}), wide);
    for (std::size_t i = 0; i < size; ++i) {
      if (wide)
        larger->Wide()[i] = (*this)[i];
      else
        larger->Ascii()[i] = static_cast<char>((*this)[i]);
    }
    larger->size = size;
    Release();
    shared_ = larger;
    single_ = kNone;
  }
  kept.Visit([&](auto text) {
    if (wide)
      std::copy(text.begin(), text.end(), shared_->Wide() + size);
    else
      std::transform(text.begin(), text.end(), shared_->Ascii() + size,
                     [](auto c) { return static_cast<char>(c); });
  });
  shared_->size = whole;
}

bool String::Identical(const String& other) const {
  if (Size() != other.Size()) return false;
  if (shared_ == other.shared_ && single_ == other.single_) return true;
  return Visit([&](auto left) {
    return other.Visit([&](auto right) {
      return std::equal(left.begin(), left.end(), right.begin(),
                        [](auto a, auto b) { return static_cast<char32_t>(a) == static_cast<char32_t>(b); });
    });
  });
}

String operator+(const String& head, const String& tail) {
  String whole = head;
  whole += tail;
  return whole;
}

bool operator==(const String& left, const String& right) {
  if (left.Size() != right.Size()) return false;
  for (std::size_t i = 0; i < left.Size(); ++i)
    if (LowerAscii(left[i]) != LowerAscii(right[i])) return false;
  return true;
}
