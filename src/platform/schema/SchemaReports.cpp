#include "platform/schema/SchemaReports.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <map>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kNewLine = "\r\n";

bool isUndeclaredAttribute(int code) {
  return code == XML_SCHEMAV_CVC_COMPLEX_TYPE_3_2_1 || code == XML_SCHEMAV_CVC_COMPLEX_TYPE_3_2_2 ||
         code == XML_SCHEMAV_CVC_TYPE_3_1_1;
}

bool isTextError(int code) {
  return code == XML_SCHEMAV_CVC_COMPLEX_TYPE_2_1 || code == XML_SCHEMAV_CVC_COMPLEX_TYPE_2_3 ||
         code == XML_SCHEMAV_CVC_ELT_3_2_1;
}

std::string_view facetOf(int code) {
  switch (code) {
    case XML_SCHEMAV_CVC_LENGTH_VALID:
      return "Length";
    case XML_SCHEMAV_CVC_MINLENGTH_VALID:
      return "MinLength";
    case XML_SCHEMAV_CVC_MAXLENGTH_VALID:
      return "MaxLength";
    case XML_SCHEMAV_CVC_MININCLUSIVE_VALID:
      return "MinInclusive";
    case XML_SCHEMAV_CVC_MAXINCLUSIVE_VALID:
      return "MaxInclusive";
    case XML_SCHEMAV_CVC_MINEXCLUSIVE_VALID:
      return "MinExclusive";
    case XML_SCHEMAV_CVC_MAXEXCLUSIVE_VALID:
      return "MaxExclusive";
    case XML_SCHEMAV_CVC_TOTALDIGITS_VALID:
      return "TotalDigits";
    case XML_SCHEMAV_CVC_FRACTIONDIGITS_VALID:
      return "FractionDigits";
    case XML_SCHEMAV_CVC_PATTERN_VALID:
      return "Pattern";
    case XML_SCHEMAV_CVC_ENUMERATION_VALID:
      return "Enumeration";
    default:
      return {};
  }
}

/// What is wrong with one value: the facets that failed, each once, and the value.
class ValueFault {
 public:
  void add(int code) {
    if (lngCode_ == 0) lngCode_ = code;
    const std::string_view strFacet = facetOf(code);
    if (strFacet.empty()) return;
    std::string strSentence = std::string(strFacet) + " constraint failed." + std::string(kNewLine);
    if (strFacets_.find(strSentence) == std::string::npos) strFacets_ += strSentence;
  }

  bool any() const { return lngCode_ != 0; }

  SchemaReport report(std::string_view strKind, std::string_view strName) const {
    return {strFacets_ + "The " + std::string(strKind) + ": '" + std::string(strName) +
                "'  has an invalid value according to its data type.",
            lngCode_};
  }

 private:
  std::string strFacets_;
  std::int32_t lngCode_ = 0;
};

SchemaReport otherFault(std::string_view strQName, std::int32_t lngCode) {
  return {"The element '" + std::string(strQName) + "' does not conform to the DTD/Schema.",
          lngCode};
}

SchemaReport contentReport(std::string_view strSentence, const NextElements& expected,
                           std::int32_t lngCode) {
  std::string strMessage(strSentence);
  std::string strNames;
  for (const xmlChar* value : expected.values) {
    if (isWildcard(value)) continue;
    const std::string_view strValue = view(value);
    const std::size_t bar = strValue.find('|');
    if (!strNames.empty()) strNames += ", ";
    if (bar != std::string_view::npos) {
      strNames.append("{").append(strValue.substr(bar + 1)).append("}");
    }
    strNames += strValue.substr(0, bar);
  }
  if (!strNames.empty()) {
    strMessage.append(kNewLine).append("Expecting: ").append(strNames);
    strMessage.append(expected.blnComplete ? "." : ", ...");
  }
  return {std::move(strMessage), lngCode};
}

/// The reports on attributes, in the order in which these stand in the tag.
void addAttributeReports(const StartTag& tag, const std::vector<RaisedError>& raised,
                         SchemaReports& reports) {
  struct AttributeFault {
    int undeclared = 0;
    ValueFault value;
  };
  std::map<std::size_t, AttributeFault> faults;
  for (const RaisedError& error : raised) {
    if (!error.attribute) continue;
    AttributeFault& fault = faults[*error.attribute];
    if (isUndeclaredAttribute(error.code)) fault.undeclared = error.code;
    if (isValueError(error.code)) fault.value.add(error.code);
  }
  for (const auto& [index, fault] : faults) {
    const std::string strName = tag.attributeName(index);
    if (fault.undeclared != 0) {
      reports.push_back(
          {"The attribute '" + strName + "' on this element is not defined in the DTD/Schema.",
           fault.undeclared});
    }
    if (fault.value.any()) reports.push_back(fault.value.report("attribute", strName));
  }
}

}  // namespace

