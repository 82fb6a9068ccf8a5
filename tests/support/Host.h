#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "config/Session.h"
#include "platform/host/HostServices.h"

namespace Varnel_Tolv_XML_Creation::test {

/// Keeps the trace, each line without its line end.
class TraceRecorder : public TraceSink {
 public:
  void write(std::string_view strLine) override {
    if (!strLine.ends_with("\r\n")) ADD_FAILURE() << "no line end: " << strLine;
    lines_.emplace_back(strLine.substr(0, strLine.size() - 2));
  }

  const std::vector<std::string>& lines() const { return lines_; }
  void clear() { lines_.clear(); }

 private:
  std::vector<std::string> lines_;
};

/// The web server of a test: a submitted form, a page, a clock that stands still and a trace.
class TestHost {
 public:
  using Fields = std::initializer_list<std::pair<std::string_view, std::string_view>>;

  /// A request that submits these fields.
  explicit TestHost(Fields fields = {}) : server_("/site/pages") {
    for (const auto& [strName, strValue] : fields) form_.add(strName, strValue);
    context_ = {.request = &form_, .server = &server_};
    services_.objectContext = &context_;
    services_.clock = &clock_;
    services_.traceSink = &trace_;
  }
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  void submit(std::string_view strName, std::string_view strValue) { form_.add(strName, strValue); }
  void withoutContext() { services_.objectContext = nullptr; }
  void withoutRequest() { context_.request = nullptr; }
  void withoutServer() { context_.server = nullptr; }

  /// Every document that the library creates from now on fails as this injector says.
  void withFaults(FaultInjector& faults) { services_.documentSettings.faults = &faults; }

  HostServices& services() { return services_; }
  const std::vector<std::string>& traceLines() const { return trace_.lines(); }
  void clearTrace() { trace_.clear(); }

  /// A session with these services, the default user message "default message" and no namespaces.
  Session session() const {
    return {.host = services_, .strDefaultUserMessage = "default message", .objNamespaceXML = {}};
  }

 private:
  FormCollection form_;
  PageServer server_;
  FixedClock clock_{DateTime{2026, 3, 5, 9, 5, 7}};
  TraceRecorder trace_;
  ObjectContext context_;
  HostServices services_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
