#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "check/KeptEmpty.h"
#include "check/MessagePlan.h"
#include "check/Words.h"
#include "config/Attributes.h"

// The reference XML beside the message and the schema. An element of the message finds its own in
// the reference by its path, in which a name without a prefix means no namespace.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;

class ReferenceJudge {
 public:
  explicit ReferenceJudge(MessagePlan& plan)
      : plan_(plan),
        file_(plan.deployment().reference),
        elements_(plan.elements()),
        keptEmpty_(plan, [this](std::size_t lngElement) { return referenceOf(lngElement); }) {}

  void judge() {
    if (!file_.isLoaded()) return;
    read();
    for (std::size_t at = 1; at < elements_.size(); ++at) match(at);
    for (const Entry& entry : entries_) {
      if (entry.lngElement != 0) judgeMandatory(entry);
    }
    for (std::size_t at = 1; at < entries_.size(); ++at) judgeUnmatched(at);
  }

 private:
  struct Entry {
    std::size_t lngParent = 0;
    Node objNode = {};
    std::size_t lngElement = 0;  // the first element of the message that finds it; 0: none
    std::vector<std::size_t> others = {};  // that find it too
    bool blnKnown = true;  // it could be looked up in the schema, and so could those above
    DeclaredElement declared = {};
  };

  void read() {
    entries_.emplace_back();
    struct Waiting {
      Node objNode;
      std::size_t lngParent;
    };
    std::vector<Waiting> waiting = {{file_.root(), 0}};
    while (!waiting.empty()) {
      const auto [objNode, lngParent] = waiting.back();
      waiting.pop_back();
      const std::size_t lngEntry = entries_.size();
      entries_.push_back({.lngParent = lngParent, .objNode = objNode});
      children_.try_emplace({lngParent, {objNode.namespaceUri(), objNode.baseName()}}, lngEntry);
      std::vector<Node> below = childElements(objNode);
      for (auto child = below.rbegin(); child != below.rend(); ++child) {
        waiting.push_back({*child, lngEntry});
      }
    }
  }

  /// The namespace that a step of the message's path asks for in the reference.
  std::optional<std::string> askedUri(const MessageElement& element) const {
    const std::size_t lngColon = element.strName.find(':');
    if (lngColon == std::string::npos) return "";
    const NamespaceEntry* entry =
        plan_.deployment().namespaceOf(element.strName.substr(0, lngColon));
    if (!entry) return std::nullopt;
    return entry->strName;
  }

  void tell(std::string_view strCode, const Node& objAt, std::string strMessage,
            std::string strHint, std::string strAttribute = {}) {
    plan_.tell({.strCode = strCode,
                .place = {&file_, objAt},
                .strAttribute = std::move(strAttribute),
                .strMessage = std::move(strMessage),
                .strHint = std::move(strHint)});
  }

  void match(std::size_t lngElement) {
    const MessageElement& element = elements_[lngElement];
    if (element.lngParent != 0 && !found_.contains(element.lngParent)) return;
    const std::size_t lngAbove = element.lngParent == 0 ? 0 : found_.at(element.lngParent);
    const auto strUri = askedUri(element);
    if (!strUri) return;
    const std::string strLocal = element.name().strLocal;
    const auto found = children_.find({lngAbove, {*strUri, strLocal}});
    if (found == children_.end()) {
      if (element.kind != Kind::undeclared) judgeMissing(element, lngAbove);
      return;
    }
    found_.emplace(lngElement, found->second);
    Entry& entry = entries_[found->second];
    if (entry.lngElement != 0) return entry.others.push_back(lngElement);
    entry.lngElement = lngElement;
    entry.declared = element.declared;
  }

  /// An empty element that the reference does not know is removed.
  void judgeMissing(const MessageElement& element, std::size_t lngAbove) {
    const Node objAt = lngAbove == 0 ? file_.root() : entries_[lngAbove].objNode;
    if (element.kind != Kind::element || !plan_.isRequired(element)) return;
    if (!told_.emplace(lngAbove, element.strName).second) return;
    tell("reference-incomplete", objAt,
         "The reference does not know \"" + element.strName + "\" in \"" +
             plan_.pathOf(element.lngParent) +
             "\", which the schema requires: it is removed when it is empty, and nobody is told "
             "that it is missing.",
         slipIn(objAt, element, "Add it, with mandatory=\"true\"."));
  }

