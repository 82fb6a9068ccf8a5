#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "check/MessageShape.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Namespaces that a file declares, with the element that does.
struct Declaration {
  const ParsedFile* file;
  Node objNode;
  std::string strUri;
};
using Declarations = std::map<std::string, std::vector<Declaration>>;

Declarations declarationsOf(const ParsedDeployment& deployment) {
  constexpr std::size_t kMostOfOnePrefix = 100;
  Declarations declarations;
  for (const ParsedFile* const file :
       {&deployment.messageTemplate, &deployment.schemaTypes, &deployment.reference}) {
    if (!file->isLoaded()) continue;
    for (const Node& objElement : file->elements()) {
      for (const NodeAttribute& attribute : objElement.attributes()) {
        if (!attribute.strName.starts_with("xmlns")) break;  // declarations stand first
        if (!attribute.strName.starts_with("xmlns:")) continue;
        auto& list = declarations[attribute.strName.substr(6)];
        if (list.size() < kMostOfOnePrefix) list.push_back({file, objElement, attribute.strValue});
      }
    }
  }
  return declarations;
}

/// Whether all files that declare a prefix, and there are some, do it for this namespace.
bool isDeclaredOnlyFor(const Declarations& declared, const std::string& strPrefix,
                       const std::string& strUri) {
  const auto found = declared.find(strPrefix);
  return found != declared.end() &&
         std::ranges::all_of(found->second, [&](const Declaration& declaration) {
           return declaration.strUri == strUri;
         });
}

std::size_t positionOf(const ParsedDeployment& deployment, const NamespaceEntry& entry) {
  return static_cast<std::size_t>(&entry - deployment.namespaces.data());
}

/// What an entry should be to which nothing is lost: with the name that the other files give its
/// prefix, else with the prefix that they give its name.
Mends mendsOfEntry(const ParsedDeployment& deployment, std::size_t lngEntry) {
  const NamespaceEntry& entry = deployment.namespaces[lngEntry];
  const Declarations declared = declarationsOf(deployment);
  const auto ofPrefix = declared.find(entry.strPrefix);
  if (ofPrefix != declared.end() && entry.strName.empty()) {
    const std::string& strUri = ofPrefix->second.front().strUri;
    return {.namespaces = {{lngEntry, entry.strPrefix, strUri, strUri}}};
  }
  for (const auto& [strPrefix, list] : declared) {
    if (list.front().strUri != entry.strName || deployment.namespaceOf(strPrefix)) continue;
    return {.namespaces = {{lngEntry, strPrefix, entry.strName, entry.strRef}}};
  }
  return {};
}

void findUnusableEntries(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& list = deployment.namespaceList;
  if (!list.isLoaded()) return;
  if (deployment.namespaces.empty()) {
    findings.add(list, list.root(), "", "", "The list has no namespace: every form fails.",
                 "Register the namespaces of the message.");
  }
  std::unordered_set<std::string> seen;
  for (const NamespaceEntry& entry : deployment.namespaces) {
    std::string strReason = entry.problem();
    if (strReason.empty() && !seen.insert(entry.strPrefix).second) {
      strReason = "The prefix " + inQuotes(entry.strPrefix) + " is registered twice.";
    }
    if (strReason.empty() && entry.strName.empty()) strReason = "It has no name.";
    if (strReason.empty()) continue;
    findings
        .add(list, entry.objNode, kId, "",
             "The entry makes no namespace of selections: " + strReason,
             "Give it an id, which is a prefix of its own, and a name, which is a URI.")
        .mends = mendsOfEntry(deployment, positionOf(deployment, entry));
  }
}

/// `/namespaces/namespace` is where prefixes of new elements are looked up.
void findOtherElements(const ParsedDeployment& deployment, Findings& findings) {
  for (const NamespaceEntry& entry : deployment.namespaces) {
    if (entry.objNode.nodeName() == "namespace" &&
        entry.objNode.parentNode() == deployment.namespaceList.root()) {
      continue;
    }
    findings.add(deployment.namespaceList, entry.objNode, "", "",
                 "The entry for " + inQuotes(entry.strPrefix) +
                     " is no namespace below namespaces: no element can be made with it.",
                 "Write <namespace id=\"...\" name=\"...\" ref=\"...\"/>.");
  }
}

