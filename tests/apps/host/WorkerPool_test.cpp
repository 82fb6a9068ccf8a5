#include "host/WorkerPool.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

namespace {

TEST(WorkerPool, TakesAsMuchAsItsWorkersAndItsQueueHold) {
  std::mutex mutex;
  std::condition_variable changed;
  bool blnGo = false;
  int lngStarted = 0;
  int lngDone = 0;
  const auto task = [&] {
    std::unique_lock lock(mutex);
    ++lngStarted;
    changed.notify_all();
    changed.wait(lock, [&] { return blnGo; });
    ++lngDone;
  };
  {
    WorkerPool pool(2, 3);
    EXPECT_TRUE(pool.enqueue(task));
    EXPECT_TRUE(pool.enqueue(task));
    {
      std::unique_lock lock(mutex);
      changed.wait(lock, [&] { return lngStarted == 2; });
    }
    for (int each = 0; each < 3; ++each) EXPECT_TRUE(pool.enqueue(task));
    EXPECT_FALSE(pool.enqueue(task));
    const std::scoped_lock lock(mutex);
    blnGo = true;
    changed.notify_all();
  }
  EXPECT_EQ(lngDone, 5);  // what was taken is done before the end
}

}  // namespace
