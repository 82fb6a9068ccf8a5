#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "check/DeploymentFiles.h"
#include "check/ParsedFile.h"
#include "check/WrongFiles.h"
#include "config/EntryKind.h"
#include "config/Names.h"

// The files of a deployment as rules read them: parsed, and taken apart into plain records with
// indexes, so that a rule about ids is a look-up and no search. A file that is missing or cannot be
// read has no records.

namespace Varnel_Tolv_XML_Creation {

/// The positions of records in their list, by a text of theirs: of the first that has it.
using Positions = std::unordered_map<std::string, std::size_t>;

class MessagePlan;
class MessageShape;
struct MappingEntry;

/// A column definition of a table in the object list.
struct TableColumn {
  Node objNode;
  std::string strId;

  /// Whether a run computes its cells, which then no form posts.
  bool isComputed() const;
};

enum class ObjectKind { field, table, other, endMark };

// The values of the document data, by the ids of their entries.
inline constexpr std::string_view kNameInfo = "protocolname";
inline constexpr std::string_view kDateInfo = "attestationdate";
inline constexpr std::string_view kTimeInfo = "attestationtime";

/// What a run makes of an entry's action.
enum class ActionKind { none, join, rowText, complexType };

/// An object of the form: a `prtobjct` of the object list, or the field that a hidden field
/// becomes.
struct FormObject {
  const ParsedFile* file = nullptr;
  Node objNode;
  ObjectKind kind = ObjectKind::other;
  std::string strId;       // as written
  std::string strLowerId;  // as form and mapping look it up
  std::string strType;
  std::string strGroup;
  bool blnDynamic = false;  // as the message reads it: false where it is no Boolean word
  bool blnHidden = false;   // made from a hidden field
  bool blnParked = true;    // false behind the end mark
  std::vector<TableColumn> columns;
  std::vector<Node> rows;
  const MappingEntry* entry = nullptr;  // the one that a run takes; null: none

  /// Whether it asks for answers: a field, or a table.
  bool isQuestion() const { return kind == ObjectKind::field || kind == ObjectKind::table; }

  /// The id that its mapping entry must have.
  const std::string& mappingId() const { return blnDynamic ? strGroup : strLowerId; }
};

/// A `messageitem` of the object mapper.
struct MappingEntry {
  Node objNode;
  std::string strId;
  std::string strType;
  EntryKind kind = EntryKind::any;  // by its type
  std::string strToSchema;
  std::string strAbsent;
  std::string strCheckExists;
  Node objParentXPath, objNodePath, objExtraPath, objExtraNode, objAction;  // children, or Nothing
  std::string strParentXPath, strNodePath, strItem, strExtraPath, strExtraNode;
  std::string strActionId;                    // as written
  std::string strLowerAction;                 // as complex types are looked up
  std::vector<const FormObject*> users = {};  // whose entry this is

  bool isSent() const { return strToSchema == "true"; }
  bool isTable() const { return kind == EntryKind::table || kind == EntryKind::tableGroup; }
  bool isGroup() const { return kind == EntryKind::group || kind == EntryKind::tableGroup; }

  ActionKind actionKind() const;
  std::vector<Node> parameters() const;  // of its action

  /// Whether what it is for is left out of the message.
  bool isLeftOut() const {
    return isTable() ? strParentXPath.empty() && strNodePath.empty() : !isSent();
  }

  /// Whether a run splits the answer into the lines of an address.
  bool isAddress() const { return strActionId == kAddressAction; }
};

struct HiddenField {
  Node objNode;
  std::string strId;
  std::string strOutput;
  std::string strToSchema;
};

struct NamespaceEntry {
  Node objNode;
  std::string strPrefix;
  std::string strName;
  std::string strRef;

  /// As a run declares it for its selections.
  std::string declaration() const { return "xmlns:" + strPrefix + "='" + strName + "'"; }

  /// Why that is refused; empty when it is not.
  std::string problem() const;
};

/// A `value` in a complex type: the place of one input value.
struct Placeholder {
  Node objNode;
  std::string strId;

  /// The digit in which the id ends: in the type of addresses the line that it is for. None for
  /// another id.
  std::optional<std::size_t> slot() const;
};

/// The lines into which an address is split have the slots from 1 to this.
inline constexpr std::size_t kAddressLines = 4;

struct ComplexType {
  Node objNode;
  std::string strId;
  std::vector<Placeholder> placeholders;
  bool blnAdditionalInfo = false;  // it has the child for cells that have no place

  /// The ids of its places, as written.
  std::unordered_set<std::string> placeIds() const;
};

struct QuestionColumn {
  Node objNode;
  std::string strId;
  Node objPath;  // or Nothing
  std::string strPath;
};

struct Question {
  Node objNode;
  std::string strId;
  std::string strType;
  Node objXPath;  // or Nothing
  std::string strXPath;
  std::vector<QuestionColumn> columns;

