#include "platform/schema/SchemaClosure.h"

#include <libxml/uri.h>
#include <libxml/xmlstring.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/xml/LoadXml.h"
#include "platform/xml/ParseError.h"
#include "platform/xml/ReadXmlFile.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
constexpr std::size_t kMaxDocuments = 1000;
constexpr int kMaxRequired = 1000;
constexpr std::size_t kMaxDocumentBytes = std::size_t{64} * 1024 * 1024;

struct FreeXmlText {
  void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};
using OwnedXmlText = std::unique_ptr<xmlChar, FreeXmlText>;

/// A schema document that is still to be read.
struct Pending {
  std::string strPath;
  // Whose declarations it makes; an included document without a target namespace takes over that
  // of the document which includes it. An imported one has its own.
  std::optional<std::string> strAdoptedNamespace;
};

bool isSchemaElement(const xmlNode* node, std::string_view strName) {
  return isElement(node) && node->ns && view(node->ns->href) == kSchemaNamespace &&
         view(node->name) == strName;
}

std::optional<std::string> attributeText(const xmlNode* element, std::string_view strName) {
  const xmlAttr* attribute = findAttribute(element, strName);
  if (!attribute) return std::nullopt;
  return textOf(asNode(const_cast<xmlAttr*>(attribute)));
}

/// The URI by which the library knows the file at a path, so that both find the same files from it.
OwnedXmlText uriOfPath(const std::string& strPath) {
  OwnedXmlText uri(xmlPathToURI(xmlText(strPath.c_str())));
  if (!uri) throw std::bad_alloc();
  return uri;
}

OwnedXmlDoc readSchemaDocument(const std::string& strPath) {
  ParseError error;
  const std::optional<std::string> strBytes = readXmlFile(strPath, kMaxDocumentBytes, error);
  if (!strBytes) refuseSchema(strPath, error.reason);
  LoadedXml loaded = loadXml(*strBytes, XmlEncoding::declared);
  if (!loaded.document) refuseSchema(strPath, loaded.error.reason);
  // A declaration of entities or of attributes would mean something else to the library's reader.
  if (loaded.document->intSubset) refuseSchema(strPath, "It has a document type declaration.");
  const xmlNode* root = xmlDocGetRootElement(loaded.document.get());
  if (!root || !isSchemaElement(root, "schema")) refuseSchema(strPath, "It is not an XML Schema.");
  loaded.document->URL = uriOfPath(strPath).release();
  return std::move(loaded.document);
}

/// Whether a number of occurrences is one that has to be counted.
bool isCount(const std::optional<std::string>& strOccurs) {
  if (!strOccurs) return false;
  const std::size_t digit = strOccurs->find_first_not_of(" \t\r\n+0");
  if (digit == std::string::npos || strOccurs->at(digit) == 'u') return false;  // unbounded
  return strOccurs->at(digit) != '1' ||
         strOccurs->find_first_of("0123456789", digit + 1) != std::string::npos;
}

/// How many occurrences are demanded; a number beyond what is of use here comes out as that.
int requiredOccurrences(const std::optional<std::string>& strOccurs) {
  if (!isCount(strOccurs)) return 1;
  const std::size_t digit = strOccurs->find_first_not_of(" \t\r\n+0");
  int lngOccurs = 0;
  for (std::size_t at = digit; at < strOccurs->size() && lngOccurs < kMaxRequired; ++at) {
    if (strOccurs->at(at) < '0' || strOccurs->at(at) > '9') break;
    lngOccurs = lngOccurs * 10 + (strOccurs->at(at) - '0');
  }
  return std::min(lngOccurs, kMaxRequired);
}

/// The file that a reference in the document at `strPath` leads to.
std::string referredPath(const std::string& strPath, const std::string& strLocation) {
  const OwnedXmlText uri(xmlBuildURI(xmlText(strLocation.c_str()), uriOfPath(strPath).get()));
  if (!uri) refuseSchema(strPath, "It refers to '" + strLocation + "', which is no location.");
  std::string strUri(view(uri.get()));
  // Whatever names a scheme or, behind "//", a host is not a path. Of those only file: URLs lead to
  // files.
  if (strUri.starts_with('/') && !strUri.starts_with("//")) strUri.insert(0, "file://");
  const std::optional<std::string> strReferred =
      strUri.starts_with("file:") ? filePath(strUri) : std::nullopt;
  if (!strReferred) refuseSchema(strPath, "It refers to '" + strLocation + "', which is no file.");
  return *strReferred;
}

