#include "SchemaLimits.h"

#include <algorithm>
#include <array>

#include "Words.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr std::size_t kListedChoices = 300;
constexpr std::size_t kListedPatterns = 5;

constexpr auto kWholeNumbers = std::to_array<std::string_view>(
    {"integer", "nonPositiveInteger", "negativeInteger", "long", "int", "short", "byte",
     "nonNegativeInteger", "unsignedLong", "unsignedInt", "unsignedShort", "unsignedByte",
     "positiveInteger"});

bool isWholeNumber(const ValueRules& rules) {
  return std::ranges::find(kWholeNumbers, rules.strBuiltIn) != kWholeNumbers.end();
}

std::string typeWords(const ValueRules& rules) {
  if (isWholeNumber(rules)) return "whole number";
  if (rules.strBuiltIn == "decimal") return "number";
  if (rules.strBuiltIn == "boolean") return "true or false";
  if (rules.strPrimitive == "string") return "text";
  return rules.strBuiltIn;
}

std::string unitOf(const ValueRules& rules) {
  if (rules.variety == ValueRules::Variety::list) return "items";
  const bool blnBinary = rules.strPrimitive == "hexBinary" || rules.strPrimitive == "base64Binary";
  return blnBinary ? "bytes" : "characters";
}

void addLengths(const ValueRules& rules, std::vector<std::string>& words) {
  const std::optional<std::size_t> lngMin = rules.minLength();
  const std::optional<std::size_t> lngMax = rules.maxLength();
  const std::string strUnit = ' ' + unitOf(rules);
  if (lngMin && lngMax && *lngMin == *lngMax) {
    words.push_back("exactly " + std::to_string(*lngMin) + strUnit);
  } else if (lngMin && *lngMin > 0 && lngMax) {
    words.push_back(std::to_string(*lngMin) + " to " + std::to_string(*lngMax) + strUnit);
  } else if (lngMax) {
    words.push_back("at most " + std::to_string(*lngMax) + strUnit);
  } else if (lngMin && *lngMin > 0) {
    words.push_back("at least " + std::to_string(*lngMin) + strUnit);
  }
}

void addFacets(const ValueRules& rules, std::vector<std::string>& words) {
  struct Word {
    const char* facet;
    const char* before;
    const char* behind;
  };
  static constexpr auto kWords = std::to_array<Word>({{"minInclusive", "at least ", ""},
                                                      {"minExclusive", "more than ", ""},
                                                      {"maxInclusive", "at most ", ""},
                                                      {"maxExclusive", "less than ", ""},
                                                      {"totalDigits", "at most ", " digits"},
                                                      {"fractionDigits", "at most ", " decimals"}});
  for (const Word& word : kWords) {
    const auto value = rules.facet(word.facet);
    const bool blnImplied =
        std::string_view(word.facet) == "fractionDigits" && isWholeNumber(rules);
    if (value && !blnImplied) words.push_back(word.before + shortened(*value, 100) + word.behind);
  }
}

void addPatterns(const ValueRules& rules, std::vector<std::string>& words) {
  for (std::size_t at = 0; at < std::min(rules.patterns.size(), kListedPatterns); ++at) {
    words.push_back("pattern " + shortened(rules.patterns[at], 200));
  }
}

}  // namespace

SchemaLimits schemaLimits(const ValueRules& rules) {
  SchemaLimits limits;
  if (rules.variety == ValueRules::Variety::atomic) {
    limits.words.push_back(typeWords(rules));
  } else {
    std::string strParts;
    for (const ValueRules& part : rules.parts) {
      if (strParts.size() > 200) break;
      strParts += (strParts.empty() ? "" : ", ") +
                  (part.variety == ValueRules::Variety::atomic ? typeWords(part) : "several");
    }
    const bool blnList = rules.variety == ValueRules::Variety::list;
    limits.words.push_back((blnList ? "list of: " : "one of: ") + strParts);
  }
  addLengths(rules, limits.words);
  addFacets(rules, limits.words);
  addPatterns(rules, limits.words);
  for (const std::string& strChoice : rules.enumeration) {
    if (limits.choices.size() == kListedChoices) {
      limits.words.push_back(std::to_string(rules.enumeration.size()) +
                             " values, of which the first are listed");
      break;
    }
    limits.choices.push_back(shortened(strChoice, 100));
  }
  return limits;
}
