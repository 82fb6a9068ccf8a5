#include "platform/schema/SchemaPlug.h"

#include <new>
#include <utility>

#include "platform/xml/XmlMemory.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

std::string expandedName(const xmlChar* uri, const xmlChar* local) {
  std::string strName;
  if (uri) strName.append("{").append(view(uri)).append("}");
  return strName.append(view(local));
}

/// Tells which attribute a message is about. The names stand in front of everything that a message
/// quotes from the document, so they are found by their place, not by their look.
void findAttributeOf(std::string_view strMessage, const StartTag& tag, std::size_t lngHint,
                     RaisedError& error) {
  const std::string strElement = "Element '" + expandedName(tag.uri, tag.local) + "'";
  if (!strMessage.starts_with(strElement)) return;
  strMessage.remove_prefix(strElement.size());

  constexpr std::string_view kMissing = ": The attribute '";
  constexpr std::string_view kRequired = "' is required but missing.";
  if (error.code == XML_SCHEMAV_CVC_COMPLEX_TYPE_4 && strMessage.starts_with(kMissing)) {
    strMessage.remove_prefix(kMissing.size());
    error.strMissing = strMessage.substr(0, strMessage.rfind(kRequired));
    return;
  }
  constexpr std::string_view kAttribute = ", attribute '";
  if (!strMessage.starts_with(kAttribute)) return;
  strMessage.remove_prefix(kAttribute.size());
  // They are mostly raised in the order of the attributes: the search begins at the last one found.
  const auto lngCount = static_cast<std::size_t>(tag.attributeCount);
  for (std::size_t step = 0; step < lngCount; ++step) {
    const std::size_t index = (lngHint + step) % lngCount;
    const xmlChar** attribute = tag.attributes + index * StartTag::kPointersPerAttribute;
    if (strMessage.starts_with(expandedName(attribute[2], attribute[0]) + "'")) {
      error.attribute = index;
      return;
    }
  }
}

void onViolation(void* context, xmlError* report) {
  SchemaErrors& errors = *static_cast<SchemaErrors*>(context);
  noteShortage(*report);
  if (errors.blnMuted) return;
  try {
    if (!report->message) throw std::bad_alloc();  // which is when a report has none
    RaisedError error{report->code, std::nullopt, {}};
    if (errors.tag) {
      std::size_t lngHint = 0;
      if (!errors.raised.empty()) lngHint = errors.raised.back().attribute.value_or(0);
      findAttributeOf(report->message, *errors.tag, lngHint, error);
    }
    errors.raised.push_back(std::move(error));
  } catch (...) {
    errors.exception = std::current_exception();
  }
}

std::string writtenName(const xmlChar* prefix, const xmlChar* local) {
  std::string strName;
  if (prefix) strName.append(view(prefix)).append(":");
  return strName.append(view(local));
}

}  // namespace

std::string StartTag::qualifiedName() const { return writtenName(prefix, local); }

std::string StartTag::attributeName(std::size_t lngIndex) const {
  const xmlChar** attribute = attributes + lngIndex * kPointersPerAttribute;
  return writtenName(attribute[1], attribute[0]);
}

std::string_view StartTag::attributeUri(std::size_t lngIndex) const {
  return view(attributes[lngIndex * kPointersPerAttribute + 2]);
}

std::optional<std::string_view> StartTag::findRaw(std::string_view strUri,
                                                  std::string_view strLocal) const {
  for (std::size_t index = 0; index < static_cast<std::size_t>(attributeCount); ++index) {
    const xmlChar** attribute = attributes + index * kPointersPerAttribute;
    if (view(attribute[0]) != strLocal || view(attribute[2]) != strUri) continue;
    return rawValue(index);
  }
  return std::nullopt;
}

std::string_view StartTag::rawValue(std::size_t lngIndex) const {
  const xmlChar** attribute = attributes + lngIndex * kPointersPerAttribute;
  return {reinterpret_cast<const char*>(attribute[3]),
          static_cast<std::size_t>(attribute[4] - attribute[3])};
}

SchemaPlug::SchemaPlug(xmlSchema* schema, SchemaErrors& errors)
    : errors_(errors), validator_(xmlSchemaNewValidCtxt(schema)) {
  if (!validator_) throw std::bad_alloc();
  xmlSchemaSetValidStructuredErrors(validator_, onViolation, &errors_);
  plug_ = xmlSchemaSAXPlug(validator_, &sax_, &context_);
  if (!plug_) {
    xmlSchemaFreeValidCtxt(validator_);
    throw std::bad_alloc();
  }
}

SchemaPlug::~SchemaPlug() {
  // The library loses what it knows of keys when it is left inside an element that has some.
  const bool blnMutedBefore = std::exchange(errors_.blnMuted, true);
  for (; !open_.empty(); open_.pop_back()) {
    sax_->endElementNs(context_, open_.back().first, nullptr, open_.back().second);
  }
  errors_.blnMuted = blnMutedBefore;
  xmlSchemaSAXUnplug(plug_);
  xmlSchemaFreeValidCtxt(validator_);
}

void SchemaPlug::start(const StartTag& tag) {
  errors_.tag = &tag;
  open_.emplace_back(tag.local, tag.uri);
  sax_->startElementNs(context_, tag.local, tag.prefix, tag.uri, tag.namespaceCount, tag.namespaces,
                       tag.attributeCount, tag.defaultedCount, tag.attributes);
  errors_.tag = nullptr;
  returned();
}

void SchemaPlug::start(const xmlChar* local, const xmlChar* uri) {
  open_.emplace_back(local, uri);
  sax_->startElementNs(context_, local, nullptr, uri, 0, nullptr, 0, 0, nullptr);
  returned();
}

void SchemaPlug::text(std::string_view strText) {
  sax_->characters(context_, reinterpret_cast<const xmlChar*>(strText.data()),
                   static_cast<int>(strText.size()));
  returned();
}

void SchemaPlug::end(const xmlChar* local, const xmlChar* uri) {
  sax_->endElementNs(context_, local, nullptr, uri);
  open_.pop_back();
  returned();
}

void SchemaPlug::returned() {
  if (errors_.exception) std::rethrow_exception(std::exchange(errors_.exception, nullptr));
  requireMemory();  // else its reports could not be believed
}

}  // namespace Varnel_Tolv_XML_Creation
