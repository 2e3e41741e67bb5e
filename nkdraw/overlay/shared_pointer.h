// SPDX-License-Identifier: BSD-2-Clause
//
// A pointer that copies share and that its last user lets go.
#pragma once

#include <memory>

namespace nkdraw {

/// Behaves like the T* that it is made from and owns; `release` is called once, by the last copy.
template <class T, void (*release)(T*)>
class SharedPointer {
 public:
  SharedPointer(T* owned = nullptr) noexcept {
    if (owned == nullptr)
      return;
    try {
      owner_ = std::shared_ptr<T>(owned, release);
    } catch (...) {  // out of memory: `release` has run, the pointer is null
    }
  }
  operator T*() const noexcept { return owner_.get(); }
  T* operator->() const noexcept { return owner_.get(); }

 private:
  std::shared_ptr<T> owner_;
};

}  // namespace nkdraw
