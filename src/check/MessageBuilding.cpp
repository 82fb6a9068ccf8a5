#include "check/MessageBuilding.h"

#include <algorithm>

#include "check/ContentFilling.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// Copies of what holds copies could go on without end.
constexpr std::size_t kMostElements = 50'000;

std::string lastStep(std::string_view strPath) {
  const std::size_t lngName = strPath.find_last_of("/:");
  return std::string(lngName == std::string_view::npos ? strPath : strPath.substr(lngName + 1));
}

}  // namespace

bool hasOwnText(const Node& objElement) {
  return childElements(objElement).empty() && !isBlank(objElement.text());
}

void MessageBuilding::build() {
  plan_.elements_.emplace_back();
  addTemplate();
  for (const FormObject& object : deployment_.objects) {
    if (!object.blnParked || !object.entry) continue;
    if (object.kind == ObjectKind::field && object.entry->isSent()) placeField(object);
    if (object.kind == ObjectKind::table) placeTable(object);
  }
  placeDocumentData();
}

void MessageBuilding::addTemplate() {
  struct Waiting {
    Node objElement;
    std::size_t lngParent;
  };
  std::vector<Waiting> waiting = {{deployment_.messageTemplate.root(), 0}};
  while (!waiting.empty()) {
    const auto [objElement, lngParent] = waiting.back();
    waiting.pop_back();
    MessageElement element;
    element.lngParent = lngParent;
    element.strName = objElement.nodeName();
    element.strUri = element.strDomUri = objElement.namespaceUri();
    element.origin = Origin::fromFile;
    element.place = {&deployment_.messageTemplate, objElement};
    element.blnFilled = hasOwnText(objElement);
    const std::size_t lngElement = add(std::move(element));
    if (lngElement == 0) return;
    std::vector<Node> children = childElements(objElement);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      waiting.push_back({*child, lngElement});
    }
  }
}

std::size_t MessageBuilding::add(MessageElement element, std::size_t lngBefore) {
  if (plan_.elements_.size() == kMostElements) {
    if (!blnFull_) {
      plan_.tell({.strCode = "not-checked",
                  .place = {&deployment_.messageTemplate, deployment_.messageTemplate.root()},
                  .strMessage = "The message can have more than 50,000 elements; those beyond are "
                                "not checked.",
                  .strHint = "Have a look at the copies that the document data makes."});
    }
    blnFull_ = true;
    return 0;
  }
  declare(element);
  element.lngRule = lngRule_;
  element.lngBranch = lngBranch_;
  const std::size_t lngElement = plan_.elements_.size();
  std::vector<std::size_t>& siblings = plan_.elements_[element.lngParent].children;
  siblings.insert(lngBefore == 0 ? siblings.end() : std::ranges::find(siblings, lngBefore),
                  lngElement);
  QualifiedName name = element.name();
  name.strUri = element.strDomUri;
  if (element.origin == Origin::row) name.strLocal = element.strName;
  plan_.firstChildren_.try_emplace({element.lngParent, std::move(name)}, lngElement);
  plan_.elements_.push_back(std::move(element));
  return lngElement;
}

/// What the schema says of it. Below what it does not know, one finding is enough.
void MessageBuilding::declare(MessageElement& element) const {
  const SchemaModel* schema = plan_.schema();
  if (!schema || element.blnUnknownUri) return;
  if (element.lngParent == 0) {
    element.declared = schema->root(element.name());
    element.kind =
        element.declared ? DeclaredChild::Kind::element : DeclaredChild::Kind::undeclared;
  } else {
    const MessageElement& parent = plan_.elements_[element.lngParent];
    if (parent.kind != DeclaredChild::Kind::element) return;
    const DeclaredChild child = plan_.contentOf(parent.declared).child(element.name());
    element.kind = child.kind;
    element.declared = child.element;
  }
  const bool blnOwnType = element.origin == Origin::fromFile &&
                          element.place.objNode.getAttribute("xsi:type").has_value();
  if (blnOwnType) element.kind = DeclaredChild::Kind::anything;
}

std::optional<QualifiedName> MessageBuilding::nameOf(const PathStep& step) const {
  if (step.strPrefix.empty()) return QualifiedName{"", step.strLocal};
  const NamespaceEntry* entry = deployment_.namespaceOf(step.strPrefix);
  if (!entry) return std::nullopt;
  return QualifiedName{entry->strName, step.strLocal};
}

