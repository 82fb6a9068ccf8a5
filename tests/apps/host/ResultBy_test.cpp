#include "host/ResultBy.h"

#include <gtest/gtest.h>

#include <latch>
#include <string>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Clock = std::chrono::steady_clock;

TEST(ResultBy, IsThatOfTheFunction) {
  const auto end = Clock::now() + std::chrono::hours(1);
  EXPECT_EQ(resultBy(end, {}, "late", [] { return std::string("here"); }), "here");
  EXPECT_THROW(resultBy(end, {}, "late", []() -> int { throw std::out_of_range("none"); }),
               std::out_of_range);
}

/// The function waits for the end of the test, so nothing but the deadline or the cut ends it.
TEST(ResultBy, DoesNotWaitForOneThatDoesNotEnd) {
  const auto released = std::make_shared<std::latch>(1);
  const auto ended = std::make_shared<std::latch>(2);
  const auto stuck = [released, ended] {
    released->wait();
    ended->count_down();
    return 1;
  };
  try {
    resultBy(Clock::now(), {}, "the name takes too long", stuck);
    ADD_FAILURE();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the name takes too long");
  }
  std::stop_source cut;
  std::jthread other([&] { cut.request_stop(); });
  EXPECT_THROW(resultBy(Clock::now() + std::chrono::hours(1), cut.get_token(), "late", stuck),
               std::runtime_error);
  released->count_down();
  ended->wait();
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
