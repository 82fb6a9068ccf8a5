#include "apps/host/Host.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "platform/host/WebRequest.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr auto kLongTime = std::chrono::seconds(60);
constexpr timeval kSocketTime{.tv_sec = 60, .tv_usec = 0};

std::string unescaped(std::string strText) {
  constexpr std::pair<std::string_view, std::string_view> kEntities[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#13;", "\r"}, {"&amp;", "&"}};
  for (const auto& [strEntity, strCharacter] : kEntities) {
    for (std::size_t at = 0; (at = strText.find(strEntity, at)) != std::string::npos; ++at) {
      strText.replace(at, strEntity.size(), strCharacter);
    }
  }
  return strText;
}

HttpAnswer answerIn(const std::string& strBytes) {
  HttpAnswer answer;
  const std::size_t lngBody = strBytes.find("\r\n\r\n");
  if (lngBody == std::string::npos || !strBytes.starts_with("HTTP/1.1 ")) return answer;
  answer.status = std::atoi(strBytes.c_str() + 9);
  if (answer.status == 100) return answerIn(strBytes.substr(lngBody + 4));
  answer.body = strBytes.substr(lngBody + 4);
  for (std::size_t at = strBytes.find("\r\n") + 2; at < lngBody;) {
    const std::size_t end = strBytes.find("\r\n", at);
    const std::size_t lngColon = strBytes.find(": ", at);
    std::string strName = strBytes.substr(at, lngColon - at);
    std::ranges::transform(strName, strName.begin(), [](unsigned char letter) {
      return static_cast<char>(std::tolower(letter));
    });
    answer.headers[strName] = strBytes.substr(lngColon + 2, end - lngColon - 2);
    at = end + 2;
  }
  return answer;
}

}  // namespace

LocalPlace::LocalPlace(int port, bool blnIpv6)
    : lngSize(blnIpv6 ? sizeof(address.six) : sizeof(address.four)) {
  const in_port_t lngPort = htons(static_cast<std::uint16_t>(port));
  if (blnIpv6) {
    address.six.sin6_family = AF_INET6;
    address.six.sin6_port = lngPort;
    address.six.sin6_addr = in6addr_loopback;
  } else {
    address.four.sin_family = AF_INET;
    address.four.sin_port = lngPort;
    address.four.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  }
}

int LocalPlace::port() const {
  return ntohs(address.plain.sa_family == AF_INET6 ? address.six.sin6_port : address.four.sin_port);
}

bool hasIpv6() {
  LocalPlace place(0, true);
  const int descriptor = ::socket(AF_INET6, SOCK_STREAM, 0);
  const bool blnHas = descriptor >= 0 && ::bind(descriptor, place.get(), place.lngSize) == 0;
  if (descriptor >= 0) ::close(descriptor);
  return blnHas;
}

Connection::Connection(int port, bool blnIpv6)
    : descriptor_(::socket(blnIpv6 ? AF_INET6 : AF_INET, SOCK_STREAM, 0)) {
  LocalPlace place(port, blnIpv6);
  ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &kSocketTime, sizeof(kSocketTime));
  ::setsockopt(descriptor_, SOL_SOCKET, SO_SNDTIMEO, &kSocketTime, sizeof(kSocketTime));
  if (::connect(descriptor_, place.get(), place.lngSize) != 0) {
    ::close(descriptor_);
    throw std::runtime_error("connect");
  }
}

Connection::~Connection() { ::close(descriptor_); }

bool Connection::send(std::string_view strBytes) const {
  while (!strBytes.empty()) {
    const ssize_t lngSent = ::send(descriptor_, strBytes.data(), strBytes.size(), MSG_NOSIGNAL);
    if (lngSent <= 0) return false;
    strBytes.remove_prefix(static_cast<std::size_t>(lngSent));
  }
  return true;
}

HttpAnswer Connection::receive() const {
  std::string strBytes;
  char buffer[16384];
  for (;;) {
    const ssize_t lngRead = ::recv(descriptor_, buffer, sizeof(buffer), 0);
    if (lngRead <= 0) return answerIn(strBytes);
    strBytes.append(buffer, static_cast<std::size_t>(lngRead));
  }
}

