#include "platform/schema/value/SimpleType.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::ElementsAre;
using Type = std::unique_ptr<const SimpleType>;

std::optional<std::string_view> lookUp(std::string_view strPrefix) {
  if (strPrefix == "p" || strPrefix == "q") return "urn:x";
  if (strPrefix == "other") return "urn:y";
  return std::nullopt;
}

const SimpleType& builtIn(std::string_view strName) {
  const SimpleType* type = SimpleType::builtIn(strName);
  if (!type) throw RuntimeError(kInvalidArgument);
  return *type;
}

Type restricted(const SimpleType& base, const std::vector<FacetDefinition>& facets) {
  return SimpleType::restriction(base, facets, lookUp);
}

/// What is wrong with a text: the number, then each facet with its limit.
std::vector<std::string> faults(const SimpleType& type, std::string_view strText) {
  ValueFaults found;
  const bool blnValue = type.check(strText, lookUp, &found);
  EXPECT_EQ(blnValue, type.check(strText, lookUp, nullptr));
  EXPECT_EQ(blnValue, found.lngCode == 0);
  if (blnValue) return {};
  std::vector<std::string> told = {std::to_string(found.lngCode)};
  for (const auto& [facet, strLimit] : found.facets) {
    told.push_back(std::string(facetName(facet)) + " " + strLimit);
  }
  return told;
}

