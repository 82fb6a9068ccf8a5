#include "platform/xml/LoadXml.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/valid.h>

#include <algorithm>
#include <climits>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/text/Text.h"
#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlMemory.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// The library copies the content of an entity by recursion, and an entity may hold another, so the
// tags of all entities together bound its stack.
constexpr std::ptrdiff_t kMaxEntityTags = 2048;

// The library compares the attributes of a tag with one another, one by one.
constexpr int kMaxAttributes = 512;
constexpr const char* kTooManyAttributes = "An element has more than 512 attributes.";

// What an attribute or a namespace that a document type adds costs beside its text.
constexpr std::size_t kDefaultBytes = 64;

/// How much text entities and defaults may add to the attributes of an input, and parameter
/// entities to its document type.
std::size_t expansionLimit(std::size_t lngInput) {
  return std::max(std::size_t{1} << 20, 10 * lngInput);
}

/// What the bytes of an input show before they are parsed. Zero bytes are passed over, so that it
/// is the same for each width of characters.
struct Preview {
  bool blnDocumentType = false;    // it has, or seems to have, a document type declaration
  bool blnManyAttributes = false;  // a start tag has more attributes than are accepted
};

Preview preview(std::string_view strBytes) {
  Preview seen;
  bool blnInTag = false;
  char quote = 0;
  char before = 0;  // the byte before this one
  char beforeThat = 0;
  int lngEquals = 0;
  for (const char byte : strBytes) {
    if (byte == 0) continue;
    if (before == '<') {
      blnInTag = byte != '!' && byte != '?' && byte != '/';
      quote = 0;
      lngEquals = 0;
    } else if (byte == '<') {  // which no tag holds: whatever was begun is over
      blnInTag = false;
    } else if (blnInTag && quote != 0) {
      if (byte == quote) quote = 0;
    } else if (blnInTag) {
      if (byte == '"' || byte == '\'') quote = byte;
      if (byte == '>') blnInTag = false;
      if (byte == '=' && ++lngEquals > kMaxAttributes) seen.blnManyAttributes = true;
    }
    if (beforeThat == '<' && before == '!' && byte == 'D') seen.blnDocumentType = true;
    beforeThat = before;
    before = byte;
  }
  return seen;
}

/// What the callbacks of one parse gather.
struct LoadRun {
  ParseError error;  // the first that makes the load fail
  std::exception_ptr exception;
  int depth = 0;
  std::ptrdiff_t entityTags = 0;
  std::size_t attributeBytes = 0;
  std::size_t parameterEntityBytes = 0;
  std::size_t maxExpandedBytes = 0;  // of either
  bool blnDocumentTypeAllowed = true;
  AttributeDefaults defaults = AttributeDefaults::forgotten;
  int declaredAttributes = 0;
};

LoadRun& runOf(void* context) {
  return *static_cast<LoadRun*>(static_cast<xmlParserCtxt*>(context)->_private);
}

/// Whether a report of the parser makes the load fail.
bool isFailure(const xmlError& report) {
  // What an undeclared entity stands for is unknown: that it might be declared in a DTD which is
  // not read makes it a mere warning to the library.
  if (report.code == XML_WAR_UNDECLARED_ENTITY) return true;
  if (report.level < XML_ERR_ERROR) return false;
  // Validity was not asked for, and a namespace's name may be any text.
  return report.domain != XML_FROM_VALID && report.code != XML_WAR_NS_URI;
}

void onReport(void* context, xmlError* report) {
  LoadRun& run = runOf(context);
  try {
    if (run.error.errorCode != 0 || !isFailure(*report)) return;
    run.error = {report->code, report->line, parserReason(report->message)};
  } catch (...) {
    run.exception = std::current_exception();
  }
}

void stop(xmlParserCtxt* parser, const char* reason) {
  LoadRun& run = runOf(parser);
  try {
    if (run.error.errorCode == 0) {
      run.error = {XML_ERR_INTERNAL_ERROR, parser->input ? parser->input->line : 0, reason};
    }
  } catch (...) {
    run.exception = std::current_exception();
  }
  xmlStopParser(parser);
}

