#include "CountedWork.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "GeneratedSchemas.h"
#include "SchemaTesting.h"
#include "SecondEngine.h"

// The reader's work is bounded by the size of what it reads, whatever the schema: for generated
// pairs against a fixed number of blocks a byte, and for shapes that were or could be dear by what
// twice the size costs. GENERATED_SEED and GENERATED_COUNT as in GeneratedSchemas_test.cpp.

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string times(int lngCount, const std::function<std::string(int)>& text) {
  std::string strAll;
  for (int number = 0; number < lngCount; ++number) strAll += text(number);
  return strAll;
}

std::string times(int lngCount, const std::string& strText) {
  return times(lngCount, [&](int) { return strText; });
}

std::size_t sizeOf(const std::vector<std::string>& lines) {
  std::size_t lngSize = 0;
  for (const std::string& strLine : lines) lngSize += strLine.size();
  return lngSize;
}

// Without any optimisation a valid message takes some 100 blocks a byte, a damaged one some 500.
constexpr std::uint64_t kBlocksAByte = 2'000;
constexpr std::uint64_t kBlocksAtAll = 200'000;

TEST(CountedWork, IsLinearInTheSizeOfEachGeneratedPair) {
  const SchemaDirectory directory;
  const unsigned long lngFirst = fromEnvironment("GENERATED_SEED", 1);
  const unsigned long lngSchemas = fromEnvironment("GENERATED_COUNT", kGeneratedPairs) / 10;
  unsigned long lngTaken = 0;
  for (unsigned long seed = lngFirst; seed < lngFirst + lngSchemas; ++seed) {
    const std::string strSeed = "GENERATED_SEED=" + std::to_string(seed) + " ";
    const GeneratedSchema schema(static_cast<std::uint_fast32_t>(seed));
    const std::uint64_t lngForSchema = kBlocksAtAll + kBlocksAByte * schema.text().size();
    std::optional<SchemaCollection> colSchemas;
    try {
      const CountedWork work(lngForSchema, strSeed + schema.text());
      colSchemas = schemasOf(directory, schema.text());
    } catch (const RuntimeError&) {
      continue;
    }
    ++lngTaken;
    std::mt19937 random(static_cast<std::uint_fast32_t>(seed));
    for (int number = 0; number < 10; ++number) {
      const Item message = schema.message(random, number * 2 / 3);
      std::string strText;
      serialise(message, strText);
      const std::size_t lngBytes =
          schema.text().size() + strText.size() + sizeOf(schema.reports(message));
      const CountedWork work(kBlocksAtAll + kBlocksAByte * lngBytes,
                             strSeed + schema.text() + "\n" + strText);
      recordAll(*colSchemas, strText, false);
      EXPECT_GT(work.blocks(), 0U);
    }
  }
  EXPECT_GT(2 * lngTaken, lngSchemas);  // otherwise it would say little
}

/// What a shape of a given size takes to register and to check.
struct Shape {
  const char* name;
  int size;
  std::function<std::string(int)> declarations;
  std::function<std::string(int)> message;
};

struct Work {
  std::uint64_t lngForSchema;
  std::uint64_t lngForMessage;
};

Work workOf(const Shape& shape, int lngSize) {
  const SchemaDirectory directory;
  const std::string strSchema = schemaText(shape.declarations(lngSize));
  const std::string strText = shape.message(lngSize);
  Work work{};
  const CountedWork forSchema(kBlocksAtAll + kBlocksAByte * strSchema.size(), shape.name);
  const SchemaCollection colSchemas = schemasOf(directory, strSchema);
  work.lngForSchema = forSchema.blocks();
  const std::size_t lngBytes = strSchema.size() + strText.size();
  const CountedWork forMessage(kBlocksAtAll + kBlocksAByte * lngBytes, shape.name);
  EXPECT_FALSE(recordAll(colSchemas, strText, false).lines.empty());
  work.lngForMessage = forMessage.blocks();
  return work;
}

std::string numbered(const char* before, int lngNumber, const char* behind) {
  return before + std::to_string(lngNumber) + behind;
}

/// The declaration of "m" with a content model of `strParts` in `strTag`.
std::string modelOf(const std::string& strTag, const std::string& strParts) {
  return "<xs:element name='m'><xs:complexType><xs:" + strTag + ">" + strParts + "</xs:" + strTag +
         "></xs:complexType></xs:element>";
}

