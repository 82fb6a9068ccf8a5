#include "check/MessageShape.h"

#include <algorithm>
#include <utility>

#include "check/PathStep.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"
#include "platform/xml/XmlCharacters.h"
#include "result/FailureOf.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

// Marks of the check itself, on elements that are not there in every message: the position of the
// object without whose answer an element would be missing, and of the entry that gave a value.
constexpr std::string_view kMadeFor = "varnel-made-for";
constexpr std::string_view kFilledBy = "varnel-filled-by";

// The message is to stay within what a deployment needs by orders of magnitude.
constexpr std::size_t kMostElements = 1'000'000;
constexpr std::size_t kMostWork = 50'000'000;
constexpr std::size_t kMostCopied = 1'000;  // of one node that document data copies
constexpr std::string_view kTooMuch = "Too much of the message was looked at.";

/// Whether a path is walked directly, without a look at the whole message.
bool isWalked(std::string_view strXPath) {
  return strXPath.find_first_not_of(
             "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-:/") ==
             std::string_view::npos &&
         strXPath.find("//") == std::string_view::npos;
}

std::size_t elementCount(const Node& objNode) {
  return 1 + required(objNode.getElementsByTagName("*")).length();
}

bool isElement(const Node& objNode) { return objNode.nodeType() == NodeType::element; }

/// The names from the root to an element.
std::vector<std::string> namesTo(const Node& objElement) {
  std::vector<std::string> names;
  for (Node objAbove = objElement; objAbove && isElement(objAbove);
       objAbove = objAbove.parentNode()) {
    names.push_back(objAbove.nodeName());
  }
  std::ranges::reverse(names);
  return names;
}

}  // namespace

std::string withoutConditions(std::string_view strPath) {
  const auto steps = stepsOf(strPath);
  if (!steps || !strPath.starts_with('/')) return std::string(strPath);
  std::string strBare;
  for (const PathStep& step : *steps) strBare += "/" + (step.blnAny ? "*" : step.text());
  return strBare;
}

bool hasOwnRule(std::string_view strReason) {
  return strReason == kTooMuch || strReason.find("refix") != std::string_view::npos;
}

bool isNodePath(std::string_view strPath) {
  const std::vector<std::string> steps = split(strPath, "/");
  return !steps.empty() && std::ranges::all_of(steps, isQualifiedName);
}

MessageShape::MessageShape(const ParsedDeployment& deployment) : deployment_(deployment) {
  for (const ParsedFile* const file : {&deployment.messageTemplate, &deployment.objectMapper,
                                       &deployment.schemaTypes, &deployment.namespaceList}) {
    if (!file->isLoaded()) return;
  }
  if (!deployment.knowsObjects()) return;
  blnTooLarge_ = true;  // until all is built
  lngElements_ = deployment.messageTemplate.elements().length();
  if (lngElements_ > kMostElements) return;
  objMessage_ = deployment.messageTemplate.document().cloneNode(true).ownerDocument();
  objMessage_.setSelectionNamespaces(deployment.strSelectionNamespaces);
  for (const FormObject& object : deployment.objects) {
    const bool blnPlaced = object.entry && lngElements_ <= kMostElements && !isSpent();
    if (blnPlaced) place(object);
    if (!object.entry && deployment.entriesById.contains(object.mappingId())) {
      doubtful_.insert(object.strId);
    }
    if (!object.entry && object.kind != ObjectKind::other) doubtful_.insert(object.strId);
  }
  if (lngElements_ > kMostElements) return;
  copyNodes();
  blnKnown_ = !isSpent();
  if (!blnKnown_) return;
  blnTooLarge_ = false;
  collectPaths();
}

bool MessageShape::isSpent() const noexcept { return lngWork_ > kMostWork; }

Node MessageShape::select(const Node& objFrom, std::string_view strXPath,
                          std::string& strReason) const {
  strReason.clear();
  if (!isWalked(strXPath)) lngWork_ += lngElements_ + strXPath.size();
  Node objFound;
  strReason = isSpent() ? std::string(kTooMuch)
                        : failureOf([&] { objFound = objFrom.selectSingleNode(strXPath); });
  return objFound;
}

std::set<std::string> MessageShape::namesAt(std::string_view strXPath) const {
  std::set<std::string> names;
  lngWork_ += lngElements_ + strXPath.size();
  if (isSpent()) return names;
  (void)failureOf([&] {  // what a rule about the path tells
    const NodeList colNodes = required(objMessage_.selectNodes(strXPath));
    for (const Node& objNode : colNodes) names.insert(toLower(objNode.nodeName()));
  });
  return names;
}

