#include "message/GetComplexTypeFromAction.h"

#include "SchemaTypes.h"
#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kUserMessage = "An error occurred getting the complex type from the action";

TEST(GetComplexTypeFromAction, CopiesTheTypeWithAllThatItHolds) {
  const Document objMapper = schemaTypes(
      "<schematype id='other'><z/></schematype>"
      "<schematype id='person' note='n'><a><value id='x'/>t</a><!--c--><b/></schematype>");
  const std::string strBefore = objMapper.xml();
  Node objType;
  EXPECT_TRUE(Succeeded(GetComplexTypeFromAction(objMapper, "person", objType)));
  ASSERT_TRUE(objType);
  EXPECT_EQ(objType.xml(),
            "<schematype id=\"person\" note=\"n\"><a><value id=\"x\"/>t</a><!--c--><b/>"
            "</schematype>");
  EXPECT_FALSE(objType.parentNode());
  EXPECT_EQ(objMapper.xml(), strBefore);
}

TEST(GetComplexTypeFromAction, GivesACopyOfItsOwn) {
  const Document objMapper = schemaTypes("<schematype id='person'><a/></schematype>");
  const std::string strBefore = objMapper.xml();
  Node objFirst, objSecond;
  EXPECT_TRUE(Succeeded(GetComplexTypeFromAction(objMapper, "person", objFirst)));
  EXPECT_TRUE(Succeeded(GetComplexTypeFromAction(objMapper, "person", objSecond)));
  objFirst.selectSingleNode("a").setText("changed");
  EXPECT_EQ(objSecond.xml(), "<schematype id=\"person\"><a/></schematype>");
  EXPECT_EQ(objMapper.xml(), strBefore);
}

TEST(GetComplexTypeFromAction, LooksUpTheActionInLowerCase) {
  const struct {
    const char *says, *id, *found;  // null: not found
  } cases[] = {
      {"as written", "person", "lower"},
      {"an action in mixed case finds the lower-case id", "PerSon", "lower"},
      {"an id in upper case is never found", "UPPER", nullptr},
      {"nor under its own lower case", "upper", nullptr},
      {"beyond ASCII too", "\xC3\x84RZTE", "umlaut"},
      {"blanks count", " person", nullptr},
      {"a blank is an id", " ", "blank"},
      {"a part is no match", "pers", nullptr},
      {"the first of two", "twice", "first"},
      {"only below schematypes", "stray", nullptr},
      {"and only directly", "deep", nullptr},
  };
  const Document objMapper = parsed(
      "<SchemaTypeMapperDocument><schematype id='stray'/><schematypes>"
      "<schematype id='person' is='lower'><schematype id='deep'/></schematype>"
      "<schematype id='UPPER'/><schematype id='\xC3\xA4rzte' is='umlaut'/>"
      "<schematype id=' ' is='blank'/><schematype id='twice' is='first'/>"
      "<schematype id='twice' is='second'/></schematypes></SchemaTypeMapperDocument>");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Node objType = objMapper.documentElement();
    const Acknowledge objAck = GetComplexTypeFromAction(objMapper, c.id, objType);
    if (c.found) {
      EXPECT_TRUE(Succeeded(objAck));
      ASSERT_TRUE(objType);
      EXPECT_EQ(objType.getAttribute("is"), c.found);
    } else {
      EXPECT_TRUE(FailedWith(objAck, SVC_RET_XML_CREATION_CMPLX_TYPE_MISSING,
                             "The complex type is missing", kUserMessage));
      EXPECT_FALSE(objType);
    }
  }
}

TEST(GetComplexTypeFromAction, NeedsAnAction) {
  const Document objMapper = schemaTypes("<schematype id=''/>");
  Node objType = objMapper.documentElement();
  EXPECT_TRUE(FailedWith(GetComplexTypeFromAction(objMapper, "", objType),
                         SVC_RET_XML_CREATION_ACTION_MISSING, "The action is missing",
                         kUserMessage));
  EXPECT_FALSE(objType);
}

TEST(GetComplexTypeFromAction, AsksForTheActionBeforeTheTypes) {
  Node objType;
  EXPECT_TRUE(FailedWith(GetComplexTypeFromAction(Document(), "", objType),
                         SVC_RET_XML_CREATION_ACTION_MISSING, "The action is missing",
                         kUserMessage));
}

TEST(GetComplexTypeFromAction, FindsNothingInAnotherDocument) {
  const Document documents[] = {
      parsed("<mapper><schematypes><schematype id='person'/></schematypes></mapper>"),
      parsed("<SchemaTypeMapperDocument/>"),
      parsed("<SchemaTypeMapperDocument xmlns='urn:d'><schematypes><schematype id='person'/>"
             "</schematypes></SchemaTypeMapperDocument>"),
      Document::create(),
  };
  for (const Document& objMapper : documents) {
    Node objType;
    EXPECT_TRUE(FailedWith(GetComplexTypeFromAction(objMapper, "person", objType),
                           SVC_RET_XML_CREATION_CMPLX_TYPE_MISSING, "The complex type is missing",
                           kUserMessage));
  }
}

TEST(GetComplexTypeFromAction, FailsWithoutACopy) {
  FaultAt fault(DomOperation::cloneNode);
  const Document objMapper = schemaTypes("<schematype id='person'/>", {.faults = &fault});
  fault.arm();
  Node objType = objMapper;
  EXPECT_TRUE(FailedWith(GetComplexTypeFromAction(objMapper, "person", objType),
                         SVC_RET_XML_CREATION_CLONING_CMPLX_TYPE_FAILED,
                         "Cloning of the complex type object has failed", kUserMessage));
  EXPECT_TRUE(fault.struck());
  EXPECT_FALSE(objType);
}

// --- Run-time errors ---

TEST(GetComplexTypeFromAction, ReportsRunTimeErrors) {
  Node objType = parsed("<a/>");
  EXPECT_TRUE(FailedWithRuntimeError(GetComplexTypeFromAction(Document(), "person", objType),
                                     kObjectNotSet, "GetComplexTypeFromAction",
                                     "Object variable or With block variable not set"));
  EXPECT_FALSE(objType);

  objType = parsed("<a/>");
  EXPECT_TRUE(FailedWithNumber(GetComplexTypeFromAction(schemaTypes(""), "it's", objType),
                               kXmlFailure, "GetComplexTypeFromAction"));
  EXPECT_FALSE(objType);

  FaultAt fault(DomOperation::cloneNode, Fault::error);
  const Document objMapper = schemaTypes("<schematype id='person'/>", {.faults = &fault});
  fault.arm();
  objType = objMapper;
  EXPECT_TRUE(FailedWithRuntimeError(GetComplexTypeFromAction(objMapper, "person", objType),
                                     kXmlFailure, "GetComplexTypeFromAction", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_FALSE(objType);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
