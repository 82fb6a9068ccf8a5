#include "platform/schema/ReadSchemaDocuments.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/schema/SchemaCatalog.h"
#include "platform/schema/W3cSchemas.h"
#include "platform/text/Text.h"
#include "platform/xml/FileUri.h"
#include "platform/xml/LoadTree.h"
#include "platform/xml/NamespaceUris.h"
#include "platform/xml/ParseError.h"
#include "platform/xml/ReadXmlFile.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kMaxDocuments = 1000;
constexpr std::size_t kMaxDocumentBytes = std::size_t{64} * 1024 * 1024;

SchemaSpot spotOf(const std::string& strPath, const TreeNode* element) {
  return {strPath, asParent(element)->lngLine};
}

SchemaSpot spotOf(const std::string& strPath, const ParseError& error) {
  return {strPath, static_cast<std::size_t>(std::max(error.line, 0))};
}

/// The root element.
const TreeNode* parseSchema(Tree& tree, const std::string& strPath, std::string_view strBytes) {
  ParseError error;
  const TreeNode* const document =
      loadTree(tree, strBytes, XmlEncoding::declared, error, AttributeDefaults::applied);
  if (!document) refuseSchema(strPath, error.reason, spotOf(strPath, error));
  const TreeNode* const root = rootOf(document);
  if (!isSchemaElement(root, "schema")) refuseSchema(strPath, "It is not an XML Schema.");
  for (const TreeNode* node = root; node; node = nextBelow(node, root)) {
    // It would change where all below it leads.
    if (isElement(node) && findAttribute(node, "xml:base")) {
      refuseSchema(strPath, "It has an xml:base.", spotOf(strPath, node));
    }
  }
  return root;
}

/// A document that was read: its root, and where its own references start from.
struct ReadDocument {
  std::string strPath, strUri;
  const TreeNode* root = nullptr;
  std::optional<std::string> strTarget;
};

// References are followed depth first, in the order of the documents, as the library's compiler
// does: so of several imports of a namespace the first counts here as it does there. Imports that
// lead to no file wait until all the others have been followed, because one of those may bring the
// namespace.
class DocumentsReader {
 public:
  DocumentsReader(std::string_view strCatalog, const std::string& strPath)
      : catalog_(strCatalog, strPath, found_.files) {}

  SchemaDocuments read(std::optional<std::string_view> strNamespaceUri,
                       const std::string& strPath) {
    ParseError error;
    const ReadDocument* main = openFile(strPath, error);
    if (!main) refuseSchema(strPath, error.reason);
    const std::string strTarget = main->strTarget.value_or("");
    if (strNamespaceUri && strTarget != *strNamespaceUri) {
      refuseSchema(strPath, "Its target namespace is '" + strTarget + "', not '" +
                                std::string(*strNamespaceUri) + "'.");
    }
    partOf(*main, "");
    imported_.insert(strTarget);
    followAll();
    for (std::size_t at = 0; at < unlocated_.size(); ++at) {
      resolve(unlocated_[at]);
      followAll();
    }
    for (SchemaDocument& document : found_.documents) sortReferences(document);
    return std::move(found_);
  }

 private:
  struct Reference {
    std::size_t lngFrom;
    const TreeNode* element;
  };

  void followAll() {
    while (!pending_.empty()) {
      const Reference reference = pending_.back();
      pending_.pop_back();
      if (isSchemaElement(reference.element, "import")) {
        import(reference);
      } else {
        include(reference);
      }
    }
  }

  void include(const Reference& reference) {
    const auto strLocation = attributeOf(reference.element, "schemaLocation");
    if (!strLocation) return;  // the compiler says so
    const std::string strFrom = found_.documents[reference.lngFrom].strPath;
    SchemaSpot spot = spotOf(strFrom, reference.element);
    const std::string strRefers = "It refers to '" + std::string(*strLocation) + "', which is no ";
    const std::optional<std::string> strUri = locationOf(reference);
    if (!strUri) refuseSchema(strFrom, strRefers + "location.", spot);
    const std::optional<std::string> strPath = pathOfUri(*strUri);
    ParseError error;
    const ReadDocument* document = strPath ? openFile(*strPath, error) : nullptr;
    if (!document) {
      ParseError ignored;
      const std::optional<std::string> strOther = catalog_.fileOfLocation(*strUri);
      if (strOther) document = openFile(*strOther, ignored);
    }
    if (!document && strPath) {
      spot.strMissing = *strPath;
      refuseSchema(*strPath, error.reason, spot);
    }
    if (!document) {
      spot.strMissing = *strUri;
      refuseSchema(strFrom, strRefers + "file.", spot);
    }
    lead(reference, partOf(*document, found_.documents[reference.lngFrom].strTargetNamespace));
  }

  void import(const Reference& reference) {
    if (imported_.contains(namespaceOf(reference))) return;
    const std::optional<std::string> strUri = locationOf(reference);
    if (!strUri || !importFrom(reference, pathOfUri(*strUri))) unlocated_.push_back(reference);
  }

  /// Looks an import up that leads to no file by itself.
  void resolve(const Reference& reference) {
    const std::string strNamespace = namespaceOf(reference);
    if (imported_.contains(strNamespace)) return;
    const std::optional<std::string> strUri = locationOf(reference);
    if (strUri && importFrom(reference, catalog_.fileOfLocation(*strUri))) return;
    if (importFrom(reference, catalog_.fileOfNamespace(strNamespace, strUri.has_value()))) return;
    if (const W3cSchema* own = w3cSchema(strNamespace)) {
      const std::string strPath(own->strUri);
      import(reference, take(strPath, strPath, own->strText));
    }
  }

