#include "platform/schema/MessageNames.h"

#include <algorithm>

#include "platform/xml/NamespaceUris.h"
#include "platform/xml/QualifiedName.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

InstanceAttribute instanceAttribute(std::string_view strUri, std::string_view strLocal) {
  if (strUri != kInstanceUri) return InstanceAttribute::none;
  if (strLocal == "type") return InstanceAttribute::type;
  if (strLocal == "nil") return InstanceAttribute::nil;
  const bool blnLocation = strLocal == "schemaLocation" || strLocal == "noNamespaceSchemaLocation";
  return blnLocation ? InstanceAttribute::location : InstanceAttribute::none;
}

}  // namespace

std::string MessageName::expanded() const {
  return ExpandedName{std::string(strUri), std::string(strLocal)}.text();
}

MessageNames::MessageNames(const NameTable* schemaNames, std::span<const std::string_view> setAside)
    : schemaNames_(schemaNames), setAside_(setAside) {}

const MessageName& MessageNames::of(const xmlChar* local, const xmlChar* prefix,
                                    const xmlChar* uri) {
  return names_.get(local, prefix, uri, [&] { return make(local, prefix, uri); });
}

MessageName MessageNames::make(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
  MessageName name;
  name.strWritten = name.strLocal = view(local);
  name.strUri = view(uri);
  if (prefix) name.strWritten = qualifiedName(written_, view(prefix), name.strLocal);
  if (schemaNames_) name.id = schemaNames_->find(name.strUri, name.strLocal);
  name.instance = instanceAttribute(name.strUri, name.strLocal);
  name.blnAside =
      name.strUri.empty() && std::ranges::find(setAside_, name.strWritten) != setAside_.end();
  return name;
}

}  // namespace Varnel_Tolv_XML_Creation
