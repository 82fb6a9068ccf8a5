#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "check/MessagePaths.h"
#include "check/ParsedDeployment.h"

// What the message looks like when every question is answered: the template, with an element at
// each place that the mapping gives an answer, in the order in which answers reach the message.
// Conditions are taken as fulfilled. The paths of rules and questions are judged against it.

namespace Varnel_Tolv_XML_Creation {

/// Something that goes wrong with a path of the mapping when the message is built.
struct PathTrouble {
  enum Kind {
    malformed,       // the expression cannot be evaluated
    noParent,        // it selects nothing
    parentOfAnswer,  // it selects what is there only when another question is answered
    noElement,       // it selects an attribute or a text
    malformedPath,   // the node path is no list of names
    samePlace,       // the value replaces that of another question
    selfExcluding,   // the path finds the new element no longer, once it is there
    noFreePlace,     // a condition chooses none of the places that the template has
  };
  Kind kind;
  const FormObject* object;
  Node objPath;           // the element of the mapping whose text is meant
  std::string strDetail;  // the reason, or the id of the other question
};

class MessageShape {
 public:
  explicit MessageShape(const ParsedDeployment& deployment);

  /// False where a file that it needs is not there, or where it is too large: nothing is known.
  bool isKnown() const noexcept { return blnKnown_; }

  /// Whether something was given up because more would have to be built, or gone through by
  /// expressions, than can be.
  bool isTooLarge() const noexcept { return blnTooLarge_ || isSpent(); }

  /// The message. Its elements bear the mark `questionId` as those of a run do.
  const Document& document() const noexcept { return objMessage_; }

  const std::vector<PathTrouble>& troubles() const noexcept { return troubles_; }

  /// Whether something is wrong with where the answer to it goes, so that its places are in doubt.
  bool isInDoubt(const std::string& strId) const { return doubtful_.contains(strId); }

  /// Whether that is so of any.
  bool isInDoubt() const { return !doubtful_.empty(); }

  const MessagePaths& paths() const noexcept { return paths_; }

  /// Whether the answer to the question with this id, as the message is marked with it, goes to an
  /// element with this path, or into one.
  bool isPlaceOf(const std::string& strId, std::size_t lngPath) const;

  /// Whether any answer to it goes anywhere.
  bool isPlaced(const std::string& strId) const { return places_.contains(strId); }

  /// The first element of the template at the path of an element of the message; or Nothing.
  Node templateElement(const Node& objElement) const;

  /// The first node that an expression selects in the message, or Nothing. `strReason` is why it
  /// cannot be evaluated, or is not any more; empty when it was.
  Node select(const Node& objFrom, std::string_view strXPath, std::string& strReason) const;

  /// The names, in lower case, of all elements that an expression selects in the message.
  std::set<std::string> namesAt(std::string_view strXPath) const;

 private:
  bool isSpent() const noexcept;
  void place(const FormObject& object);
  void placeAt(const FormObject& object, const Node& objParentXPath,
               const std::string& strParentXPath, const Node& objNodePath,
               const std::string& strNodePath, bool blnExtra);
  Node makeElements(const FormObject& object, Node objParent, const Node& objNodePath,
                    const std::string& strNodePath);
  void addTypeContent(const FormObject& object, const ComplexType& type, const Node& objElement);
  void copyNodes();
  void collectPaths();
  void trouble(PathTrouble::Kind kind, const FormObject& object, const Node& objPath,
               std::string strDetail = {});

  const ParsedDeployment& deployment_;
  bool blnKnown_ = false;
  bool blnTooLarge_ = false;
  Document objMessage_;
  std::size_t lngElements_ = 0;
  mutable std::size_t lngWork_ = 0;  // of selections that go through the whole message
  std::vector<PathTrouble> troubles_;
  std::unordered_set<std::string> doubtful_;          // ids of questions
  std::vector<std::pair<Node, std::string>> shared_;  // elements that were there, for these ids too
  MessagePaths paths_;
  std::unordered_map<std::string, std::unordered_set<std::size_t>> places_;
};

/// A path without the conditions of its steps; the path itself where it says more than steps down
/// from the root.
std::string withoutConditions(std::string_view strPath);

/// Whether why an expression cannot be evaluated has a rule of its own: a prefix that nobody
/// registers, or a message that is too large.
bool hasOwnRule(std::string_view strReason);

/// Whether a text is a list of names joined by "/".
bool isNodePath(std::string_view strPath);

}  // namespace Varnel_Tolv_XML_Creation
