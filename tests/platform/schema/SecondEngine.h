#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "SchemaTesting.h"

// What the tests share that compare the reader with another validator.

namespace Varnel_Tolv_XML_Creation {

inline constexpr const char* kProgram = "/usr/bin/SAX2Count";  // Debian: libxerces-c-samples

struct Item {
  std::string name;
  std::string value;
  std::string attributes;
  std::vector<Item> children;
};

/// The items that have children, `item` included.
inline void collectParents(Item& item, std::vector<Item*>& parents) {
  if (item.children.empty()) return;
  parents.push_back(&item);
  for (Item& child : item.children) collectParents(child, parents);
}

/// A child of some item below `item`, and its siblings.
struct Place {
  std::vector<Item>& siblings;
  std::vector<Item>::iterator at;
};

inline Place anyPlace(Item& item, std::mt19937& random) {
  std::vector<Item*> parents;
  collectParents(item, parents);
  std::vector<Item>& siblings = parents[random() % parents.size()]->children;
  return {siblings, siblings.begin() + static_cast<std::ptrdiff_t>(random() % siblings.size())};
}

/// How content is damaged, counted from 0; `place` has its item no longer afterwards.
constexpr unsigned kWaysToDisturb = 4;
inline void disturb(const Place& place, unsigned lngWay, std::mt19937& random) {
  auto& [siblings, at] = place;
  switch (lngWay) {
    case 0:
      siblings.erase(at);
      break;
    case 1:
      siblings.insert(at, Item(*at));
      break;
    case 2:
      std::iter_swap(at,
                     siblings.begin() + static_cast<std::ptrdiff_t>(random() % siblings.size()));
      break;
    default:
      siblings.insert(at, {"unknown", "x", "", {}});
  }
}

inline void serialise(const Item& item, std::string& strText) {
  strText.append("<").append(item.name).append(item.attributes).append(">");
  if (!item.children.empty()) strText += "\n";
  for (const Item& child : item.children) serialise(child, strText);
  strText.append(item.value).append("</").append(item.name).append(">\n");
}

/// What a validator has to say of one message.
struct Verdict {
  bool blnValid = true;
  std::set<int> badValues;  // the lines that they end in; each element without children has its own
  bool operator==(const Verdict&) const = default;
};

inline Verdict readersVerdict(const SchemaCollection& colSchemas, const std::string& strText) {
  class Lines : public Recorder {
   public:
    void error(const SaxLocator& oLocator, std::string_view strErrorMessage,
               std::int32_t /*nErrorCode*/) override {
      verdict.blnValid = false;
      if (strErrorMessage.find("has an invalid value") == std::string_view::npos) return;
      verdict.badValues.insert(oLocator.lineNumber);
    }
    Verdict verdict;
  } recorder;
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->schemas(colSchemas);
  reader->errorHandler(&recorder);
  EXPECT_FALSE(reader->parse(strText));
  return recorder.verdict;
}

inline std::string outputOf(const std::string& strCommand) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(strCommand.c_str(), "r"), pclose);
  std::string strOutput;
  std::array<char, 65536> buffer{};
  while (const std::size_t got = fread(buffer.data(), 1, buffer.size(), pipe.get())) {
    strOutput.append(buffer.data(), got);
  }
  return strOutput;
}

/// The other validator's verdict on each of the files that `strList` names.
inline std::map<std::string, Verdict> otherVerdicts(const std::string& strList) {
  const std::string strOutput =
      outputOf(std::string(kProgram) + " -v=always -f -l '" + strList + "' 2>&1");
  std::map<std::string, Verdict> verdicts;
  Verdict* verdict = nullptr;
  std::istringstream lines(strOutput);
  int lngLine = 0;
  for (std::string strLine; std::getline(lines, strLine);) {
    constexpr std::string_view kFile = "==Parsing== ";
    if (strLine.starts_with(kFile)) verdict = &verdicts[strLine.substr(kFile.size())];
    const std::size_t at = strLine.find(", line ");
    if (strLine.starts_with("Error at file") && at != std::string::npos) {
      lngLine = std::stoi(strLine.substr(at + 7));
    }
    if (!verdict || !strLine.starts_with("  Message: ")) continue;
    verdict->blnValid = false;
    bool blnValue = true;
    for (const char* other :
         {"no declaration found", "for content model", "in content model", "by content model",
          "is not declared for element", "missing required attribute"}) {
      blnValue = blnValue && strLine.find(other) == std::string::npos;
    }
    if (blnValue) verdict->badValues.insert(lngLine);
  }
  return verdicts;
}

/// Expects the same verdicts of both on every message. The comparison is worth nothing unless there
/// is much to agree on: that many valid messages, and that many bad values.
inline void expectAgreement(const SchemaDirectory& directory, const SchemaCollection& colSchemas,
                            const std::vector<std::string>& messages, std::size_t lngMinValid,
                            std::size_t lngMinBadValues) {
  std::string strList;
  std::vector<std::string> paths;
  for (std::size_t number = 0; number < messages.size(); ++number) {
    paths.push_back(directory.write("m" + std::to_string(number) + ".xml", messages[number]));
    strList += paths.back() + "\n";
  }
  const std::map<std::string, Verdict> others = otherVerdicts(directory.write("list", strList));
  ASSERT_EQ(others.size(), messages.size());
  std::size_t lngValid = 0;
  std::size_t lngBadValues = 0;
  for (std::size_t number = 0; number < messages.size(); ++number) {
    const Verdict own = readersVerdict(colSchemas, messages[number]);
    const Verdict& other = others.at(paths[number]);
    EXPECT_EQ(own.blnValid, other.blnValid) << messages[number];
    EXPECT_EQ(own.badValues, other.badValues) << messages[number];
    lngValid += own.blnValid ? 1 : 0;
    lngBadValues += own.badValues.size();
  }
  EXPECT_GT(lngValid, lngMinValid);
  EXPECT_GT(lngBadValues, lngMinBadValues);
}

}  // namespace Varnel_Tolv_XML_Creation
