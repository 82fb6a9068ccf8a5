#include "message/CreateDocumentDataNodes.h"

#include <gtest/gtest.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kObjectNotSetText = "Object variable or With block variable not set";
constexpr const char* kNotFound =
    "An error occurred because the child node to insert before in the document data was not found. "
    "insertbefore xpath:";

/// The document-node rule with this content.
Node rule(std::string_view strContent) {
  return parsed("<rule>" + std::string(strContent) + "</rule>").documentElement();
}

std::string insertBefore(std::string_view strContent, std::string_view strAttributes = "") {
  return "<insertbefore " + std::string(strAttributes) + ">" + std::string(strContent) +
         "</insertbefore>";
}

/// Copies what /r/s selects to /r/p, by a rule of this content.
struct Story {
  Document objSendXML;
  Acknowledge objAck;

  explicit Story(std::string_view strMessage, std::string_view strRule = "",
                 std::string_view strNodes = "/r/s", std::string_view strParent = "/r/p")
      : objSendXML(message(strMessage)) {
    objAck = CreateDocumentDataNodes({}, objSendXML, strParent, strNodes, rule(strRule));
  }
  std::string sent() const { return content(objSendXML); }
};

TEST(CreateDocumentDataNodes, PutsCopiesAtTheEndOfTheParent) {
  const struct {
    const char *says, *before, *after;
  } cases[] = {
      {"none to copy", "<p><c/></p>", "<p><c/></p>"},
      {"one", "<s/><p><c/></p>", "<s/><p><c/><s/></p>"},
      {"every one in order, with all that is in it", "<s questionId='1'>x<m:t/></s><p/><s>y</s>",
       "<s questionId=\"1\">x<m:t/></s><p><s questionId=\"1\">x<m:t/></s><s>y</s></p><s>y</s>"},
      {"under the first parent", "<p/><s/><p/>", "<p><s/></p><s/><p/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.before);
    EXPECT_TRUE(Succeeded(story.objAck));
    EXPECT_EQ(story.sent(), c.after);
  }
}

TEST(CreateDocumentDataNodes, CopiesWhatTheMessageHeldBefore) {
  const Story story("<s/><p><s/></p>", "", "//s");
  EXPECT_TRUE(Succeeded(story.objAck));
  EXPECT_EQ(story.sent(), "<s/><p><s/><s/><s/></p>") << "its own copies are not copied";

  const Story self("<p><s/></p>", "", "/r/p");
  EXPECT_TRUE(Succeeded(self.objAck));
  EXPECT_EQ(self.sent(), "<p><s/><p><s/></p></p>") << "a parent goes into itself";
}

TEST(CreateDocumentDataNodes, DoesNothingWithoutTheParent) {
  const Story story("<s/>", insertBefore("<node>none</node>"));
  EXPECT_TRUE(Succeeded(story.objAck));
  EXPECT_EQ(story.sent(), "<s/>");

  const Story broken("<s/>", "", "/r/s[");
  EXPECT_TRUE(Succeeded(broken.objAck)) << "the nodes are not even selected";
}

TEST(CreateDocumentDataNodes, PutsCopiesBeforeTheFirstReferenceFound) {
  const struct {
    const char* says;
    std::string rule;
    const char* after;
  } cases[] = {
      {"the one reference", insertBefore("<node>c</node>"), "<b/><s>1</s><s>2</s><c/><d/>"},
      {"the first that is there", insertBefore("<node>a</node><node>d</node><node>c</node>"),
       "<b/><c/><s>1</s><s>2</s><d/>"},
      {"texts without content are passed over", insertBefore("<node/><node>d</node>"),
       "<b/><c/><s>1</s><s>2</s><d/>"},
      {"a path from the top", insertBefore("<node>/r/p/b</node>"), "<s>1</s><s>2</s><b/><c/><d/>"},
      {"other children are no references", insertBefore("<nodes>b</nodes><node>d</node>"),
       "<b/><c/><s>1</s><s>2</s><d/>"},
      {"the first list", insertBefore("<node>d</node>") + insertBefore("<node>b</node>"),
       "<b/><c/><s>1</s><s>2</s><d/>"},
      {"with a word that is not needed", insertBefore("<node>d</node>", "appendonnomatch='false'"),
       "<b/><c/><s>1</s><s>2</s><d/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story("<p><b/><c/><d/></p><s>1</s><s>2</s>", c.rule);
    EXPECT_TRUE(Succeeded(story.objAck));
    EXPECT_EQ(story.sent(), "<p>" + std::string(c.after) + "</p><s>1</s><s>2</s>");
  }
}

TEST(CreateDocumentDataNodes, AppendsWithoutAReferenceWhereThatIsAllowed) {
  for (const char* strWord : {"true", "TRUE", "1"}) {
    SCOPED_TRACE(strWord);
    const Story story(
        "<p><b/></p><s/><s/>",
        insertBefore("<node>none</node>", "appendonnomatch='" + std::string(strWord) + "'"));
    EXPECT_TRUE(Succeeded(story.objAck));
    EXPECT_EQ(story.sent(), "<p><b/><s/><s/></p><s/><s/>");
  }
  const Story empty("<p><b/></p><s/>", insertBefore("", "appendonnomatch='true'"));
  EXPECT_TRUE(Succeeded(empty.objAck));
  EXPECT_EQ(empty.sent(), "<p><b/><s/></p><s/>");
}

TEST(CreateDocumentDataNodes, FailsWithoutAReferenceAtTheFirstCopy) {
  const struct {
    const char* says;
    std::string rule;
    const char* last;
  } cases[] = {
      {"no word", insertBefore("<node>one</node><node>m:two</node>"), "m:two"},
      {"the word false", insertBefore("<node>one</node>", "appendonnomatch='false'"), "one"},
      {"zero", insertBefore("<node>one</node>", "appendonnomatch='0'"), "one"},
      {"no references at all", insertBefore(""), ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story("<p><b/></p><s/><s/>", c.rule);
    EXPECT_TRUE(FailedWith(story.objAck, SVC_RET_XML_CREATION_CREATE_DOC_NODES_FAILED,
                           kNotFound + std::string(c.last), "CreateDocumentDataNodes"));
    EXPECT_EQ(story.sent(), "<p><b/></p><s/><s/>");
  }
}

TEST(CreateDocumentDataNodes, FailsForNothingWhenThereIsNothingToCopy) {
  const Story story("<p><b/></p>", insertBefore("<node>none</node>", "appendonnomatch='maybe'"));
  EXPECT_TRUE(Succeeded(story.objAck));
}

TEST(CreateDocumentDataNodes, LooksForTheReferenceAnewForEveryCopy) {
  // Each copy is itself a reference from then on, so the next goes before it.
  const Story story("<p><b/></p><s>1</s><s>2</s>", insertBefore("<node>s</node><node>b</node>"));
  EXPECT_TRUE(Succeeded(story.objAck));
  EXPECT_EQ(story.sent(), "<p><s>2</s><s>1</s><b/></p><s>1</s><s>2</s>");
}

TEST(CreateDocumentDataNodes, KeepsCopiesPlacedBeforeAFailure) {
  const Story story("<p><b/></p><s>1</s><s>2</s>", insertBefore("<node>b[not(../s)]</node>"));
  EXPECT_TRUE(FailedWith(story.objAck, SVC_RET_XML_CREATION_CREATE_DOC_NODES_FAILED,
                         kNotFound + std::string("b[not(../s)]"), "CreateDocumentDataNodes"));
  EXPECT_EQ(story.sent(), "<p><s>1</s><b/></p><s>1</s><s>2</s>");
}

TEST(CreateDocumentDataNodes, KeepsTheReferenceOfAnEarlierCopyWhereNoneIsNamed) {
  // A rule that stands in the message and is the parent: its first copy becomes its first
  // `insertbefore`, which names nothing, so that the second copy looks for no reference.
  const Document objSendXML = message(
      "<p><b/><insertbefore><node>b</node></insertbefore></p>"
      "<insertbefore><node/></insertbefore><insertbefore/>");
  const Node objRule = objSendXML.selectSingleNode("/r/p");
  EXPECT_TRUE(
      Succeeded(CreateDocumentDataNodes({}, objSendXML, "/r/p", "/r/insertbefore", objRule)));
  EXPECT_EQ(objRule.xml(),
            "<p><insertbefore><node/></insertbefore>"
            "<insertbefore/><b/><insertbefore><node>b</node></insertbefore></p>");
}

TEST(CreateDocumentDataNodes, ReportsAWordThatIsNoBoolean) {
  for (const char* strWord : {"", "yes", " true"}) {
    SCOPED_TRACE(strWord);
    const Story story(
        "<p><b/></p><s/>",
        insertBefore("<node>b</node>", "appendonnomatch='" + std::string(strWord) + "'"));
    EXPECT_TRUE(FailedWithRuntimeError(story.objAck, kTypeMismatch, "CreateDocumentDataNodes",
                                       "Type mismatch"))
        << "also where there is a reference";
    EXPECT_EQ(story.sent(), "<p><b/></p><s/>");
  }
}

TEST(CreateDocumentDataNodes, ReportsWhatTheMessageRefuses) {
  const struct {
    const char *says, *nodes, *parent;
    std::string rule;
  } cases[] = {
      {"a parent that is no XPath", "/r/s", "/r[", ""},
      {"an empty parent path", "/r/s", "", ""},
      {"nodes that are no XPath", "/r/#s", "/r/p", ""},
      {"nodes with an unknown prefix", "/r/y:s", "/r/p", ""},
      {"a reference that is no XPath", "/r/s", "/r/p", insertBefore("<node>'</node>")},
      {"a reference that is no child", "/r/s", "/r/p", insertBefore("<node>/r/s</node>")},
      {"a second root", "/r/s", "/", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story("<p><b/></p><s/>", c.rule, c.nodes, c.parent);
    EXPECT_TRUE(FailedWithNumber(story.objAck, kXmlFailure, "CreateDocumentDataNodes"));
    EXPECT_EQ(story.sent(), "<p><b/></p><s/>");
  }
}

TEST(CreateDocumentDataNodes, ReportsMissingThings) {
  const struct {
    const char* says;
    Document objSendXML;
    Node objRule;
  } cases[] = {
      {"no message", {}, rule("")},
      {"no rule", message("<p/><s/>"), {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_TRUE(
        FailedWithRuntimeError(CreateDocumentDataNodes({}, c.objSendXML, "/r/p", "/r/s", c.objRule),
                               kObjectNotSet, "CreateDocumentDataNodes", kObjectNotSetText));
  }
}

TEST(CreateDocumentDataNodes, ReportsOperationsThatFail) {
  const struct {
    const char* says;
    DomOperation operation;
    int call;
    std::string rule, after;
  } cases[] = {
      {"selecting the nodes", DomOperation::select, 2, "", "<p><b/></p>"},
      {"the second copy", DomOperation::cloneNode, 2, "", "<p><b/><s>1</s></p>"},
      {"the second place", DomOperation::appendChild, 2, "", "<p><b/><s>1</s></p>"},
      {"the second place before", DomOperation::insertBefore, 2, insertBefore("<node>b</node>"),
       "<p><s>1</s><b/></p>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(c.operation, Fault::error, c.call);
    fault.disarm();
    const Document objSendXML = message("<p><b/></p><s>1</s><s>2</s>", {.faults = &fault});
    fault.arm();
    EXPECT_TRUE(FailedWithRuntimeError(
        CreateDocumentDataNodes({}, objSendXML, "/r/p", "/r/s", rule(c.rule)), kXmlFailure,
        "CreateDocumentDataNodes", "Injected failure"));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(content(objSendXML), c.after + "<s>1</s><s>2</s>");
  }
}

TEST(CreateDocumentDataNodes, ReportsAMissingListOfNodes) {
  FaultAt fault(DomOperation::select, Fault::nothing, 2);
  fault.disarm();
  const Document objSendXML = message("<p/><s/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(
      FailedWithRuntimeError(CreateDocumentDataNodes({}, objSendXML, "/r/p", "/r/s", rule("")),
                             kObjectNotSet, "CreateDocumentDataNodes", kObjectNotSetText));
  EXPECT_TRUE(fault.struck());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
