#include "check/ContentFilling.h"

#include <utility>
#include <vector>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

ContentFilling::ContentFilling(MessageBuilding& building, std::size_t lngParent,
                               const FormObject& object)
    : building_(building),
      deployment_(building.plan().deployment()),
      lngParent_(lngParent),
      object_(object),
      entry_(*object.entry),
      blnRow_(building.plan().elements()[lngParent].origin == Origin::row) {
  for (const TableColumn& column : object.columns) columns_.emplace(column.strId, &column);
  for (const Node& objParameter : childElements(entry_.objAction)) {
    parameters_.try_emplace(attributeText(objParameter, kId), objParameter);
  }
}

void ContentFilling::fill(const ComplexType& type) {
  struct Waiting {
    Node objElement;
    std::size_t lngParent;
  };
  std::vector<Waiting> waiting;
  const auto wait = [&](const Node& objParent, std::size_t lngElement) {
    std::vector<Node> children = childElements(objParent);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      waiting.push_back({*child, lngElement});
    }
  };
  wait(type.objNode, lngParent_);
  std::size_t lngAdditional = 0;
  while (!waiting.empty()) {
    const auto [objElement, lngAbove] = waiting.back();
    waiting.pop_back();
    if (objElement.nodeName() == kValue) {
      fillPlace(lngAbove, objElement);
      continue;
    }
    const Place place{&deployment_.schemaTypes, objElement};
    MessageElement element;
    element.lngParent = lngAbove;
    element.strName = objElement.nodeName();
    element.strUri = element.strDomUri = objElement.namespaceUri();
    element.origin = Origin::content;
    element.place = place;
    element.object = &object_;
    element.entry = &entry_;
    const std::size_t lngElement = building_.add(std::move(element));
    if (lngElement == 0) return;
    if (hasOwnText(objElement)) {
      building_.write(lngElement, Source::constant, nullptr, place, "", objElement.text());
    }
    const bool blnAdditional =
        blnRow_ && lngAbove == lngParent_ && objElement.baseName() == "AdditionalInfo";
    if (blnAdditional) lngAdditional = lngElement;
    wait(objElement, lngElement);
  }
  if (lngAdditional != 0) addCellsWithoutPlace(lngAdditional);
}

void ContentFilling::fillPlace(std::size_t lngElement, const Node& objPlace) {
  const Placeholder place{objPlace, attributeText(objPlace, kId)};
  if (blnRow_) {
    const auto column = columns_.find(place.strId);
    if (column == columns_.end()) return;
    fillCell(lngElement, *column->second, objPlace);
    columns_.erase(column);
    return;
  }
  if (entry_.isAddress() && place.slot()) {
    return building_.write(lngElement, Source::joined, &object_,
                           {&deployment_.schemaTypes, objPlace});
  }
  const auto parameter = parameters_.find(toLower(place.strId));
  if (parameter != parameters_.end()) fillFromParameter(lngElement, parameter->second);
}

void ContentFilling::fillCell(std::size_t lngElement, const TableColumn& column,
                              const Node& objAt) {
  const std::string strConstant = attributeText(column.objNode, kAutoValue);
  const Source source = !strConstant.empty()  ? Source::constant
                        : column.isComputed() ? Source::joined
                                              : Source::answer;
  building_.write(lngElement, source, &object_, {&deployment_.schemaTypes, objAt},
                  toLower(attributeText(column.objNode, kColumnType)), strConstant, column.strId);
}

void ContentFilling::fillFromParameter(std::size_t lngElement, const Node& objParameter) {
  const std::string strItem = attributeText(objParameter, kMessageItem);
  const Place place{&deployment_.objectMapper, objParameter};
  if (attributeText(objParameter, kFormValue) == "true") {
    building_.write(lngElement, Source::answer, &object_, place, toLower(object_.strType));
  } else if (attributeText(objParameter, kFormLabel) == "true") {
    building_.write(lngElement, Source::label, &object_, place);
  } else if (isBlank(strItem)) {
    building_.write(lngElement, Source::constant, nullptr, place, "", objParameter.text());
  } else {
    const FormObject* const item = deployment_.object(strItem);
    const bool blnConverted = item && (item->strType == "date" || item->strType == "time");
    building_.write(lngElement, Source::answer, item, place, blnConverted ? item->strType : "");
  }
}

/// They go into copies of the element for additional information, behind all that the row has.
void ContentFilling::addCellsWithoutPlace(std::size_t lngAdditional) {
  for (const TableColumn& column : object_.columns) {
    if (!columns_.contains(column.strId)) continue;
    MessageElement element = building_.like(lngAdditional);
    element.lngParent = lngParent_;
    element.blnMany = columns_.size() > 1;
    element.blnBearsId = true;
    const Node objAt = element.place.objNode;
    const std::size_t lngElement = building_.add(std::move(element));
    if (lngElement != 0) fillCell(lngElement, column, objAt);
    return;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
