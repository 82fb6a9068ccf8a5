#include "platform/xpath/LibraryFunctions.h"

#include <gtest/gtest.h>
#include <libxml/xpath.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/xml/OwnedXml.h"
#include "platform/xml/XmlTree.h"
#include "platform/xpath/LibraryExpression.h"
#include "platform/xpath/LibraryTree.h"
#include "platform/xpath/LibraryXPath.h"
#include "platform/xpath/SelectionTree.h"
#include "result/RuntimeError.h"
#include "support/SmallStack.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string repeated(std::string_view strPart, std::size_t count) {
  std::string strAll;
  while (count-- > 0) strAll += strPart;
  return strAll;
}

std::vector<TreeNode*> selected(const Tree& tree, std::string_view strXPath) {
  SelectionContext context;
  context.tree = &tree;
  context.node = tree.document();
  return selectByLibrary(context, strXPath);
}

/// What is selected, or why nothing is.
std::string outcome(const Tree& tree, std::string_view strXPath) {
  try {
    return described(selected(tree, strXPath));
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kXmlFailure);
    return error.description();
  }
}

/// The same by the library alone.
std::string byTheLibraryAlone(const LibraryTree& tree, const std::string& strXPath) {
  const Owned<xmlXPathContext, xmlXPathFreeContext> context(xmlXPathNewContext(tree.document()));
  context->node = asNode(tree.document());
  const Owned<xmlXPathObject, xmlXPathFreeObject> result(
      xmlXPathEvalExpression(xmlText(strXPath.c_str()), context.get()));
  std::vector<TreeNode*> nodes;
  const xmlNodeSet* const set = result ? result->nodesetval : nullptr;
  for (int at = 0; set && at < set->nodeNr; ++at) {
    nodes.push_back(LibraryTree::originalOf(set->nodeTab[at]));
  }
  return described(nodes);
}

TEST(LibraryFunctions, GiveWhatTheLibraryGives) {
  const Tree tree = parsedTree(
      "<r id='1'><a id='2' n='1'>1</a><a id='3' n='2'>10</a><b id='4' n='2'>x<c id='5'>1</c></b>"
      "<b id='6'/><d id='7' n=' 10 '>\xc3\xa5"
      "abca</d><d id='8'>x1</d></r>");
  const LibraryTree libraryTree(tree.document());
  const std::vector<std::string> operands = {
      ".", "a",  "b",   "//a",  "//a/@n", "@n",     "//zz",    "b/c",     "..",
      "1", "10", "'1'", "'x1'", "''",     "true()", "false()", "1 div 0", "0 div 0"};
  std::size_t lngCases = 0;
  const auto agree = [&](const std::string& strCondition) {
    const std::string strXPath = "//*[" + strCondition + "]";
    EXPECT_EQ(outcome(tree, strXPath), byTheLibraryAlone(libraryTree, strXPath)) << strXPath;
    ++lngCases;
  };
  for (const std::string& left : operands) {
    for (const std::string& right : operands) {
      for (const char* op : {"=", "!=", "<", "<=", ">", ">="}) agree(left + op + right);
      for (const char* op : {" + ", " - ", " * ", " div ", " mod "}) {
        agree(left + op + right + " = 2");
        agree(left + op + right);
      }
      for (const char* function :
           {"contains", "starts-with", "substring-before", "substring-after", "concat"}) {
        agree(std::string(function) + "(" + left + "," + right + ")");
        agree("string-length(" + std::string(function) + "(" + left + "," + right + ")) > 1");
      }
      agree("translate(" + left + "," + right + ",'yz')");
      agree(
          "translate('\xc3\xa5"
          "ab1ax'," +
          left + "," + right + ") = 'ab1ax'");
    }
    agree("-" + left + " = -1");
    agree("- " + left);
    for (const char* function : {"string", "number", "normalize-space", "string-length", "floor",
                                 "boolean", "not", "lang", "round"}) {
      agree(std::string(function) + "(" + left + ")");
    }
  }
  for (const char* set : {"a|b", "b|a", "@n|a", "//*|//a", "a|a", "a|//c|..", "(b|a)[1]",
                          "(b|a)[last()]", "a/..|//c"}) {
    agree(set);
    agree(std::string("count(") + set + ") = 2");
    agree(std::string("string(") + set + ") = '1'");
    agree(std::string("sum(") + set + ") = 11");
    agree(std::string("id(") + set + ")");
    EXPECT_EQ(outcome(tree, std::string("r/*/") + (set[0] == '(' ? "." : "..") + "|" + set),
              byTheLibraryAlone(libraryTree,
                                std::string("r/*/") + (set[0] == '(' ? "." : "..") + "|" + set));
  }
  agree("count(namespace::*|namespace::xml) = 1");
  agree("string() = '1' and number() = 1 and string-length() = 1 and normalize-space() = '1'");
  EXPECT_GT(lngCases, 8000U);
}