/// Which of the two is right the other files tell.
void findRefApart(const ParsedDeployment& deployment, Findings& findings) {
  const Declarations declared = declarationsOf(deployment);
  for (const NamespaceEntry& entry : deployment.namespaces) {
    if (entry.strRef == entry.strName || entry.strName.empty()) continue;
    const bool blnRef = isDeclaredOnlyFor(declared, entry.strPrefix, entry.strRef);
    const std::string& strRight = blnRef ? entry.strRef : entry.strName;
    findings
        .add(deployment.namespaceList, entry.objNode, blnRef ? "name" : "ref", "",
             "The prefix " + inQuotes(entry.strPrefix) + " is looked for in the namespace " +
                 inQuotes(entry.strName) + ", and its elements are made in " +
                 inQuotes(entry.strRef) + ".",
             blnRef ? "Write " + inQuotes(strRight) + " in name too, as the other files do."
                    : "Write the same URI in name and ref.")
        .mends.namespaces.push_back(
            {positionOf(deployment, entry), entry.strPrefix, strRight, strRight});
  }
}

/// A prefix means one namespace in all files. Where they differ, the one that most of them have, or
/// that is the schema's, is taken for the right one.
void findRegisteredOtherwise(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.namespaceList.isLoaded()) return;
  const Declarations declared = declarationsOf(deployment);
  for (const auto& [strPrefix, list] : declared) {
    const NamespaceEntry* const entry = deployment.namespaceOf(strPrefix);
    if (!entry) continue;
    // That its name is not its ref is told already.
    if (entry->strName != entry->strRef && isDeclaredOnlyFor(declared, strPrefix, entry->strRef)) {
      continue;
    }
    std::unordered_set<const ParsedFile*> agree, differ;
    std::string strOther;
    for (const Declaration& declaration : list) {
      const bool blnSame = declaration.strUri == entry->strName;
      (blnSame ? agree : differ).insert(declaration.file);
      if (!blnSame) strOther = declaration.strUri;
    }
    if (differ.empty()) continue;
    const bool blnListRight = !agree.empty() || entry->strName == deployment.files.strSchemaUri;
    if (!blnListRight || strOther == deployment.files.strSchemaUri) {
      findings
          .add(deployment.namespaceList, entry->objNode, "name", "",
               "The prefix " + inQuotes(strPrefix) + " is registered for " +
                   inQuotes(entry->strName) + ", and the other files declare it for " +
                   inQuotes(strOther) + ": nothing is found.",
               "Write the namespace of the template.")
          .mends.namespaces.push_back(
              {positionOf(deployment, *entry), strPrefix, strOther, strOther});
      continue;
    }
    for (const Declaration& declaration : list) {
      if (declaration.strUri == entry->strName) continue;
      findings
          .add(*declaration.file, declaration.objNode, "xmlns:" + strPrefix, "",
               "The prefix " + inQuotes(strPrefix) + " is declared for " +
                   inQuotes(declaration.strUri) + ", and registered for " +
                   inQuotes(entry->strName) + ": what is looked for is not found.",
               "Write the same namespace here and in the namespace list.")
          .mends.addQuoted(declaration.file->path(), declaration.strUri, entry->strName);
    }
  }
}

/// The prefixes that an expression uses. Text in quotes is none, nor are the names of axes.
std::vector<std::string> prefixesOf(std::string_view strXPath) {
  std::vector<std::string> prefixes;
  for (std::size_t at = 0; at < strXPath.size();) {
    const char letter = strXPath[at];
    if (letter == '"' || letter == '\'') {
      const std::size_t lngEnd = strXPath.find(letter, at + 1);
      if (lngEnd == std::string_view::npos) break;
      at = lngEnd + 1;
    } else if (isNameByte(letter)) {
      const std::size_t lngStart = at;
      while (at < strXPath.size() && isNameByte(strXPath[at])) ++at;
      const bool blnColon = at < strXPath.size() && strXPath[at] == ':';
      if (blnColon && !strXPath.substr(at).starts_with("::")) {
        prefixes.emplace_back(strXPath.substr(lngStart, at - lngStart));
      }
      if (blnColon) at += strXPath.substr(at).starts_with("::") ? 2 : 1;
    } else {
      ++at;
    }
  }
  return prefixes;
}

/// An expression or node path of the mapper, or the path of a question or column.
struct NamedPath {
  const ParsedFile* file;
  Node objNode;
  std::string_view strAttribute;  // that holds it; none: it is the element's text
  std::string strText;
  std::string strObject;  // the id of its entry, question or column
};

