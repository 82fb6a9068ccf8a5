#include "message/makeHCPDetailType.h"

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kNothing = "Object variable or With block variable not set";

/// One call: details of `/r/m:from`, to go below `/r/m:to`, as the parameters say.
struct Scene {
  explicit Scene(std::string_view strParameters, std::string_view strTo = "<m:to/>")
      : objAction(parsed("<action>" + std::string(strParameters) + "</action>").documentElement()),
        objXmlDocument(message(std::string(kFrom) + std::string(strTo))) {}

  Acknowledge make() {
    return makeHCPDetailType(session, objXmlDocument, objAction, strParentXPath, strNodeXPath,
                             objDocNode);
  }

  /// What follows `m:from` in the message.
  std::string to() const {
    const std::string strContent = content(objXmlDocument);
    if (!strContent.starts_with(kFrom)) return "m:from changed: " + strContent;
    return strContent.substr(kFrom.size());
  }

  static constexpr std::string_view kFrom =
      "<m:from><m:x>1</m:x><m:x>2</m:x><m:y k=\"v\"><m:z/></m:y></m:from>";

  TestHost host;
  Session session = withNamespaces(host);
  Node objAction;
  Document objXmlDocument;
  std::string strParentXPath = "/r/m:to";
  std::string strNodeXPath = "/r/m:from";
  Node objDocNode = parsed("<documentnode/>").documentElement();
};