TEST(SimpleType, KnowsTheValuesOfEachBuiltInType) {
  const struct {
    const char* type;
    std::vector<const char*> values, others;
  } cases[] = {
      {"anySimpleType", {"", " a\n"}, {}},
      {"string", {"", " a\tb "}, {}},
      {"normalizedString", {"a\nb"}, {}},
      {"token", {"  a  b "}, {}},
      {"boolean", {"true", "false", "1", "0", " true\n"}, {"", "TRUE", "yes", "2", "tr ue"}},
      {"decimal",
       {"0", "-0", "+1.50", ".5", "5.", " 1 ", "1234567890123456789012345678901234567890.123456"},
       {"", "+", ".", "-.", "1,5", "1e3", "1 2", "--1", "1.2.3", "INF", "0x1", "\xd9\xa3"}},
      {"integer",
       {"0", "-00012", "+5", "99999999999999999999999999999999999999"},
       {"", "1.0", "5."}},
      {"nonPositiveInteger", {"0", "-0", "+0", "-99999999999999999999999999999999"}, {"1", ""}},
      {"negativeInteger", {"-1", "-0001"}, {"0", "-0", "1"}},
      {"nonNegativeInteger", {"0", "-0", "99999999999999999999999999999999"}, {"-1", ""}},
      {"positiveInteger", {"1", "+01"}, {"0", "-1"}},
      {"long",
       {"9223372036854775807", "-9223372036854775808"},
       {"9223372036854775808", "-9223372036854775809"}},
      {"int", {"2147483647", "-2147483648", " 0005\n"}, {"2147483648", "-2147483649", "ten", ""}},
      {"short", {"32767", "-32768"}, {"32768", "-32769"}},
      {"byte", {"127", "-128"}, {"128", "-129"}},
      {"unsignedLong", {"18446744073709551615", "-0"}, {"18446744073709551616", "-1"}},
      {"unsignedInt", {"4294967295"}, {"4294967296"}},
      {"unsignedShort", {"65535"}, {"65536"}},
      {"unsignedByte", {"255", "+255"}, {"256"}},
      {"float",
       {"1", "-1.5e10", ".5E-3", "5.", "INF", "-INF", "NaN", "1e99", " 1 "},
       {"", "1e", "1e+", "e1", "+INF", "inf", "nan", "-NaN", "0x1", "1f", "1 e1", "1e1.5"}},
      {"double",
       {"1", "+1.5e-10", "INF", "-INF", "NaN", "1e999999999999999999999"},
       {"", "1e", "1E-", ".", ".e1", "+INF", "1d"}},
      {"duration",
       {"P1Y", "P1M", "P1D", "PT1H", "PT1M", "PT1S", "-P1Y2M3DT4H5M6.7S", "P0Y", "PT0.5S", "P1YT1M",
        "P400M"},
       {"",      "P",        "PT",    "P1YT",   "P1Y2H",
        "1Y",    "P-1Y",     "P1S",   "PT1D",   "P1.5Y",
        "PT1.S", "PT.5S",    "P1M1Y", "PT1S1M", "P1Y1Y",
        "+P1Y",  "P1YT1.5M", "P1H",   "P 1Y",   "P1234567890123456Y"}},
      {"dateTime",
       {"2020-02-29T00:00:00", "2020-01-01T24:00:00", "2020-01-01T24:00:00.00Z",
        "-0044-03-15T12:00:00.123456789012345678901+14:00", "12020-12-31T23:59:59-00:00",
        "\t2020-01-01T00:00:00 "},
       {"",
        "2019-02-29T00:00:00",
        "2020-01-01",
        "2020-01-01T00:00",
        "2020-01-01T24:00:01",
        "2020-01-01T24:00:00.1",
        "2020-01-01T25:00:00",
        "2020-01-01T00:60:00",
        "2020-01-01T00:00:60",
        "2020-01-01T00:00:00.",
        "2020-01-01 00:00:00",
        "2020-01-01T00:00:00+14:01",
        "2020-01-01T00:00:00+1:00",
        "2020-01-01T00:00:00z",
        "0000-01-01T00:00:00",
        "020-01-01T00:00:00",
        "02020-01-01T00:00:00",
        "+2020-01-01T00:00:00",
        "2020-1-01T00:00:00",
        "1234567890123456-01-01T00:00:00"}},
      {"time",
       {"00:00:00", "24:00:00", "23:59:59.5Z", "12:00:00-05:00"},
       {"", "12:00", "24:00:01", "12:00:00+15:00", "1:00:00", "12:00:00 Z"}},
      {"date",
       {"2020-02-29", "2000-02-29Z", "-0001-01-01", "-0004-02-29", "10000-01-01+13:30"},
       {"", "soon", "1900-02-29", "2020-13-01", "2020-00-01", "2020-01-00", "2020-04-31",
        "2020-01-01T00:00:00", "0000-01-01", "20-01-01", "2020/01/01", "-0001-02-29",
        "-0005-02-29"}},
      {"gYearMonth", {"2020-01", "-0001-12Z"}, {"2020", "2020-13", "2020-1", "2020-01-01"}},
      {"gYear", {"2020", "-2020", "12020", "2020+01:00"}, {"20", "0000", "02020", "2020-01-"}},
      {"gMonthDay", {"--02-29", "--12-31Z"}, {"--02-30", "02-29", "--2-29", "--13-01"}},
      {"gDay", {"---31", "---01-05:00"}, {"---32", "---00", "--31", "31"}},
      {"gMonth", {"--01", "--12Z"}, {"--13", "--00", "-01", "--05--"}},
      {"hexBinary", {"", "0F", "aBcD"}, {"0", "0G", "0F 0F", "0x0F"}},
      {"base64Binary",
       {"", "AAAA", "YQ==", "YWI=", "Y W I =", "YQ= =", " YWJj YWJj "},
       {"A", "AA", "AAA", "AAAA=", "YR==", "YWJ=", "====", "A===", "=AAA", "YQ==YQ==", "AA#A",
        "AA\xc3\xa4", "AAAA-_AA"}},
      {"anyURI",
       {"", "http://www.example.org/a?b=c#d", "a b", "\xc3\xa4", "../x", "urn:a:b", "http://[::1]/",
        "%C3%A4", "a/b:c", "C:\\x{y}|z", "<\">"},
       {":", "%zz", "%4", "a#b#c", "1a:b", ":a"}},
      {"QName", {"a", "p:a", " p:a "}, {"", "x:a", "p:", ":a", "p:a:b", "1", "p: a"}},
      {"NOTATION", {"a", "p:a"}, {"x:a", ""}},
      {"language",
       {"de", "en-GB", "x-klingon", "a-12345678"},
       {"", "en-", "-en", "e1", "abcdefghi", "en_GB", "en--GB", "a-123456789"}},
      {"NMTOKEN", {"a", "1-.:_", "\xc3\xa4", " a "}, {"", "a b", "a,b", "\xe2\x82\xac"}},
      {"NMTOKENS", {"a", " a  b\nc "}, {"", " ", "a,b"}},
      {"Name", {"a", ":a:b", "_1", "\xc3\xa4"}, {"", "1a", "-a", "a b", ".a"}},
      {"NCName", {"a", "_1.-", "\xc3\xa4"}, {"", "a:b", "1a", "a b"}},
      {"ID", {"a"}, {"", "1", "a:b"}},
      {"IDREF", {"a"}, {"", "1", "a b"}},
      {"IDREFS", {"a", " a b"}, {"", " ", "a 1"}},
      {"ENTITY", {}, {"", "a"}},
      {"ENTITIES", {}, {"", "a b"}},
  };
  for (const auto& c : cases) {
    for (const char* value : c.values) {
      EXPECT_TRUE(builtIn(c.type).check(value, lookUp, nullptr)) << c.type << " " << value;
    }
    for (const char* other : c.others) {
      EXPECT_FALSE(builtIn(c.type).check(other, lookUp, nullptr)) << c.type << " " << other;
    }
    EXPECT_EQ(builtIn(c.type).builtInName(), c.type);
  }
  EXPECT_EQ(SimpleType::builtIn("anyType"), nullptr);
  EXPECT_EQ(SimpleType::builtIn(""), nullptr);
}

