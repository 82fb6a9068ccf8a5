#pragma once

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Documents.h"

// Runs the web host as it was built and talks to it over sockets, as browsers and others do.

namespace Varnel_Tolv_XML_Creation::test {

struct HttpAnswer {
  int status = 0;  // 0: the connection ended without an answer
  std::map<std::string, std::string, std::less<>> headers;  // names in lower case
  std::string body;

  std::string header(std::string_view strName) const {
    const auto found = headers.find(strName);
    return found == headers.end() ? "" : found->second;
  }
  bool shows(std::string_view strText) const { return body.find(strText) != std::string::npos; }
};

/// A port of this machine, at 127.0.0.1 or at ::1.
struct LocalPlace {
  LocalPlace(int port, bool blnIpv6);
  sockaddr* get() { return &address.plain; }
  int port() const;

  union {
    sockaddr plain;
    sockaddr_in four;
    sockaddr_in6 six;
  } address{};
  socklen_t lngSize = 0;
};

/// Whether this machine has ::1.
bool hasIpv6();

/// A connection to a port of this machine.
class Connection {
 public:
  explicit Connection(int port, bool blnIpv6 = false);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// False when the other side takes nothing more.
  bool send(std::string_view strBytes) const;

  /// All that comes until the other side closes.
  HttpAnswer receive() const;

 private:
  int descriptor_;
};

using Headers = std::vector<std::pair<std::string, std::string>>;
using Form = std::map<std::string, std::string, std::less<>>;

std::string encoded(const Form& form);
Form decoded(std::string_view strBody);

/// The hidden inputs of a page, decoded.
Form hiddenInputs(const std::string& strPage);

/// What a browser would send from this page with these answers and this button.
Form filledIn(const HttpAnswer& page, const Form& answers, const std::string& strButton);

/// A form of the example, as it was posted.
Form exampleForm(std::string_view strName);

/// The page from `strBegin` up to `strEnd`; empty when there is none.
std::string partOf(const HttpAnswer& page, std::string_view strBegin, std::string_view strEnd);

/// Waits until it is so; false when it is not within a long time.
bool becomes(const std::function<bool()>& condition);

class Host {
 public:
  /// Starts the host with these words, on a port of its own unless they have --listen, and waits
  /// until it listens or ends.
  /// With limits no file that it writes can be longer, and it can have no more open.
  explicit Host(std::vector<std::string> words, std::size_t lngMostFileBytes = 0,
                std::size_t lngMostFiles = 0);

  /// The same without waiting for anything.
  static std::unique_ptr<Host> started(std::vector<std::string> words);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  int port() const { return port_; }  // 0: it ended
  pid_t process() const { return child_; }

  HttpAnswer get(std::string_view strPath, const Headers& headers = {}) const;
  HttpAnswer post(std::string_view strPath, const Form& form, const Headers& headers = {}) const;
  HttpAnswer request(std::string_view strMethod, std::string_view strPath, const Headers& headers,
                     std::string_view strBody) const;

  /// Ends it; the exit status, or 128 and the number of the signal that ended it.
  int stop(int signal);
  int waitForEnd();

  std::string out() const;
  std::string log() const;

 private:
  Host() = default;
  void start(std::vector<std::string> words, std::size_t lngMostFileBytes,
             std::size_t lngMostFiles);

  TemporaryDirectory directory_;
  pid_t child_ = -1;
  int port_ = 0;
  bool blnIpv6_ = false;
};

/// The lines of a log that tell of an event.
std::vector<nlohmann::json> eventsOf(const Host& host, std::string_view strEvent);

/// A folder with a copy of the example deployment, a store and a directory for messages.
class HostTest : public ::testing::Test {
 protected:
  HostTest();

  /// The words that start a host on it.
  std::vector<std::string> words(std::vector<std::string> more = {}) const;

  /// Parks a new form; its address.
  static std::string parked(const Host& host, const Form& answers);

  /// Puts one text for another in a file of the deployment.
  void replaceIn(const char* name, const std::string& strFrom, const std::string& strTo) const;

  std::filesystem::path deployment() const { return directory_.at("inspection"); }
  std::filesystem::path inbox() const { return directory_.at("inbox"); }
  std::vector<std::string> delivered() const;

  TemporaryDirectory directory_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
