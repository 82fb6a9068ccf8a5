#include "interface/Deployment.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <variant>

#include "platform/json/JsonObject.h"
#include "platform/text/Ascii.h"
#include "platform/text/FileNames.h"
#include "platform/xml/ReadXmlFile.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kForm = "form";
constexpr std::string_view kStandardStream = "-";
constexpr std::size_t kMaxBytes = std::size_t{1} << 20;

constexpr auto kKeys = std::to_array<DeploymentKey>({
    {"template", DeploymentValueKind::file},      {"object-mapper", DeploymentValueKind::file},
    {"schema-types", DeploymentValueKind::file},  {"hidden-fields", DeploymentValueKind::file},
    {"namespaces", DeploymentValueKind::file},    {"questions", DeploymentValueKind::file},
    {"reference", DeploymentValueKind::file},     {"submit", DeploymentValueKind::flag},
    {"validate", DeploymentValueKind::flag},      {"object-list", DeploymentValueKind::file},
    {"protocol-info", DeploymentValueKind::file}, {"schema-url", DeploymentValueKind::text},
    {"schema-uri", DeploymentValueKind::text},    {"form", DeploymentValueKind::file},
    {"page-dir", DeploymentValueKind::file},      {"no-context", DeploymentValueKind::flag},
    {"no-server", DeploymentValueKind::flag},     {"date-order", DeploymentValueKind::text},
    {"now", DeploymentValueKind::text},
});

[[noreturn]] void refuse(const std::string& strReason) {
  throw RuntimeError(kInvalidArgument, strReason);
}

/// What a message about a value begins with, its file, and ends with, its line; both empty for one
/// that comes from no file.
struct Place {
  std::string strFile;
  std::string_view strJson, strKey;

  std::string line() const {
    const auto lines = jsonMemberLines(strJson);
    const auto line = lines.find(strKey);
    return line == lines.end() ? "" : " (line " + std::to_string(line->second) + ')';
  }
};

const DeploymentKey& keyNamed(std::string_view strName, const Place& place = {}) {
  const auto* const key = std::ranges::find(kKeys, strName, &DeploymentKey::name);
  if (key == kKeys.end()) {
    refuse(place.strFile + '"' + std::string(strName) + "\" is an unknown key" + place.line());
  }
  return *key;
}

std::string resolved(const std::filesystem::path& folder, std::string_view strKey,
                     const std::string& strName) {
  if (strName.empty() || isFileUrl(strName)) return strName;
  if (strName == kStandardStream && strKey == kForm) return strName;
  return (folder / strName).string();  // an absolute name stays
}

std::optional<std::string> value(const DeploymentValues& values, std::string_view name) {
  const auto found = values.find(name);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

std::string text(const DeploymentValues& values, std::string_view name) {
  return value(values, name).value_or("");
}

bool flag(const DeploymentValues& values, std::string_view name) {
  const std::string strFlag = value(values, name).value_or("false");
  if (strFlag != "true" && strFlag != "false") {
    refuse(std::string(name) + ": \"" + strFlag + "\" is neither true nor false");
  }
  return strFlag == "true";
}

DateOrder dateOrder(const DeploymentValues& values, const Place& place = {}) {
  const std::string strOrder = value(values, "date-order").value_or("dmy");
  if (strOrder == "dmy") return DateOrder::dayMonthYear;
  if (strOrder == "mdy") return DateOrder::monthDayYear;
  if (strOrder == "ymd") return DateOrder::yearMonthDay;
  refuse(place.strFile + "date-order: \"" + strOrder + "\" is none of dmy, mdy, ymd" +
         place.line());
}

bool fits(std::string_view strText, std::string_view strPattern) {
  if (strText.size() != strPattern.size()) return false;
  for (std::size_t at = 0; at < strText.size(); ++at) {
    if (strPattern[at] == '0' ? !isDigit(strText[at]) : strText[at] != strPattern[at]) return false;
  }
  return true;
}

std::optional<FixedClock> clock(const DeploymentValues& values, const Place& place = {}) {
  const std::optional<std::string> strNow = value(values, "now");
  if (!strNow) return std::nullopt;
  if (fits(*strNow, "0000-00-00T00:00:00")) {
    // The library's own dates have a blank for the "T".
    std::string strDate = *strNow;
    strDate[10] = ' ';
    if (const auto now = parseDate(strDate, DateOrder::yearMonthDay)) return FixedClock(*now);
  }
  refuse(place.strFile + "now: \"" + *strNow + "\" is no moment of the form YYYY-MM-DDTHH:MM:SS" +
         place.line());
}

/// The catalog.xml of the folder; empty when it has none.
std::string schemaCatalog(const std::string& strFolder) {
  if (strFolder.empty()) return "";
  const std::filesystem::path catalog = std::filesystem::path(strFolder) / "catalog.xml";
  std::error_code error;  // what cannot be looked at is not there
  return std::filesystem::exists(catalog, error) ? catalog.string() : "";
}

}  // namespace

