// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// A pointer that copies share. The last one releases the object.
#pragma once

#include <memory>

namespace nkdraw {

/// Behaves like the T* that it is made from, and owns it. The last copy calls `release` once.
template <class T, void (*release)(T*)>
class SharedPointer {
 public:
  /// Takes `owned` over. Without memory for the count it is released at once, and this is null.
  SharedPointer(T* owned = nullptr) noexcept {
    if (owned == nullptr)
      return;
    try {
      owner_ = std::shared_ptr<T>(owned, release);
    } catch (...) {  // out of memory: `release` has run, the pointer is null
    }
  }
  /// The object, still owned; may be null.
  operator T*() const noexcept { return owner_.get(); }
  /// The object, which must not be null.
  T* operator->() const noexcept { return owner_.get(); }

 private:
  std::shared_ptr<T> owner_;
};

}  // namespace nkdraw
