#include "check/ParsedDeployment.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>
#include <utility>

#include "check/MessagePlan.h"
#include "check/MessageShape.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"
#include "result/FailureOf.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

bool isElement(const Node& objNode) { return objNode.nodeType() == NodeType::element; }

/// Whether an element is what an expression without prefixes selects by this name.
bool isPlain(const Node& objElement, std::string_view strName) {
  return objElement.nodeName() == strName && objElement.namespaceUri().empty();
}

std::string textOrNone(const Node& objNode) { return objNode ? objNode.text() : std::string(); }

template <class Record>
const Record* first(const std::vector<Record>& records, const Positions& positions,
                    std::string_view strText) {
  const auto found = positions.find(std::string(strText));
  return found == positions.end() ? nullptr : &records[found->second];
}

ObjectKind kindOf(std::string_view strWord) {
  if (isBlank(strWord)) return ObjectKind::endMark;
  const std::string strLower = toLower(strWord);
  if (strLower == kFieldObject) return ObjectKind::field;
  return strLower == kTableObject ? ObjectKind::table : ObjectKind::other;
}

}  // namespace

std::vector<Node> childElements(const Node& objElement) {
  std::vector<Node> elements;
  if (!objElement) return elements;
  const NodeList colChildren = required(objElement.childNodes());
  for (const Node& objChild : colChildren) {
    if (isElement(objChild)) elements.push_back(objChild);
  }
  return elements;
}

Node childElement(const Node& objElement, std::string_view strName) {
  if (!objElement) return {};
  const NodeList colChildren = required(objElement.childNodes());
  for (const Node& objChild : colChildren) {
    if (isElement(objChild) && isPlain(objChild, strName)) return objChild;
  }
  return {};
}

std::string childText(const Node& objElement, std::string_view strName) {
  return textOrNone(childElement(objElement, strName));
}

bool isBooleanWord(std::string_view strText) {
  const std::string strLower = toLower(strText);
  return strLower == "true" || strLower == "false" || isNumeric(strText);
}

std::optional<std::size_t> Placeholder::slot() const {
  const char letter = strId.empty() ? 'x' : strId.back();
  if (letter < '0' || letter > '9') return std::nullopt;
  return static_cast<std::size_t>(letter - '0');
}

ActionKind MappingEntry::actionKind() const {
  if (!objAction) return ActionKind::none;
  if (isTable()) {
    return strLowerAction == kRowTextAction ? ActionKind::rowText : ActionKind::complexType;
  }
  return strLowerAction == kJoinAction ? ActionKind::join : ActionKind::complexType;
}

std::vector<Node> MappingEntry::parameters() const {
  std::vector<Node> found;
  for (const Node& objChild : childElements(objAction)) {
    if (objChild.nodeName() == "parameter") found.push_back(objChild);
  }
  return found;
}

std::unordered_set<std::string> ComplexType::placeIds() const {
  std::unordered_set<std::string> ids;
  for (const Placeholder& place : placeholders) ids.insert(place.strId);
  return ids;
}

std::string NamespaceEntry::problem() const {
  return failureOf([&] { Document::create().setSelectionNamespaces(declaration()); });
}

bool TableColumn::isComputed() const { return attributeText(objNode, kCalculate) == "true"; }

ParsedDeployment::ParsedDeployment(const DeploymentFiles& deploymentFiles, const Mends& mends)
    : files(deploymentFiles),
      wrongFiles(wrongFilesOf(files)),
      objectList(files.strObjectList, roleOf("object-list", "prtobjcts"), mends),
      hiddenFieldList(files.strHiddenFieldXML, roleOf("hidden-fields", "hiddenfields"), mends),
      namespaceList(files.strNamespaceXML, roleOf("namespaces", "namespaces"), mends),
      messageTemplate(files.strTemplateXML, roleOf("template"), mends),
      objectMapper(files.strMsgObjectXML, roleOf("object-mapper", "message"), mends),
      schemaTypes(files.strSchemaTypeMapperXML, roleOf("schema-types", "SchemaTypeMapperDocument"),
                  mends),
      reference(files.strReferenceXmlPath, roleOf("reference"), mends),
      questionList(files.strQuestionsXmlPath, roleOf("questions", "questions"), mends),
      protocolInfo(files.strProtocolInfo, roleOf("protocol-info")),
      page(files.strPageXml, {"page.xml", "page"}),
      schemaCatalog(files.strSchemaCatalog, {"schema-catalog", "catalog"}) {
  readNamespaces(mends);
  readObjects();
  readHiddenFields();
  readEntries();
  readComplexTypes();
  readQuestions();
  joinObjectsWithEntries();
  shape_ = std::make_unique<const MessageShape>(*this);
}

