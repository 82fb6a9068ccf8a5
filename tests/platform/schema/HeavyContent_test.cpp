#include "platform/schema/HeavyContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "SchemaTesting.h"
#include "platform/schema/CompileSchema.h"
#include "platform/schema/ReadSchemaDocuments.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Substitute = HeavyContent::Substitute;

std::string times(int lngTimes, const std::function<std::string(const std::string&)>& part) {
  std::string strAll;
  for (int at = 0; at < lngTimes; ++at) strAll += part(std::to_string(at));
  return strAll;
}

/// Elements "e0", "e1" ... with these further attributes.
std::string elements(int lngTimes, const std::string& strAttributes = "") {
  return times(lngTimes, [&](const std::string& strNumber) {
    return "<xs:element name='e" + strNumber + "' " + strAttributes + "/>";
  });
}

std::string sequence(const std::string& strContent, const std::string& strAttributes = "") {
  return "<xs:sequence " + strAttributes + ">" + strContent + "</xs:sequence>";
}

std::string type(const std::string& strContent, const std::string& strName = "T") {
  return "<xs:complexType name='" + strName + "'>" + strContent + "</xs:complexType>";
}

std::string extension(const std::string& strBase, const std::string& strContent) {
  return "<xs:complexContent><xs:extension base='t:" + strBase + "'>" + strContent +
         "</xs:extension></xs:complexContent>";
}

std::string group(const std::string& strName, const std::string& strContent) {
  return "<xs:group name='" + strName + "'>" + strContent + "</xs:group>";
}

/// The documents of a schema of "urn:t", whose prefix is "t".
SchemaDocuments documentsOf(const SchemaDirectory& directory, const std::string& strDeclarations) {
  return readSchemaDocuments("urn:t",
                             directory.write("main.xsd", schemaText(strDeclarations, "urn:t")), "");
}

HeavyContents heavyIn(const SchemaDirectory& directory, const std::string& strDeclarations) {
  const SchemaDocuments documents = documentsOf(directory, strDeclarations);
  NameTable names;
  return heavyContents(documents, Definitions(documents, names));
}

void check(const SchemaDocuments& documents) {
  NameTable names;
  checkByCompiler(documents, Definitions(documents, names), "main.xsd");
}

std::vector<Substitute> substitutesIn(const std::string& strDeclarations) {
  const SchemaDirectory directory;
  const HeavyContents colContents = heavyIn(directory, strDeclarations);
  std::vector<Substitute> substitutes;
  for (const HeavyContent& heavy : colContents.excessive) {
    substitutes.push_back(heavy.substitute);
  }
  return substitutes;
}