TEST(makeHCPDetailType, CreatesAndCopies) {
  const struct {
    const char *says, *parameters, *to, *after;
  } cases[] = {
      {"no parameters do nothing", "", "<m:to/>", "<m:to/>"},
      {"create makes the path below the parent",
       "<parameter action='create' under='parent'>m:a/n:b</parameter>", "<m:to/>",
       "<m:to><m:a><n:b/></m:a></m:to>"},
      {"create in any case", "<parameter action='CREATE' under='Parent'>m:a</parameter>", "<m:to/>",
       "<m:to><m:a/></m:to>"},
      {"create elsewhere does nothing", "<parameter action='create' under='m:u'>m:a</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u/></m:to>"},
      {"create nowhere does nothing", "<parameter action='create'>m:a</parameter>", "<m:to/>",
       "<m:to/>"},
      {"copy takes what the path selects",
       "<parameter action='copy' under='parent'>m:y</parameter>", "<m:to/>",
       "<m:to><m:y k=\"v\"><m:z/></m:y></m:to>"},
      {"all of it", "<parameter action='copy' under='parent'>m:x</parameter>",
       "<m:to><m:a/></m:to>", "<m:to><m:a/><m:x>1</m:x><m:x>2</m:x></m:to>"},
      {"copy in any case", "<parameter action='Copy' under='PARENT'>m:y/m:z</parameter>", "<m:to/>",
       "<m:to><m:z/></m:to>"},
      {"copy below a path", "<parameter action='copy' under='m:u'>m:y</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u><m:y k=\"v\"><m:z/></m:y></m:u></m:to>"},
      {"that path keeps its case", "<parameter action='copy' under='m:Up'>m:y/m:z</parameter>",
       "<m:to><m:up/><m:Up/></m:to>", "<m:to><m:up/><m:Up><m:z/></m:Up></m:to>"},
      {"copy below a path that is not there does nothing",
       "<parameter action='copy' under='m:u'>m:y</parameter>", "<m:to/>", "<m:to/>"},
      {"copy of nothing does nothing", "<parameter action='copy' under='parent'>m:gone</parameter>",
       "<m:to/>", "<m:to/>"},
      {"other actions are ignored",
       "<parameter action='move' under='parent'>m:y</parameter><parameter under='parent'>m:y"
       "</parameter><parameter action=' copy' under='parent'>m:y</parameter>",
       "<m:to/>", "<m:to/>"},
      {"in the order of the parameters",
       "<parameter action='copy' under='parent'>m:y/m:z</parameter>"
       "<parameter action='create' under='parent'>m:a</parameter>"
       "<parameter action='copy' under='m:a'>m:x</parameter>",
       "<m:to/>", "<m:to><m:z/><m:a><m:x>1</m:x><m:x>2</m:x></m:a></m:to>"},
      {"only children count",
       "<more><parameter action='create' under='parent'>m:a</parameter></more><!--c-->", "<m:to/>",
       "<m:to/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.parameters, c.to);
    EXPECT_TRUE(Succeeded(scene.make()));
    EXPECT_EQ(scene.to(), c.after);
  }
}

TEST(makeHCPDetailType, KeepsThePathThatACopyWentTo) {
  const struct {
    const char *says, *parameters, *to, *after;
  } cases[] = {
      {"the second copy goes one further down",
       "<parameter action='copy' under='m:u'>m:y/m:z</parameter>"
       "<parameter action='copy' under='m:u'>m:y/m:z</parameter>",
       "<m:to><m:u><m:u/></m:u></m:to>", "<m:to><m:u><m:u><m:z/></m:u><m:z/></m:u></m:to>"},
      {"so it goes nowhere when there is no such place",
       "<parameter action='copy' under='m:u'>m:y/m:z</parameter>"
       "<parameter action='copy' under='m:u'>m:y/m:z</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u><m:z/></m:u></m:to>"},
      {"the parent is then the place below",
       "<parameter action='copy' under='m:u'>m:gone</parameter>"
       "<parameter action='copy' under='parent'>m:y/m:z</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u><m:z/></m:u></m:to>"},
      {"for what is created too",
       "<parameter action='copy' under='m:u'>m:gone</parameter>"
       "<parameter action='create' under='parent'>m:a</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u><m:a/></m:u></m:to>"},
      {"a create moves nothing",
       "<parameter action='create' under='m:u'>m:a</parameter>"
       "<parameter action='create' under='parent'>m:a</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u/><m:a/></m:to>"},
      {"an unknown action moves nothing",
       "<parameter action='move' under='m:u'>m:a</parameter>"
       "<parameter action='create' under='parent'>m:a</parameter>",
       "<m:to><m:u/></m:to>", "<m:to><m:u/><m:a/></m:to>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.parameters, c.to);
    EXPECT_TRUE(Succeeded(scene.make()));
    EXPECT_EQ(scene.to(), c.after);
  }
}

TEST(makeHCPDetailType, DoesNothingWithoutDetails) {
  Scene scene("<parameter action='create' under='parent'>m:a</parameter>");
  scene.strNodeXPath = "/r/m:gone";
  EXPECT_TRUE(Succeeded(scene.make()));
  scene.strParentXPath = "/r/m:gone";  // would fail
  scene.objAction = Node();            // not looked at either
  EXPECT_TRUE(Succeeded(scene.make()));
  EXPECT_EQ(scene.to(), "<m:to/>");
}

TEST(makeHCPDetailType, HandsTheRuleOn) {
  Scene scene("<parameter action='copy' under='parent'>m:x</parameter>",
              "<m:to><m:first/><m:last/></m:to>");
  scene.objDocNode =
      parsed("<documentnode><insertbefore><node>m:last</node></insertbefore></documentnode>")
          .documentElement();
  EXPECT_TRUE(Succeeded(scene.make()));
  EXPECT_EQ(scene.to(), "<m:to><m:first/><m:x>1</m:x><m:x>2</m:x><m:last/></m:to>");
}

// --- Failures ---

TEST(makeHCPDetailType, EndsWithTheFirstPathThatFails) {
  Scene parent(
      "<parameter action='create' under='parent'>m:a</parameter>"
      "<parameter action='copy' under='parent'>m:y</parameter>");
  parent.strParentXPath = "/r/m:gone";
  EXPECT_TRUE(FailedWith(parent.make(), SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                         "Unable to select the parent xpath from the message template xml. - "
                         "Context=buildXPath",
                         "default message"));
  EXPECT_EQ(parent.to(), "<m:to/>");

  Scene path(
      "<parameter action='create' under='parent'>m:a</parameter>"
      "<parameter action='create' under='parent'/>"
      "<parameter action='create' under='parent'>m:b</parameter>");
  EXPECT_TRUE(FailedWith(path.make(), SVC_RET_XML_CREATION_NODE_PATH_MISSING,
                         "No node path supplied to buildXPath. - Context=buildXPath",
                         "default message"));
  EXPECT_EQ(path.to(), "<m:to><m:a/></m:to>");
}

TEST(makeHCPDetailType, EndsWithANameWhosePrefixIsNotRegistered) {
  // The element is made nevertheless; the result tells of the failed lookup.
  Scene scene(
      "<parameter action='create' under='parent'>unknown</parameter>"
      "<parameter action='create' under='parent'>m:b</parameter>");
  EXPECT_TRUE(FailedWith(scene.make(), SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING,
                         "The schema reference information for schema id=unknown could not be "
                         "selected. Context:getSchemaReference",
                         "default message"));
  EXPECT_EQ(scene.to(), "<m:to><unknown/></m:to>");
}

TEST(makeHCPDetailType, EndsWithTheFirstCopyThatFails) {
  Scene scene(
      "<parameter action='create' under='parent'>m:a</parameter>"
      "<parameter action='copy' under='parent'>m:y</parameter>"
      "<parameter action='create' under='parent'>m:b</parameter>");
  scene.objDocNode =
      parsed("<documentnode><insertbefore><node>m:gone</node></insertbefore></documentnode>")
          .documentElement();
  EXPECT_TRUE(FailedWith(scene.make(), SVC_RET_XML_CREATION_CREATE_DOC_NODES_FAILED,
                         "An error occurred because the child node to insert before in the "
                         "document data was not found. insertbefore xpath:m:gone",
                         "CreateDocumentDataNodes"));
  EXPECT_EQ(scene.to(), "<m:to><m:a/></m:to>");
}

TEST(makeHCPDetailType, ReportsTheRunTimeErrorsOfItsSteps) {
  // A copy without `under` has an empty path, and a place that ends in "/" is no XPath.
  Scene under("<parameter action='copy'>m:y</parameter>");
  EXPECT_TRUE(FailedWithNumber(under.make(), kXmlFailure, "CreateDocumentDataNodes"));
  EXPECT_EQ(under.to(), "<m:to/>");

  Scene what("<parameter action='copy' under='parent'/>");
  EXPECT_TRUE(FailedWithNumber(what.make(), kXmlFailure, "CreateDocumentDataNodes"));

  Scene name("<parameter action='create' under='parent'>a b</parameter>");
  EXPECT_TRUE(FailedWithNumber(name.make(), kInvalidName, "buildXPath"));

  Scene end("<parameter action='create' under='parent'>m:a/</parameter>");
  EXPECT_TRUE(FailedWithRuntimeError(end.make(), kSubscriptOutOfRange, "buildXPath",
                                     "Subscript out of range"));
  EXPECT_EQ(end.to(), "<m:to><m:a/></m:to>");
}

TEST(makeHCPDetailType, ReportsItsOwnRunTimeErrors) {
  Scene xpath("");
  xpath.strNodeXPath = "/r[";
  EXPECT_TRUE(FailedWithNumber(xpath.make(), kXmlFailure, "makeHCPDetailType"));

  Scene prefix("");
  prefix.strNodeXPath = "/u:r";
  EXPECT_TRUE(FailedWithNumber(prefix.make(), kXmlFailure, "makeHCPDetailType"));

  Scene action("");
  action.objAction = Node();
  EXPECT_TRUE(FailedWithRuntimeError(action.make(), kObjectNotSet, "makeHCPDetailType", kNothing));

  Scene document("");
  document.objXmlDocument = Document();
  EXPECT_TRUE(
      FailedWithRuntimeError(document.make(), kObjectNotSet, "makeHCPDetailType", kNothing));
}

TEST(makeHCPDetailType, ReportsAParameterThatCannotBeRead) {
  FaultAt fault(DomOperation::readText, Fault::error, 2);
  Scene scene("");
  scene.objAction = parsed(
                        "<action><parameter action='create' under='parent'>m:a</parameter>"
                        "<parameter action='create' under='parent'>m:b</parameter></action>",
                        {.faults = &fault})
                        .documentElement();
  fault.arm();
  EXPECT_TRUE(
      FailedWithRuntimeError(scene.make(), kXmlFailure, "makeHCPDetailType", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(scene.to(), "<m:to><m:a/></m:to>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
