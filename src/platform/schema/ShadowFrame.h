#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/schema/ShadowModel.h"

namespace Varnel_Tolv_XML_Creation {

/// An open element.
struct ShadowModel::Frame {
  const xmlChar* local = nullptr;
  const xmlChar* uri = nullptr;
  std::string strQName;

  std::unique_ptr<SchemaPlug> own;      // of an element that is checked apart from its parent
  SchemaPlug* plug = nullptr;           // checks the element; null when it is passed over
  const xmlSchemaType* type = nullptr;  // null where the validator is left to itself

  const xmlSchemaType* scoutType = nullptr;  // the type, as far as a scout needs to know it
  std::unique_ptr<SchemaPlug> ownScout;
  SchemaPlug* scout = nullptr;  // goes along where the type is not known
  bool blnUnchecked = false;    // nothing in it is checked, or all of it is wrong
  std::size_t lngOuterBindings = 0;

  std::unique_ptr<ContentTrack> track;      // the children in `plug`
  std::unique_ptr<SchemaPlug> sidePlug;     // checks the children that come too late
  std::unique_ptr<ContentTrack> sideTrack;  // and these
  bool blnDamaged = false;                  // a child was refused
  bool blnReported = false;                 // and it was reported that the content is invalid
  bool blnValueSpoilt = false;              // the value is not what it was meant to be
  bool blnNilRefused = false;               // it is empty only because it may not be nil

  explicit Frame(const StartTag& tag)
      : local(tag.local), uri(tag.uri), strQName(tag.qualifiedName()) {}
};

}  // namespace Varnel_Tolv_XML_Creation
