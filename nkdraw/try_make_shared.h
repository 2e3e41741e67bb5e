// SPDX-License-Identifier: BSD-2-Clause
#pragma once

#include <memory>
#include <new>
#include <utility>

namespace nkdraw {

/// make_shared that answers a lack of memory with null.
template <class Object, class... Arguments>
[[nodiscard]] std::shared_ptr<Object> tryMakeShared(Arguments&&... arguments) noexcept {
  try {
    return std::make_shared<Object>(std::forward<Arguments>(arguments)...);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace nkdraw
