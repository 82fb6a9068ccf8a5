#include "check/OptionFaults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/Words.h"
#include "platform/json/JsonObject.h"
#include "platform/xml/ReadXmlFile.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostBytes = 1024 * 1024;
constexpr std::string_view kBlanks = " \t\r\n";

struct Fault {
  std::size_t lngLine = 1;
  std::string strMessage, strHint;
};

/// The number behind the last occurrence of a word; 0 when there is none.
std::size_t numberBehind(std::string_view strReason, std::string_view strWord) {
  const std::size_t lngAt = strReason.rfind(strWord);
  std::size_t lngNumber = 0;
  if (lngAt != std::string_view::npos) {
    strReason.remove_prefix(lngAt + strWord.size());
    std::from_chars(strReason.begin(), strReason.end(), lngNumber);
  }
  return lngNumber;
}

/// Where a line begins, from 1.
std::size_t startOfLine(std::string_view strText, std::size_t lngLine) {
  std::size_t lngAt = 0;
  while (--lngLine > 0) {
    const std::size_t lngEnd = strText.find('\n', lngAt);
    if (lngEnd == std::string_view::npos) break;
    lngAt = lngEnd + 1;
  }
  return lngAt;
}

std::size_t lineAt(std::string_view strText, std::size_t lngAt) {
  const std::string_view strBefore = strText.substr(0, lngAt);
  return 1 + static_cast<std::size_t>(std::ranges::count(strBefore, '\n'));
}

/// What the reader says, and what is said of it here. Of what stands between two tokens the end of
/// the first is the place.
struct Wording {
  std::string_view strReason;
  const char *message, *hint;
  bool blnBetween = false;
};
constexpr auto kWordings = std::to_array<Wording>({
    {"not one JSON object", "It is no JSON object.", "Write one: {\"template\": \"...\", ...}."},
    {"UTF-8", "It is not UTF-8.", "Save the file as UTF-8."},
    {"backslash", "A backslash in a text begins an escape, and this is none.",
     "Write \"/\" in names of files, or two backslashes."},
    {"missing closing quote", "A text has no closing quotation mark.", "Write it."},
    {"control character", "A text has no closing quotation mark on its line.", "Write it."},
    {"unexpected end of input", "The file ends before its last \"}\".", "Write what is missing.",
     true},
    {"parsing object -", "A comma is missing behind this.", "Write one.", true},
    {"parsing object key", "Here a key in quotation marks is wanted.",
     "Write the key in double quotation marks."},
    {"parsing object separator", "A colon is missing behind the key.", "Write one.", true},
});

/// The reader's reason has line and column of the last letter that it took, and at the end words of
/// the text, which are looked at for nothing: they may be like its own.
Fault faultOf(std::string_view strText, std::string strReason) {
  // The reader takes the bytes of UTF-16 for letters.
  if (strText.starts_with("\xFF\xFE") || strText.starts_with("\xFE\xFF")) strReason = "UTF-8";
  strReason.resize(std::min(strReason.size(), strReason.find("; last read: ")));
  const std::size_t lngColumn = numberBehind(strReason, ", column ");
  std::size_t lngLine = std::max<std::size_t>(numberBehind(strReason, "at line "), 1);
  if (lngColumn == 0 && lngLine > 1) --lngLine;  // the last was the end of the line
  const std::size_t lngLast = std::min(
      startOfLine(strText, lngLine) + std::max<std::size_t>(lngColumn, 1) - 1, strText.size());
  const char last = lngLast < strText.size() ? strText[lngLast] : ' ';
  // The last letter of what stands before the token that ends there.
  std::size_t lngToken = lngLast;
  if (last == '"' && lngLast > 0) lngToken = strText.rfind('"', lngLast - 1);
  if (lngToken == std::string_view::npos) lngToken = lngLast;
  std::size_t lngBefore =
      lngToken == 0 ? std::string_view::npos : strText.find_last_not_of(kBlanks, lngToken - 1);
  if (lngBefore == std::string_view::npos) lngBefore = 0;

  const bool blnUnwanted = strReason.find("unexpected '") != std::string::npos;
  if (blnUnwanted && (last == '}' || last == ']') && strText[lngBefore] == ',') {
    return {lineAt(strText, lngBefore), "The comma at the end is one too many.", "Take it out."};
  }
  if (last == '/' || last == '#') {
    return {lngLine, "JSON has no comments.", "Take it out."};
  }
  for (const Wording& wording : kWordings) {
    if (strReason.find(wording.strReason) == std::string::npos) continue;
    const bool blnText = lngBefore < strText.size();
    return {wording.blnBetween && blnText ? lineAt(strText, lngBefore) : lngLine, wording.message,
            wording.hint};
  }
  return {lngLine, "It is no JSON here.", "Correct it at this line or shortly before it."};
}

/// Which key is meant where a reason names an unknown one first, and which there are.
std::string keyHint(std::string_view strReason, const std::vector<std::string>& keys) {
  if (keys.empty()) return "Write one of the keys that there are, or none.";
  const std::string_view strKey = strReason.substr(1, strReason.find('"', 1) - 1);
  const std::string* const meant = firstMeant(keys, strKey);
  std::string strHint = meant ? "Write " + inQuotes(*meant) + "; the keys are " : "The keys are ";
  for (const std::string& strKnown : keys) {
    strHint += strKnown + (&strKnown == &keys.back() ? "." : ", ");
  }
  return strHint;
}

/// What a host says of a key or its value, with the line at the end: "... (line 3)".
Fault refusedBy(std::string strReason, const std::vector<std::string>& keys) {
  const std::size_t lngLine = numberBehind(strReason, " (line ");
  strReason.resize(std::min(strReason.size(), strReason.rfind(" (line ")));
  std::string strHint = "Correct the value.";
  if (strReason.ends_with("unknown key")) strHint = keyHint(strReason, keys);
  if (strReason.ends_with("no text")) strHint = "Write a text in quotation marks.";
  if (strReason.ends_with("no Boolean")) strHint = "Write true or false, without quotation marks.";
  return {lngLine, strReason + '.', std::move(strHint)};
}

}  // namespace

void findOptionFaults(const ParsedDeployment& deployment, Findings& findings) {
  const DeploymentFiles& files = deployment.files;
  if (files.strOptionFile.empty()) return;
  ParseError none;  // that it cannot be read the host tells
  const auto strText = readXmlFile(files.strOptionFile, kMostBytes, none);
  if (!strText) return;
  std::string strReason;
  const bool blnJson = readJsonObject(*strText, strReason).has_value();
  if (blnJson && files.strOptionReason.empty()) return;
  Fault fault = blnJson ? refusedBy(files.strOptionReason, files.optionKeys)
                        : faultOf(*strText, std::move(strReason));
  findings.add(files.strOptionFile, fault.lngLine, "", std::move(fault.strMessage),
               std::move(fault.strHint));
}

}  // namespace Varnel_Tolv_XML_Creation