/// Why the schema is refused; empty when it is not.
std::string refusal(const SchemaDirectory& directory, const std::string& strDeclarations) {
  try {
    check(documentsOf(directory, strDeclarations));
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return "";
}

std::string refusal(const std::string& strDeclarations) {
  const SchemaDirectory directory;
  return refusal(directory, strDeclarations);
}

constexpr const char* kOptional = "minOccurs='0'";

TEST(HeavyContent, IsWhatHasManyAlternativesChildrenOrLevels) {
  const auto levels = [](int lngLevels) {
    std::string strContent = elements(1);
    for (int at = 1; at < lngLevels; ++at) strContent = sequence(strContent);
    return strContent;
  };
  const std::string strHead =
      "<xs:element name='h' abstract='true'/>" + times(101, [](const std::string& strNumber) {
        return "<xs:element name='m" + strNumber +
               "' substitutionGroup='t:" + (strNumber == "0" ? "h" : "m0") + "'/>";
      });
  const struct {
    const char* says;
    std::string strDeclarations;
    std::vector<Substitute> colFound;
  } cases[] = {
      {"100 optional ones", type(sequence(elements(100, kOptional))), {}},
      {"101 optional ones", type(sequence(elements(101, kOptional))), {Substitute::optional}},
      {"the last of which is not",
       type(sequence(elements(100, kOptional) + "<xs:element name='x'/>")),
       {Substitute::required}},
      {"interrupted",
       type(sequence(elements(60, kOptional) + "<xs:element name='x'/>" + elements(60, kOptional))),
       {}},
      {"across groups",
       group("g", sequence(elements(60, kOptional))) +
           type(sequence("<xs:group ref='t:g'/><xs:group ref='t:g'/>")),
       {Substitute::optional}},
      {"across a group that need not be there",
       type(sequence(elements(60, kOptional) + sequence("<xs:element name='x'/>", kOptional) +
                     elements(60, kOptional))),
       {Substitute::optional}},
      {"behind one that may come again",
       type(sequence(sequence(elements(60, kOptional), "maxOccurs='2'"))),
       {Substitute::optional}},
      {"100 of a choice", type("<xs:choice>" + elements(100) + "</xs:choice>"), {}},
      {"101 of a choice",
       type("<xs:choice>" + elements(101) + "</xs:choice>"),
       {Substitute::required}},
      {"101 of a choice, one optional",
       type("<xs:choice>" + elements(100) + "<xs:element name='x' minOccurs='0'/></xs:choice>"),
       {Substitute::optional}},
      {"101 in any order", type("<xs:all>" + elements(101) + "</xs:all>"), {Substitute::required}},
      {"101 in any order, none needed",
       type("<xs:all>" + elements(101, kOptional) + "</xs:all>"),
       {Substitute::optional}},
      {"500 that are needed", type(sequence(elements(500))), {}},
      {"501 that are needed", type(sequence(elements(501))), {Substitute::required}},
      {"501 in a sequence that is not",
       type(sequence(elements(501), kOptional)),
       {Substitute::optional}},
      {"50 levels", type(levels(49)), {}},
      {"51 levels", type(levels(51)), {Substitute::required}},
      {"a substitution group",
       strHead + type(sequence("<xs:element ref='t:h'/>")),
       {Substitute::required}},
      {"one type of many",
       type(sequence(elements(1)), "A") + type(sequence(elements(501)), "B"),
       {Substitute::required}},
      {"one in another, which is light",
       type(sequence("<xs:element name='i'><xs:complexType>" + sequence(elements(501)) +
                     "</xs:complexType></xs:element>")),
       {Substitute::required}},
      {"an extension",
       type(sequence(elements(60, kOptional)), "A") +
           type(extension("A", sequence(elements(60, kOptional))), "B"),
       {Substitute::none}},
      {"a needed extension of what is not needed",
       type(sequence(elements(60, kOptional)), "A") +
           type(extension("A", sequence(elements(60, kOptional) + "<xs:element name='x'/>")), "B"),
       {Substitute::required}},
      {"a needed extension of what is needed",
       type(sequence(elements(400)), "A") + type(extension("A", sequence(elements(400))), "B"),
       {Substitute::none}},
      {"only documentation",
       "<xs:annotation><xs:appinfo>" + type(sequence(elements(501))) +
           "</xs:appinfo></xs:annotation>",
       {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(substitutesIn(c.strDeclarations), c.colFound);
    EXPECT_EQ(refusal(c.strDeclarations), "");
  }
}

TEST(HeavyContent, IsWhatIsTooMuchTogether) {
  const std::string strOften = group("g", sequence(elements(100, kOptional))) +
                               times(1'000, [](const std::string& strNumber) {
                                 return type("<xs:group ref='t:g'/>", "T" + strNumber) +
                                        type(sequence(elements(2)), "S" + strNumber);
                               });
  const std::size_t lngFound = substitutesIn(strOften).size();
  EXPECT_GT(lngFound, 600U);
  EXPECT_LT(lngFound, 900U);
}

// Each would take the library hours, or gigabytes.
TEST(HeavyContent, IsCompiledInLinearTime) {
  constexpr int kMany = 10'000;
  const struct {
    const char* says;
    std::string strDeclarations;
  } cases[] = {
      {"optional elements", type(sequence(elements(kMany, kOptional)))},
      {"any number of each",
       type(sequence(elements(kMany, "minOccurs='0' maxOccurs='unbounded'")))},
      {"some of each", type(sequence(elements(kMany, "minOccurs='0' maxOccurs='9'")))},
      {"any number of all",
       type(sequence(elements(kMany, kOptional), "minOccurs='0' maxOccurs='unbounded'"))},
      {"elements that are needed", type(sequence(elements(kMany)))},
      {"a choice", type("<xs:choice maxOccurs='unbounded'>" + elements(kMany) + "</xs:choice>")},
      {"any order", type("<xs:all>" + elements(kMany) + "</xs:all>")},
      {"any order, in a group",
       group("g", "<xs:all>" + elements(kMany) + "</xs:all>") + type("<xs:group ref='t:g'/>")},
      {"wildcards", type(sequence(times(kMany,
                                        [](const std::string& strNumber) {
                                          return "<xs:any namespace='urn:" + strNumber +
                                                 "' minOccurs='0'/>";
                                        })))},
      {"groups", group("g", sequence(elements(10, kOptional))) +
                     type(sequence(times(kMany / 10,
                                         [](const std::string&) {
                                           return "<xs:group ref='t:g' minOccurs='0'/>";
                                         })))},
      {"extensions", type(sequence(elements(200, kOptional)), "T0") +
                         times(200,
                               [](const std::string& strNumber) {
                                 return type(
                                     extension("T" + strNumber, sequence(elements(100, kOptional))),
                                     "T" + std::to_string(std::stoi(strNumber) + 1));
                               })},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(refusal(c.strDeclarations), "");
  }
}

TEST(HeavyContent, IsCheckedAllTheSame) {
  const std::string strHeavy = elements(200, kOptional);
  const struct {
    const char* says;
    std::string strDeclarations, strReason;
  } cases[] = {
      {"a missing type", type(sequence(strHeavy + "<xs:element name='x' type='t:nix'/>")), "nix"},
      {"a missing element", type(sequence(strHeavy + "<xs:element ref='t:nix'/>")), "nix"},
      {"a missing group", type(sequence(strHeavy + "<xs:group ref='t:nix'/>")), "nix"},
      {"an attribute that does not belong",
       type(sequence(strHeavy + "<xs:element name='x' nix='1'/>")), "nix"},
      {"wrong numbers", type(sequence(strHeavy, "minOccurs='2' maxOccurs='1'")), "maxOccurs"},
      {"a wrong type inside",
       type(sequence(strHeavy + "<xs:element name='x'><xs:simpleType><xs:restriction "
                                "base='xs:int'><xs:length value='1'/></xs:restriction>"
                                "</xs:simpleType></xs:element>")),
       "length"},
      {"a circle of groups",
       group("g", sequence(strHeavy + "<xs:group ref='t:g'/>")) + type("<xs:group ref='t:g'/>"),
       "g"},
      {"what is empty instead of needed content",
       type(sequence(strHeavy + "<xs:element name='x'/>"), "A") +
           type("<xs:complexContent><xs:restriction base='t:A'/></xs:complexContent>", "B"),
       "emptiable"},
      {"a default where content is needed",
       "<xs:element name='r' default='d'><xs:complexType mixed='true'>" +
           sequence(strHeavy + "<xs:element name='x'/>") + "</xs:complexType></xs:element>",
       "emptiable"},
      {"empty instead of optional content",
       type(sequence(strHeavy), "A") +
           type("<xs:complexContent><xs:restriction base='t:A'/></xs:complexContent>", "B"),
       ""},
      {"a default where nothing is needed",
       "<xs:element name='r' default='d'><xs:complexType mixed='true'>" + sequence(strHeavy) +
           "</xs:complexType></xs:element>",
       ""},
      {"prefixes that are declared on the way",
       "<xs:element name='r' xmlns:a='urn:t'><xs:complexType xmlns:b='urn:t'>" +
           sequence(
               strHeavy +
               "<xs:element ref='a:o'/><xs:element ref='b:o'/>"
               "<xs:element name='i' xmlns:c='urn:t'><xs:complexType>" +
               sequence(elements(200, "type='c:S' minOccurs='0'") + "<xs:element ref='a:p'/>") +
               "</xs:complexType></xs:element>") +
           "</xs:complexType></xs:element><xs:element name='o'/><xs:element name='p'/>"
           "<xs:simpleType name='S'><xs:restriction base='xs:int'/></xs:simpleType>",
       ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strRefusal = refusal(c.strDeclarations);
    EXPECT_EQ(strRefusal.empty(), c.strReason.empty()) << strRefusal;
    EXPECT_THAT(strRefusal, HasSubstr(c.strReason));
  }
}

TEST(HeavyContent, IsToldOfOnItsLine) {
  const SchemaDirectory directory;
  const std::string strContent = elements(200, kOptional) + "\n\n<xs:element ref='t:nix'/>";
  const SchemaDocuments documents = documentsOf(
      directory, "\n" + type(sequence(strContent)) + "\n\n\n<xs:element name='r' type='t:T'/>");
  try {
    check(documents);
    FAIL() << "it is not refused";
  } catch (const SchemaFailure& failure) {
    EXPECT_EQ(failure.spot().lngLine, 4U);
  }
}

TEST(HeavyContent, IsFoundInEveryDocument) {
  const SchemaDirectory directory;
  const std::string strHeavy = sequence(elements(200, "type='S' minOccurs='0'"));
  directory.write("part.xsd", schemaText(type(strHeavy, "P") + group("pg", strHeavy) +
                                         "<xs:simpleType name='S'><xs:restriction base='xs:int'/>"
                                         "</xs:simpleType>"));
  directory.write("redefined.xsd", schemaText(type(sequence(elements(99, kOptional)), "R") +
                                                  group("rg", sequence(elements(99, kOptional))),
                                              "urn:t"));
  const std::string strDeclarations =
      "<xs:include schemaLocation='part.xsd'/><xs:redefine schemaLocation='redefined.xsd'>" +
      type(extension("R", sequence("<xs:element name='x' minOccurs='0'/>"
                                   "<xs:element name='y' minOccurs='0'/>")),
           "R") +
      group("rg", sequence("<xs:group ref='t:rg'/><xs:element name='x' minOccurs='0'/>")) +
      "</xs:redefine>" + type(sequence("<xs:group ref='t:rg'/><xs:group ref='t:pg'/>"), "M") +
      "<xs:element name='r' type='t:P'/>";
  const HeavyContents colContents = heavyIn(directory, strDeclarations);
  std::vector<std::size_t> colDocuments;
  for (const HeavyContent& heavy : colContents.excessive) {
    colDocuments.push_back(heavy.lngDocument);
  }
  EXPECT_THAT(colDocuments, testing::UnorderedElementsAre(0U, 0U, 1U));
  EXPECT_EQ(refusal(directory, strDeclarations), "");
}

// deliberate: no automaton, no check for ambiguity.
TEST(HeavyContent, AloneMayBeAmbiguous) {
  const std::string strTwice = "<xs:element name='x' minOccurs='0'/><xs:element name='x'/>";
  EXPECT_THAT(refusal(type(sequence(strTwice))), HasSubstr("not determinist"));
  EXPECT_EQ(refusal(type(sequence(elements(101, kOptional) + strTwice))), "");
}

TEST(HeavyContent, IsPlainWhereTheNameOfAChildTellsWhichItIs) {
  const std::string strTen = elements(10, kOptional);
  const std::string strHead =
      "<xs:element name='h'/><xs:element name='m' substitutionGroup='t:h'/>"
      "<xs:element name='o'/>";
  const struct {
    const char* says;
    std::string strDeclarations;
    bool blnPlain;
  } cases[] = {
      {"optional elements", type(sequence(strTen)), true},
      {"so few that it is no work", type(sequence(elements(3, kOptional))), false},
      {"so many that it is too much", type(sequence(elements(101, kOptional))), false},
      {"elements that are needed", type(sequence(elements(20))), true},
      {"a choice", type("<xs:choice>" + elements(10) + "</xs:choice>"), true},
      {"groups in groups",
       type(sequence(strTen + "<xs:choice minOccurs='0'>" +
                     sequence("<xs:element name='a'/><xs:element name='b'/>") +
                     "<xs:element name='c'/></xs:choice>")),
       true},
      {"any number of one", type(sequence(strTen + "<xs:element name='a' maxOccurs='unbounded'/>")),
       true},
      {"some of one", type(sequence(strTen + "<xs:element name='a' maxOccurs='3'/>")), false},
      {"one at least twice",
       type(sequence(strTen + "<xs:element name='a' minOccurs='2' maxOccurs='unbounded'/>")),
       false},
      {"any number of a group", type(sequence(strTen, "maxOccurs='unbounded'")), false},
      {"any number of a group within",
       type(sequence(strTen + sequence("<xs:element name='a'/>", "maxOccurs='unbounded'"))), false},
      {"one name twice", type(sequence(strTen + "<xs:element name='x'/><xs:element name='e3'/>")),
       false},
      {"one name in two namespaces",
       strHead + type(sequence(strTen + "<xs:element name='o'/><xs:element ref='t:o'/>")), false},
      {"a reference", strHead + type(sequence(strTen + "<xs:element ref='t:o'/>")), true},
      {"a reference to the head of a substitution group",
       strHead + type(sequence(strTen + "<xs:element ref='t:h'/>")), false},
      {"a reference to nothing", type(sequence(strTen + "<xs:element ref='t:nix'/>")), true},
      {"a wildcard", type(sequence(strTen + "<xs:any namespace='##other'/>")), false},
      {"a named group",
       group("g", sequence("<xs:element name='x'/>")) +
           type(sequence(strTen + "<xs:group ref='t:g'/>")),
       false},
      {"any order", type("<xs:all>" + strTen + "</xs:all>"), false},
      {"documentation within",
       type(sequence("<xs:annotation><xs:documentation>d</xs:documentation></xs:annotation>" +
                     strTen)),
       true},
      {"an extension", type("", "A") + type(extension("A", sequence(strTen)), "B"), false},
      {"an extension of any content",
       type("<xs:complexContent><xs:extension base='xs:anyType'>" + sequence(strTen) +
            "</xs:extension></xs:complexContent>"),
       false},
      {"a restriction of any content",
       type("<xs:complexContent><xs:restriction base='xs:anyType'>" + sequence(strTen) +
            "</xs:restriction></xs:complexContent>"),
       true},
      {"what is extended",
       type(sequence(strTen), "A") + type(extension("A", sequence("<xs:element name='x'/>")), "B"),
       false},
      {"what is extended by nothing", type(sequence(strTen), "A") + type(extension("A", ""), "B"),
       false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SchemaDirectory directory;
    EXPECT_THAT(heavyIn(directory, c.strDeclarations).plain, SizeIs(c.blnPlain ? 1 : 0));
  }
}

TEST(HeavyContent, OfARedefinitionIsLeftToTheCompiler) {
  for (const char* occurs : {"", " minOccurs='0'"}) {
    SCOPED_TRACE(occurs);
    const SchemaDirectory directory;
    const std::string strGroup = "<xs:group ref='t:g'" + std::string(occurs) + "/>";
    const std::string strInner = "<xs:element name='in'><xs:complexType>" + sequence(strGroup) +
                                 "</xs:complexType></xs:element>";
    directory.write("g.xsd", schemaText(group("g", sequence("<xs:element name='o'/>")), "urn:t"));
    EXPECT_THAT(
        refusal(directory, "<xs:redefine schemaLocation='g.xsd'>" +
                               group("g", sequence("<xs:group ref='t:g'/><xs:element name='big'>"
                                                   "<xs:complexType>" +
                                                   sequence(elements(10, kOptional) + strInner) +
                                                   "</xs:complexType></xs:element>")) +
                               "</xs:redefine><xs:element name='r'/>"),
        HasSubstr("redefined definition"));
  }
}

// The first complaint is that of the compiler about the documents as they stand.
TEST(HeavyContent, ThatIsPlainChangesNoComplaint) {
  const std::string strTen = elements(10, kOptional);
  const struct {
    const char* says;
    std::string strDeclarations, strReason;
    std::size_t lngLine;
  } cases[] = {
      {"an ambiguous model", type(sequence(strTen + "\n<xs:element name='e9'/>")),
       "not determinist", 1},
      {"one that an extension makes so",
       type(sequence(strTen), "A") + "\n" +
           type(extension("A", sequence("<xs:element name='e9'/>")), "B"),
       "'B': The content model is not determinist", 2},
      {"within, and behind it",
       type(sequence(strTen + "<xs:element name='x'\nnix='1'/>")) +
           "\n<xs:element name='r' nix='2'/>",
       "nix", 2},
      {"a type that is missing within, and one behind it",
       type(sequence(strTen + "\n<xs:element name='x' type='t:nix'/>")) +
           "\n<xs:element name='r' type='t:none'/>",
       "nix", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SchemaDirectory directory;
    const SchemaDocuments documents = documentsOf(directory, c.strDeclarations);
    try {
      check(documents);
      ADD_FAILURE() << "it is not refused";
    } catch (const SchemaFailure& failure) {
      EXPECT_THAT(failure.description(), HasSubstr(c.strReason));
      EXPECT_EQ(failure.spot().lngLine, c.lngLine);
    }
  }
}

TEST(HeavyContent, HasABound) {
  const auto twice = [](const char* before, const char* reference, const char* behind,
                        int lngTimes) {
    return times(lngTimes, [&](const std::string& strNumber) {
      const std::string strNext = std::to_string(std::stoi(strNumber) + 1);
      std::string strText = before;
      const auto put = [&](const std::string& strMark, const std::string& strBy) {
        for (std::size_t at; (at = strText.find(strMark)) != std::string::npos;) {
          strText.replace(at, 1, strBy);
        }
      };
      strText.append(reference).append(reference).append(behind);
      put("$", strNumber);
      put("#", strNext);
      return strText;
    });
  };
  const std::string strGroups = twice("<xs:group name='g#'><xs:sequence>", "<xs:group ref='t:g$'/>",
                                      "</xs:sequence></xs:group>", 20) +
                                group("g0", sequence(elements(1)));
  const std::string strAttributes =
      twice("<xs:attributeGroup name='g#'>", "<xs:attributeGroup ref='t:g$'/>",
            "</xs:attributeGroup>", 20) +
      "<xs:attributeGroup name='g0'><xs:attribute name='a'/></xs:attributeGroup>";
  const std::string strUnions =
      twice("<xs:simpleType name='S#'><xs:union memberTypes='", " t:S$ ", "'/></xs:simpleType>",
            20) +
      "<xs:simpleType name='S0'><xs:restriction base='xs:int'/></xs:simpleType>";
  const std::string strTooLarge =
      "A definition comes to more than 100000 elements and attributes with all that it refers to.";
  for (const std::string& strDeclarations :
       {strGroups, strGroups + type("<xs:group ref='t:g20'/>"), strAttributes, strUnions,
        type(sequence(elements(100'000)))}) {
    EXPECT_THAT(refusal(strDeclarations), HasSubstr(strTooLarge));
  }
  EXPECT_EQ(refusal(type(sequence(elements(90'000)))), "");
}

TEST(HeavyContent, IsNoChainWithoutEnd) {
  const auto chain = [](const std::string& strStart, const std::string& strLink, int lngLinks) {
    // The last comes first, so that the compiler finds nothing that it knows.
    std::string strAll;
    for (int at = lngLinks; at > 0; --at) {
      for (const char letter : strLink) {
        strAll += letter == '#'   ? std::to_string(at)
                  : letter == '$' ? std::to_string(at - 1)
                                  : std::string(1, letter);
      }
    }
    return strAll + strStart;
  };
  const struct {
    const char* says;
    std::string strStart, strLink;
  } cases[] = {
      {"extensions", type(sequence(elements(1)), "T0"),
       "<xs:complexType name='T#'><xs:complexContent><xs:extension base='t:T$'/>"
       "</xs:complexContent></xs:complexType>"},
      {"restrictions", type(sequence(elements(1)), "T0"),
       "<xs:complexType name='T#'><xs:complexContent><xs:restriction base='t:T$'><xs:sequence>"
       "<xs:element name='e0'/></xs:sequence></xs:restriction></xs:complexContent>"
       "</xs:complexType>"},
      {"simple types", "<xs:simpleType name='T0'><xs:restriction base='xs:int'/></xs:simpleType>",
       "<xs:simpleType name='T#'><xs:restriction base='t:T$'/></xs:simpleType>"},
      {"unions", "<xs:simpleType name='T0'><xs:restriction base='xs:int'/></xs:simpleType>",
       "<xs:simpleType name='T#'><xs:union memberTypes='t:T$'/></xs:simpleType>"},
      {"groups", group("T0", sequence(elements(1))),
       "<xs:group name='T#'><xs:sequence><xs:group ref='t:T$'/></xs:sequence></xs:group>"},
      {"attribute groups", "<xs:attributeGroup name='T0'/>",
       "<xs:attributeGroup name='T#'><xs:attributeGroup ref='t:T$'/><xs:attribute name='a#'/>"
       "</xs:attributeGroup>"},
      {"substitution groups", "<xs:element name='T0'/>",
       "<xs:element name='T#' substitutionGroup='t:T$'/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(refusal(chain(c.strStart, c.strLink, 250)), "");
    for (const int lngLinks : {251, 5'000}) {
      EXPECT_THAT(refusal(chain(c.strStart, c.strLink, lngLinks)),
                  HasSubstr("Its definitions refer to one another in a chain of more than 250."));
    }
  }
}

TEST(HeavyContent, MayGoRoundInCirclesThatTheCompilerRefuses) {
  for (const std::string& strDeclarations :
       {group("g", sequence("<xs:group ref='t:g'/>")) + type("<xs:group ref='t:g'/>"),
        group("g", sequence("<xs:group ref='t:h'/>")) +
            group("h", sequence("<xs:group ref='t:g'/><xs:group ref='t:g'/>")) +
            type("<xs:group ref='t:g'/>"),
        type(extension("B", ""), "A") + type(extension("A", ""), "B"),
        std::string("<xs:simpleType name='S'><xs:union memberTypes='t:S'/></xs:simpleType>"),
        std::string("<xs:element name='a' substitutionGroup='t:b'/>"
                    "<xs:element name='b' substitutionGroup='t:a'/>")}) {
    SCOPED_TRACE(strDeclarations);
    EXPECT_NE(refusal(strDeclarations), "");
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
