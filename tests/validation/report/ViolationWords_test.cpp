#include "validation/report/ViolationWords.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

ViolationParts ofValue(const char* value, const char* type,
                       std::vector<ValueFaults::FailedFacet> facets = {}) {
  ViolationParts parts;
  parts.kind = ViolationKind::value;
  parts.strValue = value;
  parts.type = SimpleType::builtIn(type);
  parts.facets = std::move(facets);
  return parts;
}

ViolationParts ofContent(ViolationKind kind, std::vector<ExpandedName> expected,
                         std::vector<ExpandedName> missing) {
  ViolationParts parts;
  parts.kind = kind;
  parts.expected = std::move(expected);
  parts.missing = std::move(missing);
  return parts;
}

ViolationParts ofAttribute(ViolationKind kind, const char* value = "") {
  ViolationParts parts;
  parts.kind = kind;
  parts.strAttribute = "no";
  parts.strValue = value;
  parts.type = SimpleType::builtIn("int");
  return parts;
}

ViolationParts ofKey(IdentityFault fault, const char* value, const char* constraint) {
  ViolationParts parts;
  parts.kind = ViolationKind::identity;
  parts.identity = fault;
  parts.strValue = value;
  parts.strConstraint = constraint;
  parts.strWords = "the words of the library";
  return parts;
}

TEST(ViolationWords, SayWhatAValueMustBe) {
  const struct {
    ViolationParts parts;
    const char* words;
  } cases[] = {
      {ofValue("soon", "date"), "The value is not allowed; it must be a date (YYYY-MM-DD)."},
      {ofValue("", "integer"), "The value is empty; it must be a whole number."},
      {ofValue("x", "IDREFS"), "The value is not allowed; it must be a list of allowed values."},
      {ofValue("x", "language"),
       "The value is not allowed; it must be a value of the type "
       "'language'."},
      {ofValue("\xC3\x98", "string", {{Facet::minLength, "2"}}),
       "The value is not allowed; it must have at least 2 characters, and has 1."},
      {ofValue("abc", "string", {{Facet::length, "2"}}),
       "The value is not allowed; it must have exactly 2 characters, and has 3."},
      {ofValue("abc", "string", {{Facet::maxLength, "1"}}),
       "The value is not allowed; it must have at most 1 character, and has 3."},
      {ofValue("x", "string", {{Facet::maxLength, "0"}, {Facet::pattern, "[0-9]*"}}),
       "The value is not allowed; it must have the form [0-9]* and have at most 0 characters, and "
       "has 1."},
      {ofValue("", "string", {{Facet::minLength, "1"}, {Facet::pattern, "[0-9]+"}}),
       "The value is empty; it must have the form [0-9]+ and have at least 1 character."},
      {ofValue("9", "int", {{Facet::maxInclusive, "5"}}),
       "The value is not allowed; it must be at most 5."},
      {ofValue("5", "int", {{Facet::maxExclusive, "5"}}),
       "The value is not allowed; it must be less than 5."},
      {ofValue("1", "int", {{Facet::minInclusive, "5"}}),
       "The value is not allowed; it must be at least 5."},
      {ofValue("5", "int", {{Facet::minExclusive, "5"}}),
       "The value is not allowed; it must be more than 5."},
      {ofValue("123", "decimal", {{Facet::totalDigits, "2"}}),
       "The value is not allowed; it must have at most 2 digits."},
      {ofValue("1.23", "decimal", {{Facet::fractionDigits, "1"}}),
       "The value is not allowed; it must have at most 1 digit behind the point."},
      {ofValue("a b", "NMTOKENS", {{Facet::maxLength, "1"}}),
       "The value is not allowed; it must have at most 1 item."},
      {ofValue("a b c", "NMTOKENS", {{Facet::length, "2"}}),
       "The value is not allowed; it must have exactly 2 items."},
  };
  for (const auto& c : cases) EXPECT_EQ(violationWords(c.parts, "m:a", ""), c.words);
}

