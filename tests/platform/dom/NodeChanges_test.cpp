// What changes a document: writing, moving, removing, copying, and who owns what then.

#include <limits>
#include <optional>
#include <vector>

#include "platform/dom/DomTesting.h"
#include "platform/dom/Node.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(NodeChanges, SetTextReplacesAllContentByOneTextNode) {
  const Document objDocument = loaded("<a><b>1<c/>2</b><!--x--></a>");
  const Node objRoot = objDocument.documentElement();
  const Node objChild = objRoot.childNodes()->item(0);
  objRoot.setText("a < b & c");
  EXPECT_EQ(objRoot.xml(), "<a>a &lt; b &amp; c</a>");
  EXPECT_EQ(objRoot.childNodes()->length(), 1u);
  EXPECT_EQ(objRoot.childNodes()->item(0).nodeType(), NodeType::text);
  objRoot.setText("&amp;");
  EXPECT_EQ(objRoot.text(), "&amp;");
  objRoot.setText("");
  EXPECT_EQ(objRoot.childNodes()->length(), 1u);
  EXPECT_EQ(objRoot.xml(), "<a></a>");
  EXPECT_EQ(objChild.xml(), "<b>1<c/>2</b>") << "a handle keeps what was replaced";
  EXPECT_FALSE(objChild.parentNode());
}

TEST(NodeChanges, SetTextWritesAttributesTextsAndSectionsToo) {
  const Document objDocument = loaded("<a b='1'>t<![CDATA[c]]><!--x--><?p i?></a>");
  const Node objRoot = objDocument.documentElement();
  objRoot.getNamedItem("b").setText("<2>");
  EXPECT_EQ(objRoot.getAttribute("b"), "<2>");
  objRoot.childNodes()->item(0).setText("<u>");
  objRoot.childNodes()->item(1).setText("<d>");
  EXPECT_EQ(objRoot.xml(), "<a b=\"&lt;2&gt;\">&lt;u&gt;<![CDATA[<d>]]><!--x--><?p i?></a>");
  descriptionOf(kXmlFailure, [&] { objRoot.childNodes()->item(1).setText("]]>"); });
  descriptionOf(kXmlFailure, [&] { objRoot.childNodes()->item(2).setText("y"); });
  descriptionOf(kXmlFailure, [&] { objRoot.childNodes()->item(3).setText("y"); });
  descriptionOf(kXmlFailure, [&] { objDocument.setText("y"); });
}

TEST(NodeChanges, RefusesTextThatXmlCannotHoldAndWritesNothing) {
  const Document objDocument = loaded("<a b='1'>old</a>");
  const Node objRoot = objDocument.documentElement();
  const std::string cases[] = {
      "\x01",
      "ok\x1F",
      std::string("x\0y", 3),
      "\x0B",
      "\xEF\xBF\xBE",
      "\xEF\xBF\xBF",
      "\xFF",
      "\x80",
      "\xC3",
      "\xC0\x80",
      "\xE0\x80\x80",
      "\xED\xA0\x80",
      "\xF4\x90\x80\x80",
      "\xE2\x82",
  };
  for (const std::string& strText : cases) {
    for (int way = 0; way < 5; ++way) {
      EXPECT_EQ(descriptionOf(kXmlFailure,
                              [&] {
                                if (way == 0) objRoot.setText(strText);
                                if (way == 1) objRoot.setAttribute("b", strText);
                                if (way == 2) objRoot.setAttribute("new", strText);
                                if (way == 3) objRoot.getNamedItem("b").setText(strText);
                                if (way == 4)
                                  objDocument.createNode(NodeType::element, "e", strText);
                              }),
                "An invalid character was found in text content.");
    }
  }
  EXPECT_EQ(objRoot.xml(), "<a b=\"1\">old</a>");
}

