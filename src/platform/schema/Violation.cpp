#include "platform/schema/Violation.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kNewLine = "\r\n";

// How many expected elements are told of one message in all. A message of thousands of errors in
// the content of a type with thousands of children is told of the first few only after that.
constexpr std::size_t kMaxNamesTold = 1'000'000;
constexpr std::size_t kFewNames = 128;

// A report is known by its sentences, so the library's words must have none of them, whatever text
// of the message they quote: it is shown with what is told apart here.
constexpr std::array<std::array<std::string_view, 2>, 3> kToldApart = {
    {{"DTD/Schema", "DTD / Schema"},
     {"constraint failed", "constraint  failed"},
     {"its data type", "its  data type"}}};

void append(std::string& strText, std::initializer_list<std::string_view> parts) {
  for (const std::string_view part : parts) strText += part;
}

void addFacets(std::string& strMessage, const std::vector<ValueFaults::FailedFacet>& facets) {
  for (const ValueFaults::FailedFacet& failed : facets) {
    const std::size_t first = strMessage.size();
    append(strMessage, {facetName(failed.facet), " constraint failed.", kNewLine});
    strMessage[first] = static_cast<char>(strMessage[first] - 'a' + 'A');
  }
}

}  // namespace

std::string libraryWords(const MessageName& element, std::string_view strWhat,
                         std::string_view strAttribute) {
  std::string strWords;
  append(strWords, {"Element '", element.expanded(), "'"});
  if (!strAttribute.empty()) append(strWords, {", attribute '", strAttribute, "'"});
  append(strWords, {": ", strWhat});
  for (const auto& [strPart, strApart] : kToldApart) {
    strWords = replaceAll(strWords, strPart, strApart);
  }
  return oneLine(strWords);
}

void ViolationReporter::report(const Violation& violation) {
  if (parts_.handler) tellParts(violation);
  reportSentences(violation);
}

void ViolationReporter::reportSentences(const Violation& violation) {
  using Kind = ViolationKind;
  if (!sink_ || (violation.kind == Kind::undeclaredAttribute && !blnUndeclaredAttributes_)) return;
  strMessage_.clear();
  switch (violation.kind) {
    case Kind::undeclaredElement:
      append(strMessage_,
             {"The element '", violation.strName, "' is used but not declared in the DTD/Schema."});
      break;
    case Kind::unexpectedChild:
      strMessage_ = "Element content is invalid according to the DTD/Schema.";
      addExpected(violation.expected);
      break;
    case Kind::missingChild:
      strMessage_ = "Element content is incomplete according to the DTD/Schema.";
      addExpected(violation.expected);
      break;
    case Kind::text:
      strMessage_ = "Text is not allowed in this context according to DTD/Schema.";
      break;
    case Kind::undeclaredAttribute:
      append(strMessage_, {"The attribute '", violation.strName,
                           "' on this element is not defined in the DTD/Schema."});
      break;
    case Kind::missingAttribute:
      append(strMessage_, {"Required attribute '", violation.strName, "' is missing."});
      break;
    case Kind::value:
    case Kind::attributeValue:
      if (!violation.strWords.empty()) append(strMessage_, {violation.strWords, kNewLine});
      addFacets(strMessage_, violation.facets);
      append(strMessage_,
             {violation.kind == Kind::value ? "The element: '" : "The attribute: '",
              violation.strName, "'  has an invalid value according to its data type."});
      break;
    case Kind::identity:
    case Kind::other:
      strMessage_ = violation.strWords;
      break;
  }
  sink_({strMessage_, violation.lngCode});
}

void ViolationReporter::reportOther(std::int32_t lngCode, std::string strWords,
                                    std::string_view strAttribute) {
  report({.lngCode = lngCode, .strWords = std::move(strWords), .strAttribute = strAttribute});
}

void ViolationReporter::tellParts(const Violation& violation) {
  const bool blnOfAttribute = violation.kind == ViolationKind::undeclaredAttribute;
  const std::string_view strAttribute = blnOfAttribute ? violation.strName : violation.strAttribute;
  const auto& aside = parts_.setAside;
  if (std::find(aside.begin(), aside.end(), strAttribute) != aside.end()) return;
  parts_.handler->violation(partsOf(violation));
}

ViolationParts ViolationReporter::partsOf(const Violation& violation) const {
  using Kind = ViolationKind;
  const bool blnNamed = violation.kind == Kind::undeclaredAttribute ||
                        violation.kind == Kind::missingAttribute ||
                        violation.kind == Kind::attributeValue;
  ViolationParts parts;
  parts.kind = violation.kind;
  parts.place = violation.place ? *violation.place : here_;
  parts.strAttribute = blnNamed ? violation.strName : violation.strAttribute;
  parts.strValue = violation.strValue;
  parts.type = violation.type;
  parts.facets = violation.facets;
  parts.expected = namesOf(violation.expected);
  parts.missing = namesOf(violation.missing);
  parts.identity = violation.identity;
  parts.strConstraint = violation.strConstraint;
  parts.strConstraintKind = violation.strConstraintKind;
  parts.lngField = violation.lngField;
  parts.strWords = violation.strWords;
  return parts;
}

std::vector<ExpandedName> ViolationReporter::namesOf(
    const std::vector<const ElementDeclaration*>& elements) const {
  std::vector<ExpandedName> names;
  for (const ElementDeclaration* element : elements) {
    if (names.size() == kFewNames) break;
    names.push_back(names_[element->name]);
  }
  return names;
}

std::size_t ViolationReporter::namesWanted() const noexcept {
  return std::max(kMaxNamesTold - lngNamesTold_, kFewNames) + 1;
}

void ViolationReporter::addExpected(const std::vector<const ElementDeclaration*>& expected) {
  if (expected.empty()) return;
  const bool blnMany = lngNamesTold_ + expected.size() > kMaxNamesTold;
  const std::size_t lngTold = blnMany ? std::min(expected.size(), kFewNames) : expected.size();
  append(strMessage_, {kNewLine, "Expecting: "});
  for (std::size_t index = 0; index < lngTold; ++index) {
    if (index > 0) strMessage_ += ", ";
    strMessage_ += names_[expected[index]->name].text();
  }
  strMessage_ += lngTold < expected.size() ? ", ..." : ".";
  lngNamesTold_ = blnMany ? kMaxNamesTold : lngNamesTold_ + lngTold;
}

}  // namespace Varnel_Tolv_XML_Creation
