#include "platform/schema/TreeEvents.h"

#include <gtest/gtest.h>

#include <string>

#include "SchemaTesting.h"

// That a tree is told like its text, message by message, is checked by `readAll` in all tests of
// schemas. Here are the documents that no text makes, and those of which the text has the word.

namespace Varnel_Tolv_XML_Creation {
namespace {

/// What a reader tells of a text or a tree, in lines: names with their namespaces, attributes, and
/// how it ended.
class Told : public Recorder {
 public:
  void startElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                    std::string_view strQName, const SaxAttributes& oAttributes) override {
    Recorder::startElement(strNamespaceURI, strLocalName, strQName, oAttributes);
    for (const char* strUri : {"", "urn:one", "urn:two", "http://www.w3.org/XML/1998/namespace"}) {
      const auto strValue = oAttributes.getValueFromName(strUri, "a");
      if (strValue) lines.push_back("{" + std::string(strUri) + "}a=" + std::string(*strValue));
    }
    lines.back() += " {" + strNamespace + "}" + strLocal;
  }
};

template <class Text>
std::vector<std::string> toldOf(const Text& text) {
  Told told;
  const auto reader = ValidatingReader::create();
  reader->contentHandler(&told);
  reader->errorHandler(&told);
  const std::optional<RuntimeError> error = reader->parse(text);
  if (error) told.lines.push_back(std::to_string(error->number()) + error->description());
  return told.lines;
}

Document loaded(const std::string& strText) {
  Document objDocument = Document::create();
  EXPECT_TRUE(objDocument.loadXML(strText));
  return objDocument;
}

struct TreeCase {
  const char* says;
  std::string text;
  void (*change)(const Document& objDocument);
  bool exact;  // the text is not needed
};

TEST(TreeEvents, AreThoseOfTheText) {
  static const std::string strHuge(1'100'000, 'x');
  static const std::string strLong(10'100'000, 'x');
  const auto asItIs = [](const Document&) {};
  const TreeCase cases[] = {
      {"plain", "<r a='1'><b/>x<c>y</c></r>", asItIs, true},
      {"declaration, comments and instructions",
       "<?xml version='1.0'?><!--c--><?p q?><r>x<!--c-->y<?p q?>z</r><!--d-->", asItIs, true},
      {"namespaces come and go",
       "<r xmlns='urn:one' xmlns:p='urn:one'><b xmlns='' p:a='1'><p:c xmlns:p='urn:two' p:a='2'/>"
       "</b><d xml:a='3'/></r>",
       asItIs, true},
      {"characters that are written as references",
       "<r a='&lt;&amp;&quot;&#10;&#13;&#9;'>&lt;&#13;]]&gt;</r>", asItIs, true},
      {"CDATA sections", "<r>a<![CDATA[<b>]]>c</r>", asItIs, true},
      {"CDATA sections that hold their own end", "<r><![CDATA[a]]]]><![CDATA[>b]]></r>", asItIs,
       true},
      {"empty texts and elements", "<r><a></a></r>",
       [](const Document& objDocument) { objDocument.documentElement().setText(""); }, true},
      {"an element of a namespace without a prefix", "<r><b/></r>",
       [](const Document& objDocument) {
         const Node objRoot = objDocument.documentElement();
         const Node objChild =
             objRoot.appendChild(objDocument.createNode(NodeType::element, "c", "urn:one"));
         objChild.appendChild(objDocument.createElement("d"));
       },
       true},
      {"an element that was made with a bound prefix", "<p:r xmlns:p='urn:one'/>",
       [](const Document& objDocument) {
         const Node objRoot = objDocument.documentElement();
         const Node objRow = objRoot.appendChild(objDocument.createElement("p:row"));
         objRow.setAttribute("a", "1");
         objRow.appendChild(objDocument.createElement("p:row"));
       },
       true},
      {"a prefix that means something else further in", "<p:r xmlns:p='urn:one'/>",
       [](const Document& objDocument) {
         const Node objRoot = objDocument.documentElement();
         const Node objInner =
             objRoot.appendChild(objDocument.createNode(NodeType::element, "p:b", "urn:two"));
         objInner.appendChild(objDocument.createElement("p:row"));
         objRoot.appendChild(objDocument.createElement("p:row"));
       },
       true},
      {"an element that was made with a prefix not bound there",
       "<r><b xmlns:p='urn:one' p:a=''/></r>",
       [](const Document& objDocument) {
         objDocument.documentElement().appendChild(objDocument.createElement("p:row"));
       },
       false},
      {"an element that was made with a prefix of nobody", "<r><b/></r>",
       [](const Document& objDocument) {
         objDocument.documentElement().appendChild(objDocument.createElement("q:row"));
       },
       false},
      {"an element that was made with the prefix xml", "<r/>",
       [](const Document& objDocument) {
         objDocument.documentElement().appendChild(objDocument.createElement("xml:row"));
       },
       false},
      {"an attribute that was made with a prefix", "<r xmlns:p='urn:one' p:b='1'/>",
       [](const Document& objDocument) { objDocument.documentElement().setAttribute("p:a", "2"); },
       false},
      {"the same attribute twice", "<p:r xmlns:p='urn:one' xmlns:q='urn:one' q:a='1'/>",
       [](const Document& objDocument) { objDocument.documentElement().setAttribute("p:a", "2"); },
       false},
      {"a line end in a CDATA section", "<r><![CDATA[x]]></r>",
       [](const Document& objDocument) {
         const Node objSection = objDocument.selectSingleNode("/r/node()");
         objSection.setText("a\r\nb");
       },
       false},
      {"a document type", "<!DOCTYPE r><r/>", asItIs, false},
      {"no root", "<r/>",
       [](const Document& objDocument) { objDocument.removeChild(objDocument.documentElement()); },
       false},
      {"a value of a megabyte", "<r/>",
       [](const Document& objDocument) {
         objDocument.documentElement().setAttribute("a", strHuge);
       },
       false},
      {"a value that is too long for the parser", "<r/>",
       [](const Document& objDocument) {
         objDocument.documentElement().setAttribute("a", strLong);
       },
       false},
      {"a namespace that is too long for the parser", "<r/>",
       [](const Document& objDocument) {
         objDocument.documentElement().appendChild(
             objDocument.createNode(NodeType::element, "c", strLong));
       },
       false},
      {"a name that is too long for the parser", "<r/>",
       [](const Document& objDocument) {
         objDocument.documentElement().setAttribute(strHuge.substr(0, 60'000), "");
       },
       false},
  };
  for (const TreeCase& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objDocument = loaded(c.text);
    c.change(objDocument);
    EXPECT_EQ(TreeEvents::tellTheText(*objDocument.tree()), c.exact);
    EXPECT_EQ(toldOf(objDocument.tree()), toldOf(objDocument.xml()));
  }
}

TEST(TreeEvents, AreNoneWhereThereIsNoTree) {
  EXPECT_EQ(toldOf(static_cast<const Tree*>(nullptr)), toldOf(std::string()));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