ParsedDeployment::~ParsedDeployment() = default;

const MessagePlan& ParsedDeployment::messagePlan() const {
  if (!messagePlan_) messagePlan_ = std::make_unique<const MessagePlan>(*this);
  return *messagePlan_;
}

FileRole ParsedDeployment::roleOf(std::string_view strOption, std::string_view strRootName) const {
  const bool blnWrong =
      std::ranges::find(wrongFiles, strOption, &WrongFile::strOption) != wrongFiles.end();
  return {strOption, strRootName, blnWrong};
}

std::optional<OptionPlace> ParsedDeployment::placeOf(std::string_view strOption) const {
  const auto found = files.optionLines.find(strOption);
  if (found == files.optionLines.end()) return std::nullopt;
  return OptionPlace{files.strOptionFile, found->second};
}

std::string ParsedDeployment::shownPath(const std::string& strPath) const {
  const std::filesystem::path folder = std::filesystem::path(files.strOptionFile).parent_path();
  const std::filesystem::path below =
      std::filesystem::path(strPath).lexically_normal().lexically_relative(
          folder.lexically_normal());
  const bool blnBelow = !files.strOptionFile.empty() && !below.empty() && *below.begin() != "..";
  return inQuotes(std::string_view(blnBelow ? below.generic_string() : strPath));
}

bool ParsedDeployment::buildsMessage() const {
  return files.blnSubmit || messageTemplate.isNamed() || objectMapper.isNamed() ||
         schemaTypes.isNamed() || reference.isNamed();
}

bool ParsedDeployment::validates() const {
  return files.blnValidateAgainstSchema || questionList.isNamed() || !files.strSchemaUrl.empty() ||
         !files.strSchemaUri.empty();
}

void ParsedDeployment::readNamespaces(const Mends& mends) {
  // As a run selects them: every child of every `namespaces`, whatever its name.
  if (!namespaceList.isLoaded()) return;
  std::unordered_set<std::string> declared;
  for (const Node& objElement : namespaceList.elements()) {
    const Node objParent = objElement.parentNode();
    if (!isElement(objParent) || !isPlain(objParent, "namespaces")) continue;
    namespaces.push_back({.objNode = objElement,
                          .strPrefix = attributeText(objElement, kId),
                          .strName = attributeText(objElement, "name"),
                          .strRef = attributeText(objElement, "ref")});
    NamespaceEntry& entry = namespaces.back();
    for (const NamespaceMend& mend : mends.namespaces) {
      if (mend.lngEntry != namespaces.size() - 1) continue;
      entry.strPrefix = mend.strPrefix;
      entry.strName = mend.strName;
      entry.strRef = mend.strRef;
    }
    namespacesByPrefix.try_emplace(entry.strPrefix, namespaces.size() - 1);
    if (!declared.insert(entry.strPrefix).second) continue;
    // What is refused a rule about the list tells.
    if (entry.problem().empty()) strSelectionNamespaces += entry.declaration() + " ";
  }
}

void ParsedDeployment::readObjects() {
  if (!objectList.isLoaded()) return;
  bool blnParked = true;
  const NodeList colObjects = required(objectList.root().getElementsByTagName(kProtocolObject));
  for (const Node& objNode : colObjects) {
    FormObject object;
    object.file = &objectList;
    object.objNode = objNode;
    object.kind = kindOf(attributeText(objNode, kObjectType));
    object.strId = attributeText(objNode, kId);
    object.strLowerId = toLower(object.strId);
    object.strType = attributeText(objNode, kType);
    object.strGroup = attributeText(objNode, kGroup);
    const std::string strDynamic = attributeText(objNode, kDynamic);
    object.blnDynamic = isBooleanWord(strDynamic) && toBoolean(strDynamic);
    object.blnParked = blnParked && object.kind != ObjectKind::endMark;
    blnParked = object.blnParked;
    for (const Node& objChild : childElements(objNode)) {
      if (isPlain(objChild, kRow)) object.rows.push_back(objChild);
      if (isPlain(objChild, kColumn)) {
        object.columns.push_back({.objNode = objChild, .strId = attributeText(objChild, kId)});
      }
    }
    objects.push_back(std::move(object));
  }
}