template <class Find>
void forEachPath(const ParsedDeployment& deployment, const Find& find) {
  const ParsedFile* const mapper = &deployment.objectMapper;
  for (const MappingEntry& entry : deployment.entries) {
    for (const Node& objPath :
         {entry.objParentXPath, entry.objNodePath, entry.objExtraPath, entry.objExtraNode}) {
      if (objPath) find(NamedPath{mapper, objPath, "", objPath.text(), entry.strId});
    }
  }
  const ParsedFile* const questions = &deployment.questionList;
  for (const Question& question : deployment.questions) {
    find(NamedPath{questions, question.objXPath, "", question.strXPath, question.strId});
    for (const QuestionColumn& column : question.columns) {
      find(NamedPath{questions, column.objPath, "", column.strPath, column.strId});
    }
  }
  const Node objDocData = deployment.documentData();
  if (!objDocData) return;
  const NodeList colElements = required(objDocData.getElementsByTagName("*"));
  for (const Node& objElement : colElements) {
    const std::string strName = objElement.nodeName();
    const bool blnStep = strName == "parameter" && objElement.hasText();
    const bool blnPath = (strName == "node" && childElements(objElement).empty()) ||
                         strName == "parentxpath" || blnStep;
    if (blnPath) find(NamedPath{mapper, objElement, "", objElement.text(), ""});
    // Where a step copies to: "parent", or a path below it.
    if (strName == "parameter" && toLower(attributeText(objElement, "action")) == "copy") {
      find(NamedPath{mapper, objElement, "under", attributeText(objElement, "under"), ""});
    }
  }
}

/// The entry of a namespace under the prefix that other files give it: its own one, or a new one.
Mends mendsOfMissing(const ParsedDeployment& deployment, const std::string& strPrefix,
                     const std::string& strUri) {
  const Declarations declared = declarationsOf(deployment);
  for (const NamespaceEntry& entry : deployment.namespaces) {
    if (entry.strName != strUri || declared.contains(entry.strPrefix)) continue;
    return {.namespaces = {{positionOf(deployment, entry), strPrefix, strUri, strUri}}};
  }
  const std::string strQuoted = "=\"" + strUri + "\"";
  if (strUri.find_first_of("\"<&") != std::string::npos) return {};
  return {.texts = {{deployment.namespaceList.path(), "</namespaces",
                     "<namespace id=\"" + strPrefix + "\" name" + strQuoted + " ref" + strQuoted +
                         "/></namespaces"}}};
}

/// The prefix of the template, where all paths of a file have another one that nobody knows; else
/// empty.
std::string prefixMeantThroughout(const ParsedDeployment& deployment, const ParsedFile& file,
                                  const std::string& strPrefix) {
  constexpr std::size_t kThroughout = 5;
  if (!deployment.messageTemplate.isLoaded()) return {};
  const std::string strOfTemplate(prefixOf(deployment.messageTemplate.root().nodeName()));
  if (strOfTemplate.empty() || !deployment.namespaceOf(strOfTemplate)) return {};
  std::size_t lngUsed = 0;
  bool blnOther = false;
  forEachPath(deployment, [&](const NamedPath& path) {
    if (path.file != &file) return;
    for (const std::string& strOne : prefixesOf(path.strText)) {
      lngUsed += strOne == strPrefix ? 1U : 0U;
      blnOther = blnOther || strOne == strOfTemplate;
    }
  });
  return lngUsed >= kThroughout && !blnOther ? strOfTemplate : std::string();
}

/// The prefixes that are used and not registered.
class UnregisteredPrefixes {
 public:
  UnregisteredPrefixes(const ParsedDeployment& deployment, Findings& findings)
      : deployment_(deployment), findings_(findings), declared_(declarationsOf(deployment)) {}

  /// Whether a prefix is one; each of those that files declare is told once.
  bool tell(const NamedPath& path, const std::string& strPrefix) {
    if (strPrefix.empty() || strPrefix == "xml" || deployment_.namespaceOf(strPrefix)) return false;
    const auto found = declared_.find(strPrefix);
    if (found == declared_.end()) {
      tellUnknown(path, strPrefix);
    } else if (told_.insert(strPrefix).second) {
      tellDeclared(strPrefix, found->second.front());
    }
    return true;
  }

