#include "host/WebServer.h"

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <chrono>
#include <list>
#include <optional>
#include <utility>

#include "CannotRun.h"
#include "Files.h"
#include "host/WorkerPool.h"

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using tcp = asio::ip::tcp;

namespace {

// A request's head, its body and its answer each have so long; a browser may be silent as long
// between two requests.
constexpr auto kHeadTime = std::chrono::seconds(15);
constexpr auto kBodyTime = std::chrono::seconds(60);
constexpr auto kAnswerTime = std::chrono::seconds(60);
constexpr auto kDrainTime = std::chrono::seconds(5);
// A balancer asks whether the host is ready at least twice in this time, and needs so long to see
// that it is not. Who asks once waits for the host to start. Longer than the check of
// deploy/haproxy.cfg takes: inter and fastinter.
constexpr auto kWatchedTime = std::chrono::seconds(60);
constexpr auto kNoticeTime = std::chrono::seconds(5);
constexpr std::uint32_t kMaxHead = 16 * 1024;
constexpr std::size_t kMaxDrained = std::size_t{64} << 20;
constexpr std::size_t kSpareFiles = 128;  // for the store, deployments and deliveries
constexpr std::size_t kMostConnections = 10'000;
constexpr std::size_t kProbesWaiting = 16;

/// As many as there may be files, less some.
std::size_t mostConnections() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return kSpareFiles;
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, kMostConnections + kSpareFiles);
  ::setrlimit(RLIMIT_NOFILE, &limit);
  return limit.rlim_cur > 2 * kSpareFiles ? limit.rlim_cur - kSpareFiles : kSpareFiles;
}

std::string text(beast::string_view view) { return {view.data(), view.size()}; }

HttpRequest requestOf(const http::request<http::string_body>& message) {
  const std::string strTarget = text(message.target());
  return {.strMethod = text(message.method_string()),
          .strPath = strTarget.substr(0, strTarget.find('?')),
          .strAccept = text(message[http::field::accept]),
          .strContentType = text(message[http::field::content_type]),
          .strHost = text(message[http::field::host]),
          .strOrigin = text(message[http::field::origin]),
          .strFetchSite = text(message["Sec-Fetch-Site"]),
          .strBody = message.body()};
}

}  // namespace

class Connection;

struct WebServer::Impl : std::enable_shared_from_this<WebServer::Impl> {
  Impl(const HostOptions& theOptions, WebHandlers theHandlers, Metrics& theMetrics)
      : options(theOptions), handlers(std::move(theHandlers)), metrics(theMetrics) {}

  void listen();
  void accept();
  bool makeRoom();
  void stop();
  void closeListener();

  const HostOptions& options;
  WebHandlers handlers;
  Metrics& metrics;
  asio::io_context context{1};
  tcp::acceptor acceptor{context};
  asio::posix::stream_descriptor signals{context};
  asio::steady_timer retry{context};
  asio::steady_timer notice{context};
  asio::steady_timer end{context};
  std::optional<std::chrono::steady_clock::time_point> lastProbe;
  std::optional<std::chrono::steady_clock::time_point> probeBefore;
  std::list<std::weak_ptr<Connection>> connections;  // the oldest first
  std::size_t lngMostConnections = mostConnections();
  bool blnStopping = false;
  std::unique_ptr<WorkerPool> workers;
  std::unique_ptr<WorkerPool> probes;
};

