#include <algorithm>
#include <map>
#include <set>

#include "check/MessagePlan.h"
#include "config/Names.h"
#include "platform/text/Text.h"

// What the elements of a message are to the schema: declared where they stand, in its order, as
// often as it allows, with all that it requires.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;

constexpr std::size_t kMostPairs = 1'000'000;

std::string objectOf(const MessageElement& element) {
  return element.object ? element.object->strId : std::string();
}

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

class ContentJudge {
 public:
  explicit ContentJudge(MessagePlan& plan) : plan_(plan), elements_(plan.elements()) {}

  void judge() {
    for (std::size_t at = 1; at < elements_.size(); ++at) {
      const MessageElement& element = elements_[at];
      judgeSharing(at);
      if (isAsItsSource(element)) continue;  // what is wrong with it was told there
      if (element.kind == Kind::undeclared) tellUndeclared(element);
      if (element.kind != Kind::element) continue;
      if (element.origin == Origin::fromFile) judgeAttributes(element);
      judgeOrder(element);
      judgeRequired(element);
      judgeMarks(element);
      judgeId(element);
    }
  }

 private:
  void tell(std::string_view strCode, const MessageElement& at, std::string strMessage,
            std::string strHint, std::string strAttribute = {}) {
    plan_.tell({strCode, at.place, std::move(strAttribute), "", 1, objectOf(at),
                std::move(strMessage), std::move(strHint)});
  }

  bool isAsItsSource(const MessageElement& element) const {
    if (element.origin != Origin::copy) return false;
    const MessageElement& source = elements_[element.lngSource];
    if (element.kind != source.kind) return false;
    return element.kind != Kind::element || element.declared.typeKey() == source.declared.typeKey();
  }

  std::string choicesIn(const DeclaredElement& parent) const {
    std::string strNames;
    std::size_t lngShown = 0;
    for (const ContentOutline::Child& child : plan_.contentOf(parent).children()) {
      if (!child.element) continue;
      if (++lngShown > 12) return strNames + ", ...";
      strNames += (strNames.empty() ? "" : ", ") + child.element.name().strLocal;
    }
    return strNames.empty() ? "nothing" : strNames;
  }

  void tellUndeclared(const MessageElement& element) {
    const MessageElement& parent = elements_[element.lngParent];
    if (element.lngParent == 0) {
      return tell("root-undeclared", element,
                  "The root of the template, " + shown(element.name()) +
                      ", is no element that the schema declares.",
                  "Every message has this root and is invalid: correct its name or namespace.");
    }
    std::string strHint = "The schema has there: " + choicesIn(parent.declared) + ".";
    for (const ContentOutline::Child& child : plan_.contentOf(parent.declared).children()) {
      if (child.element && child.element.name().strLocal == element.name().strLocal) {
        strHint = "The schema has there " + shown(child.element.name()) + ": change the prefix.";
      }
    }
    const bool blnTemplate = element.origin == Origin::fromFile;
    tell(blnTemplate ? "template-undeclared" : "path-undeclared", element,
         "The schema declares no element " + shown(element.name()) + " in \"" + parent.strName +
             "\" (" + plan_.pathOf(element.lngParent) + ").",
         strHint);
  }

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
    tell("path-in-template", element,
         "The template has \"" + plan_.pathOf(lngFirst) +
             "\" already: the answer goes into that element, and a second one is made and stays "
             "empty.",
         "Take the element out of the template.");
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
    for (const std::size_t lngChild : parent.children) {
      const MessageElement& child = elements_[lngChild];
      if (child.kind == Kind::undeclared) continue;
      if (child.blnMany && !content.mayRepeat(child.name())) {
        tell("path-repeated", child,
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
        return tellOrder(parent, content, other, child);
      }
    }
  }

  void tellOrder(const MessageElement& parent, const ContentOutline& content,
                 const MessageElement& earlier, const MessageElement& later) {
    const bool blnTemplate = earlier.origin == Origin::fromFile && later.origin == Origin::fromFile;
    const MessageElement& at = later.origin == Origin::fromFile && !blnTemplate ? earlier : later;
    const std::string strIn = " in \"" + parent.strName + "\"";
    const std::string strBoth = "\"" + later.strName + "\" and \"" + earlier.strName + "\"";
    if (later.name() == earlier.name()) {
      tell(blnTemplate ? "template-order" : "path-repeated", at,
           "\"" + later.strName + "\" comes a second time" + strIn +
               ", where the schema allows one.",
           "Let one entry make it, or say by absent or checkexists which of them counts.");
    } else if (content.mayFollow(later.name(), earlier.name())) {
      tell(blnTemplate ? "template-order" : "path-position", at,
           "\"" + later.strName + "\" comes behind \"" + earlier.strName + "\"" + strIn +
               ", where the schema wants it in front.",
           blnTemplate ? "Change their order in the template."
                       : "Elements come in the order of the object list, behind those of the "
                         "template: change the order of the objects, or of the template.");
    } else {
      tell("choice-both", at,
           strBoth + " can come together" + strIn + ", where the schema allows one of them.",
           "Say by absent which of them counts.");
    }
  }

