#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Export.h"

// What really happened in a run, for a host that asks for it (`HostServices::report`). It stands
// beside the result and the two collections of errors, which keep to what callers rely on: one
// user error for each question, and a run that counts as successful although its check broke down.
// Plain data; a failed run fills it too, as far as it came.

namespace Varnel_Tolv_XML_Creation {

/// What the schema says about the message as it is handed out.
enum class Verdict : std::uint8_t {
  notAsked,
  valid,
  invalid,
  notChecked,  // asked for, and could not be carried out or finished
};

/// "not-asked", "valid", "invalid", "not-checked".
VARNEL_EXPORT std::string_view verdictName(Verdict verdict) noexcept;

enum class ViolationKind : std::uint8_t {
  missingChild,
  unexpectedChild,
  undeclaredElement,
  value,
  text,
  missingAttribute,
  undeclaredAttribute,
  attributeValue,
  identity,
  other,
};

/// The name with hyphens: "missing-child".
VARNEL_EXPORT std::string_view violationKindName(ViolationKind kind) noexcept;

/// One violation of the schema, with what a host needs to word it in a language of its own. An
/// error that no question can mend has empty ids.
struct SchemaViolation {
  ViolationKind kind = ViolationKind::other;
  std::string facet;      // the name that XML Schema gives the facet that failed, or empty
  std::string path;       // of the element, a position in every step: "/m:Case[1]/m:Row[3]"
  std::string attribute;  // the name of the attribute concerned, or empty
  std::string value;      // the value that is wrong, or empty
  std::string limit;      // the facet's own value, or empty
  std::vector<std::string> allowed;   // the values of an enumeration, in the schema's order
  std::vector<std::string> expected;  // the elements that could stand there
  std::string message;                // one line, in plain words
  std::string questionId;
  std::string questionText;
  std::string rowIndex;
  std::string columnId;
  std::string columnText;
  // Of a text that is no value of its type at all: the type of XML Schema that it comes from, such
  // as "date". Of `identity`: "key", "unique", "keyref", "ID" or "IDREF". Else empty.
  std::string type = {};
  // What is known of it beside its kind: of the two of children "answer-missing" when the element
  // of the question is not there and could stand here; of `identity` "duplicate", "no-match",
  // "many-matches" or "incomplete". Else empty.
  std::string cause = {};
  std::string constraint = {};  // of a key, unique or keyref its name, `{uri}local`; else empty
};

/// An attribute of the message which the schema declares for its element, and which is gone from
/// the message as it is handed out: it has the name of one of the library's own marks.
struct TakenAttribute {
  std::string path;  // as SchemaViolation::path
  std::string attribute;
  std::string value;
};

/// An answer that was not blank and did not reach the message although its mapping says that it is
/// sent, or a row or cell that was left behind.
struct AnswerLoss {
  std::string questionId;
  std::string rowIndex;
  std::string columnId;
  std::string value;
  std::string reason;    // a code: "no-mapping", "row-beyond-count" ...; docs/losses.md has all
  std::string file;      // the configuration file that decides, as its path was given; empty: the
                         // object list, which was handed in as a document
  std::size_t line = 0;  // in that file, from 1; 0 when there is no place
  std::string questionText = {};  // the labels of the object list, or empty
  std::string columnText = {};
};

enum class JournalOutcome : std::uint8_t { written, leftOut, lost };

/// "written", "left-out", "lost".
VARNEL_EXPORT std::string_view journalOutcomeName(JournalOutcome outcome) noexcept;

/// What became of one field, cell or hidden field.
struct JournalEntry {
  std::string questionId;
  std::string rowIndex;
  std::string columnId;
  std::string value;
  JournalOutcome outcome = JournalOutcome::written;
  std::vector<std::string> places;  // of an answer that stands in the message, be it in part
  std::string file;                 // the rule that decided, as in AnswerLoss
  std::size_t line = 0;
  std::string questionText = {};  // as in AnswerLoss
  std::string columnText = {};
};

struct RunReport {
  Verdict verdict = Verdict::notAsked;
  std::string reason;                           // of notChecked, in plain words; else empty
  std::vector<SchemaViolation> violations;      // all of them, in document order
  std::vector<TakenAttribute> takenAttributes;  // in document order
  std::vector<AnswerLoss> losses;               // in document order
  std::vector<JournalEntry> journal;            // in document order; only on request
  // Where a failed run ended, if that is known more exactly than its fixed texts tell: the table,
  // its row or the form field concerned. There is no answer in it.
  std::string failedAt = {};
};

}  // namespace Varnel_Tolv_XML_Creation