std::string ints(int lngCount, const char* strCounts) {
  return times(lngCount, [&](int number) {
    return numbered("<xs:element name='e", number, "' type='xs:int' ") + strCounts + "/>";
  });
}

std::string message(const std::string& strContent) { return "<m>" + strContent + "</m>"; }

/// An element of each number from 0, or each `lngStep`-th.
std::string elements(int lngCount, const char* strValue, int lngStep = 1) {
  return times(lngCount / lngStep, [&](int number) {
    const std::string strName = "e" + std::to_string(number * lngStep);
    return "<" + strName + ">" + strValue + "</" + strName + ">";
  });
}

const Shape kShapes[] = {
    {"ElementsThatMayStandTwiceAndOneTooMany", 16,
     [](int n) { return modelOf("sequence", ints(n, "minOccurs='0' maxOccurs='2'")); },
     [](int n) {
       return message(elements(n, "1") + times(3, "<e" + std::to_string(n - 1) + ">1</e" +
                                                      std::to_string(n - 1) + ">"));
     }},
    {"ElementsThatMayStandTwiceInAWrongOrder", 16,
     [](int n) { return modelOf("sequence", ints(n, "minOccurs='0' maxOccurs='2'")); },
     [](int n) { return message("<e1>1</e1>" + elements(n, "1") + elements(n, "x")); }},
    {"OptionalElementsInARow", 50,
     [](int n) { return modelOf("sequence", ints(n, "minOccurs='0'")); },
     [](int n) { return message(elements(n, "1", 7) + "<e0>x</e0>"); }},
    {"AllWithEachChildTwice", 50, [](int n) { return modelOf("all", ints(n, "")); },
     [](int n) { return message(elements(n, "1") + elements(n, "x")); }},
    {"AllWithEveryOtherChildMissing", 50, [](int n) { return modelOf("all", ints(n, "")); },
     [](int n) { return message(elements(n, "1", 2)); }},
    {"AChoiceWithoutBounds", 50,
     [](int n) {
       return modelOf("sequence", "<xs:choice minOccurs='0' maxOccurs='unbounded'>" + ints(n, "") +
                                      "</xs:choice>"
                                      "<xs:element name='z' type='xs:int'/>");
     },
     [](int n) { return message(elements(n, "x") + "<z>1</z>" + elements(n, "x")); }},
    {"BadValuesOutOfOrder", 400,
     [](int) {
       return modelOf("sequence",
                      "<xs:sequence maxOccurs='unbounded'>" + ints(2, "") + "</xs:sequence>");
     },
     [](int n) { return message(times(n, "<e1>x</e1><e0>y</e0>")); }},
    {"ChildrenThatAreDeclaredNowhere", 400,
     [](int) { return modelOf("sequence", "<xs:element name='a' type='xs:int'/>"); },
     [](int n) { return message(times(n, "<nix><a>1</a></nix>")); }},
    {"CountsWithinCounts", 100,
     [](int) {
       std::string strModel = "<xs:element name='a' type='xs:int' minOccurs='0' maxOccurs='7'/>";
       for (int level = 0; level < 4; ++level) {
         strModel = "<xs:sequence minOccurs='0' maxOccurs='8'>" + strModel + "</xs:sequence>";
       }
       return modelOf("sequence", strModel + "<xs:element name='z' type='xs:int'/>");
     },
     [](int n) { return message(times(n, "<a>1</a>")); }},
    {"OneNameInManyPlaces", 50,
     [](int n) {
       return modelOf("sequence",
                      "<xs:sequence maxOccurs='unbounded'>" +
                          times(200, "<xs:element name='a' type='xs:int' minOccurs='0'/>") +
                          "<xs:element name='z' type='xs:int'/></xs:sequence>") +
              ints(n, "");
     },
     [](int n) { return message(times(n, "<a>x</a>")); }},
    {"ChoicesInSequencesInChoices", 8,
     [](int n) {
       return modelOf("sequence", times(n, [](int number) {
                        std::string strModel;
                        for (int level = 0; level < 4; ++level) {
                          strModel = "<xs:sequence><xs:element name='s" + std::to_string(number) +
                                     "." + std::to_string(level) +
                                     "' type='xs:int' minOccurs='0' maxOccurs='3'/><xs:choice "
                                     "minOccurs='0' maxOccurs='3'>" +
                                     strModel + "</xs:choice></xs:sequence>";
                        }
                        return strModel;
                      }));
     },
     [](int n) {
       return message(times(n, [](int number) {
         std::string strParts;
         for (int level = 3; level >= 0; --level) {
           const std::string strName = "s" + std::to_string(number) + "." + std::to_string(level);
           strParts += times(4, "<" + strName + ">1</" + strName + ">");
         }
         return strParts;
       }));
     }},
    {"MembersOfASubstitutionGroup", 50,
     [](int n) {
       return modelOf("sequence", "<xs:element ref='h' maxOccurs='2'/>") +
              "<xs:element name='h' type='xs:int' abstract='true'/>" + times(n, [](int number) {
                return numbered("<xs:element name='e", number,
                                "' type='xs:int' substitutionGroup='h'/>");
              });
     },
     [](int n) { return message(elements(n, "x")); }},
    {"AttributesThatAreBadOrUnknown", 50,
     [](int n) {
       return "<xs:element name='m'><xs:complexType>" +
              times(n,
                    [](int number) {
                      return numbered("<xs:attribute name='a", number, "' type='xs:int'/>");
                    }) +
              "</xs:complexType></xs:element>";
     },
     [](int n) {
       return "<m" +
              times(n,
                    [](int number) {
                      return numbered(" a", number, "='x'") + numbered(" b", number, "=''");
                    }) +
              "/>";
     }},
    {"KeysTwiceAndReferencesWithoutOne", 200,
     [](int) {
       std::string strModel = modelOf("sequence",
                                      "<xs:element name='k' type='xs:int' maxOccurs='unbounded'/>"
                                      "<xs:element name='r' type='xs:int' maxOccurs='unbounded'/>");
       strModel.insert(strModel.size() - 13,
                       "<xs:key name='key'><xs:selector xpath='k'/><xs:field xpath='.'/></xs:key>"
                       "<xs:keyref name='ref' refer='key'><xs:selector xpath='r'/>"
                       "<xs:field xpath='.'/></xs:keyref>");
       return strModel;
     },
     [](int n) {
       const auto text = [](const char* name, int first) {
         return [=](int number) {
           return numbered(name, first + number, name[1] == 'k' ? "</k>" : "</r>");
         };
       };
       return message(times(n, text("<k>", 0)) + times(n, text("<k>", 0)) +
                      times(n, text("<r>", n)));
     }},
    {"WhatAWildcardAdmits", 200,
     [](int) {
       return modelOf("sequence",
                      "<xs:any processContents='lax' namespace='##other' "
                      "minOccurs='0' maxOccurs='unbounded'/>" +
                          ints(1, ""));
     },
     [](int n) { return message(times(n, "<o:x xmlns:o='urn:o'/>") + times(n, "<e0>1</e0>")); }},
    {"ElementsWithinEachOther", 60,
     [](int) {
       return modelOf("sequence",
                      "<xs:element ref='m' minOccurs='0' maxOccurs='2'/>"
                      "<xs:element name='z' type='xs:int' minOccurs='0'/>");
     },
     [](int n) { return times(n, "<m><z>x</z>") + times(n, "</m>"); }},
};