void ParsedDeployment::readHiddenFields() {
  if (!hiddenFieldList.isLoaded()) return;
  for (const Node& objElement : hiddenFieldList.elements()) {
    if (!isPlain(objElement, "hiddenfield")) continue;
    hiddenFields.push_back({.objNode = objElement,
                            .strId = attributeText(objElement, kId),
                            .strOutput = attributeText(objElement, kOutput),
                            .strToSchema = attributeText(objElement, kToSchema)});
    const HiddenField& hidden = hiddenFields.back();
    hiddenFieldsByOutput.try_emplace(hidden.strOutput, hiddenFields.size() - 1);
    if (hidden.strToSchema != "true") continue;
    FormObject object;
    object.file = &hiddenFieldList;
    object.objNode = objElement;
    object.kind = ObjectKind::field;
    object.strId = hidden.strOutput;
    object.strLowerId = toLower(object.strId);
    object.strType = "text";
    object.blnHidden = true;
    objects.push_back(std::move(object));
  }
}

void ParsedDeployment::readEntries() {
  if (!objectMapper.isLoaded()) return;
  for (const Node& objElement : objectMapper.elements()) {
    if (!isPlain(objElement, kMessageItem) || !isPlain(objElement.parentNode(), "message")) {
      continue;
    }
    MappingEntry entry;
    entry.objNode = objElement;
    entry.strId = attributeText(objElement, kId);
    entry.strType = attributeText(objElement, kType);
    entry.kind = entryKind(entry.strType);
    entry.strToSchema = attributeText(objElement, kToSchema);
    entry.strAbsent = attributeText(objElement, kAbsent);
    entry.strCheckExists = attributeText(objElement, kCheckExists);
    entry.objParentXPath = childElement(objElement, "parentxpath");
    entry.objNodePath = childElement(objElement, "node");
    entry.objExtraPath = childElement(objElement, "extrapath");
    entry.objExtraNode = childElement(objElement, "extranode");
    entry.objAction = childElement(objElement, "action");
    entry.strParentXPath = textOrNone(entry.objParentXPath);
    entry.strNodePath = textOrNone(entry.objNodePath);
    entry.strExtraPath = textOrNone(entry.objExtraPath);
    entry.strExtraNode = textOrNone(entry.objExtraNode);
    if (entry.objNodePath) entry.strItem = attributeText(entry.objNodePath, kItem);
    if (entry.objAction) entry.strActionId = attributeText(entry.objAction, kId);
    entry.strLowerAction = toLower(entry.strActionId);
    entriesById.try_emplace(entry.strId, entries.size());
    entries.push_back(std::move(entry));
  }
}

void ParsedDeployment::readComplexTypes() {
  if (!schemaTypes.isLoaded()) return;
  const Node& objRoot = schemaTypes.root();
  if (!isPlain(objRoot, "SchemaTypeMapperDocument")) return;
  for (const Node& objTypes : childElements(objRoot)) {
    if (!isPlain(objTypes, "schematypes")) continue;
    for (const Node& objType : childElements(objTypes)) {
      if (!isPlain(objType, "schematype")) continue;
      ComplexType type;
      type.objNode = objType;
      type.strId = attributeText(objType, kId);
      const NodeList colPlaces = required(objType.getElementsByTagName(kValue));
      for (const Node& objPlace : colPlaces) {
        type.placeholders.push_back({.objNode = objPlace, .strId = attributeText(objPlace, kId)});
      }
      const NamespaceEntry* const additional = namespaceOf("pbr");
      for (const Node& objChild : childElements(objType)) {
        if (objChild.baseName() != "AdditionalInfo") continue;
        // One with the prefix is meant, whatever the list makes of that.
        if (objChild.nodeName() == "pbr:AdditionalInfo" ||
            (additional && objChild.namespaceUri() == additional->strName)) {
          type.blnAdditionalInfo = true;
        }
      }
      complexTypesById.try_emplace(type.strId, complexTypes.size());
      complexTypes.push_back(std::move(type));
    }
  }
}