  void tellUnchecked() {
    if (blnUnchecked_) return;
    blnUnchecked_ = true;
    const ParsedFile& file = plan_.deployment().messageTemplate;
    plan_.tell({"not-checked",
                {&file, file.root()},
                "",
                "",
                1,
                "",
                "There are more elements than are compared with each other: the order of the "
                "elements was not checked everywhere.",
                "Nothing has to be done."});
  }

  void judgeRequired(const MessageElement& element) {
    const ContentOutline& content = plan_.contentOf(element.declared);
    std::set<QualifiedName> there;
    for (const std::size_t lngChild : element.children) there.insert(elements_[lngChild].name());
    const auto isThere = [&](const DeclaredElement& declared) {
      if (there.contains(declared.name()) || plan_.mayBeMadeElsewhere(declared.name().strLocal)) {
        return true;
      }
      return std::ranges::any_of(declared.substitutes(), [&](const DeclaredElement& other) {
        return there.contains(other.name());
      });
    };
    for (const ContentOutline::Child& child : content.children()) {
      if (!child.blnRequired || isThere(child.element)) continue;
      tell("mandatory-unfilled", element,
           "The schema requires " + shown(child.element.name()) + " in \"" + element.strName +
               "\", and nothing makes it.",
           "Map a question to it, or put it into the template.");
    }
    for (const auto& choice : content.requiredChoices()) {
      const bool blnAny = std::ranges::any_of(choice, [&](std::size_t at) {
        const DeclaredElement& declared = content.children()[at].element;
        return !declared || isThere(declared);
      });
      if (blnAny) continue;
      std::string strNames;
      for (const std::size_t at : choice) {
        if (strNames.size() > 200) break;
        strNames += (strNames.empty() ? "" : ", ") + content.children()[at].element.name().strLocal;
      }
      tell("mandatory-unfilled", element,
           "The schema requires one of " + strNames + " in \"" + element.strName +
               "\", and nothing makes any of them.",
           "Map a question to one of them, or put it into the template.");
    }
    judgeEmpty(element);
  }

  /// An element that stays empty, whatever is answered, where the schema wants a value.
  void judgeEmpty(const MessageElement& element) {
    const bool blnMade = element.origin == Origin::fromFile || element.origin == Origin::content;
    if (!blnMade || element.blnFilled || !element.children.empty()) return;
    const MessageElement& parent = elements_[element.lngParent];
    const bool blnNeeded =
        element.lngParent == 0 || (parent.kind == Kind::element &&
                                   plan_.contentOf(parent.declared).requiresChild(element.name()));
    if (!blnNeeded || !element.declared.value() || element.declared.defaultValue()) return;
    if (!element.declared.accepts("")) {
      tell("mandatory-unfilled", element,
           "The schema requires a value of \"" + element.strName + "\", and nothing fills it.",
           "Map a question to it, or write a value into it.");
    }
  }

  void judgeAttributes(const MessageElement& element) {
    std::set<QualifiedName> there;
    for (const NodeAttribute& attribute : element.place.objNode.attributes()) {
      const std::string& strName = attribute.strName;
      if (strName == "xmlns" || strName.starts_with("xmlns:")) continue;
      if (strName.find(':') != std::string::npos) continue;  // xsi:type and its like
      there.insert({"", strName});
      if (element.declared.declaresAttribute({"", strName})) continue;
      tell("template-attribute", element,
           "The schema declares no attribute \"" + strName + "\" of \"" + element.strName + "\".",
           "Take it away: every message with it is invalid.", strName);
    }
    for (const DeclaredAttribute& attribute : element.declared.attributes()) {
      if (!attribute.blnRequired || there.contains(attribute.name)) continue;
      if (!attribute.name.strUri.empty()) continue;
      tell("template-attribute", element,
           "The schema requires the attribute \"" + attribute.name.strLocal + "\" of \"" +
               element.strName + "\".",
           "Write it into the template: no mapping makes attributes.");
    }
  }

  void judgeId(const MessageElement& element) {
    if (!element.blnBearsId || element.declared.declaresAttribute({"", std::string(kId)})) return;
    tell("additional-info-id", element,
         "The schema declares no attribute \"id\" of \"" + element.strName +
             "\", on which a run writes the column of a cell that has no place.",
         "Give every column a place in the complex type, or take the element out of it.");
  }

  /// Attributes of the schema that bear the names of the library's own marks.
  void judgeMarks(const MessageElement& element) {
    if (!judged_.insert(element.declared.typeKey()).second) return;
    for (const DeclaredAttribute& attribute : element.declared.attributes()) {
      const std::string& strName = attribute.name.strLocal;
      const bool blnMark = attribute.name.strUri.empty() &&
                           (strName == kQuestionId || strName == kRowIndex || strName == kColumnId);
      if (!blnMark) continue;
      tell("mark-declared", element,
           "The schema declares the attribute \"" + strName + "\" of \"" + element.strName +
               "\": a run writes marks of this name and takes every one of them away at its end.",
           "A message cannot carry this attribute.");
    }
  }

  MessagePlan& plan_;
  const std::vector<MessageElement>& elements_;
  std::set<const void*> judged_;
  std::size_t lngPairs_ = 0;
  bool blnUnchecked_ = false;
};

}  // namespace

void judgeContent(MessagePlan& plan) { ContentJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