/// What an entity holds is put into the tree only when it has been read. So the library does not
/// find the namespaces that are declared around it: it leaves its elements and attributes without,
/// and declares the prefix of an element as nothing.
void restoreNamespaces(xmlNode* element, const xmlChar* prefix, const xmlChar* uri,
                       int attributeCount, const xmlChar** attributes) {
  const auto declared = [&](const xmlChar* ownPrefix, const xmlChar* ownUri) {
    if (xmlNs* ns = xmlSearchNs(element->doc, element, ownPrefix)) return ns;
    for (xmlNs* ns = element->nsDef; ns; ns = ns->next) {
      if (view(ns->prefix) != view(ownPrefix) || ns->href) continue;
      ns->href = xmlStrdup(ownUri);
      return ns;
    }
    return xmlNewNs(element, ownUri, ownPrefix);
  };
  if (uri && !element->ns) element->ns = declared(prefix, uri);
  constexpr std::ptrdiff_t kFields = 5;
  for (int at = 0; at < attributeCount; ++at) {
    const xmlChar* const* from = attributes + kFields * at;
    if (!from[2]) continue;
    xmlAttr* attribute = element->properties;
    while (attribute && (attribute->ns || view(attribute->name) != view(from[0]))) {
      attribute = attribute->next;
    }
    if (attribute) attribute->ns = declared(from[1], from[2]);
  }
}

void onStartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                    int namespaceCount, const xmlChar** namespaces, int attributeCount,
                    int defaultedCount, const xmlChar** attributes) {
  LoadRun& run = runOf(context);
  const auto refuseTag = [&](const char* reason) {
    stop(static_cast<xmlParserCtxt*>(context), reason);
  };
  if (++run.depth > kMaxDepth) return refuseTag(kTooDeep);
  if (attributeCount + namespaceCount > kMaxAttributes) return refuseTag(kTooManyAttributes);
  constexpr std::ptrdiff_t kFields = 5;  // name, prefix, URI, begin and end of the value
  for (int at = 0; at < attributeCount; ++at) {
    const xmlChar* const* attribute = attributes + kFields * at;
    run.attributeBytes += static_cast<std::size_t>(attribute[4] - attribute[3]);
  }
  if (run.defaults == AttributeDefaults::applied) {
    run.attributeBytes += kDefaultBytes * static_cast<std::size_t>(defaultedCount + namespaceCount);
    for (int at = 0; at < namespaceCount; ++at) {  // a prefix and a URI each
      run.attributeBytes += view(namespaces[2 * at + 1]).size();
    }
  }
  if (run.attributeBytes > run.maxExpandedBytes) {
    return refuseTag("The document type makes the attributes too large.");
  }
  // It would leave out what is said to be there by default.
  if (run.defaults == AttributeDefaults::applied) defaultedCount = 0;
  xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                        defaultedCount, attributes);
  auto* parser = static_cast<xmlParserCtxt*>(context);
  if (parser->depth > 0 && parser->node) {
    restoreNamespaces(parser->node, prefix, uri, attributeCount - defaultedCount, attributes);
  }
}

void onEndElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri) {
  --runOf(context).depth;
  xmlSAX2EndElementNs(context, name, prefix, uri);
}

/// Without limits of its own the parser must not meet an entity.
void onDocumentType(void* context, const xmlChar* name, const xmlChar* publicId,
                    const xmlChar* systemId) {
  if (!runOf(context).blnDocumentTypeAllowed) {
    stop(static_cast<xmlParserCtxt*>(context),
         "A document type is not supported in this encoding.");
    return;
  }
  xmlSAX2InternalSubset(context, name, publicId, systemId);
}

/// Lets the parser know internal entities only, so that there is nothing outside to be read.
void onEntityDeclaration(void* context, const xmlChar* name, int type, const xmlChar* publicId,
                         const xmlChar* systemId, xmlChar* content) {
  if (type != XML_INTERNAL_GENERAL_ENTITY && type != XML_INTERNAL_PARAMETER_ENTITY) return;
  LoadRun& run = runOf(context);
  const std::string_view strContent = view(content);
  run.entityTags += std::count(strContent.begin(), strContent.end(), '<');
  if (run.entityTags > kMaxEntityTags) {
    stop(static_cast<xmlParserCtxt*>(context), "The entities hold too many elements.");
    return;
  }
  xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
}

