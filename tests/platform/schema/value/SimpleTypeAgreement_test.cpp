#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/schema/value/SimpleType.h"
#include "platform/xml/XmlLibrary.h"
#include "result/RuntimeError.h"

// Types made by chance: of each value the faults are those that the library's validator tells of an
// element of the type, in its order.

namespace Varnel_Tolv_XML_Creation {
namespace {

using Codes = std::vector<int>;

void collect(void* codes, xmlError* error) { static_cast<Codes*>(codes)->push_back(error->code); }

constexpr int kFirstTypeFault = XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1;
constexpr int kLastTypeFault = XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_3;

class LibraryType {
 public:
  /// `strDefinition` is the content of the type r.
  explicit LibraryType(const std::string& strDefinition) {
    const std::string strSchema =
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='r'>" +
        strDefinition + "</xs:element></xs:schema>";
    const std::unique_ptr<xmlSchemaParserCtxt, decltype(&xmlSchemaFreeParserCtxt)> parser(
        xmlSchemaNewMemParserCtxt(strSchema.data(), static_cast<int>(strSchema.size())),
        xmlSchemaFreeParserCtxt);
    Codes ignored;
    xmlSchemaSetParserStructuredErrors(parser.get(), collect, &ignored);
    schema_.reset(xmlSchemaParse(parser.get()));
  }

  bool good() const { return schema_ != nullptr; }

  Codes faults(const std::string& strText) const {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadDoc(reinterpret_cast<const xmlChar*>(("<r>" + strText + "</r>").c_str()), nullptr,
                   nullptr, 0),
        xmlFreeDoc);
    const std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> validator(
        xmlSchemaNewValidCtxt(schema_.get()), xmlSchemaFreeValidCtxt);
    Codes codes;
    xmlSchemaSetValidStructuredErrors(validator.get(), collect, &codes);
    xmlSchemaValidateDoc(validator.get(), document.get());
    return codes;
  }

 private:
  std::unique_ptr<xmlSchema, decltype(&xmlSchemaFree)> schema_{nullptr, xmlSchemaFree};
};

/// The number and the facets of a fault, as those of the library's codes; each facet once.
Codes codesOf(const ValueFaults& faults) {
  Codes codes = {faults.lngCode};
  for (const auto& failed : faults.facets) codes.push_back(static_cast<int>(failed.facet));
  return codes;
}

Codes asFaults(const Codes& codes) {
  const std::pair<int, Facet> facets[] = {
      {XML_SCHEMAV_CVC_LENGTH_VALID, Facet::length},
      {XML_SCHEMAV_CVC_MINLENGTH_VALID, Facet::minLength},
      {XML_SCHEMAV_CVC_MAXLENGTH_VALID, Facet::maxLength},
      {XML_SCHEMAV_CVC_PATTERN_VALID, Facet::pattern},
      {XML_SCHEMAV_CVC_ENUMERATION_VALID, Facet::enumeration},
      {XML_SCHEMAV_CVC_MAXINCLUSIVE_VALID, Facet::maxInclusive},
      {XML_SCHEMAV_CVC_MAXEXCLUSIVE_VALID, Facet::maxExclusive},
      {XML_SCHEMAV_CVC_MININCLUSIVE_VALID, Facet::minInclusive},
      {XML_SCHEMAV_CVC_MINEXCLUSIVE_VALID, Facet::minExclusive},
      {XML_SCHEMAV_CVC_TOTALDIGITS_VALID, Facet::totalDigits},
      {XML_SCHEMAV_CVC_FRACTIONDIGITS_VALID, Facet::fractionDigits}};
  Codes faults = {codes.empty() ? 0 : codes.front()};
  for (const int code : codes) {
    for (const auto& [number, facet] : facets) {
      const int lngFacet = static_cast<int>(facet);
      const bool blnTold = std::find(faults.begin() + 1, faults.end(), lngFacet) != faults.end();
      if (code == number && !blnTold) faults.push_back(lngFacet);
    }
  }
  return faults;
}

class Chance {
 public:
  std::size_t below(std::size_t lngEnd) { return random_() % lngEnd; }

  const std::string& oneOf(const std::vector<std::string>& texts) {
    return texts[below(texts.size())];
  }

