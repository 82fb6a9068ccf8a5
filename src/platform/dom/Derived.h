#pragma once

#include <memory>

#include "platform/dom/DerivedData.h"
#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// Where a node stands in a document, for what is kept with the document: unlike a handle it does
/// not keep the document alive.
class NodePlace {
 public:
  NodePlace() noexcept = default;  // of Nothing

 private:
  friend struct DocumentState;
  const void* node_ = nullptr;
};

NodePlace placeOf(const Node& objNode);

/// The node of this document at a place; Nothing for the place of Nothing.
Node nodeAt(const Document& objDocument, NodePlace place);

/// See `derivedFrom`.
const void* derived(const Document& objDocument, DerivedData::Maker maker);

/// What `Type` tells of a document: made by its constructor from the document, and kept with it as
/// long as nothing in it changes; so the reference is good until then. Injected faults do not
/// concern the constructor. It must not keep handles to nodes, but their places.
template <class Type>
const Type& derivedFrom(const Document& objDocument) {
  return *static_cast<const Type*>(
      derived(objDocument, [](const Document& objSource) -> std::shared_ptr<const void> {
        return std::make_shared<const Type>(objSource);
      }));
}

}  // namespace Varnel_Tolv_XML_Creation
