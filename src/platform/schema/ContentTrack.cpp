#include "platform/schema/ContentTrack.h"

#include <algorithm>
#include <string>

#include "platform/schema/SchemaClosure.h"
#include "platform/schema/SchemaTypes.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// How much of the work one parent may cause on the mere suspicion that a child is allowed.
constexpr std::size_t kMaxSuspicion = 200'000;

}  // namespace

ContentTrack::ContentTrack(xmlRegexp* model, RepairCosts& costs, const CompiledSchema& schema)
    : run_(model), costs_(costs), schema_(schema) {}

const xmlSchemaElement* ContentTrack::accept(const xmlChar* local, const xmlChar* uri,
                                             bool blnLookFirst) {
  if (blnLost_ || (blnLookFirst && !isWorthTrying(local, uri))) return nullptr;
  if (const xmlSchemaElement* matched = run_.push(local, uri)) {
    if (isMeant(local, uri, matched)) {
      stand_.accept(keyOf(local, uri, matched));
      return matched;
    }
    run_.takeBack();
  }
  restore();
  return nullptr;
}

bool ContentTrack::isMeant(const xmlChar* local, const xmlChar* uri,
                           const xmlSchemaElement* matched) const {
  if (matched->type == XML_SCHEMA_TYPE_ELEMENT) return true;
  return !isStrict(reinterpret_cast<const xmlSchemaWildcard*>(matched)) ||
         view(uri) != view(schema_.schema->targetNamespace) || schema_.globalElement(local, uri) ||
         !schema_.declares(view(uri), view(local));
}

void ContentTrack::restore() {
  lngRestored_ += run_.accepted();
  blnLost_ = !costs_.mayRestore(run_.accepted()) || !run_.restore();
}

bool ContentTrack::isWorthTrying(const xmlChar* local, const xmlChar* uri) const {
  const NextElements listed = run_.next();
  if (!listed.blnComplete || (schema_.closure.blnCounts && lngRestored_ < kMaxSuspicion))
    return true;
  const std::string strKey = elementKey(view(uri), view(local));
  return std::any_of(listed.values.begin(), listed.values.end(), [&](const xmlChar* value) {
    return isWildcard(value) || view(value) == strKey;
  });
}

std::optional<ContentPaths::Way> ContentTrack::advance(const ContentPaths::Way& way) {
  ContentPaths::Way taken;
  for (auto step = way.begin(); step != way.end() && !blnLost_;) {
    if (const xmlSchemaElement* matched = run_.push(step->name.local, step->name.uri)) {
      stand_.accept(keyOf(step->name.local, step->name.uri, matched));
      taken.push_back(*step++);
    } else if (step->blnSpare) {
      restore();
      step = std::find_if(step, way.end(), [](const auto& other) { return !other.blnSpare; });
    } else {
      blnLost_ = true;
    }
  }
  if (blnLost_) return std::nullopt;
  return taken;
}

}  // namespace Varnel_Tolv_XML_Creation
