#include "platform/xpath/LocationPath.h"

#include <gtest/gtest.h>

#include "platform/xpath/SelectionTree.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kPrefixes = "xmlns:p='urn:p' xmlns:other='urn:q'";

TEST(LocationPath, TakesTheCommonShapes) {
  const SelectionNamespaces namespaces(kPrefixes);
  for (const char* path : {
           "/",
           "//prtobjct[@id='q1']",
           "//message/messageitem[@id='q1' and @type='group']",
           "//message/messageitem[@id='q1' and (@type='dynatable' or @type='table')]",
           "row[@id=3]",
           "//*[@questionId or @rowIndex or @columnId]",
           "/questions/question[starts-with(xpath, '/message/body')]",
           "/questions/question[@id='q']/column[@id='c']",
           "//parameter[not(@messageitem='')]",
           "SchemaTypeMapperDocument/schematypes/schematype[@id='t']",
           "//value[@id='v']",
           "//value",
           "/prtobjcts/prtobjct[@id='q']/@fieldlabel",
           "/prtobjcts/prtobjct[@id='q']/row[@id='1']/column[@id='c']/@value",
           "column",
           "//namespaces/*",
           "/namespaces/namespace[@id='n']",
           "//hiddenfield[@toschema='true']",
           "/message/docdata/docinfo[@id='protocolname']",
           "//action[@id='buildprotocolname']/parameter[@id='x']",
           "node[@type='x']/action",
           "/message/p:body/p:item",
           "p:body//other:item/@p:kind",
           "//*[@questionId]",
       }) {
    EXPECT_TRUE(isWalked(path, &namespaces)) << path;
  }
}

TEST(LocationPath, LeavesEverythingElseToTheLibrary) {
  const SelectionNamespaces namespaces(kPrefixes);
  for (const char* path : {"",
                           "//",
                           "///a",
                           "/ /a",
                           "..",
                           "a/..",
                           ".5",
                           "//.",
                           ".[a]",
                           "a[1]",
                           "a[last()]",
                           "a[b/c]",
                           "a|b",
                           "(a)",
                           "a[@b!='c']",
                           "a['c'=@b]",
                           "a[@b=@c]",
                           "a[@b=1.5]",
                           "a[@b=1e3]",
                           "a[@b=-1]",
                           "a[@b=1234567890123456]",
                           "q:a",
                           "p:",
                           ":a",
                           "p :a",
                           "p: a",
                           "child::a",
                           "text()",
                           "a[b orc]",
                           "a[]",
                           "a[@]",
                           "a[*]",
                           "@a/b",
                           "@a[b]",
                           "a b",
                           "a[@b='c]",
                           "a[@b='c\x01']",
                           "1a",
                           "a\xc3\x97",
                           "\xf0\x90\x80\x80",
                           "a[not @b]",
                           "a[not(@b)='c']",
                           "a[(@b)='c']",
                           "a[starts-with(b,c)]",
                           "a[f(b)]",
                           "a[p:f(b)]",
                           "a[@b='c'",
                           "a[@b]]",
                           "$a",
                           "a[string(b)='c']",
                           "/.."}) {
    EXPECT_FALSE(isWalked(path, &namespaces)) << path;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
