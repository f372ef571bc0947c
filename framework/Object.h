#pragma once

#include <atomic>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "framework/RuntimeException.h"

/// Base of everything that is held by `Ref`. An object goes with its last reference.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  /// Runs once, when the object has been made, with all virtual functions in place.
  virtual void Constructor() {}

 private:
  template <class T>
  friend class Ref;

  std::atomic<int> references_{0};
};

/// A counted reference that may be nil. Using a nil one raises NilObjectException.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  explicit Ref(T* object) : object_(object) { Hold(); }
  Ref(const Ref& other) : object_(other.object_) { Hold(); }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other) : Ref(other.Get()) {}
  ~Ref() { Release(); }

  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* operator->() const {
    if (!object_) throw NilObjectException();
    return object_;
  }
  T& operator*() const { return *operator->(); }
  T* Get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  friend bool operator==(const Ref& left, const Ref& right) { return left.object_ == right.object_; }

 private:
  static std::atomic<int>& Count(Object& object) { return object.references_; }

  void Hold() {
    if (object_) Count(*object_).fetch_add(1, std::memory_order_relaxed);
  }
  void Release() {
    if (object_ && Count(*object_).fetch_sub(1, std::memory_order_acq_rel) == 1) delete object_;
  }

  T* object_ = nullptr;
};

/// A new object, its `Constructor` run.
template <class T>
Ref<T> New() {
  Ref<T> made(new T);
  made->Constructor();
  return made;
}

/// The same object as a `T`, or nil when it is none.
template <class T, class U>
Ref<T> Cast(const Ref<U>& object) {
  return Ref<T>(dynamic_cast<T*>(object.Get()));
}
