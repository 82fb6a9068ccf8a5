#include <libxml/hash.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlschemastypes.h>

#include <algorithm>

#include "platform/schema/SchemaTypes.h"
#include "platform/schema/ShadowFrame.h"
#include "platform/xml/XmlTree.h"

// What the shadow finds out at a start tag before the validator hears of it: the element's type,
// and which of the attributes' values are to lose the white space around them.

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
constexpr std::string_view kInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";

/// Whether the tag says that the element has no content, or something that is not understood.
bool isNil(const StartTag& tag) {
  const std::optional<std::string_view> strNil = tag.findRaw(kInstanceNamespace, "nil");
  if (!strNil) return false;
  const std::string strValue = collapsed(*strNil);
  return strValue != "false" && strValue != "0";
}

/// Of an attribute's value that is not what its type can mean, before any facet of the type: white
/// space can be at fault. Of a text nothing of the kind is ever said.
bool isLexicalError(int code) {
  return code >= XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1 &&
         code <= XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_3;
}

}  // namespace

/// Takes the type of an element from what its parent's model has for it.
void ShadowModel::take(Frame& frame, const StartTag& tag, const xmlSchemaElement* declaration) {
  if (declaration->type == XML_SCHEMA_TYPE_ELEMENT) {
    takeType(frame, tag, declaration->subtypes);
    return;
  }
  const auto* const wildcard = reinterpret_cast<const xmlSchemaWildcard*>(declaration);
  frame.blnUnchecked = skipsContents(wildcard);
  if (!frame.blnUnchecked) takeAnything(frame, tag);
}

/// Takes the type of an element that may be anything, if it is declared, otherwise any type.
void ShadowModel::takeAnything(Frame& frame, const StartTag& tag) {
  if (const xmlSchemaElement* declaration = schema_->globalElement(tag.local, tag.uri)) {
    takeType(frame, tag, declaration->subtypes);
  } else if (!schema_->declares(view(tag.uri), view(tag.local))) {
    takeType(frame, tag, anyType());
  }
}

void ShadowModel::takeType(Frame& frame, const StartTag& tag, const xmlSchemaType* type) {
  frame.scoutType = type;
  frame.blnUnchecked = isNil(tag);
  if (frame.blnUnchecked) return;
  const std::optional<std::string_view> strNamed = tag.findRaw(kInstanceNamespace, "type");
  frame.type = strNamed ? namedType(collapsed(*strNamed)) : type;
}

/// The type that xsi:type names, or null if it is not among those that can be known here.
const xmlSchemaType* ShadowModel::namedType(std::string_view strName) const {
  const std::size_t colon = strName.find(':');
  const bool blnPrefix = colon != std::string_view::npos;
  const std::string_view strPrefix = blnPrefix ? strName.substr(0, colon) : std::string_view();
  const std::string strLocal(strName.substr(blnPrefix ? colon + 1 : 0));
  std::string_view strUri;
  for (std::size_t at = bindings_.size(); at > 0; at -= 2) {
    if (view(bindings_[at - 2]) != strPrefix) continue;
    strUri = view(bindings_[at - 1]);
    break;
  }
  const xmlChar* local = xmlText(strLocal.c_str());
  if (strUri == kSchemaNamespace) {
    return xmlSchemaGetPredefinedType(local, xmlText(kSchemaNamespace.data()));
  }
  if (strUri != view(schema_->schema->targetNamespace)) return nullptr;
  return static_cast<xmlSchemaType*>(xmlHashLookup(schema_->schema->typeDecl, local));
}

/// Made at the first use: it takes a look at every element of the schema.
SchemaRoots& ShadowModel::roots() {
  if (!roots_) roots_.emplace(*schema_->schema);
  return *roots_;
}

/// The innermost first, as the validator looks them up.
std::vector<const xmlChar*> ShadowModel::bindingsInForce() const {
  std::vector<const xmlChar*> bindings;
  for (std::size_t at = bindings_.size(); at > 0; at -= 2) {
    bindings.push_back(bindings_[at - 2]);
    bindings.push_back(bindings_[at - 1]);
  }
  return bindings;
}

/// Takes white space from around the values of a tag, where it is not a part of them.
void ShadowModel::collapseValues(Frame& frame, CollapsedTag& tag) {
  std::vector<std::size_t> candidates = tag.candidates();
  std::erase_if(candidates, [&](std::size_t index) {
    const bool blnInstance = tag.tag().attributeUri(index) == kInstanceNamespace;
    if (blnInstance) tag.collapse(index);
    return blnInstance;
  });
  if (frame.blnUnchecked) return;

  std::vector<RaisedError> raised;
  if (frame.scout) {
    raised = askScout(*frame.scout, tag.tag());
  } else {
    const bool blnGoesAlong = !frame.type;
    if (candidates.empty() && !blnGoesAlong) return;
    StartTag scouted = tag.tag();
    std::vector<const xmlChar*> bindings = bindingsInForce();
    scouted.namespaces = bindings.data();
    scouted.namespaceCount = static_cast<int>(bindings.size() / 2);
    if (frame.scoutType) {
      scouted.local = roots().nameFor(frame.scoutType);
      scouted.uri = roots().schema()->targetNamespace;
    }
    auto scout = std::make_unique<SchemaPlug>(roots().schema(), errors_);
    raised = askScout(*scout, scouted);
    if (blnGoesAlong) {
      frame.ownScout = std::move(scout);
      frame.scout = frame.ownScout.get();
    }
  }
  for (const std::size_t index : candidates) {
    const auto isHere = [&](const RaisedError& error) { return error.attribute == index; };
    const bool blnLexical = std::any_of(
        raised.begin(), raised.end(),
        [&](const RaisedError& error) { return isHere(error) && isLexicalError(error.code); });
    const bool blnFacet = std::any_of(raised.begin(), raised.end(), [&](const RaisedError& error) {
      return isHere(error) && !isLexicalError(error.code);
    });
    if (blnLexical && !blnFacet) tag.collapse(index);
  }
}

/// What a scout raises at a start tag; nobody else hears of it.
std::vector<RaisedError> ShadowModel::askScout(SchemaPlug& scout, const StartTag& tag) {
  scout.start(tag);
  return takeRaised();
}

}  // namespace Varnel_Tolv_XML_Creation
