#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "interface/BuildXML.h"
#include "support/ExampleRun.h"

// Instances side by side on the same configuration files. The thread sanitizer sees all of our
// code; libxml2 and RE2 are not built for it, so of them it sees only what they allocate, copy and
// lock through the C library. Their locks also put parts of two runs in an order, which hides most
// meetings of a race from it: hence so many runs.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

#if defined(__SANITIZE_THREAD__)
constexpr int kManyRuns = 1000;
#else
constexpr int kManyRuns = 100;  // without the sanitizer there is less to see in them
#endif
constexpr int kSomeRuns = 20;

RunOutcome alone(const ExampleRun& form) {
  BuildXML objBuild(form.host());
  return form.run(objBuild);
}

class Threads : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(complete_.objAck.Success()) << complete_.told();
    ASSERT_TRUE(faulty_.strVerdict.starts_with("for the user|\ncasenumber|")) << faulty_.told();
  }

  static int goodRuns(const ExampleRun& form, BuildXML& objBuild, int lngRuns,
                      const RunOutcome& expected) {
    int lngGood = 0;
    for (int lngRun = 0; lngRun < lngRuns; ++lngRun) {
      if (form.run(objBuild) == expected) ++lngGood;
    }
    return lngGood;
  }

  const ExampleRun completeForm_{"complete.form"};
  const ExampleRun faultyForm_{"faulty.form"};

  // What each form comes to when nothing else runs.
  const RunOutcome complete_ = alone(completeForm_);
  const RunOutcome faulty_ = alone(faultyForm_);
};

TEST_F(Threads, WithAnInstanceEachGiveEveryRunTheOutcomeThatItHasAlone) {
  int lngComplete = 0;
  int lngFaulty = 0;
  std::thread first([&] {
    BuildXML objBuild(completeForm_.host());
    lngComplete = goodRuns(completeForm_, objBuild, kManyRuns, complete_);
  });
  std::thread second([&] {
    BuildXML objBuild(faultyForm_.host());
    lngFaulty = goodRuns(faultyForm_, objBuild, kManyRuns, faulty_);
  });
  first.join();
  second.join();
  EXPECT_EQ(lngComplete, kManyRuns);
  EXPECT_EQ(lngFaulty, kManyRuns);
}

TEST_F(Threads, MayShareTheServicesOfOneHost) {
  std::vector<int> good(4, 0);
  std::vector<std::thread> threads;
  for (int& lngGood : good) {
    threads.emplace_back([&] {
      BuildXML objBuild(completeForm_.host());
      lngGood = goodRuns(completeForm_, objBuild, kSomeRuns, complete_);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(good, std::vector<int>(4, kSomeRuns));
}

TEST_F(Threads, MayMakeUseAndDestroyOneInstanceInTurn) {
  std::unique_ptr<BuildXML> objBuild;
  int lngGood = 0;
  const auto use = [&] { lngGood += goodRuns(faultyForm_, *objBuild, kSomeRuns, faulty_); };
  std::thread([&] { objBuild = std::make_unique<BuildXML>(faultyForm_.host()); }).join();
  std::thread(use).join();
  std::thread(use).join();
  std::thread([&] { objBuild.reset(); }).join();
  EXPECT_EQ(lngGood, 2 * kSomeRuns);
}

TEST_F(Threads, MayHandAnInstanceOnToAnother) {
  BuildXML objBuild(completeForm_.host());
  std::thread([&] {
    BuildXML objMade(faultyForm_.host());
    EXPECT_EQ(goodRuns(faultyForm_, objMade, 1, faulty_), 1);
    objBuild = std::move(objMade);
  }).join();
  EXPECT_EQ(goodRuns(faultyForm_, objBuild, 2, faulty_), 2);
}

TEST_F(Threads, MayMakeInstancesWhileOthersAreDestroyed) {
  int lngFirst = 0;
  int lngSecond = 0;
  const auto work = [&](int& lngGood) {
    for (int lngRun = 0; lngRun < kSomeRuns; ++lngRun) {
      BuildXML objBuild(completeForm_.host());
      lngGood += goodRuns(completeForm_, objBuild, 1, complete_);
    }
  };
  std::thread first([&] { work(lngFirst); });
  std::thread second([&] { work(lngSecond); });
  first.join();
  second.join();
  EXPECT_EQ(lngFirst, kSomeRuns);
  EXPECT_EQ(lngSecond, kSomeRuns);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
