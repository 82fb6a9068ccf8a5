#include "platform/schema/CompileSchema.h"

#include <libxml/xmlschemas.h>

#include <exception>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/schema/HeavyContent.h"
#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/text/Text.h"
#include "platform/xml/CopyXml.h"
#include "platform/xml/OwnedXml.h"
#include "platform/xml/SerialiseXml.h"
#include "platform/xml/ServedDocuments.h"
#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlMemory.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The first error of a compilation.
struct CompileRun {
  std::string strReason;
  std::exception_ptr exception;
};

void onCompileError(void* context, xmlError* report) {
  CompileRun& run = *static_cast<CompileRun*>(context);
  noteShortage(*report);
  try {
    if (report->level < XML_ERR_ERROR || !run.strReason.empty()) return;
    run.strReason = report->message ? report->message : "It is not valid.";
    while (run.strReason.ends_with('\n')) run.strReason.pop_back();
  } catch (...) {
    run.exception = std::current_exception();
  }
}

xmlNode* addElement(xmlNode* parent, xmlNode* before, xmlNs* ns, const char* name) {
  OwnedXmlNode element(xmlNewDocNode(parent->doc, nullptr, xmlText(name), nullptr));
  if (!element) throw std::bad_alloc();
  element->ns = ns;
  xmlNode* added = element.release();
  linkNode(parent, added, before);
  return added;
}

void addAttribute(xmlNode* element, const char* name, const std::string& strValue) {
  if (!xmlNewProp(element, xmlText(name), xmlText(strValue.c_str()))) throw std::bad_alloc();
}

/// Makes a copied reference lead to a document, or nowhere.
void relocate(xmlNode* reference, const std::string& strLocation) {
  if (xmlAttr* attribute = findAttribute(reference, "schemaLocation")) {
    unlinkNode(asNode(attribute));
    xmlFreeProp(attribute);
  }
  if (!strLocation.empty()) addAttribute(reference, "schemaLocation", strLocation);
}

/// Declares in `element` what is declared around `source`, up to the root.
void declareAsAround(const xmlNode* source, xmlNode* element) {
  for (const xmlNode* scope = source; scope->parent->parent; scope = scope->parent) {
    for (const xmlNs* ns = scope->nsDef; ns; ns = ns->next) {
      const xmlNs* own = element->nsDef;
      while (own && view(own->prefix) != view(ns->prefix)) own = own->next;
      if (!own && !xmlNewNs(element, ns->href, ns->prefix)) throw std::bad_alloc();
    }
  }
}

/// Makes a content model that is too much for the compiler a named group to which nothing refers:
/// all in it is checked, but no automaton is made of it. So it is not checked whether the model is
/// ambiguous (unique particle attribution). What stands in its place is as empty as it may be.
void setAside(xmlNode* particle, HeavyContent::Substitute substitute, const std::string& strName) {
  xmlNode* const parent = particle->parent;
  xmlNode* const behind = particle->next;
  xmlNode* const root = xmlDocGetRootElement(parent->doc);
  xmlNs* const ns = particle->ns;
  if (substitute != HeavyContent::Substitute::none) {
    xmlNode* sequence = addElement(parent, behind, ns, "sequence");
    xmlNode* child = addElement(sequence, nullptr, ns, "element");
    addAttribute(child, "name", strName);
    const bool blnOptional = substitute == HeavyContent::Substitute::optional;
    addAttribute(child, "minOccurs", blnOptional ? "0" : "1");
  }
  unlinkNode(particle);
  if (isSchemaElement(particle, "group")) {  // only refers to one
    xmlFreeNode(particle);
    return;
  }
  xmlNode* group = addElement(root, nullptr, ns, "group");
  addAttribute(group, "name", strName);
  declareAsAround(parent, group);
  // A group of "all" cannot be part of another, the others have numbers that a named one has not.
  const bool blnAll = isSchemaElement(particle, "all");
  linkNode(blnAll ? group : addElement(group, nullptr, ns, "sequence"), particle, nullptr);
}

