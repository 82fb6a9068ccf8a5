#include "platform/xml/LoadTree.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "platform/xml/ToldXml.h"
#include "platform/xpath/LibraryTree.h"

// The tree that is made while the parser reads must be the one that libxml2 makes itself.

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Expects both ways to take the text and to make the same of it, or to refuse it for one reason.
/// Whether it was taken.
bool agree(const std::string& strText) {
  SCOPED_TRACE(strText);
  Tree tree;
  ParseError error;
  TreeNode* const document = loadTree(tree, strText, XmlEncoding::utf8, error);
  ParseError expectedError;
  const OwnedXmlDoc expected = GuardedParser().parse(strText, XmlEncoding::utf8, expectedError);
  EXPECT_EQ(document != nullptr, expected != nullptr) << error.reason << expectedError.reason;
  EXPECT_EQ(error.errorCode, expectedError.errorCode);
  EXPECT_EQ(error.line, expectedError.line);
  EXPECT_EQ(error.reason, expectedError.reason);
  if (!document || !expected) return false;
  EXPECT_EQ(told(LibraryTree(document).document()), told(expected.get(), true));
  return true;
}

TEST(LoadTree, MakesTheTreeThatTheLibraryMakes) {
  const std::string strEntities =
      "<!DOCTYPE r [<!--no--><?no no?><!ENTITY t 'te<!-- -->xt'><!ENTITY s ' '><!ENTITY n ''>"
      "<!ENTITY m '<m a=\"&t2;\">1<n/></m>'><!ENTITY t2 'two'><!ENTITY c '<![CDATA[ ]]>'>"
      "<!ENTITY o 'o&m;&m;o'><!ATTLIST r d CDATA 'default'>]>";
  for (const char* strText : {
           "<r/>",
           "<?xml version='1.0'?><!--c--><?p i?><r/><!--d--><?q?>",
           "<?xml version='1.0' standalone='yes'?><r/>",
           "<!DOCTYPE r SYSTEM 's'><r/>",
           "<r a='1' b='&lt;&amp;&#10;' c='x\ny'>t&amp;u<![CDATA[<>]]>v<!--c-->w<?p i?>x</r>",
           "<r>\n <a> </a>\n <b>x</b> y <c/> </r>",
           "<r xml:space='preserve'> <a> <b xml:space='default'> <c/></b> </a></r>",
           "<p:r xmlns:p='urn:p' xmlns='urn:d' p:a='1' a='2'><r xmlns=''/><p:r xmlns:p='urn:q'/>"
           "<q xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:lang='en'/></p:r>",
           "<r><![CDATA[]]><a><![CDATA[ ]]></a></r>",
           "<r><![CDATA[a]]><![CDATA[b]]> <![CDATA[c]]>d<![CDATA[]]>e</r>",
           "<r>a<!---->b</r>",
       }) {
    EXPECT_TRUE(agree(strText));
  }
  for (const char* strText : {"<r><a></r>", "<r>&nothing;</r>", "<p:r/>"}) {
    EXPECT_FALSE(agree(strText));
  }
  for (const char* strContent :
       {"&t;", "x&t;y", "x&t;&t;y", " &s; ", "x&s;", "&n;", "&n;x&n;", "&m;", "&m;&m;", "x&m;y&m;z",
        "&c;", " &c; ", "&o;", "<a b='&t2;&t2;'>&t2;</a>", "<a>&s;<b/>&s;</a>", "&o;&t;&o;"}) {
    EXPECT_TRUE(agree(strEntities + "<r>" + strContent + "</r>"));
  }
}

TEST(LoadTree, AgreesAboutRandomPiecesOfDocuments) {
  static constexpr const char* kPieces[] = {
      "<a>",   "<a>",          "</a>",   "</a>",  "<b c='1'/>", " ",       "\n",
      "text",  "&e;",          "&f;",    "&amp;", "<!--c-->",   "<?p i?>", "<![CDATA[x]]>",
      "&#65;", "<p:c p:d=''>", "</p:c>", "&g;",   "\xC3\xA9"};
  std::mt19937 engine(7);
  int lngTaken = 0;
  for (int round = 0; round < 4000 && !testing::Test::HasFailure(); ++round) {
    std::string strText =
        "<!DOCTYPE r [<!ENTITY e 'x'><!ENTITY f ' <a>&e;</a> y'><!ENTITY g '&f; &f;'>]>"
        "<r xmlns:p='urn:p'>";
    std::string strEnds;
    for (auto count = engine() % 10; count != 0; --count) {
      const std::string strPiece = kPieces[engine() % std::size(kPieces)];
      if (strPiece.starts_with("</") && engine() % 8 != 0) continue;
      strText += strPiece;
      const bool blnStart = strPiece[0] == '<' && (strPiece[1] == 'a' || strPiece[1] == 'p');
      if (blnStart && engine() % 16 != 0) {
        strEnds.insert(0, strPiece[1] == 'a' ? "</a>" : "</p:c>");
      }
    }
    lngTaken += agree(strText + strEnds + "</r>");
  }
  EXPECT_GT(lngTaken, 1000);  // otherwise it would say little
  EXPECT_LT(lngTaken, 3900);
}