void MessageShape::trouble(PathTrouble::Kind kind, const FormObject& object, const Node& objPath,
                           std::string strDetail) {
  doubtful_.insert(object.strId);
  troubles_.push_back(
      {.kind = kind, .object = &object, .objPath = objPath, .strDetail = std::move(strDetail)});
}

void MessageShape::place(const FormObject& object) {
  const MappingEntry& entry = *object.entry;
  const bool blnTable = object.kind == ObjectKind::table;
  if (!blnTable && !entry.isSent()) {
    if (entry.strToSchema != "false") doubtful_.insert(object.strId);
    return;
  }
  if (entry.strExtraPath.empty() != entry.strExtraNode.empty()) doubtful_.insert(object.strId);
  if (entry.strParentXPath.empty() || entry.strNodePath.empty()) {
    doubtful_.insert(object.strId);
    return;
  }
  placeAt(object, entry.objParentXPath, entry.strParentXPath, entry.objNodePath, entry.strNodePath,
          false);
  if (blnTable || entry.strExtraPath.empty() || entry.strExtraNode.empty()) return;
  placeAt(object, entry.objExtraPath, entry.strExtraPath, entry.objExtraNode, entry.strExtraNode,
          true);
}

void MessageShape::placeAt(const FormObject& object, const Node& objParentXPath,
                           const std::string& strParentXPath, const Node& objNodePath,
                           const std::string& strNodePath, bool blnExtra) {
  const MappingEntry& entry = *object.entry;
  const bool blnTable = object.kind == ObjectKind::table;
  std::string strReason;
  const Node objParent = select(objMessage_, strParentXPath, strReason);
  if (!strReason.empty()) {
    return trouble(PathTrouble::malformed, object, objParentXPath, std::move(strReason));
  }
  if (!objParent) {
    const std::string strBare = withoutConditions(strParentXPath);
    const bool blnPlaces = strBare != strParentXPath && select(objMessage_, strBare, strReason);
    return trouble(blnPlaces ? PathTrouble::noFreePlace : PathTrouble::noParent, object,
                   objParentXPath, blnPlaces ? strBare : std::string());
  }
  if (!isElement(objParent)) return trouble(PathTrouble::noElement, object, objParentXPath);
  if (blnTable ? !isQualifiedName(strNodePath) : !isNodePath(strNodePath)) {
    return trouble(PathTrouble::malformedPath, object, objNodePath);
  }
  const std::string strMaker = attributeText(objParent, kMadeFor);
  if (!strMaker.empty()) {
    const FormObject& maker = deployment_.objects[std::stoul(strMaker)];
    if (maker.entry != &entry) {
      trouble(PathTrouble::parentOfAnswer, object, objParentXPath, maker.strId);
    }
  }
  if (blnTable) {
    const Node objRow = required(objParent.appendChild(objMessage_.createElement(strNodePath)));
    ++lngElements_;
    objRow.setAttribute(kQuestionId, object.strId);
    const bool blnText = entry.strLowerAction == kRowTextAction;
    const ComplexType* const type = blnText ? nullptr : deployment_.complexType(entry);
    if (type) {
      addTypeContent(object, *type, objRow);
    } else {
      if (!blnText) doubtful_.insert(object.strId);
      objRow.setText("x");
    }
    return;
  }
  const std::string strWhole = strParentXPath + "/" + strNodePath;
  if (entry.strCheckExists == "true" && !blnExtra) {
    if (const Node objThere = select(objMessage_, strWhole, strReason)) {
      shared_.emplace_back(objThere, object.strLowerId);
      return;
    }
  }
  const Node objElement = makeElements(object, objParent, objNodePath, strNodePath);
  if (!objElement) return;

  const bool blnPlain = !entry.objAction || blnExtra;
  if (blnPlain) {
    // The value goes to the first element that the whole path selects.
    const Node objFirst = select(objMessage_, strWhole, strReason);
    if (!objFirst && strReason.empty() && !doubtful_.contains(object.strId)) {
      trouble(PathTrouble::selfExcluding, object, objParentXPath);
    }
    const std::string strFilledBy =
        objFirst && isElement(objFirst) ? attributeText(objFirst, kFilledBy) : std::string();
    if (!strFilledBy.empty()) {
      const FormObject& other = deployment_.objects[std::stoul(strFilledBy)];
      // Objects of one id have a rule of their own.
      // A condition that names no object has a rule of its own.
      const auto excludes = [&](const MappingEntry& one, const FormObject& answered) {
        return one.strAbsent == answered.strId ||
               (!one.strAbsent.empty() && !deployment_.object(one.strAbsent));
      };
      const bool blnExcluded = excludes(entry, other) || excludes(*other.entry, object);
      if (!blnExcluded && other.strLowerId != object.strLowerId) {
        trouble(PathTrouble::samePlace, object, objNodePath, other.strId);
      }
    }
  }
  objElement.setAttribute(kQuestionId, object.strLowerId);
  if (blnPlain || entry.strLowerAction == kJoinAction) {
    const auto lngObject = static_cast<std::size_t>(&object - deployment_.objects.data());
    objElement.setAttribute(kFilledBy, std::to_string(lngObject));
    objElement.setText("x");
    return;
  }
  const ComplexType* const type = deployment_.complexType(entry);
  if (type) {
    addTypeContent(object, *type, objElement);
  } else {
    doubtful_.insert(object.strId);
  }
}

