#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Items.h"
#include "SchemaTesting.h"

// What the tests share that compare the reader with another validator.

namespace Varnel_Tolv_XML_Creation {

inline constexpr const char* kProgram = "/usr/bin/SAX2Count";  // Debian: libxerces-c-samples

/// What a validator has to say of one message.
struct Verdict {
  bool blnSchemaRefused = false;  // nothing else counts then
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
  std::string strFile;
  std::istringstream lines(strOutput);
  int lngLine = 0;
  for (std::string strLine; std::getline(lines, strLine);) {
    constexpr std::string_view kFile = "==Parsing== ";
    if (strLine.starts_with(kFile)) {
      strFile = strLine.substr(kFile.size());
      verdict = &verdicts[strFile];
    }
    const std::size_t at = strLine.find(", line ");
    if (verdict && (strLine.starts_with("Error at file") || strLine.starts_with("Fatal Error"))) {
      lngLine = at == std::string::npos ? 0 : std::stoi(strLine.substr(at + 7));
      if (strLine.find(strFile) == std::string::npos) verdict->blnSchemaRefused = true;
    }
    if (!verdict || !strLine.starts_with("  Message: ")) continue;
    verdict->blnValid = false;
    bool blnValue = true;
    for (const char* other :
         {"no declaration found", "for content model", "in content model", "by content model",
          "is not declared for element", "missing required attribute", "identity constraint",
          "is nil and must be empty", "specified for non-nillable", "is abstract",
          "grammar not found for namespace", "xsi:type"}) {
      blnValue = blnValue && strLine.find(other) == std::string::npos;
    }
    if (blnValue) verdict->badValues.insert(lngLine);
  }
  return verdicts;
}

/// A number from the environment, for other and longer runs.
inline unsigned long fromEnvironment(const char* name, unsigned long lngUsual) {
  const char* value = std::getenv(name);
  return value ? std::stoul(value) : lngUsual;
}

/// Whether the first tag of a line, counted from 1, is an end tag.
inline bool isEndTag(std::string_view strText, int lngLine) {
  for (; lngLine > 1; --lngLine) strText.remove_prefix(strText.find('\n') + 1);
  return strText.substr(strText.find('<'), 2) == "</";
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
    Verdict other = others.at(paths[number]);
    // It repeats bad values at the end of an element whose keys they are.
    std::erase_if(other.badValues,
                  [&](int lngLine) { return isEndTag(messages[number], lngLine); });
    EXPECT_EQ(own.blnValid, other.blnValid) << messages[number];
    EXPECT_EQ(own.badValues, other.badValues) << messages[number];
    lngValid += own.blnValid ? 1 : 0;
    lngBadValues += own.badValues.size();
  }
  EXPECT_GT(lngValid, lngMinValid);
  EXPECT_GT(lngBadValues, lngMinBadValues);
}

}  // namespace Varnel_Tolv_XML_Creation
