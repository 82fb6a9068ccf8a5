#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <ctime>

#include "support/Deployment.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// Waits, within a run, until the thread of the run is cancelled, and then at points where that
/// would take effect.
class WaitingSink : public TraceSink {
 public:
  void write(std::string_view /*strLine*/) override {
    blnInRun = true;
    const timespec moment{0, 1'000'000};
    while (!blnCancelled) ::nanosleep(&moment, nullptr);
    ::pthread_testcancel();
  }

  std::atomic<bool> blnInRun = false, blnCancelled = false;
};

struct CancelledRun {
  const Deployment deployment;
  TestHost host{{{"q", "one"}}};
  WaitingSink sink;
  Submission submission{deployment};
  bool blnSucceeded = false, blnBeyond = false;
};

void* runAndGoOn(void* argument) {
  auto& run = *static_cast<CancelledRun*>(argument);
  run.blnSucceeded = run.submission.run(run.host.services()).Success();
  ::pthread_testcancel();
  run.blnBeyond = true;
  return nullptr;
}

TEST(Cancellation, OfAThreadTakesEffectBehindTheRunThatItIsIn) {
  CancelledRun run;
  run.host.services().traceSink = &run.sink;
  run.submission.blnValidateAgainstSchema = true;
  pthread_t thread = {};
  ASSERT_EQ(pthread_create(&thread, nullptr, runAndGoOn, &run), 0);
  while (!run.sink.blnInRun) ::usleep(1000);
  EXPECT_EQ(pthread_cancel(thread), 0);
  run.sink.blnCancelled = true;
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, PTHREAD_CANCELED);
  EXPECT_TRUE(run.blnSucceeded);
  EXPECT_TRUE(run.submission.objSendXML);
  EXPECT_FALSE(run.blnBeyond);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
