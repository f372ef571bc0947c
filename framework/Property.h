#pragma once

#include <utility>

#include "framework/Object.h"
#include "framework/String.h"

/// An object that the screen may show.
class Viewed : public Object {
 public:
  /// Says that what the screen shows of this object is out of date.
  virtual void MarkStale() = 0;
};

/// A value of a viewed object, read and assigned like a plain member. A change marks the owner as stale.
template <class T>
class Property {
 public:
  explicit Property(Viewed* owner, T initial = T()) : owner_(owner), value_(std::move(initial)) {}
  Property(const Property&) = delete;

  Property& operator=(T value) {
    if (!Same(value_, value)) {
      value_ = std::move(value);
      owner_->MarkStale();
    }
    return *this;
  }
  Property& operator=(const Property& other) { return *this = other.value_; }

  operator const T&() const { return value_; }
  const T& Get() const { return value_; }

 private:
  static bool Same(const String& left, const String& right) { return left.Identical(right); }
  template <class U>
  static bool Same(const U& left, const U& right) {
    return left == right;
  }

  Viewed* owner_;
  T value_;
};
