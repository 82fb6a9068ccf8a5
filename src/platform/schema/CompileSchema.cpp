#include "platform/schema/CompileSchema.h"

#include <libxml/xmlschemas.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/schema/CompilerDocument.h"
#include "platform/schema/FacetSpot.h"
#include "platform/schema/HeavyContent.h"
#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/schema/component/Readers.h"
#include "platform/text/Text.h"
#include "platform/xml/CopyTree.h"
#include "platform/xml/OwnedXml.h"
#include "platform/xml/SerialiseXml.h"
#include "platform/xml/ServedDocuments.h"
#include "platform/xml/Tree.h"
#include "platform/xml/XmlMemory.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The first error of a compilation, and where the compiler saw it: in which copy, on which line.
struct CompileRun {
  bool blnValid = false;
  std::string strReason, strLocation;
  std::size_t lngLine = 0;
  std::exception_ptr exception;
};

void onCompileError(void* context, xmlError* report) {
  CompileRun& run = *static_cast<CompileRun*>(context);
  noteShortage(*report);
  try {
    if (report->level < XML_ERR_ERROR || !run.strReason.empty()) return;
    run.strReason = report->message ? report->message : "It is not valid.";
    while (run.strReason.ends_with('\n')) run.strReason.pop_back();
    if (report->file) run.strLocation = report->file;
    run.lngLine = static_cast<std::size_t>(std::max(report->line, 0));
  } catch (...) {
    run.exception = std::current_exception();
  }
}

/// A copy of a document for the compiler, whose references are the locations of served documents:
/// so each document, in each of its parts, is what the compiler knows by one location.
class CompilerCopy {
 public:
  /// As the text of a document that it loads the copy has lines of its own: its elements stand on
  /// those of the elements that they are copies of, except where content is set aside.
  enum class Use : std::uint8_t { tree, text };

  CompilerCopy(const SchemaDocuments& documents, std::size_t lngDocument,
               const std::vector<HeavyContent>& heavy, Use use)
      : use_(use) {
    std::unordered_map<const TreeNode*, HeavyContent::Substitute> substitutes;
    for (const HeavyContent& content : heavy) {
      if (content.lngDocument != lngDocument) continue;
      substitutes.emplace(content.particle, content.substitute);
    }
    const SchemaDocument& source = documents.documents[lngDocument];
    const TreeNode* const root = source.root;
    auto reference = source.references.begin();
    lngLine_ = lngFirstLine_ = std::max<std::size_t>(asParent(root)->lngLine, 1);
    std::vector<std::pair<TreeNode*, HeavyContent::Substitute>> found;
    TreeNode* const top = copyNode(root, true, tree_);
    linkNode(tree_.document(), top, nullptr);
    TreeNode* copy = top;
    for (const TreeNode* node = root; node; node = nextBelow(node, root)) {
      TreeNode* const next = nextBelow(copy, top);
      if (isCharacterData(node)) {
        if (use_ == Use::text) {
          lngLine_ += static_cast<std::size_t>(std::ranges::count(valueOf(node), '\n'));
        }
      } else if (!isElement(node)) {
        unlinkNode(copy);  // the compiler has no use for comments
      } else {
        goToLine(asParent(node)->lngLine, copy);
        asParent(copy)->lngLine = static_cast<std::uint32_t>(lngLine_);
        if (reference != source.references.end() && reference->element == node) {
          relocate(copy, ServedDocuments::location(reference->lngDocument));
          ++reference;
        } else if (node->parent == root && isSchemaElement(node, "import")) {
          relocate(copy, "");
        }
        const auto substitute = substitutes.find(node);
        if (substitute != substitutes.end()) found.emplace_back(copy, substitute->second);
      }
      copy = next;
    }
    for (std::size_t at = 0; at < found.size(); ++at) {
      setAside(found[at].first, found[at].second,
               "set-aside." + std::to_string(lngDocument) + "." + std::to_string(at));
    }
  }

  const Tree& tree() const noexcept { return tree_; }

  std::string text() const {
    return std::string(lngFirstLine_ - 1, '\n') + serialiseXml(tree_, tree_.document()->first);
  }

 private:
  /// Lets an element stand on a line, unless that is over: elements of an entity have lines of
  /// their own, and stand where the entity does.
  void goToLine(std::size_t lngLine, TreeNode* element) {
    if (lngLine <= lngLine_) return;
    if (use_ == Use::text) {
      const std::string strLines(lngLine - lngLine_, '\n');
      linkNode(element->parent, tree_.newLeaf(NodeKind::text, nullptr, strLines), element);
    }
    lngLine_ = lngLine;
  }

  void declare(TreeNode* element, const TreeName* name) {
    linkAttribute(element, tree_.newLeaf(NodeKind::declaration, name, {}));
  }

  void add(TreeNode* element, const TreeName* name, std::string_view strValue) {
    linkAttribute(element, tree_.newLeaf(NodeKind::attribute, name, strValue));
  }

  void addAttribute(TreeNode* element, std::string_view strName, std::string_view strValue) {
    add(element, tree_.name({}, strName, {}), strValue);
  }

  /// Makes a reference lead to a document, or nowhere.
  void relocate(TreeNode* reference, const std::string& strLocation) {
    if (TreeNode* attribute = findAttribute(reference, "schemaLocation")) unlinkNode(attribute);
    if (!strLocation.empty()) addAttribute(reference, "schemaLocation", strLocation);
  }