/// One connection. All of it runs in the server's thread, apart from the making of an answer.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection(tcp::socket socket, std::shared_ptr<WebServer::Impl> server)
      : stream_(std::move(socket)), server_(std::move(server)) {}
  ~Connection() { server_->connections.erase(place_); }

  void begin(std::list<std::weak_ptr<Connection>>::iterator place) {
    place_ = place;
    readHead();
  }

  bool isIdle() const { return blnIdle_; }
  bool isReading() const { return blnReading_; }
  bool isAnswered() const { return blnAnswered_; }
  bool isOpen() const { return stream_.socket().is_open(); }
  void close() {
    beast::error_code ignored;
    stream_.socket().close(ignored);
  }

 private:
  void readHead() {
    blnIdle_ = blnReading_ = true;
    parser_.emplace();
    parser_->header_limit(kMaxHead);
    parser_->body_limit(server_->options.lngMaxBody);
    stream_.expires_after(kHeadTime);
    http::async_read_header(
        stream_, buffer_, *parser_,
        [self = shared_from_this()](beast::error_code error, std::size_t) { self->onHead(error); });
  }

  void onHead(beast::error_code error) {
    if (error) {
      onReadError(error);
      return;
    }
    blnIdle_ = false;
    if (beast::iequals(parser_->get()[http::field::expect], "100-continue")) {
      const auto held =
          std::make_shared<http::response<http::empty_body>>(http::status::continue_, 11);
      stream_.expires_after(kBodyTime);
      http::async_write(stream_, *held,
                        [self = shared_from_this(), held](beast::error_code failed, std::size_t) {
                          if (!failed) self->readBody();
                        });
      return;
    }
    readBody();
  }

  void readBody() {
    stream_.expires_after(kBodyTime);
    http::async_read(stream_, buffer_, *parser_,
                     [self = shared_from_this()](beast::error_code error, std::size_t) {
                       if (error) {
                         self->onReadError(error);
                       } else {
                         self->dispatch();
                       }
                     });
  }

  void onReadError(beast::error_code error) {
    if (error == http::error::body_limit) {
      refuse(413);
    } else if (error == http::error::header_limit || error == http::error::buffer_overflow) {
      refuse(431);
    } else if (error.category() == make_error_code(http::error::bad_method).category() &&
               error != http::error::end_of_stream && error != http::error::partial_message) {
      refuse(400);
    }
    // Else the other side is gone, or said nothing for too long.
  }

  void refuse(unsigned lngStatus) {
    blnIdle_ = blnReading_ = false;
    blnLast_ = blnUnread_ = true;
    ++server_->metrics.inFlight;
    write(server_->handlers.refuse(requestOf(parser_->get()), lngStatus));
  }

  void dispatch() {
    blnReading_ = false;
    ++server_->metrics.inFlight;
    const http::request<http::string_body>& message = parser_->get();
    blnLast_ = !message.keep_alive() || server_->blnStopping;
    auto request = std::make_shared<const HttpRequest>(requestOf(message));
    stream_.expires_never();
    if (server_->handlers.isQuick(*request)) {
      write(server_->handlers.answer(*request));
      return;
    }
    const bool blnProbe = server_->handlers.isProbe(*request);
    if (blnProbe) {
      server_->probeBefore = std::exchange(server_->lastProbe, std::chrono::steady_clock::now());
    }
    WorkerPool& pool = blnProbe ? *server_->probes : *server_->workers;
    const bool blnTaken = pool.enqueue([self = shared_from_this(), request]() mutable {
      // What was made goes back to the server's thread, with all that holds the connection.
      auto response = std::make_shared<HttpResponse>(self->server_->handlers.answer(*request));
      asio::io_context& context = self->server_->context;
      asio::post(context,
                 [held = std::move(self), response] { held->write(std::move(*response)); });
    });
    if (blnTaken) return;
    server_->metrics.countOverload();
    HttpResponse busy = server_->handlers.refuse(*request, 503);
    busy.headers.emplace_back("Retry-After", "1");
    write(std::move(busy));
  }

  void write(HttpResponse made) {
    server_->metrics.countRequest(made.lngStatus);
    response_ = {};
    response_.version(11);
    response_.result(made.lngStatus);
    if (!made.strContentType.empty()) response_.set(http::field::content_type, made.strContentType);
    for (const auto& [strName, strValue] : made.headers) response_.set(strName, strValue);
    response_.set(
        "Content-Security-Policy",
        "default-src 'none'; style-src 'self'; script-src 'self'; img-src 'self' data:; "
        "connect-src 'self'; form-action 'self'; frame-ancestors 'none'; base-uri 'none'");
    response_.set("X-Content-Type-Options", "nosniff");
    response_.set("X-Frame-Options", "DENY");
    response_.set("Referrer-Policy", "same-origin");
    response_.set("Cross-Origin-Opener-Policy", "same-origin");
    response_.set("Cross-Origin-Resource-Policy", "same-origin");
    response_.set(http::field::cache_control, "no-store");
    response_.keep_alive(!blnLast_);
    response_.body() = std::move(made.strBody);
    response_.prepare_payload();
    if (parser_->get().method() == http::verb::head) response_.body().clear();
    stream_.expires_after(kAnswerTime);
    http::async_write(stream_, response_,
                      [self = shared_from_this()](beast::error_code error, std::size_t) {
                        --self->server_->metrics.inFlight;
                        if (error) return;
                        if (self->blnLast_ || self->server_->blnStopping) {
                          self->drain();
                        } else {
                          self->readHead();
                        }
                      });
  }

  /// Reads what still comes, so that the answer is not lost with it when the connection is closed.
  /// Of a request that was refused before it was read that is as much as a browser may take to
  /// send, but only while it does send.
  void drain() {
    blnAnswered_ = true;
    beast::error_code ignored;
    stream_.socket().shutdown(tcp::socket::shutdown_send, ignored);
    drainEnd_ = std::chrono::steady_clock::now() + (blnUnread_ ? kBodyTime : kDrainTime);
    readRest();
  }

  void readRest() {
    buffer_.clear();
    stream_.expires_at(std::min(drainEnd_, std::chrono::steady_clock::now() + kDrainTime));
    stream_.async_read_some(
        buffer_.prepare(64 * 1024),
        [self = shared_from_this()](beast::error_code error, std::size_t lngRead) {
          self->lngDrained_ += lngRead;
          if (!error && self->lngDrained_ < kMaxDrained) self->readRest();
        });
  }

  beast::tcp_stream stream_;
  std::shared_ptr<WebServer::Impl> server_;
  std::list<std::weak_ptr<Connection>>::iterator place_;
  beast::flat_buffer buffer_;
  std::optional<http::request_parser<http::string_body>> parser_;
  http::response<http::string_body> response_;
  std::size_t lngDrained_ = 0;
  std::chrono::steady_clock::time_point drainEnd_;
  bool blnIdle_ = true;     // between two requests
  bool blnReading_ = true;  // no request is there yet
  bool blnLast_ = false;    // closed behind the answer
  bool blnUnread_ = false;  // refused before all of it was read
  bool blnAnswered_ = false;
};