 private:
  /// A slip where it is used, which may be in all paths of a file.
  void tellUnknown(const NamedPath& path, const std::string& strPrefix) {
    const auto [throughout, blnFirst] = throughout_.try_emplace(path.file);
    if (!blnFirst && throughout->second == strPrefix) return;
    const std::string strMeant =
        blnFirst ? prefixMeantThroughout(deployment_, *path.file, strPrefix) : std::string();
    if (strMeant.empty()) {
      findings_.add(
          *path.file, path.objNode, path.strAttribute, path.strObject,
          "The prefix " + inQuotes(strPrefix) + " is not registered in the namespace list.",
          "Register it there, or write one that is.");
      return;
    }
    throughout->second = strPrefix;
    const char* const of = path.file == &deployment_.objectMapper ? "the mapping" : "the questions";
    Found& told =
        findings_.add(*path.file, path.objNode, path.strAttribute, "",
                      "The prefix " + inQuotes(strPrefix) + ", which all paths of " + of +
                          " have, is not registered in the namespace list.",
                      "Write " + inQuotes(strMeant) + " for it everywhere, as the template does.");
    for (const char* const before : {"/", ">", "\"", "[", "(", " "}) {
      told.mends.texts.push_back(
          {path.file->path(), before + strPrefix + ":", before + strMeant + ":"});
    }
  }

  /// One that a file declares belongs into the list, unless that and the other files have another
  /// one for its namespace.
  void tellDeclared(const std::string& strPrefix, const Declaration& declaration) {
    const NamespaceEntry* registered = nullptr;
    for (const NamespaceEntry& entry : deployment_.namespaces) {
      if (entry.strName == declaration.strUri) registered = &entry;
    }
    const ParsedFile& list = deployment_.namespaceList;
    if (!registered || !declared_.contains(registered->strPrefix)) {
      Found& told = findings_.add(list, registered ? registered->objNode : list.root(),
                                  registered ? "id" : "", "",
                                  "The prefix " + inQuotes(strPrefix) +
                                      ", which other files declare and use, is not registered: "
                                      "every form that needs it fails.",
                                  "Register it.");
      told.mends = mendsOfMissing(deployment_, strPrefix, declaration.strUri);
      return;
    }
    const std::string& strRight = registered->strPrefix;
    Found& told = findings_.add(
        *declaration.file, declaration.objNode, "xmlns:" + strPrefix, "",
        "The prefix " + inQuotes(strPrefix) + " is not registered: the list and other files have " +
            inQuotes(strRight) + " for " + inQuotes(declaration.strUri) + ".",
        "Write " + inQuotes(strRight) + " for it everywhere in this file, or register it too.");
    const std::string& strPath = declaration.file->path();
    told.mends.addName(strPath, strPrefix + ":", strRight + ":");
    told.mends.texts.push_back({strPath, "xmlns:" + strPrefix + "=", "xmlns:" + strRight + "="});
  }

  const ParsedDeployment& deployment_;
  Findings& findings_;
  const Declarations declared_;
  std::unordered_set<std::string> told_;
  // The one that a file writes throughout, and nobody knows; empty where there is none.
  std::map<const ParsedFile*, std::string> throughout_;
};

void findUnregisteredPrefixes(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.namespaceList.isLoaded() || deployment.namespaces.empty()) return;
  UnregisteredPrefixes unregistered(deployment, findings);
  forEachPath(deployment, [&](const NamedPath& path) {
    for (const std::string& strPrefix : prefixesOf(path.strText)) {
      if (unregistered.tell(path, strPrefix)) break;  // the first of a path is enough
    }
  });
  // The clean-up asks the reference XML for each empty element by its path as it is written.
  for (const ParsedFile* const file :
       {&deployment.messageTemplate, &deployment.schemaTypes, &deployment.reference}) {
    if (!file->isLoaded()) continue;
    for (const Node& objElement : file->elements()) {
      unregistered.tell({file, objElement, "", "", ""},
                        std::string(prefixOf(objElement.nodeName())));
    }
  }
}