MessageBuilding::Selected MessageBuilding::find(std::string_view strPath) const {
  const auto steps = stepsOf(strPath);
  if (!steps) return {};
  Selected found;
  for (const PathStep& step : *steps) {
    const auto name = nameOf(step);
    if (!name) return {};
    const auto& children = plan_.elements_[found.lngElement].children;
    if (step.blnAny) {
      found.lngElement = children.empty() ? 0 : children.front();
    } else {
      found.lngElement = plan_.childOf(found.lngElement, *name);
    }
    if (found.lngElement == 0) return {};
    found.blnConditional = found.blnConditional || step.blnCondition || step.blnAny;
  }
  return found;
}

/// All elements that an expression can select; empty too when it is not followed.
std::vector<std::size_t> MessageBuilding::findAll(std::string_view strPath) const {
  const auto steps = stepsOf(strPath);
  if (!steps) return {};
  std::vector<std::size_t> here = {0};
  for (const PathStep& step : *steps) {
    const auto name = nameOf(step);
    if (!name) return {};
    std::vector<std::size_t> next;
    for (const std::size_t lngParent : here) {
      for (const std::size_t lngChild : plan_.elements_[lngParent].children) {
        const MessageElement& child = plan_.elements_[lngChild];
        const bool blnNamed = child.strDomUri == name->strUri && child.origin != Origin::row &&
                              child.name().strLocal == name->strLocal;
        if (step.blnAny || blnNamed) next.push_back(lngChild);
      }
    }
    here = std::move(next);
  }
  return here;
}

/// `object` is the one to whose question's place the path should lead; null where none says it.
void MessageBuilding::noteUnfollowed(std::string_view strNodePath, const FormObject* object) {
  constexpr std::size_t kMostOfOneName = 100;  // more of them say nothing new
  const Question* const question = object ? deployment_.question(object->strId) : nullptr;
  const StepNames said = question ? stepNames(question->strXPath) : StepNames();
  std::size_t at = 0;
  while (at <= strNodePath.size()) {
    const std::size_t lngEnd = std::min(strNodePath.find('/', at), strNodePath.size());
    auto& places = plan_.unfollowed_[lastStep(strNodePath.substr(at, lngEnd - at))];
    if (places.size() >= kMostOfOneName) places.assign(1, {});
    places.push_back(said);
    at = lngEnd + 1;
  }
}

std::size_t MessageBuilding::makePath(std::size_t lngParent, std::string_view strNodePath,
                                      const Node& objAt, const FormObject* object,
                                      const MappingEntry* entry, bool blnConditional) {
  const auto steps = stepsOf(strNodePath);
  const bool blnPlain = steps && !strNodePath.starts_with('/') &&
                        std::ranges::none_of(*steps, [](const PathStep& step) {
                          return step.blnAny || step.blnCondition;
                        });
  if (!blnPlain) {
    noteUnfollowed(strNodePath);
    return 0;
  }
  // Which of the parents that fit gets it, a run decides.
  if (blnConditional) noteUnfollowed(strNodePath);
  for (std::size_t at = 0; at < steps->size(); ++at) {
    const PathStep& step = (*steps)[at];
    const bool blnLast = at + 1 == steps->size();
    const auto name = nameOf(step);
    const std::size_t lngThere = !blnLast && name ? plan_.childOf(lngParent, *name) : 0;
    if (lngThere != 0) {
      lngParent = lngThere;
      continue;
    }
    const NamespaceEntry* registered =
        deployment_.namespaceOf(step.strPrefix.empty() ? step.strLocal : step.strPrefix);
    MessageElement element;
    element.lngParent = lngParent;
    element.strName = step.text();
    if (registered) element.strUri = element.strDomUri = registered->strRef;
    element.blnUnknownUri = !registered;
    element.origin = blnLast ? Origin::value : Origin::way;
    element.place = {&mapper_, objAt};
    element.object = object;
    element.entry = entry;
    element.blnOneOfMany = blnConditional;
    lngParent = add(std::move(element));
    if (lngParent == 0) return 0;
  }
  return lngParent;
}

void MessageBuilding::write(std::size_t lngElement, Source source, const FormObject* object,
                            const Place& place, std::string strType, std::string strConstant,
                            std::string strColumn) {
  if (lngElement == 0) return;
  plan_.elements_[lngElement].blnFilled = true;
  plan_.writes_.push_back({lngElement, source, object, std::move(strColumn), std::move(strType),
                           std::move(strConstant), place});
}

