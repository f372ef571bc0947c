#pragma once

#include <new>

namespace diskutil {

/// What a C library has made, which is nothing when there was no memory left. Throws std::bad_alloc then.
template <class T>
T* NotNull(T* made) {
  if (!made) throw std::bad_alloc();
  return made;
}

}  // namespace diskutil
