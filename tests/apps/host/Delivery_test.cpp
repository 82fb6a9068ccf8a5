#include <poll.h>
#include <soci/soci.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fstream>
#include <mutex>
#include <thread>

#include "apps/host/Host.h"
#include "host/Store.h"
#include "host/Token.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// Takes posts, and refuses the first ones.
class Receiver {
 public:
  explicit Receiver(int refusals, bool blnIpv6 = false)
      : refusals_(refusals), listener_(::socket(blnIpv6 ? AF_INET6 : AF_INET, SOCK_STREAM, 0)) {
    LocalPlace place(0, blnIpv6);
    ::bind(listener_, place.get(), place.lngSize);
    ::listen(listener_, 16);
    ::getsockname(listener_, place.get(), &place.lngSize);
    strPlace_ = (blnIpv6 ? "[::1]:" : "127.0.0.1:") + std::to_string(place.port());
    thread_ = std::jthread([this](const std::stop_token& stop) { serve(stop); });
  }
  ~Receiver() {
    thread_.request_stop();
    thread_.join();
    ::close(listener_);
  }
  const std::string& place() const { return strPlace_; }
  std::string url() const { return "http://" + strPlace_ + "/in"; }
  std::vector<std::string> requests() const {
    const std::scoped_lock lock(mutex_);
    return requests_;
  }

 private:
  void serve(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      pollfd waiting{.fd = listener_, .events = POLLIN, .revents = 0};
      if (::poll(&waiting, 1, 50) <= 0) continue;
      const int descriptor = ::accept(listener_, nullptr, nullptr);
      std::string strRequest;
      char buffer[4096];
      // The message ends the request.
      while (strRequest.find("</InspectionReport>") == std::string::npos) {
        const ssize_t lngRead = ::recv(descriptor, buffer, sizeof(buffer), 0);
        if (lngRead <= 0) break;
        strRequest.append(buffer, static_cast<std::size_t>(lngRead));
      }
      std::string_view strAnswer = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";
      {
        const std::scoped_lock lock(mutex_);
        requests_.push_back(strRequest);
        if (requests_.size() <= static_cast<std::size_t>(refusals_)) {
          strAnswer = "HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n";
        }
      }
      ::send(descriptor, strAnswer.data(), strAnswer.size(), MSG_NOSIGNAL);
      ::close(descriptor);
    }
  }

  const int refusals_;
  const int listener_;
  std::string strPlace_;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  std::jthread thread_;
};

class Delivery : public HostTest {
 protected:
  static std::string accepted(const Host& host) {
    const std::string strPlace = parked(host, exampleForm("complete.form"));
    const Form form = filledIn(host.get(strPlace), exampleForm("complete.form"), "submit");
    EXPECT_EQ(host.post(strPlace, form).status, 303);
    return strPlace.substr(8);
  }
  static bool hasDelivered(const Host& host, int number) {
    return host.get("/metrics")
        .shows("varnel_messages_delivered_total " + std::to_string(number) + '\n');
  }
};

TEST_F(Delivery, PostsUntilTheMessageIsTaken) {
  const Receiver receiver(2);
  const Host host(words({"--deliver", receiver.url()}));
  const std::string strId = accepted(host);
  ASSERT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  const std::vector<std::string> requests = receiver.requests();
  ASSERT_EQ(requests.size(), 3U);
  for (const std::string& strRequest : requests) {
    EXPECT_TRUE(strRequest.starts_with("POST /in HTTP/1.1\r\n"));
    EXPECT_NE(strRequest.find("Idempotency-Key: " + strId + "\r\n"), std::string::npos);
    EXPECT_TRUE(strRequest.ends_with(host.get("/messages/" + strId + ".xml").body));
  }
  EXPECT_NE(host.log().find("the receiver answered 503"), std::string::npos);
  EXPECT_TRUE(host.get("/metrics").shows("varnel_delivery_failures_total 2\n"));
}

TEST_F(Delivery, PostsToAnAddressOfIpv6) {
  if (!hasIpv6()) GTEST_SKIP() << "this machine has no ::1";
  const Receiver receiver(0, true);
  const Host host(words({"--deliver", receiver.url()}));
  const std::string strId = accepted(host);
  ASSERT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  const std::vector<std::string> requests = receiver.requests();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_TRUE(requests[0].starts_with("POST /in HTTP/1.1\r\n"));
  EXPECT_NE(requests[0].find("\r\nHost: " + receiver.place() + "\r\n"), std::string::npos);
  EXPECT_TRUE(host.get("/messages/" + strId).shows("To " + receiver.url() + ", delivered 20"));
}