void setAside(const SchemaDocuments& documents, std::size_t lngDocument,
              const std::vector<HeavyContent>& heavy, xmlDoc* copy) {
  std::unordered_map<const xmlNode*, HeavyContent::Substitute> substitutes;
  for (const HeavyContent& content : heavy) {
    if (content.lngDocument == lngDocument) {
      substitutes.emplace(content.particle, content.substitute);
    }
  }
  if (substitutes.empty()) return;
  std::vector<std::pair<xmlNode*, HeavyContent::Substitute>> found;
  const xmlNode* const root = xmlDocGetRootElement(documents.documents[lngDocument].document);
  xmlNode* const copiedRoot = xmlDocGetRootElement(copy);
  xmlNode* copied = copiedRoot;
  for (const xmlNode* node = root; node; node = nextBelow(node, root)) {
    const auto substitute = substitutes.find(node);
    if (substitute != substitutes.end()) found.emplace_back(copied, substitute->second);
    copied = nextBelow(copied, copiedRoot);
  }
  for (std::size_t at = 0; at < found.size(); ++at) {
    setAside(found[at].first, found[at].second,
             "set-aside." + std::to_string(lngDocument) + "." + std::to_string(at));
  }
}

/// A copy of a document for the compiler, whose references are the locations of served documents:
/// so each document, in each of its parts, is what the compiler knows by one location.
OwnedXmlDoc copyForCompiler(const SchemaDocuments& documents, std::size_t lngDocument,
                            const std::vector<HeavyContent>& heavy,
                            InternedNamespaces& namespaces) {
  const SchemaDocument& source = documents.documents[lngDocument];
  const xmlNode* root = xmlDocGetRootElement(source.document);
  OwnedXmlDoc copy = newXmlDoc();
  linkNode(asNode(copy.get()), copyXml(root, true, copy.get(), namespaces).release(), nullptr);
  auto reference = source.references.begin();
  xmlNode* copied = xmlDocGetRootElement(copy.get())->children;
  for (const xmlNode* child = root->children; child; child = child->next, copied = copied->next) {
    if (reference != source.references.end() && reference->element == child) {
      relocate(copied, ServedDocuments::location(reference->lngDocument));
      ++reference;
    } else if (isSchemaElement(child, "import")) {
      relocate(copied, "");
    }
  }
  setAside(documents, lngDocument, heavy, copy.get());
  const std::string strUrl = ServedDocuments::location(lngDocument);
  copy->URL = xmlStrdup(xmlText(strUrl.c_str()));
  if (!copy->URL) throw std::bad_alloc();
  return copy;
}

/// What the compiler says, the documents by their paths.
std::string inPaths(std::string strReason, const SchemaDocuments& documents) {
  for (std::size_t at = 0; at < documents.documents.size(); ++at) {
    strReason =
        replaceAll(strReason, ServedDocuments::location(at), documents.documents[at].strPath);
  }
  return strReason;
}

}  // namespace

void checkByCompiler(const SchemaDocuments& documents, std::string_view strPath) {
  prepareXmlLibrary();
  const MemoryWatch memory;
  const std::vector<HeavyContent> heavy = heavyContents(documents);
  const ServedDocuments served([&](std::size_t lngDocument) {
    InternedNamespaces namespaces;
    return serialiseXml(asNode(copyForCompiler(documents, lngDocument, heavy, namespaces).get()));
  });
  InternedNamespaces namespaces;
  const OwnedXmlDoc document = copyForCompiler(documents, 0, heavy, namespaces);
  CompileRun run;
  const Owned<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt> parser(
      xmlSchemaNewDocParserCtxt(document.get()));
  if (!parser) throw std::bad_alloc();
  xmlSchemaSetParserStructuredErrors(parser.get(), onCompileError, &run);
  const Owned<xmlSchema, xmlSchemaFree> schema(xmlSchemaParse(parser.get()));
  if (run.exception) std::rethrow_exception(run.exception);
  served.check();
  memory.check();
  if (!schema || !run.strReason.empty()) {
    refuseSchema(strPath, run.strReason.empty() ? "It is not valid."
                                                : inPaths(std::move(run.strReason), documents));
  }
}

}  // namespace Varnel_Tolv_XML_Creation