/// Called for each use of a parameter entity, those inside others included. The library itself
/// gives up after ten thousand uses of entities, but then never returns from within a document
/// type.
xmlEntity* onParameterEntity(void* context, const xmlChar* name) {
  constexpr unsigned long kMaxUses = 1000;
  auto* parser = static_cast<xmlParserCtxt*>(context);
  LoadRun& run = runOf(context);
  xmlEntity* entity = xmlSAX2GetParameterEntity(context, name);
  if (!entity) return nullptr;
  run.parameterEntityBytes += static_cast<std::size_t>(entity->length);
  if (parser->nbentities <= kMaxUses && run.parameterEntityBytes <= run.maxExpandedBytes) {
    return entity;
  }
  stop(parser, "The entities make the document type too large.");
  return nullptr;
}

/// Where attribute defaults are applied, the library compares those of a tag with one another.
void onAttributeDeclaration(void* context, const xmlChar* element, const xmlChar* name, int type,
                            int presence, const xmlChar* value, xmlEnumeration* values) {
  xmlSAX2AttributeDecl(context, element, name, type, presence, value, values);
  LoadRun& run = runOf(context);
  if (run.defaults == AttributeDefaults::forgotten || ++run.declaredAttributes <= kMaxAttributes) {
    return;
  }
  stop(static_cast<xmlParserCtxt*>(context), "The document type declares too many attributes.");
}

/// Called between the document type and the root. Unless they were asked for, attribute defaults
/// are forgotten. The DTD that the document type may name is not read.
void onDocumentTypeRead(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                        const xmlChar* /*systemId*/) {
  auto* parser = static_cast<xmlParserCtxt*>(context);
  if (runOf(context).defaults == AttributeDefaults::applied || !parser->attsDefault) return;
  xmlHashFree(parser->attsDefault, xmlHashDefaultDeallocator);
  parser->attsDefault = nullptr;
}

OwnedXmlParser newParser(LoadRun& run) {
  prepareXmlLibrary();
  OwnedXmlParser parser(xmlNewParserCtxt());
  if (!parser) throw std::bad_alloc();
  parser->_private = &run;
  xmlSAXHandler& sax = *parser->sax;
  sax.serror = onReport;
  sax.startElementNs = onStartElement;
  sax.endElementNs = onEndElement;
  sax.internalSubset = onDocumentType;
  sax.entityDecl = onEntityDeclaration;
  sax.attributeDecl = onAttributeDeclaration;
  sax.getParameterEntity = onParameterEntity;
  sax.unparsedEntityDecl = nullptr;
  sax.externalSubset = onDocumentTypeRead;
  sax.resolveEntity = nullptr;
  return parser;
}

/// Whether white space is kept below an element, given whether it is kept around it.
bool keepsSpace(const xmlNode* element, bool blnKeptAround) {
  const xmlAttr* space = findAttribute(element, "xml:space");
  if (!space) return blnKeptAround;
  const std::string strSpace = textOf(asNode(const_cast<xmlAttr*>(space)));
  return strSpace == "preserve" || (strSpace != "default" && blnKeptAround);
}

void dropNode(xmlNode* node) {
  unlinkNode(node);
  xmlFreeNode(node);
}

/// Drops the text nodes of nothing but white space. False when the tree is too deep, as it can
/// become where an entity is used a second time: the parser then copies and reports no elements.
bool dropWhiteSpace(xmlDoc* document) {
  std::vector<bool> colKept = {false};  // one for each open element
  xmlNode* const top = asNode(document);
  xmlNode* node = top;
  bool blnDescend = true;
  while (true) {
    if (xmlNode* child = blnDescend ? firstChild(node) : nullptr) {
      if (isElement(node)) colKept.push_back(keepsSpace(node, colKept.back()));
      if (colKept.size() > kMaxDepth + 1) return false;
      node = child;
      continue;
    }
    if (node == top) return true;
    // Done with `node` and what is below it.
    if (isElement(node) && colKept.size() > kMaxDepth) return false;  // a leaf can be too deep too
    xmlNode* const next = node->next;
    xmlNode* const parent = node->parent;
    if (isText(node) && !colKept.back() && isXmlWhiteSpace(view(node->content))) dropNode(node);
    blnDescend = next != nullptr;
    node = next ? next : parent;
    if (!next && isElement(node)) colKept.pop_back();
  }
}

