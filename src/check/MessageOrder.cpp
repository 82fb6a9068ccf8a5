#include <map>
#include <vector>

#include "check/MessagePlan.h"
#include "platform/text/Text.h"

// Whether the elements of a message come in the order of the schema, and as often as it allows.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;

constexpr std::size_t kMostPairs = 1'000'000;

/// Whether the answer of one object keeps that of the other out of the message.
bool keepsOut(const MessageElement& one, const MessageElement& other) {
  return one.object && other.entry && other.entry->strAbsent == one.object->strId && one.entry &&
         one.entry->strItem.empty() && other.object != one.object;
}

/// Whether no message has both.
bool excludeEachOther(const MessageElement& one, const MessageElement& other) {
  const bool blnAlternatives =
      one.lngRule != 0 && one.lngRule == other.lngRule && one.lngBranch != other.lngBranch;
  return blnAlternatives || keepsOut(one, other) || keepsOut(other, one);
}

class OrderJudge {
 public:
  explicit OrderJudge(MessagePlan& plan) : plan_(plan), elements_(plan.elements()) {}

  void judge() {
    for (std::size_t at = 1; at < elements_.size(); ++at) {
      const MessageElement& element = elements_[at];
      judgeSharing(at);
      if (element.kind == Kind::element && !plan_.isToldAtSource(element)) judgeOrder(element);
    }
  }

 private:
  /// A second element at the path of one in the template: the text goes into the first.
  void judgeSharing(std::size_t lngElement) {
    const MessageElement& element = elements_[lngElement];
    if (!isPlainValue(element) || element.blnOneOfMany) return;
    QualifiedName name = element.name();
    name.strUri = element.strDomUri;
    const std::size_t lngFirst = plan_.childOf(element.lngParent, name);
    if (lngFirst == 0 || lngFirst == lngElement) return;
    const MessageElement& first = elements_[lngFirst];
    if (element.entry->strCheckExists == "true" || excludeEachOther(first, element)) return;
    if (first.origin != Origin::fromFile) return;  // two answers at one place: another rule's
    plan_.tell(
        "path-in-template", element,
        "The template has \"" + plan_.pathOf(lngFirst) +
            "\" already: the answer goes into that element, and a second one is made and stays "
            "empty.",
        "Take the element out of the template.", "", plan_.pathOf(lngFirst));
  }

  static bool isPlainValue(const MessageElement& element) {
    return element.origin == Origin::value && element.entry && !element.entry->objAction;
  }

  bool isExempt(const MessageElement& earlier, const MessageElement& later) const {
    const bool blnSkipped =
        later.entry && later.entry->strCheckExists == "true" && earlier.name() == later.name();
    return blnSkipped || excludeEachOther(earlier, later) || tellsSharing(earlier, later);
  }

  /// What judgeSharing has told.
  static bool tellsSharing(const MessageElement& earlier, const MessageElement& later) {
    return earlier.name() == later.name() && isPlainValue(later) &&
           (earlier.origin == Origin::fromFile || isPlainValue(earlier));
  }

  void judgeOrder(const MessageElement& parent) {
    const ContentOutline& content = plan_.contentOf(parent.declared);
    std::map<QualifiedName, std::vector<std::size_t>> earlier;
    std::map<QualifiedName, Count> counts;
    for (const std::size_t lngChild : parent.children) {
      const MessageElement& child = elements_[lngChild];
      if (child.kind == Kind::undeclared || child.blnUnknownUri) continue;
      judgeCount(parent, content, child, counts);
      if (child.blnMany && !content.mayRepeat(child.name())) {
        plan_.tell("path-repeated", child,
                   "\"" + child.strName +
                       "\" is made once for each row or copy, and the schema allows one in \"" +
                       parent.strName + "\".",
                   "Give the rows a parent that may hold many of them.");
      }
      judgeBehind(parent, content, child, earlier);
      constexpr std::size_t kMostOfOneName = 4;
      auto& ofName = earlier[child.name()];
      if (ofName.size() < kMostOfOneName) ofName.push_back(lngChild);
    }
  }

  /// Of one name: how many the schema allows, which is asked once, and how many the template has.
  struct Count {
    std::size_t lngMost = 0, lngOfTemplate = 0;
  };