TEST(SimpleType, TellsValuesByTheirKeys) {
  // Of each list: the texts of a row mean one value, those of different rows different ones.
  const struct {
    const char* type;
    std::vector<std::vector<const char*>> values;
  } cases[] = {
      {"string", {{"a"}, {" a"}, {"A"}, {""}}},
      {"normalizedString", {{" a", "\ta"}, {"a"}}},
      {"token", {{"a b", " a \n b "}, {"ab"}}},
      {"boolean", {{"true", "1", " 1"}, {"false", "0"}}},
      {"decimal",
       {{"1", "1.0", "+01.", "1."}, {"-1", "-01.00"}, {"0", "-0", ".0"}, {"10"}, {"0.1", ".10"}}},
      {"int", {{"5", "05", "+5", " 5"}, {"-5"}}},
      {"float",
       {{"1", "1e0", "10E-1"},
        {"0.1", "0.10000000149"},
        {"0", "-0"},
        {"INF", "1e99"},
        {"-INF"},
        {"NaN"},
        {"1e-40"}}},
      {"double",
       {{"1", "1e0", "10E-1", "0.1e1"},
        {"0.1"},
        {"0.10000000149"},
        {"0", "-0", "1e-999"},
        {"INF", "1e999", "0.01e999999999999999999999"},
        {"-INF"},
        {"NaN"}}},
      {"duration",
       {{"P1Y", "P12M", "P1Y0D"},
        {"P1D", "PT24H", "PT86400.0S"},
        {"P30D"},
        {"P1M"},
        {"-P1D"},
        {"P0Y", "-PT0S"},
        {"PT0.5S", "PT0.50S"}}},
      {"dateTime",
       {{"2020-01-01T00:00:00Z", "2020-01-01T00:00:00.0+00:00", "2020-01-01T01:00:00+01:00",
         "2019-12-31T24:00:00-00:00", "2019-12-31T19:00:00-05:00"},
        {"2020-01-01T00:00:00", "2019-12-31T24:00:00"},
        {"2020-01-01T00:00:00.5"},
        {"-0001-12-31T24:00:00", "0001-01-01T00:00:00"}}},
      {"time",
       {{"00:00:00Z", "24:00:00Z", "01:00:00+01:00", "23:00:00-01:00"}, {"00:00:00", "24:00:00"}}},
      {"date", {{"2000-01-01+13:00", "1999-12-31-11:00"}, {"2000-01-01"}, {"2000-01-01Z"}}},
      {"gYear", {{"2020"}, {"2020Z"}, {"-2020"}}},
      {"gMonthDay", {{"--01-01"}, {"--01-02"}}},
      {"hexBinary", {{"0aFf", "0AfF"}, {"0a"}}},
      {"base64Binary", {{"YWJj", "Y W Jj"}, {"YWJk"}}},
      {"anyURI", {{"http://a", " http://a "}, {"http://A"}, {"http://a/"}}},
      {"QName", {{"p:a", "q:a", " p:a"}, {"other:a"}, {"a"}, {"p:b"}}},
      {"NMTOKENS", {{"a b", " a\tb "}, {"ab"}, {"b a"}, {"a"}}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> keys;
    for (const auto& row : c.values) {
      const std::string strKey = builtIn(c.type).valueKey(row.front(), lookUp);
      for (const char* text : row) {
        EXPECT_EQ(builtIn(c.type).valueKey(text, lookUp), strKey) << c.type << " " << text;
      }
      EXPECT_THAT(keys, testing::Not(testing::Contains(strKey))) << c.type << " " << row.front();
      keys.push_back(strKey);
    }
  }
  EXPECT_EQ(builtIn("decimal").valueKey("1.0", {}), builtIn("byte").valueKey("01", {}));
  EXPECT_NE(builtIn("decimal").valueKey("1", {}), builtIn("string").valueKey("1", {}));
  EXPECT_NE(builtIn("float").valueKey("1", {}), builtIn("double").valueKey("1", {}));
  EXPECT_NE(builtIn("NMTOKENS").valueKey("a", {}), builtIn("NMTOKEN").valueKey("a", {}));
  EXPECT_EQ(builtIn("ID").valueKey(" a", {}), builtIn("string").valueKey("a", {}));
}

TEST(SimpleType, HasTheFacetsOfAllItsDerivations) {
  const Type base =
      restricted(builtIn("string"),
                 {{Facet::maxLength, "4"}, {Facet::pattern, "[a-z]*"}, {Facet::pattern, "[0-9]*"}});
  const Type derived = restricted(
      *base, {{Facet::minLength, "2"}, {Facet::maxLength, "3"}, {Facet::pattern, ".*[b1].*"}});
  EXPECT_THAT(faults(*derived, "ab"), ElementsAre());
  EXPECT_THAT(faults(*derived, "01"), ElementsAre());
  EXPECT_THAT(faults(*derived, "a1"), ElementsAre("1839", "pattern [0-9]*"));
  EXPECT_THAT(faults(*derived, "b"), ElementsAre("1831", "minLength 2"));
  EXPECT_THAT(faults(*derived, "abcd"), ElementsAre("1832", "maxLength 3"));
  EXPECT_THAT(faults(*derived, "WXYZ"), ElementsAre("1832", "maxLength 3", "pattern .*[b1].*"));

  const Type words = restricted(
      builtIn("string"),
      {{Facet::enumeration, "yes"}, {Facet::enumeration, "no"}, {Facet::enumeration, "maybe"}});
  const Type fewer = restricted(*words, {{Facet::enumeration, "no"}, {Facet::enumeration, "yes"}});
  const Type same = restricted(*fewer, {});
  EXPECT_THAT(faults(*same, "no"), ElementsAre());
  EXPECT_THAT(faults(*same, "maybe"), ElementsAre("1840", "enumeration 'no', 'yes'"));

  std::vector<std::string> told;
  for (const auto& [facet, strValue] : derived->facets()) {
    told.push_back(std::string(facetName(facet)) + " " + strValue);
  }
  EXPECT_THAT(told, ElementsAre("minLength 2", "maxLength 3", "pattern .*[b1].*", "pattern [a-z]*",
                                "pattern [0-9]*"));
}

TEST(SimpleType, MeasuresEachKindOfValueItsOwnWay) {
  const struct {
    const char *says, *type;
    std::vector<FacetDefinition> facets;
    const char* text;
    std::vector<std::string> faults;
  } cases[] = {
      {"characters", "string", {{Facet::length, "3"}}, "\xc3\xa4\xf0\x9f\x98\x80x", {}},
      {"characters of four bytes",
       "string",
       {{Facet::minLength, "2"}},
       "\xf0\x9f\x98\x80",
       {"1831", "minLength 2"}},
      {"as they stand", "string", {{Facet::length, "3"}}, " a ", {}},
      {"after white space is normalised", "token", {{Facet::length, "1"}}, " a ", {}},
      {"also by the same derivation",
       "string",
       {{Facet::whiteSpace, "collapse"}, {Facet::length, "3"}},
       " a  b ",
       {}},
      {"characters of references", "anyURI", {{Facet::maxLength, "1"}}, "\xc3\xa4", {}},
      {"octets of digits", "hexBinary", {{Facet::length, "2"}}, "abcd", {}},
      {"octets of letters", "base64Binary", {{Facet::length, "1"}}, "Y Q = =", {}},
      {"too many octets",
       "base64Binary",
       {{Facet::maxLength, "1"}},
       "YWI=",
       {"1832", "maxLength 1"}},
      {"items", "NMTOKENS", {{Facet::maxLength, "2"}}, "a b c", {"1832", "maxLength 2"}},
      {"no length of qualified names", "QName", {{Facet::length, "99"}}, "p:a", {}},
      {"a length beyond all numbers",
       "string",
       {{Facet::maxLength, "99999999999999999999999"}},
       "a",
       {}},
      {"digits that count",
       "decimal",
       {{Facet::totalDigits, "3"}, {Facet::fractionDigits, "1"}},
       "0012.50",
       {}},
      {"digits behind the point",
       "decimal",
       {{Facet::totalDigits, "2"}},
       "0.001",
       {"1837", "totalDigits 2"}},
      {"both kinds",
       "decimal",
       {{Facet::fractionDigits, "1"}, {Facet::totalDigits, "3"}},
       "12.34",
       {"1838", "fractionDigits 1", "totalDigits 3"}},
      {"more digits than any processor has",
       "decimal",
       {{Facet::maxInclusive, "100000000000000000000000000000000000000.1"}},
       "100000000000000000000000000000000000000.11",
       {"1834", "maxInclusive 100000000000000000000000000000000000000.1"}},
      {"negative numbers",
       "decimal",
       {{Facet::minExclusive, "-2"}},
       "-2.0",
       {"1835", "minExclusive -2"}},
      {"both bounds in their order",
       "int",
       {{Facet::minInclusive, "9"}, {Facet::maxInclusive, "3"}},
       "5",
       {"1833", "minInclusive 9", "maxInclusive 3"}},
      {"no facets of what is no value",
       "int",
       {{Facet::minInclusive, "3"}, {Facet::pattern, "x"}},
       "ten",
       {"1824"}},
      {"infinity", "double", {{Facet::maxExclusive, "INF"}}, "INF", {"1836", "maxExclusive INF"}},
      {"no number is in no bounds",
       "double",
       {{Facet::maxInclusive, "1"}},
       "NaN",
       {"1834", "maxInclusive 1"}},
      {"but its own", "double", {{Facet::maxInclusive, "NaN"}}, "NaN", {}},
      {"instants",
       "dateTime",
       {{Facet::maxInclusive, "2020-01-01T00:00:00Z"}},
       "2020-01-01T01:00:00+02:00",
       {}},
      {"fractions of a second", "time", {{Facet::maxExclusive, "12:00:00.1"}}, "12:00:00.09", {}},
      {"with no zone maybe later",
       "dateTime",
       {{Facet::maxInclusive, "2020-01-01T00:00:00Z"}},
       "2019-12-31T20:00:00",
       {"1834", "maxInclusive 2020-01-01T00:00:00Z"}},
      {"with no zone surely earlier",
       "dateTime",
       {{Facet::maxInclusive, "2020-01-01T00:00:00Z"}},
       "2019-12-31T09:00:00",
       {}},
      {"before the first year", "gYear", {{Facet::minInclusive, "-0002"}}, "-0001", {}},
      {"a month may be 31 days",
       "duration",
       {{Facet::maxInclusive, "P30D"}},
       "P1M",
       {"1834", "maxInclusive P30D"}},
      {"and no more", "duration", {{Facet::maxExclusive, "P32D"}}, "P1M", {}},
      {"less than nothing", "duration", {{Facet::maxExclusive, "-PT0.25S"}}, "-PT0.5S", {}},
      {"the negative is the other way round",
       "duration",
       {{Facet::maxExclusive, "-P27D"}},
       "-P1M",
       {}},
      {"values, not texts", "int", {{Facet::enumeration, "05"}}, "5", {}},
      {"names by what their prefix means", "QName", {{Facet::enumeration, "p:a"}}, "q:a", {}},
      {"another name", "QName", {{Facet::enumeration, "p:a"}}, "a", {"1840", "enumeration 'p:a'"}},
      {"instants that are one",
       "date",
       {{Facet::enumeration, "2000-01-01+13:00"}},
       "1999-12-31-11:00",
       {}},
      {"lists by their items", "NMTOKENS", {{Facet::enumeration, "a b"}}, " a  b", {}},
      {"patterns see what is normalised", "int", {{Facet::pattern, "0\\d"}}, " 05 ", {}},
      {"patterns of lists too", "NMTOKENS", {{Facet::pattern, "a b"}}, " a \n b ", {}},
      {"all that is wrong, in the library's order",
       "string",
       {{Facet::pattern, "x"},
        {Facet::enumeration, "a"},
        {Facet::enumeration, "b"},
        {Facet::maxLength, "1"}},
       "yz",
       {"1832", "maxLength 1", "enumeration 'a', 'b'", "pattern x"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(faults(*restricted(builtIn(c.type), c.facets), c.text), c.faults);
  }
}

TEST(SimpleType, KnowsListsOfItems) {
  const Type small = restricted(builtIn("int"), {{Facet::maxInclusive, "9"}});
  const Type list = SimpleType::listOf(*small);
  EXPECT_THAT(faults(*list, ""), ElementsAre());
  EXPECT_THAT(faults(*list, " 1\n 2 "), ElementsAre());
  EXPECT_THAT(faults(*list, "1 10 x"), ElementsAre("1834", "maxInclusive 9"));
  EXPECT_THAT(faults(*list, "1 x 10"), ElementsAre("1824"));
  EXPECT_EQ(list->item(), small.get());
  EXPECT_EQ(list->variety(), SimpleType::Variety::list);

  const Type pair = restricted(*list, {{Facet::length, "2"}, {Facet::pattern, "\\d \\d"}});
  EXPECT_THAT(faults(*pair, " 1  2"), ElementsAre());
  EXPECT_THAT(faults(*pair, "1"), ElementsAre("1830", "length 2", "pattern \\d \\d"));
  EXPECT_EQ(pair->valueKey("1 2", {}), list->valueKey(" 01 +2 ", {}));
  EXPECT_NE(list->valueKey("1 2", {}), list->valueKey("12", {}));
  EXPECT_EQ(pair->normalised(" 1\n2 "), "1 2");

  const Type either = SimpleType::unionOf({small.get(), list.get()});
  EXPECT_THROW(SimpleType::listOf(*list), RuntimeError);
  EXPECT_THROW(SimpleType::listOf(*either), RuntimeError);
}

TEST(SimpleType, KnowsUnionsByTheFirstMemberThatAccepts) {
  const Type numbers = SimpleType::unionOf({&builtIn("int"), &builtIn("date")});
  const Type token = restricted(builtIn("token"), {{Facet::enumeration, "unknown"}});
  const Type any = SimpleType::unionOf({numbers.get(), token.get()});
  EXPECT_THAT(faults(*any, " 5\n"), ElementsAre());
  EXPECT_THAT(faults(*any, " 2020-01-01 "), ElementsAre());
  EXPECT_THAT(faults(*any, " unknown "), ElementsAre());
  EXPECT_THAT(faults(*any, "never"), ElementsAre("1826"));
  EXPECT_EQ(any->valueKey(" 05", {}), builtIn("decimal").valueKey("5", {}));
  EXPECT_EQ(any->normalised(" unknown "), "unknown");
  EXPECT_THAT(any->members(), ElementsAre(numbers.get(), token.get()));

  const Type some = restricted(
      *any,
      {{Facet::enumeration, "7"}, {Facet::enumeration, "unknown"}, {Facet::pattern, "[^0].*"}});
  EXPECT_THAT(faults(*some, " +7"), ElementsAre());
  EXPECT_THAT(faults(*some, "07"), ElementsAre("1839", "pattern [^0].*"));
  EXPECT_THAT(faults(*some, "08"),
              ElementsAre("1840", "enumeration '7', 'unknown'", "pattern [^0].*"));
  EXPECT_THAT(some->members(), ElementsAre(numbers.get(), token.get()));

  // A union inside a union keeps its own facets.
  const Type outer = SimpleType::unionOf({some.get(), &builtIn("boolean")});
  EXPECT_THAT(faults(*outer, "7"), ElementsAre());
  EXPECT_THAT(faults(*outer, "true"), ElementsAre());
  EXPECT_EQ(outer->valueKey("1", {}), builtIn("boolean").valueKey("true", {}));
  EXPECT_THAT(faults(*outer, "2020-01-01"), ElementsAre("1826"));

  const Type list = SimpleType::listOf(*outer);
  EXPECT_THAT(faults(*list, "7 true unknown"), ElementsAre());
  EXPECT_THAT(faults(*list, "7 8"), ElementsAre("1826"));
}

TEST(SimpleType, TellsTheIdentifiersInAValue) {
  const Type reference = restricted(builtIn("IDREF"), {{Facet::maxLength, "3"}});
  const Type list = SimpleType::listOf(*reference);
  const Type either = SimpleType::unionOf({&builtIn("int"), list.get(), &builtIn("ID")});
  const struct {
    const char* says;
    const SimpleType* type;
    const char* text;
    std::vector<std::string> told;
  } cases[] = {
      {"an identifier", &builtIn("ID"), " a ", {"id a"}},
      {"references", &builtIn("IDREFS"), " a  b ", {"reference a", "reference b"}},
      {"items of a list", list.get(), "a b", {"reference a", "reference b"}},
      {"of a union as its member has them", either.get(), "a b", {"reference a", "reference b"}},
      {"of another member", either.get(), "long-one", {"id long-one"}},
      {"none of a number", either.get(), "5", {}},
      {"none of a name", &builtIn("NCName"), "a", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::vector<std::string> told;
    c.type->identifiers(c.text, lookUp, [&](IdentifierKind kind, std::string_view strName) {
      told.push_back((kind == IdentifierKind::id ? "id " : "reference ") + std::string(strName));
    });
    EXPECT_EQ(told, c.told);
  }
  EXPECT_TRUE(either->mayHoldIdentifiers());
  EXPECT_FALSE(builtIn("NCName").mayHoldIdentifiers());
}

TEST(SimpleType, RefusesFacetsThatAreNone) {
  const Type list = SimpleType::listOf(builtIn("int"));
  const Type either = SimpleType::unionOf({&builtIn("int"), list.get()});
  const struct {
    const SimpleType* base;
    FacetDefinition facet;
    const char* why;
  } cases[] = {
      {&builtIn("string"), {Facet::maxLength, "x"}, "is no such number."},
      {&builtIn("string"), {Facet::length, "-1"}, "is no such number."},
      {&builtIn("decimal"), {Facet::totalDigits, "0"}, "is no such number."},
      {&builtIn("int"), {Facet::minInclusive, "ten"}, "is no value of its type."},
      {&builtIn("int"), {Facet::enumeration, ""}, "is no value of its type."},
      {&builtIn("QName"), {Facet::enumeration, "x:a"}, "is no value of its type."},
      {list.get(), {Facet::enumeration, "1 x"}, "is no value of its type."},
      {&builtIn("string"), {Facet::whiteSpace, "some"}, "has none of the values that there are."},
      {&builtIn("string"), {Facet::minInclusive, "a"}, "is not one that the type can have."},
      {&builtIn("int"), {Facet::length, "1"}, "is not one that the type can have."},
      {list.get(), {Facet::maxInclusive, "1"}, "is not one that the type can have."},
      {either.get(), {Facet::maxLength, "1"}, "is not one that the type can have."},
  };
  for (const auto& c : cases) {
    const std::string strFacet(facetName(c.facet.facet));
    SCOPED_TRACE(strFacet + " " + c.facet.strValue);
    try {
      restricted(*c.base, {c.facet});
      ADD_FAILURE() << "taken";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), kXmlFailure);
      EXPECT_EQ(error.description(),
                "The facet '" + strFacet + "' with the value '" + c.facet.strValue + "' " + c.why);
    }
  }
  EXPECT_THROW(restricted(builtIn("string"), {{Facet::pattern, "("}}), RuntimeError);
}

TEST(SimpleType, NamesEachFacet) {
  for (int lngFacet = 0; lngFacet < 12; ++lngFacet) {
    const auto facet = static_cast<Facet>(lngFacet);
    EXPECT_EQ(facetNamed(facetName(facet)), facet);
  }
  EXPECT_EQ(facetName(Facet::minExclusive), "minExclusive");
  EXPECT_EQ(facetNamed("maxlength"), std::nullopt);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
