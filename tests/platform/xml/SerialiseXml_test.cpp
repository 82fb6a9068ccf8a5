#include "platform/xml/SerialiseXml.h"

#include "platform/dom/DomTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(SerialiseXml, WritesWhatItReadAsItStood) {
  const char* const cases[] = {
      "<a/>",
      "<a b=\"1\" c=\"2\"><d>x</d>y<e/></a>",
      "<a>&amp;&lt;&gt;\"'</a>",
      "<a b=\"&amp;&lt;&gt;&quot;'\"/>",
      "<a b=\"x&#9;y&#10;z&#13;\">1&#13;\n\t2</a>",
      "<a>]]&gt;</a>",
      "<a><![CDATA[<&>]]><!-- c --><?p i?><?q?></a>",
      "<a><![CDATA[a]]]]><![CDATA[>b]]]]><![CDATA[>]]></a>",
      "<p:a xmlns:p=\"urn:p\"><p:b/></p:a>",
      "<a xmlns=\"urn:d\" xmlns:unused=\"urn:u\" xmlns:p=\"urn:p\" p:b=\"1\" b=\"2\"><c/></a>",
      "<a xmlns=\"urn:d\"><b xmlns=\"\"><c xmlns=\"urn:d\"/></b></a>",
      "<p:a xmlns:p=\"urn:1\"><p:a xmlns:p=\"urn:2\"><p:a xmlns:p=\"urn:1\"/></p:a><p:b/></p:a>",
      "<a xmlns:p=\"a&amp;b\" xml:lang=\"en\"/>",
      "<\xC3\xA9l\xC3\xA9ment \xC3\xA0=\"\xE2\x82\xAC\">\xF0\x9F\x98\x80</\xC3\xA9l\xC3\xA9ment>",
  };
  for (const char* strText : cases) {
    EXPECT_EQ(loaded(strText).xml(), std::string(strText) + "\r\n");
    EXPECT_EQ(loaded(strText).documentElement().xml(), strText);
  }
}

TEST(SerialiseXml, FindsWhatIsWrittenAsAReferenceWhereverItStands) {
  const auto written = [](char byte, bool blnInValue) -> std::string {
    if (byte == '&') return "&amp;";
    if (byte == '<') return "&lt;";
    if (byte == '>') return "&gt;";
    if (byte == '\r') return "&#13;";
    if (blnInValue && byte == '"') return "&quot;";
    if (blnInValue && byte == '\t') return "&#9;";
    if (blnInValue && byte == '\n') return "&#10;";
    return {byte};
  };
  const Document objDocument = loaded("<a/>");
  const Node objRoot = objDocument.documentElement();
  std::string strBytes = "\t\n\r";
  for (char byte = ' '; byte != '\x7F'; ++byte) strBytes += byte;
  for (const char byte : strBytes) {
    for (std::size_t lngSize = 1; lngSize <= 17; ++lngSize) {
      for (std::size_t lngAt = 0; lngAt < lngSize; ++lngAt) {
        const std::string strBefore(lngAt, '\'');
        const std::string strBehind(lngSize - lngAt - 1, '=');
        objRoot.setText(strBefore + byte + strBehind);
        objRoot.setAttribute("b", strBefore + byte + strBehind);
        ASSERT_EQ(objRoot.xml(), "<a b=\"" + strBefore + written(byte, true) + strBehind + "\">" +
                                     strBefore + written(byte, false) + strBehind + "</a>");
      }
    }
  }
}

TEST(SerialiseXml, DropsADeclarationThatIsAlreadyInForce) {
  EXPECT_EQ(loaded("<p:a xmlns:p='u' xmlns='d'><p:b xmlns:p='u'/><c xmlns='d'/></p:a>").xml(),
            "<p:a xmlns:p=\"u\" xmlns=\"d\"><p:b/><c/></p:a>\r\n");
  EXPECT_EQ(loaded("<a xmlns=''/>").xml(), "<a/>\r\n");
}

TEST(SerialiseXml, EndsEachTopLevelNodeWithCrLf) {
  EXPECT_EQ(loaded("<?xml version='1.0' encoding='utf-8'?>\n<!--c-->\n<a/>\n<?p i?>").xml(),
            "<?xml version=\"1.0\"?>\r\n<!--c-->\r\n<a/>\r\n<?p i?>\r\n");
  EXPECT_EQ(loaded("<?xml version='1.0' standalone='yes'?><a/>").xml(),
            "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<a/>\r\n");
  EXPECT_EQ(Document::create().xml(), "");
}