TEST(LibraryFunctions, FailAsTheLibraryDoes) {
  const Tree tree = parsedTree("<r>x</r>");
  EXPECT_EQ(outcome(tree, "//*[contains('a')]"), "Invalid number of arguments");
  EXPECT_EQ(outcome(tree, "//*[translate('a', 'b')]"), "Invalid number of arguments");
  EXPECT_EQ(outcome(tree, "//*|1"), "Invalid type");
  EXPECT_EQ(outcome(tree, "//*[varnel-equal(1, 1)]"), "Unregistered function");
}

TEST(LibraryFunctions, ReadLongTextsInLinearTime) {
  constexpr std::size_t kBytes = std::size_t{4} << 20;
  const Tree tree = parsedTree("<r><t>" + std::string(kBytes, 'a') + "b</t><w>" +
                               std::string(kBytes / 2, 'a') + "c</w></r>");
  EXPECT_EQ(outcome(tree, "r/t[contains(., ../w)]"), "");
  EXPECT_EQ(outcome(tree, "r/t[substring-before(., ../w) or substring-after(., ../w)]"), "");
  EXPECT_EQ(outcome(tree, "r/t[string-length(translate(., ../w, '')) = 1]"), "t");
  EXPECT_EQ(outcome(tree, "r/t[translate(., ., .) = .]"), "t");
}

TEST(LibraryFunctions, EndWhatReadsLongTextsAgainAndAgain) {
  const Tree tree = parsedTree("<r><t>" + std::string(std::size_t{1} << 20, 'a') + "</t>" +
                               repeated("<e/>", 2000) + "</r>");
  constexpr const char* kTooMuch = "Operation limit exceeded";
  for (const char* condition :
       {"contains(/r/t, 'b')", "/r/t = 'a'", "/r/t = /r/t/text()", "-/r/t", "string(/) = 'x'"}) {
    EXPECT_EQ(outcome(tree, "//*[" + std::string(condition) + "]"), kTooMuch) << condition;
  }
  EXPECT_EQ(outcome(tree, "r[concat(" + repeated("t,", 900) + "t)]"), kTooMuch);
}

TEST(LibraryFunctions, EndWhatComparesManyNodesWithMany) {
  const Tree tree = parsedTree("<r>" + repeated("<e>x<f>y</f></e>", 100'000) + "</r>");
  constexpr const char* kTooMuch = "Operation limit exceeded";
  EXPECT_EQ(outcome(tree, "//e/following::*[2]"), kTooMuch);
  EXPECT_EQ(outcome(tree, "//e[. = //f]"), kTooMuch);
  EXPECT_EQ(selected(tree, "r[e = e/f or e != e/f]/e[last()]").size(), 1U);
  EXPECT_EQ(selected(tree, "//e|//f|//e").size(), 200'000U);
}

TEST(LibraryXPath, FitsIntoASmallStackWhateverTheExpression) {
  const Tree tree = parsedTree("<a><a id='1'/></a>");
  const struct {
    const char *begin, *open, *middle, *close, *end;
  } shapes[] = {
      {"//a[@id='", "|a", "", "", "']"},
      {"//a[@id=''", "|a", "", "", "]"},
      {"a", "|a", "", "", ""},
      {"(a", "|a", "", "", ")[1]"},
      {"(a", "|a", "", "", ")[last()]"},
      {"", "(", "a", ")", ""},
      {"", "a[", "a", "]", ""},
      {"", "a[count(", "a", ")]", ""},
      {"", "a[not(a=", "a", ")]", ""},
      {"(a", "/..", "", "", ")[2]"},
      {"(a", "//a", "", "", ")[2]"},
      {"a", "[a]", "", "", "[last()]"},
      {"(a)", "[a]", "", "", ""},
      {"a[b", " or b", "", "", "]"},
      {"a[a", " and a", "", "", "]"},
      {"a[b", "=b", "", "", "]"},
      {"a[1", "+1", "", "", "]"},
      {"a[", "-", "1", "", "]"},
      {"a[", "1+(", "1", ")", "]"},
      {"a[concat('a'", ",'a'", "", "", ")]"},
      {"a[", "concat('a',", "'a'", ")", "]"},
      {"", "ancestor-or-self::*[a|", "a", "]", ""},
  };
  test::onSmallStack([&] {
    for (const auto& shape : shapes) {
      for (const std::size_t count :
           {10U, 50U, 80U, 120U, 160U, 200U, 250U, 300U, 400U, 600U, 900U, 5'000U, 20'000U}) {
        const std::string strXPath = shape.begin + repeated(shape.open, count) + shape.middle +
                                     repeated(shape.close, count) + shape.end;
        const std::string strOutcome = outcome(tree, strXPath);
        const bool blnLiteral = std::string_view(shape.begin).ends_with('\'') && *shape.end == '\'';
        if (count <= 50) {
          EXPECT_NE(strOutcome, "The expression is nested too deeply") << strXPath;
        } else if (count >= 5'000 && !blnLiteral) {
          EXPECT_EQ(strOutcome, "The expression is nested too deeply") << shape.open;
        }
      }
    }
  });
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
