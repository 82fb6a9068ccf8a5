#include "host/Store.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <thread>

#include "apps/host/Host.h"
#include "support/Documents.h"

// SQLite calls these two when it writes, and when it waits for another's turn.
namespace {

std::atomic<std::latch*> writing = nullptr;  // who is told that a write has reached the disk
std::atomic<bool> blnSlow = false;           // the disk is slower than anybody waits for it
std::atomic<int> lngWaits = 0;               // how often somebody wanted to look again later

}  // namespace

extern "C" int fdatasync(int descriptor) {
  if (std::latch* const told = writing.exchange(nullptr)) {
    blnSlow = true;
    told->count_down();
    blnSlow.wait(true);
  }
  return ::fsync(descriptor);
}

extern "C" int usleep(useconds_t lngMicroseconds) {
  if (blnSlow) {
    ++lngWaits;
  } else {
    std::this_thread::sleep_for(std::chrono::microseconds(lngMicroseconds));
  }
  return 0;
}

namespace Varnel_Tolv_XML_Creation::test {
namespace {

StoredForm formNamed(char letter) {
  StoredForm form;
  form.strId = std::string(32, letter);
  form.strDeployment = "inspection";
  form.strState = "parked";
  form.lngVersion = 1;
  return form;
}

TEST(Store, LetsTheWritersOfOneHostWaitForEachOther) {
  const TemporaryDirectory directory;
  Store store("sqlite:" + directory.at("store.sqlite"), 4);
  std::latch begun(1);
  writing = &begun;
  std::jthread first([&] { store.create(formNamed('a')); });
  begun.wait();  // from now on it holds the store's lock
  std::latch other(1);
  std::atomic<bool> blnDone = false;
  std::string strProblem;
  std::jthread second([&] {
    other.count_down();
    try {
      store.create(formNamed('b'));
    } catch (const StoreProblem& problem) {
      strProblem = problem.what();
    }
    blnDone = true;
  });
  other.wait();
  // One that does not queue has given up by now, for its waiting takes no time here.
  for (int lngLook = 0; lngLook < 50 && !blnDone; ++lngLook) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_FALSE(blnDone);
  blnSlow = false;
  blnSlow.notify_all();
  first.join();
  second.join();
  EXPECT_EQ(strProblem, "");
  EXPECT_EQ(lngWaits, 0);
  EXPECT_TRUE(store.find(std::string(32, 'a')));
  EXPECT_TRUE(store.find(std::string(32, 'b')));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
