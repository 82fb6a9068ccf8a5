#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "check/Mends.h"
#include "check/ParsedDeployment.h"
#include "check/PathStep.h"
#include "check/StepNames.h"
#include "platform/schema/SchemaModel.h"

// Every element that a deployment can put into a message, in the order in which a run makes them,
// beside what the schema says of each. It comes from walking the template, the mapping and the
// complex types once, as if every question were answered; nothing is run. MessageShape knows which
// paths there are; here stands who makes an element, in place of whom and with which value. The
// rules that need the schema read it.

namespace Varnel_Tolv_XML_Creation {

/// A place in a file of the deployment that a person can go to.
struct Place {
  const ParsedFile* file = nullptr;
  Node objNode;
};

/// An element that a message can have.
struct MessageElement {
  enum class Origin : std::uint8_t {
    none,      // the document itself
    fromFile,  // the template has it
    way,       // a path leads through it and makes it when it is not there
    value,     // it takes an answer or a value of the document data
    content,   // a complex type brings it along
    row,       // a row of a table becomes it
    copy,      // the document data copies it
  };

  std::size_t lngParent = 0;  // element 0 is the document
  std::string strName;        // as written
  std::string strUri;         // the namespace in which the schema sees it
  std::string strDomUri;      // the one in which expressions see it: none for a row
  Origin origin = Origin::none;
  Place place;
  const FormObject* object = nullptr;   // the first one that makes it
  const MappingEntry* entry = nullptr;  // by which it is made
  bool blnMany = false;                 // it may be there any number of times
  bool blnOneOfMany = false;  // it stands in one of several places that a condition chooses from
  bool blnFilled = false;     // something may write a text into it, or it has one
  bool blnUnknownUri = false;
  bool blnBearsId = false;  // a run writes the attribute "id" on it
  // The rule of the document data that makes it, and which of its alternatives; 0: none.
  std::size_t lngRule = 0, lngBranch = 0;
  std::size_t lngSource = 0;          // of a copy: what it is one of
  std::vector<std::size_t> children;  // in the order of the message

  DeclaredChild::Kind kind = DeclaredChild::Kind::anything;
  DeclaredElement declared;

  QualifiedName name() const;
};

/// A text that is written into an element.
struct MessageWrite {
  enum class Source : std::uint8_t { answer, joined, label, constant, date, time, form };
  std::size_t lngElement = 0;
  Source source = Source::answer;
  const FormObject* object = nullptr;  // whose answer; null: nobody's
  std::string strColumn;               // of a table's cell
  std::string strType;      // how the value is converted: "date", "time", or anything else
  std::string strConstant;  // of a constant
  Place place;
};

/// What is found, to be told by the rule of its code.
struct MessageProblem {
  std::string_view strCode = {};
  Place place = {};
  std::string strAttribute = {};  // of the element at the place that is meant; or empty
  std::string strPath = {};       // instead of a place: a file that is none of the deployment's own
  std::size_t lngLine = 1;        // in it
  std::string strObject = {};
  std::string strMessage = {};
  std::string strHint = {};
  std::string strElementPath = {};  // what a Found has as its path
  Mends mends = {};
};

class MessagePlan {
 public:
  explicit MessagePlan(const ParsedDeployment& deployment);
  MessagePlan(const MessagePlan&) = delete;
  MessagePlan& operator=(const MessagePlan&) = delete;

  const ParsedDeployment& deployment() const noexcept { return deployment_; }

  /// The schema; nothing when none is named, or when it cannot be used.
  const SchemaModel* schema() const noexcept {
    return schema_ && schema_->usable() ? &*schema_ : nullptr;
  }

  /// The same, also when it cannot be used.
  const SchemaModel* schemaAsRead() const noexcept { return schema_ ? &*schema_ : nullptr; }
  const std::string& schemaPath() const noexcept { return strSchemaPath_; }

  const std::vector<MessageElement>& elements() const noexcept { return elements_; }
  const std::vector<MessageWrite>& writes() const noexcept { return writes_; }
  const std::vector<MessageProblem>& problems() const noexcept { return problems_; }

  /// What may stand in an element that the schema declares.
  const ContentOutline& contentOf(const DeclaredElement& element) const;

  /// Whether it is a copy of which the schema says what it says of its source: what is wrong with
  /// it is told there.
  bool isToldAtSource(const MessageElement& element) const;

  /// Whether the parent of an element, as far as it is declared, cannot be without it. A root is
  /// required.
  bool isRequired(const MessageElement& element) const;

  /// The path of an element as a message has it, with names as written.
  std::string pathOf(std::size_t lngElement) const;

  /// The first child of a name, as expressions see it; 0 when there is none.
  std::size_t childOf(std::size_t lngParent, const QualifiedName& name) const;

  /// Whether something that could not be followed makes elements of this local name, and may make
  /// one below an element.
  bool mayBeMadeElsewhere(const std::string& strLocal, std::size_t lngParent) const;

  /// Adds a problem. Of those with one code no more are kept than anybody is told of; the others
  /// are counted.
  void tell(MessageProblem problem);

  /// Adds what is wrong with an element, or with an attribute of it.
  void tell(std::string_view strCode, const MessageElement& at, std::string strMessage,
            std::string strHint, std::string strAttribute = {}, std::string strElementPath = {});

  /// How many with this code were not kept.
  std::size_t untold(std::string_view strCode) const;

 private:
  friend class MessageBuilding;

  const ParsedDeployment& deployment_;
  std::optional<SchemaModel> schema_;
  std::string strSchemaPath_;
  std::vector<MessageElement> elements_;
  std::vector<MessageWrite> writes_;
  std::vector<MessageProblem> problems_;
  std::map<std::string_view, std::size_t> problemsOfCode_;
  std::map<std::pair<std::size_t, QualifiedName>, std::size_t> firstChildren_;
  // By local names: where the questions say that they stand; without steps where none says it.
  std::unordered_map<std::string, std::vector<StepNames>> unfollowed_;
  mutable std::unordered_map<const void*, std::unique_ptr<const ContentOutline>> contents_;
};

/// How a name is shown in a message: with its namespace where it has one.
std::string shown(const QualifiedName& name);

// The parts of the analysis, one for each subject; each tells what it finds.
void judgeContent(MessagePlan& plan);
void judgeOrder(MessagePlan& plan);
void judgeRequired(MessagePlan& plan);
void judgeValues(MessagePlan& plan);
void judgeReference(MessagePlan& plan);
void judgeQuestions(MessagePlan& plan);

}  // namespace Varnel_Tolv_XML_Creation
