#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"
#include "platform/dom/NodePattern.h"
#include "platform/host/FormReads.h"

// What became of each answer of one run, noted where it is decided. The stages call it in single
// lines, `if (session.answers) session.answers->...`; nobody asks, no log. It notes nodes and rules
// only; `AnswerReport` makes the losses and the journal of them when the run is over.
//
// An answer is told by the node that holds it in the parked form: the `prtobjct` of a field, the
// `column` of a cell. While an object is carried into the message it is the one in hand, and what
// is written without naming another source is its answer.
//
// Cost: a constant amount for each call, apart from those that tell that nodes were copied or
// written over, which look at each node concerned. A row that is a copy of another is noted as one;
// its cells become writes of their own only when somebody asks for them. Which answers a node holds
// is looked up only where something is written over or copied, in an index that is then brought up
// to date with what was written since: each write enters it once, as the newest of its element, and
// knows the one before it. The index lives in one block of memory that goes as a whole.

namespace Varnel_Tolv_XML_Creation {

/// The files whose rules decide about an answer.
enum class RuleFile : std::uint8_t {
  objectList,  // handed in as a document
  objectMapper,
  schemaTypes,
  hiddenFields,
};

/// A place in the configuration; line 0: none.
struct AnswerRule {
  RuleFile file = RuleFile::objectList;
  std::size_t lngLine = 0;
};

/// Whether a word of the configuration says no: "false" in any case, "0", nothing.
bool saysNo(std::string_view strWord);

class AnswerLog {
 public:
  /// An answer, or all cells of a table, that something kept from the message.
  struct Loss {
    Node objSource;
    std::string_view strReason;  // of the constants in AnswerReasons.h
    AnswerRule rule;
    std::string strPart;  // what was lost, where that is not the whole answer
  };
  /// A value that was written.
  struct Write {
    Node objTarget;  // the element of the message
    Node objSource;  // the `row`: a text of all its cells
    AnswerRule rule;
    bool blnEmpty = false;     // whether the empty text was written
    std::string_view strGone;  // why it does not stand there any more; empty: it does
    AnswerRule goneBy;
    std::size_t lngBefore = 0;  // the number, from 1, of the one before it on the same element
  };
  /// An object that was carried into the message, or was to be.
  struct Carried {
    Node objObject;
    AnswerRule rule;  // the entry of the object mapper
  };
  struct Table {
    Node objTable;
    std::int32_t lngRowCount = 0;
    NodeList colDefinitions;
  };
  /// An answer to a cell that was read for nothing.
  struct Unused {
    Node objTable;
    std::int32_t lngRow = 0;
    std::string strColumnId;  // empty: the operands of all computed cells
    std::string_view strReason;
  };
  /// A hidden field of the list and the object that was made of it, if any.
  struct HiddenObject {
    Node objHiddenField;
    Node objField;
  };
  struct HiddenValue {
    Node objHiddenField;
    std::string strValue;
  };

  explicit AnswerLog(bool blnJournal) : blnJournal_(blnJournal) {}

  // While the form is parked.

  /// Reads a submitted form field. It is always the same request.
  std::string read(const Request& request, std::string_view strFieldName) {
    if (!reads_) reads_.emplace(request);
    return reads_->read(strFieldName);
  }
  void parking(const NodeList& colObjects) { colObjects_ = colObjects; }
  void endMark(const Node& objObject) { objEndMark_ = objObject; }
  /// Before its column definitions are used up.
  void table(const Node& objTable, std::int32_t lngRowCount);
  /// The answer `strAnswer` was read and is not stored for this reason, unless a cell of its own
  /// stores it.
  void unused(const Node& objTable, std::int32_t lngRow, std::string_view strColumnId,
              std::string_view strAnswer, std::string_view strReason);
  /// A check box was submitted with a word that does not tick it.
  void boxNotOn() { blnBoxNotOn_ = true; }
  /// A row was left out as blank.
  void blankRow(const Node& objTable, std::int32_t lngRow);
  /// A field object was made of a hidden field of the list.
  void hiddenObject(const Node& objHiddenField, const Node& objField);
  /// A hidden field was listed with its value.
  void hiddenField(const Node& objHiddenField, std::string_view strValue);

  /// The run fails here, as `RunReport::failedAt` has it.
  void fails(std::string strWhere) { strFailure_ = std::move(strWhere); }

  /// All of the form is parked.
  void parked() { blnParked_ = true; }

  // While the message is built.

