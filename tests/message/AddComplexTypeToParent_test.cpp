#include "message/AddComplexTypeToParent.h"

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// A complex type that stands alone, as `GetComplexTypeFromAction` gives it.
Node complexType(std::string_view strContent) {
  return parsed("<schematype id='t' xmlns:m='urn:m'>" + std::string(strContent) + "</schematype>")
      .documentElement()
      .cloneNode(true);
}

TEST(AddComplexTypeToParent, MovesEveryChildInOrder) {
  const struct {
    const char *says, *type, *before, *after;
  } cases[] = {
      {"one child", "<m:a/>", "", "<m:a/>"},
      {"several, each once", "<m:a/><m:b/><m:c/><m:d/>", "", "<m:a/><m:b/><m:c/><m:d/>"},
      {"with all that they hold", "<m:a k='v'><m:b>t</m:b></m:a>", "",
       "<m:a k=\"v\"><m:b>t</m:b></m:a>"},
      {"behind what is there", "<m:a/>", "<m:z/>text", "<m:z/>text<m:a/>"},
      {"not only elements", "t<m:a/><!--c--><?p d?><![CDATA[<]]>", "",
       "t<m:a/><!--c--><?p d?><![CDATA[<]]>"},
      {"placeholders too", "<m:a><value id='x'/></m:a>", "", "<m:a><value id=\"x\"/></m:a>"},
      {"no children", "", "<m:z/>", "<m:z/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objSendXML = message(c.before);
    const Node objType = complexType(c.type);
    EXPECT_TRUE(Succeeded(AddComplexTypeToParent({}, objSendXML.documentElement(), objType)));
    EXPECT_EQ(content(objSendXML), c.after);
    EXPECT_FALSE(objType.hasChildNodes()) << "moved out of the copy";
  }
}

TEST(AddComplexTypeToParent, WorksWithinOneDocument) {
  const Document objSendXML = message("<schematype><m:a/><m:b/></schematype><m:p/>");
  EXPECT_TRUE(Succeeded(AddComplexTypeToParent({}, objSendXML.selectSingleNode("/r/m:p"),
                                               objSendXML.selectSingleNode("/r/schematype"))));
  EXPECT_EQ(content(objSendXML), "<schematype/><m:p><m:a/><m:b/></m:p>");
}

TEST(AddComplexTypeToParent, FailsWhenAChildIsNotTaken) {
  FaultAt fault(DomOperation::appendChild, Fault::nothing, 2);
  const Document objSendXML = message("", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(
      AddComplexTypeToParent({}, objSendXML.documentElement(), complexType("<m:a/><m:b/><m:c/>")),
      SVC_RET_XML_CREATION_ADD_CHILD_NODE_FAILED, "Adding the child node failed",
      "An error occurred adding complex type to parent"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(objSendXML), "<m:a/>") << "the first stays, the third is not tried";
}

TEST(AddComplexTypeToParent, ReportsRunTimeErrors) {
  const Document objSendXML = message("");
  EXPECT_TRUE(FailedWithRuntimeError(
      AddComplexTypeToParent({}, objSendXML.documentElement(), Node()), kObjectNotSet,
      "AddComplexTypeToParent", "Object variable or With block variable not set"));
  EXPECT_TRUE(FailedWithRuntimeError(AddComplexTypeToParent({}, Node(), complexType("<m:a/>")),
                                     kObjectNotSet, "AddComplexTypeToParent",
                                     "Object variable or With block variable not set"));
  const Document objOther = message("<!--c-->");
  EXPECT_TRUE(FailedWithNumber(
      AddComplexTypeToParent({}, objOther.selectSingleNode("/r/comment()"), complexType("<m:a/>")),
      kXmlFailure, "AddComplexTypeToParent"));
  EXPECT_EQ(content(objOther), "<!--c-->");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