  /// Declares in `element` what is declared around `source`, up to the root.
  void declareAsAround(const TreeNode* source, TreeNode* element) {
    for (const TreeNode* scope = source; scope->parent->parent; scope = scope->parent) {
      for (const TreeNode* outer = asParent(scope)->attributes; outer && !isAttribute(outer);
           outer = outer->next) {
        const TreeNode* own = asParent(element)->attributes;
        while (own && own->name->prefix != outer->name->prefix) own = own->next;
        if (!own) declare(element, outer->name);
      }
    }
  }

  /// Makes a content model that the compiler had better not see a named group to which nothing
  /// refers: all in it is checked, but no automaton is made of it. So it is not checked whether the
  /// model is ambiguous (unique particle attribution). What stands in its place is as empty as it
  /// may be.
  void setAside(TreeNode* particle, HeavyContent::Substitute substitute,
                const std::string& strName) {
    const TreeName& name = *particle->name;
    const auto addElement = [&](TreeNode* above, TreeNode* before, std::string_view strKind) {
      linkNode(above,
               tree_.newElement(tree_.name(name.prefix->strText, strKind, name.uri->strText)),
               before);
      TreeNode* const added = before ? before->prev : asParent(above)->last;
      asParent(added)->lngLine = asParent(particle)->lngLine;
      return added;
    };
    TreeNode* const parent = particle->parent;
    if (substitute != HeavyContent::Substitute::none) {
      TreeNode* const child =
          addElement(addElement(parent, particle->next, "sequence"), nullptr, "element");
      addAttribute(child, "name", strName);
      const bool blnOptional = substitute == HeavyContent::Substitute::optional;
      addAttribute(child, "minOccurs", blnOptional ? "0" : "1");
    }
    unlinkNode(particle);
    if (name.strLocal == "group") return;  // it only refers to one
    TreeNode* const group = addElement(tree_.document()->first, nullptr, "group");
    declareAsAround(parent, group);
    addAttribute(group, "name", strName);
    // A group of "all" cannot be part of another, the others have numbers that a named one has not.
    const bool blnAll = name.strLocal == "all";
    linkNode(blnAll ? group : addElement(group, nullptr, "sequence"), particle, nullptr);
  }

  const Use use_;
  Tree tree_;
  std::size_t lngFirstLine_ = 1;  // on which the root stands
  std::size_t lngLine_ = 1;       // that of the last element, or of the text so far
};

/// Where the first error of a compilation stands.
SchemaSpot spotOf(const CompileRun& run, const SchemaDocuments& documents) {
  for (std::size_t at = 0; at < documents.documents.size(); ++at) {
    if (run.strLocation == ServedDocuments::location(at)) {
      return {documents.documents[at].strPath, run.lngLine};
    }
  }
  return {};
}

/// What the compiler says, the documents by their paths.
std::string inPaths(std::string strReason, const SchemaDocuments& documents) {
  for (std::size_t at = 0; at < documents.documents.size(); ++at) {
    strReason =
        replaceAll(strReason, ServedDocuments::location(at), documents.documents[at].strPath);
  }
  return strReason;
}

/// Compiles copies of the documents in which these contents are set aside.
CompileRun compile(const SchemaDocuments& documents, const std::vector<HeavyContent>& setAside) {
  const MemoryWatch memory;
  const auto textOf = [&](std::size_t lngDocument) {
    return CompilerCopy(documents, lngDocument, setAside, CompilerCopy::Use::text).text();
  };
  const ServedDocuments served(textOf);
  const CompilerCopy copy(documents, 0, setAside, CompilerCopy::Use::tree);
  const CompilerDocument document(copy.tree(), ServedDocuments::location(0));
  CompileRun run;
  const Owned<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt> parser(
      xmlSchemaNewDocParserCtxt(document.get()));
  if (!parser) throw std::bad_alloc();
  xmlSchemaSetParserStructuredErrors(parser.get(), onCompileError, &run);
  const Owned<xmlSchema, xmlSchemaFree> schema(xmlSchemaParse(parser.get()));
  if (run.exception) std::rethrow_exception(run.exception);
  served.check();
  memory.check();
  run.blnValid = schema && run.strReason.empty();
  return run;
}

}  // namespace

void checkByCompiler(const SchemaDocuments& documents, const Definitions& definitions,
                     std::string_view strPath) {
  const HeavyContents heavy = heavyContents(documents, definitions);
  std::vector<HeavyContent> setAside = heavy.excessive;
  setAside.insert(setAside.end(), heavy.plain.begin(), heavy.plain.end());
  CompileRun run = compile(documents, setAside);
  // It comes last to what is set aside, and is to tell what it finds first where all is in place.
  if (!run.blnValid && !heavy.plain.empty()) run = compile(documents, heavy.excessive);
  if (run.blnValid) return;
  SchemaSpot spot =
      run.lngLine > 0 ? spotOf(run, documents) : spotOfFacet(run.strReason, documents);
  refuseSchema(
      strPath,
      run.strReason.empty() ? "It is not valid." : inPaths(std::move(run.strReason), documents),
      std::move(spot));
}

std::unique_ptr<const SchemaComponents> compileSchema(const SchemaDocuments& documents,
                                                      std::string_view strPath) {
  Readers readers(documents);
  checkByCompiler(documents, readers.definitions, strPath);
  return readComponents(readers);
}

}  // namespace Varnel_Tolv_XML_Creation