std::string encoded(const Form& form) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string strBody;
  const auto append = [&](std::string_view strText) {
    for (const char letter : strText) {
      const auto byte = static_cast<unsigned char>(letter);
      if (std::isalnum(byte) != 0 || letter == '_' || letter == '.' || letter == '-') {
        strBody += letter;
      } else {
        strBody += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
      }
    }
  };
  for (const auto& [strName, strValue] : form) {
    if (!strBody.empty()) strBody += '&';
    append(strName);
    strBody += '=';
    append(strValue);
  }
  return strBody;
}

Form decoded(std::string_view strBody) {
  const FormCollection collection(strBody);
  Form form;
  for (const std::string& strName : collection.formNames("")) {
    form[strName] = collection.formItem(strName);
  }
  return form;
}

Form hiddenInputs(const std::string& strPage) {
  constexpr std::string_view kBegin = "<input type=\"hidden\" name=\"";
  constexpr std::string_view kMiddle = "\" value=";  // and a quote of either kind
  Form form;
  for (std::size_t at = 0; (at = strPage.find(kBegin, at)) != std::string::npos;) {
    at += kBegin.size();
    const std::size_t lngName = strPage.find('"', at);
    if (strPage.compare(lngName, kMiddle.size(), kMiddle) != 0) continue;
    const std::size_t lngValue = lngName + kMiddle.size() + 1;
    const std::size_t lngEnd = strPage.find(strPage[lngValue - 1], lngValue);
    form[unescaped(strPage.substr(at, lngName - at))] =
        unescaped(strPage.substr(lngValue, lngEnd - lngValue));
  }
  return form;
}

Form filledIn(const HttpAnswer& page, const Form& answers, const std::string& strButton) {
  Form form = hiddenInputs(page.body);
  for (const auto& [strName, strValue] : answers) form[strName] = strValue;
  form["_action"] = strButton;
  return form;
}

Form exampleForm(std::string_view strName) {
  std::string strBody = textOfFile(fs::path(VARNEL_SOURCE_DIR) / "examples/inspection" / strName);
  while (strBody.ends_with('\n')) strBody.pop_back();
  return decoded(strBody);
}

std::string partOf(const HttpAnswer& page, std::string_view strBegin, std::string_view strEnd) {
  const std::size_t lngBegin = page.body.find(strBegin);
  if (lngBegin == std::string::npos) return "";
  return page.body.substr(lngBegin, page.body.find(strEnd, lngBegin) - lngBegin);
}

bool becomes(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kLongTime;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

void Host::start(std::vector<std::string> words, std::size_t lngMostFileBytes,
                 std::size_t lngMostFiles) {
  if (std::ranges::find(words, "--listen") == words.end()) {
    words.insert(words.begin(), {"--listen", "127.0.0.1:0"});
  }
  words.insert(words.begin(), VARNEL_HOST_PROGRAM);
  child_ = ::fork();
  if (child_ < 0) throw std::runtime_error("fork");
  if (child_ == 0) {
    const auto redirect = [](const std::string& strFile, int stream) {
      ::dup2(::open(strFile.c_str(), O_WRONLY | O_CREAT, 0600), stream);
    };
    redirect(directory_.at("out"), STDOUT_FILENO);
    redirect(directory_.at("log"), STDERR_FILENO);
    const auto restrict = [](auto resource, std::size_t lngMost) {
      const rlimit limit{.rlim_cur = lngMost, .rlim_max = lngMost};
      if (lngMost > 0) ::setrlimit(resource, &limit);
    };
    restrict(RLIMIT_FSIZE, lngMostFileBytes);
    restrict(RLIMIT_NOFILE, lngMostFiles);
    std::vector<char*> arguments;
    for (std::string& strWord : words) arguments.push_back(strWord.data());
    arguments.push_back(nullptr);
    ::execv(arguments.front(), arguments.data());
    ::_exit(127);
  }
}

std::unique_ptr<Host> Host::started(std::vector<std::string> words) {
  std::unique_ptr<Host> host(new Host);
  host->start(std::move(words), 0, 0);
  return host;
}

Host::Host(std::vector<std::string> words, std::size_t lngMostFileBytes, std::size_t lngMostFiles) {
  start(std::move(words), lngMostFileBytes, lngMostFiles);
  becomes([&] {
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(child_), &ended, WEXITED | WNOHANG | WNOWAIT);
    return ended.si_pid != 0 || out().ends_with("/\n");
  });
  const std::string strOut = out();
  const std::size_t lngColon = strOut.rfind(':');
  if (strOut.starts_with("http://")) port_ = std::atoi(strOut.c_str() + lngColon + 1);
  blnIpv6_ = strOut.starts_with("http://[");
}

