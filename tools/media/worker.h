// SPDX-License-Identifier: BSD-2-Clause
//
// A stage of a pipeline: a thread that works through a queue.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace nkdraw::media {

/// Works on items in their order, on a thread of its own, while at most `room` of them wait. Once
/// the work throws, nothing more is done, and every call throws that again. One thread calls it.
/// Items that are not begun when it ends are dropped.
template <class Item>
class Worker {
 public:
  Worker(std::size_t room, std::function<void(Item&)> work)
      : room_(room), work_(std::move(work)), thread_([this] { run(); }) {}
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() {
    {
      const std::lock_guard hold(lock_);
      ended_ = true;
      waiting_.clear();
    }
    changed_.notify_all();
    thread_.join();
  }

  /// Adds an item, once there is room for it.
  void push(Item item) {
    waitUntil([this] { return waiting_.size() < room_; });
    {
      const std::lock_guard hold(lock_);
      waiting_.push_back(std::move(item));
    }
    changed_.notify_all();
  }

  /// Returns when all items are done.
  void finish() {
    waitUntil([this] { return waiting_.empty() && !busy_; });
  }

 private:
  template <class Condition>
  void waitUntil(Condition condition) {
    std::unique_lock hold(lock_);
    changed_.wait(hold, [&] { return error_ != nullptr || condition(); });
    if (error_ != nullptr)
      std::rethrow_exception(error_);
  }

  /// The next item; none at the end.
  std::optional<Item> take() {
    std::unique_lock hold(lock_);
    busy_ = false;
    changed_.notify_all();
    changed_.wait(hold, [this] { return ended_ || !waiting_.empty(); });
    if (ended_)
      return std::nullopt;
    std::optional<Item> item(std::move(waiting_.front()));
    waiting_.pop_front();
    busy_ = true;
    return item;
  }

  void run() {
    try {
      while (std::optional<Item> item = take())
        work_(*item);
    } catch (...) {
      const std::lock_guard hold(lock_);
      error_ = std::current_exception();
      changed_.notify_all();
    }
  }

  std::size_t room_;
  std::function<void(Item&)> work_;
  std::mutex lock_;
  std::condition_variable changed_;
  std::deque<Item> waiting_;
  bool busy_ = false, ended_ = false;
  std::exception_ptr error_;
  std::thread thread_;  // the last member: it uses the others
};

}  // namespace nkdraw::media