TEST(ViolationWords, ListTheValuesOfAnEnumeration) {
  std::vector<FacetDefinition> facets;
  std::string strListed;
  for (char code = 'a'; code <= 'n'; ++code) facets.push_back({Facet::enumeration, {code}});
  const auto type = SimpleType::restriction(*SimpleType::builtIn("string"), facets, {});
  ViolationParts parts = ofValue("z", "string", {{Facet::enumeration, "'a', ..."}});
  parts.type = type.get();
  EXPECT_EQ(allowedValues(parts).size(), 14U);
  EXPECT_EQ(allowedValues(parts).front(), "a");
  EXPECT_EQ(violationWords(parts, "m:a", ""),
            "The value is not allowed; it must be one of 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', "
            "'i', 'j', 'k', 'l' and others.");
  EXPECT_TRUE(allowedValues(ofValue("z", "int")).empty());
}

TEST(ViolationWords, NameWhatIsMissingOrMisplaced) {
  const std::vector<ExpandedName> ab = {{"urn:m", "a"}, {"", "b"}};
  const std::vector<ExpandedName> b = {{"", "b"}};
  const struct {
    ViolationParts parts;
    const char* words;
  } cases[] = {
      {ofContent(ViolationKind::missingChild, ab, b), "In 'm:a' 'b' is missing."},
      {ofContent(ViolationKind::missingChild, ab, {}),
       "In 'm:a' something is missing at the end; here could stand 'a', 'b'."},
      {ofContent(ViolationKind::missingChild, {}, {}), "In 'm:a' something is missing at the end."},
      {ofContent(ViolationKind::unexpectedChild, ab, b),
       "The element 'm:a' may not stand here: before it 'b' is missing."},
      {ofContent(ViolationKind::unexpectedChild, ab, {}),
       "The element 'm:a' may not stand here; here could stand 'a', 'b'."},
      {ofContent(ViolationKind::unexpectedChild, {}, {}), "The element 'm:a' may not stand here."},
      {ofContent(ViolationKind::undeclaredElement, {}, {}),
       "The schema knows no element 'm:a' here."},
      {ofContent(ViolationKind::text, {}, {}),
       "In 'm:a' stands text where only elements may stand."},
      {ofAttribute(ViolationKind::missingAttribute), "The attribute 'no' of 'm:a' is missing."},
      {ofAttribute(ViolationKind::undeclaredAttribute, "1"),
       "The schema knows no attribute 'no' of 'm:a'."},
      {ofAttribute(ViolationKind::attributeValue, "x"),
       "The value of the attribute 'no' is not allowed; it must be a value of the type 'int'."},
  };
  for (const auto& c : cases) EXPECT_EQ(violationWords(c.parts, "m:a", ""), c.words);
}

TEST(ViolationWords, NameAKeyItsValueAndTheRow) {
  const struct {
    ViolationParts parts;
    const char *row, *words;
  } cases[] = {
      {ofKey(IdentityFault::duplicate, "7", "meters"), "3",
       "The value '7' of the key 'meters' is there a second time (row 3)."},
      {ofKey(IdentityFault::duplicate, "a", ""), "", "The identifier 'a' is there a second time."},
      {ofKey(IdentityFault::noMatch, "7", "{urn:m}of"), "",
       "The value '7' of the reference '{urn:m}of' leads to nothing that is there."},
      {ofKey(IdentityFault::noMatch, "a", ""), "2",
       "The reference 'a' leads to nothing that is there (row 2)."},
      {ofKey(IdentityFault::manyMatches, "7", "of"), "",
       "The value '7' of the reference 'of' leads to more than one."},
      {ofKey(IdentityFault::incomplete, "", "meters"), "1",
       "A part of the key 'meters' has no value (row 1)."},
      {ofKey(IdentityFault::noField, "", "meters"), "", "the words of the library."},
  };
  for (const auto& c : cases) EXPECT_EQ(violationWords(c.parts, "m:a", c.row), c.words);
}

TEST(ViolationWords, AreOneLineWhateverTheyQuote) {
  ViolationParts parts = ofValue("x", "string", {{Facet::pattern, "a\r\nb"}});
  EXPECT_EQ(violationWords(parts, "m:a", "").find('\n'), std::string::npos);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
