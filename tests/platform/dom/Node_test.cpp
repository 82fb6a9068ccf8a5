#include "platform/dom/Node.h"

#include <thread>
#include <vector>

#include "platform/dom/DomTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(Node, OfNothingTestsFalseAndRaises91WhenUsed) {
  const Node objNothing;
  const Node objRoot = loaded("<a/>").documentElement();
  EXPECT_FALSE(objNothing);
  EXPECT_EQ(objNothing, Node());
  EXPECT_FALSE(objNothing == objRoot);
  const auto raises = [](auto operation) {
    EXPECT_EQ(descriptionOf(kObjectNotSet, operation),
              "Object variable or With block variable not set");
  };
  raises([&] { objNothing.nodeType(); });
  raises([&] { objNothing.nodeName(); });
  raises([&] { objNothing.baseName(); });
  raises([&] { objNothing.text(); });
  raises([&] { objNothing.setText(""); });
  raises([&] { objNothing.xml(); });
  raises([&] { objNothing.lineNumber(); });
  raises([&] { objNothing.hasChildNodes(); });
  raises([&] { objNothing.childNodes(); });
  raises([&] { objNothing.parentNode(); });
  raises([&] { objNothing.getAttribute("a"); });
  raises([&] { objNothing.attributes(); });
  raises([&] { objNothing.namespaceUri(); });
  raises([&] { objNothing.setAttribute("a", ""); });
  raises([&] { objNothing.removeAttribute("a"); });
  raises([&] { objNothing.removeAttributes({}); });
  raises([&] { objNothing.emptyNodes(); });
  raises([&] { objNothing.getNamedItem("a"); });
  raises([&] { objNothing.selectNodes("a"); });
  raises([&] { objNothing.selectSingleNode("a"); });
  raises([&] { objNothing.getElementsByTagName("a"); });
  raises([&] { objNothing.appendChild(objRoot); });
  raises([&] { objNothing.insertBefore(objRoot, objRoot); });
  raises([&] { objNothing.removeChild(objRoot); });
  raises([&] { objNothing.cloneNode(true); });
  raises([&] { objRoot.appendChild(objNothing); });
  raises([&] { objRoot.insertBefore(objNothing, objRoot); });
  raises([&] { objRoot.insertBefore(objRoot, objNothing); });
  raises([&] { objRoot.removeChild(objNothing); });
  raises([&] { objRoot.getNamedItem("missing").text(); });
}

TEST(Node, TellsWhatHoldsNothing) {
  const Document objDocument = loaded(
      "<r><a/><b>x</b><c><d/></c><!----><!--x--><?p?><?p x?><![CDATA[]]><e><![CDATA[]]></e></r>");
  const Node objTextless =
      objDocument.selectSingleNode("/r/b").appendChild(objDocument.createElement("f"));
  objTextless.setText("");
  const Node objBeside = objDocument.documentElement().appendChild(objDocument.createElement("g"));
  objBeside.setText("");
  objBeside.appendChild(objDocument.createElement("h"));
  std::string strNames;
  for (const Node& objNode : objDocument.emptyNodes()) strNames += objNode.nodeName() + " ";
  EXPECT_EQ(strNames, "a f d #comment p #cdata-section #cdata-section h ");
  EXPECT_EQ(objTextless.emptyNodes().length(), 1U);
  EXPECT_EQ(objDocument.selectSingleNode("/r/b/text()").emptyNodes().length(), 0U);
}

TEST(Node, TellsTheLineOfAnElementThatWasLoaded) {
  const Document objDocument = loaded("<a>\n<b\n x='1'>\n\n<c/></b>text</a>");
  const Node objRoot = objDocument.documentElement();
  const Node objB = objRoot.selectSingleNode("b");
  EXPECT_EQ(objRoot.lineNumber(), 1u);
  EXPECT_EQ(objB.lineNumber(), 3u);
  EXPECT_EQ(objB.selectSingleNode("c").lineNumber(), 5u);
  EXPECT_EQ(objB.cloneNode(true).selectSingleNode("c").lineNumber(), 5u);
  EXPECT_EQ(objB.getNamedItem("x").lineNumber(), 0u);
  EXPECT_EQ(objDocument.lineNumber(), 0u);
  EXPECT_EQ(objDocument.createElement("d").lineNumber(), 0u);
}