  /// One to four facets, in any order.
  std::vector<FacetDefinition> facets(const std::vector<Facet>& kinds,
                                      const std::vector<std::string>& values,
                                      const std::vector<std::string>& patterns) {
    std::vector<FacetDefinition> facets;
    for (std::size_t left = 1 + below(4); left > 0; --left) {
      const Facet facet = kinds[below(kinds.size())];
      if (facet == Facet::pattern) {
        facets.push_back({facet, oneOf(patterns)});
      } else if (facet == Facet::enumeration || facet >= Facet::maxInclusive) {
        const bool blnDigits = facet >= Facet::totalDigits;
        facets.push_back({facet, blnDigits ? std::to_string(1 + below(3)) : oneOf(values)});
      } else {
        facets.push_back({facet, std::to_string(below(5))});
      }
    }
    return facets;
  }

 private:
  std::mt19937 random_{5};
};

std::string restrictionOf(const std::string& strBase, const std::vector<FacetDefinition>& facets) {
  std::string strText = "<xs:simpleType><xs:restriction";
  if (strBase.starts_with("xs:")) strText += " base='" + strBase + "'>";
  if (!strBase.starts_with("xs:")) strText += ">" + strBase;
  for (const auto& [facet, strValue] : facets) {
    strText += "<xs:" + std::string(facetName(facet)) + " value='" + strValue + "'/>";
  }
  return strText + "</xs:restriction></xs:simpleType>";
}

TEST(SimpleTypeAgreement, HoldsForTypesMadeByChance) {
  using enum Facet;
  prepareXmlLibrary();
  const struct {
    const char* base;
    std::vector<Facet> kinds;
    std::vector<std::string> values, patterns;
  } families[] = {
      {"string",
       {length, minLength, maxLength, pattern, enumeration},
       {"", "a", "ab", "abcd", "A", " a"},
       {"[a-z]*", ".{1,2}", "a.*"}},
      {"token",
       {minLength, maxLength, pattern, enumeration},
       {"a", "ab", "abcd", "A b"},
       {"[a-z]*", ".{1,2}", "a.*"}},
      {"decimal",
       {minInclusive, maxInclusive, minExclusive, maxExclusive, totalDigits, fractionDigits,
        pattern, enumeration},
       {"0", "1", "-1", "12.5", "0.25", "100"},
       {"\\d+", "-?.*", "1.*"}},
      {"int",
       {minInclusive, maxInclusive, minExclusive, maxExclusive, totalDigits, pattern, enumeration},
       {"0", "1", "-1", "99", "x", "05"},
       {"\\d+", "-?.*", "1.*"}},
      {"date",
       {minInclusive, maxInclusive, minExclusive, maxExclusive, pattern, enumeration},
       {"2020-01-01", "2020-01-02", "1999-12-31", "2020-01-01Z", "soon"},
       {"2.*", ".*1"}},
      {"duration",
       {minInclusive, maxExclusive, pattern, enumeration},
       {"P1Y", "P1M", "P30D", "PT1S", "-P1D", "P"},
       {"P.*", ".*D"}},
      {"double",
       {minInclusive, maxInclusive, maxExclusive, pattern, enumeration},
       {"0", "1.5", "-INF", "1e3", "x"},
       {"\\d+", ".*e.*"}},
      {"hexBinary",
       {length, minLength, maxLength, pattern, enumeration},
       {"", "0a", "0A0B", "x"},
       {"0.*", "[0-9A-Z]*"}},
      {"NMTOKENS",
       {length, minLength, maxLength, pattern, enumeration},
       {"a", "a b", "a b c", ","},
       {"a.*", ".* .*"}},
  };
  Chance chance;
  int lngTypes = 0;
  int lngFaults = 0;
  while (lngTypes < 600) {
    const auto& family = families[chance.below(std::size(families))];
    const auto first = chance.facets(family.kinds, family.values, family.patterns);
    const auto second = chance.facets(family.kinds, family.values, family.patterns);
    const std::string strDefinition =
        restrictionOf(restrictionOf("xs:" + std::string(family.base), first), second);
    const LibraryType theirs(strDefinition);
    if (!theirs.good()) continue;  // facets that contradict each other
    ++lngTypes;
    const auto base = SimpleType::restriction(*SimpleType::builtIn(family.base), first, {});
    const auto ours = SimpleType::restriction(*base, second, {});
    for (const std::string& strText : family.values) {
      ValueFaults faults;
      ours->check(strText, {}, &faults);
      EXPECT_EQ(codesOf(faults), asFaults(theirs.faults(strText)))
          << strDefinition << " of '" << strText << "'";
      if (faults.lngCode > kLastTypeFault) ++lngFaults;
      EXPECT_GE(faults.lngCode == 0 ? kFirstTypeFault : faults.lngCode, kFirstTypeFault);
    }
  }
  EXPECT_GT(lngFaults, 500);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
