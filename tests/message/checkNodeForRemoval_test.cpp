#include "message/checkNodeForRemoval.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;

Node root(const Document& objXml) { return objXml.documentElement(); }

Document element(std::string_view strAttributes) {
  return parsed("<a " + std::string(strAttributes) + "/>");
}

TEST(isMandatory, ReadsTrueOrFalse) {
  const struct {
    const char *says, *attributes;
    bool mandatory;
  } cases[] = {
      {"true", "mandatory='true'", true},
      {"in any case", "mandatory='TrUe'", true},
      {"false", "mandatory='False'", false},
      {"nothing", "", false},
      {"an empty word", "mandatory=''", false},
      {"blanks", "mandatory='  '", false},
      {"choice and questions play no part", "choice='true' questionIds='q'", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(isMandatory(root(element(c.attributes))), c.mandatory);
  }
}

TEST(isMandatory, RaisesForAnyOtherWord) {
  for (const char* strWord : {"yes", "wahr", "&#9;", " true", "1", "0", "-1", "1e3", " 0 "}) {
    SCOPED_TRACE(strWord);
    const Document objXml = element("mandatory='" + std::string(strWord) + "'");
    const auto error = raisedBy([&] { isMandatory(root(objXml)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kTypeMismatch);
    EXPECT_EQ(error->description(), "Type mismatch");
  }
}

TEST(isMandatoryForQuestion, NarrowsToTheQuestionsListed) {
  const struct {
    const char *says, *reference, *message;
    bool mandatory;
  } cases[] = {
      {"no list", "", "questionId='13'", true},
      {"an empty list", "questionIds=''", "", true},
      {"a list of blanks", "questionIds='  '", "questionId='13'", true},
      {"in the list", "questionIds=' 12;13'", "questionId='13'", true},
      {"the first of it, which the trimming reaches", "questionIds=' 12;13'", "questionId='12'",
       true},
      {"not in the list", "questionIds=' 12;13'", "questionId='14'", false},
      {"an element without question", "questionIds='12;13'", "", false},
      {"a question of blanks", "questionIds='12; ;13'", "questionId=' '", false},
      {"the question's id is trimmed", "questionIds='12;13'", "questionId=' 13 '", true},
      {"entries inside the list are not", "questionIds='12; 13'", "questionId='13'", false},
      {"the case counts", "questionIds='q'", "questionId='Q'", false},
      {"an entry is compared whole", "questionIds='123'", "questionId='12'", false},
      {"an empty entry is no question", "questionIds='12;;13'", "questionId=''", false},
      {"other separators do not part", "questionIds='12,13'", "questionId='13'", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objReference = element(c.reference);
    const Document objMessage = element(c.message);
    QuestionLists lists;
    for (int lngTime = 0; lngTime < 2; ++lngTime) {
      EXPECT_EQ(isMandatoryForQuestion(root(objMessage), root(objReference), true, lists),
                c.mandatory);
    }
    EXPECT_FALSE(isMandatoryForQuestion(root(objMessage), root(objReference), false, lists));
  }
}

TEST(isMandatoryForQuestion, ReadsNothingOfAnOptionalElement) {
  QuestionLists lists;
  EXPECT_FALSE(isMandatoryForQuestion({}, {}, false, lists));
}

TEST(TextlessElements, TellsEachElementByItself) {
  const Document objMessage = parsed(
      "<r><a><b/></a><a><b>x</b></a><a/><a><b><c/></b><!--x--></a><a><b/><b><c>x</c></b></a></r>");
  const NodeList colElements = *objMessage.selectNodes("/r/a");
  TextlessElements textless;
  EXPECT_FALSE(textless.contains(root(objMessage)));
  EXPECT_TRUE(textless.contains(colElements.item(0)));
  EXPECT_FALSE(textless.contains(colElements.item(1)));
  EXPECT_TRUE(textless.contains(colElements.item(2)));
  EXPECT_FALSE(textless.contains(colElements.item(3))) << "a comment is a child that has text";
  EXPECT_FALSE(textless.contains(colElements.item(4)));
  EXPECT_TRUE(textless.contains(objMessage.selectSingleNode("/r/a/b")));
  EXPECT_TRUE(textless.contains(colElements.item(0))) << "in any order";
  EXPECT_FALSE(textless.contains(objMessage)) << "a document too";
}

TEST(TextlessElements, KeepsTheAnswerOnceGiven) {
  const Document objMessage = parsed("<r><a/><a/></r>");
  TextlessElements textless;
  EXPECT_TRUE(textless.contains(root(objMessage)));
  root(objMessage).selectSingleNode("a").setText("x");
  EXPECT_TRUE(textless.contains(root(objMessage)));
}

/// A message and its reference document, and the walk from /r/a/b/c.
bool walk(std::string_view strReference, std::string_view strMessage) {
  const Document objReference = parsed(strReference);
  const Document objMessage = parsed(strMessage);
  TextlessElements textless;
  return hasEmptyOptionalAncestor(objReference.selectSingleNode("/r/a/b"),
                                  objMessage.selectSingleNode("/r/a/b"), textless);
}

TEST(hasEmptyOptionalAncestor, GoesUpToTheFirstOptionalElement) {
  const struct {
    const char *says, *reference, *message;
    bool found;
  } cases[] = {
      {"the parent is optional and without text", "<r><a><b/></a></r>", "<r><a><b/></a></r>", true},
      {"it has empty children", "<r><a><b/></a></r>", "<r><a><b><c/><d e='1'/></b></a></r>", true},
      {"a child of it has text", "<r><a><b/></a></r>", "<r><a><b><c/><d>x</d></b></a></r>", false},
      {"it has text of its own", "<r><a><b/></a></r>", "<r><a><b>x<c/></b></a></r>", false},
      {"text far below counts", "<r><a><b/></a></r>", "<r><a><b><c><d>x</d></c></b></a></r>",
       false},
      {"blanks are text", "<r><a><b/></a></r>",
       "<r><a><b><c xml:space='preserve'> </c></b></a></r>", false},
      {"a comment is a child that has text", "<r><a><b/></a></r>", "<r><a><b><!--c--></b></a></r>",
       false},
      {"text beside it does not count", "<r><a><b/></a></r>", "<r><a><b/>x</a>y</r>", true},
      {"a mandatory parent passes on", "<r><a><b mandatory='true'/></a></r>", "<r><a><b/></a></r>",
       true},
      {"to one that holds text", "<r><a><b mandatory='true'/></a></r>",
       "<r><a><b/><e>x</e></a></r>", false},
      {"the first optional one decides, not those above", "<r><a><b mandatory='true'/></a></r>",
       "<r><a><b/></a><e>x</e></r>", true},
      {"up to an optional root", "<r><a mandatory='true'><b mandatory='true'/></a></r>",
       "<r><a><b/></a></r>", true},
      {"that holds text", "<r><a mandatory='true'><b mandatory='true'/></a></r>",
       "<r><a><b/></a><e>x</e></r>", false},
      {"all of them mandatory",
       "<r mandatory='true'><a mandatory='true'><b mandatory='true'/></a></r>",
       "<r><a><b/></a></r>", false},
      {"the questions of an ancestor play no part",
       "<r mandatory='true' questionIds='1'><a mandatory='true' questionIds='1'>"
       "<b mandatory='true' questionIds='1'/></a></r>",
       "<r><a><b/></a></r>", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(walk(c.reference, c.message), c.found);
  }
}

TEST(hasEmptyOptionalAncestor, RaisesForAWordThatIsNoBoolean) {
  const auto error = raisedBy(
      [] { walk("<r><a mandatory='x'><b mandatory='true'/></a></r>", "<r><a><b/></a></r>"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kTypeMismatch);
}

/// Offers /r/a/b of a message; gives what is left of it.
struct Offer {
  TestHost host;
  std::string strLeft;

  Offer(std::string_view strReference, std::string_view strMessage,
        std::string_view strPath = "/r/a/b") {
    const Document objReference = parsed(strReference);
    const Document objMessage = parsed(strMessage);
    CleanUp cleanUp;
    checkNodeForRemoval(host.session(), objMessage.selectSingleNode("/r/a/b"), strPath,
                        objReference, cleanUp);
    strLeft = objMessage.documentElement().xml();
  }
};

TEST(checkNodeForRemoval, RemovesWhatTheReferenceDoesNotKnow) {
  const Offer offer("<r><a/></r>", "<r><a><b q='1'/><b/>x</a></r>");
  EXPECT_EQ(offer.strLeft, "<r><a><b/>x</a></r>") << "this element, not its twin";
  EXPECT_THAT(offer.host.traceLines(),
              ElementsAre("checkNodeForRemoval: Node path=/r/a/b, Not oRefXMLNode Is Nothing=False",
                          "checkNodeForRemoval: Removing b"));
}

TEST(checkNodeForRemoval, RemovesAnOptionalElement) {
  for (const char* strAttributes : {"", "mandatory='false'", "mandatory='true' questionIds='7'"}) {
    SCOPED_TRACE(strAttributes);
    const Offer offer("<r><a><b " + std::string(strAttributes) + "/></a></r>",
                      "<r><a><b questionId='8'/></a></r>");
    EXPECT_EQ(offer.strLeft, "<r><a/></r>");
    EXPECT_THAT(
        offer.host.traceLines(),
        ElementsAre("checkNodeForRemoval: Node path=/r/a/b, Not oRefXMLNode Is Nothing=True",
                    "checkNodeForRemoval: Node path=/r/a/b, isMandatory=False"));
  }
}

TEST(checkNodeForRemoval, KeepsAMandatoryElementBesideText) {
  for (const char* strAttributes :
       {"mandatory='true'", "mandatory='TRUE'", "mandatory='true' questionIds='7;8'"}) {
    SCOPED_TRACE(strAttributes);
    const Offer offer("<r><a><b " + std::string(strAttributes) + "/></a></r>",
                      "<r><a><b questionId='8'/>x</a></r>");
    EXPECT_EQ(offer.strLeft, "<r><a><b questionId=\"8\"/>x</a></r>");
    EXPECT_THAT(
        offer.host.traceLines(),
        ElementsAre("checkNodeForRemoval: Node path=/r/a/b, Not oRefXMLNode Is Nothing=True",
                    "checkNodeForRemoval: Node path=/r/a/b, isMandatory=True",
                    "checkNodeForRemoval: Node path=/r/a/b, blnEmptyOptAncestor=False"));
  }
}

TEST(checkNodeForRemoval, KeepsAMandatoryElementBelowMandatoryOnes) {
  const Offer offer("<r mandatory='true'><a mandatory='true'><b mandatory='true'/></a></r>",
                    "<r><a><b/></a></r>");
  EXPECT_EQ(offer.strLeft, "<r><a><b/></a></r>");
}

TEST(checkNodeForRemoval, RemovesAMandatoryElementBelowAnEmptyOptionalOne) {
  const Offer offer("<r mandatory='true'><a><b mandatory='true'/></a></r>",
                    "<r><a><b/><e/></a><f>x</f></r>");
  EXPECT_EQ(offer.strLeft, "<r><a><e/></a><f>x</f></r>");
  EXPECT_THAT(offer.host.traceLines(),
              ElementsAre("checkNodeForRemoval: Node path=/r/a/b, Not oRefXMLNode Is Nothing=True",
                          "checkNodeForRemoval: Node path=/r/a/b, isMandatory=True",
                          "checkNodeForRemoval: Node path=/r/a/b, blnEmptyOptAncestor=True"));
}

TEST(checkNodeForRemoval, TakesTheFirstReferenceElementOfAPath) {
  EXPECT_EQ(Offer("<r><a><b mandatory='true'/><b/></a></r>", "<r><a><b/>x</a></r>").strLeft,
            "<r><a><b/>x</a></r>");
  EXPECT_EQ(Offer("<r><a><b/><b mandatory='true'/></a></r>", "<r><a><b/>x</a></r>").strLeft,
            "<r><a>x</a></r>");
  EXPECT_EQ(Offer("<r><a/><a><b mandatory='true'/></a></r>", "<r><a><b/>x</a></r>").strLeft,
            "<r><a><b/>x</a></r>")
      << "the whole path, not step by step";
}

TEST(checkNodeForRemoval, SelectsWithThePrefixesOfTheReferenceDocument) {
  const TestHost host;
  const Document objReference = message("<m:a mandatory='true'/>");
  const Document objMessage = message("<m:a/>x");
  const Node objNode = objMessage.selectSingleNode("/r/m:a");
  CleanUp cleanUp;
  checkNodeForRemoval(host.session(), objNode, "/r/m:a", objReference, cleanUp);
  EXPECT_EQ(content(objMessage), "<m:a/>x");
  checkNodeForRemoval(host.session(), objNode, "/r/n:a", objReference, cleanUp);
  EXPECT_EQ(content(objMessage), "x");
  EXPECT_EQ(host.traceLines().back(), "checkNodeForRemoval: Removing m:a");
}

TEST(checkNodeForRemoval, LetsFailuresPassToItsCaller) {
  const struct {
    const char *says, *reference, *path;
    std::int32_t number;
    std::vector<std::string> lines;
  } cases[] = {
      {"a path that is none", "<r/>", "/r/#comment", kXmlFailure, {}},
      {"a prefix that the reference does not register", "<r/>", "/r/p:a", kXmlFailure, {}},
      {"a word that is no Boolean",
       "<r><a><b mandatory='x'/></a></r>",
       "/r/a/b",
       kTypeMismatch,
       {"checkNodeForRemoval: Node path=/r/a/b, Not oRefXMLNode Is Nothing=True"}},
      {"one above",
       "<r><a mandatory='x'><b mandatory='true'/></a></r>",
       "/r/a/b",
       kTypeMismatch,
       {"checkNodeForRemoval: Node path=/r/a/b, Not oRefXMLNode Is Nothing=True",
        "checkNodeForRemoval: Node path=/r/a/b, isMandatory=True"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TestHost host;
    const Document objReference = parsed(c.reference);
    const Document objMessage = parsed("<r><a><b/></a></r>");
    CleanUp cleanUp;
    const auto error = raisedBy([&] {
      checkNodeForRemoval(host.session(), objMessage.selectSingleNode("/r/a/b"), c.path,
                          objReference, cleanUp);
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), c.number);
    EXPECT_EQ(objMessage.documentElement().xml(), "<r><a><b/></a></r>");
    EXPECT_EQ(host.traceLines(), c.lines);
  }
}

TEST(checkNodeForRemoval, RaisesForAnElementThatHasNoParent) {
  const TestHost host;
  const Document objReference = parsed("<r/>");
  const Document objMessage = parsed("<r/>");
  CleanUp cleanUp;
  const auto error = raisedBy([&] {
    checkNodeForRemoval(host.session(), objMessage.createElement("b"), "/r/b", objReference,
                        cleanUp);
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
