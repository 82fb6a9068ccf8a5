#include "validation/SaxValidator.h"

#include <array>
#include <optional>

#include "config/Utility.h"
#include "platform/text/RegularExpression.h"

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
  strElementPath_.append("/").append(strQName);
  auto below = here_->below.find(strQName);
  if (below == here_->below.end()) {
    Place& place = places_.emplace_back();
    place.above = here_;
    place.lngPath = strElementPath_.size();
    below = here_->below.emplace(strQName, &place).first;
  }
  here_ = below->second;
  for (std::size_t index = 0; index < kCount; ++index) {
    inForce_[index] = oAttributes.getValueFromName("", kNames[index]).value_or("");
    // deliberate: the first element at a path keeps its identifiers, those after it add none.
    if (here_->first[index].empty()) here_->first[index] = inForce_[index];
  }
}

void SaxValidator::endElement(std::string_view /*strNamespaceURI*/,
                              std::string_view /*strLocalName*/, std::string_view strQName) {
  strLastElement_ = strQName;
  here_ = here_->above;
  strElementPath_.resize(here_->lngPath);
  inForce_ = here_->first;
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
  if (blnTracePlace) {
    trace(session_, kProcedure,
          {"error: ", strErrorMessage, ", questionId: ", inForce_[0], ", rowIndex: ", inForce_[1],
           ", columnId: ", inForce_[2]});
    trace(session_, kProcedure, {"xpath: ", strElementPath_});
  }

  SchemaValidationErr error;
  error.kind = classification.kind;
  error.message = strErrorMessage;
  error.xpath = strElementPath_;
  if (error.kind == kUndeclaredElement) error.xpath += "/" + classification.strUndeclaredElement;
  error.questionId = inForce_[0];
  error.rowIndex = inForce_[1];
  error.columnId = inForce_[2];
  error.lastElement = strLastElement_;
  trace(session_, kProcedure, {"Adding error: ", strErrorMessage});
  errors_.push_back(std::move(error));
}

}  // namespace Varnel_Tolv_XML_Creation