Host::~Host() {
  if (child_ > 0) stop(SIGKILL);
}

int Host::stop(int signal) {
  ::kill(child_, signal);
  return waitForEnd();
}

int Host::waitForEnd() {
  int status = 0;
  ::waitpid(child_, &status, 0);
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string Host::out() const {
  return fs::exists(directory_.at("out")) ? textOfFile(directory_.at("out")) : "";
}

std::string Host::log() const { return textOfFile(directory_.at("log")); }

HttpAnswer Host::get(std::string_view strPath, const Headers& headers) const {
  return request("GET", strPath, headers, "");
}

HttpAnswer Host::post(std::string_view strPath, const Form& form, const Headers& headers) const {
  Headers all = headers;
  all.emplace_back("Content-Type", "application/x-www-form-urlencoded");
  return request("POST", strPath, all, encoded(form));
}

HttpAnswer Host::request(std::string_view strMethod, std::string_view strPath,
                         const Headers& headers, std::string_view strBody) const {
  std::string strHead = std::string(strMethod) + ' ' + std::string(strPath) +
                        " HTTP/1.1\r\nHost: " + (blnIpv6_ ? "[::1]:" : "127.0.0.1:") +
                        std::to_string(port_) + "\r\nConnection: close\r\n";
  for (const auto& [strName, strValue] : headers) strHead += strName + ": " + strValue + "\r\n";
  if (!strBody.empty()) strHead += "Content-Length: " + std::to_string(strBody.size()) + "\r\n";
  const Connection connection(port_, blnIpv6_);
  connection.send(strHead + "\r\n");
  connection.send(strBody);
  return connection.receive();
}

std::vector<nlohmann::json> eventsOf(const Host& host, std::string_view strEvent) {
  std::vector<nlohmann::json> events;
  std::istringstream lines(host.log());
  for (std::string strLine; std::getline(lines, strLine);) {
    nlohmann::json line = nlohmann::json::parse(strLine, nullptr, false);
    if (line.is_object() && line["event"] == strEvent) events.push_back(std::move(line));
  }
  return events;
}

HostTest::HostTest() {
  fs::copy(fs::path(VARNEL_SOURCE_DIR) / "examples/inspection", deployment(),
           fs::copy_options::recursive);
}

std::vector<std::string> HostTest::words(std::vector<std::string> more) const {
  more.insert(more.begin(), {"--deployment", deployment().string(), "--store",
                             "sqlite:" + directory_.at("store.sqlite")});
  return more;
}

std::string HostTest::parked(const Host& host, const Form& answers) {
  const HttpAnswer page = host.get("/forms/inspection");
  return host.post("/forms/inspection", filledIn(page, answers, "park")).header("location");
}

void HostTest::replaceIn(const char* name, const std::string& strFrom,
                         const std::string& strTo) const {
  std::string strText = textOfFile(deployment() / name);
  const std::size_t at = strText.find(strFrom);
  ASSERT_NE(at, std::string::npos);
  strText.replace(at, strFrom.size(), strTo);
  std::ofstream(deployment() / name) << strText;
}

std::vector<std::string> HostTest::delivered() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(inbox())) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace Varnel_Tolv_XML_Creation::test