TEST(LoadTree, ReadsTheElementsOfAnEntityInTheNamespacesAroundEachUse) {
  Tree tree;
  ParseError error;
  TreeNode* const document =
      loadTree(tree,
               "<!DOCTYPE r [<!ENTITY e '<a/>'><!ENTITY f '&e;'>]>"
               "<r><b xmlns='urn:b'>&f;</b><c xmlns='urn:c'>&f;&e;</c>&e;</r>",
               XmlEncoding::utf8, error);
  ASSERT_NE(document, nullptr) << error.reason;
  std::string strUris;
  for (const TreeNode* node = document; node; node = nextBelow(node, document)) {
    if (isElement(node) && node->name->strLocal == "a") {
      (strUris += node->name->uri->strText) += ' ';
    }
  }
  EXPECT_EQ(strUris, "urn:b urn:c urn:c  ");
}

TEST(LoadTree, LeavesTheDocumentAloneUntilItIsGivenTheNewOne) {
  Tree tree;
  ParseError error;
  TreeNode* const before = tree.document();
  TreeNode* const loaded = loadTree(tree, "<r/>", XmlEncoding::utf8, error);
  ASSERT_NE(loaded, nullptr);
  EXPECT_EQ(tree.document(), before);
  EXPECT_EQ(loadTree(tree, "<r>", XmlEncoding::utf8, error), nullptr);
  EXPECT_NE(error.errorCode, 0);
  EXPECT_EQ(loaded->lngSize, 1U);
}

TEST(LoadTree, ExpandsEntitiesToTenTimesTheInputOrTenMillionBytes) {
  const std::string strMillion(1'000'000, 'x');
  const std::string strInner = "<!ENTITY i '" + std::string(100'000, 'y') + "'>";
  const struct {
    const char* says;
    std::string strType, strBefore;
    int lngUses;
    bool blnTaken;
  } cases[] = {
      {"ten million bytes", "<!ENTITY e '" + strMillion + "'>", "", 10, true},
      {"more", "<!ENTITY e '" + strMillion + "'>", "", 11, false},
      {"far more", "<!ENTITY e '" + strMillion.substr(0, 100'000) + "'>", "", 5'000, false},
      {"ten times the input", "<!ENTITY e '" + strMillion + "'>", strMillion, 20, true},
      {"more than that", "<!ENTITY e '" + strMillion + "'>", strMillion, 22, false},
      {"an entity inside counts too", strInner + "<!ENTITY e '&i;&i;'>", "", 49, true},
      {"and is not made more of", strInner + "<!ENTITY e '&i;&i;'>", "", 51, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strText = "<!DOCTYPE r [" + c.strType + "]><r>" + c.strBefore;
    for (int use = 0; use < c.lngUses; ++use) strText += "&e;";
    Tree tree;
    ParseError error;
    TreeNode* const document = loadTree(tree, strText + "</r>", XmlEncoding::utf8, error);
    EXPECT_EQ(document != nullptr, c.blnTaken);
    EXPECT_EQ(error.reason, c.blnTaken ? "" : "The entities make the document too large.");
  }
}

TEST(LoadTree, RefusesMoreNamesThanTheParserCanTellApartInTime) {
  const auto withNames = [](const std::string& strBegin, const std::string& strEnd, int lngNames) {
    std::string strText = "<r>";
    for (int name = 0; name < lngNames; ++name) {
      ((strText += strBegin) += std::to_string(name)) += strEnd;
    }
    return strText + "</r>";
  };
  Tree tree;
  ParseError error;
  EXPECT_NE(loadTree(tree, withNames("<a", "/>", 60'000), XmlEncoding::utf8, error), nullptr);
  const std::pair<const char*, const char*> kinds[] = {{"<a", "/>"},
                                                       {"<a b", "=''/>"},
                                                       {"<a xmlns:p", "='u'/>"},
                                                       {"<a xmlns='u", "'/>"},
                                                       {"<?p", "?>"}};
  for (const auto& [begin, end] : kinds) {
    SCOPED_TRACE(begin);
    EXPECT_EQ(loadTree(tree, withNames(begin, end, 66'000), XmlEncoding::utf8, error), nullptr);
    EXPECT_EQ(error.reason, "The document has more than 65536 different names.");
  }
}

TEST(LoadTree, RefusesWhatTakesMoreMemoryThanADocumentMay) {
  const std::string strElements = [] {
    std::string strText = "<r>";
    for (int element = 0; element < 5'000; ++element) strText += "<a/>x";
    return strText + "</r>";
  }();
  Tree small(0, 500'000);
  ParseError error;
  EXPECT_EQ(loadTree(small, strElements, XmlEncoding::utf8, error), nullptr);
  EXPECT_NE(error.errorCode, 0);
  EXPECT_EQ(error.line, 1);
  EXPECT_EQ(error.reason, "The document takes more than 1 GiB of memory.");
  EXPECT_NE(loadTree(small, "<r/>", XmlEncoding::utf8, error), nullptr);
  EXPECT_EQ(error.errorCode, 0);
  Tree large(0, 1'000'000);
  for (int load = 0; load < 3; ++load) {  // each begins anew, whatever is kept of those before
    EXPECT_NE(loadTree(large, strElements, XmlEncoding::utf8, error), nullptr);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
