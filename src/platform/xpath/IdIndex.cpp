#include "platform/xpath/IdIndex.h"

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

const xmlAttr* idOf(const xmlNode* element) {
  for (const xmlAttr* attribute = element->properties; attribute != nullptr;
       attribute = attribute->next) {
    const bool blnPlain = attribute->ns == nullptr || attribute->ns->prefix == nullptr;
    if (blnPlain && view(attribute->name) == "id") return attribute;
  }
  return nullptr;
}

}  // namespace

void IdIndex::build(const xmlDoc* document) {
  elements_.clear();
  joinedValues_.clear();
  if (document == nullptr) return;

  const auto* top = reinterpret_cast<const xmlNode*>(document);
  for (xmlNode* node = nextBelow(top, top); node != nullptr; node = nextBelow(node, top)) {
    if (!isElement(node)) continue;
    const xmlAttr* id = idOf(node);
    if (id == nullptr) continue;

    std::string_view strId;
    if (const xmlNode* piece = id->children; piece != nullptr && piece->next == nullptr) {
      strId = view(piece->content);
    } else if (piece != nullptr) {
      joinedValues_.push_back(
          std::make_unique<const std::string>(textOf(reinterpret_cast<const xmlNode*>(id))));
      strId = *joinedValues_.back();
    }
    elements_[strId].push_back(node);
  }
}

const std::vector<xmlNode*>& IdIndex::find(std::string_view strId) const {
  static const std::vector<xmlNode*> kNone;
  const auto found = elements_.find(strId);
  return found == elements_.end() ? kNone : found->second;
}

}  // namespace Varnel_Tolv_XML_Creation
