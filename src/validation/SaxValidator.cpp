#include "validation/SaxValidator.h"

#include <array>
#include <cstdint>
#include <optional>

#include "config/Utility.h"
#include "platform/text/RegularExpression.h"
#include "platform/text/ShortText.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "SaxValidator";

struct KindPattern {
  RegularExpression pattern;
  SchemaErrorKind kind;
};

/// The sentences of the reader's reports. Of several that match, the last one tells the kind.
const std::array<KindPattern, 8>& kindPatterns() {
  static const std::array<KindPattern, 8> kPatterns = {{
      {RegularExpression("Element content is incomplete according to the DTD/Schema."),
       kContentIncomplete},
      {RegularExpression("Element content is invalid according to the DTD/Schema."),
       kContentInvalid},
      {RegularExpression("The element: '.*'  has an invalid value according to its data type."),
       kInvalidValue},
      {RegularExpression("MaxLength constraint failed."), kTooLong},
      {RegularExpression("MinLength constraint failed."), kTooShort},
      {RegularExpression("The element '(.*)' is used but not declared in the DTD/Schema."),
       kUndeclaredElement},
      {RegularExpression("Text is not allowed in this context according to DTD/Schema."),
       kTextNotAllowed},
      {RegularExpression("The attribute '.*' on this element is not defined in the DTD/Schema."),
       kUndeclaredAttribute},
  }};
  return kPatterns;
}

struct Classification {
  SchemaErrorKind kind = kUnclassified;
  std::string strUndeclaredElement;
};

Classification classify(std::string_view strErrorMessage) {
  Classification classification;
  for (const KindPattern& candidate : kindPatterns()) {
    const std::optional<RegularExpression::Match> match =
        candidate.pattern.Execute(strErrorMessage);
    if (!match) continue;
    classification.kind = candidate.kind;
    classification.strUndeclaredElement =
        match->subMatches.empty() ? std::string() : match->subMatches.front();
  }
  return classification;
}

}  // namespace

void SaxValidator::startElement(std::string_view /*strNamespaceURI*/,
                                std::string_view /*strLocalName*/, std::string_view strQName,
                                const SaxAttributes& oAttributes) {
  here_ = placeBelow(strQName);
  ended_ = nullptr;
  for (std::size_t index = 0; index < kCount; ++index) {
    const std::string_view strValue =
        oAttributes.mark(index, kIdentifierNames[index]).value_or(std::string_view());
    // deliberate: the first element at a path keeps its identifiers, those after it add none.
    std::string_view& strFirst = here_->first[index];
    if (strFirst.empty() && !strValue.empty()) strFirst = kept(strValue);
    // Most are those of the first element at the path, or of the element before.
    const bool blnFirst = isSame(strFirst, strValue);
    if (!blnFirst && !isSame(started_[index], strValue)) started_[index] = strValue;
    inForce_[index] = blnFirst ? strFirst : started_[index];
  }
}

SaxValidator::Place* SaxValidator::placeBelow(std::string_view strQName) {
  Place*& likely = ended_ ? ended_->followedBy : here_->firstBelow;
  if (likely && isSame(likely->strName, strQName)) return likely;
  Place& place = places_[{here_, strQName}];
  if (!place.above) place = {.above = here_, .strName = strQName};
  return likely = &place;
}

std::size_t SaxValidator::StepHash::operator()(const Step& step) const noexcept {
  return hashOf(step.strName) ^ reinterpret_cast<std::uintptr_t>(step.above);
}

std::string_view SaxValidator::kept(std::string_view strText) {
  char* const bytes = static_cast<char*>(memory_.allocate(strText.size(), 1));
  copyBytes(bytes, strText.data(), strText.size());
  return {bytes, strText.size()};
}

void SaxValidator::endElement(std::string_view /*strNamespaceURI*/,
                              std::string_view /*strLocalName*/, std::string_view strQName) {
  strLastElement_ = strQName;
  ended_ = here_;
  here_ = here_->above;
  inForce_ = here_->first;
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

void SaxValidator::error(const SaxLocator& /*oLocator*/, std::string_view strErrorMessage,
                         std::int32_t /*nErrorCode*/) {
  addError(strErrorMessage, true);
}

void SaxValidator::fatalError(const SaxLocator& oLocator, std::string_view strErrorMessage,
                              std::int32_t nErrorCode) {
  if (tracing(session_)) {
    trace(
        session_, kProcedure,
        {"fatalError: ", strErrorMessage, ", code ", std::to_string(nErrorCode), ", line ",
         std::to_string(oLocator.lineNumber), ", column ", std::to_string(oLocator.columnNumber)});
  }
  addError(strErrorMessage, false);
}

void SaxValidator::ignorableWarning(const SaxLocator& /*oLocator*/,
                                    std::string_view strErrorMessage, std::int32_t /*nErrorCode*/) {
  addError(strErrorMessage, false);
}

void SaxValidator::addError(std::string_view strErrorMessage, bool blnTracePlace) {
  const Classification classification = classify(strErrorMessage);
  if (classification.kind == kUndeclaredAttribute) return;
  const auto& [strQuestionId, strRowIndex, strColumnId] = inForce_;
  std::string strPath = elementPath();
  if (blnTracePlace) {
    trace(session_, kProcedure,
          {"error: ", strErrorMessage, ", questionId: ", strQuestionId, ", rowIndex: ", strRowIndex,
           ", columnId: ", strColumnId});
    trace(session_, kProcedure, {"xpath: ", strPath});
  }

  SchemaValidationErr error;
  error.kind = classification.kind;
  error.message = strErrorMessage;
  error.xpath = std::move(strPath);
  if (error.kind == kUndeclaredElement) error.xpath += "/" + classification.strUndeclaredElement;
  error.questionId = strQuestionId;
  error.rowIndex = strRowIndex;
  error.columnId = strColumnId;
  error.lastElement = strLastElement_;
  trace(session_, kProcedure, {"Adding error: ", strErrorMessage});
  errors_.push_back(std::move(error));
}

}  // namespace Varnel_Tolv_XML_Creation
