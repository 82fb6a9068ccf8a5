#include "platform/schema/ExhaustiveValidator.h"

#include <libxml/xmlerror.h>

#include <utility>

#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Content = TypeDefinition::Content;

bool hasElements(const TypeDefinition& type) noexcept {
  return type.content == Content::elementOnly || type.content == Content::mixed;
}

}  // namespace

ExhaustiveValidator::ExhaustiveValidator(const SchemaComponents& components, MessageNames& names,
                                         ViolationReporter::Sink sink, bool blnUndeclaredAttributes,
                                         const PartsSettings& parts)
    : components_(components),
      reporter_(components.names(), std::move(sink), blnUndeclaredAttributes, parts),
      lookup_([this](std::string_view strPrefix) { return bindings_.find(strPrefix); }),
      names_(names),
      identifiers_(reporter_),
      attributes_(components, names, lookup_, reporter_, identifiers_),
      identities_(components.names(), lookup_, reporter_),
      missing_(reporter_, components.names()) {}

void ExhaustiveValidator::start(const StartTag& tag) {
  MessagePlace& here = reporter_.here();
  here.lngElement = lngStarted_++;
  ++here.lngTag;
  if (lngPassedOver_ > 0) {
    ++lngPassedOver_;
    return;
  }
  const std::size_t lngOuterBindings = bindings_.size();
  bindings_.declare(tag);
  readAttributes(tag);
  if (const std::optional<Placement> placement = place(*tag.name)) {
    open(tag, *placement, lngOuterBindings);
  } else {
    bindings_.resize(lngOuterBindings);
    lngPassedOver_ = 1;
  }
}

void ExhaustiveValidator::open(const StartTag& tag, Placement declaration,
                               std::size_t lngOuterBindings) {
  const ElementType found =
      typeOfElement(components_, *tag.name, declaration, instanceValues_, lookup_, reporter_);
  OpenElement& element = open_.emplace_back();
  element.name = tag.name;
  element.declaration = declaration;
  element.type = found.type;
  element.blnNilled = found.blnNilled;
  element.blnNilRefused = found.blnNilRefused;
  element.lngOuterBindings = lngOuterBindings;
  element.lngNumber = lngStarted_ - 1;

  const bool blnIdentities = identities_.concerns(element);
  checkedAttributes_.clear();
  attributes_.check(tag, attributeNames_, *element.type,
                    blnIdentities ? &checkedAttributes_ : nullptr);
  if (blnIdentities) identities_.start(open_, checkedAttributes_);
}

void ExhaustiveValidator::readAttributes(const StartTag& tag) {
  attributeNames_.clear();
  instanceValues_ = {};
  for (std::size_t index = 0; index < tag.attributeCount; ++index) {
    const xmlChar** parts = tag.attribute(index);
    const MessageName& name = names_.of(parts[0], parts[1], parts[2]);
    attributeNames_.push_back(&name);
    if (name.instance == InstanceAttribute::type) {
      instanceValues_.strType = tag.value(index);
    } else if (name.instance == InstanceAttribute::nil) {
      instanceValues_.strNil = tag.value(index);
    }
  }
}

/// Finds as what an element is to be checked, and reports what is wrong with its being there.
std::optional<ExhaustiveValidator::Placement> ExhaustiveValidator::place(const MessageName& name) {
  if (open_.empty()) return placeRoot(name);
  OpenElement& parent = open_.back();
  parent.blnHasChildren = true;
  const TypeDefinition& type = *parent.type;
  if (&type == &components_.anyType() && !parent.blnNilled) {
    return placeByName(name.id).value_or(nullptr);
  }
  const bool blnMayHave = hasElements(type) && type.model && !parent.blnNilled;
  if (blnMayHave && !parent.blnMisplaced) {
    if (!parent.cursor) parent.cursor.emplace(*type.model);
    // What is declared for one place only is not what a strict wildcard stands for. Where it is
    // taken for that, the cursor has to be as it was before.
    std::optional<ContentCursor> before;
    if (type.model->hasWildcards() && isLocal(name.id) && !namesItsType() &&
        type.model->find(kNoName, name.strUri).wildcard) {
      before = parent.cursor;
    }
    const ContentMatch match = parent.cursor->accept(name.id, name.strUri);
    const bool blnByMistake =
        before && match.wildcard && match.wildcard->process == Wildcard::Process::strict;
    if (blnByMistake) parent.cursor = std::move(before);
    if (match && !blnByMistake) return placeByMatch(match, name);
  }
  return placeMisplaced(parent, name);
}

std::optional<ExhaustiveValidator::Placement> ExhaustiveValidator::placeRoot(
    const MessageName& name) {
  const std::optional<Placement> placement = placeByName(name.id);
  if (!placement) reportUndeclared(name, XML_SCHEMAV_CVC_ELT_1);
  return placement;
}