std::span<const DeploymentKey> deploymentKeys() { return kKeys; }

DeploymentValues deploymentValues(std::string_view strJson, const std::string& strFile,
                                  std::string_view strFolderKey) {
  const std::string strWhere = strFile + ": ";
  std::string strReason;
  const std::optional<JsonObject> object = readJsonObject(strJson, strReason);
  if (!object) refuse(strWhere + strReason);

  const auto placeOf = [&](std::string_view strKey) { return Place{strWhere, strJson, strKey}; };

  const std::filesystem::path folder = std::filesystem::path(strFile).parent_path();
  DeploymentValues values;
  for (const auto& [strKey, value] : *object) {
    const bool blnFolder = !strFolderKey.empty() && strKey == strFolderKey;
    const DeploymentValueKind kind =
        blnFolder ? DeploymentValueKind::file : keyNamed(strKey, placeOf(strKey)).kind;
    if (kind == DeploymentValueKind::flag) {
      const bool* const flag = std::get_if<bool>(&value);
      if (flag == nullptr) {
        refuse(strWhere + '"' + strKey + "\" is no Boolean" + placeOf(strKey).line());
      }
      values[strKey] = *flag ? "true" : "false";
      continue;
    }
    const std::string* const strText = std::get_if<std::string>(&value);
    if (strText == nullptr) {
      refuse(strWhere + '"' + strKey + "\" is no text" + placeOf(strKey).line());
    }
    values[strKey] =
        kind == DeploymentValueKind::file ? resolved(folder, strKey, *strText) : *strText;
  }
  static_cast<void>(dateOrder(values, placeOf("date-order")));
  static_cast<void>(clock(values, placeOf("now")));
  return values;
}

std::map<std::string, std::size_t, std::less<>> deploymentLines(std::string_view strJson) {
  std::string strReason;
  if (!readJsonObject(strJson, strReason)) return {};
  return jsonMemberLines(strJson);
}

Deployment deploymentWith(const DeploymentValues& values, const std::string& strFolder) {
  return {
      .strTemplateXML = text(values, "template"),
      .strMsgObjectXML = text(values, "object-mapper"),
      .strSchemaTypeMapperXML = text(values, "schema-types"),
      .strHiddenFieldXML = text(values, "hidden-fields"),
      .strNamespaceXML = text(values, "namespaces"),
      .strQuestionsXmlPath = text(values, "questions"),
      .strReferenceXmlPath = text(values, "reference"),
      .blnSubmit = flag(values, "submit"),
      .blnValidateAgainstSchema = flag(values, "validate"),
      .objectList = value(values, "object-list"),
      .protocolInfo = value(values, "protocol-info"),
      .strSchemaUrl = text(values, "schema-url"),
      .strSchemaUri = text(values, "schema-uri"),
      .strSchemaCatalog = schemaCatalog(strFolder),
      .form = value(values, kForm),
      .pageDirectory = value(values, "page-dir").value_or("."),
      .blnContext = !flag(values, "no-context"),
      .blnServer = !flag(values, "no-server"),
      .dateOrder = dateOrder(values),
      .clock = clock(values),
  };
}

Deployment openDeployment(const std::optional<std::string>& folder, DeploymentValues values) {
  for (const auto& [strKey, strValue] : values) static_cast<void>(keyNamed(strKey));
  if (!folder) return deploymentWith(values, "");
  const std::string strFile = (std::filesystem::path(*folder) / "deployment.json").string();
  ParseError error;
  const std::optional<std::string> strJson = readXmlFile(strFile, kMaxBytes, error);
  if (!strJson) refuse(strFile + ": " + error.reason);
  values.merge(deploymentValues(*strJson, strFile));  // leaves what is there
  return deploymentWith(values, *folder);
}

}  // namespace Varnel_Tolv_XML_Creation
