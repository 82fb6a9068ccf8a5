#include "platform/ContentTrack.h"

#include <algorithm>
#include <string>

#include "platform/SchemaClosure.h"
#include "platform/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// How much of the work one parent may cause on the mere suspicion that a child is allowed.
constexpr std::size_t kMaxSuspicion = 200'000;

std::string keyOf(const xmlChar* local, const xmlChar* uri) {
  return elementKey(view(uri), view(local));
}

}  // namespace

ContentTrack::ContentTrack(xmlRegexp* model, RepairCosts& costs, bool blnCounts)
    : run_(model), costs_(costs), blnCounts_(blnCounts) {}

const xmlSchemaElement* ContentTrack::accept(const xmlChar* local, const xmlChar* uri,
                                             bool blnLookFirst) {
  if (blnLost_ || (blnLookFirst && !isWorthTrying(local, uri))) return nullptr;
  if (const xmlSchemaElement* matched = run_.push(local, uri)) {
    stand_.accept(keyOf(local, uri));
    return matched;
  }
  lngRestored_ += run_.accepted();
  blnLost_ = !costs_.mayRestore(run_.accepted()) || !run_.restore();
  return nullptr;
}

bool ContentTrack::isWorthTrying(const xmlChar* local, const xmlChar* uri) const {
  const NextElements listed = run_.next();
  if (!listed.blnComplete || (blnCounts_ && lngRestored_ < kMaxSuspicion)) return true;
  const std::string strKey = keyOf(local, uri);
  return std::any_of(listed.values.begin(), listed.values.end(), [&](const xmlChar* value) {
    return isWildcard(value) || view(value) == strKey;
  });
}

bool ContentTrack::advance(const ContentPaths::Way& way) {
  for (const ElementName& name : way) {
    if (!run_.push(name.local, name.uri)) {
      blnLost_ = true;
      return false;
    }
    stand_.accept(keyOf(name.local, name.uri));
  }
  return true;
}

}  // namespace Varnel_Tolv_XML_Creation
