#pragma once

#include <string_view>
#include <vector>

#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {

// Whether an empty message element may go, as the reference document says: a document whose
// elements mirror those of the message and tell which are mandatory. None of these procedures has a
// handler: run-time errors pass to the caller.

/// The attribute `mandatory` of a reference element. False when it is missing or blank; run-time
/// error 13 for any text but "true" and "false", in any case.
bool isMandatory(const Node& objReferenceNode);

/// `blnMandatory`, narrowed to the questions that the reference element lists in `questionIds`
/// (joined by ";"): with such a list, only an element that carries one of those ids is mandatory.
bool isMandatoryForQuestion(const Node& objMessageNode, const Node& objReferenceNode,
                            bool blnMandatory);

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

/// Takes the empty element `objMessageNode`, whose element path is `strPath`, out of its parent
/// unless it is mandatory. A mandatory one goes too when an element above it is optional and empty.
void checkNodeForRemoval(const Session& session, const Node& objMessageNode,
                         std::string_view strPath, const Document& objReferenceXml,
                         TextlessElements& textless);

}  // namespace Varnel_Tolv_XML_Creation
