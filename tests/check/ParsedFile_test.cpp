#include "check/ParsedFile.h"

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(ParsedFile, TellsTheLinesOfElementsAndOfTheirAttributes) {
  const TemporaryDirectory directory;
  const ParsedFile file(directory.file("a.xml", R"(<?xml version="1.0"?>
<!DOCTYPE a [ <!ENTITY e "
>"> ]>
<!-- <c
  y="1"> -->
<a><b
   x="1"
   xmlns:p="u>v" y
   = "2"/><b x="3"/>
  <c/>
</a>)"));
  const auto colB = file.document().selectNodes("/a/b");
  EXPECT_EQ(file.lineOf(file.root()), 6u);
  EXPECT_EQ(file.lineOf(colB->item(0)), 6u);
  EXPECT_EQ(file.lineOf(colB->item(0), "x"), 7u);
  EXPECT_EQ(file.lineOf(colB->item(0), "y"), 8u);
  EXPECT_EQ(file.lineOf(colB->item(0), "z"), 6u) << "an attribute that is not there";
  EXPECT_EQ(file.lineOf(colB->item(1)), 9u);
  EXPECT_EQ(file.lineOf(file.document().selectSingleNode("/a/c")), 10u);
}

TEST(ParsedFile, TellsWhyItIsNotLoaded) {
  const TemporaryDirectory directory;
  const ParsedFile missing(directory.at("none.xml"));
  EXPECT_TRUE(missing.isNamed());
  EXPECT_FALSE(missing.isLoaded());
  EXPECT_EQ(missing.error().errorCode, ParseError::kCannotOpen);
  const ParsedFile malformed(directory.file("a.xml", "<a>\n<b></a>"));
  EXPECT_FALSE(malformed.isLoaded());
  EXPECT_EQ(malformed.error().line, 2);
  EXPECT_FALSE(ParsedFile("").isNamed());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
