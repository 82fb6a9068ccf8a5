#include <algorithm>
#include <map>
#include <set>

#include "check/MessagePlan.h"
#include "platform/text/Text.h"

// Whether a message can have all that the schema requires.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;

class RequiredJudge {
 public:
  explicit RequiredJudge(MessagePlan& plan) : plan_(plan), elements_(plan.elements()) {}

  void judge() {
    for (std::size_t at = 1; at < elements_.size(); ++at) {
      const MessageElement& element = elements_[at];
      if (element.kind != Kind::element || plan_.isToldAtSource(element)) continue;
      judgeChildren(at);
      judgeEmpty(at);
    }
  }

 private:
  /// Tells what nothing makes, or fills, at a path.
  void tellUnfilled(const MessageElement& at, std::string strPath, std::string strMessage,
                    std::string strHint) {
    plan_.tell("mandatory-unfilled", at, std::move(strMessage), std::move(strHint), "",
               std::move(strPath));
  }

  /// How many children an element of the plan can stand for: the rows of a fixed grid are counted.
  static std::size_t mostOf(const MessageElement& child) {
    const bool blnGrid =
        child.origin == Origin::row && child.object && toLower(child.object->strType) == "table";
    if (blnGrid) return child.object->rows.size();
    return child.blnMany ? ContentOutline::kUnbounded : 1;
  }

  void judgeChildren(std::size_t lngElement) {
    const MessageElement& element = elements_[lngElement];
    const ContentOutline& content = plan_.contentOf(element.declared);
    std::map<QualifiedName, std::size_t> there;  // how many of each name there can be
    for (const std::size_t lngChild : element.children) {
      there[elements_[lngChild].name()] += mostOf(elements_[lngChild]);
    }
    const auto countOf = [&](const DeclaredElement& declared) -> std::size_t {
      if (plan_.mayBeMadeElsewhere(declared.name().strLocal, lngElement))
        return ContentOutline::kUnbounded;
      const auto own = there.find(declared.name());
      std::size_t lngCount = own == there.end() ? 0 : own->second;
      for (const DeclaredElement& other : declared.substitutes()) {
        const auto found = there.find(other.name());
        if (found != there.end()) lngCount += found->second;
      }
      return lngCount;
    };
    const auto isThere = [&](const DeclaredElement& declared) { return countOf(declared) > 0; };
    std::set<QualifiedName> counted;
    for (const ContentOutline::Child& child : content.children()) {
      if (!child.blnRequired) continue;
      const QualifiedName name = child.element.name();
      const std::size_t lngCount = countOf(child.element);
      const std::size_t lngLeast = content.minOccurs(name);
      if (lngCount >= lngLeast || !counted.insert(name).second) continue;
      const std::string strWhere = shown(name) + " in \"" + element.strName + "\"";
      tellUnfilled(
          element, plan_.pathOf(lngElement) + "/" + name.strLocal,
          lngCount == 0 ? "The schema requires " + strWhere + ", and nothing makes it."
                        : "The schema requires " + std::to_string(lngLeast) + " times " + strWhere +
                              ", and no more than " + std::to_string(lngCount) + " can be made.",
          lngCount == 0 ? "Map a question to it, or put it into the template."
                        : "Let the mapping or the template make as many, or correct the schema.");
    }
    for (const auto& choice : content.requiredChoices()) {
      const bool blnAny = std::ranges::any_of(choice, [&](std::size_t at) {
        const DeclaredElement& declared = content.children()[at].element;
        return !declared || isThere(declared);
      });
      if (blnAny) continue;
      const std::string strParent = plan_.pathOf(lngElement) + "/";
      std::string strNames, strPaths;
      for (const std::size_t at : choice) {
        if (strNames.size() > 200) break;
        const std::string& strLocal = content.children()[at].element.name().strLocal;
        strNames += (strNames.empty() ? "" : ", ") + strLocal;
        strPaths += (strPaths.empty() ? "" : "|") + strParent + strLocal;
      }
      tellUnfilled(element, strPaths,
                   "The schema requires one of " + strNames + " in \"" + element.strName +
                       "\", and nothing makes any of them.",
                   "Map a question to one of them, or put it into the template.");
    }
  }

  /// An element that stays empty, whatever is answered, where the schema wants a value.
  void judgeEmpty(std::size_t lngElement) {
    const MessageElement& element = elements_[lngElement];
    const bool blnMade = element.origin == Origin::fromFile || element.origin == Origin::content;
    if (!blnMade || element.blnFilled || !element.children.empty()) return;
    if (!plan_.isRequired(element) || !element.declared.value() || element.declared.defaultValue())
      return;
    if (!element.declared.accepts("")) {
      tellUnfilled(
          element, plan_.pathOf(lngElement),
          "The schema requires a value of \"" + element.strName + "\", and nothing fills it.",
          "Map a question to it, or write a value into it.");
    }
  }

  MessagePlan& plan_;
  const std::vector<MessageElement>& elements_;
};

}  // namespace

void judgeRequired(MessagePlan& plan) { RequiredJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
