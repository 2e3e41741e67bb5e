// SPDX-License-Identifier: BSD-2-Clause
#include <media/worker.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <vector>

using nkdraw::media::Worker;

namespace {

TEST(WorkerTest, WorksOnItemsInTheirOrder) {
  std::vector<int> done;
  Worker<std::unique_ptr<int>> worker(3,
                                      [&](std::unique_ptr<int>& item) { done.push_back(*item); });
  for (int i = 0; i < 500; ++i)
    worker.push(std::make_unique<int>(i));
  worker.finish();
  ASSERT_EQ(done.size(), 500U);
  for (int i = 0; i < 500; ++i)
    EXPECT_EQ(done[static_cast<std::size_t>(i)], i);
}

TEST(WorkerTest, HoldsNoMoreItemsThanItHasRoomFor) {
  std::atomic<int> alive = 0;
  int most = 0;
  struct Counted {
    explicit Counted(std::atomic<int>& count) : alive(&count) { ++*alive; }
    Counted(Counted&& other) noexcept : alive(std::exchange(other.alive, nullptr)) {}
    Counted& operator=(Counted&&) = delete;
    ~Counted() {
      if (alive != nullptr)
        --*alive;
    }
    std::atomic<int>* alive;
  };
  Worker<Counted> worker(2, [](Counted&) {});
  for (int i = 0; i < 500; ++i) {
    worker.push(Counted(alive));
    most = std::max(most, alive.load());
  }
  worker.finish();
  EXPECT_LE(most, 4) << "two wait, one is worked on, one is about to be taken";
}

TEST(WorkerTest, CanBeUsedAfterAllIsDone) {
  int sum = 0;
  Worker<int> worker(1, [&](int& item) { sum += item; });
  worker.finish();
  EXPECT_EQ(sum, 0);
  worker.push(1);
  worker.finish();
  worker.push(2);
  worker.finish();
  EXPECT_EQ(sum, 3);
}

TEST(WorkerTest, ThrowsWhatItsWorkThrewAndDoesNoMore) {
  int done = 0;
  Worker<int> worker(2, [&](int& item) {
    if (item == 3)
      throw std::runtime_error("three");
    ++done;
  });
  EXPECT_THROW(
      {
        for (int i = 0; i < 500; ++i)
          worker.push(i);
      },
      std::runtime_error);
  EXPECT_THROW(worker.finish(), std::runtime_error);
  EXPECT_THROW(worker.push(1), std::runtime_error);
  EXPECT_EQ(done, 3);
}

TEST(WorkerTest, EndsWithoutTheItemsThatWait) {
  std::atomic<bool> go = false;
  std::atomic<int> done = 0;
  {
    Worker<int> worker(3, [&](int&) {
      go.wait(false);
      ++done;
    });
    for (int i = 0; i < 3; ++i)
      worker.push(i);
    go = true;
    go.notify_all();
  }
  EXPECT_LE(done, 3);
}

}  // namespace
