#include "check/BrokenEntries.h"

#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kContact = "/m:report/m:head/m:contact";

/// The finding of a rule about an element.
Found at(const Node& objElement, const char* code, Severity severity = Severity::error) {
  Found found;
  found.severity = severity;
  found.code = code;
  found.element = objElement.identity();
  return found;
}

TEST(BrokenEntries, AreThoseWithAnErrorThatKeepsThemFromTheirWork) {
  const SmallDeployment files;
  const ParsedDeployment deployment(files.files);
  const MappingEntry& phone = *deployment.entry("phone1");
  const struct {
    const char *says, *code;
    Severity severity;
    Node objElement;
    bool blnBroken;
  } cases[] = {
      {"a path that finds nothing", "path-names-nothing", Severity::error, phone.objNodePath, true},
      {"the same as a warning", "path-names-nothing", Severity::warning, phone.objNodePath, false},
      {"an error that keeps it from nothing", "duplicate-object", Severity::error, phone.objNode,
       false},
      {"an error of the document data", "path-names-nothing", Severity::error,
       deployment.documentInfo(kDateInfo), false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const BrokenEntries broken(deployment, {at(c.objElement, c.code, c.severity)});
    EXPECT_EQ(!broken.isEmpty(), c.blnBroken);
    EXPECT_EQ(broken.wereToMake(stepNames(kContact)), c.blnBroken);
    EXPECT_FALSE(broken.wereToMake(stepNames("/m:report/m:head/m:title")));
  }
}

TEST(BrokenEntries, TakeTheAnswersAlongThatTheyName) {
  const SmallDeployment files;
  files.replace("object-mapper.xml", "<parameter item=\"until\"/>", "<parameter item=\"untill\"/>");
  const ParsedDeployment deployment(files.files);
  const BrokenEntries owner(deployment,
                            {at(deployment.entry("owner")->objAction, "flag-not-true")});
  EXPECT_TRUE(owner.takeAlong("role"));
  EXPECT_FALSE(owner.takeAlong("until"));
  const BrokenEntries from(deployment, {at(deployment.entry("from")->objNode, "names-nothing")});
  EXPECT_TRUE(from.takeAlong("until")) << "a name that is nearly its own";
  EXPECT_FALSE(from.takeAlong("role"));
}

/// So many entries that are broken, and rules that copy what these should make.
std::size_t workOf(std::size_t lngEntries, std::size_t lngRules, const char* parent) {
  const SmallDeployment files;
  std::string strEntries, strQuestions, strObjects, strRules;
  for (std::size_t at = 0; at < lngEntries; ++at) {
    const std::string strId = "made" + std::to_string(at);
    strObjects += "<prtobjct id='" + strId + "' objecttype='field' type='text' dynamic='false'/>";
    strEntries += "<messageitem id='" + strId +
                  "' type='field' toschema='True'><parentxpath>/m:report/m:head</parentxpath>"
                  "<node>m:" +
                  strId + "</node></messageitem>";
    // Of some the questions say where they stand.
    if (at % 2 == 0) continue;
    strQuestions +=
        "<question id='" + strId + "'><xpath>/m:report/m:head/m:" + strId + "</xpath></question>";
  }
  for (std::size_t at = 0; at < lngRules; ++at) {
    strRules += "<docnode><parentxpath>" + std::string(parent) +
                "</parentxpath><node>/m:report/m:head/*</node></docnode>";
  }
  files.replace("object-list.xml", "<prtobjcts>", "<prtobjcts>" + strObjects);
  files.replace("object-mapper.xml", "  <docdata>", strEntries + "  <docdata>");
  files.replace("object-mapper.xml", "    <docnodes>", "    <docnodes>" + strRules);
  files.replace("questions.xml", "<questions>", "<questions>" + strQuestions);
  const ParsedDeployment deployment(files.files);
  std::vector<Found> findings;
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.strId.starts_with("made")) findings.push_back(at(entry.objNode, "word-not-true"));
  }
  const BrokenEntries broken(deployment, findings);
  EXPECT_EQ(findings.size(), lngEntries);
  const std::string strMade = std::string(parent) + "/m:made0";
  EXPECT_TRUE(broken.wereToMake(stepNames(strMade)));
  return broken.work();
}

TEST(BrokenEntries, AreGoneThroughOnceForAllRulesThatCopyTheSame) {
  for (const char* const parent : {"/m:report/m:end", "/m:report/m:head"}) {
    const std::size_t lngOne = workOf(100, 100, parent);
    const std::size_t lngTwo = workOf(200, 200, parent);
    EXPECT_LT(workOf(400, 400, parent) - lngTwo, (lngTwo - lngOne) * 5 / 2) << parent;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