TEST(Node, TellsItsNamespaceAndItsAttributesWithTheDeclarations) {
  const Document objDocument =
      loaded("<a z='1' xmlns='u' xmlns:p='v' p:y='2'><p:b/><c xmlns=''/>t</a>");
  const Node objRoot = objDocument.documentElement();
  std::string strAttributes;
  for (const NodeAttribute& attribute : objRoot.attributes()) {
    strAttributes += attribute.strName + "=" + attribute.strValue + " ";
  }
  EXPECT_EQ(strAttributes, "xmlns=u xmlns:p=v z=1 p:y=2 ");
  const auto colChildren = objRoot.childNodes();
  EXPECT_EQ(objRoot.namespaceUri(), "u");
  EXPECT_EQ(colChildren->item(0).namespaceUri(), "v");
  EXPECT_EQ(colChildren->item(1).namespaceUri(), "");
  EXPECT_EQ(colChildren->item(2).namespaceUri(), "");
  EXPECT_EQ(objRoot.getNamedItem("p:y").namespaceUri(), "v");
  EXPECT_EQ(objRoot.getNamedItem("z").namespaceUri(), "");
  EXPECT_EQ(objDocument.namespaceUri(), "");
  EXPECT_TRUE(colChildren->item(0).attributes().empty());
}

TEST(Node, TellsItsTypeAndNames) {
  const Document objDocument =
      loaded("<!DOCTYPE p:a><p:a xmlns:p='u' p:x='1' y='2'>t<![CDATA[c]]><!--k--><?go now?></p:a>");
  const Node objRoot = objDocument.documentElement();
  const auto colChildren = objRoot.childNodes();
  const struct {
    Node node;
    NodeType type;
    const char *name, *base;
  } cases[] = {
      {objDocument, NodeType::document, "#document", "#document"},
      {objDocument.childNodes()->item(0), NodeType::documentType, "p:a", "a"},
      {objRoot, NodeType::element, "p:a", "a"},
      {objRoot.getNamedItem("p:x"), NodeType::attribute, "p:x", "x"},
      {objRoot.getNamedItem("y"), NodeType::attribute, "y", "y"},
      {colChildren->item(0), NodeType::text, "#text", "#text"},
      {colChildren->item(1), NodeType::cdataSection, "#cdata-section", "#cdata-section"},
      {colChildren->item(2), NodeType::comment, "#comment", "#comment"},
      {colChildren->item(3), NodeType::processingInstruction, "go", "go"},
      {objDocument.createElement("q:z"), NodeType::element, "q:z", "z"},
      {objDocument.createNode(NodeType::element, "q:z", "v"), NodeType::element, "q:z", "z"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.node.nodeType(), c.type);
    EXPECT_EQ(c.node.nodeName(), c.name);
    EXPECT_EQ(c.node.baseName(), c.base);
  }
}

TEST(Node, GivesTheTextBelowItUntrimmedWithoutCommentsAndInstructions) {
  const Document objDocument =
      loaded("<a x=' 1 '> s<b>t<![CDATA[<c>]]></b><!--no--><?no no?>\n e </a>");
  const Node objRoot = objDocument.documentElement();
  EXPECT_EQ(objRoot.text(), " st<c>\n e ");
  EXPECT_EQ(objDocument.text(), " st<c>\n e ");
  EXPECT_EQ(objRoot.getNamedItem("x").text(), " 1 ");
  EXPECT_EQ(objRoot.childNodes()->item(2).text(), "no");
  EXPECT_EQ(loaded("<a/>").documentElement().text(), "");
}