TEST_F(Delivery, GoesOnWhereAKilledHostStopped) {
  std::string strId;
  {
    Host host(words({"--deliver", "http://127.0.0.1:1/nobody"}));
    strId = accepted(host);
    EXPECT_TRUE(becomes([&] { return host.log().find("delivery-failed") != std::string::npos; }));
    EXPECT_EQ(host.stop(SIGKILL), 128 + SIGKILL);
  }
  const Host host(words({"--deliver", "directory:" + inbox().string()}));
  EXPECT_EQ(host.get("/messages/" + strId).status, 200);
  EXPECT_TRUE(host.get("/parked/" + strId).shows("value=\"NB-2025-00417\""));
  EXPECT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  EXPECT_EQ(delivered(), std::vector{strId + ".xml"});
}

/// To a receiver that takes the message and says nothing.
TEST_F(Delivery, IsCutShortWhenTheHostIsStopped) {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  LocalPlace place(0, false);
  ASSERT_EQ(::bind(listener, place.get(), place.lngSize), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  ::getsockname(listener, place.get(), &place.lngSize);
  const std::string strUrl = "http://127.0.0.1:" + std::to_string(place.port()) + "/in";
  Host host(words({"--deliver", strUrl}));
  const std::string strId = accepted(host);
  const int descriptor = ::accept(listener, nullptr, nullptr);
  EXPECT_EQ(host.stop(SIGTERM), 0);
  ::close(descriptor);
  ::close(listener);

  // The last line is the end, and the message is nobody's any more.
  const std::string strLog = host.log();
  const std::size_t lngFailed = strLog.find("\"delivery-failed\",\"id\":\"" + digestOf(strId));
  EXPECT_LT(lngFailed, strLog.find("\"stopped\"")) << strLog;
  EXPECT_NE(strLog.find("the host is being stopped"), std::string::npos) << strLog;
  EXPECT_TRUE(strLog.ends_with("\"event\":\"stopped\"}\n")) << strLog;
  Store store("sqlite:" + directory_.at("store.sqlite"), 1);
  const std::optional<OutboxItem> item = store.claim(0);
  ASSERT_TRUE(item);
  EXPECT_EQ(item->strId, strId);
}

/// A message that one host wrote into a directory, and did not rename before it was killed. The
/// store of the tests plays that host.
TEST_F(Delivery, IsFinishedInTheDirectoryWhereItWasBegun) {
  std::string strId;
  {
    Host host(words({"--deliver", "http://127.0.0.1:1/nobody?key=secret"}));
    strId = accepted(host);
    EXPECT_TRUE(becomes([&] { return host.log().find("delivery-failed") != std::string::npos; }));
    const HttpAnswer receipt = host.get("/messages/" + strId);
    EXPECT_TRUE(receipt.shows("To http://127.0.0.1:1/nobody; it is on its way"));
    host.stop(SIGKILL);
  }
  const std::filesystem::path first = directory_.at("first");
  const std::string strTarget = "directory:" + first.string();
  {
    Store store("sqlite:" + directory_.at("store.sqlite"), 1);
    std::optional<OutboxItem> item;
    ASSERT_TRUE(becomes([&] { return (item = store.claim(0)).has_value(); }));
    std::filesystem::create_directory(first);
    std::ofstream(first / ('.' + strId + ".tmp")) << item->strMessage;
    ASSERT_TRUE(store.markWritten(*item, strTarget));
  }
  std::filesystem::rename(first, directory_.at("away"));
  const Host host(words({"--deliver", "directory:" + inbox().string()}));
  EXPECT_TRUE(becomes([&] { return host.log().find("delivery-failed") != std::string::npos; }));
  EXPECT_FALSE(hasDelivered(host, 1));

  std::filesystem::rename(directory_.at("away"), first);
  EXPECT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  EXPECT_EQ(textOfFile(first / (strId + ".xml")), host.get("/messages/" + strId + ".xml").body);
  EXPECT_EQ(delivered(), std::vector<std::string>{});
  EXPECT_TRUE(host.get("/messages/" + strId).shows("To " + strTarget + ", delivered 20"));
}

std::vector<std::string> namesIn(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

/// To a directory, where one host ends in the middle and another goes on.
class DirectoryDelivery : public Delivery {
 protected:
  /// Submits a form on a host that cannot rename what it wrote, and ends that host; the id.
  std::string writtenTo(const std::filesystem::path& directory) const {
    Host host(words({"--deliver", "directory:" + directory.string()}));
    const std::string strPlace = parked(host, exampleForm("complete.form"));
    const std::string strId = strPlace.substr(8);
    std::filesystem::create_directories(directory / (strId + ".xml") / "in the way");
    const Form form = filledIn(host.get(strPlace), exampleForm("complete.form"), "submit");
    EXPECT_EQ(host.post(strPlace, form).status, 303);
    EXPECT_TRUE(becomes([&] { return host.log().find("delivery-failed") != std::string::npos; }));
    EXPECT_EQ(host.stop(SIGTERM), 0);
    std::filesystem::remove_all(directory / (strId + ".xml"));
    return strId;
  }
};

TEST_F(DirectoryDelivery, BeginsAgainWhereNothingIsLeftOfWhatWasWritten) {
  const std::filesystem::path other = directory_.at("other");
  for (const std::filesystem::path& directory : {inbox(), other}) {
    SCOPED_TRACE(directory.string());
    const std::string strId = writtenTo(inbox());
    std::filesystem::remove_all(inbox());
    std::filesystem::create_directory(inbox());
    const Host host(words({"--deliver", "directory:" + directory.string()}));
    ASSERT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
    EXPECT_EQ(textOfFile(directory / (strId + ".xml")),
              host.get("/messages/" + strId + ".xml").body);
    EXPECT_EQ(namesIn(directory), std::vector{strId + ".xml"});
    EXPECT_NE(host.log().find("\"written-anew\",\"id\":\"" + digestOf(strId)), std::string::npos);
    EXPECT_TRUE(host.get("/messages/" + strId).shows("To directory:" + directory.string()));
  }
}

TEST_F(DirectoryDelivery, DoesNotHappenTwiceWhenTheMessageWasFetched) {
  const std::string strId = writtenTo(inbox());
  // What a host leaves behind that is killed after the renaming, when the message was fetched.
  std::filesystem::remove(inbox() / ('.' + strId + ".1.tmp"));
  EXPECT_EQ(delivered(), std::vector{'.' + strId + ".1.mark.tmp"});
  const Host host(words({"--deliver", "directory:" + inbox().string()}));
  ASSERT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  EXPECT_EQ(delivered(), std::vector<std::string>());
}

TEST_F(DirectoryDelivery, LeavesNothingOfAHostThatWasKilledWhileItWrote) {
  std::string strId;
  {
    Host host(words({"--deliver", "http://127.0.0.1:1/nobody"}));
    strId = accepted(host);
    EXPECT_TRUE(becomes([&] { return host.log().find("delivery-failed") != std::string::npos; }));
    host.stop(SIGKILL);
  }
  std::filesystem::create_directory(inbox());
  {
    Store store("sqlite:" + directory_.at("store.sqlite"), 1);
    std::optional<OutboxItem> item;
    ASSERT_TRUE(becomes([&] { return (item = store.claim(0)).has_value(); }));
    const std::string strAttempt = std::to_string(item->lngAttempts);
    std::ofstream(inbox() / ('.' + strId + '.' + strAttempt + ".tmp")) << "half a mess";
  }
  const Host host(words({"--deliver", "directory:" + inbox().string()}));
  ASSERT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  EXPECT_TRUE(becomes([&] { return delivered() == std::vector{strId + ".xml"}; }));
}

TEST_F(DirectoryDelivery, BeginsWithTakingAwayWhatIsLeftOfDeliveredMessages) {
  const std::vector<std::string> all = words({"--deliver", "directory:" + inbox().string()});
  std::string strId;
  {
    const Host host(all);
    strId = accepted(host);
    ASSERT_TRUE(becomes([&] { return hasDelivered(host, 1); }));
  }
  const std::string strUnknown(32, 'a');
  std::vector<std::string> kept = {".other.tmp", '.' + strUnknown + ".1.tmp", strId + ".xml"};
  for (const std::string& strName :
       {kept[0], kept[1], '.' + strId + ".2.tmp", '.' + strId + ".2.mark.tmp"}) {
    std::ofstream(inbox() / strName) << "left";
  }
  std::ranges::sort(kept);
  const Host host(all);
  EXPECT_TRUE(becomes([&] { return delivered() == kept; }));
}

/// A host that is held up while it writes, for so long that another one takes the message over. It
/// writes into a pipe, which holds it up until somebody reads.
TEST_F(DirectoryDelivery, IsNotDisturbedByAHostThatGoesOnLate) {
  const std::vector<std::string> all = words({"--deliver", "directory:" + inbox().string()});
  const Host late(all);
  const std::string strId = parked(late, exampleForm("complete.form")).substr(8);
  const std::string strPlace = "/parked/" + strId;
  const std::string strPipe = inbox() / ('.' + strId + ".1.tmp");
  ASSERT_EQ(::mkfifo(strPipe.c_str(), 0600), 0);
  ASSERT_EQ(::link(strPipe.c_str(), directory_.at("pipe").c_str()), 0);
  const Form form = filledIn(late.get(strPlace), exampleForm("complete.form"), "submit");
  ASSERT_EQ(late.post(strPlace, form).status, 303);
  const std::string strStore = "db=\"" + directory_.at("store.sqlite") + "\" timeout=10";
  {
    soci::session sql("sqlite3", strStore);
    int lngAttempts = 0;
    ASSERT_TRUE(becomes([&] {
      sql << "SELECT attempts FROM outbox", soci::into(lngAttempts);
      return lngAttempts == 1;
    }));
    sql << "UPDATE outbox SET due = 0";  // its lease has ended
  }
  {
    Host other(all);
    ASSERT_TRUE(becomes([&] { return hasDelivered(other, 1); }));
    EXPECT_TRUE(becomes([&] { return delivered() == std::vector{strId + ".xml"}; }));
    EXPECT_EQ(other.stop(SIGTERM), 0);
  }
  const std::string strMessage = late.get("/messages/" + strId + ".xml").body;
  EXPECT_EQ(textOfFile(directory_.at("pipe")), strMessage);

  const std::string strNext = accepted(late);
  ASSERT_TRUE(becomes([&] { return hasDelivered(late, 1); }));
  std::vector<std::string> both = {strId + ".xml", strNext + ".xml"};
  std::ranges::sort(both);
  EXPECT_TRUE(becomes([&] { return delivered() == both; }));
  EXPECT_EQ(textOfFile(inbox() / (strId + ".xml")), strMessage);
  EXPECT_EQ(late.log().find("delivery-failed"), std::string::npos) << late.log();
}

TEST_F(Delivery, OfManyHostsOnOneStoreHappensOnce) {
  const std::vector<std::string> all = words({"--deliver", "directory:" + inbox().string()});
  const Host first(all);
  const Host second(all);
  std::vector<std::string> expected;
  for (int each = 0; each < 6; ++each) {
    // A form that one host parked is opened and submitted at the other, with the first one's page.
    const std::string strPlace = parked(first, exampleForm("complete.form"));
    const Form form = filledIn(first.get(strPlace), exampleForm("complete.form"), "submit");
    EXPECT_EQ(second.post(strPlace, form).status, 303);
    expected.push_back(strPlace.substr(8) + ".xml");
  }
  std::ranges::sort(expected);
  const auto deliveredBy = [](const Host& host) {
    const std::string strMetrics = host.get("/metrics").body;
    const std::string_view strName = "\nvarnel_messages_delivered_total ";
    return std::atoi(strMetrics.c_str() + strMetrics.find(strName) + strName.size());
  };
  EXPECT_TRUE(becomes([&] { return deliveredBy(first) + deliveredBy(second) == 6; }));
  EXPECT_EQ(delivered(), expected);
}

TEST_F(Delivery, WithoutATargetKeepsMessagesForDownload) {
  const Host host(words());
  const std::string strId = accepted(host);
  EXPECT_TRUE(host.get("/messages/" + strId).shows("kept here for download"));
  EXPECT_EQ(host.get("/messages/" + strId + ".xml").status, 200);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