class ClosureReader {
 public:
  SchemaClosure read(std::string_view strNamespaceUri, const std::string& strPath) {
    OwnedXmlDoc document = take({strPath, std::nullopt});
    const std::string strTarget =
        attributeText(xmlDocGetRootElement(document.get()), "targetNamespace").value_or("");
    if (strTarget != strNamespaceUri) {
      refuseSchema(strPath, "Its target namespace is '" + strTarget + "', not '" +
                                std::string(strNamespaceUri) + "'.");
    }
    while (!pending_.empty()) {
      const Pending next = std::move(pending_.back());
      pending_.pop_back();
      take(next);
    }
    closure_.document = std::move(document);
    return std::move(closure_);
  }

 private:
  OwnedXmlDoc take(const Pending& from) {
    if (!seen_.emplace(from.strPath, from.strAdoptedNamespace.value_or("")).second) return nullptr;
    if (seen_.size() > kMaxDocuments) refuseSchema(from.strPath, "It is one document too many.");

    OwnedXmlDoc document = readSchemaDocument(from.strPath);
    xmlNode* const root = xmlDocGetRootElement(document.get());
    std::optional<std::string> strTarget = attributeText(root, "targetNamespace");
    if (!strTarget) strTarget = from.strAdoptedNamespace;
    const std::string strNamespace = strTarget.value_or("");
    const bool blnQualified = attributeText(root, "elementFormDefault") == "qualified";
    for (xmlNode* node = root; node; node = nextBelow(node, root)) {
      if (!isElement(node)) continue;
      // It would change where the library looks for what the document refers to.
      if (findAttribute(node, "xml:base")) refuseSchema(from.strPath, "It has an xml:base.");
      if (isSchemaElement(node, "any")) closure_.blnWildcards = true;
      if (isCount(attributeText(node, "minOccurs")) || isCount(attributeText(node, "maxOccurs"))) {
        closure_.blnCounts = true;
      }
      closure_.lngMaxRequired =
          std::max(closure_.lngMaxRequired, requiredOccurrences(attributeText(node, "minOccurs")));
      if (isSchemaElement(node, "element")) declare(node, strNamespace, blnQualified);
      if (isSchemaElement(node, "import")) follow(from.strPath, node, std::nullopt);
      if (isSchemaElement(node, "include") || isSchemaElement(node, "redefine")) {
        follow(from.strPath, node, strNamespace);
      }
    }
    return document;
  }

  void declare(const xmlNode* element, const std::string& strNamespace, bool blnQualified) {
    const std::optional<std::string> strName = attributeText(element, "name");
    if (!strName) return;
    const bool blnGlobal = isSchemaElement(element->parent, "schema");
    const std::optional<std::string> strForm = attributeText(element, "form");
    const bool blnNamespace = blnGlobal || (strForm ? strForm == "qualified" : blnQualified);
    closure_.declared.insert(elementKey(blnNamespace ? strNamespace : "", *strName));
  }

  void follow(const std::string& strPath, const xmlNode* reference,
              const std::optional<std::string>& strAdoptedNamespace) {
    const std::optional<std::string> strLocation = attributeText(reference, "schemaLocation");
    if (!strLocation) return;  // an import may leave it to others
    pending_.push_back({referredPath(strPath, *strLocation), strAdoptedNamespace});
  }

  SchemaClosure closure_;
  std::vector<Pending> pending_;
  std::set<std::pair<std::string, std::string>> seen_;
};

}  // namespace

std::string elementKey(std::string_view strNamespaceUri, std::string_view strLocalName) {
  std::string strKey(strLocalName);
  if (!strNamespaceUri.empty()) strKey.append("|").append(strNamespaceUri);
  return strKey;
}

SchemaClosure readSchemaClosure(std::string_view strNamespaceUri, std::string_view strPath) {
  const bool blnOtherUrl =
      strPath.find("://") != std::string_view::npos && !strPath.starts_with("file:");
  const std::optional<std::string> strFile = filePath(strPath);
  if (!strFile || blnOtherUrl) refuseSchema(strPath, "It is no file.");
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(*strFile, error);
  if (error) refuseSchema(strPath, error.message());
  return ClosureReader().read(strNamespaceUri, absolute.lexically_normal().string());
}

void refuseSchema(std::string_view strPath, std::string_view strReason) {
  std::string strDescription =
      "The schema '" + std::string(strPath) + "' cannot be registered: " + std::string(strReason);
  const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20; };
  std::replace_if(strDescription.begin(), strDescription.end(), isControl, ' ');
  throw RuntimeError(kXmlFailure, strDescription);
}

}  // namespace Varnel_Tolv_XML_Creation