  /// What to do about an element that is missing: correct the name of one there, or else.
  std::string slipIn(const Node& objAt, const MessageElement& element, std::string strOtherwise) {
    if (element.lngParent == 0 || ++lngCompared_ > kMostCompared) return strOtherwise;
    const std::string& strName = element.strName;
    const ContentOutline& content = plan_.contentOf(elements_[element.lngParent].declared);
    const std::vector<Node> colChildren = childElements(objAt);
    for (const Node& objChild : mostCompared(colChildren)) {
      if (!isSlipOf(objChild.nodeName(), strName)) continue;
      const QualifiedName name{element.strUri, objChild.baseName()};
      if (content.child(name).kind != Kind::undeclared) continue;  // it is the one that it says
      return "Write \"" + strName + "\" for \"" + objChild.nodeName() + "\" on line " +
             std::to_string(file_.lineOf(objChild)) + ".";
    }
    return strOtherwise;
  }

  /// The same about one that the schema does not have.
  std::string meantBelow(const ContentOutline& content, const Node& objParent, const Node& objAt) {
    const std::string strOtherwise = "Correct its name or its place.";
    if (++lngCompared_ > kMostCompared) return strOtherwise;
    const std::string strPrefix(
        objAt.nodeName().substr(0, objAt.nodeName().size() - objAt.baseName().size()));
    std::set<std::string> there;
    for (const Node& objChild : childElements(objParent)) there.insert(objChild.baseName());
    for (const auto& child : mostCompared(content.children())) {
      if (!child.element || child.element.name().strUri != objAt.namespaceUri()) continue;
      const std::string strLocal = child.element.name().strLocal;
      if (there.contains(strLocal) || !isSlipOf(objAt.baseName(), strLocal)) continue;
      return "Write \"" + strPrefix + strLocal + "\".";
    }
    return strOtherwise;
  }

  void judgeMandatory(const Entry& entry) {
    const MessageElement& element = elements_[entry.lngElement];
    if (element.kind != Kind::element) return;
    const bool blnRequired = plan_.isRequired(element);
    if (blnRequired == isMandatoryInReference(entry.objNode)) return;
    const MessageElement& parent = elements_[element.lngParent];
    if (blnRequired) {
      return tell("reference-optional", entry.objNode,
                  "\"" + element.strName + "\" is not mandatory here, and the schema requires it" +
                      (element.lngParent == 0 ? "" : " in \"" + parent.strName + "\"") +
                      ": it is removed when it is empty, and nobody is told that it is missing.",
                  "Say mandatory=\"true\".", "mandatory");
    }
    const ContentOutline& content = plan_.contentOf(parent.declared);
    const auto choices = content.requiredChoices();
    for (const auto& choice : choices) {
      for (const std::size_t at : choice) {
        const DeclaredElement& declared = content.children()[at].element;
        if (declared && declared.name() == element.name()) return;  // one of them is mandatory
      }
    }
    if (isOnlySubstitute(element)) return;
    const std::string strWhat = "\"" + element.strName +
                                "\" is mandatory here, and the schema lets \"" + parent.strName +
                                "\" be without it: ";
    const bool blnSpoils =
        keptEmpty_.spoils(entry.lngElement) ||
        std::ranges::any_of(entry.others, [&](std::size_t at) { return keptEmpty_.spoils(at); });
    if (blnSpoils) {
      return tell("reference-keeps-empty", entry.objNode,
                  strWhat +
                      "a form whose answers leave it empty keeps it all the same, and its type "
                      "refuses it so.",
                  "Say mandatory=\"false\".", "mandatory");
    }
    if (isOfOthersQuestions(entry.objNode, element)) return;
    tell("reference-mandatory", entry.objNode,
         strWhat +
             "an empty one is kept and makes the message invalid where its type refuses the empty "
             "text.",
         "Say mandatory=\"false\".", "mandatory");
  }

