#include <string>
#include <utility>

#include "platform/dom/DomTesting.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string nested(int depth, const std::string& strInside = "") {
  std::string strText;
  for (int level = 0; level < depth; ++level) strText += "<a>";
  strText += strInside;
  for (int level = 0; level < depth; ++level) strText += "</a>";
  return strText;
}

void expectRefused(std::string_view strText) {
  const Document objDocument = Document::create();
  EXPECT_FALSE(objDocument.loadXML(strText)) << strText.substr(0, 80);
  EXPECT_NE(objDocument.parseError().errorCode, 0);
  EXPECT_FALSE(objDocument.parseError().reason.empty());
  EXPECT_EQ(objDocument.parseError().reason.find_first_of("\r\n"), std::string::npos);
  EXPECT_FALSE(objDocument.documentElement());
  EXPECT_FALSE(objDocument.hasChildNodes());
  EXPECT_EQ(objDocument.xml(), "");
}

TEST(DocumentLoad, DropsTextOfNothingButWhiteSpace) {
  const struct {
    const char *text, *tree;
  } cases[] = {
      {"<r>\n  <a/>\n  <b/>\n</r>", "<r><a/><b/></r>"},
      {"<r> </r>", "<r/>"},
      {"<r>x <a/> <b/></r>", "<r>x <a/><b/></r>"},
      {"<r> <a/> y <b/> </r>", "<r><a/> y <b/></r>"},
      {"<r>&#32;&#9;<a/></r>", "<r><a/></r>"},
      {"<!DOCTYPE r [<!ENTITY e 'x'>]><r> &e; <a/></r>", "<r> x <a/></r>"},
      {"<r xml:space=\"preserve\"> <a> </a></r>", "<r xml:space=\"preserve\"> <a> </a></r>"},
      {"<r xml:space=\"preserve\"> <a xml:space=\"default\"> <b> </b></a> </r>",
       "<r xml:space=\"preserve\"> <a xml:space=\"default\"><b/></a> </r>"},
      {"<r><k xml:space=\"preserve\"><l> </l></k> <a> </a></r>",
       "<r><k xml:space=\"preserve\"><l> </l></k><a/></r>"},
      {"<r> <!--c--> <?p i?> <![CDATA[ ]]> </r>", "<r><!--c--><?p i?><![CDATA[ ]]></r>"},
      {"<r>\xC2\xA0</r>", "<r>\xC2\xA0</r>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(loaded(c.text).documentElement().xml(), c.tree);
  }
}

TEST(DocumentLoad, KeepsTheDeclarationAsTheFirstNode) {
  const Document objPlain = loaded("<?xml version='1.0' encoding='UTF-8'?><!--c--><r/>");
  const Node objDeclaration = objPlain.childNodes()->item(0);
  EXPECT_EQ(objDeclaration.nodeType(), NodeType::processingInstruction);
  EXPECT_EQ(objDeclaration.nodeName(), "xml");
  EXPECT_EQ(objDeclaration.text(), "version=\"1.0\"");
  EXPECT_EQ(objPlain.childNodes()->length(), 3u);

  EXPECT_EQ(loaded("<?xml version='1.0' standalone='yes'?><r/>").childNodes()->item(0).text(),
            "version=\"1.0\" standalone=\"yes\"");
  EXPECT_EQ(loaded("<?xml version='1.0' standalone='no'?><r/>").childNodes()->item(0).text(),
            "version=\"1.0\" standalone=\"no\"");
  EXPECT_EQ(loaded("<r/>").childNodes()->length(), 1u);
}

TEST(DocumentLoad, AcceptsDepth256AndRefuses257) {
  EXPECT_TRUE(Document::create().loadXML(nested(256)));
  EXPECT_TRUE(Document::create().loadXML(nested(256, "text")));
  expectRefused(nested(257));
  expectRefused(nested(257, "text"));
  expectRefused(nested(100000));
}

TEST(DocumentLoad, CountsTheDepthOfWhatAnEntityBringsAlsoTheSecondTime) {
  const std::string strType = "<!DOCTYPE a [<!ENTITY e '" + nested(100) + "'>]>";
  EXPECT_TRUE(Document::create().loadXML(strType + "<r>&e;" + nested(155, "&e;") + "</r>"));
  expectRefused(strType + "<r>&e;" + nested(156, "&e;") + "</r>");
}

TEST(DocumentLoad, RefusesEntitiesThatNestTooManyElements) {
  std::string strText = "<!DOCTYPE r [<!ENTITY e0 '" + nested(200, "x") + "'>";
  std::string strUses = "&e0;";
  for (int entity = 1; entity < 3000; ++entity) {
    const std::string strBefore = "&e" + std::to_string(entity - 1) + ";";
    strText += "<!ENTITY e" + std::to_string(entity) + " '" + nested(200, strBefore) + "'>";
    strUses += "&e" + std::to_string(entity) + ";";
  }
  expectRefused(strText + "]><r>" + strUses + "</r>");
}

TEST(DocumentLoad, RefusesAnEntityBomb) {
  std::string strText = "<!DOCTYPE r [<!ENTITY e0 'xxxxxxxxxx'>";
  for (int entity = 1; entity < 10; ++entity) {
    strText += "<!ENTITY e" + std::to_string(entity) + " '";
    for (int use = 0; use < 10; ++use) strText += "&e" + std::to_string(entity - 1) + ";";
    strText += "'>";
  }
  expectRefused(strText + "]><r>&e9;</r>");
  expectRefused(strText + "]><r a='&e9;'/>");
  expectRefused("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>");
}

TEST(DocumentLoad, RefusesABombOfParameterEntities) {
  for (const char* inside : {"", " ", "<!ENTITY x 'y'>", "no declaration"}) {
    std::string strText = "<!DOCTYPE r [<!ENTITY % e0 \"" + std::string(inside) + "\">";
    for (int entity = 1; entity < 10; ++entity) {
      strText += "<!ENTITY % e" + std::to_string(entity) + " '";
      for (int use = 0; use < 10; ++use) strText += "&#37;e" + std::to_string(entity - 1) + ";";
      strText += "'>";
    }
    expectRefused(strText + "%e9;]><r/>");
  }
  EXPECT_TRUE(
      Document::create().loadXML("<!DOCTYPE r [<!ENTITY % p '<!ENTITY e \"x\">'> %p;]><r>&e;</r>"));
}

TEST(DocumentLoad, RefusesAnEntityThatManyAttributesRepeat) {
  std::string strText = "<!DOCTYPE r [<!ENTITY a '" + std::string(100'000, 'a') + "'>]><r>";
  for (int element = 0; element < 5'000; ++element) strText += "<t q='&a;'/>";
  expectRefused(strText + "</r>");
}

TEST(DocumentLoad, RefusesMoreAttributesThanAnElementCanNeed) {
  const auto withAttributes = [](int lngCount, std::string_view strName) {
    std::string strTag = "<r";
    for (int at = 0; at < lngCount; ++at) {
      strTag += " " + std::string(strName) + std::to_string(at) + "='u=\"<'";
    }
    return strTag;
  };
  const auto escaped = [](std::string strText) {
    for (std::size_t at = 0; (at = strText.find('<', at + 1)) != std::string::npos;) {
      strText.replace(at, 1, ">");
    }
    return strText;
  };
  EXPECT_TRUE(loaded(escaped(withAttributes(512, "a")) + "/>").documentElement());
  expectRefused(escaped(withAttributes(513, "a")) + "/>");
  expectRefused(escaped(withAttributes(513, "xmlns:p")) + "/>");
  expectRefused("<!-- it's --><q/>" + escaped(withAttributes(100'000, "a")) + "/>");
  EXPECT_TRUE(loaded("<r><!--" + std::string(1000, '=') + "-->" + std::string(1000, '=') +
                     "<![CDATA[" + std::string(1000, '=') + "]]></r>")
                  .documentElement());
}

// The parser compares the attributes of a tag with one another, so it must not see these: it would
// tell the line.
TEST(DocumentLoad, RefusesManyAttributesUnseenWhereverTheTagBegins) {
  std::string strTag = "<t";
  for (int at = 0; at < 513; ++at) strTag += " a=''";
  for (const std::size_t lngBefore : {0, 1, 5, 1000, 2554, 2555, 2556, 2559, 2560, 2561, 9000}) {
    SCOPED_TRACE(lngBefore);
    for (const char* behind : {"/></r>", "/><q/><q/></r>", " b='", ""}) {
      const Document objDocument = Document::create();
      const std::string strText(lngBefore, 'x');
      EXPECT_FALSE(objDocument.loadXML("<r><q/>" + strText + strTag + behind));
      EXPECT_EQ(objDocument.parseError().reason, "An element has more than 512 attributes.");
      EXPECT_EQ(objDocument.parseError().line, 0);
    }
  }
}

TEST(DocumentLoad, ReadsAgainWhatALongAnswerMadeOfTheParkedForm) {
  const Document objDocument = loaded("<r><t/></r>");
  const Node objRoot = objDocument.documentElement();
  const std::string strLong(11'000'000, 'v');
  objRoot.setAttribute("value", strLong);
  objRoot.childNodes()->item(0).setText(strLong);
  const Document objAgain = loaded(objDocument.xml());
  EXPECT_EQ(objAgain.documentElement().getAttribute("value"), strLong);
  EXPECT_EQ(objAgain.documentElement().text(), strLong);
}

TEST(DocumentLoad, AppliesNoAttributeDefaultsWhichCouldMultiplyASmallInput) {
  const std::string strLong(1'000'000, 'u');
  std::string strElements;
  for (int element = 0; element < 20'000; ++element) strElements += "<a/>";
  const Document objDocument = loaded("<!DOCTYPE r [<!ATTLIST a xmlns CDATA '" + strLong +
                                      "' d CDATA '" + strLong + "'>]><r>" + strElements + "</r>");
  EXPECT_EQ(objDocument.documentElement().xml(), "<r>" + strElements + "</r>");
}

TEST(DocumentLoad, ExpandsInternalEntities) {
  const Document objDocument = loaded(
      "<!DOCTYPE r [<!ENTITY e 'in &#38;amp; out'><!ENTITY m '<m>1</m>'>]>"
      "<r a='&e;'>&e;&m;&lt;</r>");
  EXPECT_EQ(objDocument.documentElement().getAttribute("a"), "in & out");
  EXPECT_EQ(objDocument.documentElement().xml(),
            "<r a=\"in &amp; out\">in &amp; out<m>1</m>&lt;</r>");
}

TEST(DocumentLoad, KeepsTheNamespacesOfWhatEntitiesHold) {
  const Document objDocument = loaded(
      "<!DOCTYPE p:r [<!ENTITY e \"<p:m p:a='1' q:a='2'/><m><p:n xmlns:p='urn:q'/></m>\">]>"
      "<p:r xmlns:p='urn:p' xmlns='urn:none' xmlns:q='urn:q'>&e;&e;</p:r>");
  objDocument.setSelectionNamespaces("xmlns:p='urn:p' xmlns:n='urn:none' xmlns:q='urn:q'");
  EXPECT_EQ(objDocument.documentElement().selectNodes("/p:r/p:m[@p:a='1'][@q:a='2']")->length(),
            2U);
  EXPECT_EQ(objDocument.documentElement().selectNodes("/p:r/n:m/q:n")->length(), 2U);
}

TEST(DocumentLoad, KeepsOfADocumentTypeItsNameAndItsIdentifiers) {
  const std::pair<const char*, const char*> cases[] = {
      {"r", "r"},
      {"p:r [<!ELEMENT r ANY><!--c--><?p i?><!ENTITY e 'x'>]", "p:r"},
      {"r SYSTEM 'it'", "r SYSTEM \"it\""},
      {"r SYSTEM 'say \"it\"' [ ]", "r SYSTEM 'say \"it\"'"},
      {"r SYSTEM ''", "r SYSTEM \"\""},
      {"r PUBLIC '-//A//B' \"it's\"", "r PUBLIC \"-//A//B\" \"it's\""},
  };
  for (const auto& [written, kept] : cases) {
    const std::string strKept = "<!DOCTYPE " + std::string(kept) + ">\r\n<r/>\r\n";
    const Document objDocument = loaded("<!DOCTYPE " + std::string(written) + "><r/>");
    EXPECT_EQ(objDocument.xml(), strKept);
    EXPECT_EQ(loaded(objDocument.xml()).xml(), strKept);
    EXPECT_EQ(objDocument.childNodes()->length(), 2U);
    // What stood in it is no part of the document.
    EXPECT_EQ(objDocument.selectNodes("//comment() | //processing-instruction()")->length(), 0U);
  }
}

TEST(DocumentLoad, ReadsNothingOutsideTheDocument) {
  const test::TemporaryDirectory folder;
  const std::string strSecret = folder.file("secret.txt", "secret");
  const std::string strDtd = folder.file("some.dtd", "<!ENTITY e 'from the dtd'>");
  expectRefused("<!DOCTYPE r [<!ENTITY e SYSTEM '" + strSecret + "'>]><r>&e;</r>");
  expectRefused("<!DOCTYPE r [<!ENTITY e SYSTEM 'file://" + strSecret + "'>]><r>&e;</r>");
  expectRefused("<!DOCTYPE r [<!ENTITY e PUBLIC 'p' '" + strSecret + "'>]><r>&e;</r>");
  expectRefused("<!DOCTYPE r [<!ENTITY % e SYSTEM '" + strDtd + "'> %e;]><r>&e;</r>");
  expectRefused("<!DOCTYPE r [<!ENTITY % e SYSTEM '" + strDtd + "'> %e;]><r/>");
  expectRefused("<!DOCTYPE r SYSTEM '" + strDtd + "'><r>&e;</r>");
  // The type itself is fine as long as nothing needs what it would declare.
  EXPECT_TRUE(Document::create().loadXML("<!DOCTYPE r SYSTEM '" + strDtd + "'><r/>"));
}

TEST(DocumentLoad, RefusesWhatIsNotWellFormed) {
  const std::string cases[] = {
      "",
      " ",
      "text",
      "<a>",
      "<a/><b/>",
      "<a b='1' b='2'/>",
      "<a>&undeclared;</a>",
      "<p:a/>",
      "<a p:b='1'/>",
      "<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>",
      "<a>\x01</a>",
      "<a>&#1;</a>",
      "<a>]]></a>",
      "<a b='<'/>",
      "<!-- only -->",
      "<a>\xFF</a>",
      "<a>\xC3</a>",
      "<a b='\xE9'/>",
      "<a><!--\xE9--></a>",
      "<a><![CDATA[\xE9]]></a>",
      "<a><?p \xE9?></a>",
      "<\xE9/>",
      "<a>\xED\xA0\x80</a>",
      std::string("<a>\0</a>", 8),
      std::string("<a/>\0", 5),
      std::string("<a/>\0<b/>", 9),
      "\n<?xml version='1.0'?><a/>",
  };
  for (const std::string& strText : cases) expectRefused(strText);
}

TEST(DocumentLoad, TellsTheLineOfTheFault) {
  const Document objDocument = Document::create();
  const std::pair<std::string, int> cases[] = {
      {"<a>\n\n<b></a>", 3},
      {"<a>\n&nothing;</a>", 2},
      {"<a>\n<b>\n<p:c/></b></a>", 3},
      {"\n\n" + nested(256, "\n<a/>"), 4},
      {"<a>\n]]></a>", 2},
      {"<!DOCTYPE a [\n<!ENTITY e '<b>'>\n]>\n<a>\n&e;</a>", 1},  // of what the entity holds
      {"<a/>\n<b/>", 2},
  };
  for (const auto& [strText, lngLine] : cases) {
    SCOPED_TRACE(strText.substr(0, 80));
    EXPECT_FALSE(objDocument.loadXML(strText));
    EXPECT_EQ(objDocument.parseError().line, lngLine);
  }
  EXPECT_TRUE(objDocument.loadXML("<a/>"));
  EXPECT_EQ(objDocument.parseError().errorCode, 0);
  EXPECT_EQ(objDocument.parseError().line, 0);
  EXPECT_EQ(objDocument.parseError().reason, "");
}

TEST(DocumentLoad, AcceptsANamespaceNameThatIsNoUri) {
  EXPECT_TRUE(Document::create().loadXML("<a xmlns='a name with blanks' xmlns:p='{x}'><p:b/></a>"));
}

TEST(DocumentLoad, AcceptsAnIdThatStandsTwice) {
  EXPECT_TRUE(Document::create().loadXML("<a xml:id='x'><b xml:id='x'/></a>"));
}

TEST(DocumentLoad, RefusesTextThatTheParserWouldCutOff) {
  const std::string strLong(11'000'000, 'x');
  const Document objDocument = Document::create();
  if (objDocument.loadXML("<a>" + strLong + "</a>")) {
    EXPECT_EQ(objDocument.documentElement().text().size(), strLong.size());
  } else {
    EXPECT_NE(objDocument.parseError().errorCode, 0);
    EXPECT_FALSE(objDocument.documentElement());
  }
}

TEST(DocumentLoad, ReadsADocumentOfManyMegabytes) {
  std::string strText = "<a>";
  for (int item = 0; item < 300'000; ++item) strText += "<b c='some value'>and some text</b>";
  strText += "</a>";
  ASSERT_GT(strText.size(), 10'000'000u);
  const Document objDocument = loaded(strText);
  EXPECT_EQ(objDocument.documentElement().childNodes()->length(), 300'000u);
}

TEST(DocumentLoad, TakesTextAsUtf8WhateverItsDeclarationNames) {
  const Document objDocument = loaded("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9</a>");
  EXPECT_EQ(objDocument.documentElement().text(), "\xC3\xA9");
  EXPECT_EQ(loaded("<?xml version='1.0' encoding='UTF-16'?><a>x</a>").documentElement().text(),
            "x");
  EXPECT_EQ(loaded("\xEF\xBB\xBF<a>x</a>").documentElement().text(), "x");
}

TEST(DocumentLoad, TakesNoRulerInACommentForAttributes) {
  const std::string strRuler(1000, '=');
  for (const std::string& strComment : {"a < b " + strRuler, "<x " + strRuler + " it's",
                                        "<x a='1' " + strRuler + "\n" + strRuler}) {
    const std::string strXml = "<r><!--" + strComment + "--><a/></r>";
    EXPECT_EQ(loaded(strXml).documentElement().childNodes()->length(), 2U) << strComment;
    EXPECT_TRUE(loaded("<!DOCTYPE r><!--" + strComment + "--><r/>").documentElement());
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