TEST(Node, ReadsAttributesByTheirNameAsWritten) {
  const Node objRoot =
      loaded("<a xmlns:p='u' xmlns:q='u' p:x='1' x='2' e=''>t</a>").documentElement();
  EXPECT_EQ(objRoot.getAttribute("p:x"), "1");
  EXPECT_EQ(objRoot.getAttribute("x"), "2");
  EXPECT_EQ(objRoot.getAttribute("e"), "");
  EXPECT_EQ(objRoot.getAttribute("q:x"), std::nullopt);
  EXPECT_EQ(objRoot.getAttribute("X"), std::nullopt);
  EXPECT_EQ(objRoot.getAttribute("px"), std::nullopt);
  EXPECT_EQ(objRoot.getAttribute(""), std::nullopt);
  EXPECT_FALSE(objRoot.getNamedItem("missing"));
  const Node objText = objRoot.childNodes()->item(0);
  descriptionOf(kXmlFailure, [&] { objText.getAttribute("x"); });
  descriptionOf(kXmlFailure, [&] { objText.setAttribute("x", ""); });
  descriptionOf(kXmlFailure, [&] { objText.removeAttribute("x"); });
  descriptionOf(kXmlFailure, [&] { objText.getNamedItem("x"); });
}

TEST(Node, WalksUpAndDown) {
  const Document objDocument = loaded("<!--c--><a x='1'><b/>t</a>");
  const Node objRoot = objDocument.documentElement();
  EXPECT_EQ(objRoot.parentNode(), objDocument);
  EXPECT_FALSE(objDocument.parentNode());
  EXPECT_FALSE(objRoot.getNamedItem("x").parentNode());
  EXPECT_EQ(objRoot.childNodes()->item(0).parentNode(), objRoot);
  EXPECT_TRUE(objRoot.hasChildNodes());
  EXPECT_FALSE(objRoot.childNodes()->item(0).hasChildNodes());
  EXPECT_FALSE(objRoot.childNodes()->item(1).hasChildNodes());
  EXPECT_EQ(objDocument.childNodes()->length(), 2u);
  EXPECT_FALSE(objRoot.childNodes()->item(2));
  std::string strNames;
  const auto colChildren = objRoot.childNodes();
  for (const Node& objChild : *colChildren) strNames += objChild.nodeName() + " ";
  EXPECT_EQ(strNames, "b #text ");
}

TEST(Node, FindsElementsByTheirNameAsWrittenInDocumentOrder) {
  const Document objDocument = loaded(
      "<p:a xmlns:p='u' xmlns:q='u' n='0'><b n='1'><p:a n='2'/></b><q:a n='3'/><a n='4'/>"
      "<p:a n='5'/></p:a>");
  const auto names = [](const Node& objNode, const char* strName) {
    std::string strFound;
    const auto colFound = objNode.getElementsByTagName(strName);
    for (const Node& objFound : *colFound) strFound += *objFound.getAttribute("n");
    return strFound;
  };
  const Node objRoot = objDocument.documentElement();
  EXPECT_EQ(names(objDocument, "p:a"), "025");
  EXPECT_EQ(names(objRoot, "p:a"), "25") << "not the element itself";
  EXPECT_EQ(names(objRoot, "a"), "4");
  EXPECT_EQ(names(objRoot, "*"), "12345");
  EXPECT_EQ(names(objRoot.childNodes()->item(0), "*"), "2") << "nothing beside it";
  EXPECT_EQ(names(objRoot.childNodes()->item(1), "*"), "");
  EXPECT_EQ(names(Document::create(), "*"), "");

  const auto colTaken = objRoot.getElementsByTagName("*");
  objRoot.setText("");
  EXPECT_EQ(colTaken->length(), 5u) << "a list is taken once";
  EXPECT_EQ(colTaken->item(4).getAttribute("n"), "5");
}

TEST(Node, OfALoadedDocumentCanBeReadByManyThreads) {
  std::string strText = "<r>";
  for (int item = 0; item < 200; ++item) strText += "<i id='" + std::to_string(item) + "'>t</i>";
  const Document objDocument = loaded(strText + "</r>");
  const std::string strXml = objDocument.xml();
  objDocument.documentElement().setAttribute("id", "new");  // the index is then made by the readers
  objDocument.documentElement().removeAttribute("id");
  std::vector<std::thread> threads;
  for (int reader = 0; reader < 4; ++reader) {
    threads.emplace_back([&] {
      for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(objDocument.selectNodes("//i[@id='7']")->length(), 1u);
        EXPECT_EQ(objDocument.xml(), strXml);
        EXPECT_EQ(objDocument.documentElement().cloneNode(true).text().size(), 200u);
      }
    });
  }
  for (std::thread& reader : threads) reader.join();
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