  /// Whether it is the only element of its parent that stands for one which the schema requires, or
  /// for a substitute of that. The content of each type is looked at once, and so are the children
  /// of each parent.
  bool isOnlySubstitute(const MessageElement& element) {
    const MessageElement& parent = elements_[element.lngParent];
    const ContentOutline& content = plan_.contentOf(parent.declared);
    const auto [heads, blnNew] = headsOf_.try_emplace(&content);
    if (blnNew) {
      for (const ContentOutline::Child& child : content.children()) {
        if (!child.blnRequired) continue;
        heads->second.try_emplace(child.element.name(), child.element.name());
        for (const DeclaredElement& other : child.element.substitutes()) {
          heads->second.try_emplace(other.name(), child.element.name());
        }
      }
    }
    const auto head = heads->second.find(element.name());
    if (head == heads->second.end()) return false;
    const auto [members, blnUncounted] = membersOf_.try_emplace(element.lngParent);
    if (blnUncounted) {
      for (const std::size_t lngChild : parent.children) {
        const auto found = heads->second.find(elements_[lngChild].name());
        if (found != heads->second.end()) {
          members->second[found->second].insert(elements_[lngChild].name());
        }
      }
    }
    return members->second[head->second].size() == 1;
  }

  /// Whether it is mandatory for the elements of some questions alone, and this one never bears the
  /// mark of any: then it goes when it is empty.
  static bool isOfOthersQuestions(const Node& objReference, const MessageElement& element) {
    const bool blnMarked = element.origin == MessageElement::Origin::value ||
                           element.origin == MessageElement::Origin::row || element.blnFilled;
    return !blnMarked && !attributeText(objReference, "questionIds").empty();
  }

  Node referenceOf(std::size_t lngElement) const {
    const auto found = found_.find(lngElement);
    return found == found_.end() ? Node() : entries_[found->second].objNode;
  }

  /// What no element of the message finds: known to the schema, or a slip of the pen.
  void judgeUnmatched(std::size_t lngEntry) {
    Entry& entry = entries_[lngEntry];
    if (entry.lngElement != 0 || entry.lngParent == 0 || !plan_.schema()) return;
    const Entry& above = entries_[entry.lngParent];
    entry.blnKnown = false;
    if (!above.blnKnown || !above.declared) return;
    const QualifiedName name{entry.objNode.namespaceUri(), entry.objNode.baseName()};
    const ContentOutline& content = plan_.contentOf(above.declared);
    DeclaredChild child = content.child(name);
    // A name without a namespace may stand for any that the message's template has as its default.
    for (const ContentOutline::Child& declared : content.children()) {
      if (child.kind == Kind::element || !name.strUri.empty() || !declared.element) continue;
      if (declared.element.name().strLocal != name.strLocal) continue;
      child = {Kind::element, declared.element};
    }
    if (child.kind == Kind::undeclared) {
      return tell("reference-undeclared", entry.objNode,
                  "The schema declares no element " + shown(name) + " in \"" +
                      above.objNode.nodeName() + "\": this says nothing about any message.",
                  meantBelow(content, above.objNode, entry.objNode));
    }
    entry.declared = child.element;
    entry.blnKnown = true;
  }

  MessagePlan& plan_;
  const ParsedFile& file_;
  const std::vector<MessageElement>& elements_;
  std::vector<Entry> entries_;
  std::map<std::pair<std::size_t, QualifiedName>, std::size_t> children_;
  std::map<std::size_t, std::size_t> found_;  // message's element to entry
  std::set<std::pair<std::size_t, std::string>> told_;
  KeptEmpty keptEmpty_;
  // The required element that one of this name can stand for, by the content of its parent.
  std::map<const ContentOutline*, std::map<QualifiedName, QualifiedName>> headsOf_;
  // By the parent and the required element: the names of those in the message that stand for it.
  std::map<std::size_t, std::map<QualifiedName, std::set<QualifiedName>>> membersOf_;
  std::size_t lngCompared_ = 0;  // names that were compared with others
};

}  // namespace

void judgeReference(MessagePlan& plan) { ReferenceJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
