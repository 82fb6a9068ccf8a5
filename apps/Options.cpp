#include "Options.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "CannotRun.h"
#include "Deployment.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::optional<std::string> value(const OptionValues& values, std::string_view name) {
  const auto found = values.find(name);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

std::string text(const OptionValues& values, std::string_view name) {
  return value(values, name).value_or("");
}

bool flag(const OptionValues& values, std::string_view name) {
  return text(values, name) == "true";
}

DateOrder dateOrder(const OptionValues& values) {
  const std::string strOrder = value(values, "date-order").value_or("dmy");
  if (strOrder == "dmy") return DateOrder::dayMonthYear;
  if (strOrder == "mdy") return DateOrder::monthDayYear;
  if (strOrder == "ymd") return DateOrder::yearMonthDay;
  throw CannotRun("--date-order: \"" + strOrder + "\" is none of dmy, mdy, ymd");
}

bool fits(std::string_view strText, std::string_view strPattern) {
  if (strText.size() != strPattern.size()) return false;
  for (std::size_t at = 0; at < strText.size(); ++at) {
    const bool isDigit = strText[at] >= '0' && strText[at] <= '9';
    if (strPattern[at] == '0' ? !isDigit : strText[at] != strPattern[at]) return false;
  }
  return true;
}

std::optional<FixedClock> clock(const OptionValues& values) {
  const std::optional<std::string> strNow = value(values, "now");
  if (!strNow) return std::nullopt;
  if (fits(*strNow, "0000-00-00T00:00:00")) {
    // The library's own dates have a blank for the "T".
    std::string strDate = *strNow;
    strDate[10] = ' ';
    if (const auto now = parseDate(strDate, DateOrder::yearMonthDay)) return FixedClock(*now);
  }
  throw CannotRun("--now: \"" + *strNow + "\" is no moment of the form YYYY-MM-DDTHH:MM:SS");
}

/// The catalog.xml of the deployment; empty when it has none.
std::string schemaCatalog(const OptionValues& values) {
  const std::optional<std::string> strDirectory = value(values, "deployment");
  if (!strDirectory) return "";
  const std::filesystem::path catalog = std::filesystem::path(*strDirectory) / "catalog.xml";
  std::error_code error;  // what cannot be looked at is not there
  return std::filesystem::exists(catalog, error) ? catalog.string() : "";
}

}  // namespace

Options readOptions(OptionValues values) {
  std::optional<std::string> deploymentFile;
  if (const auto strDirectory = value(values, "deployment")) {
    deploymentFile = deploymentFileOf(*strDirectory);
    values.merge(readDeployment(*strDirectory));  // leaves what is there
  }
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
      .strSchemaCatalog = schemaCatalog(values),
      .deploymentFile = deploymentFile,
      .deploymentDirectory = text(values, "deployment"),
      .form = value(values, "form"),
      .pageDirectory = value(values, "page-dir").value_or("."),
      .blnContext = !flag(values, "no-context"),
      .blnServer = !flag(values, "no-server"),
      .dateOrder = dateOrder(values),
      .clock = clock(values),
      .parkOut = value(values, "park-out"),
      .sendOut = value(values, "send-out"),
      .result = value(values, "result"),
      .trace = value(values, "trace"),
      .blnReport = flag(values, "report") || flag(values, "explain"),
      .blnExplain = flag(values, "explain"),
      .blnStrict = flag(values, "strict"),
  };
}