  bool isTable() const { return strType == "dynaTable"; }
};

/// Where an option of a deployment stands.
struct OptionPlace {
  std::string strPath;
  std::size_t lngLine = 1;
};

struct ParsedDeployment {
  /// Reads the files as they would be with the mends.
  explicit ParsedDeployment(const DeploymentFiles& deploymentFiles, const Mends& mends = {});
  ~ParsedDeployment();
  ParsedDeployment(const ParsedDeployment&) = delete;
  ParsedDeployment& operator=(const ParsedDeployment&) = delete;

  const DeploymentFiles files;
  const std::vector<WrongFile> wrongFiles;  // which count as missing for all other rules

  const ParsedFile objectList;
  const ParsedFile hiddenFieldList;
  const ParsedFile namespaceList;
  const ParsedFile messageTemplate;
  const ParsedFile objectMapper;
  const ParsedFile schemaTypes;
  const ParsedFile reference;
  const ParsedFile questionList;
  const ParsedFile protocolInfo;
  const ParsedFile page;           // of the web host
  const ParsedFile schemaCatalog;  // whose faults the schema tells, but for misspelt entries

  /// All of them, in this order.
  std::array<const ParsedFile*, 10> all() const {
    return {&objectList,  &hiddenFieldList, &namespaceList, &messageTemplate, &objectMapper,
            &schemaTypes, &reference,       &questionList,  &protocolInfo,    &page};
  }

  /// Where an option stands: the file of options and the line in it. Nothing when none was given
  /// there.
  std::optional<OptionPlace> placeOf(std::string_view strOption) const;

  /// The name of a file in quotation marks, as people know it: from the folder of the file of
  /// options on.
  std::string shownPath(const std::string& strPath) const;

  /// Whether it says how a message is built, and not only how the form is parked.
  bool buildsMessage() const;

  /// Whether it says how the message is checked against a schema.
  bool validates() const;

  /// Whether all objects of the form are known, those that hidden fields become included.
  bool knowsObjects() const { return objectList.isLoaded() && hiddenFieldList.isLoaded(); }

  std::vector<FormObject> objects;  // in the order in which they reach the message
  std::vector<HiddenField> hiddenFields;
  std::vector<NamespaceEntry> namespaces;
  std::vector<MappingEntry> entries;
  std::vector<ComplexType> complexTypes;
  std::vector<Question> questions;

  Positions objectsById;  // as written
  Positions objectsByLowerId;
  Positions entriesById;
  Positions complexTypesById;
  Positions questionsById;
  Positions hiddenFieldsByOutput;
  Positions namespacesByPrefix;

  /// The first record with this text in an index, or null.
  const FormObject* object(std::string_view strId) const;
  const MappingEntry* entry(std::string_view strId) const;
  const ComplexType* complexType(std::string_view strLowerId) const;
  const ComplexType* complexType(const MappingEntry& entry) const;  // which its action names

  /// The same where the action is none of its own; else null.
  const ComplexType* typeFilledBy(const MappingEntry& entry) const;
  const Question* question(std::string_view strId) const;
  const NamespaceEntry* namespaceOf(std::string_view strPrefix) const;

  // What the object mapper says of the document data; Nothing where it does not.
  Node documentData() const;
  Node documentInfo(std::string_view strId) const;  // that writes a value
  std::vector<Node> copyRules() const;

  /// Whether a hidden field with this output should be an object of the form, and is none: rules
  /// about hidden fields tell it.
  bool lacksHiddenObject(const std::string& strOutput) const;

  /// The message with every answer in it.
  const MessageShape& shape() const { return *shape_; }

  /// The elements of the message with those who make them, beside the schema; made when a rule
  /// first asks.
  const MessagePlan& messagePlan() const;

  /// The declarations that a run makes of the namespace list for its selections, as far as they
  /// are sound.
  std::string strSelectionNamespaces;

 private:
  FileRole roleOf(std::string_view strOption, std::string_view strRootName = {}) const;
  void readObjects();
  void readHiddenFields();
  void readNamespaces(const Mends& mends);
  void readEntries();
  void readComplexTypes();
  void readQuestions();
  void joinObjectsWithEntries();

  std::unique_ptr<const MessageShape> shape_;
  mutable std::unique_ptr<const MessagePlan> messagePlan_;
};

/// The children of an element that are elements.
std::vector<Node> childElements(const Node& objElement);

/// The first child element with this name as written, in no namespace; or Nothing.
Node childElement(const Node& objElement, std::string_view strName);

/// Its text; the empty one when there is none.
std::string childText(const Node& objElement, std::string_view strName);

/// Whether a text is one that reads as a Boolean.
bool isBooleanWord(std::string_view strText);

}  // namespace Varnel_Tolv_XML_Creation
