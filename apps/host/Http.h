#pragma once

#include <string>
#include <utility>
#include <vector>

// A request and its answer, as the application sees them.

struct HttpRequest {
  std::string strMethod;
  std::string strPath;  // without the query, as it was sent
  std::string strAccept;
  std::string strContentType;
  std::string strHost;
  std::string strOrigin;
  std::string strFetchSite;
  std::string strBody;
};

/// The host of an address as it stands there: one that holds colons, as of IPv6, in brackets.
inline std::string inAddress(const std::string& strHost) {
  return strHost.find(':') == std::string::npos ? strHost : '[' + strHost + ']';
}

/// In how many seconds to come again when the store cannot be reached.
constexpr const char* kRetryAfter = "5";

struct HttpResponse {
  unsigned lngStatus = 200;
  std::string strContentType = {};
  std::string strBody = {};
  std::vector<std::pair<std::string, std::string>> headers = {};
};
