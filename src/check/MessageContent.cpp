#include <algorithm>
#include <map>
#include <set>

#include "check/MessagePlan.h"
#include "check/SchemaProblems.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

// What the elements of a message are to the schema: declared where they stand, with the attributes
// and texts that they bring along.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;

// By the template itself; each is a way up to its root.
constexpr std::size_t kMostTypesSaid = 1000;

class ContentJudge {
 public:
  explicit ContentJudge(MessagePlan& plan) : plan_(plan), elements_(plan.elements()) {}

  void judge() {
    for (std::size_t at = 1; at < elements_.size(); ++at) {
      const MessageElement& element = elements_[at];
      if (plan_.isToldAtSource(element)) continue;
      if (element.kind == Kind::undeclared) tellUndeclared(element);
      if (element.origin == Origin::fromFile) judgeInstance(element);
      if (element.kind != Kind::element) continue;
      if (element.origin == Origin::fromFile || element.origin == Origin::content) {
        judgeAttributes(element);
        judgeText(element);
      }
      judgeMarks(element);
      judgeId(element);
    }
    tellUnqualified();
  }

 private:
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
    if (element.origin == Origin::content && parent.origin != Origin::content &&
        parent.kind == Kind::element && !parent.declared.holdsElements()) {
      return tellNothingThere(element.lngParent);
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
    plan_.tell(blnTemplate ? "template-undeclared" : "path-undeclared", element,
               "The schema declares no element " + shown(element.name()) + " in \"" +
                   parent.strName + "\" (" + plan_.pathOf(element.lngParent) + ").",
               strHint);
  }

  /// The path of an entry leads to an element that holds no others, and a complex type brings some.
  void tellNothingThere(std::size_t lngElement) {
    if (!withoutElements_.insert(lngElement).second) return;
    const MessageElement& element = elements_[lngElement];
    plan_.tell("path-undeclared", element,
               "The complex type puts elements into \"" + element.strName +
                   "\", in which the schema has none (" + plan_.pathOf(lngElement) + ").",
               "Let the path lead to the element that holds those of the complex type, or take the "
               "action out.");
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
        plan_.tell(blnTemplate ? "template-value" : "no-text-there", element,
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
      plan_.tell(
          "root-undeclared", element,
          "The schema declares " + shown(element.name()) + " abstract: no message may have it.",
          "Every message has this root and is invalid: take one of its substitutes, or correct "
          "the schema.");
    }
    const auto strType = objElement.getAttribute("xsi:type");
    if (strType && ++lngTypesSaid_ <= kMostTypesSaid) {
      const QualifiedName name = typeNamed(objElement, trim(*strType));
      if (!plan_.schema()->declaresType(name)) {
        plan_.tell("template-attribute", element,
                   "\"" + element.strName + "\" says that it is of the type " + shown(name) +
                       ", which the schema does not have.",
                   "Correct it, or take it away: every message with it is invalid.", "xsi:type");
      }
    }
    const std::string strWord = attributeText(objElement, "xsi:nil");
    const std::string_view strNil = trim(strWord);
    const bool blnNil = strNil == "true" || strNil == "1";
    if (blnNil && element.kind == Kind::element && !element.declared.nillable()) {
      plan_.tell(
          "template-attribute", element,
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
      if (isMark(strName)) continue;  // a run takes it away again
      if (element.declared.declaresAttribute({"", strName}) || isToldOfType(element)) continue;
      plan_.tell(
          strCode, element,
          "The schema declares no attribute \"" + strName + "\" of \"" + element.strName + "\".",
          "Take it away: every message with it is invalid.", strName);
    }
    for (const DeclaredAttribute& attribute : element.declared.attributes()) {
      if (!attribute.blnRequired || there.contains(attribute.name)) continue;
      if (!attribute.name.strUri.empty() || isToldOfType(element)) continue;
      plan_.tell(strCode, element,
                 "The schema requires the attribute \"" + attribute.name.strLocal + "\" of \"" +
                     element.strName + "\".",
                 blnTemplate ? "Write it into the template: no mapping makes attributes."
                             : "Write it into the complex type: nothing else makes attributes.");
    }
  }

  void judgeId(const MessageElement& element) {
    if (!element.blnBearsId || element.declared.declaresAttribute({"", std::string(kId)})) return;
    plan_.tell("additional-info-id", element,
               "The schema declares no attribute \"id\" of \"" + element.strName +
                   "\", on which a run writes the column of a cell that has no place.",
               "Give every column a place in the complex type, or take the element out of it.");
  }

  static bool isMark(std::string_view strName) {
    return strName == kQuestionId || strName == kRowIndex || strName == kColumnId;
  }

  /// Attributes of the schema that bear the names of the library's own marks.
  void judgeMarks(const MessageElement& element) {
    if (!judged_.insert(element.declared.typeKey()).second) return;
    for (const DeclaredAttribute& attribute : element.declared.attributes()) {
      const std::string& strName = attribute.name.strLocal;
      if (!attribute.name.strUri.empty() || !isMark(strName)) continue;
      plan_.tell(
          "mark-declared", element,
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
  std::set<std::size_t> withoutElements_;                      // of which that was told
  std::size_t lngTypesSaid_ = 0;
};

}  // namespace

void judgeContent(MessagePlan& plan) { ContentJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
