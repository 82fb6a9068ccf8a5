#include "platform/xpath/LibraryExpression.h"

#include <gtest/gtest.h>

#include <string>

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string written(std::string_view strXPath) {
  const auto expression = writeForLibrary(strXPath);
  return expression ? expression->strText : "none";
}

TEST(LibraryExpression, WritesTheOperatorsThatReadTextsAsCalls) {
  const struct {
    const char *xpath, *text;
  } cases[] = {
      {"//a[1]", "//a[1]"},
      {"a = b", "varnel-equal(a , b)"},
      {"a != 'x=y'", "varnel-unequal(a , 'x=y')"},
      {"a[b=c]/d[e<1]", "a[varnel-equal(b,c)]/d[varnel-less(e,1)]"},
      {"a<=b or a>=b and a>b",
       "varnel-at-most(a,b) or varnel-at-least(a,b) and varnel-greater(a,b)"},
      {"1+2*3-4", "varnel-difference(varnel-sum(1,varnel-product(2,3)),4)"},
      {"a div b mod c", "varnel-remainder(varnel-quotient(a , b) , c)"},
      {"a=b=c", "varnel-equal(varnel-equal(a,b),c)"},
      {"a=b<c", "varnel-equal(a,varnel-less(b,c))"},
      {"a|b | c", "varnel-union(a,b , c)"},
      {"(a|b)|c", "varnel-union((varnel-union(a,b)),c)"},
      {"-a|b", "varnel-negative(varnel-union(a,b))"},
      {"--1", "varnel-negative(varnel-negative(1))"},
      {"-a+-b", "varnel-sum(varnel-negative(a),varnel-negative(b))"},
      {"a - -b", "varnel-difference(a , varnel-negative(b))"},
      {"count(a|b)=last()", "varnel-equal(count(varnel-union(a,b)),last())"},
      {"f(a=b,c+d,'e')", "f(varnel-equal(a,b),varnel-sum(c,d),'e')"},
      {"/|/a", "varnel-union(/,/a)"},
      {"/ = 1", "varnel-equal(/ , 1)"},
      {"* * *", "varnel-product(* , *)"},
      {"div div mod", "varnel-quotient(div , mod)"},
      {"/or or @and", "/or or @and"},
      {"a/*|*", "varnel-union(a/*,*)"},
      {"p:*|q:b", "varnel-union(p:*,q:b)"},
      {"child::a|@b", "varnel-union(child::a,@b)"},
      {"a[.='1'][2]", "a[varnel-equal(.,'1')][2]"},
      {"../text()='x'", "varnel-equal(../text(),'x')"},
      {"$ x", "$ x"},
      {"1.5e3+.5", "varnel-sum(1.5e3,.5)"},
      {" a ", " a"},
  };
  for (const auto& c : cases) EXPECT_EQ(written(c.xpath), c.text) << c.xpath;
}

TEST(LibraryExpression, IsNoneForWhatIsMalformedOrCallsWhatStandsForOperators) {
  for (const char* xpath : {"",       " ",  "a=",  "=a", "a b",   "a[",    "a]",
                            "(a",     "a)", "a[]", "()", "f(a,)", "f(,a)", "(a,b)",
                            "a|",     "-",  "a::", "@",  "a//",   "1/2/",  "varnel-equal(a,b)",
                            "'a' 'b'"}) {
    EXPECT_EQ(written(xpath), "none") << xpath;
  }
}

TEST(LibraryExpression, TellsWhereStepsMayComeToOneNodeFromSeveral) {
  for (const char* xpath : {"//a", "/a/b[1]", "a[@b]/@c", "child::a/self::b", "(//a)[1]"}) {
    EXPECT_FALSE(writeForLibrary(xpath)->blnMeets) << xpath;
  }
  for (const char* xpath : {"//a//b", "a/..", "a[b//c]", "ancestor::a", "a/following-sibling::b"}) {
    EXPECT_TRUE(writeForLibrary(xpath)->blnMeets) << xpath;
  }
}

TEST(LibraryExpression, CountsHowDeepTheLibraryNests) {
  EXPECT_LT(libraryDepth("//a[@b]/c"), 20U);
  const auto repeated = [](std::string_view strPart, std::size_t count) {
    std::string strAll;
    while (count-- > 0) strAll += strPart;
    return strAll;
  };
  for (const char* part : {"|a", "/a", " or a", "[a]", "=a", "+1", ",a", "(", "a[", "not(a="}) {
    EXPECT_GE(libraryDepth("a" + repeated(part, 500)), 500U) << part;
  }
  EXPECT_LT(libraryDepth("f(" + repeated("(a),", 100) + "a)"), 550U);
  EXPECT_LT(libraryDepth("'" + repeated("|a", 500) + "'"), 5U);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
