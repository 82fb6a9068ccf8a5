#include <gtest/gtest.h>

#include "ViolationTesting.h"

// The reports on attributes that wildcards admit or not, and on those that schemas state values of.

namespace Varnel_Tolv_XML_Creation {
namespace {

void expectOf(const char* attributes, const std::vector<Case>& cases) {
  const SchemaDirectory directory;
  directory.write("o.xsd", schemaText("<xs:attribute name='n' type='xs:int'/>"
                                      "<xs:attribute name='f' type='xs:int' fixed='5'/>",
                                      "urn:o"));
  const SchemaCollection colSchemas =
      schemasOf(directory,
                schemaText("<xs:import namespace='urn:o' schemaLocation='o.xsd'/>"
                           "<xs:element name='r'><xs:complexType>" +
                               std::string(attributes) + "</xs:complexType></xs:element>",
                           "urn:t"),
                "urn:t");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(violations(colSchemas,
                         std::string("<r xmlns='urn:t' xmlns:o='urn:o' xmlns:x='urn:x' "
                                     "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' ") +
                             c.document + "/>"),
              c.violations);
  }
}

TEST(AttributeChecks, AskWildcards) {
  expectOf(
      "<xs:attribute name='a' type='xs:int'/><xs:anyAttribute namespace='##other'/>",
      {{"one that is declared", "o:n='1'", {}},
       {"and its value", "o:n='x'", {": " + badAttribute("o:n")}},
       {"and its fixed value", "o:f=' 05 '", {}},
       {"which it must have",
        "o:f='6'",
        {": " +
         words("{urn:t}r", "{urn:o}f",
               "The value '6' does not match the fixed value constraint '5'.") +
         " + " + badAttribute("o:f")}},
       {"one that nobody declares, and a bad one behind it",
        "x:n='1' a='x'",
        {": " + words("{urn:t}r", "{urn:x}n",
                      "No matching global attribute declaration available, but demanded by "
                      "the strict wildcard."),
         ": " + badAttribute("a")}},
       {"one of no other namespace", "b='1'", {": " + unknownAttribute("b")}},
       {"where the schema is", "xsi:schemaLocation='a b' xsi:noNamespaceSchemaLocation='a'", {}}});
  expectOf("<xs:anyAttribute processContents='lax'/>",
           {{"what is declared is checked, the rest is not",
             "o:n='x' x:n='y' b='z'",
             {": " + badAttribute("o:n")}}});
  expectOf("<xs:anyAttribute processContents='skip'/>",
           {{"nothing is checked", "o:n='x' x:n='y'", {}}});
  expectOf("", {{"there is none",
                 "o:n='1' xsi:other='1'",
                 {": " + unknownAttribute("o:n"), ": " + unknownAttribute("xsi:other")}}});
}

TEST(AttributeChecks, CompareFixedValuesAsWhatTheyMean) {
  const std::string kNot = "does not match the fixed value constraint '1.0'.";
  expectOf(
      "<xs:attribute name='d' type='xs:decimal' fixed='1.0'/>"
      "<xs:attribute name='s' type='xs:string' fixed='1.0'/>",
      {{"the same number", "d=' 01 '", {}},
       {"another",
        "d='1.01'",
        {": " + words("{urn:t}r", "d", ("The value '1.01' " + kNot).c_str()) + " + " +
         badAttribute("d")}},
       {"another text",
        "s='1'",
        {": " + words("{urn:t}r", "s", ("The value '1' " + kNot).c_str()) + " + " +
         badAttribute("s")}},
       {"on one line",
        "s='a&#13;&#10;&amp;b'",
        {": " + words("{urn:t}r", "s", ("The value 'a  &b' " + kNot).c_str()) + " + " +
         badAttribute("s")}}});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