/// Forgets which attributes are of type ID: `id()` would find them by values that are long gone.
void forgetIds(xmlDoc* document) {
  if (!document->ids) return;
  xmlNode* const top = asNode(document);
  for (xmlNode* node = top; node; node = nextBelow(node, top)) {
    if (!isElement(node)) continue;
    for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
      attribute->atype = XML_ATTRIBUTE_CDATA;
    }
  }
  xmlFreeIDTable(static_cast<xmlIDTable*>(document->ids));
  document->ids = nullptr;
}

/// Makes the XML declaration, if there was one, the first node of the document.
void keepDeclaration(xmlDoc* document) {
  constexpr int kNoDeclaration = -1;
  if (document->standalone == kNoDeclaration) return;
  std::string strContent = "version=\"1.0\"";
  if (document->standalone == 1) strContent += " standalone=\"yes\"";
  if (document->standalone == 0) strContent += " standalone=\"no\"";
  xmlNode* declaration = xmlNewDocPI(document, xmlText("xml"), xmlText(strContent.c_str()));
  if (!declaration) throw std::bad_alloc();
  linkNode(asNode(document), declaration, document->children);
}

}  // namespace

std::string parserReason(const char* message) {
  return oneLine(message ? message : "The text could not be parsed.");
}

LoadedXml loadXml(std::string_view strBytes, XmlEncoding encoding, AttributeDefaults defaults) {
  if (strBytes.empty()) return {nullptr, {XML_ERR_DOCUMENT_EMPTY, 0, "Document is empty"}};
  if (strBytes.size() > INT_MAX) return {nullptr, tooLarge(INT_MAX)};

  const Preview seen = preview(strBytes);
  if (seen.blnManyAttributes) return {nullptr, {XML_ERR_INTERNAL_ERROR, 0, kTooManyAttributes}};

  LoadRun run;
  run.maxExpandedBytes = expansionLimit(strBytes.size());
  run.blnDocumentTypeAllowed = seen.blnDocumentType;
  run.defaults = defaults;
  const MemoryWatch memory;
  const OwnedXmlParser parser = newParser(run);
  int options = XML_PARSE_NODICT | XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR |
                XML_PARSE_NOWARNING;
  // The parser's own limits are against entities, and they refuse an answer of more than ten
  // million bytes. Where nothing can declare an entity the size of the input is limit enough.
  if (!seen.blnDocumentType) options |= XML_PARSE_HUGE;
  if (encoding == XmlEncoding::utf8) options |= XML_PARSE_IGNORE_ENC;
  OwnedXmlDoc document(
      xmlCtxtReadMemory(parser.get(), strBytes.data(), static_cast<int>(strBytes.size()), nullptr,
                        encoding == XmlEncoding::utf8 ? "UTF-8" : nullptr, options));
  if (run.exception) std::rethrow_exception(run.exception);
  memory.check();
  // The library takes a NUL for the end of its input.
  const bool blnCut = parser->input && parser->input->cur < parser->input->end;
  if (run.error.errorCode == 0 && (!document || parser->disableSAX || blnCut)) {
    run.error = {XML_ERR_INTERNAL_ERROR, 0, parserReason(nullptr)};
  }
  if (run.error.errorCode != 0) return {nullptr, std::move(run.error)};

  if (!dropWhiteSpace(document.get())) return {nullptr, {XML_ERR_INTERNAL_ERROR, 0, kTooDeep}};
  forgetIds(document.get());
  keepDeclaration(document.get());
  memory.check();
  return {std::move(document), {}};
}

}  // namespace Varnel_Tolv_XML_Creation