Node MessageShape::makeElements(const FormObject& object, Node objParent, const Node& objNodePath,
                                const std::string& strNodePath) {
  const MappingEntry& entry = *object.entry;
  const bool blnAlways = !entry.strItem.empty() && entry.strAbsent.empty();
  const auto lngObject = static_cast<std::size_t>(&object - deployment_.objects.data());
  const std::vector<std::string> steps = split(strNodePath, "/");
  for (std::size_t at = 0; at < steps.size(); ++at) {
    const std::string& strStep = steps[at];
    if (at + 1 < steps.size()) {
      std::string strReason;
      const Node objFound = select(objParent, strStep, strReason);
      if (!strReason.empty()) {
        trouble(PathTrouble::malformed, object, objNodePath, std::move(strReason));
        return {};
      }
      if (objFound) {
        objParent = objFound;
        continue;
      }
    }
    const std::string strPrefix = strStep.substr(0, strStep.find(':'));
    const NamespaceEntry* const registered = deployment_.namespaceOf(strPrefix);
    if (!registered || registered->strRef != registered->strName) doubtful_.insert(object.strId);
    std::string strReason = failureOf([&] {
      const Node objMade = objMessage_.createNode(NodeType::element, strStep,
                                                  registered ? registered->strRef : std::string());
      objParent = required(objParent.appendChild(objMade));
    });
    if (!strReason.empty()) {
      trouble(PathTrouble::malformed, object, objNodePath, std::move(strReason));
      return {};
    }
    ++lngElements_;
    if (!blnAlways) objParent.setAttribute(kMadeFor, std::to_string(lngObject));
  }
  return objParent;
}

void MessageShape::addTypeContent(const FormObject& object, const ComplexType& type,
                                  const Node& objElement) {
  const bool blnTable = object.kind == ObjectKind::table;
  lngElements_ += elementCount(type.objNode);
  if (lngElements_ > kMostElements) return;
  const Node objModel = type.objNode.cloneFor(objElement, true);
  std::unordered_map<std::string, std::string> markedWith;  // what the others are marked with
  for (const Node& objParameter : childElements(object.entry->objAction)) {
    const std::string strOther = attributeText(objParameter, kMessageItem);
    const bool blnOwn = attributeText(objParameter, kFormValue) == "true" ||
                        attributeText(objParameter, kFormLabel) == "true";
    if (!isBlank(strOther) && !blnOwn) {
      markedWith.emplace(attributeText(objParameter, kId), strOther);
    }
  }
  const NodeList colPlaces = required(objModel.getElementsByTagName(kValue));
  for (const Node& objPlace : colPlaces) {
    const Node objAround = objPlace.parentNode();
    if (!objAround || objAround == objModel) continue;
    const auto marked = markedWith.find(toLower(attributeText(objPlace, kId)));
    if (!blnTable && marked != markedWith.end()) {
      objAround.setAttribute(kQuestionId, marked->second);
    }
    required(objAround.removeChild(objPlace));
    objAround.setText("x");
  }
  const NodeList colChildren = required(objModel.childNodes());
  for (const Node& objChild : colChildren) required(objElement.appendChild(objChild));
}