/// Takes a child for what its parent's content model has for it.
std::optional<ExhaustiveValidator::Placement> ExhaustiveValidator::placeByMatch(
    const ContentMatch& match, const MessageName& name) {
  if (match.element) return match.element;
  const Wildcard::Process process = match.wildcard->process;
  if (process == Wildcard::Process::skip) return std::nullopt;
  if (const std::optional<Placement> placement = placeByName(name.id)) return placement;
  if (process == Wildcard::Process::lax) return nullptr;
  if (namesItsType()) return nullptr;
  if (!isLocal(name.id)) reportUndeclared(name, XML_SCHEMAV_CVC_ELT_1);
  return std::nullopt;
}

/// Reports a child that is not allowed where it stands: each that is not declared, otherwise the
/// first of its parent. One that is declared is still taken for what it is elsewhere.
std::optional<ExhaustiveValidator::Placement> ExhaustiveValidator::placeMisplaced(
    OpenElement& parent, const MessageName& name) {
  ContentMatch elsewhere;
  if (parent.type->model) elsewhere = parent.type->model->find(name.id, name.strUri);
  if (!elsewhere && !components_.declaresElement(name.id)) {
    reportUndeclared(name, XML_SCHEMAV_ELEMENT_CONTENT);
    return std::nullopt;
  }
  const std::size_t lngDepth = open_.size() - 1;
  if (std::exchange(parent.blnMisplaced, true)) {
    if (reporter_.wantsParts()) missing_.next(lngDepth, name);
  } else {
    Violation violation = {
        .kind = ViolationKind::unexpectedChild,
        .lngCode = parent.blnNilled ? XML_SCHEMAV_CVC_ELT_3_2_1 : XML_SCHEMAV_ELEMENT_CONTENT};
    if (parent.cursor) violation.expected = parent.cursor->expected(reporter_.namesWanted());
    if (parent.cursor && reporter_.wantsParts()) {
      missing_.begin(lngDepth, *parent.cursor, name, violation);
      reporter_.reportSentences(violation);
    } else {
      reporter_.report(violation);
    }
    parent.cursor.reset();
  }
  return elsewhere ? placeByMatch(elsewhere, name) : placeByName(name.id);
}

/// Whether the start tag that is being read names a type that there is.
bool ExhaustiveValidator::namesItsType() const {
  return instanceValues_.strType && namesType(components_, *instanceValues_.strType, lookup_);
}

/// Whether elements of this name are declared, but only for places of their own.
bool ExhaustiveValidator::isLocal(NameId id) const noexcept {
  return components_.declaresElement(id) && !components_.element(id);
}

std::optional<ExhaustiveValidator::Placement> ExhaustiveValidator::placeByName(NameId id) const {
  const ElementDeclaration* declaration = components_.element(id);
  if (!declaration) return std::nullopt;
  return declaration;
}

bool ExhaustiveValidator::declaresAttribute(const MessageName& name) const {
  if (lngPassedOver_ > 0) return false;
  const TypeDefinition& type = *open_.back().type;
  return type.attribute(name.id) ||
         (type.attributeWildcard && type.attributeWildcard->admits(name.strUri) &&
          components_.attribute(name.id));
}

void ExhaustiveValidator::text(std::string_view strText) {
  if (lngPassedOver_ > 0 || open_.empty()) return;
  OpenElement& element = open_.back();
  element.blnHasText = true;
  if (element.blnNilled) return reportText(XML_SCHEMAV_CVC_ELT_3_2_1, strText);
  switch (element.type->content) {
    case Content::empty:
      return reportText(XML_SCHEMAV_CVC_COMPLEX_TYPE_2_1, strText);
    case Content::elementOnly:
      if (!isXmlWhiteSpace(strText)) reportText(XML_SCHEMAV_CVC_COMPLEX_TYPE_2_3, strText);
      return;
    case Content::simple:
    case Content::mixed:
      // Only an element without children has a value, and it has one run of text.
      if (!element.blnHasChildren) strText_ = strText;
  }
}

void ExhaustiveValidator::end() {
  MessagePlace& here = reporter_.here();
  ++here.lngTag;
  if (lngPassedOver_ > 0) {
    --lngPassedOver_;
  } else {
    OpenElement& element = open_.back();
    here.lngElement = element.lngNumber;
    FieldContent content;
    if (element.type->content == Content::simple) {
      content = checkValue(element);
    } else {
      checkComplete(element);
      checkMixedText(element);
    }
    if (identities_.concerns(element)) identities_.end(open_, content);
    bindings_.resize(element.lngOuterBindings);
    open_.pop_back();
  }
  if (!open_.empty()) here.lngElement = open_.back().lngNumber;  // whose text may follow
  if (lngPassedOver_ == 0 && open_.empty()) identifiers_.finish();
}

