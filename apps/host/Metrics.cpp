#include "host/Metrics.h"

#include <sstream>

namespace {

// In the order of RunOutcome.
constexpr const char* kOutcomeNames[] = {"parked", "accepted", "refused", "not-checked", "failed"};
constexpr const char* kStageNames[] = {"run", "store", "render"};
constexpr std::uint64_t kLimits[] = {1000, 2500, 5000, 10000, 25000, 100000, 500000, 2500000};

void head(std::ostream& out, const char* name, const char* type, const char* help) {
  out << "# HELP " << name << ' ' << help << "\n# TYPE " << name << ' ' << type << '\n';
}

void single(std::ostream& out, const char* name, const char* type, const char* help,
            const auto& value) {
  head(out, name, type, help);
  out << name << ' ' << value << '\n';
}

double seconds(std::uint64_t microseconds) { return static_cast<double>(microseconds) / 1e6; }

}  // namespace

void Metrics::countRequest(unsigned status) { ++requests_[status / 100 % requests_.size()]; }

Metrics::Timer::~Timer() {
  const auto taken = std::chrono::steady_clock::now() - begin_;
  const auto microseconds = static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::microseconds>(taken).count());
  StageTime& stage = metrics_.stages_[stage_];
  ++stage.runs;
  stage.microseconds += microseconds;
  for (std::size_t at = 0; at < stage.buckets.size(); ++at) {
    if (microseconds <= kLimits[at]) ++stage.buckets[at];
  }
}

std::string Metrics::text() const {
  std::ostringstream out;
  head(out, "varnel_runs_total", "counter", "Runs of the library by their outcome.");
  for (std::size_t at = 0; at < runs_.size(); ++at) {
    out << "varnel_runs_total{outcome=\"" << kOutcomeNames[at] << "\"} " << runs_[at] << '\n';
  }
  head(out, "varnel_stage_seconds", "histogram", "Time of a request's stages.");
  for (std::size_t at = 0; at < kStages; ++at) {
    const StageTime& stage = stages_[at];
    const std::string strStage = std::string("{stage=\"") + kStageNames[at] + '"';
    for (std::size_t bucket = 0; bucket < stage.buckets.size(); ++bucket) {
      out << "varnel_stage_seconds_bucket" << strStage << ",le=\"" << seconds(kLimits[bucket])
          << "\"} " << stage.buckets[bucket] << '\n';
    }
    out << "varnel_stage_seconds_bucket" << strStage << ",le=\"+Inf\"} " << stage.runs << '\n'
        << "varnel_stage_seconds_sum" << strStage << "} " << seconds(stage.microseconds) << '\n'
        << "varnel_stage_seconds_count" << strStage << "} " << stage.runs << '\n';
  }
  head(out, "varnel_requests_total", "counter", "Answers by the class of their status.");
  for (std::size_t at = 2; at < requests_.size(); ++at) {
    out << "varnel_requests_total{status=\"" << at << "xx\"} " << requests_[at] << '\n';
  }
  single(out, "varnel_forms_parked_total", "counter", "Forms parked, refused submissions included.",
         parked_);
  single(out, "varnel_forms_accepted_total", "counter", "Forms whose message was accepted.",
         accepted_);
  single(out, "varnel_messages_delivered_total", "counter", "Messages that left the outbox.",
         delivered_);
  single(out, "varnel_delivery_failures_total", "counter", "Attempts to deliver that failed.",
         deliveryFailures_);
  single(out, "varnel_overloads_total", "counter", "Requests that were told to come again.",
         overloads_);
  single(out, "varnel_requests_in_flight", "gauge", "Requests that are being answered.", inFlight);
  single(out, "varnel_outbox_waiting", "gauge", "Messages of this store that wait for delivery.",
         outboxWaiting);
  return out.str();
}