  bool importFrom(const Reference& reference, const std::optional<std::string>& strPath) {
    ParseError ignored;
    const ReadDocument* document = strPath ? openFile(*strPath, ignored) : nullptr;
    if (document) import(reference, *document);
    return document != nullptr;
  }

  void import(const Reference& reference, const ReadDocument& document) {
    const std::size_t lngPart = partOf(document, "");
    imported_.insert(namespaceOf(reference));
    lead(reference, lngPart);
  }

  static std::string namespaceOf(const Reference& reference) {
    return std::string(attributeText(reference.element, "namespace"));
  }

  /// The URI of what it leads to; nothing where it names none, as an import of no namespace.
  std::optional<std::string> locationOf(const Reference& reference) const {
    const auto strLocation = attributeOf(reference.element, "schemaLocation");
    if (!strLocation) return std::nullopt;
    return resolveUri(*strLocation, read_.at(found_.documents[reference.lngFrom].strPath).strUri);
  }

  void lead(const Reference& reference, std::size_t lngPart) {
    found_.documents[reference.lngFrom].references.push_back({reference.element, lngPart});
  }

  /// The document of a file; null when that cannot be opened.
  const ReadDocument* openFile(const std::string& strPath, ParseError& error) {
    const auto known = read_.find(strPath);
    if (known != read_.end()) return &known->second;
    const std::optional<std::string> strBytes =
        readXmlFile(strPath, kMaxDocumentBytes, error, &found_.files);
    if (strBytes) return &take(strPath, uriOfPath(strPath), *strBytes);
    if (error.errorCode != ParseError::kCannotOpen) {
      refuseSchema(strPath, error.reason, spotOf(strPath, error));
    }
    return nullptr;
  }

  const ReadDocument& take(const std::string& strPath, const std::string& strUri,
                           std::string_view strBytes) {
    if (read_.size() == kMaxDocuments) refuseSchema(strPath, "It is one document too many.");
    const TreeNode* const root = parseSchema(found_.trees.emplace_back(), strPath, strBytes);
    ReadDocument read{strPath, strUri, root,
                      std::optional<std::string>(attributeOf(root, "targetNamespace"))};
    return read_.insert_or_assign(strPath, std::move(read)).first->second;
  }

  /// The part that a document plays when one of the namespace `strAdopted` includes it. The
  /// references of a new part are followed next.
  std::size_t partOf(const ReadDocument& read, const std::string& strAdopted) {
    const std::string& strTarget = read.strTarget ? *read.strTarget : strAdopted;
    const std::size_t lngPart = found_.documents.size();
    if (const auto [known, blnNew] = parts_.emplace(std::pair(read.root, strTarget), lngPart);
        !blnNew) {
      return known->second;
    }
    if (lngPart == kMaxDocuments) refuseSchema(read.strPath, "It is one document too many.");
    found_.documents.push_back(
        {read.strPath, read.root, strTarget, !read.strTarget && !strTarget.empty(), {}});
    for (const TreeNode* child = asParent(read.root)->last; child; child = child->prev) {
      for (const char* kind : {"include", "redefine", "import"}) {
        if (isSchemaElement(child, kind)) pending_.push_back({lngPart, child});
      }
    }
    return lngPart;
  }

  /// Those that had to wait come last.
  static void sortReferences(SchemaDocument& document) {
    std::unordered_map<const TreeNode*, std::size_t> places;
    std::size_t lngPlace = 0;
    for (const TreeNode* child = document.root->first; child; child = child->next) {
      places.emplace(child, lngPlace++);
    }
    std::ranges::sort(document.references, {},
                      [&](const auto& reference) { return places.at(reference.element); });
  }

  SchemaDocuments found_;
  SchemaCatalog catalog_;
  std::unordered_map<std::string, ReadDocument> read_;  // by path
  std::map<std::pair<const TreeNode*, std::string>, std::size_t> parts_;
  std::unordered_set<std::string> imported_;  // namespaces
  std::vector<Reference> pending_;            // the last is the next
  std::vector<Reference> unlocated_;
};

}  // namespace

bool isSchemaElement(const TreeNode* node, std::string_view strName) {
  return isElement(node, kSchemaUri, strName);
}

SchemaDocuments readSchemaDocuments(std::optional<std::string_view> strNamespaceUri,
                                    std::string_view strPath, std::string_view strCatalog) {
  const bool blnOtherUrl =
      strPath.find("://") != std::string_view::npos && !strPath.starts_with("file:");
  const std::optional<std::string> strFile = filePath(strPath);
  if (!strFile || blnOtherUrl) refuseSchema(strPath, "It is no file.");
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(*strFile, error);
  if (error) refuseSchema(strPath, error.message());
  const std::string strMain = absolute.lexically_normal().string();
  return DocumentsReader(strCatalog, strMain).read(strNamespaceUri, strMain);
}

void refuseSchema(std::string_view strPath, std::string_view strReason, SchemaSpot spot) {
  if (spot.strPath.empty()) spot.strPath = strPath;
  throw SchemaFailure(oneLine("The schema '" + std::string(strPath) +
                              "' cannot be registered: " + std::string(strReason)),
                      std::move(spot), oneLine(strReason));
}

}  // namespace Varnel_Tolv_XML_Creation
