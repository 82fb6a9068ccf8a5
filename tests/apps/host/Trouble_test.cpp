#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

#include "apps/host/Host.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

/// What the host cannot do just now.
class Trouble : public HostTest {};

TEST_F(Trouble, WithAStoreThatIsFullLosesNothingThatWasAcknowledged) {
  const Host host(words(), std::size_t{1} << 20);
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  ASSERT_NE(strPlace, "");
  Form large = exampleForm("draft.form");
  for (int each = 0; each < 80'000; ++each) large["internalnote"] += "A long answer. ";
  const HttpAnswer refused = host.post(strPlace, filledIn(host.get(strPlace), large, "park"));
  EXPECT_EQ(refused.status, 503);
  EXPECT_TRUE(refused.shows("A long answer. A long answer."));  // still there, to be sent again
  EXPECT_NE(refused.header("retry-after"), "");
  EXPECT_TRUE(refused.shows("The store cannot be reached"));
  EXPECT_EQ(hiddenInputs(refused.body)["_version"], "1");
  EXPECT_NE(host.log().find("\"store-problem\""), std::string::npos);
  EXPECT_EQ(host.log().find("A long answer."), std::string::npos);

  EXPECT_TRUE(host.get(strPlace).shows("value=\"Havnehuset\""));
  // What was run and is not in the store was not parked.
  EXPECT_TRUE(host.get("/metrics").shows("varnel_runs_total{outcome=\"parked\"} 2\n"));
  EXPECT_TRUE(host.get("/metrics").shows("varnel_forms_parked_total 1\n"));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
}

/// With one form worked on and one waiting, the next is told to come again, with all that was
/// typed.
TEST_F(Trouble, WithTooManyAtOnceKeepsWhatTheyTyped) {
  const Host host(words({"--workers", "1", "--queue", "1"}));
  Form form = filledIn(host.get("/forms/inspection"), exampleForm("complete.form"), "park");
  form["owneraddress"] = "\r\nA \"street\" & <more>";
  const std::string strBody = encoded(form);
  const std::string strRequest =
      "POST /forms/inspection HTTP/1.1\r\nHost: x\r\nConnection: close\r\n"
      "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
      std::to_string(strBody.size()) + "\r\n\r\n" + strBody;
  HttpAnswer refused;
  EXPECT_TRUE(becomes([&] {
    std::vector<std::unique_ptr<Connection>> connections;
    for (int each = 0; each < 12; ++each) {
      connections.push_back(std::make_unique<Connection>(host.port()));
      connections.back()->send(strRequest);
    }
    for (const auto& connection : connections) {
      const HttpAnswer answer = connection->receive();
      if (answer.status == 503) refused = answer;
    }
    return refused.status == 503;
  }));
  EXPECT_EQ(refused.header("retry-after"), "1");
  EXPECT_TRUE(refused.shows("Too many are here at once"));
  EXPECT_TRUE(refused.shows("<form method=\"post\" action=\"/forms/inspection\""));
  EXPECT_EQ(hiddenInputs(refused.body), form);
  EXPECT_FALSE(refused.shows("<more>"));

  const HttpAnswer saved = host.post("/forms/inspection", hiddenInputs(refused.body));
  EXPECT_EQ(saved.status, 303);
  EXPECT_TRUE(host.get(saved.header("location"))
                  .shows(">\n\r\nA \"street\" &amp; &lt;more&gt;</textarea>"));
}

/// A schema outside the folder is read where it stands, so it can break while the host runs.
TEST_F(Trouble, AcceptsNothingThatCouldNotBeChecked) {
  fs::rename(deployment() / "schema", directory_.at("schema"));
  replaceIn("deployment.json", "schema/inspection.xsd", "../schema/inspection.xsd");
  Host host(words());
  const std::string strPlace = parked(host, exampleForm("complete.form"));
  const Form form = filledIn(host.get(strPlace), exampleForm("complete.form"), "submit");
  const std::string strSchema = directory_.at("schema/record.xsd");
  const std::string strBefore = textOfFile(strSchema);
  std::ofstream(strSchema) << "broken";

  const HttpAnswer answer = host.post(strPlace, form);
  EXPECT_EQ(answer.status, 500);
  EXPECT_TRUE(answer.shows("it could not be checked, so it was not sent"));
  EXPECT_TRUE(answer.shows("Saved, not sent yet"));
  EXPECT_TRUE(answer.shows("value=\"NB-2025-00417\""));
  EXPECT_EQ(host.get("/messages" + strPlace.substr(7)).status, 404);
  EXPECT_TRUE(host.get("/metrics").shows("varnel_runs_total{outcome=\"not-checked\"} 1\n"));
  const std::vector<Json> failed = eventsOf(host, "run-failed");
  ASSERT_EQ(failed.size(), 1U);
  EXPECT_TRUE(failed[0]["reason"].get<std::string>().starts_with("The schema cannot be used"));

  // Those who run the deployment find the reason with the form.
  const Json kept = Json::parse(host.get(strPlace, {{"Accept", "application/json"}}).body);
  EXPECT_EQ(kept["state"], "parked");
  EXPECT_EQ(kept["report"]["verdict"], "not-checked");
  EXPECT_NE(kept["report"]["reason"].get<std::string>().find("record.xsd"), std::string::npos);

  std::ofstream(strSchema) << strBefore;
  EXPECT_EQ(host.post(strPlace, filledIn(answer, exampleForm("complete.form"), "submit")).status,
            303);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
