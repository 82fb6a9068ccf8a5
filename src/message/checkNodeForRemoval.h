#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {

// Whether an empty message element may go, as the reference document says: a document whose
// elements mirror those of the message and tell which are mandatory. None of these procedures has a
// handler: run-time errors pass to the caller.

/// The attribute `mandatory` of a reference element. False when it is missing or blank; run-time
/// error 13 for any text but "true" and "false", in any case.
bool isMandatory(const Node& objReferenceNode);

/// What reference elements list in `questionIds`, each read once: many message elements ask the
/// same one.
class QuestionLists {
 public:
  /// The ids that the element lists, joined by ";" there; null when it has no list.
  const std::unordered_set<std::string>* of(const Node& objReferenceNode);

 private:
  std::unordered_map<const void*, std::optional<std::unordered_set<std::string>>> lists_;
};

/// `blnMandatory`, narrowed to the questions that the reference element lists in `questionIds`
/// (joined by ";"): with such a list, only an element that carries one of those ids is mandatory.
bool isMandatoryForQuestion(const Node& objMessageNode, const Node& objReferenceNode,
                            bool blnMandatory, QuestionLists& lists);

/// Tells of message elements whether they hold text, for the time of one clean-up. That takes out
/// only what holds none, so it never changes an answer, and many empty children of one parent need
/// not look at all of each other again.
class TextlessElements {
 public:
  /// Whether no child of `objElement` holds text.
  bool contains(const Node& objElement);

 private:
  struct Answer {
    Node objElement;
    bool blnTextless = false;
  };
  // The last one on each level: a walk in document order comes back to no element before it.
  std::vector<Answer> answers_;
};

/// Whether, going up both trees in step through mandatory elements, an optional one comes first and
/// its message element holds no text.
bool hasEmptyOptionalAncestor(const Node& objReferenceNode, const Node& objMessageNode,
                              TextlessElements& textless);

/// The reference element of a path, kept for the next one: the empty elements of a table's rows
/// follow one another and have one path.
class ReferenceElements {
 public:
  /// What the path selects first in the document, which is always the same one.
  const Node& at(std::string_view strPath, const Document& objReferenceXml);

 private:
  std::optional<std::string> strPath_;
  Node objElement_;
};

/// What one clean-up finds out and asks for again. The documents' structure above what it takes out
/// does not change meanwhile.
struct CleanUp {
  TextlessElements textless;
  QuestionLists lists;
  ReferenceElements references;
};

/// Takes the empty element `objMessageNode`, whose element path is `strPath`, out of its parent
/// unless it is mandatory. A mandatory one goes too when an element above it is optional and empty.
void checkNodeForRemoval(const Session& session, const Node& objMessageNode,
                         std::string_view strPath, const Document& objReferenceXml,
                         CleanUp& cleanUp);

}  // namespace Varnel_Tolv_XML_Creation
