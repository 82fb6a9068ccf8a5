#include "host/SchemaFacets.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/uri.h>

#include <map>
#include <set>
#include <utility>

namespace {

constexpr std::string_view kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
constexpr int kMostDepth = 32;  // of types that refer to others
constexpr std::size_t kMostDocuments = 200;

std::string_view text(const xmlChar* characters) {
  return characters == nullptr ? "" : reinterpret_cast<const char*>(characters);
}

std::string attribute(xmlNodePtr element, const char* name) {
  xmlChar* const value = xmlGetNoNsProp(element, BAD_CAST name);
  std::string strValue(text(value));
  xmlFree(value);
  return strValue;
}

bool isSchemaElement(xmlNodePtr node, std::string_view strName) {
  return node->type == XML_ELEMENT_NODE && node->ns != nullptr &&
         text(node->ns->href) == kSchemaNamespace && text(node->name) == strName;
}

std::string localName(std::string_view strName) {
  return std::string(strName.substr(strName.rfind(':') + 1));
}

/// A component's kind, namespace and name.
using Key = std::pair<std::string, std::pair<std::string, std::string>>;

}  // namespace

struct SchemaFacets::Documents {
  struct Free {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
  };
  std::vector<std::unique_ptr<xmlDoc, Free>> documents;
  std::set<std::string> read;
  std::map<Key, xmlNodePtr> components;

  void load(const std::string& strFile, const std::string& strNamespace);
  xmlNodePtr find(const char* kind, xmlNodePtr from, const std::string& strName) const;
  xmlNodePtr typeOf(xmlNodePtr element) const;
  xmlNodePtr childElement(xmlNodePtr type, const std::string& strName, bool& blnRequired,
                          int depth) const;
  void addFacets(xmlNodePtr type, const std::string& strTypeName, Facets& facets, int depth) const;
  void addBuiltIn(std::string_view strName, Facets& facets) const;
};

