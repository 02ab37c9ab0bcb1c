#include "platform/threads/event_loop.h"

#include <array>
#include <stdexcept>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(EventLoopTest, RunsTasksInTheOrderOfPosting) {
  EventLoop loop;
  std::vector<int> order;
  for (int number = 0; number < 3; ++number) {
    loop.post([&, number] {
      order.push_back(number);
      loop.post([&, number] { order.push_back(10 + number); });
    });
  }
  loop.post([&] { loop.post([&] { loop.quit(); }); });
  loop.run();
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 10, 11, 12}));
}

TEST(EventLoopTest, RunsWhatMayWaitInOneOrderWithTheRest) {
  EventLoop loop;
  std::vector<int> order;
  loop.postSoon([&] { order.push_back(0); });
  loop.post([&] {
    order.push_back(1);
    // Nothing urgent follows: both must come without being woken for.
    loop.postSoon([&] { order.push_back(3); });
    loop.postSoon([&] { loop.quit(); });
  });
  loop.postSoon([&] { order.push_back(2); });
  loop.run();
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3}));
}

TEST(EventLoopTest, KeepsTheOrderOfEachPostingThread) {
  constexpr int threads = 4;
  constexpr int each = 2000;
  EventLoop loop;
  std::array<int, threads> next = {};
  int total = 0;
  bool isInOrder = true;
  std::vector<std::thread> posters;
  for (std::size_t poster = 0; poster < threads; ++poster) {
    posters.emplace_back([&, poster] {
      for (int number = 0; number < each; ++number) {
        const auto post = number % 3 == 0 ? &EventLoop::post : &EventLoop::postSoon;
        (loop.*post)([&, poster, number] {
          isInOrder = isInOrder && next.at(poster)++ == number;
          if (++total == threads * each) {
            loop.quit();
          }
        });
      }
    });
  }
  loop.run();
  for (std::thread& poster : posters) {
    poster.join();
  }
  EXPECT_TRUE(isInOrder);
}

TEST(EventLoopTest, LeavesTheRestToTheNextRun) {
  EventLoop loop;
  int ran = 0;
  loop.post([&] { loop.quit(); });
  loop.post([&] {
    ++ran;
    throw std::runtime_error("stop");
  });
  loop.post([&] {
    ++ran;
    loop.quit();
  });
  loop.run();
  EXPECT_EQ(ran, 0);
  EXPECT_THROW(loop.run(), std::runtime_error);
  EXPECT_EQ(ran, 1);
  loop.run();
  EXPECT_EQ(ran, 2);
}

TEST(EventLoopTest, CallsBackForReadableDescriptorsUntilUnwatched) {
  EventLoop loop;
  std::array<int, 2> ends = {};
  ASSERT_EQ(::pipe(ends.data()), 0);
  std::string seen;
  loop.watch(ends[0], [&] {
    char letter = 0;
    if (::read(ends[0], &letter, 1) == 1) {
      seen += letter;
      return;
    }
    seen += "end";
    loop.unwatch(ends[0]);
    loop.post([&] { loop.quit(); });
  });
  // A task that posts itself again must not starve the descriptor.
  std::function<void()> again = [&] { loop.post(again); };
  loop.post(again);
  ASSERT_EQ(::write(ends[1], "ab", 2), 2);
  ::close(ends[1]);
  loop.run();
  EXPECT_EQ(seen, "abend");
  ::close(ends[0]);
}

}  // namespace
}  // namespace tolvane
