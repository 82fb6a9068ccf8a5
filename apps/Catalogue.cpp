#include "Catalogue.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "CannotRun.h"
#include "CatalogueFiles.h"
#include "Words.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr std::size_t kMostListed = 12;

/// The last step of a path, without its position.
std::string lastStep(std::string_view strPath) {
  strPath.remove_prefix(strPath.rfind('/') + 1);
  return std::string(strPath.substr(0, strPath.find('[')));
}

/// The code for a type of XML Schema: people make no difference between some of them.
std::string typeKey(std::string_view strType) {
  constexpr std::string_view kNumbers[] = {"decimal", "double", "float"};
  constexpr std::string_view kLimited[] = {
      "nonPositiveInteger", "negativeInteger", "long",          "int",         "short", "byte",
      "unsignedLong",       "unsignedInt",     "unsignedShort", "unsignedByte"};
  if (std::ranges::find(kNumbers, strType) != std::end(kNumbers)) return "type.number";
  if (std::ranges::find(kLimited, strType) != std::end(kLimited)) return "type.limitedInteger";
  return "type." + std::string(strType);
}

/// A name without "{uri}" before it.
std::string_view localName(std::string_view strName) {
  return strName.substr(strName.rfind('}') + 1);
}

}  // namespace

Catalogue::Catalogue(std::string_view strJson) {
  const nlohmann::json texts = nlohmann::json::parse(strJson);
  for (const auto& [strKey, text] : texts.items()) texts_.emplace(strKey, text.get<std::string>());
}

const Catalogue::Catalogues& Catalogue::all() {
  static const Catalogues catalogues = [] {
    Catalogues made;
    for (const CatalogueFile& file : catalogueFiles()) {
      made.emplace(file.strLanguage, Catalogue(file.strJson));
    }
    return made;
  }();
  return catalogues;
}

const Catalogue* Catalogue::known(std::string_view strTag) {
  const auto found = all().find(lowerCase(strTag.substr(0, strTag.find('-'))));
  return found == all().end() ? nullptr : &found->second;
}

const Catalogue& Catalogue::of(std::string_view strLanguage) {
  const auto found = all().find(strLanguage);
  if (found != all().end()) return found->second;
  std::string strKnown;
  for (const auto& [strName, catalogue] : all()) {
    strKnown.append(strKnown.empty() ? "" : ", ").append(strName);
  }
  throw CannotRun("--language: \"" + std::string(strLanguage) + "\" is none of " + strKnown);
}

std::string Catalogue::filled(const std::string& strKey, const Values& values) const {
  return filledText(texts_.at(strKey), values);
}

/// Begins with a capital, as far as the first letter is the catalogue's own and an ASCII one.
std::string Catalogue::filledAtPlace(const std::string& strKey, const Values& values) const {
  constexpr std::string_view kPlace = "{place}: ";
  std::string_view strText = texts_.at(strKey);
  if (!strText.starts_with(kPlace)) return filledText(strText, values);
  strText.remove_prefix(kPlace.size());
  std::string strFilled = filledText(strText, values);
  if (strText.front() != '{' && strFilled.front() >= 'a' && strFilled.front() <= 'z') {
    strFilled.front() = static_cast<char>(strFilled.front() - 'a' + 'A');
  }
  return strFilled;
}

std::string Catalogue::filledText(std::string_view strText, const Values& values) const {
  std::string strFilled;
  for (std::size_t at = 0; at < strText.size();) {
    const std::size_t lngOpen = std::min(strText.find('{', at), strText.size());
    strFilled.append(strText, at, lngOpen - at);
    if (lngOpen == strText.size()) break;
    const std::size_t lngClose = strText.find('}', lngOpen);
    strFilled += values.at(std::string(strText.substr(lngOpen + 1, lngClose - lngOpen - 1)));
    at = lngClose + 1;
  }
  return strFilled;
}

std::string Catalogue::place(const Values& values) const {
  if (values.at("question").empty()) return filled("place.element", values);
  if (!values.at("column").empty()) return filled("place.cell", values);
  return filled(values.at("row").empty() ? "place.question" : "place.row", values);
}

template <class Names>
std::string Catalogue::listed(const Names& names) const {
  std::string strList;
  for (std::size_t at = 0; at < names.size() && at < kMostListed; ++at) {
    strList.append(strList.empty() ? "" : ", ").append(localName(names[at]));
  }
  return names.size() > kMostListed ? filled("list.more", {{"list", strList}}) : strList;
}

