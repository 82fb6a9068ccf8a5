#include "host/Token.h"

#include <gtest/gtest.h>

#include <set>

#include "host/WorkerPool.h"

namespace {

constexpr std::int64_t kDay = std::int64_t{24} * 3600 * 1000;

TEST(Token, IsGoodForItsAddressForADay) {
  const std::string strToken = makeToken("key", "/parked/1", kDay);
  EXPECT_EQ(checkToken("key", "/parked/1", strToken, kDay), TokenState::good);
  EXPECT_EQ(checkToken("key", "/parked/1", strToken, 2 * kDay), TokenState::good);
  EXPECT_EQ(checkToken("key", "/parked/1", strToken, 2 * kDay + 1), TokenState::stale);
  EXPECT_EQ(checkToken("key", "/parked/2", strToken, kDay), TokenState::forged);
  EXPECT_EQ(checkToken("other", "/parked/1", strToken, kDay), TokenState::forged);
}

TEST(RandomId, IsAnIdAndNeverTheSame) {
  std::set<std::string> ids;
  for (int each = 0; each < 1000; ++each) {
    const std::string strId = randomId();
    EXPECT_TRUE(isId(strId)) << strId;
    ids.insert(strId);
  }
  EXPECT_EQ(ids.size(), 1000U);
  EXPECT_FALSE(isId("0123456789abcdef0123456789abcde"));
  EXPECT_FALSE(isId("0123456789ABCDEF0123456789abcdef"));
}

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
