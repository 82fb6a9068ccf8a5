#include "platform/dom/Document.h"

#include "platform/dom/DomTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(Document, OfNothingTestsFalseAndRaises91WhenUsed) {
  const Document objNothing;
  EXPECT_FALSE(objNothing);
  descriptionOf(kObjectNotSet, [&] { objNothing.load("a.xml"); });
  descriptionOf(kObjectNotSet, [&] { objNothing.loadXML("<a/>"); });
  descriptionOf(kObjectNotSet, [&] { objNothing.parseError(); });
  descriptionOf(kObjectNotSet, [&] { objNothing.documentElement(); });
  descriptionOf(kObjectNotSet, [&] { objNothing.setSelectionNamespaces(""); });
  descriptionOf(kObjectNotSet, [&] { objNothing.selectionNamespaces(); });
  descriptionOf(kObjectNotSet, [&] { objNothing.createElement("a"); });
  descriptionOf(kObjectNotSet, [&] { objNothing.createNode(NodeType::element, "a", ""); });
}

TEST(Document, IsEmptyWhenNew) {
  const Document objDocument = Document::create();
  EXPECT_TRUE(objDocument);
  EXPECT_FALSE(objDocument.documentElement());
  EXPECT_FALSE(objDocument.hasChildNodes());
  EXPECT_EQ(objDocument.parseError().errorCode, 0);
  EXPECT_EQ(objDocument.selectionNamespaces(), "");
}

TEST(Document, IsAHandleSoACopyIsTheSameDocument) {
  const Document objDocument = Document::create();
  const Document objCopy = objDocument;
  EXPECT_TRUE(objCopy.loadXML("<a/>"));
  EXPECT_EQ(objDocument.documentElement().nodeName(), "a");
  EXPECT_EQ(objDocument, objCopy);
  EXPECT_FALSE(objDocument == Document::create());
}

TEST(Document, IsEmptyAfterAFailedLoad) {
  const Document objDocument = loaded("<a/>");
  EXPECT_FALSE(objDocument.loadXML("<a>"));
  EXPECT_FALSE(objDocument.documentElement());
  EXPECT_NE(objDocument.parseError().errorCode, 0);
  EXPECT_TRUE(objDocument.loadXML("<b/>"));
  EXPECT_EQ(objDocument.xml(), "<b/>\r\n");
}

TEST(Document, FindsItsRootAmongOtherNodes) {
  EXPECT_EQ(loaded("<?xml version='1.0'?><!DOCTYPE a><!--c--><?p i?><a/><!--d-->")
                .documentElement()
                .nodeName(),
            "a");
}

TEST(Document, GivesTheSelectionNamespacesBackAsTheyWereSet) {
  const Document objDocument = loaded("<p:a xmlns:p='urn:p'><p:b/></p:a>");
  const std::string strDeclarations = "xmlns:p='urn:p'  xmlns:q=\"urn:q\"";
  objDocument.setSelectionNamespaces(strDeclarations);
  EXPECT_EQ(objDocument.selectionNamespaces(), strDeclarations);
  descriptionOf(kXmlFailure, [&] { objDocument.setSelectionNamespaces("nonsense"); });
  EXPECT_EQ(objDocument.selectionNamespaces(), strDeclarations);
  EXPECT_TRUE(objDocument.selectSingleNode("/p:a/p:b"));
  EXPECT_TRUE(objDocument.loadXML("<p:a xmlns:p='urn:p'/>"));
  EXPECT_TRUE(objDocument.selectSingleNode("/p:a")) << "they outlast a load";
}

TEST(Document, MakesElementsInNoNamespaceAlsoWithAPrefix) {
  const Document objDocument = loaded("<a xmlns:p='urn:p'/>");
  objDocument.setSelectionNamespaces("xmlns:p='urn:p'");
  const Node objRoot = objDocument.documentElement();
  objRoot.appendChild(objDocument.createElement("p:x"));
  EXPECT_EQ(objRoot.xml(), "<a xmlns:p=\"urn:p\"><p:x/></a>");
  EXPECT_FALSE(objDocument.selectSingleNode("//p:x"));
  objRoot.appendChild(objDocument.createNode(NodeType::element, "p:x", "urn:p"));
  EXPECT_EQ(objDocument.selectNodes("//p:x")->length(), 1u);
}

TEST(Document, FollowsItsTreeWhenAskedForIds) {
  const Document objDocument = loaded("<a><b id='1'/><b id='2'/></a>");
  const auto count = [&](const char* strXPath) {
    // More than once: an index may be there for the later ones.
    for (int asked = 0; asked < 2; ++asked) objDocument.selectNodes(strXPath);
    return objDocument.selectNodes(strXPath)->length();
  };
  const Node objRoot = objDocument.documentElement();
  EXPECT_EQ(count("//b[@id='1']"), 1u);
  objRoot.childNodes()->item(1).setAttribute("id", "1");
  EXPECT_EQ(count("//b[@id='1']"), 2u);
  EXPECT_EQ(count("//b[@id='2']"), 0u);
  objRoot.childNodes()->item(0).getNamedItem("id").setText("3");
  EXPECT_EQ(count("//b[@id='1']"), 1u);
  EXPECT_EQ(count("//b[@id='3']"), 1u);
  objRoot.childNodes()->item(0).removeAttribute("id");
  EXPECT_EQ(count("//b[@id='3']"), 0u);
  objRoot.appendChild(objRoot.childNodes()->item(1).cloneNode(true));
  EXPECT_EQ(count("//b[@id='1']"), 2u);
  objRoot.removeChild(objRoot.childNodes()->item(1));
  EXPECT_EQ(count("//b[@id='1']"), 1u);
  const Node objMade = objDocument.createElement("b");
  objMade.setAttribute("id", "1");
  EXPECT_EQ(count("//b[@id='1']"), 1u);
  objRoot.insertBefore(objMade, objRoot.childNodes()->item(0));
  EXPECT_EQ(objDocument.selectSingleNode("//b[@id='1']"), objMade);
  objRoot.setText("");
  EXPECT_EQ(count("//b[@id='1']"), 0u);
  EXPECT_EQ(objMade.selectNodes("//b[@id='1']")->length(), 1u) << "it is the top of its own tree";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
