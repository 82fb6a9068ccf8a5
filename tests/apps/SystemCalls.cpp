#include "SystemCalls.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <string_view>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr std::array<std::string_view, 19> kNetworkCalls = {
    "socket",      "socketpair",  "connect",    "bind",       "listen",     "accept",   "accept4",
    "sendto",      "recvfrom",    "sendmsg",    "recvmsg",    "sendmmsg",   "recvmmsg", "shutdown",
    "getsockname", "getpeername", "setsockopt", "getsockopt", "socketcall",
};

std::string absolutePath(const std::string& strPath, const std::filesystem::path& directory) {
  // A process sees itself under its number, and the thread sanitizer has a file of its own for it.
  static const std::regex kOwnNumber("^(/proc/|/tmp/tsan\\.rodata\\.)[0-9]+");
  return std::regex_replace((directory / strPath).lexically_normal().string(), kOwnNumber,
                            "$1self");
}

}  // namespace

bool canTrace() { return std::system("strace -o /dev/null true >/dev/null 2>&1") == 0; }

std::vector<std::string> tracing(const std::string& strFile) {
  return {"strace", "-f", "-y", "-qq", "-s", "4096", "-e", "trace=%file,%network", "-o", strFile};
}

SystemCalls readSystemCalls(const std::string& strFile, const std::filesystem::path& directory) {
  // 4711  openat(AT_FDCWD</srv>, "a.xml", O_RDONLY) = 3</srv/site/a.xml>
  static const std::regex kCall("^[0-9]+ +([a-z0-9_]+)\\(.*");
  static const std::regex kQuoted("\"((?:[^\"\\\\]|\\\\.)*)\"");
  static const std::regex kOwnDescriptor("/proc/self/fd/[0-9]+");  // a file that is open already
  static const std::regex kResult("\\) += [0-9]+<(/[^>]*)>$");

  SystemCalls calls;
  std::istringstream lines(textOfFile(strFile));
  for (std::string strLine; std::getline(lines, strLine);) {
    std::smatch match;
    if (!std::regex_match(strLine, match, kCall)) continue;
    const std::string strName = match[1];
    if (std::ranges::find(kNetworkCalls, strName) != kNetworkCalls.end()) {
      calls.networkCalls.push_back(strLine);
      continue;
    }
    // The first text is the path; those behind it are a program's words or what was found.
    if (std::regex_search(strLine, match, kQuoted) && match[1].length() > 0) {
      const std::string strPath = absolutePath(match[1], directory);
      if (!std::regex_match(strPath, kOwnDescriptor)) calls.paths.insert(strPath);
    }
    if (std::regex_search(strLine, match, kResult)) {
      calls.paths.insert(absolutePath(match[1], directory));
    }
  }
  return calls;
}

}  // namespace Varnel_Tolv_XML_Creation::test
