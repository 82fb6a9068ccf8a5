#include "apps/host/Host.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// What the host counts.
class Metrics : public HostTest {};

TEST_F(Metrics, CountsInTheTextOfPrometheus) {
  const Host host(words());
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  host.post(strPlace, filledIn(host.get(strPlace), exampleForm("faulty.form"), "submit"));
  const HttpAnswer metrics = host.get("/metrics");
  EXPECT_TRUE(metrics.header("content-type").starts_with("text/plain; version=0.0.4"));
  for (const char* const strLine :
       {"varnel_runs_total{outcome=\"parked\"} 1\n", "varnel_runs_total{outcome=\"refused\"} 1\n",
        "varnel_stage_seconds_count{stage=\"run\"} 2\n", "# TYPE varnel_stage_seconds histogram\n",
        "varnel_forms_parked_total 2\n", "varnel_forms_accepted_total 0\n",
        "varnel_requests_in_flight 1\n"}) {
    EXPECT_TRUE(metrics.shows(strLine)) << strLine;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
