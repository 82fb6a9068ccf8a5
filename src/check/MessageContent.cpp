#include <algorithm>
#include <map>
#include <set>

#include "check/MessagePlan.h"
#include "check/SchemaProblems.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

// What the elements of a message are to the schema: declared where they stand, in its order, as
// often as it allows, with all that it requires.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;

constexpr std::size_t kMostPairs = 1'000'000;
constexpr std::size_t kMostTypesSaid =
    1000;  // by the template itself; each is a way up to its root

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
      if (element.origin == Origin::fromFile) judgeInstance(element);
      if (element.kind != Kind::element) continue;
      if (element.origin == Origin::fromFile || element.origin == Origin::content) {
        judgeAttributes(element);
        judgeText(element);
      }
      judgeOrder(element);
      judgeRequired(at);
      judgeMarks(element);
      judgeId(element);
    }
    tellUnqualified();
  }

 private:
  void tell(std::string_view strCode, const MessageElement& at, std::string strMessage,
            std::string strHint, std::string strAttribute = {}, std::string strElementPath = {}) {
    plan_.tell({.strCode = strCode,
                .place = at.place,
                .strAttribute = std::move(strAttribute),
                .strObject = objectOf(at),
                .strMessage = std::move(strMessage),
                .strHint = std::move(strHint),
                .strElementPath = std::move(strElementPath)});
  }

  /// Tells what nothing makes, or fills, at a path.
  void tellUnfilled(const MessageElement& at, std::string strPath, std::string strMessage,
                    std::string strHint) {
    tell("mandatory-unfilled", at, std::move(strMessage), std::move(strHint), "",
         std::move(strPath));
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

  /// Another namespace, in all files, or the name with which the paths of the mapping begin, where
  /// the schema has such a root.
  Mends mendsOfRoot(const MessageElement& root) const {
    Mends mends;
    const ParsedDeployment& deployment = plan_.deployment();
    const SchemaModel& schema = *plan_.schema();
    const std::string strUri =
        schema.files().empty() ? std::string() : schema.files().front().strTargetNamespace;
    // Where the schema's own namespace is wrong another rule tells it.
    const bool blnRight = !strUri.empty() && strUri == deployment.files.strSchemaUri;
    const bool blnOfName = blnRight && schema.root({strUri, root.name().strLocal});
    if (blnOfName && root.strUri.empty() && root.strName == root.name().strLocal) {
      mends.texts.push_back({deployment.messageTemplate.path(), "<" + root.strName,
                             "<" + root.strName + " xmlns=\"" + strUri + "\""});
      return mends;
    }
    if (blnOfName && !root.strUri.empty()) {
      for (const ParsedFile* const file : deployment.all()) {
        if (file->isNamed()) mends.addQuoted(file->path(), root.strUri, strUri);
      }
      return mends;
    }
    for (const MappingEntry& entry : deployment.entries) {
      const auto steps = stepsOf(entry.strParentXPath);
      if (!steps || steps->front().blnAny) continue;
      const std::string& strMeant = steps->front().strLocal;
      const std::string strLocal = root.name().strLocal;
      if (strMeant == strLocal || !schema.root({root.strUri, strMeant})) continue;
      const std::string strPrefix = root.strName.substr(0, root.strName.size() - strLocal.size());
      mends.addName(deployment.messageTemplate.path(), root.strName, strPrefix + strMeant);
      break;
    }
    return mends;
  }

  void tellUndeclared(const MessageElement& element) {
    const MessageElement& parent = elements_[element.lngParent];
    if (element.lngParent == 0) {
      return plan_.tell(
          {.strCode = "root-undeclared",
           .place = element.place,
           .strMessage = "The root of the template, " + shown(element.name()) +
                         ", is no element that the schema declares.",
           .strHint = "Every message has this root and is invalid: correct its name or namespace.",
           .strElementPath = "/" + element.strName,
           .mends = mendsOfRoot(element)});
    }
    std::string strHint = "The schema has there: " + choicesIn(parent.declared) + ".";
    for (const ContentOutline::Child& child : plan_.contentOf(parent.declared).children()) {
      if (child.element && child.element.name().strLocal == element.name().strLocal) {
        strHint = "The schema has there " + shown(child.element.name()) + ": change the prefix.";
      }
    }
    for (const ContentOutline::Child& child : plan_.contentOf(parent.declared).children()) {
      const QualifiedName unqualified{"", element.name().strLocal};
      if (child.element && child.element.name() == unqualified) ++unqualified_[element.strUri];
    }
    const bool blnTemplate = element.origin == Origin::fromFile;
    tell(blnTemplate ? "template-undeclared" : "path-undeclared", element,
         "The schema declares no element " + shown(element.name()) + " in \"" + parent.strName +
             "\" (" + plan_.pathOf(element.lngParent) + ").",
         strHint);
  }

  /// A schema document whose elements have no namespace because it does not say that they have: the
  /// message has them with it throughout.
  void tellUnqualified() {
    const bool blnMeant = std::ranges::any_of(elements_, [](const MessageElement& element) {
      return element.kind == Kind::element && element.lngParent != 0 && element.strUri.empty();
    });
    if (blnMeant) return;
    for (const SchemaFile& file : plan_.schema()->files()) {
      const auto found = unqualified_.find(file.strTargetNamespace);
      if (found == unqualified_.end() || found->second < 2 || file.blnElementsQualified) continue;
      plan_.tell(
          {.strCode = "elements-unqualified",
           .strPath = file.strPath,
           .lngLine = lineOfSchemaRoot(file.strPath, "elementFormDefault"),
           .strMessage =
               "The schema document does not say elementFormDefault=\"qualified\": its elements "
               "have no namespace, and " +
               std::to_string(found->second) + " elements of the message are of \"" +
               file.strTargetNamespace + "\".",
           .strHint = "Write elementFormDefault=\"qualified\" at its root."});
    }
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
    std::map<QualifiedName, Count> counts;
    for (const std::size_t lngChild : parent.children) {
      const MessageElement& child = elements_[lngChild];
      if (child.kind == Kind::undeclared || child.blnUnknownUri) continue;
      judgeCount(parent, content, child, counts);
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
      tell("template-order", child,
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
    plan_.tell({.strCode = "not-checked",
                .place = {&file, file.root()},
                .strMessage = "There are more elements than are compared with each other: the "
                              "order of the elements was not checked everywhere.",
                .strHint = "Nothing has to be done."});
  }

  /// How many children an element of the plan can stand for: the rows of a fixed grid are counted.
  static std::size_t mostOf(const MessageElement& child) {
    const bool blnGrid =
        child.origin == Origin::row && child.object && toLower(child.object->strType) == "table";
    if (blnGrid) return child.object->rows.size();
    return child.blnMany ? ContentOutline::kUnbounded : 1;
  }

  void judgeRequired(std::size_t lngElement) {
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
    judgeEmpty(lngElement);
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

  /// Whether what stands in a complex type was told for another object that uses it.
  bool isToldOfType(const MessageElement& element) {
    if (element.origin != Origin::content) return false;
    const std::size_t lngLine = element.place.file->lineOf(element.place.objNode);
    return !toldOfTypes_.emplace(lngLine, element.strName).second;
  }

  /// A text between children, where the schema has none. That of an element without children is a
  /// value.
  void judgeText(const MessageElement& element) {
    if (element.declared.holdsText()) return;
    const Node& objElement = element.place.objNode;
    const std::vector<Node> colChildren = childElements(objElement);
    const bool blnPlace = std::ranges::any_of(
        colChildren, [](const Node& objChild) { return objChild.nodeName() == kValue; });
    if (colChildren.empty() || blnPlace) return;  // a place takes the room of all the rest
    const NodeList colNodes = required(objElement.childNodes());
    for (const Node& objNode : colNodes) {
      const bool blnText =
          objNode.nodeType() == NodeType::text || objNode.nodeType() == NodeType::cdataSection;
      if (!blnText || isBlank(objNode.text())) continue;
      const bool blnTemplate = element.origin == Origin::fromFile;
      if (!isToldOfType(element)) {
        tell(blnTemplate ? "template-value" : "no-text-there", element,
             "The text " + inQuotes(trim(oneLine(objNode.text()))) + " stands in \"" +
                 element.strName + "\", which holds no text in the schema.",
             "Take it out: every message with it is invalid.");
      }
      return;
    }
  }

  /// What an element of the template says about itself in the words of XML Schema.
  void judgeInstance(const MessageElement& element) {
    const Node& objElement = element.place.objNode;
    if (element.lngParent == 0 && element.kind == Kind::element && element.declared.abstract()) {
      tell("root-undeclared", element,
           "The schema declares " + shown(element.name()) + " abstract: no message may have it.",
           "Every message has this root and is invalid: take one of its substitutes, or correct "
           "the schema.");
    }
    const auto strType = objElement.getAttribute("xsi:type");
    if (strType && ++lngTypesSaid_ <= kMostTypesSaid) {
      const QualifiedName name = typeNamed(objElement, trim(*strType));
      if (!plan_.schema()->declaresType(name)) {
        tell("template-attribute", element,
             "\"" + element.strName + "\" says that it is of the type " + shown(name) +
                 ", which the schema does not have.",
             "Correct it, or take it away: every message with it is invalid.", "xsi:type");
      }
    }
    const std::string strWord = attributeText(objElement, "xsi:nil");
    const std::string_view strNil = trim(strWord);
    const bool blnNil = strNil == "true" || strNil == "1";
    if (blnNil && element.kind == Kind::element && !element.declared.nillable()) {
      tell("template-attribute", element,
           "\"" + element.strName + "\" says that it is nil, which the schema does not allow.",
           "Take it away: every message with it is invalid.", "xsi:nil");
    }
  }

  /// The name that a text with a prefix writes at an element.
  static QualifiedName typeNamed(const Node& objElement, std::string_view strName) {
    const std::size_t lngColon = strName.find(':');
    const bool blnPrefix = lngColon != strName.npos;
    const std::string strDeclaration =
        blnPrefix ? "xmlns:" + std::string(strName.substr(0, lngColon)) : "xmlns";
    QualifiedName name{"", std::string(strName.substr(blnPrefix ? lngColon + 1 : 0))};
    for (Node objAbove = objElement; objAbove && objAbove.nodeType() == NodeType::element;
         objAbove = objAbove.parentNode()) {
      for (const NodeAttribute& attribute : objAbove.attributes()) {
        if (attribute.strName != strDeclaration) continue;
        name.strUri = attribute.strValue;
        return name;
      }
    }
    return name;
  }

  void judgeAttributes(const MessageElement& element) {
    const bool blnTemplate = element.origin == Origin::fromFile;
    const std::string_view strCode = blnTemplate ? "template-attribute" : "type-attribute";
    std::set<QualifiedName> there;
    for (const NodeAttribute& attribute : element.place.objNode.attributes()) {
      const std::string& strName = attribute.strName;
      if (strName == "xmlns" || strName.starts_with("xmlns:")) continue;
      if (strName.find(':') != std::string::npos) continue;  // xsi:type and its like
      there.insert({"", strName});
      if (element.declared.declaresAttribute({"", strName}) || isToldOfType(element)) continue;
      tell(strCode, element,
           "The schema declares no attribute \"" + strName + "\" of \"" + element.strName + "\".",
           "Take it away: every message with it is invalid.", strName);
    }
    for (const DeclaredAttribute& attribute : element.declared.attributes()) {
      if (!attribute.blnRequired || there.contains(attribute.name)) continue;
      if (!attribute.name.strUri.empty() || isToldOfType(element)) continue;
      tell(strCode, element,
           "The schema requires the attribute \"" + attribute.name.strLocal + "\" of \"" +
               element.strName + "\".",
           blnTemplate ? "Write it into the template: no mapping makes attributes."
                       : "Write it into the complex type: nothing else makes attributes.");
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
  std::map<std::string, std::size_t> unqualified_;             // by namespace
  std::set<std::pair<std::size_t, std::string>> toldOfTypes_;  // lines and names of elements
  std::size_t lngPairs_ = 0;
  std::size_t lngTypesSaid_ = 0;
  bool blnUnchecked_ = false;
};

}  // namespace

void judgeContent(MessagePlan& plan) { ContentJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
