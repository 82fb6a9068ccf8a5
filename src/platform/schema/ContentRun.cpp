#include "platform/schema/ContentRun.h"

#include <array>
#include <cstdint>
#include <new>

#include "platform/schema/SchemaClosure.h"
#include "platform/schema/SchemaTypes.h"
#include "platform/xml/XmlMemory.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

void onMatch(xmlRegExecCtxt* /*run*/, const xmlChar* /*token*/, void* declaration, void* slot) {
  *static_cast<void**>(slot) = declaration;
}

}  // namespace

bool isWildcard(const xmlChar* value) noexcept {
  const std::string_view strValue = view(value);
  return strValue.starts_with('*') || strValue.starts_with("not ");
}

bool admits(const xmlChar* wildcard, std::string_view strUri) noexcept {
  constexpr std::string_view kOther = "not *|";
  const std::string_view strValue = view(wildcard);
  if (strValue == "*") return strUri.empty();
  if (strUri.empty()) return false;
  if (strValue == "not *") return true;  // other than none
  if (strValue.starts_with(kOther)) return strValue.substr(kOther.size()) != strUri;
  return strValue == "*|*" || strValue.substr(2) == strUri;
}

std::string keyOf(const xmlChar* local, const xmlChar* uri, const xmlSchemaElement* matched) {
  if (matched->type == XML_SCHEMA_TYPE_ELEMENT) return elementKey(view(uri), view(local));
  return "* " + std::to_string(reinterpret_cast<std::uintptr_t>(matched));
}

ContentRun::ContentRun(xmlRegexp* model) : model_(model) { begin(); }

void ContentRun::begin() {
  run_.reset(xmlRegNewExecCtxt(model_, onMatch, nullptr));
  if (!run_) throw std::bad_alloc();
}

xmlSchemaElement* ContentRun::push(const xmlChar* local, const xmlChar* uri) {
  // A run that tries alternatives may write the match of an earlier child once more, so the place
  // for it is one that lasts; what is written last is the child's.
  matched_ = nullptr;
  if (xmlRegExecPushString2(run_.get(), local, uri, &matched_) < 0) {
    requireMemory();
    return nullptr;
  }
  // The model lets a wildcard for other namespaces pass what is in none, and leads it nowhere.
  auto* const matched = static_cast<xmlSchemaElement*>(matched_);
  if (matched->type != XML_SCHEMA_TYPE_ELEMENT &&
      !admits(reinterpret_cast<const xmlSchemaWildcard*>(matched), uri)) {
    return nullptr;
  }
  word_.push_back({local, uri});
  return matched;
}

bool ContentRun::restore() {
  begin();
  for (const Name& name : word_) {
    if (xmlRegExecPushString2(run_.get(), name.local, name.uri, &matched_) < 0) return false;
  }
  return true;
}

NextElements ContentRun::next() const {
  std::array<xmlChar*, kMaxListed> values{};
  int lngListed = kMaxListed;
  int lngExcluded = 0;
  int blnTerminal = 0;
  NextElements result;
  if (xmlRegExecNextValues(run_.get(), &lngListed, &lngExcluded, values.data(), &blnTerminal) < 0) {
    return result;
  }
  result.values.assign(values.begin(), values.begin() + lngListed);
  result.blnComplete = lngListed + lngExcluded < kMaxListed;
  return result;
}

}  // namespace Varnel_Tolv_XML_Creation
