// SPDX-License-Identifier: BSD-2-Clause
//
// Objects behind handles: a number stands for one object until it is closed, and is never used
// again.
#pragma once

#include <nkdraw/platform/sync.h>
#include <nkdraw/try_make_shared.h>

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace nkdraw {

/// The number of the next handle. All tables share it, so a handle of the wrong kind is refused,
/// not mistaken for another object.
inline std::atomic<std::uint64_t> nextHandleNumber{1};

/// The live objects of one kind. Every member function may be called from any thread.
template <class Object>
class HandleTable {
 public:
  /// Gives `object` a number; 0 without memory, or if `object` is null.
  [[nodiscard]] std::uint64_t add(std::shared_ptr<Object> object) noexcept {
    if (!object)
      return 0;
    const std::uint64_t number = nextHandleNumber++;
    const std::scoped_lock lock(mutex);
    try {
      objects.emplace(number, std::move(object));
    } catch (const std::bad_alloc&) {
      return 0;
    }
    return number;
  }

  /// The object behind `number`, which lives at least as long as the result; null if there is none.
  [[nodiscard]] std::shared_ptr<Object> find(std::uint64_t number) noexcept {
    const std::scoped_lock lock(mutex);
    const auto found = objects.find(number);
    return found == objects.end() ? nullptr : found->second;
  }

  /// Releases `number`; its object is destroyed with its last user. False if it was not in use.
  bool close(std::uint64_t number) noexcept {
    std::unique_lock lock(mutex);
    const auto closed = objects.extract(number);
    lock.unlock();
    return !closed.empty();
  }

 private:
  std::mutex mutex;
  std::map<std::uint64_t, std::shared_ptr<Object>> objects;
};

/// The one table of `Object`. It is never destroyed: static objects and detached threads may close
/// their handles while the process is ending.
template <class Object>
HandleTable<Object>& handlesOf() noexcept {
  alignas(HandleTable<Object>) static std::byte room[sizeof(HandleTable<Object>)];
  static auto* const table = ::new (room) HandleTable<Object>;
  return *table;
}

/// The two representations of a handle.
[[nodiscard]] inline nkHandle toHandle(std::uint64_t number) noexcept {
  return std::bit_cast<nkHandle>(number);
}
[[nodiscard]] inline std::uint64_t toNumber(nkHandle handle) noexcept {
  return std::bit_cast<std::uint64_t>(handle);
}

}  // namespace nkdraw
