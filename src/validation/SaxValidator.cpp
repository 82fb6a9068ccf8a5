#include "validation/SaxValidator.h"

#include <utility>

#include "config/Utility.h"
#include "platform/schema/SchemaReport.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "SaxValidator";

/// A value that is too short and too long, by two facets, counts as too short.
SchemaErrorKind kindOf(const SchemaReport& report) noexcept {
  switch (report.kind) {
    case ViolationKind::missingChild:
      return kContentIncomplete;
    case ViolationKind::unexpectedChild:
      return kContentInvalid;
    case ViolationKind::undeclaredElement:
      return kUndeclaredElement;
    case ViolationKind::text:
      return kTextNotAllowed;
    case ViolationKind::undeclaredAttribute:
      return kUndeclaredAttribute;
    case ViolationKind::value:
    case ViolationKind::attributeValue:
      if (report.failed(Facet::minLength)) return kTooShort;
      if (report.failed(Facet::maxLength)) return kTooLong;
      return report.kind == ViolationKind::value ? kInvalidValue : kUnclassified;
    case ViolationKind::missingAttribute:
    case ViolationKind::identity:
    case ViolationKind::other:
      break;
  }
  return kUnclassified;
}

}  // namespace

void SaxValidator::startElement(std::string_view /*strNamespaceURI*/,
                                std::string_view /*strLocalName*/, std::string_view strQName,
                                const SaxAttributes& oAttributes) {
  here_ = placeBelow(strQName);
  ended_ = nullptr;
  for (std::size_t index = 0; index < kCount; ++index) {
    started_[index] = oAttributes.getValueFromName("", kIdentifierNames[index]).value_or("");
    // deliberate: the first element at a path keeps its identifiers, those after it add none.
    if (here_->first[index].empty()) here_->first[index] = started_[index];
  }
  inForce_ = &started_;
}

SaxValidator::Place* SaxValidator::placeBelow(std::string_view strQName) {
  Place*& likely = ended_ ? ended_->followedBy : here_->firstBelow;
  if (likely && likely->strName == strQName) return likely;
  const auto below = here_->below.find(strQName);
  if (below != here_->below.end()) return likely = below->second;
  Place& place = places_.emplace_back(&memory_, here_, strQName);
  here_->below.emplace(place.strName, &place);
  return likely = &place;
}

void SaxValidator::endElement(std::string_view /*strNamespaceURI*/,
                              std::string_view /*strLocalName*/, std::string_view strQName) {
  strLastElement_ = strQName;
  ended_ = here_;
  here_ = here_->above;
  inForce_ = &here_->first;
}

/// The names of the elements from the root down to the place, each behind a "/".
std::string SaxValidator::elementPath() const {
  std::vector<const Place*> places;
  for (const Place* place = here_; place->above; place = place->above) places.push_back(place);
  std::string strPath;
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    strPath.append("/").append((*place)->strName);
  }
  return strPath;
}

void SaxValidator::error(const SaxLocator& /*oLocator*/, const SchemaReport& report) {
  const SchemaErrorKind kind = kindOf(report);
  if (kind == kUndeclaredAttribute) return;
  const auto& [strQuestionId, strRowIndex, strColumnId] = *inForce_;
  std::string strPath = elementPath();
  trace(session_, kProcedure,
        {"error: ", report.strMessage, ", questionId: ", strQuestionId, ", rowIndex: ", strRowIndex,
         ", columnId: ", strColumnId});
  trace(session_, kProcedure, {"xpath: ", strPath});
  if (kind == kUndeclaredElement) strPath.append("/").append(report.strName);
  addError(kind, report.strMessage, std::move(strPath));
}

void SaxValidator::fatalError(const SaxLocator& oLocator, std::string_view strErrorMessage,
                              std::int32_t nErrorCode) {
  if (tracing(session_)) {
    trace(
        session_, kProcedure,
        {"fatalError: ", strErrorMessage, ", code ", std::to_string(nErrorCode), ", line ",
         std::to_string(oLocator.lineNumber), ", column ", std::to_string(oLocator.columnNumber)});
  }
  addError(kUnclassified, strErrorMessage, elementPath());
}

void SaxValidator::addError(SchemaErrorKind kind, std::string_view strErrorMessage,
                            std::string strPath) {
  const auto& [strQuestionId, strRowIndex, strColumnId] = *inForce_;
  SchemaValidationErr error;
  error.kind = kind;
  error.message = strErrorMessage;
  error.xpath = std::move(strPath);
  error.questionId = strQuestionId;
  error.rowIndex = strRowIndex;
  error.columnId = strColumnId;
  error.lastElement = strLastElement_;
  trace(session_, kProcedure, {"Adding error: ", strErrorMessage});
  errors_.push_back(std::move(error));
}

}  // namespace Varnel_Tolv_XML_Creation