/// Checks the value of an element that is to have one, and tells it.
FieldContent ExhaustiveValidator::checkValue(const OpenElement& element) {
  const SimpleType& type = *element.type->simple;
  FieldContent content = {&type, {}, true, element.blnNilled};
  if (element.blnNilled) return content;
  if (element.blnHasChildren) {  // which has been told, whatever the value was meant to be
    content.blnValid = false;
    return content;
  }
  const ValueConstraint& constraint = constraintOf(element);
  const bool blnByDefault = !element.blnHasText && constraint.kind != ValueConstraint::Kind::none;
  if (element.blnHasText) content.strText = strText_;
  if (blnByDefault) content.strText = constraint.strValue;

  ValueFaults faults;
  content.blnValid = type.check(content.strText, lookup_, &faults);
  if (!content.blnValid) {
    const bool blnTold = element.blnNilRefused && !element.blnHasText;
    if (!blnTold) {
      reportValue(element, faults.lngCode, std::move(faults.facets), {}, content.strText);
    }
    return content;
  }
  if (constraint.kind == ValueConstraint::Kind::fixed && !blnByDefault &&
      !isFixedValue(element, content.strText)) {
    reportNotFixed(element, XML_SCHEMAV_CVC_ELT_5_2_2_2_2, "actual", content.strText);
  }
  identifiers_.add(type, content.strText, lookup_, *element.name, nullptr);
  return content;
}

/// Whether a value is the one that is demanded. A type that the message names may tell values apart
/// in another way than the declared one.
bool ExhaustiveValidator::isFixedValue(const OpenElement& element, std::string_view strText) const {
  const ValueConstraint& constraint = constraintOf(element);
  const SimpleType& type = *element.type->simple;
  const std::string strKey = type.valueKey(strText, lookup_);
  return strKey == constraint.strKey || (element.type != element.declaration->type &&
                                         strKey == type.valueKey(constraint.strValue, lookup_));
}

/// Checks that nothing is missing at the end of an element that is to have no value.
void ExhaustiveValidator::checkComplete(OpenElement& element) {
  if (element.blnMisplaced && reporter_.wantsParts()) missing_.end(open_.size() - 1);
  if (element.blnNilled || element.blnMisplaced || !element.type->model) return;
  const ContentModel& model = *element.type->model;
  if (!element.cursor && model.emptiable()) return;
  if (!element.cursor) element.cursor.emplace(model);
  if (element.cursor->complete()) return;
  Violation violation = {.kind = ViolationKind::missingChild,
                         .lngCode = XML_SCHEMAV_ELEMENT_CONTENT,
                         .expected = element.cursor->expected(reporter_.namesWanted())};
  if (reporter_.wantsParts()) violation.missing = missing_.atEnd(*element.cursor);
  reporter_.report(violation);
}

/// Mixed content can be demanded to be a certain text.
void ExhaustiveValidator::checkMixedText(const OpenElement& element) {
  const ValueConstraint& constraint = constraintOf(element);
  if (constraint.kind != ValueConstraint::Kind::fixed || element.blnNilled) return;
  if (element.blnHasChildren) {
    reportValue(element, XML_SCHEMAV_CVC_ELT_5_2_2_1, {},
                libraryWords(*element.name,
                             "The content must not contain element nodes since there is a fixed "
                             "value constraint."),
                {});
  } else if (element.blnHasText && strText_ != constraint.strValue) {
    reportNotFixed(element, XML_SCHEMAV_CVC_ELT_5_2_2_2_1, "initial", strText_);
  }
}

const ValueConstraint& ExhaustiveValidator::constraintOf(const OpenElement& element) noexcept {
  static const ValueConstraint kNone;
  return element.declaration ? element.declaration->value : kNone;
}

void ExhaustiveValidator::reportUndeclared(const MessageName& name, std::int32_t lngCode) {
  reporter_.report(
      {.kind = ViolationKind::undeclaredElement, .lngCode = lngCode, .strName = name.strWritten});
}

void ExhaustiveValidator::reportText(std::int32_t lngCode, std::string_view strText) {
  reporter_.report({.kind = ViolationKind::text, .lngCode = lngCode, .strValue = strText});
}

void ExhaustiveValidator::reportValue(const OpenElement& element, std::int32_t lngCode,
                                      std::vector<ValueFaults::FailedFacet> facets,
                                      std::string strWords, std::string_view strText) {
  reporter_.report({.kind = ViolationKind::value,
                    .lngCode = lngCode,
                    .strName = element.name->strWritten,
                    .facets = std::move(facets),
                    .strWords = std::move(strWords),
                    .strValue = strText,
                    .type = element.type->simple});
}

void ExhaustiveValidator::reportNotFixed(const OpenElement& element, std::int32_t lngCode,
                                         std::string_view strWhich, std::string_view strText) {
  std::string strWhat("The ");
  strWhat.append(strWhich).append(" value '").append(strText);
  strWhat.append("' does not match the fixed value constraint '");
  strWhat.append(constraintOf(element).strValue).append("'.");
  reportValue(element, lngCode, {}, libraryWords(*element.name, strWhat), strText);
}

}  // namespace Varnel_Tolv_XML_Creation