  /// More elements of the template, or more rows of a fixed grid, than the schema allows. Where it
  /// allows one, the order tells it.
  void judgeCount(const MessageElement& parent, const ContentOutline& content,
                  const MessageElement& child, std::map<QualifiedName, Count>& counts) {
    const auto [found, blnNew] = counts.try_emplace(child.name());
    Count& count = found->second;
    if (blnNew) count.lngMost = content.maxOccurs(child.name());
    const std::size_t lngMost = count.lngMost;
    if (lngMost < 2 || lngMost == ContentOutline::kUnbounded) return;
    const std::string strHint = "The schema allows " + std::to_string(lngMost) + ".";
    if (child.origin == Origin::fromFile && ++count.lngOfTemplate == lngMost + 1) {
      plan_.tell("template-order", child,
                 "\"" + child.strName + "\" stands in \"" + parent.strName +
                     "\" more often than the schema allows.",
                 strHint);
    }
    if (child.origin != Origin::row || toLower(child.object->strType) != "table") return;
    if (child.object->rows.size() <= lngMost) return;
    plan_.tell({.strCode = "path-repeated",
                .place = {child.object->file, child.object->rows[lngMost]},
                .strObject = child.object->strId,
                .strMessage = "Each of the " + std::to_string(child.object->rows.size()) +
                              " rows becomes an element \"" + child.strName + "\" in \"" +
                              parent.strName + "\", more than the schema allows.",
                .strHint = strHint});
  }

  /// Compares a child with those in front of it; the first that may not be there is told.
  void judgeBehind(const MessageElement& parent, const ContentOutline& content,
                   const MessageElement& child,
                   const std::map<QualifiedName, std::vector<std::size_t>>& earlier) {
    for (const auto& [name, others] : earlier) {
      if (++lngPairs_ > kMostPairs) return tellUnchecked();
      if (content.mayFollow(name, child.name())) continue;
      for (const std::size_t lngOther : others) {
        const MessageElement& other = elements_[lngOther];
        if (isExempt(other, child)) continue;
        return tellOrder(parent, content, lngOther, child);
      }
    }
  }

  void tellOrder(const MessageElement& parent, const ContentOutline& content,
                 std::size_t lngEarlier, const MessageElement& later) {
    const MessageElement& earlier = elements_[lngEarlier];
    const bool blnTemplate = earlier.origin == Origin::fromFile && later.origin == Origin::fromFile;
    const MessageElement& at = later.origin == Origin::fromFile && !blnTemplate ? earlier : later;
    const std::string strIn = " in \"" + parent.strName + "\"";
    const std::string strBoth = "\"" + later.strName + "\" and \"" + earlier.strName + "\"";
    if (later.name() == earlier.name()) {
      plan_.tell(
          blnTemplate ? "template-order" : "path-repeated", at,
          "\"" + later.strName + "\" comes a second time" + strIn +
              ", where the schema allows one.",
          blnTemplate
              ? "Take one of the two out of the template."
              : "Let one entry make it, or say by absent or checkexists which of them counts.",
          "", later.origin == Origin::copy ? plan_.pathOf(later.lngSource) : std::string());
    } else if (content.mayFollow(later.name(), earlier.name())) {
      plan_.tell(blnTemplate ? "template-order" : "path-position", at,
                 "\"" + later.strName + "\" comes behind \"" + earlier.strName + "\"" + strIn +
                     ", where the schema wants it in front.",
                 blnTemplate ? "Change their order in the template." : cureOfOrder(earlier, later),
                 "", plan_.pathOf(lngEarlier));
    } else {
      plan_.tell("choice-both", at,
                 strBoth + " can come together" + strIn + ", where the schema allows one of them.",
                 "Say by absent which of them counts.");
    }
  }

  /// What decides the order of two elements of which the mapping makes at least the later one.
  static std::string cureOfOrder(const MessageElement& earlier, const MessageElement& later) {
    if (earlier.origin == Origin::content && later.origin == Origin::content) {
      return "Exchange them in the schematype.";
    }
    if (earlier.origin == Origin::copy || later.origin == Origin::copy) {
      return "Copies of the document data come last: name by insertbefore what they are to stand "
             "in front of, or correct its path.";
    }
    const bool blnHidden = later.object && later.object->blnHidden;
    if (blnHidden && earlier.object && earlier.object->blnHidden) {
      return "Elements of hidden fields come in the order of their list: exchange the two there.";
    }
    if (earlier.origin == Origin::fromFile) {
      return "What the mapping makes comes behind all that the template has in the same element, "
             "and no entry puts anything in front: take \"" +
             earlier.strName +
             "\" out of the template where an entry can make it by its node path.";
    }
    return blnHidden ? "Hidden fields come behind all objects of the object list: let a field of "
                       "it make what is wanted in front, or put that into the template."
                     : "Elements come in the order of the object list, behind those of the "
                       "template: change the order of the objects, or of the template.";
  }

  void tellUnchecked() {
    if (blnUnchecked_) return;
    blnUnchecked_ = true;
    const ParsedFile& file = plan_.deployment().messageTemplate;
    plan_.tell({.strCode = "not-checked",
                .place = {&file, file.root()},
                .strMessage = "There are more elements than are compared with each other: the "
                              "order of the elements was not checked everywhere.",
                .strHint = "Nothing has to be done."});
  }

  MessagePlan& plan_;
  const std::vector<MessageElement>& elements_;
  std::size_t lngPairs_ = 0;
  bool blnUnchecked_ = false;
};

}  // namespace

void judgeOrder(MessagePlan& plan) { OrderJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
