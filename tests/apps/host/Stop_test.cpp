#include <chrono>
#include <csignal>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "apps/host/Host.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// The signals that end the host.
class Stop : public HostTest {};

TEST_F(Stop, IsEndedCleanlyBySigterm) {
  Host host(words());
  const Connection silent(host.port());
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  EXPECT_EQ(host.get("/healthz").body, "alive\n");
  EXPECT_EQ(host.stop(SIGTERM), 0);
  EXPECT_NE(host.log().find("\"stopped\""), std::string::npos);

  const Host next(words());  // finds what the one before acknowledged
  EXPECT_TRUE(next.get(strPlace).shows("Havnehuset"));
}

TEST_F(Stop, TellsABalancerThatItIsBeingStoppedBeforeItRefusesConnections) {
  Host host(words());
  for (int probe = 0; probe < 2; ++probe) EXPECT_EQ(host.get("/readyz").status, 200);
  ASSERT_EQ(::kill(host.process(), SIGTERM), 0);
  HttpAnswer probe;
  EXPECT_TRUE(becomes([&] { return (probe = host.get("/readyz")).status != 200; }));
  EXPECT_EQ(probe.status, 503);
  EXPECT_TRUE(probe.shows("The host is being stopped."));
  // Who has not heard of it yet is served all the same.
  const HttpAnswer form = host.get("/forms/inspection");
  EXPECT_EQ(form.status, 200);
  EXPECT_EQ(form.header("connection"), "close");
  EXPECT_EQ(host.waitForEnd(), 0);
  EXPECT_NE(host.log().find("\"stopped\""), std::string::npos);
}

TEST_F(Stop, RefusesConnectionsAtOnceWhereReadinessWasAskedForOnce) {
  Host host(words());
  EXPECT_EQ(host.get("/readyz").status, 200);  // as a script does that starts a host
  ASSERT_EQ(::kill(host.process(), SIGTERM), 0);
  ASSERT_TRUE(becomes([&] { return host.log().find("\"stopping\"") != std::string::npos; }));
  int lngServed = 0;
  EXPECT_TRUE(becomes([&] {
    try {
      if (host.get("/healthz").status == 200) ++lngServed;
      return false;
    } catch (const std::runtime_error&) {
      return true;  // refused
    }
  }));
  EXPECT_EQ(lngServed, 0);
  EXPECT_EQ(host.waitForEnd(), 0);
}

/// Whether a thread, by its file of /proc, has both signals blocked that ask the host to stop.
bool blocksStopSignals(const std::string& strStatusFile) {
  std::istringstream lines(textOfFile(strStatusFile));
  for (std::string strLine; std::getline(lines, strLine);) {
    if (!strLine.starts_with("SigBlk:")) continue;
    const unsigned long long lngBlocked = std::stoull(strLine.substr(7), nullptr, 16);
    const unsigned long long lngWanted = 1ULL << (SIGTERM - 1) | 1ULL << (SIGINT - 1);
    return (lngBlocked & lngWanted) == lngWanted;
  }
  return false;
}

TEST_F(Stop, LetsNoThreadBeInterruptedByTheSignalsThatEndIt) {
  const Host host(words({"--deliver", "directory:" + inbox().string(), "--workers", "3"}));
  ASSERT_NE(parked(host, exampleForm("draft.form")), "");
  int lngThreads = 0;
  for (const auto& thread :
       fs::directory_iterator("/proc/" + std::to_string(host.process()) + "/task")) {
    EXPECT_TRUE(blocksStopSignals(thread.path() / "status"));
    ++lngThreads;
  }
  EXPECT_GE(lngThreads, 1 + 3 + 1);  // the server, the workers, the deliveries
}

TEST_F(Stop, IsEndedCleanlyAtWhateverMoment) {
  // How long the host takes until it listens; the signals come within twice that.
  const auto begin = std::chrono::steady_clock::now();
  const Host first(words({"--deliver", "directory:" + inbox().string()}));
  const auto start = std::chrono::steady_clock::now() - begin;
  constexpr int kTimes = 24;
  for (int lngTime = 0; lngTime < kTimes; ++lngTime) {
    const auto host = Host::started(words({"--deliver", "directory:" + inbox().string()}));
    // Before its first line of code the system would end it, which is no clean end and none that
    // is lost.
    const std::string strStatus = "/proc/" + std::to_string(host->process()) + "/status";
    ASSERT_TRUE(becomes([&] { return blocksStopSignals(strStatus); }));
    std::this_thread::sleep_for(start * 2 * lngTime / kTimes);
    EXPECT_EQ(host->stop(lngTime % 2 == 0 ? SIGTERM : SIGINT), 0) << lngTime << '\n' << host->log();
    EXPECT_NE(host->log().find("\"stopped\""), std::string::npos) << lngTime;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