class CountedGrowth : public testing::TestWithParam<Shape> {};

TEST_P(CountedGrowth, IsLinearFor) {
  workOf(GetParam(), GetParam().size);  // what the first of a process alone does is not counted
  const Work once = workOf(GetParam(), GetParam().size);
  const Work twice = workOf(GetParam(), 2 * GetParam().size);
  const Work fourTimes = workOf(GetParam(), 4 * GetParam().size);
  // What is the same for every size is in neither difference, but for some thousand blocks by
  // chance: tables by address take other ways in each process.
  const auto growth = [](std::uint64_t lngFrom, std::uint64_t lngTo) {
    return lngTo > lngFrom ? static_cast<std::int64_t>(lngTo - lngFrom) : 0;
  };
  EXPECT_LE(growth(twice.lngForSchema, fourTimes.lngForSchema),
            growth(once.lngForSchema, twice.lngForSchema) * 5 / 2 + 5000);
  EXPECT_LE(growth(twice.lngForMessage, fourTimes.lngForMessage),
            growth(once.lngForMessage, twice.lngForMessage) * 5 / 2 + 5000);
}

INSTANTIATE_TEST_SUITE_P(Shapes, CountedGrowth, testing::ValuesIn(kShapes),
                         [](const auto& shape) { return std::string(shape.param.name); });

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