TEST(NodeChanges, SetAttributeKeepsThePlaceAndTheNodeOfOneThatIsThere) {
  const Document objDocument = loaded("<a xmlns:p='u' x='1' p:x='2' y='3'/>");
  const Node objRoot = objDocument.documentElement();
  const Node objAttribute = objRoot.getNamedItem("x");
  objRoot.setAttribute("x", "4");
  objRoot.setAttribute("p:x", "5");
  objRoot.setAttribute("z", "6");
  objRoot.setAttribute("q:z", "");
  EXPECT_EQ(objAttribute.text(), "4");
  EXPECT_EQ(objAttribute, objRoot.getNamedItem("x"));
  EXPECT_EQ(objRoot.xml(), "<a xmlns:p=\"u\" x=\"4\" p:x=\"5\" y=\"3\" z=\"6\" q:z=\"\"/>");
}

TEST(NodeChanges, RefusesNamesThatXmlDoesNotAllow) {
  const Document objDocument = loaded("<a/>");
  const Node objRoot = objDocument.documentElement();
  const std::string cases[] = {"",
                               " ",
                               "1a",
                               "-a",
                               "a b",
                               "a\n",
                               "a:",
                               ":a",
                               "a:b:c",
                               "a:1",
                               "<a>",
                               "a/b",
                               "a=",
                               "\xFF",
                               "a\xC3",
                               "\xCC\x81x",
                               std::string("a\0b", 3),
                               "\xC3\x97"};
  for (const std::string& strName : cases) {
    SCOPED_TRACE(strName);
    descriptionOf(kInvalidName, [&] { objDocument.createElement(strName); });
    descriptionOf(kInvalidName, [&] { objDocument.createNode(NodeType::element, strName, "u"); });
    descriptionOf(kInvalidName, [&] { objRoot.setAttribute(strName, "v"); });
  }
  EXPECT_NE(
      descriptionOf(kInvalidName, [&] { objDocument.createElement("no name"); }).find("'no name'"),
      std::string::npos);
  EXPECT_EQ(objDocument.createElement("_\xC3\xA9.-1\xC2\xB7").nodeName(), "_\xC3\xA9.-1\xC2\xB7");
  EXPECT_EQ(objRoot.xml(), "<a/>");
}

TEST(NodeChanges, RefusesReservedPrefixes) {
  const Document objDocument = loaded("<a/>");
  const std::string strXml = "http://www.w3.org/XML/1998/namespace";
  const auto make = [&](const std::string& strName, const std::string& strUri) {
    return objDocument.createNode(NodeType::element, strName, strUri);
  };
  descriptionOf(kXmlFailure, [&] { objDocument.documentElement().setAttribute("xmlns", "u"); });
  descriptionOf(kXmlFailure, [&] { objDocument.documentElement().setAttribute("xmlns:p", "u"); });
  descriptionOf(kXmlFailure, [&] { objDocument.createElement("xmlns:a"); });
  descriptionOf(kXmlFailure, [&] { make("xmlns:a", "u"); });
  descriptionOf(kXmlFailure, [&] { make("xml:a", "u"); });
  descriptionOf(kXmlFailure, [&] { make("p:a", strXml); });
  descriptionOf(kXmlFailure, [&] { make("p:a", "http://www.w3.org/2000/xmlns/"); });
  EXPECT_EQ(make("xml:a", strXml).xml(), "<xml:a/>");
}

TEST(NodeChanges, CreateNodeMakesElementsOnly) {
  const Document objDocument = loaded("<a/>");
  descriptionOf(kInvalidArgument, [&] { objDocument.createNode(NodeType::attribute, "a", ""); });
  descriptionOf(kInvalidArgument, [&] { objDocument.createNode(NodeType::text, "a", ""); });
  EXPECT_EQ(objDocument.createNode(NodeType::element, "p:a", "u").xml(), "<p:a xmlns:p=\"u\"/>");
}

TEST(NodeChanges, AppendChildAndInsertBeforeMoveANode) {
  const Document objDocument = loaded("<a><b/><c/><d/></a>");
  const Node objRoot = objDocument.documentElement();
  const auto colChildren = objRoot.childNodes();
  const Node objB = colChildren->item(0), objC = colChildren->item(1), objD = colChildren->item(2);
  EXPECT_EQ(objRoot.appendChild(objB), objB);
  EXPECT_EQ(objRoot.xml(), "<a><c/><d/><b/></a>");
  EXPECT_EQ(objRoot.insertBefore(objB, objC), objB);
  EXPECT_EQ(objRoot.xml(), "<a><b/><c/><d/></a>");
  EXPECT_EQ(objRoot.insertBefore(objC, objC), objC);
  objD.appendChild(objB);
  objD.insertBefore(objC, objB);
  EXPECT_EQ(objRoot.xml(), "<a><d><c/><b/></d></a>");
  EXPECT_EQ(objB.parentNode(), objD);
  EXPECT_EQ(colChildren->item(1), objC) << "a list taken before stays as it was";
  EXPECT_EQ(colChildren->length(), 3u);
}