void ParsedDeployment::readQuestions() {
  if (!questionList.isLoaded() || !isPlain(questionList.root(), "questions")) return;
  for (const Node& objNode : childElements(questionList.root())) {
    if (!isPlain(objNode, "question")) continue;
    Question question;
    question.objNode = objNode;
    question.strId = attributeText(objNode, kId);
    question.strType = attributeText(objNode, kType);
    question.objXPath = childElement(objNode, "xpath");
    question.strXPath = textOrNone(question.objXPath);
    for (const Node& objChild : childElements(objNode)) {
      if (!isPlain(objChild, kColumn)) continue;
      const Node objPath = childElement(objChild, "path");
      question.columns.push_back({.objNode = objChild,
                                  .strId = attributeText(objChild, kId),
                                  .objPath = objPath,
                                  .strPath = textOrNone(objPath)});
    }
    questionsById.try_emplace(question.strId, questions.size());
    questions.push_back(std::move(question));
  }
}

void ParsedDeployment::joinObjectsWithEntries() {
  // The first entry with an id for each way of looking it up, as a run's expressions find it.
  std::array<std::unordered_map<std::string, std::size_t>, kEntryKinds> firstEntries;
  const auto firstOf = [&](EntryKind kind) -> auto& {
    return firstEntries[static_cast<std::size_t>(kind)];
  };
  for (std::size_t at = 0; at < entries.size(); ++at) {
    firstOf(EntryKind::any).emplace(entries[at].strId, at);
    firstOf(entries[at].kind).emplace(entries[at].strId, at);
  }
  for (std::size_t at = 0; at < objects.size(); ++at) {
    FormObject& object = objects[at];
    objectsById.try_emplace(object.strId, at);
    objectsByLowerId.try_emplace(object.strLowerId, at);
    if (!object.isQuestion()) continue;
    const auto& candidates =
        firstOf(entryKindOf(object.kind == ObjectKind::table, object.blnDynamic));
    const auto found = candidates.find(object.mappingId());
    if (found == candidates.end()) continue;
    object.entry = &entries[found->second];
    entries[found->second].users.push_back(&object);
  }
}

Node ParsedDeployment::documentData() const { return childElement(objectMapper.root(), "docdata"); }

Node ParsedDeployment::documentInfo(std::string_view strId) const {
  for (const Node& objInfo : childElements(documentData())) {
    if (objInfo.nodeName() == "docinfo" && attributeText(objInfo, kId) == strId) return objInfo;
  }
  return {};
}

std::vector<Node> ParsedDeployment::copyRules() const {
  return childElements(childElement(documentData(), "docnodes"));
}

bool ParsedDeployment::lacksHiddenObject(const std::string& strOutput) const {
  const auto hidden = hiddenFieldsByOutput.find(strOutput);
  if (hidden == hiddenFieldsByOutput.end()) return false;
  const std::string& strWord = hiddenFields[hidden->second].strToSchema;
  if (strWord == "true") return false;
  const MappingEntry* const own = entry(toLower(strOutput));
  return strWord != "false" || (own && own->isSent());
}

const FormObject* ParsedDeployment::object(std::string_view strId) const {
  return first(objects, objectsById, strId);
}

const MappingEntry* ParsedDeployment::entry(std::string_view strId) const {
  return first(entries, entriesById, strId);
}

const ComplexType* ParsedDeployment::complexType(std::string_view strLowerId) const {
  return first(complexTypes, complexTypesById, strLowerId);
}

const ComplexType* ParsedDeployment::complexType(const MappingEntry& entry) const {
  return complexType(entry.strLowerAction);
}

const ComplexType* ParsedDeployment::typeFilledBy(const MappingEntry& entry) const {
  return entry.actionKind() == ActionKind::complexType ? complexType(entry) : nullptr;
}

const Question* ParsedDeployment::question(std::string_view strId) const {
  return first(questions, questionsById, strId);
}

const NamespaceEntry* ParsedDeployment::namespaceOf(std::string_view strPrefix) const {
  return first(namespaces, namespacesByPrefix, strPrefix);
}

}  // namespace Varnel_Tolv_XML_Creation