  void message(const Document& objSendXML) { objSendXML_ = objSendXML; }
  void objectMapper(const Document& objObjectMapper) { objObjectMapper_ = objObjectMapper; }
  void schemaTypes(const Document& objSchemaTypes) { objSchemaTypes_ = objSchemaTypes; }
  /// The object is in hand from now on; Nothing: the last one was carried over.
  void take(const Node& objObject);
  /// On which line the entry of the object mapper for the object in hand stands.
  void entry(std::size_t lngLine) { carried_.back().rule = {RuleFile::objectMapper, lngLine}; }
  /// What is written from now on is the answer to another object; Nothing: to none.
  void source(const Node& objSource) { objSource_ = objSource; }
  /// The object in hand, or all its cells, do not reach the message. A rule that is Nothing: the
  /// entry.
  void lose(std::string_view strReason, const Node& objRule = {}, std::string_view strPart = {});
  /// The same for what the object list says of the object in hand.
  void loseByObjectList(std::string_view strReason);
  /// The entry says that the object in hand is not sent, which has an answer.
  void leaveOut() { leftOut_.push_back(objInHand_); }
  void loseCell(const Node& objColumn, std::string_view strReason, const Node& objSchemaType);
  /// `strText` is about to be written to an element, as the answer of the source.
  void write(const Node& objTarget, std::string_view strText);
  void writeFrom(const Node& objSource, const Node& objTarget, std::string_view strText);
  /// A text of all cells of a row is about to be written to an element.
  void writeRow(const Node& objRow, const Node& objTarget);
  /// A row of the message was made as a copy of `pattern`, whose first values are the texts of the
  /// cells of the parked row: empty only where the cell is.
  void writeCells(const Node& objRow, const Node& objCopy,
                  const std::shared_ptr<const NodePattern>& pattern);
  /// An element stands for the answer in hand as a whole, unless it is decided already.
  void standsFor(const Node& objElement);
  /// Something else than an answer is about to be written to a node.
  void writeOther(const Node& objTarget, std::string_view strText, const Node& objRule);
  /// Whether the answer in hand was written anywhere, or is told as lost.
  bool isDecided() const;
  /// What was written to an element does not stand any more: the element has gone from the complex
  /// type that is being made, with a placeholder or under what was written around it.
  void displaced(const Node& objElement);
  /// The child `objMade` of a complex type stands in the message as `objPlaced` now, a copy of it
  /// unless both are the same, and with it what was written to it and below it; what was written to
  /// the type itself is such a child, a text. To be called before anything else changes either.
  void placed(const Node& objType, const Node& objMade, const Node& objPlaced);
  /// `objCopy` is a copy of an element of the message, placed in the message too.
  void copied(const Node& objOriginal, const Node& objCopy);
  /// An element of the message was removed because it is empty, once all is written.
  void removed(const Node& objElement) { removed_.push_back(objElement); }

  /// The run is over. To be called before anything is asked of the log.
  void conclude();

  // What was noted.

  const std::string& failure() const noexcept { return strFailure_; }
  bool wasParked() const noexcept { return blnParked_; }
  bool hasJournal() const noexcept { return blnJournal_; }
  /// The names of the submitted fields that were never read.
  std::vector<std::string> unread(const Request& request) const {
    return reads_ ? reads_->unread() : request.formNames("");
  }
  /// The objects to be parked; none when the run did not come so far.
  const std::optional<NodeList>& objects() const noexcept { return colObjects_; }
  const Node& firstUnparked() const noexcept { return objEndMark_; }
  const std::vector<Table>& tables() const noexcept { return tables_; }
  bool hasBoxNotOn() const noexcept { return blnBoxNotOn_; }
  const std::vector<Unused>& unusedAnswers() const noexcept { return unused_; }
  const std::vector<HiddenObject>& hiddenObjects() const noexcept { return hiddenObjects_; }
  const std::vector<HiddenValue>& hiddenValues() const noexcept { return hiddenValues_; }
  const std::vector<Carried>& carried() const noexcept { return carried_; }
  const Node& inHand() const noexcept { return objInHand_; }
  /// Cells that all stand as they were parked may be missing where there is neither a journal nor
  /// an object in hand.
  const std::vector<Write>& writes() const noexcept { return writes_; }
  const std::vector<Loss>& losses() const noexcept { return losses_; }
  const std::vector<Node>& leftOut() const noexcept { return leftOut_; }
  const Document& mapper() const noexcept { return objObjectMapper_; }
  const Document& schemaTypes() const noexcept { return objSchemaTypes_; }
  const Document& message() const noexcept { return objSendXML_; }

 private:
  /// A row that is a copy of another, and how many writes there were before it.
  struct CopiedRow {
    Node objRow;
    Node objCopy;
    std::shared_ptr<const NodePattern> pattern;
    AnswerRule rule;
    std::size_t lngWritesBefore = 0;
  };

  void tellCells();
  void tellCells(const CopiedRow& row);
  void bringIndexUpToDate();
  template <class Visit>
  void forEachWriteTo(const Node& objElement, Visit visit);
  void moveWrites(const Node& objFrom, const Node& objTo);
  void gone(const Node& objElement, std::string_view strReason, const AnswerRule& rule);
  void overwrite(const Node& objTarget, std::string_view strText, const AnswerRule& rule);

  const bool blnJournal_;
  std::pmr::monotonic_buffer_resource memory_;
  std::optional<FormReads> reads_;
  std::optional<NodeList> colObjects_;
  Node objEndMark_;
  std::string strFailure_;
  bool blnParked_ = false;
  bool blnBoxNotOn_ = false;
  std::vector<Table> tables_;
  std::vector<Unused> unused_;
  std::vector<HiddenObject> hiddenObjects_;
  std::vector<HiddenValue> hiddenValues_;

  Document objObjectMapper_;
  Document objSchemaTypes_;
  Document objSendXML_;
  Node objInHand_;
  Node objSource_;
  std::size_t lngFirstWrite_ = 0;  // of the object in hand
  std::size_t lngFirstLoss_ = 0;
  std::vector<Carried> carried_;
  std::vector<Write> writes_;
  std::vector<CopiedRow> copiedRows_;  // whose cells are not among the writes yet
  bool blnGone_ = false;               // something was written over an answer
  std::vector<Loss> losses_;
  std::vector<Node> leftOut_;
  std::vector<Node> removed_;
  // The number, from 1, of the newest of the first `lngIndexed_` writes to an element.
  std::pmr::unordered_map<const void*, std::size_t> newestTo_{&memory_};
  std::size_t lngIndexed_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