TEST(NodeChanges, AppendedTextIsNotMergedWithItsNeighbour) {
  const Document objDocument = loaded("<a>x<b/>y</a>");
  const Node objRoot = objDocument.documentElement();
  const Node objText = objRoot.childNodes()->item(2);
  objRoot.removeChild(objRoot.childNodes()->item(1));
  objRoot.appendChild(objText);
  EXPECT_EQ(objRoot.childNodes()->length(), 2u);
  EXPECT_EQ(objText.text(), "y");
}

TEST(NodeChanges, RefusesWhatWouldBeNoTree) {
  const Document objDocument = loaded("<?xml version='1.0'?><!DOCTYPE a><a x='1'><b>t</b></a>");
  const Node objRoot = objDocument.documentElement();
  const Node objB = objRoot.childNodes()->item(0);
  const Node objText = objB.childNodes()->item(0);
  const Node objNew = objDocument.createElement("n");
  const Node objDeclaration = objDocument.childNodes()->item(0);
  const Node objType = objDocument.childNodes()->item(1);
  const std::string strBefore = objDocument.xml();
  const auto refused = [](const Node& objParent, const Node& objChild) {
    descriptionOf(kXmlFailure, [&] { objParent.appendChild(objChild); });
  };
  refused(objB, objRoot);
  refused(objRoot, objRoot);
  refused(objNew, objNew);
  refused(objRoot, objDocument);
  refused(objRoot, objRoot.getNamedItem("x"));
  refused(objRoot, objDeclaration);
  refused(objDocument, objDeclaration);
  refused(objRoot, objType);
  refused(objDocument, objType);
  refused(objDocument, objNew);
  refused(objDocument, objText);
  refused(objText, objNew);
  refused(objRoot.getNamedItem("x"), objNew);
  refused(objDeclaration, objNew);
  descriptionOf(kXmlFailure, [&] { objRoot.insertBefore(objNew, objText); });
  descriptionOf(kXmlFailure, [&] { objRoot.insertBefore(objNew, loaded("<o/>")); });
  descriptionOf(kXmlFailure, [&] { objDocument.insertBefore(objRoot, objDeclaration); });
  descriptionOf(kXmlFailure, [&] { objDocument.insertBefore(objRoot, objType); });
  EXPECT_EQ(objDocument.xml(), strBefore);
  EXPECT_FALSE(objNew.parentNode());
  EXPECT_EQ(objDocument.appendChild(objRoot), objRoot) << "the root itself may move";
}

TEST(NodeChanges, RemoveChildTakesAChildOutAndNothingElse) {
  const Document objDocument = loaded("<a x='1'><b><c/></b><d/></a>");
  const Node objRoot = objDocument.documentElement();
  const Node objB = objRoot.childNodes()->item(0);
  const Node objC = objB.childNodes()->item(0);
  descriptionOf(kInvalidArgument, [&] { objRoot.removeChild(objC); });
  descriptionOf(kInvalidArgument, [&] { objRoot.removeChild(objRoot); });
  descriptionOf(kInvalidArgument, [&] { objRoot.removeChild(objRoot.getNamedItem("x")); });
  EXPECT_EQ(objRoot.removeChild(objB), objB);
  EXPECT_EQ(objRoot.xml(), "<a x=\"1\"><d/></a>");
  EXPECT_FALSE(objB.parentNode());
  EXPECT_EQ(objC.parentNode(), objB);
  descriptionOf(kInvalidArgument, [&] { objRoot.removeChild(objB); });
  EXPECT_EQ(objRoot.appendChild(objB), objB);
  objDocument.removeChild(objRoot);
  EXPECT_FALSE(objDocument.documentElement());
  EXPECT_TRUE(objDocument.appendChild(objDocument.createElement("other")));
}