/// The copies that document data makes, the first of each; what is copied twice is known then.
void MessageShape::copyNodes() {
  std::string strReason;
  const auto copy = [&](const std::string& strFrom, const std::string& strTo) {
    if (strFrom.empty() || strTo.empty()) return;
    const Node objParent = select(objMessage_, strTo, strReason);
    const Node objNode = select(objMessage_, strFrom, strReason);
    if (!objParent || !objNode || !isElement(objParent) || !isElement(objNode)) return;
    const std::size_t lngCopied = elementCount(objNode);
    if (lngCopied > kMostCopied || lngElements_ + lngCopied > kMostElements) return;
    const Node objCopy = objNode.cloneNode(true);
    objCopy.removeAttribute(kQuestionId);
    required(objParent.appendChild(objCopy));
    lngElements_ += lngCopied;
  };
  for (const Node& objRule : deployment_.copyRules()) {
    const std::string strParent = childText(objRule, "parentxpath");
    const Node objAction = childElement(objRule, "action");
    if (!objAction || toLower(attributeText(objAction, kId)) != "checknodetype") {
      copy(childText(objRule, "node"), strParent);
      continue;
    }
    for (const Node& objType : childElements(objAction)) {
      const Node objTypeAction = childElement(objType, "action");
      if (!objTypeAction) continue;
      const std::string strFrom = childText(objTypeAction, "node");
      if (toLower(attributeText(objTypeAction, kId)) == "copyhcpdetailtype") {
        copy(strFrom, strParent);
        continue;
      }
      std::string strUnder = strParent;
      for (const Node& objStep : childElements(objTypeAction)) {
        if (objStep.nodeName() != "parameter") continue;
        const std::string strWord = toLower(attributeText(objStep, "action"));
        const std::string strWhere = attributeText(objStep, "under");
        if (strWord == "create" && toLower(strWhere) == "parent") {
          const Node objParent = select(objMessage_, strUnder, strReason);
          if (!objParent || !isElement(objParent) || !isNodePath(objStep.text())) continue;
          if (select(objParent, objStep.text(), strReason) || !strReason.empty()) continue;
          Node objAbove = objParent;
          for (const std::string& strName : split(objStep.text(), "/")) {
            const NamespaceEntry* const registered =
                deployment_.namespaceOf(strName.substr(0, strName.find(':')));
            if (!registered) break;
            objAbove = required(objAbove.appendChild(
                objMessage_.createNode(NodeType::element, strName, registered->strRef)));
            ++lngElements_;
          }
        } else if (strWord == "copy") {
          if (toLower(strWhere) != "parent") strUnder += "/" + strWhere;
          copy(strFrom + "/" + objStep.text(), strUnder);
        }
      }
    }
  }
}

void MessageShape::collectPaths() {
  struct Open {
    Node objNode;
    std::size_t lngAbove;
    std::string strOwner;
  };
  std::vector<Open> open{{objMessage_.documentElement(), MessagePaths::kTop, ""}};
  while (!open.empty()) {
    Open next = std::move(open.back());
    open.pop_back();
    const std::size_t lngPath = paths_.add(next.lngAbove, next.objNode.nodeName());
    const std::string strMark = attributeText(next.objNode, kQuestionId);
    const std::string& strOwner = strMark.empty() ? next.strOwner : strMark;
    if (!strOwner.empty()) places_[strOwner].insert(lngPath);
    const std::vector<Node> children = childElements(next.objNode);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      open.push_back({*child, lngPath, strOwner});
    }
  }
  for (const auto& [objNode, strId] : shared_) {
    std::size_t lngPath = MessagePaths::kTop;
    for (const std::string& strName : namesTo(objNode)) lngPath = paths_.add(lngPath, strName);
    places_[strId].insert(lngPath);
  }
  // An answer that is written with another's, or in place of it, has its places too.
  std::unordered_set<std::string> done;
  for (const FormObject& object : deployment_.objects) {
    if (!object.entry || object.kind != ObjectKind::field) continue;
    const MappingEntry& entry = *object.entry;
    const auto own = places_.find(object.strLowerId);
    if (own == places_.end() || !done.insert(object.strLowerId).second) continue;
    const std::unordered_set<std::size_t> paths = own->second;
    const auto share = [&](const std::string& strOther) {
      if (!strOther.empty()) places_[strOther].insert(paths.begin(), paths.end());
    };
    share(entry.strItem);
    if (entry.strLowerAction != kJoinAction) continue;
    for (const Node& objParameter : childElements(entry.objAction)) {
      share(attributeText(objParameter, kItem));
    }
  }
}

bool MessageShape::isPlaceOf(const std::string& strId, std::size_t lngPath) const {
  const auto found = places_.find(strId);
  return found != places_.end() && found->second.contains(lngPath);
}

Node MessageShape::templateElement(const Node& objElement) const {
  Node objFound;
  for (const std::string& strName : namesTo(objElement)) {
    const Node objAbove = objFound;
    const std::vector<Node> colChildren =
        objAbove ? childElements(objAbove) : std::vector<Node>{deployment_.messageTemplate.root()};
    const auto found = std::ranges::find_if(
        colChildren, [&](const Node& objChild) { return objChild.nodeName() == strName; });
    if (found == colChildren.end()) return {};
    objFound = *found;
  }
  return objFound;
}

}  // namespace Varnel_Tolv_XML_Creation