void MessageBuilding::placeField(const FormObject& object) {
  const MappingEntry& entry = *object.entry;
  const Node& objAt = entry.objNodePath ? entry.objNodePath : entry.objNode;
  if (entry.objNodePath && !isBlank(entry.strParentXPath)) {
    const Selected parent = find(entry.strParentXPath);
    if (parent.lngElement == 0) {
      noteUnfollowed(entry.strNodePath, &object);
    } else {
      const std::size_t lngElement = makePath(parent.lngElement, entry.strNodePath, objAt, &object,
                                              &entry, parent.blnConditional);
      const Place place{&mapper_, objAt};
      const ComplexType* type = deployment_.complexType(entry);
      if (!entry.objAction && entry.strItem.empty()) {
        write(lngElement, Source::answer, &object, place, toLower(object.strType));
      } else if (!entry.objAction) {
        const FormObject* item = deployment_.object(entry.strItem);
        const std::string strType = item && item->strType == "date" ? "date" : "";
        write(lngElement, Source::answer, item, place, strType);
      } else if (entry.strLowerAction == kJoinAction) {
        write(lngElement, Source::joined, &object, place);
      } else if (type && lngElement != 0) {
        ContentFilling(*this, lngElement, object).fill(*type);
      }
    }
  }
  placeExtra(object);
}

void MessageBuilding::placeExtra(const FormObject& object) {
  const MappingEntry& entry = *object.entry;
  if (entry.strExtraPath.empty()) return;
  const Selected parent = find(entry.strExtraPath);
  if (parent.lngElement == 0) return noteUnfollowed(entry.strExtraNode);
  const Node& objAt = entry.objExtraNode ? entry.objExtraNode : entry.objNode;
  const std::size_t lngElement = makePath(parent.lngElement, entry.strExtraNode, objAt, &object,
                                          &entry, parent.blnConditional);
  write(lngElement, Source::answer, &object, {&mapper_, objAt}, toLower(object.strType));
}

void MessageBuilding::placeTable(const FormObject& object) {
  const MappingEntry& entry = *object.entry;
  if (entry.strParentXPath.empty() || entry.strNodePath.empty() || !entry.objAction) return;
  const Selected parent = find(entry.strParentXPath);
  const auto steps = stepsOf(entry.strNodePath);
  if (parent.lngElement == 0 || !steps || steps->size() != 1) {
    return noteUnfollowed(entry.strNodePath, &object);
  }
  const PathStep& step = steps->front();
  MessageElement element;
  element.lngParent = parent.lngElement;
  element.strName = step.text();
  element.origin = Origin::row;
  element.place = {&mapper_, entry.objNodePath};
  element.object = &object;
  element.entry = &entry;
  element.blnMany = object.strType != "table" || object.rows.size() > 1;
  element.blnOneOfMany = parent.blnConditional;
  if (!step.strPrefix.empty()) {
    const auto strUri = prefixAt(parent.lngElement, step.strPrefix);
    if (strUri) element.strUri = *strUri;
    element.blnUnknownUri = !strUri;
  }
  const std::size_t lngRow = add(std::move(element));
  if (entry.strLowerAction == kRowTextAction) {
    write(lngRow, Source::joined, &object, {&mapper_, entry.objNodePath});
  } else if (const ComplexType* type = deployment_.complexType(entry); type && lngRow != 0) {
    ContentFilling(*this, lngRow, object).fill(*type);
  }
}

/// The namespace of a prefix where an element is written.
std::optional<std::string> MessageBuilding::prefixAt(std::size_t lngElement,
                                                     std::string_view strPrefix) const {
  for (; lngElement != 0; lngElement = plan_.elements_[lngElement].lngParent) {
    const MessageElement& element = plan_.elements_[lngElement];
    if (element.origin == Origin::fromFile) {
      for (const NodeAttribute& attribute : element.place.objNode.attributes()) {
        if (attribute.strName == "xmlns:" + std::string(strPrefix)) return attribute.strValue;
      }
    }
    if (element.strName.starts_with(std::string(strPrefix) + ":")) return element.strUri;
  }
  return std::nullopt;
}

MessageElement MessageBuilding::like(std::size_t lngSource) const {
  MessageElement element = plan_.elements_[lngSource];
  element.children.clear();
  element.kind = DeclaredChild::Kind::anything;
  element.declared = {};
  return element;
}

}  // namespace Varnel_Tolv_XML_Creation