void WebServer::Impl::listen() {
  try {
    tcp::resolver resolver(context);
    const auto places = resolver.resolve(options.strAddress, std::to_string(options.lngPort),
                                         tcp::resolver::passive);
    const tcp::endpoint place = places.begin()->endpoint();
    acceptor.open(place.protocol());
    acceptor.set_option(asio::socket_base::reuse_address(true));
    acceptor.bind(place);
    acceptor.listen(asio::socket_base::max_listen_connections);
  } catch (const boost::system::system_error& error) {
    throw CannotRun("--listen " + options.strAddress + ':' + std::to_string(options.lngPort) +
                    ": " + error.code().message());
  }
}

/// Ends the connection that has been silent longest, or else the oldest that has its answer, or
/// else the oldest that has not sent its request yet, as slow as it may do that. False when there
/// is none: all are being answered.
bool WebServer::Impl::makeRoom() {
  for (const auto wanted : {&Connection::isIdle, &Connection::isAnswered, &Connection::isReading}) {
    for (const auto& each : connections) {
      const auto connection = each.lock();
      if (!connection || !connection->isOpen() || !((*connection).*wanted)()) continue;
      connection->close();
      return true;
    }
  }
  return false;
}

void WebServer::Impl::accept() {
  acceptor.async_accept([self = shared_from_this()](beast::error_code error, tcp::socket socket) {
    if (!self->acceptor.is_open()) return;
    if (error) {
      // Out of files, most likely: what is open has to end first.
      self->retry.expires_after(std::chrono::milliseconds(50));
      self->retry.async_wait([self](beast::error_code) {
        if (self->acceptor.is_open()) self->accept();
      });
      return;
    }
    if (self->connections.size() >= self->lngMostConnections && !self->makeRoom()) {
      self->metrics.countOverload();
      self->accept();
      return;  // the socket is closed
    }
    beast::error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    const auto connection = std::make_shared<Connection>(std::move(socket), self);
    connection->begin(self->connections.insert(self->connections.end(), connection));
    self->accept();
  });
}

/// From now on the host tells that it is not ready. Where somebody looks, connections are taken
/// until that was seen; who would be refused before could not know why.
void WebServer::Impl::stop() {
  blnStopping = true;
  handlers.stopping();
  end.expires_after(kStopTime);
  end.async_wait([this](beast::error_code error) {
    if (!error) context.stop();
  });
  if (!probeBefore || std::chrono::steady_clock::now() - *probeBefore > kWatchedTime) {
    closeListener();
    return;
  }
  notice.expires_after(kNoticeTime);
  notice.async_wait([this](beast::error_code) { closeListener(); });
}

/// Takes no more connections and closes those that ask for nothing; the rest goes on to its end.
void WebServer::Impl::closeListener() {
  beast::error_code ignored;
  acceptor.close(ignored);
  retry.cancel();
  for (const auto& each : connections) {
    if (const auto connection = each.lock(); connection && connection->isIdle()) {
      connection->close();
    }
  }
}

WebServer::WebServer(const HostOptions& options, WebHandlers handlers, Metrics& metrics,
                     const StopSignals& signals)
    : impl_(std::make_shared<Impl>(options, std::move(handlers), metrics)) {
  impl_->listen();
  const int descriptor = ::fcntl(signals.descriptor(), F_DUPFD_CLOEXEC, 0);
  if (descriptor < 0) fail("fcntl");
  impl_->signals.assign(descriptor);
  impl_->signals.async_wait(asio::posix::descriptor_base::wait_read,
                            [impl = impl_.get()](beast::error_code error) {
                              if (!error) impl->stop();
                            });
}

WebServer::~WebServer() = default;

unsigned short WebServer::port() const { return impl_->acceptor.local_endpoint().port(); }

void WebServer::run() {
  impl_->workers = std::make_unique<WorkerPool>(impl_->options.lngWorkers, impl_->options.lngQueue);
  impl_->probes = std::make_unique<WorkerPool>(1, kProbesWaiting);
  impl_->accept();
  // Ends when nothing is left to wait for, or when what is left takes too long.
  while (impl_->acceptor.is_open() || !impl_->connections.empty()) {
    if (impl_->context.run_one_for(std::chrono::milliseconds(100)) == 0 &&
        impl_->context.stopped()) {
      break;
    }
  }
  impl_->workers.reset();
  impl_->probes.reset();
  impl_->context.poll();  // what was cancelled lets go of the server
}