bool isValueError(int code) noexcept {
  return (code >= XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1 &&
          code <= XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_3) ||
         (code >= XML_SCHEMAV_CVC_FACET_VALID && code <= XML_SCHEMAV_CVC_ENUMERATION_VALID) ||
         (code >= XML_SCHEMAV_CVC_ELT_5_1_1 && code <= XML_SCHEMAV_CVC_ELT_5_2_2_2_2) ||
         (code >= XML_SCHEMAV_CVC_ATTRIBUTE_1 && code <= XML_SCHEMAV_CVC_ATTRIBUTE_4) ||
         code == XML_SCHEMAV_CVC_AU;
}

bool isContentError(int code) noexcept {
  return code == XML_SCHEMAV_ELEMENT_CONTENT || code == XML_SCHEMAV_CVC_ELT_1 ||
         code == XML_SCHEMAV_CVC_COMPLEX_TYPE_2_1 || code == XML_SCHEMAV_CVC_COMPLEX_TYPE_2_2 ||
         code == XML_SCHEMAV_CVC_TYPE_3_1_2 || code == XML_SCHEMAV_CVC_ELT_3_2_1;
}

SchemaReport undeclaredElement(std::string_view strQName, std::int32_t lngCode) {
  return {"The element '" + std::string(strQName) + "' is used but not declared in the DTD/Schema.",
          lngCode};
}

SchemaReport invalidContent(const NextElements& expected, std::int32_t lngCode) {
  return contentReport("Element content is invalid according to the DTD/Schema.", expected,
                       lngCode);
}

SchemaReport incompleteContent(const NextElements& expected) {
  return contentReport("Element content is incomplete according to the DTD/Schema.", expected,
                       XML_SCHEMAV_ELEMENT_CONTENT);
}

SchemaReports startReports(const StartTag& tag, bool blnDeclared,
                           const std::vector<RaisedError>& raised) {
  SchemaReports reports;
  const std::string strQName = tag.qualifiedName();
  const auto content = std::find_if(raised.begin(), raised.end(), [](const RaisedError& error) {
    return isContentError(error.code);
  });
  if (content != raised.end()) {
    reports.push_back(blnDeclared ? invalidContent({}, content->code)
                                  : undeclaredElement(strQName, content->code));
  }
  const auto isOther = [](const RaisedError& error) {
    if (isContentError(error.code) || !error.strMissing.empty()) return false;
    return !error.attribute || !(isUndeclaredAttribute(error.code) || isValueError(error.code));
  };
  const auto other = std::find_if(raised.begin(), raised.end(), isOther);
  if (other != raised.end()) reports.push_back(otherFault(strQName, other->code));

  addAttributeReports(tag, raised, reports);
  for (const RaisedError& error : raised) {
    if (error.strMissing.empty()) continue;
    reports.push_back({"Required attribute '" + error.strMissing + "' is missing.", error.code});
  }
  return reports;
}

SchemaReports textReports(std::string_view strQName, const std::vector<RaisedError>& raised) {
  if (raised.empty()) return {};
  const auto text = std::find_if(raised.begin(), raised.end(),
                                 [](const RaisedError& error) { return isTextError(error.code); });
  if (text == raised.end()) return {otherFault(strQName, raised.front().code)};
  return {{"Text is not allowed in this context according to DTD/Schema.", text->code}};
}

SchemaReports endReports(std::string_view strQName, const NextElements& expected,
                         const std::vector<RaisedError>& raised) {
  SchemaReports reports;
  ValueFault value;
  int incomplete = 0;
  int other = 0;
  for (const RaisedError& error : raised) {
    if (error.code == XML_SCHEMAV_ELEMENT_CONTENT) {
      incomplete = error.code;
    } else if (isValueError(error.code)) {
      value.add(error.code);
    } else if (other == 0) {
      other = error.code;
    }
  }
  if (incomplete != 0) reports.push_back(incompleteContent(expected));
  if (value.any()) reports.push_back(value.report("element", strQName));
  if (other != 0) reports.push_back(otherFault(strQName, other));
  return reports;
}

}  // namespace Varnel_Tolv_XML_Creation