TEST(SerialiseXml, WritesTheDocumentTypeWithoutWhatItDeclared) {
  EXPECT_EQ(loaded("<!DOCTYPE a [<!ENTITY e 'v'><!ATTLIST a d CDATA 'x'>]><a>&e;</a>").xml(),
            "<!DOCTYPE a>\r\n<a>v</a>\r\n");
  EXPECT_EQ(loaded("<!DOCTYPE a SYSTEM 'a.dtd'><a/>").xml(),
            "<!DOCTYPE a SYSTEM \"a.dtd\">\r\n<a/>\r\n");
  EXPECT_EQ(loaded("<!DOCTYPE a PUBLIC 'p' 'say \"x\"'><a/>").xml(),
            "<!DOCTYPE a PUBLIC \"p\" 'say \"x\"'>\r\n<a/>\r\n");
}

TEST(SerialiseXml, GivesAPartWhatItNeedsToStandAlone) {
  const Node objRoot =
      loaded("<a xmlns='d' xmlns:p='u' xmlns:q='v'><p:b q:c='1'>t<!--c--></p:b><e/></a>")
          .documentElement();
  const auto colChildren = objRoot.childNodes();
  EXPECT_EQ(colChildren->item(0).xml(),
            "<p:b xmlns:p=\"u\" xmlns:q=\"v\" q:c=\"1\">t<!--c--></p:b>");
  EXPECT_EQ(colChildren->item(1).xml(), "<e xmlns=\"d\"/>");
  EXPECT_EQ(colChildren->item(0).childNodes()->item(0).xml(), "t");
  EXPECT_EQ(colChildren->item(0).childNodes()->item(1).xml(), "<!--c-->");
  EXPECT_EQ(colChildren->item(0).getNamedItem("q:c").xml(), "q:c=\"1\"");
}

TEST(SerialiseXml, DeclaresTheNamespaceOfAMadeElementWhereItIsNotInForce) {
  const Document objDocument = loaded("<a xmlns='d' xmlns:p='u'/>");
  const Node objRoot = objDocument.documentElement();
  objRoot.appendChild(objDocument.createNode(NodeType::element, "p:b", "u"));
  objRoot.appendChild(objDocument.createNode(NodeType::element, "p:b", "other"));
  objRoot.appendChild(objDocument.createNode(NodeType::element, "c", "d"));
  objRoot.appendChild(objDocument.createNode(NodeType::element, "c", "other"));
  const Node objPlain = objRoot.appendChild(objDocument.createElement("n"));
  objPlain.appendChild(objDocument.createElement("m"));
  objPlain.appendChild(objDocument.createNode(NodeType::element, "c", "d"));
  objRoot.appendChild(objDocument.createElement("x:n"));
  objRoot.appendChild(objDocument.createNode(NodeType::element, "x:n", ""));
  EXPECT_EQ(objRoot.xml(),
            "<a xmlns=\"d\" xmlns:p=\"u\"><p:b/><p:b xmlns:p=\"other\"/><c/><c xmlns=\"other\"/>"
            "<n xmlns=\"\"><m/><c xmlns=\"d\"/></n><x:n/><x:n/></a>");
}

TEST(SerialiseXml, TellsAnElementWithAnEmptyTextFromOneWithoutChildren) {
  const Document objDocument = loaded("<a><b/><c/></a>");
  objDocument.documentElement().childNodes()->item(0).setText("");
  EXPECT_EQ(objDocument.xml(), "<a><b></b><c/></a>\r\n");
}

TEST(SerialiseXml, ReadAgainGivesTheSameDocumentForEveryCharacterThatMayStand) {
  std::string strAll = "x";
  for (int byte = 1; byte < 0x80; ++byte) {
    if (byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r') {
      strAll += static_cast<char>(byte);
    }
  }
  strAll += "\xC2\x80\xC2\x85\xE2\x80\xA8\xEF\xBF\xBD\xF4\x8F\xBF\xBF]]>\r\n&#13;&amp;";
  const Document objDocument = loaded("<a/>");
  objDocument.documentElement().setText(strAll);
  objDocument.documentElement().setAttribute("b", strAll);
  const Document objAgain = loaded(objDocument.xml());
  EXPECT_EQ(objAgain.documentElement().text(), strAll);
  EXPECT_EQ(objAgain.documentElement().getAttribute("b"), strAll);
  EXPECT_EQ(objAgain.xml(), objDocument.xml());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
