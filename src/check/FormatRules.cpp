#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"
#include "platform/xml/XmlCharacters.h"

// What each format has: its elements, where they stand, and their attributes.

namespace Varnel_Tolv_XML_Creation {
namespace {

/// An element at a place of a format. A place is a name for what may stand below one kind of
/// element; "" is that of the root.
struct ElementShape {
  std::string_view strPlace;
  std::string_view strName;        // "*" for any
  std::string_view strAttributes;  // separated by blanks; those in brackets are for people only
  std::string_view strInside;      // the place below it; "text" for text alone, "any" for anything
};

constexpr std::string_view kObject =
    "id objecttype type dynamic group checkedvalue value tablelabel fieldlabel (letterlabel)";
constexpr std::string_view kTableColumn =
    "id autovalue calculate firstcolumn secondcolumn datatype timedimabbr columntype value "
    "columnlabel";

constexpr ElementShape kObjectList[] = {
    {"", "prtobjcts", "", "objects"},
    {"objects", "prtobjct", kObject, "object"},
    {"objects", "hdnflds", "", "hidden"},
    {"object", "prtobjct", kObject, "object"},  // one in another has a rule of its own
    {"object", "hdnflds", "", "hidden"},
    {"object", "row", "id rowlabel", "row"},
    {"object", "column", kTableColumn, "text"},
    {"row", "column", kTableColumn, "text"},
    {"hidden", "hdnfld", "id value", "text"},
};

constexpr ElementShape kHiddenFields[] = {
    {"", "hiddenfields", "", "fields"},
    {"fields", "*", "id output toschema", "text"},
};

constexpr ElementShape kNamespaces[] = {
    {"", "namespaces", "", "entries"},
    {"entries", "*", "id name ref", "text"},
};

constexpr ElementShape kObjectMapper[] = {
    {"", "message", "", "entries"},
    {"entries", "messageitem", "id type toschema checkexists absent", "entry"},
    {"entry", "parentxpath", "", "text"},
    {"entry", "node", "item", "text"},
    {"entry", "extrapath", "", "text"},
    {"entry", "extranode", "", "text"},
    {"entry", "extravalue", "", "text"},
    {"entry", "action", "id separator", "action"},
    {"action", "parameter", "id formvalue formlabel item messageitem", "text"},
    {"entries", "docdata", "", "docdata"},
    {"docdata", "docinfo", "id", "docinfo"},
    {"docinfo", "parentxpath", "", "text"},
    {"docinfo", "node", "", "text"},
    {"docinfo", "action", "id", "name"},
    {"name", "parameter", "id attribute", "text"},
    {"docdata", "docnodes", "", "docnodes"},
    {"docnodes", "*", "*", "docnode"},
    {"docnode", "parentxpath", "", "text"},
    {"docnode", "node", "", "text"},
    {"docnode", "insertbefore", "appendonnomatch", "references"},
    {"references", "node", "", "text"},
    {"docnode", "action", "id", "nodetypes"},
    {"nodetypes", "node", "type", "nodetype"},
    {"nodetype", "action", "id", "steps"},
    {"steps", "node", "", "text"},
    {"steps", "parameter", "action under", "text"},
};

constexpr ElementShape kSchemaTypes[] = {
    {"", "SchemaTypeMapperDocument", "", "document"},
    {"document", "schematypes", "", "types"},
    {"types", "schematype", "id", "any"},
};

constexpr ElementShape kQuestions[] = {
    {"", "questions", "", "questions"},
    {"questions", "question", "id type (maxLength) (minLength)", "question"},
    {"question", "xpath", "", "text"},
    {"question", "column", "id (maxLength) (minLength)", "column"},
    {"column", "path", "", "text"},
};

constexpr ElementShape kReference[] = {
    {"", "*", "mandatory choice questionIds", ""},
};

// Of a question or column with an "id" and no "ref" a rule about the page tells what is meant.
constexpr std::string_view kInput =
    "ref id (label) (kind) (hint) (width) (required) (maxlength) (add)";

constexpr ElementShape kPage[] = {
    {"", "page", "(title) (lang)", "page"},
    {"page", "intro", "", "text"},
    {"page", "receipt", "", "text"},
    {"page", "hidden", "id value", "text"},
    {"page", "section", "(title)", "section"},
    {"section", "help", "", "text"},
    {"section", "question", kInput, "question"},
    {"question", "help", "", "text"},
    {"question", "choice", "value", "text"},
    {"question", "column", kInput, "input"},
    {"input", "help", "", "text"},
    {"input", "choice", "value", "text"},
};

constexpr ElementShape kCatalog[] = {
    {"", "catalog", "prefer id", "entries"},
    {"entries", "group", "prefer id", "entries"},
    {"entries", "uri", "name uri id", "text"},
    {"entries", "system", "systemId uri id", "text"},
    {"entries", "public", "publicId uri id", "text"},
    {"entries", "rewriteURI", "uriStartString rewritePrefix id", "text"},
    {"entries", "rewriteSystem", "systemIdStartString rewritePrefix id", "text"},
    {"entries", "uriSuffix", "uriSuffix uri id", "text"},
    {"entries", "systemSuffix", "systemIdSuffix uri id", "text"},
    {"entries", "nextCatalog", "catalog id", "text"},
    {"entries", "delegateURI", "uriStartString catalog id", "text"},
    {"entries", "delegateSystem", "systemIdStartString catalog id", "text"},
    {"entries", "delegatePublic", "publicIdStartString catalog id", "text"},
};

using Format = std::span<const ElementShape>;

std::vector<std::pair<const ParsedFile*, Format>> formatsOf(const ParsedDeployment& deployment) {
  return {{&deployment.objectList, kObjectList},    {&deployment.hiddenFieldList, kHiddenFields},
          {&deployment.namespaceList, kNamespaces}, {&deployment.objectMapper, kObjectMapper},
          {&deployment.schemaTypes, kSchemaTypes},  {&deployment.questionList, kQuestions},
          {&deployment.reference, kReference},      {&deployment.page, kPage},
          {&deployment.schemaCatalog, kCatalog}};
}

/// An element as the walk meets it, with the shape of its name; null where the format has none.
struct Met {
  Node objNode;
  std::string_view strPlace;
  const ElementShape* shape;
};

/// Walks what a format describes of a file, in document order. Below an element that the format
/// does not have nothing is known.
template <class Visit>
void walk(const ParsedFile& file, Format format, const Visit& visit) {
  if (!file.isLoaded()) return;
  const auto shapeOf = [&](std::string_view strPlace, const std::string& strName) {
    const auto found = std::ranges::find_if(format, [&](const ElementShape& shape) {
      return shape.strPlace == strPlace && (shape.strName == "*" || shape.strName == strName);
    });
    return found == format.end() ? nullptr : &*found;
  };
  std::vector<Met> open{{file.root(), "", shapeOf("", file.root().nodeName())}};
  while (!open.empty()) {
    const Met met = open.back();
    open.pop_back();
    visit(met);
    if (!met.shape || met.shape->strInside == "any") continue;
    const std::vector<Node> colChildren = childElements(met.objNode);
    for (auto child = colChildren.rbegin(); child != colChildren.rend(); ++child) {
      open.push_back(
          {*child, met.shape->strInside, shapeOf(met.shape->strInside, child->nodeName())});
    }
  }
}

/// The id of what an element belongs to, for a finding. One whose name is not known may still say
/// which it was to be.
std::string objectOf(const Met& met) {
  const Node& objNode = met.objNode;
  for (const std::string_view attribute : {kOutput, kId}) {
    const std::string strId = met.shape ? std::string() : attributeText(objNode, attribute);
    if (!strId.empty()) return strId;
  }
  for (Node objAbove = objNode; objAbove && objAbove.nodeType() == NodeType::element;
       objAbove = objAbove.parentNode()) {
    const std::string strName = objAbove.nodeName();
    const bool blnOwner = strName == kProtocolObject || strName == kColumn ||
                          strName == kMessageItem || strName == "question" ||
                          strName == "hiddenfield";
    if (!blnOwner) continue;
    const std::string strId = attributeText(objAbove, strName == "hiddenfield" ? kOutput : kId);
    if (!strId.empty()) return strId;
  }
  return {};
}

// As many as are one slip of the hand, as by a wrong name in a tool, and not each its own.
constexpr std::size_t kThroughout = 5;

using ElementCounts = std::map<std::pair<const ParsedFile*, std::string>, std::size_t>;

/// How often each element that is none of its place stands in its file.
ElementCounts unknownElementsIn(const ParsedDeployment& deployment) {
  ElementCounts counts;
  for (const auto& [file, format] : formatsOf(deployment)) {
    walk(*file, format, [&, file = file](const Met& met) {
      if (!met.shape && !met.strPlace.empty()) ++counts[{file, met.objNode.nodeName()}];
    });
  }
  return counts;
}

void findUnknownElements(const ParsedDeployment& deployment, Findings& findings, bool blnSlips) {
  const ElementCounts counts = blnSlips ? unknownElementsIn(deployment) : ElementCounts();
  std::set<std::pair<const ParsedFile*, std::string>> told;  // of those that stand there throughout
  for (const auto& [file, format] : formatsOf(deployment)) {
    walk(*file, format, [&, file = file, &format = format](const Met& met) {
      if (met.shape || met.strPlace.empty()) return;  // a wrong root has a rule of its own
      const std::string strName = met.objNode.nodeName();
      const ElementShape* const meant =
          firstMeant(format, strName, &ElementShape::strName,
                     [&](const ElementShape& shape) { return shape.strPlace == met.strPlace; });
      if ((meant != nullptr) != blnSlips) return;
      const auto count = counts.find({file, strName});
      if (count != counts.end() && count->second >= kThroughout) {
        if (!told.insert(count->first).second) return;
        findings
            .add(*file, met.objNode, "", objectOf(met),
                 "The element " + inQuotes(strName) + ", which stands in this file " +
                     std::to_string(count->second) +
                     " times, is none that is read here, and what it holds is lost.",
                 "Write " + inQuotes(meant->strName) + " everywhere.")
            .mends.addName(file->path(), strName, std::string(meant->strName));
        return;
      }
      findings.add(*file, met.objNode, "", objectOf(met),
                   "The element " + inQuotes(strName) + " is none that is read here" +
                       (blnSlips ? ", and what it holds is lost." : "."),
                   meant ? "Write " + inQuotes(meant->strName) + "."
                         : "Correct its name or its place, or take it out.");
    });
  }
}

void findMisspeltElements(const ParsedDeployment& deployment, Findings& findings) {
  findUnknownElements(deployment, findings, true);
}

void findOtherElements(const ParsedDeployment& deployment, Findings& findings) {
  findUnknownElements(deployment, findings, false);
}

struct KnownAttribute {
  std::string_view strName;
  bool blnForPeople = false;
};

std::vector<KnownAttribute> attributesOf(const ElementShape& shape) {
  std::vector<KnownAttribute> known;
  std::string_view strRest = shape.strAttributes;
  while (!strRest.empty()) {
    const std::size_t lngEnd = std::min(strRest.find(' '), strRest.size());
    std::string_view strName = strRest.substr(0, lngEnd);
    strRest.remove_prefix(std::min(lngEnd + 1, strRest.size()));
    const bool blnForPeople = strName.starts_with('(');
    if (blnForPeople) strName = strName.substr(1, strName.size() - 2);
    known.push_back({strName, blnForPeople});
  }
  return known;
}

/// `blnSlips`: those that are nearly one that a run depends on; else all others.
void findUnknownAttributes(const ParsedDeployment& deployment, Findings& findings, bool blnSlips) {
  for (const auto& [file, format] : formatsOf(deployment)) {
    walk(*file, format, [&, file = file](const Met& met) {
      if (!met.shape || met.shape->strAttributes == "*") return;
      std::vector<KnownAttribute> known;
      for (const NodeAttribute& attribute : met.objNode.attributes()) {
        const std::string& strName = attribute.strName;
        if (strName.starts_with("xmlns") || strName.find(':') != std::string::npos) continue;
        if (known.empty()) known = attributesOf(*met.shape);
        const bool blnKnown = std::ranges::any_of(
            known, [&](const KnownAttribute& one) { return one.strName == strName; });
        if (blnKnown) continue;
        const KnownAttribute* const meant = firstMeant(known, strName, &KnownAttribute::strName);
        if ((meant && !meant->blnForPeople) != blnSlips) continue;
        findings.add(*file, met.objNode, strName, objectOf(met),
                     "The attribute " + inQuotes(strName) + " of " + met.objNode.nodeName() +
                         " is none that is read.",
                     meant ? "Write " + inQuotes(meant->strName) + "."
                           : "Correct its name, or take it out.");
      }
    });
  }
}

void findMisspeltAttributes(const ParsedDeployment& deployment, Findings& findings) {
  findUnknownAttributes(deployment, findings, true);
}

void findOtherAttributes(const ParsedDeployment& deployment, Findings& findings) {
  findUnknownAttributes(deployment, findings, false);
}

/// Text where only elements are read, such as what is left of a tag.
void findStrayText(const ParsedDeployment& deployment, Findings& findings) {
  for (const auto& [file, format] : formatsOf(deployment)) {
    if (file == &deployment.hiddenFieldList) continue;
    walk(*file, format, [&, file = file](const Met& met) {
      // A reference may be made of a message, with the values in it.
      if (file == &deployment.reference && childElements(met.objNode).empty()) return;
      if (!met.shape || met.shape->strInside == "text" || met.shape->strInside == "any" ||
          met.shape->strInside == "docnodes") {
        return;
      }
      const NodeList colChildren = required(met.objNode.childNodes());
      for (const Node& objChild : colChildren) {
        const bool blnText =
            objChild.nodeType() == NodeType::text || objChild.nodeType() == NodeType::cdataSection;
        if (!blnText || isXmlWhiteSpace(objChild.text())) continue;
        findings.add(*file, met.objNode, "", objectOf(met),
                     "The text " + inQuotes(trim(oneLine(objChild.text()))) + " stands in " +
                         met.objNode.nodeName() + ", where only elements are read.",
                     "Take it out, or put it into its element.");
        break;
      }
    });
  }
}

/// Comments and CDATA sections without a text that stand in the message: the clean-up asks for them
/// by a path that is none. One is told of each file.
void findEmptyComments(const ParsedDeployment& deployment, Findings& findings) {
  const auto isFound = [&](const ParsedFile& file, const Node& objParent) {
    const NodeList colChildren = required(objParent.childNodes());
    for (std::size_t at = 0; at < colChildren.length(); ++at) {
      const Node objChild = colChildren.item(at);
      const bool blnKind =
          objChild.nodeType() == NodeType::comment || objChild.nodeType() == NodeType::cdataSection;
      if (!blnKind || objChild.hasText()) continue;
      findings.add(
          file, file.linesOfChildren(objParent)[at], "",
          "What goes into the message has an empty " +
              std::string(objChild.nodeType() == NodeType::comment ? "comment" : "CDATA section") +
              ": the clean-up cannot ask for it, and every form with it fails.",
          "Take it out, or write something into it.");
      return true;
    }
    return false;
  };
  const auto isFoundBelow = [&](const ParsedFile& file, const NodeList& colElements) {
    for (const Node& objElement : colElements) {
      if (isFound(file, objElement)) return true;
    }
    return false;
  };
  const ParsedFile& messageTemplate = deployment.messageTemplate;
  if (messageTemplate.isLoaded() && !isFound(messageTemplate, messageTemplate.document())) {
    isFoundBelow(messageTemplate, messageTemplate.elements());
  }
  for (const ComplexType& type : deployment.complexTypes) {
    if (isFound(deployment.schemaTypes, type.objNode) ||
        isFoundBelow(deployment.schemaTypes, required(type.objNode.getElementsByTagName("*")))) {
      return;
    }
  }
}

/// Elements of which only the first counts.
void findDoubleChildren(const ParsedDeployment& deployment, Findings& findings) {
  const auto look = [&](const ParsedFile& file, Format format) {
    walk(file, format, [&](const Met& met) {
      if (!met.shape) return;
      const std::string_view strInside = met.shape->strInside;
      if (strInside != "entry" && strInside != "docinfo" && strInside != "docnode" &&
          strInside != "column" && strInside != "question") {
        return;
      }
      std::vector<std::string> seen;
      for (const Node& objChild : childElements(met.objNode)) {
        std::string strName = objChild.nodeName();
        if (strInside == "question" && strName != "xpath") continue;
        if (std::ranges::find(seen, strName) == seen.end()) {
          if (seen.size() < 16) seen.push_back(std::move(strName));
          continue;
        }
        findings.add(file, objChild, "", objectOf(met),
                     "There is another " + strName + " before this one, which counts.",
                     "Take one of them out.");
      }
    });
  };
  look(deployment.objectMapper, kObjectMapper);
  look(deployment.questionList, kQuestions);
}

constexpr auto kRules = std::to_array<Rule>({
    {"misspelt-element", Severity::error, findMisspeltElements},
    {"unknown-element", Severity::warning, findOtherElements},
    {"misspelt-attribute", Severity::error, findMisspeltAttributes},
    {"unknown-attribute", Severity::warning, findOtherAttributes},
    {"stray-text", Severity::warning, findStrayText},
    {"empty-comment", Severity::error, findEmptyComments},
    {"double-element", Severity::warning, findDoubleChildren},
});

}  // namespace

std::span<const Rule> formatRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
