#include "validation/lookup/QuestionPaths.h"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> ids(const std::vector<Node>& colQuestions) {
  std::vector<std::string> ids;
  for (const Node& objQuestion : colQuestions) {
    ids.push_back(objQuestion.getAttribute("id").value_or("none"));
  }
  return ids;
}

std::vector<std::string> idsSelected(const Document& objXml, const std::string& strXPath) {
  const auto colNodes = objXml.selectNodes(strXPath);
  return ids({colNodes->begin(), colNodes->end()});
}

TEST(QuestionPaths, ReadsASecondPathOnlyForTheWhole) {
  const Document objXml = parsed(
      "<questions><question id='1'><xpath>/a</xpath><xpath>/b/c</xpath></question>"
      "<question id='2'><xpath>/b/c</xpath><xpath>/b/c</xpath></question></questions>");
  QuestionPaths paths(objXml);
  EXPECT_THAT(ids(paths.at("/b/c")), ElementsAre("1", "2"));
  EXPECT_THAT(ids(*paths.below("/b")), ElementsAre("2"));
}

TEST(QuestionPaths, FindsAQuestionWithoutPathBelowTheEmptyOne) {
  const Document objXml = parsed("<questions><question id='1'/></questions>");
  QuestionPaths paths(objXml);
  EXPECT_THAT(ids(paths.at("")), IsEmpty());
  EXPECT_THAT(ids(*paths.below("")), ElementsAre("1"));
}

TEST(QuestionPaths, TakesAnApostropheForTheEndOfTheLiteral) {
  const Document objXml =
      parsed("<questions><question id='1'><xpath>/a</xpath></question></questions>");
  QuestionPaths paths(objXml);
  for (const bool blnBelow : {false, true}) {
    const auto error = raisedBy([&] {
      if (blnBelow) {
        paths.below("/it's");
      } else {
        paths.at("/it's");
      }
    });
    ASSERT_TRUE(error) << blnBelow;
    EXPECT_EQ(error->number(), kXmlFailure);
  }
  EXPECT_THAT(ids(paths.at("' or xpath='/a")), ElementsAre("1"));
  EXPECT_THAT(ids(*paths.below("') or starts-with(xpath, '/")), ElementsAre("1"));
}

TEST(QuestionPaths, HasNothingBelowAPathWithoutAListOfQuestions) {
  FaultAt fault(DomOperation::select);
  DocumentSettings settings;
  settings.faults = &fault;
  const Document objXml = Document::create(settings);
  ASSERT_TRUE(
      objXml.loadXML("<questions><question id='1'><xpath>/a</xpath></question></questions>"));
  QuestionPaths paths(objXml);
  EXPECT_FALSE(paths.below("/a"));
  EXPECT_THAT(ids(*paths.below("/a")), ElementsAre("1")) << "asked again";

  fault.arm();
  const auto error = raisedBy([&] { paths.at("/a"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

/// Questions of all kinds of shapes, and some that are none.
std::string randomQuestions(std::mt19937& random) {
  static const char* const kPaths[] = {
      "/r",    "/r/a", "/r/a/b", "/r/ab",          "/r/a/c",      "/r/m:a",
      " /r/a", "",     "/r/b/a", "/r/b<!--c-->/a", "<x>/r</x>/a", "/r<![CDATA[/a]]>"};
  static const char* const kNames[] = {"question", "question", "question",  "question",
                                       "other",    "group",    "q:question"};
  std::string strXml = "<questions xmlns:q='urn:q'>";
  const auto below = [&](std::size_t lngLimit) { return random() % lngLimit; };
  for (std::size_t lngQuestion = below(12); lngQuestion > 0; --lngQuestion) {
    const std::string strName = kNames[below(7)];
    strXml += "<" + strName + " id='" + std::to_string(lngQuestion) + "'>";
    if (below(8) == 0) strXml += "<question id='inner'><xpath>/r/a</xpath></question>";
    for (std::size_t lngPath = below(8) % 4 % 3; lngPath > 0; --lngPath) {
      const std::string strPathName = below(6) == 0 ? "q:xpath" : "xpath";
      strXml += "<" + strPathName + ">" + kPaths[below(12)] + "</" + strPathName + ">";
    }
    strXml += "</" + strName + ">";
  }
  return strXml + "</questions>";
}

TEST(QuestionPaths, AgreesWithTheSelectionsOnRandomQuestions) {
  int lngAt = 0, lngBelow = 0;
  for (unsigned lngSeed = 1; lngSeed <= 1000; ++lngSeed) {
    std::mt19937 random(lngSeed);
    const std::string strXml = randomQuestions(random);
    SCOPED_TRACE("seed " + std::to_string(lngSeed) + ": " + strXml);
    const Document objXml = parsed(strXml);
    QuestionPaths paths(objXml);
    for (const std::string strPath :
         {"/r/a", "/r", "/r/a/b", "/r/b/a", "/r/", "", " ", "/x", "/r/a/"}) {
      const auto at = idsSelected(objXml, "/questions/question[xpath='" + strPath + "']");
      const auto below =
          idsSelected(objXml, "/questions/question[starts-with(xpath, '" + strPath + "')]");
      ASSERT_EQ(ids(paths.at(strPath)), at) << strPath;
      ASSERT_EQ(ids(*paths.below(strPath)), below) << strPath;
      if (at.size() > 1) ++lngAt;
      if (below.size() > 1) ++lngBelow;
    }
  }
  EXPECT_GT(lngAt, 100) << "paths with several questions";
  EXPECT_GT(lngBelow, 300);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