/// The name of a new element without a prefix is looked up as if it were one.
void findStepsWithoutPrefix(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.namespaceList.isLoaded()) return;
  for (const MappingEntry& entry : deployment.entries) {
    for (const Node& objPath : {entry.objNodePath, entry.objExtraNode}) {
      if (!objPath || entry.isTable() || !isNodePath(objPath.text())) continue;
      for (const std::string& strStep : split(objPath.text(), "/")) {
        if (strStep.find(':') != std::string::npos || deployment.namespaceOf(strStep)) continue;
        findings.add(deployment.objectMapper, objPath, "", entry.strId,
                     "The step " + inQuotes(strStep) +
                         " has no prefix, and the namespace list has no "
                         "entry of that name: every form with this answer fails.",
                     "Write a prefix, or register the name.");
        break;
      }
    }
  }
}

/// Rows are made without a namespace; the prefix gets its meaning where the message is written.
void findUndeclaredRowPrefixes(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.messageTemplate.isLoaded()) return;
  std::unordered_set<std::string> declared{"xml"};
  for (const Node& objElement : deployment.messageTemplate.elements()) {
    for (const NodeAttribute& attribute : objElement.attributes()) {
      if (!attribute.strName.starts_with("xmlns")) break;
      if (attribute.strName.size() > 6) declared.insert(attribute.strName.substr(6));
    }
  }
  for (const MappingEntry& entry : deployment.entries) {
    const std::string strPrefix(prefixOf(entry.strNodePath));
    if (!entry.isTable() || strPrefix.empty() || declared.contains(strPrefix)) continue;
    findings.add(deployment.objectMapper, entry.objNodePath, "", entry.strId,
                 "The template does not declare the prefix " + inQuotes(strPrefix) +
                     " of the rows: the message is no well-formed XML, and not checked.",
                 "Declare it at the template's root.");
  }
}

/// The element that declares the default namespace which one is in.
Node declaringDefault(const Node& objElement) {
  Node objAbove = objElement;
  while (objAbove.nodeType() == NodeType::element && !objAbove.getAttribute("xmlns"))
    objAbove = objAbove.parentNode();
  return objAbove;
}

/// Where names are looked up without a prefix a default namespace hides them.
void findDefaultNamespaces(const ParsedDeployment& deployment, Findings& findings) {
  const auto add = [&](const ParsedFile& file, const Node& objElement) {
    findings
        .add(file, objElement, "xmlns", attributeText(objElement, kId),
             "The element " + inQuotes(objElement.nodeName()) + " is in the default namespace " +
                 inQuotes(objElement.namespaceUri()) +
                 ", and it is looked up in none: it is not found.",
             "Take the declaration xmlns=\"...\" out, or give the namespace a prefix.")
        .mends.texts = {{file.path(), "xmlns=\"" + objElement.namespaceUri() + "\"", ""},
                        {file.path(), "xmlns='" + objElement.namespaceUri() + "'", ""}};
  };
  for (const ParsedFile* const file : deployment.all()) {
    const bool blnContent = file == &deployment.messageTemplate || file == &deployment.protocolInfo;
    if (!file->isLoaded() || blnContent) continue;
    const bool blnTypes = file == &deployment.schemaTypes;
    Node objLast;  // the declaration that was told last
    for (const Node& objElement : file->elements()) {
      const std::string strName = objElement.nodeName();
      if (strName.find(':') != std::string::npos || objElement.namespaceUri().empty()) continue;
      // What a schematype holds goes into the message and may be in any namespace.
      const bool blnOwn = !blnTypes || strName == "SchemaTypeMapperDocument" ||
                          strName == "schematypes" || strName == "schematype" ||
                          (strName == kValue && objElement.getAttribute(kId));
      const Node objParent = objElement.parentNode();
      const bool blnFirst = blnTypes || objParent.namespaceUri().empty() ||
                            objParent.nodeName().find(':') != std::string::npos;
      if (!blnOwn || !blnFirst) continue;
      const Node objDeclaring = declaringDefault(objElement);
      if (objDeclaring == objLast) continue;
      objLast = objDeclaring;
      add(*file, objElement);
    }
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"namespace-unusable", Severity::error, findUnusableEntries},
    {"no-namespace-element", Severity::error, findOtherElements},
    {"ref-and-name-apart", Severity::error, findRefApart},
    {"registered-otherwise", Severity::error, findRegisteredOtherwise},
    {"prefix-not-registered", Severity::error, findUnregisteredPrefixes},
    {"step-without-prefix", Severity::error, findStepsWithoutPrefix},
    {"row-prefix-not-declared", Severity::error, findUndeclaredRowPrefixes},
    {"default-namespace", Severity::error, findDefaultNamespaces},
});

}  // namespace

std::span<const Rule> namespaceRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
