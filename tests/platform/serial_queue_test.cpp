#include "platform/threads/serial_queue.h"

#include <array>
#include <atomic>
#include <future>
#include <memory>
#include <pthread.h>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

void waitFor(SerialQueue& queue) {
  std::promise<void> reached;
  queue.post([&reached] { reached.set_value(); });
  reached.get_future().wait();
}

TEST(SerialQueueTest, RunsTasksOfAllThreadsOneAtATimeAndInOrder) {
  constexpr int threads = 4;
  constexpr int each = 2000;
  SerialQueue queue("queue");
  std::array<int, threads> next = {};  // touched by the queue alone
  bool isInOrder = true;
  std::vector<std::thread> posters;
  for (std::size_t poster = 0; poster < threads; ++poster) {
    posters.emplace_back([&, poster] {
      for (int number = 0; number < each; ++number) {
        queue.post([&, poster, number] { isInOrder = isInOrder && next.at(poster)++ == number; });
      }
    });
  }
  for (std::thread& poster : posters) {
    poster.join();
  }
  waitFor(queue);
  EXPECT_TRUE(isInOrder);
  EXPECT_EQ(next, (std::array<int, threads>{each, each, each, each}));
}

TEST(SerialQueueTest, NamesItsThread) {
  SerialQueue queue("app.tolvane.conversion");
  waitFor(queue);
  std::array<char, 16> name = {};
  std::promise<void> named;
  queue.post([&] {
    ::pthread_getname_np(::pthread_self(), name.data(), name.size());
    named.set_value();
  });
  named.get_future().wait();
  EXPECT_STREQ(name.data(), "vane.conversion");
}

TEST(SerialQueueTest, WaitsForTheRunningTaskAndDropsTheRest) {
  std::atomic<bool> isFinished = false;
  std::atomic<bool> isRestRun = false;
  std::promise<void> begun;
  {
    SerialQueue queue("queue");
    queue.post([&] {
      begun.set_value();
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      isFinished = true;
    });
    queue.post([&] { isRestRun = true; });
    begun.get_future().wait();
  }
  EXPECT_TRUE(isFinished);
  EXPECT_FALSE(isRestRun);
}

TEST(SerialQueueTest, LetsWhatATaskHeldPostWhenItGoes) {
  SerialQueue queue("queue");
  std::promise<void> posted;
  struct PostsAtItsEnd {
    SerialQueue& queue;
    std::promise<void>& posted;
    ~PostsAtItsEnd() {
      queue.post([&posted = posted] { posted.set_value(); });
    }
  };
  auto held = std::make_shared<PostsAtItsEnd>(queue, posted);
  queue.post([held = std::move(held)] {});
  EXPECT_EQ(posted.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

}  // namespace
}  // namespace tolvane