TEST(NodeChanges, ADocumentTypeCanBeRemoved) {
  const Document objDocument = loaded("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>");
  const Node objType = objDocument.childNodes()->item(0);
  objDocument.removeChild(objType);
  EXPECT_EQ(objDocument.xml(), "<a>x</a>\r\n");
  EXPECT_EQ(objType.nodeName(), "a");
}

TEST(NodeChanges, RemoveAttributeDoesNothingWhenItIsMissing) {
  const Document objDocument = loaded("<a xmlns:p='u' p:x='1' x='2'/>");
  const Node objRoot = objDocument.documentElement();
  const Node objAttribute = objRoot.getNamedItem("p:x");
  objRoot.removeAttribute("missing");
  objRoot.removeAttribute("p:x");
  objRoot.removeAttribute("p:x");
  EXPECT_EQ(objRoot.xml(), "<a xmlns:p=\"u\" x=\"2\"/>");
  EXPECT_EQ(objAttribute.text(), "1");
  EXPECT_EQ(objAttribute.nodeName(), "p:x");
}

TEST(NodeChanges, RemoveAttributesTakesThemFromTheWholeDocument) {
  const struct {
    const char *says, *after;
    std::vector<std::string_view> names;
  } cases[] = {
      {"one", "<r q=\"2\" xmlns:m=\"urn:m\" m:p=\"3\"><a P=\"5\">x</a></r>", {"p"}},
      {"both", "<r xmlns:m=\"urn:m\" m:p=\"3\"><a P=\"5\">x</a></r>", {"q", "p"}},
      {"one that no element has",
       "<r p=\"1\" q=\"2\" xmlns:m=\"urn:m\" m:p=\"3\"><a p=\"4\" P=\"5\">x</a></r>",
       {"x"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objDocument =
        loaded("<r p='1' q='2' xmlns:m='urn:m' m:p='3'><a p='4' P='5'>x</a></r>");
    const Node objAny = objDocument.selectSingleNode("/r/a");
    EXPECT_TRUE(objAny.removeAttributes(c.names));
    EXPECT_EQ(loaded(objDocument.xml()).xml(), loaded(c.after).xml());
  }
  const Document objDocument = loaded("<r p='1'/>");
  for (const std::vector<std::string_view>& names :
       {std::vector<std::string_view>{}, {"p", ""}, {"p", "m:p"}, {"p", "1"}}) {
    descriptionOf(kXmlFailure, [&] { objDocument.removeAttributes(names); });
    EXPECT_EQ(objDocument.documentElement().xml(), "<r p=\"1\"/>");
  }
}

TEST(NodeChanges, ACopyInItsOwnDocumentKeepsItsValues) {
  const Document objDocument = loaded("<r><a b='first'>text</a></r>");
  const Node objOriginal = objDocument.selectSingleNode("/r/a");
  const Node objCopy = objDocument.documentElement().appendChild(
      objOriginal.cloneFor(objDocument.documentElement(), true));
  objOriginal.setAttribute("b", "other");
  objOriginal.selectSingleNode("text()").setText("word");
  EXPECT_EQ(objCopy.xml(), "<a b=\"first\">text</a>");
  const Node objSecond = objDocument.documentElement().appendChild(
      objOriginal.cloneFor(objDocument.documentElement(), true));
  objOriginal.setAttribute("b", "OTHER");
  EXPECT_EQ(objSecond.xml(), "<a b=\"other\">word</a>");
  objSecond.setAttribute("b", "a longer value than before");
  EXPECT_EQ(objOriginal.xml(), "<a b=\"OTHER\">word</a>");
}

TEST(NodeChanges, SetAttributeKnowsEachNameByItsText) {
  // One place in memory for names that differ.
  std::string strName = "aa";
  const Document objDocument = loaded("<r bb='1'/>");
  const Node objRoot = objDocument.documentElement();
  for (const char* name : {"aa", "bb", "cc", "aa"}) {
    strName.assign(name);
    objRoot.setAttribute(strName, name);
  }
  EXPECT_EQ(objRoot.xml(), "<r bb=\"bb\" aa=\"aa\" cc=\"cc\"/>");
  ASSERT_TRUE(objDocument.loadXML("<r/>"));
  objDocument.documentElement().setAttribute(strName, "new");
  EXPECT_EQ(objDocument.documentElement().xml(), "<r aa=\"new\"/>");
}

TEST(NodeChanges, SetAttributeKnowsEachValueByItsText) {
  // One place in memory for values that differ, and one for some that elements share.
  std::string strValue = "one";
  const Document objDocument = loaded("<r><a/><b/><c/></r>");
  const NodeList colElements = *objDocument.documentElement().childNodes();
  const auto setAll = [&](std::string_view strName) {
    for (const Node& objElement : colElements) objElement.setAttribute(strName, strValue);
  };
  setAll("x");
  strValue.assign("two");
  setAll("y");
  EXPECT_EQ(objDocument.documentElement().xml(),
            "<r><a x=\"one\" y=\"two\"/><b x=\"one\" y=\"two\"/><c x=\"one\" y=\"two\"/></r>");
  colElements.item(0).setAttribute("x", "ONE");
  colElements.item(1).getNamedItem("y").setText("");
  EXPECT_EQ(objDocument.documentElement().xml(),
            "<r><a x=\"ONE\" y=\"two\"/><b x=\"one\" y=\"\"/><c x=\"one\" y=\"two\"/></r>");
  ASSERT_TRUE(objDocument.loadXML("<r/>"));
  objDocument.documentElement().setAttribute("z", strValue);
  EXPECT_EQ(objDocument.documentElement().xml(), "<r z=\"two\"/>");
  strValue.assign("t\x01o");
  EXPECT_THROW(objDocument.documentElement().setAttribute("w", strValue), RuntimeError);
}

TEST(NodeChanges, ANodeOfAnotherDocumentIsCopiedAndTakenOutThere) {
  Document objTarget = loaded("<t xmlns='urn:t' xmlns:p='urn:other'/>");
  Node objCopy, objOriginal;
  {
    const Document objSource =
        loaded("<p:s xmlns:p='urn:p' xmlns='urn:d'><p:b p:x='1'><c/>t<!--x--></p:b></p:s>");
    objOriginal = objSource.documentElement().childNodes()->item(0);
    objCopy = objTarget.documentElement().appendChild(objOriginal);
    EXPECT_EQ(objSource.documentElement().xml(), "<p:s xmlns:p=\"urn:p\" xmlns=\"urn:d\"/>");
  }
  EXPECT_FALSE(objCopy == objOriginal);
  EXPECT_FALSE(objOriginal.parentNode());
  const std::string strAlone =
      "<p:b xmlns:p=\"urn:p\" p:x=\"1\"><c xmlns=\"urn:d\"/>t<!--x--></p:b>";
  EXPECT_EQ(objOriginal.xml(), strAlone) << "its document is gone but for this handle";
  objOriginal = {};
  EXPECT_EQ(objCopy.xml(), strAlone);
  EXPECT_EQ(objTarget.xml(), "<t xmlns=\"urn:t\" xmlns:p=\"urn:other\">" + strAlone + "</t>\r\n");
  EXPECT_EQ(loaded(objTarget.xml()).xml(), objTarget.xml());
}

TEST(NodeChanges, ACopyForADocumentIsTheSameNodeWhenItStandsThere) {
  const Document objTarget = loaded("<t/>");
  const Node objCopy =
      loaded("<s><b/></s>").documentElement().cloneFor(objTarget.documentElement(), true);
  objTarget.documentElement().appendChild(objCopy);
  EXPECT_EQ(objTarget.documentElement().childNodes()->item(0), objCopy);
  EXPECT_EQ(objTarget.selectSingleNode("//b").parentNode(), objCopy);
  EXPECT_FALSE(objTarget.selectSingleNode("//b") == objCopy);
}

TEST(NodeChanges, ACloneIsAFragmentOfItsOwn) {
  const Document objDocument =
      loaded("<a xmlns:p='urn:p'><p:b x='1'><c>t</c><![CDATA[d]]></p:b></a>");
  objDocument.setSelectionNamespaces("xmlns:p='urn:p'");
  const Node objB = objDocument.documentElement().childNodes()->item(0);
  const Node objClone = objB.cloneNode(true);
  EXPECT_FALSE(objClone.parentNode());
  EXPECT_EQ(objClone.xml(), objB.xml());
  EXPECT_EQ(objB.cloneNode(false).xml(), "<p:b xmlns:p=\"urn:p\" x=\"1\"/>");
  EXPECT_EQ(objClone.selectNodes("//p:b")->length(), 1u);
  EXPECT_EQ(objClone.selectNodes("/")->length(), 0u);
  EXPECT_FALSE(objClone.selectSingleNode(".."));
  EXPECT_EQ(objClone.selectSingleNode("/p:b"), objClone);
  EXPECT_EQ(objClone.selectNodes("//a")->length(), 0u);
  objClone.setAttribute("x", "2");
  EXPECT_EQ(objB.getAttribute("x"), "1");
  EXPECT_EQ(objB.parentNode(), objDocument.documentElement());

  EXPECT_EQ(objB.getNamedItem("x").cloneNode(true).text(), "1");
  EXPECT_EQ(objB.childNodes()->item(1).cloneNode(false).xml(), "<![CDATA[d]]>");
}

TEST(NodeChanges, AClonedDocumentIsADocument) {
  const Document objDocument =
      loaded("<?xml version='1.0'?><!DOCTYPE a SYSTEM 's'><!--c--><a><b/></a>");
  const Node objClone = objDocument.cloneNode(true);
  EXPECT_EQ(objClone.nodeType(), NodeType::document);
  EXPECT_EQ(objClone.xml(), objDocument.xml());
  EXPECT_FALSE(objDocument.cloneNode(false).hasChildNodes());
}

TEST(NodeChanges, SelectionOnADetachedNodeStartsAtItsOwnTop) {
  const Document objDocument = loaded("<a><b><c/></b><c/></a>");
  const Node objB = objDocument.documentElement().childNodes()->item(0);
  objDocument.documentElement().removeChild(objB);
  const Node objC = objB.childNodes()->item(0);
  EXPECT_EQ(objC.selectNodes("//c")->length(), 1u);
  EXPECT_EQ(objC.selectSingleNode("/b"), objB);
  EXPECT_FALSE(objB.selectSingleNode(".."));
}

TEST(NodeChanges, HandlesOutliveDocumentsInAnyOrder) {
  Node objText, objAttribute, objRemoved, objMade, objInClone;
  std::optional<NodeList> colAll;
  {
    const Document objDocument = loaded("<a x='1'><b>t</b><c/></a>");
    const Node objRoot = objDocument.documentElement();
    objText = objRoot.childNodes()->item(0).childNodes()->item(0);
    objAttribute = objRoot.getNamedItem("x");
    objRemoved = objRoot.removeChild(objRoot.childNodes()->item(1));
    objMade = objDocument.createElement("m");
    objInClone = objRoot.cloneNode(true).childNodes()->item(0);
    colAll = objDocument.getElementsByTagName("*");
  }
  EXPECT_EQ(objText.text(), "t");
  EXPECT_EQ(objText.parentNode().parentNode().nodeName(), "a");
  objText = {};
  EXPECT_EQ(objAttribute.text(), "1");
  EXPECT_EQ(objRemoved.xml(), "<c/>");
  EXPECT_EQ(objMade.xml(), "<m/>");
  EXPECT_EQ(objInClone.xml(), "<b>t</b>");
  objAttribute = objRemoved = objMade = {};
  EXPECT_EQ(colAll->item(0).xml(), "<a x=\"1\"><b>t</b></a>");
}

TEST(NodeChanges, ALoadLeavesHandlesToEarlierContentValid) {
  const Document objDocument = loaded("<p:a xmlns:p='u'><p:b/></p:a>");
  const Node objOld = objDocument.documentElement();
  EXPECT_TRUE(objDocument.loadXML("<n/>"));
  EXPECT_EQ(objOld.xml(), "<p:a xmlns:p=\"u\"><p:b/></p:a>");
  EXPECT_EQ(objOld.parentNode().nodeType(), NodeType::document);
  EXPECT_FALSE(objOld.parentNode() == objDocument);
  const Node objB = objOld.childNodes()->item(0);
  EXPECT_EQ(objDocument.documentElement().appendChild(objB), objB);
  EXPECT_FALSE(objDocument.loadXML("<broken"));
  EXPECT_TRUE(objDocument.loadXML("<m/>"));
  EXPECT_EQ(objB.parentNode().xml(), "<n><p:b xmlns:p=\"u\"/></n>");
  EXPECT_EQ(objDocument.xml(), "<m/>\r\n");
}

TEST(NodeChanges, ManyMovesAndRemovalsOfTheSameNodesLeaveNothingBehind) {
  const Document objDocument = loaded("<a/>");
  const Node objRoot = objDocument.documentElement();
  std::vector<Node> colMade;
  for (int made = 0; made < 100; ++made) colMade.push_back(objDocument.createElement("n"));
  for (int round = 0; round < 10; ++round) {
    for (std::size_t at = 0; at < colMade.size(); at += 1 + static_cast<std::size_t>(round)) {
      objRoot.appendChild(colMade[at]);
    }
    for (std::size_t at = 0; at < colMade.size(); at += 2) {
      if (colMade[at].parentNode()) objRoot.removeChild(colMade[at]);
    }
  }
  for (const Node& objNode : colMade) objRoot.appendChild(objNode);
  EXPECT_EQ(objRoot.childNodes()->length(), 100u);
}

/// `lngLevels` elements, each in the one before it, without a parent; the last one in `objDeepest`.
Node chain(const Document& objDocument, int lngLevels, Node& objDeepest) {
  const Node objTop = objDocument.createElement("n");
  objDeepest = objTop;
  for (int lngLevel = 1; lngLevel < lngLevels; ++lngLevel) {
    objDeepest = objDeepest.appendChild(objDocument.createElement("n"));
  }
  return objTop;
}

TEST(NodeChanges, RefusesATreeThatCouldNotBeLoadedAgain) {
  constexpr std::string_view kReason = "The document is deeper than 256 elements.";
  const Document objDocument = loaded("<a/>");
  const Node objRoot = objDocument.documentElement();
  Node objDeepest;
  objRoot.appendChild(chain(objDocument, 255, objDeepest));
  objDeepest.setText("t");  // the text is no level of its own
  EXPECT_EQ(objRoot.text(), "t");
  EXPECT_EQ(loaded(objDocument.xml()).xml(), objDocument.xml());

  const std::string strBefore = objDocument.xml();
  EXPECT_EQ(
      descriptionOf(kXmlFailure, [&] { objDeepest.appendChild(objDocument.createElement("n")); }),
      kReason);
  EXPECT_EQ(objDocument.xml(), strBefore);
  Node objOtherDeepest;
  const Node objOther = chain(objDocument, 256, objOtherDeepest);
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objRoot.appendChild(objOther); }), kReason);
  EXPECT_EQ(descriptionOf(kXmlFailure,
                          [&] { objRoot.insertBefore(objOther, objRoot.childNodes()->item(0)); }),
            kReason);
  EXPECT_EQ(
      descriptionOf(kXmlFailure, [&] { loaded("<b/>").documentElement().appendChild(objOther); }),
      kReason);
}

TEST(NodeChanges, RefusesToWriteMoreThanAnInputMayHold) {
  constexpr std::string_view kReason = "The document is larger than 1000 bytes.";
  const Document objDocument = Document::create({.lngMaxBytes = 1000});
  ASSERT_TRUE(objDocument.loadXML("<r a=''/>"));
  const Node objRoot = objDocument.documentElement();
  for (int write = 0; write < 5; ++write) objRoot.setAttribute("a", std::string(900, 'v'));
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objRoot.setText(std::string(101, 't')); }), kReason);
  EXPECT_FALSE(objRoot.hasChildNodes());
  objRoot.setText(std::string(100, 't'));
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objRoot.setAttribute("b", "v"); }), kReason);
  EXPECT_FALSE(objRoot.getAttribute("b"));

  ASSERT_TRUE(objDocument.loadXML("<r/>"));  // and counts anew for another content
  objDocument.documentElement().setText(std::string(1000, 't'));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