/// The most particular text that there is for it.
std::string Catalogue::keyOf(const SchemaViolation& violation) const {
  const std::string strKey = "violation." + std::string(violationKindName(violation.kind));
  if (const std::string strByCause = strKey + '.' + violation.cause; knows(strByCause)) {
    return strByCause;
  }
  switch (violation.kind) {
    case ViolationKind::missingChild:
    case ViolationKind::unexpectedChild:
      if (!violation.questionId.empty()) return strKey + ".question";
      return violation.expected.empty() ? strKey + ".unknown" : strKey;
    case ViolationKind::value:
    case ViolationKind::attributeValue: {
      if (violation.value.empty()) return strKey + ".empty";
      const std::string strFacet =
          strKey + '.' + (violation.type.empty() ? violation.facet : typeKey(violation.type));
      const bool blnNothingToName = violation.facet == "enumeration" && violation.allowed.empty();
      if (!knows(strFacet) || blnNothingToName) return strKey;
      const std::string strOfOne = strFacet + ".one";
      return violation.limit == "1" && knows(strOfOne) ? strOfOne : strFacet;
    }
    default:
      return strKey;
  }
}

Catalogue::Values Catalogue::valuesOf(const SchemaViolation& violation) const {
  const auto either = [](const std::string& strText, const std::string& strElse) {
    return strText.empty() ? strElse : strText;
  };
  Values values{{"question", either(violation.questionText, violation.questionId)},
                {"row", violation.rowIndex},
                {"column", either(violation.columnText, violation.columnId)},
                {"element", lastStep(violation.path)},
                {"attribute", std::string(localName(violation.attribute))},
                {"value", violation.value},
                {"limit", violation.limit},
                {"allowed", listed(violation.allowed)},
                {"expected", listed(violation.expected)}};
  values.emplace("place", place(values));
  return values;
}

std::string Catalogue::reason(const AnswerLoss& loss) const {
  const std::string strKey = "loss." + loss.reason;
  return knows(strKey) ? filled(strKey, {}) : loss.reason;
}

/// With the ids behind the labels for those who look for them.
Catalogue::Values Catalogue::valuesOf(const AnswerLoss& loss, bool blnWithIds) const {
  const auto named = [&](const std::string& strId, const std::string& strLabel) {
    if (strLabel.empty()) return strId;
    return blnWithIds ? strLabel + " (" + strId + ')' : strLabel;
  };
  Values values{{"question", named(loss.questionId, loss.questionText)},
                {"row", loss.rowIndex},
                {"column", named(loss.columnId, loss.columnText)},
                {"element", ""},
                {"reason", reason(loss)}};
  values.emplace("place", place(values));
  return values;
}

std::string Catalogue::keyForPerson(const AnswerLoss& loss) const {
  const std::string strKey = "loss." + loss.reason + ".form";
  return knows(strKey) ? strKey : "loss";
}

std::string Catalogue::text(const SchemaViolation& violation) const {
  return filled(keyOf(violation), valuesOf(violation));
}

std::string Catalogue::text(const AnswerLoss& loss) const {
  return filled("loss", valuesOf(loss, true));
}

std::string Catalogue::textForPerson(const SchemaViolation& violation) const {
  return text(violation);
}

std::string Catalogue::textForPerson(const AnswerLoss& loss) const {
  return filled(keyForPerson(loss), valuesOf(loss, false));
}

std::string Catalogue::textAtPlace(const SchemaViolation& violation) const {
  return filledAtPlace(keyOf(violation), valuesOf(violation));
}

std::string Catalogue::textAtPlace(const AnswerLoss& loss) const {
  return filledAtPlace(keyForPerson(loss), valuesOf(loss, false));
}

std::string Catalogue::text(const RunReport& report) const {
  return filled("verdict." + std::string(verdictName(report.verdict)), {{"reason", report.reason}});
}

std::string withTexts(const std::string& strResult, const RunReport& report,
                      const Catalogue& catalogue) {
  using Json = nlohmann::ordered_json;
  Json result = Json::parse(strResult);
  Json& reported = result["report"];
  const auto addEach = [&](const char* key, const auto& entries) {
    Json& list = reported[key];
    for (std::size_t at = 0; at < entries.size(); ++at) {
      list[at]["text"] = catalogue.text(entries[at]);
    }
  };
  addEach("violations", report.violations);
  addEach("losses", report.losses);
  reported["text"] = catalogue.text(report);
  return result.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}