/// Reads a schema document with those that it includes and imports. One without a target namespace
/// takes that of the document which includes it.
void SchemaFacets::Documents::load(const std::string& strFile, const std::string& strNamespace) {
  if (documents.size() >= kMostDocuments || !read.insert(strFile).second) return;
  xmlDocPtr const document = xmlReadFile(strFile.c_str(), nullptr,
                                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  if (document == nullptr) return;
  documents.emplace_back(document);
  xmlNodePtr const root = xmlDocGetRootElement(document);
  if (root == nullptr || !isSchemaElement(root, "schema")) return;
  std::string strTarget = attribute(root, "targetNamespace");
  if (strTarget.empty()) strTarget = strNamespace;
  for (xmlNodePtr child = root->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    const std::string strName = attribute(child, "name");
    if (!strName.empty()) {
      components.try_emplace(Key{std::string(text(child->name)), {strTarget, strName}}, child);
      continue;
    }
    const std::string strLocation = attribute(child, "schemaLocation");
    if (strLocation.empty()) continue;
    xmlChar* const uri = xmlBuildURI(BAD_CAST strLocation.c_str(), document->URL);
    const std::string strUri(text(uri));
    xmlFree(uri);
    // Only files: what stands on other machines is not read.
    if (strUri.find("://") == std::string::npos) {
      load(strUri, isSchemaElement(child, "import") ? "" : strTarget);
    }
  }
}

/// The component that the name, with the prefix that it has at `from`, refers to.
xmlNodePtr SchemaFacets::Documents::find(const char* kind, xmlNodePtr from,
                                         const std::string& strName) const {
  const std::size_t lngColon = strName.find(':');
  const std::string strPrefix = lngColon == std::string::npos ? "" : strName.substr(0, lngColon);
  xmlNsPtr const name_space =
      xmlSearchNs(from->doc, from, strPrefix.empty() ? nullptr : BAD_CAST strPrefix.c_str());
  const std::string strUri(name_space == nullptr ? "" : text(name_space->href));
  const auto found = components.find(Key{kind, {strUri, localName(strName)}});
  return found == components.end() ? nullptr : found->second;
}

/// The definition of an element's type, which may stand in it; null for a built-in one.
xmlNodePtr SchemaFacets::Documents::typeOf(xmlNodePtr element) const {
  if (element == nullptr) return nullptr;
  const std::string strType = attribute(element, "type");
  if (!strType.empty()) {
    xmlNodePtr const type = find("complexType", element, strType);
    return type != nullptr ? type : find("simpleType", element, strType);
  }
  for (xmlNodePtr child = element->children; child != nullptr; child = child->next) {
    if (isSchemaElement(child, "complexType") || isSchemaElement(child, "simpleType")) return child;
  }
  return nullptr;
}

/// The declaration of the element with this name in a type or a part of one. `blnRequired` becomes
/// false when something on the way may be left out.
xmlNodePtr SchemaFacets::Documents::childElement(xmlNodePtr type, const std::string& strName,
                                                 bool& blnRequired, int depth) const {
  if (type == nullptr || depth > kMostDepth) return nullptr;
  for (xmlNodePtr child = type->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    bool blnHere = attribute(child, "minOccurs") != "0" && !isSchemaElement(type, "choice");
    if (isSchemaElement(child, "element")) {
      const std::string strRef = attribute(child, "ref");
      if (localName(strRef.empty() ? attribute(child, "name") : strRef) != strName) continue;
      blnRequired = blnRequired && blnHere;
      return strRef.empty() ? child : find("element", child, strRef);
    }
    xmlNodePtr found = nullptr;
    if (isSchemaElement(child, "extension") || isSchemaElement(child, "restriction")) {
      found = childElement(find("complexType", child, attribute(child, "base")), strName, blnHere,
                           depth + 1);
    } else if (isSchemaElement(child, "group")) {
      found =
          childElement(find("group", child, attribute(child, "ref")), strName, blnHere, depth + 1);
    }
    if (found == nullptr) found = childElement(child, strName, blnHere, depth + 1);
    if (found == nullptr) continue;
    blnRequired = blnRequired && blnHere;
    return found;
  }
  return nullptr;
}

void SchemaFacets::Documents::addBuiltIn(std::string_view strName, Facets& facets) const {
  facets.blnDate = strName == "date";
  for (const std::string_view strNumber :
       {"decimal", "integer", "int", "long", "short", "byte", "nonNegativeInteger",
        "positiveInteger", "unsignedInt", "unsignedLong", "unsignedShort", "double", "float"}) {
    if (strName == strNumber) facets.blnNumber = true;
  }
}

/// Goes from the type to those that it is derived from; the nearest limit counts.
void SchemaFacets::Documents::addFacets(xmlNodePtr type, const std::string& strTypeName,
                                        Facets& facets, int depth) const {
  if (depth > kMostDepth) return;
  if (type == nullptr) {
    addBuiltIn(localName(strTypeName), facets);
    return;
  }
  for (xmlNodePtr child = type->children; child != nullptr; child = child->next) {
    if (isSchemaElement(child, "simpleContent")) addFacets(child, "", facets, depth + 1);
    if (!isSchemaElement(child, "restriction") && !isSchemaElement(child, "extension")) continue;
    const bool blnNone = facets.enumerations.empty();
    for (xmlNodePtr facet = child->children; facet != nullptr; facet = facet->next) {
      if (facet->type != XML_ELEMENT_NODE) continue;
      if (isSchemaElement(facet, "enumeration") && blnNone) {
        facets.enumerations.push_back(attribute(facet, "value"));
      } else if (facets.strMaxLength.empty() &&
                 (isSchemaElement(facet, "maxLength") || isSchemaElement(facet, "length"))) {
        facets.strMaxLength = attribute(facet, "value");
      }
    }
    const std::string strBase = attribute(child, "base");
    if (!strBase.empty()) {
      addFacets(find("simpleType", child, strBase), strBase, facets, depth + 1);
    }
  }
}

SchemaFacets::SchemaFacets(const std::string& strFile) : documents_(std::make_unique<Documents>()) {
  if (!strFile.empty()) documents_->load(strFile, "");
}

SchemaFacets::~SchemaFacets() = default;

Facets SchemaFacets::at(std::string_view strPath) const {
  Facets facets;
  if (!strPath.starts_with('/')) return facets;
  facets.blnRequired = true;
  xmlNodePtr element = nullptr;
  for (std::size_t at = 1; at <= strPath.size();) {
    const std::size_t end = std::min(strPath.find('/', at), strPath.size());
    const std::string strName = localName(strPath.substr(at, end - at));
    if (at == 1) {
      for (const auto& [key, component] : documents_->components) {
        if (key.first == "element" && key.second.second == strName) element = component;
      }
    } else {
      element =
          documents_->childElement(documents_->typeOf(element), strName, facets.blnRequired, 0);
    }
    if (element == nullptr) return {};
    at = end + 1;
  }
  documents_->addFacets(documents_->typeOf(element), attribute(element, "type"), facets, 0);
  return facets;
}
