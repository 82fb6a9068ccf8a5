#include "host/HttpPost.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_future.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <charconv>
#include <chrono>
#include <cstdint>

#include "host/Http.h"
#include "host/ResultBy.h"

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;

namespace {

constexpr std::string_view kScheme = "http://";
constexpr auto kTimeout = std::chrono::seconds(20);

struct Url {
  std::string strHost;
  std::string strPort = "80";
  std::string strPath = "/";
};

Url urlOf(const std::string& strUrl) {
  Url url;
  std::string strRest = strUrl.substr(kScheme.size());
  const std::size_t lngSlash = strRest.find('/');
  if (lngSlash != std::string::npos) {
    url.strPath = strRest.substr(lngSlash);
    strRest.erase(lngSlash);
  }
  // A host that holds colons stands in brackets.
  const bool blnBrackets = strRest.starts_with('[') && strRest.find(']') != std::string::npos;
  const std::size_t lngColon = strRest.find(':', blnBrackets ? strRest.find(']') : 0);
  url.strHost = strRest.substr(0, lngColon);
  if (lngColon != std::string::npos) url.strPort = strRest.substr(lngColon + 1);
  if (blnBrackets) url.strHost = url.strHost.substr(1, url.strHost.find(']') - 1);
  return url;
}

}  // namespace

bool isHttpUrl(const std::string& strUrl) {
  if (!strUrl.starts_with(kScheme) || strUrl.find('@') != std::string::npos) return false;
  const Url url = urlOf(strUrl);
  const char* const end = url.strPort.data() + url.strPort.size();
  std::uint16_t lngPort = 0;
  const auto [last, problem] = std::from_chars(url.strPort.data(), end, lngPort);
  return !url.strHost.empty() && problem == std::errc() && last == end && lngPort > 0;
}

unsigned httpPost(const std::string& strUrl,
                  const std::vector<std::pair<std::string, std::string>>& headers,
                  const std::string& strBody, const std::stop_token& cut) {
  const Url url = urlOf(strUrl);
  const auto end = std::chrono::steady_clock::now() + kTimeout;
  const auto places = resultBy(end, cut, "the lookup of the name takes too long", [url] {
    asio::io_context context;
    return asio::ip::tcp::resolver(context).resolve(url.strHost, url.strPort);
  });

  asio::io_context context;
  beast::tcp_stream stream(context);
  const std::stop_callback closing(cut,
                                   [&] { asio::post(context, [&stream] { stream.close(); }); });
  // One step at a time; the stream's deadline ends each of them.
  const auto done = [&](auto future) {
    context.restart();
    context.run();
    return future.get();
  };
  stream.expires_at(end);
  done(stream.async_connect(places, asio::use_future));

  http::request<http::string_body> request(http::verb::post, url.strPath, 11);
  request.set(http::field::host, inAddress(url.strHost) + ':' + url.strPort);
  request.set(http::field::connection, "close");
  for (const auto& [strName, strValue] : headers) request.set(strName, strValue);
  request.body() = strBody;
  request.prepare_payload();
  done(http::async_write(stream, request, asio::use_future));

  beast::flat_buffer buffer;
  http::response_parser<http::string_body> parser;
  parser.body_limit(1 << 20);
  done(http::async_read_header(stream, buffer, parser, asio::use_future));
  return parser.get().result_int();
}
